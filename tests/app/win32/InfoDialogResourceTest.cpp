#include "tests/app/win32/ResourceBytes.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace {

constexpr int kButton = 0x80;
constexpr int kStatic = 0x82;

using Keys = std::vector<std::pair<std::string, std::string>>;

// The key list, block by block from the top of the dialog.
const Keys kBlocks[] = {
    {
        {"<ESC>", "exit"},
        {"<+>", "move forward in time"},
        {"<->", "move backward in time"},
        {"<BREAK>", "stops animation"},
        {"<LEFT>", "turn left"},
        {"<RIGHT>", "turn right"},
        {"<UP>", "move forward"},
        {"<DOWN>", "move backward"},
    },
    {
        {"<PGUP>", "look up"},
        {"<PGDWN>", "look down"},
        {"<SHIFT>+<PGUP>", "move up"},
        {"<SHIFT>+<PGDWN>", "move down"},
        {"<SHIFT>+<LEFT>", "strafe left"},
        {"<SHIFT>+<RIGHT>", "strafe right"},
    },
    {
        {"<CTRL>+<UP>", "rotate world around X-Axis"},
        {"<CTRL>+<DOWN>", "rotate world around X-Axis"},
        {"<CTRL>+<LEFT>", "rotate world around Z-Axis"},
        {"<CTRL>+<RIGHT>", "rotate world around Z-Axis"},
    },
    {
        {"<C>", "toggle camera"},
        {"<V>", "select next vertex"},
        {"<SHIFT>+<V>", "select previous vertex"},
        {"<M>", "select next mesh"},
        {"<SHIFT>+<M>", "select previous mesh"},
        {"<S>", "toggle shading mode (solid, wire, point)"},
    },
    {
        {"<H>", "select next helper object"},
        {"<SHIFT>+<H>", "select previous helper object"},
        {"<L>", "select next light object"},
        {"<SHIFT>+<L>", "select previous light object"},
        {"<O>", "show world axis"},
    },
    {
        {"<F>", "show fps"},
        {"<I>", "disable/enable lighting"},
        {"<SYSRQ>", "make screenshot to ScreenShot.bmp"},
        {"<MULTPLY>", "increase speed"},
        {"<DIVIDE>", "decrease speed"},
        {"<A>", "loop animation"},
        {"<T>", "display time"},
        {"<X>", "mirror X-axis"},
    },
};

/// The lines of a block: the key, tabs or blanks, and its description.
Keys ReadBlock(const std::string& text)
{
    Keys keys;
    size_t start = 0;
    while (start < text.size()) {
        const size_t end = std::min(text.find('\n', start), text.size());
        const std::string line = text.substr(start, end - start);
        const size_t gap = std::min(line.find_first_of(" \t"), line.size());
        const size_t words = std::min(line.find_first_not_of(" \t", gap), line.size());
        keys.emplace_back(line.substr(0, gap), line.substr(words));
        start = end + 1;
    }
    return keys;
}

} // namespace

TEST(InfoDialogResource, HasItsFrame)
{
    const DialogResource dialog = ReadDialogResource(103);
    // DS_MODALFRAME, DS_SETFONT, WS_CAPTION, WS_SYSMENU
    EXPECT_EQ(dialog.style, 0x80u | 0x40u | 0x00C00000u | 0x00080000u);
    EXPECT_EQ(dialog.title, "Info");
    EXPECT_EQ(dialog.x, 22);
    EXPECT_EQ(dialog.y, 17);
    EXPECT_EQ(dialog.width, 388);
    EXPECT_EQ(dialog.height, 317);
    EXPECT_EQ(dialog.font, "System");
    EXPECT_EQ(dialog.fontPoints, 8);
}

TEST(InfoDialogResource, HasEveryControlAtItsPlace)
{
    static const struct {
        const char* what;
        int windowClass, x, y, width, height;
    } expected[] = {
        {"icon", kStatic, 274, 12, 20, 20},         {"version", kStatic, 243, 41, 82, 8},
        {"maker", kStatic, 246, 94, 86, 21},        {"OK", kButton, 267, 248, 43, 11},
        {"bugs", kStatic, 258, 152, 76, 20},        {"address", kStatic, 246, 138, 96, 8},
        {"more info", kStatic, 239, 121, 109, 11},  {"first block", kStatic, 10, 11, 152, 64},
        {"second block", kStatic, 10, 77, 160, 48}, {"fourth block", kStatic, 10, 158, 200, 49},
        {"sixth block", kStatic, 10, 248, 203, 66}, {"third block", kStatic, 10, 125, 186, 32},
        {"fifth block", kStatic, 10, 207, 203, 40},
    };
    const DialogResource dialog = ReadDialogResource(103);
    ASSERT_EQ(dialog.controls.size(), std::size(expected));
    for (size_t i = 0; i < std::size(expected); ++i) {
        const DialogControl& control = dialog.controls[i];
        EXPECT_EQ(control.windowClass, expected[i].windowClass) << expected[i].what;
        EXPECT_EQ(control.x, expected[i].x) << expected[i].what;
        EXPECT_EQ(control.y, expected[i].y) << expected[i].what;
        EXPECT_EQ(control.width, expected[i].width) << expected[i].what;
        EXPECT_EQ(control.height, expected[i].height) << expected[i].what;
        EXPECT_NE(control.style & WS_CHILD, 0u) << expected[i].what;
        EXPECT_NE(control.style & WS_VISIBLE, 0u) << expected[i].what;
    }
}

TEST(InfoDialogResource, HasItsTextsAndItsButton)
{
    const DialogResource dialog = ReadDialogResource(103);
    ASSERT_EQ(dialog.controls.size(), 13u);
    const std::vector<DialogControl>& controls = dialog.controls;
    EXPECT_EQ(controls[0].icon, 107);
    EXPECT_EQ(controls[0].style & SS_TYPEMASK, static_cast<DWORD>(SS_ICON));
    EXPECT_EQ(controls[1].text, "ViewQSA Version 2.23");
    EXPECT_NE(controls[1].style & SS_NOPREFIX, 0u);
    EXPECT_NE(controls[2].text, "");
    EXPECT_EQ(controls[3].text, "OK");
    EXPECT_EQ(controls[3].id, IDOK);
    EXPECT_EQ(controls[3].style & BS_TYPEMASK, static_cast<DWORD>(BS_DEFPUSHBUTTON));
    EXPECT_EQ(controls[4].text, "Please report bugs");
    EXPECT_NE(controls[5].text, "");
    EXPECT_EQ(controls[6].text, "Read ViewQSA.txt for more info");
    for (const DialogControl& control : controls) {
        const bool hasNoPrefix = (control.style & SS_NOPREFIX) != 0;
        EXPECT_EQ(hasNoPrefix, &control == &controls[1]) << control.text;
    }
}

TEST(InfoDialogResource, ListsTheKeysInSixBlocks)
{
    static constexpr int kControlOfBlock[] = {7, 8, 11, 9, 12, 10};
    const DialogResource dialog = ReadDialogResource(103);
    ASSERT_EQ(dialog.controls.size(), 13u);
    size_t keys = 0;
    int bottom = 0;
    for (size_t block = 0; block < std::size(kBlocks); ++block) {
        const DialogControl& control = dialog.controls[static_cast<size_t>(kControlOfBlock[block])];
        EXPECT_EQ(ReadBlock(control.text), kBlocks[block]) << "block " << block + 1;
        EXPECT_GE(control.y, bottom) << "below the one before it";
        bottom = control.y + control.height;
        keys += kBlocks[block].size();
    }
    EXPECT_EQ(keys, 37u);
}
