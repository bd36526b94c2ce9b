#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <sys/types.h>

namespace headless {

/// Who made a temporary file, as its name tells. On a share, files of several machines lie side by side,
/// so a process id alone says nothing.
struct TemporaryOwner {
    std::string host;
    std::string boot; ///< id of the machine's start; empty if it is not known
    pid_t process = 0;

    bool operator==(const TemporaryOwner&) const = default;
    static TemporaryOwner ThisProcess();
    /// The owner in a name of `TemporaryName`. False if it is no such name.
    bool Read(const char* name);
    /// Whether the owner is surely gone: a process of this host, since it was started, that has ended.
    bool IsGone() const;
};

/// `.qsa2qsb-HOST-BOOT-PROCESS-NUMBER.tmp`, for this process.
std::string TemporaryName(uint32_t number);
/// `.qsa2qsb-HOST-BOOT-`, which the names of all processes of this host begin with until it is restarted.
std::string TemporaryNameStart();
/// Whether `process` made a temporary file of this name; `start` is from `TemporaryNameStart`. Allocates nothing.
bool IsTemporaryNameOf(const char* name, std::string_view start, pid_t process);
/// Whether a name is one of a temporary file, also of one that an older version made.
bool IsTemporaryName(const char* name);

} // namespace headless
