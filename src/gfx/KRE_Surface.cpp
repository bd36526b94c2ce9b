#include "gfx/KRE_Surface.h"

#include <utility>

#include "gfx/DirectXErrorName.h"
#include "gfx/KRE_ResourceManager.h"

KRE_Surface::KRE_Surface()
{
    SetClassName("KRE_Surface");
}

KRE_Surface::~KRE_Surface()
{
    Free();
}

void KRE_Surface::SetSurface(ComPointer<IDirect3DSurface9> newSurface)
{
    Free();
    surface = std::move(newSurface);
    if (surface)
        InitFormat();
}

void KRE_Surface::InitFormat()
{
    lastResult = surface->GetDesc(&desc);
    if (FAILED(lastResult))
        Error("GetDesc failed: %s", DirectXErrorName(lastResult));
    width = static_cast<int32_t>(desc.Width);
    height = static_cast<int32_t>(desc.Height);
    rect = {0, 0, width, height};
    alphaState = -1;
    KRE_SurfaceBase::InitFormat(desc.Format);
}

void KRE_Surface::Free()
{
    const bool isLastUser = !manager || manager->Unacquire(resourceId);
    if (!isLastUser)
        surface.Detach(); // the reference belongs to the users that remain
    surface.Free();
    resourceId = -1;
    width = 0;
    height = 0;
    rect = {};
    EndLock();
}

void KRE_Surface::GetSize(SIZE* sizeOut) const
{
    sizeOut->cx = width;
    sizeOut->cy = height;
}

void KRE_Surface::Lock(const RECT* area, DWORD flags)
{
    D3DLOCKED_RECT bits = {};
    lastResult = surface ? surface->LockRect(&bits, area, flags) : D3DERR_INVALIDCALL;
    if (FAILED(lastResult))
        Error("LockRect failed: %s", DirectXErrorName(lastResult));
    BeginLock(bits, area, SIZE{width, height});
}

void KRE_Surface::Unlock()
{
    lastResult = surface ? surface->UnlockRect() : D3DERR_INVALIDCALL;
    EndLock();
    if (FAILED(lastResult))
        Error("UnlockRect failed: %s", DirectXErrorName(lastResult));
}
