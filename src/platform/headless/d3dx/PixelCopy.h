#pragma once

#include <cstddef>

#include <d3dx9.h>

#include "platform/headless/d3d9/PixelFormat.h"

namespace headless {

/// A picture in memory to read from. Neither pointer is owned.
struct PixelSource {
    const PixelFormat* format;
    UINT width;
    UINT height;
    const void* bits;
    size_t pitchBytes; ///< stride between rows, or rows of blocks
};

/// A picture in memory to write to. Neither pointer is owned.
struct PixelTarget {
    const PixelFormat* format;
    UINT width;
    UINT height;
    void* bits;
    size_t pitchBytes;
};

/// Checks a filter argument against the published values. `D3DX_DEFAULT` becomes `fallback`.
/// Unknown filters and flags, and the flags that this host does not model (sRGB, error diffusion),
/// give `D3DERR_INVALIDCALL`.
HRESULT CheckFilter(DWORD filter, DWORD fallback, DWORD& filterOut);

/// Converts and scales a picture. `filter` has passed `CheckFilter`. With a `colorKey` other than
/// 0, pixels that match it in all four channels become transparent black before scaling; the alpha
/// of formats without it counts as 255. If neither format nor size changes, the bytes are copied
/// unchanged.
HRESULT CopyPixels(const PixelTarget& target, const PixelSource& source, DWORD filter,
                   D3DCOLOR colorKey);

} // namespace headless
