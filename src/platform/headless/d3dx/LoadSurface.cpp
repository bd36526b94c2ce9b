#include <d3dx9.h>

#include "platform/headless/d3dx/PixelRect.h"
#include "platform/headless/d3dx/SurfaceReader.h"

namespace headless {

namespace {

// Fills a rectangle of a lockable surface.
HRESULT LoadLockable(IDirect3DSurface9& target, const RECT& rect, const PixelSource& source,
                     DWORD filter, D3DCOLOR colorKey)
{
    D3DSURFACE_DESC desc;
    D3DLOCKED_RECT locked;
    HRESULT result = target.GetDesc(&desc);
    if (SUCCEEDED(result))
        result = target.LockRect(&locked, &rect, 0);
    if (FAILED(result))
        return result;

    const PixelTarget pixels = {
        FindPixelFormat(desc.Format), static_cast<UINT>(rect.right - rect.left),
        static_cast<UINT>(rect.bottom - rect.top), locked.pBits, static_cast<size_t>(locked.Pitch)};
    result = CopyPixels(pixels, source, filter, colorKey);
    target.UnlockRect();
    return result;
}

// Fills a rectangle of a surface in device memory via a surface in system memory.
HRESULT LoadThroughStaging(IDirect3DSurface9& target, const D3DSURFACE_DESC& desc, const RECT& rect,
                           const PixelSource& source, DWORD filter, D3DCOLOR colorKey)
{
    ComPointer<IDirect3DDevice9> device;
    ComPointer<IDirect3DSurface9> staging;
    const RECT whole = {0, 0, rect.right - rect.left, rect.bottom - rect.top};
    HRESULT result = target.GetDevice(device.Out());
    if (SUCCEEDED(result))
        result = device->CreateOffscreenPlainSurface(static_cast<UINT>(whole.right),
                                                     static_cast<UINT>(whole.bottom), desc.Format,
                                                     D3DPOOL_SYSTEMMEM, staging.Out(), nullptr);
    if (SUCCEEDED(result))
        result = LoadLockable(*staging.Get(), whole, source, filter, colorKey);
    if (FAILED(result))
        return result;
    const POINT corner = {rect.left, rect.top};
    return device->UpdateSurface(staging.Get(), nullptr, &target, &corner);
}

HRESULT LoadSurface(IDirect3DSurface9& target, const RECT* targetRect, const PixelSource& source,
                    DWORD filter, D3DCOLOR colorKey)
{
    D3DSURFACE_DESC desc;
    DWORD checked = 0;
    if (FAILED(target.GetDesc(&desc)) || !FindPixelFormat(desc.Format) ||
        FAILED(CheckFilter(filter, D3DX_FILTER_TRIANGLE | D3DX_FILTER_DITHER, checked)))
        return D3DERR_INVALIDCALL;
    const RECT whole = {0, 0, static_cast<LONG>(desc.Width), static_cast<LONG>(desc.Height)};
    const RECT rect = targetRect ? *targetRect : whole;
    if (!IsRectInside(rect, desc.Width, desc.Height))
        return D3DERR_INVALIDCALL;

    const HRESULT result = LoadLockable(target, rect, source, checked, colorKey);
    if (SUCCEEDED(result) || desc.Pool != D3DPOOL_DEFAULT)
        return result;
    return LoadThroughStaging(target, desc, rect, source, checked, colorKey);
}

} // namespace

} // namespace headless

using namespace headless;

HRESULT WINAPI D3DXLoadSurfaceFromMemory(IDirect3DSurface9* target, const PALETTEENTRY*,
                                         const RECT* targetRect, LPCVOID memory, D3DFORMAT format,
                                         UINT pitch, const PALETTEENTRY*, const RECT* sourceRect,
                                         DWORD filter, D3DCOLOR colorKey)
{
    const PixelFormat* layout = FindPixelFormat(format);
    if (!target || !memory || !sourceRect || !layout || sourceRect->right < 0 ||
        sourceRect->bottom < 0)
        return D3DERR_INVALIDCALL;
    // The source memory is assumed to extend as far as the rectangle; its size is not known.
    PixelSource source = {layout, static_cast<UINT>(sourceRect->right),
                          static_cast<UINT>(sourceRect->bottom), memory, pitch};
    if (!CropSource(source, *sourceRect))
        return D3DERR_INVALIDCALL;
    return LoadSurface(*target, targetRect, source, filter, colorKey);
}

HRESULT WINAPI D3DXLoadSurfaceFromSurface(IDirect3DSurface9* target, const PALETTEENTRY*,
                                          const RECT* targetRect, IDirect3DSurface9* source,
                                          const PALETTEENTRY*, const RECT* sourceRect, DWORD filter,
                                          D3DCOLOR colorKey)
{
    if (!target || !source || target == source)
        return D3DERR_INVALIDCALL;
    SurfaceReader reader;
    const HRESULT result = reader.Open(*source);
    if (FAILED(result))
        return result;
    PixelSource pixels = reader.Source();
    if (sourceRect && !CropSource(pixels, *sourceRect))
        return D3DERR_INVALIDCALL;
    return LoadSurface(*target, targetRect, pixels, filter, colorKey);
}
