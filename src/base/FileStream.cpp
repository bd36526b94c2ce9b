#include "base/FileStream.h"

int32_t MeasureStream(FILE* stream)
{
    if (std::fseek(stream, 0, SEEK_END) != 0)
        return -1;
    const long end = std::ftell(stream);
    if (std::fseek(stream, 0, SEEK_SET) != 0)
        return -1;
    // `long` has 32 bits on one host, where too large a file gives -1 by itself.
    const int32_t size = static_cast<int32_t>(end);
    return size == end && size >= 0 ? size : -1;
}
