#include "app/InfoDialog.h"
#include "app/MainWindow.h"
#include "app/resource.h"
#include "tests/app/ScratchWindow.h"
#include "tests/app/win32/DialogAnswer.h"

#include <gtest/gtest.h>

namespace {

INT_PTR ShowAndPost(UINT message, WPARAM wParam)
{
    const DialogAnswer answer(
        [&](HWND dialog) { return PostMessageA(dialog, message, wParam, 0) != FALSE; });
    return DialogBoxParamA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(RESOURCE_INFO_DIALOG),
                           gMainWindow, InfoDialogProc, 0);
}

} // namespace

TEST(InfoDialogWindow, ClosesOnOkEscAndTheCloseBox)
{
    const ScratchWindow window("");
    static const struct {
        const char* what;
        UINT message;
        WPARAM wParam;
        INT_PTR expected;
    } cases[] = {
        {"OK", WM_COMMAND, IDOK, IDOK},
        {"Esc", WM_KEYDOWN, VK_ESCAPE, IDCANCEL},
        {"the close box", WM_SYSCOMMAND, SC_CLOSE, IDCANCEL},
        {"Return is the default button", WM_KEYDOWN, VK_RETURN, IDOK},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ShowAndPost(c.message, c.wParam), c.expected) << c.what;
}

TEST(InfoDialogWindow, HoldsTheWindowWhileItIsOpen)
{
    const ScratchWindow window("");
    bool wasEnabled = true;
    {
        const DialogAnswer answer([&](HWND dialog) {
            wasEnabled = IsWindowEnabled(gMainWindow) != FALSE;
            return PostMessageA(dialog, WM_COMMAND, IDOK, 0) != FALSE;
        });
        EXPECT_EQ(MainWindowProc(gMainWindow, WM_COMMAND, ID_INFO, 0), 0);
    }
    EXPECT_FALSE(wasEnabled);
    EXPECT_TRUE(IsWindowEnabled(gMainWindow));
}
