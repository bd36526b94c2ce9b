#pragma once

#include "platform/headless/d3d9/DrawState.h"

namespace headless {

// What vertex processing passes to the rasterizer.

/// Two colours, a fog factor, and at most three numbers per stage, rounded up to whole lanes.
constexpr int kMaxVaryings = 36;

/// Which values a draw interpolates, and where in a vertex they are; -1 for unused ones. The same
/// for all vertices of a draw.
struct VaryingLayout {
    int count = 0; ///< a multiple of 4
    int diffuse = -1;
    int specular = -1;
    int fog = -1;
    int coordinates[kStageCount] = {-1, -1, -1, -1, -1, -1, -1, -1};
    /// The coordinates are followed by their divisor.
    bool isProjected[kStageCount] = {};
};

/// A vertex after all vertex processing. Values are linear in this homogeneous space, so clipping
/// only has to interpolate.
struct alignas(16) ShadedVertex {
    float varying[kMaxVaryings];
    /// x, y, z, w. For pretransformed vertices: position on the target times w, and w.
    float clip[4];
    /// Signed distances from the user clip planes; negative is outside.
    float planeDistance[kClipPlaneCount];
    float pointSize; ///< side length in pixels
};

} // namespace headless
