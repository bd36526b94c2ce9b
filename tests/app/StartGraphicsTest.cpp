#include "app/StartGraphics.h"

#include "app/GuardedRun.h"
#include "app/MainWindow.h"
#include "app/Options.h"
#include "gfx/KRE_Font.h"
#include "gfx/KRE_Gfx.h"
#include "tests/app/ScratchEngine.h"
#include "tests/support/BoxWatch.h"
#include "tests/support/ScratchDirectory.h"

#include <gtest/gtest.h>

#include <bit>

namespace {

class StartGraphicsTest : public testing::Test {
protected:
    const ScratchDirectory scratch; // the log is written here
};

/// Starts only the run's graphics; returns the message box of a failed start.
std::string BoxOfStart()
{
    BoxWatch boxes;
    RunGuarded([] { StartGraphics(); });
    return boxes.Take();
}

} // namespace

TEST_F(StartGraphicsTest, SettingsAreTheOptions)
{
    ParseOptions("/full /resx:800 /resy:600 /bpp:32 /scr:3 /vs:2 /hv /ref");
    gMainWindow = nullptr;
    const GraphicsSettings settings = SettingsFromOptions();
    EXPECT_EQ(settings.window, nullptr);
    EXPECT_EQ(settings.windowed, 0);
    EXPECT_EQ(settings.width, 800);
    EXPECT_EQ(settings.height, 600);
    EXPECT_EQ(settings.bitsPerPixel, 32);
    EXPECT_EQ(settings.adapter, 3);
    EXPECT_EQ(settings.vsync, 2);
    EXPECT_EQ(settings.vertexProcessing, 1);
    EXPECT_EQ(settings.deviceChoice, 1);

    ParseOptions("");
    const GraphicsSettings plain = SettingsFromOptions();
    EXPECT_EQ(plain.windowed, 1);
    EXPECT_EQ(plain.width, 640);
    EXPECT_EQ(plain.height, 480);
    EXPECT_EQ(plain.vertexProcessing, 0);
    EXPECT_EQ(plain.deviceChoice, 0);
}

TEST_F(StartGraphicsTest, EngineIsStartedAndShutDown)
{
    EXPECT_EQ(gGraphicsStarted, 0);
    {
        const ScratchEngine engine("");
        ASSERT_NE(gGfx, nullptr);
        EXPECT_EQ(gGraphicsStarted, 1);
        EXPECT_EQ(gGfx->deviceReady, 1);
        EXPECT_EQ(gGfx->zBits, 16);
        EXPECT_EQ(gGfx->window, gMainWindow);
        EXPECT_NE(gGfx->random.table[623], 0u);
    }
    EXPECT_EQ(gGfx, nullptr);
    EXPECT_EQ(gGraphicsStarted, 0);
    ShutdownGraphics();
}

TEST_F(StartGraphicsTest, RandomNumbersBeginWhereTheCounterIs)
{
    const ScratchEngine engine("");
    RandomGenerator fromZero;
    fromZero.Seed(0);
    EXPECT_NE(gGfx->random.table[0], fromZero.table[0]);
}

TEST_F(StartGraphicsTest, FontIsBuiltAndSetUpForText)
{
    const ScratchEngine engine("");
    ASSERT_NE(gFont, nullptr);
    EXPECT_EQ(gFont->ready, 1);
    EXPECT_EQ(gGfx->currentFont, gFont);
    EXPECT_EQ(gFont->scale, 4.0f);
    EXPECT_EQ(gFont->color, 0xFFFFFFFFu);
    EXPECT_EQ(gFont->charSpacing, 1.0f) << "kept";
    EXPECT_EQ(gFont->lineSpacing, 1.0f) << "kept";
    EXPECT_EQ(std::bit_cast<uint32_t>(gFont->lineSpacingFactor), 0x3F2AA64Cu);
    // E's cell is at (96, 6): the first colour in its corner, the second in the one opposite.
    D3DCOLOR first = 0;
    D3DCOLOR second = 0;
    gFont->texture->Lock(nullptr, D3DLOCK_READONLY);
    EXPECT_TRUE(gFont->texture->GetPixel(96, 6, &first));
    EXPECT_TRUE(gFont->texture->GetPixel(100, 10, &second));
    gFont->texture->Unlock();
    EXPECT_EQ(first, 0xFF96DCFFu);
    EXPECT_EQ(second, 0xFF006473u);
}

TEST_F(StartGraphicsTest, FontGoesBeforeTheEngine)
{
    {
        const ScratchEngine engine("");
        gGfx->drawDisabled = 1;
        gGfx->Printf(1, 1, "A"); // binds the font's texture
        ShutdownGraphics();
        EXPECT_EQ(gFont, nullptr);
        EXPECT_EQ(gGfx, nullptr);
    }
    EXPECT_EQ(gFont, nullptr);
}

TEST_F(StartGraphicsTest, AdapterSettingIsIgnoredInAWindow)
{
    const ScratchEngine engine("");
    GraphicsSettings settings = SettingsFromOptions();
    ShutdownGraphics();
    settings.adapter = 99;
    StartGraphics(settings);
    EXPECT_EQ(gGfx->adapter, 0u);
    EXPECT_EQ(gGfx->deviceReady, 1);
}

TEST_F(StartGraphicsTest, FullScreenTakesItsModeFromTheSettings)
{
    const ScratchEngine engine("");
    GraphicsSettings settings = SettingsFromOptions();
    ShutdownGraphics();
    settings.windowed = 0;
    settings.width = 640;
    settings.height = 480;
    for (int32_t bits : {32, 16}) {
        settings.bitsPerPixel = bits;
        StartGraphics(settings);
        EXPECT_EQ(gGfx->displayMode.Width, 640u);
        EXPECT_EQ(gGfx->displayMode.Height, 480u);
        EXPECT_GT(gGfx->displayMode.RefreshRate, 0u) << "the highest of that size";
        EXPECT_EQ(gGfx->displayMode.Format, bits == 32 ? D3DFMT_A8R8G8B8 : D3DFMT_R5G6B5);
        EXPECT_EQ(gGfx->displayFormat, bits == 32 ? D3DFMT_X8R8G8B8 : D3DFMT_R5G6B5);
        gGfx->Clear(0xFF00FF00);
        EXPECT_EQ(gGfx->ShowFrame(), 1);
        ShutdownGraphics();
    }
}

TEST_F(StartGraphicsTest, FullScreenShowsAndResets)
{
    const ScratchEngine engine("");
    GraphicsSettings settings = SettingsFromOptions();
    ShutdownGraphics();
    settings.windowed = 0;
    settings.width = 640;
    settings.height = 480;
    StartGraphics(settings);
    EXPECT_EQ(gGfx->backBuffer.width, 640);
    EXPECT_EQ(gGfx->backBuffer.height, 480);
    gGfx->ResetDevice(nullptr);
    EXPECT_EQ(gGfx->deviceReady, 1);
    gGfx->Clear(0xFF0000FF);
    EXPECT_EQ(gGfx->ShowFrame(), 1);
}

TEST_F(StartGraphicsTest, UnknownDisplayModeEndsTheRun)
{
    const ScratchEngine engine("");
    ShutdownGraphics();
    gWindowed = 0;
    gResX = 641;
    gResY = 479;
    EXPECT_EQ(BoxOfStart(), "KRE Error (DirectX9)\nKRE_Gfx: Display mode not supported by your "
                            "video card!\n");
    EXPECT_EQ(gGfx, nullptr);
    EXPECT_EQ(gFont, nullptr);
}

TEST_F(StartGraphicsTest, UnknownAdapterEndsTheRunInFullScreen)
{
    const ScratchEngine engine("");
    ShutdownGraphics();
    gWindowed = 0;
    gAdapter = 99;
    EXPECT_EQ(BoxOfStart(), "KRE Error (DirectX9)\nKRE_Gfx: Wrong adapter selected: 99\n");
    EXPECT_EQ(gGfx, nullptr);
}
