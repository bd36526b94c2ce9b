#include "gfx/KRE_BlockPixel.h"

#include "gfx/KRE_PixelFormat.h"

static constexpr int32_t kColorBlockSize = 8; // also the whole of a DXT1 block

static DWORD ReadWord(const uint8_t* bytes)
{
    return static_cast<DWORD>(bytes[0] | bytes[1] << 8);
}

/// Two thirds of `closer` and one third of `other`, rounded, for each of red, green and blue.
static D3DCOLOR Mix(D3DCOLOR closer, D3DCOLOR other)
{
    D3DCOLOR mixed = 0xFF000000;
    for (int shift = 0; shift < 24; shift += 8) {
        const D3DCOLOR channel = (2 * (closer >> shift & 0xFF) + (other >> shift & 0xFF) + 1) / 3;
        mixed |= channel << shift;
    }
    return mixed;
}

static D3DCOLOR ReadColor(const uint8_t* block, int32_t x, int32_t y)
{
    const DecodePixel decode = LookUpPixelFormat(D3DFMT_R5G6B5)->decode;
    const D3DCOLOR first = decode(ReadWord(block));
    const D3DCOLOR second = decode(ReadWord(block + 2));
    // Each row of codes is one byte, its leftmost pixel in the lowest bits.
    switch (block[4 + y] >> (x * 2) & 3) {
    case 0:
        return first;
    case 1:
        return second;
    case 2:
        return Mix(first, second);
    default:
        return Mix(second, first);
    }
}

int32_t BlockSize(D3DFORMAT format)
{
    if (format == D3DFMT_DXT1)
        return kColorBlockSize;
    return format == D3DFMT_DXT5 ? 2 * kColorBlockSize : 0;
}

D3DCOLOR ReadBlockPixel(D3DFORMAT format, const uint8_t* block, int32_t x, int32_t y)
{
    if (format == D3DFMT_DXT1)
        return ReadColor(block, x, y);
    const D3DCOLOR alpha = block[0];
    return alpha << 24 | (ReadColor(block + kColorBlockSize, x, y) & 0xFFFFFF);
}
