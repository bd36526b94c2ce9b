#include "scene/KRE_MaterialInfo.h"

#include "tests/scene/SceneTesting.h"

namespace {

void ExpectColor(const D3DCOLORVALUE& actual, float r, float g, float b, float a,
                 const std::string& what = "")
{
    EXPECT_FLOAT_EQ(actual.r, r) << what << " r";
    EXPECT_FLOAT_EQ(actual.g, g) << what << " g";
    EXPECT_FLOAT_EQ(actual.b, b) << what << " b";
    EXPECT_FLOAT_EQ(actual.a, a) << what << " a";
}

/// One key, which holds at any time.
void Hold(KRE_ColorTrack& track, const D3DCOLORVALUE& color)
{
    track.SetKeyCount(1);
    track.Key(0).value = color;
}

} // namespace

TEST(KRE_MaterialInfo, StartsWithItsDefaults)
{
    const KRE_MaterialInfo material;
    ExpectColor(material.diffuse, 1, 1, 1, 1, "diffuse");
    ExpectColor(material.ambient, 1, 1, 1, 1, "ambient");
    ExpectColor(material.specular, 1, 1, 1, 1, "specular");
    ExpectColor(material.emissive, 0, 0, 0, 1, "emissive");
    EXPECT_EQ(material.power, 0.0f);
    EXPECT_EQ(material.twoSided, 0);
    EXPECT_EQ(material.transparent, 0);
    EXPECT_EQ(material.mirrorU + material.mirrorV, 0);
    EXPECT_EQ(material.tileU, 1);
    EXPECT_EQ(material.tileV, 1);
    EXPECT_EQ(material.addEmissive, 1);
    EXPECT_EQ(material.transparencyType, kTransparencyFilter);
    EXPECT_EQ(material.reflectionSet, -1);
    EXPECT_EQ(material.reflectionAmount, 1.0f);
    EXPECT_EQ(material.transparency, 0.0f);
    EXPECT_EQ(material.diffuseTrack.GetKeyCount() + material.ambientTrack.GetKeyCount() +
                  material.specularTrack.GetKeyCount() + material.selfIllumTrack.GetKeyCount() +
                  material.opacityTrack.GetKeyCount(),
              0);
    EXPECT_TRUE(material.effectParams.name.IsEmpty());
    for (const KRE_EffectParam& param : material.effectParams.params) {
        EXPECT_EQ(param.hasFloat + param.hasVector, 0);
        EXPECT_EQ(param.floatValue, 0.0f);
        for (const float value : param.vectorValue)
            EXPECT_EQ(value, 0.0f);
    }
}

TEST(KRE_MaterialInfo, DrawingDefaultsAreLightGreyAndMatt)
{
    KRE_MaterialInfo material;
    material.power = 9;
    material.SetDrawingDefaults();
    ExpectColor(material.diffuse, 0.9f, 0.9f, 0.9f, 1, "diffuse");
    ExpectColor(material.ambient, 0.9f, 0.9f, 0.9f, 1, "ambient");
    ExpectColor(material.specular, 0, 0, 0, 1, "specular");
    ExpectColor(material.emissive, 0, 0, 0, 1, "emissive");
    EXPECT_EQ(material.power, 0.0f);
}

TEST(KRE_MaterialInfo, DeviceMaterialHasTheColorsAndTheExponent)
{
    KRE_MaterialInfo material;
    material.diffuse = {0.1f, 0.2f, 0.3f, 0.4f};
    material.ambient = {0.5f, 0.6f, 0.7f, 0.8f};
    material.specular = {1.1f, 1.2f, 1.3f, 1.4f};
    material.emissive = {2.1f, 2.2f, 2.3f, 2.4f};
    material.power = 20;
    const D3DMATERIAL9 device = material.DeviceMaterial();
    ExpectColor(device.Diffuse, 0.1f, 0.2f, 0.3f, 0.4f, "diffuse");
    ExpectColor(device.Ambient, 0.5f, 0.6f, 0.7f, 0.8f, "ambient");
    ExpectColor(device.Specular, 1.1f, 1.2f, 1.3f, 1.4f, "specular");
    ExpectColor(device.Emissive, 2.1f, 2.2f, 2.3f, 2.4f, "emissive");
    EXPECT_EQ(device.Power, 20.0f);
}

TEST(KRE_MaterialInfo, EachTrackWithKeysOverwritesAllFourComponentsOfItsField)
{
    static const struct {
        const char* what;
        KRE_ColorTrack KRE_MaterialInfo::*track;
        D3DCOLORVALUE KRE_MaterialInfo::*field;
    } cases[] = {
        {"diffuse", &KRE_MaterialInfo::diffuseTrack, &KRE_MaterialInfo::diffuse},
        {"ambient", &KRE_MaterialInfo::ambientTrack, &KRE_MaterialInfo::ambient},
        {"specular", &KRE_MaterialInfo::specularTrack, &KRE_MaterialInfo::specular},
        {"self-illumination", &KRE_MaterialInfo::selfIllumTrack, &KRE_MaterialInfo::ambient},
    };
    for (const auto& c : cases) {
        KRE_MaterialInfo material;
        material.diffuse = material.ambient = material.specular = {9, 9, 9, 9};
        Hold(material.*c.track, {0.1f, 0.2f, 0.3f, 0.4f});
        material.Evaluate(0);
        ExpectColor(material.*c.field, 0.1f, 0.2f, 0.3f, 0.4f, c.what);
        int changed = 0;
        for (const D3DCOLORVALUE& color : {material.diffuse, material.ambient, material.specular})
            changed += color.r != 9.0f ? 1 : 0;
        EXPECT_EQ(changed, 1) << c.what;
    }
}

TEST(KRE_MaterialInfo, TracksFollowTheTime)
{
    // Linear from 0 at 1 s to 8 at 5 s: 2 per second, so 4 at 3 s.
    KRE_MaterialInfo material;
    material.opacityTrack.SetKeyCount(2);
    material.opacityTrack.interpolation = KRE_FloatTrack::kLinear;
    material.opacityTrack.Key(0).time = 1;
    material.opacityTrack.Key(1).time = 5;
    material.opacityTrack.Key(1).value = 8;
    material.Evaluate(3);
    EXPECT_FLOAT_EQ(material.transparency, 4.0f);
}

TEST(KRE_MaterialInfo, OpacityTrackIsUsedAsTransparencyUnchanged)
{
    KRE_MaterialInfo material;
    material.opacityTrack.SetKeyCount(1);
    material.opacityTrack.Key(0).value = 0.25f;
    material.Evaluate(0);
    EXPECT_EQ(material.transparency, 0.25f);
    EXPECT_EQ(material.transparent, 0) << "animation does not move a material to another pass";
}

TEST(KRE_MaterialInfo, WithoutKeysNothingChanges)
{
    KRE_MaterialInfo material;
    material.diffuse = {3, 3, 3, 3};
    material.transparency = 0.5f;
    material.Evaluate(1);
    ExpectColor(material.diffuse, 3, 3, 3, 3);
    EXPECT_EQ(material.transparency, 0.5f);
}

TEST(KRE_MaterialInfo, QuirkSelfIlluminationAndAmbientTracksShowTheSelfIlluminationInAmbient)
{
    KRE_MaterialInfo material;
    material.emissive = {0.7f, 0.7f, 0.7f, 0.7f};
    Hold(material.ambientTrack, {0.1f, 0.1f, 0.1f, 1});
    Hold(material.selfIllumTrack, {0.6f, 0.5f, 0.4f, 0.3f});
    material.Evaluate(0);
    ExpectColor(material.ambient, 0.6f, 0.5f, 0.4f, 0.3f, "ambient");
    ExpectColor(material.emissive, 0.7f, 0.7f, 0.7f, 0.7f, "emissive is never animated");
}

TEST(KRE_MaterialInfo, CombineMultipliesColorsAndAddsUpTransparency)
{
    KRE_MaterialInfo own;
    own.diffuse = {0.5f, 0.25f, 1, 0.5f};
    own.ambient = {0.5f, 0.5f, 0.5f, 0.5f};
    own.specular = {2, 2, 2, 2};
    own.emissive = {0.1f, 0.2f, 0.3f, 0.4f};
    own.power = 12;
    own.transparency = 0.5f;
    own.transparencyType = kTransparencyAdditive;
    own.mirrorU = 1;
    own.tileV = 0;
    own.reflectionSet = 3;
    own.reflectionAmount = 0.5f;
    KRE_MaterialInfo override;
    override.diffuse = {0.5f, 1, 0.5f, 0.5f};
    override.ambient = {1, 0.5f, 0, 1};
    override.specular = {0.25f, 0.5f, 1, 2};
    override.emissive = {0.5f, 0.5f, 0.5f, 0.5f};
    override.power = 99;
    override.transparency = 0.5f;
    override.transparencyType = kTransparencySubtractive;
    override.mirrorV = 1;
    override.tileU = 0;
    override.reflectionSet = 1;
    override.reflectionAmount = 0.25f;

    const KRE_MaterialInfo result = own.Combine(override);
    ExpectColor(result.diffuse, 0.25f, 0.25f, 0.5f, 0.25f, "diffuse");
    ExpectColor(result.ambient, 0.5f, 0.25f, 0, 0.5f, "ambient");
    ExpectColor(result.specular, 0.5f, 1, 2, 4, "specular");
    ExpectColor(result.emissive, 0.6f, 0.7f, 0.8f, 0.9f, "emissive: sums");
    EXPECT_FLOAT_EQ(result.transparency, 0.75f) << "1 - 0.5 * 0.5";
    EXPECT_EQ(result.power, 12.0f);
    EXPECT_EQ(result.reflectionSet, 1) << "the override's";
    EXPECT_FLOAT_EQ(result.reflectionAmount, 0.125f);
    EXPECT_EQ(result.transparencyType, kTransparencyAdditive);
    EXPECT_EQ(result.mirrorU, 1);
    EXPECT_EQ(result.mirrorV, 0);
    EXPECT_EQ(result.tileU, 1);
    EXPECT_EQ(result.tileV, 0);
}

TEST(KRE_MaterialInfo, CombineMultipliesEmissiveIfTheOverrideSaysSo)
{
    KRE_MaterialInfo own;
    own.emissive = {0.5f, 0.25f, 1, 0.5f};
    own.addEmissive = 1; // only the override's counts
    KRE_MaterialInfo override;
    override.emissive = {0.5f, 0.5f, 0.5f, 0.5f};
    override.addEmissive = 0;
    ExpectColor(own.Combine(override).emissive, 0.25f, 0.125f, 0.5f, 0.25f);
}

TEST(KRE_MaterialInfo, CombineLeavesAllOtherFieldsAtTheirDefaults)
{
    KRE_MaterialInfo own;
    own.twoSided = own.transparent = 1;
    own.addEmissive = 0;
    own.effectParams.name = "water.fx";
    Hold(own.diffuseTrack, {1, 1, 1, 1});
    KRE_MaterialInfo override = own;
    const KRE_MaterialInfo result = own.Combine(override);
    EXPECT_EQ(result.twoSided, 0);
    EXPECT_EQ(result.transparent, 0);
    EXPECT_EQ(result.addEmissive, 1);
    EXPECT_TRUE(result.effectParams.name.IsEmpty());
    EXPECT_EQ(result.diffuseTrack.GetKeyCount(), 0);
}
