#pragma once

#include <cstdint>

#include <d3d9.h>

/// Bytes in one 4x4 block of a format that `ReadBlockPixel` reads; 0 for other formats.
int32_t BlockSize(D3DFORMAT format);

/// The colour of the pixel in column `x` and row `y`, 0 to 3 each, of a DXT1 or DXT5 block.
/// QUIRK: a DXT1 block always reads as four colours, even where its first colour does not exceed
/// its second; and every pixel of a DXT5 block gets the block's first alpha end point. Both are
/// good enough to tell whether a picture has real alpha.
D3DCOLOR ReadBlockPixel(D3DFORMAT format, const uint8_t* block, int32_t x, int32_t y);
