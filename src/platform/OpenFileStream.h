#pragma once

#include <cstdio>

/// Opens a file by a path as scene files and command lines give it. `mode` is that of `fopen`.
/// On every host `\` and `/` both separate, and letter case does not matter where the exact name
/// does not exist. A mode that makes the file makes it under exactly this name, where names that
/// differ in case can stand side by side. Gives null with `errno` set when the file cannot be opened, which includes a
/// directory. The caller closes the stream.
FILE* OpenFileStream(const char* path, const char* mode);
