#include "app/Banner.h"
#include "gfx/KRE_FontGlyphs.h"
#include "gfx/KRE_Gfx.h"
#include "tests/app/WindowFlags.h"
#include "tests/support/ScratchDirectory.h"
#include "tools/frames/FrameStage.h"

#include <cmath>
#include <cstdio>
#include <gtest/gtest.h>
#include <map>
#include <string>

namespace {

/// Colours of pixels, and how often each occurs.
using Colors = std::map<uint32_t, int>;

/// One channel of a letter's pixel: from the font's first colour at its top left to the second,
/// reached at row 4, column 4, whose distance is the square root of 32.
uint32_t Faded(int row, int column, int first, int second)
{
    const auto part = static_cast<float>(std::sqrt((row * row + column * column) / 32.0));
    const auto way = static_cast<float>(second - first);
    return static_cast<uint32_t>(way * part + static_cast<float>(first));
}

/// The pixels of a line of letters of 5 by 5, between 0xFF96DCFF and 0xFF006473, each texel one pixel.
Colors ColorsOf(const std::string& line)
{
    Colors colors;
    for (const char letter : line) {
        const char* const glyph = kFontGlyphs[letter - ' '];
        for (int row = 0; row < 5; ++row)
            for (int column = 0; column < 5; ++column)
                if (glyph[row * 5 + column] == 'X')
                    ++colors[0xFF000000 | Faded(row, column, 0x96, 0x00) << 16 |
                             Faded(row, column, 0xDC, 0x64) << 8 | Faded(row, column, 0xFF, 0x73)];
    }
    return colors;
}

} // namespace

// A line alone on black, so that only the letters have a colour. A linear filter would mix each
// texel with its neighbours, since letters are a quarter of a pixel off the grid.
TEST(BannerPicture, EachTexelOfTheLettersIsOnePixel)
{
    const WindowFlags flags;
    const ScratchDirectory scratch;
    const FrameStage stage(320, 64);
    char banner[kBannerSize];
    ReadBanner(banner);
    gGfx->Clear(0xFF000000);
    gGfx->BeginScene();
    DrawBanner(banner, 12.5);
    gGfx->EndScene();
    Colors found;
    for (const uint32_t pixel : FrameStage::BackBuffer().pixels)
        if (pixel != 0xFF000000)
            ++found[pixel];
    char line[64];
    std::snprintf(line, sizeof line, banner, 12.5);
    EXPECT_EQ(found, ColorsOf(line));
}
