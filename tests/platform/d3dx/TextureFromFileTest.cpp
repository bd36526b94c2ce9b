// What D3DXCreateTextureFromFileExA and D3DXGetImageInfoFromFileA do on every host: files, sizes,
// formats and failures.

#include "tests/platform/d3dx/ImageBytes.h"
#include "tests/platform/d3dx/ImageDevice.h"
#include "tests/platform/d3dx/SampleImages.h"
#include "tests/support/ScratchDirectory.h"

#include <cstdlib>
#include <filesystem>

namespace {

using ImageInfo = testing::Test;
class TextureFromFile : public ImageDevice {};

bool IsNear(uint32_t a, uint32_t b, int tolerance)
{
    for (int shift = 0; shift < 32; shift += 8) {
        const int distance =
            static_cast<int>(a >> shift & 0xFF) - static_cast<int>(b >> shift & 0xFF);
        if (std::abs(distance) > tolerance)
            return false;
    }
    return true;
}

void ExpectPixels(const std::vector<uint32_t>& actual, const SampleImage& sample)
{
    ASSERT_EQ(actual.size(), sample.argb.size()) << sample.what;
    for (size_t i = 0; i < actual.size(); ++i)
        EXPECT_TRUE(IsNear(actual[i], sample.argb[i], sample.tolerance))
            << sample.what << ", pixel " << i << std::hex << ": " << actual[i] << " instead of "
            << sample.argb[i];
}

std::string Dxt5Chain()
{
    // Levels of 8, 4, 2 and 1 pixels: 4 blocks, then one each, distinguished by their first colour.
    DdsParts parts = {8, 8, ""};
    parts.fourCC = "DXT5";
    parts.levels = 4;
    for (unsigned i = 0; i < 7; ++i)
        parts.pixels += Bytes({255, 255, 0, 0, 0, 0, 0, 0}) + ColourBlock(0xF800 + i, 0, 0);
    return DdsFile(parts);
}

} // namespace

TEST(ImageInfo, RecognisesKindAndSizeByTheContent)
{
    const ScratchDirectory scratch;
    for (const SampleImage& sample : SampleImages()) {
        scratch.Write("picture.any", sample.file);
        D3DXIMAGE_INFO info = {};
        ASSERT_EQ(D3DXGetImageInfoFromFileA("picture.any", &info), D3D_OK) << sample.what;
        EXPECT_EQ(info.Width, sample.width) << sample.what;
        EXPECT_EQ(info.Height, sample.height) << sample.what;
        EXPECT_EQ(info.Depth, 1u) << sample.what;
        EXPECT_EQ(info.MipLevels, 1u) << sample.what;
        EXPECT_EQ(info.ResourceType, D3DRTYPE_TEXTURE) << sample.what;
        EXPECT_EQ(info.ImageFileFormat, sample.fileFormat) << sample.what;
    }
}

// 24-bit files are tested separately: some hosts report them as R8G8B8.
TEST(ImageInfo, ReportsThePixelFormatOfTheFile)
{
    for (const SampleImage& sample : SampleImages()) {
        D3DXIMAGE_INFO info = {};
        ASSERT_EQ(D3DXGetImageInfoFromFileInMemory(sample.file.data(),
                                                   static_cast<UINT>(sample.file.size()), &info),
                  D3D_OK)
            << sample.what;
        const bool isPalette = std::string(sample.what).find("palette") != std::string::npos;
        const bool is24Bits =
            sample.textureFormat == D3DFMT_X8R8G8B8 && info.Format == D3DFMT_R8G8B8;
        if (!is24Bits) {
            EXPECT_EQ(info.Format, isPalette ? D3DFMT_P8 : sample.textureFormat) << sample.what;
        }
    }
}

TEST(ImageInfo, CountsTheLevelsOfADdsFile)
{
    const std::string file = Dxt5Chain();
    D3DXIMAGE_INFO info = {};
    ASSERT_EQ(D3DXGetImageInfoFromFileInMemory(file.data(), static_cast<UINT>(file.size()), &info),
              D3D_OK);
    EXPECT_EQ(info.MipLevels, 4u);
    EXPECT_EQ(info.Format, D3DFMT_DXT5);
}

TEST(ImageInfo, RefusesWhatIsNotAnImage)
{
    const ScratchDirectory scratch;
    scratch.Write("empty.png", "");
    scratch.Write("text.png", "A text is no picture, whatever its name says.\n");
    std::filesystem::create_directory("folder.png");
    for (const char* name : {"empty.png", "text.png", "folder.png", "missing.png"}) {
        D3DXIMAGE_INFO info = {};
        EXPECT_EQ(D3DXGetImageInfoFromFileA(name, &info), D3DXERR_INVALIDDATA) << name;
    }
    EXPECT_EQ(D3DXGetImageInfoFromFileA(nullptr, nullptr), D3DERR_INVALIDCALL);
}

TEST_F(TextureFromFile, LoadsEveryKindOfFile)
{
    for (const SampleImage& sample : SampleImages())
        ExpectPixels(LoadArgb(sample.file), sample);
}

TEST_F(TextureFromFile, TakesTheFormatOfTheFile)
{
    for (const SampleImage& sample : SampleImages()) {
        const TextureHandle texture = Load(sample.file);
        ASSERT_TRUE(texture) << sample.what;
        EXPECT_EQ(DescOf(*texture).Format, sample.textureFormat) << sample.what;
        EXPECT_EQ(DescOf(*texture).Pool, D3DPOOL_MANAGED) << sample.what;
        EXPECT_EQ(DescOf(*texture).Width, sample.width) << sample.what;
        EXPECT_EQ(DescOf(*texture).Height, sample.height) << sample.what;
    }
}

TEST_F(TextureFromFile, ReadsAFileFromDiskAndGivesItsInfo)
{
    const ScratchDirectory scratch;
    scratch.Write("maps/one.tga", TgaFile({2, 2, 1, 24, Bytes({1, 2, 3, 4, 5, 6})}));
    D3DXIMAGE_INFO info = {};
    IDirect3DTexture9* texture = nullptr;
    ASSERT_EQ(D3DXCreateTextureFromFileExA(device, "maps\\one.tga", 0, 0, 1, 0, D3DFMT_A8R8G8B8,
                                           D3DPOOL_MANAGED, D3DX_FILTER_NONE, D3DX_FILTER_NONE, 0,
                                           &info, nullptr, &texture),
              D3D_OK);
    const TextureHandle handle(texture);
    EXPECT_EQ(info.Width, 2u);
    EXPECT_EQ(info.ImageFileFormat, D3DXIFF_TGA);
    EXPECT_EQ(LevelPixels(*handle), (std::vector<uint32_t>{0xFF030201, 0xFF060504}));
}

TEST_F(TextureFromFile, RefusesMissingEmptyAndCutFiles)
{
    const ScratchDirectory scratch;
    const std::string whole = SampleImages()[0].file;
    scratch.Write("empty.png", "");
    scratch.Write("cut.png", whole.substr(0, whole.size() / 2));
    for (const char* name : {"empty.png", "cut.png", "missing.png"}) {
        IDirect3DTexture9* texture = nullptr;
        EXPECT_EQ(D3DXCreateTextureFromFileExA(device, name, 0, 0, 1, 0, D3DFMT_UNKNOWN,
                                               D3DPOOL_MANAGED, D3DX_FILTER_NONE, D3DX_FILTER_NONE,
                                               0, nullptr, nullptr, &texture),
                  D3DXERR_INVALIDDATA)
            << name;
        EXPECT_EQ(texture, nullptr) << name;
    }
}

TEST_F(TextureFromFile, RefusesArgumentsThatAreMissing)
{
    IDirect3DTexture9* texture = nullptr;
    EXPECT_EQ(D3DXCreateTextureFromFileA(nullptr, "a.png", &texture), D3DERR_INVALIDCALL);
    EXPECT_EQ(D3DXCreateTextureFromFileA(device, nullptr, &texture), D3DERR_INVALIDCALL);
    EXPECT_EQ(D3DXCreateTextureFromFileA(device, "a.png", nullptr), D3DERR_INVALIDCALL);
}

TEST_F(TextureFromFile, KeepsSidesThatAreNotPowersOfTwo)
{
    const std::string file = PngFile({3, 5, 8, PngColour::Grey, Repeated(15, 9)});
    for (const UINT side : {0u, static_cast<UINT>(D3DX_DEFAULT_NONPOW2)}) {
        LoadRequest request;
        request.width = request.height = side;
        const TextureHandle texture = Load(file, request);
        ASSERT_TRUE(texture);
        EXPECT_EQ(DescOf(*texture).Width, 3u);
        EXPECT_EQ(DescOf(*texture).Height, 5u);
    }
}

TEST_F(TextureFromFile, DefaultSidesAreRoundedUpToPowersOfTwo)
{
    LoadRequest request;
    request.width = request.height = D3DX_DEFAULT;
    const TextureHandle texture =
        Load(PngFile({3, 5, 8, PngColour::Grey, Repeated(15, 9)}), request);
    ASSERT_TRUE(texture);
    EXPECT_EQ(DescOf(*texture).Width, 4u);
    EXPECT_EQ(DescOf(*texture).Height, 8u);
}

TEST_F(TextureFromFile, WithoutAFilterTheRestIsEmpty)
{
    LoadRequest request;
    request.width = 2;
    request.height = 2;
    EXPECT_EQ(LoadArgb(PngFile({1, 1, 8, PngColour::Rgb, Bytes({1, 2, 3})}), request),
              (std::vector<uint32_t>{0xFF010203, 0, 0, 0}));
}

TEST_F(TextureFromFile, PointFilterRepeatsPixels)
{
    LoadRequest request;
    request.width = 4;
    request.height = 1;
    request.filter = D3DX_FILTER_POINT;
    const uint32_t a = 0xFF010203;
    const uint32_t b = 0xFF040506;
    EXPECT_EQ(LoadArgb(PngFile({2, 1, 8, PngColour::Rgb, Bytes({1, 2, 3, 4, 5, 6})}), request),
              (std::vector<uint32_t>{a, a, b, b}));
}

TEST_F(TextureFromFile, CountsLevelsAsAsked)
{
    static const struct {
        const char* what;
        UINT asked;
        DWORD expected;
    } cases[] = {
        {"one", 1, 1},
        {"two", 2, 2},
        {"0: the full chain", 0, 4}, // 8, 4, 2, 1
        {"default: the full chain", D3DX_DEFAULT, 4},
        {"more than there are", 9, 4},
        {"as many as the file has", static_cast<UINT>(D3DX_FROM_FILE), 1},
    };
    const std::string file = PngFile({8, 4, 8, PngColour::Grey, Repeated(32, 9)});
    for (const auto& c : cases) {
        LoadRequest request;
        request.levels = c.asked;
        const TextureHandle texture = Load(file, request);
        ASSERT_TRUE(texture) << c.what;
        EXPECT_EQ(texture->GetLevelCount(), c.expected) << c.what;
    }
}

TEST_F(TextureFromFile, SingleColourStaysTheSameInAllLevels)
{
    LoadRequest request;
    request.levels = 0;
    request.format = D3DFMT_A8R8G8B8;
    const TextureHandle texture = Load(TgaFile({2, 4, 4, 32,
                                                [] {
                                                    std::string pixels;
                                                    for (int i = 0; i < 16; ++i)
                                                        pixels += Bytes({0x10, 0x20, 0x30, 0x80});
                                                    return pixels;
                                                }()}),
                                       request);
    ASSERT_TRUE(texture);
    ASSERT_EQ(texture->GetLevelCount(), 3u);
    EXPECT_EQ(LevelPixels(*texture, 1), std::vector<uint32_t>(4, 0x80302010));
    EXPECT_EQ(LevelPixels(*texture, 2), std::vector<uint32_t>(1, 0x80302010));
}

TEST_F(TextureFromFile, CopiesTheBlocksAndLevelsOfADdsFile)
{
    const std::string file = Dxt5Chain();
    LoadRequest request;
    request.levels = static_cast<UINT>(D3DX_FROM_FILE);
    const TextureHandle texture = Load(file, request);
    ASSERT_TRUE(texture);
    ASSERT_EQ(texture->GetLevelCount(), 4u);
    EXPECT_EQ(DescOf(*texture).Format, D3DFMT_DXT5);
    EXPECT_EQ(LevelBytes(*texture, 0, 32, 2), file.substr(128, 64));
    for (UINT level = 1; level < 4; ++level)
        EXPECT_EQ(LevelBytes(*texture, level, 16, 1), file.substr(192 + (level - 1) * 16, 16))
            << level;
}

TEST_F(TextureFromFile, CompressedSidesAreRoundedUpToWholeBlocks)
{
    LoadRequest request;
    request.format = D3DFMT_DXT1;
    const TextureHandle texture =
        Load(PngFile({5, 3, 8, PngColour::Grey, Repeated(15, 9)}), request);
    ASSERT_TRUE(texture);
    EXPECT_EQ(DescOf(*texture).Width, 8u);
    EXPECT_EQ(DescOf(*texture).Height, 4u);
}

TEST_F(TextureFromFile, ConvertsToTheFormatThatIsAskedFor)
{
    // 0x80 is 128/255 = 15.56/31 = 31.6/63: rounded 16 and 32. 0xFF is all ones.
    const std::string file = PngFile({1, 1, 8, PngColour::Rgb, Bytes({0xFF, 0x80, 0})});
    LoadRequest request;
    request.format = D3DFMT_R5G6B5;
    const TextureHandle texture = Load(file, request);
    ASSERT_TRUE(texture);
    EXPECT_EQ(LevelBytes(*texture, 0, 2, 1), U16(31 << 11 | 32 << 5));
}

// Keyed pixels have alpha 0; hosts differ in the colour that remains.
TEST_F(TextureFromFile, ColourKeyBecomesTransparent)
{
    const std::string file =
        PngFile({3, 1, 8, PngColour::Rgb, Bytes({1, 2, 3, 255, 0, 255, 1, 2, 4})});
    LoadRequest request;
    request.colorKey = 0xFFFF00FF;
    const TextureHandle texture = Load(file, request);
    ASSERT_TRUE(texture);
    ASSERT_EQ(DescOf(*texture).Format, D3DFMT_A8R8G8B8) << "room for the alpha";
    const std::vector<uint32_t> pixels = LevelPixels(*texture);
    EXPECT_EQ(pixels[0], 0xFF010203);
    EXPECT_EQ(pixels[1] >> 24, 0u);
    EXPECT_EQ(pixels[2], 0xFF010204);
}

TEST_F(TextureFromFile, ColourKeyComparesTheAlphaToo)
{
    const std::string file =
        PngFile({2, 1, 8, PngColour::Rgba, Bytes({255, 0, 255, 255, 255, 0, 255, 254})});
    LoadRequest request;
    request.colorKey = 0xFFFF00FF;
    const std::vector<uint32_t> pixels = LoadArgb(file, request);
    ASSERT_EQ(pixels.size(), 2u);
    EXPECT_EQ(pixels[0] >> 24, 0u);
    EXPECT_EQ(pixels[1], 0xFEFF00FF);
}

TEST_F(TextureFromFile, ColourKeyZeroIsNone)
{
    const std::string file = PngFile({1, 1, 8, PngColour::Rgb, Bytes({0, 0, 0})});
    const TextureHandle texture = Load(file);
    ASSERT_TRUE(texture);
    EXPECT_EQ(DescOf(*texture).Format, D3DFMT_X8R8G8B8);
}

TEST_F(TextureFromFile, FillsTexturesThatCannotBeLocked)
{
    LoadRequest request;
    request.pool = D3DPOOL_DEFAULT;
    request.usage = D3DUSAGE_RENDERTARGET;
    request.format = D3DFMT_X8R8G8B8;
    const TextureHandle texture =
        Load(PngFile({2, 1, 8, PngColour::Rgb, Bytes({1, 2, 3, 4, 5, 6})}), request);
    ASSERT_TRUE(texture);
    EXPECT_EQ(DescOf(*texture).Pool, D3DPOOL_DEFAULT);

    IDirect3DSurface9* target = nullptr;
    IDirect3DSurface9* copy = nullptr;
    ASSERT_EQ(texture->GetSurfaceLevel(0, &target), D3D_OK);
    const ComHandle<IDirect3DSurface9> targetHandle(target);
    ASSERT_EQ(device->CreateOffscreenPlainSurface(2, 1, D3DFMT_X8R8G8B8, D3DPOOL_SYSTEMMEM, &copy,
                                                  nullptr),
              D3D_OK);
    const ComHandle<IDirect3DSurface9> copyHandle(copy);
    ASSERT_EQ(device->GetRenderTargetData(target, copy), D3D_OK);
    D3DLOCKED_RECT locked;
    ASSERT_EQ(copy->LockRect(&locked, nullptr, D3DLOCK_READONLY), D3D_OK);
    const auto* pixels = static_cast<const uint32_t*>(locked.pBits);
    EXPECT_EQ(pixels[0] & 0xFFFFFF, 0x010203u);
    EXPECT_EQ(pixels[1] & 0xFFFFFF, 0x040506u);
    copy->UnlockRect();
}
