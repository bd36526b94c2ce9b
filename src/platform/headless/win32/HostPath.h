#pragma once

#include <string>

namespace headless {

/// Turns a path with either separator and any letter case into one of this host's files.
/// Where the exact name does not exist, each missing component takes the first entry, in byte order,
/// that differs from it in letter case only. A path that matches nothing comes back with `/` as its
/// separator, so that a file of that name can be made.
std::string ResolveHostPath(const char* path);

/// The same for a file that is to be made, or an old one that it will replace: the directories above it
/// ignore case, its own name is exactly what was asked for. So `Boat.qsb` and `boat.qsb` are two files.
std::string ResolveTargetPath(const char* path);

/// Compares two names as the Windows file system does, for the letters A to Z.
bool SameNameIgnoringCase(const char* a, const char* b);

/// True if `name` fits `pattern` with `*` (any run) and `?` (one character), letter case ignored.
/// The pattern `*.*` fits every name.
bool MatchesWildcard(const char* name, const char* pattern);

/// True if the pattern holds a `*` or a `?`.
bool HasWildcard(const char* pattern);

} // namespace headless
