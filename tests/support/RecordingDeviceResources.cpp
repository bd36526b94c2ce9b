#include "tests/support/CallText.h"
#include "tests/support/D3DNames.h"
#include "tests/support/RecordingDevice.h"

#include <cstring>

// Creating resources, copying between them, and render targets.

HRESULT STDMETHODCALLTYPE RecordingDevice::GetBackBuffer(UINT swapChain, UINT backBuffer,
                                                         D3DBACKBUFFER_TYPE type,
                                                         IDirect3DSurface9** backBufferOut)
{
    return Give("GetBackBuffer",
                {std::to_string(swapChain), std::to_string(backBuffer), BackBufferTypeName(type)},
                "surface", backBufferOut,
                [&] { return device->GetBackBuffer(swapChain, backBuffer, type, backBufferOut); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::CreateTexture(UINT width, UINT height, UINT levels,
                                                         DWORD usage, D3DFORMAT format,
                                                         D3DPOOL pool,
                                                         IDirect3DTexture9** textureOut,
                                                         HANDLE* sharedHandle)
{
    return Create("CreateTexture",
                  {std::to_string(width), std::to_string(height), std::to_string(levels),
                   UsageFlags(usage), FormatName(format), PoolName(pool)},
                  "texture", textureOut, [&] {
                      return device->CreateTexture(width, height, levels, usage, format, pool,
                                                   textureOut, sharedHandle);
                  });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::CreateVolumeTexture(
    UINT width, UINT height, UINT depth, UINT levels, DWORD usage, D3DFORMAT format, D3DPOOL pool,
    IDirect3DVolumeTexture9** volumeTextureOut, HANDLE* sharedHandle)
{
    return Create("CreateVolumeTexture",
                  {std::to_string(width), std::to_string(height), std::to_string(depth),
                   std::to_string(levels), UsageFlags(usage), FormatName(format), PoolName(pool)},
                  "volumetexture", volumeTextureOut, [&] {
                      return device->CreateVolumeTexture(width, height, depth, levels, usage,
                                                         format, pool, volumeTextureOut,
                                                         sharedHandle);
                  });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::CreateCubeTexture(UINT edgeLength, UINT levels,
                                                             DWORD usage, D3DFORMAT format,
                                                             D3DPOOL pool,
                                                             IDirect3DCubeTexture9** cubeTextureOut,
                                                             HANDLE* sharedHandle)
{
    return Create("CreateCubeTexture",
                  {std::to_string(edgeLength), std::to_string(levels), UsageFlags(usage),
                   FormatName(format), PoolName(pool)},
                  "cubetexture", cubeTextureOut, [&] {
                      return device->CreateCubeTexture(edgeLength, levels, usage, format, pool,
                                                       cubeTextureOut, sharedHandle);
                  });
}

HRESULT STDMETHODCALLTYPE
RecordingDevice::CreateVertexBuffer(UINT length, DWORD usage, DWORD fvf, D3DPOOL pool,
                                    IDirect3DVertexBuffer9** vertexBufferOut, HANDLE* sharedHandle)
{
    return Create("CreateVertexBuffer",
                  {std::to_string(length), UsageFlags(usage), FvfFlags(fvf), PoolName(pool)},
                  "vertexbuffer", vertexBufferOut, [&] {
                      const HRESULT result = device->CreateVertexBuffer(
                          length, usage, fvf, pool, vertexBufferOut, sharedHandle);
                      void* bytes = nullptr;
                      if (SUCCEEDED(result) && newVertexByte &&
                          SUCCEEDED((*vertexBufferOut)->Lock(0, 0, &bytes, 0))) {
                          std::memset(bytes, *newVertexByte, length);
                          (*vertexBufferOut)->Unlock();
                      }
                      return result;
                  });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::CreateIndexBuffer(UINT length, DWORD usage,
                                                             D3DFORMAT format, D3DPOOL pool,
                                                             IDirect3DIndexBuffer9** indexBufferOut,
                                                             HANDLE* sharedHandle)
{
    return Create("CreateIndexBuffer",
                  {std::to_string(length), UsageFlags(usage), FormatName(format), PoolName(pool)},
                  "indexbuffer", indexBufferOut, [&] {
                      return device->CreateIndexBuffer(length, usage, format, pool, indexBufferOut,
                                                       sharedHandle);
                  });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::CreateRenderTarget(
    UINT width, UINT height, D3DFORMAT format, D3DMULTISAMPLE_TYPE multiSample, DWORD quality,
    BOOL lockable, IDirect3DSurface9** surfaceOut, HANDLE* sharedHandle)
{
    return Create("CreateRenderTarget",
                  {std::to_string(width), std::to_string(height), FormatName(format),
                   MultiSampleName(multiSample), std::to_string(quality), BoolText(lockable)},
                  "surface", surfaceOut, [&] {
                      return device->CreateRenderTarget(width, height, format, multiSample, quality,
                                                        lockable, surfaceOut, sharedHandle);
                  });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::CreateDepthStencilSurface(
    UINT width, UINT height, D3DFORMAT format, D3DMULTISAMPLE_TYPE multiSample, DWORD quality,
    BOOL discard, IDirect3DSurface9** surfaceOut, HANDLE* sharedHandle)
{
    return Create("CreateDepthStencilSurface",
                  {std::to_string(width), std::to_string(height), FormatName(format),
                   MultiSampleName(multiSample), std::to_string(quality), BoolText(discard)},
                  "surface", surfaceOut, [&] {
                      return device->CreateDepthStencilSurface(width, height, format, multiSample,
                                                               quality, discard, surfaceOut,
                                                               sharedHandle);
                  });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::UpdateSurface(IDirect3DSurface9* srcSurface,
                                                         const RECT* srcRect,
                                                         IDirect3DSurface9* dstSurface,
                                                         const POINT* dstPoint)
{
    return Forward(
        "UpdateSurface",
        {calls->NameOfObject("surface", srcSurface), RectText(srcRect),
         calls->NameOfObject("surface", dstSurface), PointText(dstPoint)},
        [&] { return device->UpdateSurface(srcSurface, srcRect, dstSurface, dstPoint); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::UpdateTexture(IDirect3DBaseTexture9* sourceTexture,
                                                         IDirect3DBaseTexture9* destinationTexture)
{
    return Forward("UpdateTexture",
                   {calls->NameOfObject("texture", sourceTexture),
                    calls->NameOfObject("texture", destinationTexture)},
                   [&] { return device->UpdateTexture(sourceTexture, destinationTexture); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetRenderTargetData(IDirect3DSurface9* renderTarget,
                                                               IDirect3DSurface9* destSurface)
{
    return Forward(
        "GetRenderTargetData",
        {calls->NameOfObject("surface", renderTarget), calls->NameOfObject("surface", destSurface)},
        [&] { return device->GetRenderTargetData(renderTarget, destSurface); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetFrontBufferData(UINT swapChain,
                                                              IDirect3DSurface9* destSurface)
{
    return Forward("GetFrontBufferData",
                   {std::to_string(swapChain), calls->NameOfObject("surface", destSurface)},
                   [&] { return device->GetFrontBufferData(swapChain, destSurface); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::StretchRect(IDirect3DSurface9* srcSurface,
                                                       const RECT* srcRect,
                                                       IDirect3DSurface9* dstSurface,
                                                       const RECT* dstRect,
                                                       D3DTEXTUREFILTERTYPE filter)
{
    return Forward(
        "StretchRect",
        {calls->NameOfObject("surface", srcSurface), RectText(srcRect),
         calls->NameOfObject("surface", dstSurface), RectText(dstRect), FilterName(filter)},
        [&] { return device->StretchRect(srcSurface, srcRect, dstSurface, dstRect, filter); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::ColorFill(IDirect3DSurface9* surface, const RECT* rect,
                                                     D3DCOLOR color)
{
    return Forward("ColorFill",
                   {calls->NameOfObject("surface", surface), RectText(rect), ColorText(color)},
                   [&] { return device->ColorFill(surface, rect, color); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::CreateOffscreenPlainSurface(
    UINT width, UINT height, D3DFORMAT format, D3DPOOL pool, IDirect3DSurface9** surfaceOut,
    HANDLE* sharedHandle)
{
    return Create(
        "CreateOffscreenPlainSurface",
        {std::to_string(width), std::to_string(height), FormatName(format), PoolName(pool)},
        "surface", surfaceOut, [&] {
            return device->CreateOffscreenPlainSurface(width, height, format, pool, surfaceOut,
                                                       sharedHandle);
        });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::SetRenderTarget(DWORD index,
                                                           IDirect3DSurface9* renderTarget)
{
    return Forward("SetRenderTarget",
                   {std::to_string(index), calls->NameOfObject("surface", renderTarget)},
                   [&] { return device->SetRenderTarget(index, renderTarget); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetRenderTarget(DWORD index,
                                                           IDirect3DSurface9** renderTargetOut)
{
    return Give("GetRenderTarget", {std::to_string(index)}, "surface", renderTargetOut,
                [&] { return device->GetRenderTarget(index, renderTargetOut); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::SetDepthStencilSurface(IDirect3DSurface9* surface)
{
    return Forward("SetDepthStencilSurface", {calls->NameOfObject("surface", surface)},
                   [&] { return device->SetDepthStencilSurface(surface); });
}

HRESULT STDMETHODCALLTYPE RecordingDevice::GetDepthStencilSurface(IDirect3DSurface9** surfaceOut)
{
    return Give("GetDepthStencilSurface", {}, "surface", surfaceOut,
                [&] { return device->GetDepthStencilSurface(surfaceOut); });
}
