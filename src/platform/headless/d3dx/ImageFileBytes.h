#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "platform/headless/d3dx/ImageCodec.h"

namespace headless {

/// The bytes of a whole file, read in one go.
class ImageFileBytes {
public:
    /// `D3DXERR_INVALIDDATA` if the file is missing, a directory, unreadable, empty or above 1 GiB;
    /// `E_OUTOFMEMORY` if it does not fit in memory.
    HRESULT Read(const char* path);

    ImageFile Bytes() const { return {bytes.get(), size}; }

private:
    std::unique_ptr<uint8_t[]> bytes;
    size_t size = 0;
};

} // namespace headless
