// Techniques and passes at work, and the device's reset.

#include "platform/headless/d3d9/CallControl.h"
#include "platform/headless/d3dx/effect/FxEffect.h"

namespace {

/// Whether the texture lives in memory that a reset takes away. There are only flat ones on this host.
bool IsInDeviceMemory(IDirect3DBaseTexture9* texture)
{
    D3DSURFACE_DESC desc = {};
    if (texture->GetType() == D3DRTYPE_TEXTURE)
        static_cast<IDirect3DTexture9*>(texture)->GetLevelDesc(0, &desc);
    return desc.Pool == D3DPOOL_DEFAULT;
}

} // namespace

HRESULT FxEffect::SetTechnique(D3DXHANDLE handle)
{
    if (const HRESULT ordered = OrderedResult("ID3DXEffect::SetTechnique"); FAILED(ordered))
        return ordered;
    FxTechnique* found = Technique(handle);
    if (!found || isActive)
        return D3DERR_INVALIDCALL;
    technique = found;
    return D3D_OK;
}

D3DXHANDLE FxEffect::GetCurrentTechnique()
{
    return reinterpret_cast<D3DXHANDLE>(technique);
}

/// `D3DXERR_INVALIDDATA` for a technique with a pass that needs a compiled shader.
HRESULT FxEffect::ValidateTechnique(D3DXHANDLE handle)
{
    if (const HRESULT ordered = OrderedResult("ID3DXEffect::ValidateTechnique"); FAILED(ordered))
        return ordered;
    const FxTechnique* found = Technique(handle);
    if (!found)
        return D3DERR_INVALIDCALL;
    return found->IsValid() ? D3D_OK : D3DXERR_INVALIDDATA;
}

/// Begins with the technique behind `handle`, with the first one for null. `S_FALSE` and null if none
/// is left.
HRESULT FxEffect::FindNextValidTechnique(D3DXHANDLE handle, D3DXHANDLE* nextOut)
{
    const FxTechnique* last = Technique(handle);
    if (!nextOut || (handle && !last))
        return D3DERR_INVALIDCALL;
    *nextOut = nullptr;
    bool isBehind = last == nullptr;
    for (const auto& item : model->techniques) {
        if (isBehind && item->IsValid()) {
            *nextOut = reinterpret_cast<D3DXHANDLE>(item.get());
            return D3D_OK;
        }
        isBehind = isBehind || item.get() == last;
    }
    return S_FALSE;
}

BOOL FxEffect::IsParameterUsed(D3DXHANDLE handle, D3DXHANDLE techniqueHandle)
{
    const FxParameter* parameter = Parameter(handle);
    const FxTechnique* found = Technique(techniqueHandle);
    if (!parameter || !found)
        return FALSE;
    for (const auto& pass : found->passes)
        for (const FxAssignment& assignment : pass->states)
            if (assignment.Reads(*parameter))
                return TRUE;
    return FALSE;
}

HRESULT FxEffect::Begin(UINT* passesOut, DWORD flags)
{
    if (const HRESULT ordered = OrderedResult("ID3DXEffect::Begin"); FAILED(ordered))
        return ordered;
    if (!technique || isActive)
        return D3DERR_INVALIDCALL;
    savedStates.Save(*device.Get(), technique->touched, flags);
    isActive = true;
    if (passesOut)
        *passesOut = static_cast<UINT>(technique->passes.size());
    return D3D_OK;
}

HRESULT FxEffect::BeginPass(UINT index)
{
    if (const HRESULT ordered = OrderedResult("ID3DXEffect::BeginPass"); FAILED(ordered))
        return ordered;
    if (!isActive || activePass || index >= technique->passes.size())
        return D3DERR_INVALIDCALL;
    FxPass& pass = *technique->passes[index];
    if (pass.needsShader)
        return Unmodelled("ID3DXEffect::BeginPass with a shader", index);
    appliedStamp = FxStamp();
    activePass = &pass;
    return passStates.Apply(*device.Get(), pass, 0);
}

HRESULT FxEffect::CommitChanges()
{
    if (!activePass)
        return D3DERR_INVALIDCALL;
    const std::uint64_t before = appliedStamp;
    appliedStamp = FxStamp();
    return passStates.Apply(*device.Get(), *activePass, before);
}

HRESULT FxEffect::EndPass()
{
    if (const HRESULT ordered = OrderedResult("ID3DXEffect::EndPass"); FAILED(ordered))
        return ordered;
    if (!activePass)
        return D3DERR_INVALIDCALL;
    activePass = nullptr;
    return D3D_OK;
}

HRESULT FxEffect::End()
{
    if (const HRESULT ordered = OrderedResult("ID3DXEffect::End"); FAILED(ordered))
        return ordered;
    if (!isActive || activePass)
        return D3DERR_INVALIDCALL;
    isActive = false;
    return savedStates.Restore(*device.Get());
}

// ---- Reset

/// What lies in the device's own memory hinders a reset as long as anybody holds it. The caller sets
/// such textures anew after it.
void FxEffect::DropDeviceTextures(const List& list)
{
    for (const auto& parameter : list) {
        for (auto& texture : parameter->storage->textures) {
            if (!texture || !IsInDeviceMemory(texture.Get()))
                continue;
            texture.Free();
            parameter->storage->Touch();
        }
    }
}

HRESULT FxEffect::OnLostDevice()
{
    if (const HRESULT ordered = OrderedResult("ID3DXEffect::OnLostDevice"); FAILED(ordered))
        return ordered;
    savedStates.Drop();
    DropDeviceTextures(model->parameters);
    return D3D_OK;
}

HRESULT FxEffect::OnResetDevice()
{
    return OrderedResult("ID3DXEffect::OnResetDevice");
}
