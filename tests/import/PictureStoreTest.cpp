// The pictures of a model beside its scene: which keep their bytes, which become PNG, which are left out.

#include "import/PictureStore.h"

#include <gmock/gmock.h>
#include <png.h>

#include "gltf/NoticeList.h"
#include "tests/support/ScratchDirectory.h"
#include "tests/support/TreePaths.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// A red and a green pixel.
const std::string
    kGif("GIF89a\2\0\1\0\x80\0\0\xFF\0\0\0\xFF\0\x2C\0\0\0\0\2\0\1\0\0\2\2\x44\x0A\0;", 35);
const std::string kPixmap("P6\n2 1\n255\n\xFF\0\0\0\xFF\0", 17);
const std::string kTga("\0\0\2\0\0\0\0\0\0\0\0\0\2\0\1\0\x18\0\0\0\xFF\0\xFF\0", 24);

class PictureStoreTest : public testing::Test {
protected:
    /// The leaf of one picture inside a model, used by an opaque material or by one that is cut out.
    std::string Kept(const std::string& bytes, const std::string& name,
                     ModelAlpha alpha = ModelAlpha::kCutOut)
    {
        Model model;
        model.images.resize(1);
        model.images[0].name = name;
        model.images[0].bytes = bytes;
        model.materials.resize(1);
        model.materials[0].map.image = 0;
        model.materials[0].alpha = alpha;
        notices = {};
        return PictureStore("", "model", notices).Keep(model)[0];
    }
    /// A file as its pixels, four bytes each; empty if it is no PNG.
    std::vector<uint8_t> Pixels(const std::string& file)
    {
        const std::string bytes = directory.Read(file);
        png_image image = {};
        image.version = PNG_IMAGE_VERSION;
        if (!png_image_begin_read_from_memory(&image, bytes.data(), bytes.size()))
            return {};
        image.format = PNG_FORMAT_RGBA;
        std::vector<uint8_t> pixels(PNG_IMAGE_SIZE(image));
        png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr);
        return pixels;
    }
    /// A picture of one pixel as PNG.
    static std::string Png(uint32_t format, const std::vector<uint16_t>& pixel)
    {
        png_image image = {};
        image.version = PNG_IMAGE_VERSION;
        image.width = image.height = 1;
        image.format = format;
        std::vector<uint8_t> narrow(pixel.begin(), pixel.end());
        const void* data = format & PNG_FORMAT_FLAG_LINEAR ? static_cast<const void*>(pixel.data())
                                                           : narrow.data();
        std::string bytes(1000, '\0');
        png_alloc_size_t size = bytes.size();
        EXPECT_TRUE(png_image_write_to_memory(&image, bytes.data(), &size, 0, data, 0, nullptr));
        bytes.resize(size);
        return bytes;
    }

    ScratchDirectory directory;
    NoticeList notices;
};

} // namespace

TEST_F(PictureStoreTest, OtherKindsBecomePng)
{
    for (const std::string& bytes : {kGif, kPixmap}) {
        EXPECT_EQ(Kept(bytes, "flag.gif"), "model-flag.png");
        EXPECT_THAT(Pixels("model-flag.png"), ElementsAre(255, 0, 0, 255, 0, 255, 0, 255));
        EXPECT_THAT(notices.Lines(), IsEmpty());
    }
}

TEST_F(PictureStoreTest, KindsOfScenesKeepTheirBytes)
{
    const std::string wide = Png(PNG_FORMAT_LINEAR_RGB_ALPHA, {65535, 300, 5, 65535});
    const struct {
        const char* what;
        std::string bytes;
        const char* name;
        const char* expected;
    } cases[] = {
        {"PNG of 16 bits", wide, "a.jpg", "model-a.png"},
        {"JPEG by another name", directory.Read(SourcePath("fuzz/corpus/image/jpeg-grey.jpg")),
         "c.png", "model-c.jpg"},
        {"BMP", directory.Read(SourcePath("examples/paving.bmp")), "paving", "model-paving.bmp"},
        {"TGA, known by its name only", kTga, "b.TGA", "model-b.tga"},
    };
    for (const auto& c : cases) {
        ASSERT_FALSE(c.bytes.empty()) << c.what;
        EXPECT_EQ(Kept(c.bytes, c.name), c.expected) << c.what;
        EXPECT_EQ(directory.Read(c.expected), c.bytes) << c.what;
        EXPECT_THAT(notices.Lines(), IsEmpty()) << c.what;
    }
}

TEST_F(PictureStoreTest, AnotherKindByTheNameOfTgaBecomesPng)
{
    EXPECT_EQ(Kept(kGif, "flag.tga"), "model-flag.png");
    EXPECT_EQ(Pixels("model-flag.png").size(), 8u);
}

TEST_F(PictureStoreTest, OpaqueMaterialsHaveNoAlpha)
{
    const std::string clear = Png(PNG_FORMAT_RGBA, {10, 20, 30, 40});
    EXPECT_EQ(Kept(clear, "glass", ModelAlpha::kOpaque), "model-glass.png");
    EXPECT_THAT(Pixels("model-glass.png"), ElementsAre(10, 20, 30, 255));
    EXPECT_EQ(Kept(clear, "glass", ModelAlpha::kBlend), "model-glass.png");
    EXPECT_EQ(directory.Read("model-glass.png"), clear);
    const std::string solid = Png(PNG_FORMAT_RGBA, {10, 20, 30, 255});
    EXPECT_EQ(Kept(solid, "wood", ModelAlpha::kOpaque), "model-wood.png");
    EXPECT_EQ(directory.Read("model-wood.png"), solid);
}

TEST_F(PictureStoreTest, DamagedAndHugePicturesAreLeftOut)
{
    EXPECT_EQ(Kept("not a picture", "a.png"), "");
    EXPECT_THAT(notices.Lines(),
                ElementsAre("pictures are damaged or of a kind that is not read (1)"));
    std::string cut = Png(PNG_FORMAT_RGBA, {1, 2, 3, 4});
    cut.resize(cut.size() / 2);
    EXPECT_EQ(Kept(cut, "a.png"), "");
    EXPECT_THAT(notices.Lines(),
                ElementsAre("pictures are damaged or of a kind that is not read (1)"));
    std::string huge = kGif;
    huge[7] = huge[9] = '\x30'; // 12,290 times 12,289 pixels
    EXPECT_EQ(Kept(huge, "a.gif"), "");
    EXPECT_THAT(notices.Lines(), ElementsAre("pictures are too large to be converted (1)"));
}
