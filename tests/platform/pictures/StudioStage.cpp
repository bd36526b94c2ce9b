#include "tests/platform/pictures/StudioStage.h"

#include "tests/support/FileContent.h"
#include "tests/support/TreePaths.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace {

/// A vertex with all that an effect may ask for.
struct StudioVertex {
    float position[3];
    float weights[3];
    uint8_t bones[4];
    float normal[3];
    float uv[2];
    float tangent[3];

    static constexpr DWORD kFormat = D3DFVF_XYZB4 | D3DFVF_LASTBETA_UBYTE4 | D3DFVF_NORMAL |
                                     D3DFVF_TEX2 | D3DFVF_TEXCOORDSIZE3(1);
};

/// A point of a surface over u and v from 0 to 1.
using Surface = std::function<StudioVertex(float u, float v)>;

StudioVertex BallPoint(float u, float v)
{
    const float longitude = u * 6.2831853f, latitude = v * 3.1415927f;
    const float x = std::sin(latitude) * std::cos(longitude), y = std::cos(latitude),
                z = std::sin(latitude) * std::sin(longitude);
    return {{x, y, z}, {1, 0, 0},  {0, 0, 0, 0},
            {x, y, z}, {u * 2, v}, {-std::sin(longitude), 0, std::cos(longitude)}};
}

StudioVertex SheetPoint(float u, float v)
{
    return {{u * 2 - 1, 1 - v * 2, 0}, {1, 0, 0}, {0, 0, 0, 0}, {0, 0, -1}, {u, v}, {1, 0, 0}};
}

/// A column whose upper part follows the second bone.
StudioVertex ColumnPoint(float u, float v)
{
    const float angle = u * 6.2831853f;
    const float x = std::cos(angle), z = std::sin(angle);
    return {{x * 0.4f, 1 - v * 2, z * 0.4f},
            {v, (1 - v) * 0.75f, 0},
            {0, 5, 2, 5},
            {x, 0, z},
            {u * 2, v},
            {-z, 0, x}};
}

std::vector<StudioVertex> Tessellate(const Surface& surface, int steps)
{
    std::vector<StudioVertex> vertices;
    const auto point = [&](int i, int j) {
        return surface(static_cast<float>(i) / static_cast<float>(steps),
                       static_cast<float>(j) / static_cast<float>(steps));
    };
    for (int j = 0; j < steps; ++j)
        for (int i = 0; i < steps; ++i)
            for (const auto& [along, down] :
                 {std::pair(0, 0), {1, 0}, {0, 1}, {0, 1}, {1, 0}, {1, 1}})
                vertices.push_back(point(i + along, j + down));
    return vertices;
}

std::vector<StudioVertex> ShapeOf(const std::string& name)
{
    static const std::vector<std::string> sheets = {
        "bloom_blur",     "bloom_bright", "bricks",      "colour_grade",
        "edges",          "escape_time",  "flow_map",    "lattice",
        "old_photograph", "dissolve",     "vertex_wave",
    };
    if (name == "palette_skin")
        return Tessellate(ColumnPoint, 16);
    const bool isSheet =
        name.starts_with("chart_") || std::find(sheets.begin(), sheets.end(), name) != sheets.end();
    return Tessellate(isSheet ? Surface(SheetPoint) : Surface(BallPoint), 16);
}

DWORD Grey(DWORD value)
{
    return 0xFF000000 | value << 16 | value << 8 | value;
}

DWORD Byte(double value)
{
    return static_cast<DWORD>(std::lround(std::clamp(value, 0.0, 255.0)));
}

/// Hills of a smooth surface: their height from 0 to 1.
double HeightAt(UINT x, UINT y)
{
    return 0.5 + 0.25 * std::sin(x * 0.3926990817) + 0.25 * std::cos(y * 0.5890486225);
}

DWORD NormalAt(UINT x, UINT y)
{
    const double dx = -0.25 * std::cos(x * 0.3926990817) * 2;
    const double dy = 0.25 * std::sin(y * 0.5890486225) * 2;
    const double length = std::sqrt(dx * dx + dy * dy + 1);
    return Byte(255 * HeightAt(x, y)) << 24 | Byte(127.5 + 127.5 * dx / length) << 16 |
           Byte(127.5 + 127.5 * dy / length) << 8 | Byte(127.5 + 127.5 / length);
}

DWORD PaintAt(UINT x, UINT y)
{
    return 0xFF000000 | Byte(60 + 150 * HeightAt(x, y)) << 16 | Byte(80 + 2.0 * y) << 8 |
           Byte(200 - 3.0 * x);
}

/// Soft blotches, other ones in each channel.
DWORD MaskAt(UINT x, UINT y)
{
    return 0xFF000000 | Byte(255 * HeightAt(x, y)) << 16 | Byte(255 * HeightAt(y, x + 5)) << 8 |
           Byte(255 * HeightAt(x + 9, y + 3));
}

DWORD SceneAt(UINT x, UINT y)
{
    const bool isLamp = (x - 20) * (x - 20) + (y - 12) * (y - 12) < 30;
    return isLamp ? 0xFFFFF0C0 : (x + y) % 16 < 8 ? 0xFF305070 : PaintAt(x, y);
}

IDirect3DBaseTexture9* MakeSurroundings(PictureStage& stage)
{
    IDirect3DCubeTexture9* cube = nullptr;
    constexpr UINT side = 16;
    PictureStage::Check(
        stage->CreateCubeTexture(side, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED, &cube, nullptr));
    static constexpr DWORD bases[] = {0x402010, 0x104020, 0x4060A0, 0x302820, 0x505050, 0x203050};
    for (DWORD face = 0; face < 6; ++face) {
        D3DLOCKED_RECT locked = {};
        PictureStage::Check(
            cube->LockRect(static_cast<D3DCUBEMAP_FACES>(face), 0, &locked, nullptr, 0));
        for (UINT y = 0; y < side; ++y)
            for (UINT x = 0; x < side; ++x) {
                const DWORD texel = (0xFF000000 | bases[face]) + (x * 4 << 16) + (y * 5 << 8);
                std::memcpy(static_cast<char*>(locked.pBits) +
                                y * static_cast<size_t>(locked.Pitch) + x * sizeof texel,
                            &texel, sizeof texel);
            }
        PictureStage::Check(cube->UnlockRect(static_cast<D3DCUBEMAP_FACES>(face), 0));
    }
    return cube;
}

void SetMatrix(ID3DXEffect& effect, const char* name, const D3DXMATRIX& matrix)
{
    if (const D3DXHANDLE handle = effect.GetParameterByName(nullptr, name))
        PictureStage::Check(effect.SetMatrix(handle, &matrix));
}

void SetCamera(ID3DXEffect& effect, const std::string& name)
{
    D3DXMATRIX world, view, projection, light, lens;
    const bool isFlat = ShapeOf(name)[0].normal[2] < 0;
    D3DXMatrixRotationY(&world, isFlat ? 0.0f : 0.4f);
    const D3DXVECTOR3 eye(0, 0, -3), centre(0, 0, 0), up(0, 1, 0), lamp(1, 2.5f, -2);
    D3DXMatrixLookAtLH(&view, &eye, &centre, &up);
    D3DXMatrixPerspectiveFovLH(&projection, 0.9f, 1, 0.5f, 10);
    D3DXMatrixLookAtLH(&light, &lamp, &centre, &up);
    D3DXMatrixOrthoLH(&lens, 2.5f, 2.5f, 1, 6);
    SetMatrix(effect, "world", world);
    SetMatrix(effect, "viewProjection", view * projection);
    SetMatrix(effect, "wvp", world * view * projection);
    SetMatrix(effect, "lightViewProjection", light * lens);
}

/// Two bones: the first stays, number 5 bends.
void SetBones(ID3DXEffect& effect)
{
    const D3DXHANDLE bones = effect.GetParameterByName(nullptr, "bones");
    if (!bones)
        return;
    D3DXMATRIX matrices[16];
    for (D3DXMATRIX& matrix : matrices)
        D3DXMatrixIdentity(&matrix);
    D3DXMatrixRotationZ(&matrices[5], 0.7f);
    matrices[5]._41 = 0.3f;
    PictureStage::Check(effect.SetMatrixArray(bones, matrices, 16));
}

void SetTextures(ID3DXEffect& effect, PictureStage& stage)
{
    const struct {
        const char* name;
        UINT size;
        DWORD (*texel)(UINT x, UINT y);
    } pictures[] = {
        {"diffuseMap", 32, PaintAt},
        {"normalMap", 32, NormalAt},
        {"maskMap", 32, MaskAt},
        {"sceneMap", 32, SceneAt},
        {"heightMap", 16, [](UINT x, UINT y) { return Grey(Byte(255 * HeightAt(x * 2, y * 2))); }},
        {"rampMap", 4, [](UINT x, UINT) { return Grey(64 + x * 60); }},
        {"shadowMap", 32, [](UINT x, UINT y) { return x > 10 && y > 12 ? Grey(60) : Grey(240); }},
    };
    for (const auto& picture : pictures)
        if (const D3DXHANDLE handle = effect.GetParameterByName(nullptr, picture.name))
            PictureStage::Check(
                effect.SetTexture(handle, stage.Texture(picture.size, picture.texel)));
    if (const D3DXHANDLE handle = effect.GetParameterByName(nullptr, "environmentMap")) {
        const ComHandle<IDirect3DBaseTexture9> cube(MakeSurroundings(stage));
        PictureStage::Check(effect.SetTexture(handle, cube.get()));
    }
}

void DrawPasses(PictureStage& stage, ID3DXEffect& effect, const std::vector<StudioVertex>& shape)
{
    D3DXHANDLE technique = nullptr;
    ASSERT_GE(effect.FindNextValidTechnique(nullptr, &technique), 0);
    ASSERT_NE(technique, nullptr) << "no technique is valid";
    PictureStage::Check(effect.SetTechnique(technique));
    UINT passes = 0;
    PictureStage::Check(effect.Begin(&passes, 0));
    for (UINT pass = 0; pass < passes; ++pass) {
        PictureStage::Check(effect.BeginPass(pass));
        stage.DrawVertices(D3DPT_TRIANGLELIST, static_cast<UINT>(shape.size() / 3), shape);
        PictureStage::Check(effect.EndPass());
    }
    PictureStage::Check(effect.End());
}

} // namespace

const std::vector<std::string>& StudioEffects()
{
    static const std::vector<std::string> names = {"bloom_blur",
                                                   "bloom_bright",
                                                   "bricks",
                                                   "brushed_metal",
                                                   "chart_functions_a",
                                                   "chart_functions_b",
                                                   "chart_functions_c",
                                                   "chart_functions_d",
                                                   "chart_functions_e",
                                                   "chart_operators_a",
                                                   "chart_operators_b",
                                                   "chart_operators_c",
                                                   "colour_grade",
                                                   "detail_map",
                                                   "displaced",
                                                   "dissolve",
                                                   "edges",
                                                   "escape_time",
                                                   "flow_map",
                                                   "fresnel_mirror",
                                                   "fur_shells",
                                                   "gradient_sky",
                                                   "height_fog",
                                                   "hemisphere",
                                                   "lattice",
                                                   "many_lights",
                                                   "normal_map",
                                                   "old_photograph",
                                                   "palette_skin",
                                                   "parallax",
                                                   "phong",
                                                   "rim_glow",
                                                   "shadow_lookup",
                                                   "spot_light",
                                                   "terrain_splat",
                                                   "toon_ramp",
                                                   "two_sided",
                                                   "vertex_wave",
                                                   "water"};
    return names;
}

std::string StudioFile(const std::string& name)
{
    return SourcePath("tests/studio/") + name;
}

void DrawStudioEffect(PictureStage& stage, const std::string& name, const std::string& effectFile)
{
    const std::string bytes = FileContent(effectFile);
    ID3DXEffect* made = nullptr;
    ID3DXBuffer* messages = nullptr;
    const HRESULT result =
        D3DXCreateEffect(stage.Device(), bytes.data(), static_cast<UINT>(bytes.size()), nullptr,
                         nullptr, 0, nullptr, &made, &messages);
    const ComHandle<ID3DXBuffer> errors(messages);
    ASSERT_EQ(result, D3D_OK) << effectFile << ": "
                              << (errors ? static_cast<const char*>(errors->GetBufferPointer())
                                         : "");
    const ComHandle<ID3DXEffect> effect(made);
    SetCamera(*effect, name);
    SetBones(*effect);
    SetTextures(*effect, stage);
    DrawPasses(stage, *effect, ShapeOf(name));
}
