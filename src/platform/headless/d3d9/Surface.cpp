#include "platform/headless/d3d9/Surface.h"

#include "platform/headless/d3d9/CallLog.h"

#include <new>

namespace headless {

class HeadlessSurface::OwnLife final : public ResourceLife {
public:
    OwnLife(ResourceOwner& surfaceOwner, D3DPOOL surfacePool,
            std::unique_ptr<HeadlessSurface> ownedSurface)
        : ResourceLife(surfaceOwner, ObjectKind::Surface, surfacePool),
          surface(std::move(ownedSurface))
    {}

private:
    const std::unique_ptr<HeadlessSurface> surface;
};

HeadlessSurface::HeadlessSurface(const D3DSURFACE_DESC& surfaceDesc, bool isLockable)
    : desc(surfaceDesc),
      lockable(isLockable)
{}

HeadlessSurface::~HeadlessSurface() = default;

HeadlessSurface* HeadlessSurface::Create(ResourceOwner& owner, const D3DSURFACE_DESC& desc,
                                         bool lockable)
{
    std::unique_ptr<HeadlessSurface> surface(new (std::nothrow) HeadlessSurface(desc, lockable));
    if (!surface ||
        !surface->picture.pixels.Allocate(*FindPixelFormat(desc.Format), desc.Width, desc.Height))
        return nullptr;
    HeadlessSurface* result = surface.get();
    result->ownLife = new (std::nothrow) OwnLife(owner, desc.Pool, std::move(surface));
    return result->ownLife ? result : nullptr;
}

std::unique_ptr<HeadlessSurface>
HeadlessSurface::CreateLevel(TextureObject& texture, const D3DSURFACE_DESC& desc, bool lockable)
{
    std::unique_ptr<HeadlessSurface> surface(new (std::nothrow) HeadlessSurface(desc, lockable));
    if (!surface ||
        !surface->picture.pixels.Allocate(*FindPixelFormat(desc.Format), desc.Width, desc.Height))
        return nullptr;
    surface->texture = &texture;
    return surface;
}

ResourceLife& HeadlessSurface::Life() const
{
    if (texture)
        return *texture;
    return *ownLife;
}

ResourceOwner& HeadlessSurface::GetOwner() const
{
    return Life().Owner();
}

ULONG HeadlessSurface::AddRef()
{
    return Life().AddReference();
}

ULONG HeadlessSurface::Release()
{
    return Life().RemoveReference();
}

void HeadlessSurface::AddBinding()
{
    Life().AddBinding();
}

void HeadlessSurface::RemoveBinding()
{
    Life().RemoveBinding();
}

HRESULT HeadlessSurface::GetContainer(REFIID iid, void** containerOut)
{
    if (!containerOut)
        return D3DERR_INVALIDCALL;
    if (texture)
        return texture->Interface().QueryInterface(iid, containerOut);
    return GetOwner().DeviceInterface().QueryInterface(iid, containerOut);
}

HRESULT HeadlessSurface::GetDesc(D3DSURFACE_DESC* descOut)
{
    if (!descOut)
        return D3DERR_INVALIDCALL;
    *descOut = desc;
    return D3D_OK;
}

HRESULT HeadlessSurface::LockRect(D3DLOCKED_RECT* lockedOut, const RECT* rect, DWORD flags)
{
    if (!lockedOut)
        return D3DERR_INVALIDCALL;
    *lockedOut = {};
    constexpr DWORD kContradiction = D3DLOCK_READONLY | D3DLOCK_DISCARD;
    if (!lockable || locked || (flags & kContradiction) == kContradiction)
        return D3DERR_INVALIDCALL;
    const RECT area = rect ? *rect : picture.pixels.Bounds();
    if (rect && !IsValidArea(picture.pixels, area))
        return D3DERR_INVALIDCALL;
    if (picture.pixels.isBlank)
        return Unmodelled("Reading a picture without an audience");
    locked = true;
    writesWhileLocked = (flags & D3DLOCK_READONLY) == 0;
    picture.pixels.changes += writesWhileLocked ? 1 : 0;
    if (texture && (flags & (D3DLOCK_READONLY | D3DLOCK_NO_DIRTY_UPDATE)) == 0)
        texture->MarkDirty(*this, area);
    lockedOut->Pitch = static_cast<INT>(picture.pixels.pitchBytes);
    lockedOut->pBits = picture.pixels.At(static_cast<UINT>(area.left), static_cast<UINT>(area.top));
    return D3D_OK;
}

HRESULT HeadlessSurface::UnlockRect()
{
    if (!locked)
        return D3DERR_INVALIDCALL;
    locked = false;
    picture.pixels.changes += writesWhileLocked ? 1 : 0;
    return D3D_OK;
}

HRESULT HeadlessSurface::GetDC(HDC* dcOut)
{
    return Unmodelled("GetDC", dcOut);
}

HRESULT HeadlessSurface::ReleaseDC(HDC dc)
{
    return Unmodelled("ReleaseDC", dc);
}

} // namespace headless
