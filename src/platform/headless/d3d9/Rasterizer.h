#pragma once

#include "platform/headless/d3d9/PrimitiveAssembly.h"
#include "platform/headless/d3d9/PrimitiveDrawer.h"
#include "platform/headless/d3d9/ShaderPixels.h"
#include "platform/headless/d3d9/ShaderVertices.h"
#include "platform/headless/d3d9/SpanShader.h"
#include "platform/headless/d3d9/VertexPipeline.h"

#include <memory>
#include <utility>

namespace headless {

/// One draw call: primitives of one type, over vertices in memory.
struct DrawRequest {
    D3DPRIMITIVETYPE type;
    UINT primitiveCount;
    IndexSource indices; ///< all in range
    VertexStream stream;
};

/// Steps of shaders in one draw, each on four vertices or pixels; a draw that takes more is cut off.
constexpr uint64_t kShaderBudget = uint64_t{1} << 30;
/// The steps that draws have now; tests lower it.
extern uint64_t gShaderBudget;

/// What all draws of a frame may take; then the rest of the frame is not drawn. Counted are the pixels that
/// primitives cover, hidden ones too, some for each primitive, and the steps of shaders.
constexpr uint64_t kFrameBudget = uint64_t{1} << 30;
constexpr uint64_t kPrimitiveCost = 16;
/// What frames may take now; tests lower it.
extern uint64_t gFrameBudget;

/// What is done with a draw that nobody looks at: it fails as it would, and marks the pictures that it
/// would change as blank.
HRESULT LeaveUndrawn(const DrawState& state, const VertexLayout& layout,
                     const DrawRequest& request);

/// Executes draws. Keeps its working memory, some 250 kilobytes, so that a draw allocates none.
class Rasterizer {
public:
    Rasterizer();

    /// Draws nothing and fails if a vertex lies outside the stream or a state is not modelled.
    HRESULT Draw(const DrawState& state, const VertexLayout& layout, const DrawRequest& request);

    /// Whether a draw since the last call ended early because its shaders took too long.
    bool TakeCutOff() { return std::exchange(wasCutOff, false); }

    /// Ends a frame: the next one has the whole budget.
    void StartFrame()
    {
        frameWork = 0;
        isFrameOver = false;
    }
    /// Whether primitives were left out since the last call because their frame took too much. True once
    /// for each frame.
    bool TakeFrameCut() { return std::exchange(wasFrameCut, false); }

    /// Shades the pixels of stages with another one than the fastest; tests compare them.
    void UseSpans(SpanShader& shader) { spans = &shader; }
    /// The same for the pixels of shaders.
    void UseShader(ShaderPixels& shader) { shaderPixels = &shader; }

private:
    void DrawPrimitive(const DrawRequest& request, UINT index, bool drawsLastPixel);
    HRESULT PrepareShaders(const DrawState& state, const VertexLayout& layout,
                           const DrawRequest& request);
    void DrawShaded(const DrawRequest& request, bool drawsLastPixel);
    void DrawCorners(const DrawRequest& request, UINT index, const ShadedVertex* const (&shaded)[3],
                     bool drawsLastPixel);
    uint64_t ShaderWork() const;
    bool GoesOn();

    VertexPipeline vertices;
    PixelProgram program;
    PrimitiveDrawer drawer;
    SpanShader* spans;                              ///< not owned
    ShaderPixels* shaderPixels;                     ///< not owned
    std::unique_ptr<ShaderVertices> shaderVertices; ///< made by the first draw with one
    bool shadesVertices = false;                    ///< this draw has a vertex shader
    bool wasCutOff = false;
    uint64_t frameWork = 0; ///< of the draws since the last frame, shaders of the current one apart
    bool isFrameOver = false; ///< primitives of this frame were left out
    bool wasFrameCut = false; ///< the same, and nobody has asked
};

} // namespace headless
