#pragma once

#include "base/String.h"

#include <functional>
#include <windows.h>

/// What is done in each directory of a walk, which is the current one by then. `directory` is the
/// pattern's own as it was given, with its separator, or empty; `below` is the way from there, each
/// name with a `/` behind it.
using DirectoryVisit = std::function<void(const char* directory, const char* below)>;

/// Visits the current directory and, under /s, every directory below it, depth first. Hidden and
/// system ones are left out, and so is a link that leads back to a directory on the way down.
/// The current directory is the one from before on return. False if a directory on the way back was
/// moved or removed meanwhile: the walk ends there, as the names below would be those of another one.
bool WalkDirectories(const char* directory, const DirectoryVisit& visit);

/// Splits `gFilePattern` at its last separator, makes its directory the current one, walks from there
/// and returns to the directory from before; `gFilePattern` keeps the leaf. A directory that cannot be
/// entered is an empty walk. False as for `WalkDirectories`.
bool WalkFilePattern(const DirectoryVisit& visit);

/// The directory that a pattern is looked for in, as `SetCurrentDirectoryA` takes it; empty for the
/// current one. The root of the file system or of a drive keeps its separator: "C:" would be the
/// directory that is the current one there.
String PatternDirectory(const char* pattern);

/// An entry with these attributes is a file that is neither hidden nor the system's.
bool IsFileOfWalk(DWORD attributes);
/// The same for a directory.
bool IsDirectoryOfWalk(DWORD attributes);
