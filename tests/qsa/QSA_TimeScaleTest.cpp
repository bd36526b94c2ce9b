#include "qsa/QSA_TimeScale.h"

#include <gtest/gtest.h>

TEST(QSA_TimeScale, FreshScaleHasTheFormatsDefaults)
{
    const QSA_TimeScale time;
    EXPECT_FLOAT_EQ(time.SecondsPerTick(), 1.0f / 4800.0f); // 160 * 30
    EXPECT_FLOAT_EQ(time.Duration(), 100.0f / 30.0f);
    EXPECT_EQ(time.StartSeconds(), 0.0);
}

TEST(QSA_TimeScale, TicksCountFromFrameZeroAndSecondsFromTheFirstFrame)
{
    QSA_TimeScale time;
    time.frameSpeed = 25.0f;
    time.ticksPerFrame = 192.0f;
    time.firstFrame = 10;
    time.lastFrame = 60;
    EXPECT_TRUE(time.Update());
    EXPECT_FLOAT_EQ(time.TicksToSeconds(1920.0f), 0.0f);               // frame 10
    EXPECT_FLOAT_EQ(time.TicksToSeconds(1920.0f + 25 * 192.0f), 1.0f); // 25 frames later
    EXPECT_FLOAT_EQ(time.TicksToSeconds(0.0f), -0.4f);                 // 10 frames before
    EXPECT_FLOAT_EQ(time.Duration(), 2.0f);                            // 50 frames
    EXPECT_FLOAT_EQ(static_cast<float>(time.StartSeconds()), 0.4f);    // 10 frames of 1/25
}

TEST(QSA_TimeScale, SceneWithoutSpeedStandsStill)
{
    QSA_TimeScale time;
    time.firstFrame = 15;
    time.frameSpeed = 0.0f;
    EXPECT_FALSE(time.Update());
    EXPECT_EQ(time.TicksToSeconds(320.0f), 0.0f);
    EXPECT_EQ(time.Duration(), 0.0f);
    EXPECT_EQ(time.StartSeconds(), 0.0);

    time.frameSpeed = 30.0f;
    time.ticksPerFrame = 0.0f;
    EXPECT_FALSE(time.Update());
    EXPECT_EQ(time.TicksToSeconds(320.0f), 0.0f);
    EXPECT_EQ(time.Duration(), 0.0f);
    EXPECT_EQ(time.StartSeconds(), 0.5); // frames still have a speed

    time.ticksPerFrame = 160.0f;
    EXPECT_TRUE(time.Update());
    EXPECT_FLOAT_EQ(time.SecondsPerTick(), 1.0f / 4800.0f);
}

TEST(QSA_TimeScale, LengthOfTheWholeRangeOfFramesDoesNotOverflow)
{
    QSA_TimeScale time;
    time.firstFrame = INT32_MIN;
    time.lastFrame = INT32_MAX;
    EXPECT_TRUE(time.Update());
    EXPECT_FLOAT_EQ(time.Duration(), 4294967295.0f / 30.0f);
}
