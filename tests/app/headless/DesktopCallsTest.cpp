// What the program requests from a desktop, in cases that only this host shows.

#include "app/GuardedRun.h"
#include "app/InfoDialog.h"
#include "app/MainWindow.h"
#include "app/Options.h"
#include "app/SceneFileDialog.h"
#include "app/resource.h"
#include "base/KRE_Base.h"
#include "platform/headless/win32/DesktopControl.h"
#include "tests/support/BoxWatch.h"
#include "tests/support/ScratchDirectory.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <string>

using namespace headless;

namespace {

class DesktopEngine : public KRE_Base {
public:
    DesktopEngine() { SetClassName("DesktopEngine"); }
};

/// A file dialog as the program showed it.
struct Shown {
    std::string call;
    OPENFILENAMEA dialog = {};
    std::string filter; ///< with its NULs, without the last one
    std::string name;   ///< the text in its name field
};

/// Shows a file dialog in which the user types `typed`; an empty text cancels.
Shown ShowFileDialog(bool (*show)(), const std::string& typed)
{
    Shown shown;
    AnswerFileDialogs([&](const char* call, OPENFILENAMEA& dialog) {
        const char* end = dialog.lpstrFilter;
        while (end[0] != '\0' || end[1] != '\0')
            ++end;
        shown = {call, dialog, std::string(dialog.lpstrFilter, end + 1), dialog.lpstrFile};
        std::snprintf(dialog.lpstrFile, dialog.nMaxFile, "%s", typed.c_str());
        return typed.empty() ? FALSE : TRUE;
    });
    std::snprintf(gFilePattern, sizeof gFilePattern, "*.qsa");
    EXPECT_EQ(show(), !typed.empty());
    AnswerFileDialogs({});
    EXPECT_EQ(gFilePattern, typed);
    return shown;
}

void ExpectEverythingElseZero(OPENFILENAMEA dialog)
{
    dialog.lStructSize = dialog.nMaxFile = dialog.Flags = 0;
    dialog.lpstrFilter = nullptr;
    dialog.lpstrFile = nullptr;
    const std::string bytes(reinterpret_cast<const char*>(&dialog), sizeof dialog);
    EXPECT_EQ(bytes, std::string(sizeof dialog, '\0'));
}

} // namespace

TEST(FileDialogCall, OpenAsksForAQsaFileThatExists)
{
    const Shown shown = ShowFileDialog(AskForSceneFile, "boat.qsa");
    EXPECT_EQ(shown.call, "GetOpenFileName");
    EXPECT_EQ(shown.filter, std::string("QSA file\0*.QSA\0", 15));
    EXPECT_EQ(shown.dialog.Flags, 0x1001u) << "must exist, and the box for reading only is ticked";
    EXPECT_EQ(shown.dialog.lStructSize, sizeof(OPENFILENAMEA));
    EXPECT_EQ(shown.dialog.lpstrFile, gFilePattern);
    EXPECT_EQ(shown.dialog.nMaxFile, 255u);
    EXPECT_EQ(shown.name, "") << "cut before it shows";
    ExpectEverythingElseZero(shown.dialog);
}

TEST(FileDialogCall, SaveAsksForAQsbFile)
{
    const Shown shown = ShowFileDialog(AskForTargetFile, "boat.qsb");
    EXPECT_EQ(shown.call, "GetSaveFileName");
    EXPECT_EQ(shown.filter, std::string("QSB file\0*.QSB\0", 15));
    EXPECT_EQ(shown.dialog.Flags, 0u);
    EXPECT_EQ(shown.dialog.lStructSize, sizeof(OPENFILENAMEA));
    EXPECT_EQ(shown.dialog.lpstrFile, gFilePattern);
    EXPECT_EQ(shown.dialog.nMaxFile, 255u);
    EXPECT_EQ(shown.name, "") << "cut before it shows";
    ExpectEverythingElseZero(shown.dialog);
}

TEST(FileDialogCall, CancellingGivesNoNameInEither)
{
    ShowFileDialog(AskForSceneFile, "");
    ShowFileDialog(AskForTargetFile, "");
}

TEST(InfoDialogCall, IsMadeFromItsResource)
{
    ShowInfoDialog(nullptr);
    EXPECT_EQ(LastDialogResource(), 103);
}

// Invalidate 1, erase 4, children too 0x80, paint at once 0x100.
TEST(RedrawCall, WindowIsDrawnAnewWithItsChildrenBeforeTheBox)
{
    const ScratchDirectory scratch;
    const BoxWatch boxes;
    RunGuarded([] { DesktopEngine().Error("number %i", 7); });
    EXPECT_EQ(LastRedrawFlags(), 0x185u);
}
