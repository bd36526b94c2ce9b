#include "tests/gfx/EngineTest.h"

namespace {

class KRE_GfxPresentParametersTest : public EngineTest {
protected:
    /// Builds the parameters from the given members on a display of 800 x 600 at 75 Hz.
    std::string Build(int32_t windowed, int32_t zBits, int32_t vsync)
    {
        gfx.window = window.Handle();
        gfx.displayMode = {800, 600, 75, D3DFMT_X8R8G8B8};
        gfx.windowed = windowed;
        gfx.zBits = zBits;
        gfx.vsync = vsync;
        return RaisedBy([&] { gfx.BuildPresentParameters(); });
    }
};

constexpr int32_t kFullScreen = 0;
constexpr int32_t kWindow = 1;

} // namespace

TEST_F(KRE_GfxPresentParametersTest, SizeAndRateAreTheDisplaysInFullScreenOnly)
{
    EXPECT_EQ(Build(kFullScreen, 16, 1), "no error");
    const D3DPRESENT_PARAMETERS full = gfx.presentParams;
    EXPECT_EQ(full.BackBufferWidth, 800u);
    EXPECT_EQ(full.BackBufferHeight, 600u);
    EXPECT_EQ(full.FullScreen_RefreshRateInHz, 75u);
    EXPECT_EQ(full.Windowed, FALSE);
    EXPECT_EQ(full.hDeviceWindow, nullptr);

    EXPECT_EQ(Build(kWindow, 16, 1), "no error");
    const D3DPRESENT_PARAMETERS& windowed = gfx.presentParams;
    EXPECT_EQ(windowed.BackBufferWidth, 0u);
    EXPECT_EQ(windowed.BackBufferHeight, 0u);
    EXPECT_EQ(windowed.FullScreen_RefreshRateInHz, 0u);
    EXPECT_EQ(windowed.Windowed, TRUE);
    EXPECT_EQ(windowed.hDeviceWindow, window.Handle());

    for (const D3DPRESENT_PARAMETERS& both : {full, windowed}) {
        EXPECT_EQ(both.SwapEffect, D3DSWAPEFFECT_FLIP);
        EXPECT_EQ(both.BackBufferCount, 1u);
        EXPECT_EQ(both.BackBufferFormat, D3DFMT_X8R8G8B8);
        EXPECT_EQ(both.Flags, 0u);
    }
}

TEST_F(KRE_GfxPresentParametersTest, DepthOf24BitsHasAStencilInFullScreenOnly)
{
    static const struct {
        int32_t windowed, zBits;
        D3DFORMAT expected;
    } cases[] = {
        {kFullScreen, 16, D3DFMT_D16},   {kWindow, 16, D3DFMT_D16},
        {kFullScreen, 24, D3DFMT_D24S8}, {kWindow, 24, D3DFMT_D24X8},
        {kFullScreen, 32, D3DFMT_D32},   {kWindow, 32, D3DFMT_D32},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Build(c.windowed, c.zBits, 0), "no error");
        EXPECT_EQ(gfx.presentParams.EnableAutoDepthStencil, TRUE);
        EXPECT_EQ(gfx.presentParams.AutoDepthStencilFormat, c.expected)
            << c.windowed << " " << c.zBits;
    }
}

TEST_F(KRE_GfxPresentParametersTest, DepthOfZeroBitsIsNone)
{
    for (int32_t windowed : {kFullScreen, kWindow}) {
        EXPECT_EQ(Build(windowed, 0, 0), "no error");
        EXPECT_EQ(gfx.presentParams.EnableAutoDepthStencil, FALSE);
    }
}

TEST_F(KRE_GfxPresentParametersTest, OtherDepthsAreErrors)
{
    for (int32_t windowed : {kFullScreen, kWindow}) {
        EXPECT_EQ(Build(windowed, 15, 0), "Invalid Z-buffer: 15");
        EXPECT_EQ(Build(windowed, -1, 0), "Invalid Z-buffer: -1");
    }
}

TEST_F(KRE_GfxPresentParametersTest, VsyncPicksTheInterval)
{
    static constexpr UINT kExpected[] = {0x80000000u, 1, 2, 4, 8};
    for (int32_t vsync = 0; vsync <= 4; ++vsync) {
        EXPECT_EQ(Build(kFullScreen, 16, vsync), "no error");
        EXPECT_EQ(gfx.presentParams.PresentationInterval, kExpected[vsync]) << vsync;
    }
}

TEST_F(KRE_GfxPresentParametersTest, WrongVsyncIsAnErrorInFullScreenAndIgnoredInAWindow)
{
    EXPECT_EQ(Build(kFullScreen, 16, 7), "Wrong vsync parameter: 7");
    EXPECT_EQ(Build(kFullScreen, 16, 5), "Wrong vsync parameter: 5");
    EXPECT_EQ(Build(kFullScreen, 16, -1), "Wrong vsync parameter: -1");
    EXPECT_EQ(Build(kWindow, 16, 7), "no error");
    EXPECT_EQ(gfx.presentParams.PresentationInterval, 0u);
}

TEST_F(KRE_GfxPresentParametersTest, ClientRectangleIsRead)
{
    Build(kWindow, 16, 0);
    EXPECT_EQ(gfx.clientRect.right - gfx.clientRect.left, 64);
    EXPECT_EQ(gfx.clientRect.bottom - gfx.clientRect.top, 48);
}
