#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include <d3dx9.h>

namespace headless {

/// Longest side of a picture, in pixels. Larger pictures are refused.
inline constexpr UINT kMaxImageSide = 16384;

/// Levels in the full chain of the largest picture.
inline constexpr UINT kMaxImageLevels = 15;

using ImageFile = std::span<const uint8_t>;

/// One mip level, of a cube's first face or a volume's first slice: `bits` is its first byte, `pitchBytes` the
/// stride between rows (of blocks).
struct ImageLevel {
    UINT width;
    UINT height;
    size_t pitchBytes;
    const uint8_t* bits; // not owned, in the file or in the picture's own memory
};

/// A picture from a file. Its levels may point into the file's bytes, which must then outlive it.
struct DecodedImage {
    D3DXIMAGE_INFO info = {};
    /// The format of the stored pixels. Differs from `info.Format` for palette files, whose pixels
    /// are already A8R8G8B8.
    D3DFORMAT format = D3DFMT_UNKNOWN;
    ImageLevel levels[kMaxImageLevels] = {};
    /// How many faces of a cube the file has, and from a level of one to that of the next one. The slices
    /// of a volume's level follow each other without a gap.
    UINT faceCount = 1;
    size_t faceBytes = 0;
    std::unique_ptr<uint8_t[]> memory;

    /// Bytes of all pixels, which follow each other.
    size_t StoredBytes() const;
    /// Allocates one level of the size in `info`, rows of `RowBytes` without padding,
    /// uninitialised. Null if memory runs out.
    uint8_t* Allocate(D3DFORMAT pixelFormat);
};

/// Reads the header of an image file. The content determines the kind: PNG, JPEG, DDS, BMP, binary
/// PPM and PGM, TGA. `D3DXERR_INVALIDDATA` for anything else, and for a header that declares more
/// than the file can hold.
///
/// `Format` is X8R8G8B8 for 24-bit pictures, A8R8G8B8 if there is alpha, P8 for palettes, L8 for
/// grey, and the file's own for DDS and for 16-bit TGA and BMP.
HRESULT ReadImageInfo(ImageFile file, D3DXIMAGE_INFO& infoOut);

/// Reads header and pixels. A truncated or damaged file is refused with `D3DXERR_INVALIDDATA`,
/// never shown in part; `E_OUTOFMEMORY` if the pixels do not fit in memory.
HRESULT DecodeImage(ImageFile file, DecodedImage& imageOut);

/// Brings the pixels of all levels, faces and slices from the order of files to that of memory, which is `order`.
/// Pixels that lie in the file get memory of their own if they change. Compressed formats, and those of 1 and 3 bytes,
/// are the same in both orders. `E_OUTOFMEMORY` if the memory cannot be had.
HRESULT PutInMemoryOrder(std::endian order, DecodedImage& imageInOut);

} // namespace headless
