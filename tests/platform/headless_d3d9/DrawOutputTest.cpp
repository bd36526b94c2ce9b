// Depth, alpha test, blending, masks and fog, computed by hand.

#include "platform/headless/d3d9/Device.h"

#include "tests/platform/headless_d3d9/DrawFixture.h"

using namespace headless;

namespace {

class DrawDepthTest : public DrawTest {
protected:
    void UseDepth(D3DFORMAT format)
    {
        Com<IDirect3DSurface9> depth;
        ASSERT_EQ(device->CreateDepthStencilSurface(kSide, kSide, format, D3DMULTISAMPLE_NONE, 0,
                                                    FALSE, depth.Out(), nullptr),
                  D3D_OK);
        ASSERT_EQ(device->SetDepthStencilSurface(depth.Get()), D3D_OK);
        ASSERT_EQ(device->Clear(0, nullptr, D3DCLEAR_ZBUFFER, 0, 1.0f, 0), D3D_OK);
        State(D3DRS_ZENABLE, static_cast<DWORD>(D3DZB_TRUE));
    }

    uint32_t DepthWord(UINT x, UINT y)
    {
        const auto& state = static_cast<HeadlessDevice*>(device.Get())->State();
        const PixelBuffer& pixels = state.depthSurface.Get()->Pixels();
        return LoadPixelWord(*pixels.format, pixels.At(x, y));
    }
};

using DrawBlendTest = DrawTest;
using DrawFogTest = DrawTest;

} // namespace

/// 0.25 in steps of each format: 16383.75, 4194303.75 and 1073741823.75, rounded; D32 is converted
/// from float and truncated.
TEST_F(DrawDepthTest, DepthIsStoredInStepsOfItsFormat)
{
    static const struct {
        D3DFORMAT format;
        uint32_t word;
    } cases[] = {
        {D3DFMT_D16, 16384},
        {D3DFMT_D24X8, 4194304u << 8},
        {D3DFMT_D32, 1073741823},
    };
    for (const auto& c : cases) {
        UseDepth(c.format);
        FillAll(0xFFFFFFFF, 0.25f);
        EXPECT_EQ(DepthWord(3, 3) & (c.format == D3DFMT_D24X8 ? 0xFFFFFF00 : 0xFFFFFFFF), c.word)
            << c.format;
    }
}

TEST_F(DrawDepthTest, EachFunctionComparesWithTheStoredDepth)
{
    static const struct {
        D3DCMPFUNC function;
        bool nearer, same, farther;
    } cases[] = {
        {D3DCMP_NEVER, false, false, false},      {D3DCMP_LESS, true, false, false},
        {D3DCMP_EQUAL, false, true, false},       {D3DCMP_LESSEQUAL, true, true, false},
        {D3DCMP_GREATER, false, false, true},     {D3DCMP_NOTEQUAL, true, false, true},
        {D3DCMP_GREATEREQUAL, false, true, true}, {D3DCMP_ALWAYS, true, true, true},
    };
    for (const D3DFORMAT format : {D3DFMT_D16, D3DFMT_D24S8, D3DFMT_D32}) {
        UseDepth(format);
        for (const auto& c : cases)
            for (const float z : {0.25f, 0.5f, 0.75f}) {
                State(D3DRS_ZFUNC, static_cast<DWORD>(D3DCMP_ALWAYS));
                FillAll(0xFF000000, 0.5f);
                State(D3DRS_ZFUNC, static_cast<DWORD>(c.function));
                FillAll(0xFFFFFFFF, z);
                const bool expected = z < 0.5f ? c.nearer : (z > 0.5f ? c.farther : c.same);
                EXPECT_EQ(Pixel(3, 3) == 0xFFFFFFFF, expected) << c.function << " at " << z;
            }
    }
}

TEST_F(DrawDepthTest, NothingIsStoredWithWritingOff)
{
    UseDepth(D3DFMT_D16);
    State(D3DRS_ZWRITEENABLE, static_cast<DWORD>(FALSE));
    FillAll(0xFFFFFFFF, 0.25f);
    EXPECT_EQ(DepthWord(3, 3), 65535u);
    EXPECT_EQ(Pixel(3, 3), 0xFFFFFFFFu);
}

/// The stencil byte must not change.
TEST_F(DrawDepthTest, WritingDepthKeepsTheStencil)
{
    UseDepth(D3DFMT_D24S8);
    ASSERT_EQ(device->Clear(0, nullptr, D3DCLEAR_STENCIL, 0, 1.0f, 0xA5), D3D_OK);
    FillAll(0xFFFFFFFF, 0.0f);
    EXPECT_EQ(DepthWord(3, 3), 0xA5u);
}

TEST_F(DrawDepthTest, PixelsThatFailTheAlphaTestStoreNoDepth)
{
    UseDepth(D3DFMT_D16);
    State(D3DRS_ALPHATESTENABLE, static_cast<DWORD>(TRUE));
    State(D3DRS_ALPHAFUNC, static_cast<DWORD>(D3DCMP_GREATER));
    State(D3DRS_ALPHAREF, static_cast<DWORD>(128));
    FillAll(0x80FFFFFF, 0.25f);
    EXPECT_EQ(DepthWord(3, 3), 65535u);
    FillAll(0x81FFFFFF, 0.25f);
    EXPECT_EQ(DepthWord(3, 3), 16384u);
}

/// 0.5 - 0.25 = 0.25.
TEST_F(DrawDepthTest, BiasIsAdded)
{
    UseDepth(D3DFMT_D16);
    State(D3DRS_DEPTHBIAS, -0.25f);
    FillAll(0xFFFFFFFF, 0.5f);
    EXPECT_EQ(DepthWord(3, 3), 16384u);
}

/// Depth grows by 1/16 per pixel to the right; a slope bias of 2 adds 1/8. At x = 4 it is 4/16 +
/// 2/16 = 0.375, 24575.625 steps.
TEST_F(DrawDepthTest, SlopeBiasFollowsTheSteepness)
{
    UseDepth(D3DFMT_D16);
    State(D3DRS_SLOPESCALEDEPTHBIAS, 2.0f);
    ASSERT_EQ(Draw<ScreenVertex>(D3DPT_TRIANGLESTRIP, 2,
                                 {{0, -1, 0.0f}, {8, -1, 0.5f}, {0, 9, 0.0f}, {8, 9, 0.5f}}),
              D3D_OK);
    EXPECT_EQ(DepthWord(4, 4), 24576u);
}

/// A projection with near 1 and far 5 spreads the steps of a W buffer over w = 1..5. w = 2 is a
/// quarter of the range, whatever z is.
TEST_F(DrawDepthTest, AWBufferStoresTheDistance)
{
    UseDepth(D3DFMT_D16);
    D3DMATRIX projection = {};
    projection._11 = projection._22 = 1.0f;
    projection._33 = 1.25f; // far / (far - near)
    projection._34 = 1.0f;
    projection._43 = -1.25f;
    ASSERT_EQ(device->SetTransform(D3DTS_PROJECTION, &projection), D3D_OK);
    State(D3DRS_ZENABLE, static_cast<DWORD>(D3DZB_USEW));
    ASSERT_EQ(
        Draw<ScreenVertex>(D3DPT_TRIANGLELIST, 1,
                           {{-1, -1, 0.9f, 0.5f}, {20, -1, 0.9f, 0.5f}, {-1, 20, 0.9f, 0.5f}}),
        D3D_OK);
    EXPECT_EQ(DepthWord(3, 3), 16384u);
}

/// Source (0.8, 0.4, 0) with alpha 0.6 over target (0.2, 0.6, 1) with alpha 0.4, in 8-bit steps:
/// 204, 102, 0, 153 and 51, 153, 255, 102. The other factor is ZERO, so each row shows only its own
/// factor.
TEST_F(DrawBlendTest, EachFactorScales)
{
    static const struct {
        const char* what;
        D3DBLEND factor;
        uint32_t ofSource; ///< source * factor
    } cases[] = {
        {"ZERO", D3DBLEND_ZERO, 0x00000000},
        {"ONE", D3DBLEND_ONE, 0x99CC6600},
        // squares: 0.64 (163.2), 0.16 (40.8), 0, 0.36 (91.8)
        {"SRCCOLOR", D3DBLEND_SRCCOLOR, 0x5CA32900},
        // 0.8 * 0.2 = 0.16, 0.4 * 0.6 = 0.24 (61.2), 0, 0.6 * 0.4 = 0.24
        {"INVSRCCOLOR", D3DBLEND_INVSRCCOLOR, 0x3D293D00},
        // 0.48 (122.4), 0.24, 0, 0.36
        {"SRCALPHA", D3DBLEND_SRCALPHA, 0x5C7A3D00},
        // 0.32 (81.6), 0.16, 0, 0.24
        {"INVSRCALPHA", D3DBLEND_INVSRCALPHA, 0x3D522900},
        // like INVSRCALPHA: the target's alpha is 0.4
        {"DESTALPHA", D3DBLEND_DESTALPHA, 0x3D522900},
        {"INVDESTALPHA", D3DBLEND_INVDESTALPHA, 0x5C7A3D00},
        // 0.16, 0.24, 0, 0.24
        {"DESTCOLOR", D3DBLEND_DESTCOLOR, 0x3D293D00},
        // 0.8 * 0.8 = 0.64, 0.4 * 0.4 = 0.16, 0, 0.6 * 0.6 = 0.36
        {"INVDESTCOLOR", D3DBLEND_INVDESTCOLOR, 0x5CA32900},
        // min(0.6, 0.6) for colours, 1 for alpha
        {"SRCALPHASAT", D3DBLEND_SRCALPHASAT, 0x997A3D00},
        // the constant is (0.2, 0.4, 0.6) with alpha 0.8: 0.16, 0.16, 0, 0.48
        {"BLENDFACTOR", D3DBLEND_BLENDFACTOR, 0x7A292900},
        // 0.64, 0.24, 0, 0.12 (30.6)
        {"INVBLENDFACTOR", D3DBLEND_INVBLENDFACTOR, 0x1FA33D00},
    };
    State(D3DRS_BLENDFACTOR, static_cast<DWORD>(0xCC336699));
    for (const auto& c : cases) {
        device->Clear(0, nullptr, D3DCLEAR_TARGET, 0x663399FF, 1.0f, 0);
        State(D3DRS_ALPHABLENDENABLE, static_cast<DWORD>(TRUE));
        State(D3DRS_SRCBLEND, static_cast<DWORD>(c.factor));
        State(D3DRS_DESTBLEND, static_cast<DWORD>(D3DBLEND_ZERO));
        EXPECT_EQ(Filled(0x99CC6600), c.ofSource) << c.what;
    }
}

/// 100 and 60 in blue, with both factors ONE.
TEST_F(DrawBlendTest, EachOperationCombines)
{
    static const struct {
        const char* what;
        D3DBLENDOP operation;
        uint32_t expected;
    } cases[] = {
        {"add", D3DBLENDOP_ADD, 160},
        {"source - target", D3DBLENDOP_SUBTRACT, 40},
        {"target - source", D3DBLENDOP_REVSUBTRACT, 0},
        {"least", D3DBLENDOP_MIN, 60},
        {"most", D3DBLENDOP_MAX, 100},
    };
    State(D3DRS_ALPHABLENDENABLE, static_cast<DWORD>(TRUE));
    State(D3DRS_DESTBLEND, static_cast<DWORD>(D3DBLEND_ONE));
    for (const auto& c : cases) {
        device->Clear(0, nullptr, D3DCLEAR_TARGET, 60, 1.0f, 0);
        State(D3DRS_BLENDOP, static_cast<DWORD>(c.operation));
        EXPECT_EQ(Filled(0xFF000064) & 0xFF, c.expected) << c.what;
    }
}

TEST_F(DrawBlendTest, OneSourceValueCanSetBothFactors)
{
    device->Clear(0, nullptr, D3DCLEAR_TARGET, 0xFF0000FF, 1.0f, 0);
    State(D3DRS_ALPHABLENDENABLE, static_cast<DWORD>(TRUE));
    State(D3DRS_SRCBLEND, static_cast<DWORD>(D3DBLEND_BOTHSRCALPHA));
    State(D3DRS_DESTBLEND, static_cast<DWORD>(D3DBLEND_ONE)); // ignored
    // 0.2 * 255 + 0.8 * 0 = 51 of red, 0.8 * 255 = 204 of blue
    EXPECT_EQ(Filled(0x33FF0000) & 0xFFFFFF, 0x3300CCu);
}

TEST_F(DrawBlendTest, AlphaCanBlendApart)
{
    device->Clear(0, nullptr, D3DCLEAR_TARGET, 0x40000000, 1.0f, 0);
    State(D3DRS_ALPHABLENDENABLE, static_cast<DWORD>(TRUE));
    State(D3DRS_SEPARATEALPHABLENDENABLE, static_cast<DWORD>(TRUE));
    State(D3DRS_SRCBLEND, static_cast<DWORD>(D3DBLEND_ONE));
    State(D3DRS_DESTBLEND, static_cast<DWORD>(D3DBLEND_ZERO));
    State(D3DRS_SRCBLENDALPHA, static_cast<DWORD>(D3DBLEND_ONE));
    State(D3DRS_DESTBLENDALPHA, static_cast<DWORD>(D3DBLEND_ONE));
    EXPECT_EQ(Filled(0x20304050), 0x60304050u);
}

TEST_F(DrawBlendTest, OnlyTheChannelsOfTheMaskAreWritten)
{
    device->Clear(0, nullptr, D3DCLEAR_TARGET, 0x11223344, 1.0f, 0);
    State(D3DRS_COLORWRITEENABLE,
          static_cast<DWORD>(D3DCOLORWRITEENABLE_RED | D3DCOLORWRITEENABLE_BLUE));
    EXPECT_EQ(Filled(0xAABBCCDD), 0x11BB33DDu);
}

/// 5 and 6 bits: 128 * 31 / 255 = 15.56 and 128 * 63 / 255 = 31.62, rounded to 16 and 32. In 565 that
/// is 0x8410.
TEST_F(DrawBlendTest, TargetsOf16BitsAreRounded)
{
    const Com<IDirect3DSurface9> small = Target(kSide, kSide, D3DFMT_R5G6B5);
    ASSERT_EQ(device->SetRenderTarget(0, small.Get()), D3D_OK);
    FillAll(0xFF808080);
    const PixelBuffer& pixels = static_cast<HeadlessSurface*>(small.Get())->Pixels();
    EXPECT_EQ(LoadPixelWord(*pixels.format, pixels.At(3, 3)), 0x8410u);
    ASSERT_EQ(device->SetRenderTarget(0, target.Get()), D3D_OK);
}

TEST_F(DrawBlendTest, UnusedBitsOfTheTargetAreFilled)
{
    const Com<IDirect3DSurface9> opaque = Target(kSide, kSide, D3DFMT_X8R8G8B8);
    ASSERT_EQ(device->SetRenderTarget(0, opaque.Get()), D3D_OK);
    FillAll(0x00123456);
    const PixelBuffer& pixels = static_cast<HeadlessSurface*>(opaque.Get())->Pixels();
    EXPECT_EQ(LoadPixelWord(*pixels.format, pixels.At(3, 3)), 0xFF123456u);
    ASSERT_EQ(device->SetRenderTarget(0, target.Get()), D3D_OK);
}

TEST_F(DrawBlendTest, AlphaTestComparesSteps)
{
    State(D3DRS_ALPHATESTENABLE, static_cast<DWORD>(TRUE));
    State(D3DRS_ALPHAFUNC, static_cast<DWORD>(D3DCMP_EQUAL));
    State(D3DRS_ALPHAREF, static_cast<DWORD>(254));
    EXPECT_EQ(Filled(0xFFFFFFFF), 0u);
    EXPECT_EQ(Filled(0xFEFFFFFF), 0xFEFFFFFFu);
}

TEST_F(DrawBlendTest, UnknownFactorsAreRefused)
{
    State(D3DRS_ALPHABLENDENABLE, static_cast<DWORD>(TRUE));
    const std::vector<ScreenVertex> corners = {{0, 0}, {4, 0}, {0, 4}};
    State(D3DRS_SRCBLEND, static_cast<DWORD>(0));
    EXPECT_EQ(Draw(D3DPT_TRIANGLELIST, 1, corners), D3DERR_INVALIDCALL);
    State(D3DRS_SRCBLEND, static_cast<DWORD>(D3DBLEND_ONE));
    State(D3DRS_BLENDOP, static_cast<DWORD>(6));
    EXPECT_EQ(Draw(D3DPT_TRIANGLELIST, 1, corners), D3DERR_INVALIDCALL);
}

/// With no fog mode the factor is the alpha of the specular colour: 51 / 255 = 0.2 of white plus
/// 0.8 of the fog's 100: 51 + 80 = 131.
TEST_F(DrawFogTest, WithoutAModeSpecularAlphaIsTheFactor)
{
    State(D3DRS_FOGENABLE, static_cast<DWORD>(TRUE));
    State(D3DRS_FOGCOLOR, static_cast<DWORD>(0xFF646464));
    ASSERT_EQ(Draw<ScreenVertex>(D3DPT_TRIANGLELIST, 1,
                                 {{-1, -1, 0.5f, 1, 0x12FFFFFF, 0x33000000},
                                  {20, -1, 0.5f, 1, 0x12FFFFFF, 0x33000000},
                                  {-1, 20, 0.5f, 1, 0x12FFFFFF, 0x33000000}}),
              D3D_OK);
    EXPECT_EQ(Pixel(3, 3), 0x12838383u) << "alpha is not fogged";
}

/// With the identity as projection, table fog uses depth: from 0.25 to 0.75, 0.5 is half. (255 + 1)
/// / 2 = 128.
TEST_F(DrawFogTest, TableFogUsesDepthWithoutPerspective)
{
    State(D3DRS_FOGENABLE, static_cast<DWORD>(TRUE));
    State(D3DRS_FOGCOLOR, static_cast<DWORD>(0x00010101));
    State(D3DRS_FOGTABLEMODE, static_cast<DWORD>(D3DFOG_LINEAR));
    State(D3DRS_FOGSTART, 0.25f);
    State(D3DRS_FOGEND, 0.75f);
    FillAll(0xFFFFFFFF, 0.5f);
    EXPECT_EQ(Pixel(3, 3), 0xFF808080u);
}

/// With perspective it uses w: w = 4 between 2 and 6 is half. The curves at w = 4 with density
/// 0.25: exp(-1) = 0.3679 (93.8), exp(-1^2) is the same; with density 0.5: exp(-2) = 0.1353 (34.5),
/// which could round either way, so 0.4: exp(-1.6) = 0.2019 (51.5), likewise, and exp(-2.56) =
/// 0.0773 (19.7).
TEST_F(DrawFogTest, TableFogUsesWInPerspective)
{
    static const struct {
        const char* what;
        D3DFOGMODE mode;
        float density;
        uint32_t expected;
    } cases[] = {
        {"linear", D3DFOG_LINEAR, 0.0f, 128}, // 127.5 rounds up
        {"exp", D3DFOG_EXP, 0.25f, 94},
        {"exp2", D3DFOG_EXP2, 0.25f, 94},
        {"exp2, denser", D3DFOG_EXP2, 0.4f, 20},
    };
    D3DMATRIX projection = {};
    projection._11 = projection._22 = projection._33 = projection._34 = 1.0f;
    ASSERT_EQ(device->SetTransform(D3DTS_PROJECTION, &projection), D3D_OK);
    State(D3DRS_FOGENABLE, static_cast<DWORD>(TRUE));
    State(D3DRS_FOGSTART, 2.0f);
    State(D3DRS_FOGEND, 6.0f);
    for (const auto& c : cases) {
        State(D3DRS_FOGTABLEMODE, static_cast<DWORD>(c.mode));
        State(D3DRS_FOGDENSITY, c.density);
        ASSERT_EQ(Draw<ScreenVertex>(
                      D3DPT_TRIANGLELIST, 1,
                      {{-1, -1, 0.5f, 0.25f}, {20, -1, 0.5f, 0.25f}, {-1, 20, 0.5f, 0.25f}}),
                  D3D_OK);
        EXPECT_EQ(Pixel(3, 3) & 0xFF, c.expected) << c.what;
    }
}

TEST_F(DrawFogTest, WithStartEqualToEndAllIsFog)
{
    State(D3DRS_FOGENABLE, static_cast<DWORD>(TRUE));
    State(D3DRS_FOGCOLOR, static_cast<DWORD>(0x00102030));
    State(D3DRS_FOGTABLEMODE, static_cast<DWORD>(D3DFOG_LINEAR));
    State(D3DRS_FOGSTART, 0.75f);
    State(D3DRS_FOGEND, 0.75f);
    FillAll(0xFFFFFFFF, 0.5f);
    EXPECT_EQ(Pixel(3, 3), 0xFF102030u);
}

/// 200 + 100 is clamped to 255; alpha is unchanged.
TEST_F(DrawFogTest, SpecularIsAddedBeforeTheFog)
{
    State(D3DRS_SPECULARENABLE, static_cast<DWORD>(TRUE));
    ASSERT_EQ(Draw<ScreenVertex>(D3DPT_TRIANGLELIST, 1,
                                 {{-1, -1, 0.5f, 1, 0x80C81000, 0xFF642010},
                                  {20, -1, 0.5f, 1, 0x80C81000, 0xFF642010},
                                  {-1, 20, 0.5f, 1, 0x80C81000, 0xFF642010}}),
              D3D_OK);
    EXPECT_EQ(Pixel(3, 3), 0x80FF3010u);
}
