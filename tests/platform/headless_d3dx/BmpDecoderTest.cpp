#include "tests/platform/d3dx/ImageBytes.h"
#include "tests/platform/headless_d3dx/DecodedPixels.h"

#include <gtest/gtest.h>

using namespace headless;

namespace {

using Pixels = std::vector<uint32_t>;

const uint32_t kRedPixel = 0xFFFF0000;
const uint32_t kGreenPixel = 0xFF00FF00;

std::string RedAndGreen()
{
    return Bytes({0, 0, 255, 0, 0, 255, 0, 0});
}

std::string Masks(uint32_t red, uint32_t green, uint32_t blue)
{
    return U32(red) + U32(green) + U32(blue);
}

BmpParts Runs(unsigned bits, int width, int height, const std::string& coded)
{
    return {width, height, bits, coded, bits == 8 ? 1u : 2u, RedAndGreen(), 2};
}

} // namespace

TEST(BmpDecoder, ReadsEveryKindOfPixel)
{
    const struct {
        const char* what;
        BmpParts parts;
        D3DFORMAT reported;
        Pixels expected;
    } cases[] = {
        {"1 bit",
         {3, 1, 1, Bytes({0x40, 0, 0, 0}), 0, RedAndGreen(), 2},
         D3DFMT_P8,
         {kRedPixel, kGreenPixel, kRedPixel}},
        {"4 bits",
         {3, 1, 4, Bytes({0x10, 0x10, 0, 0}), 0, RedAndGreen(), 2},
         D3DFMT_P8,
         {kGreenPixel, kRedPixel, kGreenPixel}},
        {"8 bits",
         {1, 2, 8, Bytes({0, 0, 0, 0, 1, 0, 0, 0}), 0, RedAndGreen(), 2},
         D3DFMT_P8,
         {kGreenPixel, kRedPixel}},
        {"16 bits", {1, 1, 16, U16(31 << 10) + U16(0)}, D3DFMT_X1R5G5B5, {kRedPixel}},
        {"16 bits by masks",
         {1, 1, 16, U16(63 << 5) + U16(0), 3, Masks(0xF800, 0x7E0, 0x1F)},
         D3DFMT_R5G6B5,
         {kGreenPixel}},
        {"24 bits, top row first",
         {1, -2, 24, Bytes({0, 0, 255, 0, 0, 255, 0, 0})},
         D3DFMT_X8R8G8B8,
         {kRedPixel, kGreenPixel}},
        {"32 bits with an unused byte",
         {1, 1, 32, Bytes({1, 2, 3, 0})},
         D3DFMT_X8R8G8B8,
         {0xFF030201}},
        {"32 bits with a used byte",
         {2, 1, 32, Bytes({1, 2, 3, 0, 1, 2, 3, 9})},
         D3DFMT_A8R8G8B8,
         {0x00030201, 0x09030201}},
        {"32 bits, red lowest",
         {1, 1, 32, Bytes({1, 2, 3, 4}), 3, Masks(0xFF, 0xFF00, 0xFF0000)},
         D3DFMT_X8R8G8B8,
         {0xFF010203}},
        // Ten bits each: 1023 is 255, 0 is 0.
        {"32 bits, 10 for a channel",
         {1, 1, 32, U32(1023u << 20), 3, Masks(1023u << 20, 1023u << 10, 1023)},
         D3DFMT_X8R8G8B8,
         {kRedPixel}},
        {"16 bits with alpha",
         {1, 1, 16, U16(0x8F00) + U16(0), 6, Masks(0xF00, 0xF0, 0xF) + U32(0xF000)},
         D3DFMT_A4R4G4B4,
         {0x88FF0000}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(DecodedPixels(BmpFile(c.parts)), c.expected) << c.what;
        EXPECT_EQ(ReportedFormat(BmpFile(c.parts)), c.reported) << c.what;
    }
}

TEST(BmpDecoder, ReadsTheOldHeader)
{
    const std::string file = "BM" + U32(0) + U32(0) + U32(26 + 6) + U32(12) + U16(2) + U16(1) +
                             U16(1) + U16(1) + Bytes({0, 0, 255, 0, 255, 0}) +
                             Bytes({0x40, 0, 0, 0});
    // The palette of two 3-byte entries ends at 32.
    EXPECT_EQ(DecodedPixels(file), (Pixels{kRedPixel, kGreenPixel}));
}

TEST(BmpDecoder, UnpacksRuns)
{
    const struct {
        const char* what;
        BmpParts parts;
        Pixels expected;
    } cases[] = {
        {"8 bits: run, literal, end of row, end",
         Runs(8, 3, 2, Bytes({2, 1, 0, 0, 0, 3, 1, 0, 1, 0, 0, 1})), // the literal is padded
         {kGreenPixel, kRedPixel, kGreenPixel, kGreenPixel, kGreenPixel, kRedPixel}},
        {"4 bits: a run alternates",
         Runs(4, 3, 1, Bytes({3, 0x10, 0, 1})),
         {kGreenPixel, kRedPixel, kGreenPixel}},
        {"4 bits: literal",
         Runs(4, 3, 1, Bytes({0, 3, 0x01, 0x10, 0, 1})),
         {kRedPixel, kGreenPixel, kGreenPixel}},
        {"a move leaves entry 0",
         Runs(8, 3, 1, Bytes({0, 2, 2, 0, 1, 1, 0, 1})),
         {kRedPixel, kRedPixel, kGreenPixel}},
        {"a run that sticks out is cut",
         Runs(8, 2, 1, Bytes({200, 1, 0, 1})),
         {kGreenPixel, kGreenPixel}},
        {"the end may be missing behind a full picture",
         Runs(8, 2, 1, Bytes({2, 1})),
         {kGreenPixel, kGreenPixel}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(DecodedPixels(BmpFile(c.parts)), c.expected) << c.what;
}

TEST(BmpDecoder, RefusesDamagedRuns)
{
    const struct {
        const char* what;
        BmpParts parts;
    } cases[] = {
        {"end early", Runs(8, 4, 1, Bytes({2, 1}))},
        {"cut literal", Runs(8, 4, 1, Bytes({0, 4, 1, 1}))},
        {"cut move", Runs(8, 4, 1, Bytes({0, 2, 1}))},
        {"move out of the row", Runs(8, 2, 2, Bytes({0, 2, 3, 0, 0, 1}))},
        {"move below the picture", Runs(8, 2, 2, Bytes({0, 2, 0, 3, 0, 1}))},
        {"index beyond the palette", Runs(8, 1, 1, Bytes({1, 2, 0, 1}))},
    };
    for (const auto& c : cases) {
        HRESULT result = S_OK;
        DecodedPixels(BmpFile(c.parts), &result);
        EXPECT_EQ(result, D3DXERR_INVALIDDATA) << c.what;
    }
}

TEST(BmpDecoder, RefusesHeadersThatMakeNoSense)
{
    const std::string pixels = Repeated(64, 0);
    const struct {
        const char* what;
        BmpParts parts;
    } cases[] = {
        {"no width", {0, 1, 24, pixels}},
        {"no height", {1, 0, 24, pixels}},
        {"negative width", {-1, 1, 24, pixels}},
        {"lowest height", {1, -0x7FFFFFFF - 1, 24, pixels}},
        {"too wide", {40000, 1, 24, pixels}},
        {"too high", {1, -40000, 24, pixels}},
        {"more pixels than bytes", {100, 100, 24, pixels}},
        {"more pixels than runs can give", Runs(8, 16384, 16384, pixels)},
        {"unknown depth", {1, 1, 13, pixels}},
        {"unknown compression", {1, 1, 24, pixels, 4}},
        {"runs of 24 bits", {1, 1, 24, pixels, 1}},
        {"runs with the top row first", {1, -1, 8, pixels, 1, RedAndGreen(), 2}},
        {"mask with a hole", {1, 1, 32, pixels, 3, Masks(0xFF00FF, 0xFF00, 0xFF000000)}},
        {"mask missing", {1, 1, 32, pixels, 3, Masks(0, 0xFF00, 0xFF)}},
        {"palette beyond the file", {1, 1, 8, pixels, 0, "", 256}},
        {"palette of a million entries", {1, 1, 8, pixels, 0, RedAndGreen(), 1000000}},
    };
    for (const auto& c : cases)
        EXPECT_TRUE(IsRefused(BmpFile(c.parts))) << c.what;
}

TEST(BmpDecoder, RefusesPixelsThatBeginOutsideTheFile)
{
    for (const uint32_t offset : {0u, 13u, 59u, 0xFFFFFFFFu}) {
        std::string file = BmpFile({1, 1, 24, Bytes({1, 2, 3, 0})});
        file.replace(10, 4, U32(offset));
        EXPECT_TRUE(IsRefused(file)) << offset;
    }
}
