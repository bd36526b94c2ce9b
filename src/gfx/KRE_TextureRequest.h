#pragma once

#include <cstdint>

#include <d3d9.h>

#include "base/String.h"

/// A load of a texture whose flags have been read.
struct KRE_TextureRequest {
    D3DCOLOR colorKey = 0; ///< made transparent; 0 is none
    bool stretch = true;   ///< the picture may be resampled to the texture's size
    int32_t mode = 0;      ///< of `LoadTexture`, without its flags
    DWORD usage = 0;
    D3DPOOL pool = D3DPOOL_MANAGED;
    int32_t format = -1;   ///< a D3DFORMAT, -1 to choose by the file
    int32_t mipLevels = 1; ///< 0 is the full chain
};

/// Whether a name means a video source rather than a file.
bool IsVideoName(const String& name);

/// The extension of a list of frames.
inline constexpr const char* kFrameListExtension = ".ifl";
