#include <gtest/gtest.h>
#include <vector>
#include <windows.h>

namespace {

std::vector<WPARAM> gSeen; // wParam of each message, after the message number
INT_PTR gAnswer;           // 0: the procedure never ends its dialog

INT_PTR CALLBACK NoteAndAnswer(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    gSeen.insert(gSeen.end(), {message, wParam, static_cast<WPARAM>(lParam)});
    if (message == WM_COMMAND && gAnswer != 0)
        EndDialog(dialog, gAnswer);
    return TRUE;
}

INT_PTR CALLBACK Throw(HWND, UINT, WPARAM, LPARAM)
{
    throw 7;
}

INT_PTR CALLBACK EndAtOnce(HWND dialog, UINT message, WPARAM, LPARAM)
{
    gSeen.push_back(message);
    EndDialog(dialog, 5);
    return TRUE;
}

INT_PTR Show(DLGPROC procedure)
{
    gSeen.clear();
    return DialogBoxParamA(nullptr, MAKEINTRESOURCEA(103), nullptr, procedure, 9);
}

} // namespace

TEST(DialogBoxParamA, SetsUpAndCancels)
{
    gAnswer = 3;
    EXPECT_EQ(Show(NoteAndAnswer), 3);
    EXPECT_EQ(gSeen, (std::vector<WPARAM>{WM_INITDIALOG, 0, 9, WM_COMMAND, IDCANCEL, 0}));
}

TEST(DialogBoxParamA, DialogThatEndsWhileItIsSetUpIsNotCancelled)
{
    EXPECT_EQ(Show(EndAtOnce), 5);
    EXPECT_EQ(gSeen, std::vector<WPARAM>{WM_INITDIALOG});
}

TEST(DialogBoxParamA, DialogThatNeverEndsFails)
{
    gAnswer = 0;
    EXPECT_EQ(Show(NoteAndAnswer), -1);
    EXPECT_EQ(DialogBoxParamA(nullptr, nullptr, nullptr, nullptr, 0), -1);
}

TEST(DialogBoxParamA, ProcedureMayThrow)
{
    EXPECT_THROW(Show(Throw), int);
    gAnswer = 3;
    EXPECT_EQ(Show(NoteAndAnswer), 3) << "nothing is left of the one before";
}

TEST(EndDialog, RefusesWhatIsNotADialog)
{
    EXPECT_FALSE(EndDialog(nullptr, 1));
    int other = 0;
    EXPECT_FALSE(EndDialog(reinterpret_cast<HWND>(&other), 1));
}
