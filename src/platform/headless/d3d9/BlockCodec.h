#pragma once

#include <cstdint>

#include <d3d9.h>

namespace headless {

// The five DXT formats, one block of 4 by 4 pixels at a time. DXT2 and DXT4 are stored like DXT3
// and DXT5; whoever draws them must allow for colours premultiplied by alpha.

/// Decodes one block into sixteen A8R8G8B8 pixels, row by row. The colours of a block are first
/// widened to 8 bits; the two interpolated ones are (2 * near + far + 1) / 3, or in the
/// three-colour mode of DXT1 (c0 + c1) / 2 and transparent black.
void DecodeBlock(D3DFORMAT format, const uint8_t* block, uint32_t* argbOut);

/// Encodes a block, close to optimal: end points along the principal axis of the colours, refined
/// once by least squares. DXT1 uses three-colour mode if any pixel's alpha is below 128.
/// The same input gives the same bytes on every machine.
void EncodeBlock(D3DFORMAT format, const uint32_t* argb, uint8_t* blockOut);

} // namespace headless
