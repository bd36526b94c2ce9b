#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include <d3dx9.h>

namespace headless {

/// Longest side of a picture, in pixels. What claims to be larger is refused.
inline constexpr UINT kMaxImageSide = 16384;

/// Levels of the full chain of the largest picture.
inline constexpr UINT kMaxImageLevels = 15;

using ImageFile = std::span<const std::uint8_t>;

/// One mip level: `bits` is its first byte, `pitchBytes` the distance of two rows (of blocks).
struct ImageLevel {
    UINT width;
    UINT height;
    std::size_t pitchBytes;
    const std::uint8_t* bits; // not owned, in the file or in the picture's own memory
};

/// A picture out of a file. Its levels may point into the file's bytes, which must then outlive it.
struct DecodedImage {
    D3DXIMAGE_INFO info = {};
    /// What the pixels are stored as. Differs from `info.Format` for palette files, whose pixels are
    /// A8R8G8B8 already.
    D3DFORMAT format = D3DFMT_UNKNOWN;
    ImageLevel levels[kMaxImageLevels] = {};
    std::unique_ptr<std::uint8_t[]> memory;

    /// Takes memory for one level of the size in `info`, rows of `RowBytes` without padding. Gives
    /// null when there is not enough. The bytes are not set.
    std::uint8_t* Allocate(D3DFORMAT pixelFormat);
};

/// Reads the header of an image file. The kind is told by the content: PNG, JPEG, DDS, BMP, binary
/// PPM and PGM, TGA. `D3DXERR_INVALIDDATA` for anything else, and for a header that promises more
/// than the file can hold.
///
/// `Format` is X8R8G8B8 for 24-bit pictures, A8R8G8B8 where there is alpha, P8 for palettes, L8 for
/// grey, the file's own for DDS and for 16-bit TGA and BMP.
HRESULT ReadImageInfo(ImageFile file, D3DXIMAGE_INFO& infoOut);

/// Reads header and pixels. A file that is cut short or damaged is refused with
/// `D3DXERR_INVALIDDATA`, never shown in part; `E_OUTOFMEMORY` if the pixels do not fit in memory.
HRESULT DecodeImage(ImageFile file, DecodedImage& imageOut);

} // namespace headless
