#pragma once

// Buffers and the off-screen scene.

#include "d3d9.h"

#define D3DX_SDK_VERSION 43

struct ID3DXBuffer : IUnknown {
    virtual LPVOID STDMETHODCALLTYPE GetBufferPointer() = 0;
    virtual DWORD STDMETHODCALLTYPE GetBufferSize() = 0;
};

struct D3DXRTS_DESC {
    UINT Width;
    UINT Height;
    D3DFORMAT Format;
    BOOL DepthStencil;
    D3DFORMAT DepthStencilFormat;
};

struct ID3DXRenderToSurface : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetDevice(IDirect3DDevice9** deviceOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetDesc(D3DXRTS_DESC* descOut) = 0;
    /// Saves the device's render target, depth surface and viewport, redirects drawing to
    /// `surface`, whose size and format must match `GetDesc`, and begins a scene. A null viewport
    /// means the whole surface.
    virtual HRESULT STDMETHODCALLTYPE BeginScene(IDirect3DSurface9* surface,
                                                 const D3DVIEWPORT9* viewport) = 0;
    /// Ends the scene and restores what `BeginScene` saved.
    virtual HRESULT STDMETHODCALLTYPE EndScene(DWORD mipFilter) = 0;
    /// Frees what blocks a reset of the device; `OnResetDevice` creates it again.
    virtual HRESULT STDMETHODCALLTYPE OnLostDevice() = 0;
    virtual HRESULT STDMETHODCALLTYPE OnResetDevice() = 0;
};

using LPD3DXBUFFER = ID3DXBuffer*;
using LPD3DXRENDERTOSURFACE = ID3DXRenderToSurface*;

extern "C" {

HRESULT WINAPI D3DXCreateRenderToSurface(IDirect3DDevice9* device, UINT width, UINT height,
                                         D3DFORMAT format, BOOL depthStencil,
                                         D3DFORMAT depthStencilFormat,
                                         ID3DXRenderToSurface** renderToSurfaceOut);

} // extern "C"
