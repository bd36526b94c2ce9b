#include "platform/headless/d3dx/SurfaceReader.h"

namespace headless {

SurfaceReader::~SurfaceReader()
{
    if (locked)
        locked->UnlockRect();
}

HRESULT SurfaceReader::Open(IDirect3DSurface9& surface)
{
    const HRESULT result = surface.GetDesc(&desc);
    if (FAILED(result) || !FindPixelFormat(desc.Format))
        return D3DERR_INVALIDCALL;
    if (FAILED(surface.LockRect(&rect, nullptr, D3DLOCK_READONLY)))
        return OpenCopy(surface);
    locked = decltype(locked)::Share(&surface);
    return D3D_OK;
}

HRESULT SurfaceReader::OpenCopy(IDirect3DSurface9& surface)
{
    ComPointer<IDirect3DDevice9> device;
    ComPointer<IDirect3DSurface9> copy;
    HRESULT result = surface.GetDevice(device.Out());
    if (SUCCEEDED(result))
        result = device->CreateOffscreenPlainSurface(desc.Width, desc.Height, desc.Format,
                                                     D3DPOOL_SYSTEMMEM, copy.Out(), nullptr);
    if (SUCCEEDED(result))
        result = device->GetRenderTargetData(&surface, copy.Get());
    if (SUCCEEDED(result))
        result = copy->LockRect(&rect, nullptr, D3DLOCK_READONLY);
    if (SUCCEEDED(result))
        locked = decltype(locked)::Share(copy.Get());
    return result;
}

PixelSource SurfaceReader::Source() const
{
    return {FindPixelFormat(desc.Format), desc.Width, desc.Height, rect.pBits,
            static_cast<size_t>(rect.Pitch)};
}

} // namespace headless
