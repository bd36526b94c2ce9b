// Effects where they meet scenes and meshes.

#include <algorithm>
#include <memory>

#include "gfx/KRE_Gfx.h"
#include "gfx/KRE_ShaderEffect.h"
#include "scene/KRE_3dScene.h"

void KRE_Gfx::LoadSceneEffects(KRE_3dScene& scene, const char* directory, const char* sceneName)
{
    for (KRE_Mesh* mesh : scene.meshes) {
        for (int32_t i = 0; i < mesh->materialCount; ++i)
            LoadMaterialEffect(scene, mesh->materials[i], directory, sceneName);
    }
}

void KRE_Gfx::LoadMaterialEffect(KRE_3dScene& scene, KRE_MaterialInfo& info, const char* directory,
                                 const char* sceneName)
{
    const String& name = info.effectParams.name;
    if (name.IsEmpty())
        return;
    String path;
    if (!FindEffectFile(&path, name.c_str(), directory)) {
        Warning("DirectX shader effect '%s' not found (for scene '%s')", name.c_str(), sceneName);
        return;
    }
    const auto effect = std::make_shared<KRE_ShaderEffect>();
    LoadEffect(effect.get(), path.c_str(), false, 0, true);
    effect->SetParams(info.effectParams);
    info.effect = effect;
    // What is on the screen already is what such an effect shows.
    if (effect->data->Handle(EffectSemantic::kScreenCopy))
        scene.settings.clearBackground = 0;
}

void KRE_Gfx::UpdateEffectObject(KRE_ShaderEffect& effect, KRE_Mesh& mesh, int32_t materialIndex)
{
    const ShaderEffectData& data = *effect.data;
    using enum EffectSemantic;
    effect.SetIntParameter(data.Handle(kNumBlendWeights), mesh.blendCount);
    const int32_t matrices = std::min({mesh.bones.Count(), skinningEffectLimit, kWorldMatrices});
    if (matrices > 0)
        effect.SetMatrixArrayParameter(data.Handle(kWorldMatrixArray), world,
                                       static_cast<UINT>(matrices));
    const bool hasReflection = materialIndex >= 0 && materialIndex < mesh.materialCount &&
                               mesh.materials[materialIndex].reflectionSet >= 0;
    effect.SetIntParameter(data.Handle(kReflectionMapType), hasReflection ? 1 : 0);
    effect.SetTextureParameter(data.Handle(kReflectionMap), TextureOnStage(0));
    effect.SetMatrixParameter(data.Handle(kTransformReflectionMap), environmentTM);
}
