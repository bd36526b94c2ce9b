#pragma once

#include "platform/headless/d3d9/DrawState.h"

namespace headless {

// What goes from vertex processing to the rasterizer.

/// Two colours, a fog factor, and at most three numbers for each stage, rounded up to whole lanes.
constexpr int kMaxVaryings = 36;

/// Which values a draw interpolates, and where in a vertex they are; -1 for what is not needed.
/// Alike for all vertices of a draw.
struct VaryingLayout {
    int count = 0; ///< a multiple of 4
    int diffuse = -1;
    int specular = -1;
    int fog = -1;
    int coordinates[kStageCount] = {-1, -1, -1, -1, -1, -1, -1, -1};
    /// The coordinates are followed by a number to divide them by.
    bool isProjected[kStageCount] = {};
};

/// A vertex after all vertex processing. Values are linear in this homogeneous space, so clipping is
/// plain mixing.
struct alignas(16) ShadedVertex {
    float varying[kMaxVaryings];
    /// x, y, z, w. For vertices that came transformed: place on the target times w, and w.
    float clip[4];
    /// Signed distances from the user's clip planes; outside below 0.
    float planeDistance[kClipPlaneCount];
    float pointSize; ///< side in pixels
};

} // namespace headless
