#include <d3dx9.h>

#include "platform/ComPointer.h"
#include "platform/headless/d3d9/CallLog.h"
#include "platform/headless/d3d9/ComObject.h"

#include <new>

namespace headless {

namespace {

constexpr IID kRenderToSurfaceId = {
    0x6985F346, 0x2C3D, 0x43B3, {0xBE, 0x8B, 0xDA, 0xAE, 0x8A, 0x03, 0xD8, 0x94}};

class RenderToSurface final : public ComObject<ID3DXRenderToSurface, kRenderToSurfaceId> {
public:
    RenderToSurface(IDirect3DDevice9& owner, const D3DXRTS_DESC& wanted) : desc(wanted)
    {
        device = decltype(device)::Share(&owner);
    }

    HRESULT STDMETHODCALLTYPE GetDevice(IDirect3DDevice9** deviceOut) override;
    HRESULT STDMETHODCALLTYPE GetDesc(D3DXRTS_DESC* descOut) override;
    HRESULT STDMETHODCALLTYPE BeginScene(IDirect3DSurface9* surface,
                                         const D3DVIEWPORT9* viewport) override;
    HRESULT STDMETHODCALLTYPE EndScene(DWORD mipFilter) override;
    HRESULT STDMETHODCALLTYPE OnLostDevice() override;
    HRESULT STDMETHODCALLTYPE OnResetDevice() override;

private:
    bool Fits(IDirect3DSurface9& surface) const;
    HRESULT Direct(IDirect3DSurface9& surface, const D3DVIEWPORT9* viewport);
    HRESULT MakeDepthSurface();
    void Remember();
    void Restore();

    ComPointer<IDirect3DDevice9> device;
    D3DXRTS_DESC desc;
    bool inScene = false;
    ComPointer<IDirect3DSurface9> depthSurface; // created at the first draw, if requested

    // The device's own objects, saved while a scene is drawn.
    ComPointer<IDirect3DSurface9> savedTarget;
    ComPointer<IDirect3DSurface9> savedDepth;
    D3DVIEWPORT9 savedViewport = {};
};

HRESULT RenderToSurface::GetDevice(IDirect3DDevice9** deviceOut)
{
    if (!deviceOut)
        return D3DERR_INVALIDCALL;
    device->AddRef();
    *deviceOut = device.Get();
    return D3D_OK;
}

HRESULT RenderToSurface::GetDesc(D3DXRTS_DESC* descOut)
{
    if (!descOut)
        return D3DERR_INVALIDCALL;
    *descOut = desc;
    return D3D_OK;
}

bool RenderToSurface::Fits(IDirect3DSurface9& surface) const
{
    D3DSURFACE_DESC target;
    return SUCCEEDED(surface.GetDesc(&target)) && target.Width == desc.Width &&
           target.Height == desc.Height && target.Format == desc.Format;
}

bool IsRenderTarget(IDirect3DSurface9& surface)
{
    D3DSURFACE_DESC target;
    return SUCCEEDED(surface.GetDesc(&target)) && (target.Usage & D3DUSAGE_RENDERTARGET) != 0;
}

bool FitsInto(const D3DVIEWPORT9& viewport, UINT width, UINT height)
{
    return viewport.X <= width && viewport.Width <= width - viewport.X && viewport.Y <= height &&
           viewport.Height <= height - viewport.Y;
}

HRESULT RenderToSurface::BeginScene(IDirect3DSurface9* surface, const D3DVIEWPORT9* viewport)
{
    if (inScene || !surface || !Fits(*surface) ||
        (viewport && !FitsInto(*viewport, desc.Width, desc.Height)))
        return D3DERR_INVALIDCALL;
    // UNMODELLED: surfaces that cannot be drawn to, which would need an intermediate one.
    if (!IsRenderTarget(*surface))
        return Unmodelled("ID3DXRenderToSurface::BeginScene", surface, viewport);

    Remember();
    HRESULT result = Direct(*surface, viewport);
    if (SUCCEEDED(result))
        result = device->BeginScene();
    if (FAILED(result)) {
        Restore();
        return result;
    }
    inScene = true;
    return D3D_OK;
}

HRESULT RenderToSurface::Direct(IDirect3DSurface9& surface, const D3DVIEWPORT9* viewport)
{
    HRESULT result = desc.DepthStencil ? MakeDepthSurface() : D3D_OK;
    if (SUCCEEDED(result))
        result = device->SetRenderTarget(0, &surface); // sets the viewport to the whole surface
    if (SUCCEEDED(result))
        result = device->SetDepthStencilSurface(depthSurface.Get());
    if (SUCCEEDED(result) && viewport)
        result = device->SetViewport(viewport);
    return result;
}

HRESULT RenderToSurface::MakeDepthSurface()
{
    if (depthSurface)
        return D3D_OK;
    return device->CreateDepthStencilSurface(desc.Width, desc.Height, desc.DepthStencilFormat,
                                             D3DMULTISAMPLE_NONE, 0, FALSE, depthSurface.Out(),
                                             nullptr);
}

HRESULT RenderToSurface::EndScene(DWORD)
{
    if (!inScene)
        return D3DERR_INVALIDCALL;
    inScene = false;
    const HRESULT result = device->EndScene();
    Restore();
    return result;
}

// A device without a depth surface answers "not found"; null is restored then.
void RenderToSurface::Remember()
{
    device->GetRenderTarget(0, savedTarget.Out());
    device->GetDepthStencilSurface(savedDepth.Out());
    device->GetViewport(&savedViewport);
}

void RenderToSurface::Restore()
{
    if (savedTarget)
        device->SetRenderTarget(0, savedTarget.Get());
    device->SetDepthStencilSurface(savedDepth.Get());
    device->SetViewport(&savedViewport);
    savedTarget.Free();
    savedDepth.Free();
}

HRESULT RenderToSurface::OnLostDevice()
{
    inScene = false;
    savedTarget.Free();
    savedDepth.Free();
    depthSurface.Free();
    return D3D_OK;
}

HRESULT RenderToSurface::OnResetDevice()
{
    return desc.DepthStencil ? MakeDepthSurface() : D3D_OK;
}

} // namespace

} // namespace headless

using namespace headless;

HRESULT WINAPI D3DXCreateRenderToSurface(IDirect3DDevice9* device, UINT width, UINT height,
                                         D3DFORMAT format, BOOL depthStencil,
                                         D3DFORMAT depthStencilFormat,
                                         ID3DXRenderToSurface** renderToSurfaceOut)
{
    if (!device || !renderToSurfaceOut)
        return D3DERR_INVALIDCALL;
    const D3DXRTS_DESC desc = {width, height, format, depthStencil, depthStencilFormat};
    *renderToSurfaceOut = new (std::nothrow) RenderToSurface(*device, desc);
    return *renderToSurfaceOut ? D3D_OK : E_OUTOFMEMORY;
}
