#include "app/InfoDialog.h"

#include <gtest/gtest.h>

// The handle has no dialog, so the system refuses to end it; the test checks which messages the
// procedure handles itself.

TEST(InfoDialog, TakesItsSetUp)
{
    EXPECT_EQ(InfoDialogProc(nullptr, WM_INITDIALOG, 0, 0), TRUE);
}

TEST(InfoDialog, TakesOnlyOkAndCancelAmongTheCommands)
{
    static const struct {
        const char* what;
        WPARAM wParam;
        INT_PTR expected;
    } cases[] = {
        {"OK", IDOK, TRUE},
        {"Esc and the close box", IDCANCEL, TRUE},
        {"only the low word counts", WPARAM{IDOK} | WPARAM{3} << 16, TRUE},
        {"a static control", 0xFFFF, FALSE},
        {"the icon", 0, FALSE},
        {"another button", 3, FALSE},
    };
    for (const auto& c : cases)
        EXPECT_EQ(InfoDialogProc(nullptr, WM_COMMAND, c.wParam, 0), c.expected) << c.what;
}

TEST(InfoDialog, LeavesAllOtherMessagesToTheSystem)
{
    for (UINT message :
         std::initializer_list<UINT>{WM_NULL, WM_CLOSE, WM_PAINT, WM_KEYDOWN, WM_CHAR, WM_USER})
        EXPECT_EQ(InfoDialogProc(nullptr, message, IDOK, 0), FALSE) << message;
}
