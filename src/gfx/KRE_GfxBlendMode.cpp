#include "gfx/KRE_Gfx.h"

namespace {

constexpr int32_t kKeep = -1; // a state that the mode does not set

/// Where `blendValue` comes from.
enum class Alpha { full, given, scaled, kept };
/// What goes into the texture factor.
enum class Factor { none, alpha, whole };

struct BlendRow {
    KRE_BlendMode mode;
    Alpha alpha;
    int32_t alphaOp, alphaArg1, alphaArg2;
    Factor factor;
    D3DBLEND source, destination;
};

constexpr BlendRow kBlendRows[] = {
    {kBlendScreen, Alpha::full, D3DTOP_SELECTARG1, D3DTA_TEXTURE, kKeep, Factor::none, D3DBLEND_ONE,
     D3DBLEND_INVSRCCOLOR},
    {kBlendAdd, Alpha::full, D3DTOP_MODULATE, D3DTA_TEXTURE, D3DTA_DIFFUSE, Factor::none,
     D3DBLEND_SRCALPHA, D3DBLEND_ONE},
    {kBlendExclude, Alpha::full, D3DTOP_SELECTARG1, D3DTA_TEXTURE, kKeep, Factor::none,
     D3DBLEND_INVDESTCOLOR, D3DBLEND_INVSRCCOLOR},
    {kBlendSubtract, Alpha::full, D3DTOP_SELECTARG1, D3DTA_TEXTURE, D3DTA_DIFFUSE, Factor::none,
     D3DBLEND_ZERO, D3DBLEND_INVSRCCOLOR},
    {kBlendMultiply, Alpha::full, D3DTOP_SELECTARG1, D3DTA_TEXTURE, kKeep, Factor::none,
     D3DBLEND_ZERO, D3DBLEND_SRCCOLOR},
    {kBlendFaded, Alpha::given, D3DTOP_MODULATE, D3DTA_TFACTOR, D3DTA_TEXTURE, Factor::alpha,
     D3DBLEND_SRCALPHA, D3DBLEND_INVSRCALPHA},
    {kBlendAlpha, Alpha::full, D3DTOP_MODULATE, D3DTA_TEXTURE, D3DTA_DIFFUSE, Factor::alpha,
     D3DBLEND_SRCALPHA, D3DBLEND_INVSRCALPHA},
    {kBlendFadedTwice, Alpha::scaled, D3DTOP_MODULATE, D3DTA_TFACTOR, D3DTA_TEXTURE, Factor::alpha,
     D3DBLEND_SRCALPHA, D3DBLEND_INVSRCALPHA},
    {kBlendSubtractByTexture, Alpha::full, D3DTOP_SELECTARG1, D3DTA_TEXTURE, kKeep, Factor::none,
     D3DBLEND_ZERO, D3DBLEND_INVSRCCOLOR},
    {kBlendAddFaded, Alpha::given, D3DTOP_MODULATE, D3DTA_TFACTOR, D3DTA_TEXTURE, Factor::alpha,
     D3DBLEND_SRCALPHA, D3DBLEND_ONE},
    {kBlendConstant, Alpha::given, D3DTOP_SELECTARG1, D3DTA_TFACTOR, kKeep, Factor::alpha,
     D3DBLEND_SRCALPHA, D3DBLEND_INVSRCALPHA},
    {kBlendKeepTarget, Alpha::kept, kKeep, kKeep, kKeep, Factor::none, D3DBLEND_ZERO, D3DBLEND_ONE},
    {kBlendReplaceWith, Alpha::kept, D3DTOP_SELECTARG1, D3DTA_TFACTOR, kKeep, Factor::alpha,
     D3DBLEND_ONE, D3DBLEND_ZERO},
    {kBlendSum, Alpha::kept, D3DTOP_SELECTARG1, D3DTA_TFACTOR, kKeep, Factor::whole, D3DBLEND_ONE,
     D3DBLEND_ONE},
    {kBlendSubtractFaded, Alpha::given, D3DTOP_MODULATE, D3DTA_TFACTOR, D3DTA_TEXTURE,
     Factor::alpha, D3DBLEND_ZERO, D3DBLEND_INVSRCCOLOR},
};

const BlendRow* FindRow(int32_t mode)
{
    for (const BlendRow& row : kBlendRows) {
        if (row.mode == mode)
            return &row;
    }
    return nullptr;
}

int32_t NextBlendValue(Alpha rule, int32_t current, int32_t value)
{
    switch (rule) {
    case Alpha::full:
        return 255;
    case Alpha::given:
        return value;
    case Alpha::scaled:
        return static_cast<int32_t>(int64_t{current} * value / 255);
    case Alpha::kept:
        break;
    }
    return current;
}

/// The colour operations that some of the modes need.
void SetBlendColorOps(KRE_Gfx& gfx, int32_t mode, int32_t stage)
{
    if (mode == kBlendReplaceWith || mode == kBlendSum) {
        gfx.SetColorOp(stage, D3DTOP_SELECTARG1);
        gfx.SetColorArg1(stage, D3DTA_TEXTURE);
    }
    if (mode == kBlendAddFaded && gfx.tintColor != 0) {
        gfx.SetColorOp(stage, D3DTOP_MODULATE);
        gfx.SetColorArg1(stage, D3DTA_TEXTURE);
        gfx.SetColorArg2(stage, D3DTA_DIFFUSE);
        if (stage + 1 < KRE_Gfx::kStages)
            gfx.SetColorOp(stage + 1, D3DTOP_DISABLE);
    }
}

} // namespace

void KRE_Gfx::SetBlendMode(int32_t mode, int32_t value, int32_t stage)
{
    CheckStage(stage);
    if (mode == kBlendUnset || mode == kBlendNone) {
        blendMode = kBlendNone;
        blendValue = value;
        SetAlphaBlendEnable(0);
        return;
    }
    const BlendRow* row = FindRow(mode);
    if (!row)
        Error("Invalid Blending mode selected!");

    blendValue = NextBlendValue(row->alpha, blendValue, value);
    blendMode = row->alpha == Alpha::scaled ? kBlendFaded : mode; // scaled once, it is faded
    const int32_t factorAlpha = row->alpha == Alpha::scaled ? blendValue : value;

    SetAlphaBlendEnable(1);
    if (row->alphaOp != kKeep)
        SetAlphaOp(stage, static_cast<DWORD>(row->alphaOp));
    if (row->alphaArg1 != kKeep)
        SetAlphaArg1(stage, static_cast<DWORD>(row->alphaArg1));
    if (row->alphaArg2 != kKeep)
        SetAlphaArg2(stage, static_cast<DWORD>(row->alphaArg2));
    if (row->factor == Factor::alpha)
        SetTextureFactorAlpha(factorAlpha);
    else if (row->factor == Factor::whole)
        SetTextureFactor(static_cast<D3DCOLOR>(value & 0xFF));
    SetRenderStateOnce(D3DRS_SRCBLEND, DWORD{row->source});
    SetRenderStateOnce(D3DRS_DESTBLEND, DWORD{row->destination});
    SetBlendColorOps(*this, mode, stage);
    if (stage + 1 < kStages)
        SetAlphaOp(stage + 1, D3DTOP_DISABLE);
}
