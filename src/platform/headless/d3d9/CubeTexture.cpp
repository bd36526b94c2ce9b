#include "platform/headless/d3d9/CubeTexture.h"

#include <algorithm>
#include <new>

namespace headless {

HeadlessCubeTexture::HeadlessCubeTexture(ResourceOwner& textureOwner, const D3DSURFACE_DESC& desc)
    : TextureOf(textureOwner, desc)
{
    picture.kind = TextureKind::Cube;
}

HeadlessCubeTexture* HeadlessCubeTexture::Create(ResourceOwner& owner, const D3DSURFACE_DESC& desc,
                                                 UINT levels)
{
    std::unique_ptr<HeadlessCubeTexture> texture(new (std::nothrow)
                                                     HeadlessCubeTexture(owner, desc));
    if (!texture)
        return nullptr;
    const bool lockable = IsLockableTexture(desc.Pool, desc.Usage);
    for (UINT i = 0; i < levels * kCubeFaces; ++i) {
        D3DSURFACE_DESC levelDesc = desc;
        levelDesc.Width = levelDesc.Height = std::max(1u, desc.Width >> i % levels);
        auto surface = HeadlessSurface::CreateLevel(*texture, levelDesc, lockable);
        if (!surface)
            return nullptr;
        texture->picture.levels.push_back(&surface->Picture());
        texture->surfaces.push_back(std::move(surface));
    }
    return texture.release();
}

HeadlessSurface* HeadlessCubeTexture::Find(D3DCUBEMAP_FACES face, UINT level) const
{
    const auto number = static_cast<UINT>(face);
    if (number >= kCubeFaces || level >= LevelCount())
        return nullptr;
    return surfaces[size_t{number} * LevelCount() + level].get();
}

HRESULT HeadlessCubeTexture::GetLevelDesc(UINT level, D3DSURFACE_DESC* descOut)
{
    const HeadlessSurface* surface = Find(D3DCUBEMAP_FACE_POSITIVE_X, level);
    if (!surface || !descOut)
        return D3DERR_INVALIDCALL;
    *descOut = surface->Desc();
    return D3D_OK;
}

HRESULT HeadlessCubeTexture::GetCubeMapSurface(D3DCUBEMAP_FACES face, UINT level,
                                               IDirect3DSurface9** surfaceOut)
{
    HeadlessSurface* surface = Find(face, level);
    if (!surface || !surfaceOut)
        return D3DERR_INVALIDCALL;
    surface->AddRef();
    *surfaceOut = surface;
    return D3D_OK;
}

HRESULT HeadlessCubeTexture::LockRect(D3DCUBEMAP_FACES face, UINT level, D3DLOCKED_RECT* lockedOut,
                                      const RECT* rect, DWORD flags)
{
    HeadlessSurface* surface = Find(face, level);
    return surface ? surface->LockRect(lockedOut, rect, flags) : D3DERR_INVALIDCALL;
}

HRESULT HeadlessCubeTexture::UnlockRect(D3DCUBEMAP_FACES face, UINT level)
{
    HeadlessSurface* surface = Find(face, level);
    return surface ? surface->UnlockRect() : D3DERR_INVALIDCALL;
}

HRESULT HeadlessCubeTexture::AddDirtyRect(D3DCUBEMAP_FACES face, const RECT* dirtyRect)
{
    HeadlessSurface* surface = Find(face, 0);
    if (!surface || (dirtyRect && !IsValidArea(surface->Pixels(), *dirtyRect)))
        return D3DERR_INVALIDCALL;
    return D3D_OK;
}

} // namespace headless
