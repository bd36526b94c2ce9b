#include "scene/KRE_KeyEvaluation.h"

#include <limits>
#include <random>

#include "scene/KRE_KeyTracks.h"
#include "scene/WrapTime.h"
#include "tests/scene/SceneTesting.h"

static constexpr KRE_KeyLoop kNoLoop = {0, 100};

static D3DXVECTOR3 PosAt(const KRE_KeyTracks& tracks, float time, KRE_KeyLoop loop = kNoLoop)
{
    return EvaluateKeys(tracks.posKeys, tracks.posIndex, time, loop);
}

static D3DXQUATERNION RotAt(const KRE_KeyTracks& tracks, float time, KRE_KeyLoop loop = kNoLoop)
{
    return EvaluateKeys(tracks.rotKeys, tracks.rotIndex, time, loop);
}

static KRE_PosKeyData BezierKey(float time, float x, float in, float out)
{
    KRE_PosKeyData key = PosKey(time, x);
    key.inTangent = {in, 0, 0};
    key.outTangent = {out, 0, 0};
    key.interpolation = kKeyBezier;
    return key;
}

TEST(PositionKeys, OneKeyGivesItsValueAtEveryTime)
{
    KRE_KeyTracks tracks;
    tracks.AddPosKey(PosKey(2, 7, 8, 9));
    for (const float time : {-5.0f, 0.0f, 2.0f, 3.0f, 1e9f})
        ExpectVector(PosAt(tracks, time), 7, 8, 9);
}

TEST(PositionKeys, OneLoopingKeyGivesItsValueOverTheWholeLoop)
{
    KRE_KeyTracks tracks;
    tracks.AddPosKey(PosKey(1, 7, 8, 9));
    for (const float time : {0.0f, 1.0f, 2.5f, 4.0f})
        ExpectVector(PosAt(tracks, time, {1, 4}), 7, 8, 9);
}

TEST(PositionKeys, ATimeOnAKeyGivesThatKey)
{
    KRE_KeyTracks tracks;
    tracks.AddPosKey(BezierKey(1, 3, 50, 60));
    tracks.AddPosKey(BezierKey(2, 5, 70, 80));
    tracks.AddPosKey(BezierKey(4, 9, 90, 20));
    EXPECT_EQ(PosAt(tracks, 1).x, 3.0f);
    EXPECT_EQ(PosAt(tracks, 2).x, 5.0f);
    EXPECT_EQ(PosAt(tracks, 4).x, 9.0f);
}

TEST(PositionKeys, LinearIsSubtractScaleAdd)
{
    KRE_KeyTracks tracks;
    tracks.AddPosKey(PosKey(1, 2, 0, -4));
    tracks.AddPosKey(PosKey(3, 10, 8, 4));
    ExpectVector(PosAt(tracks, 1.5f), 4, 2, -2, "a quarter of the way", 0);
}

TEST(PositionKeys, BezierIsAHermiteSumWithTheArrivingTangentSubtracted)
{
    // u = 1/4: h00 = 27/32, h01 = 5/32, h10 = 9/64, h11 = -3/64. From 0 with 3 to 10 with 2:
    // 9/64 * 3 + 3/64 * 2 + 5/32 * 10 = 2.078125, all exact in single precision.
    KRE_KeyTracks tracks;
    tracks.AddPosKey(BezierKey(0, 0, 0, 3));
    tracks.AddPosKey(BezierKey(4, 10, 2, 0));
    EXPECT_EQ(PosAt(tracks, 1).x, 2.078125f);
}

TEST(PositionKeys, TheLeavingKeyDecidesTheKind)
{
    KRE_KeyTracks tracks;
    KRE_PosKeyData bezier = BezierKey(0, 0, 0, 0);
    tracks.AddPosKey(bezier);
    tracks.AddPosKey(PosKey(4, 10));
    tracks.AddPosKey(PosKey(8, 20));
    EXPECT_EQ(PosAt(tracks, 1).x, 1.5625f); // 5/32 of the way: Bezier though the next is linear
    EXPECT_EQ(PosAt(tracks, 5).x, 12.5f);
}

TEST(PositionKeys, AnUnknownKindReadsAsLinear)
{
    for (const int kind : {0, 2, 3, 65535}) {
        KRE_KeyTracks tracks;
        KRE_PosKeyData key = BezierKey(0, 0, 5, 5);
        key.interpolation = static_cast<uint16_t>(kind);
        tracks.AddPosKey(key);
        tracks.AddPosKey(PosKey(4, 10));
        EXPECT_EQ(PosAt(tracks, 1).x, 2.5f) << kind;
    }
}

TEST(PositionKeys, OfTwoWithTheSameTimeTheLaterAddedIsSelected)
{
    KRE_KeyTracks tracks;
    tracks.AddPosKey(PosKey(0, 0));
    tracks.AddPosKey(PosKey(2, 10));
    tracks.AddPosKey(PosKey(2, 30));
    tracks.AddPosKey(PosKey(4, 50));
    for (const bool withIndex : {false, true}) {
        if (withIndex) {
            ASSERT_TRUE(tracks.posIndex.Build(tracks.posKeys, 4));
        }
        EXPECT_EQ(PosAt(tracks, 1).x, 5.0f) << withIndex;
        EXPECT_EQ(PosAt(tracks, 2).x, 30.0f) << withIndex;
        EXPECT_EQ(PosAt(tracks, 3).x, 40.0f) << withIndex;
    }
}

TEST(PositionKeys, ALoopClosesTowardsTheHeadAtTheLoopEnd)
{
    KRE_KeyTracks tracks;
    tracks.AddPosKey(PosKey(1, 10));
    tracks.AddPosKey(PosKey(2, 20));
    EXPECT_EQ(PosAt(tracks, 3, {1, 6}).x, 17.5f); // a quarter of the way from 2 s to 6 s
    EXPECT_EQ(PosAt(tracks, 6, {1, 6}).x, 10.0f);
    EXPECT_EQ(PosAt(tracks, 0.5f, {1, 6}).x, 10.0f) << "before the first key";
    EXPECT_EQ(PosAt(tracks, 3, {0, 6}).x, 20.0f) << "without the loop";
}

TEST(PositionKeys, ABezierLoopClosesWithTheHeadsArrivingTangent)
{
    // u = 1/4 from 20 back to 0 with an arriving tangent of 2: 27/32 * 20 + 3/64 * 2 = 16.96875.
    KRE_KeyTracks tracks;
    tracks.AddPosKey(BezierKey(0, 0, 2, 0));
    tracks.AddPosKey(BezierKey(2, 20, 0, 0));
    EXPECT_EQ(PosAt(tracks, 3, {1, 6}).x, 16.96875f);
}

TEST(PositionKeys, ALoopThatEndsOnTheLastKeyGivesThatKeyThere)
{
    KRE_KeyTracks tracks;
    tracks.AddPosKey(PosKey(0, 10));
    tracks.AddPosKey(PosKey(2, 20));
    EXPECT_EQ(PosAt(tracks, 2, {1, 2}).x, 20.0f);
}

TEST(ScaleKeys, AreEvaluatedAsPositionsAre)
{
    KRE_KeyTracks tracks;
    KRE_ScaleKeyData key = ScaleKey(0, 1, 2, 3);
    key.interpolation = kKeyBezier;
    tracks.AddScaleKey(key);
    tracks.AddScaleKey(ScaleKey(4, 33, 2, 3));
    // Tangents 0, u = 1/4: 1 + 5/32 * 32.
    ExpectVector(EvaluateKeys(tracks.scaleKeys, tracks.scaleIndex, 1, kNoLoop), 6, 2, 3);
}

TEST(RotationKeys, OneKeyGivesItsValueAtEveryTime)
{
    KRE_KeyTracks tracks;
    tracks.AddRotKey(RotKey(2, 0.5f));
    for (const float time : {-5.0f, 0.0f, 2.0f, 3.0f, 1e9f})
        ExpectTurnAboutZ(RotAt(tracks, time), 0.5);
    for (const float time : {0.0f, 2.0f, 3.0f, 4.0f})
        ExpectTurnAboutZ(RotAt(tracks, time, {1, 4}), 0.5, "looping");
}

TEST(RotationKeys, SlerpBetweenKeys)
{
    KRE_KeyTracks tracks;
    tracks.AddRotKey(RotKey(0, 0.5f));
    tracks.AddRotKey(RotKey(2, 2));
    ExpectTurnAboutZ(RotAt(tracks, 0.5f), 1.0); // 0.5 + a quarter of 2
    ExpectTurnAboutZ(RotAt(tracks, 9), 2.5);
}

TEST(RotationKeys, AnUnknownKindReadsAsSlerp)
{
    for (const int kind : {1, 3, 65535}) {
        KRE_KeyTracks tracks;
        KRE_RotKeyData key = RotKey(0, 0.5f);
        key.interpolation = static_cast<uint16_t>(kind);
        tracks.AddRotKey(key);
        tracks.AddRotKey(RotKey(2, 2));
        ExpectTurnAboutZ(RotAt(tracks, 0.5f), 1.0);
    }
}

TEST(RotationKeys, QuirkBeforeTheFirstKeyOnlyItsAxisAndAngleCount)
{
    KRE_KeyTracks tracks;
    tracks.AddRotKey(RotKey(1, 0.5f));
    tracks.rotKeys.Head()->rotation = TurnAboutZ(2);
    ExpectTurnAboutZ(RotAt(tracks, 0), 0.5);
    ExpectTurnAboutZ(RotAt(tracks, 1), 2);
}

/// Two TCB keys at 0 s and 1 s: turns about z by 0 and 1 with the given inner controls.
static KRE_KeyTracks TcbPair(double outControl, double inControl)
{
    KRE_KeyTracks tracks;
    for (const float time : {0.0f, 1.0f}) {
        KRE_RotKeyData key = RotKey(time, time);
        key.interpolation = kKeyTcb;
        tracks.AddRotKey(key);
    }
    tracks.rotKeys.Head()->outControl = TurnAboutZ(outControl);
    tracks.rotKeys.Tail()->inControl = TurnAboutZ(inControl);
    return tracks;
}

TEST(RotationKeys, TcbSegmentWorkedThroughOnPaper)
{
    // Turns about one axis, so each slerp is linear in the angle. Angles 0, out 0.2, in 0.7, 1;
    // continuity 0.5 and -0.25; u = 0.4 and no ease, so s = 0.4, a = 1.5, b = 0.75 * 0.4 = 0.3,
    // c = 1 - 0.6 * 1.5 = 0.1.
    // q1 = 0.3 * 0.2 = 0.06           q2 = 0.2 + 0.4 * 0.5 = 0.4     q3 = 0.7 + 0.1 * 0.3 = 0.73
    // q4 = 0.06 + 0.3 * 0.34 = 0.162  q5 = 0.4 + 0.1 * 0.33 = 0.433
    // 0.162 + 0.4 * 0.271 = 0.2704
    KRE_KeyTracks tracks = TcbPair(0.2, 0.7);
    tracks.rotKeys.Head()->continuity = 0.5f;
    tracks.rotKeys.Tail()->continuity = -0.25f;
    ExpectTurnAboutZ(RotAt(tracks, 0.4f), 0.2704);
}

TEST(RotationKeys, TcbSegmentIsEased)
{
    // An outgoing and an incoming ease of 0.7 are scaled to 0.5 each: s(0.25) = 0.125. Without
    // continuity b and c are s, which makes it a Bezier curve: with controls at the thirds of a
    // steady turn it is s itself.
    KRE_KeyTracks tracks = TcbPair(1.0 / 3, 2.0 / 3);
    tracks.rotKeys.Head()->easeOut = 0.7f;
    tracks.rotKeys.Head()->easeIn = 0.3f; // on the other side: has no effect
    tracks.rotKeys.Tail()->easeIn = 0.7f;
    ExpectTurnAboutZ(RotAt(tracks, 0.25f), 0.125);
}

TEST(RotationKeys, BiasHasNoEffect)
{
    KRE_KeyTracks tracks = TcbPair(0.2, 0.7);
    const D3DXQUATERNION before = RotAt(tracks, 0.4f);
    tracks.rotKeys.Head()->bias = 0.9f;
    tracks.rotKeys.Tail()->bias = -0.9f;
    EXPECT_TRUE(RotAt(tracks, 0.4f) == before);
}

TEST(RotationKeys, QuirkALoopClosesWithAPlainSlerpForTcbKeysToo)
{
    KRE_KeyTracks tracks = TcbPair(0.2, 0.7);
    tracks.rotKeys.Tail()->outControl = TurnAboutZ(3);
    ExpectTurnAboutZ(RotAt(tracks, 2, {1, 5}), 0.75); // a quarter of the way from 1 back to 0
}

TEST(KeyEvaluation, IsContinuousAtKeys)
{
    std::mt19937 random(11);
    std::uniform_real_distribution<float> value(-2, 2);
    KRE_KeyTracks tracks;
    for (int i = 0; i < 20; ++i) {
        KRE_PosKeyData pos =
            BezierKey(static_cast<float>(i), value(random), value(random), value(random));
        pos.interpolation = static_cast<uint16_t>(i % 3);
        tracks.AddPosKey(pos);
        KRE_RotKeyData rot = RotKey(static_cast<float>(i), value(random));
        rot.axis = {value(random), value(random), 1};
        rot.interpolation = i % 2 ? kKeyTcb : kKeyLinear;
        rot.tension = value(random) / 4;
        rot.continuity = value(random) / 4;
        tracks.AddRotKey(rot);
    }
    for (KRE_RotKeyData* key = tracks.rotKeys.Head(); key; key = key->next)
        ComputeInnerControls(*key);

    const float step = 1.0f / 4096;
    for (int i = 1; i < 19; ++i) {
        const float time = static_cast<float>(i);
        const D3DXVECTOR3 at = PosAt(tracks, time);
        EXPECT_NEAR(PosAt(tracks, time - step).x, at.x, 0.01f) << i;
        EXPECT_NEAR(PosAt(tracks, time + step).x, at.x, 0.01f) << i;
        // q and -q are the same rotation: a slerp may give either sign.
        const D3DXQUATERNION turn = RotAt(tracks, time);
        const D3DXQUATERNION before = RotAt(tracks, time - step);
        const D3DXQUATERNION after = RotAt(tracks, time + step);
        EXPECT_NEAR(std::fabs(D3DXQuaternionDot(&turn, &before)), 1, 1e-3) << i;
        EXPECT_NEAR(std::fabs(D3DXQuaternionDot(&turn, &after)), 1, 1e-3) << i;
    }
}

TEST(KeyEvaluation, ALoopingTrackAgreesOnePeriodLater)
{
    KRE_KeyTracks tracks;
    for (int i = 0; i < 5; ++i) {
        tracks.AddPosKey(BezierKey(static_cast<float>(i), static_cast<float>(i * i), 1, -1));
        tracks.AddRotKey(RotKey(static_cast<float>(i), 0.5f));
    }
    const KRE_KeyLoop loop = {1, 8};
    for (double time = -8; time < 16; time += 0.125) {
        const float now = WrapTime(time, loop.loopEnd);
        const float later = WrapTime(time + loop.loopEnd, loop.loopEnd);
        EXPECT_NEAR(PosAt(tracks, now, loop).x, PosAt(tracks, later, loop).x, 1e-5) << time;
        const D3DXQUATERNION a = RotAt(tracks, now, loop);
        const D3DXQUATERNION b = RotAt(tracks, later, loop);
        EXPECT_NEAR(std::fabs(D3DXQuaternionDot(&a, &b)), 1, 1e-5) << time;
    }
}

TEST(KeyEvaluation, AgreesWithAndWithoutAnIndexOnRandomLists)
{
    std::mt19937 random(5);
    for (int round = 0; round < 50; ++round) {
        KRE_KeyTracks walked;
        float time = 0;
        const int count = 1 + static_cast<int>(random() % 30);
        for (int i = 0; i < count; ++i) {
            walked.AddPosKey(BezierKey(time, static_cast<float>(random() % 100), 3, 4));
            walked.AddRotKey(RotKey(time, static_cast<float>(random() % 6)));
            time += static_cast<float>(random() % 4) / 2;
        }
        KRE_KeyTracks indexed(walked);
        ASSERT_TRUE(indexed.posIndex.Build(indexed.posKeys, count));
        ASSERT_TRUE(indexed.rotIndex.Build(indexed.rotKeys, count));
        const KRE_KeyLoop loop = {static_cast<int32_t>(random() % 2), time + 1};
        for (float t = -1; t < time + 1; t += 0.125f) {
            ASSERT_TRUE(PosAt(walked, t, loop) == PosAt(indexed, t, loop)) << t;
            ASSERT_TRUE(RotAt(walked, t, loop) == RotAt(indexed, t, loop)) << t;
        }
    }
}

TEST(KeyEvaluation, TimesThatAreNotNumbersOrInfiniteTerminate)
{
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
    const float odd[] = {kNaN, kInfinity, -kInfinity, 0, 3};
    for (const float first : odd) {
        for (const float second : odd) {
            for (const float third : odd) {
                KRE_KeyTracks tracks;
                for (const float time : {first, second, third}) { // as a loaded chain, in any order
                    tracks.posKeys.Append(PosKey(time, 1));
                    tracks.rotKeys.Append(RotKey(time, 1));
                }
                for (const bool withIndex : {false, true}) {
                    if (withIndex) {
                        ASSERT_TRUE(tracks.posIndex.Build(tracks.posKeys, 3));
                        ASSERT_TRUE(tracks.rotIndex.Build(tracks.rotKeys, 3));
                    }
                    for (const float time : odd) {
                        PosAt(tracks, time, {1, 2});
                        RotAt(tracks, time, {0, 2});
                    }
                }
                // A finite time between two finite keys is not affected by the other keys.
                if (first == 0 && second == 3) {
                    EXPECT_EQ(PosAt(tracks, 1).x, 1.0f) << third;
                }
            }
        }
    }
}
