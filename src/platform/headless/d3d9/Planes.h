#pragma once

#include "platform/headless/d3d9/DrawVertex.h"

namespace headless {

/// A value that is linear over the target: at (x, y) it is at + (x - originX) * dx + (y - originY)
/// * dy.
struct Plane {
    float at;
    float dx;
    float dy;
};

/// Everything that a primitive interpolates. Depth and 1/w are linear on the target; varyings are
/// linear once divided by w, and are stored divided.
struct alignas(16) Planes {
    float at[kMaxVaryings];
    float dx[kMaxVaryings];
    float dy[kMaxVaryings];
    Plane depth;
    Plane reciprocalW;
    float originX;
    float originY;
};

/// A corner on the target. Positions are in 1/256 of a pixel, with pixel centres at integers;
/// `reciprocalW` is positive.
struct Corner {
    int x, y;
    float depth;
    float reciprocalW;
    const float* varying; ///< not owned
};

/// Units of `Corner::x` and `y` per pixel.
constexpr int kSubPixels = 256;
constexpr int kSubPixelBits = 8;
constexpr float kPixelsPerSubPixel = 1.0f / static_cast<float>(kSubPixels);

/// The first whole pixel at or after a position.
constexpr int CeilPixel(int subPixels)
{
    return (subPixels + kSubPixels - 1) >> kSubPixelBits;
}

} // namespace headless
