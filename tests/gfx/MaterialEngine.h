#pragma once

#include "tests/gfx/EngineTest.h"

#include <string>
#include <vector>

/// An engine with one texture, whose maps the test sets, and a short notation for what a binding
/// sends.
class MaterialEngine : public EngineTest {
protected:
    MaterialEngine();

    /// Gives a slot a picture. The slot set last is the current one.
    IDirect3DTexture9* PutMap(int32_t slot, int32_t type, D3DFORMAT format = D3DFMT_X8R8G8B8);
    /// Makes the texture a sequence of two frames and shows the second.
    void PutFrames();
    /// A device texture with one reference for the caller.
    IDirect3DTexture9* MakePicture(D3DFORMAT format = D3DFMT_X8R8G8B8);

    /// The calls from binding the whole texture to a device of unknown state.
    std::vector<std::string> CallsOfBinding();
    /// The calls from repeating that binding, except the texture factor, which is always sent.
    std::vector<std::string> CallsOfRepeat();

    /// Expands short forms, one per line of `text`, to full lines of calls: `0 COLOROP ADD` and `1
    /// COLORARG1 CURRENT` are stage states, `0 TEXTURE first`, `second`, `frame` and `null` bind a
    /// picture, `FACTOR 0x80102030` sets the texture factor, and `ALPHABLENDENABLE 0` any other
    /// render state. Empty lines are left out.
    std::vector<std::string> Lines(const std::string& text);

    KRE_Texture texture;
};
