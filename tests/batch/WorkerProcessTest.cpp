// What the supervisor does about a worker that was ended.

#include <csignal>
#include <filesystem>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "batch/Descriptor.h"
#include "batch/WorkerProcess.h"
#include "platform/headless/win32/TemporaryName.h"
#include "tests/batch/BackgroundBatch.h"
#include "tests/batch/BatchTesting.h"

using namespace batch_testing;
namespace fs = std::filesystem;

namespace {

class WorkerProcessTest : public BatchTest {};

} // namespace

// The file of the worker goes at once, although something still holds its lock, as a share's server may.
// Files of a process with the same id on another machine, or of an earlier start, are those of others.
TEST_F(WorkerProcessTest, FilesOfAKilledWorkerAreRemovedAndNoOthers)
{
    scratch.Write("in/a.qsa", WallScene("pipe.tga"));
    ASSERT_EQ(mkfifo("in/pipe.tga", 0600), 0);
    fs::create_directory("o");
    BackgroundBatch run({"in", "--out", "o", "--timeout", "0"});
    const pid_t worker = run.AwaitWorker();
    ASSERT_GT(worker, 0);
    const headless::TemporaryOwner self = headless::TemporaryOwner::ThisProcess();
    const auto nameOf = [&](const std::string& host, const std::string& boot, pid_t process) {
        return ".qsa2qsb-" + host + "-" + boot + "-" + std::to_string(process) + "-0.tmp";
    };
    const std::string its = nameOf(self.host, self.boot, worker);
    const std::string elsewhere = nameOf(self.host + "x", self.boot, worker);
    const std::string earlier = nameOf(self.host, "0" + self.boot, worker);
    const std::string another = nameOf(self.host, self.boot, getpid());
    for (const std::string& name : {its, elsewhere, earlier, another})
        scratch.Write("o/" + name, "");
    const Descriptor held(open(("o/" + its).c_str(), O_RDWR | O_CLOEXEC));
    ASSERT_EQ(flock(held.Get(), LOCK_EX), 0);
    fs::remove("in/pipe.tga"); // the second try does not wait
    kill(worker, SIGKILL);
    EXPECT_EQ(run.Wait().status, 0);
    EXPECT_FALSE(scratch.Has("o/" + its));
    EXPECT_TRUE(scratch.Has("o/" + elsewhere));
    EXPECT_TRUE(scratch.Has("o/" + earlier));
    EXPECT_TRUE(scratch.Has("o/" + another));
}

TEST_F(WorkerProcessTest, LitterGoesFromTheDirectoriesOfAllJobsThatTheWorkerMayHaveBegun)
{
    const std::vector<std::string> directories = {"", "1/", "2/", "3/", "4/"};
    const auto nameOf = [](pid_t process) {
        return headless::TemporaryNameStart() + std::to_string(process) + "-3.tmp";
    };
    std::string its;
    {
        WorkerProcess worker({}, -1);
        kill(worker.Id(), SIGKILL); // before the program of the tests begins
        its = nameOf(worker.Id());
        for (const std::string& directory : directories)
            scratch.Write(directory + its, "");
        scratch.Write("2/" + nameOf(getpid()), "");
        NumberedJob job;
        job.job.target = "1/a.qsb";
        worker.Start(job, 0);
        job.job.target = "2/b.qsb";
        job.job.frame = "3/b.png";
        worker.StartNext(job);
        job.job.target = "c.qsb";
        job.job.frame = "";
        worker.StartNext(job);
    }
    std::string left;
    for (const std::string& directory : directories)
        left += scratch.Has(directory + its) ? "in '" + directory + "'" : "";
    EXPECT_EQ(left, "in '4/'");
    EXPECT_TRUE(scratch.Has("2/" + nameOf(getpid())));
}
