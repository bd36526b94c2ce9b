#include "platform/headless/d3d9/TextureSample.h"

#include "platform/headless/d3d9/CallLog.h"
#include "platform/headless/d3d9/TextureLevels.h"

#include <algorithm>
#include <bit>

namespace headless {

namespace {

bool IsLinear(DWORD filter)
{
    return filter == D3DTEXF_LINEAR || filter == D3DTEXF_ANISOTROPIC;
}

} // namespace

bool Sampler::NeedsLevel() const
{
    return magnifiesLinear != minifiesLinear ||
           (mipFilter != D3DTEXF_NONE && lastLevel > firstLevel);
}

HRESULT CheckSamplerStates(const DrawState& state, UINT stage)
{
    const auto& states = state.sampler[stage];
    for (const D3DSAMPLERSTATETYPE type : {D3DSAMP_ADDRESSU, D3DSAMP_ADDRESSV})
        if (states[type] < D3DTADDRESS_WRAP || states[type] > D3DTADDRESS_MIRRORONCE)
            return Unmodelled("D3DSAMP_ADDRESS", states[type]);
    for (const D3DSAMPLERSTATETYPE type : {D3DSAMP_MAGFILTER, D3DSAMP_MINFILTER, D3DSAMP_MIPFILTER})
        if (states[type] > D3DTEXF_ANISOTROPIC)
            return Unmodelled("D3DSAMP_FILTER", states[type]);
    return D3D_OK;
}

HRESULT MakeSampler(const DrawState& state, UINT stage, Sampler& samplerOut)
{
    if (const HRESULT result = CheckSamplerStates(state, stage); FAILED(result))
        return result;
    const auto& states = state.sampler[stage];
    const TexturePicture& texture = *state.pictures[stage];
    samplerOut.addressU = static_cast<D3DTEXTUREADDRESS>(states[D3DSAMP_ADDRESSU]);
    samplerOut.addressV = static_cast<D3DTEXTUREADDRESS>(states[D3DSAMP_ADDRESSV]);
    samplerOut.magnifiesLinear = IsLinear(states[D3DSAMP_MAGFILTER]);
    samplerOut.minifiesLinear = IsLinear(states[D3DSAMP_MINFILTER]);
    samplerOut.mipFilter = static_cast<D3DTEXTUREFILTERTYPE>(states[D3DSAMP_MIPFILTER]);
    samplerOut.levelBias = std::bit_cast<float>(states[D3DSAMP_MIPMAPLODBIAS]);
    samplerOut.border = states[D3DSAMP_BORDERCOLOR];
    samplerOut.lastLevel =
        static_cast<int>(std::min<size_t>(texture.levels.size(), kMaxLevels)) - 1;
    samplerOut.firstLevel =
        static_cast<int>(std::min(std::max(states[D3DSAMP_MAXMIPLEVEL], texture.leastLevel),
                                  static_cast<DWORD>(samplerOut.lastLevel)));
    const PixelFormat& format = *texture.levels[0]->pixels.format;
    samplerOut.opaque = format.HasAlpha() ? 0 : 0xFF000000;
    samplerOut.isSigned = format.kind == PixelKind::Signed;
    samplerOut.isSrgb = states[D3DSAMP_SRGBTEXTURE] != 0 && !samplerOut.isSigned;
    for (int i = 0; i <= samplerOut.lastLevel; ++i)
        if (!texture.levels[static_cast<size_t>(i)]->Read(samplerOut.levels[i]))
            return E_OUTOFMEMORY;
    return D3D_OK;
}

Lanes LevelOfDetail(const Sampler& sampler, const CoordinateSlopes& slopes)
{
    return LevelOf<FourLanes>(sampler, {slopes.ux, slopes.vx, slopes.uy, slopes.vy});
}

Rgba4 SampleTexture(const Sampler& sampler, Lanes u, Lanes v, Lanes level, int lanes)
{
    return SampleAny<FourLanes>(sampler, u, v, level, lanes);
}

} // namespace headless
