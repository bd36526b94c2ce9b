#include "app/ProcessFile.h"

#include "app/MainWindow.h"
#include "app/Options.h"
#include "gfx/KRE_Gfx.h"
#include "tests/app/ScratchEngine.h"
#include "tests/app/ScratchWalk.h"
#include "tests/support/ScratchDirectory.h"

#include <gtest/gtest.h>
#include <string>

namespace {

class ProcessFileTest : public testing::Test {
protected:
    std::string Title()
    {
        char title[100] = "";
        GetWindowTextA(gMainWindow, title, sizeof title);
        return title;
    }

    ProcessFileTest()
    {
        scratch.Write("boat.qsa", kWalkScene);
        scratch.Write("cleat.qsa", kWalkScene);
    }

    const ScratchDirectory scratch;
    const ScratchEngine engine{""};
};

} // namespace

TEST_F(ProcessFileTest, EachFileHasOneFrame)
{
    ProcessFile("boat.qsa", 1);
    EXPECT_EQ(gGfx->frameCount, 1);
    ProcessFile("cleat.qsa", 1);
    EXPECT_EQ(gGfx->frameCount, 2);
    EXPECT_EQ(gGfx->inScene, 0);
    EXPECT_EQ(Title(), "cleat.qsa");
}

TEST_F(ProcessFileTest, SkippedFileHasNeitherFrameNorTitle)
{
    scratch.Write("boat.qsb", "here already");
    ProcessFile("boat.qsa", 0);
    EXPECT_EQ(gGfx->frameCount, 0);
    EXPECT_EQ(Title(), gWindowTitle);
}

TEST_F(ProcessFileTest, WithoutTheViewThereIsNoFrame)
{
    gViewEnabled = 0;
    ProcessFile("boat.qsa", 1);
    EXPECT_EQ(gGfx->frameCount, 0);
    EXPECT_EQ(Title(), "boat.qsa");
}

TEST_F(ProcessFileTest, OptionsReachTheDevice)
{
    static const struct {
        int* option;
        int value;
        D3DRENDERSTATETYPE state;
        DWORD expected;
    } cases[] = {
        {&gLightingOn, 0, D3DRS_LIGHTING, 0},       {&gLightingOn, 1, D3DRS_LIGHTING, 1},
        {&gSpecularOn, 1, D3DRS_SPECULARENABLE, 1}, {&gSpecularOn, 0, D3DRS_SPECULARENABLE, 0},
        {&gWBuffer, 0, D3DRS_ZENABLE, D3DZB_TRUE},
    };
    for (const auto& c : cases) {
        *c.option = c.value;
        ProcessFile("boat.qsa", 1);
        DWORD value = 99;
        gGfx->device->GetRenderState(c.state, &value);
        EXPECT_EQ(value, c.expected) << c.state;
    }
}

TEST_F(ProcessFileTest, WBufferingIsTakenWhereTheHardwareHasIt)
{
    gWBuffer = 1;
    ProcessFile("boat.qsa", 1);
    const bool hasWBuffer = (gGfx->caps.RasterCaps & D3DPRASTERCAPS_WBUFFER) != 0;
    EXPECT_EQ(gGfx->zEnable, hasWBuffer ? D3DZB_USEW : D3DZB_TRUE);
}
