#include "app/MainWindow.h"
#include "app/Options.h"
#include "gfx/DefaultPaths.h"
#include "tests/support/BoxWatch.h"
#include "tests/support/RegistryValues.h"
#include "tests/support/ScratchDirectory.h"

#include <algorithm>
#include <cstring>
#include <gmock/gmock.h>
#include <iterator>
#include <string>
#include <windows.h>

int WINAPI WinMain(HINSTANCE instance, HINSTANCE previous, LPSTR commandLine, int showCommand);

namespace {

int RunMain(std::string commandLine)
{
    return WinMain(GetModuleHandleA(nullptr), nullptr, commandLine.data(), SW_SHOWNORMAL);
}

class WinMainTest : public testing::Test {
protected:
    void TearDown() override
    {
        DestroyWindow(gMainWindow);
        gMainWindow = nullptr;
        UnregisterClassA(gWindowClassName, gInstance);
        MSG message;
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
            continue;
    }

    const ScratchDirectory scratch;
};

} // namespace

TEST_F(WinMainTest, HelpSwitchesShowTheBoxAndDoNothingElse)
{
    scratch.Write("file.qsa", "*3DSMAX_QSAEXPORT 200\n");
    for (const char* line : {"/h", "/HELP", "/?", "/Help file.qsa", "file.qsa /?"}) {
        BoxWatch boxes;
        EXPECT_EQ(RunMain(line), 1) << line;
        EXPECT_THAT(boxes.Take(), testing::StartsWith("QSA to QSB converter v1.5\n"
                                                      "Command: QSA2QSB <file.qsa> [Options] "))
            << line;
        EXPECT_EQ(gMainWindow, nullptr) << line;
        EXPECT_FALSE(scratch.Has("file.qsb")) << line;
    }
}

TEST_F(WinMainTest, CancelledOpenDialogEndsWithOneAndNoWindow)
{
    BoxWatch boxes;
    EXPECT_EQ(RunMain(""), 1);
    EXPECT_EQ(boxes.Take(), "");
    EXPECT_EQ(gMainWindow, nullptr);
    EXPECT_FALSE(scratch.Has("logfile.txt"));
    EXPECT_STREQ(gFilePattern, "");
}

TEST_F(WinMainTest, DefaultPathsComeFromTheRegistry)
{
    const RegistryValues registry(
        {{"DefaultTexturePath", "C:\\Maps"}, {"DefaultBasePath", "D:\\"}});
    EXPECT_EQ(RunMain("absent.qsa"), 1);
    EXPECT_STREQ(gDefaultTexturePath, "C:\\Maps");
    EXPECT_STREQ(gDefaultBasePath, "D:\\");
}

TEST_F(WinMainTest, MissingRegistryKeyLeavesThePathsEmpty)
{
    const RegistryValues registry({});
    std::strcpy(gDefaultTexturePath, "of a run before");
    std::strcpy(gDefaultBasePath, "of a run before");
    EXPECT_EQ(RunMain("absent.qsa"), 1);
    EXPECT_STREQ(gDefaultTexturePath, "");
    EXPECT_STREQ(gDefaultBasePath, "");
}

TEST_F(WinMainTest, RegistryValueThatFillsTheBufferIsTaken)
{
    // 1023 characters and the NUL after them are the 1024 bytes of the buffer.
    const std::string longest = std::string(1022, 'x') + "y";
    const RegistryValues registry(
        {{"DefaultTexturePath", longest}, {"DefaultBasePath", longest + "z"}});
    std::fill(std::begin(gDefaultBasePath), std::end(gDefaultBasePath), '?');
    EXPECT_EQ(RunMain("absent.qsa"), 1);
    EXPECT_STREQ(gDefaultTexturePath, longest.c_str());
    EXPECT_STREQ(gDefaultBasePath, "") << "one more has no room";
}

TEST_F(WinMainTest, RegistryValueBeyondTheBufferIsNotTaken)
{
    const RegistryValues registry(
        {{"DefaultTexturePath", std::string(2000, 'x')}, {"DefaultBasePath", "D:\\"}});
    std::strcpy(gDefaultTexturePath, "of a run before");
    EXPECT_EQ(RunMain("absent.qsa"), 1);
    EXPECT_STREQ(gDefaultTexturePath, "");
    EXPECT_STREQ(gDefaultBasePath, "D:\\") << "the other one is taken all the same";
}

TEST_F(WinMainTest, ViewIsSwitchedOnAtTheStart)
{
    gViewEnabled = 0;
    EXPECT_EQ(RunMain("absent.qsa"), 1);
    EXPECT_EQ(gViewEnabled, 1);
}

namespace {

LRESULT CALLBACK RefuseToBeMade(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    return message == WM_CREATE ? -1 : DefWindowProcA(window, message, wParam, lParam);
}

} // namespace

// A class with the program's name exists already, and its windows refuse to be created.
TEST_F(WinMainTest, WithoutAWindowItEndsWithZeroAndConvertsNothing)
{
    WNDCLASSEXA windowClass = {};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = RefuseToBeMade;
    windowClass.hInstance = GetModuleHandleA(nullptr);
    windowClass.lpszClassName = "KRE_DEFAULT";
    ASSERT_NE(RegisterClassExA(&windowClass), 0);
    scratch.Write("a.qsa", "*3DSMAX_QSAEXPORT 200\n");
    BoxWatch boxes;
    EXPECT_EQ(RunMain("a.qsa"), 0);
    EXPECT_EQ(gMainWindow, nullptr);
    EXPECT_EQ(boxes.Take(), "");
    EXPECT_FALSE(scratch.Has("a.qsb"));
    EXPECT_FALSE(scratch.Has("logfile.txt"));
}

TEST_F(WinMainTest, UnknownAndIneffectiveOptionsAreSilent)
{
    BoxWatch boxes;
    EXPECT_EQ(RunMain("absent.qsa /fps /close /bogus /x:1"), 1);
    EXPECT_EQ(boxes.Take(), "");
    EXPECT_FALSE(scratch.Has("logfile.txt"));
}
