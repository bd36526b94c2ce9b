#include "gfx/KRE_Surface.h"

#include <cstring>
#include <gtest/gtest.h>

#include "gfx/KRE_ResourceManager.h"
#include "tests/gfx/ErrorText.h"
#include "tests/gfx/StubResources.h"

namespace {

/// An engine surface over pixels chosen by a test. `stub` lives as long as `surface` holds it.
struct SurfaceOverBytes {
    SurfaceOverBytes(D3DFORMAT format, UINT width, UINT height, int pitch,
                     std::vector<uint8_t> bytes)
        : stub(new StubSurface(format, width, height, pitch, std::move(bytes)))
    {
        surface.SetSurface(ComPointer<IDirect3DSurface9>::Adopt(stub));
    }

    KRE_Surface surface;
    StubSurface* stub;
};

std::vector<uint8_t> Bytes(std::initializer_list<DWORD> pixels)
{
    std::vector<uint8_t> bytes(pixels.size() * sizeof(DWORD));
    std::memcpy(bytes.data(), pixels.begin(), bytes.size());
    return bytes;
}

/// A square of A8R8G8B8 pixels with the alphas from `alphaAt(x, y)`.
template <class AlphaAt>
SurfaceOverBytes MakeAlphaPicture(int side, AlphaAt alphaAt)
{
    std::vector<uint8_t> bytes;
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            const uint8_t alpha = static_cast<uint8_t>(alphaAt(x, y));
            bytes.insert(bytes.end(), {0x30, 0x20, 0x10, alpha});
        }
    }
    return {D3DFMT_A8R8G8B8, static_cast<UINT>(side), static_cast<UINT>(side), side * 4, bytes};
}

} // namespace

TEST(KRE_Surface, TakesSizeAndFormatOfTheDescription)
{
    SurfaceOverBytes s(D3DFMT_R5G6B5, 3, 2, 8, std::vector<uint8_t>(16));
    EXPECT_TRUE(s.surface.IsValid());
    EXPECT_EQ(s.surface.format, D3DFMT_R5G6B5);
    EXPECT_EQ(s.surface.bytesPerPixel, 2);
    SIZE size = {};
    s.surface.GetFullSize(&size);
    EXPECT_EQ(size.cx, 3);
    EXPECT_EQ(size.cy, 2);
    RECT rect = {};
    s.surface.GetRect(&rect);
    EXPECT_EQ(rect.right, 3);
    EXPECT_EQ(rect.bottom, 2);
}

TEST(KRE_Surface, WithoutASurfaceIsNotValidAndCannotBeLocked)
{
    KRE_Surface surface;
    EXPECT_FALSE(surface.IsValid());
    EXPECT_FALSE(surface.HasAlpha());
    EXPECT_EQ(ErrorText([&] { surface.Lock(nullptr, 0); }), "LockRect failed: D3DERR_INVALIDCALL");
}

TEST(KRE_Surface, ReadsAndWritesPixelsOfTheLockedPicture)
{
    SurfaceOverBytes s(D3DFMT_A8R8G8B8, 2, 2, 8, Bytes({0x11111111, 0x22222222, 3, 4}));
    s.surface.Lock(nullptr, 0);
    D3DCOLOR color = 0;
    EXPECT_TRUE(s.surface.GetPixel(1, 0, &color));
    EXPECT_EQ(color, 0x22222222u);
    EXPECT_TRUE(s.surface.PutPixel(0, 1, 0xAABBCCDD));
    EXPECT_EQ(s.stub->bytes, Bytes({0x11111111, 0x22222222, 0xAABBCCDD, 4}));
    s.surface.Unlock();
    EXPECT_EQ(s.surface.locked, 0);
}

TEST(KRE_Surface, WritesNoMoreThanThePixel)
{
    SurfaceOverBytes s(D3DFMT_R8G8B8, 2, 1, 6, {1, 2, 3, 4, 5, 6});
    s.surface.Lock(nullptr, 0);
    EXPECT_TRUE(s.surface.PutPixel(0, 0, 0xFF0A0B0C));
    EXPECT_EQ(s.stub->bytes, (std::vector<uint8_t>{0x0C, 0x0B, 0x0A, 4, 5, 6}));
    D3DCOLOR color = 0;
    EXPECT_TRUE(s.surface.GetPixel(1, 0, &color));
    EXPECT_EQ(color, 0x00060504u);
}

TEST(KRE_Surface, AReadOutsideTheLockedRectangleLeavesTheOutputAlone)
{
    SurfaceOverBytes s(D3DFMT_A8R8G8B8, 4, 4, 16, std::vector<uint8_t>(64, 0x77));
    const RECT area = {1, 1, 3, 3};
    s.surface.Lock(&area, 0);
    static const struct {
        const char* what;
        int32_t x, y;
    } cases[] = {{"left", 0, 1},  {"above", 1, 0},       {"right", 3, 1},
                 {"below", 1, 3}, {"far below", 1, 400}, {"negative", -1, 2}};
    for (const auto& c : cases) {
        D3DCOLOR color = 0x12345678;
        EXPECT_FALSE(s.surface.GetPixel(c.x, c.y, &color)) << c.what;
        EXPECT_FALSE(s.surface.GetCompressedPix(c.x, c.y, &color)) << c.what;
        EXPECT_FALSE(s.surface.PutPixel(c.x, c.y, 0)) << c.what;
        EXPECT_EQ(color, 0x12345678u) << c.what;
    }
    EXPECT_EQ(s.stub->bytes, std::vector<uint8_t>(64, 0x77));
}

TEST(KRE_Surface, CoordinatesAreThoseOfThePictureEvenWithARectangle)
{
    SurfaceOverBytes s(D3DFMT_A8R8G8B8, 2, 2, 8, Bytes({1, 2, 3, 4}));
    const RECT area = {1, 1, 2, 2};
    s.surface.Lock(&area, 0);
    D3DCOLOR color = 0;
    EXPECT_TRUE(s.surface.GetPixel(1, 1, &color));
    EXPECT_EQ(color, 4u);
}

TEST(KRE_Surface, ARectangleBeyondThePictureIsClippedToIt)
{
    SurfaceOverBytes s(D3DFMT_A8R8G8B8, 2, 2, 8, Bytes({1, 2, 3, 4}));
    const RECT area = {0, 0, 100, 100};
    s.surface.Lock(&area, 0);
    D3DCOLOR color = 9;
    EXPECT_FALSE(s.surface.GetPixel(2, 0, &color));
    EXPECT_FALSE(s.surface.GetPixel(0, 2, &color));
    EXPECT_EQ(color, 9u);
}

TEST(KRE_Surface, WithoutALockNothingIsRead)
{
    SurfaceOverBytes s(D3DFMT_A8R8G8B8, 2, 2, 8, Bytes({1, 2, 3, 4}));
    D3DCOLOR color = 9;
    EXPECT_FALSE(s.surface.GetPixel(0, 0, &color));
    s.surface.Lock(nullptr, 0);
    s.surface.Unlock();
    EXPECT_FALSE(s.surface.GetPixel(0, 0, &color));
    EXPECT_EQ(color, 9u);
}

TEST(KRE_Surface, FillGivesEveryPixelTheColorAndStaysLocked)
{
    // 3 pixels of 2 bytes in rows of 8: the last 2 bytes of a row are padding. 0xFFF89850 is 11111
    // 100110 01010 = 0xFCCA.
    SurfaceOverBytes s(D3DFMT_R5G6B5, 3, 2, 8, std::vector<uint8_t>(16, 0x55));
    s.surface.Fill(0xFFF89850);
    const std::vector<uint8_t> row = {0xCA, 0xFC, 0xCA, 0xFC, 0xCA, 0xFC, 0x55, 0x55};
    std::vector<uint8_t> expected = row;
    expected.insert(expected.end(), row.begin(), row.end());
    EXPECT_EQ(s.stub->bytes, expected);
    EXPECT_EQ(s.surface.locked, 1);
}

TEST(KRE_Surface, FillOfACompressedPictureIsAnError)
{
    SurfaceOverBytes s(D3DFMT_DXT1, 4, 4, 8, std::vector<uint8_t>(8));
    EXPECT_EQ(ErrorText([&] { s.surface.Fill(0); }),
              "Can not fill a picture of compressed format (827611204)"); // 'DXT1'
}

TEST(KRE_Surface, CompressedPixelsAreInBlocksOfFourByFour)
{
    // 8 by 8 pixels: two rows of two DXT1 blocks of one colour each: red, green, blue, black.
    std::vector<uint8_t> bytes;
    for (const int color : {0xF800, 0x07E0, 0x001F, 0x0000}) {
        const uint8_t low = static_cast<uint8_t>(color & 0xFF);
        const uint8_t high = static_cast<uint8_t>(color >> 8);
        bytes.insert(bytes.end(), {low, high, 0, 0, 0, 0, 0, 0});
    }
    SurfaceOverBytes s(D3DFMT_DXT1, 8, 8, 16, bytes);
    s.surface.Lock(nullptr, 0);
    static const struct {
        int32_t x, y;
        D3DCOLOR color;
    } cases[] = {{0, 0, 0xFFF80000}, {3, 3, 0xFFF80000}, {4, 0, 0xFF00FC00}, {7, 3, 0xFF00FC00},
                 {0, 4, 0xFF0000F8}, {3, 7, 0xFF0000F8}, {4, 4, 0xFF000000}, {7, 7, 0xFF000000}};
    for (const auto& c : cases) {
        D3DCOLOR color = 1;
        EXPECT_TRUE(s.surface.GetCompressedPix(c.x, c.y, &color));
        EXPECT_EQ(color, c.color) << c.x << ", " << c.y;
    }
    D3DCOLOR color = 9;
    EXPECT_FALSE(s.surface.GetCompressedPix(8, 0, &color));
    EXPECT_FALSE(s.surface.GetPixel(0, 0, &color)) << "blocks have no plain pixels";
    EXPECT_FALSE(s.surface.PutPixel(0, 0, 0));
    EXPECT_EQ(color, 9u);
}

TEST(KRE_Surface, RowsOfEachBlockAreCountedFromItsOwnTop)
{
    // 4 by 8 pixels: two DXT1 blocks of red and green, whose rows have the codes 0, 1, 0, 1, so red
    // and green alternate, and red, red, green, red.
    SurfaceOverBytes s(D3DFMT_DXT1, 4, 8, 8,
                       {0x00, 0xF8, 0xE0, 0x07, 0x00, 0x55, 0x00, 0x55, //
                        0x00, 0xF8, 0xE0, 0x07, 0x00, 0x00, 0x55, 0x00});
    s.surface.Lock(nullptr, 0);
    constexpr D3DCOLOR kRed = 0xFFF80000, kGreen = 0xFF00FC00;
    const D3DCOLOR expected[8] = {kRed, kGreen, kRed, kGreen, kRed, kRed, kGreen, kRed};
    for (int32_t y = 0; y < 8; ++y) {
        D3DCOLOR color = 1;
        EXPECT_TRUE(s.surface.GetCompressedPix(2, y, &color)) << y;
        EXPECT_EQ(color, expected[y]) << y;
    }
}

TEST(KRE_Surface, CompressedPixelsOfALockedRectangleAreCountedFromItsOwnCorner)
{
    // The lower right block of 8 by 8 pixels. The rows of its codes are 0, 1, 1, 0: red, green,
    // green, red. All other bytes are 0, which is black.
    constexpr size_t kOfRectangle = 4 * 16 + 4 * 4; // where the stub's rectangle begins
    std::vector<uint8_t> bytes(kOfRectangle + 256);
    const uint8_t block[] = {0x00, 0xF8, 0xE0, 0x07, 0x00, 0x55, 0x55, 0x00};
    std::copy(std::begin(block), std::end(block), bytes.begin() + kOfRectangle);
    SurfaceOverBytes s(D3DFMT_DXT1, 8, 8, 16, bytes);
    const RECT area = {4, 4, 8, 8};
    s.surface.Lock(&area, 0);
    constexpr D3DCOLOR kRed = 0xFFF80000, kGreen = 0xFF00FC00;
    const D3DCOLOR expected[4] = {kRed, kGreen, kGreen, kRed};
    for (int32_t y = 0; y < 4; ++y) {
        for (int32_t x = 0; x < 4; ++x) {
            D3DCOLOR color = 1;
            EXPECT_TRUE(s.surface.GetCompressedPix(4 + x, 4 + y, &color)) << x << ", " << y;
            EXPECT_EQ(color, expected[y]) << x << ", " << y;
        }
    }
}

TEST(KRE_Surface, ADxt1BlockWithTheFirstColorBelowTheSecondDecodesAsFourColors)
{
    // c0 = 0x07E0 (green) below c1 = 0xF800 (red), all codes 3: a third of c0, two thirds of c1.
    SurfaceOverBytes s(D3DFMT_DXT1, 4, 4, 8, {0xE0, 0x07, 0x00, 0xF8, 0xFF, 0xFF, 0xFF, 0xFF});
    s.surface.Lock(nullptr, 0);
    D3DCOLOR color = 0;
    EXPECT_TRUE(s.surface.GetCompressedPix(2, 2, &color));
    EXPECT_EQ(color, 0xFFA55400u);
}

TEST(KRE_Surface, CompressedPixelsOfDxt2To4AreAnError)
{
    for (const D3DFORMAT format : {D3DFMT_DXT2, D3DFMT_DXT3, D3DFMT_DXT4}) {
        SurfaceOverBytes s(format, 4, 4, 16, std::vector<uint8_t>(16));
        s.surface.Lock(nullptr, 0);
        D3DCOLOR color = 9;
        EXPECT_EQ(ErrorText([&] { s.surface.GetCompressedPix(0, 0, &color); }),
                  "Unsupported texture compression format for GetCompressedPix()");
        EXPECT_EQ(color, 9u);
    }
}

TEST(KRE_Surface, CompressedPixelsOfAPlainFormatArePlainPixels)
{
    SurfaceOverBytes s(D3DFMT_A8R8G8B8, 2, 1, 8, Bytes({1, 2}));
    s.surface.Lock(nullptr, 0);
    D3DCOLOR color = 0;
    EXPECT_TRUE(s.surface.GetCompressedPix(1, 0, &color));
    EXPECT_EQ(color, 2u);
}

TEST(KRE_Surface, CompressedFormatsLeaveTheBytesPerPixelUnchanged)
{
    SurfaceOverBytes s(D3DFMT_R5G6B5, 4, 4, 8, std::vector<uint8_t>(32));
    s.surface.SetSurface(ComPointer<IDirect3DSurface9>::Adopt(
        new StubSurface(D3DFMT_DXT1, 4, 4, 8, std::vector<uint8_t>(8))));
    EXPECT_EQ(s.surface.bytesPerPixel, 2);
    EXPECT_EQ(s.surface.encodePixel(0x12345678), 0x12345678u);
}

TEST(KRE_Surface, FormatsThatTheEngineDoesNotReadAreAnError)
{
    KRE_Surface surface;
    EXPECT_EQ(ErrorText([&] {
                  surface.SetSurface(ComPointer<IDirect3DSurface9>::Adopt(
                      new StubSurface(D3DFMT_X1R5G5B5, 4, 4, 8, std::vector<uint8_t>(32))));
              }),
              "Unsupported pixel format! (24)");
}

TEST(KRE_Surface, FailuresOfTheDeviceAreErrorsWithTheirNames)
{
    SurfaceOverBytes s(D3DFMT_L8, 1, 1, 4, std::vector<uint8_t>(4));
    s.stub->lockResult = D3DERR_OUTOFVIDEOMEMORY;
    EXPECT_EQ(ErrorText([&] { s.surface.Lock(nullptr, 0); }),
              "LockRect failed: D3DERR_OUTOFVIDEOMEMORY");
    EXPECT_EQ(s.surface.locked, 0);
    s.stub->unlockResult = D3DERR_DEVICELOST;
    EXPECT_EQ(ErrorText([&] { s.surface.Unlock(); }), "UnlockRect failed: D3DERR_DEVICELOST");

    StubSurface* stub = new StubSurface(D3DFMT_L8, 1, 1, 4, std::vector<uint8_t>(4));
    stub->descResult = D3DERR_INVALIDCALL;
    EXPECT_EQ(ErrorText([&] { s.surface.SetSurface(ComPointer<IDirect3DSurface9>::Adopt(stub)); }),
              "GetDesc failed: D3DERR_INVALIDCALL");
}

TEST(KRE_Surface, FreeReleasesASurfaceAsItsLastUser)
{
    const int before = FakeObjectsAlive();
    KRE_ResourceManager manager;
    {
        SurfaceOverBytes s(D3DFMT_L8, 1, 1, 4, std::vector<uint8_t>(4));
        s.surface.manager = &manager;
        EXPECT_EQ(FakeObjectsAlive(), before + 1);
    }
    EXPECT_EQ(FakeObjectsAlive(), before);
}

TEST(KRE_Surface, FreeLeavesASharedSurfaceToItsOtherUsers)
{
    const int before = FakeObjectsAlive();
    KRE_ResourceManager manager;
    SurfaceOverBytes s(D3DFMT_L8, 1, 1, 4, std::vector<uint8_t>(4));
    s.surface.manager = &manager;
    s.surface.resourceId = manager.Add(s.stub, "shared");
    manager.Acquire(s.surface.resourceId);
    s.surface.Free();
    EXPECT_FALSE(s.surface.IsValid());
    EXPECT_EQ(FakeObjectsAlive(), before + 1);
    s.stub->Release();
    EXPECT_EQ(FakeObjectsAlive(), before);
}

TEST(HasAlpha, FindsAnAlphaBetweenTheEnds)
{
    SurfaceOverBytes s = MakeAlphaPicture(8, [](int, int) { return 128; });
    EXPECT_TRUE(s.surface.HasAlpha());
    EXPECT_EQ(s.surface.alphaState, 1);
    EXPECT_EQ(s.surface.locked, 0);
}

TEST(HasAlpha, QuirkAlphaOfOnly0And255IsNoAlpha)
{
    SurfaceOverBytes s = MakeAlphaPicture(8, [](int x, int y) { return (x + y) % 2 * 255; });
    EXPECT_FALSE(s.surface.HasAlpha());
    EXPECT_EQ(s.surface.alphaState, 0);
}

TEST(HasAlpha, SamplesAGrid)
{
    // A side of 8: 8 / 16 = 0, so 4 samples with step 2; 8 mod 4 is 0, so they start at 1: 1, 3, 5, 7.
    const auto isSample = [](int at) { return at % 2 == 1; };
    for (int y = 0; y < 8; ++y) {
        for (int x = 0; x < 8; ++x) {
            SurfaceOverBytes s =
                MakeAlphaPicture(8, [&](int px, int py) { return px == x && py == y ? 128 : 255; });
            EXPECT_EQ(s.surface.HasAlpha(), isSample(x) && isSample(y)) << x << ", " << y;
        }
    }
}

TEST(HasAlpha, GridStartsAtHalfTheRest)
{
    // A side of 11: 4 samples with step 2, rest 3, start 1: 1, 3, 5, 7. A side of 3: 3 samples with
    // step 1, no rest, start 0: all.
    SurfaceOverBytes at9 =
        MakeAlphaPicture(11, [](int x, int y) { return x == 9 && y == 1 ? 1 : 0; });
    EXPECT_FALSE(at9.surface.HasAlpha());
    SurfaceOverBytes at7 =
        MakeAlphaPicture(11, [](int x, int y) { return x == 7 && y == 1 ? 1 : 0; });
    EXPECT_TRUE(at7.surface.HasAlpha());
    SurfaceOverBytes all =
        MakeAlphaPicture(3, [](int x, int y) { return x == 2 && y == 0 ? 1 : 0; });
    EXPECT_TRUE(all.surface.HasAlpha());
}

/// The columns at which a one-row picture is sampled.
static std::vector<UINT> SampledColumns(UINT side)
{
    std::vector<UINT> columns;
    for (UINT x = 0; x < side; ++x) {
        std::vector<uint8_t> bytes(side * 4, 0xFF);
        bytes[x * 4 + 3] = 128;
        SurfaceOverBytes s(D3DFMT_A8R8G8B8, side, 1, static_cast<int>(side) * 4, bytes);
        if (s.surface.HasAlpha())
            columns.push_back(x);
    }
    return columns;
}

TEST(HasAlpha, StepAndStartFollowFromTheSide)
{
    static const struct {
        UINT side;
        std::vector<UINT> columns;
    } cases[] = {
        {1, {0}},
        {3, {0, 1, 2}},            // never more samples than pixels; step 1, start 1 / 2 = 0
        {16, {2, 6, 10, 14}},      // 4 samples at least, though 16 / 16 is 1; no rest: start 4 / 2
        {23, {1, 6, 11, 16}},      // step 5, rest 3: start 3 / 2
        {81, {0, 16, 32, 48, 64}}, // 81 / 16 = 5 samples, step 16, rest 1: start 1 / 2
        {95, {9, 28, 47, 66, 85}}, // 95 / 16 = 5 samples, step 19, no rest: start 19 / 2
    };
    for (const auto& c : cases)
        EXPECT_EQ(SampledColumns(c.side), c.columns) << c.side;
}

TEST(HasAlpha, ALargeSideHas64Samples)
{
    // 1100 / 16 = 68 is limited to 64; step 1100 / 64 = 17, rest 1100 - 64 * 17 = 12, start 6.
    const std::vector<UINT> columns = SampledColumns(1100);
    ASSERT_EQ(columns.size(), 64u);
    for (UINT i = 0; i < 64; ++i)
        EXPECT_EQ(columns[i], 6 + 17 * i);
}

TEST(HasAlpha, WorksForEverySideFrom1To1100)
{
    // Every sample is inside the picture: a column of 0 beyond it would be an overrun.
    for (UINT side = 1; side <= 1100; ++side) {
        SurfaceOverBytes s(D3DFMT_A8R8G8B8, side, 1, static_cast<int>(side) * 4,
                           std::vector<uint8_t>(side * 4, 0xFF));
        EXPECT_FALSE(s.surface.HasAlpha()) << side;
    }
}

TEST(HasAlpha, IsDeterminedOnce)
{
    SurfaceOverBytes s = MakeAlphaPicture(8, [](int, int) { return 255; });
    EXPECT_FALSE(s.surface.HasAlpha());
    std::fill(s.stub->bytes.begin(), s.stub->bytes.end(), uint8_t{128});
    EXPECT_FALSE(s.surface.HasAlpha());
}

TEST(HasAlpha, OnlySomeFormatsAreSampled)
{
    static const struct {
        const char* what;
        D3DFORMAT format;
        bool expected;
    } cases[] = {
        {"A4R4G4B4", D3DFMT_A4R4G4B4, true},  // 0x8888: alpha 0x80
        {"DXT5", D3DFMT_DXT5, true},          // first alpha end point 0x88
        {"X8R8G8B8", D3DFMT_X8R8G8B8, false}, // the byte exists, but is not an alpha
        {"A8L8", D3DFMT_A8L8, false},         {"DXT1", D3DFMT_DXT1, false},
        {"DXT3", D3DFMT_DXT3, false},
    };
    for (const auto& c : cases) {
        SurfaceOverBytes s(c.format, 4, 4, 16, std::vector<uint8_t>(64, 0x88));
        EXPECT_EQ(s.surface.HasAlpha(), c.expected) << c.what;
    }
}

TEST(HasAlpha, PictureWithoutAnyPixelsStaysUndecided)
{
    for (const auto& [width, height] : {std::pair{0u, 4u}, {4u, 0u}, {0u, 0u}}) {
        SurfaceOverBytes s(D3DFMT_A8R8G8B8, width, height, 16, std::vector<uint8_t>(64, 0x88));
        EXPECT_FALSE(s.surface.HasAlpha()) << width << " x " << height;
        EXPECT_EQ(s.surface.alphaState, -1) << width << " x " << height;
    }
}
