#include "platform/headless/d3d9/Texture.h"

#include <algorithm>
#include <new>

namespace headless {

HeadlessTexture::HeadlessTexture(ResourceOwner& textureOwner, const D3DSURFACE_DESC& desc)
    : TextureOf(textureOwner, desc),
      dirty{0, 0, static_cast<LONG>(desc.Width), static_cast<LONG>(desc.Height)}
{}

HeadlessTexture* HeadlessTexture::Create(ResourceOwner& owner, const D3DSURFACE_DESC& desc,
                                         UINT levels)
{
    std::unique_ptr<HeadlessTexture> texture(new (std::nothrow) HeadlessTexture(owner, desc));
    if (!texture)
        return nullptr;
    const bool lockable = IsLockableTexture(desc.Pool, desc.Usage);
    D3DSURFACE_DESC levelDesc = desc;
    for (UINT i = 0; i < levels; ++i) {
        auto level = HeadlessSurface::CreateLevel(*texture, levelDesc, lockable);
        if (!level)
            return nullptr;
        texture->picture.levels.push_back(&level->Picture());
        texture->levels.push_back(std::move(level));
        levelDesc.Width = std::max(1u, levelDesc.Width / 2);
        levelDesc.Height = std::max(1u, levelDesc.Height / 2);
    }
    return texture.release();
}

HRESULT HeadlessTexture::GetLevelDesc(UINT level, D3DSURFACE_DESC* descOut)
{
    if (level >= levels.size() || !descOut)
        return D3DERR_INVALIDCALL;
    *descOut = levels[level]->Desc();
    return D3D_OK;
}

HRESULT HeadlessTexture::GetSurfaceLevel(UINT level, IDirect3DSurface9** surfaceLevelOut)
{
    if (level >= levels.size() || !surfaceLevelOut)
        return D3DERR_INVALIDCALL;
    levels[level]->AddRef();
    *surfaceLevelOut = levels[level].get();
    return D3D_OK;
}

HRESULT HeadlessTexture::LockRect(UINT level, D3DLOCKED_RECT* lockedOut, const RECT* rect,
                                  DWORD flags)
{
    if (level >= levels.size())
        return D3DERR_INVALIDCALL;
    return levels[level]->LockRect(lockedOut, rect, flags);
}

HRESULT HeadlessTexture::UnlockRect(UINT level)
{
    if (level >= levels.size())
        return D3DERR_INVALIDCALL;
    return levels[level]->UnlockRect();
}

HRESULT HeadlessTexture::AddDirtyRect(const RECT* dirtyRect)
{
    const RECT area = dirtyRect ? *dirtyRect : levels[0]->Pixels().Bounds();
    if (!IsValidArea(levels[0]->Pixels(), area))
        return D3DERR_INVALIDCALL;
    MarkDirty(*levels[0], area);
    return D3D_OK;
}

void HeadlessTexture::MarkDirty(const HeadlessSurface& level, const RECT& area)
{
    if (&level != levels[0].get())
        return;
    if (dirty.left >= dirty.right) {
        dirty = area;
        return;
    }
    dirty = {std::min(dirty.left, area.left), std::min(dirty.top, area.top),
             std::max(dirty.right, area.right), std::max(dirty.bottom, area.bottom)};
}

RECT HeadlessTexture::TakeDirtyArea()
{
    const RECT area = dirty;
    dirty = {};
    return area;
}

} // namespace headless
