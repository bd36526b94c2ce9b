#pragma once

#include <cstddef>
#include <cstdint>

#include <d3d9.h>

namespace headless {

// The single table of pixel formats: sizes, channel layouts, and the conversions between a stored
// pixel, an 8-bit A8R8G8B8 colour and four floats. Loaders, surfaces and the rasterizer all convert
// here.

/// A colour as the fixed-function pipeline sees it: 0..1, or -1..1 for signed formats.
struct Float4 {
    float r;
    float g;
    float b;
    float a;
};

enum class PixelKind : uint8_t {
    Colour,     ///< red, green, blue, optional alpha, each a run of bits in one word
    Luminance,  ///< one grey channel, optional alpha
    Signed,     ///< two's complement channels, for bump mapping
    Compressed, ///< blocks of 4 by 4 pixels
    Depth,      ///< depth, optional stencil
};

/// `bits` bits of the pixel's word, starting at bit `shift`; 0 bits: absent. A word of 1, 2 or 4 bytes has
/// the order of memory, one of 3 bytes has its lowest first; files have the lowest first in all.
struct PixelChannel {
    uint8_t shift;
    uint8_t bits;
};

/// One row of the table. For `Luminance` the grey channel is `r`; for `Depth`, `r` is the depth and
/// `a` the stencil; for `Signed`, `r` and `g` are U and V.
struct PixelFormat {
    D3DFORMAT format;
    PixelKind kind;
    uint8_t unitBytes; ///< of one pixel, or of one block for `Compressed`
    PixelChannel a, r, g, b;

    bool HasAlpha() const { return kind == PixelKind::Compressed || a.bits != 0; }
    /// Side of the square stored in `unitBytes`: 4 for `Compressed`, else 1.
    UINT UnitSide() const { return kind == PixelKind::Compressed ? 4 : 1; }
};

/// The row of `format`, or null if the host does not know the format.
const PixelFormat* FindPixelFormat(D3DFORMAT format);

/// Bytes of one row of pixels or blocks, without padding.
size_t RowBytes(const PixelFormat& format, UINT width);

/// Rows of a picture in memory: `height`, or its number of block rows.
UINT RowCount(const PixelFormat& format, UINT height);

/// Bytes of a whole picture without padding. Cannot overflow for sides up to 65,535.
size_t ImageBytes(const PixelFormat& format, UINT width, UINT height);

/// Converts one stored pixel to A8R8G8B8. Channels of n bits become round(value * 255 / (2^n - 1));
/// a missing alpha is 255; luminance is copied to all three colours; negative signed values become
/// 0. Gives 0 for `Compressed` and `Depth`.
uint32_t UnpackArgb(const PixelFormat& format, const void* pixel);

/// The reverse: each channel is round(value * (2^n - 1) / 255); luminance is 0.2125 red + 0.7154
/// green + 0.0721 blue; unused bits (X) are set to 1. Stores nothing for `Compressed` and `Depth`.
void PackArgb(const PixelFormat& format, uint32_t argb, void* pixelOut);

/// Like `UnpackArgb`, but without quantising to 8 bits.
Float4 UnpackFloat4(const PixelFormat& format, const void* pixel);

/// Like `PackArgb`; values are clamped to the channel's range, NaN becomes 0.
void PackFloat4(const PixelFormat& format, const Float4& colour, void* pixelOut);

/// Converts a whole picture, compressed formats included, to tightly packed A8R8G8B8. `pitchBytes`
/// is the stride between rows (or rows of blocks) in `bits`, at least `RowBytes`. For `Depth`
/// returns false and writes nothing.
bool UnpackImage(const PixelFormat& format, UINT width, UINT height, const void* bits,
                 size_t pitchBytes, uint32_t* argbOut);

/// The reverse. Blocks that extend past the right or bottom edge repeat the last column and row.
bool PackImage(const PixelFormat& format, UINT width, UINT height, const uint32_t* argb,
               void* bitsOut, size_t pitchBytes);

/// Packs depth 0..1 (clamped, NaN becomes 0) and stencil into the stored word of a `Depth` format;
/// depth is rounded to the nearest step. Formats without stencil ignore it.
uint32_t PackDepth(const PixelFormat& format, float depth, uint32_t stencil);

/// The bits of a stored word that hold depth, and those that hold stencil.
uint32_t DepthMask(const PixelFormat& format);
uint32_t StencilMask(const PixelFormat& format);

/// Loads and stores one pixel's word, `unitBytes` long, at any alignment.
uint32_t LoadPixelWord(const PixelFormat& format, const void* pixel);
void StorePixelWord(const PixelFormat& format, uint32_t word, void* pixelOut);

} // namespace headless
