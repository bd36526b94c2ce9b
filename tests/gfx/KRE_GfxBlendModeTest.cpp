#include "tests/gfx/EngineTest.h"

using testing::ElementsAre;
using testing::ElementsAreArray;

namespace {

class KRE_GfxBlendModeTest : public EngineTest {
protected:
    KRE_GfxBlendModeTest() { Start(); }

    /// What a mode sends for stage 2 to a device of unknown state; the current alpha is 204 and the
    /// texture factor 0xFF010203.
    std::vector<std::string> CallsFor(int32_t mode, int32_t value)
    {
        gfx.ResetStateCache();
        gfx.blendValue = 204;
        gfx.textureFactor = 0xFF010203;
        gfx.SetBlendMode(mode, value, 2);
        return Calls();
    }
};

struct BlendModeCase {
    int32_t mode;
    int32_t blendValue;
    const char* alphaOp; // empty: not sent
    const char* alphaArg1;
    const char* alphaArg2;
    const char* factor;
    const char* source;
    const char* destination;
    int32_t storedMode;
};

// The value given is 100 (0x64); 204 * 100 / 255 is 80 (0x50).
const BlendModeCase kBlendCases[] = {
    {2, 255, "SELECTARG1", "TEXTURE", "", "", "ONE", "INVSRCCOLOR", 2},
    {3, 255, "MODULATE", "TEXTURE", "DIFFUSE", "", "SRCALPHA", "ONE", 3},
    {4, 255, "SELECTARG1", "TEXTURE", "", "", "INVDESTCOLOR", "INVSRCCOLOR", 4},
    {5, 255, "SELECTARG1", "TEXTURE", "DIFFUSE", "", "ZERO", "INVSRCCOLOR", 5},
    {6, 255, "SELECTARG1", "TEXTURE", "", "", "ZERO", "SRCCOLOR", 6},
    {7, 100, "MODULATE", "TFACTOR", "TEXTURE", "0x64010203", "SRCALPHA", "INVSRCALPHA", 7},
    {9, 255, "MODULATE", "TEXTURE", "DIFFUSE", "0x64010203", "SRCALPHA", "INVSRCALPHA", 9},
    {10, 80, "MODULATE", "TFACTOR", "TEXTURE", "0x50010203", "SRCALPHA", "INVSRCALPHA", 7},
    {11, 255, "SELECTARG1", "TEXTURE", "", "", "ZERO", "INVSRCCOLOR", 11},
    {12, 100, "MODULATE", "TFACTOR", "TEXTURE", "0x64010203", "SRCALPHA", "ONE", 12},
    {13, 100, "SELECTARG1", "TFACTOR", "", "0x64010203", "SRCALPHA", "INVSRCALPHA", 13},
    {14, 204, "", "", "", "", "ZERO", "ONE", 14},
    {15, 204, "SELECTARG1", "TFACTOR", "", "0x64010203", "ONE", "ZERO", 15},
    {16, 204, "SELECTARG1", "TFACTOR", "", "0x00000064", "ONE", "ONE", 16},
    {17, 100, "MODULATE", "TFACTOR", "TEXTURE", "0x64010203", "ZERO", "INVSRCCOLOR", 17},
};

std::string Stage(int stage, const char* state, const char* prefix, const char* value)
{
    return "SetTextureStageState " + std::to_string(stage) + " " + state + " " + prefix + value;
}

std::vector<std::string> Expected(const BlendModeCase& c)
{
    std::vector<std::string> lines = {"SetRenderState D3DRS_ALPHABLENDENABLE 1"};
    if (*c.alphaOp)
        lines.push_back(Stage(2, "D3DTSS_ALPHAOP", "D3DTOP_", c.alphaOp));
    if (*c.alphaArg1)
        lines.push_back(Stage(2, "D3DTSS_ALPHAARG1", "D3DTA_", c.alphaArg1));
    if (*c.alphaArg2)
        lines.push_back(Stage(2, "D3DTSS_ALPHAARG2", "D3DTA_", c.alphaArg2));
    if (*c.factor)
        lines.push_back(std::string("SetRenderState D3DRS_TEXTUREFACTOR ") + c.factor);
    lines.push_back(std::string("SetRenderState D3DRS_SRCBLEND D3DBLEND_") + c.source);
    lines.push_back(std::string("SetRenderState D3DRS_DESTBLEND D3DBLEND_") + c.destination);
    if (c.mode == 15 || c.mode == 16) {
        lines.push_back(Stage(2, "D3DTSS_COLOROP", "D3DTOP_", "SELECTARG1"));
        lines.push_back(Stage(2, "D3DTSS_COLORARG1", "D3DTA_", "TEXTURE"));
    }
    lines.push_back(Stage(3, "D3DTSS_ALPHAOP", "D3DTOP_", "DISABLE"));
    return lines;
}

} // namespace

TEST_F(KRE_GfxBlendModeTest, EachModeSendsItsRow)
{
    for (const BlendModeCase& c : kBlendCases) {
        EXPECT_THAT(CallsFor(c.mode, 100), ElementsAreArray(Expected(c))) << c.mode;
        EXPECT_EQ(gfx.blendValue, c.blendValue) << c.mode;
        EXPECT_EQ(gfx.blendMode, c.storedMode) << c.mode;
    }
}

TEST_F(KRE_GfxBlendModeTest, OneAndMinusOneAreTheSameAndOnlySwitchOff)
{
    for (int32_t mode : {1, -1}) {
        EXPECT_THAT(CallsFor(mode, 100), ElementsAre("SetRenderState D3DRS_ALPHABLENDENABLE 0"));
        EXPECT_EQ(gfx.blendMode, 1);
        EXPECT_EQ(gfx.blendValue, 100);
    }
}

TEST_F(KRE_GfxBlendModeTest, OtherModesAreErrors)
{
    for (int32_t mode : {0, 8, 18, -2})
        EXPECT_EQ(RaisedBy([&] { gfx.SetBlendMode(mode, 255, 0); }),
                  "Invalid Blending mode selected!")
            << mode;
    EXPECT_EQ(gfx.blendMode, 1);
}

TEST_F(KRE_GfxBlendModeTest, ModeTenTurnsIntoSeven)
{
    gfx.blendValue = 255;
    gfx.SetBlendMode(10, 128, 0);
    gfx.SetBlendMode(10, 128, 0);
    EXPECT_EQ(gfx.blendValue, 64) << "128 * 128 / 255 is 64.25";
    EXPECT_EQ(gfx.blendMode, 7);
}

TEST_F(KRE_GfxBlendModeTest, TintedAdditiveModeSetsTheColorsToo)
{
    gfx.tintColor = 0xFF404040;
    EXPECT_THAT(CallsFor(12, 100),
                testing::IsSupersetOf({"SetTextureStageState 2 D3DTSS_COLOROP D3DTOP_MODULATE",
                                       "SetTextureStageState 2 D3DTSS_COLORARG1 D3DTA_TEXTURE",
                                       "SetTextureStageState 2 D3DTSS_COLORARG2 D3DTA_DIFFUSE",
                                       "SetTextureStageState 3 D3DTSS_COLOROP D3DTOP_DISABLE"}));
}

TEST_F(KRE_GfxBlendModeTest, SameModeAgainCostsOnlyTheFactor)
{
    gfx.SetBlendMode(7, 100, 0);
    Calls();
    gfx.SetBlendMode(7, 100, 0);
    EXPECT_THAT(Calls(), ElementsAre("SetRenderState D3DRS_TEXTUREFACTOR 0x64FFFFFF"));
}

TEST_F(KRE_GfxBlendModeTest, LastStageHasNoneAboveIt)
{
    gfx.SetBlendMode(3, 255, 7);
    EXPECT_THAT(Calls(), testing::Not(testing::Contains(testing::HasSubstr("State 8"))));
    gfx.tintColor = 0xFF404040; // with a tint the additive mode touches the next stage as well
    gfx.SetBlendMode(12, 255, 7);
    EXPECT_THAT(Calls(), testing::Not(testing::Contains(testing::HasSubstr("State 8"))));
    EXPECT_EQ(RaisedBy([&] { gfx.SetBlendMode(3, 255, 8); }), "Invalid stage: 8");
}
