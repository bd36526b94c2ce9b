#pragma once

#include "platform/headless/d3dx/ImageCodec.h"

namespace headless {

// One pair of functions per kind of file. `Is...` checks only the first bytes. `Decode...` fills
// the info and, unless `infoOnly`, the pixels, whose words are in the order of files.

bool IsPng(ImageFile file);
HRESULT DecodePng(ImageFile file, bool infoOnly, DecodedImage& imageOut);

bool IsJpeg(ImageFile file);
HRESULT DecodeJpeg(ImageFile file, bool infoOnly, DecodedImage& imageOut);

bool IsDds(ImageFile file);
HRESULT DecodeDds(ImageFile file, bool infoOnly, DecodedImage& imageOut);

bool IsBmp(ImageFile file);
HRESULT DecodeBmp(ImageFile file, bool infoOnly, DecodedImage& imageOut);

bool IsPnm(ImageFile file);
HRESULT DecodePnm(ImageFile file, bool infoOnly, DecodedImage& imageOut);

/// TGA has no signature: true if the header is plausible.
bool IsTga(ImageFile file);
HRESULT DecodeTga(ImageFile file, bool infoOnly, DecodedImage& imageOut);

/// True if a picture may have these sides.
constexpr bool IsImageSize(uint64_t width, uint64_t height)
{
    return width >= 1 && height >= 1 && width <= kMaxImageSide && height <= kMaxImageSide;
}

/// The info of a plain picture without mip levels.
D3DXIMAGE_INFO PlainImageInfo(UINT width, UINT height, D3DFORMAT format,
                              D3DXIMAGE_FILEFORMAT fileFormat);

/// Little-endian numbers at `offset`, which the caller has checked against the file size.
constexpr uint16_t ReadU16(ImageFile file, size_t offset)
{
    return static_cast<uint16_t>(file[offset] | file[offset + 1] << 8);
}

constexpr uint32_t ReadU32(ImageFile file, size_t offset)
{
    return ReadU16(file, offset) | static_cast<uint32_t>(ReadU16(file, offset + 2)) << 16;
}

/// Widens a channel of `bits` bits, at most 16, to 8 bits, rounded.
constexpr uint32_t WidenTo8Bits(uint32_t value, unsigned bits)
{
    const uint32_t most = (1u << bits) - 1;
    return (value * 255 + most / 2) / most;
}

} // namespace headless
