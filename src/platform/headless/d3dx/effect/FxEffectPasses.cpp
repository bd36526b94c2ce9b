// Applying techniques and passes, and handling the device's reset.

#include <algorithm>

#include "platform/headless/d3d9/CallLog.h"
#include "platform/headless/d3dx/effect/FxEffect.h"
#include "platform/headless/d3dx/effect/FxShader.h"

namespace headless::fx {

namespace {

/// Whether a reset would destroy the texture.
bool IsInDeviceMemory(IDirect3DBaseTexture9* texture)
{
    D3DSURFACE_DESC desc = {};
    D3DVOLUME_DESC volumeDesc = {};
    switch (texture->GetType()) {
    case D3DRTYPE_CUBETEXTURE:
        static_cast<IDirect3DCubeTexture9*>(texture)->GetLevelDesc(0, &desc);
        return desc.Pool == D3DPOOL_DEFAULT;
    case D3DRTYPE_VOLUMETEXTURE:
        static_cast<IDirect3DVolumeTexture9*>(texture)->GetLevelDesc(0, &volumeDesc);
        return volumeDesc.Pool == D3DPOOL_DEFAULT;
    default:
        static_cast<IDirect3DTexture9*>(texture)->GetLevelDesc(0, &desc);
        return desc.Pool == D3DPOOL_DEFAULT;
    }
}

} // namespace

HRESULT FxEffect::SetTechnique(D3DXHANDLE handle)
{
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

/// `D3DXERR_INVALIDDATA` for a technique with a pass that this host cannot draw, else the device's
/// verdict on the states of its passes with the current parameter values.
HRESULT FxEffect::ValidateTechnique(D3DXHANDLE handle)
{
    const FxTechnique* found = Technique(handle);
    if (!found)
        return D3DERR_INVALIDCALL;
    std::string fault;
    const HRESULT result = Validate(*found, fault);
    if (FAILED(result))
        ReportOnce();
    return result;
}

HRESULT FxEffect::Validate(const FxTechnique& item, std::string& faultOut)
{
    for (const auto& pass : item.passes) {
        if (!pass->lack.empty()) {
            faultOut = pass->lack;
            return D3DXERR_INVALIDDATA;
        }
    }
    const QuietRefusals quiet;
    FxSavedStates before;
    before.Save(*device.Get(), item.touched, 0);
    HRESULT result = D3D_OK;
    for (size_t i = 0; i < item.passes.size() && SUCCEEDED(result); ++i)
        result = ValidatePass(*item.passes[i], faultOut);
    before.Restore(*device.Get());
    return result;
}

HRESULT FxEffect::ValidatePass(const FxPass& pass, std::string& faultOut)
{
    FxPassStates states;
    DWORD passes = 0;
    HRESULT result = states.Apply(*device.Get(), pass, 0);
    std::string refused = states.Refused();
    if (SUCCEEDED(result)) {
        result = device->ValidateDevice(&passes);
        refused = LastRefusal();
    }
    if (FAILED(result))
        faultOut = pass.place + ": the device refuses the pass because of " +
                   (refused.empty() ? "its states" : refused);
    return result;
}

std::string FxEffect::Fault(D3DXHANDLE handle)
{
    std::string fault = model->lack;
    if (const FxTechnique* found = Technique(handle))
        Validate(*found, fault);
    return fault;
}

std::vector<std::string> FxEffect::Warnings(D3DXHANDLE handle)
{
    std::vector<std::string> all;
    const FxTechnique* const found = Technique(handle);
    for (size_t i = 0; found && i < found->passes.size(); ++i)
        for (const auto* shader : {&found->passes[i]->vertexShader, &found->passes[i]->pixelShader})
            for (size_t w = 0; *shader && w < (*shader)->warnings.size(); ++w)
                if (std::find(all.begin(), all.end(), (*shader)->warnings[w]) == all.end())
                    all.push_back((*shader)->warnings[w]);
    return all;
}

/// Logs once why the effect cannot be drawn here: the fault of its first technique. An effect with
/// another, valid technique is not reported.
void FxEffect::ReportOnce()
{
    std::string first;
    for (const auto& item : model->techniques) {
        std::string fault;
        if (isReported || SUCCEEDED(Validate(*item, fault)))
            return;
        first = first.empty() ? fault : first;
    }
    isReported = true;
    LogLack(first);
}

/// Searches from the technique after `handle`, or from the first one for null. `S_FALSE` and null
/// if none is left.
HRESULT FxEffect::FindNextValidTechnique(D3DXHANDLE handle, D3DXHANDLE* nextOut)
{
    std::string fault;
    const FxTechnique* last = Technique(handle);
    if (!nextOut || (handle && !last))
        return D3DERR_INVALIDCALL;
    *nextOut = nullptr;
    bool isBehind = last == nullptr;
    for (const auto& item : model->techniques) {
        if (isBehind && SUCCEEDED(Validate(*item, fault))) {
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
    if (!isActive || activePass || index >= technique->passes.size())
        return D3DERR_INVALIDCALL;
    FxPass& pass = *technique->passes[index];
    if (!pass.lack.empty())
        return Unmodelled("ID3DXEffect::BeginPass", index);
    appliedStamp = FxStamp();
    activePass = &pass;
    return passStates.Apply(*device.Get(), pass, 0);
}

HRESULT FxEffect::CommitChanges()
{
    if (!activePass)
        return D3DERR_INVALIDCALL;
    const uint64_t before = appliedStamp;
    appliedStamp = FxStamp();
    return passStates.Apply(*device.Get(), *activePass, before);
}

HRESULT FxEffect::EndPass()
{
    if (!activePass)
        return D3DERR_INVALIDCALL;
    activePass = nullptr;
    return D3D_OK;
}

HRESULT FxEffect::End()
{
    if (!isActive || activePass)
        return D3DERR_INVALIDCALL;
    isActive = false;
    return savedStates.Restore(*device.Get());
}

// ---- Reset

/// A resource in device memory blocks a reset as long as anyone holds it. The caller sets such
/// textures again afterwards.
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
    savedStates.Drop();
    DropDeviceTextures(model->parameters);
    return D3D_OK;
}

HRESULT FxEffect::OnResetDevice()
{
    return D3D_OK;
}

} // namespace headless::fx
