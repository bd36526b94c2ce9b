#pragma once

#include "base/String.h"

#include <functional>
#include <windows.h>

/// Called in each directory of a walk, which is then the current one. `directory` is the pattern's
/// directory as given, with its separator, or empty; `below` is the path from there, with a `/` after
/// each name.
using DirectoryVisit = std::function<void(const char* directory, const char* below)>;

/// Visits the current directory and, with /s, every directory below it, depth first. Hidden and
/// system ones are skipped, and so is a link that leads back to a directory above it in the walk.
/// Restores the current directory. False if a directory on the way back was moved or removed
/// meanwhile: the walk ends there, because it would continue in another directory.
bool WalkDirectories(const char* directory, const DirectoryVisit& visit);

/// Splits `gFilePattern` at its last separator, makes its directory the current one, walks from there
/// and restores the current directory; `gFilePattern` keeps the leaf. A directory that cannot be
/// entered is an empty walk. False as for `WalkDirectories`.
bool WalkFilePattern(const DirectoryVisit& visit);

/// The directory of a pattern, as `SetCurrentDirectoryA` takes it; empty for the current one. The root
/// of the file system or of a drive keeps its separator: "C:" would mean the current directory of that
/// drive.
String PatternDirectory(const char* pattern);

/// Whether an entry with these attributes is a file, and neither hidden nor a system file.
bool IsFileOfWalk(DWORD attributes);
/// The same for a directory.
bool IsDirectoryOfWalk(DWORD attributes);
