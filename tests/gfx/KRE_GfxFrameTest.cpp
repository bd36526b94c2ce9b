#include "tests/gfx/EngineTest.h"

#include <cmath>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class KRE_GfxFrameTest : public EngineTest {
protected:
    /// Fills the ring as if frames were shown at these times, oldest first; the i-th is frame i *
    /// `step`.
    void FillRing(const std::vector<double>& times, int32_t step)
    {
        for (size_t i = 0; i < times.size(); ++i)
            gfx.fpsRing[i] = {times[i], static_cast<int32_t>(i) * step};
        gfx.fpsRingIndex = static_cast<int32_t>(times.size()) % KRE_Gfx::kFrameSamples;
    }
};

} // namespace

TEST_F(KRE_GfxFrameTest, IsPresentedWhole)
{
    Start();
    EXPECT_EQ(gfx.ShowFrame(), 1);
    EXPECT_THAT(Calls(), ElementsAre("Present"));
    EXPECT_EQ(gfx.frameCount, 1);
    EXPECT_GE(gfx.lastFrameTime, gfx.startTime);
}

TEST_F(KRE_GfxFrameTest, ResizeByOnePixelDropsOneFrameAndResets)
{
    Start();
    EXPECT_EQ(gfx.ShowFrame(), 1);
    window.Resize(65, 48);
    recorder->ClearLines();
    EXPECT_EQ(gfx.ShowFrame(), 0);
    EXPECT_THAT(CallsOf("Present"), IsEmpty());
    EXPECT_THAT(CallsOf("Reset"), SizeIs(1));
    EXPECT_EQ(gfx.frameCount, 1);
    EXPECT_EQ(gfx.backBuffer.width, 65);
    EXPECT_EQ(gfx.ShowFrame(), 1);
    EXPECT_THAT(CallsOf("Reset"), SizeIs(1));
}

TEST_F(KRE_GfxFrameTest, HeightAloneCountsAsAResize)
{
    Start();
    window.Resize(64, 47);
    EXPECT_EQ(gfx.ShowFrame(), 0);
    EXPECT_EQ(gfx.backBuffer.height, 47);
}

TEST_F(KRE_GfxFrameTest, FullScreenIgnoresTheWindow)
{
    const D3DDISPLAYMODE mode = {640, 480, 60, D3DFMT_X8R8G8B8};
    Start(&mode);
    window.Resize(70, 50);
    EXPECT_EQ(gfx.ShowFrame(), 1);
    EXPECT_THAT(CallsOf("Reset"), IsEmpty());
}

TEST_F(KRE_GfxFrameTest, LostDeviceDropsTheFrameWithoutAnError)
{
    Start();
    FailNext("Present", D3DERR_DEVICELOST);
    EXPECT_EQ(gfx.ShowFrame(), 0);
    EXPECT_THAT(CallsOf("Reset"), SizeIs(1));
    EXPECT_EQ(gfx.frameCount, 1) << "the dropped frame counts";
    EXPECT_EQ(gfx.ShowFrame(), 1);
}

TEST_F(KRE_GfxFrameTest, AnyOtherFailureOfPresentIsAnError)
{
    Start();
    FailNext("Present", D3DERR_INVALIDCALL);
    EXPECT_EQ(RaisedBy([&] { gfx.ShowFrame(); }), "Present failed! D3DERR_INVALIDCALL");
    EXPECT_EQ(gfx.frameCount, 1);
    EXPECT_THAT(CallsOf("Reset"), IsEmpty());
}

TEST_F(KRE_GfxFrameTest, SamplesAreMoreThanASixtiethOfASecondApart)
{
    Start();
    while (gfx.lastFrameTime - gfx.startTime < 0.1)
        gfx.ShowFrame();
    ASSERT_GE(gfx.fpsRingIndex, 2);
    for (int32_t i = 1; i < gfx.fpsRingIndex; ++i) {
        EXPECT_GT(gfx.fpsRing[i].time - gfx.fpsRing[i - 1].time, 0.01666666753590107);
        EXPECT_GT(gfx.fpsRing[i].frames, gfx.fpsRing[i - 1].frames);
    }
    EXPECT_GT(gfx.frameCount, gfx.fpsRingIndex) << "most frames are no samples";
}

TEST_F(KRE_GfxFrameTest, RingTakesSixtySamplesAndStartsOver)
{
    Start();
    std::vector<double> times;
    for (int i = 0; i < 60; ++i)
        times.push_back(0.001 * i); // all long ago, so the next frame is sampled
    FillRing(times, 1);
    EXPECT_EQ(gfx.fpsRingIndex, 0);
    gfx.frameCount = 777;
    gfx.ShowFrame();
    EXPECT_EQ(gfx.fpsRingIndex, 1);
    EXPECT_EQ(gfx.fpsRing[0].frames, 777);
    EXPECT_EQ(gfx.fpsRing[0].time, gfx.lastFrameTime);
}

TEST_F(KRE_GfxFrameTest, RateIsTakenOverTheLastSecond)
{
    // Samples each 0.125 s, 5 frames apart: from 9.0 to 10.0 there are 40 frames in one second.
    std::vector<double> times;
    for (int i = 0; i < 60; ++i)
        times.push_back(10.0 - 0.125 * (59 - i));
    FillRing(times, 5);
    EXPECT_EQ(gfx.GetFramesPerSecond(), 40.0f);
}

TEST_F(KRE_GfxFrameTest, RateIsNotANumberWhenOnlyOneSampleIsRecent)
{
    // With samples two seconds apart, no older one is within the last second.
    std::vector<double> times;
    for (int i = 0; i < 60; ++i)
        times.push_back(2.0 * i);
    FillRing(times, 3);
    EXPECT_TRUE(std::isnan(gfx.GetFramesPerSecond())) << "0 frames in 0 seconds";
}

TEST_F(KRE_GfxFrameTest, QuirkRateWithoutTwoSamplesIsNotANumber)
{
    EXPECT_TRUE(std::isnan(gfx.GetFramesPerSecond()));
}
