#include "tests/support/FakeDevice.h"

// Resources: created with their own memory and returned.

namespace {

// D3DERR_NOTFOUND and null if there is none, like the real device.
HRESULT GiveSurface(IDirect3DSurface9* surface, IDirect3DSurface9** surfaceOut)
{
    *surfaceOut = Shared(surface).release();
    return surface ? D3D_OK : D3DERR_NOTFOUND;
}

template <class Made, class Interface>
HRESULT GiveNew(ComHandle<Made> made, Interface** out)
{
    *out = made.release();
    return *out ? D3D_OK : D3DERR_INVALIDCALL;
}

} // namespace

HRESULT STDMETHODCALLTYPE FakeDevice::GetBackBuffer(UINT swapChain, UINT backBuffer,
                                                    D3DBACKBUFFER_TYPE,
                                                    IDirect3DSurface9** backBufferOut)
{
    return GiveSurface(swapChain == 0 && backBuffer == 0 ? backBufferSurface.get() : nullptr,
                       backBufferOut);
}

HRESULT STDMETHODCALLTYPE FakeDevice::CreateTexture(UINT width, UINT height, UINT levels,
                                                    DWORD usage, D3DFORMAT format, D3DPOOL pool,
                                                    IDirect3DTexture9** textureOut, HANDLE*)
{
    return GiveNew(FakeTexture::Create(this, width, height, levels, usage, format, pool),
                   textureOut);
}

HRESULT STDMETHODCALLTYPE FakeDevice::CreateVertexBuffer(UINT length, DWORD usage, DWORD fvf,
                                                         D3DPOOL pool,
                                                         IDirect3DVertexBuffer9** vertexBufferOut,
                                                         HANDLE*)
{
    return GiveNew(FakeVertexBuffer::Create(
                       this, {D3DFMT_VERTEXDATA, D3DRTYPE_VERTEXBUFFER, usage, pool, length, fvf}),
                   vertexBufferOut);
}

HRESULT STDMETHODCALLTYPE FakeDevice::CreateIndexBuffer(UINT length, DWORD usage, D3DFORMAT format,
                                                        D3DPOOL pool,
                                                        IDirect3DIndexBuffer9** indexBufferOut,
                                                        HANDLE*)
{
    return GiveNew(
        FakeIndexBuffer::Create(this, {format, D3DRTYPE_INDEXBUFFER, usage, pool, length}),
        indexBufferOut);
}

HRESULT STDMETHODCALLTYPE FakeDevice::CreateRenderTarget(UINT width, UINT height, D3DFORMAT format,
                                                         D3DMULTISAMPLE_TYPE multiSample,
                                                         DWORD quality, BOOL,
                                                         IDirect3DSurface9** surfaceOut, HANDLE*)
{
    return GiveNew(
        FakeSurface::Create(this, {format, D3DRTYPE_SURFACE, D3DUSAGE_RENDERTARGET, D3DPOOL_DEFAULT,
                                   multiSample, quality, width, height}),
        surfaceOut);
}

HRESULT STDMETHODCALLTYPE FakeDevice::CreateDepthStencilSurface(
    UINT width, UINT height, D3DFORMAT format, D3DMULTISAMPLE_TYPE multiSample, DWORD quality, BOOL,
    IDirect3DSurface9** surfaceOut, HANDLE*)
{
    return GiveNew(
        FakeSurface::Create(this, {format, D3DRTYPE_SURFACE, D3DUSAGE_DEPTHSTENCIL, D3DPOOL_DEFAULT,
                                   multiSample, quality, width, height}),
        surfaceOut);
}

HRESULT STDMETHODCALLTYPE FakeDevice::CreateOffscreenPlainSurface(UINT width, UINT height,
                                                                  D3DFORMAT format, D3DPOOL pool,
                                                                  IDirect3DSurface9** surfaceOut,
                                                                  HANDLE*)
{
    return GiveNew(FakeSurface::Create(this, {format, D3DRTYPE_SURFACE, 0, pool,
                                              D3DMULTISAMPLE_NONE, 0, width, height}),
                   surfaceOut);
}

HRESULT STDMETHODCALLTYPE FakeDevice::SetRenderTarget(DWORD index, IDirect3DSurface9* renderTarget)
{
    if (index == 0 && !renderTarget)
        return D3DERR_INVALIDCALL;
    renderTargets[index] = renderTarget;
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetRenderTarget(DWORD index,
                                                      IDirect3DSurface9** renderTargetOut)
{
    return GiveSurface(renderTargets[index], renderTargetOut);
}

HRESULT STDMETHODCALLTYPE FakeDevice::SetDepthStencilSurface(IDirect3DSurface9* surface)
{
    depthStencil = surface;
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetDepthStencilSurface(IDirect3DSurface9** surfaceOut)
{
    return GiveSurface(depthStencil, surfaceOut);
}
