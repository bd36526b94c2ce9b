#pragma once

#include <cstdint>

#include <d3d9.h>

#include "platform/ComPointer.h"

class KRE_Surface;

/// A picture that the program fills anew each time it is drawn, reached under the file name
/// ">>Video" and the number of its entry. Who wants one sets callback, width and height before a
/// texture of it is loaded.
struct KRE_VideoSource {
    /// Fills the pixels of `surface`, which lives for the call only.
    using Update = void (*)(KRE_Surface* surface, uint32_t userWord);

    Update update = nullptr;
    uint32_t userWord = 0;                 ///< handed to `update`
    ComPointer<IDirect3DTexture9> texture; ///< made by the first load; one reference of its own
    int32_t width = 0;                     ///< pixels
    int32_t height = 0;
    /// Of the texture; unknown leaves it to the load, whose default is the back buffer's.
    D3DFORMAT format = D3DFMT_UNKNOWN;
};
