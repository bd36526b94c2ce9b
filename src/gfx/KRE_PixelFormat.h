#pragma once

#include <cstdint>

#include <d3d9.h>

/// Turns a canonical colour (A8R8G8B8) into the bits of a pixel, and back.
using EncodePixel = DWORD (*)(D3DCOLOR color);
using DecodePixel = D3DCOLOR (*)(DWORD pixel);

/// How the pixels of a picture are stored.
struct KRE_PixelFormat {
    D3DFORMAT format;
    int32_t bytesPerPixel; ///< 0 for block formats, whose pixels have no bytes of their own
    EncodePixel encode;
    DecodePixel decode;
};

/// The entry of a format, or null for one whose pixels the engine does not read.
const KRE_PixelFormat* LookUpPixelFormat(D3DFORMAT format);

/// Whether a picture is stored in compressed blocks of 4 by 4 pixels: DXT1 to DXT5.
bool IsBlockFormat(D3DFORMAT format);
