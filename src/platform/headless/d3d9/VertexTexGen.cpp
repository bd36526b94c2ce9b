#include "platform/headless/d3d9/VertexTexGen.h"

#include <algorithm>

namespace headless {

namespace {

constexpr DWORD kSetMask = 0xFFFF;

/// The index of the coordinate that D3DTTFF_PROJECTED divides by: the last of the count, or without
/// a count the last of the source.
int DivisorOf(DWORD flags, int sourceFloats)
{
    if ((flags & D3DTTFF_PROJECTED) == 0)
        return -1;
    const DWORD count = flags & 7;
    const int last =
        count == D3DTTFF_DISABLE ? sourceFloats : static_cast<int>(std::min<DWORD>(count, 4));
    return last >= 2 ? last - 1 : -1;
}

/// Sphere maps look along the view: the reflection straight back is (0, 0, -1), which the public
/// formula maps to the centre of the map.
void SphereCoordinates(const Vector3& reflected, float (&out)[4])
{
    const Vector3 half = reflected + Vector3{0.0f, 0.0f, -1.0f};
    const float twice = 2.0f * Length(half);
    const float scale = twice > 0.0f ? 1.0f / twice : 0.0f;
    out[0] = half.x * scale + 0.5f;
    out[1] = half.y * scale + 0.5f;
    out[2] = 0.0f;
    out[3] = 1.0f;
}

void Generate(DWORD source, const CameraVertex& vertex, float (&out)[4])
{
    Vector3 value = vertex.normal;
    if (source != D3DTSS_TCI_CAMERASPACENORMAL) {
        value = {vertex.position[0], vertex.position[1], vertex.position[2]};
        if (source != D3DTSS_TCI_CAMERASPACEPOSITION)
            value = Reflected(Normalised(value), vertex.normal);
    }
    if (source == D3DTSS_TCI_SPHEREMAP) {
        SphereCoordinates(value, out);
        return;
    }
    out[0] = value.x;
    out[1] = value.y;
    out[2] = value.z;
    out[3] = 1.0f;
}

} // namespace

void VertexTexGen::Prepare(const DrawState& state, const VertexLayout& vertexLayout,
                           const VaryingLayout& varyings)
{
    layout = &vertexLayout;
    stageCount = 0;
    for (UINT i = 0; i < kStageCount; ++i) {
        if (varyings.coordinates[i] < 0)
            continue;
        const DWORD index = state.stage[i][D3DTSS_TEXCOORDINDEX];
        const DWORD flags = state.stage[i][D3DTSS_TEXTURETRANSFORMFLAGS];
        Stage& stage = stages[stageCount++];
        stage.place = varyings.coordinates[i];
        // Pretransformed vertices have no camera space, and no texture matrix applies to them.
        stage.source = layout->isTransformed ? D3DTSS_TCI_PASSTHRU : index & ~kSetMask;
        stage.set = index & kSetMask;
        stage.isMoved = !layout->isTransformed && (flags & 7) != D3DTTFF_DISABLE;
        const bool isStored = stage.source == D3DTSS_TCI_PASSTHRU;
        const int floats = isStored && stage.set < static_cast<UINT>(layout->setCount)
                               ? layout->setFloats[stage.set]
                               : (isStored ? 2 : 3);
        stage.isProjected = varyings.isProjected[i];
        stage.isWhole = varyings.areWhole;
        stage.count = varyings.coordinateCounts[i];
        stage.floats = stage.isMoved ? static_cast<int>(std::min<DWORD>(flags & 7, 4)) : floats;
        stage.divisor = DivisorOf(flags, floats);
        stage.matrix = state.texture[i];
    }
}

void VertexTexGen::Write(const VertexStream& stream, UINT index, const CameraVertex& vertex,
                         ShadedVertex& shadedOut) const
{
    for (int i = 0; i < stageCount; ++i) {
        const Stage& stage = stages[i];
        float in[4];
        if (stage.source == D3DTSS_TCI_PASSTHRU)
            FetchCoordinates(*layout, stream, index, stage.set, in);
        else
            Generate(stage.source, vertex, in);
        float moved[4] = {in[0], in[1], in[2], in[3]};
        for (int c = 0; stage.isMoved && c < 4; ++c)
            moved[c] = in[0] * stage.matrix.m[0][c] + in[1] * stage.matrix.m[1][c] +
                       in[2] * stage.matrix.m[2][c] + in[3] * stage.matrix.m[3][c];
        // A shader gets coordinates that no matrix moves as 0, 0, 0, 1 where they are missing.
        for (int c = stage.floats; stage.isWhole && !stage.isMoved && c < 4; ++c)
            moved[c] = c == 3 ? 1.0f : 0.0f;
        float* out = shadedOut.varying + stage.place;
        if (stage.isWhole) {
            std::copy_n(moved, 4, out);
            continue;
        }
        out[0] = moved[0];
        out[1] = moved[1];
        if (stage.count == 3)
            out[2] = stage.floats >= 3 ? moved[2] : 0.0f;
        if (stage.isProjected)
            out[stage.count] = stage.divisor >= 0 ? moved[stage.divisor] : 1.0f;
    }
}

} // namespace headless
