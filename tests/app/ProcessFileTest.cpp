#include "app/ProcessFile.h"

#include "app/Banner.h"
#include "app/MainWindow.h"
#include "app/Options.h"
#include "gfx/KRE_Gfx.h"
#include "scene/KRE_3dScene.h"
#include "tests/app/ScratchEngine.h"
#include "tests/app/ScratchWalk.h"
#include "tests/app/WindowFlags.h"
#include "tests/support/ScratchDirectory.h"

#include <gmock/gmock.h>

#include <cstring>
#include <string>

namespace {

class ProcessFileTest : public testing::Test {
protected:
    static bool IsQueueEmpty()
    {
        MSG message;
        return !PeekMessageA(&message, gMainWindow, 0, 0, PM_NOREMOVE);
    }
    static void EmptyQueue()
    {
        MSG message;
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageA(&message);
    }
    static int32_t LightsIn(const char* fileName)
    {
        KRE_3dScene scene;
        gGfx->LoadScene(scene, fileName, 1);
        return scene.lights.Count();
    }

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
        gGfx->drawDisabled = 1; // the test checks the states, not the picture
    }

    const ScratchDirectory scratch;
    const WindowFlags flags;
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

TEST_F(ProcessFileTest, FrameHasTheBanner)
{
    char banner[kBannerSize];
    ReadBanner(banner);
    const std::string beforeTheNumber(banner, std::strcspn(banner, "%"));
    ASSERT_FALSE(beforeTheNumber.empty());
    ProcessFile("boat.qsa", 1);
    EXPECT_THAT(gGfx->scratch.Get(), testing::StartsWith(beforeTheNumber))
        << "the text printed last";
}

TEST_F(ProcessFileTest, SkippedFileHasNeitherFrameNorTitle)
{
    scratch.Write("boat.qsb", "here already");
    ProcessFile("boat.qsa", 0);
    EXPECT_EQ(gGfx->frameCount, 0);
    EXPECT_EQ(Title(), gWindowTitle);
}

TEST_F(ProcessFileTest, MissingTargetIsMadeWithoutOverwriting)
{
    ProcessFile("boat.qsa", 0);
    EXPECT_EQ(gGfx->frameCount, 1);
    EXPECT_TRUE(scratch.Has("boat.qsb"));
}

TEST_F(ProcessFileTest, WithoutTheViewThereIsNoFrame)
{
    gViewEnabled = 0;
    ProcessFile("boat.qsa", 1);
    EXPECT_EQ(gGfx->frameCount, 0);
    EXPECT_TRUE(scratch.Has("boat.qsb"));
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

TEST_F(ProcessFileTest, WBufferingIsUsedIfTheHardwareHasIt)
{
    gWBuffer = 1;
    ProcessFile("boat.qsa", 1);
    const bool hasWBuffer = (gGfx->caps.RasterCaps & D3DPRASTERCAPS_WBUFFER) != 0;
    EXPECT_EQ(gGfx->zEnable, hasWBuffer ? D3DZB_USEW : D3DZB_TRUE);
}

TEST_F(ProcessFileTest, BinarySceneIsWrittenOverItself)
{
    ProcessFile("boat.qsa", 1);
    ProcessFile("boat.qsb", 1);
    EXPECT_EQ(gGfx->frameCount, 2);
    EXPECT_EQ(LightsIn("boat.qsb"), 2) << "the default lights are the scene's own by now";
}

// Ten lights that are on are one too many for a frame.
TEST_F(ProcessFileTest, FrameThatFailsLeavesTheFileWritten)
{
    std::string scene = kWalkScene;
    for (int i = 0; i < 10; ++i)
        scene += "*LIGHTOBJECT { *NODE_NAME \"l" + std::to_string(i) + "\" }\n";
    scratch.Write("bright.qsa", scene);
    EXPECT_THROW(ProcessFile("bright.qsa", 1), KRE_Error);
    EXPECT_EQ(LightsIn("bright.qsb"), 10);
}

TEST_F(ProcessFileTest, DamagedFileIsAnErrorAndHasNeitherTargetNorTitle)
{
    scratch.Write(
        "torn.qsa",
        "*GEOMOBJECT { *MESH { *MESH_NUMVERTEX 2 *MESH_VERTEX_LIST { *MESH_VERTEX 1 0 0 0");
    EXPECT_ANY_THROW(ProcessFile("torn.qsa", 1));
    EXPECT_FALSE(scratch.Has("torn.qsb"));
    EXPECT_EQ(Title(), gWindowTitle);
    EXPECT_EQ(gGfx->frameCount, 0);
}

// ---- Messages

TEST_F(ProcessFileTest, MessagesAreHandledAfterTheFrame)
{
    EmptyQueue();
    PostMessageA(gMainWindow, WM_ENTERMENULOOP, 0, 0);
    ProcessFile("boat.qsa", 1);
    EXPECT_EQ(gPaused, 1);
    EXPECT_TRUE(IsQueueEmpty());
}

TEST_F(ProcessFileTest, TwoOptionsLeaveMessagesInTheQueue)
{
    for (int* option : {&gNoKey, &gEscOff}) {
        EmptyQueue();
        gPaused = 0;
        *option = 1;
        PostMessageA(gMainWindow, WM_ENTERMENULOOP, 0, 0);
        ProcessFile("boat.qsa", 1);
        EXPECT_EQ(gPaused, 0);
        EXPECT_FALSE(IsQueueEmpty());
        *option = 0;
    }
    EmptyQueue();
}

TEST_F(ProcessFileTest, QuitAmongTheMessagesIsIgnored)
{
    EmptyQueue();
    PostMessageA(gMainWindow, WM_QUIT, 0, 0);
    PostMessageA(gMainWindow, WM_ENTERMENULOOP, 0, 0);
    ProcessFile("boat.qsa", 1);
    EXPECT_EQ(gPaused, 1);
}

// It waits despite the options, until messages end the wait.
TEST_F(ProcessFileTest, ProgramInTheBackgroundWaitsUntilItIsActiveAgain)
{
    static const struct {
        const char* what;
        int* flag;
        UINT message;
        WPARAM value;
    } cases[] = {
        {"minimised", &gWindowShown, WM_SIZE, SIZE_RESTORED},
        {"inactive", &gAppActive, WM_ACTIVATEAPP, 1},
    };
    gNoKey = 1;
    for (const auto& c : cases) {
        EmptyQueue();
        gWindowShown = gAppActive = 1;
        *c.flag = 0;
        PostMessageA(gMainWindow, WM_ENTERMENULOOP, 0, 0);
        PostMessageA(gMainWindow, c.message, c.value, 0);
        PostMessageA(gMainWindow, WM_EXITMENULOOP, 0, 0);
        ProcessFile("boat.qsa", 1);
        EXPECT_EQ(*c.flag, 1) << c.what;
        EXPECT_EQ(gPaused, 1) << c.what << ": what comes later stays in the queue";
        EXPECT_FALSE(IsQueueEmpty()) << c.what;
        EmptyQueue();
    }
}

TEST_F(ProcessFileTest, ProgramWithoutAWindowDoesNotWait)
{
    EmptyQueue();
    gAppActive = 0;
    gWindowDestroyed = 1;
    ProcessFile("boat.qsa", 1);
    EXPECT_EQ(gGfx->frameCount, 1);
}

TEST_F(ProcessFileTest, SkippedFileAndFileWithoutAFrameDoNotWait)
{
    gAppActive = 0;
    gViewEnabled = 0;
    ProcessFile("boat.qsa", 1);
    ProcessFile("boat.qsa", 0);
    EXPECT_EQ(Title(), "boat.qsa");
}
