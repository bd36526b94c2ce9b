#pragma once

#include <string>

namespace headless {

/// The path with `/` as separator; empty for null.
std::string WithHostSeparators(const char* path);

/// Resolves a path with either separator and any case to one of this host's files. If the exact
/// name does not exist, each missing component becomes the first entry, in byte order, that differs
/// from it only in case. A path without a match is returned with `/` as separator, so that a file
/// of that name can be created.
std::string ResolveHostPath(const char* path);

/// The same for a file to be created, or for the old one that it will replace: the directories
/// above it ignore case, its own name is taken exactly. So `Boat.qsb` and `boat.qsb` are two files.
std::string ResolveTargetPath(const char* path);

/// Compares two names as the Windows file system does, ignoring case for A to Z.
bool SameNameIgnoringCase(const char* a, const char* b);

/// True if `name` matches `pattern` with `*` (any run) and `?` (one character), ignoring case. The
/// pattern `*.*` matches every name.
bool MatchesWildcard(const char* name, const char* pattern);

/// True if the pattern contains a `*` or a `?`.
bool HasWildcard(const char* pattern);

} // namespace headless
