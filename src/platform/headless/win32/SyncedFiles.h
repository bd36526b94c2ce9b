#pragma once

#include <string>

namespace headless {

/// Whether a file that replaces another one is on the disk with its name before it counts as replaced, so that both
/// outlast a loss of power. False until a program that promises this sets it; waiting for the disk takes its time.
extern bool gSyncsReplacements;

/// Waits until the names in a directory are on the disk; an empty path is the current one. False with `errno`.
bool SyncDirectory(const std::string& path);

/// Waits until the names of a directory and of all those above it are on the disk, as a new directory is one only with
/// its name. Those that may not be opened, which a process like this one cannot have made, are left out. False with
/// `errno`.
bool SyncNamesAbove(const std::string& path);

} // namespace headless
