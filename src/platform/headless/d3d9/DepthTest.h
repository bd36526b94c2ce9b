#pragma once

#include "platform/headless/d3d9/DrawState.h"
#include "platform/headless/d3d9/Lanes.h"
#include "platform/headless/d3d9/Planes.h"

namespace headless {

/// A comparison for four whole numbers at once: which of less, equal and greater pass.
struct Comparison {
    IntLanes less, equal, greater;

    Comparison();
    explicit Comparison(D3DCMPFUNC function);
    /// All bits set where `a function b` holds.
    IntLanes Passes(IntLanes a, IntLanes b) const;
};

/// The depth test of a draw. Depth is compared as it is stored, in whole steps, so that what is drawn
/// twice alike has equal depth.
struct DepthTest {
    bool isOn = false;
    bool writes = false;
    bool usesW = false;
    Comparison comparison;
    const PixelBuffer* buffer = nullptr; ///< not owned; a format of kind Depth
    PixelRows rows;
    int depthBits = 16;
    float nearW = 0.0f; ///< what a W buffer stores as 0
    float scaleW = 1.0f;
    float bias = 0.0f; ///< added to Z, not to W
    float slopeBias = 0.0f;
};

/// Off without a depth buffer, and when nothing would come of it.
DepthTest MakeDepthTest(const DrawState& state);

/// Depth with the bias of `planes`' slope, within 0..1.
Lanes BiasedDepth(const DepthTest& test, const Planes& planes, Lanes depth);

/// What is stored for depth in Z of 0..1, or for w.
IntLanes DepthSteps(const DepthTest& test, Lanes depth, Lanes w);

/// Tests four pixels, or as many as `count`, beginning at (x, y). Gives the lanes of `lanes` that pass.
int TestDepth(const DepthTest& test, int x, int y, int count, IntLanes steps, int lanes);

/// Stores what passed.
void WriteDepth(const DepthTest& test, int x, int y, IntLanes steps, int lanes);

} // namespace headless
