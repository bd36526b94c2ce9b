#include "tests/gfx/MaterialEngine.h"

#include <algorithm>

using testing::IsEmpty;
using testing::UnorderedElementsAreArray;

namespace {

constexpr int32_t kNone = 0;
constexpr D3DCOLOR kNoTint = 0;
constexpr D3DCOLOR kTint = 0x00102030;

class KRE_MaterialBindingMapsTest : public MaterialEngine {
protected:
    void Put(int32_t firstType, int32_t secondType)
    {
        texture.SetStage(0, StageDiffuse, 1.0f); // like an empty slot
        if (secondType != kNone)
            PutMap(1, secondType);
        if (firstType != kNone)
            PutMap(0, firstType);
    }

    std::string BindError()
    {
        return RaisedBy([&] { gfx.SetTexture(&texture); });
    }
};

/// What one material sends. The blend alpha is 128 (0x80), blending itself is off, and the device's
/// state is unknown. Each stage that a slot takes gets its texture transform switched off and the
/// slot's picture bound, and the stage above the last one is switched off.
struct MapCase {
    const char* what;
    int32_t first, second; // types of the slots
    D3DCOLOR tint;
    int32_t source;  // of all stages
    const char* own; // states of the maps
    const char* tail;
};

/// The final calls for one map on stage 0 and an empty slot, which takes stage 1.
constexpr const char* kTailOfOne = R"(
    0 TEXTURETRANSFORMFLAGS DISABLE
    0 TEXTURE first
    1 COLOROP DISABLE
    1 TEXTURETRANSFORMFLAGS DISABLE
    1 TEXTURE null
    2 ALPHAOP DISABLE
    2 COLOROP DISABLE)";
/// The final calls for an empty slot and a map on stage 1.
constexpr const char* kTailOfSecond = R"(
    0 TEXTURETRANSFORMFLAGS DISABLE
    0 TEXTURE null
    1 TEXTURETRANSFORMFLAGS DISABLE
    1 TEXTURE second
    2 ALPHAOP DISABLE
    2 COLOROP DISABLE)";
/// The final calls for two maps that take one stage each.
constexpr const char* kTailOfTwo = R"(
    0 TEXTURETRANSFORMFLAGS DISABLE
    0 TEXTURE first
    1 TEXTURETRANSFORMFLAGS DISABLE
    1 TEXTURE second
    2 ALPHAOP DISABLE
    2 COLOROP DISABLE)";
/// The same if the second one takes two stages.
constexpr const char* kTailOfThree = R"(
    0 TEXTURETRANSFORMFLAGS DISABLE
    0 TEXTURE first
    1 TEXTURETRANSFORMFLAGS DISABLE
    1 TEXTURE second
    2 TEXTURETRANSFORMFLAGS DISABLE
    2 TEXTURE second
    3 ALPHAOP DISABLE
    3 COLOROP DISABLE)";

const MapCase kMapCases[] = {
    {"diffuse, lit", StageDiffuse, kNone, kNoTint, 1, R"(
        0 COLOROP MODULATE
        0 COLORARG1 TEXTURE
        0 COLORARG2 DIFFUSE
        0 TEXCOORDINDEX 0
        ALPHABLENDENABLE 0)",
     kTailOfOne},
    {"diffuse, no source set counts as lit", StageDiffuse, kNone, kNoTint, -1, R"(
        0 COLOROP MODULATE
        0 COLORARG1 TEXTURE
        0 COLORARG2 DIFFUSE
        0 TEXCOORDINDEX 0
        ALPHABLENDENABLE 0)",
     kTailOfOne},
    {"diffuse, unlit", StageDiffuse, kNone, kNoTint, 2, R"(
        0 COLOROP SELECTARG2
        0 COLORARG2 DIFFUSE
        0 TEXCOORDINDEX 0
        ALPHABLENDENABLE 0)",
     kTailOfOne},
    {"diffuse, tinted and lit: the light comes one stage higher", StageDiffuse, kNone, kTint, 1, R"(
        0 COLOROP ADD
        0 COLORARG1 TEXTURE
        0 COLORARG2 TFACTOR
        0 TEXCOORDINDEX 0
        1 COLOROP MODULATE
        1 COLORARG1 CURRENT
        1 COLORARG2 DIFFUSE
        1 ALPHAOP SELECTARG1
        1 ALPHAARG1 CURRENT
        1 TEXCOORDINDEX 0
        2 ALPHAOP DISABLE
        2 COLOROP DISABLE
        ALPHABLENDENABLE 0
        FACTOR 0x80102030)",
     R"(
        0 TEXTURETRANSFORMFLAGS DISABLE
        0 TEXTURE first
        1 TEXTURETRANSFORMFLAGS DISABLE
        1 TEXTURE first
        2 TEXTURETRANSFORMFLAGS DISABLE
        2 TEXTURE null
        3 ALPHAOP DISABLE
        3 COLOROP DISABLE)"},
    {"diffuse, tinted and unlit", StageDiffuse, kNone, kTint, 2, R"(
        0 COLOROP ADD
        0 COLORARG1 TFACTOR
        0 COLORARG2 DIFFUSE
        0 TEXCOORDINDEX 0
        ALPHABLENDENABLE 0
        FACTOR 0x80102030)",
     kTailOfOne},
    {"empty slot below a map", kNone, StageAdd, kNoTint, 1, R"(
        0 COLOROP SELECTARG2
        0 COLORARG2 DIFFUSE
        1 COLOROP ADD
        1 COLORARG1 CURRENT
        1 COLORARG2 TEXTURE
        1 TEXCOORDINDEX 0)",
     kTailOfSecond},
    {"empty slot with a tint", kNone, StageAdd, kTint, 1, R"(
        0 COLOROP MULTIPLYADD
        0 COLORARG0 DIFFUSE
        0 COLORARG1 TFACTOR
        0 COLORARG2 DIFFUSE
        FACTOR 0x80102030
        1 COLOROP ADD
        1 COLORARG1 CURRENT
        1 COLORARG2 TEXTURE
        1 TEXCOORDINDEX 0)",
     kTailOfSecond},
    {"two diffuse maps are added on stage 1 and lit on stage 2", StageDiffuse, StageDiffuse,
     kNoTint, 1, R"(
        0 COLOROP SELECTARG1
        0 COLORARG1 TEXTURE
        0 COLORARG2 DIFFUSE
        0 TEXCOORDINDEX 0
        ALPHABLENDENABLE 0
        1 COLOROP ADD
        1 COLORARG1 CURRENT
        1 COLORARG2 TEXTURE
        1 ALPHAOP SELECTARG1
        1 ALPHAARG1 TEXTURE
        1 TEXCOORDINDEX 0
        2 COLOROP MODULATE
        2 COLORARG1 CURRENT
        2 COLORARG2 DIFFUSE
        2 ALPHAOP SELECTARG1
        2 ALPHAARG1 CURRENT
        2 TEXCOORDINDEX 1)",
     kTailOfThree},
    {"diffuse over a reflection, lit", StageReflection, StageDiffuse, kNoTint, 1, R"(
        0 COLOROP SELECTARG2
        0 ALPHAOP SELECTARG1
        0 ALPHAARG1 DIFFUSE
        0 COLORARG2 TEXTURE
        0 TEXCOORDINDEX 1
        1 COLOROP MULTIPLYADD
        1 COLORARG0 CURRENT
        1 COLORARG1 TEXTURE
        1 COLORARG2 DIFFUSE
        1 TEXCOORDINDEX 0
        1 ALPHAOP SELECTARG1
        1 ALPHAARG1 TEXTURE
        ALPHABLENDENABLE 0)",
     kTailOfTwo},
    {"diffuse over a reflection, unlit", StageReflection, StageDiffuse, kNoTint, 2, R"(
        0 COLOROP SELECTARG2
        0 ALPHAOP SELECTARG1
        0 ALPHAARG1 DIFFUSE
        0 COLORARG2 TEXTURE
        0 TEXCOORDINDEX 1
        1 COLORARG1 CURRENT
        1 COLOROP ADD
        1 COLORARG2 DIFFUSE
        1 TEXCOORDINDEX 0
        1 ALPHAOP SELECTARG1
        1 ALPHAARG1 TEXTURE
        ALPHABLENDENABLE 0)",
     kTailOfTwo},
    {"diffuse over a reflection, tinted and lit: the map comes one stage higher", StageReflection,
     StageDiffuse, kTint, 1, R"(
        0 COLOROP SELECTARG2
        0 ALPHAOP SELECTARG1
        0 ALPHAARG1 DIFFUSE
        0 COLORARG2 TEXTURE
        0 TEXCOORDINDEX 1
        1 COLOROP MULTIPLYADD
        1 COLORARG0 CURRENT
        1 COLORARG1 TFACTOR
        1 COLORARG2 DIFFUSE
        1 ALPHAOP SELECTARG1
        1 ALPHAARG1 CURRENT
        1 TEXCOORDINDEX 0
        2 COLOROP MULTIPLYADD
        2 COLORARG0 CURRENT
        2 COLORARG1 TEXTURE
        2 COLORARG2 DIFFUSE
        2 ALPHAOP SELECTARG1
        2 ALPHAARG1 TEXTURE
        2 TEXCOORDINDEX 0
        ALPHABLENDENABLE 0
        FACTOR 0x80102030)",
     kTailOfThree},
    {"diffuse over a reflection, tinted and unlit", StageReflection, StageDiffuse, kTint, 2, R"(
        0 COLOROP SELECTARG2
        0 ALPHAOP SELECTARG1
        0 ALPHAARG1 DIFFUSE
        0 COLORARG2 TEXTURE
        0 TEXCOORDINDEX 1
        1 COLOROP MULTIPLYADD
        1 COLORARG0 CURRENT
        1 COLORARG1 DIFFUSE
        1 COLORARG2 TFACTOR
        1 TEXCOORDINDEX 0
        ALPHABLENDENABLE 0
        FACTOR 0x80102030)",
     kTailOfTwo},
    {"bump", StageDiffuse, StageBump, kNoTint, 1, R"(
        0 COLOROP MODULATE
        0 COLORARG1 TEXTURE
        0 COLORARG2 DIFFUSE
        0 TEXCOORDINDEX 0
        ALPHABLENDENABLE 0
        1 COLOROP BUMPENVMAP
        1 COLORARG1 CURRENT
        1 COLORARG2 TEXTURE
        1 TEXCOORDINDEX 0)",
     kTailOfTwo},
    {"modulate", StageDiffuse, StageModulate, kNoTint, 1, R"(
        0 COLOROP MODULATE
        0 COLORARG1 TEXTURE
        0 COLORARG2 DIFFUSE
        0 TEXCOORDINDEX 0
        ALPHABLENDENABLE 0
        1 COLOROP MODULATE
        1 COLORARG1 CURRENT
        1 COLORARG2 TEXTURE
        1 TEXCOORDINDEX 0)",
     kTailOfTwo},
    {"add", StageDiffuse, StageAdd, kNoTint, 1, R"(
        0 COLOROP MODULATE
        0 COLORARG1 TEXTURE
        0 COLORARG2 DIFFUSE
        0 TEXCOORDINDEX 0
        ALPHABLENDENABLE 0
        1 COLOROP ADD
        1 COLORARG1 CURRENT
        1 COLORARG2 TEXTURE
        1 TEXCOORDINDEX 0)",
     kTailOfTwo},
    {"a map that is combined, alone", StageModulate, kNone, kNoTint, 1, R"(
        0 COLOROP MODULATE
        0 COLORARG1 CURRENT
        0 COLORARG2 TEXTURE
        0 TEXCOORDINDEX 0)",
     kTailOfOne},
    {"diffuse map in the second slot alone", kNone, StageDiffuse, kNoTint, 1, R"(
        0 COLOROP SELECTARG1
        0 COLORARG1 TEXTURE
        0 COLORARG2 DIFFUSE
        1 COLOROP ADD
        1 COLORARG1 CURRENT
        1 COLORARG2 TEXTURE
        1 ALPHAOP SELECTARG1
        1 ALPHAARG1 TEXTURE
        1 TEXCOORDINDEX 0
        2 COLOROP MODULATE
        2 COLORARG1 CURRENT
        2 COLORARG2 DIFFUSE
        2 ALPHAOP SELECTARG1
        2 ALPHAARG1 CURRENT
        2 TEXCOORDINDEX 1)",
     R"(
        0 TEXTURETRANSFORMFLAGS DISABLE
        0 TEXTURE null
        1 TEXTURETRANSFORMFLAGS DISABLE
        1 TEXTURE second
        2 TEXTURETRANSFORMFLAGS DISABLE
        2 TEXTURE second
        3 ALPHAOP DISABLE
        3 COLOROP DISABLE)"},
    {"a map above takes the light's stage of a tinted one", StageDiffuse, StageAdd, kTint, 1, R"(
        0 COLOROP ADD
        0 COLORARG1 TEXTURE
        0 COLORARG2 TFACTOR
        0 TEXCOORDINDEX 0
        1 COLOROP ADD
        1 COLORARG1 CURRENT
        1 COLORARG2 TEXTURE
        1 ALPHAOP SELECTARG1
        1 ALPHAARG1 CURRENT
        1 TEXCOORDINDEX 0
        ALPHABLENDENABLE 0
        FACTOR 0x80102030)",
     kTailOfTwo},
};

} // namespace

TEST_F(KRE_MaterialBindingMapsTest, EachMapSendsItsStates)
{
    for (const MapCase& c : kMapCases) {
        texture.Free();
        Put(c.first, c.second);
        gfx.blendMode = 1;
        gfx.blendValue = 128;
        gfx.tintColor = c.tint;
        std::fill(std::begin(gfx.stageSource), std::end(gfx.stageSource), c.source);
        EXPECT_THAT(CallsOfBinding(), UnorderedElementsAreArray(Lines(std::string(c.own) + c.tail +
                                                                      "\nALPHATESTENABLE 0")))
            << c.what;
        EXPECT_THAT(CallsOfRepeat(), IsEmpty()) << c.what;
    }
}

TEST_F(KRE_MaterialBindingMapsTest, RepeatedMaterialSendsNothingInAnyBlendMode)
{
    for (const MapCase& c : kMapCases) {
        texture.Free();
        Put(c.first, c.second);
        gfx.tintColor = c.tint;
        std::fill(std::begin(gfx.stageSource), std::end(gfx.stageSource), c.source);
        for (const int32_t mode : {2, 3, 4, 5, 6, 7, 9, 11, 12, 13, 14, 15, 16, 17}) {
            gfx.blendMode = mode;
            gfx.blendValue = 128;
            CallsOfBinding();
            EXPECT_THAT(CallsOfRepeat(), IsEmpty()) << c.what << ", mode " << mode;
        }
    }
}

// ---- The stage of the diffuse map

TEST_F(KRE_MaterialBindingMapsTest, ReflectionAndDiffuseBindToStagesZeroAndOneWithMultiplyAdd)
{
    Put(StageReflection, StageDiffuse);
    gfx.SetTexture(&texture);
    EXPECT_EQ(gfx.boundTexture[0], texture.slotTextures[0]);
    EXPECT_EQ(gfx.boundTexture[1], texture.slotTextures[1]);
    EXPECT_EQ(gfx.cache.stageState[1][D3DTSS_COLOROP], int32_t{D3DTOP_MULTIPLYADD});
    EXPECT_EQ(gfx.diffuseStage, 1);
}

TEST_F(KRE_MaterialBindingMapsTest, TwoDiffuseMapsUseThreeStagesAndTheSecondIsOnStageOne)
{
    Put(StageDiffuse, StageDiffuse);
    gfx.SetTexture(&texture);
    EXPECT_EQ(gfx.diffuseStage, 1);
    EXPECT_EQ(gfx.cache.stageState[2][D3DTSS_COLOROP], int32_t{D3DTOP_MODULATE});
    EXPECT_EQ(gfx.cache.stageState[3][D3DTSS_COLOROP], int32_t{D3DTOP_DISABLE});
}

TEST_F(KRE_MaterialBindingMapsTest, DiffuseStageFollowsTheMapAndStartsAtZero)
{
    Put(StageReflection, StageDiffuse);
    gfx.tintColor = kTint;
    gfx.SetTexture(&texture);
    EXPECT_EQ(gfx.diffuseStage, 2) << "the tint takes the stage before it";
    gfx.SetTexture(nullptr);
    EXPECT_EQ(gfx.diffuseStage, 0);
    texture.FreeStage(1);
    gfx.diffuseStage = 5;
    gfx.SetTexture(&texture);
    EXPECT_EQ(gfx.diffuseStage, 0) << "a reflection alone";
}

// ---- Blending of tinted maps

TEST_F(KRE_MaterialBindingMapsTest, TintedAdditiveBlendTakesTheTintsStagesBack)
{
    Put(StageDiffuse, kNone);
    gfx.tintColor = kTint;
    gfx.blendMode = 12;
    gfx.blendValue = 128;
    EXPECT_THAT(CallsOfBinding(), UnorderedElementsAreArray(Lines(R"(
        ALPHATESTENABLE 0
        0 COLOROP MODULATE
        0 COLORARG1 TEXTURE
        0 COLORARG2 DIFFUSE
        0 TEXCOORDINDEX 0
        0 ALPHAOP MODULATE
        0 ALPHAARG1 TFACTOR
        0 ALPHAARG2 TEXTURE
        ALPHABLENDENABLE 1
        SRCBLEND D3DBLEND_SRCALPHA
        DESTBLEND D3DBLEND_ONE
        FACTOR 0x80FFFFFF
        FACTOR 0x80102030
        0 TEXTURETRANSFORMFLAGS DISABLE
        0 TEXTURE first
        1 COLOROP DISABLE
        1 COLORARG1 CURRENT
        1 COLORARG2 DIFFUSE
        1 ALPHAOP DISABLE
        1 ALPHAARG1 CURRENT
        1 TEXCOORDINDEX 0
        1 TEXTURETRANSFORMFLAGS DISABLE
        1 TEXTURE first
        2 COLOROP DISABLE
        2 ALPHAOP DISABLE
        2 TEXTURETRANSFORMFLAGS DISABLE
        2 TEXTURE null
        3 ALPHAOP DISABLE
        3 COLOROP DISABLE)")));
}

// The blend is set on the stage of the tint and switches off the alpha of the stage above, which is
// the map's: the map's alpha is not used.
TEST_F(KRE_MaterialBindingMapsTest, QuirkBlendOfATintedMapOverAReflectionIgnoresTheMapsAlpha)
{
    Put(StageReflection, StageDiffuse);
    gfx.tintColor = kTint;
    gfx.blendMode = 7;
    gfx.SetTexture(&texture);
    EXPECT_EQ(gfx.cache.stageState[1][D3DTSS_ALPHAOP], int32_t{D3DTOP_MODULATE});
    EXPECT_EQ(gfx.cache.stageState[1][D3DTSS_ALPHAARG1], D3DTA_TFACTOR);
    EXPECT_EQ(gfx.cache.stageState[2][D3DTSS_ALPHAOP], int32_t{D3DTOP_DISABLE});
    EXPECT_EQ(gfx.cache.stageState[2][D3DTSS_COLOROP], int32_t{D3DTOP_MULTIPLYADD});
}

// ---- Maps where they are not allowed

TEST_F(KRE_MaterialBindingMapsTest, DiffuseInSlotOneOverABumpMapIsAnError)
{
    Put(StageBump, StageDiffuse);
    EXPECT_EQ(BindError(), "More than one diffuse map requires a diffuse map at stage 0");
}

TEST_F(KRE_MaterialBindingMapsTest, ReflectionAboveStageZeroIsAnError)
{
    Put(StageDiffuse, StageReflection);
    EXPECT_EQ(BindError(), "Reflection map in stage other than zero!");
}

TEST_F(KRE_MaterialBindingMapsTest, TypeThatDoesNotExistIsAnError)
{
    Put(StageDiffuse, 7);
    EXPECT_EQ(BindError(), "Invalid type of texture stage 1: 7");
    Put(-1, kNone);
    EXPECT_EQ(BindError(), "Invalid type of texture stage 0: -1");
}

TEST_F(KRE_MaterialBindingMapsTest, StatesReachTheDeviceAfterABadMaterial)
{
    Put(StageDiffuse, StageReflection);
    BindError();
    Calls();
    gfx.SetColorOp(6, D3DTOP_ADD);
    EXPECT_EQ(Calls(), Lines("6 COLOROP ADD"));
}

// ---- Strength of a reflection

namespace {

struct ReflectionCase {
    const char* what;
    float amount;
    bool hasConstants, hasMap;
    const char* own; // states of stage 0
};

// 0.2 * 255 is 51, that is 0x33. The blend alpha is 128, that is 0x80.
const ReflectionCase kReflectionCases[] = {
    {"full, alone", 1.0f, true, false, R"(
        0 COLOROP SELECTARG2
        0 COLORARG2 TEXTURE
        0 TEXCOORDINDEX 0)"},
    {"in part, alone, by a constant", 0.2f, true, false, R"(
        0 COLOROP MULTIPLYADD
        0 COLORARG0 DIFFUSE
        0 COLORARG1 TEXTURE
        0 TEXCOORDINDEX 0
        0 CONSTANT 0xFF333333
        0 COLORARG2 CONSTANT)"},
    {"in part, alone, by the factor", 0.2f, false, false, R"(
        0 COLOROP MULTIPLYADD
        0 COLORARG0 DIFFUSE
        0 COLORARG1 TEXTURE
        0 TEXCOORDINDEX 0
        FACTOR 0x80333333
        0 COLORARG2 TFACTOR)"},
    {"full, below a map", 1.0f, true, true, R"(
        0 COLOROP SELECTARG2
        0 ALPHAOP SELECTARG1
        0 ALPHAARG1 DIFFUSE
        0 COLORARG2 TEXTURE
        0 TEXCOORDINDEX 1)"},
    {"in part, below a map, by a constant", 0.2f, true, true, R"(
        0 COLOROP MODULATE
        0 CONSTANT 0xFF333333
        0 COLORARG1 CONSTANT
        0 ALPHAOP SELECTARG1
        0 ALPHAARG1 DIFFUSE
        0 COLORARG2 TEXTURE
        0 TEXCOORDINDEX 1)"},
    {"in part, below a map, by the factor", 0.2f, false, true, R"(
        0 COLOROP MODULATE
        FACTOR 0x80333333
        0 COLORARG1 TFACTOR
        0 ALPHAOP SELECTARG1
        0 ALPHAARG1 DIFFUSE
        0 COLORARG2 TEXTURE
        0 TEXCOORDINDEX 1)"},
    {"0.995 is full", 0.995f, true, false, R"(
        0 COLOROP SELECTARG2
        0 COLORARG2 TEXTURE
        0 TEXCOORDINDEX 0)"},
    // 0.994 * 255 is 253.47, that is 0xFD.
    {"0.994 is not full", 0.994f, true, false, R"(
        0 COLOROP MULTIPLYADD
        0 COLORARG0 DIFFUSE
        0 COLORARG1 TEXTURE
        0 TEXCOORDINDEX 0
        0 CONSTANT 0xFFFDFDFD
        0 COLORARG2 CONSTANT)"},
    {"below zero is none", -3.0f, true, false, R"(
        0 COLOROP MULTIPLYADD
        0 COLORARG0 DIFFUSE
        0 COLORARG1 TEXTURE
        0 TEXCOORDINDEX 0
        0 CONSTANT 0xFF000000
        0 COLORARG2 CONSTANT)"},
};

/// A map above that needs neither lighting nor blending.
constexpr const char* kMapAbove = R"(
    1 COLOROP MODULATE
    1 COLORARG1 CURRENT
    1 COLORARG2 TEXTURE
    1 TEXCOORDINDEX 0)";

} // namespace

TEST_F(KRE_MaterialBindingMapsTest, ReflectionShowsItsStrength)
{
    for (const ReflectionCase& c : kReflectionCases) {
        texture.Free();
        Put(StageReflection, c.hasMap ? int32_t{StageModulate} : kNone);
        gfx.reflectionAmount = c.amount;
        gfx.blendValue = 128;
        gfx.caps.PrimitiveMiscCaps = c.hasConstants ? D3DPMISCCAPS_PERSTAGECONSTANT : 0;
        const std::string above = c.hasMap ? std::string(kMapAbove) + kTailOfTwo : kTailOfOne;
        EXPECT_THAT(CallsOfBinding(),
                    UnorderedElementsAreArray(Lines(c.own + above + "\nALPHATESTENABLE 0")))
            << c.what;
        EXPECT_THAT(CallsOfRepeat(), IsEmpty()) << c.what;
    }
}

TEST_F(KRE_MaterialBindingMapsTest, ReflectionOf0995IsFullAndOf0994IsNot)
{
    Put(StageReflection, StageDiffuse);
    gfx.reflectionAmount = 0.995f;
    gfx.SetTexture(&texture);
    EXPECT_EQ(gfx.cache.stageState[0][D3DTSS_COLOROP], int32_t{D3DTOP_SELECTARG2});
    gfx.reflectionAmount = 0.994f;
    gfx.SetTexture(&texture);
    EXPECT_EQ(gfx.cache.stageState[0][D3DTSS_COLOROP], int32_t{D3DTOP_MODULATE});
}

TEST_F(KRE_MaterialBindingMapsTest, OnlySlotsThatAreBoundCountAsAbove)
{
    Put(StageReflection, StageModulate);
    gfx.materialStages = 1;
    gfx.SetTexture(&texture);
    EXPECT_EQ(gfx.cache.stageState[0][D3DTSS_TEXCOORDINDEX], 0) << "a reflection alone";
    EXPECT_EQ(gfx.cache.stageState[1][D3DTSS_COLOROP], int32_t{D3DTOP_DISABLE});
}

// ---- Colour of surfaces without light

TEST_F(KRE_MaterialBindingMapsTest, UnlitColorComesThroughTheFactor)
{
    gfx.blendValue = 128;
    gfx.lighting = 0;
    gfx.unlitColor = 0xFF405060;
    gfx.SetStageDiffuseArg(3);
    EXPECT_EQ(Calls(), Lines("FACTOR 0x80405060 \n 3 COLORARG2 TFACTOR"));
    gfx.SetStageDiffuseArg0(3);
    EXPECT_EQ(Calls(), Lines("FACTOR 0x80405060 \n 3 COLORARG0 TFACTOR"));
}

TEST_F(KRE_MaterialBindingMapsTest, LightOrWhiteLeavesTheVertexColor)
{
    gfx.lighting = 1;
    gfx.unlitColor = 0xFF405060;
    gfx.SetStageDiffuseArg(3);
    EXPECT_EQ(Calls(), Lines("3 COLORARG2 DIFFUSE"));
    gfx.lighting = 0;
    gfx.unlitColor = 0xFFFFFFFF;
    gfx.SetStageDiffuseArg0(3);
    EXPECT_EQ(Calls(), Lines("3 COLORARG0 DIFFUSE"));
}

TEST_F(KRE_MaterialBindingMapsTest, UnlitMaterialShowsItsColor)
{
    const D3DCOLOR color = 0x00405060;
    gfx.SetLighting(0, &color);
    gfx.SetRenderSource(2, 0, 0);
    Put(StageDiffuse, kNone);
    gfx.SetTexture(&texture);
    EXPECT_EQ(gfx.cache.stageState[0][D3DTSS_COLOROP], int32_t{D3DTOP_SELECTARG2});
    EXPECT_EQ(gfx.cache.stageState[0][D3DTSS_COLORARG2], D3DTA_TFACTOR);
    EXPECT_EQ(gfx.textureFactor, 0xFF405060u);
}

// ---- Spheres

namespace {

/// A view whose inverse takes (0, 0, 1) to `forward`, a unit vector along one axis. It only
/// permutes the axes, so its inverse is its transpose and `forward` is the third column.
D3DXMATRIX ViewAlong(const D3DXVECTOR3& forward)
{
    return {forward.y, forward.z, forward.x, 0, //
            forward.z, forward.x, forward.y, 0, //
            forward.x, forward.y, forward.z, 0, //
            0,         0,         0,         1};
}

} // namespace

TEST_F(KRE_MaterialBindingMapsTest, SphereTakesReflectionVectorsFromTheCamera)
{
    Put(StageSphere, kNone);
    std::vector<std::string> calls = CallsOfBinding();
    std::erase_if(calls, [](const std::string& line) { return line.starts_with("SetTransform"); });
    EXPECT_THAT(calls, UnorderedElementsAreArray(Lines(R"(
        ALPHATESTENABLE 0
        0 COLOROP SELECTARG2
        0 COLORARG1 CURRENT
        0 COLORARG2 TEXTURE
        0 TEXCOORDINDEX 0|D3DTSS_TCI_CAMERASPACEREFLECTIONVECTOR
        0 TEXTURETRANSFORMFLAGS COUNT3
        0 TEXTURE first
        1 COLOROP DISABLE
        1 TEXTURETRANSFORMFLAGS DISABLE
        1 TEXTURE null
        2 ALPHAOP DISABLE
        2 COLOROP DISABLE)")));
    EXPECT_THAT(CallsOfRepeat(), IsEmpty());
}

TEST_F(KRE_MaterialBindingMapsTest, SphereAboveStageZeroIsAdded)
{
    Put(StageDiffuse, StageSphere);
    gfx.SetTexture(&texture);
    EXPECT_EQ(gfx.cache.stageState[1][D3DTSS_COLOROP], int32_t{D3DTOP_ADD});
    EXPECT_THAT(CallsOf("SetTransform"), testing::ElementsAre(testing::HasSubstr("TEXTURE1")));
}

TEST_F(KRE_MaterialBindingMapsTest, SphereFollowsTheCamera)
{
    // Along x: no turn, level. Along y: a quarter turn, which is 0.25 of the width. Along z:
    // straight up, half the height from the centre; the turn of a zero vector is 0.
    static const struct {
        const char* what;
        D3DXVECTOR3 forward;
        float shiftU, shiftV;
    } cases[] = {
        {"along x", {1, 0, 0}, 0.5f, 0.5f},
        {"along y", {0, 1, 0}, 0.25f, 0.5f},
        {"along z", {0, 0, 1}, 0.5f, 0.0f},
    };
    Put(StageSphere, kNone);
    for (const auto& c : cases) {
        gfx.SetViewMatrix(ViewAlong(c.forward));
        Calls();
        gfx.SetTexture(&texture);
        EXPECT_EQ(CallsOf("SetTransform").size(), 1u) << c.what;
        const D3DXMATRIX& sent = gfx.textureMatrix[0];
        EXPECT_NEAR(sent._41, c.shiftU, 1e-5f) << c.what;
        EXPECT_NEAR(sent._42, c.shiftV, 1e-5f) << c.what;
        D3DXMATRIX rest = sent;
        rest._41 = rest._42 = 0.0f;
        EXPECT_EQ(rest, D3DXMATRIX(0.3f, 0, 0, 0, 0, 0.3f, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1)) << c.what;
    }
}

TEST_F(KRE_MaterialBindingMapsTest, SphereUnderADiffuseMapJoinsAsAReflection)
{
    Put(StageSphere, StageDiffuse);
    gfx.SetTexture(&texture);
    EXPECT_EQ(gfx.cache.stageState[1][D3DTSS_COLOROP], int32_t{D3DTOP_MULTIPLYADD});
    EXPECT_EQ(gfx.cache.stageState[1][D3DTSS_COLORARG0], D3DTA_CURRENT);
}

TEST_F(KRE_MaterialBindingMapsTest, SphereWithAViewThatHasNoInverseUsesTheIdentity)
{
    gfx.SetViewMatrix(D3DXMATRIX(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0));
    Put(StageSphere, kNone);
    gfx.SetTexture(&texture);
    EXPECT_NEAR(gfx.textureMatrix[0]._42, 0.0f, 1e-5f) << "as with the identity, along z";
}
