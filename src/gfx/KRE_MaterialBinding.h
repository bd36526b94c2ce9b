#pragma once

#include <cstdint>
#include <span>

#include <d3d9.h>

#include "gfx/KRE_StageProgram.h"

class KRE_Gfx;
class KRE_MaterialInfo;
class KRE_Texture;

/// Applies a material to the device: its maps to the texture stages, its own record to colours,
/// blending and addressing. `KRE_Gfx` owns the only instance and forwards to it; what a binding
/// sets for later (`currentTexture`, `diffuseStage`, `blendMode`, ...) is stored there. Stages are
/// 0 to 7, alphas 0 to 255.
class KRE_MaterialBinding {
public:
    explicit KRE_MaterialBinding(KRE_Gfx& engine) : gfx(engine) {}

    /// Binds a material's maps with all their stage states, or the vertex colour alone for null.
    /// With a `stage` from 0 to 7 it binds only the texture's current picture, none for null, and
    /// leaves stage states unchanged. Either way a video source is updated, the alpha test follows
    /// the picture, and the texture becomes `currentTexture`.
    void SetTexture(KRE_Texture* texture, int32_t stage);
    /// Sets the second, or the zeroth, colour argument of a stage to the surface's own colour: the
    /// vertex colour or, with lighting off, `unlitColor` through the texture factor.
    void SetStageDiffuseArg(int32_t stage);
    void SetStageDiffuseArg0(int32_t stage);
    /// Blending, depth writes and addressing of one material. `hasImage` tells whether its texture
    /// has a picture; an opaque material is drawn with `mode` and `alpha` (0 to 255). An unknown
    /// transparency type is an `Error`.
    void ApplyMaterialBlend(const KRE_MaterialInfo& info, bool hasImage, int32_t mode, float alpha);
    /// Sets the colours and the reflection's strength of a material. `white` takes effect only with
    /// `reflectionWithDiffuse`: the diffuse colour moves to `keptDiffuse` and white replaces it.
    void SetMaterialReflect(const KRE_MaterialInfo& info, bool white);

private:
    void BindMaterial(KRE_Texture* texture);
    void BindVertexColor();
    void BindFrame(KRE_Texture& texture);
    void BindSlots(KRE_Texture& texture);
    void BindStageTexture(int32_t stage, IDirect3DBaseTexture9* texture);
    void BindSlotMatrix(const KRE_Texture& texture, int32_t slot, int32_t stage);
    int32_t SetMapStages(KRE_Texture& texture, int32_t slot, int32_t stage);
    void SetEmptyStage(int32_t stage);
    int32_t SetBaseDiffuse(bool hasNext);
    int32_t SetUpperDiffuse(int32_t baseType, int32_t stage);
    void SetSecondDiffuse(int32_t stage);
    int32_t SetReflectedDiffuse(int32_t stage);
    void SetReflection(int32_t stage, bool hasNext);
    DWORD SetReflectionAmount(int32_t stage);
    void SetSphere(KRE_Texture& texture, int32_t slot, int32_t stage);
    void SetStageStates(int32_t stage, std::span<const KRE_StageState> states);
    bool IsLitStage(int32_t stage) const;
    bool UsesUnlitColor();
    void SetTintFactor();
    void BlendImage(const KRE_MaterialInfo& info, int32_t mode, float alpha);

    KRE_Gfx& gfx;                  ///< the owner
    KRE_StageProgram stageProgram; ///< of the material being bound
};
