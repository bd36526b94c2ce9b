#include "tests/app/win32/ResourceBytes.h"

#include <cstring>
#include <gtest/gtest.h>

namespace {

struct MenuEntry {
    std::string text;
    UINT id; // 0 for a separator

    bool operator==(const MenuEntry&) const = default;
};

std::vector<MenuEntry> EntriesOf(HMENU menu)
{
    std::vector<MenuEntry> entries;
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        char text[100] = "";
        GetMenuStringA(menu, static_cast<UINT>(i), text, sizeof text, MF_BYPOSITION);
        entries.push_back({text, GetMenuItemID(menu, i)});
    }
    return entries;
}

struct IconImage {
    int width, height, colors;

    bool operator==(const IconImage&) const = default;
};

/// The pictures of an icon resource, in its order, as described by their own headers.
std::vector<IconImage> ImagesOf(int icon)
{
    const std::vector<BYTE> group = ResourceBytes(MAKEINTRESOURCEA(14), icon); // RT_GROUP_ICON
    std::vector<IconImage> images;
    for (size_t at = 6; at + 14 <= group.size(); at += 14) {
        WORD id = 0;
        std::memcpy(&id, &group[at + 12], sizeof id);
        const std::vector<BYTE> image = ResourceBytes(MAKEINTRESOURCEA(3), id); // RT_ICON
        BITMAPINFOHEADER header = {};
        if (image.size() < sizeof header)
            return {};
        std::memcpy(&header, image.data(), sizeof header);
        // The header's height counts the mask too.
        images.push_back({static_cast<int>(header.biWidth), static_cast<int>(header.biHeight / 2),
                          1 << header.biBitCount});
    }
    return images;
}

} // namespace

TEST(MenuResource, HasItsEntriesInTheirOrder)
{
    const HMENU menu = LoadMenuA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(109));
    ASSERT_EQ(GetMenuItemCount(menu), 2);
    char title[20] = "";
    GetMenuStringA(menu, 0, title, sizeof title, MF_BYPOSITION);
    EXPECT_STREQ(title, "&File");
    GetMenuStringA(menu, 1, title, sizeof title, MF_BYPOSITION);
    EXPECT_STREQ(title, "&Help");
    const std::vector<MenuEntry> file = {
        {"Open...\tCtrl+O", 32774},
        {"Save binary...\tCtrl+S", 32773},
        {"", 0},
        {"Set default texture path...", 32771},
        {"Set default base path...", 32782},
        {"File Scene Info...\tCtrl+I", 32775},
        {"&Exit", 105},
    };
    EXPECT_TRUE(EntriesOf(GetSubMenu(menu, 0)) == file);
    EXPECT_TRUE(EntriesOf(GetSubMenu(menu, 1)) == std::vector<MenuEntry>({{"&Info...", 104}}));
    DestroyMenu(menu);
}

TEST(AcceleratorResource, HasItsFiveKeys)
{
    const HACCEL table = LoadAcceleratorsA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(109));
    ACCEL keys[10] = {};
    ASSERT_EQ(CopyAcceleratorTableA(table, keys, 10), 5);
    static const struct {
        WORD key;
        BYTE with;
        WORD command;
    } expected[] = {
        {'I', FCONTROL, 32775}, {'/', FALT, 104},       {'?', FALT, 104},
        {'S', FCONTROL, 32773}, {'O', FCONTROL, 32774},
    };
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(keys[i].key, expected[i].key) << i;
        EXPECT_EQ(keys[i].fVirt & (FCONTROL | FALT | FSHIFT), expected[i].with) << i;
        EXPECT_EQ(keys[i].cmd, expected[i].command) << i;
    }
    DestroyAcceleratorTable(table);
}

TEST(IconResource, MainIconComesInTwoSizesAndTwoDepths)
{
    const std::vector<IconImage> expected = {{32, 32, 16}, {16, 16, 16}, {32, 32, 2}, {16, 16, 2}};
    EXPECT_TRUE(ImagesOf(107) == expected);
}

TEST(IconResource, SmallIconIsOnePicture)
{
    EXPECT_TRUE(ImagesOf(108) == std::vector<IconImage>({{16, 16, 16}}));
}

TEST(ManifestResource, IsAnEmptyAssembly)
{
    const std::vector<BYTE> bytes = ResourceBytes(MAKEINTRESOURCEA(24), 1); // RT_MANIFEST
    const std::string text(bytes.begin(), bytes.end());
    const size_t assembly = text.find("<assembly ");
    ASSERT_NE(assembly, std::string::npos);
    EXPECT_EQ(text.find('>', assembly), text.find("/>", assembly) + 1) << "nothing inside";
    EXPECT_EQ(text.find('<', assembly + 1), std::string::npos) << "nothing behind it";
}
