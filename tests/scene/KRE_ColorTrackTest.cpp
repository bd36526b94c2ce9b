#include "scene/KRE_ColorTrack.h"

#include <gtest/gtest.h>

/// Two keys a second apart from 1 s on, as the importer makes them: alpha 1, its tangents 0.
static KRE_ColorTrack MakeTrack(int32_t interpolation)
{
    KRE_ColorTrack track;
    track.SetKeyCount(2);
    track.interpolation = interpolation;
    track.Key(0) = {1.0f, {0.0f, 0.25f, 1.0f, 1.0f}, {}, {8.0f, 0.0f, 0.0f, 0.0f}};
    track.Key(1) = {2.0f, {1.0f, 0.75f, 0.0f, 1.0f}, {0.0f, 4.0f, 0.0f, 0.0f}, {}};
    return track;
}

static void ExpectTrackColor(const D3DCOLORVALUE& color, float r, float g, float b, float a)
{
    EXPECT_EQ(color.r, r);
    EXPECT_EQ(color.g, g);
    EXPECT_EQ(color.b, b);
    EXPECT_EQ(color.a, a);
}

TEST(KRE_ColorTrack, StartsEmptyAsBezierWithoutLoop)
{
    const KRE_ColorTrack track;
    EXPECT_EQ(track.GetKeyCount(), 0);
    EXPECT_EQ(track.interpolation, 1);
    EXPECT_EQ(track.loop, 0);
    EXPECT_EQ(track.secondFlag, 0);
    EXPECT_EQ(track.loopEnd, 0.0f);
}

TEST(KRE_ColorTrack, WithoutKeysIsZero)
{
    KRE_ColorTrack track;
    ExpectTrackColor(track.Evaluate(1.0f), 0.0f, 0.0f, 0.0f, 0.0f);
}

TEST(KRE_ColorTrack, HoldsAllFourComponentsOutside)
{
    KRE_ColorTrack track = MakeTrack(1);
    ExpectTrackColor(track.Evaluate(0.0f), 0.0f, 0.25f, 1.0f, 1.0f);
    ExpectTrackColor(track.Evaluate(3.0f), 1.0f, 0.75f, 0.0f, 1.0f);
}

TEST(KRE_ColorTrack, TwoKeysWithoutLoopUseTheirOneSegment)
{
    // u = 0.25, on a line: 0 + 0.25, 0.25 + 0.5 * 0.25, 1 - 0.25.
    KRE_ColorTrack track = MakeTrack(0);
    const D3DCOLORVALUE color = track.Evaluate(1.25f);
    ExpectTrackColor(color, 0.25f, 0.375f, 0.75f, 1.0f);
}

TEST(KRE_ColorTrack, BezierInterpolatesTheFirstThreeComponents)
{
    // u = 0.5: h00 = h01 = 0.5, h10 = 0.125, h11 = -0.125.
    // r = 0.125 * 8 + 0.5, g = 0.5 * 0.25 + 0.125 * 4 + 0.5 * 0.75, b = 0.5.
    KRE_ColorTrack track = MakeTrack(1);
    const D3DCOLORVALUE color = track.Evaluate(1.5f);
    EXPECT_EQ(color.r, 1.5f);
    EXPECT_EQ(color.g, 1.0f);
    EXPECT_EQ(color.b, 0.5f);
}

TEST(KRE_ColorTrack, QuirkBezierAlphaIsTheSumOfBothKeys)
{
    KRE_ColorTrack track = MakeTrack(1);
    EXPECT_EQ(track.Evaluate(1.5f).a, 2.0f);
    track.Key(0).outTangent.a = 0.5f;
    track.Key(1).inTangent.a = 0.25f;
    EXPECT_EQ(track.Evaluate(1.5f).a, 2.25f); // 1 + 0.5 - 0.25 + 1
}

TEST(KRE_ColorTrack, QuirkLinearAlphaIsTheNextKeysAtOnce)
{
    KRE_ColorTrack track = MakeTrack(0);
    EXPECT_EQ(track.Evaluate(1.5f).a, 1.0f);
    track.Key(1).value.a = 0.25f;
    EXPECT_EQ(track.Evaluate(1.125f).a, 0.25f);
}

TEST(KRE_ColorTrack, DerivativeIsOfTheFirstThreeComponents)
{
    // u = 0.5: h00' = -1.5, h01' = 1.5, h10' = h11' = -0.25, over one second.
    // r = -0.25 * 8 + 1.5, g = -1.5 * 0.25 + 0.25 * 4 + 1.5 * 0.75, b = -1.5.
    KRE_ColorTrack track = MakeTrack(1);
    D3DCOLORVALUE derivative = {-99.0f, -99.0f, -99.0f, -99.0f};
    track.Evaluate(1.5f, &derivative);
    ExpectTrackColor(derivative, -0.5f, 1.75f, -1.5f, -99.0f);
}

TEST(KRE_ColorTrack, DerivativeIsPerSecondHoweverLongTheSegmentIs)
{
    KRE_ColorTrack track = MakeTrack(1);
    track.Key(1).time = 5.0f; // four seconds after the first: a quarter of the slopes above
    D3DCOLORVALUE derivative = {};
    track.Evaluate(3.0f, &derivative);
    ExpectTrackColor(derivative, -0.125f, 0.4375f, -0.375f, 0.0f);
}

TEST(KRE_ColorTrack, LoopGoesFromTheLastKeyToTheFirst)
{
    // The loop runs from 1 to 4; wrap(2, 3) = 2 gives the time 3, half way from the key at 2 to 4.
    KRE_ColorTrack track = MakeTrack(0);
    track.loop = 1;
    track.loopEnd = 4.0f;
    ExpectTrackColor(track.Evaluate(2.0f), 0.5f, 0.5f, 0.5f, 1.0f);
}

TEST(KRE_ColorTrack, LoopEndIsRaisedToTheLastKey)
{
    KRE_ColorTrack track = MakeTrack(0);
    track.loop = 1;
    track.Evaluate(0.0f);
    EXPECT_EQ(track.loopEnd, 2.0f);
}
