#include "gfx/KRE_BlockPixel.h"

#include <gtest/gtest.h>

namespace {

// c0 = 0xF800: pure red, decoded 0xF8 0 0. c1 = 0x07E0: pure green, decoded 0 0xFC 0.
// Code 2: red (2 * 248 + 0 + 1) / 3 = 165 = 0xA5, green (0 + 252 + 1) / 3 = 84 = 0x54.
// Code 3: red (248 + 1) / 3 = 83 = 0x53, green (2 * 252 + 1) / 3 = 168 = 0xA8.
constexpr D3DCOLOR kOfCode[] = {0xFFF80000, 0xFF00FC00, 0xFFA55400, 0xFF53A800};

} // namespace

TEST(KRE_BlockPixel, ReadsEachCodeAtEachPlace)
{
    // Row y has the codes y, y + 1, y + 2, y + 3 modulo 4, leftmost in the lowest bits:
    // 3 2 1 0 = 11100100, 0 3 2 1 = 00111001, 1 0 3 2 = 01001110, 2 1 0 3 = 10010011.
    const uint8_t block[] = {0x00, 0xF8, 0xE0, 0x07, 0xE4, 0x39, 0x4E, 0x93};
    for (int32_t y = 0; y < 4; ++y) {
        for (int32_t x = 0; x < 4; ++x)
            EXPECT_EQ(ReadBlockPixel(D3DFMT_DXT1, block, x, y), kOfCode[(x + y) % 4])
                << x << ", " << y;
    }
}

TEST(KRE_BlockPixel, QuirkDxt1WithTheFirstColorBelowTheSecondReadsAsFourColors)
{
    // c0 = 0x07E0 below c1 = 0xF800; all codes are 3, which would be transparent black.
    const uint8_t block[] = {0xE0, 0x07, 0x00, 0xF8, 0xFF, 0xFF, 0xFF, 0xFF};
    EXPECT_EQ(ReadBlockPixel(D3DFMT_DXT1, block, 0, 0), 0xFFA55400u);
}

TEST(KRE_BlockPixel, RoundsEachChannelByItself)
{
    // c0 = 0x0821: red and blue 1 of 31, green 1 of 63, decoded 8, 4, 8; c1 = 0.
    // Code 2: (16 + 1) / 3 = 5, (8 + 1) / 3 = 3, 5. Code 3: (8 + 1) / 3 = 3, (4 + 1) / 3 = 1, 3.
    const uint8_t block[] = {0x21, 0x08, 0x00, 0x00, 0x0E, 0, 0, 0};
    EXPECT_EQ(ReadBlockPixel(D3DFMT_DXT1, block, 0, 0), 0xFF050305u);
    EXPECT_EQ(ReadBlockPixel(D3DFMT_DXT1, block, 1, 0), 0xFF030103u);
}

TEST(KRE_BlockPixel, QuirkDxt5AlphaIsTheFirstEndPointForEveryPixel)
{
    // Alpha end points 0x40 and 0xC0, alpha codes of all kinds; colours as above, codes 0 to 3.
    const uint8_t block[] = {0x40, 0xC0, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66,
                             0x00, 0xF8, 0xE0, 0x07, 0xE4, 0xE4, 0xE4, 0xE4};
    for (int32_t x = 0; x < 4; ++x)
        EXPECT_EQ(ReadBlockPixel(D3DFMT_DXT5, block, x, 2), (kOfCode[x] & 0xFFFFFF) | 0x40000000u);
}

TEST(KRE_BlockPixel, OnlyDxt1AndDxt5HaveABlockSize)
{
    EXPECT_EQ(BlockSize(D3DFMT_DXT1), 8);
    EXPECT_EQ(BlockSize(D3DFMT_DXT5), 16);
    for (const D3DFORMAT format : {D3DFMT_DXT2, D3DFMT_DXT3, D3DFMT_DXT4, D3DFMT_A8R8G8B8})
        EXPECT_EQ(BlockSize(format), 0) << static_cast<int>(format);
}
