#pragma once

#include <string>

#include "batch/Descriptor.h"

/// Opens a directory for `WorkingDirectory` and the calls that take one. Not open, with `errno`, if it
/// cannot be entered.
Descriptor OpenDirectory(int base, const std::string& path);

/// Opens a directory and makes it, with those above it, if it is not there.
Descriptor MakeDirectory(int base, const std::string& path);

/// The absolute path of an open directory, without links; empty if it has none any more.
std::string PathOfDirectory(const Descriptor& directory);

/// The directory of a path, "." if it has none, and the name after it.
struct SplitPath {
    explicit SplitPath(const std::string& path);
    std::string directory;
    std::string leaf;
};

/// Makes a directory the current one, and the one before it again at the end.
class WorkingDirectory {
public:
    explicit WorkingDirectory(const Descriptor& directory);
    ~WorkingDirectory();
    WorkingDirectory(const WorkingDirectory&) = delete;
    WorkingDirectory& operator=(const WorkingDirectory&) = delete;

private:
    Descriptor before;
};
