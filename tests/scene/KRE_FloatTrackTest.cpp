#include "scene/KRE_FloatTrack.h"

#include <cmath>
#include <gtest/gtest.h>
#include <initializer_list>
#include <limits>
#include <random>

static KRE_FloatTrack MakeTrack(int32_t interpolation, std::initializer_list<KRE_FloatKey> keys)
{
    KRE_FloatTrack track;
    track.SetKeyCount(static_cast<int32_t>(keys.size()));
    std::copy(keys.begin(), keys.end(), track.Keys());
    track.interpolation = interpolation;
    return track;
}

TEST(KRE_FloatTrack, StartsEmptyAsBezierWithoutLoop)
{
    const KRE_FloatTrack track;
    EXPECT_EQ(track.GetKeyCount(), 0);
    EXPECT_EQ(track.interpolation, 1);
    EXPECT_EQ(track.loop, 0);
    EXPECT_EQ(track.secondFlag, 0);
    EXPECT_EQ(track.loopEnd, 0.0f);
    EXPECT_EQ(track.Keys(), nullptr);
}

TEST(KRE_FloatTrack, WithoutKeysIsZeroAtAnyTime)
{
    KRE_FloatTrack track;
    EXPECT_EQ(track.Evaluate(1.0f), 0.0f);
    track.loop = 1;
    EXPECT_EQ(track.Evaluate(1.0f), 0.0f);
}

TEST(KRE_FloatTrack, SetKeyCountGivesEmptyKeys)
{
    KRE_FloatTrack track = MakeTrack(0, {{1.0f, 2.0f, 3.0f, 4.0f}});
    track.SetKeyCount(2);
    ASSERT_EQ(track.GetKeyCount(), 2);
    EXPECT_EQ(track.Key(0).value, 0.0f);
    track.SetKeyCount(-5);
    EXPECT_EQ(track.GetKeyCount(), 0);
    EXPECT_EQ(track.Keys(), nullptr);
}

TEST(KRE_FloatTrack, ResizeKeepsTheFirstKeysAndClearsTheSecondFlag)
{
    KRE_FloatTrack track = MakeTrack(1, {{0.0f, 1.0f, 0.0f, 0.0f}, {1.0f, 2.0f, 0.0f, 0.0f}});
    track.secondFlag = 1;
    track.Resize(3);
    ASSERT_EQ(track.GetKeyCount(), 3);
    EXPECT_EQ(track.Key(1).value, 2.0f);
    EXPECT_EQ(track.Key(2).value, 0.0f);
    EXPECT_EQ(track.secondFlag, 0);
    track.Resize(1);
    ASSERT_EQ(track.GetKeyCount(), 1);
    EXPECT_EQ(track.Key(0).value, 1.0f);
}

TEST(KRE_FloatTrack, CopyHasKeysOfItsOwn)
{
    KRE_FloatTrack track = MakeTrack(0, {{0.0f, 1.0f, 0.0f, 0.0f}});
    track.loop = 1;
    track.loopEnd = 2.0f;
    KRE_FloatTrack copy = track;
    track.Key(0).value = 9.0f;
    EXPECT_EQ(copy.Key(0).value, 1.0f);
    EXPECT_EQ(copy.interpolation, 0);
    EXPECT_EQ(copy.loop, 1);
    EXPECT_EQ(copy.loopEnd, 2.0f);
    copy = *&copy;
    EXPECT_EQ(copy.Key(0).value, 1.0f);
}

TEST(KRE_FloatTrack, HoldsTheFirstAndTheLastValueOutside)
{
    KRE_FloatTrack track = MakeTrack(0, {{1.0f, 10.0f, 0.0f, 0.0f}, {2.0f, 20.0f, 0.0f, 0.0f}});
    EXPECT_EQ(track.Evaluate(-1.0f), 10.0f);
    EXPECT_EQ(track.Evaluate(1.0f), 10.0f);
    EXPECT_EQ(track.Evaluate(2.0f), 20.0f);
    EXPECT_EQ(track.Evaluate(99.0f), 20.0f);
}

TEST(KRE_FloatTrack, OneKeyWithoutLoopHoldsAtEveryTime)
{
    KRE_FloatTrack track = MakeTrack(1, {{1.0f, 10.0f, 3.0f, 4.0f}});
    for (const float time : {-1.0f, 0.0f, 1.0f, 5.0f})
        EXPECT_EQ(track.Evaluate(time), 10.0f) << time;
}

TEST(KRE_FloatTrack, LinearIsAStraightLine)
{
    KRE_FloatTrack track = MakeTrack(0, {{1.0f, 10.0f, 7.0f, 7.0f}, {3.0f, 20.0f, 7.0f, 7.0f}});
    EXPECT_EQ(track.Evaluate(1.5f), 12.5f); // u = 0.25
}

TEST(KRE_FloatTrack, UnknownInterpolationReadsAsLinear)
{
    KRE_FloatTrack track = MakeTrack(7, {{1.0f, 10.0f, 7.0f, 7.0f}, {3.0f, 20.0f, 7.0f, 7.0f}});
    EXPECT_EQ(track.Evaluate(1.5f), 12.5f);
}

TEST(KRE_FloatTrack, BezierWeighsTangentsThatPointAwayFromTheirKeys)
{
    // u = 0.5: h00 = h01 = 0.5, h10 = 0.125, h11 = -0.125.
    // 0.125 * 8 + 0.5 * 10 - (-0.125) * 4 + 0.5 * 20 = 1 + 5 + 0.5 + 10
    KRE_FloatTrack track = MakeTrack(1, {{1.0f, 10.0f, 0.0f, 8.0f}, {3.0f, 20.0f, 4.0f, 0.0f}});
    EXPECT_EQ(track.Evaluate(2.0f), 16.5f);
}

TEST(KRE_FloatTrack, DerivativeIsTheSlopePerSecond)
{
    // u = 0.5: h00' = -1.5, h01' = 1.5, h10' = 0.75 - 2 + 1 = -0.25, h11' = 0.75 - 1 = -0.25.
    // (-0.25 * 8 - 1.5 * 10 + 0.25 * 4 + 1.5 * 20) / 2 seconds = (-2 - 15 + 1 + 30) / 2
    KRE_FloatTrack track = MakeTrack(1, {{1.0f, 10.0f, 0.0f, 8.0f}, {3.0f, 20.0f, 4.0f, 0.0f}});
    float derivative = -99.0f;
    track.Evaluate(2.0f, &derivative);
    EXPECT_EQ(derivative, 7.0f);
}

TEST(KRE_FloatTrack, DerivativeIsLeftAloneByLinearTracksAndOutside)
{
    KRE_FloatTrack track = MakeTrack(1, {{1.0f, 10.0f, 0.0f, 8.0f}, {3.0f, 20.0f, 4.0f, 0.0f}});
    float derivative = -99.0f;
    track.Evaluate(0.0f, &derivative);
    track.Evaluate(3.0f, &derivative);
    track.interpolation = 0;
    track.Evaluate(2.0f, &derivative);
    EXPECT_EQ(derivative, -99.0f);
}

TEST(KRE_FloatTrack, ATimeOnAKeyGivesItsValue)
{
    KRE_FloatTrack track = MakeTrack(1, {{0.0f, 1.0f, 5.0f, 6.0f},
                                         {1.0f, 2.0f, 7.0f, 8.0f},
                                         {4.0f, 3.0f, 9.0f, 1.0f},
                                         {5.0f, 4.0f, 2.0f, 3.0f}});
    for (int32_t i = 0; i < 4; ++i)
        EXPECT_EQ(track.Evaluate(track.Key(i).time), track.Key(i).value) << i;
}

TEST(KRE_FloatTrack, OfTwoKeysAtTheSameTimeTheLaterOneHolds)
{
    KRE_FloatTrack track = MakeTrack(0, {{0.0f, 1.0f, 0.0f, 0.0f},
                                         {1.0f, 2.0f, 0.0f, 0.0f},
                                         {1.0f, 30.0f, 0.0f, 0.0f},
                                         {2.0f, 40.0f, 0.0f, 0.0f}});
    EXPECT_EQ(track.Evaluate(1.0f), 30.0f);
    EXPECT_EQ(track.Evaluate(1.5f), 35.0f);
    EXPECT_EQ(track.Evaluate(0.5f), 1.5f);
}

TEST(KRE_FloatTrack, LoopGoesFromTheLastKeyToTheFirst)
{
    // Loop from 1 to 5: the time 4 is folded from 1 to 5 seconds: 1 + wrap(4, 4) = 1. Time 3 stays:
    // 1 + 3 = 4 is between the key at 3 and the loop's end at 5, u = 0.5.
    KRE_FloatTrack track = MakeTrack(0, {{1.0f, 10.0f, 0.0f, 0.0f}, {3.0f, 20.0f, 0.0f, 0.0f}});
    track.loop = 1;
    track.loopEnd = 5.0f;
    EXPECT_EQ(track.Evaluate(3.0f), 15.0f);
    EXPECT_EQ(track.Evaluate(4.0f), 10.0f);
    EXPECT_EQ(track.Evaluate(3.0f + 4.0f), 15.0f);
    EXPECT_EQ(track.loopEnd, 5.0f);
}

TEST(KRE_FloatTrack, LoopAgreesOneLengthLater)
{
    KRE_FloatTrack track = MakeTrack(
        1, {{0.0f, 1.0f, 0.5f, 0.25f}, {1.0f, 4.0f, 2.0f, 1.0f}, {3.0f, 2.0f, 0.5f, 3.0f}});
    track.loop = 1;
    track.loopEnd = 4.0f;
    for (int i = 0; i < 32; ++i) {
        const float time = static_cast<float>(i) * 0.125f;
        EXPECT_EQ(track.Evaluate(time), track.Evaluate(time + 4.0f)) << time;
    }
}

TEST(KRE_FloatTrack, LoopEndOfZeroIsRaisedToTheLastKeyAtTheFirstEvaluation)
{
    KRE_FloatTrack track = MakeTrack(0, {{0.0f, 10.0f, 0.0f, 0.0f}, {2.0f, 20.0f, 0.0f, 0.0f}});
    track.loop = 1;
    EXPECT_EQ(track.Evaluate(3.0f), 15.0f); // wrap(3, 2) = 1
    EXPECT_EQ(track.loopEnd, 2.0f);
}

TEST(KRE_FloatTrack, OneLoopedKeyGoesFromItselfToItself)
{
    KRE_FloatTrack track = MakeTrack(0, {{1.0f, 10.0f, 0.0f, 0.0f}});
    track.loop = 1;
    track.loopEnd = 3.0f;
    EXPECT_EQ(track.Evaluate(0.5f), 10.0f);
    EXPECT_EQ(track.Evaluate(7.25f), 10.0f);
    track.loopEnd = 0.0f; // raised to the key: a loop without length
    EXPECT_EQ(track.Evaluate(0.5f), 10.0f);
}

/// An independent reference: finds the segment by a walk over all keys and interpolates linearly.
static float WalkLinear(const KRE_FloatTrack& track, float time)
{
    int32_t i = 0;
    while (i + 2 < track.GetKeyCount() && track.Key(i + 1).time <= time)
        ++i;
    const KRE_FloatKey& from = track.Key(i);
    const KRE_FloatKey& to = track.Key(i + 1);
    return (to.value - from.value) * ((time - from.time) / (to.time - from.time)) + from.value;
}

TEST(KRE_FloatTrack, SearchFindsTheSegmentThatAWalkFinds)
{
    std::mt19937 random(1);
    for (int32_t count = 2; count <= 60; ++count) {
        KRE_FloatTrack track;
        track.SetKeyCount(count);
        track.interpolation = 0;
        float time = 0.0f;
        for (int32_t i = 0; i < count; ++i) {
            // Gaps from even to very uneven, which mislead the guesses.
            const float gap = static_cast<float>(random() % 1000 + 1);
            time += i % 7 == 0 ? gap * gap * 0.001f : gap * 0.01f;
            track.Key(i) = {time, static_cast<float>(random() % 100), 0.0f, 0.0f};
        }
        const float first = track.Key(0).time;
        for (int i = 1; i < 200; ++i) {
            const float at = first + (time - first) * static_cast<float>(i) / 200.0f;
            EXPECT_EQ(track.Evaluate(at), WalkLinear(track, at)) << count << " keys at " << at;
        }
    }
}

TEST(KRE_FloatTrack, AnyTimesOfAFileFindAKey)
{
    const float infinity = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float odd[] = {0.0f, -1.0f, 5.0f, infinity, -infinity, nan, 1e38f, -1e38f, 2.0f};
    std::mt19937 random(2);
    for (int round = 0; round < 3000; ++round) {
        KRE_FloatTrack track;
        track.SetKeyCount(static_cast<int32_t>(random() % 6 + 1));
        for (int32_t i = 0; i < track.GetKeyCount(); ++i)
            track.Key(i) = {odd[random() % 9], 1.0f, 0.0f, 0.0f};
        track.loop = static_cast<uint8_t>(random() % 2);
        track.loopEnd = odd[random() % 9];
        track.interpolation = 0;
        // Between values of 1 a line gives 1, unless the position on it is NaN.
        const float value = track.Evaluate(odd[random() % 9]);
        EXPECT_TRUE(value == 1.0f || std::isnan(value)) << value;
    }
}

TEST(KRE_FloatTrack, ATimeThatIsNotANumberHoldsTheFirstKey)
{
    KRE_FloatTrack track = MakeTrack(1, {{1.0f, 10.0f, 0.0f, 8.0f}, {3.0f, 20.0f, 4.0f, 0.0f}});
    EXPECT_EQ(track.Evaluate(std::numeric_limits<float>::quiet_NaN()), 10.0f);
}
