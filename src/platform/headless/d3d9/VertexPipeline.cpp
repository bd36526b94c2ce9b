#include "platform/headless/d3d9/VertexPipeline.h"

#include <algorithm>
#include <cmath>

namespace headless {

namespace {

void Store(float* out, const Float4& colour)
{
    out[0] = colour.r;
    out[1] = colour.g;
    out[2] = colour.b;
    out[3] = colour.a;
}

/// Clip planes are given in world space. A plane transforms by the inverse of the matrix for
/// points.
UINT CameraPlanes(const DrawState& state, float (&planesOut)[kClipPlaneCount][4])
{
    const DWORD enabled = state.Render(D3DRS_CLIPPLANEENABLE);
    D3DMATRIX inverse;
    if (enabled == 0 || !InvertMatrix(state.view, inverse))
        return 0;
    for (UINT plane = 0; plane < kClipPlaneCount; ++plane)
        for (int row = 0; row < 4; ++row) {
            float sum = 0.0f;
            for (size_t i = 0; i < 4; ++i)
                sum += inverse.m[row][i] * state.clipPlanes[plane][i];
            planesOut[plane][row] = (enabled >> plane & 1) != 0 ? sum : 0.0f;
        }
    return kClipPlaneCount;
}

/// A usable 1/w; vertices of flat pictures often hold 0 there.
float WOf(float reciprocal)
{
    return std::isnormal(reciprocal) && reciprocal > 0.0f ? 1.0f / reciprocal : 1.0f;
}

} // namespace

void VertexPipeline::Prepare(const DrawState& state, const VertexLayout& vertexLayout,
                             const VertexStream& vertexStream, const VaryingLayout& wanted,
                             bool pointsAreDrawn)
{
    layout = vertexLayout;
    stream = vertexStream;
    varyings = wanted;
    drawsPoints = pointsAreDrawn;
    needsColours = varyings.diffuse >= 0 || varyings.specular >= 0 || varyings.fog >= 0;
    planeCount = layout.isTransformed ? 0 : CameraPlanes(state, planes);
    transform.Prepare(state, layout);
    light.Prepare(state, layout);
    texGen.Prepare(state, layout, varyings);
    fog = VertexFog(state, layout);
    pointSize = PointSize(state, layout);
    std::fill(std::begin(keptIndex), std::end(keptIndex), 0u);
}

void VertexPipeline::Shade(const UINT* indices, int count, const ShadedVertex** verticesOut)
{
    for (int i = 0; i < count; ++i) {
        const UINT slot = indices[i] % kKept;
        verticesOut[i] = &kept[slot];
        if (keptIndex[slot] == indices[i] + 1)
            continue;
        const bool isTaken =
            std::find(verticesOut, verticesOut + i, &kept[slot]) != verticesOut + i;
        if (isTaken) {
            Process(indices[i], spare[i]);
            verticesOut[i] = &spare[i];
            continue;
        }
        Process(indices[i], kept[slot]);
        keptIndex[slot] = indices[i] + 1;
    }
}

void VertexPipeline::Transform(const SourceVertex& source, CameraVertex& cameraOut,
                               ShadedVertex& out)
{
    if (layout.isTransformed) {
        const float w = WOf(source.position[3]);
        for (int i = 0; i < 3; ++i)
            out.clip[i] = source.position[i] * w;
        out.clip[3] = w;
        return;
    }
    transform.ToCamera(source, cameraOut);
    transform.ToClip(cameraOut, out.clip);
    for (UINT i = 0; i < planeCount; ++i)
        out.planeDistance[i] =
            planes[i][0] * cameraOut.position[0] + planes[i][1] * cameraOut.position[1] +
            planes[i][2] * cameraOut.position[2] + planes[i][3] * cameraOut.position[3];
}

void VertexPipeline::Process(UINT index, ShadedVertex& out)
{
    SourceVertex source;
    FetchVertex(layout, stream, index, source);
    if (varyings.areWhole) // a pixel shader may read what these functions do not give: 0
        std::fill_n(out.varying, varyings.count, 0.0f);
    CameraVertex camera = {};
    Transform(source, camera, out);
    if (needsColours) {
        const VertexColours colours =
            layout.isTransformed
                ? VertexColours{ColourOf(source.diffuse), ColourOf(source.specular)}
                : light.Colours(source, camera);
        if (varyings.diffuse >= 0)
            Store(out.varying + varyings.diffuse, colours.diffuse);
        if (varyings.specular >= 0)
            Store(out.varying + varyings.specular, colours.specular);
        if (varyings.fog >= 0)
            out.varying[varyings.fog] = fog.Factor(camera, colours.specular.a);
    }
    texGen.Write(stream, index, camera, out);
    if (drawsPoints)
        out.pointSize = pointSize.Of(source, camera);
}

} // namespace headless
