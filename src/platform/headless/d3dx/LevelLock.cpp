#include "platform/headless/d3dx/LevelLock.h"

namespace headless {

LevelLock::LevelLock(IDirect3DTexture9& texture, UINT level, DWORD flags)
    : result(texture.GetSurfaceLevel(level, surface.Out()))
{
    Lock(flags);
}

LevelLock::LevelLock(IDirect3DCubeTexture9& cube, D3DCUBEMAP_FACES face, UINT level, DWORD flags)
    : result(cube.GetCubeMapSurface(face, level, surface.Out()))
{
    Lock(flags);
}

void LevelLock::Lock(DWORD flags)
{
    if (SUCCEEDED(result))
        result = surface->GetDesc(&desc);
    if (SUCCEEDED(result) && !FindPixelFormat(desc.Format))
        result = D3DERR_INVALIDCALL;
    if (SUCCEEDED(result))
        result = surface->LockRect(&locked, nullptr, flags);
}

LevelLock::~LevelLock()
{
    if (SUCCEEDED(result))
        surface->UnlockRect();
}

PixelTarget LevelLock::Target() const
{
    return {FindPixelFormat(desc.Format), desc.Width, desc.Height, locked.pBits,
            static_cast<size_t>(locked.Pitch)};
}

PixelSource LevelLock::Source() const
{
    return {FindPixelFormat(desc.Format), desc.Width, desc.Height, locked.pBits,
            static_cast<size_t>(locked.Pitch)};
}

} // namespace headless
