#pragma once

#include <cstdint>
#include <string>

/// A temporary file that replaces another one, the target, once complete. It is created next to the
/// target, so that replacing it is one file system operation: whenever the process ends, the target
/// is either the old file or the complete new one.
/// Files left behind by a process that was killed are removed when another process of the same host
/// creates its first file in the directory. Files of running processes are left alone. So are files of
/// other hosts, whose processes cannot be seen, until nothing was written to them for 24 hours.
class ReplacementFile {
public:
    ReplacementFile() = default;
    /// Removes a file that has not replaced the target. It must be closed by then.
    ~ReplacementFile();
    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;

    /// Whether the target exists and is a file that can be opened for reading. The name is taken
    /// exactly: where `Boat.qsb` and `boat.qsb` can be two files, they are different targets.
    static bool IsTargetThere(const char* targetPath);

    /// Creates an empty file for a path as given in scene files. False with `errno` set if it
    /// cannot be created, or if the target exists and may not be written. A target that is a device
    /// is written in place.
    bool Make(const char* targetPath);
    /// The file to open for writing; valid after `Make`.
    const char* Path() const { return path.c_str(); }
    /// Replaces the target; the file must be closed. False with `errno` set on failure.
    bool MoveOverTarget();

private:
    bool MakeBeside();

    std::string path; ///< empty if there is nothing to remove
    std::string target;
    bool isInPlace = false;
    [[maybe_unused]] int claim = -1; ///< descriptor that holds the lock, on hosts with file locks
};
