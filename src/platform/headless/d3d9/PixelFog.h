#pragma once

#include "platform/headless/d3d9/Lanes.h"
#include "platform/headless/d3d9/VertexFog.h"

namespace headless {

enum class FogSource : std::uint8_t {
    None,
    Vertex, ///< a factor that comes with the vertices
    Depth,  ///< the depth of the pixel, 0..1
    EyeW,   ///< the distance in front of the eye
};

/// Fog of a draw's pixels.
struct PixelFog {
    FogSource source = FogSource::None;
    FogCurve curve;
    Rgba4 colour;
};

/// A fog table goes before the vertices' fog. It runs over w if the projection is one in perspective,
/// else over depth.
PixelFog MakePixelFog(const DrawState& state);

/// Fog factors of four pixels from their depth or w.
Lanes FogFactors(const PixelFog& fog, Lanes depth, Lanes w);

/// Mixes red, green and blue with the fog; a factor of 1 leaves them.
void ApplyFog(const PixelFog& fog, Lanes factor, Rgba4& colourInOut);

} // namespace headless
