#pragma once

#include "platform/headless/d3d9/PrimitiveAssembly.h"
#include "platform/headless/d3d9/PrimitiveDrawer.h"
#include "platform/headless/d3d9/VertexPipeline.h"

namespace headless {

/// One draw call: primitives of one type, over vertices in memory.
struct DrawRequest {
    D3DPRIMITIVETYPE type;
    UINT primitiveCount;
    IndexSource indices; ///< all in range
    VertexStream stream;
};

/// What is done with a draw that nobody looks at: it fails as it would, and marks the pictures that it
/// would change as blank.
HRESULT LeaveUndrawn(const DrawState& state, const DrawRequest& request);

/// Executes draws. Keeps its working memory, some 250 kilobytes, so that a draw allocates none.
class Rasterizer {
public:
    /// Draws nothing and fails if a vertex lies outside the stream or a state is not modelled.
    HRESULT Draw(const DrawState& state, const VertexLayout& layout, const DrawRequest& request);

private:
    void DrawPrimitive(const DrawRequest& request, UINT index, bool drawsLastPixel);

    VertexPipeline vertices;
    PixelProgram program;
    PrimitiveDrawer drawer;
};

} // namespace headless
