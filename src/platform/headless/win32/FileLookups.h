#pragma once

struct stat;

namespace headless {

/// Told of each file that is opened for reading, or that would be if it was there: the path as asked
/// for, and what was opened; null if nothing could be. So whoever keeps results of a conversion knows
/// all files that it depends on. Null: nobody is told.
extern void (*gLookupSink)(const char* path, const struct stat* found);

} // namespace headless
