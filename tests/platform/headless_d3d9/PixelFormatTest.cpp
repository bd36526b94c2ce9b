#include "platform/headless/d3d9/PixelFormat.h"
#include "tests/support/D3DNames.h"

#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <vector>

using namespace headless;

namespace {

const PixelFormat& Row(D3DFORMAT format)
{
    const PixelFormat* row = FindPixelFormat(format);
    EXPECT_NE(row, nullptr) << format;
    return *row;
}

uint32_t Unpack(D3DFORMAT format, uint32_t word)
{
    uint8_t pixel[4];
    std::memcpy(pixel, &word, sizeof pixel);
    return UnpackArgb(Row(format), pixel);
}

uint32_t Pack(D3DFORMAT format, uint32_t argb)
{
    uint32_t word = 0;
    PackArgb(Row(format), argb, &word);
    return word;
}

} // namespace

/// A field v of n bits is round(v * 255 / (2^n - 1)). For 5 bits: 1 is 8.2, 16 is 131.6; for 6
/// bits: 1 is 4.0, 32 is 129.5; for 4 bits: v * 17; for 3 bits: 5 is 182.1; for 2 bits: v * 85.
TEST(PixelFormat, WidensChannelsToEightBits)
{
    static const struct {
        D3DFORMAT format;
        uint32_t word, argb;
    } cases[] = {
        {D3DFMT_R8G8B8, 0x112233, 0xFF112233},
        {D3DFMT_A8R8G8B8, 0x11223344, 0x11223344},
        {D3DFMT_X8R8G8B8, 0x11223344, 0xFF223344},
        {D3DFMT_A8B8G8R8, 0x11223344, 0x11443322},
        {D3DFMT_R5G6B5, 0x8410, 0xFF848284},
        {D3DFMT_R5G6B5, 0x0821, 0xFF080408},
        {D3DFMT_R5G6B5, 0xFFFF, 0xFFFFFFFF},
        {D3DFMT_X1R5G5B5, 0x4210, 0xFF848484},
        {D3DFMT_A1R5G5B5, 0x7C00, 0x00FF0000},
        {D3DFMT_A1R5G5B5, 0x801F, 0xFF0000FF},
        {D3DFMT_A4R4G4B4, 0x1234, 0x11223344},
        {D3DFMT_X4R4G4B4, 0x1234, 0xFF223344},
        {D3DFMT_R3G3B2, 0xA2, 0xFFB600AA},
        {D3DFMT_A8R3G3B2, 0x40A2, 0x40B600AA},
        {D3DFMT_A8, 0x40, 0x40000000},
        {D3DFMT_L8, 0x80, 0xFF808080},
        {D3DFMT_A8L8, 0x4080, 0x40808080},
        {D3DFMT_A4L4, 0x48, 0x44888888},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Unpack(c.format, c.word), c.argb) << FormatName(c.format);
}

/// An 8-bit value v is round(v * (2^n - 1) / 255). 128 is 15.6 in 5 bits, 31.6 in 6 bits, 7.5 in 4
/// bits, 0.502 in 1 bit; 127 is 0.498 in 1 bit. Unused bits are set.
TEST(PixelFormat, NarrowsChannelsToTheirBits)
{
    static const struct {
        D3DFORMAT format;
        uint32_t argb, word;
    } cases[] = {
        {D3DFMT_R8G8B8, 0x44112233, 0x112233},
        {D3DFMT_X8R8G8B8, 0x00223344, 0xFF223344},
        {D3DFMT_R5G6B5, 0x00808080, 16u << 11 | 32u << 5 | 16u},
        {D3DFMT_X1R5G5B5, 0x00808080, 0x8000 | 16u << 10 | 16u << 5 | 16u},
        {D3DFMT_A1R5G5B5, 0x80000000, 0x8000},
        {D3DFMT_A1R5G5B5, 0x7FFFFFFF, 0x7FFF},
        {D3DFMT_A4R4G4B4, 0x80FF8000, 0x8F80},
        {D3DFMT_A8, 0x40FFFFFF, 0x40},
        {D3DFMT_L8, 0xFF808080, 0x80},
        {D3DFMT_L8, 0xFFFF0000, 54},  // 0.2125 * 255 = 54.2
        {D3DFMT_L8, 0xFF00FF00, 182}, // 0.7154 * 255 = 182.4
        {D3DFMT_L8, 0xFF0000FF, 18},  // 0.0721 * 255 = 18.4
        {D3DFMT_A8L8, 0x40808080, 0x4080},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Pack(c.format, c.argb), c.word) << FormatName(c.format);
}

/// Widening then narrowing is the identity for every format of at most 8 bits per channel.
TEST(PixelFormat, EveryStoredPixelComesBack)
{
    for (const D3DFORMAT format :
         {D3DFMT_R5G6B5, D3DFMT_A1R5G5B5, D3DFMT_A4R4G4B4, D3DFMT_R3G3B2, D3DFMT_A8R3G3B2,
          D3DFMT_A8, D3DFMT_L8, D3DFMT_A8L8, D3DFMT_A4L4}) {
        const uint32_t count = Row(format).unitBytes == 2 ? 0x10000 : 0x100;
        for (uint32_t word = 0; word < count; ++word)
            ASSERT_EQ(Pack(format, Unpack(format, word)), word) << FormatName(format);
    }
}

TEST(PixelFormat, SignedChannelsReachFromMinusOneToOne)
{
    const PixelFormat& format = Row(D3DFMT_V8U8);
    static const struct {
        uint16_t word; ///< V in the high byte, U in the low one
        float u, v;
    } cases[] = {
        {0x7F00, 0.0f, 1.0f}, {0x007F, 1.0f, 0.0f}, {0x0081, -1.0f, 0.0f}, {0x8000, 0.0f, -1.0f}};
    for (const auto& c : cases) {
        const Float4 colour = UnpackFloat4(format, &c.word);
        EXPECT_EQ(colour.r, c.u) << c.word;
        EXPECT_EQ(colour.g, c.v) << c.word;
    }
    uint16_t word = 0;
    PackFloat4(format, {-1.0f, 2.0f, 0.0f, 0.0f}, &word);
    EXPECT_EQ(word, 0x7F81); // V is clamped to 1
}

TEST(PixelFormat, FloatsAreClampedAndRounded)
{
    uint32_t word = 0;
    PackFloat4(Row(D3DFMT_A8R8G8B8), {0.5f, -3.0f, NAN, 7.0f}, &word);
    EXPECT_EQ(word, 0xFF800000u); // 0.5 * 255 = 127.5 rounds up
}

TEST(PixelFormat, CompressedRowsAndColumnsCountBlocks)
{
    const PixelFormat& small = Row(D3DFMT_DXT1);
    const PixelFormat& large = Row(D3DFMT_DXT5);
    EXPECT_EQ(RowBytes(small, 5), 16u); // two blocks of 8 bytes
    EXPECT_EQ(RowBytes(large, 5), 32u);
    EXPECT_EQ(RowCount(large, 5), 2u);
    EXPECT_EQ(RowCount(large, 4), 1u);
    EXPECT_EQ(ImageBytes(large, 1, 1), 16u);
    EXPECT_EQ(ImageBytes(Row(D3DFMT_A8R8G8B8), 65535, 65535), 65535ull * 65535 * 4);
}

TEST(PixelFormat, DepthIsRoundedToTheNearestStep)
{
    EXPECT_EQ(PackDepth(Row(D3DFMT_D16), 0.5f, 0), 32768u); // 32767.5 rounds up
    EXPECT_EQ(PackDepth(Row(D3DFMT_D16), 1.0f, 9), 65535u);
    EXPECT_EQ(PackDepth(Row(D3DFMT_D24S8), 1.0f, 0x112), 0xFFFFFF12u);
    EXPECT_EQ(PackDepth(Row(D3DFMT_D24X8), 1.0f, 0x12), 0xFFFFFF00u);
    EXPECT_EQ(PackDepth(Row(D3DFMT_D32), 1.0f, 0), 0xFFFFFFFFu);
    EXPECT_EQ(PackDepth(Row(D3DFMT_D32), 0.5f, 0), 0x80000000u);
    EXPECT_EQ(PackDepth(Row(D3DFMT_D16), -1.0f, 0), 0u);
    EXPECT_EQ(PackDepth(Row(D3DFMT_D16), NAN, 0), 0u);
    EXPECT_EQ(DepthMask(Row(D3DFMT_D24S8)), 0xFFFFFF00u);
    EXPECT_EQ(StencilMask(Row(D3DFMT_D24S8)), 0xFFu);
    EXPECT_EQ(StencilMask(Row(D3DFMT_D24X8)), 0u);
}

TEST(PixelFormat, ImagesKeepTheirPadding)
{
    // Two rows of three 16-bit pixels; the two padding bytes are unchanged.
    uint8_t bits[16];
    std::memset(bits, 0xEE, sizeof bits);
    const uint32_t argb[6] = {0xFFFF0000, 0xFF00FF00, 0xFF0000FF,
                              0xFFFFFFFF, 0xFF000000, 0xFFFF00FF};
    ASSERT_TRUE(PackImage(Row(D3DFMT_R5G6B5), 3, 2, argb, bits, 8));
    EXPECT_EQ(bits[6], 0xEE);
    EXPECT_EQ(bits[7], 0xEE);
    EXPECT_EQ(bits[8], 0xFF);
    uint32_t back[6] = {};
    ASSERT_TRUE(UnpackImage(Row(D3DFMT_R5G6B5), 3, 2, bits, 8, back));
    EXPECT_EQ(std::memcmp(back, argb, sizeof argb), 0);
}

TEST(PixelFormat, ImagesThatEndInsideABlockAreClipped)
{
    const std::vector<uint32_t> argb(5 * 3, 0xFFFF0000);
    std::vector<uint8_t> blocks(16);
    ASSERT_TRUE(PackImage(Row(D3DFMT_DXT1), 5, 3, argb.data(), blocks.data(), 16));
    std::vector<uint32_t> back(5 * 3 + 1, 0x12345678);
    ASSERT_TRUE(UnpackImage(Row(D3DFMT_DXT1), 5, 3, blocks.data(), 16, back.data()));
    EXPECT_EQ(back.back(), 0x12345678u) << "written beyond the picture";
    back.pop_back();
    EXPECT_EQ(back, argb);
}

TEST(PixelFormat, DepthIsNotAPicture)
{
    uint32_t argb = 0, word = 0;
    EXPECT_FALSE(UnpackImage(Row(D3DFMT_D16), 1, 1, &word, 4, &argb));
    EXPECT_FALSE(PackImage(Row(D3DFMT_D16), 1, 1, &argb, &word, 4));
    EXPECT_EQ(FindPixelFormat(D3DFMT_UNKNOWN), nullptr);
}
