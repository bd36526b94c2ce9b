// Drawing with vertex and pixel shaders through the device.

#include "platform/CutDraw.h"
#include "platform/headless/d3d9/Audience.h"
#include "platform/headless/d3d9/CallLog.h"
#include "platform/headless/d3d9/Rasterizer.h"
#include "platform/headless/shader/Assembler.h"
#include "tests/platform/headless_d3d9/DrawFixture.h"

#include <cstring>

namespace {

using headless::shader::Assemble;
using headless::shader::AssemblyFault;
using headless::shader::Word;

/// Position, normal-free, with coordinates: what a vertex shader transforms itself.
struct ModelVertex {
    float x, y, z;
    float u = 0.0f, v = 0.0f;

    static constexpr DWORD kFormat = D3DFVF_XYZ | D3DFVF_TEX1;
};

struct BlendVertex {
    float x, y, z;
    float weight;
    uint8_t indices[4];
    D3DCOLOR diffuse;

    static constexpr DWORD kFormat = D3DFVF_XYZB2 | D3DFVF_LASTBETA_UBYTE4 | D3DFVF_DIFFUSE;
};

class DrawShader : public DrawTest {
protected:
    void TearDown() override
    {
        device->SetVertexShader(nullptr);
        device->SetPixelShader(nullptr);
        vertexShader.Release();
        pixelShader.Release();
        DrawTest::TearDown();
    }

    static std::vector<DWORD> Words(const std::string& text)
    {
        std::vector<Word> words;
        AssemblyFault fault;
        EXPECT_TRUE(Assemble(text, words, fault)) << text << fault.reason;
        return std::vector<DWORD>(words.begin(), words.end());
    }

    void PixelShader(const std::string& text)
    {
        pixelShader.Release();
        ASSERT_EQ(device->CreatePixelShader(Words(text).data(), pixelShader.Out()), D3D_OK);
        ASSERT_EQ(device->SetPixelShader(pixelShader.Get()), D3D_OK);
    }

    void VertexShader(const std::string& text)
    {
        vertexShader.Release();
        ASSERT_EQ(device->CreateVertexShader(Words(text).data(), vertexShader.Out()), D3D_OK);
        ASSERT_EQ(device->SetVertexShader(vertexShader.Get()), D3D_OK);
    }

    void PixelConstant(UINT number, float x, float y, float z, float w)
    {
        const float values[] = {x, y, z, w};
        EXPECT_EQ(device->SetPixelShaderConstantF(number, values, 1), D3D_OK);
    }

    void VertexConstant(UINT number, float x, float y, float z, float w)
    {
        const float values[] = {x, y, z, w};
        EXPECT_EQ(device->SetVertexShaderConstantF(number, values, 1), D3D_OK);
    }

    /// A strip over the whole target in clip space, with coordinates 0 to 1 from its upper left.
    HRESULT DrawModel()
    {
        return Draw<ModelVertex>(D3DPT_TRIANGLESTRIP, 2,
                                 {{-1.125f, 1.125f, 0.5f, 0, 0},
                                  {0.875f, 1.125f, 0.5f, 1, 0},
                                  {-1.125f, -0.875f, 0.5f, 0, 1},
                                  {0.875f, -0.875f, 0.5f, 1, 1}});
    }

    uint32_t ModelPixel(UINT x = 3, UINT y = 3)
    {
        EXPECT_EQ(DrawModel(), D3D_OK);
        return Pixel(x, y);
    }

    Com<IDirect3DVertexShader9> vertexShader;
    Com<IDirect3DPixelShader9> pixelShader;
};

} // namespace

TEST_F(DrawShader, EachPixelVersionDraws)
{
    for (const char* version : {"ps_1_1", "ps_1_2", "ps_1_3", "ps_1_4"}) {
        PixelShader(std::string(version) + "\nmov r0, c1");
        PixelConstant(1, 1, 0.4f, 0, 0.2f);
        EXPECT_EQ(Filled(), 0x33FF6600u) << version;
    }
    for (const char* version : {"ps_2_0", "ps_2_x", "ps_2_sw", "ps_3_0", "ps_3_sw"}) {
        PixelShader(std::string(version) + "\nmov oC0, c1.wzyx");
        EXPECT_EQ(Filled(), 0xFF330066u) << version;
    }
}

TEST_F(DrawShader, EachVertexVersionDraws)
{
    for (const char* version : {"vs_1_1", "vs_2_0", "vs_2_x", "vs_2_sw"}) {
        VertexShader(std::string(version) + "\ndcl_position v0\nmov oPos, v0\nmov oD0, c3");
        VertexConstant(3, 1, 0.4f, 0, 0.2f);
        EXPECT_EQ(ModelPixel(), 0x33FF6600u) << version;
    }
    for (const char* version : {"vs_3_0", "vs_3_sw"}) {
        VertexShader(std::string(version) +
                     "\ndcl_position v0\ndcl_position o0\ndcl_color o1\nmov o0, v0\nmov o1, c3");
        EXPECT_EQ(ModelPixel(), 0x33FF6600u) << version;
    }
}

TEST_F(DrawShader, FixedVerticesGiveColoursAndCoordinates)
{
    PixelShader("ps_1_1\nadd r0, v0, v1");
    Draw<ScreenVertex>(D3DPT_TRIANGLESTRIP, 2,
                       {{-0.5f, -0.5f, 0.5f, 1, 0x10203040, 0x01020304},
                        {7.5f, -0.5f, 0.5f, 1, 0x10203040, 0x01020304},
                        {-0.5f, 7.5f, 0.5f, 1, 0x10203040, 0x01020304},
                        {7.5f, 7.5f, 0.5f, 1, 0x10203040, 0x01020304}});
    EXPECT_EQ(Pixel(3, 3), 0x11223344u);
    PixelShader("ps_2_0\ndcl t0\nmov oC0, t0");
    FillAll();
    // Pixel centres lie at (n + 1/2) / 8; a set of two coordinates is followed by 0 and 1.
    EXPECT_EQ(Pixel(1, 0) & 0xFF0000FF, 0xFF000000u);
    EXPECT_EQ(Pixel(1, 0) >> 16 & 0xFF, 48u); // 1.5 / 8 * 255 = 47.8
    EXPECT_EQ(Pixel(0, 6) >> 8 & 0xFF, 207u); // 6.5 / 8 * 255 = 207.2
}

TEST_F(DrawShader, TexturesAreSampled)
{
    BindTexels(2, 2, 2, {0xFF112233, 0xFF445566, 0x80778899, 0xFFAABBCC});
    PixelShader("ps_2_0\ndcl t0\ndcl_2d s2\ntexld r0, t0, s2\nmov oC0, r0");
    FillAll();
    EXPECT_EQ(Pixel(1, 1), 0xFF112233u);
    EXPECT_EQ(Pixel(5, 2), 0xFF445566u);
    EXPECT_EQ(Pixel(2, 6), 0x80778899u);
    EXPECT_EQ(Pixel(7, 7), 0xFFAABBCCu);
    device->SetTexture(2, nullptr);
    EXPECT_EQ(Filled(), 0xFF000000u); // without a texture all is black
}

TEST_F(DrawShader, OnlySamplersThatAreReadMatter)
{
    BindTexels(1, 1, 1, {0xFF112233});
    PixelShader("ps_2_0\nmov oC0, c0");
    PixelConstant(0, 1, 1, 1, 1);
    Sampler(1, D3DSAMP_ADDRESSU, 99); // refused where it is read
    EXPECT_EQ(Filled(), 0xFFFFFFFFu);
    PixelShader("ps_2_0\ndcl t0\ndcl_2d s1\ntexld r0, t0, s1\nmov oC0, r0");
    DWORD passes = 0;
    EXPECT_EQ(device->ValidateDevice(&passes), D3DERR_INVALIDCALL);
    Sampler(1, D3DSAMP_ADDRESSU, D3DTADDRESS_WRAP);
    EXPECT_EQ(device->ValidateDevice(&passes), D3D_OK);
}

TEST_F(DrawShader, TheVertexShaderTransforms)
{
    VertexShader("vs_1_1\ndcl_position v0\nadd r0, v0, c0\nmov oPos, r0\nmov oD0, c1");
    VertexConstant(0, 1, 0, 0, 0); // one target's half to the right
    VertexConstant(1, 0, 1, 0, 1);
    EXPECT_EQ(DrawModel(), D3D_OK);
    EXPECT_EQ(Coverage(),
              "....####\n....####\n....####\n....####\n....####\n....####\n....####\n....####\n");
}

TEST_F(DrawShader, PretransformedVerticesSkipTheVertexShader)
{
    VertexShader("vs_1_1\ndcl_position v0\nmov oPos, c0\nmov oD0, c0");
    EXPECT_EQ(Filled(0xFF102030), 0xFF102030u);
}

TEST_F(DrawShader, WhatIsNotWrittenHasItsDefault)
{
    VertexShader("vs_1_1\ndcl_position v0\nmov oPos, v0");
    EXPECT_EQ(ModelPixel(), 0xFFFFFFFFu); // oD0 is white
    PixelShader("ps_2_0\ndcl t1\ndcl v1\nadd r0, t1, v1\nadd r0, r0, c0\nmov oC0, r0");
    PixelConstant(0, 0.2f, 0.4f, 0.6f, 0.8f);
    EXPECT_EQ(ModelPixel(), 0xCC336699u); // oT1 and oD1 are 0
}

TEST_F(DrawShader, AbsentInputsAreZero)
{
    VertexShader(
        "vs_1_1\ndcl_position v0\ndcl_normal v1\ndcl_texcoord1 v2\ndcl_color v3\n"
        "def c0, 0.2, 0.4, 0.6, 0.8\nadd r0, v1, v2\nadd r0, r0, v3\nadd oD0, r0, c0\nmov oPos, v0");
    EXPECT_EQ(ModelPixel(), 0xCC336699u);
}

TEST_F(DrawShader, StoredCoordinatesAreFilledUp)
{
    VertexShader("vs_1_1\ndcl_position v0\ndcl_texcoord v1\ndef c0, 0, 0, 0.4, 0.6\n"
                 "mul oD0, v1, c0\nmov oPos, v0");
    EXPECT_EQ(ModelPixel(), 0x99000000u); // z is 0 and w 1
}

TEST_F(DrawShader, BlendIndicesAreWholeNumbers)
{
    VertexShader("vs_1_1\ndcl_position v0\ndcl_blendweight v1\ndcl_blendindices v2\ndcl_color v3\n"
                 "mov a0.x, v2.y\nmul r0, v3, v1.x\nadd oD0, r0, c[a0.x]\nmov oPos, v0");
    VertexConstant(95, 0, 0, 1, 0);
    VertexConstant(200, 0.2f, 0, 0, 0);
    const uint8_t y = 200;
    const D3DCOLOR colour = 0xFF000080; // halved: alpha 128, blue 64
    EXPECT_EQ(Draw<BlendVertex>(D3DPT_TRIANGLESTRIP, 2,
                                {{-1.125f, 1.125f, 0.5f, 0.5f, {0, y, 0, 0}, colour},
                                 {0.875f, 1.125f, 0.5f, 0.5f, {0, y, 0, 0}, colour},
                                 {-1.125f, -0.875f, 0.5f, 0.5f, {0, y, 0, 0}, colour},
                                 {0.875f, -0.875f, 0.5f, 0.5f, {0, y, 0, 0}, colour}}),
              D3D_OK);
    EXPECT_EQ(Pixel(3, 3), 0x80330040u);
}

TEST_F(DrawShader, VersionsOfThreeAreLinkedByUsage)
{
    VertexShader("vs_3_0\ndcl_position v0\ndcl_position o5\ndcl_normal3 o1\ndcl_texcoord6 o0.xy\n"
                 "mov o5, v0\nmov o1, c0\nmov o0.xy, c0.zw");
    VertexConstant(0, 0.2f, 0.4f, 0.6f, 0.8f);
    PixelShader("ps_3_0\ndcl_normal3 v4\nmov oC0, v4");
    EXPECT_EQ(ModelPixel(), 0xCC336699u);
    PixelShader("ps_3_0\ndcl_texcoord6 v0\nmov oC0, v0");
    EXPECT_EQ(ModelPixel(), 0x0099CC00u); // components that are not declared are 0
    PixelShader("ps_3_0\ndcl_tangent v0\nadd oC0, v0, c0");
    PixelConstant(0, 0.2f, 0, 0, 0);
    EXPECT_EQ(ModelPixel(), 0x00330000u); // nor written
}

TEST_F(DrawShader, ColoursBefore3AreHeldAndLaterOnesNot)
{
    VertexShader("vs_2_0\ndcl_position v0\nmov oPos, v0\nmov oD0, c0\nmov oT0, c0");
    VertexConstant(0, 2, 0, 0, 1);
    PixelShader("ps_2_0\ndcl v0\ndef c0, 0.5, 0.5, 0.5, 1\nmul r0, v0, c0\nmov oC0, r0");
    EXPECT_EQ(ModelPixel(), 0xFF800000u);
    VertexShader("vs_3_0\ndcl_position v0\ndcl_position o0\ndcl_color o1\nmov o0, v0\nmov o1, c0");
    PixelShader("ps_3_0\ndcl_color v0\ndef c0, 0.5, 0.5, 0.5, 1\nmul r0, v0, c0\nmov oC0, r0");
    EXPECT_EQ(ModelPixel(), 0xFFFF0000u);
}

TEST_F(DrawShader, VersionsThatDoNotFitAreNotValid)
{
    VertexShader("vs_3_0\ndcl_position v0\ndcl_position o0\nmov o0, v0");
    PixelShader("ps_2_0\nmov oC0, c0");
    DWORD passes = 0;
    EXPECT_EQ(device->ValidateDevice(&passes), D3DERR_INVALIDCALL);
    PixelShader("ps_3_0\nmov oC0, c0");
    EXPECT_EQ(device->ValidateDevice(&passes), D3D_OK);
    VertexShader("vs_2_0\ndcl_position v0\nmov oPos, v0");
    EXPECT_EQ(device->ValidateDevice(&passes), D3DERR_INVALIDCALL);
}

TEST_F(DrawShader, KilledPixelsStay)
{
    PixelShader(
        "ps_2_0\ndcl t0\ndef c0, 0.5, 0, 0, 0\nsub r0, t0.x, c0.x\ntexkill r0\nmov r1, c1\nmov oC0, r1");
    PixelConstant(1, 1, 1, 1, 1);
    FillAll();
    EXPECT_EQ(Coverage(),
              "....####\n....####\n....####\n....####\n....####\n....####\n....####\n....####\n");
}

TEST_F(DrawShader, KilledPixelsLeaveTheDepth)
{
    State(D3DRS_ZENABLE, static_cast<DWORD>(D3DZB_TRUE));
    PixelShader(
        "ps_2_0\ndcl t0\ndef c0, 0.5, 0, 0, 0\nsub r0, t0.x, c0.x\ntexkill r0\nmov oC0, r0");
    FillAll(0, 0.25f); // the right half only
    device->SetPixelShader(nullptr);
    FillAll(0xFFFFFFFF, 0.5f);
    EXPECT_EQ(Pixel(1, 1), 0xFFFFFFFFu);
    EXPECT_NE(Pixel(6, 1), 0xFFFFFFFFu); // behind what was drawn there
}

TEST_F(DrawShader, DepthComesFromTheShader)
{
    State(D3DRS_ZENABLE, static_cast<DWORD>(D3DZB_TRUE));
    PixelShader("ps_2_0\ndcl t0\nmov oDepth, t0.x\nmov oC0, c0");
    FillAll(0, 0.9f); // depth 0 to 1 from left to right
    device->SetPixelShader(nullptr);
    FillAll(0xFFFFFFFF, 0.5f); // passes where that is above 0.5
    EXPECT_EQ(Pixel(2, 3), 0u);
    EXPECT_EQ(Pixel(5, 3), 0xFFFFFFFFu);
}

TEST_F(DrawShader, PositionAndFace)
{
    PixelShader("ps_3_0\ndcl vPos.xy\ndef c0, 0.1, 0, 1, 0\nmul oC0, vPos.xyxy, c0.xxyy");
    FillAll();
    for (UINT y = 0; y < kSide; ++y)
        for (UINT x = 0; x < kSide; ++x)
            EXPECT_EQ(Pixel(x, y), (x * 51 + 1) / 2 << 16 | (y * 51 + 1) / 2 << 8) << x << " " << y;
    PixelShader("ps_3_0\ndcl vFace\ndef c0, 0, 1, 0, 0\ncmp oC0, vFace, c0.y, c0.x");
    FillAll(); // clockwise is the front
    EXPECT_EQ(Pixel(3, 3), 0xFFFFFFFFu);
    Draw<ScreenVertex>(D3DPT_TRIANGLELIST, 1, {{-1, -1}, {-1, 20}, {20, -1}});
    EXPECT_EQ(Pixel(3, 3), 0u);
}

TEST_F(DrawShader, FogOfOlderVersionsOnly)
{
    State(D3DRS_FOGENABLE, static_cast<DWORD>(TRUE));
    State(D3DRS_FOGCOLOR, DWORD{0x0000FF});
    VertexShader("vs_2_0\ndcl_position v0\nmov oPos, v0\nmov oFog.x, c0.x\nmov oD0, c1");
    VertexConstant(0, 0.4f, 0, 0, 0);
    VertexConstant(1, 1, 0, 0, 1);
    EXPECT_EQ(ModelPixel(), 0xFF660099u);
    PixelShader("ps_2_0\nmov oC0, c0");
    PixelConstant(0, 0, 1, 0, 1);
    EXPECT_EQ(ModelPixel(), 0xFF006699u);
    VertexShader(
        "vs_3_0\ndcl_position v0\ndcl_position o0\ndcl_fog o1.x\nmov o0, v0\nmov o1.x, c0.x");
    PixelShader("ps_3_0\nmov oC0, c0");
    EXPECT_EQ(ModelPixel(), 0xFF00FF00u);
}

TEST_F(DrawShader, PointSizeComesFromTheShader)
{
    VertexShader("vs_1_1\ndcl_position v0\nmov oPos, v0\nmov oPts.x, c0.x");
    VertexConstant(0, 4, 0, 0, 0);
    Draw<ModelVertex>(D3DPT_POINTLIST, 1, {{0, 0, 0.5f}});
    EXPECT_EQ(Coverage(),
              "........\n........\n..####..\n..####..\n..####..\n..####..\n........\n........\n");
}

TEST_F(DrawShader, UserPlanesAreInClipSpace)
{
    const float plane[] = {1, 0, 0, 0};
    EXPECT_EQ(device->SetClipPlane(0, plane), D3D_OK);
    State(D3DRS_CLIPPLANEENABLE, DWORD{1});
    VertexShader("vs_1_1\ndcl_position v0\nmov oPos, v0");
    EXPECT_EQ(DrawModel(), D3D_OK);
    EXPECT_EQ(Coverage().substr(0, 9), "....####\n");
}

TEST_F(DrawShader, VertexTexturesAreSampled)
{
    Com<IDirect3DTexture9> texture = Texture(1, 1, 1, D3DPOOL_MANAGED);
    D3DLOCKED_RECT locked = {};
    ASSERT_EQ(texture->LockRect(0, &locked, nullptr, 0), D3D_OK);
    const uint32_t texel = 0x80336699;
    std::memcpy(locked.pBits, &texel, 4);
    texture->UnlockRect(0);
    EXPECT_EQ(device->SetTexture(D3DVERTEXTEXTURESAMPLER0 + 2, texture.Get()), D3D_OK);
    VertexShader("vs_3_0\ndcl_position v0\ndcl_2d s2\ndcl_position o0\ndcl_color o1\nmov o0, v0\n"
                 "texldl o1, v0, s2");
    EXPECT_EQ(ModelPixel(), texel);
    device->SetTexture(D3DVERTEXTEXTURESAMPLER0 + 2, nullptr);
    EXPECT_EQ(device->SetTexture(D3DDMAPSAMPLER, nullptr), D3DERR_INVALIDCALL);
}

TEST_F(DrawShader, TheTargetIsReadAsItWasBefore)
{
    Com<IDirect3DTexture9> texture;
    ASSERT_EQ(device->CreateTexture(kSide, kSide, 1, D3DUSAGE_RENDERTARGET, D3DFMT_A8R8G8B8,
                                    D3DPOOL_DEFAULT, texture.Out(), nullptr),
              D3D_OK);
    Com<IDirect3DSurface9> level;
    ASSERT_EQ(texture->GetSurfaceLevel(0, level.Out()), D3D_OK);
    ASSERT_EQ(device->SetRenderTarget(0, level.Get()), D3D_OK);
    device->Clear(0, nullptr, D3DCLEAR_TARGET, 0xFF204060, 1.0f, 0);
    EXPECT_EQ(device->SetTexture(0, texture.Get()), D3D_OK);
    // Two layers in one draw: both add to what was there before it, so the second replaces the first.
    const auto layers = [this] {
        std::vector<ScreenVertex> corners;
        for (int i = 0; i < 2; ++i)
            for (const float side : {-1.0f, 20.0f, -1.0f})
                corners.push_back(
                    {side, corners.size() % 3 == 2 ? 20.0f : -1.0f, 0.5f, 1, 0xFF101010});
        return Draw(D3DPT_TRIANGLELIST, 2, corners);
    };
    Stage(0, D3DTSS_COLOROP, D3DTOP_ADD);
    EXPECT_EQ(layers(), D3D_OK);
    EXPECT_EQ(Read(level.Get())[0], 0xFF305070u);
    PixelShader("ps_2_0\ndcl v0\ndcl t0\ndcl_2d s0\ntexld r0, t0, s0\nadd r0, r0, v0\nmov oC0, r0");
    EXPECT_EQ(layers(), D3D_OK);
    EXPECT_EQ(Read(level.Get())[0], 0xFF406080u);
    device->SetTexture(0, nullptr);
    device->SetRenderTarget(0, target.Get());
}

TEST_F(DrawShader, BlendingAndTheAlphaTestFollow)
{
    FillAll(0xFF000080);
    PixelShader("ps_2_0\ndcl v0\nmov oC0, v0");
    State(D3DRS_ALPHABLENDENABLE, static_cast<DWORD>(TRUE));
    State(D3DRS_DESTBLEND, static_cast<DWORD>(D3DBLEND_ONE));
    EXPECT_EQ(Filled(0x00400000), 0xFF400080u);
    State(D3DRS_ALPHATESTENABLE, static_cast<DWORD>(TRUE));
    State(D3DRS_ALPHAFUNC, static_cast<DWORD>(D3DCMP_GREATER));
    State(D3DRS_ALPHAREF, DWORD{0x40});
    EXPECT_EQ(Filled(0x40400000), 0xFF400080u);
    EXPECT_EQ(Filled(0x41001000), 0xFF401080u);
}

TEST_F(DrawShader, FlatShadingTakesTheFirstColour)
{
    PixelShader("ps_2_0\ndcl v0\nmov oC0, v0");
    State(D3DRS_SHADEMODE, static_cast<DWORD>(D3DSHADE_FLAT));
    Draw<ScreenVertex>(D3DPT_TRIANGLELIST, 1,
                       {{-1, -1, 0.5f, 1, 0xFF112233}, {20, -1, 0.5f, 1, 0}, {-1, 20, 0.5f, 1, 0}});
    EXPECT_EQ(Pixel(3, 3), 0xFF112233u);
}

TEST_F(DrawShader, LinesAndManyVerticesAgreeWithFixedFunctions)
{
    // 3,000 points, each in its own place of a pixel row and colour: more than the vertex cache holds.
    std::vector<ScreenVertex> fixed;
    std::vector<ModelVertex> shaded;
    for (int i = 0; i < 3000; ++i) {
        const int x = i * 7 % 8, y = i * 13 % 8;
        const D3DCOLOR colour = 0xFF000000u | static_cast<D3DCOLOR>(i * 5 % 256) << 8;
        fixed.push_back({static_cast<float>(x), static_cast<float>(y), 0.5f, 1, colour});
        shaded.push_back({static_cast<float>(x) / 4.0f - 1.0f, 1.0f - static_cast<float>(y) / 4.0f,
                          0.5f, static_cast<float>(i * 5 % 256) / 255.0f, 1});
    }
    EXPECT_EQ(Draw(D3DPT_POINTLIST, 3000, fixed), D3D_OK);
    const std::vector<uint32_t> expected = Pixels();
    device->Clear(0, nullptr, D3DCLEAR_TARGET, 0, 1.0f, 0);
    VertexShader("vs_1_1\ndcl_position v0\ndcl_texcoord v1\ndef c0, 0, 1, 0, 1\nmul oD0, v1.x, c0\n"
                 "mov oD0.w, c0.y\nmov oPos, v0");
    EXPECT_EQ(Draw(D3DPT_POINTLIST, 3000, shaded), D3D_OK);
    EXPECT_EQ(Pixels(), expected);
}

TEST_F(DrawShader, RefusedStreamsGiveTheReason)
{
    const DWORD none[] = {0x12345678, 0x0000FFFF};
    IDirect3DPixelShader9* made = nullptr;
    EXPECT_EQ(device->CreatePixelShader(none, &made), D3DERR_INVALIDCALL);
    EXPECT_EQ(made, nullptr);
    EXPECT_THAT(headless::LastRefusal(), testing::HasSubstr("the version is not one of"));
    EXPECT_EQ(device->CreatePixelShader(nullptr, &made), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->CreatePixelShader(none, nullptr), D3DERR_INVALIDCALL);
    const std::vector<DWORD> vertex = Words("vs_1_1\ndcl_position v0\nmov oPos, v0");
    EXPECT_EQ(device->CreatePixelShader(vertex.data(), &made), D3DERR_INVALIDCALL);
    EXPECT_THAT(headless::LastRefusal(), testing::HasSubstr("it is a vertex shader"));
}

TEST_F(DrawShader, ShadersAndConstantsCanBeReadBack)
{
    const std::vector<DWORD> words = Words("ps_2_0\nmov oC0, c0");
    PixelShader("ps_2_0\nmov oC0, c0");
    UINT size = 0;
    EXPECT_EQ(pixelShader->GetFunction(nullptr, &size), D3D_OK);
    ASSERT_EQ(size, words.size() * 4);
    std::vector<DWORD> back(words.size());
    EXPECT_EQ(pixelShader->GetFunction(back.data(), &size), D3D_OK);
    EXPECT_EQ(back, words);
    size = 3;
    EXPECT_EQ(pixelShader->GetFunction(back.data(), &size), D3DERR_INVALIDCALL);
    IDirect3DPixelShader9* bound = nullptr;
    EXPECT_EQ(device->GetPixelShader(&bound), D3D_OK);
    EXPECT_EQ(bound, pixelShader.Get());
    bound->Release();
    Com<IDirect3DDevice9> owner;
    EXPECT_EQ(pixelShader->GetDevice(owner.Out()), D3D_OK);
    EXPECT_EQ(owner.Get(), device.Get());

    float floats[8] = {};
    EXPECT_EQ(device->GetPixelShaderConstantF(222, floats, 2), D3D_OK);
    EXPECT_EQ(floats[7], 0.0f); // never set
    PixelConstant(223, 1, 2, 3, 4);
    EXPECT_EQ(device->GetPixelShaderConstantF(222, floats, 2), D3D_OK);
    EXPECT_EQ(floats[7], 4.0f);
    EXPECT_EQ(device->SetPixelShaderConstantF(223, floats, 2), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->SetVertexShaderConstantF(8191, floats, 1), D3D_OK);
    EXPECT_EQ(device->SetVertexShaderConstantF(8191, floats, 2), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->SetVertexShaderConstantF(0, nullptr, 1), D3DERR_INVALIDCALL);
    const int ints[] = {1, 2, 3, 4};
    int intsBack[4] = {};
    EXPECT_EQ(device->SetPixelShaderConstantI(15, ints, 1), D3D_OK);
    EXPECT_EQ(device->GetPixelShaderConstantI(15, intsBack, 1), D3D_OK);
    EXPECT_EQ(intsBack[3], 4);
    EXPECT_EQ(device->SetPixelShaderConstantI(16, ints, 1), D3DERR_INVALIDCALL);
    const BOOL truths[] = {FALSE, TRUE};
    BOOL truthsBack[2] = {};
    EXPECT_EQ(device->SetVertexShaderConstantB(2046, truths, 2), D3D_OK);
    EXPECT_EQ(device->GetVertexShaderConstantB(2046, truthsBack, 2), D3D_OK);
    EXPECT_EQ(truthsBack[1], TRUE);
}

TEST_F(DrawShader, ABoundShaderOutlivesItsRelease)
{
    PixelShader("ps_1_1\nmov r0, c0");
    PixelConstant(0, 1, 1, 1, 1);
    pixelShader.Release();
    EXPECT_EQ(Filled(0), 0xFFFFFFFFu);
}

TEST_F(DrawShader, SwitchesAndCountsComeFromTheDevice)
{
    PixelShader("ps_3_0\ndef c0, 0, 0.2, 1, 0\nmov r0, c0.x\nif b2\nmov r0.w, c0.z\nendif\nrep i1\n"
                "add r0.x, r0.x, c0.y\nendrep\nmov oC0, r0");
    const int count[] = {3, 0, 0, 0};
    const BOOL isTrue = TRUE;
    EXPECT_EQ(device->SetPixelShaderConstantI(1, count, 1), D3D_OK);
    EXPECT_EQ(device->SetPixelShaderConstantB(2, &isTrue, 1), D3D_OK);
    EXPECT_EQ(Filled(), 0xFF990000u);
}

TEST_F(DrawShader, ADrawThatTakesTooLongIsCutOff)
{
    // Each pixel runs to its limit of 65,535 steps; a filling has 16 groups of four pixels.
    headless::gShaderBudget = 10 * 16 * 65535;
    PixelShader("ps_3_0\ndefi i0, 255, 0, 0, 0\ndcl_color v0\nmov oC0, v0\nrep i0\nrep i0\nrep i0\n"
                "nop\nendrep\nendrep\nendrep");
    std::vector<ScreenVertex> corners;
    for (int i = 0; i < 12; ++i) {
        const D3DCOLOR colour = i < 9 ? 0xFF00FF00 : (i < 10 ? 0xFF0000FF : 0xFFFF0000);
        corners.push_back({-0.5f, -0.5f, 0.5f, 1, colour});
        corners.push_back({15.5f, -0.5f, 0.5f, 1, colour});
        corners.push_back({-0.5f, 15.5f, 0.5f, 1, colour});
    }
    TakeCutDraw();
    EXPECT_EQ(Draw(D3DPT_TRIANGLELIST, 12, corners), D3D_OK);
    EXPECT_TRUE(TakeCutDraw());
    EXPECT_FALSE(TakeCutDraw());
    EXPECT_EQ(Pixel(0, 0), 0xFF0000FFu);
    EXPECT_EQ(Draw<ScreenVertex>(D3DPT_TRIANGLELIST, 1, {{-1, -1}, {20, -1}, {-1, 20}}), D3D_OK);
    EXPECT_FALSE(TakeCutDraw()); // each draw has its own
    headless::gShaderBudget = headless::kShaderBudget;
    EXPECT_EQ(Pixel(0, 0), 0xFFFFFFFFu);
}

TEST_F(DrawShader, TheStepsOfItsDrawsCountForTheFrame)
{
    // A filling takes 64 pixels and 16 for each of its two triangles, five of them 480; with a shader of 40
    // instructions one takes 640 steps more, at least, for 16 groups of four pixels.
    headless::gFrameBudget = 600;
    TakeCutFrame();
    for (int i = 0; i < 3; ++i)
        Filled(0xFF00FF00);
    EXPECT_FALSE(TakeCutFrame());
    std::string text = "ps_2_0\n";
    for (int i = 0; i < 39; ++i)
        text += "mov r0, c0\n";
    PixelShader(text + "mov oC0, r0");
    Filled();
    EXPECT_FALSE(TakeCutFrame());
    Filled();
    EXPECT_TRUE(TakeCutFrame());
    headless::gFrameBudget = headless::kFrameBudget;
}

// What is refused does not depend on whether somebody looks.
TEST_F(DrawShader, WithoutAnAudienceTheSameIsRefused)
{
    PixelShader("ps_2_0\ndcl t0\ndcl_2d s2\ntexld r0, t0, s2\nmov oC0, r0");
    BindTexels(2, 1, 1, {0xFF00FF00});
    BindTexels(3, 1, 1, {0xFF00FF00});
    const headless::QuietRefusals quiet;
    for (const bool isSeen : {true, false}) {
        if (!isSeen)
            headless::DismissAudience();
        Sampler(2, D3DSAMP_ADDRESSU, 77);
        EXPECT_EQ(DrawModel(), D3DERR_INVALIDCALL) << isSeen;
        Sampler(2, D3DSAMP_ADDRESSU, D3DTADDRESS_WRAP);
        Sampler(3, D3DSAMP_ADDRESSU, 77); // the shader does not read it
        EXPECT_EQ(DrawModel(), D3D_OK) << isSeen;
    }
    headless::RecallAudience();
}

TEST_F(DrawShader, WithoutAnAudienceNothingTakesTooLong)
{
    headless::gShaderBudget = 1;
    PixelShader("ps_2_0\nmov oC0, c0");
    TakeCutDraw();
    headless::DismissAudience();
    EXPECT_EQ(DrawModel(), D3D_OK);
    headless::RecallAudience();
    EXPECT_FALSE(TakeCutDraw());
    EXPECT_EQ(DrawModel(), D3D_OK);
    EXPECT_TRUE(TakeCutDraw());
    headless::gShaderBudget = headless::kShaderBudget;
}
