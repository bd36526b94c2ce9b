#pragma once

#include <string>

#include <ctime>

namespace headless {

/// Removes the temporary files that ended processes have left in a directory; its path includes the
/// separator, or is empty for the current one. Those of other hosts, whose processes cannot be seen, are
/// removed if nothing was written to them for 24 hours before `now`, a time of the file system's clock; 0 leaves
/// them. Does nothing if the directory is the last one that was cleaned: a run over many files does not read
/// it for each of them.
void RemoveAbandoned(const std::string& directory, time_t now);

} // namespace headless
