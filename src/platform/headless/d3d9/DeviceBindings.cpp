// What is bound to the device: textures, vertex streams, indices, render target and depth buffer.

#include "platform/headless/d3d9/Device.h"

namespace headless {

namespace {

/// Hands out the bound object with a reference, or null and `emptyResult` for an empty slot.
template <typename Object, typename Interface>
HRESULT GetBound(const Binding<Object>& slot, Interface** objectOut, HRESULT emptyResult)
{
    if (!objectOut)
        return D3DERR_INVALIDCALL;
    *objectOut = slot.Get();
    if (!slot.Get())
        return emptyResult;
    slot.Get()->AddRef();
    return D3D_OK;
}

} // namespace

HRESULT HeadlessDevice::GetTexture(DWORD stage, IDirect3DBaseTexture9** textureOut)
{
    const UINT slot = SamplerSlot(stage);
    if (slot >= kSamplerCount || !textureOut)
        return D3DERR_INVALIDCALL;
    TextureObject* bound = state.textures[slot].Get();
    *textureOut = bound ? &bound->Interface() : nullptr;
    if (bound)
        bound->AddReference();
    return D3D_OK;
}

/// Refuses textures in system or scratch memory, which a device cannot reach. A depth texture can
/// be drawn into but not sampled.
HRESULT HeadlessDevice::SetTexture(DWORD stage, IDirect3DBaseTexture9* texture)
{
    const UINT slot = SamplerSlot(stage);
    if (slot >= kSamplerCount)
        return D3DERR_INVALIDCALL;
    TextureObject* object = TextureObject::Of(texture);
    if (object && (object->Pool() == D3DPOOL_SCRATCH || object->Pool() == D3DPOOL_SYSTEMMEM))
        return D3DERR_INVALIDCALL;
    if (object && object->Usage() == D3DUSAGE_DEPTHSTENCIL)
        return Unmodelled("SetTexture", stage, texture);
    state.textures[slot].Set(object);
    return D3D_OK;
}

HRESULT HeadlessDevice::SetStreamSource(UINT streamNumber, IDirect3DVertexBuffer9* streamData,
                                        UINT offsetBytes, UINT stride)
{
    if (streamNumber >= kStreamCount)
        return D3DERR_INVALIDCALL;
    StreamSlot& slot = state.streams[streamNumber];
    slot.buffer.Set(static_cast<HeadlessVertexBuffer*>(streamData));
    slot.offsetBytes = offsetBytes;
    slot.strideBytes = stride;
    return D3D_OK;
}

HRESULT HeadlessDevice::GetStreamSource(UINT streamNumber, IDirect3DVertexBuffer9** streamDataOut,
                                        UINT* offsetBytesOut, UINT* strideOut)
{
    if (streamNumber >= kStreamCount || !offsetBytesOut || !strideOut)
        return D3DERR_INVALIDCALL;
    const StreamSlot& slot = state.streams[streamNumber];
    *offsetBytesOut = slot.offsetBytes;
    *strideOut = slot.strideBytes;
    return GetBound(slot.buffer, streamDataOut, D3D_OK);
}

HRESULT HeadlessDevice::SetStreamSourceFreq(UINT streamNumber, UINT divider)
{
    if (streamNumber >= kStreamCount || divider != 1)
        return Unmodelled("SetStreamSourceFreq", streamNumber, divider);
    return D3D_OK;
}

HRESULT HeadlessDevice::GetStreamSourceFreq(UINT streamNumber, UINT* dividerOut)
{
    if (streamNumber >= kStreamCount || !dividerOut)
        return D3DERR_INVALIDCALL;
    *dividerOut = state.streams[streamNumber].divider;
    return D3D_OK;
}

HRESULT HeadlessDevice::SetIndices(IDirect3DIndexBuffer9* indexData)
{
    state.indices.Set(static_cast<HeadlessIndexBuffer*>(indexData));
    return D3D_OK;
}

HRESULT HeadlessDevice::GetIndices(IDirect3DIndexBuffer9** indexDataOut)
{
    return GetBound(state.indices, indexDataOut, D3D_OK);
}

HRESULT HeadlessDevice::SetRenderTarget(DWORD index, IDirect3DSurface9* renderTarget)
{
    auto* surface = static_cast<HeadlessSurface*>(renderTarget);
    if (index != 0 || !surface || (surface->Desc().Usage & D3DUSAGE_RENDERTARGET) == 0)
        return D3DERR_INVALIDCALL;
    BindRenderTarget(*surface);
    return D3D_OK;
}

HRESULT HeadlessDevice::GetRenderTarget(DWORD index, IDirect3DSurface9** renderTargetOut)
{
    return index == 0 ? GetBound(state.renderTarget, renderTargetOut, D3DERR_NOTFOUND)
                      : D3DERR_INVALIDCALL;
}

HRESULT HeadlessDevice::SetDepthStencilSurface(IDirect3DSurface9* surface)
{
    auto* depth = static_cast<HeadlessSurface*>(surface);
    if (depth && (depth->Desc().Usage & D3DUSAGE_DEPTHSTENCIL) == 0)
        return D3DERR_INVALIDCALL;
    state.depthSurface.Set(depth);
    return D3D_OK;
}

HRESULT HeadlessDevice::GetDepthStencilSurface(IDirect3DSurface9** surfaceOut)
{
    return GetBound(state.depthSurface, surfaceOut, D3DERR_NOTFOUND);
}

} // namespace headless
