#include "platform/headless/d3dx/PixelCopy.h"

#include "platform/headless/d3d9/TestControl.h"
#include "tests/support/D3DNames.h"

#include <gtest/gtest.h>
#include <vector>

using namespace headless;

namespace {

using Pixels = std::vector<uint32_t>;

template <typename Word>
PixelSource Source(D3DFORMAT format, UINT width, const std::vector<Word>& words)
{
    return {FindPixelFormat(format), width, static_cast<UINT>(words.size()) / width, words.data(),
            width * sizeof(Word)};
}

template <typename Word>
PixelTarget Target(D3DFORMAT format, UINT width, std::vector<Word>& words)
{
    return {FindPixelFormat(format), width, static_cast<UINT>(words.size()) / width, words.data(),
            width * sizeof(Word)};
}

} // namespace

TEST(PixelCopy, KeepsTheBytesWhereNothingChanges)
{
    // Unused bits stay unchanged; a conversion would set them.
    const Pixels from = {0x12345678, 0x00FFFFFF};
    Pixels to(2);
    ASSERT_EQ(CopyPixels(Target(D3DFMT_X8R8G8B8, 2, to), Source(D3DFMT_X8R8G8B8, 2, from),
                         D3DX_FILTER_NONE, 0),
              D3D_OK);
    EXPECT_EQ(to, from);
}

TEST(PixelCopy, HonoursThePitchesOfBothSides)
{
    const Pixels from = {1, 2, 99, 3, 4, 99}; // rows of 2 pixels and one of padding
    Pixels to(8, 77);                         // and of two
    PixelSource source = Source(D3DFMT_A8R8G8B8, 2, Pixels());
    source.bits = from.data();
    source.height = 2;
    source.pitchBytes = 12;
    const PixelTarget target = {source.format, 2, 2, to.data(), 16};
    ASSERT_EQ(CopyPixels(target, source, D3DX_FILTER_NONE, 0), D3D_OK);
    EXPECT_EQ(to, (Pixels{1, 2, 77, 77, 3, 4, 77, 77}));
}

TEST(PixelCopy, ColourKeyBecomesTransparentBlack)
{
    const Pixels from = {0x00FF00FF, 0x00FF00FE};
    Pixels to(2);
    ASSERT_EQ(CopyPixels(Target(D3DFMT_A8R8G8B8, 2, to), Source(D3DFMT_X8R8G8B8, 2, from),
                         D3DX_FILTER_NONE, 0xFFFF00FF),
              D3D_OK);
    EXPECT_EQ(to, (Pixels{0, 0xFFFF00FE}));
}

TEST(PixelCopy, ColourKeyWorksBeforeScaling)
{
    // Half of the area is keyed: the mean of transparent black and opaque white.
    const Pixels from = {0xFFFF00FF, 0xFFFFFFFF};
    Pixels to(1);
    ASSERT_EQ(CopyPixels(Target(D3DFMT_A8R8G8B8, 1, to), Source(D3DFMT_A8R8G8B8, 2, from),
                         D3DX_FILTER_BOX, 0xFFFF00FF),
              D3D_OK);
    EXPECT_EQ(to, Pixels{0x80808080}); // 127.5, rounded up
}

TEST(PixelCopy, SignedPixelsAreScaledAroundTheirZero)
{
    // U: -64 and 64 have the mean 0; V: 10 and 20 the mean 15.
    const std::vector<uint16_t> from = {0x0AC0, 0x1440};
    std::vector<uint16_t> to(1);
    ASSERT_EQ(
        CopyPixels(Target(D3DFMT_V8U8, 1, to), Source(D3DFMT_V8U8, 2, from), D3DX_FILTER_BOX, 0),
        D3D_OK);
    EXPECT_EQ(to[0], 0x0F00);
}

TEST(PixelCopy, LargePicturesAreStoredLikeSmallOnes)
{
    // 128 by 64 pixels use other code than 16 by 1; every channel takes all its values.
    Pixels from(128 * 64);
    for (uint32_t i = 0; i < from.size(); ++i)
        from[i] = i * 0x01234567u;
    for (const D3DFORMAT format :
         {D3DFMT_R5G6B5, D3DFMT_A1R5G5B5, D3DFMT_X1R5G5B5, D3DFMT_A4R4G4B4, D3DFMT_X4R4G4B4}) {
        std::vector<uint16_t> large(from.size());
        ASSERT_EQ(CopyPixels(Target(format, 128, large), Source(D3DFMT_A8R8G8B8, 128, from),
                             D3DX_FILTER_NONE, 0),
                  D3D_OK);
        for (size_t i = 0; i < from.size(); ++i) {
            uint16_t word = 0;
            PackArgb(*FindPixelFormat(format), from[i], &word);
            ASSERT_EQ(large[i], word) << FormatName(format) << std::hex << ", " << from[i];
        }
    }
}

TEST(PixelCopy, LargePicturesAreReadLikeSmallOnes)
{
    // All 16-bit words, four times, and one at a time.
    std::vector<uint16_t> from(512 * 512);
    for (size_t i = 0; i < from.size(); ++i)
        from[i] = static_cast<uint16_t>(i);
    for (const D3DFORMAT format : {D3DFMT_R5G6B5, D3DFMT_A1R5G5B5, D3DFMT_A4R4G4B4}) {
        Pixels large(from.size());
        ASSERT_EQ(CopyPixels(Target(D3DFMT_A8R8G8B8, 512, large), Source(format, 512, from),
                             D3DX_FILTER_NONE, 0),
                  D3D_OK);
        for (size_t i = 0; i < from.size(); ++i)
            ASSERT_EQ(large[i], UnpackArgb(*FindPixelFormat(format), &from[i]))
                << FormatName(format) << std::hex << ", " << from[i];
    }
}

TEST(PixelCopy, HalvesAnyOrderOfChannelsAndAnyPitch)
{
    // Two rows of two pixels and one of padding.
    const Pixels from = {0x00000000, 0x04080C10, 99, 0x04080C10, 0x04080C10, 99};
    Pixels to = {0};
    PixelSource source = Source(D3DFMT_A8B8G8R8, 2, Pixels());
    source.bits = from.data();
    source.height = 2;
    source.pitchBytes = 12;
    ASSERT_EQ(CopyPixels(Target(D3DFMT_A8B8G8R8, 1, to), source, D3DX_FILTER_BOX, 0), D3D_OK);
    EXPECT_EQ(to, Pixels{0x0306090C}); // three quarters of each
}

TEST(PixelCopy, DitherSpreadsTheErrorOfFewerBits)
{
    // 4 of 255 is 0.486 of 31 steps: about half of the pixels of a 4 by 4 square are rounded up to
    // 1.
    const Pixels from(16, 0xFF000004);
    std::vector<uint16_t> plain(16);
    std::vector<uint16_t> dithered(16);
    ASSERT_EQ(CopyPixels(Target(D3DFMT_R5G6B5, 4, plain), Source(D3DFMT_A8R8G8B8, 4, from),
                         D3DX_FILTER_NONE, 0),
              D3D_OK);
    ASSERT_EQ(CopyPixels(Target(D3DFMT_R5G6B5, 4, dithered), Source(D3DFMT_A8R8G8B8, 4, from),
                         D3DX_FILTER_NONE | D3DX_FILTER_DITHER, 0),
              D3D_OK);
    EXPECT_EQ(plain, std::vector<uint16_t>(16, 0));
    int ones = 0;
    for (const uint16_t word : dithered) {
        EXPECT_LE(word, 1);
        ones += word;
    }
    EXPECT_EQ(ones, 8);
}

TEST(PixelCopy, DitherLeavesExactColoursAlone)
{
    const Pixels from = {0xFFFFFFFF, 0xFF000000};
    std::vector<uint16_t> to(2);
    ASSERT_EQ(CopyPixels(Target(D3DFMT_R5G6B5, 2, to), Source(D3DFMT_A8R8G8B8, 2, from),
                         D3DX_FILTER_NONE | D3DX_FILTER_DITHER, 0),
              D3D_OK);
    EXPECT_EQ(to[0], 0xFFFF);
    EXPECT_EQ(to[1], 0);
}

TEST(CheckFilter, KnowsThePublishedValues)
{
    DWORD filter = 0;
    EXPECT_EQ(CheckFilter(D3DX_DEFAULT, D3DX_FILTER_BOX, filter), D3D_OK);
    EXPECT_EQ(filter, static_cast<DWORD>(D3DX_FILTER_BOX));
    for (const int value : {D3DX_FILTER_NONE, D3DX_FILTER_BOX,
                            D3DX_FILTER_LINEAR | D3DX_FILTER_MIRROR | D3DX_FILTER_DITHER}) {
        const auto good = static_cast<DWORD>(value);
        EXPECT_EQ(CheckFilter(good, 1, filter), D3D_OK) << good;
        EXPECT_EQ(filter, good);
    }
    for (const DWORD bad : {0u, 6u, 0xFFFFu, 0x40000005u})
        EXPECT_EQ(CheckFilter(bad, 1, filter), D3DERR_INVALIDCALL) << bad;
}

TEST(CheckFilter, RefusesAndLogsWhatIsNotModelled)
{
    DWORD filter = 0;
    const int before = UnmodelledCallCount("D3DX_FILTER");
    EXPECT_EQ(CheckFilter(D3DX_FILTER_LINEAR | D3DX_FILTER_SRGB_IN, 1, filter), D3DERR_INVALIDCALL);
    EXPECT_EQ(CheckFilter(D3DX_FILTER_LINEAR | D3DX_FILTER_DITHER_DIFFUSION, 1, filter),
              D3DERR_INVALIDCALL);
    EXPECT_EQ(UnmodelledCallCount("D3DX_FILTER"), before + 2);
}
