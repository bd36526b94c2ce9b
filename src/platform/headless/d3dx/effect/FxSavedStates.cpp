#include "platform/headless/d3dx/effect/FxSavedStates.h"

namespace headless::fx {

namespace {

/// What the caller asked not to save.
bool IsLeftOut(FxStateKind kind, DWORD flags)
{
    if (kind == FxStateKind::Sampler)
        return (flags & D3DXFX_DONOTSAVESAMPLERSTATE) != 0;
    const bool isShader = kind == FxStateKind::VertexShader || kind == FxStateKind::PixelShader;
    return isShader && (flags & D3DXFX_DONOTSAVESHADERSTATE) != 0;
}

template <typename T>
T* NewPlace(std::vector<T>& list, size_t& placeOut)
{
    placeOut = list.size();
    return &list.emplace_back();
}

D3DTRANSFORMSTATETYPE Transform(const FxStateKey& key)
{
    return static_cast<D3DTRANSFORMSTATETYPE>(key.number);
}

} // namespace

void FxSavedStates::Save(IDirect3DDevice9& device, std::span<const FxStateKey> keys, DWORD flags)
{
    Drop();
    if ((flags & D3DXFX_DONOTSAVESTATE) != 0)
        return;
    for (const FxStateKey& key : keys) {
        Saved saved = {key, 0, 0};
        if (!IsLeftOut(key.kind, flags) && SaveOne(device, saved))
            states.push_back(saved);
    }
}

/// False if the device cannot report the state: nothing is restored then. A light that was never
/// set cannot be unset, only disabled.
bool FxSavedStates::SaveOne(IDirect3DDevice9& device, Saved& savedInOut)
{
    const FxStateKey& key = savedInOut.key;
    switch (key.kind) {
    case FxStateKind::Render:
        return SUCCEEDED(
            device.GetRenderState(static_cast<D3DRENDERSTATETYPE>(key.number), &savedInOut.value));
    case FxStateKind::Stage:
        return SUCCEEDED(device.GetTextureStageState(
            key.index, static_cast<D3DTEXTURESTAGESTATETYPE>(key.number), &savedInOut.value));
    case FxStateKind::Sampler:
        return SUCCEEDED(device.GetSamplerState(
            key.index, static_cast<D3DSAMPLERSTATETYPE>(key.number), &savedInOut.value));
    case FxStateKind::Transform:
        return SUCCEEDED(device.GetTransform(Transform(key), NewPlace(matrices, savedInOut.place)));
    case FxStateKind::Material:
        return SUCCEEDED(device.GetMaterial(&material));
    case FxStateKind::Light:
        return SUCCEEDED(device.GetLight(key.index, NewPlace(lights, savedInOut.place)));
    case FxStateKind::LightEnable: {
        BOOL isOn = FALSE;
        if (FAILED(device.GetLightEnable(key.index, &isOn)))
            isOn = FALSE;
        savedInOut.value = isOn ? 1 : 0;
        return true;
    }
    case FxStateKind::Texture:
        return SUCCEEDED(device.GetTexture(key.index, NewPlace(textures, savedInOut.place)->Out()));
    case FxStateKind::VertexShader:
        return SUCCEEDED(device.GetVertexShader(vertexShader.Out()));
    case FxStateKind::PixelShader:
        return SUCCEEDED(device.GetPixelShader(pixelShader.Out()));
    case FxStateKind::VertexFormat:
        return SUCCEEDED(device.GetFVF(&savedInOut.value));
    case FxStateKind::PatchSegments:
        patchSegments = device.GetNPatchMode();
        return true;
    default:
        return false;
    }
}

HRESULT FxSavedStates::RestoreOne(IDirect3DDevice9& device, const Saved& saved) const
{
    const FxStateKey& key = saved.key;
    switch (key.kind) {
    case FxStateKind::Render:
        return device.SetRenderState(static_cast<D3DRENDERSTATETYPE>(key.number), saved.value);
    case FxStateKind::Stage:
        return device.SetTextureStageState(
            key.index, static_cast<D3DTEXTURESTAGESTATETYPE>(key.number), saved.value);
    case FxStateKind::Sampler:
        return device.SetSamplerState(key.index, static_cast<D3DSAMPLERSTATETYPE>(key.number),
                                      saved.value);
    case FxStateKind::Transform:
        return device.SetTransform(Transform(key), &matrices[saved.place]);
    case FxStateKind::Material:
        return device.SetMaterial(&material);
    case FxStateKind::Light:
        return device.SetLight(key.index, &lights[saved.place]);
    case FxStateKind::LightEnable:
        return device.LightEnable(key.index, saved.value != 0);
    case FxStateKind::Texture:
        return device.SetTexture(key.index, textures[saved.place].Get());
    case FxStateKind::VertexShader:
        return device.SetVertexShader(vertexShader.Get());
    case FxStateKind::PixelShader:
        return device.SetPixelShader(pixelShader.Get());
    case FxStateKind::VertexFormat:
        return device.SetFVF(saved.value);
    case FxStateKind::PatchSegments:
        return device.SetNPatchMode(patchSegments);
    default:
        return D3D_OK;
    }
}

HRESULT FxSavedStates::Restore(IDirect3DDevice9& device)
{
    HRESULT first = D3D_OK;
    for (const Saved& saved : states) {
        const HRESULT result = RestoreOne(device, saved);
        if (FAILED(result) && SUCCEEDED(first))
            first = result;
    }
    Drop();
    return first;
}

void FxSavedStates::Drop()
{
    states.clear();
    matrices.clear();
    lights.clear();
    textures.clear();
    vertexShader.Free();
    pixelShader.Free();
}

} // namespace headless::fx
