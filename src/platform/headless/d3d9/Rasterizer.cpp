#include "platform/headless/d3d9/Rasterizer.h"

#include <algorithm>
#include <new>

namespace headless {

uint64_t gShaderBudget = kShaderBudget;
uint64_t gFrameBudget = kFrameBudget;

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

/// What shaders add to the reasons to refuse a draw.
HRESULT CheckShadersOf(const DrawState& state, bool isTransformed)
{
    HRESULT result = D3D_OK;
    if (state.pixelProgram)
        result = CheckShaderTextures(state, *state.pixelProgram, 0);
    if (SUCCEEDED(result) && state.vertexProgram && !isTransformed)
        result = CheckShaderTextures(state, *state.vertexProgram, kPixelSamplerCount);
    return result;
}

} // namespace

HRESULT LeaveUndrawn(const DrawState& state, const VertexLayout& layout, const DrawRequest& request)
{
    static PixelProgram program; // clearing it for each draw would cost more than the checks
    HRESULT result = Start(state, request, program);
    if (FAILED(result) || IsEmpty(program.area))
        return result;
    result = CheckShadersOf(state, layout.isTransformed);
    if (SUCCEEDED(result))
        LeaveBlank(state);
    return result;
}

Rasterizer::Rasterizer() : spans(EightSpanShader()), shaderPixels(EightShaderPixels())
{
    if (!spans)
        spans = FourSpanShader();
    if (!shaderPixels)
        shaderPixels = FourShaderPixels();
}

HRESULT Rasterizer::Draw(const DrawState& state, const VertexLayout& layout,
                         const DrawRequest& request)
{
    if (const HRESULT result = Start(state, request, program); FAILED(result))
        return result;
    if (IsEmpty(program.area))
        return D3D_OK;
    if (const HRESULT result = PrepareShaders(state, layout, request); FAILED(result))
        return result;
    drawer.Prepare(state, program, layout.isTransformed);
    const bool drawsLastPixel = state.Render(D3DRS_LASTPIXEL) != 0;
    if (shadesVertices)
        DrawShaded(request, drawsLastPixel);
    for (UINT i = 0; !shadesVertices && i < request.primitiveCount && GoesOn(); ++i)
        DrawPrimitive(request, i, drawsLastPixel);
    drawer.Finish();
    wasCutOff = wasCutOff || ShaderWork() >= gShaderBudget;
    frameWork += ShaderWork() + drawer.TakeCovered();
    ++program.output.target->changes;
    return D3D_OK;
}

/// Pretransformed vertices skip all vertex processing, a vertex shader's too.
HRESULT Rasterizer::PrepareShaders(const DrawState& state, const VertexLayout& layout,
                                   const DrawRequest& request)
{
    program.shader = nullptr;
    program.spans = spans;
    if (!state.pixelProgram)
        spans->Prepare(program);
    if (state.pixelProgram) {
        program.shader = shaderPixels;
        const HRESULT result = shaderPixels->Prepare(state, program, gShaderBudget);
        if (FAILED(result))
            return result;
    }
    shadesVertices = state.vertexProgram && !layout.isTransformed;
    if (!shadesVertices) {
        vertices.Prepare(state, layout, request.stream, program.varyings,
                         request.type == D3DPT_POINTLIST);
        return D3D_OK;
    }
    if (!shaderVertices)
        shaderVertices.reset(new (std::nothrow) ShaderVertices());
    return shaderVertices ? shaderVertices->Prepare(state, layout, request.stream, program.varyings)
                          : E_OUTOFMEMORY;
}

/// Steps of the current draw.
uint64_t Rasterizer::ShaderWork() const
{
    const uint64_t ofPixels = program.shader ? program.shader->Work() : 0;
    const uint64_t ofVertices = shadesVertices ? shaderVertices->Work() : 0;
    return ofPixels + ofVertices;
}

/// Asked before each primitive.
bool Rasterizer::GoesOn()
{
    if (frameWork >= gFrameBudget) {
        wasFrameCut = wasFrameCut || !isFrameOver;
        isFrameOver = true;
        return false;
    }
    return ShaderWork() < gShaderBudget;
}

/// Primitives in runs, so that the shader computes many vertices at a time.
void Rasterizer::DrawShaded(const DrawRequest& request, bool drawsLastPixel)
{
    const int count = CornerCount(request.type);
    for (UINT first = 0; first < request.primitiveCount && GoesOn();) {
        const UINT run = std::min(ShaderVertices::kRun, request.primitiveCount - first);
        UINT indices[ShaderVertices::kRun * 3];
        int used = 0;
        for (UINT i = 0; i < run; ++i) {
            UINT places[3];
            CornersOf(request.type, first + i, places);
            for (int corner = 0; corner < count; ++corner)
                indices[used++] = static_cast<UINT>(request.indices.Vertex(places[corner]));
        }
        shaderVertices->ShadeRun(indices, used);
        for (UINT i = 0; i < run; ++i) {
            const ShadedVertex* shaded[3] = {};
            for (int corner = 0; corner < count; ++corner)
                shaded[corner] = &shaderVertices->Corner(static_cast<int>(i) * count + corner);
            DrawCorners(request, first + i, shaded, drawsLastPixel);
        }
        first += run;
    }
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
    DrawCorners(request, index, shaded, drawsLastPixel);
}

void Rasterizer::DrawCorners(const DrawRequest& request, UINT index,
                             const ShadedVertex* const (&shaded)[3], bool drawsLastPixel)
{
    const int count = CornerCount(request.type);
    // In a strip the end of a line is the start of the next one.
    const bool isLast = request.type == D3DPT_LINELIST || index + 1 == request.primitiveCount;
    if (count == 1)
        drawer.DrawPoint(*shaded[0]);
    else if (count == 2)
        drawer.DrawLine(*shaded[0], *shaded[1], drawsLastPixel && isLast);
    else
        drawer.DrawTriangle(*shaded[0], *shaded[1], *shaded[2]);
    frameWork += kPrimitiveCost + drawer.TakeCovered();
}

} // namespace headless
