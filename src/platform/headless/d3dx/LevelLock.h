#pragma once

#include "platform/headless/d3dx/PixelCopy.h"

namespace headless {

/// A level of a texture that is locked as long as this lives.
class LevelLock {
public:
    LevelLock(IDirect3DTexture9& lockedTexture, UINT lockedLevel, DWORD flags);
    ~LevelLock();
    LevelLock(const LevelLock&) = delete;
    LevelLock& operator=(const LevelLock&) = delete;

    /// The device's answer to the lock; the pictures below are there only if it is a success.
    HRESULT Result() const { return result; }

    PixelTarget Target() const;
    PixelSource Source() const;

private:
    IDirect3DTexture9& texture; // not owned
    UINT level;
    D3DSURFACE_DESC desc = {};
    D3DLOCKED_RECT locked = {};
    HRESULT result;
};

} // namespace headless
