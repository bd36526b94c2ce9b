#include "app/ProcessDirectory.h"

#include "app/DirectorySearch.h"
#include "app/Options.h"
#include "gfx/KRE_Gfx.h"
#include "tests/app/ScratchEngine.h"
#include "tests/app/ScratchWalk.h"
#include "tests/support/ScratchDirectory.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>

namespace fs = std::filesystem;

TEST(ProcessDirectory, FilesOfALevelComeBeforeItsSubdirectories)
{
    const ScratchDirectory scratch;
    for (const char* name : {"b.qsa", "a.qsa", "x/d.qsa", "x/y/e.qsa", "z/f.qsa", "x/notes.txt"})
        scratch.Write(name, kWalkScene);
    EXPECT_EQ(Walk("*.qsa", "/s"), "'a.qsa' converted\n'b.qsa' converted\n'd.qsa' converted\n"
                                   "'e.qsa' converted\n'f.qsa' converted\n");
    EXPECT_EQ(Walk("*.qsa", ""), "'a.qsa' converted\n'b.qsa' converted\n");
}

TEST(ProcessDirectory, HiddenFilesAndDirectoriesAreSkipped)
{
    const ScratchDirectory scratch;
    for (const char* name : {"a.qsa", ".b.qsa", ".git/c.qsa", "d/.e.qsa", "d/f.qsa"})
        scratch.Write(name, kWalkScene);
    EXPECT_EQ(Walk("*", "/s"), "'a.qsa' converted\n'f.qsa' converted\n");
}

TEST(ProcessDirectory, DirectoriesThatMatchThePatternAreNotFiles)
{
    const ScratchDirectory scratch;
    scratch.Write("folder.qsa/a.qsa", kWalkScene);
    EXPECT_EQ(Walk("*.qsa", ""), "");
    EXPECT_EQ(Walk("*.qsa", "/s"), "'a.qsa' converted\n");
}

TEST(ProcessDirectory, DirectoryOfThePatternIsEnteredAndLeft)
{
    const ScratchDirectory scratch;
    scratch.Write("a.qsa", kWalkScene);
    scratch.Write("x/y/b.qsa", kWalkScene);
    for (const char* pattern : {"x/y/*.qsa", "x\\y\\*.qsa", "x/y\\b.qsa"})
        EXPECT_EQ(Walk(pattern, ""), "'b.qsa' converted\n") << pattern;
    EXPECT_STREQ(gFilePattern, "b.qsa");
    EXPECT_EQ(fs::current_path(), scratch.Path());
}

TEST(ProcessDirectory, EachDirectoryStartsWithoutTextureCompression)
{
    const ScratchDirectory scratch;
    scratch.Write("a.qsa", kWalkScene);
    const ScratchEngine engine("");
    gGfx->textureCompression = 1;
    gGfx->pixelsForCompression = 7;
    EXPECT_EQ(WalkOn("*.qsa"), "'a.qsa' converted\n");
    EXPECT_EQ(gGfx->textureCompression, 0);
    EXPECT_EQ(gGfx->pixelsForCompression, 0x10000);
}

TEST(ProcessDirectory, ANameAfterALoneSeparatorIsLookedForInTheRoot)
{
    const ScratchDirectory scratch;
    scratch.Write("of_this_directory.qsa", kWalkScene);
    EXPECT_EQ(Walk("\\of_this_directory.qsa", ""), "");
    EXPECT_EQ(fs::current_path(), scratch.Path());
}

TEST(ProcessDirectory, WrongDirectoryIsAnEmptyRun)
{
    const ScratchDirectory scratch;
    scratch.Write("a.qsa", kWalkScene);
    EXPECT_EQ(Walk("nowhere/*.qsa", "/s"), "");
    EXPECT_EQ(fs::current_path(), scratch.Path());
}

TEST(ProcessDirectory, PatternWithoutMatchesIsAnEmptyRun)
{
    const ScratchDirectory scratch;
    scratch.Write("a.qsa", kWalkScene);
    EXPECT_EQ(Walk("*.max", "/s"), "");
    EXPECT_EQ(Walk("b.qsa", ""), "");
    EXPECT_EQ(Walk("", "/s"), "");
}

TEST(ProcessDirectory, NamesWithBlanksAndCaseAreFound)
{
    const ScratchDirectory scratch;
    scratch.Write("My Boat.QSA", kWalkScene);
    EXPECT_EQ(Walk("my boat.qsa", ""), "'My Boat.QSA' converted\n");
    EXPECT_EQ(Walk("MY*.qsa", ""), "'My Boat.QSA' converted\n");
}

TEST(ProcessDirectory, DeepTreeIsWalkedToItsEndAndBack)
{
    const ScratchDirectory scratch;
    std::string path;
    std::string expected;
    for (int depth = 0; depth < 40; ++depth) {
        scratch.Write(path + "n.qsa", kWalkScene);
        expected += "'n.qsa' converted\n";
        path += "d/";
    }
    EXPECT_EQ(Walk("*.qsa", "/s"), expected);
    EXPECT_EQ(fs::current_path(), scratch.Path());
}

TEST(ProcessDirectory, NoPrintsTheLineForSkippedFilesToo)
{
    const ScratchDirectory scratch;
    scratch.Write("a.qsa", kWalkScene);
    scratch.Write("a.qsb", "kept as it is");
    EXPECT_EQ(Walk("*.qsa", "/no"), "'a.qsa' converted\n");
    EXPECT_EQ(scratch.Read("a.qsb"), "kept as it is");
}

TEST(DirectoryIdentity, DistinguishesDirectoriesByMoreThanTheirNames)
{
    const ScratchDirectory scratch;
    scratch.Write("x/a.qsa", kWalkScene);
    scratch.Write("y/a.qsa", kWalkScene);
    EXPECT_TRUE(IdentifyDirectory("x") == IdentifyDirectory("x/../x"));
    EXPECT_FALSE(IdentifyDirectory("x") == IdentifyDirectory("y"));
    EXPECT_FALSE(IdentifyDirectory("absent") == IdentifyDirectory("absent"));
}

TEST(DirectoryIdentity, ThePathCountsIfTheNumbersIdentifyNothing)
{
    constexpr DWORD kOnes = 0xFFFFFFFF;
    static const struct {
        const char* what;
        DWORD volume, high, low;
        bool isNumbered;
    } cases[] = {
        {"all there", 7, 1, 2, true},
        {"upper half 0", 7, 0, 2, true},
        {"lower half 0", 7, 1, 0, true},
        {"high part all ones", 7, kOnes, 2, true},
        {"low part all ones", 7, 0, kOnes, true},
        {"volume 0", 0, 1, 2, false},
        {"volume all ones", kOnes, 1, 2, false},
        {"index 0", 7, 0, 0, false},
        {"index all ones", 7, kOnes, kOnes, false},
    };
    for (const auto& c : cases) {
        const DirectoryIdentity deck{c.volume, c.high, c.low, "/ship/deck"};
        const DirectoryIdentity hold{c.volume, c.high, c.low, "/ship/hold"};
        const DirectoryIdentity unknown{c.volume, c.high, c.low, ""};
        EXPECT_EQ(deck.IsNumbered(), c.isNumbered) << c.what;
        EXPECT_TRUE(deck == deck) << c.what;
        EXPECT_EQ(deck == hold, c.isNumbered) << c.what;
        EXPECT_EQ(unknown == unknown, c.isNumbered) << c.what;
    }
    const DirectoryIdentity numbered{7, 1, 2, ""};
    for (const DirectoryIdentity& other :
         {DirectoryIdentity{8, 1, 2, ""}, {7, 3, 2, ""}, {7, 1, 3, ""}, {7, 0, 0, "/ship/deck"}})
        EXPECT_FALSE(numbered == other);
}

TEST(CurrentDirectory, IsTheWholePath)
{
    const ScratchDirectory scratch;
    EXPECT_EQ(fs::path(CurrentDirectory().c_str()), scratch.Path());
}
