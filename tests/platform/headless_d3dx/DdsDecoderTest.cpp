#include "tests/platform/d3dx/ImageBytes.h"
#include "tests/platform/headless_d3dx/DecodedPixels.h"

#include <gtest/gtest.h>

using namespace headless;

namespace {

using Pixels = std::vector<uint32_t>;

DdsParts Masked(unsigned flags, unsigned bits, uint32_t red, uint32_t green, uint32_t blue,
                uint32_t alpha, const std::string& pixels)
{
    DdsParts parts = {1, 1, pixels};
    parts.formatFlags = flags;
    parts.bits = bits;
    parts.masks[0] = red;
    parts.masks[1] = green;
    parts.masks[2] = blue;
    parts.masks[3] = alpha;
    return parts;
}

DdsParts Blocks(const char* fourCC, unsigned width, unsigned height, const std::string& blocks)
{
    DdsParts parts = {width, height, blocks};
    parts.fourCC = fourCC;
    return parts;
}

std::string Patched(std::string file, size_t offset, uint32_t value)
{
    return file.replace(offset, 4, U32(value));
}

} // namespace

TEST(DdsDecoder, ReadsEveryLayout)
{
    constexpr unsigned kColourAlpha = kDdsColour | kDdsAlpha;
    const struct {
        const char* what;
        DdsParts parts;
        D3DFORMAT expected;
        uint32_t pixel;
    } cases[] = {
        {"R8G8B8", Masked(kDdsColour, 24, 0xFF0000, 0xFF00, 0xFF, 0, Bytes({1, 2, 3})),
         D3DFMT_R8G8B8, 0xFF030201},
        {"A8R8G8B8", ArgbDds(1, 1, Bytes({1, 2, 3, 4})), D3DFMT_A8R8G8B8, 0x04030201},
        {"X8R8G8B8", Masked(kDdsColour, 32, 0xFF0000, 0xFF00, 0xFF, 0, Bytes({1, 2, 3, 4})),
         D3DFMT_X8R8G8B8, 0xFF030201},
        {"X8R8G8B8 with a mask left behind",
         Masked(kDdsColour, 32, 0xFF0000, 0xFF00, 0xFF, 0xFF000000, Bytes({1, 2, 3, 4})),
         D3DFMT_X8R8G8B8, 0xFF030201},
        {"A8B8G8R8",
         Masked(kColourAlpha, 32, 0xFF, 0xFF00, 0xFF0000, 0xFF000000, Bytes({1, 2, 3, 4})),
         D3DFMT_A8B8G8R8, 0x04010203},
        {"R5G6B5", Masked(kDdsColour, 16, 0xF800, 0x7E0, 0x1F, 0, U16(0xF800)), D3DFMT_R5G6B5,
         0xFFFF0000},
        {"X1R5G5B5", Masked(kDdsColour, 16, 0x7C00, 0x3E0, 0x1F, 0, U16(0x7C00)), D3DFMT_X1R5G5B5,
         0xFFFF0000},
        {"A1R5G5B5", Masked(kColourAlpha, 16, 0x7C00, 0x3E0, 0x1F, 0x8000, U16(0x03E0)),
         D3DFMT_A1R5G5B5, 0x0000FF00},
        {"A4R4G4B4", Masked(kColourAlpha, 16, 0xF00, 0xF0, 0xF, 0xF000, U16(0x80F0)),
         D3DFMT_A4R4G4B4, 0x8800FF00},
        {"L8", Masked(kDdsGrey, 8, 0xFF, 0, 0, 0, Bytes({9})), D3DFMT_L8, 0xFF090909},
        {"A8L8", Masked(kDdsGrey | kDdsAlpha, 16, 0xFF, 0, 0, 0xFF00, Bytes({9, 8})), D3DFMT_A8L8,
         0x08090909},
        {"A8", Masked(0x2, 8, 0, 0, 0, 0xFF, Bytes({9})), D3DFMT_A8, 0x09000000},
        // U is 127 of 127; V is negative and becomes 0.
        {"V8U8", Masked(kDdsSigned, 16, 0xFF, 0xFF00, 0, 0, Bytes({0x7F, 0x81})), D3DFMT_V8U8,
         0xFFFF00FF},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(ReportedFormat(DdsFile(c.parts)), c.expected) << c.what;
        EXPECT_EQ(DecodedPixels(DdsFile(c.parts)), Pixels{c.pixel}) << c.what;
    }
}

TEST(DdsDecoder, ReadsEveryKindOfBlock)
{
    // All codes are 0: the first end point, red. Alpha: half of 15 is 8 * 17 = 0x88; 0x40 is
    // unchanged.
    const std::string red = ColourBlock(0xF800, 0, 0);
    const std::string explicitAlpha = Repeated(8, 0x88);
    const std::string interpolated = Bytes({0x40, 0x20, 0, 0, 0, 0, 0, 0});
    const struct {
        const char* fourCC;
        std::string block;
        D3DFORMAT format;
        uint32_t pixel;
    } cases[] = {
        {"DXT1", red, D3DFMT_DXT1, 0xFFFF0000},
        {"DXT2", explicitAlpha + red, D3DFMT_DXT2, 0x88FF0000},
        {"DXT3", explicitAlpha + red, D3DFMT_DXT3, 0x88FF0000},
        {"DXT4", interpolated + red, D3DFMT_DXT4, 0x40FF0000},
        {"DXT5", interpolated + red, D3DFMT_DXT5, 0x40FF0000},
    };
    for (const auto& c : cases) {
        const std::string file = DdsFile(Blocks(c.fourCC, 3, 2, c.block));
        EXPECT_EQ(ReportedFormat(file), c.format) << c.fourCC;
        EXPECT_EQ(DecodedPixels(file), Pixels(6, c.pixel)) << c.fourCC;
    }
}

TEST(DdsDecoder, PlacesTheLevelsOneAfterAnother)
{
    // 6 by 2 pixels, then 3 by 1 and 1 by 1, of one byte each.
    DdsParts parts = Masked(kDdsGrey, 8, 0xFF, 0, 0, 0, Repeated(16, 1));
    parts.width = 6;
    parts.height = 2;
    parts.levels = 3;
    const std::string file = DdsFile(parts);
    DecodedImage image;
    ASSERT_EQ(DecodeImage(AsFile(file), image), D3D_OK);
    ASSERT_EQ(image.info.MipLevels, 3u);
    static const struct {
        UINT width, height;
        size_t offset;
    } expected[] = {{6, 2, 128}, {3, 1, 140}, {1, 1, 143}};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(image.levels[i].width, expected[i].width) << i;
        EXPECT_EQ(image.levels[i].height, expected[i].height) << i;
        EXPECT_EQ(image.levels[i].bits - AsFile(file).data(),
                  static_cast<ptrdiff_t>(expected[i].offset))
            << i;
    }
}

TEST(DdsDecoder, ReportsCubesAndVolumes)
{
    D3DXIMAGE_INFO info = {};
    DdsParts cube = ArgbDds(1, 1, Repeated(24, 7));
    cube.caps2 = 0xFE00; // a cube, all six faces
    ASSERT_EQ(ReadImageInfo(AsFile(DdsFile(cube)), info), D3D_OK);
    EXPECT_EQ(info.ResourceType, D3DRTYPE_CUBETEXTURE);
    cube.pixels.pop_back();
    EXPECT_TRUE(IsRefused(DdsFile(cube))) << "the last face is cut";

    DdsParts volume = ArgbDds(1, 1, Repeated(12, 7));
    volume.caps2 = 0x200000;
    volume.depth = 3;
    ASSERT_EQ(ReadImageInfo(AsFile(DdsFile(volume)), info), D3D_OK);
    EXPECT_EQ(info.ResourceType, D3DRTYPE_VOLUMETEXTURE);
    EXPECT_EQ(info.Depth, 3u);
    volume.depth = 4;
    EXPECT_TRUE(IsRefused(DdsFile(volume)));
    volume.depth = 0;
    EXPECT_TRUE(IsRefused(DdsFile(volume)));
    volume.depth = 0xFFFFFFFF;
    EXPECT_TRUE(IsRefused(DdsFile(volume)));
}

TEST(DdsDecoder, ThePitchOfTheHeaderIsNotUsed)
{
    const std::string file = DdsFile(ArgbDds(1, 1, Bytes({1, 2, 3, 4})));
    for (const uint32_t pitch : {1u, 1000000u, 0xFFFFFFFFu})
        EXPECT_EQ(DecodedPixels(Patched(file, 20, pitch)), Pixels{0x04030201}) << pitch;
}

TEST(DdsDecoder, RefusesHeadersThatLie)
{
    const std::string good = DdsFile(Blocks("DXT1", 8, 8, Repeated(32, 0)));
    ASSERT_FALSE(IsRefused(good));
    static const struct {
        const char* what;
        size_t offset;
        uint32_t value;
    } cases[] = {
        {"header size", 4, 123},
        {"no height", 12, 0},
        {"no width", 16, 0},
        {"too high", 12, 40000},
        {"too wide", 16, 40000},
        {"negative width", 16, 0xFFFFFFF8},
        {"more blocks than bytes", 16, 12},
        {"a size whose product wraps around", 16, 0x80000000},
        {"size of the pixel format", 76, 0},
        {"no known code", 84, 0x30315844},
        {"no known layout", 80, kDdsColour},
    };
    for (const auto& c : cases)
        EXPECT_TRUE(IsRefused(Patched(good, c.offset, c.value))) << c.what;
}

TEST(DdsDecoder, RefusesMoreLevelsThanTheSizeAllows)
{
    // 8, 4, 2, 1: four blocks and three.
    DdsParts parts = Blocks("DXT1", 8, 8, Repeated(56, 0));
    for (const unsigned levels : {5u, 15u, 16u, 1000u, 0xFFFFFFFFu}) {
        parts.levels = levels;
        EXPECT_TRUE(IsRefused(DdsFile(parts))) << levels;
    }
    parts.levels = 4;
    EXPECT_FALSE(IsRefused(DdsFile(parts)));
    parts.pixels.pop_back();
    EXPECT_TRUE(IsRefused(DdsFile(parts))) << "the last level is cut";
}
