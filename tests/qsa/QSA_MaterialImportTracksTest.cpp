#include "tests/qsa/QSATesting.h"

namespace {

class QSA_MaterialImportTracksTest : public QSALoaderTest {
protected:
    /// Loads a triangle whose material has this animation block.
    KRE_MaterialInfo& Animated(const std::string& inside)
    {
        MeshText mesh = Triangle();
        mesh.more = "*MATERIAL_REF 0";
        Load(MaterialList({"*MATERIAL_ANIMATION { " + inside + " }"}) + mesh.Text());
        return Mesh(0).materials[0];
    }
};

std::string Attribute(const char* name)
{
    return std::string("*MATERIAL_ATTRIBUTE \"") + name + "\" ";
}

const char* const kColorKey = "*CONTROL_COLOR_LINEAR { *CONTROL_POINT3_KEY 0 1 2 3 } ";
const char* const kFloatKey = "*CONTROL_FLOAT_LINEAR { *CONTROL_FLOAT_KEY 0 0.5 } ";

} // namespace

TEST_F(QSA_MaterialImportTracksTest, AttributeSelectsTheTrackInAnyCase)
{
    const struct {
        const char* name;
        KRE_ColorTrack KRE_MaterialInfo::*track;
    } cases[] = {{"Ambient", &KRE_MaterialInfo::ambientTrack},
                 {"diffuse", &KRE_MaterialInfo::diffuseTrack},
                 {"SPECULAR", &KRE_MaterialInfo::specularTrack},
                 {"SelfIllumColor", &KRE_MaterialInfo::selfIllumTrack}};
    for (const auto& c : cases) {
        KRE_MaterialInfo& material = Animated(Attribute(c.name) + kColorKey + kFloatKey);
        ASSERT_EQ((material.*c.track).GetKeyCount(), 1) << c.name;
        ExpectColor((material.*c.track).Key(0).value, 1, 2, 3, 1, c.name);
        EXPECT_EQ(material.opacityTrack.GetKeyCount(), 0) << c.name;
    }
}

TEST_F(QSA_MaterialImportTracksTest, OtherAttributesSelectNothingAndTheirBlocksAreSkipped)
{
    KRE_MaterialInfo& material =
        Animated(std::string(kColorKey) + kFloatKey + Attribute("Opacity") + kColorKey +
                 Attribute("Bumpiness") + kColorKey + kFloatKey);
    EXPECT_EQ(material.opacityTrack.GetKeyCount(), 0);
    EXPECT_EQ(material.diffuseTrack.GetKeyCount(), 0);
    EXPECT_EQ(material.transparent, 0);
}

TEST_F(QSA_MaterialImportTracksTest, OpacityKeyOfAQuarterIsStoredAsThreeQuarters)
{
    KRE_MaterialInfo& material = Animated(
        Attribute("Opacity") + "*CONTROL_FLOAT_BEZIER { *CONTROL_BEZIER_FLOAT_KEY 0 0.25 2 3 }");
    ASSERT_EQ(material.opacityTrack.GetKeyCount(), 1);
    EXPECT_EQ(material.opacityTrack.Key(0).value, 0.75f);
    EXPECT_EQ(material.opacityTrack.Key(0).inTangent, -2.0f);
    EXPECT_EQ(material.opacityTrack.Key(0).outTangent, -3.0f);
    EXPECT_EQ(material.transparent, 1); // it may become transparent at any time
}

TEST_F(QSA_MaterialImportTracksTest, KeysGetSecondsAndTangentsTheSpacing)
{
    KRE_MaterialInfo& material =
        Animated(Attribute("Diffuse") +
                 "*CONTROL_COLOR_BEZIER { *CONTROL_BEZIER_POINT3_KEY 0 0 0 0 1 2 3 4 5 6 "
                 "*CONTROL_BEZIER_POINT3_KEY 4800 1 1 1 0.5 0.25 0.125 7 8 9 }");
    KRE_ColorTrack& track = material.diffuseTrack;
    ASSERT_EQ(track.GetKeyCount(), 2);
    EXPECT_EQ(track.interpolation, 1);
    EXPECT_EQ(track.secondFlag, 0);
    EXPECT_EQ(track.loopEnd, 0.0f);
    EXPECT_FLOAT_EQ(track.Key(1).time, 1.0f);
    ExpectColor(track.Key(0).inTangent, 1, 2, 3, 0);
    ExpectColor(track.Key(0).outTangent, 19200, 24000, 28800, 0);
    ExpectColor(track.Key(1).inTangent, 2400, 1200, 600, 0);
    ExpectColor(track.Key(1).outTangent, 7, 8, 9, 0);
    ExpectColor(track.Key(1).value, 1, 1, 1, 1);
}

TEST_F(QSA_MaterialImportTracksTest, LinearColorKeyInABezierTrackMakesAllOfItLinear)
{
    KRE_MaterialInfo& material = Animated(
        Attribute("Diffuse") +
        "*CONTROL_COLOR_BEZIER { *CONTROL_BEZIER_POINT3_KEY 0 0 0 0 1 1 1 1 1 1 "
        "*CONTROL_POINT3_KEY 1 0 0 0 *CONTROL_BEZIER_POINT3_KEY 2 0 0 0 1 1 1 1 1 1 }" +
        Attribute("Opacity") +
        "*CONTROL_FLOAT_BEZIER { *CONTROL_FLOAT_KEY 0 1 *CONTROL_BEZIER_FLOAT_KEY 1 1 0 0 }");
    EXPECT_EQ(material.diffuseTrack.interpolation, 0);
    EXPECT_EQ(material.diffuseTrack.GetKeyCount(), 3);
    EXPECT_EQ(material.opacityTrack.interpolation, 0);
}

TEST_F(QSA_MaterialImportTracksTest, QuirkTrackOf1024KeysReportsOnceAndEndsInAnEmptyKey)
{
    std::string colors = "*CONTROL_COLOR_LINEAR { ";
    std::string floats = "*CONTROL_FLOAT_LINEAR { ";
    for (int i = 0; i < 1023; ++i) {
        colors += "*CONTROL_POINT3_KEY 0 1 1 1\n";
        floats += "*CONTROL_FLOAT_KEY 0 0.25\n";
    }
    const char* const kText = "Not more than 1024 float bezier keys allowed";
    KRE_MaterialInfo* material = &Animated(Attribute("Diffuse") + colors + "}");
    EXPECT_EQ(material->diffuseTrack.GetKeyCount(), 1023);
    EXPECT_EQ(Warnings(kText), 0);

    material = &Animated(Attribute("Diffuse") + colors + "*CONTROL_POINT3_KEY 0 1 1 1 }");
    ASSERT_EQ(material->diffuseTrack.GetKeyCount(), 1024);
    ExpectColor(material->diffuseTrack.Key(1022).value, 1, 1, 1, 1);
    ExpectColor(material->diffuseTrack.Key(1023).value, 0, 0, 0, 0);
    EXPECT_EQ(Warnings(kText), 1);

    // Keys that do not fit are still counted.
    material = &Animated(Attribute("Opacity") + floats +
                         "*CONTROL_FLOAT_KEY 0 1 *CONTROL_FLOAT_KEY 0 1 *CONTROL_FLOAT_KEY 0 1 }");
    ASSERT_EQ(material->opacityTrack.GetKeyCount(), 1026);
    EXPECT_EQ(material->opacityTrack.Key(1022).value, 0.75f);
    EXPECT_EQ(material->opacityTrack.Key(1025).value, 0.0f);
}

TEST_F(QSA_MaterialImportTracksTest, TrackThatIsCutOffKeepsItsKeys)
{
    const std::string text = "*MATERIAL_LIST { *MATERIAL 0 { *MATERIAL_ANIMATION { ";
    Load(text + Attribute("Diffuse") + "*CONTROL_COLOR_LINEAR { *CONTROL_POINT3_KEY 0 1 2 3 ");
    EXPECT_EQ(AllWarnings().size(), 1u);
}
