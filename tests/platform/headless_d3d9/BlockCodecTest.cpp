#include "platform/headless/d3d9/BlockCodec.h"

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>

using namespace headless;

namespace {

constexpr D3DFORMAT kBlockFormats[] = {D3DFMT_DXT1, D3DFMT_DXT2, D3DFMT_DXT3, D3DFMT_DXT4,
                                       D3DFMT_DXT5};

/// Encodes and decodes sixteen pixels.
void RoundTrip(D3DFORMAT format, const uint32_t* argb, uint32_t* backOut)
{
    uint8_t block[16] = {};
    EncodeBlock(format, argb, block);
    DecodeBlock(format, block, backOut);
}

int Channel(uint32_t argb, int shift)
{
    return static_cast<int>(argb >> shift & 255);
}

/// The largest difference in one channel.
int LargestError(const uint32_t* a, const uint32_t* b, int shift)
{
    int largest = 0;
    for (int i = 0; i < 16; ++i)
        largest = std::max(largest, std::abs(Channel(a[i], shift) - Channel(b[i], shift)));
    return largest;
}

/// A simple linear congruential generator, so that failures are reproducible.
class Numbers {
public:
    uint32_t Next()
    {
        state = state * 1664525u + 1013904223u;
        return state >> 8 << 16 ^ state >> 12;
    }

private:
    uint32_t state = 1;
};

} // namespace

/// As numbers red is greater than blue (0xF800 > 0x001F), so there are four colours: the third is
/// (2 * 255 + 0 + 1) / 3 = 170 red and (0 + 255 + 1) / 3 = 85 blue.
TEST(BlockCodec, DecodesFourColours)
{
    const uint8_t block[8] = {0x00, 0xF8, 0x1F, 0x00, 0xE4, 0, 0, 0xE4};
    uint32_t argb[16];
    DecodeBlock(D3DFMT_DXT1, block, argb);
    const uint32_t row[4] = {0xFFFF0000, 0xFF0000FF, 0xFFAA0055, 0xFF5500AA};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(argb[i], row[i]);
        EXPECT_EQ(argb[4 + i], row[0]);
        EXPECT_EQ(argb[12 + i], row[i]);
    }
}

/// Reds of 31 and 1 widen to 255 and 8: (2 * 255 + 8) / 3 = 172.7 and (2 * 8 + 255) / 3 = 90.3.
TEST(BlockCodec, RoundsTheColoursBetween)
{
    const uint8_t block[8] = {0x00, 0xF8, 0x00, 0x08, 0xE4, 0, 0, 0};
    uint32_t argb[16];
    DecodeBlock(D3DFMT_DXT1, block, argb);
    EXPECT_EQ(argb[2], 0xFF000000u | 173u << 16);
    EXPECT_EQ(argb[3], 0xFF000000u | 90u << 16);
}

/// In the other order there are three colours: the third is the mean, the fourth transparent black.
TEST(BlockCodec, DecodesThreeColoursAndTransparency)
{
    const uint8_t block[8] = {0x1F, 0x00, 0x00, 0xF8, 0xE4, 0, 0, 0};
    uint32_t argb[16];
    DecodeBlock(D3DFMT_DXT1, block, argb);
    EXPECT_EQ(argb[0], 0xFF0000FFu);
    EXPECT_EQ(argb[1], 0xFFFF0000u);
    EXPECT_EQ(argb[2], 0xFF7F007Fu);
    EXPECT_EQ(argb[3], 0x00000000u);
}

TEST(BlockCodec, OtherFormatsAlwaysHaveFourColours)
{
    uint8_t block[16] = {};
    const uint8_t colours[8] = {0x1F, 0x00, 0x00, 0xF8, 0xE4, 0, 0, 0};
    std::copy(colours, colours + 8, block + 8);
    uint32_t argb[16];
    DecodeBlock(D3DFMT_DXT3, block, argb);
    EXPECT_EQ(argb[2] & 0xFFFFFF, 0x5500AAu);
    EXPECT_EQ(argb[3] & 0xFFFFFF, 0xAA0055u);
}

TEST(BlockCodec, DecodesExplicitAlpha)
{
    const uint8_t block[16] = {0xF0, 0x21};
    uint32_t argb[16];
    for (const D3DFORMAT format : {D3DFMT_DXT2, D3DFMT_DXT3}) {
        DecodeBlock(format, block, argb);
        EXPECT_EQ(argb[0] >> 24, 0u);
        EXPECT_EQ(argb[1] >> 24, 255u);
        EXPECT_EQ(argb[2] >> 24, 17u);
        EXPECT_EQ(argb[3] >> 24, 34u);
    }
}

/// Codes 2, 3, 7 in three bits each: 2 + 3 * 8 + 7 * 64 = 0x1DA. With 255 before 0, six steps are
/// interpolated: (6 * 255 + 3) / 7 = 219, (5 * 255 + 3) / 7 = 182, (255 + 3) / 7 = 36. In the other
/// order there are four and code 7 is 255: code 2 is (255 + 2) / 5 = 51, code 3 is (2 * 255 + 2) /
/// 5 = 102.
TEST(BlockCodec, DecodesInterpolatedAlpha)
{
    const uint8_t eight[16] = {255, 0, 0xDA, 0x01};
    const uint8_t six[16] = {0, 255, 0xDA, 0x01};
    uint32_t argb[16];
    for (const D3DFORMAT format : {D3DFMT_DXT4, D3DFMT_DXT5}) {
        DecodeBlock(format, eight, argb);
        EXPECT_EQ(argb[0] >> 24, 219u);
        EXPECT_EQ(argb[1] >> 24, 182u);
        EXPECT_EQ(argb[2] >> 24, 36u);
        EXPECT_EQ(argb[3] >> 24, 255u);
        DecodeBlock(format, six, argb);
        EXPECT_EQ(argb[0] >> 24, 51u);
        EXPECT_EQ(argb[1] >> 24, 102u);
        EXPECT_EQ(argb[2] >> 24, 255u);
        EXPECT_EQ(argb[3] >> 24, 0u);
    }
}

TEST(BlockCodec, OneColourThatCanBeStoredComesBack)
{
    for (const uint32_t colour :
         {0xFF000000u, 0xFFFFFFFFu, 0xFFFF0000u, 0xFF00FF00u, 0xFF848284u /* 16, 32, 16 */}) {
        uint32_t argb[16], back[16];
        std::fill_n(argb, 16, colour);
        for (const D3DFORMAT format : kBlockFormats) {
            RoundTrip(format, argb, back);
            EXPECT_TRUE(std::equal(argb, argb + 16, back)) << colour << " in " << format;
        }
    }
}

TEST(BlockCodec, TwoColoursThatCanBeStoredComeBack)
{
    uint32_t argb[16], back[16];
    for (int i = 0; i < 16; ++i)
        argb[i] = i % 3 == 0 ? 0xFF0000FF : 0xFFFFFF00;
    for (const D3DFORMAT format : kBlockFormats) {
        RoundTrip(format, argb, back);
        EXPECT_TRUE(std::equal(argb, argb + 16, back)) << format;
    }
}

TEST(BlockCodec, TransparentPixelsComeBackTransparentAndBlack)
{
    uint32_t argb[16], back[16];
    for (int i = 0; i < 16; ++i)
        argb[i] = i < 5 ? 0x7FFFFFFF : 0xFFFF0000;
    RoundTrip(D3DFMT_DXT1, argb, back);
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(back[i], i < 5 ? 0u : 0xFFFF0000u) << i;
    std::fill_n(argb, 16, 0x00123456u);
    RoundTrip(D3DFMT_DXT1, argb, back);
    for (const uint32_t pixel : back)
        EXPECT_EQ(pixel, 0u);
}

/// DXT1 encodes transparency in the order of two numbers, so a wrong order shows as holes.
TEST(BlockCodec, OpaquePixelsStayOpaque)
{
    Numbers numbers;
    for (int n = 0; n < 2000; ++n) {
        uint32_t argb[16], back[16];
        for (uint32_t& pixel : argb)
            pixel = numbers.Next() | 0xFF000000;
        if (n % 4 == 0) // nearly one colour: both ends may be stored as the same value
            for (uint32_t& pixel : argb)
                pixel = argb[0] ^ (pixel & 0x00010101);
        for (const D3DFORMAT format : kBlockFormats) {
            RoundTrip(format, argb, back);
            for (const uint32_t pixel : back)
                ASSERT_EQ(pixel >> 24, 255u) << format;
        }
    }
}

/// Explicit alpha has steps of 17, so the nearest is at most 8 away.
TEST(BlockCodec, ExplicitAlphaIsTheNearestStep)
{
    uint32_t argb[16], back[16];
    for (uint32_t first = 0; first < 256; first += 16) {
        for (uint32_t i = 0; i < 16; ++i)
            argb[i] = (first + i) << 24;
        RoundTrip(D3DFMT_DXT3, argb, back);
        EXPECT_LE(LargestError(argb, back, 24), 8) << first;
    }
}

/// Two alphas are stored as the end points; 0 and 255 also have codes of their own.
TEST(BlockCodec, FewAlphasComeBackExactly)
{
    uint32_t argb[16], back[16];
    const uint32_t alphas[4] = {0, 255, 100, 150};
    for (int count : {1, 2, 3, 4}) {
        for (int i = 0; i < 16; ++i)
            argb[i] = alphas[i % count] << 24;
        RoundTrip(D3DFMT_DXT5, argb, back);
        EXPECT_EQ(LargestError(argb, back, 24), 0) << count;
    }
}

/// For a ramp from 0 to 255, eight alphas are 255 / 7 = 36.4 apart: at most 19 off with rounding.
/// Four greys are 85 apart: at most 43 off, plus 4 for the 5-bit end points.
TEST(BlockCodec, ARampStaysWithinHalfAStep)
{
    uint32_t argb[16], back[16];
    for (uint32_t i = 0; i < 16; ++i)
        argb[i] = i * 17 << 24 | i * 17 << 16 | i * 17 << 8 | i * 17;
    RoundTrip(D3DFMT_DXT5, argb, back);
    EXPECT_LE(LargestError(argb, back, 24), 19);
    for (const int shift : {0, 8, 16})
        EXPECT_LE(LargestError(argb, back, shift), 47) << shift;
}
