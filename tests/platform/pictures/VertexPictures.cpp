// Lights, materials, fog, point scaling, vertex blending.

#include "tests/platform/pictures/PictureProgram.h"

namespace {

D3DMATERIAL9 Material(float r, float g, float b)
{
    D3DMATERIAL9 material = {};
    material.Diffuse = {r, g, b, 1.0f};
    material.Ambient = {r, g, b, 1.0f};
    material.Specular = {1.0f, 1.0f, 1.0f, 1.0f};
    material.Power = 16.0f;
    return material;
}

D3DLIGHT9 Light(D3DLIGHTTYPE type)
{
    D3DLIGHT9 light = {};
    light.Type = type;
    light.Diffuse = {1.0f, 1.0f, 0.9f, 1.0f};
    light.Specular = {1.0f, 1.0f, 1.0f, 1.0f};
    light.Position = {1.5f, 1.5f, -2.0f};
    light.Direction = {-0.5f, -0.5f, 0.7f};
    light.Range = 10.0f;
    light.Attenuation0 = 1.0f;
    return light;
}

void LitSphere(PictureStage& stage, const D3DLIGHT9& light)
{
    stage.LookAtOrigin();
    const D3DMATERIAL9 material = Material(0.9f, 0.5f, 0.2f);
    stage.State(D3DRS_LIGHTING, static_cast<DWORD>(TRUE));
    stage.State(D3DRS_COLORVERTEX, static_cast<DWORD>(FALSE));
    stage.State(D3DRS_AMBIENT, static_cast<DWORD>(0xFF303030));
    stage->SetMaterial(&material);
    stage->SetLight(0, &light);
    stage->LightEnable(0, TRUE);
    stage.Sphere();
}

void LightDirectional(PictureStage& stage)
{
    LitSphere(stage, Light(D3DLIGHT_DIRECTIONAL));
}

void LightPoint(PictureStage& stage)
{
    D3DLIGHT9 light = Light(D3DLIGHT_POINT);
    light.Attenuation0 = 0.5f;
    light.Attenuation1 = 0.25f;
    LitSphere(stage, light);
}

void LightSpot(PictureStage& stage)
{
    D3DLIGHT9 light = Light(D3DLIGHT_SPOT);
    light.Theta = 0.25f;
    light.Phi = 0.6f;
    light.Falloff = 1.0f;
    LitSphere(stage, light);
}

void Highlights(PictureStage& stage)
{
    stage.State(D3DRS_SPECULARENABLE, static_cast<DWORD>(TRUE));
    LitSphere(stage, Light(D3DLIGHT_DIRECTIONAL));
}

void HighlightsFarViewer(PictureStage& stage)
{
    stage.State(D3DRS_LOCALVIEWER, static_cast<DWORD>(FALSE));
    Highlights(stage);
}

/// A sphere scaled to twice the size keeps its shading only if its normals are normalised.
void NormalisedNormals(PictureStage& stage)
{
    D3DXMATRIX scale;
    D3DXMatrixScaling(&scale, 0.5f, 0.5f, 0.5f);
    stage.World(scale);
    stage.State(D3DRS_NORMALIZENORMALS, static_cast<DWORD>(TRUE));
    LitSphere(stage, Light(D3DLIGHT_DIRECTIONAL));
}

void ColourSources(PictureStage& stage)
{
    stage.LookAtOrigin();
    const D3DMATERIAL9 material = Material(0.2f, 0.2f, 0.2f);
    const D3DLIGHT9 light = Light(D3DLIGHT_DIRECTIONAL);
    stage.State(D3DRS_LIGHTING, static_cast<DWORD>(TRUE));
    stage.State(D3DRS_AMBIENT, static_cast<DWORD>(0xFF404040));
    stage.State(D3DRS_AMBIENTMATERIALSOURCE, static_cast<DWORD>(D3DMCS_COLOR1));
    stage.State(D3DRS_DIFFUSEMATERIALSOURCE, static_cast<DWORD>(D3DMCS_MATERIAL));
    stage->SetMaterial(&material);
    stage->SetLight(0, &light);
    stage->LightEnable(0, TRUE);
    stage.Board(0xFFFF4000);
}

/// Boards at distances 2, 3, 4 and 5.
void BoardsInARow(PictureStage& stage)
{
    stage.LookAtOrigin();
    D3DXMATRIX place;
    for (int i = 3; i >= 0; --i) {
        D3DXMatrixTranslation(&place, -1.0f + static_cast<float>(i) * 0.9f, 0.0f,
                              static_cast<float>(i) - 1.0f);
        place._11 = 0.4f;
        stage.World(place);
        stage.Board(0xFFFFA040);
    }
}

void Fog(PictureStage& stage, D3DRENDERSTATETYPE kind, DWORD mode)
{
    stage.State(D3DRS_FOGENABLE, static_cast<DWORD>(TRUE));
    stage.State(D3DRS_FOGCOLOR, static_cast<DWORD>(0xFF4060FF));
    stage.State(D3DRS_FOGSTART, 2.0f);
    stage.State(D3DRS_FOGEND, 6.0f);
    stage.State(D3DRS_FOGDENSITY, 0.3f);
    stage.State(kind, mode);
    BoardsInARow(stage);
}

void FogVertexLinear(PictureStage& stage)
{
    Fog(stage, D3DRS_FOGVERTEXMODE, D3DFOG_LINEAR);
}

void FogVertexRange(PictureStage& stage)
{
    stage.State(D3DRS_RANGEFOGENABLE, static_cast<DWORD>(TRUE));
    Fog(stage, D3DRS_FOGVERTEXMODE, D3DFOG_EXP2);
}

void FogTableLinear(PictureStage& stage)
{
    Fog(stage, D3DRS_FOGTABLEMODE, D3DFOG_LINEAR);
}

void FogTableExp(PictureStage& stage)
{
    Fog(stage, D3DRS_FOGTABLEMODE, D3DFOG_EXP);
}

void FogTableExp2(PictureStage& stage)
{
    Fog(stage, D3DRS_FOGTABLEMODE, D3DFOG_EXP2);
}

struct FoggedVertex {
    float x, y, z, rhw;
    D3DCOLOR diffuse, specular;

    static constexpr DWORD kFormat = D3DFVF_XYZRHW | D3DFVF_DIFFUSE | D3DFVF_SPECULAR;
};

/// Unfogged on the left, all fog on the right: the factor is the alpha of the specular colour.
void FogFromSpecular(PictureStage& stage)
{
    stage.State(D3DRS_FOGENABLE, static_cast<DWORD>(TRUE));
    stage.State(D3DRS_FOGCOLOR, static_cast<DWORD>(0xFF4060FF));
    stage.DrawVertices<FoggedVertex>(D3DPT_TRIANGLESTRIP, 2,
                                     {{3.5f, 3.5f, 0.5f, 1, 0xFFFFA040, 0xFF000000},
                                      {59.5f, 3.5f, 0.5f, 1, 0xFFFFA040, 0x00000000},
                                      {3.5f, 59.5f, 0.5f, 1, 0xFFFFA040, 0xFF000000},
                                      {59.5f, 59.5f, 0.5f, 1, 0xFFFFA040, 0x00000000}});
}

struct PlacedVertex {
    float x, y, z;
    D3DCOLOR diffuse;

    static constexpr DWORD kFormat = D3DFVF_XYZ | D3DFVF_DIFFUSE;
};

void PointsByDistance(PictureStage& stage)
{
    stage.LookAtOrigin();
    stage.State(D3DRS_POINTSCALEENABLE, static_cast<DWORD>(TRUE));
    stage.State(D3DRS_POINTSIZE, 0.5f);
    stage.State(D3DRS_POINTSCALE_A, 0.0f);
    stage.State(D3DRS_POINTSCALE_C, 1.0f);
    std::vector<PlacedVertex> points;
    for (int i = 0; i < 4; ++i) {
        const auto step = static_cast<float>(i);
        points.push_back({-1.0f + step * 0.9f, 0.03f, -1.0f + step * 1.5f, 0xFF40FF80});
    }
    stage.DrawVertices(D3DPT_POINTLIST, 4, points);
}

struct BlendedVertex {
    float x, y, z;
    float weight;
    D3DCOLOR diffuse;

    static constexpr DWORD kFormat = D3DFVF_XYZB1 | D3DFVF_DIFFUSE;
};

/// A strip whose upper end follows a second matrix.
void VertexBlend(PictureStage& stage)
{
    stage.LookAtOrigin();
    D3DXMATRIX straight, bent;
    D3DXMatrixIdentity(&straight);
    D3DXMatrixRotationZ(&bent, -0.8f);
    stage.World(straight);
    stage->SetTransform(D3DTS_WORLDMATRIX(1), &bent);
    stage.State(D3DRS_VERTEXBLEND, static_cast<DWORD>(D3DVBF_1WEIGHTS));
    std::vector<BlendedVertex> vertices;
    for (int i = 0; i <= 8; ++i) {
        const float y = -1.4f + 0.35f * static_cast<float>(i);
        const float weight = 1.0f - static_cast<float>(i) / 8.0f;
        const D3DCOLOR colour = i % 2 ? 0xFFFF8000 : 0xFF0080FF;
        vertices.push_back({-0.4f, y, 0.0f, weight, colour});
        vertices.push_back({0.4f, y, 0.0f, weight, colour});
    }
    stage.DrawVertices(D3DPT_TRIANGLESTRIP, 16, vertices);
}

struct HeavyVertex {
    float x, y, z;
    float weights[3];
    D3DCOLOR diffuse;

    static constexpr DWORD kFormat = D3DFVF_XYZB3 | D3DFVF_DIFFUSE;
};

/// A fan whose rim follows four matrices in turn; the last weight is what remains to 1.
void VertexBlendOfFour(PictureStage& stage)
{
    stage.LookAtOrigin();
    for (UINT i = 0; i < 4; ++i) {
        D3DXMATRIX move;
        D3DXMatrixTranslation(&move, i % 2 == 0 ? -0.5f : 0.5f, i < 2 ? -0.4f : 0.6f, 0.0f);
        stage->SetTransform(D3DTS_WORLDMATRIX(i), &move);
    }
    stage.State(D3DRS_VERTEXBLEND, static_cast<DWORD>(D3DVBF_3WEIGHTS));
    stage.DrawVertices<HeavyVertex>(D3DPT_TRIANGLESTRIP, 2,
                                    {{-0.6f, 0.6f, 0, {1, 0, 0}, 0xFFFF4040},
                                     {0.6f, 0.6f, 0, {0.25f, 0.75f, 0}, 0xFF40FF40},
                                     {-0.6f, -0.6f, 0, {0.25f, 0.25f, 0.25f}, 0xFF4040FF},
                                     {0.6f, -0.6f, 0, {0, 0.5f, 0}, 0xFFFFFF40}});
}

/// Three lights of three kinds and colours, with gaps between their indices; a fourth is off.
void SeveralLights(PictureStage& stage)
{
    D3DLIGHT9 light = Light(D3DLIGHT_POINT);
    light.Diffuse = {1.0f, 0.1f, 0.1f, 1.0f};
    light.Ambient = {0.0f, 0.1f, 0.0f, 1.0f};
    light.Position = {-2.0f, 0.5f, -1.5f};
    stage->SetLight(3, &light);
    stage->LightEnable(3, TRUE);
    light = Light(D3DLIGHT_SPOT);
    light.Diffuse = {0.1f, 0.1f, 1.0f, 1.0f};
    light.Theta = 0.2f;
    light.Phi = 0.8f;
    light.Falloff = 2.0f;
    stage->SetLight(7, &light);
    stage->LightEnable(7, TRUE);
    light = Light(D3DLIGHT_DIRECTIONAL);
    stage->SetLight(5, &light);
    light.Diffuse = {0.1f, 0.4f, 0.1f, 1.0f};
    LitSphere(stage, light);
}

struct PlainVertex {
    float x, y, z, nx, ny, nz;
    static constexpr DWORD kFormat = D3DFVF_XYZ | D3DFVF_NORMAL;
};

/// Vertices without colours use the material's, although the states select the vertex.
void LitWithoutColours(PictureStage& stage)
{
    stage.LookAtOrigin();
    const D3DMATERIAL9 material = Material(0.2f, 0.8f, 0.6f);
    D3DLIGHT9 light = Light(D3DLIGHT_DIRECTIONAL);
    light.Diffuse = {0.8f, 0.8f, 0.8f, 1.0f};
    stage.State(D3DRS_LIGHTING, static_cast<DWORD>(TRUE));
    stage->SetMaterial(&material);
    stage->SetLight(0, &light);
    stage->LightEnable(0, TRUE);
    stage.DrawVertices<PlainVertex>(
        D3DPT_TRIANGLELIST, 1, {{-1, -1, 0, 0, 0, -1}, {0, 1, 0, 0, 1, 0}, {1, -1, 0, 0, 0, -1}});
}

/// The projection mirrored left to right, and the cull mode too: the sphere's near side shows.
void MirroredView(PictureStage& stage)
{
    stage.LookAtOrigin();
    D3DXMATRIX projection, mirror, move;
    stage->GetTransform(D3DTS_PROJECTION, &projection);
    D3DXMatrixScaling(&mirror, -1.0f, 1.0f, 1.0f);
    projection = projection * mirror;
    stage->SetTransform(D3DTS_PROJECTION, &projection);
    D3DXMatrixTranslation(&move, 0.4f, 0.2f, 0.0f);
    stage.World(move);
    stage.State(D3DRS_CULLMODE, static_cast<DWORD>(D3DCULL_CW));
    stage->SetTexture(0, stage.Checker());
    stage.Sphere(8);
}

/// Without a fog mode and a specular colour the factor is the alpha of the default colour.
void FogWithoutSpecular(PictureStage& stage)
{
    stage.State(D3DRS_FOGENABLE, static_cast<DWORD>(TRUE));
    stage.State(D3DRS_FOGCOLOR, static_cast<DWORD>(0xFF4060FF));
    stage.Rectangle(8, 8, 56, 56, 0xFFFFA040);
}

struct IndexedVertex {
    float x, y, z, weight;
    DWORD indices;
    D3DCOLOR diffuse;
    static constexpr DWORD kFormat = D3DFVF_XYZB2 | D3DFVF_LASTBETA_UBYTE4 | D3DFVF_DIFFUSE;
};

/// Indices stored after a weight are skipped while indexed blending is off.
void VertexBlendPastIndices(PictureStage& stage)
{
    stage.LookAtOrigin();
    D3DXMATRIX aside;
    D3DXMatrixTranslation(&aside, 0.8f, 0.0f, 0.0f);
    stage->SetTransform(D3DTS_WORLDMATRIX(1), &aside);
    stage.State(D3DRS_VERTEXBLEND, static_cast<DWORD>(D3DVBF_1WEIGHTS));
    stage.DrawVertices<IndexedVertex>(D3DPT_TRIANGLESTRIP, 2,
                                      {{-0.8f, 0.8f, 0, 1.0f, 0x0100, 0xFFFF4040},
                                       {0.2f, 0.8f, 0, 0.5f, 0x0100, 0xFF40FF40},
                                       {-0.8f, -0.8f, 0, 0.75f, 0x0100, 0xFF4040FF},
                                       {0.2f, -0.8f, 0, 0.0f, 0x0100, 0xFFFFFF40}});
}

} // namespace

const std::vector<PictureProgram> kVertexPictures = {
    {"light_directional", LightDirectional, 2, 0},
    {"light_point", LightPoint, 2, 0},
    {"light_spot", LightSpot, 2, 0},
    {"highlights", Highlights, 2, 0},
    {"highlights_far_viewer", HighlightsFarViewer, 2, 0},
    {"normalised_normals", NormalisedNormals, 2, 0},
    {"colour_sources", ColourSources, 2, 0},
    {"fog_vertex_linear", FogVertexLinear, 2, 0},
    {"fog_vertex_range", FogVertexRange, 2, 0},
    {"fog_table_linear", FogTableLinear, 2, 0},
    {"fog_table_exp", FogTableExp, 2, 0},
    {"fog_table_exp2", FogTableExp2, 2, 0},
    {"fog_from_specular", FogFromSpecular, 2, 0},
    {"points_by_distance", PointsByDistance, 2, 0},
    {"vertex_blend", VertexBlend, 2, 0},
    {"vertex_blend_of_four", VertexBlendOfFour, 2, 0},
    {"several_lights", SeveralLights, 2, 0},
    {"lit_without_colours", LitWithoutColours, 2, 0},
    {"mirrored_view", MirroredView, 2, 2},
    {"fog_without_specular", FogWithoutSpecular, 2, 0},
    {"vertex_blend_past_indices", VertexBlendPastIndices, 2, 0},
};
