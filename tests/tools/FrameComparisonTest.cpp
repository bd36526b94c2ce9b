#include "tools/frames/FrameComparison.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace {

constexpr uint32_t kBlack = 0xFF000000, kWhite = 0xFFFFFFFF;

/// 10 by 10 pixels, so one pixel is one percent.
Frame Black()
{
    return {10, 10, std::vector<uint32_t>(100, kBlack)};
}

Frame WithColumn(size_t x)
{
    Frame frame = Black();
    for (size_t y = 0; y < 10; ++y)
        frame.pixels[y * 10 + x] = kWhite;
    return frame;
}

TEST(CompareFrames, AStepWithinTheToleranceDoesNotCount)
{
    Frame other = Black();
    other.pixels[0] = 0xFF000400; // one channel by 4
    const FrameDifference within = CompareFrames(Black(), other, 4);
    EXPECT_EQ(within.displaced + within.wrong, 0u);
    EXPECT_EQ(within.largestStep, 4);
    EXPECT_EQ(CompareFrames(Black(), other, 3).wrong, 1u);
}

TEST(CompareFrames, AlphaIsNotCompared)
{
    Frame other = Black();
    other.pixels[5] = 0x00000000;
    const FrameDifference difference = CompareFrames(Black(), other, 0);
    EXPECT_EQ(difference.displaced + difference.wrong, 0u);
    EXPECT_EQ(difference.largestStep, 0);
}

/// The line's pixels differ at both its positions: 20 pixels.
TEST(CompareFrames, ALineShiftedByOnePixelIsDisplaced)
{
    const FrameDifference difference = CompareFrames(WithColumn(4), WithColumn(5), 4);
    EXPECT_EQ(difference.displaced, 20u);
    EXPECT_EQ(difference.wrong, 0u);
}

TEST(CompareFrames, ALineShiftedByTwoPixelsIsWrong)
{
    const FrameDifference difference = CompareFrames(WithColumn(4), WithColumn(6), 4);
    EXPECT_EQ(difference.displaced, 0u);
    EXPECT_EQ(difference.wrong, 20u);
}

TEST(CompareFrames, AMissingLineIsWrongWhicheverFrameLacksIt)
{
    EXPECT_EQ(CompareFrames(WithColumn(4), Black(), 4).wrong, 10u);
    EXPECT_EQ(CompareFrames(Black(), WithColumn(4), 4).wrong, 10u);
}

TEST(CompareFrames, NeighboursStopAtTheBorder)
{
    // Column 9 and column 0 of the next row are neighbours in memory only.
    const FrameDifference difference = CompareFrames(WithColumn(0), WithColumn(9), 4);
    EXPECT_EQ(difference.displaced, 0u);
    EXPECT_EQ(difference.wrong, 20u);
}

TEST(CompareFrames, SizesMustBeTheSame)
{
    const Frame wide = {20, 5, std::vector<uint32_t>(100, kBlack)};
    const FrameDifference difference = CompareFrames(Black(), wide, 4);
    EXPECT_FALSE(difference.isSameSize);
    EXPECT_FALSE(IsWithin(difference, {255, 100.0, 100.0}));
}

TEST(IsWithin, EachShareHasItsOwnLimit)
{
    static const struct {
        const char* what;
        size_t displaced, wrong;
        bool expected;
    } cases[] = {
        {"alike", 0, 0, true},
        {"displaced up to the limit", 20, 0, true},
        {"displaced above the limit", 21, 0, false},
        {"wrong up to the limit", 0, 1, true},
        {"wrong above the limit", 0, 2, false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(IsWithin({true, 1000, c.displaced, c.wrong, 255}, {4, 2.0, 0.1}), c.expected)
            << c.what;
}

TEST(CompareSceneFrames, RoundingOfTwoStepsIsWithinToleranceEverywhere)
{
    Frame other = Black();
    std::fill(other.pixels.begin(), other.pixels.end(), 0xFF020202);
    EXPECT_TRUE(CompareSceneFrames(Black(), other).IsWithin());
}

TEST(CompareSceneFrames, OnePercentMayDifferByMore)
{
    Frame other = Black();
    other.pixels[44] = 0xFF100000; // 16 steps are not a large difference
    EXPECT_TRUE(CompareSceneFrames(Black(), other).IsWithin());
    other.pixels[77] = 0xFF000003;
    EXPECT_FALSE(CompareSceneFrames(Black(), other).IsWithin());
}

// 1,000 pixels, one of which differs by 17.
TEST(CompareSceneFrames, PixelsAwayFromEdgesMayDifferBySixteenAtMost)
{
    const Frame black = {100, 10, std::vector<uint32_t>(1000, kBlack)};
    Frame spot = black, moved = black;
    spot.pixels[505] = 0xFF110000;
    EXPECT_FALSE(CompareSceneFrames(black, spot).IsWithin());
    moved.pixels[506] = 0xFF110000;
    EXPECT_TRUE(CompareSceneFrames(spot, moved).IsWithin()) << "one pixel aside";
}

// 0.001 % of 200,000 pixels.
TEST(CompareSceneFrames, TwoLonePixelsOfALargeFrameMayDifferByMore)
{
    const Frame black = {500, 400, std::vector<uint32_t>(200000, kBlack)};
    Frame spots = black;
    spots.pixels[50250] = spots.pixels[100250] = kWhite;
    EXPECT_TRUE(CompareSceneFrames(black, spots).IsWithin());
    spots.pixels[150250] = kWhite;
    EXPECT_FALSE(CompareSceneFrames(black, spots).IsWithin());
}

TEST(CompareSceneFrames, SizesMustBeTheSame)
{
    const Frame wide = {20, 5, std::vector<uint32_t>(100, kBlack)};
    EXPECT_FALSE(CompareSceneFrames(Black(), wide).IsWithin());
}

TEST(DifferenceFrame, ShowsWhereAndHow)
{
    Frame a = WithColumn(4), b = WithColumn(5);
    b.pixels[0] = kWhite;
    const Frame frame = DifferenceFrame(a, b, 4);
    EXPECT_EQ(frame.pixels[0], 0xFFFF0000u) << "wrong";
    EXPECT_EQ(frame.pixels[4], 0xFFFFFF00u) << "displaced";
    EXPECT_EQ(frame.pixels[8], 0xFF000000u) << "alike, dimmed black";
}

} // namespace
