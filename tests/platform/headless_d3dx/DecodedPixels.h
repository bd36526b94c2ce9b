#pragma once

#include "platform/headless/d3dx/ImageCodec.h"

#include <cstdint>
#include <string>
#include <vector>

/// The bytes of a test file in the form that the decoders take.
inline headless::ImageFile AsFile(const std::string& bytes)
{
    return {reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()};
}

/// Level 0 as A8R8G8B8; if the file is refused, returns nothing and sets `resultOut`.
std::vector<uint32_t> DecodedPixels(const std::string& bytes, HRESULT* resultOut = nullptr);

/// The format that `ReadImageInfo` reports for the file, `D3DFMT_UNKNOWN` if it is refused.
D3DFORMAT ReportedFormat(const std::string& bytes);

/// Whether header and pixels are both refused with `D3DXERR_INVALIDDATA`.
bool IsRefused(const std::string& bytes);
