#pragma once

#include <cstdint>
#include <cstdio>

/// Opens a file by a path as given in scene files and command lines. `mode` is that of `fopen`. On
/// every host `\` and `/` both separate, and case is ignored if the exact name does not exist. A
/// mode that creates the file uses exactly this name on hosts where names may differ in case only.
/// Returns null with `errno` set if the file cannot be opened; this includes directories. The
/// caller closes the stream. One opened with "wb" may have no buffer: write to it in large pieces.
/// `sizeOut`, if not null, becomes the bytes of a file that is opened for reading, which saves the caller the
/// way to its end and back; -1 if the host does not know: for a pipe, and for a file that is created. Who
/// asks for it reads in large pieces: a stream opened with "rb" may have no buffer then, either.
FILE* OpenFileStream(const char* path, const char* mode, int64_t* sizeOut = nullptr);
