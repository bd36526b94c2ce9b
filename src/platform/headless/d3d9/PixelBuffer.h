#pragma once

#include "platform/headless/d3d9/PixelFormat.h"
#include "platform/headless/d3d9/ZeroedBytes.h"

namespace headless {

/// The memory of one picture. Rows are padded to four bytes.
struct PixelBuffer {
    const PixelFormat* format = nullptr; ///< a row of the table
    UINT width = 0;
    UINT height = 0;
    std::size_t pitchBytes = 0; ///< from one row of pixels, or of blocks, to the next
    ZeroedBytes bytes;
    /// Goes up with every change of the contents, so that copies made of them know when they are old.
    std::uint32_t changes = 0;

    /// Takes zeroed memory; false, and nothing held, if there is none.
    bool Allocate(const PixelFormat& pixelFormat, UINT pixelWidth, UINT pixelHeight);

    /// The pixel, or the block that holds it. The place must be inside the picture.
    std::uint8_t* At(UINT x, UINT y);
    const std::uint8_t* At(UINT x, UINT y) const;

    RECT Bounds() const { return {0, 0, static_cast<LONG>(width), static_cast<LONG>(height)}; }
};

/// Where the pixels of an uncompressed picture are, for loops that touch many of them.
struct PixelRows {
    std::uint8_t* bytes = nullptr; ///< not owned
    std::size_t pitchBytes = 0;
    std::size_t pixelBytes = 0;

    PixelRows() = default;
    explicit PixelRows(PixelBuffer& pixels)
        : bytes(pixels.bytes.get()),
          pitchBytes(pixels.pitchBytes),
          pixelBytes(pixels.format->unitBytes)
    {}

    /// The place must be inside the picture.
    std::uint8_t* At(int x, int y) const
    {
        return bytes + static_cast<std::size_t>(y) * pitchBytes +
               static_cast<std::size_t>(x) * pixelBytes;
    }
};

/// True if `rect` is not empty, lies inside the picture and, for compressed formats, begins and ends
/// at borders of blocks or at the border of the picture.
bool IsValidArea(const PixelBuffer& pixels, const RECT& rect);

/// Copies an area of equal format, byte by byte. Both areas must be valid; source and destination may
/// not be the same picture.
void CopyArea(const PixelBuffer& from, const RECT& area, PixelBuffer& to, UINT x, UINT y);

/// Scales and converts an area of colours into another; `linear` takes the four nearest pixels by
/// distance, else the nearest one. Both formats must be plain colours.
void StretchArea(const PixelBuffer& from, const RECT& fromArea, PixelBuffer& to, const RECT& toArea,
                 bool linear);

/// Writes one stored word to every pixel of a valid area of an uncompressed picture. Only the bits of
/// `mask` change.
void FillArea(PixelBuffer& pixels, const RECT& area, std::uint32_t word, std::uint32_t mask);

} // namespace headless
