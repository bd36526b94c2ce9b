#include "qsa/QSA_NodeImport.h"

#include <bit>

#include "tests/qsa/QSATesting.h"

namespace {

/// A node with the transform block `inside`.
std::string WithTransform(const std::string& inside)
{
    return Helper("*NODE_NAME \"n\" *NODE_TM { " + inside + " }");
}

std::string Light(const std::string& inside)
{
    return "*LIGHTOBJECT { *NODE_NAME \"l\" " + inside + " }";
}

using QSA_NodeImportTest = QSALoaderTest;

} // namespace

TEST_F(QSA_NodeImportTest, NodeBlocksMakeObjectsOfTheirKinds)
{
    Load("*BONEOBJECT { *NODE_NAME \"b\" *NODE_PARENT \"h\" } *HELPEROBJECT { *NODE_NAME \"h\" } "
         "*TARGETOBJECT { *NODE_NAME \"t\" } *CAMERAOBJECT { *NODE_NAME \"c\" } *LIGHTOBJECT { "
         "*NODE_NAME \"l\" *LIGHT_TYPE Omni }" +
         Triangle().Text());
    ASSERT_EQ(scene.objects.Count(), 3);
    EXPECT_EQ(Object(0).objectKind, 2);
    EXPECT_EQ(Object(1).objectKind, 4);
    EXPECT_EQ(Object(2).objectKind, 4);
    EXPECT_EQ(scene.cameras.Get(0)->objectKind, 8);
    EXPECT_EQ(scene.lights.Get(0)->objectKind, 32);
    EXPECT_EQ(Mesh(0).objectKind, 1);
    EXPECT_STREQ(Object(0).parentName.c_str(), "h");
    EXPECT_EQ(Object(0).parent, &Object(1));
}

TEST_F(QSA_NodeImportTest, TransformBlockFillsTheNode)
{
    // Rotated by a quarter turn about -z in the file, which is +z with the signs of this system.
    Load(WithTransform("*TM_ROW0 0 2 0 *TM_ROW1 -3 0 0 *TM_ROW2 0 0 4 *TM_ROW3 5,6,7 *TM_POS 5 6 7 "
                       "*TM_ROTAXIS 0 0 -1 *TM_ROTANGLE 1.5707963 *TM_SCALE 2 3 4"));
    const KRE_3dObject& node = Object(0);
    ExpectVec3(node.position, 5, 6, 7);
    ExpectVec3(node.scale, 2, 3, 4);
    ExpectVec3(node.rotationAxis, 0, 0, 1);
    EXPECT_FLOAT_EQ(node.rotationAngle, 1.5707963f);
    ExpectVec3(node.mirror, 1, 1, 1);
    const float rows[4][4] = {{0, 2, 0, 0}, {-3, 0, 0, 0}, {0, 0, 4, 0}, {5, 6, 7, 1}};
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c)
            EXPECT_EQ(node.initTM.m[r][c], rows[r][c]) << r << c;
    }
}

TEST_F(QSA_NodeImportTest, TransformBlockLeavesWhatItDoesNotGiveAtTheDefaults)
{
    Load(WithTransform("*TM_POS 1 2 3"));
    ExpectVec3(Object(0).scale, 1, 1, 1);
    ExpectVec3(Object(0).rotationAxis, 0, 0, 0);
    EXPECT_EQ(Object(0).rotationAngle, 0.0f);
    EXPECT_EQ(Object(0).initTM._11, 1.0f);
    EXPECT_EQ(Object(0).initTM._44, 1.0f);
    Load(WithTransform(""));
    ExpectVec3(Object(0).position, 0, 0, 0);
    ExpectVec3(Object(0).mirror, 1, 1, 1);
}

TEST_F(QSA_NodeImportTest, NegatedXAxisIsAMirror)
{
    Load(WithTransform(
        "*TM_ROW0 -2 0 0 *TM_ROW1 0 2 0 *TM_ROW2 0 0 2 *TM_ROW3 0 0 0 *TM_SCALE 2 2 2"));
    ExpectVec3(Object(0).mirror, -1, 1, 1);
    ExpectVec3(Object(0).scale, 2, 2, 2);
    EXPECT_EQ(Object(0).initTM._11, -2.0f);
}

TEST_F(QSA_NodeImportTest, EachAxisIsComparedWhereTheComputedMatrixIsLargest)
{
    const struct {
        const char* what;
        const char* rows;
        float x, y, z;
    } cases[] = {
        {"none", "*TM_ROW0 1 0 0 *TM_ROW1 0 1 0 *TM_ROW2 0 0 1", 1, 1, 1},
        {"y", "*TM_ROW0 1 0 0 *TM_ROW1 0 -1 0 *TM_ROW2 0 0 1", 1, -1, 1},
        {"z", "*TM_ROW0 1 0 0 *TM_ROW1 0 1 0 *TM_ROW2 0 0 -1", 1, 1, -1},
        {"all", "*TM_ROW0 -1 0 0 *TM_ROW1 0 -1 0 *TM_ROW2 0 0 -1", -1, -1, -1},
        {"other places do not count", "*TM_ROW0 1 -9 -9 *TM_ROW1 -9 1 -9 *TM_ROW2 -9 -9 1", 1, 1,
         1},
    };
    for (const auto& c : cases) {
        Load(WithTransform(c.rows));
        ExpectVec3(Object(0).mirror, c.x, c.y, c.z, c.what);
    }
}

TEST_F(QSA_NodeImportTest, OfEqualMagnitudesTheLaterRowIsCompared)
{
    // Without scale the computed matrix is all zeros: every column is a tie, and row 2 is used. Its
    // values divided by the file's are 0, never below 0; a zero in the file gives the warning.
    Load(WithTransform("*TM_SCALE 0 0 0 *TM_ROW0 0 0 0 *TM_ROW1 0 0 0 *TM_ROW2 1 1 1"));
    EXPECT_THAT(AllWarnings(), testing::IsEmpty());
    Load(WithTransform("*TM_SCALE 0 0 0 *TM_ROW0 1 1 1 *TM_ROW1 1 1 1 *TM_ROW2 0 1 1"));
    EXPECT_EQ(Warnings("Determinant in TM is zero."), 1);
}

TEST_F(QSA_NodeImportTest, ZeroRowWarnsAndLeavesTheSignsReadSoFar)
{
    Load(WithTransform("*TM_ROW0 -1 0 0 *TM_ROW1 0 0 0 *TM_ROW2 0 0 -1"));
    ExpectVec3(Object(0).mirror, -1, 1, 1); // z was not checked any more
    EXPECT_EQ(Warnings("Determinant in TM is zero."), 1);
}

TEST_F(QSA_NodeImportTest, OnlyTheMatrixOfAPivotIsKept)
{
    Load(Helper("*NODE_NAME \"n\" *PIVOT_TM { *TM_ROW3 1 2 3 *TM_POS 4 5 6 *TM_SCALE 7 8 9 }"));
    EXPECT_EQ(Object(0).pivotTM._42, 2.0f);
    ExpectVec3(Object(0).position, 0, 0, 0);
    ExpectVec3(Object(0).scale, 1, 1, 1);
    EXPECT_EQ(Object(0).initTM._42, 0.0f);
}

TEST_F(QSA_NodeImportTest, TransformThatIsCutOffEndsTheScene)
{
    Load("*HELPEROBJECT { *NODE_NAME \"n\" *NODE_TM { *TM_ROW0 -1 0 0 *TM_POS 1 2 3 ");
    ExpectVec3(Object(0).position, 1, 2, 3);
    ExpectVec3(Object(0).mirror, 1, 1, 1); // checked only at the end of the block
}

TEST_F(QSA_NodeImportTest, BlockWithoutABraceIsAnError)
{
    for (const char* text : {"*HELPEROBJECT x", "*GEOMOBJECT x", "*MATERIAL_LIST x", "*SCENE x",
                             "*HELPEROBJECT { *NODE_TM x", "*HELPEROBJECT { *TM_ANIMATION x",
                             "*GEOMOBJECT { *MESH x", "*LIGHTOBJECT { *LIGHT_SETTINGS x"})
        EXPECT_EQ(LoadError(text), "scene.qsa: 'x' not found") << text;
}

TEST_F(QSA_NodeImportTest, CameraTakesItsTargetAndTheLastFieldOfView)
{
    Load("*CAMERAOBJECT { *NODE_NAME \"c\" *TARGET_NODE \"t\" *CAMERA_SETTINGS { *CAMERA_FOV 0.5 } "
         "*CAMERA_SETTINGS { *CAMERA_FOV 0.75 } *NODE_TM { *TM_POS 1 2 3 } } *TARGETOBJECT { "
         "*NODE_NAME \"t\" }");
    const KRE_Camera& camera = *scene.cameras.Get(0);
    EXPECT_EQ(camera.fov, 0.75f);
    EXPECT_STREQ(camera.targetName.c_str(), "t");
    EXPECT_EQ(camera.target, &Object(0));
    ExpectVec3(camera.position, 1, 2, 3);
}

TEST_F(QSA_NodeImportTest, LightTypesAreWordsOfAnyCase)
{
    const struct {
        const char* word;
        D3DLIGHTTYPE expected;
    } cases[] = {{"Target", D3DLIGHT_SPOT},     {"TargetSpot", D3DLIGHT_SPOT},
                 {"targetspot", D3DLIGHT_SPOT}, {"Directional", D3DLIGHT_DIRECTIONAL},
                 {"OMNI", D3DLIGHT_POINT},      {"Omni", D3DLIGHT_POINT}};
    for (const auto& c : cases) {
        Load(Light(std::string("*LIGHT_TYPE ") + c.word));
        EXPECT_EQ(scene.lights.Get(0)->light.Type, c.expected) << c.word;
    }
    EXPECT_THAT(AllWarnings(), testing::IsEmpty());
    Load(Light("*LIGHT_TYPE Area"));
    EXPECT_EQ(scene.lights.Get(0)->light.Type, D3DLIGHT_POINT);
    EXPECT_EQ(Warnings("Unknown light type changed to omni"), 1);
}

TEST_F(QSA_NodeImportTest, LightTakesItsSettings)
{
    Load(
        Light("*LIGHT_TYPE Target *LIGHT_USELIGHT 0 *LIGHT_SETTINGS { *LIGHT_COLOR 1 0.5 0.25 "
              "*LIGHT_INTENS 2 *LIGHT_ASPECT -1.0 *LIGHT_HOTSPOT 45 *LIGHT_FALLOFF 90 *LIGHT_TDIST "
              "240 }"));
    const KRE_Light& light = *scene.lights.Get(0);
    EXPECT_EQ(light.lightOn, 0);
    ExpectColor(light.light.Diffuse, 2, 1, 0.5f, 1);
    ExpectColor(light.light.Specular, 2, 1, 0.5f, 1);
    ExpectColor(light.light.Ambient, 0, 0, 0, 0);
    EXPECT_FLOAT_EQ(light.light.Theta, 0.78539816f); // an eighth of a turn
    EXPECT_FLOAT_EQ(light.light.Phi, 1.57079632f);
    EXPECT_EQ(light.light.Falloff, 1.0f);
    EXPECT_EQ(light.light.Attenuation0, 1.0f);
    EXPECT_EQ(light.light.Attenuation1, 0.0f);
    EXPECT_EQ(light.light.Attenuation2, 0.0f);
    EXPECT_THAT(AllWarnings(), testing::IsEmpty());
}

TEST_F(QSA_NodeImportTest, DistanceOfALightsTargetIsReadLikeAnyNumber)
{
    EXPECT_EQ(LoadError(Light("*LIGHT_TYPE Omni *LIGHT_SETTINGS { *LIGHT_TDIST " +
                              std::string(128, '1') + " }")),
              "scene.qsa: String too long (>127)");
}

TEST_F(QSA_NodeImportTest, RangeOfEveryLightIsUnlimited)
{
    for (const char* inside :
         {"*LIGHT_TYPE Omni", "*LIGHT_TYPE Omni *LIGHT_SETTINGS { *LIGHT_TDIST 5 }"}) {
        Load(Light(inside));
        EXPECT_EQ(std::bit_cast<uint32_t>(scene.lights.Get(0)->light.Range), 0x5F7FFF7Du) << inside;
    }
}

TEST_F(QSA_NodeImportTest, LightWithoutIntensityStaysBlack)
{
    Load(Light("*LIGHT_TYPE Omni *LIGHT_SETTINGS { *LIGHT_COLOR 1 1 1 }"));
    ExpectColor(scene.lights.Get(0)->light.Diffuse, 0, 0, 0, 0);
}

TEST_F(QSA_NodeImportTest, QuirkIntensityMultipliesTheColorSoFar)
{
    Load(Light("*LIGHT_TYPE Omni *LIGHT_SETTINGS { *LIGHT_INTENS 5 *LIGHT_COLOR 1 1 1 }"));
    ExpectColor(scene.lights.Get(0)->light.Diffuse, 0, 0, 0, 1, "colour came too late");
    Load(Light("*LIGHT_TYPE Omni *LIGHT_SETTINGS { *LIGHT_COLOR 1 1 1 *LIGHT_INTENS 2 } "
               "*LIGHT_SETTINGS { *LIGHT_INTENS 3 }"));
    ExpectColor(scene.lights.Get(0)->light.Diffuse, 6, 6, 6, 1, "the colour outlives its block");
}

TEST_F(QSA_NodeImportTest, AspectOtherThanOneWarns)
{
    Load(Light("*LIGHT_TYPE Omni *LIGHT_SETTINGS { *LIGHT_ASPECT 1.5 }"));
    EXPECT_EQ(Warnings("Light aspect other than 1"), 1);
}

TEST_F(QSA_NodeImportTest, LightThatIsCutOffIsNotFinished)
{
    Load("*LIGHTOBJECT { *NODE_NAME \"l\" *LIGHT_TYPE Directional ");
    EXPECT_EQ(scene.lights.Get(0)->light.Attenuation0, 0.0f);
    EXPECT_NE(scene.lights.Get(0)->light.Type, D3DLIGHT_DIRECTIONAL);
}

TEST_F(QSA_NodeImportTest, TransformBlockIsReadFromItsKeywordOn)
{
    QSA_SceneText& text =
        Opened(" { *TM_ROW0 -2 0 0 *TM_ROW1 0 3 0 *TM_ROW2 0 0 4 *TM_ROW3 5 6 7 *TM_POS 5 6 7 "
               "*TM_ROTAXIS 0 0 1 *TM_ROTANGLE 0 *TM_SCALE 2 3 4 } rest");
    QSA_NodeImport nodes(text, scene);
    QSA_Transform transform;
    EXPECT_EQ(nodes.ParseTransform(&transform), 0);
    EXPECT_EQ(text.BytesLeft(), 5); // " rest"
    EXPECT_EQ(transform.initTM._11, -2.0f);
    EXPECT_EQ(transform.initTM._43, 7.0f);
    ExpectVec3(transform.mirror, -1, 1, 1); // row 0 points in the opposite direction to its scale
    ExpectVec3(transform.scale, 2, 3, 4);
    ExpectVec3(transform.position, 5, 6, 7);
    ExpectVec3(transform.rotationAxis, 0, 0, -1);
}

TEST_F(QSA_NodeImportTest, TransformThatTheFileCutsOffIsMirroredInNoAxis)
{
    QSA_NodeImport nodes(Opened("{ *TM_ROW0 -1 0 0 "), scene);
    QSA_Transform transform;
    EXPECT_EQ(nodes.ParseTransform(&transform), 1);
    EXPECT_EQ(transform.initTM._11, -1.0f);
    ExpectVec3(transform.mirror, 1, 1, 1);
}

TEST_F(QSA_NodeImportTest, TimesStayTicksUntilTheKeysAreFinished)
{
    QSA_NodeImport nodes(Opened("*TM_ANIMATION { *CONTROL_POS_TRACK { "
                                "*CONTROL_POS_SAMPLE 4800 1 2 3 } } }"),
                         scene);
    EXPECT_EQ(nodes.ParseNode(kObjectHelper), 0);
    ASSERT_EQ(scene.objects.Count(), 1);
    ASSERT_NE(Object(0).posKeys.Head(), nullptr);
    EXPECT_EQ(Object(0).posKeys.Head()->time, 4800.0f);
    QSA_TimeScale time;
    time.firstFrame = 15; // half a second at 30 frames a second
    nodes.FinishKeys(time);
    EXPECT_FLOAT_EQ(Object(0).posKeys.Head()->time, 0.5f);
}
