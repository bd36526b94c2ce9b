#pragma once

#include <d3d9.h>

namespace headless {

/// Red, green, blue and alpha as 0..1.
inline void UnpackColour(D3DCOLOR colour, float (&partsOut)[4])
{
    const int shifts[] = {16, 8, 0, 24};
    for (int c = 0; c < 4; ++c)
        partsOut[c] = static_cast<float>(colour >> shifts[c] & 0xFF) / 255.0f;
}

} // namespace headless
