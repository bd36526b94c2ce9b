#pragma once

#include "platform/headless/d3d9/DrawState.h"
#include "platform/headless/d3d9/Lanes.h"

namespace headless {

/// Levels of the largest possible texture, down to 1 by 1.
constexpr int kMaxLevels = 14;

/// One texture and its sampler states, resolved for a draw.
struct Sampler {
    /// Those of face f of a cube begin at f * kMaxLevels.
    Texels levels[kCubeFaces * kMaxLevels];
    TextureKind kind = TextureKind::Flat;
    int firstLevel = 0; ///< the most detailed level that may be read
    int lastLevel = 0;
    D3DTEXTUREADDRESS addressU = D3DTADDRESS_WRAP;
    D3DTEXTUREADDRESS addressV = D3DTADDRESS_WRAP;
    D3DTEXTUREADDRESS addressW = D3DTADDRESS_WRAP;
    bool magnifiesLinear = false;
    bool minifiesLinear = false;
    /// Most samples that a minified pixel takes along the longer side of its footprint.
    int maxAnisotropy = 1;
    D3DTEXTUREFILTERTYPE mipFilter = D3DTEXF_NONE;
    float levelBias = 0.0f;
    uint32_t border = 0;
    uint32_t opaque = 0; ///< bits to set in each texel: alpha of formats without it
    bool isSigned = false;
    bool isSrgb = false; ///< colours are linearised before they are mixed

    /// Whether the footprint of a pixel on the texture matters at all.
    bool NeedsLevel() const;
    /// Whether `SampleOneLevel` (StageSampling.h) gives what it asks for, if the texture is flat.
    bool IsSimple() const;
    /// Whether a level and two coordinates do not tell what to read.
    bool NeedsFootprint() const { return kind != TextureKind::Flat || maxAnisotropy > 1; }
    /// Whether a pixel reads two levels.
    bool MixesLevels() const
    {
        return mipFilter == D3DTEXF_LINEAR || mipFilter == D3DTEXF_ANISOTROPIC;
    }
};

/// Fails for unknown values.
HRESULT CheckSamplerStates(const DrawState& state, UINT stage);

/// Resolves the texture and sampler of a stage, which must have a texture. Fails when memory runs
/// out and for unknown values.
HRESULT MakeSampler(const DrawState& state, UINT stage, Sampler& samplerOut);

/// Coordinates of some pixels. Flat textures read no w; cubes take all three as a direction.
template <typename F>
struct TexturePlace {
    typename F::Floats u, v, w;
};

/// The place of each pixel, and how it changes to its right and lower neighbours.
template <typename F>
struct TextureFootprint {
    TexturePlace<F> at, dx, dy;
};

using Place4 = TexturePlace<FourLanes>;
using Footprint4 = TextureFootprint<FourLanes>;

/// Samples four pixels. Only those with a bit in `lanes` need be correct. `level` is read if the
/// sampler needs it; 0 and below means that the texture is magnified. Coordinates may be anything,
/// including infinity and NaN.
Rgba4 SampleTexture(const Sampler& sampler, const Place4& place, Lanes level, int lanes);

/// Samples a flat texture like `SampleTexture`, with its states looked up beforehand.
using FlatSampling = Rgba4 (*)(const Sampler& sampler, Lanes u, Lanes v, Lanes level, int lanes);
/// Null for cubes and volumes.
FlatSampling FindFlatSampling(const Sampler& sampler);

/// The same at the level that the footprint needs, plus `bias` and the sampler's own bias.
Rgba4 SampleTexture(const Sampler& sampler, const Footprint4& footprint, Lanes bias, int lanes);

} // namespace headless
