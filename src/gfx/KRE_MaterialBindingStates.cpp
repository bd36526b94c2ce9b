// Applies a material's own record: colours, reflection, transparency, addressing.

#include "gfx/KRE_MaterialBinding.h"

#include <bit>

#include "base/Paths.h"
#include "gfx/KRE_Gfx.h"
#include "scene/KRE_MaterialInfo.h"

namespace {

struct PlainBlend {
    KRE_TransparencyType transparencyType;
    KRE_BlendMode mode;
};

/// For a material without a picture, whatever its transparency.
constexpr PlainBlend kColorBlends[] = {
    {kTransparencyFilter, kBlendConstant},
    {kTransparencyAdditive, kBlendAddFaded},
    {kTransparencySubtractive, kBlendSubtractFaded},
};

/// The mode of a material with filter transparency: it still adds or subtracts if the opaque
/// material would.
KRE_BlendMode TransparentMode(int32_t opaqueMode)
{
    switch (opaqueMode) {
    case kBlendAddFaded:
    case kBlendAdd:
        return kBlendAddFaded;
    case kBlendSubtractFaded:
    case kBlendSubtract:
        return kBlendSubtractFaded;
    default:
        return kBlendFaded;
    }
}

DWORD AddressMode(bool mirrors, bool tiles)
{
    if (mirrors)
        return D3DTADDRESS_MIRROR;
    return tiles ? D3DTADDRESS_WRAP : D3DTADDRESS_CLAMP;
}

int32_t FadedAlpha(const KRE_MaterialInfo& info, float alpha)
{
    return RoundToInt((1.0f - info.transparency) * alpha);
}

} // namespace

void KRE_MaterialBinding::ApplyMaterialBlend(const KRE_MaterialInfo& info, bool hasImage,
                                             int32_t mode, float alpha)
{
    if (!hasImage) {
        for (const PlainBlend& blend : kColorBlends) {
            if (blend.transparencyType == info.transparencyType)
                gfx.SetBlendMode(blend.mode, FadedAlpha(info, alpha), 0);
        }
        return;
    }
    BlendImage(info, mode, alpha);
    gfx.SetZWrite(info.transparencyType == kTransparencyFilter ? 1 : 0);
    gfx.SetTextureAddressU(AddressMode(info.mirrorU != 0, info.tileU != 0), 0);
    gfx.SetTextureAddressV(AddressMode(info.mirrorV != 0, info.tileV != 0), 0);
}

void KRE_MaterialBinding::BlendImage(const KRE_MaterialInfo& info, int32_t mode, float alpha)
{
    const bool isOpaque = info.transparency == 0.0f;
    const int32_t faded = FadedAlpha(info, alpha);
    switch (info.transparencyType) {
    case kTransparencyFilter:
        if (isOpaque)
            gfx.SetBlendMode(mode, RoundToInt(alpha), 0);
        else
            gfx.SetBlendMode(TransparentMode(mode), faded, 0);
        break;
    case kTransparencyAdditive:
        gfx.SetBlendMode(isOpaque ? kBlendAdd : kBlendAddFaded, isOpaque ? 0 : faded, 0);
        break;
    case kTransparencySubtractive:
        gfx.SetBlendMode(isOpaque ? kBlendSubtract : kBlendSubtractFaded, isOpaque ? 0 : faded, 0);
        break;
    default:
        // QUIRK: the number reported is the first word of the record, the bits of its red
        // component; old logs have that number too.
        gfx.Error("Unknown material blend mode: %i", std::bit_cast<int32_t>(info.diffuse.r));
    }
}

void KRE_MaterialBinding::SetMaterialReflect(const KRE_MaterialInfo& info, bool white)
{
    gfx.reflectionAmount = info.reflectionAmount;
    D3DMATERIAL9 colors = info.DeviceMaterial();
    if (gfx.reflectionWithDiffuse && white) {
        gfx.keptDiffuse = colors.Diffuse;
        colors.Diffuse = {1.0f, 1.0f, 1.0f, 1.0f};
    }
    gfx.SetMaterial(colors);
}
