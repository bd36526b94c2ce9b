#include "base/Log.h"
#include "platform/headless/win32/SimulateFileIndex.h"
#include "tests/app/ScratchEngine.h"
#include "tests/app/ScratchWalk.h"
#include "tests/support/ScratchDirectory.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <string>
#include <unistd.h>
#include <windows.h>

using namespace headless;

namespace fs = std::filesystem;

namespace {

constexpr char kMoverClass[] = "QSA2QSB_MOVER";

fs::path gMovedFrom;
std::string gWarnings;

/// Stands for another process that moves directories between two files: neither the path of `top/a`
/// nor one step up from `b` leads back.
LRESULT CALLBACK MoveDirectories(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_USER) {
        fs::rename(gMovedFrom / "top" / "a" / "b", gMovedFrom / "b");
        fs::rename(gMovedFrom / "top", gMovedFrom / "moved");
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

HWND CreateWindowThatMoves()
{
    WNDCLASSEXA windowClass = {};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = MoveDirectories;
    windowClass.lpszClassName = kMoverClass;
    RegisterClassExA(&windowClass);
    return CreateWindowExA(0, kMoverClass, "mover", WS_POPUP, 0, 0, 8, 8, nullptr, nullptr, nullptr,
                           nullptr);
}

} // namespace

TEST(WalkLimits, LinkBackUpIsNotEntered)
{
    const ScratchDirectory scratch;
    scratch.Write("a.qsa", kWalkScene);
    scratch.Write("x/b.qsa", kWalkScene);
    scratch.Write("x/y/c.qsa", kWalkScene);
    fs::create_directory_symlink(scratch.Path(), scratch.Path() / "x" / "y" / "up");
    EXPECT_EQ(Walk("*.qsa", "/s"), "'a.qsa' converted\n'b.qsa' converted\n'c.qsa' converted\n");
}

TEST(WalkLimits, LinkBackUpIsNotEnteredIfFilesHaveNoIndex)
{
    for (const uint64_t index : {uint64_t{0}, ~uint64_t{0}}) {
        const ScratchDirectory scratch;
        scratch.Write("a.qsa", kWalkScene);
        scratch.Write("x/b.qsa", kWalkScene);
        scratch.Write("x/y/c.qsa", kWalkScene);
        scratch.Write("z/d.qsa", kWalkScene);
        fs::create_directory_symlink(scratch.Path(), scratch.Path() / "x" / "y" / "up");
        SimulateFileIndex(index);
        EXPECT_EQ(Walk("*.qsa", "/s"), "'a.qsa' converted\n'b.qsa' converted\n"
                                       "'c.qsa' converted\n'd.qsa' converted\n")
            << index;
        SimulateFileIndex(std::nullopt);
    }
}

TEST(WalkLimits, LinkToAnotherDirectoryIsEnteredAndLeftByItsOwnWay)
{
    const ScratchDirectory scratch;
    scratch.Write("elsewhere/b.qsa", kWalkScene);
    scratch.Write("here/a.qsa", kWalkScene);
    scratch.Write("here/z/c.qsa", kWalkScene);
    scratch.Write("z/beside_elsewhere.qsa", kWalkScene); // one step up from where the link leads
    fs::create_directory_symlink(scratch.Path() / "elsewhere", scratch.Path() / "here" / "link");
    EXPECT_EQ(Walk("here/*.qsa", "/s"),
              "'a.qsa' converted\n'b.qsa' converted\n'c.qsa' converted\n");
    EXPECT_TRUE(scratch.Has("elsewhere/b.qsb"));
    EXPECT_EQ(fs::current_path(), scratch.Path());
}

TEST(WalkLimits, WayBackThatIsGoneEndsTheWalkWithAWarning)
{
    const ScratchDirectory scratch;
    scratch.Write("top/a/b/first.qsa", kWalkScene);
    scratch.Write("top/c/never.qsa", kWalkScene);
    fs::current_path("top");
    const ScratchEngine engine("/s");
    const HWND mover = CreateWindowThatMoves();
    PostMessageA(mover, WM_USER, 0, 0);
    gMovedFrom = scratch.Path();
    gWarnings.clear();
    gLogSink = [](const char* entry) { gWarnings += entry; };
    // The names below the directory that one step up now leads to are not part of the walk.
    EXPECT_EQ(WalkOn("*.qsa"), "'first.qsa' converted\n");
    gLogSink = nullptr;
    EXPECT_THAT(gWarnings, testing::HasSubstr(
                               "A directory was moved or removed: the search for '*.qsa' ended"));
    DestroyWindow(mover);
    UnregisterClassA(kMoverClass, nullptr);
}

namespace {

/// Removes administrator rights from this process while it lives: an administrator enters every
/// directory, whatever its permissions. Other users keep their rights.
class OrdinaryUser {
public:
    explicit OrdinaryUser(const fs::path& directory)
    {
        if (before != 0)
            return;
        EXPECT_EQ(chown(directory.c_str(), kNobody, static_cast<gid_t>(-1)), 0);
        for (const auto& entry : fs::recursive_directory_iterator(directory))
            EXPECT_EQ(chown(entry.path().c_str(), kNobody, static_cast<gid_t>(-1)), 0);
        EXPECT_EQ(seteuid(kNobody), 0);
    }
    ~OrdinaryUser() { EXPECT_EQ(seteuid(before), 0); }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

private:
    static constexpr uid_t kNobody = 65534;

    const uid_t before = geteuid();
};

} // namespace

TEST(WalkLimits, DirectoryThatCannotBeEnteredIsSkipped)
{
    const ScratchDirectory scratch;
    scratch.Write("a.qsa", kWalkScene);
    scratch.Write("locked/b.qsa", kWalkScene);
    scratch.Write("open/c.qsa", kWalkScene);
    {
        const OrdinaryUser user(scratch.Path());
        fs::permissions("locked", fs::perms::none);
        EXPECT_EQ(Walk("*.qsa", "/s"), "'a.qsa' converted\n'c.qsa' converted\n");
        fs::permissions("locked", fs::perms::all);
    }
    EXPECT_FALSE(scratch.Has("locked/b.qsb"));
    EXPECT_TRUE(scratch.Has("open/c.qsb"));
}

TEST(WalkLimits, DirectoryRemovedBeforeTheRunIsAnEmptyRun)
{
    const ScratchDirectory scratch;
    fs::create_directory("gone");
    fs::current_path("gone");
    fs::remove(scratch.Path() / "gone");
    EXPECT_EQ(Walk("*.qsa", "/s"), "");
    fs::current_path(scratch.Path());
}

TEST(WalkLimits, TreeDeeperThanAPathMayBeIsWalked)
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
