#pragma once

#include <cstdint>
#include <functional>
#include <string>

struct ChildLimits {
    double seconds;
    uint64_t bytes; ///< of memory, beyond what the process has
};

/// Runs `work` in a child process and returns its text. Throws ModelFault if the child crashes, needs more
/// than it may, or ends without a result.
std::string RunInChild(const ChildLimits& limits, const std::function<std::string()>& work);
