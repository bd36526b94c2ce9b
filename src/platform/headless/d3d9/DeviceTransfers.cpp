// Copying between pictures, filling and clearing them.

#include "platform/headless/d3d9/Audience.h"
#include "platform/headless/d3d9/Device.h"

#include <algorithm>

namespace headless {

namespace {

HeadlessSurface& AsSurface(IDirect3DSurface9* surface)
{
    return static_cast<HeadlessSurface&>(*surface);
}

bool IsEmpty(const RECT& rect)
{
    return rect.left >= rect.right || rect.top >= rect.bottom;
}

RECT Intersect(const RECT& a, const RECT& b)
{
    return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
            std::min(a.bottom, b.bottom)};
}

bool SameSize(const RECT& a, const RECT& b)
{
    return a.right - a.left == b.right - b.left && a.bottom - a.top == b.bottom - b.top;
}

bool IsPlainColour(const PixelBuffer& pixels)
{
    return pixels.format->kind != PixelKind::Compressed && pixels.format->kind != PixelKind::Depth;
}

/// Render targets and stand-alone surfaces: what a device may draw or copy into. Texture levels
/// qualify only as render targets.
bool IsDrawable(const HeadlessSurface& surface)
{
    return (surface.Desc().Usage & D3DUSAGE_RENDERTARGET) != 0 || !surface.IsTextureLevel();
}

/// Copies the part of one level that matches a changed area of level 0, widened to whole blocks.
void CopyChangedLevel(const PixelBuffer& from, PixelBuffer& to, const RECT& changed, UINT shift)
{
    const auto side = static_cast<LONG>(from.format->UnitSide());
    const RECT bounds = from.Bounds();
    const LONG left = (changed.left >> shift) / side * side;
    const LONG top = (changed.top >> shift) / side * side;
    const LONG right = ((((changed.right - 1) >> shift) / side) + 1) * side;
    const LONG bottom = ((((changed.bottom - 1) >> shift) / side) + 1) * side;
    const RECT area = Intersect({left, top, right, bottom}, bounds);
    if (!IsEmpty(area))
        CopyArea(from, area, to, static_cast<UINT>(area.left), static_cast<UINT>(area.top));
}

void ClearPixels(PixelBuffer& pixels, const RECT& area, uint32_t word, uint32_t mask)
{
    if (HasAudience())
        FillArea(pixels, area, word, mask);
    else
        pixels.isBlank = true;
}

/// Depth is copied whole or not at all.
HRESULT CopyDepth(HeadlessSurface& from, HeadlessSurface& to, const RECT& fromArea,
                  const RECT& toArea, bool inScene)
{
    const bool whole = SameSize(fromArea, from.Pixels().Bounds()) &&
                       SameSize(toArea, to.Pixels().Bounds()) && SameSize(fromArea, toArea);
    if (inScene || !whole || from.Desc().Format != to.Desc().Format)
        return D3DERR_INVALIDCALL;
    CopyArea(from.Pixels(), fromArea, to.Pixels(), 0, 0);
    return D3D_OK;
}

} // namespace

/// Copies from system memory to the default pool, same format, no scaling.
HRESULT HeadlessDevice::UpdateSurface(IDirect3DSurface9* srcSurface, const RECT* srcRect,
                                      IDirect3DSurface9* dstSurface, const POINT* dstPoint)
{
    if (!srcSurface || !dstSurface)
        return D3DERR_INVALIDCALL;
    HeadlessSurface& from = AsSurface(srcSurface);
    HeadlessSurface& to = AsSurface(dstSurface);
    if (from.Desc().Pool != D3DPOOL_SYSTEMMEM || to.Desc().Pool != D3DPOOL_DEFAULT ||
        from.Desc().Format != to.Desc().Format || from.IsLocked() || to.IsLocked())
        return D3DERR_INVALIDCALL;
    const RECT area = srcRect ? *srcRect : from.Pixels().Bounds();
    if (!IsValidArea(from.Pixels(), area))
        return D3DERR_INVALIDCALL;
    const POINT place = dstPoint ? *dstPoint : POINT{0, 0};
    const PixelBuffer& target = to.Pixels();
    if (place.x < 0 || place.y < 0 || static_cast<UINT>(place.x) >= target.width ||
        static_cast<UINT>(place.y) >= target.height)
        return D3DERR_INVALIDCALL;
    const RECT landing = {place.x, place.y, place.x + area.right - area.left,
                          place.y + area.bottom - area.top};
    if (!IsValidArea(target, landing))
        return D3DERR_INVALIDCALL;
    CopyArea(from.Pixels(), area, to.Pixels(), static_cast<UINT>(place.x),
             static_cast<UINT>(place.y));
    return D3D_OK;
}

/// Copies what changed since the last call. From a source with more levels, the smaller ones are
/// taken. UNMODELLED: cubes and volumes.
HRESULT HeadlessDevice::UpdateTexture(IDirect3DBaseTexture9* sourceTexture,
                                      IDirect3DBaseTexture9* destinationTexture)
{
    if (!sourceTexture || !destinationTexture)
        return D3DERR_INVALIDCALL;
    if (sourceTexture->GetType() != D3DRTYPE_TEXTURE ||
        destinationTexture->GetType() != D3DRTYPE_TEXTURE)
        return Unmodelled("UpdateTexture", sourceTexture, destinationTexture);
    auto& from = static_cast<HeadlessTexture&>(*sourceTexture);
    auto& to = static_cast<HeadlessTexture&>(*destinationTexture);
    const UINT skip = from.GetLevelCount() - to.GetLevelCount();
    if (from.Pool() != D3DPOOL_SYSTEMMEM || to.Pool() != D3DPOOL_DEFAULT ||
        from.GetLevelCount() < to.GetLevelCount() ||
        from.Level(0).Desc().Format != to.Level(0).Desc().Format ||
        !SameSize(from.Level(skip).Pixels().Bounds(), to.Level(0).Pixels().Bounds()))
        return D3DERR_INVALIDCALL;
    const RECT changed = from.TakeDirtyArea();
    if (IsEmpty(changed))
        return D3D_OK;
    for (UINT level = 0; level < to.GetLevelCount(); ++level)
        CopyChangedLevel(from.Level(level + skip).Pixels(), to.Level(level).Pixels(), changed,
                         level + skip);
    return D3D_OK;
}

HRESULT HeadlessDevice::GetRenderTargetData(IDirect3DSurface9* renderTarget,
                                            IDirect3DSurface9* destSurface)
{
    if (!renderTarget || !destSurface)
        return D3DERR_INVALIDCALL;
    if (cooperation != Cooperation::Ok)
        return D3DERR_DEVICELOST;
    HeadlessSurface& from = AsSurface(renderTarget);
    HeadlessSurface& to = AsSurface(destSurface);
    if ((from.Desc().Usage & D3DUSAGE_RENDERTARGET) == 0 || to.Desc().Pool != D3DPOOL_SYSTEMMEM ||
        from.Desc().Format != to.Desc().Format || to.IsLocked() ||
        !SameSize(from.Pixels().Bounds(), to.Pixels().Bounds()))
        return D3DERR_INVALIDCALL;
    if (from.Pixels().isBlank)
        return Unmodelled("Reading a picture without an audience");
    CopyArea(from.Pixels(), from.Pixels().Bounds(), to.Pixels(), 0, 0);
    return D3D_OK;
}

/// Copies between surfaces of the default pool, scaling and converting colours. `D3DTEXF_NONE`
/// scales like `D3DTEXF_POINT`.
HRESULT HeadlessDevice::StretchRect(IDirect3DSurface9* srcSurface, const RECT* srcRect,
                                    IDirect3DSurface9* dstSurface, const RECT* dstRect,
                                    D3DTEXTUREFILTERTYPE filter)
{
    if (!srcSurface || !dstSurface || srcSurface == dstSurface || filter > D3DTEXF_LINEAR)
        return D3DERR_INVALIDCALL;
    HeadlessSurface& from = AsSurface(srcSurface);
    HeadlessSurface& to = AsSurface(dstSurface);
    const RECT fromArea = srcRect ? *srcRect : from.Pixels().Bounds();
    const RECT toArea = dstRect ? *dstRect : to.Pixels().Bounds();
    if (from.Desc().Pool != D3DPOOL_DEFAULT || to.Desc().Pool != D3DPOOL_DEFAULT ||
        from.IsLocked() || to.IsLocked() || !IsValidArea(from.Pixels(), fromArea) ||
        !IsValidArea(to.Pixels(), toArea))
        return D3DERR_INVALIDCALL;
    if ((from.Desc().Usage | to.Desc().Usage) & D3DUSAGE_DEPTHSTENCIL)
        return CopyDepth(from, to, fromArea, toArea, state.inScene);
    if (!IsDrawable(to))
        return D3DERR_INVALIDCALL;
    const bool sameFormat = from.Desc().Format == to.Desc().Format;
    if (sameFormat && SameSize(fromArea, toArea))
        CopyArea(from.Pixels(), fromArea, to.Pixels(), static_cast<UINT>(toArea.left),
                 static_cast<UINT>(toArea.top));
    else if (IsPlainColour(from.Pixels()) && IsPlainColour(to.Pixels()))
        StretchArea(from.Pixels(), fromArea, to.Pixels(), toArea, filter == D3DTEXF_LINEAR);
    else
        return D3DERR_INVALIDCALL;
    return D3D_OK;
}

HRESULT HeadlessDevice::ColorFill(IDirect3DSurface9* surface, const RECT* rect, D3DCOLOR color)
{
    if (!surface)
        return D3DERR_INVALIDCALL;
    HeadlessSurface& to = AsSurface(surface);
    const RECT area = rect ? *rect : to.Pixels().Bounds();
    if (to.Desc().Pool != D3DPOOL_DEFAULT || !IsDrawable(to) || !IsPlainColour(to.Pixels()) ||
        to.IsLocked() || !IsValidArea(to.Pixels(), area))
        return D3DERR_INVALIDCALL;
    uint32_t word = 0;
    PackArgb(*to.Pixels().format, color, &word);
    FillArea(to.Pixels(), area, word, 0xFFFFFFFF);
    return D3D_OK;
}

/// The area that a clear may touch: viewport, target and, if enabled, scissor rectangle
/// intersected.
RECT HeadlessDevice::ClearArea() const
{
    const D3DVIEWPORT9& viewport = state.viewport;
    RECT area = {static_cast<LONG>(viewport.X), static_cast<LONG>(viewport.Y),
                 static_cast<LONG>(viewport.X + viewport.Width),
                 static_cast<LONG>(viewport.Y + viewport.Height)};
    if (state.Render(D3DRS_SCISSORTESTENABLE))
        area = Intersect(area, state.scissor);
    return Intersect(area, state.renderTarget.Get()->Pixels().Bounds());
}

/// Rectangles are clipped and may be empty; a clear ignores the colour write mask.
HRESULT HeadlessDevice::Clear(DWORD rectCount, const D3DRECT* rects, DWORD flags, D3DCOLOR color,
                              float z, DWORD stencil)
{
    constexpr DWORD kKnown = D3DCLEAR_TARGET | D3DCLEAR_ZBUFFER | D3DCLEAR_STENCIL;
    HeadlessSurface* depth = state.depthSurface.Get();
    if ((rectCount == 0) != (rects == nullptr) || flags == 0 || (flags & ~kKnown))
        return D3DERR_INVALIDCALL;
    if ((flags & (D3DCLEAR_ZBUFFER | D3DCLEAR_STENCIL)) && !depth)
        return D3DERR_INVALIDCALL;
    if ((flags & D3DCLEAR_STENCIL) && StencilMask(*depth->Pixels().format) == 0)
        return D3DERR_INVALIDCALL;
    if ((flags & D3DCLEAR_ZBUFFER) && !(z >= 0.0f && z <= 1.0f))
        return D3DERR_INVALIDCALL;

    PixelBuffer& target = state.renderTarget.Get()->Pixels();
    uint32_t colourWord = 0;
    PackArgb(*target.format, color, &colourWord);
    const RECT limit = ClearArea();
    for (DWORD i = 0; i < std::max<DWORD>(rectCount, 1); ++i) {
        const RECT area =
            rects ? Intersect(limit, {rects[i].x1, rects[i].y1, rects[i].x2, rects[i].y2}) : limit;
        if (!IsEmpty(area) && (flags & D3DCLEAR_TARGET))
            ClearPixels(target, area, colourWord, 0xFFFFFFFF);
        if (!depth)
            continue;
        PixelBuffer& buffer = depth->Pixels();
        const RECT depthArea = Intersect(area, buffer.Bounds());
        const uint32_t mask = (flags & D3DCLEAR_ZBUFFER ? DepthMask(*buffer.format) : 0) |
                              (flags & D3DCLEAR_STENCIL ? StencilMask(*buffer.format) : 0);
        if (!IsEmpty(depthArea) && mask != 0)
            ClearPixels(buffer, depthArea, PackDepth(*buffer.format, z, stencil), mask);
    }
    return D3D_OK;
}

} // namespace headless
