#include "gfx/KRE_PixelFormat.h"

static DWORD AlphaOf(D3DCOLOR color)
{
    return color >> 24;
}

static DWORD RedOf(D3DCOLOR color)
{
    return color >> 16 & 0xFF;
}

static DWORD GreenOf(D3DCOLOR color)
{
    return color >> 8 & 0xFF;
}

static DWORD BlueOf(D3DCOLOR color)
{
    return color & 0xFF;
}

static D3DCOLOR Join(DWORD alpha, DWORD red, DWORD green, DWORD blue)
{
    return alpha << 24 | red << 16 | green << 8 | blue;
}

static DWORD AsIs(DWORD bits)
{
    return bits;
}

static DWORD Encode565(D3DCOLOR color)
{
    return RedOf(color) >> 3 << 11 | GreenOf(color) >> 2 << 5 | BlueOf(color) >> 3;
}

static D3DCOLOR Decode565(DWORD pixel)
{
    return Join(0xFF, pixel >> 8 & 0xF8, pixel >> 3 & 0xFC, pixel << 3 & 0xF8);
}

/// QUIRK: keeps the low bit of alpha, not the top one, so half-transparent pixels become
/// transparent or opaque depending on that bit; 0 and 255 come out right.
static DWORD Encode1555(D3DCOLOR color)
{
    return (AlphaOf(color) & 1) << 15 | RedOf(color) >> 3 << 10 | GreenOf(color) >> 3 << 5 |
           BlueOf(color) >> 3;
}

static D3DCOLOR Decode1555(DWORD pixel)
{
    return Join(pixel & 0x8000 ? 0xFF : 0, pixel >> 7 & 0xF8, pixel >> 2 & 0xF8, pixel << 3 & 0xF8);
}

static DWORD Encode4444(D3DCOLOR color)
{
    return AlphaOf(color) >> 4 << 12 | RedOf(color) >> 4 << 8 | GreenOf(color) >> 4 << 4 |
           BlueOf(color) >> 4;
}

static D3DCOLOR Decode4444(DWORD pixel)
{
    return Join(pixel >> 8 & 0xF0, pixel >> 4 & 0xF0, pixel & 0xF0, pixel << 4 & 0xF0);
}

static DWORD EncodeGrey(D3DCOLOR color)
{
    return (RedOf(color) + GreenOf(color) + BlueOf(color)) / 3;
}

static D3DCOLOR DecodeGrey(DWORD pixel)
{
    const DWORD grey = pixel & 0xFF;
    return Join(0xFF, grey, grey, grey);
}

static DWORD EncodeAlphaGrey(D3DCOLOR color)
{
    return AlphaOf(color) << 8 | EncodeGrey(color);
}

static D3DCOLOR DecodeAlphaGrey(DWORD pixel)
{
    const DWORD grey = pixel & 0xFF;
    return Join(pixel >> 8 & 0xFF, grey, grey, grey);
}

static constexpr KRE_PixelFormat kFormats[] = {
    {D3DFMT_R8G8B8, 3, AsIs, AsIs},
    {D3DFMT_A8R8G8B8, 4, AsIs, AsIs},
    {D3DFMT_X8R8G8B8, 4, AsIs, AsIs},
    {D3DFMT_R5G6B5, 2, Encode565, Decode565},
    {D3DFMT_A1R5G5B5, 2, Encode1555, Decode1555},
    {D3DFMT_A4R4G4B4, 2, Encode4444, Decode4444},
    {D3DFMT_L8, 1, EncodeGrey, DecodeGrey},
    {D3DFMT_A8L8, 2, EncodeAlphaGrey, DecodeAlphaGrey},
    {D3DFMT_D16, 2, AsIs, AsIs},
    {D3DFMT_DXT1, 0, AsIs, AsIs},
    {D3DFMT_DXT2, 0, AsIs, AsIs},
    {D3DFMT_DXT3, 0, AsIs, AsIs},
    {D3DFMT_DXT4, 0, AsIs, AsIs},
    {D3DFMT_DXT5, 0, AsIs, AsIs},
};

const KRE_PixelFormat* LookUpPixelFormat(D3DFORMAT format)
{
    for (const KRE_PixelFormat& entry : kFormats) {
        if (entry.format == format)
            return &entry;
    }
    return nullptr;
}

bool IsBlockFormat(D3DFORMAT format)
{
    const KRE_PixelFormat* entry = LookUpPixelFormat(format);
    return entry && entry->bytesPerPixel == 0;
}
