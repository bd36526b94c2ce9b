#include "app/MainWindow.h"

#include "app/Options.h"

#include <gtest/gtest.h>
#include <string>

namespace {

/// The window under given options, gone again at the end of the test.
class MainWindow : public testing::Test {
protected:
    void Create(const char* options)
    {
        ParseOptions(options);
        const HINSTANCE instance = GetModuleHandleA(nullptr);
        LoadWindowTexts(instance);
        RegisterMainWindowClass(instance);
        ASSERT_EQ(CreateMainWindow(instance, SW_SHOWNORMAL), 1);
    }

    void TearDown() override
    {
        DestroyWindow(gMainWindow);
        gMainWindow = nullptr;
        UnregisterClassA(gWindowClassName, gInstance);
        MSG message;
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
            continue;
        gWindowShown = 1;
        gAppActive = 1;
        gPaused = 0;
        gWindowDestroyed = 0;
    }

    static DWORD Style() { return static_cast<DWORD>(GetWindowLongA(gMainWindow, GWL_STYLE)); }
};

} // namespace

TEST_F(MainWindow, BearsTheTextsOfTheStringTable)
{
    Create("");
    EXPECT_STREQ(gWindowTitle, "ViewQSA");
    EXPECT_STREQ(gWindowClassName, "KRE_DEFAULT");
    char title[100] = "";
    GetWindowTextA(gMainWindow, title, sizeof title);
    EXPECT_STREQ(title, "ViewQSA");
}

TEST_F(MainWindow, ResolutionIsTheOuterSize)
{
    Create("/resx:500 /resy:400");
    RECT outer = {};
    GetWindowRect(gMainWindow, &outer);
    EXPECT_EQ(outer.right - outer.left, 500);
    EXPECT_EQ(outer.bottom - outer.top, 400);
    RECT client = {};
    GetClientRect(gMainWindow, &client);
    EXPECT_EQ(gClientWidth, client.right);
    EXPECT_EQ(gClientHeight, client.bottom);
    EXPECT_LE(gClientWidth, 500);
    EXPECT_LE(gClientHeight, 400);
}

TEST_F(MainWindow, IsAnOverlappedWindowWithAMenu)
{
    Create("");
    EXPECT_EQ(Style() & WS_OVERLAPPEDWINDOW, static_cast<DWORD>(WS_OVERLAPPEDWINDOW));
    EXPECT_NE(GetMenu(gMainWindow), nullptr);
}

TEST_F(MainWindow, NmLeavesTheMenuOut)
{
    Create("/nm");
    EXPECT_EQ(GetMenu(gMainWindow), nullptr);
}

TEST_F(MainWindow, NrKeepsTheSystemMenuAndCannotBeSized)
{
    Create("/nr");
    EXPECT_NE(Style() & WS_SYSMENU, 0u);
    EXPECT_EQ(Style() & WS_THICKFRAME, 0u);
    EXPECT_EQ(Style() & WS_MAXIMIZEBOX, 0u);
}

TEST_F(MainWindow, QuirkNrKeepsTheMinimiseBit)
{
    Create("/nr");
    EXPECT_EQ(Style() & 0x00CF0000u, 0x00CA0000u);
}

TEST_F(MainWindow, FullScreenHasNoMenu)
{
    Create("/full");
    EXPECT_EQ(GetMenu(gMainWindow), nullptr);
}

TEST_F(MainWindow, SizeMessagesTellWhetherItIsShown)
{
    Create("");
    static const struct {
        WPARAM how;
        int shown;
    } cases[] = {{SIZE_MINIMIZED, 0}, {SIZE_RESTORED, 1}, {SIZE_MAXHIDE, 0}, {SIZE_MAXSHOW, 1}};
    for (const auto& c : cases) {
        EXPECT_EQ(MainWindowProc(gMainWindow, WM_SIZE, c.how, 0), 0);
        EXPECT_EQ(gWindowShown, c.shown) << c.how;
    }
}

TEST_F(MainWindow, ResizingUpdatesTheClientSize)
{
    Create("/resx:500 /resy:400");
    const int width = gClientWidth;
    const int height = gClientHeight;
    MoveWindow(gMainWindow, 0, 0, 520, 410, TRUE);
    EXPECT_EQ(gClientWidth, width + 20);
    EXPECT_EQ(gClientHeight, height + 10);
}

TEST_F(MainWindow, MenuAndMoveLoopsPauseOnlyWhileTheyLast)
{
    Create("");
    MainWindowProc(gMainWindow, WM_ENTERMENULOOP, 0, 0);
    EXPECT_EQ(gPaused, 1);
    MainWindowProc(gMainWindow, WM_EXITMENULOOP, 0, 0);
    EXPECT_EQ(gPaused, 0);
    MainWindowProc(gMainWindow, WM_ENTERSIZEMOVE, 0, 0);
    EXPECT_EQ(gPaused, 1);
    MainWindowProc(gMainWindow, WM_EXITSIZEMOVE, 0, 0);
    EXPECT_EQ(gPaused, 0);
}

TEST_F(MainWindow, LosingTheFocusIsRemembered)
{
    Create("");
    MainWindowProc(gMainWindow, WM_ACTIVATEAPP, 0, 0);
    EXPECT_EQ(gAppActive, 0);
    MainWindowProc(gMainWindow, WM_ACTIVATEAPP, 1, 0);
    EXPECT_EQ(gAppActive, 1);
}

TEST_F(MainWindow, ClosingDestroysItAndPostsQuit)
{
    Create("");
    SendMessageA(gMainWindow, WM_CLOSE, 0, 0);
    EXPECT_EQ(gWindowDestroyed, 1);
    EXPECT_FALSE(IsWindow(gMainWindow));
    MSG message;
    bool hasQuit = false;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
        hasQuit = hasQuit || message.message == WM_QUIT;
    EXPECT_TRUE(hasQuit);
}

TEST(StringTable, HasTheFixedTexts)
{
    static const struct {
        UINT id;
        const char* expected;
    } cases[] = {
        {103, "ViewQSA"},
        {109, "KRE_DEFAULT"},
        {32772, "Saves the QSA file"},
        {32774, "Opens QSA files"},
    };
    for (const auto& c : cases) {
        char text[100] = "";
        LoadStringA(GetModuleHandleA(nullptr), c.id, text, sizeof text);
        EXPECT_STREQ(text, c.expected);
    }
}

TEST(StringTable, StartUpTextHasItsLinesInAHundredCharacters)
{
    char text[200] = "";
    const int length = LoadStringA(GetModuleHandleA(nullptr), 106, text, sizeof text);
    EXPECT_LE(length, 100);
    EXPECT_EQ(std::string(text).find("\nViewQSA v2.25"), 0u);
    EXPECT_EQ(std::string(text).substr(std::string(text).rfind('\n')), "\nLoading...");
}
