#include "gfx/KRE_Gfx.h"

#include "gfx/ShaderEffectData.h"

namespace {

/// Releases what lives in the default pool, which no reset succeeds beside. Its entry stays, with its
/// users' counts, and holds nothing from then on.
template <class Object, class GetDescription>
void ReleaseDefaultPool(KRE_ResourceManager& manager, GetDescription getDescription)
{
    for (int32_t i = 0; i < manager.GetCount(); ++i) {
        KRE_Resource* entry = manager.GetEntry(i);
        auto* object = static_cast<Object*>(entry->pointer);
        D3DSURFACE_DESC description{};
        description.Pool = D3DPOOL_MANAGED;
        if (!object || FAILED(getDescription(object, &description)))
            continue;
        if (description.Pool == D3DPOOL_DEFAULT) {
            object->Release();
            entry->pointer = nullptr;
        }
    }
}

/// Calls an operation of each loaded effect. The results are of no use: an effect without device
/// objects of its own may well decline.
void ForEachEffect(KRE_ResourceManager& manager, HRESULT (STDMETHODCALLTYPE ID3DXEffect::*call)())
{
    for (int32_t i = 0; i < manager.GetCount(); ++i) {
        const auto* data = static_cast<const ShaderEffectData*>(manager.GetEntry(i)->pointer);
        if (data && data->effect)
            (data->effect.Get()->*call)();
    }
}

/// An effect keeps the textures that it was told, and no reset succeeds beside those of the screen's
/// size. They are told anew before it draws again.
void DropScreenTextures(KRE_ResourceManager& manager)
{
    for (int32_t i = 0; i < manager.GetCount(); ++i) {
        const auto* data = static_cast<const ShaderEffectData*>(manager.GetEntry(i)->pointer);
        if (!data || !data->effect)
            continue;
        const auto drop = [&](D3DXHANDLE handle) {
            if (handle)
                data->effect->SetTexture(handle, nullptr);
        };
        drop(data->Handle(EffectSemantic::kScreenCopy));
        for (const D3DXHANDLE handle : data->screenBuffers)
            drop(handle);
        for (const D3DXHANDLE handle : data->screenQuarterBuffers)
            drop(handle);
    }
}

/// The window stays alive meanwhile: its messages are handled here.
void WaitForLostDevice(KRE_Gfx& gfx)
{
    for (;;) {
        gfx.lastResult = gfx.device->TestCooperativeLevel();
        if (gfx.lastResult != D3DERR_DEVICELOST)
            return;
        MSG message;
        if (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageA(&message);
        }
    }
}

} // namespace

void KRE_Gfx::ResetDevice(const D3DDISPLAYMODE* mode)
{
    WaitForLostDevice(*this);
    ReleaseDefaultPoolObjects();
    if (mode)
        displayMode = *mode;
    BuildPresentParameters();
    const bool hadPostEffects = postEffectsReady != 0;
    FreePostRenderEffects();
    Check(device->Reset(&presentParams), "Device Reset failed: %s");
    ForEachEffect(effectManager, &ID3DXEffect::OnResetDevice);
    AcquireTargetSurfaces();
    ResetStateCache();
    RestoreRenderStates();
    if (hadPostEffects)
        InitPostRenderEffects();
}

void KRE_Gfx::ReleaseDefaultPoolObjects()
{
    backBuffer.Free();
    ReleaseDefaultPool<IDirect3DSurface9>(
        surfaceManager, [](IDirect3DSurface9* surface, D3DSURFACE_DESC* description) {
            return surface->GetDesc(description);
        });
    ReleaseDefaultPool<IDirect3DTexture9>(
        textureManager, [](IDirect3DTexture9* texture, D3DSURFACE_DESC* description) {
            return texture->GetLevelDesc(0, description);
        });
    DropScreenTextures(effectManager);
    ForEachEffect(effectManager, &ID3DXEffect::OnLostDevice);
    ReleaseTargetSurfaces();
}
