#include "app/MenuCommand.h"

#include "app/MainWindow.h"
#include "app/Options.h"
#include "app/SceneSession.h"
#include "app/resource.h"
#include "gfx/KRE_Gfx.h"
#include "tests/app/ScratchEngine.h"
#include "tests/app/ScratchWalk.h"
#include "tests/app/ScratchWindow.h"
#include "tests/app/WatchedWindow.h"
#include "tests/support/BoxWatch.h"
#include "tests/support/ScratchDirectory.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace {

/// The menu's commands as messages to a window. Dialogs that open are cancelled, or answered with OK
/// if they have no name to fill in.
class MenuCommand : public testing::Test {
protected:
    MenuCommand() { std::snprintf(gFilePattern, sizeof gFilePattern, "*.qsa"); }
    ~MenuCommand() override { gCurrentScene = nullptr; }

    static LRESULT Choose(WPARAM wParam)
    {
        BoxWatch boxes;
        return MainWindowProc(gMainWindow, WM_COMMAND, wParam, 0);
    }

    const ScratchWindow window{""};
};

} // namespace

TEST_F(MenuCommand, InfoShowsTheDialogAndChangesNothing)
{
    const WatchedWindow owner; // a dialog disables its owner while it is open
    {
        const BoxWatch boxes;
        EXPECT_EQ(MainWindowProc(owner.Handle(), WM_COMMAND, ID_INFO, 0), 0);
    }
    EXPECT_EQ(owner.Count("disabled"), 1);
    EXPECT_EQ(owner.Count("enabled"), 1);
    EXPECT_TRUE(IsWindow(gMainWindow));
    EXPECT_EQ(gPaused, 0);
    EXPECT_STREQ(gFilePattern, "*.qsa");
}

TEST_F(MenuCommand, ExitDestroysTheWindow)
{
    EXPECT_EQ(Choose(ID_EXIT), 0);
    EXPECT_FALSE(IsWindow(gMainWindow));
    EXPECT_EQ(gWindowDestroyed, 1);
}

TEST_F(MenuCommand, SaveWithoutASceneDoesNotEvenAsk)
{
    gCurrentScene = nullptr;
    EXPECT_EQ(Choose(ID_SAVE_BINARY), 0);
    EXPECT_STREQ(gFilePattern, "*.qsa") << "the dialog would have cut it";
}

TEST_F(MenuCommand, SaveAfterTheEngineHasGoneDoesNotEvenAsk)
{
    KRE_3dScene* const stale = reinterpret_cast<KRE_3dScene*>(sizeof(KRE_3dScene));
    gCurrentScene = stale; // as when the box of an error is open: it must not be used
    ASSERT_EQ(gGfx, nullptr);
    EXPECT_EQ(Choose(ID_SAVE_BINARY), 0);
    EXPECT_STREQ(gFilePattern, "*.qsa");
}

TEST_F(MenuCommand, QuirkCancelledOpenEmptiesThePattern)
{
    EXPECT_EQ(Choose(ID_OPEN), 0);
    EXPECT_STREQ(gFilePattern, "");
    EXPECT_EQ(gOpenRequested, 0);
}

TEST_F(MenuCommand, EntriesWithoutACommandGoToTheSystem)
{
    static const WPARAM ids[] = {ID_TEXTURE_PATH, ID_BASE_PATH, ID_SCENE_INFO, 0, 1, 2, 103, 65535};
    for (WPARAM id : ids) {
        EXPECT_FALSE(DoMenuCommand(gMainWindow, static_cast<int>(id))) << id;
        EXPECT_EQ(Choose(id), DefWindowProcA(gMainWindow, WM_COMMAND, id, 0)) << id;
        EXPECT_TRUE(IsWindow(gMainWindow)) << id;
        EXPECT_STREQ(gFilePattern, "*.qsa") << id;
    }
}

TEST_F(MenuCommand, OnlyTheLowWordIsTheCommand)
{
    // The high word is 1 if the command comes from an accelerator.
    EXPECT_EQ(Choose(WPARAM{ID_EXIT} | WPARAM{1} << 16), 0);
    EXPECT_FALSE(IsWindow(gMainWindow));
}

TEST(SaveCommand, QuirkCancellingEmptiesThePatternAndSavesNothing)
{
    const ScratchDirectory scratch;
    scratch.Write("boat.qsa", kWalkScene);
    const ScratchEngine engine("");
    SceneSession session;
    session.Load("boat.qsa");
    std::snprintf(gFilePattern, sizeof gFilePattern, "*.qsa");
    BoxWatch boxes;
    EXPECT_EQ(MainWindowProc(gMainWindow, WM_COMMAND, ID_SAVE_BINARY, 0), 0);
    EXPECT_STREQ(gFilePattern, "");
    EXPECT_FALSE(scratch.Has("boat.qsb"));
    gCurrentScene = nullptr;
}

namespace {

/// A walk with a command in the queue, which is handled after the first file.
class MenuInAWalk : public testing::Test {
protected:
    /// The window is shown: with a hidden one the program would wait to become active again.
    std::string WalkWith(WPARAM command, const char* options)
    {
        for (const char* name : {"a.qsa", "b.qsa", "below/c.qsa"})
            scratch.Write(name, kWalkScene);
        engine = std::make_unique<ScratchEngine>(options);
        ShowWindow(gMainWindow, SW_SHOWNORMAL);
        PostMessageA(gMainWindow, WM_COMMAND, command, 0);
        BoxWatch boxes;
        return WalkOn("*.qsa");
    }

    const ScratchDirectory scratch;
    std::unique_ptr<ScratchEngine> engine;
};

} // namespace

TEST_F(MenuInAWalk, QuirkCancelledSaveLeavesTheDirectoriesBelowUnfound)
{
    EXPECT_EQ(WalkWith(ID_SAVE_BINARY, "/s"), "'a.qsa' converted\n'b.qsa' converted\n");
    EXPECT_STREQ(gFilePattern, "");
}

TEST_F(MenuInAWalk, ExitTakesTheWindowAndTheWalkGoesOn)
{
    EXPECT_EQ(WalkWith(ID_EXIT, "/s"), "'a.qsa' converted\n'b.qsa' converted\n'c.qsa' converted\n");
    EXPECT_EQ(gWindowDestroyed, 1);
    EXPECT_FALSE(IsWindow(gMainWindow));
}

TEST_F(MenuInAWalk, InfoLetsTheWalkGoOn)
{
    EXPECT_EQ(WalkWith(ID_INFO, ""), "'a.qsa' converted\n'b.qsa' converted\n");
    EXPECT_STREQ(gFilePattern, "*.qsa");
    MSG message;
    EXPECT_FALSE(PeekMessageA(&message, nullptr, WM_COMMAND, WM_COMMAND, PM_NOREMOVE)) << "done";
}
