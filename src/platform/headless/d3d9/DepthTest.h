#pragma once

#include "platform/headless/d3d9/DrawState.h"
#include "platform/headless/d3d9/Planes.h"

namespace headless {

/// Which of less, equal and greater pass a comparison: all bits set or none.
struct Comparison {
    int less = -1, equal = -1, greater = -1;

    Comparison() = default;
    explicit Comparison(D3DCMPFUNC function);
    bool PassesAll() const { return (less & equal & greater) != 0; }
};

/// The depth test of a draw. Depth is compared as stored, in whole steps, so that drawing the same
/// thing twice gives equal depth.
struct DepthTest {
    bool isOn = false;
    bool writes = false;
    bool usesW = false;
    Comparison comparison;
    const PixelBuffer* buffer = nullptr; ///< not owned; a format of kind Depth
    PixelRows rows;
    int depthBits = 16;
    float nearW = 0.0f; ///< w that a W buffer stores as 0
    float scaleW = 1.0f;
    float bias = 0.0f; ///< added to Z, not to W
    float slopeBias = 0.0f;

    /// What is added to each depth of a primitive.
    float BiasOf(const Planes& planes) const;
};

/// Disabled without a depth buffer, and when the test would have no effect.
DepthTest MakeDepthTest(const DrawState& state);

} // namespace headless
