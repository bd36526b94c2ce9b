// Setters and getters of everything that a draw call reads. A value is stored as given; an unknown
// state, stage or slot is refused.

#include "platform/headless/d3d9/Device.h"

#include <algorithm>

namespace headless {

namespace {

template <typename T>
HRESULT Get(const T& value, T* valueOut)
{
    if (!valueOut)
        return D3DERR_INVALIDCALL;
    *valueOut = value;
    return D3D_OK;
}

template <typename T>
HRESULT Set(const T* value, T& slotOut)
{
    if (!value)
        return D3DERR_INVALIDCALL;
    slotOut = *value;
    return D3D_OK;
}

/// The light of an index that was enabled but never set: white, along the z axis.
D3DLIGHT9 DefaultLight()
{
    D3DLIGHT9 light = {};
    light.Type = D3DLIGHT_DIRECTIONAL;
    light.Diffuse = {1.0f, 1.0f, 1.0f, 0.0f};
    light.Direction = {0.0f, 0.0f, 1.0f};
    return light;
}

bool IsPossibleLight(const D3DLIGHT9& light)
{
    if (light.Type == D3DLIGHT_DIRECTIONAL)
        return true;
    if (light.Type != D3DLIGHT_POINT && light.Type != D3DLIGHT_SPOT)
        return false;
    return light.Range >= 0.0f && light.Attenuation0 >= 0.0f && light.Attenuation1 >= 0.0f &&
           light.Attenuation2 >= 0.0f;
}

} // namespace

HRESULT HeadlessDevice::SetTransform(D3DTRANSFORMSTATETYPE type, const D3DMATRIX* matrix)
{
    D3DMATRIX* slot = FindTransform(state, type);
    return slot ? Set(matrix, *slot) : D3DERR_INVALIDCALL;
}

HRESULT HeadlessDevice::GetTransform(D3DTRANSFORMSTATETYPE type, D3DMATRIX* matrixOut)
{
    const D3DMATRIX* slot = FindTransform(state, type);
    return slot ? Get(*slot, matrixOut) : D3DERR_INVALIDCALL;
}

/// The given matrix is applied before the current one.
HRESULT HeadlessDevice::MultiplyTransform(D3DTRANSFORMSTATETYPE type, const D3DMATRIX* matrix)
{
    D3DMATRIX* slot = FindTransform(state, type);
    if (!slot || !matrix)
        return D3DERR_INVALIDCALL;
    *slot = MultiplyMatrices(*matrix, *slot);
    return D3D_OK;
}

/// The viewport must lie in the render target.
HRESULT HeadlessDevice::SetViewport(const D3DVIEWPORT9* viewport)
{
    if (!viewport)
        return D3DERR_INVALIDCALL;
    const D3DSURFACE_DESC& target = state.renderTarget.Get()->Desc();
    if (viewport->X > target.Width || viewport->Width > target.Width - viewport->X ||
        viewport->Y > target.Height || viewport->Height > target.Height - viewport->Y)
        return D3DERR_INVALIDCALL;
    state.viewport = *viewport;
    return D3D_OK;
}

HRESULT HeadlessDevice::GetViewport(D3DVIEWPORT9* viewportOut)
{
    return Get(state.viewport, viewportOut);
}

HRESULT HeadlessDevice::SetMaterial(const D3DMATERIAL9* material)
{
    return Set(material, state.material);
}

HRESULT HeadlessDevice::GetMaterial(D3DMATERIAL9* materialOut)
{
    return Get(state.material, materialOut);
}

HRESULT HeadlessDevice::SetLight(DWORD index, const D3DLIGHT9* light)
{
    if (!light || !IsPossibleLight(*light))
        return D3DERR_INVALIDCALL;
    state.lights[index].light = *light;
    return D3D_OK;
}

HRESULT HeadlessDevice::GetLight(DWORD index, D3DLIGHT9* lightOut)
{
    const auto slot = state.lights.find(index);
    return slot == state.lights.end() ? D3DERR_INVALIDCALL : Get(slot->second.light, lightOut);
}

HRESULT HeadlessDevice::LightEnable(DWORD index, BOOL enable)
{
    const auto slot = state.lights.try_emplace(index, LightSlot{DefaultLight(), false}).first;
    slot->second.enabled = enable != 0;
    return D3D_OK;
}

HRESULT HeadlessDevice::GetLightEnable(DWORD index, BOOL* enableOut)
{
    const auto slot = state.lights.find(index);
    if (slot == state.lights.end() || !enableOut)
        return D3DERR_INVALIDCALL;
    *enableOut = slot->second.enabled ? TRUE : FALSE;
    return D3D_OK;
}

HRESULT HeadlessDevice::SetClipPlane(DWORD index, const float* plane)
{
    if (index >= kClipPlaneCount || !plane)
        return D3DERR_INVALIDCALL;
    std::copy_n(plane, 4, state.clipPlanes[index].begin());
    return D3D_OK;
}

HRESULT HeadlessDevice::GetClipPlane(DWORD index, float* planeOut)
{
    if (index >= kClipPlaneCount || !planeOut)
        return D3DERR_INVALIDCALL;
    std::copy_n(state.clipPlanes[index].begin(), 4, planeOut);
    return D3D_OK;
}

HRESULT HeadlessDevice::SetRenderState(D3DRENDERSTATETYPE type, DWORD value)
{
    if (!IsRenderState(type))
        return Unmodelled("SetRenderState", type, value);
    state.render[type] = value;
    return D3D_OK;
}

HRESULT HeadlessDevice::GetRenderState(D3DRENDERSTATETYPE type, DWORD* valueOut)
{
    return IsRenderState(type) ? Get(state.render[type], valueOut) : D3DERR_INVALIDCALL;
}

HRESULT HeadlessDevice::SetClipStatus(const D3DCLIPSTATUS9* clipStatus)
{
    return Set(clipStatus, state.clipStatus);
}

HRESULT HeadlessDevice::GetClipStatus(D3DCLIPSTATUS9* clipStatusOut)
{
    return Get(state.clipStatus, clipStatusOut);
}

HRESULT HeadlessDevice::GetTextureStageState(DWORD stage, D3DTEXTURESTAGESTATETYPE type,
                                             DWORD* valueOut)
{
    if (stage >= kStageCount || !IsStageState(type))
        return D3DERR_INVALIDCALL;
    return Get(state.stage[stage][type], valueOut);
}

HRESULT HeadlessDevice::SetTextureStageState(DWORD stage, D3DTEXTURESTAGESTATETYPE type,
                                             DWORD value)
{
    if (stage >= kStageCount || !IsStageState(type))
        return Unmodelled("SetTextureStageState", stage, type, value);
    state.stage[stage][type] = value;
    return D3D_OK;
}

HRESULT HeadlessDevice::GetSamplerState(DWORD sampler, D3DSAMPLERSTATETYPE type, DWORD* valueOut)
{
    const UINT slot = SamplerSlot(sampler);
    if (slot >= kSamplerCount || !IsSamplerState(type))
        return D3DERR_INVALIDCALL;
    return Get(state.sampler[slot][type], valueOut);
}

HRESULT HeadlessDevice::SetSamplerState(DWORD sampler, D3DSAMPLERSTATETYPE type, DWORD value)
{
    const UINT slot = SamplerSlot(sampler);
    if (slot >= kSamplerCount || !IsSamplerState(type))
        return Unmodelled("SetSamplerState", sampler, type, value);
    state.sampler[slot][type] = value;
    return D3D_OK;
}

HRESULT HeadlessDevice::SetScissorRect(const RECT* rect)
{
    return Set(rect, state.scissor);
}

HRESULT HeadlessDevice::GetScissorRect(RECT* rectOut)
{
    return Get(state.scissor, rectOut);
}

/// Only a mixed device can switch; the others accept just the mode they have.
HRESULT HeadlessDevice::SetSoftwareVertexProcessing(BOOL software)
{
    const bool wanted = software != 0;
    const bool isMixed = (creationParameters.BehaviorFlags & D3DCREATE_MIXED_VERTEXPROCESSING) != 0;
    if (!isMixed && wanted != state.softwareVertexProcessing)
        return D3DERR_INVALIDCALL;
    state.softwareVertexProcessing = wanted;
    return D3D_OK;
}

BOOL HeadlessDevice::GetSoftwareVertexProcessing()
{
    return state.softwareVertexProcessing ? TRUE : FALSE;
}

/// Stored only: the caps report no N-patches, so only 0 has a meaning.
HRESULT HeadlessDevice::SetNPatchMode(float segments)
{
    if (segments != 0.0f)
        return Unmodelled("SetNPatchMode", segments);
    state.patchSegments = segments;
    return D3D_OK;
}

float HeadlessDevice::GetNPatchMode()
{
    return state.patchSegments;
}

HRESULT HeadlessDevice::SetFVF(DWORD fvf)
{
    state.fvf = fvf;
    return D3D_OK;
}

HRESULT HeadlessDevice::GetFVF(DWORD* fvfOut)
{
    return Get(state.fvf, fvfOut);
}

} // namespace headless
