#include "app/Banner.h"

#include "app/MainWindow.h"
#include "app/Options.h"
#include "gfx/KRE_Font.h"
#include "gfx/KRE_Gfx.h"
#include "tests/app/ScratchEngine.h"
#include "tests/support/ScratchDirectory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstdio>
#include <cstring>
#include <string>

namespace {

std::string Banner()
{
    char banner[kBannerSize];
    std::memset(banner, 'x', sizeof banner);
    ReadBanner(banner);
    return std::string(banner, sizeof banner);
}

} // namespace

TEST(Banner, IsThirtyEightCharactersAndTheTerminator)
{
    const std::string banner = Banner();
    ASSERT_EQ(banner.size(), 39u);
    EXPECT_EQ(banner.find('\0'), 38u);
}

TEST(Banner, HasOneConversionOfADoubleAndNoCommand)
{
    const std::string banner = Banner();
    EXPECT_EQ(std::count(banner.begin(), banner.end(), '%'), 1);
    EXPECT_EQ(banner.find('|'), std::string::npos);
    const size_t conversion = banner.find_first_not_of("0123456789.", banner.find('%') + 1);
    ASSERT_NE(conversion, std::string::npos);
    EXPECT_NE(std::strchr("eEfFgG", banner[conversion]), nullptr) << banner;
}

TEST(Banner, LineFitsIntoItsCornerInCapitals)
{
    char line[128];
    std::snprintf(line, sizeof line, Banner().c_str(), 99.94);
    EXPECT_NE(std::strstr(line, "99.9"), nullptr) << line;
    // It begins 250 pixels from the right edge, and a letter takes 6.
    EXPECT_LE(std::strlen(line), 41u);
    for (const char* c = line; *c; ++c)
        EXPECT_TRUE(*c >= 0x20 && *c <= 0x5D) << *c;
}

TEST(Banner, IsStoredOneAboveEachByte)
{
    const std::string banner = Banner();
    for (size_t i = 0; i < 38; ++i)
        EXPECT_EQ(kStoredBanner[i], banner[i] + 1) << i;
    EXPECT_EQ(kStoredBanner[38], 0);
}

TEST(Banner, DrawingLeavesTheStatesOfTheFrame)
{
    const ScratchDirectory scratch;
    const ScratchEngine engine("");
    char banner[kBannerSize];
    ReadBanner(banner);
    gGfx->drawDisabled = 1;
    DrawBanner(banner, 0.0);
    EXPECT_EQ(gFont->scale, 1.0f);
    EXPECT_EQ(gFont->color, 0xFFFFFFFFu);
    EXPECT_EQ(gFont->charSpacing, 1.0f);
    EXPECT_EQ(gFont->lineSpacing, 1.0f);
    EXPECT_EQ(std::bit_cast<uint32_t>(gFont->lineSpacingFactor), 0x3F2AA64Cu);
    EXPECT_EQ(gGfx->blendMode, 9);
    EXPECT_EQ(gGfx->zDisableCount, 0);
    EXPECT_EQ(gGfx->fillMode, D3DFILL_SOLID);
    EXPECT_EQ(gGfx->cache.samplerState[0][D3DSAMP_MAGFILTER], D3DTEXF_LINEAR);
    EXPECT_EQ(gGfx->cache.renderState[D3DRS_ZENABLE], D3DZB_TRUE);
}

TEST(Banner, StandsAtTheBottomRight)
{
    const ScratchDirectory scratch;
    const ScratchEngine engine("");
    char banner[kBannerSize];
    ReadBanner(banner);
    gGfx->drawDisabled = 1;
    DrawBanner(banner, 0.0);
    const auto* first = gGfx->printf.quadList.LockVertices(0, 1, D3DLOCK_READONLY);
    EXPECT_FLOAT_EQ(first->x, static_cast<float>(gClientWidth - 250) - 0.25f);
    EXPECT_FLOAT_EQ(first->y, static_cast<float>(gClientHeight - 20) - 0.25f);
    gGfx->printf.quadList.Unlock();

    gWindowed = 0; // full screen goes by the options
    gResX = 300;
    gResY = 200;
    DrawBanner(banner, 0.0);
    first = gGfx->printf.quadList.LockVertices(0, 1, D3DLOCK_READONLY);
    EXPECT_FLOAT_EQ(first->x, 49.75f);
    EXPECT_FLOAT_EQ(first->y, 179.75f);
    gGfx->printf.quadList.Unlock();
    gWindowed = 1;
}
