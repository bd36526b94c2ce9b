#include "gfx/KRE_Gfx.h"

#include "gfx/ShaderEffectData.h"

namespace {

/// Releases objects of the default pool, because a reset fails while any exist. Their entries stay,
/// with their user counts, but hold nothing from then on.
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

/// Calls one operation of each loaded effect. Results are ignored: an effect without device objects
/// may fail the call.
void ForEachEffect(KRE_ResourceManager& manager, HRESULT (STDMETHODCALLTYPE ID3DXEffect::*call)())
{
    for (int32_t i = 0; i < manager.GetCount(); ++i) {
        const auto* data = static_cast<const ShaderEffectData*>(manager.GetEntry(i)->pointer);
        if (data && data->effect)
            (data->effect.Get()->*call)();
    }
}

/// An effect holds the textures that were set on it, and a reset fails while it holds those of the
/// screen's size. They are set again before it draws.
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

/// Handles the window's messages meanwhile, so it stays responsive.
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
