#include "platform/headless/d3dx/Resample.h"

#include <gtest/gtest.h>
#include <vector>

using namespace headless;

namespace {

using Pixels = std::vector<uint32_t>;

// Grey pixels of the given values, opaque.
Pixels Greys(std::initializer_list<uint32_t> values)
{
    Pixels pixels;
    for (const uint32_t value : values)
        pixels.push_back(0xFF000000 | value * 0x10101);
    return pixels;
}

Pixels Scaled(const Pixels& source, UINT width, DWORD filter, UINT targetWidth, UINT targetHeight)
{
    Pixels target(size_t{targetWidth} * targetHeight, 0xDEADBEEF);
    EXPECT_TRUE(ResampleArgb(source.data(), width, static_cast<UINT>(source.size()) / width, filter,
                             targetWidth, targetHeight, target.data()));
    return target;
}

} // namespace

TEST(Resample, NoFilterCutsOrPads)
{
    EXPECT_EQ(Scaled(Greys({1, 2, 3, 4}), 2, D3DX_FILTER_NONE, 1, 1), Greys({1}));
    EXPECT_EQ(Scaled(Greys({1}), 1, D3DX_FILTER_NONE, 2, 2), (Pixels{0xFF010101, 0, 0, 0}));
    EXPECT_EQ(Scaled(Greys({1, 2, 3, 4}), 4, D3DX_FILTER_NONE, 2, 2),
              (Pixels{0xFF010101, 0xFF020202, 0, 0}));
}

TEST(Resample, PointTakesTheNearestPixel)
{
    // Target centres 0.5, 1.5 of 2 fall on 0.75 and 2.25 of 3: pixels 0 and 2.
    EXPECT_EQ(Scaled(Greys({10, 20, 30}), 3, D3DX_FILTER_POINT, 2, 1), Greys({10, 30}));
    EXPECT_EQ(Scaled(Greys({10, 20}), 2, D3DX_FILTER_POINT, 4, 1), Greys({10, 10, 20, 20}));
}

TEST(Resample, BoxIsTheMeanOfTheCoveredPixels)
{
    EXPECT_EQ(Scaled(Greys({10, 20, 30, 40}), 2, D3DX_FILTER_BOX, 1, 1), Greys({25}));
    // 3 to 2: each target pixel covers one and a half: (10 + 20 / 2) / 1.5 = 13.3.
    EXPECT_EQ(Scaled(Greys({10, 20, 40}), 3, D3DX_FILTER_BOX, 2, 1), Greys({13, 33}));
    // Only one side is halved.
    EXPECT_EQ(Scaled(Greys({10, 20, 30, 40}), 4, D3DX_FILTER_BOX, 2, 1), Greys({15, 35}));
}

TEST(Resample, BoxRoundsToTheNearest)
{
    EXPECT_EQ(Scaled(Greys({0, 0, 0, 1}), 2, D3DX_FILTER_BOX, 1, 1), Greys({0})); // 0.25
    EXPECT_EQ(Scaled(Greys({0, 0, 1, 1}), 2, D3DX_FILTER_BOX, 1, 1), Greys({1})); // 0.5
    EXPECT_EQ(Scaled(Greys({255, 255, 255, 255}), 2, D3DX_FILTER_BOX, 1, 1), Greys({255}));
}

TEST(Resample, BoxTakesEachChannelByItself)
{
    const Pixels source = {0xFF000000, 0x00FF0000, 0x0000FF00, 0x000000FF};
    EXPECT_EQ(Scaled(source, 2, D3DX_FILTER_BOX, 1, 1), Pixels{0x40404040}); // 63.75 each
}

TEST(Resample, LinearMixesTheNeighbours)
{
    // 2 to 4 pixels: centres at -0.25, 0.25, 0.75, 1.25. Past the edge the picture repeats: 0.75 *
    // 0 + 0.25 * 100 = 25 at both ends.
    EXPECT_EQ(Scaled(Greys({0, 100}), 2, D3DX_FILTER_LINEAR, 4, 1), Greys({25, 25, 75, 75}));
}

TEST(Resample, MirrorKeepsTheBorder)
{
    EXPECT_EQ(Scaled(Greys({0, 100}), 2, D3DX_FILTER_LINEAR | D3DX_FILTER_MIRROR_U, 4, 1),
              Greys({0, 25, 75, 100}));
    EXPECT_EQ(Scaled(Greys({0, 100}), 1, D3DX_FILTER_LINEAR | D3DX_FILTER_MIRROR_V, 1, 4),
              Greys({0, 25, 75, 100}));
}

TEST(Resample, TriangleCountsEachPixelEqually)
{
    // 4 to 2: the centre of the first is at 0.5, weights fall to 0 at a distance of 2: pixels -1
    // (the last one), 0, 1, 2 weigh 1, 3, 3, 1 eighths.
    EXPECT_EQ(Scaled(Greys({80, 0, 0, 0}), 4, D3DX_FILTER_TRIANGLE, 2, 1), Greys({30, 10}));
    EXPECT_EQ(Scaled(Greys({0, 80, 0, 0}), 4, D3DX_FILTER_TRIANGLE, 2, 1), Greys({30, 10}));
    EXPECT_EQ(Scaled(Greys({0, 0, 80, 0}), 4, D3DX_FILTER_TRIANGLE, 2, 1), Greys({10, 30}));
}

TEST(Resample, OneColourStaysOneColour)
{
    const Pixels source(7 * 5, 0x80FF01C3);
    for (const int filter :
         {D3DX_FILTER_POINT, D3DX_FILTER_LINEAR, D3DX_FILTER_TRIANGLE, D3DX_FILTER_BOX})
        for (const UINT side : {1u, 3u, 16u})
            EXPECT_EQ(Scaled(source, 7, static_cast<DWORD>(filter), side, side),
                      Pixels(side * side, 0x80FF01C3))
                << filter << ", " << side;
}
