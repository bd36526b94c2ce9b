// Rules for every kind of image file, especially damaged ones.

#include "platform/headless/d3dx/ImageCodec.h"

#include "platform/headless/d3d9/PixelFormat.h"
#include "platform/headless/d3dx/ImageDecoders.h"
#include "platform/headless/d3dx/ImageFileBytes.h"
#include "tests/platform/d3dx/ImageBytes.h"
#include "tests/platform/d3dx/SampleImages.h"
#include "tests/platform/headless_d3dx/DecodedPixels.h"
#include "tests/support/ScratchDirectory.h"
#include "tests/support/SolidDds.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <gtest/gtest.h>

using namespace headless;

namespace {

// The files that all hosts read and those that only this one reads.
std::vector<SampleImage> AllSamples()
{
    std::vector<SampleImage> samples = SampleImages();
    samples.push_back({"PPM",
                       "P6 2 1 255\n" + Bytes({1, 2, 3, 4, 5, 6}),
                       D3DXIFF_PPM,
                       D3DFMT_X8R8G8B8,
                       2,
                       1,
                       {0xFF010203, 0xFF040506}});
    samples.push_back({"PGM",
                       "P5 2 1 255\n" + Bytes({1, 2}),
                       D3DXIFF_PPM,
                       D3DFMT_L8,
                       2,
                       1,
                       {0xFF010101, 0xFF020202}});
    PngParts interlaced = {2, 2, 8, PngColour::Grey, Bytes({0, 1, 0, 2, 0, 3, 4})};
    interlaced.interlaced = true;
    samples.push_back({"PNG, interlaced",
                       PngFile(interlaced),
                       D3DXIFF_PNG,
                       D3DFMT_L8,
                       2,
                       2,
                       {0xFF010101, 0xFF020202, 0xFF030303, 0xFF040404}});
    BmpParts runs = {3, 2,
                     8, Bytes({2, 1, 0, 0, 0, 3, 1, 0, 1, 0, 0, 1}),
                     1, Bytes({0, 0, 255, 0, 0, 255, 0, 0}),
                     2};
    samples.push_back({"BMP, runs", BmpFile(runs), D3DXIFF_BMP, D3DFMT_P8, 3, 2, {}});
    return samples;
}

// However a damaged file is interpreted, the result must be consistent: reading the header alone
// reports the same info as reading the pixels, and all levels lie in the file or in memory
// allocated for them.
void ExpectOneAnswer(const std::string& bytes, const std::string& what)
{
    D3DXIMAGE_INFO info = {};
    const HRESULT headerResult = ReadImageInfo(AsFile(bytes), info);
    DecodedImage image;
    const HRESULT result = DecodeImage(AsFile(bytes), image);
    if (FAILED(result)) {
        EXPECT_TRUE(result == D3DXERR_INVALIDDATA || result == E_OUTOFMEMORY) << what << result;
        return;
    }
    ASSERT_EQ(headerResult, D3D_OK) << what;
    EXPECT_EQ(std::memcmp(&info, &image.info, sizeof info), 0) << what;
    EXPECT_TRUE(info.Width >= 1 && info.Width <= kMaxImageSide) << what << info.Width;
    EXPECT_TRUE(info.Height >= 1 && info.Height <= kMaxImageSide) << what << info.Height;
    const ImageLevel& level = image.levels[0];
    EXPECT_EQ(level.width, info.Width) << what;
    EXPECT_EQ(level.height, info.Height) << what;
    const PixelFormat* const format = FindPixelFormat(image.format);
    ASSERT_NE(format, nullptr) << what;
    EXPECT_GE(level.pitchBytes, RowBytes(*format, level.width)) << what;
    const ImageFile file = AsFile(bytes);
    const bool isInFile =
        level.bits >= file.data() &&
        level.bits + ImageBytes(*format, level.width, level.height) <= file.data() + file.size();
    EXPECT_TRUE(image.memory || isInFile) << what;
    const std::vector<uint32_t> pixels = DecodedPixels(bytes);
    EXPECT_EQ(pixels.size(), size_t{info.Width} * info.Height) << what;
    EXPECT_EQ(DecodedPixels(bytes), pixels) << what << "it is the same each time";
}

} // namespace

// TGA has no signature, so a truncated file of another kind may pass for one; none of these does.
TEST(ImageCodec, RefusesEveryTruncatedFile)
{
    for (const SampleImage& sample : AllSamples()) {
        HRESULT result = S_OK;
        DecodedPixels(sample.file, &result);
        ASSERT_EQ(result, D3D_OK) << sample.what;
        for (size_t size = 0; size < sample.file.size(); ++size) {
            // The runs of this sample fill the picture before the end mark, which may be missing.
            if (std::string(sample.what) == "BMP, runs" && size + 2 >= sample.file.size())
                continue;
            DecodedPixels(sample.file.substr(0, size), &result);
            EXPECT_EQ(result, D3DXERR_INVALIDDATA) << sample.what << ", " << size << " bytes";
        }
    }
}

TEST(ImageCodec, HeaderAndPixelsAgreeWhateverByteIsChanged)
{
    for (const SampleImage& sample : AllSamples()) {
        for (size_t at = 0; at < sample.file.size(); ++at) {
            for (const unsigned value : {0x00u, 0x01u, 0x7Fu, 0x80u, 0xFFu}) {
                std::string damaged = sample.file;
                damaged[at] = static_cast<char>(static_cast<uint8_t>(value));
                ExpectOneAnswer(damaged, sample.what + (", byte " + std::to_string(at)) + ": ");
            }
        }
    }
}

// Uncompressed pixels at the end of their files: each byte belongs to one of them.
TEST(ImageCodec, ChangedByteOfAPixelChangesOnlyThatChannel)
{
    static const struct {
        const char* what;
        std::string file; ///< two pixels, 01 02 03 and 04 05 06 in file order
        int shifts[3];    ///< where each of the three bytes of a pixel goes
    } cases[] = {
        {"PPM: red, green, blue", "P6 2 1 255\n" + Bytes({1, 2, 3, 4, 5, 6}), {16, 8, 0}},
        {"TGA: blue, green, red", TgaFile({2, 2, 1, 24, Bytes({1, 2, 3, 4, 5, 6})}), {0, 8, 16}},
    };
    for (const auto& c : cases) {
        const size_t start = c.file.size() - 6;
        for (size_t i = 0; i < 6; ++i) {
            std::vector<uint32_t> expected(2, 0xFF000000);
            for (size_t j = 0; j < 6; ++j)
                expected[j / 3] |= static_cast<uint32_t>(j == i ? 0x7F : j + 1) << c.shifts[j % 3];
            std::string changed = c.file;
            changed[start + i] = 0x7F;
            EXPECT_EQ(DecodedPixels(changed), expected) << c.what << ", byte " << i;
        }
    }
}

TEST(ImageCodec, IgnoresBytesAfterThePicture)
{
    for (const SampleImage& sample : AllSamples()) {
        const std::vector<uint32_t> expected = DecodedPixels(sample.file);
        EXPECT_EQ(DecodedPixels(sample.file + "and more"), expected) << sample.what;
    }
}

TEST(ImageCodec, ReportsColourOf24BitsAsX8R8G8B8)
{
    EXPECT_EQ(ReportedFormat(PngFile({1, 1, 8, PngColour::Rgb, Bytes({1, 2, 3})})),
              D3DFMT_X8R8G8B8);
    EXPECT_EQ(ReportedFormat(TgaFile({2, 1, 1, 24, Bytes({1, 2, 3})})), D3DFMT_X8R8G8B8);
    EXPECT_EQ(ReportedFormat(BmpFile({1, 1, 24, Bytes({1, 2, 3, 0})})), D3DFMT_X8R8G8B8);
}

TEST(ImageCodec, RefusesBytesOfUnknownKind)
{
    EXPECT_TRUE(IsRefused(""));
    EXPECT_TRUE(IsRefused("G"));
    EXPECT_TRUE(IsRefused("GIF89a" + Repeated(100, 1)));
    EXPECT_TRUE(IsRefused("II*" + Repeated(100, 0)));
    EXPECT_TRUE(IsRefused(Repeated(1000, 0)));
    EXPECT_TRUE(IsRefused(Repeated(1000, 0xFF)));
}

TEST(ImageFileBytes, ReadsAWholeFile)
{
    const ScratchDirectory scratch;
    scratch.Write("Maps/A.bin", std::string("a\0\r\n\x1A"
                                            "b",
                                            6));
    ImageFileBytes file;
    ASSERT_EQ(file.Read("maps\\a.bin"), D3D_OK);
    EXPECT_EQ(std::string(file.Bytes().begin(), file.Bytes().end()), std::string("a\0\r\n\x1A"
                                                                                 "b",
                                                                                 6));
}

TEST(ImageFileBytes, RefusesWhatIsNotAFileOrTooLarge)
{
    const ScratchDirectory scratch;
    scratch.Write("empty", "");
    scratch.Write("huge", "x");
    std::filesystem::create_directory("folder");
    std::filesystem::resize_file("huge", (1ull << 30) + 1); // sparse: uses no disk space
    for (const char* name : {"empty", "huge", "folder", "missing", ""}) {
        ImageFileBytes file;
        EXPECT_EQ(file.Read(name), D3DXERR_INVALIDDATA) << name;
    }
}

// A file has the lowest byte of each pixel first. Where numbers in memory have the highest first, the bytes are
// reversed, in memory of the picture's own.
TEST(ImageCodec, PixelsOfAFileAreReorderedForBigEndianMemory)
{
    DdsParts parts = ArgbDds(
        2, 2, Bytes({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 21, 22, 23, 24}));
    parts.levels = 2;
    const std::string file = DdsFile(parts);
    for (const std::endian order : {std::endian::little, std::endian::big}) {
        DecodedImage image;
        ASSERT_EQ(DecodeDds(AsFile(file), false, image), D3D_OK);
        ASSERT_EQ(PutInMemoryOrder(order, image), D3D_OK);
        const bool isBig = order == std::endian::big;
        const auto expect = [&](const uint8_t* at, std::string stored) {
            if (isBig)
                std::reverse(stored.begin(), stored.end());
            EXPECT_EQ(std::memcmp(at, stored.data(), stored.size()), 0) << isBig;
        };
        expect(image.levels[0].bits, Bytes({1, 2, 3, 4}));
        expect(image.levels[0].bits + 12, Bytes({13, 14, 15, 16}));
        expect(image.levels[1].bits, Bytes({21, 22, 23, 24}));
        EXPECT_EQ(image.levels[2].bits, nullptr);
        EXPECT_EQ(image.memory != nullptr, isBig);
    }
}

TEST(ImageCodec, OnlyPixelsOfTwoAndFourBytesHaveAnOrder)
{
    const struct {
        D3DFORMAT format;
        std::string stored;
        std::string inBigEndianMemory;
    } cases[] = {
        {D3DFMT_R5G6B5, Bytes({1, 2, 3, 4}), Bytes({2, 1, 4, 3})},
        {D3DFMT_X8R8G8B8, Bytes({1, 2, 3, 4, 5, 6, 7, 8}), Bytes({4, 3, 2, 1, 8, 7, 6, 5})},
        {D3DFMT_R8G8B8, Bytes({1, 2, 3, 4, 5, 6}), Bytes({1, 2, 3, 4, 5, 6})},
        {D3DFMT_L8, Bytes({1, 2}), Bytes({1, 2})},
        {D3DFMT_DXT1, Bytes({1, 2, 3, 4, 5, 6, 7, 8}), Bytes({1, 2, 3, 4, 5, 6, 7, 8})},
    };
    for (const auto& c : cases) {
        DecodedImage image;
        image.info.Width = 2;
        image.info.Height = 1;
        uint8_t* pixels = image.Allocate(c.format);
        ASSERT_TRUE(pixels);
        std::memcpy(pixels, c.stored.data(), c.stored.size());
        ASSERT_EQ(PutInMemoryOrder(std::endian::big, image), D3D_OK);
        EXPECT_EQ(std::string(reinterpret_cast<char*>(pixels), c.stored.size()),
                  c.inBigEndianMemory)
            << c.format;
    }
}

TEST(ImageCodec, AllFacesOfACubeAreReordered)
{
    const std::string file = CubeDds({1, 2, 3, 4, 5, 0x00000006});
    DecodedImage image;
    ASSERT_EQ(DecodeDds(AsFile(file), false, image), D3D_OK);
    ASSERT_EQ(PutInMemoryOrder(std::endian::big, image), D3D_OK);
    const uint8_t* last = image.levels[0].bits + 5 * image.faceBytes + image.faceBytes - 4;
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(last), 4), Bytes({0, 0, 0, 6}));
}
