#pragma once

#include "platform/headless/d3d9/Lanes.h"
#include "platform/headless/d3d9/VertexFog.h"

namespace headless {

enum class FogSource : uint8_t {
    None,
    Vertex, ///< a factor interpolated from the vertices
    Depth,  ///< the depth of the pixel, 0..1
    EyeW,   ///< the distance in front of the eye
};

/// How a draw fogs its pixels.
struct PixelFog {
    FogSource source = FogSource::None;
    FogCurve curve;
    float colour[4] = {};
};

/// Table fog takes precedence over vertex fog. It uses w for a perspective projection, else depth.
PixelFog MakePixelFog(const DrawState& state);

/// Fog factors of four pixels from their depth or w.
Lanes FogFactors(const PixelFog& fog, Lanes depth, Lanes w);

/// Mixes red, green and blue with the fog colour; a factor of 1 leaves them unchanged.
void ApplyFog(const PixelFog& fog, Lanes factor, Rgba4& colourInOut);

} // namespace headless
