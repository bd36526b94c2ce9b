#pragma once

#include "platform/headless/d3d9/OutputMerger.h"
#include "platform/headless/d3d9/PixelFog.h"
#include "platform/headless/d3d9/TextureStages.h"
#include "platform/headless/d3d9/TriangleSetup.h"

namespace headless {

/// Everything that is done to the pixels of a draw, resolved from the states once. It points into the
/// pictures of the device and is good for that one draw.
struct PixelProgram {
    VaryingLayout varyings;
    StagePrograms stages;
    bool addsSpecular = false;
    PixelFog fog;
    DepthTest depth;
    OutputMerger output;
    PixelArea area = {}; ///< viewport, scissor rectangle and target in one
};

/// Fails for states that the host does not model or that name nothing, each logged by its name, and for
/// want of memory.
HRESULT MakePixelProgram(const DrawState& state, PixelProgram& programOut);

/// Whether `MakePixelProgram` would fail for the states alone, whatever textures are set later: those
/// of samplers count where a stage would read a texture.
HRESULT CheckPixelStates(const DrawState& state);

/// Shades and writes the pixels left <= x < right of a row, which must lie in the program's area.
void ShadeSpan(const PixelProgram& program, const Planes& planes, int y, int left, int right);

} // namespace headless
