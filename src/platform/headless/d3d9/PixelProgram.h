#pragma once

#include "platform/headless/d3d9/OutputMerger.h"
#include "platform/headless/d3d9/PixelFog.h"
#include "platform/headless/d3d9/TextureStages.h"
#include "platform/headless/d3d9/TriangleSetup.h"

namespace headless {

class ShaderPixels;
class SpanShader;

/// Everything done to the pixels of a draw, resolved once from the states. Points into the device's
/// pictures and is valid for that one draw.
struct PixelProgram {
    VaryingLayout varyings;
    ShaderPixels* shader = nullptr; ///< shades instead of the stages; not owned, null without one
    SpanShader* spans = nullptr;    ///< shades without one; not owned
    StagePrograms stages;
    bool addsSpecular = false;
    PixelFog fog;
    DepthTest depth;
    OutputMerger output;
    PixelArea area = {}; ///< intersection of viewport, scissor rectangle and target
};

/// Fails when memory runs out, and for unknown or unmodelled states, each logged by name.
HRESULT MakePixelProgram(const DrawState& state, PixelProgram& programOut);

/// Whether `MakePixelProgram` would fail for the states alone, whatever textures are set later.
/// Sampler states count where a stage would read a texture.
HRESULT CheckPixelStates(const DrawState& state);

} // namespace headless
