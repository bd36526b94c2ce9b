#include "app/MainWindow.h"

#include "app/MenuCommand.h"
#include "app/Options.h"
#include "tests/app/ScratchWindow.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace {

/// The window's procedure, for a window under the given options.
class MainWindow : public testing::Test {
protected:
    void Create(const char* options) { window = std::make_unique<ScratchWindow>(options); }

    static DWORD Style() { return static_cast<DWORD>(GetWindowLongA(gMainWindow, GWL_STYLE)); }

    static LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0)
    {
        return MainWindowProc(gMainWindow, message, wParam, lParam);
    }

    std::unique_ptr<ScratchWindow> window;
};

/// Everything that a message may change.
struct WindowState {
    int shown = gWindowShown;
    int active = gAppActive;
    int paused = gPaused;
    int destroyed = gWindowDestroyed;
    int openRequested = gOpenRequested;
    int width = gClientWidth;
    int height = gClientHeight;
    std::string pattern = gFilePattern;

    bool operator==(const WindowState&) const = default;
};

/// The keys of the Info dialog's list, and the letters that its menu shows after Ctrl.
constexpr WPARAM kListedKeys[] = {
    VK_ESCAPE, VK_ADD,   VK_SUBTRACT, VK_CANCEL,   VK_LEFT,     VK_RIGHT,  VK_UP,
    VK_DOWN,   VK_PRIOR, VK_NEXT,     VK_SHIFT,    VK_CONTROL,  'C',       'V',
    'M',       'S',      'H',         'L',         'O',         'F',       'I',
    'A',       'T',      'X',         VK_SNAPSHOT, VK_MULTIPLY, VK_DIVIDE,
};

} // namespace

TEST_F(MainWindow, HasTheTextsOfTheStringTable)
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
    EXPECT_EQ(Style() & WS_OVERLAPPEDWINDOW, static_cast<DWORD>(WS_OVERLAPPEDWINDOW));
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

TEST_F(MainWindow, FullScreenHasNoMenuAndNeitherSizingBorderNorBoxes)
{
    for (const char* options : {"/full", "/full /nr", "/full /nm"}) {
        Create(options);
        EXPECT_EQ(GetMenu(gMainWindow), nullptr) << options;
        EXPECT_EQ(Style() & (WS_THICKFRAME | WS_SYSMENU | WS_MINIMIZEBOX | WS_MAXIMIZEBOX), 0u)
            << options;
        window.reset();
    }
}

TEST_F(MainWindow, SizeMessagesTellWhetherItIsShown)
{
    Create("");
    static const struct {
        const char* what;
        WPARAM how;
        int shown;
    } cases[] = {
        {"minimised", SIZE_MINIMIZED, 0},       {"restored", SIZE_RESTORED, 1},
        {"hidden by another", SIZE_MAXHIDE, 0}, {"maximised", SIZE_MAXIMIZED, 1},
        {"minimised again", SIZE_MINIMIZED, 0}, {"the other is gone", SIZE_MAXSHOW, 1},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Send(WM_SIZE, c.how), 0) << c.what;
        EXPECT_EQ(gWindowShown, c.shown) << c.what;
    }
}

TEST_F(MainWindow, SizeMessagesTakeTheClientSizeFromTheWindow)
{
    Create("/resx:500 /resy:400");
    const int width = gClientWidth;
    const int height = gClientHeight;
    gClientWidth = 0;
    gClientHeight = 0;
    Send(WM_SIZE, SIZE_RESTORED, 7 << 16 | 9); // the size in the message is ignored
    EXPECT_EQ(gClientWidth, width);
    EXPECT_EQ(gClientHeight, height);
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
    static const struct {
        UINT enter;
        UINT exit;
    } cases[] = {{WM_ENTERMENULOOP, WM_EXITMENULOOP}, {WM_ENTERSIZEMOVE, WM_EXITSIZEMOVE}};
    for (const auto& c : cases) {
        EXPECT_EQ(Send(c.enter), 0);
        EXPECT_EQ(gPaused, 1);
        EXPECT_EQ(Send(c.exit), 0);
        EXPECT_EQ(gPaused, 0);
    }
}

TEST_F(MainWindow, LosingTheFocusIsRemembered)
{
    Create("");
    EXPECT_EQ(Send(WM_ACTIVATEAPP, FALSE), 0);
    EXPECT_EQ(gAppActive, 0);
    EXPECT_EQ(Send(WM_ACTIVATEAPP, TRUE), 0);
    EXPECT_EQ(gAppActive, 1);
}

TEST_F(MainWindow, PaintingChangesNothing)
{
    Create("");
    const WindowState before;
    EXPECT_EQ(Send(WM_PAINT), 0);
    EXPECT_TRUE(WindowState() == before);
}

TEST_F(MainWindow, DestroyIsRememberedAndPostsQuit)
{
    Create("");
    EXPECT_EQ(Send(WM_DESTROY), 0);
    EXPECT_EQ(gWindowDestroyed, 1);
    MSG message = {};
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) && message.message != WM_QUIT)
        continue;
    EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
    EXPECT_EQ(message.wParam, 0u);
}

TEST_F(MainWindow, ClosingDestroysIt)
{
    Create("");
    SendMessageA(gMainWindow, WM_CLOSE, 0, 0);
    EXPECT_EQ(gWindowDestroyed, 1);
    EXPECT_FALSE(IsWindow(gMainWindow));
}

TEST_F(MainWindow, KeysOfTheListDoNothing)
{
    Create("");
    const WindowState before;
    for (UINT message : std::initializer_list<UINT>{WM_KEYDOWN, WM_CHAR, WM_KEYUP}) {
        for (WPARAM key : kListedKeys)
            EXPECT_EQ(Send(message, key, 1), DefWindowProcA(gMainWindow, message, key, 1)) << key;
    }
    EXPECT_TRUE(WindowState() == before);
    EXPECT_TRUE(IsWindow(gMainWindow));
    MSG message;
    EXPECT_FALSE(PeekMessageA(&message, nullptr, WM_COMMAND, WM_COMMAND, PM_NOREMOVE));
}

TEST_F(MainWindow, OtherMessagesGoToTheSystem)
{
    Create("");
    const WindowState before;
    for (UINT message : std::initializer_list<UINT>{WM_NULL, WM_USER, WM_USER + 5})
        EXPECT_EQ(Send(message, 3, 4), DefWindowProcA(gMainWindow, message, 3, 4)) << message;
    EXPECT_TRUE(WindowState() == before);
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
    EXPECT_LE(length, 99) << "with its end it fits a buffer of 100 bytes";
    // An empty line, name and maker, an empty line, the address, an empty line, the last line.
    std::vector<std::string> lines(1);
    for (const char* letter = text; *letter != '\0'; ++letter) {
        if (*letter == '\n')
            lines.emplace_back();
        else
            lines.back() += *letter;
    }
    ASSERT_EQ(lines.size(), 6u);
    for (size_t empty : {0u, 2u, 4u})
        EXPECT_EQ(lines[empty], "");
    EXPECT_EQ(lines[1].rfind("ViewQSA v2.25", 0), 0u);
    EXPECT_GT(lines[1].size(), std::string("ViewQSA v2.25").size());
    EXPECT_NE(lines[3], "");
    EXPECT_EQ(lines[5], "Loading...");
}
