#include "platform/headless/d3d9/Rasterizer.h"

namespace headless {

namespace {

bool AllVerticesExist(const DrawRequest& request)
{
    const uint64_t places = VertexCountOf(request.type, request.primitiveCount);
    const auto exists = [&request](int64_t vertex) {
        return vertex >= 0 && vertex < int64_t{request.stream.count};
    };
    if (places == 0 || places > 0xFFFFFFFF)
        return false;
    if (!request.indices.bytes) // sequential: the last one is the highest
        return exists(request.indices.Vertex(static_cast<UINT>(places) - 1));
    uint32_t lowest = 0, highest = 0;
    request.indices.FindRange(static_cast<UINT>(places), lowest, highest);
    return exists(int64_t{lowest} + request.indices.base) &&
           exists(int64_t{highest} + request.indices.base);
}

/// The pictures that a draw changes, whether it reaches a pixel or not.
void LeaveBlank(const DrawState& state)
{
    state.target->isBlank = true;
    if (state.depth)
        state.depth->isBlank = true;
}

bool IsEmpty(const PixelArea& area)
{
    return area.left >= area.right || area.top >= area.bottom;
}

/// What a draw does before it transforms a vertex.
HRESULT Start(const DrawState& state, const DrawRequest& request, PixelProgram& programOut)
{
    return AllVerticesExist(request) ? MakePixelProgram(state, programOut) : D3DERR_INVALIDCALL;
}

} // namespace

HRESULT LeaveUndrawn(const DrawState& state, const DrawRequest& request)
{
    static PixelProgram program; // clearing it for each draw would cost more than the checks
    const HRESULT result = Start(state, request, program);
    if (SUCCEEDED(result) && !IsEmpty(program.area))
        LeaveBlank(state);
    return result;
}

HRESULT Rasterizer::Draw(const DrawState& state, const VertexLayout& layout,
                         const DrawRequest& request)
{
    if (const HRESULT result = Start(state, request, program); FAILED(result))
        return result;
    if (IsEmpty(program.area))
        return D3D_OK;
    vertices.Prepare(state, layout, request.stream, program.varyings,
                     request.type == D3DPT_POINTLIST);
    drawer.Prepare(state, program, layout.isTransformed);
    const bool drawsLastPixel = state.Render(D3DRS_LASTPIXEL) != 0;
    for (UINT i = 0; i < request.primitiveCount; ++i)
        DrawPrimitive(request, i, drawsLastPixel);
    ++program.output.target->changes;
    return D3D_OK;
}

void Rasterizer::DrawPrimitive(const DrawRequest& request, UINT index, bool drawsLastPixel)
{
    UINT places[3];
    CornersOf(request.type, index, places);
    const int count = CornerCount(request.type);
    UINT corners[3] = {};
    const ShadedVertex* shaded[3] = {};
    for (int i = 0; i < count; ++i)
        corners[i] = static_cast<UINT>(request.indices.Vertex(places[i]));
    vertices.Shade(corners, count, shaded);
    // In a strip the end of a line is the start of the next one.
    const bool isLast = request.type == D3DPT_LINELIST || index + 1 == request.primitiveCount;
    if (count == 1)
        drawer.DrawPoint(*shaded[0]);
    else if (count == 2)
        drawer.DrawLine(*shaded[0], *shaded[1], drawsLastPixel && isLast);
    else
        drawer.DrawTriangle(*shaded[0], *shaded[1], *shaded[2]);
}

} // namespace headless
