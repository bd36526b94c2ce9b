#pragma once

#include <cstdio>

/// Opens a file by a path as given in scene files and command lines. `mode` is that of `fopen`. On
/// every host `\` and `/` both separate, and case is ignored if the exact name does not exist. A
/// mode that creates the file uses exactly this name on hosts where names may differ in case only.
/// Returns null with `errno` set if the file cannot be opened; this includes directories. The
/// caller closes the stream.
FILE* OpenFileStream(const char* path, const char* mode);
