#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>

struct FileStreamCloser {
    void operator()(FILE* stream) const { std::fclose(stream); }
};

/// A buffered stream that is closed with its owner.
using FileStream = std::unique_ptr<FILE, FileStreamCloser>;

/// Size in bytes, with the position put back to the start. -1 if it cannot be told or does not fit
/// int32.
int32_t MeasureStream(FILE* stream);
