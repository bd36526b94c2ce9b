#include "tests/platform/d3dx/ImageBytes.h"
#include "tests/platform/headless_d3dx/DecodedPixels.h"

#include <gtest/gtest.h>

using namespace headless;

namespace {

using Pixels = std::vector<uint32_t>;

TgaParts WithPalette(unsigned first, unsigned bits, const std::string& palette, unsigned count,
                     const std::string& indices)
{
    TgaParts parts = {1, static_cast<unsigned>(indices.size()), 1, 8, indices};
    parts.paletteFirst = first;
    parts.paletteBits = bits;
    parts.palette = palette;
    parts.paletteCount = count;
    return parts;
}

} // namespace

TEST(TgaDecoder, ReadsEveryKindOfPixel)
{
    // Five bits widen to 8 by value * 255 / 31: 16 becomes 131.6, so 132 = 0x84.
    const struct {
        const char* what;
        TgaParts parts;
        D3DFORMAT reported;
        Pixels expected;
    } cases[] = {
        {"15 bits", {2, 1, 1, 15, U16(31 << 10 | 16)}, D3DFMT_X1R5G5B5, {0xFFFF0084}},
        {"16 bits without alpha", {2, 1, 1, 16, U16(31 << 10 | 16)}, D3DFMT_X1R5G5B5, {0xFFFF0084}},
        {"16 bits with alpha",
         {2, 2, 1, 16, U16(31) + U16(0x8000 | 31), 0x21},
         D3DFMT_A1R5G5B5,
         {0x000000FF, 0xFF0000FF}},
        {"24 bits", {2, 1, 1, 24, Bytes({1, 2, 3})}, D3DFMT_X8R8G8B8, {0xFF030201}},
        {"32 bits whose descriptor forgets the alpha",
         {2, 1, 1, 32, Bytes({1, 2, 3, 4})},
         D3DFMT_A8R8G8B8,
         {0x04030201}},
        {"grey", {3, 2, 1, 8, Bytes({5, 6})}, D3DFMT_L8, {0xFF050505, 0xFF060606}},
        {"right to left",
         {2, 2, 1, 24, Bytes({1, 2, 3, 4, 5, 6}), 0x30},
         D3DFMT_X8R8G8B8,
         {0xFF060504, 0xFF030201}},
        {"palette of 24 bits",
         WithPalette(0, 24, Bytes({1, 2, 3, 4, 5, 6}), 2, Bytes({1, 0})),
         D3DFMT_P8,
         {0xFF060504, 0xFF030201}},
        {"palette of 32 bits",
         WithPalette(0, 32, Bytes({1, 2, 3, 4}), 1, Bytes({0})),
         D3DFMT_P8,
         {0x04030201}},
        {"palette of 16 bits is opaque",
         WithPalette(0, 16, U16(31 << 5), 1, Bytes({0})),
         D3DFMT_P8,
         {0xFF00FF00}},
        {"palette that begins at 10",
         WithPalette(10, 24, Bytes({1, 2, 3}), 1, Bytes({10})),
         D3DFMT_P8,
         {0xFF030201}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(DecodedPixels(TgaFile(c.parts)), c.expected) << c.what;
        EXPECT_EQ(ReportedFormat(TgaFile(c.parts)), c.reported) << c.what;
    }
}

TEST(TgaDecoder, SkipsTheText)
{
    TgaParts parts = {3, 1, 1, 8, Bytes({5})};
    parts.id = "who made this";
    EXPECT_EQ(DecodedPixels(TgaFile(parts)), Pixels{0xFF050505});
}

TEST(TgaDecoder, RunsMayCrossRowsAndOverrunTheEnd)
{
    // Two rows of two pixels from one run of 128.
    EXPECT_EQ(DecodedPixels(TgaFile({11, 2, 2, 8, Bytes({0xFF, 9})})), Pixels(4, 0xFF090909));
    // A run of 3 and a literal of 2, one more than needed.
    EXPECT_EQ(DecodedPixels(TgaFile({11, 4, 1, 8, Bytes({0x82, 7, 0x01, 1, 2})})),
              (Pixels{0xFF070707, 0xFF070707, 0xFF070707, 0xFF010101}));
}

TEST(TgaDecoder, RefusesRunsThatEndEarly)
{
    for (const std::string& packets :
         {Bytes({0x80, 9}), Bytes({0x80, 9, 0x80}), Bytes({0x03, 1, 2, 3})}) {
        HRESULT result = S_OK;
        DecodedPixels(TgaFile({11, 2, 2, 8, packets}), &result);
        EXPECT_EQ(result, D3DXERR_INVALIDDATA);
    }
}

TEST(TgaDecoder, RefusesIndicesOutsideThePalette)
{
    for (const unsigned index : {9u, 11u}) {
        HRESULT result = S_OK;
        DecodedPixels(TgaFile(WithPalette(10, 24, Bytes({1, 2, 3}), 1, Bytes({index}))), &result);
        EXPECT_EQ(result, D3DXERR_INVALIDDATA) << index;
    }
}

TEST(TgaDecoder, RefusesHeadersThatMakeNoSense)
{
    const std::string pixels = Repeated(64, 0);
    const struct {
        const char* what;
        TgaParts parts;
    } cases[] = {
        {"no width", {2, 0, 1, 24, pixels}},
        {"no height", {2, 1, 0, 24, pixels}},
        {"too wide", {2, 40000, 1, 24, pixels}},
        {"too high", {2, 1, 40000, 24, pixels}},
        {"more pixels than bytes", {2, 100, 100, 24, pixels}},
        {"more pixels than runs can give", {10, 1000, 1000, 24, pixels}},
        {"unknown type", {4, 1, 1, 24, pixels}},
        {"unknown depth", {2, 1, 1, 12, pixels}},
        {"palette type without palette", {1, 1, 1, 8, pixels}},
        {"interleaved", {2, 1, 1, 24, pixels, 0x60}},
        {"palette beyond the file", WithPalette(0, 24, "", 50000, pixels)},
    };
    for (const auto& c : cases)
        EXPECT_TRUE(IsRefused(TgaFile(c.parts))) << c.what;
}
