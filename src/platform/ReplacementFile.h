#pragma once

#include <cstdint>
#include <string>

/// A temporary file that takes the place of another one, the target, when it is complete. It stands
/// beside the target, so that taking its place is one step of the file system: whenever the process
/// ends, the target is the old one or the whole new one.
/// What a process that was ended left behind is removed when another one makes its first file in the
/// directory; files of processes that run are left alone.
class ReplacementFile {
public:
    ReplacementFile() = default;
    /// Removes a file that has not taken the target's place. It must be closed by then.
    ~ReplacementFile();
    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;

    /// Whether a target of this path is there, and is a file that can be opened for reading. Its name is
    /// taken as it stands: where `Boat.qsb` and `boat.qsb` can be two files, one is not the other.
    static bool IsTargetThere(const char* targetPath);

    /// Makes an empty file for a path as scene files give it. False with `errno` set where it cannot
    /// be made or the target is there and may not be written. A target that is a device is written
    /// in place.
    bool Make(const char* targetPath);
    /// To be opened for writing by its user; valid after `Make`.
    const char* Path() const { return path.c_str(); }
    /// Takes the target's place; the file must be closed. False with `errno` set.
    bool MoveOverTarget();

private:
    bool MakeBeside();

    std::string path; ///< empty when there is nothing to remove
    std::string target;
    bool isInPlace = false;
    [[maybe_unused]] int claim = -1; ///< descriptor that holds the file, where the host has locks
};
