#pragma once

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

} // namespace headless
