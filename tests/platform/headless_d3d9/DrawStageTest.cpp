// The arithmetic of the texture stages, computed by hand with one texel and one vertex colour.

#include "platform/headless/d3d9/TestControl.h"
#include "tests/platform/headless_d3d9/DrawFixture.h"

#include <bit>

using namespace headless;

namespace {

class DrawStageTest : public DrawTest {
protected:
    void Operation(DWORD stage, DWORD operation, DWORD arg1, DWORD arg2)
    {
        Stage(stage, D3DTSS_COLOROP, operation);
        Stage(stage, D3DTSS_COLORARG1, arg1);
        Stage(stage, D3DTSS_COLORARG2, arg2);
    }
};

struct OperationCase {
    const char* what;
    DWORD operation;
    uint32_t expected; ///< red, green, blue
};

} // namespace

/// Texel (1, 0.4, 0) with alpha 0.2; vertex (0.2, 0.4, 0.8) with alpha 0.6; factor alpha 0.4. In
/// steps of 1/255: 255, 102, 0, 51; 51, 102, 204, 153; 102. Results are rounded to nearest.
TEST_F(DrawStageTest, EachOperationFollowsItsFormula)
{
    static const OperationCase cases[] = {
        {"SELECTARG1", D3DTOP_SELECTARG1, 0xFF6600},
        {"SELECTARG2", D3DTOP_SELECTARG2, 0x3366CC},
        // 1 * 0.2, 0.4 * 0.4 = 0.16 (40.8), 0
        {"MODULATE", D3DTOP_MODULATE, 0x332900},
        // 0.4 (102), 0.32 (81.6), 0
        {"MODULATE2X", D3DTOP_MODULATE2X, 0x665200},
        // 0.8 (204), 0.64 (163.2), 0
        {"MODULATE4X", D3DTOP_MODULATE4X, 0xCCA300},
        // 1.2 clamped to 1, 0.8, 0.8
        {"ADD", D3DTOP_ADD, 0xFFCCCC},
        // 0.7 (178.5), 0.3 (76.5), 0.3: halves end on either side, see below
        // 2 * (a + b - 0.5): 1.4 cut to 1, 0.6, 0.6
        {"ADDSIGNED2X", D3DTOP_ADDSIGNED2X, 0xFF9999},
        // 0.8, 0, -0.8 clamped to 0
        {"SUBTRACT", D3DTOP_SUBTRACT, 0xCC0000},
        // a + b - a b: 1, 0.64 (163.2), 0.8
        {"ADDSMOOTH", D3DTOP_ADDSMOOTH, 0xFFA3CC},
        // 0.6 a + 0.4 b: 0.68 (173.4), 0.4, 0.32 (81.6)
        {"BLENDDIFFUSEALPHA", D3DTOP_BLENDDIFFUSEALPHA, 0xAD6652},
        // 0.2 a + 0.8 b: 0.36 (91.8), 0.4, 0.64 (163.2)
        {"BLENDTEXTUREALPHA", D3DTOP_BLENDTEXTUREALPHA, 0x5C66A3},
        // 0.4 a + 0.6 b: 0.52 (132.6), 0.4, 0.48 (122.4)
        {"BLENDFACTORALPHA", D3DTOP_BLENDFACTORALPHA, 0x85667A},
        // a + 0.8 b: clamped to 1, 0.72 (183.6), 0.64 (163.2)
        {"BLENDTEXTUREALPHAPM", D3DTOP_BLENDTEXTUREALPHAPM, 0xFFB8A3},
        // the current colour of the first stage is the vertex's: like BLENDDIFFUSEALPHA
        {"BLENDCURRENTALPHA", D3DTOP_BLENDCURRENTALPHA, 0xAD6652},
        // a + 0.2 b: clamped to 1, 0.48 (122.4), 0.16 (40.8)
        {"MODULATEALPHA_ADDCOLOR", D3DTOP_MODULATEALPHA_ADDCOLOR, 0xFF7A29},
        // a b + 0.2: 0.4, 0.36 (91.8), 0.2
        {"MODULATECOLOR_ADDALPHA", D3DTOP_MODULATECOLOR_ADDALPHA, 0x665C33},
        // a + 0.8 b: like BLENDTEXTUREALPHAPM
        {"MODULATEINVALPHA_ADDCOLOR", D3DTOP_MODULATEINVALPHA_ADDCOLOR, 0xFFB8A3},
        // (1 - a) b + 0.2: 0.2, 0.44 (112.2), 1
        {"MODULATEINVCOLOR_ADDALPHA", D3DTOP_MODULATEINVCOLOR_ADDALPHA, 0x3370FF},
        // factor + a b, factor (0, 0.2, 0.4): 0.2, 0.36 (91.8), 0.4
        {"MULTIPLYADD", D3DTOP_MULTIPLYADD, 0x335C66},
        // factor a + (1 - factor) b: 0.2, 0.4, 0.48 (122.4)
        {"LERP", D3DTOP_LERP, 0x33667A},
    };
    BindTexels(0, 1, 1, {0x33FF6600});
    State(D3DRS_TEXTUREFACTOR, static_cast<DWORD>(0x66003366));
    Stage(0, D3DTSS_COLORARG0, D3DTA_TFACTOR);
    for (const OperationCase& c : cases) {
        Operation(0, c.operation, D3DTA_TEXTURE, D3DTA_DIFFUSE);
        EXPECT_EQ(Filled(0x993366CC) & 0xFFFFFF, c.expected) << c.what;
    }
}

/// 192 + 96 - 127.5 = 160.5 lies between two steps, as does 200 + 100 - 127.5 = 172.5. Either
/// neighbour is correct.
TEST_F(DrawStageTest, AddSignedSubtractsAHalf)
{
    BindTexels(0, 1, 1, {0xFFC0C8FF});
    Operation(0, D3DTOP_ADDSIGNED, D3DTA_TEXTURE, D3DTA_DIFFUSE);
    const uint32_t pixel = Filled(0xFF606400);
    EXPECT_NEAR(static_cast<double>(pixel >> 16 & 0xFF), 160.5, 0.5);
    EXPECT_NEAR(static_cast<double>(pixel >> 8 & 0xFF), 172.5, 0.5);
    EXPECT_NEAR(static_cast<double>(pixel & 0xFF), 127.5, 0.5);
}

/// Two unit vectors stored as colours: (1, 0.5, 0.5) is +x. Its product with itself is 4 * 0.5 *
/// 0.5 = 1 plus small contributions of the other channels (127.5 is not a byte: 128 - 127.5 gives
/// 0.002).
TEST_F(DrawStageTest, DotProductGoesToAllChannels)
{
    BindTexels(0, 1, 1, {0x00FF8080});
    Operation(0, D3DTOP_DOTPRODUCT3, D3DTA_TEXTURE, D3DTA_TEXTURE);
    EXPECT_EQ(Filled(), 0xFFFFFFFFu) << "alpha is the product, too";
    Operation(0, D3DTOP_DOTPRODUCT3, D3DTA_TEXTURE, D3DTA_DIFFUSE);
    EXPECT_EQ(Filled(0xFF008080), 0x00000000u) << "against the direction: below 0, cut";
}

/// The factor is (64, 128, 192) with alpha 32; the constant (10, 20, 30) with alpha 40.
TEST_F(DrawStageTest, ArgumentsAreModified)
{
    static const struct {
        const char* what;
        DWORD argument;
        uint32_t expected;
    } cases[] = {
        {"factor", D3DTA_TFACTOR, 0x4080C0},
        {"complement", D3DTA_TFACTOR | D3DTA_COMPLEMENT, 0xBF7F3F},
        {"alpha", D3DTA_TFACTOR | D3DTA_ALPHAREPLICATE, 0x202020},
        {"one minus alpha", D3DTA_TFACTOR | D3DTA_ALPHAREPLICATE | D3DTA_COMPLEMENT, 0xDFDFDF},
        {"constant", D3DTA_CONSTANT, 0x0A141E},
        {"diffuse", D3DTA_DIFFUSE, 0x112233},
        {"current of the first stage", D3DTA_CURRENT, 0x112233},
        {"temporary, which starts black", D3DTA_TEMP, 0x000000},
    };
    State(D3DRS_TEXTUREFACTOR, static_cast<DWORD>(0x204080C0));
    Stage(0, D3DTSS_CONSTANT, 0x280A141E);
    for (const auto& c : cases) {
        Operation(0, D3DTOP_SELECTARG1, c.argument, D3DTA_CURRENT);
        EXPECT_EQ(Filled(0xFF112233) & 0xFFFFFF, c.expected) << c.what;
    }
}

TEST_F(DrawStageTest, SpecularIsAnArgument)
{
    Operation(0, D3DTOP_SELECTARG1, D3DTA_SPECULAR, D3DTA_CURRENT);
    ASSERT_EQ(Draw<ScreenVertex>(D3DPT_TRIANGLELIST, 1,
                                 {{-1, -1, 0.5f, 1, 0xFFFFFFFF, 0x00102030},
                                  {20, -1, 0.5f, 1, 0xFFFFFFFF, 0x00102030},
                                  {-1, 20, 0.5f, 1, 0xFFFFFFFF, 0x00102030}}),
              D3D_OK);
    EXPECT_EQ(Pixel(2, 2), 0xFF102030u);
}

/// Without a texture an operation that reads one passes all four channels of the vertex colour
/// through.
TEST_F(DrawStageTest, AMissingTexturePassesTheCurrentColourThrough)
{
    EXPECT_EQ(Filled(0x80112233), 0x80112233u) << "the states of a new device";
    Operation(0, D3DTOP_ADD, D3DTA_TFACTOR, D3DTA_TEXTURE);
    EXPECT_EQ(Filled(0x80112233), 0x80112233u);
    Operation(0, D3DTOP_SELECTARG1, D3DTA_TFACTOR, D3DTA_TEXTURE);
    EXPECT_EQ(Filled(0x80112233), 0x80FFFFFFu) << "argument 2 is not read";
}

TEST_F(DrawStageTest, TheFirstDisabledStageEndsTheChain)
{
    BindTexels(1, 1, 1, {0xFF00FF00});
    BindTexels(2, 1, 1, {0xFF0000FF});
    Operation(2, D3DTOP_SELECTARG1, D3DTA_TEXTURE, D3DTA_CURRENT);
    EXPECT_EQ(Filled(0xFF112233), 0xFF112233u) << "stage 1 is disabled";
    Operation(1, D3DTOP_SELECTARG1, D3DTA_TEXTURE, D3DTA_CURRENT);
    EXPECT_EQ(Filled(0xFF112233) & 0xFFFFFF, 0x0000FFu);
}

TEST_F(DrawStageTest, AResultCanGoToTheTempRegister)
{
    State(D3DRS_TEXTUREFACTOR, static_cast<DWORD>(0xFF404040));
    Operation(0, D3DTOP_SELECTARG1, D3DTA_TFACTOR, D3DTA_CURRENT);
    Stage(0, D3DTSS_RESULTARG, D3DTA_TEMP);
    Operation(1, D3DTOP_ADD, D3DTA_CURRENT, D3DTA_TEMP);
    EXPECT_EQ(Filled(0xFF102030) & 0xFFFFFF, 0x506070u);
}

TEST_F(DrawStageTest, AlphaHasAnOperationOfItsOwn)
{
    BindTexels(0, 1, 1, {0x80FFFFFF});
    Stage(0, D3DTSS_ALPHAOP, D3DTOP_MODULATE);
    Stage(0, D3DTSS_ALPHAARG1, D3DTA_TEXTURE);
    Stage(0, D3DTSS_ALPHAARG2, D3DTA_DIFFUSE);
    // 128 / 255 * 128 / 255 * 255 = 64.25
    EXPECT_EQ(Filled(0x80FFFFFF) >> 24, 64u);
}

/// PREMODULATE multiplies its result by the texture of the next stage: 128 * 128 / 255 = 64.25.
TEST_F(DrawStageTest, PremodulateUsesTheNextTexture)
{
    State(D3DRS_TEXTUREFACTOR, static_cast<DWORD>(0xFF808080));
    BindTexels(1, 1, 1, {0xFF80FF00});
    Operation(0, D3DTOP_PREMODULATE, D3DTA_TFACTOR, D3DTA_CURRENT);
    Operation(1, D3DTOP_SELECTARG1, D3DTA_CURRENT, D3DTA_CURRENT);
    EXPECT_EQ(Filled() & 0xFFFFFF, 0x408000u);
}

/// A bump map whose only texel holds the offsets, out of -127..127 for -1..1.
class DrawStageBumpTest : public DrawStageTest {
protected:
    void BindOffsets(signed char u, signed char v)
    {
        bump = Texture(1, 1, 1, D3DPOOL_MANAGED, 0, D3DFMT_V8U8);
        D3DLOCKED_RECT locked = {};
        ASSERT_EQ(bump->LockRect(0, &locked, nullptr, 0), D3D_OK);
        static_cast<signed char*>(locked.pBits)[0] = u;
        static_cast<signed char*>(locked.pBits)[1] = v;
        ASSERT_EQ(bump->UnlockRect(0), D3D_OK);
        ASSERT_EQ(device->SetTexture(0, bump.Get()), D3D_OK);
        Operation(0, D3DTOP_BUMPENVMAP, D3DTA_CURRENT, D3DTA_TEXTURE);
        Operation(1, D3DTOP_SELECTARG1, D3DTA_TEXTURE, D3DTA_CURRENT);
        Stage(1, D3DTSS_TEXCOORDINDEX, 0);
    }
    void TearDown() override
    {
        ASSERT_EQ(device->SetTexture(0, nullptr), D3D_OK);
        bump.Release();
        DrawStageTest::TearDown();
    }

    Com<IDirect3DTexture9> bump;
};

/// Offsets of (1, 0) times a matrix of 0.25 move the next stage's coordinates by a quarter: with
/// four texels across eight pixels each pixel shows the next texel.
TEST_F(DrawStageBumpTest, MovesTheNextCoordinates)
{
    BindOffsets(127, 0);
    BindTexels(1, 4, 1, {0xFF000001, 0xFF000002, 0xFF000003, 0xFF000004});
    Stage(0, D3DTSS_BUMPENVMAT00, std::bit_cast<DWORD>(0.25f));
    FillAll();
    EXPECT_EQ(Pixel(0, 0) & 0xFFFFFF, 2u);
    EXPECT_EQ(Pixel(2, 0) & 0xFFFFFF, 3u);
    EXPECT_EQ(Pixel(7, 0) & 0xFFFFFF, 1u) << "around the end";
}

/// u' = u + du * M00 + dv * M10, v' = v + du * M01 + dv * M11: with du alone, M01 moves v and M10 nothing.
TEST_F(DrawStageBumpTest, FirstOffsetMovesTheSecondCoordinateByTheFirstRow)
{
    BindOffsets(127, 0);
    BindTexels(1, 2, 2, {0xFF000001, 0xFF000002, 0xFF000003, 0xFF000004});
    Stage(0, D3DTSS_BUMPENVMAT01, std::bit_cast<DWORD>(0.5f));
    FillAll();
    EXPECT_EQ(Pixel(0, 0) & 0xFFFFFF, 3u);
    EXPECT_EQ(Pixel(7, 7) & 0xFFFFFF, 2u);
}

TEST_F(DrawStageBumpTest, SecondOffsetMovesTheFirstCoordinateByTheSecondRow)
{
    BindOffsets(0, 127);
    BindTexels(1, 2, 2, {0xFF000001, 0xFF000002, 0xFF000003, 0xFF000004});
    Stage(0, D3DTSS_BUMPENVMAT10, std::bit_cast<DWORD>(0.5f));
    FillAll();
    EXPECT_EQ(Pixel(0, 0) & 0xFFFFFF, 2u);
    EXPECT_EQ(Pixel(7, 7) & 0xFFFFFF, 3u);
}

/// Luminance 0.5 * scale 0.5 + offset 0.25 = 0.5 of the next texel: 200 becomes 100. The third channel
/// of the bump map holds the luminance: 255 gives 1, and the scale is 0.25.
TEST_F(DrawStageTest, BumpMapLuminanceDarkensTheNextTexture)
{
    BindTexels(0, 1, 1, {0xFF0000FF});
    BindTexels(1, 1, 1, {0xFFC8C8C8});
    Operation(0, D3DTOP_BUMPENVMAPLUMINANCE, D3DTA_CURRENT, D3DTA_TEXTURE);
    Stage(0, D3DTSS_BUMPENVLSCALE, std::bit_cast<DWORD>(0.25f));
    Stage(0, D3DTSS_BUMPENVLOFFSET, std::bit_cast<DWORD>(0.25f));
    Operation(1, D3DTOP_SELECTARG1, D3DTA_TEXTURE, D3DTA_CURRENT);
    EXPECT_EQ(Filled() & 0xFFFFFF, 0x646464u);
}

TEST_F(DrawStageTest, UnknownOperationsAndArgumentsAreRefused)
{
    const std::vector<ScreenVertex> corners = {{0, 0}, {4, 0}, {0, 4}};
    for (const DWORD operation : {0u, 27u, 0xFFFFFFFFu}) {
        Stage(0, D3DTSS_COLOROP, operation);
        EXPECT_EQ(Draw(D3DPT_TRIANGLELIST, 1, corners), D3DERR_INVALIDCALL) << operation;
    }
    Operation(0, D3DTOP_SELECTARG1, 9, D3DTA_CURRENT);
    EXPECT_EQ(Draw(D3DPT_TRIANGLELIST, 1, corners), D3DERR_INVALIDCALL);
}

TEST_F(DrawStageTest, UnknownValuesRefuseTheDrawByName)
{
    static const struct {
        D3DTEXTURESTAGESTATETYPE type;
        const char* name;
        DWORD value;
    } cases[] = {
        {D3DTSS_RESULTARG, "D3DTSS_RESULTARG", D3DTA_DIFFUSE},
        {D3DTSS_TEXCOORDINDEX, "D3DTSS_TEXCOORDINDEX", 8},
        {D3DTSS_TEXCOORDINDEX, "D3DTSS_TEXCOORDINDEX", 0x50000},
        {D3DTSS_TEXTURETRANSFORMFLAGS, "D3DTSS_TEXTURETRANSFORMFLAGS", 5},
        {D3DTSS_TEXTURETRANSFORMFLAGS, "D3DTSS_TEXTURETRANSFORMFLAGS", D3DTTFF_PROJECTED | 6},
    };
    const std::vector<ScreenVertex> corners = {{0, 0}, {4, 0}, {0, 4}};
    BindTexels(0, 1, 1, {0xFFFFFFFF});
    for (const auto& c : cases) {
        DWORD before = 0;
        ASSERT_EQ(device->GetTextureStageState(0, c.type, &before), D3D_OK);
        const int calls = UnmodelledCallCount(c.name);
        Stage(0, c.type, c.value);
        EXPECT_EQ(Draw(D3DPT_TRIANGLELIST, 1, corners), D3DERR_INVALIDCALL) << c.name;
        EXPECT_EQ(UnmodelledCallCount(c.name), calls + 1) << c.name;
        Stage(0, c.type, before);
        EXPECT_EQ(Draw(D3DPT_TRIANGLELIST, 1, corners), D3D_OK) << c.name;
    }
}
