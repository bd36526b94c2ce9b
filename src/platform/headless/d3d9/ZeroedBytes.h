#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>

namespace headless {

struct FreeBytes {
    void operator()(uint8_t* bytes) const { std::free(bytes); }
};

/// Zeroed bytes, or null if memory runs out. They come from `calloc`, which provides large blocks
/// without touching them: a picture that is overwritten at once is not zeroed first.
using ZeroedBytes = std::unique_ptr<uint8_t[], FreeBytes>;

/// Gives back what is kept for speed alone; false if there was none. Null as long as nothing is kept.
inline bool (*gFreeSpareMemory)() = nullptr;

inline ZeroedBytes AllocateZeroed(size_t count)
{
    auto* bytes = static_cast<uint8_t*>(std::calloc(count, 1));
    if (!bytes && gFreeSpareMemory && gFreeSpareMemory())
        bytes = static_cast<uint8_t*>(std::calloc(count, 1));
    return ZeroedBytes(bytes);
}

} // namespace headless
