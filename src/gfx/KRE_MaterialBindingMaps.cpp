// What each kind of map does with the texture stages. Colours pass from stage to stage as
// D3DTA_CURRENT. A tint uses the texture factor, and so does the surface colour while lighting is
// off.

#include "gfx/KRE_MaterialBinding.h"

#include <algorithm>
#include <cmath>

#include "base/Paths.h"
#include "gfx/KRE_Gfx.h"

namespace {

constexpr float kFullReflection = 0.995f;
constexpr float kSphereScale = 0.3f;
constexpr float kPerTurn = 0.159155f;    // 1 / (2 * pi)
constexpr float kPerHalfTurn = 0.31831f; // 1 / pi

constexpr KRE_StageState kTintedLit[] = {
    {0, D3DTSS_COLOROP, D3DTOP_ADD},        {0, D3DTSS_COLORARG1, D3DTA_TEXTURE},
    {0, D3DTSS_COLORARG2, D3DTA_TFACTOR},   {1, D3DTSS_COLOROP, D3DTOP_MODULATE},
    {1, D3DTSS_COLORARG1, D3DTA_CURRENT},   {1, D3DTSS_COLORARG2, D3DTA_DIFFUSE},
    {1, D3DTSS_ALPHAOP, D3DTOP_SELECTARG1}, {1, D3DTSS_ALPHAARG1, D3DTA_CURRENT},
    {1, D3DTSS_TEXCOORDINDEX, 0},           {2, D3DTSS_ALPHAOP, D3DTOP_DISABLE},
    {2, D3DTSS_COLOROP, D3DTOP_DISABLE},
};
constexpr KRE_StageState kTintedUnlit[] = {
    {0, D3DTSS_COLOROP, D3DTOP_ADD},
    {0, D3DTSS_COLORARG1, D3DTA_TFACTOR},
    {0, D3DTSS_COLORARG2, D3DTA_DIFFUSE},
};
constexpr KRE_StageState kTintedEmpty[] = {
    {0, D3DTSS_COLORARG1, D3DTA_TFACTOR},
    {0, D3DTSS_COLORARG2, D3DTA_DIFFUSE},
};

// Two diffuse maps are added, and lit together one stage higher.
constexpr KRE_StageState kFirstOfTwoDiffuse[] = {
    {0, D3DTSS_COLOROP, D3DTOP_SELECTARG1},
    {0, D3DTSS_COLORARG1, D3DTA_TEXTURE},
};
constexpr KRE_StageState kSecondOfTwoDiffuse[] = {
    {0, D3DTSS_COLOROP, D3DTOP_ADD},      {0, D3DTSS_COLORARG1, D3DTA_CURRENT},
    {0, D3DTSS_COLORARG2, D3DTA_TEXTURE}, {0, D3DTSS_ALPHAOP, D3DTOP_SELECTARG1},
    {0, D3DTSS_ALPHAARG1, D3DTA_TEXTURE}, {0, D3DTSS_TEXCOORDINDEX, 0},
    {1, D3DTSS_COLOROP, D3DTOP_MODULATE}, {1, D3DTSS_COLORARG1, D3DTA_CURRENT},
    {1, D3DTSS_COLORARG2, D3DTA_DIFFUSE}, {1, D3DTSS_ALPHAOP, D3DTOP_SELECTARG1},
    {1, D3DTSS_ALPHAARG1, D3DTA_CURRENT},
};

// A diffuse map over a reflection: what is below, plus the map times the surface's own colour.
constexpr KRE_StageState kMapOverReflection[] = {
    {0, D3DTSS_COLOROP, D3DTOP_MULTIPLYADD},
    {0, D3DTSS_COLORARG0, D3DTA_CURRENT},
    {0, D3DTSS_COLORARG1, D3DTA_TEXTURE},
};
constexpr KRE_StageState kColorOverReflection[] = {
    {0, D3DTSS_COLORARG1, D3DTA_CURRENT},
    {0, D3DTSS_COLOROP, D3DTOP_ADD},
};
constexpr KRE_StageState kTintOverReflection[] = {
    {0, D3DTSS_COLOROP, D3DTOP_MULTIPLYADD},
    {0, D3DTSS_COLORARG0, D3DTA_CURRENT},
    {0, D3DTSS_COLORARG1, D3DTA_TFACTOR},
};
constexpr KRE_StageState kTintOverReflectionUnlit[] = {
    {0, D3DTSS_COLOROP, D3DTOP_MULTIPLYADD},
    {0, D3DTSS_COLORARG0, D3DTA_CURRENT},
    {0, D3DTSS_COLORARG1, D3DTA_DIFFUSE},
    {0, D3DTSS_COLORARG2, D3DTA_TFACTOR},
};
constexpr KRE_StageState kAlphaOfMap[] = {
    {0, D3DTSS_ALPHAOP, D3DTOP_SELECTARG1},
    {0, D3DTSS_ALPHAARG1, D3DTA_TEXTURE},
};
constexpr KRE_StageState kAlphaOfCurrent[] = {
    {0, D3DTSS_ALPHAOP, D3DTOP_SELECTARG1},
    {0, D3DTSS_ALPHAARG1, D3DTA_CURRENT},
};

constexpr KRE_StageState kFullReflectionAlone[] = {
    {0, D3DTSS_COLOROP, D3DTOP_SELECTARG2},
    {0, D3DTSS_COLORARG2, D3DTA_TEXTURE},
    {0, D3DTSS_TEXCOORDINDEX, 0},
};
constexpr KRE_StageState kPartReflectionAlone[] = {
    {0, D3DTSS_COLOROP, D3DTOP_MULTIPLYADD},
    {0, D3DTSS_COLORARG0, D3DTA_DIFFUSE},
    {0, D3DTSS_COLORARG1, D3DTA_TEXTURE},
    {0, D3DTSS_TEXCOORDINDEX, 0},
};
// The map above uses the first set of coordinates.
constexpr KRE_StageState kReflectionBelowMap[] = {
    {0, D3DTSS_ALPHAOP, D3DTOP_SELECTARG1},
    {0, D3DTSS_ALPHAARG1, D3DTA_DIFFUSE},
    {0, D3DTSS_COLORARG2, D3DTA_TEXTURE},
    {0, D3DTSS_TEXCOORDINDEX, 1},
};

/// A map combined with the stages below by one operation.
constexpr KRE_StageState kCurrentWithMap[] = {
    {0, D3DTSS_COLORARG1, D3DTA_CURRENT},
    {0, D3DTSS_COLORARG2, D3DTA_TEXTURE},
    {0, D3DTSS_TEXCOORDINDEX, 0},
};

D3DCOLOR WithAlpha(D3DCOLOR color, int32_t alpha)
{
    return (color & 0x00FFFFFFu) | static_cast<D3DCOLOR>(alpha & 0xFF) << 24;
}

} // namespace

void KRE_MaterialBinding::SetStageStates(int32_t stage, std::span<const KRE_StageState> states)
{
    for (const KRE_StageState& state : states)
        gfx.SetTextureStageStateOnce(stage + state.stage, state.type, state.value);
}

bool KRE_MaterialBinding::IsLitStage(int32_t stage) const
{
    return gfx.stageSource[stage] == kSourceTexture || gfx.stageSource[stage] == kSourceUnset;
}

/// Whether surfaces show `unlitColor`; if so, puts it into the texture factor.
bool KRE_MaterialBinding::UsesUnlitColor()
{
    const bool isUsed = !gfx.lighting && gfx.unlitColor != 0xFFFFFFFF;
    if (isUsed)
        gfx.SetTextureFactor(WithAlpha(gfx.unlitColor, gfx.blendValue));
    return isUsed;
}

void KRE_MaterialBinding::SetStageDiffuseArg(int32_t stage)
{
    gfx.SetColorArg2(stage, UsesUnlitColor() ? D3DTA_TFACTOR : D3DTA_DIFFUSE);
}

void KRE_MaterialBinding::SetStageDiffuseArg0(int32_t stage)
{
    gfx.SetColorArg0(stage, UsesUnlitColor() ? D3DTA_TFACTOR : D3DTA_DIFFUSE);
}

void KRE_MaterialBinding::SetTintFactor()
{
    gfx.SetTextureFactor(WithAlpha(gfx.tintColor, gfx.blendValue));
}

/// Sets the states for a slot's map, from `stage` on. Returns the number of stages it takes.
int32_t KRE_MaterialBinding::SetMapStages(KRE_Texture& texture, int32_t slot, int32_t stage)
{
    const bool hasNext = slot + 1 < gfx.materialStages && slot + 1 < KRE_Texture::kSlots &&
                         texture.slotTextures[slot + 1];
    const int32_t type = texture.slots[slot].type;
    switch (type) {
    case StageDiffuse:
        return stage == 0 ? SetBaseDiffuse(hasNext) : SetUpperDiffuse(texture.slots[0].type, stage);
    case StageBump:
        gfx.SetColorOp(stage, D3DTOP_BUMPENVMAP);
        SetStageStates(stage, kCurrentWithMap);
        break;
    case StageReflection:
        SetReflection(stage, hasNext);
        break;
    case StageModulate:
        gfx.SetColorOp(stage, D3DTOP_MODULATE);
        SetStageStates(stage, kCurrentWithMap);
        break;
    case StageAdd:
        gfx.SetColorOp(stage, D3DTOP_ADD);
        SetStageStates(stage, kCurrentWithMap);
        break;
    case StageSphere:
        SetSphere(texture, slot, stage);
        break;
    default:
        gfx.Error("Invalid type of texture stage %i: %i", slot, type);
    }
    return 1;
}

void KRE_MaterialBinding::SetEmptyStage(int32_t stage)
{
    if (stage > 0) {
        gfx.SetColorOp(stage, D3DTOP_DISABLE);
    } else if (gfx.tintColor == 0) {
        gfx.SetColorOp(0, D3DTOP_SELECTARG2);
        SetStageDiffuseArg(0);
    } else {
        gfx.SetColorOp(0, D3DTOP_MULTIPLYADD);
        SetStageDiffuseArg0(0);
        SetStageStates(0, kTintedEmpty);
        SetTintFactor();
    }
}

/// A lit diffuse map with a tint is lit one stage higher. It takes that stage only if no map
/// follows: a following map replaces the lighting.
int32_t KRE_MaterialBinding::SetBaseDiffuse(bool hasNext)
{
    const bool isLit = IsLitStage(0);
    gfx.diffuseStage = 0;
    if (gfx.tintColor != 0) {
        SetStageStates(0, isLit ? std::span<const KRE_StageState>(kTintedLit) : kTintedUnlit);
    } else {
        gfx.SetColorOp(0, isLit ? D3DTOP_MODULATE : D3DTOP_SELECTARG2);
        if (isLit)
            gfx.SetColorArg1(0, D3DTA_TEXTURE);
        SetStageDiffuseArg(0);
    }
    gfx.SetTexCoordIndex(0, 0);
    gfx.SetBlendMode(gfx.blendMode, gfx.blendValue, 0);
    if (gfx.tintColor != 0)
        SetTintFactor();
    return gfx.tintColor != 0 && isLit && !hasNext ? 2 : 1;
}

int32_t KRE_MaterialBinding::SetUpperDiffuse(int32_t baseType, int32_t stage)
{
    const bool isReflected = baseType == StageReflection || baseType == StageSphere;
    if (!isReflected && baseType != StageDiffuse)
        gfx.Error("More than one diffuse map requires a diffuse map at stage 0");
    gfx.diffuseStage = stage;
    if (isReflected)
        return SetReflectedDiffuse(stage);
    SetSecondDiffuse(stage);
    return 2;
}

void KRE_MaterialBinding::SetSecondDiffuse(int32_t stage)
{
    SetStageStates(0, kFirstOfTwoDiffuse);
    SetStageStates(stage, kSecondOfTwoDiffuse);
    gfx.SetTexCoordIndex(stage + 1, static_cast<DWORD>(stage));
}

/// Returns the number of stages: two for a lit map with a tint, where the map comes second.
int32_t KRE_MaterialBinding::SetReflectedDiffuse(int32_t stage)
{
    const bool isLit = IsLitStage(stage);
    const bool isTinted = gfx.tintColor != 0;
    if (!isTinted) {
        SetStageStates(stage, isLit ? std::span<const KRE_StageState>(kMapOverReflection)
                                    : kColorOverReflection);
        SetStageDiffuseArg(stage);
        SetStageStates(stage, kAlphaOfMap);
    } else if (isLit) {
        SetStageStates(stage, kTintOverReflection);
        SetStageDiffuseArg(stage);
        SetStageStates(stage, kAlphaOfCurrent);
        SetStageStates(stage + 1, kMapOverReflection);
        SetStageDiffuseArg(stage + 1);
        SetStageStates(stage + 1, kAlphaOfMap);
        gfx.SetTexCoordIndex(stage + 1, 0);
        ++gfx.diffuseStage;
    } else {
        SetStageStates(stage, kTintOverReflectionUnlit);
    }
    gfx.SetTexCoordIndex(stage, 0);
    gfx.SetBlendMode(gfx.blendMode, gfx.blendValue, stage);
    if (isTinted)
        SetTintFactor();
    return isTinted && isLit ? 2 : 1;
}

void KRE_MaterialBinding::SetReflection(int32_t stage, bool hasNext)
{
    if (stage > 0)
        gfx.Error("Reflection map in stage other than zero!");
    const bool isFull = gfx.reflectionAmount >= kFullReflection;
    if (hasNext) {
        gfx.SetColorOp(stage, isFull ? D3DTOP_SELECTARG2 : D3DTOP_MODULATE);
        if (!isFull)
            gfx.SetColorArg1(stage, SetReflectionAmount(stage));
        SetStageStates(stage, kReflectionBelowMap);
    } else if (isFull) {
        SetStageStates(stage, kFullReflectionAlone);
    } else {
        SetStageStates(stage, kPartReflectionAlone);
        gfx.SetColorArg2(stage, SetReflectionAmount(stage));
    }
}

/// Passes the strength to the device as a grey and returns the argument that reads it.
DWORD KRE_MaterialBinding::SetReflectionAmount(int32_t stage)
{
    const auto part =
        static_cast<D3DCOLOR>(std::clamp(RoundToInt(gfx.reflectionAmount * 255.0f), 0, 255));
    const D3DCOLOR grey = part << 16 | part << 8 | part;
    if (!(gfx.caps.PrimitiveMiscCaps & D3DPMISCCAPS_PERSTAGECONSTANT)) {
        gfx.SetTextureFactor(WithAlpha(grey, gfx.blendValue));
        return D3DTA_TFACTOR;
    }
    gfx.SetTextureStageStateOnce(stage, D3DTSS_CONSTANT, WithAlpha(grey, 0xFF));
    return D3DTA_CONSTANT;
}

/// The picture is a panorama: a full turn of the camera moves it by its width, tilting from
/// straight down to straight up by its height.
void KRE_MaterialBinding::SetSphere(KRE_Texture& texture, int32_t slot, int32_t stage)
{
    D3DXMATRIX inverse;
    if (!D3DXMatrixInverse(&inverse, nullptr, &gfx.view))
        D3DXMatrixIdentity(&inverse);
    const D3DXVECTOR3 forward(0.0f, 0.0f, 1.0f);
    D3DXVECTOR3 d;
    D3DXVec3TransformNormal(&d, &forward, &inverse);
    const float level = std::sqrt(d.x * d.x + d.y * d.y);
    const auto heading =
        static_cast<float>(std::atan2(static_cast<double>(d.y), static_cast<double>(d.x)));
    const auto rise =
        static_cast<float>(std::atan2(static_cast<double>(d.z), static_cast<double>(level)));

    D3DXMATRIX matrix;
    D3DXMatrixIdentity(&matrix);
    matrix._11 = kSphereScale;
    matrix._22 = kSphereScale;
    matrix._41 = 0.5f - heading * kPerTurn;
    matrix._42 = 0.5f - rise * kPerHalfTurn;
    texture.slotMatrices[slot] = matrix;
    texture.slotMatrixSet[slot] = 1;

    gfx.SetColorOp(stage, stage == 0 ? D3DTOP_SELECTARG2 : D3DTOP_ADD);
    gfx.SetColorArg1(stage, D3DTA_CURRENT);
    gfx.SetColorArg2(stage, D3DTA_TEXTURE);
    gfx.SetTexCoordIndex(stage, D3DTSS_TCI_CAMERASPACEREFLECTIONVECTOR);
}
