// What shaders and the rest of the device do together: textures, depth, fog, points, defaults, linking.

#include "tests/platform/pictures/ShaderStage.h"

#include <bit>

namespace {

constexpr DWORD kPs20Word = 0xFFFF0200, kPs30Word = 0xFFFF0300, kVs11Word = 0xFFFE0101,
                kVs20Word = 0xFFFE0200, kVs30Word = 0xFFFE0300;

using W = ShaderWords;

/// Places for values with names of their own, not the shared ones.
W TexturedPixel(DWORD control)
{
    W w(kPs20Word);
    w.Declare(T(0)).Declare(T(1)).DeclareSampler(0);
    return w.Op(kTex | control << 16, R(0), {T(1), S(0)}).Op(kMov, kColour, {R(0)});
}

/// One triangle pair over the target with a pixel shader.
void Show(PictureStage& stage, const W& pixel)
{
    ShaderStage shaders(stage);
    shaders.SharedConstants();
    shaders.Set(pixel);
    shaders.Grid(1);
}

void Load(PictureStage& stage)
{
    stage->SetTexture(0, stage.Checker());
    Show(stage, TexturedPixel(0));
}

void LoadLinear(PictureStage& stage)
{
    stage.Filter(0, D3DTEXF_LINEAR);
    stage->SetTexture(0, stage.Texture(8, [](UINT x, UINT y) {
        return 0xFF000000 | (x * 36) << 16 | (y * 36) << 8 | ((x ^ y) & 1) * 200;
    }));
    Show(stage, TexturedPixel(0));
}

void LoadProjected(PictureStage& stage)
{
    stage.Filter(0, D3DTEXF_LINEAR);
    stage->SetTexture(0, stage.Gradient());
    stage.Address(0, D3DTADDRESS_CLAMP, D3DTADDRESS_CLAMP);
    Show(stage, TexturedPixel(1));
}

/// The fourth coordinate, 1/4 to 3/4, is added to the level, which is 0.6 to 1 then.
void LoadBiased(PictureStage& stage)
{
    stage.Filter(0, D3DTEXF_LINEAR, D3DTEXF_POINT);
    stage->SetTexture(0, stage.LevelColours());
    W w(kPs20Word);
    w.Define(1, 1.0f, 1.0f, 1.0f, 8.0f).Declare(T(1)).DeclareSampler(0);
    w.Op(kMul, R(0), {T(1), C(1)}).Op(kTex | 2 << 16, R(0), {R(0), S(0)});
    Show(stage, w.Op(kMov, kColour, {R(0)}));
}

void LevelsOfQuads(PictureStage& stage)
{
    stage.Filter(0, D3DTEXF_LINEAR, D3DTEXF_POINT);
    stage->SetTexture(0, stage.LevelColours());
    W w(kPs20Word);
    w.Declare(T(0)).DeclareSampler(0).Op(kMul, R(0), {T(0), T(0)});
    Show(stage, w.Op(kTex, R(0), {R(0), S(0)}).Op(kMov, kColour, {R(0)}));
}

/// Values as the first vertex functions give them.
W PassOn()
{
    W w(kVs30Word);
    w.Declare(V(0), kUsagePosition).Declare(V(1), kUsageCoordinates, 0);
    w.Declare(V(2), kUsageCoordinates, 1).Declare(V(3), kUsageColour, 0);
    w.Declare(OutTexture(0), kUsagePosition).Declare(OutTexture(1), kUsageCoordinates, 0);
    w.Declare(OutTexture(2), kUsageCoordinates, 1).Declare(OutTexture(3), kUsageColour, 0);
    for (DWORD i = 0; i < 4; ++i)
        w.Op(kMov, OutTexture(i), {V(i)});
    return w;
}

void ShowThird(PictureStage& stage, const W& pixel, const W& vertex, int cells = 1)
{
    ShaderStage shaders(stage);
    shaders.SharedConstants();
    shaders.Set(vertex);
    shaders.Set(pixel);
    shaders.Grid(cells);
}

void LoadLevel(PictureStage& stage)
{
    stage.Filter(0, D3DTEXF_LINEAR, D3DTEXF_POINT);
    stage->SetTexture(0, stage.LevelColours());
    W w(kPs30Word);
    w.Define(1, 1.0f, 1.0f, 1.0f, 9.0f).Declare(V(0), kUsageCoordinates, 1).DeclareSampler(0);
    w.Op(kMul, R(0), {V(0), C(1)}).Op(kTexLdl, R(0), {R(0), S(0)});
    ShowThird(stage, w.Op(kMov, kColour, {R(0)}), PassOn());
}

void LoadSlopes(PictureStage& stage)
{
    stage.Filter(0, D3DTEXF_LINEAR, D3DTEXF_POINT);
    stage->SetTexture(0, stage.LevelColours());
    W w(kPs30Word);
    w.Define(1, 0.11f, 0.0f, 0.0f, 0.0f).Define(2, 0.0f, 0.0f, 0.0f, 0.0f);
    w.Declare(V(0), kUsageCoordinates, 1).DeclareSampler(0);
    w.Op(kMul, R(1), {Of(V(0), "x"), C(1)}).Op(kMul, R(2), {Of(V(0), "y"), C(1)});
    w.Op(kTexLdd, R(0), {V(0), S(0), R(1), Of(R(2), "yxzw")});
    ShowThird(stage, w.Op(kMov, kColour, {R(0)}), PassOn());
}

void LoadSwizzled(PictureStage& stage)
{
    stage->SetTexture(0, stage.Gradient());
    W w(kPs30Word);
    w.Declare(V(0), kUsageCoordinates, 1).DeclareSampler(0);
    w.Op(kTex, R(0), {V(0), Of(S(0), "wzxy")});
    ShowThird(stage, w.Op(kMov, kColour, {R(0)}), PassOn());
}

void VertexTexture(PictureStage& stage)
{
    stage->SetTexture(D3DVERTEXTEXTURESAMPLER0, stage.Checker());
    W vertex(kVs30Word);
    vertex.Define(20, 0.97f, 0.97f, 0.0f, 0.0f);
    vertex.Declare(V(0), kUsagePosition).Declare(V(1), kUsageCoordinates, 1).DeclareSampler(0);
    vertex.Declare(OutTexture(0), kUsagePosition).Declare(OutTexture(1), kUsageColour, 0);
    vertex.Op(kMul, R(0), {V(1), C(20)}).Op(kAdd, R(0), {R(0), Of(C(20), "z")});
    vertex.Op(kTexLdl, OutTexture(1), {R(0), S(0)}).Op(kMov, OutTexture(0), {V(0)});
    W pixel(kPs30Word);
    pixel.Declare(V(0), kUsageColour, 0).Op(kMov, kColour, {V(0)});
    ShowThird(stage, pixel, vertex, 16);
    stage->SetTexture(D3DVERTEXTEXTURESAMPLER0, nullptr);
}

void ShaderWithoutTexture(PictureStage& stage)
{
    W w(kPs20Word);
    w.Declare(T(1)).DeclareSampler(3).Op(kTex, R(0), {T(1), S(3)});
    Show(stage, w.Op(kMad, R(0), {R(0), C(3), T(1)}).Op(kMov, kColour, {R(0)}));
}

void TwoTextures(PictureStage& stage)
{
    stage->SetTexture(0, stage.Gradient());
    stage->SetTexture(5, stage.Checker());
    W w(kPs20Word);
    w.Declare(T(1)).DeclareSampler(0).DeclareSampler(5);
    w.Op(kTex, R(0), {T(1), S(0)}).Op(kTex, R(1), {T(1), S(5)});
    Show(stage, w.Op(kMul, R(0), {R(0), R(1)}).Op(kMov, kColour, {R(0)}));
    stage->SetTexture(5, nullptr);
}

void ReadSrgb(PictureStage& stage)
{
    stage->SetTexture(0, stage.Gradient());
    stage->SetSamplerState(0, D3DSAMP_SRGBTEXTURE, TRUE);
    Show(stage, TexturedPixel(0));
}

void WriteSrgb(PictureStage& stage)
{
    stage.State(D3DRS_SRGBWRITEENABLE, static_cast<DWORD>(TRUE));
    W w(kPs20Word);
    w.Declare(T(1));
    Show(stage, w.Op(kMov, R(0), {T(1)}).Op(kMov, kColour, {R(0)}));
}

void FixedReadSrgb(PictureStage& stage)
{
    stage->SetTexture(0, stage.Gradient());
    stage->SetSamplerState(0, D3DSAMP_SRGBTEXTURE, TRUE);
    stage.Rectangle(0, 0, 64, 64, 0xFFFFFFFF);
}

void FixedWriteSrgb(PictureStage& stage)
{
    stage->SetTexture(0, stage.Gradient());
    stage.State(D3DRS_SRGBWRITEENABLE, static_cast<DWORD>(TRUE));
    stage.Rectangle(0, 0, 64, 64, 0xFFFFFFFF);
}

void Kill(PictureStage& stage)
{
    W w(kPs20Word);
    w.Declare(T(0)).Declare(V(0)).Op(kTexKill, T(0));
    Show(stage, w.Op(kMov, kColour, {V(0)}));
}

/// The depth of the shader lets a second rectangle through where it is nearer.
void Depth(PictureStage& stage)
{
    stage.State(D3DRS_ZENABLE, static_cast<DWORD>(D3DZB_TRUE));
    stage.State(D3DRS_ZFUNC, static_cast<DWORD>(D3DCMP_LESSEQUAL));
    W w(kPs20Word);
    w.Declare(T(1)).Declare(V(0)).Op(kMov, R(0), {T(1)}).Op(kMov, kDepth, {Of(R(0), "x")});
    Show(stage, w.Op(kMov, kColour, {V(0)}));
    stage.Rectangle(8, 8, 56, 56, 0xFFFF8000, 0.4f);
}

void PixelPlace(PictureStage& stage)
{
    W w(kPs30Word);
    w.Define(1, 1.0f / 64.0f, 1.0f / 64.0f, 0.0f, 0.0f).Define(2, 0.004f, 0.004f, 0.25f, 1.0f);
    w.Declare(To(kPlace, "xy")).Op(kMov, R(0), {Of(C(2), "zzww")});
    w.Op(kMad, To(R(0), "xy"), {kPlace, C(1), C(2)});
    ShowThird(stage, w.Op(kMov, kColour, {R(0)}), PassOn());
}

void PixelFace(PictureStage& stage)
{
    W w(kPs30Word);
    w.Define(1, 1.0f, 0.5f, 0.0f, 1.0f).Define(2, 0.0f, 0.25f, 1.0f, 1.0f).Declare(kFace);
    w.Op(kCmp, R(0), {kFace, C(1), C(2)}).Op(kMov, kColour, {R(0)});
    ShaderStage shaders(stage);
    shaders.Set(PassOn());
    shaders.Set(w);
    stage.DrawVertices<ShaderVertex>(D3DPT_TRIANGLELIST, 2,
                                     {{-0.8f, 0.8f, 0.5f, 0, 0, {}, {}},
                                      {0.8f, 0.7f, 0.5f, 0, 0, {}, {}},
                                      {-0.7f, -0.1f, 0.5f, 0, 0, {}, {}},
                                      {-0.6f, -0.8f, 0.5f, 0, 0, {}, {}},
                                      {0.7f, -0.9f, 0.5f, 0, 0, {}, {}},
                                      {0.75f, 0.3f, 0.5f, 0, 0, {}, {}}});
}

void FogStates(PictureStage& stage)
{
    stage.State(D3DRS_FOGENABLE, static_cast<DWORD>(TRUE));
    stage.State(D3DRS_FOGCOLOR, static_cast<DWORD>(0xFF80C0FF));
}

/// oFog of a vertex shader, before a pixel shader or the fixed stages.
void VertexFog(PictureStage& stage, bool hasPixelShader)
{
    FogStates(stage);
    W vertex(kVs11Word);
    vertex.Declare(V(0), kUsagePosition).Declare(V(1), kUsageCoordinates, 1);
    vertex.Declare(V(2), kUsageColour, 0).Op(kMov, kPosition, {V(0)});
    vertex.Op(kMov, OutColour(0), {V(2)}).Op(kMov, kFog, {Of(V(1), "x")});
    ShaderStage shaders(stage);
    shaders.Set(vertex);
    W pixel(kPs20Word);
    pixel.Declare(V(0)).Op(kMov, kColour, {V(0)});
    if (hasPixelShader)
        shaders.Set(pixel);
    shaders.Grid(4);
}

void FogOfVertexShader(PictureStage& stage)
{
    VertexFog(stage, false);
}

void FogOfVertexShaderUnderPixelShader(PictureStage& stage)
{
    VertexFog(stage, true);
}

/// Table fog by depth: an older pixel shader gets it.
void TableFog(PictureStage& stage)
{
    FogStates(stage);
    stage.State(D3DRS_FOGTABLEMODE, static_cast<DWORD>(D3DFOG_LINEAR));
    stage.State(D3DRS_FOGSTART, 0.2f);
    stage.State(D3DRS_FOGEND, 0.9f);
    W w(kPs20Word);
    w.Declare(V(0));
    Show(stage, w.Op(kMov, kColour, {V(0)}));
}

void NoFogOfThird(PictureStage& stage)
{
    FogStates(stage);
    stage.State(D3DRS_FOGTABLEMODE, static_cast<DWORD>(D3DFOG_LINEAR));
    stage.State(D3DRS_FOGSTART, 0.2f);
    stage.State(D3DRS_FOGEND, 0.9f);
    W w(kPs30Word);
    w.Declare(V(0), kUsageColour, 0);
    ShowThird(stage, w.Op(kMov, kColour, {V(0)}), PassOn());
}

void PointSize(PictureStage& stage)
{
    W vertex(kVs11Word);
    vertex.Define(1, 14.0f, 0.0f, 0.0f, 2.0f).Declare(V(0), kUsagePosition);
    vertex.Declare(V(1), kUsageCoordinates, 1).Op(kMov, kPosition, {V(0)});
    vertex.Op(kMov, OutColour(0), {V(1)}).Op(kMul, R(0), {V(1), C(1)});
    vertex.Op(kAdd, kPointSize, {Of(R(0), "x"), Of(C(1), "w")});
    ShaderStage shaders(stage);
    shaders.Set(vertex);
    std::vector<ShaderVertex> points;
    for (int i = 0; i < 4; ++i) {
        const float at = static_cast<float>(i) * 0.4f - 0.6f;
        points.push_back(
            {at, at * 0.5f, 0.5f, 0, 0, {}, {static_cast<float>(i) / 3.0f, 0.5f, 1, 1}});
    }
    stage.DrawVertices(D3DPT_POINTLIST, 4, points);
}

/// A vertex shader that writes nothing but the position gives white and coordinates of 0.
W PositionOnly()
{
    W w(kVs11Word);
    return w.Declare(V(0), kUsagePosition).Op(kMov, kPosition, {V(0)});
}

void UnwrittenColour(PictureStage& stage)
{
    ShaderStage shaders(stage);
    shaders.Set(PositionOnly());
    shaders.Grid(1);
}

void UnwrittenCoordinates(PictureStage& stage)
{
    ShaderStage shaders(stage);
    shaders.SharedConstants();
    shaders.Set(PositionOnly());
    W w(kPs20Word);
    w.Declare(T(0)).Declare(V(1)).Op(kAdd, R(0), {T(0), V(1)}).Op(kAdd, R(0), {R(0), C(1)});
    shaders.Set(w.Op(kMov, kColour, {R(0)}));
    shaders.Grid(1);
}

void AbsentNormal(PictureStage& stage)
{
    ShaderStage shaders(stage);
    shaders.SharedConstants();
    W w(kVs11Word);
    w.Declare(V(0), kUsagePosition).Declare(V(1), kUsageNormal);
    w.Op(kAdd, OutColour(0), {V(1), C(1)});
    shaders.Set(w.Op(kMov, kPosition, {V(0)}));
    shaders.Grid(1);
}

/// A vertex shader before the fixed stages, which read its coordinates.
void VertexShaderAndStages(PictureStage& stage)
{
    stage->SetTexture(0, stage.Checker());
    ShaderStage shaders(stage);
    shaders.SharedConstants();
    stage.Colour(0, D3DTOP_MODULATE, D3DTA_TEXTURE, D3DTA_DIFFUSE);
    W w(kVs11Word);
    w.Declare(V(0), kUsagePosition).Declare(V(1), kUsageCoordinates, 1);
    w.Declare(V(2), kUsageColour).Op(kMov, OutTexture(0), {V(1)});
    w.Op(kMov, OutColour(0), {V(2)});
    shaders.Set(w.Op(kMov, kPosition, {V(0)}));
    shaders.Grid(1);
}

/// 3.0 links by usage, whatever the numbers of the registers.
void LinkedByUsage(PictureStage& stage)
{
    W vertex(kVs30Word);
    vertex.Declare(V(0), kUsagePosition).Declare(V(1), kUsageCoordinates, 1);
    vertex.Declare(V(2), kUsageColour);
    vertex.Declare(OutTexture(5), kUsagePosition).Declare(OutTexture(7), kUsageNormal, 2);
    vertex.Declare(OutTexture(2), kUsageCoordinates, 6);
    vertex.Op(kMov, OutTexture(5), {V(0)}).Op(kMov, OutTexture(7), {V(1)});
    vertex.Op(kMov, OutTexture(2), {V(2)});
    W pixel(kPs30Word);
    pixel.Declare(V(4), kUsageCoordinates, 6).Declare(V(0), kUsageNormal, 2);
    pixel.Op(kMul, R(0), {V(4), V(0)});
    ShowThird(stage, pixel.Op(kMov, kColour, {R(0)}), vertex);
}

/// Colours of 3.0 are not held to 0..1 between the stages.
void UnheldColours(PictureStage& stage)
{
    W vertex(kVs30Word);
    vertex.Declare(V(0), kUsagePosition).Declare(V(1), kUsageCoordinates, 0);
    vertex.Declare(OutTexture(0), kUsagePosition).Declare(OutTexture(1), kUsageColour);
    vertex.Op(kMov, OutTexture(0), {V(0)}).Op(kMov, OutTexture(1), {V(1)});
    W pixel(kPs30Word);
    pixel.Declare(V(0), kUsageColour).Op(kMul, R(0), {V(0), Of(C(3), "y")});
    pixel.Op(kAdd, R(0), {R(0), Of(C(3), "z")});
    ShowThird(stage, pixel.Op(kMov, kColour, {R(0)}), vertex);
}

/// Those of older ones are.
void HeldColours(PictureStage& stage)
{
    W vertex(kVs20Word);
    vertex.Declare(V(0), kUsagePosition).Declare(V(1), kUsageCoordinates, 0);
    vertex.Op(kMov, kPosition, {V(0)}).Op(kMov, OutColour(0), {V(1)});
    W pixel(kPs20Word);
    pixel.Declare(V(0)).Op(kMul, R(0), {V(0), Of(C(3), "z")});
    pixel.Op(kAdd, R(0), {R(0), Of(C(3), "y")});
    ShowThird(stage, pixel.Op(kMov, kColour, {R(0)}), vertex, 16);
}

void BlendedShader(PictureStage& stage)
{
    stage.State(D3DRS_ALPHABLENDENABLE, static_cast<DWORD>(TRUE));
    stage.State(D3DRS_SRCBLEND, static_cast<DWORD>(D3DBLEND_SRCALPHA));
    stage.State(D3DRS_DESTBLEND, static_cast<DWORD>(D3DBLEND_INVSRCALPHA));
    W w(kPs20Word);
    w.Declare(V(0));
    Show(stage, w.Op(kMov, kColour, {V(0)}));
}

void AlphaTestedShader(PictureStage& stage)
{
    stage.State(D3DRS_ALPHATESTENABLE, static_cast<DWORD>(TRUE));
    stage.State(D3DRS_ALPHAFUNC, static_cast<DWORD>(D3DCMP_GREATER));
    stage.State(D3DRS_ALPHAREF, static_cast<DWORD>(100));
    W w(kPs20Word);
    w.Declare(V(0));
    Show(stage, w.Op(kMov, kColour, {V(0)}));
}

void FlatShader(PictureStage& stage)
{
    stage.State(D3DRS_SHADEMODE, static_cast<DWORD>(D3DSHADE_FLAT));
    W w(kPs20Word);
    w.Declare(V(0)).Declare(T(1)).Op(kMul, R(0), {V(0), T(1)}).Op(kMov, kColour, {R(0)});
    ShaderStage shaders(stage);
    shaders.Set(w);
    shaders.Grid(4);
}

/// A perspective division behind a vertex shader's matrix.
void TurnedBoard(PictureStage& stage)
{
    stage->SetTexture(0, stage.Checker());
    stage.Filter(0, D3DTEXF_LINEAR);
    D3DXMATRIX turn, move, lens, all;
    D3DXMatrixRotationY(&turn, 0.9f);
    D3DXMatrixTranslation(&move, 0.0f, 0.0f, 3.0f);
    D3DXMatrixPerspectiveFovLH(&lens, 1.0471976f, 1.0f, 0.5f, 20.0f);
    D3DXMatrixMultiply(&all, &turn, &move);
    D3DXMatrixMultiply(&all, &all, &lens);
    D3DXMatrixTranspose(&all, &all);
    W vertex(kVs20Word);
    vertex.Declare(V(0), kUsagePosition).Declare(V(1), kUsageCoordinates, 0);
    vertex.Op(kM4x4, kPosition, {V(0), C(0)}).Op(kMov, OutTexture(0), {V(1)});
    W pixel(kPs20Word);
    pixel.Declare(T(0)).DeclareSampler(0).Op(kTex, R(0), {T(0), S(0)});
    ShaderStage shaders(stage);
    shaders.Set(vertex);
    shaders.Set(pixel.Op(kMov, kColour, {R(0)}));
    PictureStage::Check(stage->SetVertexShaderConstantF(0, all, 4));
    stage.Board();
}

} // namespace

const std::vector<PictureProgram> kShaderRulePictures = {
    {"shader_texld", Load, 1, 0},
    {"shader_texld_linear", LoadLinear, 1, 0},
    {"shader_texldp", LoadProjected, 1, 0},
    {"shader_texldb", LoadBiased, 1, 0},
    {"shader_texldl", LoadLevel, 1, 0},
    {"shader_texldd", LoadSlopes, 1, 0},
    {"shader_texld_swizzled", LoadSwizzled, 1, 0},
    {"shader_levels_of_quads", LevelsOfQuads, 1, 0},
    {"shader_vertex_texture", VertexTexture, 1, 0},
    {"shader_no_texture", ShaderWithoutTexture, 1, 0},
    {"shader_two_textures", TwoTextures, 1, 0},
    {"shader_read_srgb", ReadSrgb, 1, 0},
    {"shader_write_srgb", WriteSrgb, 1, 0},
    {"fixed_read_srgb", FixedReadSrgb, 1, 0},
    {"fixed_write_srgb", FixedWriteSrgb, 1, 0},
    {"shader_kill", Kill, 1, 0},
    {"shader_depth", Depth, 1, 0},
    {"shader_pixel_place", PixelPlace, 1, 0},
    {"shader_pixel_face", PixelFace, 1, 0},
    {"shader_vertex_fog", FogOfVertexShader, 1, 0},
    {"shader_vertex_fog_and_pixels", FogOfVertexShaderUnderPixelShader, 1, 0},
    {"shader_table_fog", TableFog, 1, 0},
    {"shader_no_fog_of_third", NoFogOfThird, 1, 0},
    {"shader_point_size", PointSize, 1, 0},
    {"shader_unwritten_colour", UnwrittenColour, 1, 0},
    {"shader_unwritten_coordinates", UnwrittenCoordinates, 1, 0},
    {"shader_absent_normal", AbsentNormal, 1, 0},
    {"shader_vertices_and_stages", VertexShaderAndStages, 1, 0},
    {"shader_linked_by_usage", LinkedByUsage, 1, 0},
    {"shader_unheld_colours", UnheldColours, 1, 0},
    {"shader_held_colours", HeldColours, 1, 0},
    {"shader_blended", BlendedShader, 1, 0},
    {"shader_alpha_tested", AlphaTestedShader, 1, 0},
    {"shader_flat", FlatShader, 1, 0},
    {"shader_turned_board", TurnedBoard, 2, 0},
};
