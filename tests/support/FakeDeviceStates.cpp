#include "tests/support/FakeDevice.h"

#include <type_traits>

// States: stored and returned, without any effect.

namespace {

constexpr D3DMATRIX kIdentity = {{{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}}};

template <class Map, class Value>
HRESULT Look(const Map& map, DWORD key, Value* valueOut)
{
    const auto found = map.find(key);
    if (found == map.end())
        return D3DERR_INVALIDCALL;
    *valueOut = found->second;
    return D3D_OK;
}

template <class Key>
DWORD LookOrZero(const std::map<Key, DWORD>& map, const std::type_identity_t<Key>& key)
{
    const auto found = map.find(key);
    return found != map.end() ? found->second : 0;
}

} // namespace

void FakeDevice::ClearStates()
{
    renderStates.clear();
    stageStates.clear();
    samplerStates.clear();
    transforms.clear();
    lights.clear();
    lightEnables.clear();
    textures.clear();
    streams.clear();
    indices = nullptr;
    materialState = {};
    fvfState = 0;
    softwareProcessing = FALSE;
    viewportState = {0, 0, parameters.BackBufferWidth, parameters.BackBufferHeight, 0.0f, 1.0f};
    scissor = {0, 0, static_cast<LONG>(parameters.BackBufferWidth),
               static_cast<LONG>(parameters.BackBufferHeight)};
}

void FakeDevice::Unbind(const IUnknown* resource)
{
    for (auto& [index, target] : renderTargets)
        target = target == resource ? nullptr : target;
    for (auto& [stage, texture] : textures)
        texture = texture == resource ? nullptr : texture;
    for (auto& [number, stream] : streams)
        stream.buffer = stream.buffer == resource ? nullptr : stream.buffer;
    if (depthStencil == resource)
        depthStencil = nullptr;
    if (indices == resource)
        indices = nullptr;
}

HRESULT STDMETHODCALLTYPE FakeDevice::SetTransform(D3DTRANSFORMSTATETYPE state,
                                                   const D3DMATRIX* matrix)
{
    transforms[state] = *matrix;
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetTransform(D3DTRANSFORMSTATETYPE state,
                                                   D3DMATRIX* matrixOut)
{
    const auto found = transforms.find(state);
    *matrixOut = found != transforms.end() ? found->second : kIdentity;
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::SetViewport(const D3DVIEWPORT9* viewport)
{
    viewportState = *viewport;
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetViewport(D3DVIEWPORT9* viewportOut)
{
    *viewportOut = viewportState;
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::SetMaterial(const D3DMATERIAL9* material)
{
    materialState = *material;
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetMaterial(D3DMATERIAL9* materialOut)
{
    *materialOut = materialState;
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::SetLight(DWORD index, const D3DLIGHT9* light)
{
    lights[index] = *light;
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetLight(DWORD index, D3DLIGHT9* lightOut)
{
    return Look(lights, index, lightOut);
}

HRESULT STDMETHODCALLTYPE FakeDevice::LightEnable(DWORD index, BOOL enable)
{
    lightEnables[index] = enable;
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetLightEnable(DWORD index, BOOL* enableOut)
{
    return Look(lightEnables, index, enableOut);
}

HRESULT STDMETHODCALLTYPE FakeDevice::SetRenderState(D3DRENDERSTATETYPE state, DWORD value)
{
    renderStates[state] = value;
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetRenderState(D3DRENDERSTATETYPE state, DWORD* valueOut)
{
    *valueOut = LookOrZero(renderStates, state);
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::SetTextureStageState(DWORD stage,
                                                           D3DTEXTURESTAGESTATETYPE type,
                                                           DWORD value)
{
    stageStates[{stage, type}] = value;
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetTextureStageState(DWORD stage,
                                                           D3DTEXTURESTAGESTATETYPE type,
                                                           DWORD* valueOut)
{
    *valueOut = LookOrZero(stageStates, {stage, type});
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::SetSamplerState(DWORD sampler, D3DSAMPLERSTATETYPE type,
                                                      DWORD value)
{
    samplerStates[{sampler, type}] = value;
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetSamplerState(DWORD sampler, D3DSAMPLERSTATETYPE type,
                                                      DWORD* valueOut)
{
    *valueOut = LookOrZero(samplerStates, {sampler, type});
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::SetTexture(DWORD stage, IDirect3DBaseTexture9* texture)
{
    textures[stage] = texture;
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetTexture(DWORD stage, IDirect3DBaseTexture9** textureOut)
{
    *textureOut = Shared(textures[stage]).release();
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::SetScissorRect(const RECT* rect)
{
    scissor = *rect;
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetScissorRect(RECT* rectOut)
{
    *rectOut = scissor;
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::SetSoftwareVertexProcessing(BOOL software)
{
    softwareProcessing = software;
    return D3D_OK;
}

BOOL STDMETHODCALLTYPE FakeDevice::GetSoftwareVertexProcessing()
{
    return softwareProcessing;
}

HRESULT STDMETHODCALLTYPE FakeDevice::SetFVF(DWORD fvf)
{
    fvfState = fvf;
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetFVF(DWORD* fvfOut)
{
    *fvfOut = fvfState;
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::SetStreamSource(UINT streamNumber,
                                                      IDirect3DVertexBuffer9* streamData,
                                                      UINT offsetBytes, UINT stride)
{
    streams[streamNumber] = {streamData, offsetBytes, stride};
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetStreamSource(UINT streamNumber,
                                                      IDirect3DVertexBuffer9** streamDataOut,
                                                      UINT* offsetBytesOut, UINT* strideOut)
{
    const Stream& stream = streams[streamNumber];
    *streamDataOut = Shared(stream.buffer).release();
    *offsetBytesOut = stream.offsetBytes;
    *strideOut = stream.stride;
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::SetIndices(IDirect3DIndexBuffer9* indexData)
{
    indices = indexData;
    return D3D_OK;
}

HRESULT STDMETHODCALLTYPE FakeDevice::GetIndices(IDirect3DIndexBuffer9** indexDataOut)
{
    *indexDataOut = Shared(indices).release();
    return D3D_OK;
}
