#pragma once

#include "platform/headless/d3d9/PixelFormat.h"
#include "platform/headless/d3d9/ZeroedBytes.h"

namespace headless {

/// The memory of one picture. Rows are padded to a multiple of four bytes.
struct PixelBuffer {
    const PixelFormat* format = nullptr; ///< a row of the table
    UINT width = 0;
    UINT height = 0;
    size_t pitchBytes = 0; ///< from one row of pixels, or of blocks, to the next
    ZeroedBytes bytes;
    /// Incremented whenever the contents change, so that copies know when they are stale.
    uint32_t changes = 0;
    /// Something was to be drawn here that nobody looks at: the pixels are not what they should be.
    bool isBlank = false;

    /// Allocates zeroed memory; on failure returns false and holds none.
    bool Allocate(const PixelFormat& pixelFormat, UINT pixelWidth, UINT pixelHeight);

    /// The pixel, or the block that contains it. The position must be inside the picture.
    uint8_t* At(UINT x, UINT y);
    const uint8_t* At(UINT x, UINT y) const;

    RECT Bounds() const { return {0, 0, static_cast<LONG>(width), static_cast<LONG>(height)}; }
};

/// Fast access to the pixels of an uncompressed picture.
struct PixelRows {
    uint8_t* bytes = nullptr; ///< not owned
    size_t pitchBytes = 0;
    size_t pixelBytes = 0;

    PixelRows() = default;
    explicit PixelRows(PixelBuffer& pixels)
        : bytes(pixels.bytes.get()),
          pitchBytes(pixels.pitchBytes),
          pixelBytes(pixels.format->unitBytes)
    {}

    /// The position must be inside the picture.
    uint8_t* At(int x, int y) const
    {
        return bytes + static_cast<size_t>(y) * pitchBytes + static_cast<size_t>(x) * pixelBytes;
    }
};

/// True if `rect` is not empty, lies inside the picture and, for compressed formats, begins and
/// ends on block borders or at the edge of the picture.
bool IsValidArea(const PixelBuffer& pixels, const RECT& rect);

/// Copies an area byte by byte. Both areas must be valid and have the same format; source and
/// destination must be different pictures. What is taken from a blank picture is blank.
void CopyArea(const PixelBuffer& from, const RECT& area, PixelBuffer& to, UINT x, UINT y);

/// Scales and converts an area of colours into another; `linear` interpolates the four nearest
/// pixels, else the nearest one is taken. Both formats must be plain colours. What is taken from a blank
/// picture is blank.
void StretchArea(const PixelBuffer& from, const RECT& fromArea, PixelBuffer& to, const RECT& toArea,
                 bool linear);

/// Writes one stored word to every pixel of a valid area of an uncompressed picture. Only bits in
/// `mask` change.
void FillArea(PixelBuffer& pixels, const RECT& area, uint32_t word, uint32_t mask);

} // namespace headless
