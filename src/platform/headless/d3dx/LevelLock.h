#pragma once

#include "platform/headless/d3dx/PixelCopy.h"

namespace headless {

/// Locks one level of a texture for its own lifetime.
class LevelLock {
public:
    LevelLock(IDirect3DTexture9& lockedTexture, UINT lockedLevel, DWORD flags);
    ~LevelLock();
    LevelLock(const LevelLock&) = delete;
    LevelLock& operator=(const LevelLock&) = delete;

    /// The device's result of the lock; the pictures below are valid only if it succeeded.
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
