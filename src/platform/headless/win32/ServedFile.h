#pragma once

#include <cstddef>
#include <cstdio>

namespace headless {

/// A file that this process has read already: its bytes, which outlive the object. Streams that are opened with
/// "rb" by exactly this path read them from memory, without a call of the system. Such a stream has no
/// descriptor, so nobody can ask it for the time of the file. It needs its buffer: without one, it would be read
/// byte by byte.
struct ServedFile {
    const char* path;
    const char* bytes;
    size_t size; ///< 0: the file is opened like all others
};

/// Serves a file while it lives; one at a time.
class ServingFile {
public:
    explicit ServingFile(const ServedFile& served);
    ~ServingFile();
    ServingFile(const ServingFile&) = delete;
    ServingFile& operator=(const ServingFile&) = delete;

private:
    ServedFile file;
};

/// The file that is served; null if there is none.
const ServedFile* FileToServe();

/// A stream over the bytes of a file; null if there is no memory for it.
FILE* StreamOf(const ServedFile& file);

} // namespace headless
