#pragma once

#include <cstddef>
#include <cstdio>

/// As `fopen` with the name taken exactly. Where a signal may interrupt a call, writing to the stream and closing it
/// go on; what is only read has to be read by `ReadStream`. Null with `errno` set. The caller closes the stream.
FILE* OpenHostStream(const char* path, const char* mode);

/// As `fread` of bytes, but goes on after a signal that interrupts it.
size_t ReadStream(FILE* stream, void* bytesOut, size_t size);

/// As `fclose`: false with `errno` set if what was written could not be stored. A signal that interrupts it is no
/// failure, because the stream is closed all the same.
bool CloseStream(FILE* stream);

/// The same for standard input, output and error: to be called first in `main`.
void MakeStandardStreamsSteady();
