#pragma once

#include "platform/ComPointer.h"
#include "platform/headless/d3dx/PixelCopy.h"

namespace headless {

/// Locks one level of a texture, or of a face of a cube, for its own lifetime.
class LevelLock {
public:
    LevelLock(IDirect3DTexture9& texture, UINT level, DWORD flags);
    LevelLock(IDirect3DCubeTexture9& cube, D3DCUBEMAP_FACES face, UINT level, DWORD flags);
    ~LevelLock();
    LevelLock(const LevelLock&) = delete;
    LevelLock& operator=(const LevelLock&) = delete;

    /// The device's result of the lock; the pictures below are valid only if it succeeded.
    HRESULT Result() const { return result; }

    PixelTarget Target() const;
    PixelSource Source() const;

private:
    void Lock(DWORD flags);

    ComPointer<IDirect3DSurface9> surface;
    D3DSURFACE_DESC desc = {};
    D3DLOCKED_RECT locked = {};
    HRESULT result;
};

} // namespace headless
