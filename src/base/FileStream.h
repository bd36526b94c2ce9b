#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>

struct FileStreamCloser {
    void operator()(FILE* stream) const { std::fclose(stream); }
};

/// A buffered stream; its owner closes it.
using FileStream = std::unique_ptr<FILE, FileStreamCloser>;

/// Size in bytes; resets the position to the start. -1 if the size is unknown or does not fit in
/// int32.
int32_t MeasureStream(FILE* stream);
