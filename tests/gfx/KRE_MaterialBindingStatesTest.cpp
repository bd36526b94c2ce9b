#include "tests/gfx/MaterialEngine.h"

#include "scene/KRE_MaterialInfo.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAreArray;

namespace {

class KRE_MaterialBindingStatesTest : public MaterialEngine {
protected:
    KRE_MaterialInfo info;
};

struct MaterialBlendCase {
    const char* what;
    int32_t type;
    float transparency;
    int32_t mode;
    float alpha;
    int32_t expectedMode, expectedValue;
    const char* blend; // what the expected mode sends
};

// What modes send for stage 0; the texture factor was 0xFFFFFFFF, 150 is 0x96 and 200 is 0xC8.
constexpr const char* kNoBlend = "ALPHABLENDENABLE 0";
constexpr const char* kMode3 = R"(
    ALPHABLENDENABLE 1
    0 ALPHAOP MODULATE
    0 ALPHAARG1 TEXTURE
    0 ALPHAARG2 DIFFUSE
    SRCBLEND D3DBLEND_SRCALPHA
    DESTBLEND D3DBLEND_ONE
    1 ALPHAOP DISABLE)";
constexpr const char* kMode5 = R"(
    ALPHABLENDENABLE 1
    0 ALPHAOP SELECTARG1
    0 ALPHAARG1 TEXTURE
    0 ALPHAARG2 DIFFUSE
    SRCBLEND D3DBLEND_ZERO
    DESTBLEND D3DBLEND_INVSRCCOLOR
    1 ALPHAOP DISABLE)";
constexpr const char* kMode7With150 = R"(
    ALPHABLENDENABLE 1
    0 ALPHAOP MODULATE
    0 ALPHAARG1 TFACTOR
    0 ALPHAARG2 TEXTURE
    FACTOR 0x96FFFFFF
    SRCBLEND D3DBLEND_SRCALPHA
    DESTBLEND D3DBLEND_INVSRCALPHA
    1 ALPHAOP DISABLE)";
constexpr const char* kMode7With200 = R"(
    ALPHABLENDENABLE 1
    0 ALPHAOP MODULATE
    0 ALPHAARG1 TFACTOR
    0 ALPHAARG2 TEXTURE
    FACTOR 0xC8FFFFFF
    SRCBLEND D3DBLEND_SRCALPHA
    DESTBLEND D3DBLEND_INVSRCALPHA
    1 ALPHAOP DISABLE)";
constexpr const char* kMode9With200 = R"(
    ALPHABLENDENABLE 1
    0 ALPHAOP MODULATE
    0 ALPHAARG1 TEXTURE
    0 ALPHAARG2 DIFFUSE
    FACTOR 0xC8FFFFFF
    SRCBLEND D3DBLEND_SRCALPHA
    DESTBLEND D3DBLEND_INVSRCALPHA
    1 ALPHAOP DISABLE)";
constexpr const char* kMode12With150 = R"(
    ALPHABLENDENABLE 1
    0 ALPHAOP MODULATE
    0 ALPHAARG1 TFACTOR
    0 ALPHAARG2 TEXTURE
    FACTOR 0x96FFFFFF
    SRCBLEND D3DBLEND_SRCALPHA
    DESTBLEND D3DBLEND_ONE
    1 ALPHAOP DISABLE)";
constexpr const char* kMode13With150 = R"(
    ALPHABLENDENABLE 1
    0 ALPHAOP SELECTARG1
    0 ALPHAARG1 TFACTOR
    FACTOR 0x96FFFFFF
    SRCBLEND D3DBLEND_SRCALPHA
    DESTBLEND D3DBLEND_INVSRCALPHA
    1 ALPHAOP DISABLE)";
constexpr const char* kMode13With200 = R"(
    ALPHABLENDENABLE 1
    0 ALPHAOP SELECTARG1
    0 ALPHAARG1 TFACTOR
    FACTOR 0xC8FFFFFF
    SRCBLEND D3DBLEND_SRCALPHA
    DESTBLEND D3DBLEND_INVSRCALPHA
    1 ALPHAOP DISABLE)";
constexpr const char* kMode17With150 = R"(
    ALPHABLENDENABLE 1
    0 ALPHAOP MODULATE
    0 ALPHAARG1 TFACTOR
    0 ALPHAARG2 TEXTURE
    FACTOR 0x96FFFFFF
    SRCBLEND D3DBLEND_ZERO
    DESTBLEND D3DBLEND_INVSRCCOLOR
    1 ALPHAOP DISABLE)";

// The alpha of a transparent material is round((1 - transparency) * alpha): 0.75 * 200 is 150.
// Modes 3, 5 and 9 always use an alpha of 255.
const MaterialBlendCase kImageBlends[] = {
    {"filter, opaque: as given", kTransparencyFilter, 0.0f, 9, 200.0f, 9, 255, kMode9With200},
    {"filter, opaque, value rounded", kTransparencyFilter, 0.0f, 7, 199.6f, 7, 200, kMode7With200},
    {"filter, opaque, not blended", kTransparencyFilter, 0.0f, 1, 200.0f, 1, 200, kNoBlend},
    {"filter over additive", kTransparencyFilter, 0.25f, 12, 200.0f, 12, 150, kMode12With150},
    {"filter over 3", kTransparencyFilter, 0.25f, 3, 200.0f, 12, 150, kMode12With150},
    {"filter over subtractive", kTransparencyFilter, 0.25f, 17, 200.0f, 17, 150, kMode17With150},
    {"filter over 5", kTransparencyFilter, 0.25f, 5, 200.0f, 17, 150, kMode17With150},
    {"filter over any other", kTransparencyFilter, 0.25f, 1, 200.0f, 7, 150, kMode7With150},
    {"filter over 16", kTransparencyFilter, 0.25f, 16, 200.0f, 7, 150, kMode7With150},
    {"filter over an unset one", kTransparencyFilter, 0.25f, -1, 200.0f, 7, 150, kMode7With150},
    {"additive, opaque", kTransparencyAdditive, 0.0f, 1, 200.0f, 3, 255, kMode3},
    {"additive", kTransparencyAdditive, 0.25f, 1, 200.0f, 12, 150, kMode12With150},
    {"subtractive, opaque", kTransparencySubtractive, 0.0f, 1, 200.0f, 5, 255, kMode5},
    {"subtractive", kTransparencySubtractive, 0.25f, 1, 200.0f, 17, 150, kMode17With150},
};

const MaterialBlendCase kColorBlends[] = {
    {"filter", kTransparencyFilter, 0.25f, 1, 200.0f, 13, 150, kMode13With150},
    {"filter, opaque", kTransparencyFilter, 0.0f, 1, 200.0f, 13, 200, kMode13With200},
    {"additive", kTransparencyAdditive, 0.25f, 1, 200.0f, 12, 150, kMode12With150},
    {"subtractive", kTransparencySubtractive, 0.25f, 1, 200.0f, 17, 150, kMode17With150},
};

} // namespace

TEST_F(KRE_MaterialBindingStatesTest, PictureIsBlendedByTypeAndTransparency)
{
    for (const MaterialBlendCase& c : kImageBlends) {
        info.transparencyType = c.type;
        info.transparency = c.transparency;
        std::vector<std::string> expected = Lines(c.blend);
        expected.push_back(c.type == kTransparencyFilter ? "SetRenderState D3DRS_ZWRITEENABLE 1"
                                                         : "SetRenderState D3DRS_ZWRITEENABLE 0");
        expected.push_back("SetSamplerState 0 D3DSAMP_ADDRESSU D3DTADDRESS_WRAP");
        expected.push_back("SetSamplerState 0 D3DSAMP_ADDRESSV D3DTADDRESS_WRAP");
        gfx.ResetStateCache();
        Calls();
        gfx.ApplyMaterialBlend(info, true, c.mode, c.alpha);
        EXPECT_THAT(Calls(), UnorderedElementsAreArray(expected)) << c.what;
        EXPECT_EQ(gfx.blendMode, c.expectedMode) << c.what;
        EXPECT_EQ(gfx.blendValue, c.expectedValue) << c.what;
    }
}

TEST_F(KRE_MaterialBindingStatesTest, ColorIsBlendedAndNothingElseIsTouched)
{
    for (const MaterialBlendCase& c : kColorBlends) {
        info.transparencyType = c.type;
        info.transparency = c.transparency;
        gfx.ResetStateCache();
        gfx.zWrite = 7;
        Calls();
        gfx.ApplyMaterialBlend(info, false, c.mode, c.alpha);
        EXPECT_THAT(Calls(), UnorderedElementsAreArray(Lines(c.blend))) << c.what;
        EXPECT_EQ(gfx.blendMode, c.expectedMode) << c.what;
        EXPECT_EQ(gfx.blendValue, c.expectedValue) << c.what;
        EXPECT_EQ(gfx.zWrite, 7) << c.what;
    }
}

TEST_F(KRE_MaterialBindingStatesTest, ColorOfAnUnknownTypeIsLeftAlone)
{
    info.transparencyType = 3;
    gfx.ApplyMaterialBlend(info, false, 1, 255.0f);
    EXPECT_THAT(Calls(), IsEmpty());
}

TEST_F(KRE_MaterialBindingStatesTest, BlendsOnStageZero)
{
    gfx.ApplyMaterialBlend(info, true, 7, 255.0f);
    EXPECT_THAT(Calls(),
                testing::IsSupersetOf({"SetTextureStageState 0 D3DTSS_ALPHAOP D3DTOP_MODULATE",
                                       "SetTextureStageState 1 D3DTSS_ALPHAOP D3DTOP_DISABLE"}));
}

TEST_F(KRE_MaterialBindingStatesTest, QuirkUnknownTypeIsReportedAsTheFirstWordOfTheRecord)
{
    info.transparencyType = 3;
    info.diffuse.r = 1.0f; // 0x3F800000
    EXPECT_EQ(RaisedBy([&] { gfx.ApplyMaterialBlend(info, true, 1, 255.0f); }),
              "Unknown material blend mode: 1065353216");
    info.transparencyType = -1;
    info.diffuse.r = 0.0f;
    EXPECT_EQ(RaisedBy([&] { gfx.ApplyMaterialBlend(info, true, 1, 255.0f); }),
              "Unknown material blend mode: 0");
}

TEST_F(KRE_MaterialBindingStatesTest, InvalidModeOfAnOpaqueMaterialIsAnError)
{
    EXPECT_EQ(RaisedBy([&] { gfx.ApplyMaterialBlend(info, true, 8, 255.0f); }),
              "Invalid Blending mode selected!");
}

TEST_F(KRE_MaterialBindingStatesTest, AddressingMirrorsOrTilesOrClamps)
{
    static const struct {
        const char* what;
        uint8_t mirror, tile;
        const char* expected;
    } cases[] = {
        {"mirrored", 1, 0, "D3DTADDRESS_MIRROR"},
        {"mirrored and tiled", 1, 1, "D3DTADDRESS_MIRROR"},
        {"tiled", 0, 1, "D3DTADDRESS_WRAP"},
        {"neither", 0, 0, "D3DTADDRESS_CLAMP"},
    };
    for (const auto& u : cases) {
        for (const auto& v : cases) {
            info.mirrorU = u.mirror;
            info.tileU = u.tile;
            info.mirrorV = v.mirror;
            info.tileV = v.tile;
            gfx.ResetStateCache();
            Calls();
            gfx.ApplyMaterialBlend(info, true, 1, 255.0f);
            EXPECT_THAT(
                CallsOf("SetSamplerState"),
                ElementsAre(std::string("SetSamplerState 0 D3DSAMP_ADDRESSU ") + u.expected,
                            std::string("SetSamplerState 0 D3DSAMP_ADDRESSV ") + v.expected))
                << u.what << ", " << v.what;
        }
    }
}

TEST_F(KRE_MaterialBindingStatesTest, SameMaterialAgainCostsOnlyTheFactor)
{
    info.transparency = 0.25f;
    gfx.ApplyMaterialBlend(info, true, 1, 200.0f);
    Calls();
    gfx.ApplyMaterialBlend(info, true, 1, 200.0f);
    EXPECT_THAT(Calls(), ElementsAre("SetRenderState D3DRS_TEXTUREFACTOR 0x96FFFFFF"))
        << "150 is 0x96";
}

TEST_F(KRE_MaterialBindingStatesTest, ReflectionAndColorsComeFromTheMaterial)
{
    info.diffuse = {0.5f, 0.25f, 0.0f, 1.0f};
    info.power = 8.0f;
    info.reflectionAmount = 0.75f;
    gfx.SetMaterialReflect(info, true);
    EXPECT_EQ(gfx.reflectionAmount, 0.75f);
    EXPECT_THAT(Calls(), ElementsAre("SetMaterial diffuse[0.5 0.25 0 1] ambient[1 1 1 1] "
                                     "specular[1 1 1 1] emissive[0 0 0 1] power=8"));
}

TEST_F(KRE_MaterialBindingStatesTest, WhiteNeedsReflectionWithDiffuse)
{
    info.diffuse = {0.5f, 0.25f, 0.0f, 0.5f};
    gfx.reflectionWithDiffuse = 1;
    gfx.SetMaterialReflect(info, false);
    EXPECT_EQ(gfx.material.Diffuse.r, 0.5f);
    gfx.SetMaterialReflect(info, true);
    EXPECT_EQ(gfx.material.Diffuse.r, 1.0f);
    EXPECT_EQ(gfx.material.Diffuse.a, 1.0f);
    EXPECT_EQ(gfx.keptDiffuse.r, 0.5f);
    EXPECT_EQ(gfx.keptDiffuse.a, 0.5f);
}
