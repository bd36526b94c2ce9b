// Assigns the map slots of a material to texture stages. What each map does with its stages is in
// KRE_MaterialBindingMaps.cpp.

#include "gfx/KRE_MaterialBinding.h"

#include <algorithm>
#include <cstring>

#include "gfx/KRE_Gfx.h"

namespace {

/// Collects stage states during its lifetime, which an `Error` also ends.
class StageCollection {
public:
    StageCollection(KRE_Gfx& engine, KRE_StageProgram& program) : gfx(engine)
    {
        gfx.CollectStageStates(&program);
    }
    ~StageCollection() { gfx.CollectStageStates(nullptr); }
    StageCollection(const StageCollection&) = delete;
    StageCollection& operator=(const StageCollection&) = delete;

private:
    KRE_Gfx& gfx;
};

constexpr KRE_StageState kVertexAlpha[] = {
    {0, D3DTSS_ALPHAOP, D3DTOP_SELECTARG1},
    {0, D3DTSS_ALPHAARG1, D3DTA_DIFFUSE},
};
constexpr KRE_StageState kNothingAbove[] = {
    {0, D3DTSS_ALPHAOP, D3DTOP_DISABLE},
    {0, D3DTSS_COLOROP, D3DTOP_DISABLE},
};

} // namespace

void KRE_MaterialBinding::SetTexture(KRE_Texture* texture, int32_t stage)
{
    gfx.currentTexture = texture;
    const bool hasPicture = texture && texture->IsValid();
    if (hasPicture) {
        if (texture->videoSource >= 0)
            gfx.UpdateVideoSource(texture->videoSource);
        gfx.SetAlphaTest(texture->hasAlpha, gfx.alphaReference);
    }
    if (stage == -1) {
        BindMaterial(hasPicture ? texture : nullptr);
        return;
    }
    gfx.CheckStage(stage);
    BindStageTexture(stage, hasPicture ? texture->current : nullptr);
}

void KRE_MaterialBinding::BindMaterial(KRE_Texture* texture)
{
    gfx.diffuseStage = 0;
    stageProgram.Clear();
    {
        const StageCollection collecting(gfx, stageProgram);
        if (!texture)
            BindVertexColor();
        else if (texture->sequenceCount > 0 && texture->frameIndex >= 0)
            BindFrame(*texture);
        else
            BindSlots(*texture);
    }
    for (const KRE_StageState& state : stageProgram)
        gfx.SetTextureStageStateOnce(state.stage, state.type, state.value);
}

void KRE_MaterialBinding::BindVertexColor()
{
    gfx.blendMode = kBlendUnset;
    gfx.blendValue = -1;
    for (int32_t stage = 0; stage < gfx.materialStages; ++stage) {
        BindStageTexture(stage, nullptr);
        gfx.SetColorOp(stage, stage == 0 ? D3DTOP_SELECTARG2 : D3DTOP_DISABLE);
    }
    SetStageDiffuseArg(0);
    SetStageStates(0, kVertexAlpha);
}

/// QUIRK: only `kSourceTexture` shows the picture; `kSourceUnset`, which other maps also treat as
/// lit, shows the vertex colour here.
void KRE_MaterialBinding::BindFrame(KRE_Texture& texture)
{
    const bool isLit = gfx.stageSource[0] == kSourceTexture;
    gfx.SetColorOp(0, isLit ? D3DTOP_MODULATE : D3DTOP_SELECTARG2);
    if (isLit)
        gfx.SetColorArg1(0, D3DTA_TEXTURE);
    SetStageDiffuseArg(0);
    gfx.SetTexCoordIndex(0, 0);
    gfx.SetBlendMode(gfx.blendMode, gfx.blendValue, 0);
    BindSlotMatrix(texture, texture.currentSlot, 0);
    BindStageTexture(0, texture.current);
    BindStageTexture(1, nullptr);
}

void KRE_MaterialBinding::BindSlots(KRE_Texture& texture)
{
    const int32_t slotCount = std::min(gfx.materialStages, KRE_Texture::kSlots);
    int32_t stage = 0; // exceeds the slot after a map that takes two stages
    for (int32_t slot = 0; slot < slotCount; ++slot) {
        IDirect3DTexture9* const map = texture.slotTextures[slot];
        int32_t taken = 1;
        if (map)
            taken = SetMapStages(texture, slot, stage);
        else
            SetEmptyStage(stage);
        for (const int32_t end = stage + taken; stage < end; ++stage) {
            BindSlotMatrix(texture, slot, stage);
            BindStageTexture(stage, map);
        }
    }
    SetStageStates(stage, kNothingAbove);
}

void KRE_MaterialBinding::BindStageTexture(int32_t stage, IDirect3DBaseTexture9* texture)
{
    if (gfx.boundTexture[stage] == texture)
        return;
    gfx.Check(gfx.device->SetTexture(static_cast<DWORD>(stage), texture), "SetTexture failed: %s");
    gfx.boundTexture[stage] = texture;
}

void KRE_MaterialBinding::BindSlotMatrix(const KRE_Texture& texture, int32_t slot, int32_t stage)
{
    const bool hasMatrix = texture.slotMatrixSet[slot] != 0;
    const D3DMATRIX& matrix = texture.slotMatrices[slot];
    // NOLINTBEGIN(bugprone-suspicious-memory-comparison): equal bits mean an equal state.
    const bool isThere =
        hasMatrix &&
        gfx.cache.stageState[stage][D3DTSS_TEXTURETRANSFORMFLAGS] == int32_t{D3DTTFF_COUNT3} &&
        std::memcmp(&gfx.textureMatrix[stage], &matrix, sizeof matrix) == 0;
    // NOLINTEND(bugprone-suspicious-memory-comparison)
    if (!isThere)
        gfx.SetTextureTransform(hasMatrix ? &matrix : nullptr, stage);
}

// ---- The operations of KRE_Gfx

void KRE_Gfx::SetTexture(KRE_Texture* texture, int32_t stage)
{
    materialBinding->SetTexture(texture, stage);
}

void KRE_Gfx::SetStageDiffuseArg(int32_t stage)
{
    materialBinding->SetStageDiffuseArg(stage);
}

void KRE_Gfx::SetStageDiffuseArg0(int32_t stage)
{
    materialBinding->SetStageDiffuseArg0(stage);
}

void KRE_Gfx::ApplyMaterialBlend(const KRE_MaterialInfo& info, bool hasImage, int32_t mode,
                                 float alpha)
{
    materialBinding->ApplyMaterialBlend(info, hasImage, mode, alpha);
}

void KRE_Gfx::SetMaterialReflect(const KRE_MaterialInfo& info, bool white)
{
    materialBinding->SetMaterialReflect(info, white);
}
