#include "app/MainWindow.h"
#include "tests/app/ScratchWindow.h"

#include <gtest/gtest.h>

namespace {

WNDCLASSEXA ClassOf(const char* options)
{
    const ScratchWindow window(options);
    WNDCLASSEXA info = {};
    info.cbSize = sizeof info;
    EXPECT_TRUE(GetClassInfoExA(gInstance, "KRE_DEFAULT", &info));
    return info;
}

/// Whether a row of the client area holds a pixel that is not the background's.
bool HasInk(HDC context, int y, int from, int to)
{
    const COLORREF background = GetSysColor(COLOR_WINDOW);
    for (int x = from; x < to; ++x) {
        if (GetPixel(context, x, y) != background)
            return true;
    }
    return false;
}

/// Whether any row of a text line has ink between two columns.
bool LineHasInk(HDC context, int line, int height, int from, int to)
{
    for (int y = line * height; y < (line + 1) * height; ++y) {
        if (HasInk(context, y, from, to))
            return true;
    }
    return false;
}

} // namespace

TEST(WindowClass, HasItsFields)
{
    const WNDCLASSEXA info = ClassOf("");
    EXPECT_EQ(info.style, 3u);
    EXPECT_EQ(info.lpfnWndProc, MainWindowProc);
    EXPECT_EQ(info.cbClsExtra, 0);
    EXPECT_EQ(info.cbWndExtra, 0);
    EXPECT_EQ(reinterpret_cast<INT_PTR>(info.hbrBackground), 6);
    EXPECT_EQ(info.hCursor, LoadCursorA(nullptr, MAKEINTRESOURCEA(0x7F00)));
    EXPECT_EQ(info.hIcon, LoadIconA(gInstance, MAKEINTRESOURCEA(107)));
    EXPECT_EQ(info.hIconSm, LoadIconA(gInstance, MAKEINTRESOURCEA(108)));
    EXPECT_EQ(info.lpszMenuName, MAKEINTRESOURCEA(109));
    EXPECT_EQ(ClassOf("/nm").lpszMenuName, nullptr);
    EXPECT_EQ(ClassOf("/full").lpszMenuName, nullptr);
}

TEST(WindowStyle, IsExact)
{
    static const struct {
        const char* options;
        LONG style; // WS_VISIBLE and WS_CLIPSIBLINGS are added by the system
    } cases[] = {
        {"", 0x00CF0000},
        {"/nr", 0x00CA0000},
        {"/nm", 0x00CF0000},
        // Style 0 is an overlapped window, to which the system always gives a caption.
        {"/full", 0x00C00000},
    };
    for (const auto& c : cases) {
        const ScratchWindow window(c.options);
        EXPECT_EQ(GetWindowLongA(gMainWindow, GWL_STYLE) & ~(WS_VISIBLE | WS_CLIPSIBLINGS), c.style)
            << c.options;
    }
}

TEST(WindowSize, MenuTakesItsHeightFromTheClientArea)
{
    int withMenu = 0;
    {
        const ScratchWindow window("/resx:500 /resy:400");
        withMenu = gClientHeight;
    }
    const ScratchWindow window("/resx:500 /resy:400 /nm");
    EXPECT_EQ(gClientHeight - withMenu, GetSystemMetrics(SM_CYMENU));
    EXPECT_LT(gClientWidth, 500);
    EXPECT_LT(gClientHeight, 400);
}

TEST(StartUpText, IsCentredInTheWindowWithItsEmptyLines)
{
    const ScratchWindow window("/resx:500 /resy:400");
    InvalidateRect(gMainWindow, nullptr, TRUE);
    EXPECT_EQ(SendMessageA(gMainWindow, WM_PAINT, 0, 0), 0);
    const HDC context = GetDC(gMainWindow);
    TEXTMETRICA font = {};
    GetTextMetricsA(context, &font);
    const int height = static_cast<int>(font.tmHeight);
    const int width = gClientWidth;
    for (int line : {0, 2, 4, 6})
        EXPECT_FALSE(LineHasInk(context, line, height, 0, width)) << line;
    for (int line : {1, 3, 5}) {
        EXPECT_TRUE(LineHasInk(context, line, height, width / 2 - 40, width / 2)) << line;
        EXPECT_TRUE(LineHasInk(context, line, height, width / 2, width / 2 + 40)) << line;
    }
    // "Loading..." is the shortest line: far less than 80 columns to either side of the middle.
    EXPECT_FALSE(LineHasInk(context, 5, height, 0, width / 2 - 80));
    EXPECT_FALSE(LineHasInk(context, 5, height, width / 2 + 80, width));
    ReleaseDC(gMainWindow, context);
}
