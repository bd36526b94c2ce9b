#include "platform/headless/win32/HostPath.h"

#include "platform/OpenFileStream.h"
#include "platform/ReplacementFile.h"
#include "platform/headless/win32/DirectoryIndex.h"
#include "tests/support/ScratchDirectory.h"

#include <cerrno>
#include <filesystem>
#include <gtest/gtest.h>
#include <windows.h>

using namespace headless;

TEST(MatchesWildcard, FollowsTheWindowsRules)
{
    static const struct {
        const char* what;
        const char* name;
        const char* pattern;
        bool expected;
    } cases[] = {
        {"plain", "boat.qsa", "boat.qsa", true},
        {"case", "Boat.QSA", "bOAT.qsa", true},
        {"star in front", "boat.qsa", "*.qsa", true},
        {"star in front, other end", "boat.qsax", "*.qsa", false},
        {"star for nothing", ".qsa", "*.qsa", true},
        {"two stars", "a.b.c", "*.*c", true},
        {"star backtracks", "aXbXc", "*Xc", true},
        {"question mark", "boat1.qsa", "boat?.qsa", true},
        {"question mark needs a character", "boat.qsa", "boat?.qsa", false},
        {"star dot star fits a name without a dot", "boat", "*.*", true},
        {"empty pattern", "boat", "", false},
        {"stars at the end", "boat", "boat**", true},
        {"bytes above 127 are compared as they are", "b\xC3\xA4r", "b\xC3\xA4R", true},
    };
    for (const auto& c : cases)
        EXPECT_EQ(MatchesWildcard(c.name, c.pattern), c.expected) << c.what;
}

TEST(MatchesWildcard, ManyStarsDoNotTakeExponentialTime)
{
    // A recursive backtracking matcher would need more than 10^20 steps for this.
    const std::string name(200, 'a');
    std::string pattern;
    for (int i = 0; i < 60; ++i)
        pattern += "*a";
    EXPECT_FALSE(MatchesWildcard((name + "x").c_str(), (pattern + "y").c_str()));
}

TEST(ResolveHostPath, TakesEitherSeparatorAndAnyCase)
{
    const ScratchDirectory scratch;
    scratch.Write("Maps/Hull/Planks.PNG", "x");
    static const struct {
        const char* given;
        const char* expected;
    } cases[] = {
        {"Maps/Hull/Planks.PNG", "Maps/Hull/Planks.PNG"},
        {"Maps\\Hull\\Planks.PNG", "Maps/Hull/Planks.PNG"},
        {"maps\\hull/planks.png", "Maps/Hull/Planks.PNG"},
        {"maps/hull/new.png", "Maps/Hull/new.png"},
        {"absent\\planks.png", "absent/planks.png"},
        {"./MAPS/../maps/hull", "./Maps/../Maps/Hull"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ResolveHostPath(c.given), c.expected) << c.given;
}

TEST(ResolveHostPath, ExactNameWinsAndThenTheFirstInByteOrder)
{
    const ScratchDirectory scratch;
    scratch.Write("boat", "1");
    scratch.Write("BOAT", "2");
    scratch.Write("Boat", "3");
    EXPECT_EQ(ResolveHostPath("Boat"), "Boat");
    EXPECT_EQ(ResolveHostPath("bOAT"), "BOAT"); // 'B','O' sort before 'b' and before 'B','o'
}

TEST(DirectoryIndex, LargeDirectoriesFollowTheirChanges)
{
    const ScratchDirectory scratch;
    for (int i = 0; i < 1500; ++i)
        scratch.Write("File" + std::to_string(i), "");
    EXPECT_EQ(FindEntryIgnoringCase("", "FILE7"), "File7");
    EXPECT_EQ(FindEntryIgnoringCase("", "NEW"), "");

    // Files that this process creates through OpenFileStream are found at once.
    std::fclose(OpenFileStream("New", "wb"));
    EXPECT_EQ(FindEntryIgnoringCase("", "NEW"), "New");
    MoveFileExA("New", "Newer", MOVEFILE_REPLACE_EXISTING);
    EXPECT_EQ(FindEntryIgnoringCase("", "NEW"), "");
    EXPECT_EQ(FindEntryIgnoringCase("", "NEWER"), "Newer");
    DeleteFileA("newer");
    EXPECT_EQ(FindEntryIgnoringCase("", "NEWER"), "");
}

TEST(OpenFileStream, RefusesDirectories)
{
    const ScratchDirectory scratch;
    std::filesystem::create_directory("folder");
    errno = 0;
    EXPECT_EQ(OpenFileStream("folder", "rb"), nullptr);
    EXPECT_EQ(errno, EISDIR);
}

TEST(ResolveTargetPath, DirectoriesIgnoreCaseAndTheLeafDoesNot)
{
    const ScratchDirectory scratch;
    scratch.Write("Maps/Hull/Boat.qsb", "x");
    scratch.Write("Boat.qsb", "x");
    static const struct {
        const char* given;
        const char* expected;
    } cases[] = {
        {"boat.qsb", "boat.qsb"},
        {"maps\\hull\\boat.qsb", "Maps/Hull/boat.qsb"},
        {"MAPS/Hull/Boat.qsb", "Maps/Hull/Boat.qsb"},
        {"absent\\boat.qsb", "absent/boat.qsb"},
        {"/boat.qsb", "/boat.qsb"},
        {"", ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ResolveTargetPath(c.given), c.expected) << c.given;
}

TEST(OpenFileStream, WritingMakesExactlyTheNameAskedFor)
{
    for (const char* mode : {"wb", "w+t", "a+t"}) {
        const ScratchDirectory scratch;
        scratch.Write("Deck/Boat.qsb", "old");
        FILE* file = OpenFileStream("deck\\boat.QSB", mode);
        ASSERT_NE(file, nullptr);
        std::fputs("new", file);
        std::fclose(file);
        EXPECT_EQ(scratch.Read("Deck/boat.QSB"), "new") << mode;
        EXPECT_EQ(scratch.Read("Deck/Boat.qsb"), "old") << mode;
    }
}

TEST(OpenFileStream, ExistingFileMayBeWrittenInAnyCase)
{
    const ScratchDirectory scratch;
    scratch.Write("Boat.qsb", "old");
    FILE* file = OpenFileStream("boat.QSB", "r+b");
    ASSERT_NE(file, nullptr);
    std::fputs("new", file);
    std::fclose(file);
    EXPECT_EQ(scratch.Read("Boat.qsb"), "new");
}

TEST(ReplacementFile, TargetOfAnotherCaseIsAnotherFile)
{
    const ScratchDirectory scratch;
    scratch.Write("Deck/Boat.qsb", "old");
    EXPECT_TRUE(ReplacementFile::IsTargetThere("deck\\Boat.qsb"));
    EXPECT_FALSE(ReplacementFile::IsTargetThere("Deck/boat.qsb"));
    EXPECT_FALSE(ReplacementFile::IsTargetThere("Deck")) << "a directory is no target";
    ReplacementFile file;
    ASSERT_TRUE(file.Make("deck\\boat.qsb"));
    ASSERT_TRUE(file.MoveOverTarget());
    EXPECT_EQ(scratch.Read("Deck/Boat.qsb"), "old");
    EXPECT_EQ(scratch.Read("Deck/boat.qsb"), "");
}

TEST(MoveFileExA, TargetGetsExactlyTheNameAskedFor)
{
    const ScratchDirectory scratch;
    scratch.Write("New", "new");
    scratch.Write("Boat", "old");
    EXPECT_TRUE(MoveFileExA("new", "boat", 0)) << "nothing is in the way";
    EXPECT_EQ(scratch.Read("Boat"), "old");
    EXPECT_EQ(scratch.Read("boat"), "new");
}

TEST(CreateDirectoryA, MakesExactlyTheNameAskedFor)
{
    const ScratchDirectory scratch;
    std::filesystem::create_directory("Deck");
    EXPECT_TRUE(CreateDirectoryA("deck", nullptr));
    EXPECT_TRUE(scratch.Has("deck"));
}
