#pragma once

struct stat;

namespace headless {

/// Told of each file that is opened for reading, or that would be if it was there: the path as asked
/// for, and what was opened; null if nothing could be. So whoever keeps results of a conversion knows
/// all files that it depends on. Null: nobody is told.
extern void (*gLookupSink)(const char* path, const struct stat* found);

/// Whether only regular files are opened for reading, and without waiting for anything: a pipe or a device then
/// counts as missing. False until a process that reads files of strangers sets it.
extern bool gRegularFilesOnly;

/// Whether a file can be opened for reading under this rule.
bool IsReadableFile(const char* hostPath);

} // namespace headless
