#include <cmath>
#include <vector>

#include "tests/qsa/QSATesting.h"

namespace {

// 160 ticks per frame at 30 frames per second.
constexpr float kTicksPerSecond = 4800.0f;

class QSA_NodeImportKeysTest : public QSALoaderTest {
protected:
    /// A helper with this animation block.
    KRE_3dObject& Animated(const std::string& inside, const std::string& sceneBlock = "")
    {
        Load(sceneBlock + Node(inside));
        return Object(0);
    }
    std::string AnimationError(const std::string& inside) { return LoadError(Node(inside)); }

    static std::string Node(const std::string& inside)
    {
        return Helper("*NODE_NAME \"n\" *TM_ANIMATION { " + inside + " }");
    }
    static std::string Rotations(const std::string& keys)
    {
        return "*CONTROL_ROT_TRACK { " + keys + " }";
    }
    /// The angles of the first object's keys.
    std::vector<float> Angles()
    {
        std::vector<float> angles;
        for (const KRE_RotKeyData* key = Object(0).rotKeys.Head(); key; key = key->next)
            angles.push_back(key->angle);
        return angles;
    }
};

} // namespace

TEST_F(QSA_NodeImportKeysTest, AllBlockKeywordsOpenTheirTracks)
{
    for (const char* block : {"POS_TRACK", "POS_BEZIER"}) {
        Animated(std::string("*CONTROL_") + block + " { *CONTROL_POS_SAMPLE 0 1 2 3 }");
        EXPECT_EQ(Object(0).posKeyCount, 1) << block;
    }
    for (const char* block : {"ROT_TRACK", "ROT_LINEAR", "ROT_TCB"}) {
        Animated(std::string("*CONTROL_") + block +
                 " { *CONTROL_ROT_SAMPLE 0 0 0 1 1 *CONTROL_ROT_KEY 1 0 0 1 1 }");
        EXPECT_EQ(Object(0).rotKeyCount, 2) << block;
    }
    for (const char* block : {"SCALE_TRACK", "SCALE_BEZIER"}) {
        Animated(std::string("*CONTROL_") + block + " { *CONTROL_SCALE_SAMPLE 0 1 2 3 }");
        EXPECT_EQ(Object(0).scaleKeyCount, 1) << block;
    }
}

TEST_F(QSA_NodeImportKeysTest, PositionKeysTakeTheirTangents)
{
    KRE_3dObject& node =
        Animated("*CONTROL_POS_BEZIER { *CONTROL_BEZIER_POS_KEY 0 1 2 3 4 5 6 7 8 9 "
                 "*CONTROL_BEZIER_POS_KEY 2400 1 1 1 0.5 0.25 1 2 2 2 }");
    const KRE_PosKeyData* first = node.posKeys.Head();
    ExpectVec3(first->value, 1, 2, 3);
    ExpectVec3(first->inTangent, 4, 5, 6); // nothing comes before it
    ExpectVec3(first->outTangent, 16800, 19200, 21600);
    EXPECT_EQ(first->interpolation, 1);
    const KRE_PosKeyData* second = first->next;
    EXPECT_FLOAT_EQ(second->time, 0.5f);
    ExpectVec3(second->inTangent, 1200, 600, 2400);
    ExpectVec3(second->outTangent, 2, 2, 2);
}

TEST_F(QSA_NodeImportKeysTest, TangentsAreScaledUpToTheFirstLinearKey)
{
    KRE_3dObject& node =
        Animated("*CONTROL_POS_BEZIER { *CONTROL_BEZIER_POS_KEY 0 0 0 0 1 1 1 1 1 1 "
                 "*CONTROL_POS_SAMPLE 10 0 0 0 *CONTROL_BEZIER_POS_KEY 30 0 0 0 1 1 "
                 "1 1 1 1 }");
    const KRE_PosKeyData* key = node.posKeys.Head();
    ExpectVec3(key->outTangent, 10, 10, 10);
    ExpectVec3(key->next->next->inTangent, 1, 1, 1); // after a linear key
    EXPECT_FLOAT_EQ(key->next->next->time, 30 / kTicksPerSecond);
}

TEST_F(QSA_NodeImportKeysTest, ScaleKeysLoseTheirSignAndHaveNoTangents)
{
    KRE_3dObject& node = Animated("*CONTROL_SCALE_BEZIER { *CONTROL_BEZIER_SCALE_KEY 0 -1 2 -3 "
                                  "*CONTROL_SCALE_SAMPLE 160 -4 -5 6 }");
    const KRE_ScaleKeyData* key = node.scaleKeys.Head();
    ExpectVec3(key->value, 1, 2, 3);
    ExpectVec3(key->inTangent, 0, 0, 0);
    EXPECT_EQ(key->interpolation, 1);
    ExpectVec3(key->next->value, 4, 5, 6);
    EXPECT_EQ(key->next->interpolation, 0);
}

TEST_F(QSA_NodeImportKeysTest, TimesAreSecondsFromTheFirstFrame)
{
    KRE_3dObject& node = Animated(
        "*CONTROL_POS_TRACK { *CONTROL_POS_SAMPLE 3200 0 0 0 *CONTROL_POS_SAMPLE 4000 0 0 0 }",
        "*SCENE { *SCENE_FIRSTFRAME 10 *SCENE_FRAMESPEED 25 *SCENE_TICKSPERFRAME 192 }");
    // Frame 10 is tick 1920; a second has 192 * 25 ticks.
    EXPECT_FLOAT_EQ(node.posKeys.Head()->time, 1280.0f / 4800.0f);
    EXPECT_FLOAT_EQ(node.posKeys.Tail()->time, 2080.0f / 4800.0f);
}

TEST_F(QSA_NodeImportKeysTest, KeyBeforeTheFirstOneIsACountMismatch)
{
    EXPECT_EQ(AnimationError("*CONTROL_POS_TRACK { *CONTROL_POS_SAMPLE 10 0 0 0 "
                             "*CONTROL_POS_SAMPLE 5 0 0 0 }"),
              "n: Check: Pos key numbers don't match");
    EXPECT_EQ(AnimationError("*CONTROL_SCALE_TRACK { *CONTROL_SCALE_SAMPLE 10 0 0 0 "
                             "*CONTROL_SCALE_SAMPLE 5 0 0 0 }"),
              "n: Check: Scale key numbers don't match");
    // Rotations are checked within a block; a second block starts afresh.
    EXPECT_EQ(AnimationError(Rotations("*CONTROL_ROT_SAMPLE 10 0 0 1 1") +
                             Rotations("*CONTROL_ROT_SAMPLE 5 0 0 1 1")),
              "n: Check: Rot key numbers don't match");
}

TEST_F(QSA_NodeImportKeysTest, RotationKeyOutOfOrderIsSkippedWithAWarning)
{
    Animated(
        Rotations("*CONTROL_ROT_SAMPLE 10 0 0 1 1 *CONTROL_ROT_SAMPLE 9 0 0 1 1 "
                  "*CONTROL_ROT_SAMPLE 10 0 0 1 0.5 *CONTROL_TCB_ROT_KEY 8 0 0 1 1 0 0 0 0 0"));
    EXPECT_EQ(Object(0).rotKeyCount, 2); // a key with an equal time is accepted
    EXPECT_GE(Warnings("Skipped wrong order rotation key in file: scene.qsa"), 1);
}

TEST_F(QSA_NodeImportKeysTest, AxisIsNegatedAndTheAngleIsNot)
{
    KRE_3dObject& node = Animated(Rotations("*CONTROL_ROT_SAMPLE 0 1 -2 3 -0.5"));
    ExpectVec3(node.rotKeys.Head()->axis, -1, 2, -3);
    EXPECT_EQ(node.rotKeys.Head()->angle, -0.5f);
    EXPECT_EQ(node.rotKeys.Head()->interpolation, 0);
}

TEST_F(QSA_NodeImportKeysTest, TurnsOfHalfACircleAndMoreAreSplit)
{
    const struct {
        const char* what;
        const char* angle;
        std::vector<float> expected; ///< after the first key
    } cases[] = {
        {"2.5 radians are one key", "2.5", {2.5f}},
        {"-2.5 too", "-2.5", {-2.5f}},
        // 1 + truncate(1) keys of half the angle
        {"3.141592 are two", "3.141592", {1.570796f, 1.570796f}},
        // more than half a circle goes the other way: 3.2 - 6.283184
        {"3.2 is -3.083184", "3.2", {-3.083184f}},
        {"-3.2 is not turned round", "-3.2", {-1.6f, -1.6f}},
        // both ends of the range are outside of it
        {"6.283184 are three", "6.283184", {2.0943947f, 2.0943947f, 2.0943947f}},
        {"7 are three", "7", {2.3333333f, 2.3333333f, 2.3333333f}},
        {"10 are four", "10", {2.5f, 2.5f, 2.5f, 2.5f}},
    };
    for (const auto& c : cases) {
        Animated(
            Rotations(std::string("*CONTROL_ROT_SAMPLE 0 0 0 1 1 *CONTROL_ROT_SAMPLE 4800 0 0 1 ") +
                      c.angle));
        std::vector<float> angles = Angles();
        ASSERT_EQ(angles.size(), c.expected.size() + 1) << c.what;
        for (size_t i = 0; i < c.expected.size(); ++i)
            EXPECT_NEAR(angles[i + 1], c.expected[i], 1e-6f) << c.what;
        EXPECT_FLOAT_EQ(Object(0).rotKeys.Tail()->time, 1.0f) << c.what;
    }
}

TEST_F(QSA_NodeImportKeysTest, FirstRotationKeyIsNeverSplit)
{
    Animated(Rotations("*CONTROL_ROT_SAMPLE 0 0 0 1 50"));
    EXPECT_EQ(Angles(), std::vector<float>{50.0f});
    Animated(Rotations("*CONTROL_ROT_KEY 0 0 0 1 3.2"));
    EXPECT_NEAR(Angles()[0], -3.083184f, 1e-6f); // but it is reversed
}

TEST_F(QSA_NodeImportKeysTest, SplitKeysStandAtEqualDistances)
{
    Animated(Rotations("*CONTROL_ROT_SAMPLE 0 0 0 1 1 *CONTROL_ROT_SAMPLE 4800 0 0 1 10"));
    float expected = 0.0f;
    for (const KRE_RotKeyData* key = Object(0).rotKeys.Head(); key; key = key->next) {
        EXPECT_NEAR(key->time, expected, 1e-6f);
        expected += 0.25f;
    }
}

TEST_F(QSA_NodeImportKeysTest, TcbNumbersBelongToTheArrivalAtTheKey)
{
    Animated(
        "*CONTROL_ROT_TCB { *CONTROL_TCB_ROT_KEY 0 0 0 1 3.5 1 2 3 4 5 *CONTROL_TCB_ROT_KEY 100 "
        "0 0 1 3.5 0.1 0.2 0.3 0.4 0.5 }");
    // This form does not reverse 3.5; it becomes two keys of 1.75.
    const std::vector<float> angles = Angles();
    EXPECT_EQ(angles, (std::vector<float>{3.5f, 1.75f, 1.75f}));
    const KRE_RotKeyData* first = Object(0).rotKeys.Head();
    EXPECT_EQ(first->easeOut, 5.0f);
    EXPECT_EQ(first->interpolation, 2);
    const KRE_RotKeyData* between = first->next;
    for (const float value :
         {between->tension, between->continuity, between->bias, between->easeIn, between->easeOut})
        EXPECT_EQ(value, 0.0f);
    EXPECT_EQ(between->interpolation, 2);
    const KRE_RotKeyData* last = between->next;
    EXPECT_EQ(last->tension, 0.1f);
    EXPECT_EQ(last->continuity, 0.2f);
    EXPECT_EQ(last->bias, 0.3f);
    EXPECT_EQ(last->easeIn, 0.4f);
    EXPECT_EQ(last->easeOut, 0.5f);
}

TEST_F(QSA_NodeImportKeysTest, OnlyTcbKeysHaveInnerControls)
{
    Animated(Rotations("*CONTROL_ROT_SAMPLE 0 0 0 1 1 *CONTROL_TCB_ROT_KEY 10 0 0 1 1 0 0 0 0 0"));
    const KRE_RotKeyData* key = Object(0).rotKeys.Head();
    EXPECT_EQ(key->inControl.w, 0.0f);
    EXPECT_EQ(key->outControl.w, 0.0f);
    // The last key's outer side is the key itself: a turn of 2 about -z.
    EXPECT_NEAR(key->next->outControl.z, -std::sin(1.0f), 1e-6f);
    EXPECT_NEAR(key->next->outControl.w, std::cos(1.0f), 1e-6f);
}

TEST_F(QSA_NodeImportKeysTest, RotationThatWouldBeTooManyKeysIsAnError)
{
    const std::string head = "*CONTROL_ROT_SAMPLE 0 0 0 1 1 *CONTROL_ROT_SAMPLE 100 0 0 1 ";
    // A little over 99,999 half turns are 100,000 keys.
    Animated(Rotations(head + "314157"));
    EXPECT_EQ(Object(0).rotKeyCount, 100001);
    EXPECT_EQ(AnimationError(Rotations(head + "314160")),
              "scene.qsa: Object 'n' turns too far in one rotation key: 314160");
    EXPECT_EQ(AnimationError(Rotations(head + "-1e30")),
              "scene.qsa: Object 'n' turns too far in one rotation key: -1e+30");
}

TEST_F(QSA_NodeImportKeysTest, LimitsOfKeyPartsMayBeLower)
{
    const std::string head = "*CONTROL_ROT_SAMPLE 0 0 0 1 1 ";
    loader.SetKeyPartLimits({10, 1});
    // 31 / 3.141592 are 9.9 half turns, 32 more than 10.
    EXPECT_EQ(AnimationError(Rotations(head + "*CONTROL_ROT_SAMPLE 100 0 0 1 31 ")), "no error");
    EXPECT_EQ(AnimationError(Rotations(head + "*CONTROL_ROT_SAMPLE 100 0 0 1 32 ")),
              "scene.qsa: Object 'n' turns too far in one rotation key: 32");
    // The text has 352 to 423 bytes: 1, and one for each 8 bytes, are five turns of 9, not six.
    std::string turns = head;
    for (int i = 1; i <= 8; ++i)
        turns += "*CONTROL_ROT_SAMPLE " + std::to_string(i) + " 0 0 1 31 ";
    EXPECT_EQ(AnimationError(Rotations(turns)),
              "scene.qsa: Object 'n' turns too far: 54 rotation keys in one file");
}

TEST_F(QSA_NodeImportKeysTest, ManyLongTurnsOfASmallFileAreAnError)
{
    std::string keys = "*CONTROL_ROT_SAMPLE 0 0 0 1 1 ";
    for (int i = 0; i < 2; ++i)
        keys += "*CONTROL_ROT_SAMPLE 100 0 0 1 300000 ";
    // 300000 / 3.141592 are 95,492 complete half turns; twice that is more than 100,000.
    EXPECT_EQ(AnimationError(Rotations(keys)),
              "scene.qsa: Object 'n' turns too far: 190984 rotation keys in one file");
}

// 100,000 half turns, and one more for each 8 bytes of the text.
TEST_F(QSA_NodeImportKeysTest, LongTurnsOfAFileMayReachTheirLimitButNotPassIt)
{
    constexpr double kHalfTurn = 3.141592;
    constexpr int kTurnsOf300000 = 95492; // 300000 / 3.141592 is 95,492.98
    std::string keys = "*CONTROL_ROT_SAMPLE 0 0 0 1 1 ";
    keys += "*CONTROL_ROT_SAMPLE 100000 0 0 1 300000 ";
    const auto endingIn = [&](int turns) {
        const int angle = static_cast<int>((turns + 0.5) * kHalfTurn); // in the middle of a turn
        return Node(Rotations(keys + "*CONTROL_ROT_SAMPLE 200000 0 0 1 " + std::to_string(angle)));
    };
    const std::string sample = endingIn(4600);
    const int limit = 100000 + static_cast<int>(sample.size() / 8);
    const int lastTurns = limit - kTurnsOf300000;

    const std::string reaching = endingIn(lastTurns);
    ASSERT_EQ(reaching.size(), sample.size()) << "both angles have five digits";
    EXPECT_EQ(LoadError(reaching), "no error");
    EXPECT_EQ(Object(0).rotKeyCount, 1 + 2 + limit); // each turn splits its key once more
    EXPECT_EQ(LoadError(endingIn(lastTurns + 1)),
              "scene.qsa: Object 'n' turns too far: " + std::to_string(limit + 1) +
                  " rotation keys in one file");
}

TEST_F(QSA_NodeImportKeysTest, RotationKeyThatIsNotFiniteIsAnError)
{
    for (const char* key : {"nan 0 0 1 1", "inf 0 0 1 1", "0 nan 0 1 1", "0 0 inf 1 1",
                            "0 0 0 -inf 1", "0 0 0 1 nan", "0 0 0 1 inf"})
        EXPECT_THAT(
            AnimationError(Rotations(std::string("*CONTROL_ROT_SAMPLE ") + key)),
            testing::StartsWith("scene.qsa: Object 'n' has a rotation key that is not finite"))
            << key;
}

TEST_F(QSA_NodeImportKeysTest, OtherKeysThatAreNotFiniteLoadAsTheyAre)
{
    KRE_3dObject& node = Animated(
        "*CONTROL_POS_TRACK { *CONTROL_POS_SAMPLE 0 nan inf -inf *CONTROL_POS_SAMPLE inf 0 0 0 "
        "} *CONTROL_SCALE_TRACK { *CONTROL_SCALE_SAMPLE 0 inf nan 1 }");
    EXPECT_TRUE(std::isnan(node.posKeys.Head()->value.x));
    EXPECT_EQ(node.posKeyCount, 2);
    EXPECT_TRUE(std::isinf(node.scaleKeys.Head()->value.x));
}

TEST_F(QSA_NodeImportKeysTest, KeysGoToTheNodeOfTheirBlock)
{
    const std::string block =
        "*TM_ANIMATION { *CONTROL_POS_TRACK { *CONTROL_POS_SAMPLE 0 1 2 3 } }";
    MeshText mesh = Triangle();
    mesh.more = block;
    Load(mesh.Text() + "*CAMERAOBJECT { *NODE_NAME \"c\" " + block +
         " } *LIGHTOBJECT { *NODE_NAME \"l\" " + block + " } *BONEOBJECT { *NODE_NAME \"b\" " +
         block + " }");
    EXPECT_EQ(Mesh(0).posKeyCount, 1);
    EXPECT_EQ(scene.cameras.Get(0)->posKeyCount, 1);
    EXPECT_EQ(scene.lights.Get(0)->posKeyCount, 1);
    EXPECT_EQ(Object(0).posKeyCount, 1);
}

TEST_F(QSA_NodeImportKeysTest, OtherWordsInABlockAreSkipped)
{
    KRE_3dObject& node = Animated("*OTHER { *CONTROL_POS_TRACK { *CONTROL_POS_SAMPLE 0 9 9 9 } } "
                                  "*CONTROL_POS_TRACK { *CONTROL_SCALE_SAMPLE 0 1 1 1 *FOO "
                                  "*CONTROL_POS_SAMPLE 0 1 2 3 4 5 }");
    EXPECT_EQ(node.posKeyCount, 1);
    EXPECT_EQ(node.scaleKeyCount, 0);
    ExpectVec3(node.posKeys.Head()->value, 1, 2, 3);
}
