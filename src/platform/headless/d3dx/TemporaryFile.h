#pragma once

#include <cstdio>

#include "platform/ReplacementFile.h"

namespace headless {

/// A file that appears under its name only once complete: it is written under a temporary name in
/// the same directory, and `Commit` renames it. Without `Commit` no file remains.
class TemporaryFile {
public:
    explicit TemporaryFile(const char* path);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    /// Null, with `errno` set, if the file could not be created.
    FILE* Stream() const { return stream; }

    /// Flushes, closes and renames. False if any of these fails; the target is then unchanged.
    bool Commit();

private:
    ReplacementFile file; // closed when it goes
    FILE* stream;         // owned, closed by `Commit` or the destructor
};

} // namespace headless
