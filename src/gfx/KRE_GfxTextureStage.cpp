#include "gfx/KRE_Gfx.h"

#include "gfx/DirectXErrorName.h"
#include "gfx/KRE_StageProgram.h"

#include <bit>

void KRE_Gfx::CheckStage(int32_t stage)
{
    if (stage < 0 || stage >= kStages)
        Error("Invalid stage: %i", stage);
}

void KRE_Gfx::SetTextureStageState(DWORD stage, D3DTEXTURESTAGESTATETYPE type, DWORD value)
{
    lastResult = device->SetTextureStageState(stage, type, value);
    if (FAILED(lastResult))
        Error(" SetTextureStageState failed: %s (stage %i, type %i, value %i)",
              DirectXErrorName(lastResult), static_cast<int>(stage), type, static_cast<int>(value));
    if (stage < KRE_StateCache::kStages &&
        static_cast<uint32_t>(type) < KRE_StateCache::kStageStates)
        cache.stageState[stage][type] = static_cast<int32_t>(value);
}

void KRE_Gfx::SetTextureStageStateOnce(int32_t stage, D3DTEXTURESTAGESTATETYPE type, DWORD value)
{
    CheckStage(stage);
    if (collectedStates)
        collectedStates->Put(stage, type, value);
    else if (cache.stageState[stage][type] != static_cast<int32_t>(value))
        SetTextureStageState(static_cast<DWORD>(stage), type, value);
}

void KRE_Gfx::SetSamplerState(DWORD stage, D3DSAMPLERSTATETYPE type, DWORD value)
{
    lastResult = device->SetSamplerState(stage, type, value);
    if (FAILED(lastResult))
        Error(" SetSamplerState failed: %s (stage %i, type %i, value %i)",
              DirectXErrorName(lastResult), static_cast<int>(stage), type, static_cast<int>(value));
    if (stage < KRE_StateCache::kStages &&
        static_cast<uint32_t>(type) < KRE_StateCache::kSamplerStates)
        cache.samplerState[stage][type] = static_cast<int32_t>(value);
}

void KRE_Gfx::SetColorOp(int32_t stage, DWORD value)
{
    SetTextureStageStateOnce(stage, D3DTSS_COLOROP, value);
}

void KRE_Gfx::SetColorArg1(int32_t stage, DWORD value)
{
    SetTextureStageStateOnce(stage, D3DTSS_COLORARG1, value);
}

void KRE_Gfx::SetColorArg2(int32_t stage, DWORD value)
{
    SetTextureStageStateOnce(stage, D3DTSS_COLORARG2, value);
}

void KRE_Gfx::SetColorArg0(int32_t stage, DWORD value)
{
    SetTextureStageStateOnce(stage, D3DTSS_COLORARG0, value);
}

void KRE_Gfx::SetAlphaOp(int32_t stage, DWORD value)
{
    SetTextureStageStateOnce(stage, D3DTSS_ALPHAOP, value);
}

void KRE_Gfx::SetAlphaArg1(int32_t stage, DWORD value)
{
    SetTextureStageStateOnce(stage, D3DTSS_ALPHAARG1, value);
}

void KRE_Gfx::SetAlphaArg2(int32_t stage, DWORD value)
{
    SetTextureStageStateOnce(stage, D3DTSS_ALPHAARG2, value);
}

void KRE_Gfx::SetTexCoordIndex(int32_t stage, DWORD value)
{
    SetTextureStageStateOnce(stage, D3DTSS_TEXCOORDINDEX, value);
}

void KRE_Gfx::SetTextureTransformFlags(int32_t stage, DWORD value)
{
    SetTextureStageStateOnce(stage, D3DTSS_TEXTURETRANSFORMFLAGS, value);
}

void KRE_Gfx::SetConstant(int32_t stage, D3DCOLOR color)
{
    SetTextureStageState(static_cast<DWORD>(stage), D3DTSS_CONSTANT, color);
}

/// Returns false if the device refused; the value then stays unknown.
static bool SendAddress(KRE_Gfx& gfx, DWORD mode, int32_t stage, D3DSAMPLERSTATETYPE type)
{
    int32_t& shadow = gfx.cache.samplerState[stage][type];
    if (shadow == static_cast<int32_t>(mode))
        return true;
    gfx.lastResult = gfx.device->SetSamplerState(static_cast<DWORD>(stage), type, mode);
    shadow = SUCCEEDED(gfx.lastResult) ? static_cast<int32_t>(mode) : KRE_StateCache::kUnknown;
    return SUCCEEDED(gfx.lastResult);
}

void KRE_Gfx::SetTextureAddressU(DWORD mode, int32_t stage)
{
    CheckStage(stage);
    addressU[stage] = mode;
    if (!SendAddress(*this, mode, stage, D3DSAMP_ADDRESSU))
        Warning("Failed to set texture U-adress mode %i", static_cast<int>(mode));
}

void KRE_Gfx::SetTextureAddressV(DWORD mode, int32_t stage)
{
    CheckStage(stage);
    addressV[stage] = mode;
    if (!SendAddress(*this, mode, stage, D3DSAMP_ADDRESSV))
        Warning("Failed to set texture V-adress mode %i", static_cast<int>(mode));
}

void KRE_Gfx::SetTextureAddress(DWORD mode, int32_t stage)
{
    SetTextureAddressU(mode, stage);
    SetTextureAddressV(mode, stage);
}

void KRE_Gfx::SetMipmapMode(int32_t mode, float bias, int32_t stage)
{
    CheckStage(stage);
    mipmapMode[stage] = mode;
    lodBias[stage] = bias;
    if (!(caps.TextureCaps & D3DPTEXTURECAPS_MIPMAP))
        return;
    if (mode < D3DTEXF_NONE || mode > D3DTEXF_LINEAR)
        Error("Wrong mipmap mode!");
    const auto sampler = static_cast<DWORD>(stage);
    SetSamplerState(sampler, D3DSAMP_MIPFILTER, static_cast<DWORD>(mode));
    if (caps.RasterCaps & D3DPRASTERCAPS_MIPMAPLODBIAS)
        SetSamplerState(sampler, D3DSAMP_MIPMAPLODBIAS, std::bit_cast<DWORD>(bias));
}

int32_t KRE_Gfx::SetTextureFilter(int32_t mode, int32_t stage)
{
    static constexpr struct {
        KRE_FilterSetting setting;
        D3DSAMPLERSTATETYPE state;
        D3DTEXTUREFILTERTYPE filter;
    } kFilters[] = {
        {kMagnifyLinear, D3DSAMP_MAGFILTER, D3DTEXF_LINEAR},
        {kMagnifyPoint, D3DSAMP_MAGFILTER, D3DTEXF_POINT},
        {kMinifyLinear, D3DSAMP_MINFILTER, D3DTEXF_LINEAR},
        {kMinifyPoint, D3DSAMP_MINFILTER, D3DTEXF_POINT},
        {kMinifyAnisotropic, D3DSAMP_MINFILTER, D3DTEXF_ANISOTROPIC},
        {kMagnifyAnisotropic, D3DSAMP_MAGFILTER, D3DTEXF_ANISOTROPIC},
    };
    static constexpr struct {
        KRE_FilterSetting setting;
        D3DTEXTUREADDRESS address;
    } kAddresses[] = {
        {kAddressWrap, D3DTADDRESS_WRAP},
        {kAddressClamp, D3DTADDRESS_CLAMP},
        {kAddressMirror, D3DTADDRESS_MIRROR},
    };

    for (const auto& row : kFilters) {
        if (row.setting == mode) {
            SetSamplerState(static_cast<DWORD>(stage), row.state, row.filter);
            return 1;
        }
    }
    for (const auto& row : kAddresses) {
        if (row.setting == mode) {
            SetTextureAddress(row.address, stage);
            return 1;
        }
    }
    return mode == kFilterUnchanged ? 1 : 0;
}

void KRE_Gfx::SetRenderSource(int32_t source, int32_t stage, D3DCOLOR color)
{
    CheckStage(stage);
    switch (source) {
    case kSourceUnset:
    case kSourceTexture:
        SetColorOp(stage, D3DTOP_MODULATE);
        SetColorArg1(stage, D3DTA_TEXTURE);
        SetColorArg2(stage, D3DTA_DIFFUSE);
        break;
    case kSourceVertexColor:
        SetColorOp(stage, D3DTOP_SELECTARG2);
        SetColorArg2(stage, D3DTA_DIFFUSE);
        break;
    case kSourceConstant:
        SetColorOp(stage, D3DTOP_SELECTARG2);
        SetColorArg2(stage, D3DTA_TFACTOR);
        SetTextureFactor(color);
        break;
    default:
        Error("Invalid render source selected");
    }
    stageSource[stage] = source;
}
