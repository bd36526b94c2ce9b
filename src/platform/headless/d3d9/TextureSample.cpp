#include "platform/headless/d3d9/TextureSample.h"

#include "platform/headless/d3d9/Adapter.h"
#include "platform/headless/d3d9/CallLog.h"
#include "platform/headless/d3d9/StageSampling.h"
#include "platform/headless/d3d9/TextureFootprint.h"

#include <algorithm>
#include <bit>

namespace headless {

namespace {

bool IsLinear(DWORD filter)
{
    return filter == D3DTEXF_LINEAR || filter == D3DTEXF_ANISOTROPIC;
}

/// Makes the texels of all levels, and of all faces, ready to be read.
HRESULT ReadLevels(const TexturePicture& texture, Sampler& samplerOut)
{
    samplerOut.kind = texture.kind;
    const size_t levelCount = texture.LevelCount();
    const auto used = static_cast<size_t>(samplerOut.lastLevel) + 1;
    for (size_t face = 0; face < texture.levels.size() / levelCount; ++face)
        for (size_t i = 0; i < used; ++i) {
            Texels& texels = samplerOut.levels[face * kMaxLevels + i];
            if (!texture.levels[face * levelCount + i]->Read(texels))
                return E_OUTOFMEMORY;
            if (texture.kind != TextureKind::Volume)
                continue;
            texels.depth = static_cast<int>(std::max(texture.depth >> i, 1u));
            texels.sliceRows = texels.height / texels.depth;
            texels.height = static_cast<int>(std::max(texture.height >> i, 1u));
        }
    return D3D_OK;
}

} // namespace

bool Sampler::NeedsLevel() const
{
    return magnifiesLinear != minifiesLinear || maxAnisotropy > 1 ||
           (mipFilter != D3DTEXF_NONE && lastLevel > firstLevel);
}

bool Sampler::IsSimple() const
{
    return !NeedsLevel() && !isSrgb && addressU == addressV && addressU != D3DTADDRESS_BORDER;
}

HRESULT CheckSamplerStates(const DrawState& state, UINT stage)
{
    const auto& states = state.sampler[stage];
    for (const D3DSAMPLERSTATETYPE type : {D3DSAMP_ADDRESSU, D3DSAMP_ADDRESSV, D3DSAMP_ADDRESSW})
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
    samplerOut.addressW = static_cast<D3DTEXTUREADDRESS>(states[D3DSAMP_ADDRESSW]);
    samplerOut.magnifiesLinear = IsLinear(states[D3DSAMP_MAGFILTER]);
    samplerOut.minifiesLinear = IsLinear(states[D3DSAMP_MINFILTER]);
    samplerOut.maxAnisotropy =
        texture.kind == TextureKind::Flat && states[D3DSAMP_MINFILTER] == D3DTEXF_ANISOTROPIC
            ? static_cast<int>(std::clamp<DWORD>(states[D3DSAMP_MAXANISOTROPY], 1, kMaxAnisotropy))
            : 1;
    samplerOut.mipFilter = static_cast<D3DTEXTUREFILTERTYPE>(states[D3DSAMP_MIPFILTER]);
    samplerOut.levelBias = std::bit_cast<float>(states[D3DSAMP_MIPMAPLODBIAS]);
    samplerOut.border = states[D3DSAMP_BORDERCOLOR];
    samplerOut.lastLevel = static_cast<int>(std::min<size_t>(texture.LevelCount(), kMaxLevels)) - 1;
    samplerOut.firstLevel =
        static_cast<int>(std::min(std::max(states[D3DSAMP_MAXMIPLEVEL], texture.leastLevel),
                                  static_cast<DWORD>(samplerOut.lastLevel)));
    const PixelFormat& format = *texture.levels[0]->pixels.format;
    samplerOut.opaque = format.HasAlpha() ? 0 : 0xFF000000;
    samplerOut.isSigned = format.kind == PixelKind::Signed;
    samplerOut.isSrgb = states[D3DSAMP_SRGBTEXTURE] != 0 && !samplerOut.isSigned;
    return ReadLevels(texture, samplerOut);
}

Rgba4 SampleTexture(const Sampler& sampler, const Place4& place, Lanes level, int lanes)
{
    return SamplePlace<FourLanes>(sampler, place, level, lanes);
}

FlatSampling FindFlatSampling(const Sampler& sampler)
{
    return sampler.kind == TextureKind::Flat ? FindSampling<FourLanes>(sampler) : nullptr;
}

Rgba4 SampleTexture(const Sampler& sampler, const Footprint4& footprint, Lanes bias, int lanes)
{
    return SampleFootprint<FourLanes>(sampler, footprint, bias, lanes);
}

} // namespace headless
