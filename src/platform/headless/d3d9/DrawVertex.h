#pragma once

#include "platform/headless/d3d9/DrawState.h"

namespace headless {

// What vertex processing passes to the rasterizer.

/// Two colours, eight sets of coordinates of four numbers each, and a fog factor, rounded up to whole
/// lanes.
constexpr int kMaxVaryings = 44;
/// Registers that a pixel shader gets from the vertices.
constexpr int kMaxShaderInputs = 10;

/// A register of a pixel shader and the four numbers that fill it.
struct ShaderInput {
    DWORD usage = 0; ///< D3DDECLUSAGE
    DWORD usageIndex = 0;
    unsigned mask = 0;   ///< the components that the shader reads
    int place = 0;       ///< index into the varyings
    unsigned at = 0;     ///< where the shader has its first component
    bool isHeld = false; ///< to 0..1, as colours are before 3.0
};

/// Which values a draw interpolates, and where in a vertex they are; -1 for unused ones. The same
/// for all vertices of a draw.
struct VaryingLayout {
    int count = 0; ///< a multiple of 4
    int diffuse = -1;
    int specular = -1;
    int fog = -1;
    int coordinates[kStageCount] = {-1, -1, -1, -1, -1, -1, -1, -1};
    int coordinateCounts[kStageCount] = {}; ///< 2, or 3 for cubes and volumes
    /// The coordinates are followed by their divisor.
    bool isProjected[kStageCount] = {};
    /// Four coordinates in each place, for a pixel shader.
    bool areWhole = false;
    ShaderInput inputs[kMaxShaderInputs];
    int inputCount = 0;
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
