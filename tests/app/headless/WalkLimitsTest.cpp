#include "tests/app/ScratchWalk.h"
#include "tests/support/ScratchDirectory.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <unistd.h>

namespace fs = std::filesystem;

TEST(ProcessDirectory, LinkBackUpIsNotEntered)
{
    const ScratchDirectory scratch;
    scratch.Write("a.qsa", kWalkScene);
    scratch.Write("x/b.qsa", kWalkScene);
    scratch.Write("x/y/c.qsa", kWalkScene);
    fs::create_directory_symlink(scratch.Path(), scratch.Path() / "x" / "y" / "up");
    EXPECT_EQ(Walk("*.qsa", "/s"), "'a.qsa' converted\n'b.qsa' converted\n'c.qsa' converted\n");
}

TEST(ProcessDirectory, LinkToAnotherDirectoryIsEntered)
{
    const ScratchDirectory scratch;
    scratch.Write("elsewhere/b.qsa", kWalkScene);
    scratch.Write("here/a.qsa", kWalkScene);
    fs::create_directory_symlink(scratch.Path() / "elsewhere", scratch.Path() / "here" / "link");
    EXPECT_EQ(Walk("here/*.qsa", "/s"), "'a.qsa' converted\n'b.qsa' converted\n");
}

TEST(ProcessDirectory, DirectoryThatCannotBeEnteredIsLeftOut)
{
    const ScratchDirectory scratch;
    scratch.Write("a.qsa", kWalkScene);
    scratch.Write("locked/b.qsa", kWalkScene);
    scratch.Write("open/c.qsa", kWalkScene);
    fs::permissions("locked", fs::perms::none);
    // An administrator enters every directory, whatever its permissions say.
    const bool isAdministrator = geteuid() == 0;
    EXPECT_EQ(Walk("*.qsa", "/s"), isAdministrator ? "'a.qsa' converted\n'b.qsa' converted\n"
                                                     "'c.qsa' converted\n"
                                                   : "'a.qsa' converted\n'c.qsa' converted\n");
    fs::permissions("locked", fs::perms::all);
}

TEST(ProcessDirectory, DirectoryRemovedBeforeTheRunIsAnEmptyRun)
{
    const ScratchDirectory scratch;
    fs::create_directory("gone");
    fs::current_path("gone");
    fs::remove(scratch.Path() / "gone");
    EXPECT_EQ(Walk("*.qsa", "/s"), "");
    fs::current_path(scratch.Path());
}

TEST(ProcessDirectory, TreeDeeperThanAPathMayBeIsWalked)
{
    // 60 levels of 100 characters: a path of 6,000 bytes, which no single call accepts.
    const ScratchDirectory scratch;
    const std::string level(100, 'd');
    std::string expected;
    std::string onTheWayBack;
    for (int depth = 0; depth < 60; ++depth) {
        std::FILE* file = std::fopen("n.qsa", "wb");
        ASSERT_NE(file, nullptr);
        std::fputs(kWalkScene, file);
        std::fclose(file);
        expected += "'n.qsa' converted\n";
        ASSERT_TRUE(fs::create_directory("z"));
        file = std::fopen("z/back.qsa", "wb");
        ASSERT_NE(file, nullptr);
        std::fputs(kWalkScene, file);
        std::fclose(file);
        onTheWayBack += "'back.qsa' converted\n";
        ASSERT_TRUE(fs::create_directory(level));
        ASSERT_EQ(chdir(level.c_str()), 0);
    }
    fs::current_path(scratch.Path());
    EXPECT_EQ(Walk("*.qsa", "/s"), expected + onTheWayBack);
}
