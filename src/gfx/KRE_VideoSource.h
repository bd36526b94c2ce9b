#pragma once

#include <cstdint>

#include <d3d9.h>

#include "platform/ComPointer.h"

class KRE_Surface;

/// A picture that the program refills each time it is drawn, addressed by the file name ">>Video"
/// and the number of its entry. The embedding program sets callback, width and height before a
/// texture of it is loaded.
struct KRE_VideoSource {
    /// Fills the pixels of `surface`, which is valid during the call only.
    using Update = void (*)(KRE_Surface* surface, uint32_t userWord);

    Update update = nullptr;
    uint32_t userWord = 0;                 ///< passed to `update`
    ComPointer<IDirect3DTexture9> texture; ///< made by the first load; holds a reference of its own
    int32_t width = 0;                     ///< pixels
    int32_t height = 0;
    /// Format of the texture; if unknown, the load chooses, by default the back buffer's.
    D3DFORMAT format = D3DFMT_UNKNOWN;
};
