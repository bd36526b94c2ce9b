#include "tests/gfx/EngineTest.h"

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

namespace {

class KRE_GfxTextureStageTest : public EngineTest {
protected:
    KRE_GfxTextureStageTest()
    {
        Start();
        gfx.ResetStateCache();
    }
};

using StageCall = void (*)(KRE_Gfx&, int32_t, DWORD);

const struct {
    StageCall call;
    DWORD value;
    const char* expected; // after "SetTextureStageState 5 "
} kStageCalls[] = {
    {[](KRE_Gfx& g, int32_t stage, DWORD value) { g.SetColorOp(stage, value); }, D3DTOP_ADD,
     "D3DTSS_COLOROP D3DTOP_ADD"},
    {[](KRE_Gfx& g, int32_t stage, DWORD value) { g.SetColorArg1(stage, value); }, D3DTA_CURRENT,
     "D3DTSS_COLORARG1 D3DTA_CURRENT"},
    {[](KRE_Gfx& g, int32_t stage, DWORD value) { g.SetColorArg2(stage, value); }, D3DTA_TFACTOR,
     "D3DTSS_COLORARG2 D3DTA_TFACTOR"},
    {[](KRE_Gfx& g, int32_t stage, DWORD value) { g.SetColorArg0(stage, value); }, D3DTA_TEXTURE,
     "D3DTSS_COLORARG0 D3DTA_TEXTURE"},
    {[](KRE_Gfx& g, int32_t stage, DWORD value) { g.SetAlphaOp(stage, value); }, D3DTOP_DISABLE,
     "D3DTSS_ALPHAOP D3DTOP_DISABLE"},
    {[](KRE_Gfx& g, int32_t stage, DWORD value) { g.SetAlphaArg1(stage, value); }, D3DTA_DIFFUSE,
     "D3DTSS_ALPHAARG1 D3DTA_DIFFUSE"},
    {[](KRE_Gfx& g, int32_t stage, DWORD value) { g.SetAlphaArg2(stage, value); }, D3DTA_TEXTURE,
     "D3DTSS_ALPHAARG2 D3DTA_TEXTURE"},
    {[](KRE_Gfx& g, int32_t stage, DWORD value) { g.SetTexCoordIndex(stage, value); }, 1,
     "D3DTSS_TEXCOORDINDEX 1"},
    {[](KRE_Gfx& g, int32_t stage, DWORD value) { g.SetTextureTransformFlags(stage, value); },
     D3DTTFF_COUNT3, "D3DTSS_TEXTURETRANSFORMFLAGS D3DTTFF_COUNT3"},
};

} // namespace

TEST_F(KRE_GfxTextureStageTest, CheckedStatesAreSentOncePerStage)
{
    for (const auto& c : kStageCalls) {
        const std::string rest = c.expected;
        c.call(gfx, 5, c.value);
        c.call(gfx, 5, c.value);
        EXPECT_THAT(Calls(), ElementsAre("SetTextureStageState 5 " + rest));
        c.call(gfx, 6, c.value);
        EXPECT_THAT(Calls(), ElementsAre("SetTextureStageState 6 " + rest));
    }
}

TEST_F(KRE_GfxTextureStageTest, StagesOutsideTheEightAreErrors)
{
    for (const auto& c : kStageCalls) {
        EXPECT_EQ(RaisedBy([&] { c.call(gfx, 8, 0); }), "Invalid stage: 8") << c.expected;
        EXPECT_EQ(RaisedBy([&] { c.call(gfx, -1, 0); }), "Invalid stage: -1") << c.expected;
    }
    EXPECT_EQ(RaisedBy([&] { gfx.SetTextureAddressU(1, 8); }), "Invalid stage: 8");
    EXPECT_EQ(RaisedBy([&] { gfx.SetTextureAddressV(1, -1); }), "Invalid stage: -1");
    EXPECT_EQ(RaisedBy([&] { gfx.SetMipmapMode(1, 0.0f, 8); }), "Invalid stage: 8");
    EXPECT_EQ(RaisedBy([&] { gfx.SetRenderSource(1, 8, 0); }), "Invalid stage: 8");
    EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(KRE_GfxTextureStageTest, StatesOutsideTheTablesAreSentAndNotKept)
{
    // The number after the last of a row's 14 or 33 states would be the first of the next row.
    constexpr int32_t kKept = 5;
    for (auto& row : gfx.cache.samplerState)
        std::fill(std::begin(row), std::end(row), kKept);
    for (auto& row : gfx.cache.stageState)
        std::fill(std::begin(row), std::end(row), kKept);
    std::fill(std::begin(gfx.cache.lightEnable), std::end(gfx.cache.lightEnable), kKept);
    for (const DWORD stage : {0u, 7u, 8u}) {
        gfx.SetSamplerState(stage, static_cast<D3DSAMPLERSTATETYPE>(14), 1);
        gfx.SetTextureStageState(stage, static_cast<D3DTEXTURESTAGESTATETYPE>(33), 1);
    }
    EXPECT_EQ(Calls().size(), 6u);
    for (const auto& row : gfx.cache.samplerState)
        EXPECT_THAT(row, testing::Each(kKept));
    for (const auto& row : gfx.cache.stageState)
        EXPECT_THAT(row, testing::Each(kKept));
    EXPECT_THAT(gfx.cache.lightEnable, testing::Each(kKept));
    gfx.SetSamplerState(7, D3DSAMP_DMAPOFFSET, 1);   // 13, the last one
    gfx.SetTextureStageState(7, D3DTSS_CONSTANT, 1); // 32
    EXPECT_EQ(gfx.cache.samplerState[7][13], 1);
    EXPECT_EQ(gfx.cache.stageState[7][32], 1);
}

TEST_F(KRE_GfxTextureStageTest, ConstantIsAlwaysSent)
{
    gfx.SetConstant(1, 0xFF010203);
    gfx.SetConstant(1, 0xFF010203);
    EXPECT_THAT(Calls(), ElementsAre("SetTextureStageState 1 D3DTSS_CONSTANT 0xFF010203",
                                     "SetTextureStageState 1 D3DTSS_CONSTANT 0xFF010203"));
}

TEST_F(KRE_GfxTextureStageTest, FailuresNameStageTypeAndValue)
{
    FailNext("SetTextureStageState");
    EXPECT_EQ(RaisedBy([&] { gfx.SetTextureStageState(2, D3DTSS_COLOROP, 4); }),
              " SetTextureStageState failed: D3DERR_INVALIDCALL (stage 2, type 1, value 4)");
    FailNext("SetSamplerState");
    EXPECT_EQ(RaisedBy([&] { gfx.SetSamplerState(3, D3DSAMP_MAGFILTER, 2); }),
              " SetSamplerState failed: D3DERR_INVALIDCALL (stage 3, type 5, value 2)");
}

TEST_F(KRE_GfxTextureStageTest, AddressesAreSentOnceAndKept)
{
    gfx.SetTextureAddress(D3DTADDRESS_MIRROR, 2);
    gfx.SetTextureAddressU(D3DTADDRESS_MIRROR, 2);
    gfx.SetTextureAddressV(D3DTADDRESS_MIRROR, 2);
    EXPECT_THAT(Calls(), ElementsAre("SetSamplerState 2 D3DSAMP_ADDRESSU D3DTADDRESS_MIRROR",
                                     "SetSamplerState 2 D3DSAMP_ADDRESSV D3DTADDRESS_MIRROR"));
    EXPECT_EQ(gfx.addressU[2], DWORD{D3DTADDRESS_MIRROR});
    EXPECT_EQ(gfx.addressV[2], DWORD{D3DTADDRESS_MIRROR});
    EXPECT_EQ(gfx.addressU[1], DWORD{D3DTADDRESS_WRAP});
}

TEST_F(KRE_GfxTextureStageTest, RefusedAddressIsAWarningAndTriedAgain)
{
    FailNext("SetSamplerState");
    gfx.SetTextureAddressU(77, 0);
    EXPECT_EQ(LastWarning(), "Failed to set texture U-adress mode 77");
    FailNext("SetSamplerState");
    gfx.SetTextureAddressV(78, 0);
    EXPECT_EQ(LastWarning(), "Failed to set texture V-adress mode 78");
    Calls();
    gfx.SetTextureAddress(77, 0);
    EXPECT_THAT(Calls(), ElementsAre("SetSamplerState 0 D3DSAMP_ADDRESSU 77",
                                     "SetSamplerState 0 D3DSAMP_ADDRESSV 77"));
}

TEST_F(KRE_GfxTextureStageTest, MipmapModeAndBiasFollowTheHardware)
{
    gfx.SetMipmapMode(2, -0.5f, 1);
    EXPECT_THAT(Calls(), ElementsAre("SetSamplerState 1 D3DSAMP_MIPFILTER D3DTEXF_LINEAR",
                                     "SetSamplerState 1 D3DSAMP_MIPMAPLODBIAS -0.5"));
    gfx.caps.RasterCaps = 0;
    gfx.SetMipmapMode(1, -0.5f, 1);
    EXPECT_THAT(Calls(), ElementsAre("SetSamplerState 1 D3DSAMP_MIPFILTER D3DTEXF_POINT"));
    EXPECT_EQ(RaisedBy([&] { gfx.SetMipmapMode(3, 0.0f, 0); }), "Wrong mipmap mode!");
    EXPECT_EQ(RaisedBy([&] { gfx.SetMipmapMode(-1, 0.0f, 0); }), "Wrong mipmap mode!");
    gfx.caps.TextureCaps = 0;
    gfx.SetMipmapMode(9, 0.25f, 0);
    EXPECT_THAT(Calls(), IsEmpty());
    EXPECT_EQ(gfx.mipmapMode[0], 9) << "kept all the same";
    EXPECT_EQ(gfx.lodBias[0], 0.25f);
}

TEST_F(KRE_GfxTextureStageTest, FilterModesByNumber)
{
    static const struct {
        int32_t mode;
        std::vector<std::string> expected;
        int32_t result;
    } cases[] = {
        {1, {"SetSamplerState 3 D3DSAMP_MAGFILTER D3DTEXF_LINEAR"}, 1},
        {2, {"SetSamplerState 3 D3DSAMP_MAGFILTER D3DTEXF_POINT"}, 1},
        {3, {"SetSamplerState 3 D3DSAMP_MINFILTER D3DTEXF_LINEAR"}, 1},
        {4, {"SetSamplerState 3 D3DSAMP_MINFILTER D3DTEXF_POINT"}, 1},
        {5, {"SetSamplerState 3 D3DSAMP_MINFILTER D3DTEXF_ANISOTROPIC"}, 1},
        {6, {"SetSamplerState 3 D3DSAMP_MAGFILTER D3DTEXF_ANISOTROPIC"}, 1},
        {7,
         {"SetSamplerState 3 D3DSAMP_ADDRESSU D3DTADDRESS_WRAP",
          "SetSamplerState 3 D3DSAMP_ADDRESSV D3DTADDRESS_WRAP"},
         1},
        {8,
         {"SetSamplerState 3 D3DSAMP_ADDRESSU D3DTADDRESS_CLAMP",
          "SetSamplerState 3 D3DSAMP_ADDRESSV D3DTADDRESS_CLAMP"},
         1},
        {9,
         {"SetSamplerState 3 D3DSAMP_ADDRESSU D3DTADDRESS_MIRROR",
          "SetSamplerState 3 D3DSAMP_ADDRESSV D3DTADDRESS_MIRROR"},
         1},
        {-1, {}, 1},
        {0, {}, 0},
        {10, {}, 0},
        {-2, {}, 0},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(gfx.SetTextureFilter(c.mode, 3), c.result) << c.mode;
        EXPECT_THAT(Calls(), ElementsAreArray(c.expected)) << c.mode;
    }
}

TEST_F(KRE_GfxTextureStageTest, RenderSourcesByNumber)
{
    const std::vector<std::string> lit = {
        "SetTextureStageState 4 D3DTSS_COLOROP D3DTOP_MODULATE",
        "SetTextureStageState 4 D3DTSS_COLORARG1 D3DTA_TEXTURE",
        "SetTextureStageState 4 D3DTSS_COLORARG2 D3DTA_DIFFUSE",
    };
    const struct {
        int32_t source;
        std::vector<std::string> expected;
    } cases[] = {
        {1, lit},
        {-1, lit},
        {2,
         {"SetTextureStageState 4 D3DTSS_COLOROP D3DTOP_SELECTARG2",
          "SetTextureStageState 4 D3DTSS_COLORARG2 D3DTA_DIFFUSE"}},
        {3,
         {"SetTextureStageState 4 D3DTSS_COLOROP D3DTOP_SELECTARG2",
          "SetTextureStageState 4 D3DTSS_COLORARG2 D3DTA_TFACTOR",
          "SetRenderState D3DRS_TEXTUREFACTOR 0x11223344"}},
    };
    for (const auto& c : cases) {
        gfx.ResetStateCache();
        gfx.SetRenderSource(c.source, 4, 0x11223344);
        EXPECT_THAT(Calls(), ElementsAreArray(c.expected)) << c.source;
        EXPECT_EQ(gfx.stageSource[4], c.source);
    }
    EXPECT_EQ(RaisedBy([&] { gfx.SetRenderSource(4, 0, 0); }), "Invalid render source selected");
    EXPECT_EQ(RaisedBy([&] { gfx.SetRenderSource(0, 0, 0); }), "Invalid render source selected");
}
