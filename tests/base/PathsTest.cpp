#include "base/Paths.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "tests/support/ScratchDirectory.h"

namespace {

TEST(Paths, FileExistsOnlyForFiles)
{
    const ScratchDirectory scratch;
    scratch.Write("folder/boat.qsa", "x");
    EXPECT_TRUE(FileExists("folder/boat.qsa"));
    EXPECT_TRUE(FileExists("folder\\boat.qsa"));
    EXPECT_FALSE(FileExists("folder/none.qsa"));
    EXPECT_FALSE(FileExists("folder"));
    EXPECT_FALSE(FileExists(""));
    EXPECT_FALSE(FileExists(nullptr));
}

TEST(Paths, SplitsAtTheLastSeparator)
{
    static const struct {
        const char* what;
        const char* path;
        const char* directory;
        const char* leaf;
    } cases[] = {
        {"backslash", "a\\b", "a", "b"},
        {"slash", "a/b/c", "a/b", "c"},
        {"mixed", "a/b\\c", "a/b", "c"},
        {"none", "abc", "", "abc"},
        {"root", "/a", "", "a"},
        {"ends in a separator", "a/b/", "a/b", ""},
        {"empty", "", "", ""},
        {"drive", "C:\\x\\boat.qsa", "C:\\x", "boat.qsa"},
        {"drive without a separator", "C:x", "", "C:x"},
    };
    for (const auto& c : cases) {
        String directory("old");
        String leaf("old");
        SplitDirectory(c.path, &directory);
        SplitLeaf(c.path, &leaf);
        EXPECT_STREQ(directory.c_str(), c.directory) << c.what;
        EXPECT_STREQ(leaf.c_str(), c.leaf) << c.what;
        String leafOfString(c.path);
        GetLeafName(leafOfString, &leafOfString);
        EXPECT_STREQ(leafOfString.c_str(), c.leaf) << c.what;
    }
}

TEST(Paths, ReplaceDirectoryKeepsTheLeaf)
{
    char path[256] = "old/dir\\boat.qsa";
    ReplaceDirectory(path, "C:\\new");
    EXPECT_STREQ(path, "C:\\new\\boat.qsa");
    const std::string longName(300, 'd');
    ReplaceDirectory(path, longName.c_str());
    EXPECT_EQ(std::string(path), longName.substr(0, 255));
}

TEST(Paths, AbsolutePathsHaveAColonOrALeadingSeparator)
{
    static const struct {
        const char* path;
        bool expected;
    } cases[] = {{"C:\\a", true}, {"a:b", true},     {"ab:", true}, {"\\a", true},
                 {"/a", true},    {"a/b\\c", false}, {"a", false},  {"", false}};
    for (const auto& c : cases)
        EXPECT_EQ(IsAbsolutePath(c.path), c.expected) << c.path;
}

TEST(Paths, ChangeExtensionReplacesOrAdds)
{
    static const struct {
        const char* what;
        const char* name;
        const char* expected;
    } cases[] = {
        {"replaces", "boat.qsa", "boat.fx"},
        {"the last dot only", "a.b.c", "a.b.fx"},
        {"adds", "boat", "boat.fx"},
        {"dot in a directory does not count", "a.b/c", "a.b/c.fx"},
        {"nor before a backslash", "a.b\\c", "a.b\\c.fx"},
        {"leading dot", ".boat", ".fx"},
        {"empty", "", ".fx"},
    };
    for (const auto& c : cases) {
        String name(c.name);
        String out;
        ChangeExtension(name, &out, "fx");
        EXPECT_STREQ(out.c_str(), c.expected) << c.what;
        ChangeExtension(name, &name, "fx");
        EXPECT_STREQ(name.c_str(), c.expected) << c.what << ", in place";
    }
}

TEST(Paths, EnsureTrailingSlashAddsABackslashOnce)
{
    static const struct {
        const char* path;
        const char* expected;
    } cases[] = {{"", ""}, {"a", "a\\"}, {"a\\", "a\\"}, {"a/", "a/"}, {"a/b", "a/b\\"}};
    for (const auto& c : cases) {
        String path(c.path);
        EnsureTrailingSlash(&path);
        EXPECT_STREQ(path.c_str(), c.expected) << c.path;
    }
}

TEST(Paths, TrimStringTakesBlanksAtBothEnds)
{
    static const struct {
        const char* what;
        const char* text;
        const char* expected;
    } cases[] = {
        {"nothing to do", "boat", "boat"},
        {"start", " \t\r\nboat", "boat"},
        {"end", "boat \r\n", "boat"},
        {"only blanks", " \t ", ""},
        {"empty", "", ""},
        {"one character", " b ", "b"},
        {"the first sign that is no blank", " !a! ", "!a!"},
    };
    for (const auto& c : cases) {
        String text(c.text);
        TrimString(&text);
        EXPECT_STREQ(text.c_str(), c.expected) << c.what;
    }
}

TEST(Paths, QuirkTrimStringTruncatesAtAnInnerBlank)
{
    String text("a b");
    TrimString(&text);
    EXPECT_STREQ(text.c_str(), "a");
    text.Assign("  boat.png; comment\r\n");
    TrimString(&text);
    EXPECT_STREQ(text.c_str(), "boat.png;");
}

TEST(Paths, QuirkTrimStringTakesBytesFrom128OnAsBlanks)
{
    String text("\xE4\xF6"
                "ab\xFC"
                "c");
    TrimString(&text);
    EXPECT_STREQ(text.c_str(), "ab");
}

TEST(Paths, RoundToIntRoundsHalvesAwayFromZero)
{
    static const struct {
        float value;
        int32_t expected;
    } cases[] = {
        {0.0f, 0},
        {0.4f, 0},
        {0.5f, 1},
        {1.5f, 2},
        {2.5f, 3},
        {-0.4f, 0},
        {-0.5f, -1},
        {-1.5f, -2},
        {-2.6f, -3},
        {1e6f, 1000000},
        {3e9f, std::numeric_limits<int32_t>::max()},
        {-3e9f, std::numeric_limits<int32_t>::min()},
        {std::nanf(""), 0},
    };
    for (const auto& c : cases)
        EXPECT_EQ(RoundToInt(c.value), c.expected) << c.value;
}

TEST(Paths, PowersOfTwo)
{
    static const struct {
        uint32_t number;
        bool isPower;
        uint32_t next;
    } cases[] = {
        {0, false, 0},           {1, true, 1},      {2, true, 2},
        {3, false, 4},           {5, false, 8},     {255, false, 256},
        {256, true, 256},        {257, false, 512}, {0x80000000u, true, 0x80000000u},
        {0x80000001u, false, 0},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(IsPowerOfTwo(c.number), c.isPower) << c.number;
        EXPECT_EQ(NextPowerOfTwo(c.number), c.next) << c.number;
    }
}

} // namespace
