// The lives of workers: how many there are, when they end, and what happens if something ends them early.

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <random>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "batch/StateDatabase.h"
#include "tests/batch/BackgroundBatch.h"
#include "tests/batch/BatchTesting.h"

using namespace batch_testing;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;
namespace fs = std::filesystem;

namespace {

class WorkerTest : public BatchTest {
protected:
    /// Scenes whose picture is one pipe that nobody writes to.
    void WriteWaitingScenes(int count) const
    {
        for (int i = 0; i < count; ++i)
            scratch.Write("in/" + std::to_string(i) + ".qsa", WallScene("pipe.tga"));
        ASSERT_EQ(mkfifo("in/pipe.tga", 0600), 0);
    }
    /// The file of the default paths becomes a pipe: workers wait for it before their engines run. The
    /// supervisor, which reads it before, is given nothing.
    void LetWorkersWaitAtTheirStart(BackgroundBatch& run) const
    {
        ASSERT_TRUE(Eventually([&] {
            // Asleep without a worker, the supervisor waits for the pipe, and starts none until it is let go.
            const bool isAsleep = run.IsAsleep();
            if (!run.Workers().empty())
                return true;
            if (!isAsleep)
                return false;
            const int pipe = open(kPathsFile, O_WRONLY | O_NONBLOCK);
            if (pipe >= 0)
                close(pipe);
            return false;
        }));
    }
    void MakePathsPipe() const
    {
        fs::create_directories(fs::path(kPathsFile).parent_path());
        ASSERT_EQ(mkfifo(kPathsFile, 0600), 0);
    }
    static constexpr const char* kPathsFile = ".config/Fenwhistle/QSAView.conf";
};

} // namespace

TEST_F(WorkerTest, SoManyScenesAreInHandAtATime)
{
    WriteWaitingScenes(5);
    BackgroundBatch run({"in", "-j", "3"});
    EXPECT_TRUE(Eventually([&] { return run.Workers().size() == 3; }));
    SleepFor(200); // a fourth one would come now
    EXPECT_EQ(run.Workers().size(), 3u);
}

// What took down its worker may take down others that work at the same time.
TEST_F(WorkerTest, SecondTriesAreAlone)
{
    WriteWaitingScenes(2);
    BackgroundBatch run({"in", "-j", "2", "--timeout", "0"});
    ASSERT_TRUE(Eventually([&] { return run.WaitingWorkers().size() == 2; }));
    const std::vector<pid_t> first = run.WaitingWorkers();
    kill(first[0], SIGKILL);
    ASSERT_TRUE(Eventually([&] { return run.Workers().size() == 1; }));
    SleepFor(200); // the second try would come now
    EXPECT_THAT(run.Workers(), ElementsAre(first[1]));
    kill(first[1], SIGKILL);
    const auto isNew = [&](pid_t worker) {
        return std::find(first.begin(), first.end(), worker) == first.end();
    };
    ASSERT_TRUE(Eventually([&] {
        const std::vector<pid_t> now = run.Workers();
        return now.size() == 1 && isNew(now.front());
    }));
    SleepFor(200); // the other one would come now
    EXPECT_EQ(run.Workers().size(), 1u);
}

TEST_F(WorkerTest, WorkerThatIsKilledAsItStartsCostsNothing)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    MakePathsPipe();
    BackgroundBatch run({"in"});
    LetWorkersWaitAtTheirStart(run);
    const std::vector<pid_t> first = run.Workers();
    ASSERT_EQ(first.size(), 1u);
    fs::remove(kPathsFile); // the next one reads nothing
    kill(first.front(), SIGKILL);
    const ProgramRun ended = run.Wait();
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_THAT(ended.out, StartsWith("1 converted, "));
}

TEST_F(WorkerTest, WorkersThatDoNotStartEndTheRun)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    MakePathsPipe();
    BackgroundBatch run({"in"});
    LetWorkersWaitAtTheirStart(run);
    pid_t last = 0;
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(Eventually([&] {
            const std::vector<pid_t> now = run.Workers();
            return run.HasEnded() || (now.size() == 1 && now.front() != last);
        }));
        ASSERT_FALSE(run.HasEnded()) << i;
        last = run.Workers().front();
        kill(last, SIGKILL);
    }
    const ProgramRun ended = run.Wait();
    EXPECT_EQ(ended.status, 2);
    EXPECT_THAT(
        ended.err,
        HasSubstr("qsbatch: a worker cannot start for 'in/a.qsa': the worker crashed: Killed"));
}

// The start of a worker does not count for the time limit of its scene; nor does the supervisor run hot until
// the worker has started.
TEST_F(WorkerTest, SupervisorSleepsWhileAWorkerStarts)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    MakePathsPipe();
    BackgroundBatch run({"in", "--timeout", "0.1"});
    LetWorkersWaitAtTheirStart(run);
    SleepFor(200); // beyond the limit
    const double before = run.ProcessorSeconds();
    SleepFor(1500);
    EXPECT_LT(run.ProcessorSeconds() - before, 0.5);
    EXPECT_FALSE(run.HasEnded());
}

// Whatever is killed whenever, a run to the end has the same files and leaves nothing else.
TEST_F(WorkerTest, WorkersMayBeKilledAtAnyMoment)
{
    constexpr int kScenes = 60;
    for (int i = 0; i < kScenes; ++i)
        scratch.Write("in/s" + std::to_string(i) + ".qsa", WallScene(i % 3 ? "" : "gone.tga", i));
    EXPECT_EQ(Batch({"in", "--out", "whole"}).status, 0);
    std::mt19937 random(5);
    BackgroundBatch run({"in", "--out", "o", "-j", "2"});
    for (int i = 0; i < 30 && !run.HasEnded(); ++i) {
        SleepFor(static_cast<int>(random() % 20));
        const std::vector<pid_t> workers = run.Workers();
        if (!workers.empty())
            kill(workers[random() % workers.size()], random() % 2 ? SIGKILL : SIGSEGV);
    }
    run.Wait(); // a scene that was killed twice has failed
    const ProgramRun last = Batch({"in", "--out", "o"});
    EXPECT_EQ(last.status, 0) << last.err;
    EXPECT_EQ(FilesBelow("o"), FilesBelow("whole"));
    for (const std::string& file : FilesBelow("whole")) {
        if (file != ".qsbatch-state") {
            EXPECT_TRUE(scratch.Read("whole/" + file) == scratch.Read("o/" + file)) << file;
        }
    }
}

// A worker of a run that was killed may be in the middle of a target. Here the lock that workers hold stays in
// another process.
TEST_F(WorkerTest, NextRunWaitsForTheWorkersOfAKilledOne)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    fs::create_directory("o");
    int held = -1;
    {
        const StateDatabase state("o/.qsbatch-state");
        held = fcntl(state.LockHandle(), F_DUPFD_CLOEXEC, 0);
    }
    BackgroundBatch run({"in", "--out", "o"});
    SleepFor(300); // it would convert now
    EXPECT_FALSE(scratch.Has("o/a.qsb"));
    close(held);
    EXPECT_EQ(run.Wait().status, 0);
    EXPECT_TRUE(scratch.Has("o/a.qsb"));
}

// The numbers of closed streams must not go to files of the run.
TEST_F(WorkerTest, StandardStreamsMayBeClosed)
{
    scratch.Write("in/a.qsa", WallScene("gone.tga"));
    const std::string program = BuildPath("qsbatch");
    const ProgramRun none = RunProgramFile(
        "/bin/bash", {"-c", "'" + program + "' in --out o -j 2 <&- >&- 2>&-; echo $?"});
    EXPECT_EQ(none.out, "2\n"); // what it has to say cannot be written
    EXPECT_TRUE(scratch.Read("o/a.qsb") == ConvertedAlone("in", "a.qsa"));
    const ProgramRun output =
        RunProgramFile("/bin/bash", {"-c", "'" + program + "' in --out o --force >&-; echo $?"});
    EXPECT_EQ(output.out, "2\n");
    EXPECT_THAT(output.err, HasSubstr("qsbatch: the output could not be written\n"));
    const ProgramRun again = Batch({"in", "--out", "o"});
    EXPECT_THAT(again.out, StartsWith("0 converted, 1 up to date, ")) << again.err;
    const ProgramRun errors = RunProgramFile(
        "/bin/bash", {"-c", "'" + program + "' in --out o --force 2>&- <&-; echo $?"});
    EXPECT_THAT(errors.out, testing::EndsWith("\n0\n"));
}

TEST_F(WorkerTest, PipeThatNobodyReadsDoesNotStopTheRun)
{
    for (int i = 0; i < 20; ++i)
        scratch.Write("in/" + std::to_string(i) + ".qsa", WallScene("gone.tga"));
    const ProgramRun run =
        RunProgramFile("/bin/bash", {"-c", "'" + BuildPath("qsbatch") +
                                               "' in -v 2>&1 | exec 0<&-; echo ${PIPESTATUS[0]}"});
    EXPECT_EQ(run.out, "2\n");
    EXPECT_EQ(FilesBelow("in").size(), 40u);
}
