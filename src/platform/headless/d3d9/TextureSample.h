#pragma once

#include "platform/headless/d3d9/DrawState.h"
#include "platform/headless/d3d9/Lanes.h"

namespace headless {

/// Levels of the largest possible texture, down to 1 by 1.
constexpr int kMaxLevels = 14;

/// One texture and its sampler states, resolved for a draw.
struct Sampler {
    Texels levels[kMaxLevels];
    int firstLevel = 0; ///< the most detailed level that may be read
    int lastLevel = 0;
    D3DTEXTUREADDRESS addressU = D3DTADDRESS_WRAP;
    D3DTEXTUREADDRESS addressV = D3DTADDRESS_WRAP;
    bool magnifiesLinear = false;
    bool minifiesLinear = false;
    D3DTEXTUREFILTERTYPE mipFilter = D3DTEXF_NONE;
    float levelBias = 0.0f;
    uint32_t border = 0;
    uint32_t opaque = 0; ///< bits to set in each texel: alpha of formats without it
    bool isSigned = false;
    bool isSrgb = false; ///< colours are linearised before they are mixed

    /// Whether the footprint of a pixel on the texture matters at all.
    bool NeedsLevel() const;
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

/// How the coordinates change from a pixel to its right and lower neighbours.
struct CoordinateSlopes {
    Lanes ux, vx, uy, vy;
};

/// The level for the footprint of a pixel: the binary logarithm of its longer side in texels, plus
/// the bias. 0 and below means that the texture is magnified.
Lanes LevelOfDetail(const Sampler& sampler, const CoordinateSlopes& slopes);

/// Samples four pixels. Only those with a bit in `lanes` need be correct. `level` is read if the
/// sampler needs it. Coordinates may be anything, including infinity and NaN.
Rgba4 SampleTexture(const Sampler& sampler, Lanes u, Lanes v, Lanes level, int lanes);

} // namespace headless
