// Results that outlast a loss of power. tools/power-loss replays such losses; here is what else a durable run does.

#include <cerrno>
#include <filesystem>

#include "platform/headless/win32/SyncedFiles.h"
#include "tests/batch/BatchTesting.h"

using namespace batch_testing;
using testing::StartsWith;

namespace {

class DurableTest : public BatchTest {};

} // namespace

TEST_F(DurableTest, FilesAreThoseOfOtherRuns)
{
    scratch.Write("in/a.qsa", WallScene("p.tga"));
    scratch.Write("in/p.tga", ColorPicture(0x20FF10));
    scratch.Write("in/below/deep/b.qsa", HelperScene("b"));
    const std::vector<std::string> plain = {"in", "--out", "plain/o", "--frames", "plain/f"};
    EXPECT_EQ(Batch(plain).status, 0);
    const ProgramRun run = Batch({"in", "--out", "new/o", "--frames", "new/f", "--journal", "j",
                                  "--report", "r.html", "--durable"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_THAT(run.out, StartsWith("2 converted, 0 up to date, 0 failed, 0 with warnings"));
    EXPECT_EQ(FilesBelow("new"), FilesBelow("plain"));
    for (const std::string& file : FilesBelow("plain")) {
        if (!file.ends_with("-state")) {
            EXPECT_TRUE(scratch.Read("new/" + file) == scratch.Read("plain/" + file)) << file;
        }
    }
    EXPECT_THAT(Batch({"in", "--out", "new/o", "--frames", "new/f", "--durable"}).out,
                StartsWith("0 converted, 2 up to date"));
}

// Whether results last makes no difference to what they are.
TEST_F(DurableTest, ResultsOfOtherRunsAreUpToDate)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    EXPECT_EQ(Batch({"in", "--out", "o"}).status, 0);
    EXPECT_THAT(Batch({"in", "--out", "o", "--durable"}).out,
                StartsWith("0 converted, 1 up to date"));
}

TEST_F(DurableTest, JournalMayBeADevice)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    const ProgramRun run = Batch({"in", "--out", "o", "--journal", "/dev/null", "--durable"});
    EXPECT_EQ(run.status, 0) << run.err;
}

TEST_F(DurableTest, DirectoriesThatAreNotThereAreAFailure)
{
    std::filesystem::create_directories("a/b");
    EXPECT_TRUE(headless::SyncDirectory("a/b"));
    EXPECT_TRUE(headless::SyncDirectory(""));
    EXPECT_TRUE(headless::SyncNamesAbove("a/b"));
    EXPECT_FALSE(headless::SyncDirectory("gone"));
    EXPECT_EQ(errno, ENOENT);
    EXPECT_FALSE(headless::SyncNamesAbove("gone"));
    EXPECT_EQ(errno, ENOENT);
}
