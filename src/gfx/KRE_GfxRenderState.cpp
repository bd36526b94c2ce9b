#include "gfx/KRE_Gfx.h"

#include "gfx/DirectXErrorName.h"

#include <algorithm>
#include <bit>
#include <iterator>

IDirect3DBaseTexture9* KRE_Gfx::UnknownTexture()
{
    return reinterpret_cast<IDirect3DBaseTexture9*>(~uintptr_t{0});
}

void KRE_Gfx::ResetStateCache()
{
    cache.Reset();
    std::fill(std::begin(boundTexture), std::end(boundTexture), UnknownTexture());
    for (D3DXMATRIX& matrix : textureMatrix)
        D3DXMatrixIdentity(&matrix);
    inScene = 0;
}

void KRE_Gfx::SetRenderState(D3DRENDERSTATETYPE state, DWORD value)
{
    lastResult = device->SetRenderState(state, value);
    if (FAILED(lastResult))
        Error(" SetRenderState (state %i, value: %i failed: %s", state, static_cast<int>(value),
              DirectXErrorName(lastResult));
    if (static_cast<uint32_t>(state) < KRE_StateCache::kRenderStates)
        cache.renderState[state] = static_cast<int32_t>(value);
}

void KRE_Gfx::SetRenderState(D3DRENDERSTATETYPE state, float value)
{
    SetRenderState(state, std::bit_cast<DWORD>(value));
}

void KRE_Gfx::SetRenderStateOnce(D3DRENDERSTATETYPE state, DWORD value)
{
    if (cache.renderState[state] != static_cast<int32_t>(value))
        SetRenderState(state, value);
}

void KRE_Gfx::SetRenderStateOnce(D3DRENDERSTATETYPE state, float value)
{
    SetRenderStateOnce(state, std::bit_cast<DWORD>(value));
}

void KRE_Gfx::SetClipping(int32_t on)
{
    clipping = on;
    SetRenderState(D3DRS_CLIPPING, on ? DWORD{1} : DWORD{0});
}

void KRE_Gfx::SetAlphaTest(int32_t on, int32_t reference)
{
    const bool isKnown = cache.renderState[D3DRS_ALPHATESTENABLE] != KRE_StateCache::kUnknown;
    if (isKnown && on == alphaTest && reference == alphaReference)
        return;
    alphaTest = on;
    alphaReference = reference;
    SetRenderState(D3DRS_ALPHATESTENABLE, on ? DWORD{1} : DWORD{0});
    if (!on)
        return;
    SetRenderState(D3DRS_ALPHAFUNC, DWORD{on == 255 ? D3DCMP_EQUAL : D3DCMP_GREATER});
    SetRenderState(D3DRS_ALPHAREF, static_cast<DWORD>(reference));
}

void KRE_Gfx::SetPatchEdgeStyle(int32_t style)
{
    patchEdgeStyle = style;
    SetRenderState(D3DRS_PATCHEDGESTYLE, static_cast<DWORD>(style));
}

void KRE_Gfx::SetAlphaBlendEnable(int32_t on)
{
    SetRenderStateOnce(D3DRS_ALPHABLENDENABLE, static_cast<DWORD>(on));
}

void KRE_Gfx::SetNormalizeNormals(int32_t on)
{
    SetRenderStateOnce(D3DRS_NORMALIZENORMALS, static_cast<DWORD>(on));
}

void KRE_Gfx::SetTextureFactor(D3DCOLOR color)
{
    textureFactor = color;
    SetRenderState(D3DRS_TEXTUREFACTOR, color);
}

void KRE_Gfx::SetTextureFactorAlpha(int32_t alpha)
{
    const D3DCOLOR alphaByte = static_cast<D3DCOLOR>(alpha & 0xFF) << 24;
    SetTextureFactor((textureFactor & 0x00FFFFFFu) | alphaByte);
}

void KRE_Gfx::SetFillMode(int32_t mode, const KRE_PointRecord* record)
{
    if (record)
        pointRecord = *record;
    fillMode = mode;
    SetRenderState(D3DRS_FILLMODE, static_cast<DWORD>(mode));
    if (mode == D3DFILL_POINT)
        SetPointParameters(pointRecord, pointRecord.spriteEnable);
}

void KRE_Gfx::SetCullMode(int32_t mode)
{
    static constexpr D3DCULL kModes[] = {D3DCULL_CCW, D3DCULL_NONE, D3DCULL_CW}; // for -1 to 1
    if (mode < -1 || mode > 1)
        Error("Invalid culling mode");
    cullMode = mode;
    if (cache.cullMode == mode)
        return;
    SetRenderState(D3DRS_CULLMODE, DWORD{kModes[mode + 1]});
    cache.cullMode = mode;
}

D3DGAMMARAMP KRE_Gfx::LinearGammaRamp()
{
    D3DGAMMARAMP ramp{};
    for (int32_t i = 0; i < 256; ++i)
        ramp.red[i] = ramp.green[i] = ramp.blue[i] = static_cast<WORD>(i * 257); // 0 to 65535
    return ramp;
}

int32_t KRE_Gfx::SetGammaRamp(const D3DGAMMARAMP* ramp, int32_t calibrate)
{
    if (!(caps.Caps2 & D3DCAPS2_FULLSCREENGAMMA))
        return 0;
    gammaRamp = ramp ? *ramp : LinearGammaRamp();
    gammaCalibrate = calibrate && (caps.Caps2 & D3DCAPS2_CANCALIBRATEGAMMA) != 0;
    device->SetGammaRamp(0, gammaCalibrate ? D3DSGR_CALIBRATE : D3DSGR_NO_CALIBRATION, &gammaRamp);
    return 1;
}
