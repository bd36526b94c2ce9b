// Effect files: loading, sharing, which one draws, and where its passes draw to.

#include "gfx/KRE_Gfx.h"

#include <memory>
#include <string>

#include "base/Paths.h"
#include "base/WithMemory.h"
#include "gfx/DirectXErrorName.h"
#include "gfx/KRE_EffectFeeding.h"
#include "gfx/KRE_ShaderEffect.h"

static ComPointer<ID3DXEffect> CompileEffect(KRE_Gfx& gfx, const char* file, bool usePool,
                                             DWORD flags)
{
    ComPointer<ID3DXEffect> effect;
    ComPointer<ID3DXBuffer> errors;
    gfx.lastResult = gfx.runtime.createEffect(gfx.device.Get(), file, nullptr, nullptr, flags,
                                              usePool ? gfx.effectPool.Get() : nullptr,
                                              effect.Out(), errors.Out());
    if (SUCCEEDED(gfx.lastResult))
        return effect;
    const char* result = DirectXErrorName(gfx.lastResult);
    if (errors && errors->GetBufferSize() > 1) {
        const std::string text(static_cast<const char*>(errors->GetBufferPointer()),
                               errors->GetBufferSize());
        gfx.Error("Could not compile effect from file '%s': '%s'\n\n%s", file, result,
                  text.c_str());
    }
    gfx.Error("Could not compile effect from file '%s': '%s'", file, result);
    return {};
}

int32_t KRE_Gfx::LoadEffect(KRE_ShaderEffect* effect, const char* file, bool usePool, DWORD flags,
                            bool fatalIfMissing)
{
    int32_t loaded = 0;
    WithMemory([&] { loaded = LoadEffectFile(effect, file, usePool, flags, fatalIfMissing); },
               [&] { Error("Out of memory for resource '%s'", file); });
    return loaded;
}

int32_t KRE_Gfx::LoadEffectFile(KRE_ShaderEffect* effect, const char* file, bool usePool,
                                DWORD flags, bool fatalIfMissing)
{
    effect->Free();
    effect->gfx = this;
    effect->manager = &effectManager;
    String name;
    MakeResourceName(&name, file);
    const int32_t id = effectManager.Acquire(name.c_str());
    if (id != -1) {
        effect->resourceId = id;
        effect->data =
            static_cast<ShaderEffectData*>(effectManager.GetPointer(id))->shared_from_this();
        effect->technique = effect->data->technique;
        return 1;
    }
    if (!FileExists(file)) {
        static constexpr const char* kMissing = "Shader effect file '%s' not found";
        if (fatalIfMissing)
            Error(kMissing, file);
        Warning(kMissing, file);
        return 0;
    }
    auto data = std::make_shared<ShaderEffectData>();
    data->effect = CompileEffect(*this, file, usePool, flags);
    data->file = file;
    effect->resourceId = effectManager.Add(data.get(), name.c_str());
    effect->data = std::move(data);
    effect->Initialise(file);
    if (!effect->IsUsable()) {
        effect->WarnOfFault();
        Warning("Shader could not be validated for this GPU: '%s'", file);
    }
    return 1;
}

void KRE_Gfx::SelectEffect(KRE_ShaderEffect* effect)
{
    materialEffect = effect && effect->IsUsable() ? effect : nullptr;
    if (materialEffect)
        materialEffect->SendParams();
}

KRE_ShaderEffect* KRE_Gfx::GetActiveEffect(const VertexInfo& info)
{
    if (materialEffect && materialEffect->IsUsable())
        return materialEffect;
    if (sceneEffect && sceneEffect->IsUsable())
        return sceneEffect;
    return info.processing == 2 ? skinningEffect : nullptr;
}

void KRE_Gfx::PrepareEffect(KRE_ShaderEffect& effect, KRE_Mesh* mesh, int32_t materialIndex)
{
    effectFeeding->Prepare(effect, mesh, materialIndex);
}

void KRE_Gfx::UpdateEffectFrame(KRE_ShaderEffect& effect)
{
    effectFeeding->UpdateFrame(effect);
}

void KRE_Gfx::UpdateEffectObject(KRE_ShaderEffect& effect, KRE_Mesh& mesh, int32_t materialIndex)
{
    effectFeeding->UpdateObject(effect, mesh, materialIndex);
}

void KRE_Gfx::UpdateEffectLights(KRE_ShaderEffect& effect)
{
    effectFeeding->UpdateLights(effect);
}

// The target kinds that name a buffer have the values of `GetScreenBufferTexture`'s kinds.
static_assert(static_cast<int32_t>(EffectTargetKind::kScreenQuarterBuffer) ==
              KRE_Gfx::kQuarterBuffer);
static_assert(static_cast<int32_t>(EffectTargetKind::kScreenBuffer) == KRE_Gfx::kFullBuffer);

void KRE_Gfx::SelectPassTarget(const EffectPassTarget& target)
{
    if (target.kind == EffectTargetKind::kNone)
        return;
    if (target.kind == EffectTargetKind::kInitial) {
        if (savedRenderTarget)
            SetRenderTarget(savedRenderTarget.Get(), 0);
        return;
    }
    if (!savedRenderTarget)
        Check(device->GetRenderTarget(0, savedRenderTarget.Out()),
              "Can not retrieve render target: %s");
    IDirect3DTexture9* const buffer =
        GetScreenBufferTexture(static_cast<int32_t>(target.kind), target.index);
    ComPointer<IDirect3DSurface9> surface;
    Check(buffer->GetSurfaceLevel(0, surface.Out()), "Can not set render target: %s");
    SetRenderTarget(surface.Get(), 0);
    ++subFrameNumber;
}
