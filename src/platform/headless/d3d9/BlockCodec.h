#pragma once

#include <cstdint>

#include <d3d9.h>

namespace headless {

// The five DXT formats, one block of 4 by 4 pixels at a time. DXT2 and DXT4 are stored like DXT3 and
// DXT5; that their colours are multiplied by alpha is the business of who draws them.

/// Sixteen A8R8G8B8 pixels, row by row, from one block. Colours of a block widen to 8 bits first; the
/// two between are (2 * near + far + 1) / 3, or in the three-colour mode of DXT1 (c0 + c1) / 2 and
/// transparent black.
void DecodeBlock(D3DFORMAT format, const std::uint8_t* block, std::uint32_t* argbOut);

/// The reverse, near-best: end points along the principal axis of the colours, refined once by least
/// squares. DXT1 takes the three-colour mode when a pixel's alpha is below 128.
/// The same input gives the same bytes on every machine.
void EncodeBlock(D3DFORMAT format, const std::uint32_t* argb, std::uint8_t* blockOut);

} // namespace headless
