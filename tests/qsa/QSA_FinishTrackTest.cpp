#include "qsa/QSA_FinishTrack.h"

#include <gtest/gtest.h>

namespace {

/// 160 ticks per frame at 30 frames per second, starting at frame 30: tick 4800 is second 0.
QSA_TimeScale FromSecondOne()
{
    QSA_TimeScale time;
    time.firstFrame = 30;
    return time;
}

} // namespace

TEST(QSA_FinishTrack, TangentsAreScaledByTheTicksToTheirNeighbours)
{
    KRE_FloatTrack track;
    track.SetKeyCount(3);
    const float ticks[] = {4800.0f, 9600.0f, 24000.0f};
    for (int32_t i = 0; i < 3; ++i) {
        track.Key(i).time = ticks[i];
        track.Key(i).inTangent = 2.0f;
        track.Key(i).outTangent = 3.0f;
    }
    FinishTrack(&track, FromSecondOne());
    EXPECT_EQ(track.Key(0).inTangent, 2.0f); // nothing is before it
    EXPECT_EQ(track.Key(0).outTangent, 3.0f * 4800.0f);
    EXPECT_EQ(track.Key(1).inTangent, 2.0f * 4800.0f);
    EXPECT_EQ(track.Key(1).outTangent, 3.0f * 14400.0f);
    EXPECT_EQ(track.Key(2).inTangent, 2.0f * 14400.0f);
    EXPECT_EQ(track.Key(2).outTangent, 3.0f); // nothing is after it
    EXPECT_FLOAT_EQ(track.Key(0).time, 0.0f);
    EXPECT_FLOAT_EQ(track.Key(1).time, 1.0f);
    EXPECT_FLOAT_EQ(track.Key(2).time, 4.0f);
}

TEST(QSA_FinishTrack, AllFourPartsOfAColorAreScaled)
{
    KRE_ColorTrack track;
    track.SetKeyCount(2);
    track.Key(1).time = 10.0f;
    track.Key(1).inTangent = {1.0f, 2.0f, 3.0f, 4.0f};
    FinishTrack(&track, FromSecondOne());
    EXPECT_EQ(track.Key(1).inTangent.r, 10.0f);
    EXPECT_EQ(track.Key(1).inTangent.g, 20.0f);
    EXPECT_EQ(track.Key(1).inTangent.b, 30.0f);
    EXPECT_EQ(track.Key(1).inTangent.a, 40.0f);
}
