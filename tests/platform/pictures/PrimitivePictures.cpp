// Primitive types, fill modes, culling, depth and clipping.

#include "tests/platform/pictures/PictureProgram.h"

#include <cmath>

namespace {

using Flat = std::vector<FlatVertex>;

FlatVertex At(float x, float y, D3DCOLOR colour, float z = 0.5f)
{
    return {x, y, z, 1.0f, colour, 0.0f, 0.0f};
}

void TriangleOneColour(PictureStage& stage)
{
    stage.DrawVertices(D3DPT_TRIANGLELIST, 1,
                       Flat{At(4.3f, 58.2f, 0xFFFF8000), At(31.7f, 3.1f, 0xFFFF8000),
                            At(60.4f, 47.6f, 0xFFFF8000)});
}

void TriangleGouraud(PictureStage& stage)
{
    stage.DrawVertices(D3DPT_TRIANGLELIST, 1,
                       Flat{At(4.3f, 58.2f, 0xFFFF0000), At(31.7f, 3.1f, 0xFF00FF00),
                            At(60.4f, 47.6f, 0xFF0000FF)});
}

Flat Zigzag()
{
    constexpr D3DCOLOR kColours[] = {0xFFFF0000, 0xFF00FF00, 0xFF0000FF,
                                     0xFFFFFF00, 0xFF00FFFF, 0xFFFF00FF};
    Flat vertices;
    for (int i = 0; i < 6; ++i)
        vertices.push_back(
            At(6.25f + 10.0f * static_cast<float>(i), i % 2 ? 12.25f : 50.25f, kColours[i]));
    return vertices;
}

void FlatShadedStrip(PictureStage& stage)
{
    stage.State(D3DRS_SHADEMODE, static_cast<DWORD>(D3DSHADE_FLAT));
    stage.DrawVertices(D3DPT_TRIANGLESTRIP, 4, Zigzag());
}

void GouraudStrip(PictureStage& stage)
{
    stage.DrawVertices(D3DPT_TRIANGLESTRIP, 4, Zigzag());
}

Flat Wheel(int spokes)
{
    Flat vertices = {At(32.25f, 32.25f, 0xFFFFFFFF)};
    for (int i = 0; i <= spokes; ++i) {
        const double angle = 6.283185307 * i / spokes;
        vertices.push_back(At(32.25f + 28.0f * static_cast<float>(std::cos(angle)),
                              32.25f + 28.0f * static_cast<float>(std::sin(angle)),
                              i % 2 ? 0xFFC04000 : 0xFF0040C0));
    }
    return vertices;
}

void FlatShadedFan(PictureStage& stage)
{
    stage.State(D3DRS_SHADEMODE, static_cast<DWORD>(D3DSHADE_FLAT));
    stage.DrawVertices(D3DPT_TRIANGLEFAN, 7, Wheel(7));
}

/// Triangles with shared edges, additively blended: a seam would be brighter or darker.
void FanWithoutSeams(PictureStage& stage)
{
    stage.State(D3DRS_ALPHABLENDENABLE, static_cast<DWORD>(TRUE));
    stage.State(D3DRS_SRCBLEND, static_cast<DWORD>(D3DBLEND_ONE));
    stage.State(D3DRS_DESTBLEND, static_cast<DWORD>(D3DBLEND_ONE));
    Flat vertices = Wheel(23);
    for (FlatVertex& vertex : vertices)
        vertex.diffuse = 0xFF404040;
    stage.DrawVertices(D3DPT_TRIANGLEFAN, 23, vertices);
}

void LineList(PictureStage& stage)
{
    Flat vertices;
    for (int i = 0; i < 16; ++i) {
        const double angle = 6.283185307 * i / 16.0 + 0.1;
        const auto x = static_cast<float>(std::cos(angle));
        const auto y = static_cast<float>(std::sin(angle));
        vertices.push_back(At(32.0f + x * 6.0f, 32.0f + y * 6.0f, 0xFFFFFF00));
        vertices.push_back(At(32.0f + x * 29.0f, 32.0f + y * 29.0f, 0xFFFF0040));
    }
    stage.DrawVertices(D3DPT_LINELIST, 16, vertices);
}

void LineStrip(PictureStage& stage)
{
    stage.DrawVertices(D3DPT_LINESTRIP, 5, Zigzag());
}

void PointsOfSizes(PictureStage& stage)
{
    for (int i = 0; i < 5; ++i) {
        stage.State(D3DRS_POINTSIZE, 1.0f + 3.0f * static_cast<float>(i));
        stage.DrawVertices(D3DPT_POINTLIST, 1,
                           Flat{At(6.25f + 12.0f * static_cast<float>(i), 32.25f, 0xFF80FF40)});
    }
}

void PointSprites(PictureStage& stage)
{
    stage->SetTexture(0, stage.Checker());
    stage.State(D3DRS_POINTSPRITEENABLE, static_cast<DWORD>(TRUE));
    stage.State(D3DRS_POINTSIZE, 24.0f);
    stage.DrawVertices(D3DPT_POINTLIST, 2,
                       Flat{At(16.25f, 20.25f, 0xFFFFFFFF), At(44.25f, 44.25f, 0xFFFF8080)});
}

void Wireframe(PictureStage& stage)
{
    stage.State(D3DRS_FILLMODE, static_cast<DWORD>(D3DFILL_WIREFRAME));
    stage.DrawVertices(D3DPT_TRIANGLEFAN, 7, Wheel(7));
}

void CullEachWay(PictureStage& stage)
{
    // The left pair is clockwise, the right pair counterclockwise; one of each is drawn.
    for (const DWORD mode : {D3DCULL_CCW, D3DCULL_CW}) {
        const float top = mode == D3DCULL_CCW ? 4.25f : 36.25f;
        stage.State(D3DRS_CULLMODE, mode);
        stage.DrawVertices(D3DPT_TRIANGLELIST, 2,
                           Flat{At(4.25f, top + 24, 0xFFFF0000), At(16.25f, top, 0xFFFF0000),
                                At(28.25f, top + 24, 0xFFFF0000), At(36.25f, top + 24, 0xFF00FF00),
                                At(60.25f, top + 24, 0xFF00FF00), At(48.25f, top, 0xFF00FF00)});
    }
}

void CrossingPlanes(PictureStage& stage)
{
    stage.LookAtOrigin();
    D3DXMATRIX turn;
    for (const float angle : {0.6f, -0.7f}) {
        D3DXMatrixRotationY(&turn, angle);
        stage.World(turn);
        stage.Board(angle > 0 ? 0xFFE06020 : 0xFF2080E0);
    }
}

/// A floor that runs below and behind the eye.
void ClippedByTheEye(PictureStage& stage)
{
    stage.LookAtOrigin();
    stage->SetTexture(0, stage.Checker());
    D3DXMATRIX lie, grow, move;
    D3DXMatrixRotationX(&lie, 1.5707963f);
    D3DXMatrixScaling(&grow, 8.0f, 8.0f, 8.0f);
    // Slightly off-centre, so that no edge of a square runs through pixel centres.
    D3DXMatrixTranslation(&move, 0.07f, -1.0f, 0.03f);
    stage.World(lie * grow * move);
    stage.Board(0xFFFFFFFF, 2.0f);
}

void ClipPlane(PictureStage& stage)
{
    stage.LookAtOrigin();
    const float plane[4] = {0.7071068f, 0.7071068f, 0.0f, 0.25f};
    stage->SetClipPlane(0, plane);
    stage.State(D3DRS_CLIPPLANEENABLE, static_cast<DWORD>(D3DCLIPPLANE0));
    stage.Sphere();
    stage.State(D3DRS_CLIPPLANEENABLE, static_cast<DWORD>(0));
}

void IndexedMesh(PictureStage& stage)
{
    const Flat vertices = Wheel(7);
    std::vector<WORD> indices;
    for (WORD i = 1; i <= 7; i = static_cast<WORD>(i + 2))
        indices.insert(indices.end(), {0, i, static_cast<WORD>(i + 1)});
    stage->SetFVF(FlatVertex::kFormat);
    PictureStage::Check(
        stage->DrawIndexedPrimitiveUP(D3DPT_TRIANGLELIST, 0, static_cast<UINT>(vertices.size()),
                                      static_cast<UINT>(indices.size() / 3), indices.data(),
                                      D3DFMT_INDEX16, vertices.data(), sizeof(FlatVertex)));
}

/// Only the corners of triangles, and how the point size affects them.
void FillPoints(PictureStage& stage)
{
    stage.LookAtOrigin();
    stage.State(D3DRS_FILLMODE, static_cast<DWORD>(D3DFILL_POINT));
    stage.State(D3DRS_POINTSIZE, 2.0f);
    stage.Sphere(6);
}

struct SizedVertex {
    float x, y, z, rhw;
    float size;
    D3DCOLOR diffuse;
    static constexpr DWORD kFormat = D3DFVF_XYZRHW | D3DFVF_PSIZE | D3DFVF_DIFFUSE;
};

/// The size in a vertex overrides the state, and both are clamped to the limits.
void StoredPointSizes(PictureStage& stage)
{
    stage.State(D3DRS_POINTSIZE, 30.0f);
    stage.State(D3DRS_POINTSIZE_MIN, 4.0f);
    stage.State(D3DRS_POINTSIZE_MAX, 14.0f);
    stage.DrawVertices<SizedVertex>(D3DPT_POINTLIST, 3,
                                    {{10.25f, 32.25f, 0.5f, 1, 1.0f, 0xFFFF8000},
                                     {28.25f, 32.25f, 0.5f, 1, 9.0f, 0xFF00FF80},
                                     {50.25f, 32.25f, 0.5f, 1, 40.0f, 0xFF8080FF}});
}

/// Pretransformed vertices: the checker narrows to the right as 1/w falls.
void TransformedInPerspective(PictureStage& stage)
{
    stage->SetTexture(0, stage.Checker());
    stage.DrawVertices(D3DPT_TRIANGLESTRIP, 2,
                       Flat{{2.3f, 2.3f, 0.5f, 1.0f, 0xFFFFFFFF, 0, 0},
                            {60.7f, 20.2f, 0.5f, 0.25f, 0xFFFFFFFF, 1, 0},
                            {2.3f, 60.7f, 0.5f, 1.0f, 0xFFFFFFFF, 0, 1},
                            {60.7f, 44.4f, 0.5f, 0.25f, 0xFFFFFFFF, 1, 1}});
}

} // namespace

// The system omits the last pixel of a line, whatever D3DRS_LASTPIXEL says.
const std::vector<PictureProgram> kPrimitivePictures = {
    {"triangle_one_colour", TriangleOneColour, 2, 0},
    {"triangle_gouraud", TriangleGouraud, 2, 0},
    {"flat_shaded_strip", FlatShadedStrip, 2, 0},
    {"gouraud_strip", GouraudStrip, 2, 0},
    {"flat_shaded_fan", FlatShadedFan, 2, 0},
    {"fan_without_seams", FanWithoutSeams, 2, 0},
    {"line_list", LineList, 2, 16},
    {"line_strip", LineStrip, 2, 16},
    {"points_of_sizes", PointsOfSizes, 2, 0},
    {"point_sprites", PointSprites, 2, 0},
    {"wireframe", Wireframe, 2, 8},
    {"cull_each_way", CullEachWay, 2, 0},
    {"crossing_planes", CrossingPlanes, 2, 0},
    {"clipped_by_the_eye", ClippedByTheEye, 2, 0},
    {"clip_plane", ClipPlane, 2, 0},
    {"indexed_mesh", IndexedMesh, 2, 0},
    {"fill_points", FillPoints, 2, 0},
    {"stored_point_sizes", StoredPointSizes, 2, 0},
    {"transformed_in_perspective", TransformedInPerspective, 2, 0},
};
