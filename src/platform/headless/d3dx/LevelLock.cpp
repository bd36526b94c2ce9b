#include "platform/headless/d3dx/LevelLock.h"

namespace headless {

LevelLock::LevelLock(IDirect3DTexture9& lockedTexture, UINT lockedLevel, DWORD flags)
    : texture(lockedTexture),
      level(lockedLevel),
      result(texture.GetLevelDesc(level, &desc))
{
    if (SUCCEEDED(result) && !FindPixelFormat(desc.Format))
        result = D3DERR_INVALIDCALL;
    if (SUCCEEDED(result))
        result = texture.LockRect(level, &locked, nullptr, flags);
}

LevelLock::~LevelLock()
{
    if (SUCCEEDED(result))
        texture.UnlockRect(level);
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
