#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// Calls of the system that fail, as they do where disks, memory or rights end. The kernel refuses them itself, by a
// filter that a process puts on and that its children keep. Not under an emulator, which makes calls of its own.

/// A call that fails, by its number.
struct FailingCall {
    long call;
    int error;
    int argument = -1;          ///< fails only if this argument, from 0 on, ...
    uint32_t value = 0;         ///< ... has this value
    uint32_t mask = UINT32_MAX; ///< in these bits of its lower half
};

/// Lets these calls of this process fail from now on. False if the system takes no filters.
bool LetFail(const std::vector<FailingCall>& calls);

/// What `work` says in a child process in which these calls fail. What it opens has numbers below 128.
std::string SaidWith(const std::vector<FailingCall>& calls,
                     const std::function<std::string()>& work);

/// What `work` says in a child process in which a signal seems to interrupt each first, third, ... call of this kind.
std::string SaidWithInterrupted(long call, const std::function<std::string()>& work);

/// The files that this process has open.
size_t OpenFileCount();
