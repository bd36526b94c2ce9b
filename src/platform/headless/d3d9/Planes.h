#pragma once

#include "platform/headless/d3d9/DrawVertex.h"

namespace headless {

/// A value that changes evenly over the target: at (x, y) it is at + (x - originX) * dx +
/// (y - originY) * dy.
struct Plane {
    float at;
    float dx;
    float dy;
};

/// Everything that a primitive interpolates. Depth and 1/w are even over the target as they are; the
/// varyings are so when divided by w, and that is what is kept here.
struct alignas(16) Planes {
    float at[kMaxVaryings];
    float dx[kMaxVaryings];
    float dy[kMaxVaryings];
    Plane depth;
    Plane reciprocalW;
    float originX;
    float originY;
};

/// A corner on the target. Places are in 1/256 of a pixel, with the centres of pixels at whole
/// numbers; `reciprocalW` is above 0.
struct Corner {
    int x, y;
    float depth;
    float reciprocalW;
    const float* varying; ///< not owned
};

/// Steps of `Corner::x` and `y` in a pixel.
constexpr int kSubPixels = 256;
constexpr int kSubPixelBits = 8;
constexpr float kPixelsPerSubPixel = 1.0f / static_cast<float>(kSubPixels);

/// The first whole pixel at or after a place.
constexpr int CeilPixel(int subPixels)
{
    return (subPixels + kSubPixels - 1) >> kSubPixelBits;
}

} // namespace headless
