// The parts of effects that deal with scenes and meshes.

#include <algorithm>
#include <memory>

#include "gfx/KRE_EffectFeeding.h"
#include "gfx/KRE_Gfx.h"
#include "gfx/KRE_ShaderEffect.h"
#include "scene/KRE_3dScene.h"

static void LoadMaterialEffect(KRE_Gfx& gfx, KRE_3dScene& scene, KRE_MaterialInfo& info,
                               const char* directory, const char* sceneName)
{
    const String& name = info.effectParams.name;
    if (name.IsEmpty())
        return;
    String path;
    if (!gfx.FindEffectFile(&path, name.c_str(), directory)) {
        gfx.Warning("DirectX shader effect '%s' not found (for scene '%s')", name.c_str(),
                    sceneName);
        return;
    }
    const auto effect = std::make_shared<KRE_ShaderEffect>();
    gfx.LoadEffect(effect.get(), path.c_str(), false, 0, true);
    effect->SetParams(info.effectParams);
    info.effect = effect;
    // Such an effect shows what is already on the screen.
    if (effect->data->Handle(EffectSemantic::kScreenCopy))
        scene.settings.clearBackground = 0;
}

void KRE_Gfx::LoadSceneEffects(KRE_3dScene& scene, const char* directory, const char* sceneName)
{
    for (KRE_Mesh* mesh : scene.meshes) {
        for (int32_t i = 0; i < mesh->materialCount; ++i)
            LoadMaterialEffect(*this, scene, mesh->materials[i], directory, sceneName);
    }
}

void KRE_EffectFeeding::UpdateObject(KRE_ShaderEffect& effect, const KRE_Mesh& mesh,
                                     int32_t materialIndex)
{
    const ShaderEffectData& data = *effect.data;
    using enum EffectSemantic;
    effect.SetIntParameter(data.Handle(kNumBlendWeights), mesh.blendCount);
    const int32_t matrices =
        std::min({mesh.bones.Count(), gfx.skinningEffectLimit, KRE_Gfx::kWorldMatrices});
    if (matrices > 0)
        effect.SetMatrixArrayParameter(data.Handle(kWorldMatrixArray), gfx.world,
                                       static_cast<UINT>(matrices));
    const bool hasReflection = materialIndex >= 0 && materialIndex < mesh.materialCount &&
                               mesh.materials[materialIndex].reflectionSet >= 0;
    effect.SetIntParameter(data.Handle(kReflectionMapType), hasReflection ? 1 : 0);
    effect.SetTextureParameter(data.Handle(kReflectionMap), TextureOnStage(0));
    effect.SetMatrixParameter(data.Handle(kTransformReflectionMap), gfx.environmentTM);
}
