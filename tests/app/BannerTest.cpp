#include "app/Banner.h"

#include "app/MainWindow.h"
#include "app/Options.h"
#include "gfx/KRE_Font.h"
#include "gfx/KRE_Gfx.h"
#include "tests/app/ScratchEngine.h"
#include "tests/support/RecordingDirect3D.h"
#include "tests/support/SceneEngine.h"
#include "tests/support/ScratchDirectory.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <bit>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

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

namespace {

DWORD DeviceState(D3DRENDERSTATETYPE state)
{
    DWORD value = 0xDEADBEEF;
    gGfx->device->GetRenderState(state, &value);
    return value;
}

/// The engine's font over a recording device.
class BannerCalls : public testing::Test {
protected:
    BannerCalls()
        : d3d(RecordingDirect3D::Standalone()),
          recorder(d3d->Recorder()),
          engine(2, d3d.get())
    {
        gGfx->BuildFont(font, 0xFF96DCFF, 0xFF006473);
        gGfx->SetFont(&font, 0.0f, 0);
        gFont = &font;
        gWindowed = 1;
        gClientWidth = 300; // so the line begins at (50, 44) of the 64 by 64 target
        gClientHeight = 64;
        recorder->ClearLines();
    }
    ~BannerCalls() override
    {
        gGfx->currentFont = nullptr;
        gGfx->currentTexture = nullptr; // the font's
        font.Free();
        gFont = fontBefore;
        gClientWidth = widthBefore;
        gClientHeight = heightBefore;
    }

    /// The calls for filters, blending, fill mode, depth and faces, and whether something was drawn.
    std::vector<std::string> StatesAndDrawing()
    {
        std::vector<std::string> kept;
        for (const std::string& line : recorder->Lines()) {
            for (const char* word : {"FILTER", "_SRCBLEND", "_DESTBLEND", "D3DRS_ALPHABLENDENABLE",
                                     "D3DRS_FILLMODE", "D3DRS_ZENABLE", "D3DRS_CULLMODE"}) {
                if (line.find(word) != std::string::npos)
                    kept.push_back(line);
            }
            if (line.starts_with("DrawPrimitive"))
                kept.emplace_back("drawn");
        }
        return kept;
    }

    const ScratchDirectory scratch; // the log is written here
    ComHandle<RecordingDirect3D> d3d;
    std::shared_ptr<CallRecorder> recorder;
    SceneEngine engine;
    KRE_Font font;
    KRE_Font* const fontBefore = gFont;
    const int widthBefore = gClientWidth, heightBefore = gClientHeight;
};

} // namespace

// Point filter, mode 4, solid, no depth; printing disables face culling and sets mode 9 for its
// letters; then everything is restored for the next frame. Depth is switched off and on once: the
// printing only counts.
TEST_F(BannerCalls, StatesAreSetBeforeTheLettersAndRestoredAfterThem)
{
    char banner[kBannerSize];
    ReadBanner(banner);
    DrawBanner(banner, 0.0);
    EXPECT_THAT(StatesAndDrawing(),
                testing::ElementsAre("SetSamplerState 0 D3DSAMP_MAGFILTER D3DTEXF_POINT",
                                     "SetRenderState D3DRS_ALPHABLENDENABLE 1",
                                     "SetRenderState D3DRS_SRCBLEND D3DBLEND_INVDESTCOLOR",
                                     "SetRenderState D3DRS_DESTBLEND D3DBLEND_INVSRCCOLOR",
                                     "SetRenderState D3DRS_FILLMODE D3DFILL_SOLID",
                                     "SetRenderState D3DRS_ZENABLE D3DZB_FALSE",
                                     "SetRenderState D3DRS_CULLMODE D3DCULL_NONE",
                                     "SetRenderState D3DRS_SRCBLEND D3DBLEND_SRCALPHA",
                                     "SetRenderState D3DRS_DESTBLEND D3DBLEND_INVSRCALPHA", "drawn",
                                     "SetRenderState D3DRS_CULLMODE D3DCULL_CCW",
                                     "SetRenderState D3DRS_ZENABLE D3DZB_TRUE",
                                     "SetSamplerState 0 D3DSAMP_MAGFILTER D3DTEXF_LINEAR"));
}

// The text's own mode is not set in this case.
TEST_F(BannerCalls, BlendingStaysOnIfTheLineIsOutsideTheView)
{
    gClientHeight = 0;
    char banner[kBannerSize];
    ReadBanner(banner);
    DrawBanner(banner, 0.0);
    const std::vector<std::string> calls = StatesAndDrawing();
    EXPECT_THAT(calls, testing::Not(testing::Contains("drawn")));
    EXPECT_THAT(calls, testing::Contains("SetRenderState D3DRS_SRCBLEND D3DBLEND_SRCALPHA"));
    EXPECT_EQ(gGfx->blendMode, 9);
}

// Reads back the device's state, which differed before. Depth is restored, on or off.
TEST(Banner, DrawingLeavesTheStatesOfTheFrame)
{
    const ScratchDirectory scratch;
    const ScratchEngine engine("");
    char banner[kBannerSize];
    ReadBanner(banner);
    for (const D3DZBUFFERTYPE depth : {D3DZB_TRUE, D3DZB_FALSE}) {
        gGfx->SetZEnable(depth);
        gGfx->SetBlendMode(12, 100, 0);
        gGfx->SetTextureFilter(2, 0);
        gGfx->SetFillMode(D3DFILL_WIREFRAME, nullptr);
        gGfx->SetCullMode(1);
        gFont->SetMetrics(3.0f, 0xFF112233, 5.0f, 7.0f, 0.5f);
        gGfx->BeginScene();
        DrawBanner(banner, 0.0);
        gGfx->EndScene();
        DWORD filter = 0;
        gGfx->device->GetSamplerState(0, D3DSAMP_MAGFILTER, &filter);
        EXPECT_EQ(filter, DWORD{D3DTEXF_LINEAR});
        EXPECT_EQ(gGfx->blendMode, 9);
        EXPECT_EQ(DeviceState(D3DRS_ALPHABLENDENABLE), 1u);
        EXPECT_EQ(DeviceState(D3DRS_SRCBLEND), DWORD{D3DBLEND_SRCALPHA});
        EXPECT_EQ(DeviceState(D3DRS_DESTBLEND), DWORD{D3DBLEND_INVSRCALPHA});
        EXPECT_EQ(DeviceState(D3DRS_FILLMODE), DWORD{D3DFILL_SOLID});
        EXPECT_EQ(DeviceState(D3DRS_ZENABLE), DWORD{depth});
        EXPECT_EQ(gGfx->zDisableCount, 0);
        EXPECT_EQ(DeviceState(D3DRS_CULLMODE), DWORD{D3DCULL_CW}) << "as it was";
        EXPECT_EQ(gFont->scale, 1.0f);
        EXPECT_EQ(gFont->color, 0xFFFFFFFFu);
        EXPECT_EQ(gFont->charSpacing, 5.0f) << "kept";
        EXPECT_EQ(gFont->lineSpacing, 7.0f) << "kept";
        EXPECT_EQ(std::bit_cast<uint32_t>(gFont->lineSpacingFactor), 0x3F2AA64Cu);
    }
}

TEST(Banner, IsDrawnAtTheBottomRight)
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

    gWindowed = 0; // in full screen the options decide
    gResX = 300;
    gResY = 200;
    DrawBanner(banner, 0.0);
    first = gGfx->printf.quadList.LockVertices(0, 1, D3DLOCK_READONLY);
    EXPECT_FLOAT_EQ(first->x, 49.75f);
    EXPECT_FLOAT_EQ(first->y, 179.75f);
    gGfx->printf.quadList.Unlock();
    gWindowed = 1;
}
