#include "app/FileWalk.h"

#include "app/Options.h"
#include "tests/support/ScratchDirectory.h"

#include <cstdio>
#include <filesystem>
#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace {

/// The directories that a walk over `pattern` visits, as it reports them.
std::vector<std::string> VisitsOf(const char* pattern, int recurse)
{
    std::vector<std::string> visits;
    gRecurse = recurse;
    std::snprintf(gFilePattern, sizeof gFilePattern, "%s", pattern);
    EXPECT_TRUE(WalkFilePattern([&](const char* directory, const char* below) {
        visits.push_back(std::string(directory) + "|" + below);
    }));
    return visits;
}

} // namespace

TEST(FileWalk, ReportsItsDirectory)
{
    const ScratchDirectory scratch;
    for (const char* directory : {"deck/bow/locker", "deck/bow/rail", "deck/stern", "hold"})
        std::filesystem::create_directories(directory);
    using testing::ElementsAre;
    EXPECT_THAT(VisitsOf("*.qsa", 0), ElementsAre("|"));
    EXPECT_THAT(VisitsOf("deck\\*.qsa", 0), ElementsAre("deck\\|"));
    EXPECT_THAT(VisitsOf("deck/*.qsa", 1), ElementsAre("deck/|", "deck/|bow/", "deck/|bow/locker/",
                                                       "deck/|bow/rail/", "deck/|stern/"));
    EXPECT_THAT(VisitsOf("deck/../hold/*.qsa", 1), ElementsAre("deck/../hold/|"));
    EXPECT_THAT(VisitsOf("nowhere/*.qsa", 1), ElementsAre());
    EXPECT_EQ(std::filesystem::current_path(), scratch.Path());
}

TEST(PatternDirectory, RootsKeepTheirSeparator)
{
    static const struct {
        const char* pattern;
        const char* expected;
    } cases[] = {
        {"boat.qsa", ""},          {"", ""},
        {"deck/boat.qsa", "deck"}, {"deck\\bow/*.qsa", "deck\\bow"},
        {"/boat.qsa", "/"},        {"\\boat.qsa", "\\"},
        {"C:\\boat.qsa", "C:\\"},  {"c:/*.qsa", "c:/"},
        {"C:boat.qsa", ""},        {"C:\\deck\\boat.qsa", "C:\\deck"},
        {"deck/", "deck"},
    };
    for (const auto& c : cases)
        EXPECT_STREQ(PatternDirectory(c.pattern).c_str(), c.expected) << c.pattern;
}

TEST(FileWalk, SkipsHiddenAndSystemEntries)
{
    static const struct {
        DWORD attributes;
        bool isFile, isDirectory;
    } cases[] = {
        {FILE_ATTRIBUTE_ARCHIVE, true, false},
        {FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_READONLY, true, false},
        {FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_HIDDEN, false, false},
        {FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_SYSTEM, false, false},
        {FILE_ATTRIBUTE_DIRECTORY, false, true},
        {FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY, false, true},
        {FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN, false, false},
        {FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_SYSTEM, false, false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(IsFileOfWalk(c.attributes), c.isFile) << c.attributes;
        EXPECT_EQ(IsDirectoryOfWalk(c.attributes), c.isDirectory) << c.attributes;
    }
}
