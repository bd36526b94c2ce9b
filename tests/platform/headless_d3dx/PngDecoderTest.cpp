#include "tests/platform/d3dx/ImageBytes.h"
#include "tests/platform/headless_d3dx/DecodedPixels.h"

#include <gtest/gtest.h>

using namespace headless;

namespace {

using Pixels = std::vector<uint32_t>;

const char kThreeColours[] = "\xFF\x00\x00\x00\xFF\x00\x00\x00\xFF"; // red, green, blue

std::string Palette()
{
    return PngChunk("PLTE", std::string(kThreeColours, 9));
}

// Only a header, which declares `width` by `height` pixels.
std::string Promise(unsigned width, unsigned height)
{
    PngParts parts = {width, height, 8, PngColour::Rgba, ""};
    parts.interlaced = true; // writes `rows` unchanged, so none are needed
    return PngFile(parts);
}

} // namespace

TEST(PngDecoder, ReadsEveryKindOfPixel)
{
    const struct {
        const char* what;
        PngParts parts;
        D3DFORMAT reported;
        Pixels expected;
    } cases[] = {
        // 1 bit is 0 or 255; 2 bits are steps of 85, 4 bits of 17.
        {"grey, 1 bit",
         {3, 1, 1, PngColour::Grey, Bytes({0xA0})},
         D3DFMT_L8,
         {0xFFFFFFFF, 0xFF000000, 0xFFFFFFFF}},
        {"grey, 2 bits",
         {4, 1, 2, PngColour::Grey, Bytes({0x1B})},
         D3DFMT_L8,
         {0xFF000000, 0xFF555555, 0xFFAAAAAA, 0xFFFFFFFF}},
        {"grey, 4 bits",
         {2, 1, 4, PngColour::Grey, Bytes({0x3C})},
         D3DFMT_L8,
         {0xFF333333, 0xFFCCCCCC}},
        {"grey, 16 bits cut to 8",
         {1, 1, 16, PngColour::Grey, Bytes({0x7F, 0xFF})},
         D3DFMT_L8,
         {0xFF7F7F7F}},
        {"grey and alpha",
         {1, 1, 8, PngColour::GreyAlpha, Bytes({0x20, 0x40})},
         D3DFMT_A8R8G8B8,
         {0x40202020}},
        {"grey with one transparent value",
         {2, 1, 8, PngColour::Grey, Bytes({7, 8}), PngChunk("tRNS", Bytes({0, 7}))},
         D3DFMT_A8R8G8B8,
         {0x00070707, 0xFF080808}},
        {"colour", {1, 1, 8, PngColour::Rgb, Bytes({1, 2, 3})}, D3DFMT_X8R8G8B8, {0xFF010203}},
        {"colour, 16 bits cut to 8",
         {1, 1, 16, PngColour::Rgb, Bytes({1, 0xFF, 2, 0xFF, 3, 0xFF})},
         D3DFMT_X8R8G8B8,
         {0xFF010203}},
        {"colour with one transparent value",
         {2, 1, 8, PngColour::Rgb, Bytes({1, 2, 3, 1, 2, 4}),
          PngChunk("tRNS", Bytes({0, 1, 0, 2, 0, 3}))},
         D3DFMT_A8R8G8B8,
         {0x00010203, 0xFF010204}},
        {"colour and alpha",
         {1, 1, 8, PngColour::Rgba, Bytes({1, 2, 3, 4})},
         D3DFMT_A8R8G8B8,
         {0x04010203}},
        {"palette, 1 bit",
         {2, 1, 1, PngColour::Palette, Bytes({0x40}), Palette()},
         D3DFMT_P8,
         {0xFFFF0000, 0xFF00FF00}},
        {"palette, 2 bits",
         {3, 1, 2, PngColour::Palette, Bytes({0x18}), Palette()},
         D3DFMT_P8,
         {0xFFFF0000, 0xFF00FF00, 0xFF0000FF}},
        {"palette, 4 bits",
         {3, 1, 4, PngColour::Palette, Bytes({0x02, 0x10}), Palette()},
         D3DFMT_P8,
         {0xFFFF0000, 0xFF0000FF, 0xFF00FF00}},
        {"palette with transparency",
         {2, 1, 8, PngColour::Palette, Bytes({0, 1}), Palette() + PngChunk("tRNS", Bytes({0x80}))},
         D3DFMT_P8,
         {0x80FF0000, 0xFF00FF00}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(DecodedPixels(PngFile(c.parts)), c.expected) << c.what;
        EXPECT_EQ(ReportedFormat(PngFile(c.parts)), c.reported) << c.what;
    }
}

TEST(PngDecoder, ReadsInterlacedFiles)
{
    // Of 2 by 2 pixels the first pass has the top left one, the sixth the one to its right, the
    // seventh the lower row; each row begins with its filter byte.
    PngParts parts = {2, 2, 8, PngColour::Grey, Bytes({0, 1, 0, 2, 0, 3, 4})};
    parts.interlaced = true;
    EXPECT_EQ(DecodedPixels(PngFile(parts)),
              (Pixels{0xFF010101, 0xFF020202, 0xFF030303, 0xFF040404}));
}

TEST(PngDecoder, PaletteIndexBeyondThePaletteIsBlackOrRefused)
{
    HRESULT result = S_OK;
    const Pixels pixels =
        DecodedPixels(PngFile({1, 1, 8, PngColour::Palette, Bytes({200}), Palette()}), &result);
    if (SUCCEEDED(result)) {
        EXPECT_EQ(pixels, Pixels{0xFF000000});
    } else {
        EXPECT_EQ(result, D3DXERR_INVALIDDATA);
    }
}

TEST(PngDecoder, RefusesSidesOutOfRangeBeforeItTakesMemory)
{
    EXPECT_TRUE(IsRefused(Promise(0, 1)));
    EXPECT_TRUE(IsRefused(Promise(1, 0)));
    EXPECT_TRUE(IsRefused(Promise(40000, 1)));
    EXPECT_TRUE(IsRefused(Promise(1, 40000)));
    EXPECT_TRUE(IsRefused(Promise(0x7FFFFFFF, 0x7FFFFFFF)));
    EXPECT_TRUE(IsRefused(Promise(16384, 16384))) << "a gigabyte cannot come out of 80 bytes";
}

TEST(PngDecoder, RefusesAWrongChecksum)
{
    const std::string good = PngFile({1, 1, 8, PngColour::Rgb, Bytes({1, 2, 3})});
    std::string bad = good;
    bad[bad.size() - 13] = static_cast<char>(bad[bad.size() - 13] ^ 1); // of the pixels' chunk
    EXPECT_EQ(DecodedPixels(good), Pixels{0xFF010203});
    HRESULT result = S_OK;
    DecodedPixels(bad, &result);
    EXPECT_EQ(result, D3DXERR_INVALIDDATA);
}

TEST(PngDecoder, RefusesMissingRows)
{
    PngParts parts = {1, 2, 8, PngColour::Grey, Bytes({0, 7})};
    parts.interlaced = true; // writes `rows` unchanged, and one is missing
    HRESULT result = S_OK;
    DecodedPixels(PngFile(parts), &result);
    EXPECT_EQ(result, D3DXERR_INVALIDDATA);
}
