#include "import/PictureKinds.h"

#include <gtest/gtest.h>
#include <png.h>

#include "tests/support/FileContent.h"
#include "tests/support/HostCost.h"
#include "tests/support/TreePaths.h"

static TakenPicture::Result ResultOf(const std::string& bytes)
{
    PixelBudget budget;
    return TakePicture(bytes, "a", false, budget).result;
}

/// A square of black pixels; "" if it cannot be written.
static std::string GreyPng(uint32_t side)
{
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    image.width = image.height = side;
    image.format = PNG_FORMAT_GRAY;
    const std::vector<uint8_t> pixels(size_t{side} * side);
    std::string file(pixels.size() / 100 + 1000, '\0');
    png_alloc_size_t size = file.size();
    if (!png_image_write_to_memory(&image, file.data(), &size, 0, pixels.data(), 0, nullptr))
        size = 0;
    file.resize(size);
    return file;
}

/// 4294967297 is 2^32 + 1, which an int of 32 bits takes for 1.
TEST(PictureKinds, MapsAreTakenAndDamagedOnesRefused)
{
    using Result = TakenPicture::Result;
    static const struct {
        const char* what;
        const char* bytes;
        Result expected;
    } cases[] = {
        {"small numbers", "P6 1 1 255\n123", Result::kTaken},
        {"comments between them", "P6\n# a\n1 # b\n1\n255\n123", Result::kTaken},
        {"samples of 16 bits", "P6 2 1 65535\n123456123456", Result::kTaken},
        {"width", "P6 4294967297 1 255\n123", Result::kDamaged},
        {"height", "P6 1 4294967297 255\n123", Result::kDamaged},
        {"largest value of a grey map", "P5 1 1 4294967551\n1", Result::kDamaged},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ResultOf(c.bytes), c.expected) << c.what;
}

/// A table of codes has at most 256 of them; here each of the 16 lengths announces 255.
TEST(PictureKinds, PhotographsWithMoreCodesThanThereAreBytesAreDamaged)
{
    std::string bytes("\xFF\xD8\xFF\xC0\0\x0B\x08\0\1\0\1\1\1\x11\0\xFF\xC4\x10\x03\0", 20);
    bytes += std::string(16, '\xFF') + std::string(4080, '\0') + "\xFF\xDA";
    EXPECT_EQ(ResultOf(bytes), TakenPicture::Result::kDamaged);
}

TEST(PictureKinds, PngPicturesThatAreCutShortAreDamaged)
{
    const std::string whole = FileContent(SourcePath("examples/crate.png"));
    const size_t data = whole.find("IDAT");
    ASSERT_NE(data, std::string::npos);
    std::string longer = whole;
    longer[data - 4] = 0x3F; // the block claims nearly a gigabyte
    EXPECT_EQ(ResultOf(whole), TakenPicture::Result::kTaken);
    EXPECT_EQ(ResultOf(longer), TakenPicture::Result::kDamaged);
    EXPECT_EQ(ResultOf(whole.substr(0, data + 50)), TakenPicture::Result::kDamaged);
    EXPECT_EQ(ResultOf(whole + "what follows the picture"), TakenPicture::Result::kTaken);
}

/// The header and the pixels are those of two pictures.
TEST(PictureKinds, PngPixelsBeyondTheAnnouncedOnesTakeNoMemory)
{
    constexpr size_t kHeaderEnd = 33; // the signature and the block of the header
    const std::string small = GreyPng(1);
    const std::string large = GreyPng(8000);
    ASSERT_GT(large.size(), kHeaderEnd);
    const std::string file = small.substr(0, kHeaderEnd) + large.substr(kHeaderEnd);
    ForgetPeakMemory();
    EXPECT_EQ(ResultOf(file), TakenPicture::Result::kTaken);
    EXPECT_LT(PeakMemoryGrowth(), 16 << 20); // all pixels are 64 MB
}
