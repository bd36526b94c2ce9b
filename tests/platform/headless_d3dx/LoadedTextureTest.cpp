// What this host does as documented where others take shortcuts: filtered levels, dithering,
// formats without a counterpart, failures half-way.

#include "platform/headless/d3d9/TestControl.h"
#include "tests/platform/d3dx/ImageBytes.h"
#include "tests/platform/d3dx/ImageDevice.h"
#include "tests/platform/d3dx/SampleImages.h"
#include "tests/support/FakeDevice.h"
#include "tests/support/FakeDirect3D.h"

#include <numeric>
#include <utility>

using namespace headless;

namespace {

using Pixels = std::vector<uint32_t>;

class LoadedTexture : public ImageDevice {};

std::string Ramp(unsigned count)
{
    std::string bytes;
    for (unsigned i = 0; i < count; ++i)
        bytes += Bytes({i * 10});
    return bytes;
}

} // namespace

TEST_F(LoadedTexture, EachLevelIsTheMeanOfTheOneAbove)
{
    // 0 10 20 30 | 40 50 60 70 | ... 150: the first 2 by 2 square is (0 + 10 + 40 + 50) / 4 = 25.
    LoadRequest request;
    request.levels = 0;
    request.format = D3DFMT_A8R8G8B8;
    const TextureHandle texture = Load(PngFile({4, 4, 8, PngColour::Grey, Ramp(16)}), request);
    ASSERT_TRUE(texture);
    ASSERT_EQ(texture->GetLevelCount(), 3u);
    EXPECT_EQ(LevelPixels(*texture, 1), (Pixels{0xFF191919, 0xFF2D2D2D, 0xFF696969, 0xFF7D7D7D}));
    EXPECT_EQ(LevelPixels(*texture, 2), Pixels{0xFF4B4B4B}); // (25 + 45 + 105 + 125) / 4 = 75
}

TEST_F(LoadedTexture, LevelsOfOddSidesKeepTheMean)
{
    // 3 by 1 becomes 1 by 1: (0 + 10 + 20) / 3.
    LoadRequest request;
    request.levels = 0;
    request.format = D3DFMT_L8;
    const TextureHandle texture = Load(PngFile({3, 1, 8, PngColour::Grey, Ramp(3)}), request);
    ASSERT_TRUE(texture);
    ASSERT_EQ(texture->GetLevelCount(), 2u);
    EXPECT_EQ(LevelBytes(*texture, 1, 1, 1), Bytes({10}));
}

TEST_F(LoadedTexture, PointFilterTakesOnePixelForEachLevel)
{
    LoadRequest request;
    request.levels = 0;
    request.format = D3DFMT_L8;
    request.mipFilter = D3DX_FILTER_POINT;
    const TextureHandle texture = Load(PngFile({4, 1, 8, PngColour::Grey, Ramp(4)}), request);
    ASSERT_TRUE(texture);
    // The centres of the two pixels fall on borders between the four: the right one of each pair is
    // used.
    EXPECT_EQ(LevelBytes(*texture, 1, 2, 1), Bytes({10, 30}));
}

TEST_F(LoadedTexture, LevelsMissingFromADdsFileAreMade)
{
    DdsParts parts = ArgbDds(4, 1, "");
    parts.levels = 2;
    for (const unsigned value : {10u, 20u, 30u, 40u, 99u, 101u}) // the second level is not a mean
        parts.pixels += Bytes({value, value, value, 255});
    LoadRequest request;
    request.levels = 0;
    const TextureHandle texture = Load(DdsFile(parts), request);
    ASSERT_TRUE(texture);
    ASSERT_EQ(texture->GetLevelCount(), 3u);
    EXPECT_EQ(LevelPixels(*texture, 1), (Pixels{0xFF636363, 0xFF656565}));
    EXPECT_EQ(LevelPixels(*texture, 2), Pixels{0xFF646464});
}

TEST_F(LoadedTexture, LevelsOfADdsFileAreLeftOutWhenTheSizeChanges)
{
    DdsParts parts = ArgbDds(2, 1, Bytes({10, 10, 10, 255, 20, 20, 20, 255, 99, 99, 99, 255}));
    parts.levels = 2;
    LoadRequest request;
    request.width = 4;
    request.levels = 0;
    request.filter = D3DX_FILTER_POINT;
    const TextureHandle texture = Load(DdsFile(parts), request);
    ASSERT_TRUE(texture);
    ASSERT_EQ(texture->GetLevelCount(), 3u);
    EXPECT_EQ(LevelPixels(*texture, 1), (Pixels{0xFF0A0A0A, 0xFF141414})) << "not the file's 99";
}

TEST_F(LoadedTexture, CompressesAndFiltersInOneGo)
{
    // One colour that R5G6B5 represents exactly survives every step.
    std::string rows;
    for (int i = 0; i < 64; ++i)
        rows += Bytes({0xFF, 0x00, 0xFF});
    LoadRequest request;
    request.levels = 0;
    request.format = D3DFMT_DXT1;
    const TextureHandle texture = Load(PngFile({8, 8, 8, PngColour::Rgb, rows}), request);
    ASSERT_TRUE(texture);
    ASSERT_EQ(texture->GetLevelCount(), 4u);
    for (UINT level = 1; level < 4; ++level) {
        const std::string block = LevelBytes(*texture, level, 8, 1);
        EXPECT_EQ(block.substr(0, 2), U16(0xF81F)) << level;
        EXPECT_EQ(block.substr(4, 4), U32(0)) << level;
    }
}

TEST_F(LoadedTexture, NarrowedPicturesAreDitheredByDefault)
{
    // See PixelCopyTest: half of the pixels of 4 / 255 show step 1 of 31.
    std::string rows;
    for (int i = 0; i < 16; ++i)
        rows += Bytes({0, 0, 4});
    LoadRequest request;
    request.format = D3DFMT_R5G6B5;
    request.filter = D3DX_DEFAULT;
    const TextureHandle texture = Load(PngFile({4, 4, 8, PngColour::Rgb, rows}), request);
    ASSERT_TRUE(texture);
    const std::string words = LevelBytes(*texture, 0, 8, 4);
    EXPECT_EQ(std::accumulate(words.begin(), words.end(), 0), 8);
}

TEST_F(LoadedTexture, FormatsWithoutACounterpartTakeTheNearest)
{
    const std::string pixels = Repeated(16, 0x40);
    DdsParts parts = {2, 2, pixels};
    static const struct {
        const char* what;
        unsigned flags, bits;
        uint32_t masks[4];
        D3DFORMAT expected;
    } cases[] = {
        {"24 bits", kDdsColour, 24, {0xFF0000, 0xFF00, 0xFF, 0}, D3DFMT_X8R8G8B8},
        {"red lowest, alpha",
         kDdsColour | kDdsAlpha,
         32,
         {0xFF, 0xFF00, 0xFF0000, 0xFF000000},
         D3DFMT_A8R8G8B8},
        {"red lowest", kDdsColour, 32, {0xFF, 0xFF00, 0xFF0000, 0}, D3DFMT_X8R8G8B8},
        {"12 bits", kDdsColour, 16, {0xF00, 0xF0, 0xF, 0}, D3DFMT_X1R5G5B5},
        {"grey with few bits", kDdsGrey | kDdsAlpha, 8, {0xF, 0, 0, 0xF0}, D3DFMT_A4R4G4B4},
        {"alpha alone", 0x2, 8, {0, 0, 0, 0xFF}, D3DFMT_A8R8G8B8},
        {"bump map", kDdsSigned, 16, {0xFF, 0xFF00, 0, 0}, D3DFMT_V8U8},
    };
    for (const auto& c : cases) {
        parts.formatFlags = c.flags;
        parts.bits = c.bits;
        std::copy(std::begin(c.masks), std::end(c.masks), parts.masks);
        const TextureHandle texture = Load(DdsFile(parts), {});
        ASSERT_TRUE(texture) << c.what;
        EXPECT_EQ(DescOf(*texture).Format, c.expected) << c.what;
    }
}

TEST_F(LoadedTexture, AFailedLockReleasesTheTexture)
{
    const ComHandle<IDirect3D9> fakeDirect3D(new FakeDirect3D);
    D3DPRESENT_PARAMETERS parameters = {};
    parameters.BackBufferWidth = parameters.BackBufferHeight = 64;
    parameters.BackBufferFormat = D3DFMT_X8R8G8B8;
    const ComHandle<FakeDevice> fake = FakeDevice::Create({}, parameters, fakeDirect3D.get());
    ASSERT_TRUE(fake);
    const int before = FakeObjectsAlive();
    IDirect3DDevice9* const real = std::exchange(device, fake.get());
    EXPECT_TRUE(Load(SampleImages()[0].file)) << "it can be loaded until locks fail";
    fake->lockResult = D3DERR_DRIVERINTERNALERROR;
    EXPECT_FALSE(Load(SampleImages()[0].file));
    EXPECT_EQ(result, D3DERR_DRIVERINTERNALERROR);
    EXPECT_EQ(FakeObjectsAlive(), before);
    device = real;
}

TEST_F(LoadedTexture, RefusesUnknownFilters)
{
    for (const DWORD filter : {0x6u, 0xFFFFu, 0x40000005u}) {
        LoadRequest request;
        request.filter = filter;
        EXPECT_FALSE(Load(SampleImages()[0].file, request)) << filter;
        EXPECT_EQ(result, D3DERR_INVALIDCALL) << filter;
    }
}

TEST_F(LoadedTexture, RefusesASideBeyondTheLargestTexture)
{
    LoadRequest request;
    request.width = 16385;
    EXPECT_FALSE(Load(SampleImages()[0].file, request));
    EXPECT_EQ(result, D3DERR_INVALIDCALL);
}

TEST_F(LoadedTexture, FilterTextureStartsAtTheGivenLevel)
{
    IDirect3DTexture9* made = nullptr;
    ASSERT_EQ(device->CreateTexture(4, 1, 3, 0, D3DFMT_L8, D3DPOOL_MANAGED, &made, nullptr),
              D3D_OK);
    const TextureHandle texture(made);
    D3DLOCKED_RECT locked;
    ASSERT_EQ(texture->LockRect(1, &locked, nullptr, 0), D3D_OK);
    static_cast<uint8_t*>(locked.pBits)[0] = 100;
    static_cast<uint8_t*>(locked.pBits)[1] = 50;
    texture->UnlockRect(1);
    ASSERT_EQ(D3DXFilterTexture(made, nullptr, 1, D3DX_FILTER_BOX), D3D_OK);
    EXPECT_EQ(LevelBytes(*texture, 0, 4, 1), Bytes({0, 0, 0, 0}));
    EXPECT_EQ(LevelBytes(*texture, 2, 1, 1), Bytes({75}));
    EXPECT_EQ(D3DXFilterTexture(made, nullptr, 3, D3DX_FILTER_BOX), D3DERR_INVALIDCALL);
    EXPECT_EQ(D3DXFilterTexture(nullptr, nullptr, 0, D3DX_FILTER_BOX), D3DERR_INVALIDCALL);
}

TEST_F(LoadedTexture, ASceneOnAnUndrawableSurfaceIsNotModelled)
{
    ID3DXRenderToSurface* made = nullptr;
    ASSERT_EQ(
        D3DXCreateRenderToSurface(device, 2, 2, D3DFMT_A8R8G8B8, FALSE, D3DFMT_UNKNOWN, &made),
        D3D_OK);
    const ComHandle<ID3DXRenderToSurface> path(made);
    IDirect3DSurface9* plain = nullptr;
    ASSERT_EQ(device->CreateOffscreenPlainSurface(2, 2, D3DFMT_A8R8G8B8, D3DPOOL_DEFAULT, &plain,
                                                  nullptr),
              D3D_OK);
    const ComHandle<IDirect3DSurface9> surface(plain);
    const int before = UnmodelledCallCount("ID3DXRenderToSurface::BeginScene");
    EXPECT_EQ(path->BeginScene(plain, nullptr), D3DERR_INVALIDCALL);
    EXPECT_EQ(UnmodelledCallCount("ID3DXRenderToSurface::BeginScene"), before + 1);
}
