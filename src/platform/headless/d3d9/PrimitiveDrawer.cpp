#include "platform/headless/d3d9/PrimitiveDrawer.h"

#include "platform/headless/d3d9/LineSetup.h"
#include "platform/headless/d3d9/PointSetup.h"
#include "platform/headless/d3d9/Prefetch.h"
#include "platform/headless/d3d9/ShaderPixels.h"
#include "platform/headless/d3d9/SpanShader.h"

#include <algorithm>

namespace headless {

namespace {

/// How far from the centre of the viewport a corner may lie. With the largest target this stays
/// within the 2^15 pixels that the triangle walk can handle.
constexpr float kGuardBand = 16384.0f;

/// Rounds to nearest, in one instruction. Clipping keeps positions far within the limits; the clamp
/// covers degenerate planes.
int ToSubPixels(float pixels)
{
    const Lanes held = ClampLanes(Splat(pixels), Splat(-32000.0f), Splat(32000.0f));
    return FirstLane(Round(held * Splat(static_cast<float>(kSubPixels))));
}

ScreenMap MapOf(const D3DVIEWPORT9& viewport)
{
    const float halfWidth = static_cast<float>(viewport.Width) * 0.5f;
    const float halfHeight = static_cast<float>(viewport.Height) * 0.5f;
    return {halfWidth,
            static_cast<float>(viewport.X) + halfWidth,
            -halfHeight,
            static_cast<float>(viewport.Y) + halfHeight,
            viewport.MaxZ - viewport.MinZ,
            viewport.MinZ};
}

float GuardOf(float scale)
{
    return std::max(1.0f, kGuardBand / std::max(std::abs(scale), 0.5f));
}

} // namespace

void PrimitiveDrawer::Prepare(const DrawState& state, const PixelProgram& pixelProgram,
                              bool isTransformed)
{
    program = &pixelProgram;
    map = isTransformed ? ScreenMap() : MapOf(state.viewport);
    const bool clips = !isTransformed && state.Render(D3DRS_CLIPPING) != 0;
    clip.clipsDepth = clips;
    clip.guardX = GuardOf(map.scaleX);
    clip.guardY = GuardOf(map.scaleY);
    clip.planes = clips ? state.Render(D3DRS_CLIPPLANEENABLE) : 0;
    clip.varyingCount = pixelProgram.varyings.count;
    cull = static_cast<D3DCULL>(state.Render(D3DRS_CULLMODE));
    fill = static_cast<D3DFILLMODE>(state.Render(D3DRS_FILLMODE));
    isFlat = state.Render(D3DRS_SHADEMODE) == D3DSHADE_FLAT;
    drawsSprites = state.Render(D3DRS_POINTSPRITEENABLE) != 0;
    FindWraps(state);
}

/// The states belong to sets of coordinates; a pixel shader's register n reads set n.
void PrimitiveDrawer::FindWraps(const DrawState& state)
{
    wrapCount = 0;
    const VaryingLayout& varyings = program->varyings;
    for (UINT stage = 0; stage < kStageCount; ++stage) {
        const DWORD set = varyings.areWhole ? stage : state.stage[stage][D3DTSS_TEXCOORDINDEX] & 7;
        const DWORD flags = state.render[D3DRS_WRAP0 + set];
        const int count = varyings.areWhole ? 4 : varyings.coordinateCounts[stage];
        for (int c = 0; c < count && varyings.coordinates[stage] >= 0; ++c)
            if ((flags >> c & 1) != 0 && !varyings.isProjected[stage])
                wraps[wrapCount++] = varyings.coordinates[stage] + c;
    }
}

/// Moves coordinates by 1 where that makes the way from the first corner shorter.
void PrimitiveDrawer::WrapTo(const ShadedVertex& first, ShadedVertex& vertex) const
{
    for (int i = 0; i < wrapCount; ++i) {
        float& value = vertex.varying[wraps[i]];
        const float way = value - first.varying[wraps[i]];
        value += way > 0.5f ? -1.0f : (way < -0.5f ? 1.0f : 0.0f);
    }
}

/// The guard band guarantees a positive w and bounds x and y.
Corner PrimitiveDrawer::ToCorner(const ShadedVertex& vertex) const
{
    const float reciprocalW = 1.0f / vertex.clip[3];
    return {ToSubPixels(vertex.clip[0] * reciprocalW * map.scaleX + map.offsetX),
            ToSubPixels(vertex.clip[1] * reciprocalW * map.scaleY + map.offsetY),
            vertex.clip[2] * reciprocalW * map.scaleZ + map.offsetZ, reciprocalW, vertex.varying};
}

void PrimitiveDrawer::CopyFlatColours(const ShadedVertex& from, ShadedVertex& to) const
{
    for (const int place : {program->varyings.diffuse, program->varyings.specular})
        if (place >= 0)
            std::copy_n(from.varying + place, 4, to.varying + place);
}

bool PrimitiveDrawer::IsCulled(bool isClockwise) const
{
    return cull == (isClockwise ? D3DCULL_CW : D3DCULL_CCW);
}

/// The sign of the determinant of x, y and w gives a triangle's winding even if part of it lies
/// behind the eye.
bool PrimitiveDrawer::IsClockwise(const ShadedVertex& va, const ShadedVertex& vb,
                                  const ShadedVertex& vc) const
{
    const auto minor = [](const float* p, const float* q, int i, int j) {
        return static_cast<double>(p[i]) * static_cast<double>(q[j]) -
               static_cast<double>(p[j]) * static_cast<double>(q[i]);
    };
    const float *a = va.clip, *b = vb.clip, *c = vc.clip;
    const double determinant = static_cast<double>(a[0]) * minor(b, c, 1, 3) -
                               static_cast<double>(a[1]) * minor(b, c, 0, 3) +
                               static_cast<double>(a[3]) * minor(b, c, 0, 1);
    return (determinant > 0.0) == (map.scaleX * map.scaleY > 0.0f);
}

void PrimitiveDrawer::DrawRow(const Planes& of, int y, int left, int right)
{
    covered += left < right ? static_cast<uint64_t>(right - left) : 0;
    if (program->shader)
        program->shader->AddRow(of, y, left, right);
    else if (left < right)
        program->spans->AddRow(of, y, left, right);
}

/// Two rows may be shaded at a time, so one may wait for the next.
void PrimitiveDrawer::FinishRows(const Planes& of)
{
    if (program->shader)
        program->shader->Finish(of);
    else
        program->spans->Finish(of);
}

/// Asks for the rows of a small triangle. Those of a large one are asked for while it is drawn.
void PrimitiveDrawer::FetchRows(const Waiting& triangle, int left, int right) const
{
    constexpr int kMostRows = 16, kMostPixels = 32;
    if (right - left > kMostPixels)
        return;
    const int last = std::min(triangle.rows.LastRow(), triangle.y + kMostRows - 1);
    for (int y = triangle.y; y <= last; ++y)
        PrefetchRow(*program, y, left, right);
}

void PrimitiveDrawer::Fill(Waiting& triangle)
{
    if (program->shader)
        program->shader->SetFace(triangle.isFront);
    do {
        DrawRow(triangle.planes, triangle.y, triangle.left, triangle.right);
    } while (triangle.rows.Next(triangle.y, triangle.left, triangle.right));
    FinishRows(triangle.planes);
}

void PrimitiveDrawer::FillWaiting()
{
    if (hasWaiting)
        Fill(triangles[1 - next]);
    hasWaiting = false;
}

void PrimitiveDrawer::Finish()
{
    FillWaiting();
    if (program->shader)
        program->shader->Flush();
}

void PrimitiveDrawer::FillTriangle(const ShadedVertex& va, const ShadedVertex& vb,
                                   const ShadedVertex& vc)
{
    const Corner a = ToCorner(va);
    Corner b = ToCorner(vb);
    Corner c = ToCorner(vc);
    int64_t area = TwiceArea(a, b, c);
    if (area == 0 || IsCulled(area > 0))
        return;
    Waiting& triangle = triangles[next];
    triangle.isFront = area > 0;
    if (area < 0) {
        std::swap(b, c);
        area = -area;
    }
    triangle.rows = TriangleRows(a, b, c, program->area);
    do { // many small triangles cover no pixel centre
        if (!triangle.rows.Next(triangle.y, triangle.left, triangle.right))
            return;
    } while (triangle.left >= triangle.right);
    SetUpTriangle(a, b, c, area, program->varyings.count, triangle.planes);
    const auto [low, high] = std::minmax({a.x, b.x, c.x});
    FetchRows(triangle, std::max(CeilPixel(low), program->area.left),
              std::min(CeilPixel(high), program->area.right));
    FillWaiting();
    hasWaiting = true;
    next = 1 - next;
    if (program->shader && !program->shader->Gathers()) // its work counts when it ends
        FillWaiting();
}

void PrimitiveDrawer::FillClipped(const ShadedVertex& a, const ShadedVertex& b,
                                  const ShadedVertex& c, DWORD codes)
{
    ShadedVertex corners[kMaxClippedCorners];
    corners[0] = a;
    corners[1] = b;
    corners[2] = c;
    const int count = codes != 0 ? ClipPolygon(clip, codes, corners, 3) : 3;
    for (int i = 2; i < count; ++i)
        FillTriangle(corners[0], corners[i - 1], corners[i]);
}

void PrimitiveDrawer::DrawTriangle(const ShadedVertex& a, const ShadedVertex& b,
                                   const ShadedVertex& c)
{
    if (!IsFinite(a) || !IsFinite(b) || !IsFinite(c))
        return;
    const DWORD codes[3] = {ClipCode(clip, a), ClipCode(clip, b), ClipCode(clip, c)};
    if ((codes[0] & codes[1] & codes[2]) != 0)
        return;
    const DWORD crossed = codes[0] | codes[1] | codes[2];
    if (fill == D3DFILL_SOLID && crossed == 0 && !isFlat && wrapCount == 0) {
        FillTriangle(a, b, c);
        return;
    }
    ShadedVertex second = b, third = c;
    WrapTo(a, second);
    WrapTo(a, third);
    if (isFlat) {
        CopyFlatColours(a, second);
        CopyFlatColours(a, third);
    }
    if (fill == D3DFILL_SOLID)
        FillClipped(a, second, third, crossed);
    else if (!IsCulled(IsClockwise(a, b, c)))
        DrawOutline(a, second, third);
}

/// The edges of a triangle, or its corners.
/// QUIRK: corners are single pixels whatever D3DRS_POINTSIZE says, as on other implementations.
void PrimitiveDrawer::DrawOutline(const ShadedVertex& a, const ShadedVertex& b,
                                  const ShadedVertex& c)
{
    if (fill == D3DFILL_WIREFRAME) {
        DrawLine(a, b, false);
        DrawLine(b, c, false);
        DrawLine(c, a, false);
        return;
    }
    for (const ShadedVertex* corner : {&a, &b, &c})
        FillSquare(*corner, 1.0f, false);
}

void PrimitiveDrawer::DrawLine(const ShadedVertex& from, const ShadedVertex& to, bool drawsEnd)
{
    if (!IsFinite(from) || !IsFinite(to))
        return;
    if (program->shader)
        program->shader->SetFace(true);
    const DWORD codes[2] = {ClipCode(clip, from), ClipCode(clip, to)};
    ShadedVertex a = from, b = to;
    WrapTo(a, b);
    if (isFlat)
        CopyFlatColours(a, b);
    if ((codes[0] & codes[1]) != 0 ||
        ((codes[0] | codes[1]) != 0 && !ClipLine(clip, codes[0] | codes[1], a, b)))
        return;
    const Corner start = ToCorner(a), end = ToCorner(b);
    SetUpLine(start, end, program->varyings.count, planes);
    LineRuns runs(start, end, drawsEnd, program->area);
    int y = 0, left = 0, right = 0;
    while (runs.Next(y, left, right))
        DrawRow(planes, y, left, right);
    FinishRows(planes);
}

void PrimitiveDrawer::DrawPoint(const ShadedVertex& vertex)
{
    FillSquare(vertex, vertex.pointSize, drawsSprites);
}

void PrimitiveDrawer::FillSquare(const ShadedVertex& vertex, float side, bool isSprite)
{
    if (!IsFinite(vertex) || ClipCode(clip, vertex) != 0)
        return;
    if (program->shader)
        program->shader->SetFace(true);
    const Corner centre = ToCorner(vertex);
    const PixelArea square = PointArea(centre, side, program->area);
    SetUpPoint(centre, side, isSprite, program->varyings, planes);
    for (int y = square.top; y < square.bottom; ++y)
        DrawRow(planes, y, square.left, square.right);
    FinishRows(planes);
}

} // namespace headless
