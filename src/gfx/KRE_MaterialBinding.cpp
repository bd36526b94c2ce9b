// From the map slots of a material to the texture stages: who goes where. What each map does with
// its stages is in KRE_MaterialBindingMaps.cpp.

#include "gfx/KRE_Gfx.h"

#include <algorithm>
#include <cstring>

namespace {

/// Sets a flag for as long as it lives, which an `Error` ends as well.
class RaisedFlag {
public:
    explicit RaisedFlag(bool& flagToRaise) : flag(flagToRaise) { flag = true; }
    ~RaisedFlag() { flag = false; }
    RaisedFlag(const RaisedFlag&) = delete;
    RaisedFlag& operator=(const RaisedFlag&) = delete;

private:
    bool& flag;
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

void KRE_Gfx::SetTexture(KRE_Texture* texture, int32_t stage)
{
    currentTexture = texture;
    const bool hasPicture = texture && texture->IsValid();
    if (hasPicture) {
        if (texture->videoSource >= 0)
            UpdateVideoSource(texture->videoSource);
        SetAlphaTest(texture->hasAlpha, alphaReference);
    }
    if (stage == -1) {
        BindMaterial(hasPicture ? texture : nullptr);
        return;
    }
    CheckStage(stage);
    BindStageTexture(stage, hasPicture ? texture->current : nullptr);
}

void KRE_Gfx::BindMaterial(KRE_Texture* texture)
{
    diffuseStage = 0;
    stageProgram.Clear();
    {
        const RaisedFlag collecting(collectsStages);
        if (!texture)
            BindVertexColor();
        else if (texture->sequenceCount > 0 && texture->frameIndex >= 0)
            BindFrame(*texture);
        else
            BindSlots(*texture);
    }
    for (const KRE_StageState& state : stageProgram)
        SetTextureStageStateOnce(state.stage, state.type, state.value);
}

void KRE_Gfx::BindVertexColor()
{
    blendMode = -1;
    blendValue = -1;
    for (int32_t stage = 0; stage < materialStages; ++stage) {
        BindStageTexture(stage, nullptr);
        SetColorOp(stage, stage == 0 ? D3DTOP_SELECTARG2 : D3DTOP_DISABLE);
    }
    SetStageDiffuseArg(0);
    SetStageStates(0, kVertexAlpha);
}

/// QUIRK: only a render source of 1 shows the picture; -1, which other maps take for lit as well,
/// shows the vertex colour here.
void KRE_Gfx::BindFrame(KRE_Texture& texture)
{
    const bool isLit = stageSource[0] == 1;
    SetColorOp(0, isLit ? D3DTOP_MODULATE : D3DTOP_SELECTARG2);
    if (isLit)
        SetColorArg1(0, D3DTA_TEXTURE);
    SetStageDiffuseArg(0);
    SetTexCoordIndex(0, 0);
    SetBlendMode(blendMode, blendValue, 0);
    BindSlotMatrix(texture, texture.currentSlot, 0);
    BindStageTexture(0, texture.current);
    BindStageTexture(1, nullptr);
}

void KRE_Gfx::BindSlots(KRE_Texture& texture)
{
    const int32_t slotCount = std::min(materialStages, KRE_Texture::kSlots);
    int32_t stage = 0; // runs ahead of the slot behind one that takes two stages
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

void KRE_Gfx::BindStageTexture(int32_t stage, IDirect3DBaseTexture9* texture)
{
    if (boundTexture[stage] == texture)
        return;
    Check(device->SetTexture(static_cast<DWORD>(stage), texture), "SetTexture failed: %s");
    boundTexture[stage] = texture;
}

void KRE_Gfx::BindSlotMatrix(const KRE_Texture& texture, int32_t slot, int32_t stage)
{
    const bool hasMatrix = texture.slotMatrixSet[slot] != 0;
    const D3DMATRIX& matrix = texture.slotMatrices[slot];
    // NOLINTBEGIN(bugprone-suspicious-memory-comparison): the same bits make the same state.
    const bool isThere =
        hasMatrix &&
        cache.stageState[stage][D3DTSS_TEXTURETRANSFORMFLAGS] == int32_t{D3DTTFF_COUNT3} &&
        std::memcmp(&textureMatrix[stage], &matrix, sizeof matrix) == 0;
    // NOLINTEND(bugprone-suspicious-memory-comparison)
    if (!isThere)
        SetTextureTransform(hasMatrix ? &matrix : nullptr, stage);
}
