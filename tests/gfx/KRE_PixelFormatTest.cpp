#include "gfx/KRE_PixelFormat.h"

#include <gtest/gtest.h>

TEST(KRE_PixelFormat, EncodesAndDecodesEachFormat)
{
    // The colour 0x81FE9A53 has the bytes a 10000001, r 11111110, g 10011010, b 01010011.
    constexpr D3DCOLOR kColor = 0x81FE9A53;
    static const struct {
        const char* what;
        D3DFORMAT format;
        int32_t bytes;
        DWORD encoded;
        D3DCOLOR decoded;
    } cases[] = {
        {"R8G8B8", D3DFMT_R8G8B8, 3, kColor, kColor},
        {"A8R8G8B8", D3DFMT_A8R8G8B8, 4, kColor, kColor},
        {"X8R8G8B8", D3DFMT_X8R8G8B8, 4, kColor, kColor},
        // 11111 100110 01010; back 11111000, 10011000, 01010000.
        {"R5G6B5", D3DFMT_R5G6B5, 2, 0xFCCA, 0xFFF89850},
        // 1 11111 10011 01010.
        {"A1R5G5B5", D3DFMT_A1R5G5B5, 2, 0xFE6A, 0xFFF89850},
        // The top halves of the four bytes.
        {"A4R4G4B4", D3DFMT_A4R4G4B4, 2, 0x8F95, 0x80F09050},
        // (254 + 154 + 83) / 3 = 491 / 3 = 163 = 0xA3.
        {"L8", D3DFMT_L8, 1, 0xA3, 0xFFA3A3A3},
        {"A8L8", D3DFMT_A8L8, 2, 0x81A3, 0x81A3A3A3},
        {"D16", D3DFMT_D16, 2, kColor, kColor},
    };
    for (const auto& c : cases) {
        const KRE_PixelFormat* format = LookUpPixelFormat(c.format);
        ASSERT_NE(format, nullptr) << c.what;
        EXPECT_EQ(format->bytesPerPixel, c.bytes) << c.what;
        EXPECT_EQ(format->encode(kColor), c.encoded) << c.what;
        EXPECT_EQ(format->decode(c.encoded), c.decoded) << c.what;
    }
}

TEST(KRE_PixelFormat, A1R5G5B5WithoutItsTopBitIsTransparent)
{
    EXPECT_EQ(LookUpPixelFormat(D3DFMT_A1R5G5B5)->decode(0x7FFF), 0x00F8F8F8u);
}

TEST(KRE_PixelFormat, QuirkA1R5G5B5KeepsTheLowBitOfAlpha)
{
    const EncodePixel encode = LookUpPixelFormat(D3DFMT_A1R5G5B5)->encode;
    EXPECT_EQ(encode(0x80000000), 0x0000u);
    EXPECT_EQ(encode(0x01000000), 0x8000u);
    EXPECT_EQ(encode(0xFF000000), 0x8000u);
}

TEST(KRE_PixelFormat, OtherFormatsAreNotKnown)
{
    for (const D3DFORMAT format : {D3DFMT_UNKNOWN, D3DFMT_X1R5G5B5, D3DFMT_V8U8, D3DFMT_D24S8})
        EXPECT_EQ(LookUpPixelFormat(format), nullptr) << static_cast<int>(format);
}

TEST(KRE_PixelFormat, OnlyDxtIsStoredInBlocks)
{
    for (const D3DFORMAT format : {D3DFMT_DXT1, D3DFMT_DXT2, D3DFMT_DXT3, D3DFMT_DXT4, D3DFMT_DXT5})
        EXPECT_TRUE(IsBlockFormat(format)) << static_cast<int>(format);
    for (const D3DFORMAT format : {D3DFMT_A8R8G8B8, D3DFMT_L8, D3DFMT_UNKNOWN})
        EXPECT_FALSE(IsBlockFormat(format)) << static_cast<int>(format);
}
