#pragma once

#include <string>
#include <vector>

/// The version of Landlock, by which the kernel limits what files a process may use; 0 if it has none.
int LandlockVersion();

/// The newest version whose rights are known here. Rights of later ones stay with the process.
inline constexpr int kNewestLandlock = 6;

/// Limits the files of this process, for good, to those below these directories: `readable` to be read, `writable`
/// also to be made, written, replaced and removed. All other files, further kinds of files such as links and pipes,
/// and from version 4 on connections by TCP and from version 6 on signals to others, are refused. Directories are
/// absolute; a readable one that is not there is left out. `version` is at most that of the kernel. Gives what
/// failed; empty if the limits are in force.
std::string LimitFiles(const std::vector<std::string>& readable,
                       const std::vector<std::string>& writable, int version);
