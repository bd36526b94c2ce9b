#include "app/MainWindow.h"
#include "app/MenuCommand.h"
#include "app/Options.h"
#include "app/SceneFileDialog.h"
#include "app/SceneSession.h"
#include "app/resource.h"
#include "gfx/KRE_Gfx.h"
#include "tests/app/ScratchEngine.h"
#include "tests/app/ScratchWalk.h"
#include "tests/app/win32/DialogAnswer.h"
#include "tests/support/ScratchDirectory.h"

#include <gtest/gtest.h>

namespace {

LRESULT Choose(WPARAM id, const std::string& path)
{
    const DialogAnswer answer([&](HWND dialog) { return ConfirmFileDialog(dialog, path); });
    return MainWindowProc(gMainWindow, WM_COMMAND, id, 0);
}

/// A scene that is shown, as a menu command expects it.
class FileDialog : public testing::Test {
protected:
    FileDialog()
    {
        scratch.Write("boat.qsa", kWalkScene);
        session.Load("boat.qsa");
    }
    ~FileDialog() override { gCurrentScene = nullptr; }

    const ScratchDirectory scratch;
    const ScratchEngine engine{""};
    SceneSession session;
};

} // namespace

TEST_F(FileDialog, SaveWritesTheSceneUnderTheNameThatWasTyped)
{
    const std::string path = scratch.Path().string() + "\\harbour.qsb";
    EXPECT_EQ(Choose(ID_SAVE_BINARY, path), 0);
    EXPECT_EQ(gFilePattern, path);
    session.Save("expected.qsb");
    EXPECT_EQ(scratch.Read("harbour.qsb"), scratch.Read("expected.qsb"));
    EXPECT_FALSE(scratch.Has("boat.qsb"));
}

TEST_F(FileDialog, SaveAddsNoExtension)
{
    const std::string path = scratch.Path().string() + "\\harbour";
    EXPECT_EQ(Choose(ID_SAVE_BINARY, path), 0);
    EXPECT_EQ(gFilePattern, path);
    EXPECT_TRUE(scratch.Has("harbour"));
}

TEST_F(FileDialog, FailedSaveRaisesItsErrorThroughTheMessage)
{
    const std::string path = scratch.Path().string() + "\\boat.qsa\\inside.qsb";
    PostMessageA(gMainWindow, WM_COMMAND, ID_SAVE_BINARY, 0);
    const DialogAnswer answer([&](HWND dialog) { return ConfirmFileDialog(dialog, path); });
    bool isRaised = false;
    try {
        MSG message;
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageA(&message);
    } catch (const ErrorMsg&) {
        isRaised = true;
    }
    EXPECT_TRUE(isRaised);
}

TEST_F(FileDialog, OpenOnlyNotesThatAFileWasChosen)
{
    const std::string path = scratch.Path().string() + "\\boat.qsa";
    EXPECT_EQ(Choose(ID_OPEN, path), 0);
    EXPECT_EQ(gOpenRequested, 1);
    EXPECT_EQ(gFilePattern, path);
    EXPECT_FALSE(scratch.Has("boat.qsb"));
    EXPECT_EQ(gGfx->frameCount, 0);
}

TEST_F(FileDialog, StartAsksForTheSceneFile)
{
    const std::string path = scratch.Path().string() + "\\boat.qsa";
    const DialogAnswer answer([&](HWND dialog) { return ConfirmFileDialog(dialog, path); });
    EXPECT_TRUE(AskForSceneFile());
    EXPECT_EQ(gFilePattern, path);
}
