// Calls of the system that fail: what is told, and that the rest is as it was.

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <utility>

#include <fcntl.h>
#include <linux/seccomp.h>
#include <sqlite3.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "batch/BatchJournal.h"
#include "batch/CallFilter.h"
#include "batch/Confinement.h"
#include "batch/ContentHash.h"
#include "batch/JobTicket.h"
#include "batch/LandlockRules.h"
#include "batch/MessageTable.h"
#include "batch/PeakMemory.h"
#include "batch/RootPath.h"
#include "batch/SceneConverter.h"
#include "batch/SceneList.h"
#include "batch/StateDatabase.h"
#include "batch/SteadyCalls.h"
#include "batch/Wire.h"
#include "batch/Worker.h"
#include "batch/WorkerProcess.h"
#include "batch/WorkingDirectory.h"
#include "platform/headless/win32/SyncedFiles.h"
#include "tests/batch/BackgroundBatch.h"
#include "tests/batch/FailingRuns.h"
#include "tests/batch/FarmTesting.h"

// The numbers and arguments of calls are those of one processor's C library.
#if defined(__x86_64__)

using namespace batch_testing;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
namespace fs = std::filesystem;

namespace {

constexpr long kCreateRules = 444; // calls of Landlock
constexpr long kAddRule = 445;
constexpr long kRestrictSelf = 446;

constexpr uint32_t kAnswerNumber = 128; // a bit of the number of what a child says
constexpr uint32_t kEmptyPath = AT_EMPTY_PATH;
/// The C library's fstat.
constexpr FailingCall kFstat = {SYS_newfstatat, EIO, 3, kEmptyPath};
/// Directories cannot be opened.
constexpr FailingCall kOpenDirectory = {SYS_openat, EACCES, 2, O_DIRECTORY, O_DIRECTORY};

class FailingCallsTest : public FarmTest {
protected:
    void SetUp() override
    {
        FarmTest::SetUp();
        scratch.Write("file", "content");
    }
    /// The error of a call that gives true or false.
    template <typename Call>
    static std::string ErrorOf(const std::vector<FailingCall>& calls, const Call& call)
    {
        return SaidWith(calls, [&] {
            errno = 0;
            return call() ? std::string("well") : std::string(std::strerror(errno));
        });
    }
    static std::string StateErrorOf(const std::vector<FailingCall>& calls)
    {
        return SaidWith(calls, [] {
            try {
                const StateDatabase state("s");
            } catch (const StateError& error) {
                return error.text;
            }
            return std::string("well");
        });
    }
};

} // namespace

TEST_F(FailingCallsTest, FilesAndDirectoriesNameTheirErrors)
{
    const auto stamps = [] {
        FileStamp stamp;
        return StampOfFile(AT_FDCWD, "file", stamp);
    };
    const auto makes = [] { return MakeDirectory(AT_FDCWD, "a/b").IsOpen(); };
    const auto reads = [] {
        char byte = 0;
        const Descriptor file = OpenAt(AT_FDCWD, "file", O_RDONLY);
        return ReadAt(file.Get(), &byte, 1, 0) >= 0;
    };
    const auto opensRoot = [] {
        RootPath root;
        return root.Open(".");
    };
    const auto entersRoot = [] {
        RootPath root;
        return root.Open(".") && root.Enter();
    };
    EXPECT_EQ(ErrorOf({kFstat}, stamps), "Input/output error");
    EXPECT_EQ(ErrorOf({{SYS_pread64, EIO}}, stamps), "Input/output error");
    EXPECT_EQ(ErrorOf({{SYS_pread64, EIO}}, reads), "Input/output error");
    EXPECT_EQ(ErrorOf({{SYS_mkdirat, EROFS}}, makes), "Read-only file system");
    EXPECT_EQ(ErrorOf({{SYS_getcwd, EACCES}}, opensRoot), "Permission denied");
    EXPECT_EQ(ErrorOf({{SYS_chdir, EACCES}}, entersRoot), "Permission denied");
    EXPECT_FALSE(scratch.Has("a"));
}

TEST_F(FailingCallsTest, DirectoriesThatCannotBeReadAreNamed)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    scratch.Write("list", "in/a.qsa\n");
    const auto collects = [](const char* list) {
        BatchOptions options;
        options.includes = {"*.qsa"};
        if (*list)
            options.listFile = list;
        else
            options.paths = {"in"};
        SceneList scenes;
        const bool isRead = scenes.Collect(options);
        std::string said = isRead ? "" : scenes.error;
        for (const UnreadDirectory& directory : scenes.Unread())
            said += directory.path + ": " + std::strerror(directory.errorNumber);
        return said + " " + std::to_string(scenes.Entries().size());
    };
    const auto walks = [&] { return collects(""); };
    EXPECT_EQ(SaidWith({}, walks), " 1");
    EXPECT_EQ(SaidWith({kOpenDirectory}, walks), "in: Permission denied 0");
    EXPECT_EQ(SaidWith({{SYS_getdents64, EIO}}, walks), "in: Input/output error 0");
    EXPECT_EQ(SaidWith({{SYS_read, EIO}}, [&] { return collects("list"); }),
              "the list 'list' cannot be read: Input/output error; name another one with "
              "--from-file 0");

    const ProgramRun run = BatchWith({{SYS_getdents64, EIO}}, {"in", "in/a.qsa"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, StartsWith("in: error Q914: "));
    EXPECT_THAT(run.err, HasSubstr("Input/output error"));
    EXPECT_THAT(run.out, StartsWith("1 converted, "));
}

TEST_F(FailingCallsTest, MemoryIsMeasuredInAnotherWayWithoutItsFiles)
{
    const auto peak = [] {
        ResetPeakMemory();
        return PeakMemoryKiB() > 100 ? std::string("some") : std::string("none");
    };
    EXPECT_EQ(SaidWith({{SYS_openat, EACCES}}, peak), "some");
    EXPECT_EQ(SaidWith({{SYS_pread64, EIO}}, peak), "some");
    EXPECT_EQ(SaidWith({{SYS_pwrite64, EIO}}, peak), "some");
    EXPECT_EQ(
        SaidWith({{SYS_openat, EACCES}}, [] { return std::to_string(MemoryOfProcess(getpid())); }),
        "0");
}

TEST_F(FailingCallsTest, LimitsThatAreNotTakenAreTold)
{
    ConfinementRules rules;
    rules.mostFileBytes = 1000;
    rules.processorSeconds = 60;
    for (const int limit : {RLIMIT_FSIZE, RLIMIT_CPU, RLIMIT_NOFILE, RLIMIT_CORE})
        EXPECT_EQ(SaidWith({{SYS_prlimit64, EPERM, 1, static_cast<uint32_t>(limit)}},
                           [&] { return Confine(rules); }),
                  "limits: Operation not permitted")
            << limit;
    const auto missing = [] { return MissingConfinement(); };
    EXPECT_THAT(SaidWith({{kCreateRules, ENOSYS}, {SYS_seccomp, ENOSYS}}, missing),
                StartsWith("Landlock, which this kernel lacks, and the filter of system calls, "
                           "which this "));
    EXPECT_THAT(SaidWith({{SYS_seccomp, ENOSYS}}, missing),
                StartsWith("the filter of system calls, which this "));
}

TEST_F(FailingCallsTest, PartsOfLandlockThatFailAreTold)
{
    if (LandlockVersion() == 0)
        GTEST_SKIP() << "the kernel has no Landlock";
    const std::string here = fs::current_path();
    fs::create_directory("out");
    const auto limits = [&] { return LimitFiles({here}, {here + "/out"}, 1); };
    EXPECT_EQ(SaidWith({{kCreateRules, EPERM}}, limits), "rules: Operation not permitted");
    EXPECT_EQ(SaidWith({{kAddRule, EPERM}}, limits), here + ": Operation not permitted");
    EXPECT_EQ(SaidWith({{SYS_prctl, EPERM, 0, PR_SET_NO_NEW_PRIVS}}, limits),
              "Landlock: Operation not permitted");
    EXPECT_EQ(SaidWith({{kRestrictSelf, EPERM}}, limits), "Landlock: Operation not permitted");
    EXPECT_EQ(SaidWith({}, limits), "");
    const auto withoutTarget = [&] { return LimitFiles({here + "/gone"}, {here + "/gone"}, 1); };
    EXPECT_EQ(SaidWith({}, withoutTarget), here + "/gone: No such file or directory");
}

#if !defined(__SANITIZE_ADDRESS__) // sanitizers have no filter of system calls
TEST_F(FailingCallsTest, FilterThatIsNotTakenIsTold)
{
    const std::vector<FailingCall> none = {{SYS_seccomp, EPERM, 0, SECCOMP_SET_MODE_FILTER},
                                           {SYS_prctl, EPERM, 0, PR_SET_SECCOMP}};
    EXPECT_THAT(SaidWith(none, [] { return FilterCalls(-1); }),
                StartsWith("the filter of system calls: "));
}
#endif

TEST_F(FailingCallsTest, StatesThatCannotBeUsedAreToldWithACure)
{
    const std::string other = "; choose another place with --state";
    const std::string used = "; wait for it, or choose another one with --state";
    const FailingCall wakes = {SYS_clock_nanosleep, EINTR}; // a wait ends at once
    EXPECT_EQ(StateErrorOf({}), "well");
    EXPECT_EQ(StateErrorOf({kFstat}), "the state 's' cannot be opened: it is no file" + other);
    EXPECT_EQ(StateErrorOf({{SYS_openat, EACCES, 2, O_CREAT, O_CREAT}}),
              "the state 's' cannot be opened: Permission denied" + other);
    EXPECT_EQ(StateErrorOf({{SYS_openat, EACCES, 2, 0, O_CREAT}}),
              "the state 's' cannot be opened: unable to open database file" + other);
    EXPECT_EQ(StateErrorOf({{SYS_fcntl, EAGAIN, 1, F_SETLK}}),
              "the state 's' is in use by another run" + used)
        << "it has ended meanwhile";
    EXPECT_EQ(StateErrorOf({{SYS_fcntl, EAGAIN, 1, F_SETLK}, {SYS_fcntl, EINVAL, 1, F_GETLK}}),
              "the state 's' is in use by another run" + used);
    EXPECT_EQ(StateErrorOf({{SYS_flock, EWOULDBLOCK}, wakes}),
              "the state 's' is in use by another run: workers of one that was killed have not "
              "ended yet" +
                  used);
    EXPECT_EQ(StateErrorOf({{SYS_flock, ENOLCK}}), "well") << "there are no such locks";
    EXPECT_EQ(StateErrorOf({{SYS_statfs, EACCES}}), "well") << "it is on no network, then";
}

TEST_F(FailingCallsTest, StatesOfOthersAreNotTaken)
{
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open("s", &database), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(database, "CREATE TABLE other(a)", nullptr, nullptr, nullptr),
              SQLITE_OK);
    sqlite3_close(database);
    EXPECT_EQ(StateErrorOf({}), "the state 's' cannot be used: it is not a state of this program; "
                                "remove it, or choose another one with --state");
    fs::remove("s");
    const StateDatabase state("s");
    EXPECT_THROW(StateStatement(state.Handle(), "no statement"), StateError);
    StateStatement length(state.Handle(), "SELECT length(?1)");
    EXPECT_THROW(length.Put(2, 0), StateError) << "there is one place";
    length.PutBytes(1, {});
    ASSERT_TRUE(length.Step());
    EXPECT_EQ(length.Number(0), 0) << "empty, not nothing";
    length.Reset();
    length.Run();
}

// Where contents count, files that cannot be read are not the same.
TEST_F(FailingCallsTest, StatesTakeFilesThatCannotBeReadForChanged)
{
    scratch.Write("in/a.qsa", WallScene("p.tga"));
    scratch.Write("in/p.tga", ColorPicture(3));
    const auto touch = [](const char* path) {
        fs::last_write_time(path, fs::last_write_time(path) - std::chrono::hours(1));
    };
    touch("in/a.qsa"); // the content of a new file is looked at, whatever its time
    touch("in/p.tga");
    ASSERT_EQ(Batch({"in"}).status, 0);
    const auto plans = [](const FailingCall& call, const std::vector<std::string>& more) {
        std::vector<std::string> words = {"in", "--dry-run"};
        words.insert(words.end(), more.begin(), more.end());
        return CommandWith({call}, words).out;
    };
    const FailingCall openContent = {SYS_openat, EACCES, 2, O_NONBLOCK, O_NONBLOCK};
    const FailingCall access = {SYS_access, EACCES};
    EXPECT_EQ(plans({SYS_openat, EACCES, 2, UINT32_MAX}, {}), "1 up to date\n");
    EXPECT_EQ(plans(openContent, {"--rehash"}),
              "in/a.qsa: convert, the scene has changed\n0 up to date\n");
    EXPECT_THAT(plans(access, {}), StartsWith("in/a.qsa: convert, a file that it uses has changed, "
                                              "come or gone: "));
    touch("in/a.qsb");
    EXPECT_EQ(plans(openContent, {}),
              "in/a.qsa: convert, the target is gone or was changed\n0 up to date\n");
    touch("in/p.tga");
    EXPECT_THAT(plans(openContent, {}),
                StartsWith("in/a.qsa: convert, a file that it uses has changed, come or gone: "));
}

TEST_F(FailingCallsTest, JournalsKeepTheirFirstError)
{
    SceneJob job;
    SceneResult result;
    const auto writes = [&](bool isDurable) {
        BatchJournal journal;
        if (!journal.Open("j", isDurable))
            return false;
        journal.Add("a", job, result);
        return journal.Flush();
    };
    const auto kept = [&] { return writes(true); };
    EXPECT_EQ(ErrorOf({{SYS_write, ENOSPC, 0, 0, kAnswerNumber}}, kept), "No space left on device");
    EXPECT_EQ(ErrorOf({{SYS_fdatasync, EIO}}, kept), "Input/output error");
    EXPECT_EQ(ErrorOf({{SYS_fdatasync, EINVAL}}, kept), "well") << "a pipe cannot be waited for";
    EXPECT_EQ(ErrorOf({{SYS_fsync, EIO}}, kept), "Input/output error");
    EXPECT_EQ(ErrorOf({{SYS_fdatasync, EIO}, {SYS_fsync, EIO}}, [&] { return writes(false); }),
              "well");
}

TEST_F(FailingCallsTest, NamesAreOnTheDiskOrToldToBeMissing)
{
    fs::create_directories("a/b");
    const auto keeps = [] { return headless::SyncNamesAbove("a/b"); };
    EXPECT_EQ(ErrorOf({}, keeps), "well");
    EXPECT_EQ(ErrorOf({{SYS_fsync, EROFS}}, keeps), "well") << "nothing is new there";
    EXPECT_EQ(ErrorOf({{SYS_fsync, EIO}}, keeps), "Input/output error");
    EXPECT_EQ(ErrorOf({kOpenDirectory}, keeps), "Permission denied");
}

TEST_F(FailingCallsTest, InterruptedCallsAreMadeAgain)
{
    fs::create_directories("a/b");
    const auto keepsNames = [] {
        return std::string(headless::SyncNamesAbove("a/b") && headless::SyncDirectory("")
                               ? "well"
                               : std::strerror(errno));
    };
    for (const long call : {SYS_openat, SYS_fsync})
        EXPECT_EQ(SaidWithInterrupted(call, keepsNames), "well") << call;
    EXPECT_EQ(SaidWithInterrupted(SYS_write,
                                  [] {
                                      BatchJournal journal;
                                      journal.Open("j", false);
                                      journal.Add("a", {}, {});
                                      return std::string(journal.Flush() ? "well" : "not");
                                  }),
              "well");
    EXPECT_EQ(LinesOf(scratch.Read("j")).size(), 1u);
    EXPECT_EQ(SaidWithInterrupted(SYS_sendto,
                                  [] {
                                      int ends[2];
                                      socketpair(AF_UNIX, SOCK_STREAM, 0, ends);
                                      SendWire(ends[0], "first");
                                      WireAssembler arrived;
                                      std::string message;
                                      arrived.ReadFrom(ends[1]);
                                      arrived.Next(message);
                                      return message;
                                  }),
              "first");
    EXPECT_EQ(SaidWithInterrupted(SYS_wait4,
                                  [] {
                                      WorkerProcess worker({}, -1);
                                      kill(worker.Id(), SIGKILL);
                                      worker.Bury();
                                      return std::string(worker.WasKilled() ? "killed" : "alive");
                                  }),
              "killed");
}

TEST_F(FailingCallsTest, WorkersThatDoNotStartLeaveNothingOpen)
{
    const auto starts = [](int rounds) {
        const size_t before = OpenFileCount();
        std::string said;
        for (int i = 0; i < rounds; ++i) {
            WorkerProcess worker({}, -1);
            said = worker.IsRunning() ? "running" : std::strerror(errno);
        }
        return said + ", " + std::to_string(OpenFileCount() - before) + " more";
    };
    const auto twice = [&] { return starts(2); };
    EXPECT_EQ(SaidWith({{SYS_socketpair, EMFILE}}, twice), "Too many open files, 0 more");
    EXPECT_EQ(SaidWith({{SYS_clone, EAGAIN}}, twice), "Resource temporarily unavailable, 0 more");
    EXPECT_EQ(SaidWith({{SYS_execve, EACCES}, {SYS_sendto, EPIPE}}, twice), "running, 0 more");
}

TEST_F(FailingCallsTest, WorkersThatCannotBeWhatTheyAreTellTheirStatus)
{
    const auto ends = [] {
        WorkerProcess worker({}, -1);
        NumberedJob job;
        job.job.target = "o/a.qsb";
        worker.Start(job, 0);
        char byte = 0;
        if (recv(worker.Socket(), &byte, 1, 0) > 0)
            return std::string("something");
        const SceneResult result = worker.Bury();
        return std::string(StatusName(result.status)) + ": " +
               (worker.WasKilled() ? "killed" : result.messages.at(0).text);
    };
    const std::string said = SaidWith({{SYS_execve, EACCES}}, ends);
    EXPECT_EQ(said, "crashed: the worker crashed: status " + std::to_string(kWorkerNoEngine));
    EXPECT_EQ(SaidWith({{SYS_execve, EACCES}, {SYS_memfd_create, EMFILE}}, ends), said)
        << "without a file for what it says";
}

TEST_F(FailingCallsTest, WorkersThatAreGoneAreBuriedOnce)
{
    const auto buries = [] {
        WorkerProcess worker({}, -1);
        worker.Start({}, 0);
        const SceneResult result = worker.Bury();
        return result.messages.at(0).text + (worker.IsRunning() ? ", running" : "");
    };
    EXPECT_EQ(SaidWith({{SYS_execve, EACCES}, {SYS_wait4, ECHILD}}, buries),
              "the worker crashed: status 0");
}

TEST_F(FailingCallsTest, JobsAreHeldBackAndComeBackAfterTheEnd)
{
    const auto works = [] {
        WorkerProcess worker({}, -1);
        std::string said = worker.MayGetNext() ? "idle workers get jobs, " : "";
        said += worker.TakeUntried().empty() ? "" : "there are jobs, ";
        worker.takesNext = true;
        NumberedJob job;
        job.job.path.assign(kMostAheadBytes, 'p');
        worker.Start(job, 0);
        said += worker.MayGetNext() ? "one, " : "none, ";
        job.number = 1;
        worker.StartNext(job);
        said += worker.MayGetNext() ? "two, " : "as long as it is, ";
        worker.Kill(WorkerEnd::kTimeout); // for the first one
        worker.EndJob(0);                 // whose result had been sent
        const SceneResult result = worker.Bury();
        said += StatusName(result.status);
        for (const NumberedJob& untried : worker.TakeUntried())
            said += ", untried " + std::to_string(untried.number);
        return said;
    };
    EXPECT_EQ(SaidWith({{SYS_execve, EACCES}}, works),
              "one, as long as it is, timed-out, untried 1");
}

// The other end of a worker's socket, which takes what the supervisor would have sent.
TEST_F(FailingCallsTest, WorkersTakeOnlyWhatTheyKnow)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    SceneJob job;
    job.path = "in/a.qsa";
    job.target = "o/a.qsb";
    const auto works = [&](const WorkerSetup& setup, const std::vector<std::string>& messages) {
        return SaidWith({}, [&] {
            int ends[2];
            socketpair(AF_UNIX, SOCK_STREAM, 0, ends);
            const Descriptor errors = OpenAt(AT_FDCWD, "errors", O_RDWR | O_CREAT | O_TRUNC, 0600);
            dup2(errors.Get(), STDERR_FILENO);
            dprintf(STDERR_FILENO, "one thing\n\nanother");
            if (setup.memoryBytes != 1)
                SendWire(ends[0], EncodeSetup(setup));
            for (const std::string& message : messages)
                SendWire(ends[0], message);
            shutdown(ends[0], SHUT_WR);
            std::string said = std::to_string(RunWorker(ends[1]));
            close(ends[1]);
            WireAssembler arrived;
            std::string message;
            SceneResult result;
            while (arrived.Await(ends[0], message)) {
                said += DecodeResult(message, result) ? std::string(" ") + StatusName(result.status)
                                                      : " ready";
                for (const SceneMessage& told : std::exchange(result, {}).messages)
                    said += ", " + told.source + ": " + told.text;
            }
            return said;
        });
    };
    WorkerSetup setup;
    WorkerSetup none;
    none.memoryBytes = 1; // is not sent
    const std::string end = std::to_string(kWorkerNoEngine);
    EXPECT_EQ(works(none, {}), end);
    EXPECT_EQ(works(none, {"no setup"}), end);
    EXPECT_EQ(works(setup, {}), "0 ready");
    EXPECT_EQ(works(setup, {"no job"}), "0 ready");
    EXPECT_EQ(works(setup, {EncodeJob(job), EncodeJob(job)}),
              "0 ready converted, host: one thing, host: another converted");
    EXPECT_TRUE(scratch.Has("o/a.qsb"));
}

TEST_F(FailingCallsTest, WhatAWorkerSaysAtItsEndIsTold)
{
    scratch.Write("in/a.qsa", WallScene("pipe.tga"));
    ASSERT_EQ(mkfifo("in/pipe.tga", 0600), 0);
    BackgroundBatch run({"in", "--timeout", "0"});
    pid_t worker = 0;
    for (int i = 0; i < 2; ++i) {
        worker = run.AwaitWorker(worker);
        ASSERT_GT(worker, 0);
        const std::string place = "/proc/" + std::to_string(worker) + "/fd/2";
        const Descriptor errors = OpenAt(AT_FDCWD, place.c_str(), O_WRONLY | O_CLOEXEC);
        ASSERT_EQ(write(errors.Get(), "a last word\nand more", 20), 20);
        kill(worker, SIGKILL);
    }
    const ProgramRun ended = run.Wait();
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.out, HasSubstr("in/a.qsa: the worker crashed: Killed: a last word\n"));
}

TEST_F(FailingCallsTest, TicketsNeedTheirPage)
{
    const auto makes = [] {
        const size_t before = OpenFileCount();
        const int file = JobTicket::MakeFile();
        return std::to_string(file) + ", " + std::to_string(OpenFileCount() - before) + " more";
    };
    EXPECT_EQ(SaidWith({{SYS_memfd_create, EMFILE}}, makes), "-1, 0 more");
    EXPECT_EQ(SaidWith({{SYS_ftruncate, ENOSPC}}, makes), "-1, 0 more");
}

TEST_F(FailingCallsTest, InterruptedSocketsHaveNothingYet)
{
    int ends[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
    const auto reads = [&] {
        WireAssembler assembler;
        const WireAssembler::Arrival arrival = assembler.ReadFrom(ends[0]);
        return std::to_string(static_cast<int>(arrival));
    };
    const std::string nothing = std::to_string(static_cast<int>(WireAssembler::Arrival::kNothing));
    const std::string end = std::to_string(static_cast<int>(WireAssembler::Arrival::kEnd));
    EXPECT_EQ(SaidWith({{SYS_recvfrom, EINTR}}, reads), nothing);
    EXPECT_EQ(SaidWith({{SYS_recvfrom, ECONNRESET}}, reads), end);
    close(ends[0]);
    close(ends[1]);
}

// The conversion of one scene, without a worker around it.
TEST_F(FailingCallsTest, ScenesFailByTheCallThatFails)
{
    scratch.Write("in/a.qsa", WallScene("p.tga"));
    scratch.Write("in/p.tga", ColorPicture(3));
    scratch.Write("in/m.obj", "v 0 0 0\n");
    using Change = void (*)(WorkerSetup&, SceneJob&);
    constexpr Change kNone = [](WorkerSetup&, SceneJob&) {};
    constexpr Change kDurable = [](WorkerSetup& setup, SceneJob&) { setup.isDurable = true; };
    constexpr Change kDurableFrame = [](WorkerSetup& setup, SceneJob& job) {
        setup.isDurable = true;
        setup.checks = true;
        job.draws = true;
        job.writesTarget = false;
        job.frame = "f/a.png";
    };
    constexpr Change kStrictFrame = [](WorkerSetup& setup, SceneJob& job) {
        setup.isStrict = setup.isDurable = setup.isConfined = true;
        job.draws = true;
        job.frame = "f/a.png";
    };
    constexpr Change kImport = [](WorkerSetup& setup, SceneJob& job) {
        setup.imports = true;
        job.path = "in/m.obj";
    };
    const std::string directory = "Q908 the directory of the target cannot be made: ";
    const struct {
        const char* what;
        std::vector<FailingCall> calls;
        Change change;
        std::string said;
    } cases[] = {
        {"all goes well", {}, kNone, ""},
        {"all goes well, and is kept", {}, kDurable, ""},
        {"all goes well, and is drawn", {{SYS_fsync, EIO, 0, 128}}, kStrictFrame, ""},
        {"source", {{SYS_pread64, EIO}}, kNone, "Q904 cannot be opened: Input/output error"},
        {"target's directory", {{SYS_mkdirat, EROFS}}, kNone, directory + "Read-only file system"},
        {"target's directory on the disk",
         {{SYS_fsync, EIO}},
         kDurable,
         directory + "Input/output error"},
        {"name of the target",
         {{SYS_rename, EIO}},
         kNone,
         "Q111 a.qsb: Can not replace file: Input/output error"},
        {"frame's directory on the disk",
         {{SYS_fsync, EIO}},
         kDurableFrame,
         "Q909 the frame cannot be written: Input/output error"},
        {"directory of the imported scene",
         {{SYS_mkdirat, EROFS}},
         kImport,
         directory + "Read-only file system"},
        {"names of files", {{SYS_newfstatat, EIO, 3, 0}}, kNone, "Q903 "},
    };
    for (const auto& row : cases) {
        const std::string said = SaidWith({}, [&] {
            WorkerSetup setup;
            SceneJob job;
            job.path = "in/a.qsa";
            job.target = "o/a.qsb";
            row.change(setup, job);
            SceneConverter converter(setup);
            return SaidWith(row.calls, [&] {
                std::string text;
                for (int i = 0; i < 2; ++i) {
                    const SceneResult result = converter.Convert(job);
                    const SceneMessage* const reason = result.FirstReason();
                    text = reason ? CodeText(reason->code) + " " + reason->text : "";
                }
                return text;
            });
        });
        EXPECT_THAT(said, StartsWith(row.said.substr(0, 5))) << row.what;
        EXPECT_THAT(said, HasSubstr(row.said)) << row.what;
        EXPECT_EQ(said.empty(), row.said.empty()) << row.what << said;
        EXPECT_EQ(scratch.Has("o/a.qsb"), row.said.empty()) << row.what;
        fs::remove_all("o");
        fs::remove_all("f");
    }
}

TEST_F(FailingCallsTest, RunsThatCannotGoOnAreTwoWithAReason)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    const struct {
        const char* what;
        std::vector<FailingCall> calls;
        std::vector<std::string> arguments;
        std::string said;
    } cases[] =
    { {"program of the worker",
       {{SYS_socketpair, EMFILE}},
       {"in"},
       "qsbatch: a worker process cannot be started: Too many open files\n"},
#if !defined(__SANITIZE_ADDRESS__) // which starts a thread at the end, and has no limit of memory
      {"worker",
       {{SYS_clone, EAGAIN}},
       {"in"},
       "qsbatch: a worker process cannot be started: Resource temporarily unavailable\n"},
      {"memory of a worker",
       {},
       {"in", "--memory", "3M"},
       "qsbatch: a worker cannot start for 'in/a.qsa': 3 MiB of memory are too few, see --memory\n"},
      {"odd memory of a worker",
       {},
       {"in", "--memory", "1.5K"},
       "qsbatch: a worker cannot start for 'in/a.qsa': 1536 bytes of memory are too few, see --memory\n"},
#endif
      {"names of a durable state",
       {{SYS_fsync, EIO}},
       {"in", "--durable"},
       "of the state cannot be made: Input/output error; choose another place with --state\n"},
      {"journal on the disk",
       {{SYS_fdatasync, EIO}},
       {"in", "--durable", "--journal", "j.jsonl"},
       "Input/output error"},
      {"page that is a directory",
       {},
       {"in", "--report", "in"},
       "qsbatch: the page 'in' cannot be written: Is a directory; choose another place with "
       "--report\n"},
      {"page's place",
       {},
       {"in", "--report", "gone/page.html"},
       "qsbatch: the page 'gone/page.html' cannot be written: No such file or directory; choose "
       "another place with --report\n"},
    };
    for (const auto& row : cases) {
        const ProgramRun run = BatchWith(row.calls, row.arguments);
        EXPECT_EQ(run.status, 2) << row.what;
        EXPECT_THAT(run.err, HasSubstr(row.said)) << row.what;
    }
}

TEST_F(FailingCallsTest, RunsGoOnWithoutWhatOnlyHelps)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    const std::vector<std::vector<FailingCall>> cases = {
        {{SYS_memfd_create, EMFILE}}, // no page of tickets, no file for what a worker says
        {{SYS_ftruncate, EIO, 1, 0}}, // nor can it be emptied
        {{SYS_write, EACCES, 2, 3}},  // the score for the time when memory runs short
        {{SYS_ioctl, ENOTTY}},        {{SYS_flock, ENOLCK}},
    };
    for (const auto& calls : cases) {
        const ProgramRun run = BatchWith(calls, {"in", "--force", "--memory", "0"});
        EXPECT_EQ(run.status, 0) << run.err << calls[0].call;
        EXPECT_THAT(run.out, StartsWith("1 converted, ")) << calls[0].call;
    }
}

TEST_F(FailingCallsTest, ChunksThatCannotBeWrittenOrKeptAreToldWithACure)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    const std::vector<std::string> plan = {"plan", "in",   "--root",   "in",
                                           "-o",   "plan", "--chunks", "1"};
    ASSERT_EQ(Batch(plan).status, 0);
    const std::string output = "; choose another place with -o\n";
    const std::string journals = "; choose another place with --journal-dir\n";
    struct Row {
        std::vector<FailingCall> calls;
        std::string said;
    };
    const auto check = [&](const Row& row, const std::vector<std::string>& arguments) {
        const ProgramRun ended = CommandWith(row.calls, arguments);
        EXPECT_EQ(ended.status, 2) << row.said;
        EXPECT_THAT(ended.err, HasSubstr(row.said));
    };
    for (const Row& row : std::vector<Row>{
             {{{SYS_unlinkat, EACCES}}, "cannot be removed: Permission denied" + output},
             {{{SYS_chdir, EACCES}}, "the root 'in' cannot be entered: Permission denied\n"},
             {{kOpenDirectory}, "cannot be made: Permission denied" + output},
             {{{SYS_rename, EIO}}, "cannot be written: Input/output error" + output},
         })
        check(row, plan);
    ASSERT_EQ(Batch(plan).status, 0);
    const std::string chunk = "plan/" + Chunks().at(0) + ".list";
    const std::vector<std::string> run = {"run", "--chunk",       chunk, "--root",
                                          "in",  "--journal-dir", "j"};
    for (const Row& row : std::vector<Row>{
             {{{SYS_chdir, EACCES}}, "the root 'in' cannot be entered: Permission denied\n"},
             {{{SYS_read, EIO}}, "cannot be read: Input/output error"},
             {{{SYS_openat, EACCES, 2, O_EXCL, O_EXCL}}, "Permission denied" + journals},
             {{{SYS_openat, EEXIST, 2, O_EXCL, O_EXCL}}, "File exists" + journals},
         })
        check(row, run);
    EXPECT_FALSE(scratch.Has("j") && !FilesBelow("j").empty());
    for (const FailingCall& call : {FailingCall{SYS_fsync, EIO}, FailingCall{SYS_rename, EIO}}) {
        const ProgramRun ended = BatchWith({call}, run);
        EXPECT_EQ(ended.status, 2) << call.call;
        EXPECT_THAT(ended.err, HasSubstr("cannot be kept: Input/output error" + journals));
        EXPECT_THAT(Journals(), IsEmpty());
        EXPECT_EQ(Partials().size(), 1u) << "it is still there";
        fs::remove_all("j");
    }
    EXPECT_EQ(
        CommandWith({}, {"run", "--chunk", "plan/chunk-001-of-001.12345678", "--journal-dir", "j"})
            .err,
        "qsbatch: 'plan/chunk-001-of-001.12345678' is no chunk by its name; --chunk needs a "
        "file of 'qsbatch plan'\n");
    ASSERT_EQ(Batch(run).status, 0);
    const std::vector<std::string> merge = {"merge", "j", "-o", "all.jsonl", "--root", "in"};
    const struct {
        std::vector<FailingCall> calls;
        int status;
        std::string said;
    } merges[] = {
        {{{SYS_pread64, EIO}}, 2, "' cannot be read: Input/output error\n"},
        {{{SYS_read, EIO}}, 1, ":0: it cannot be read; its chunk has to be run again\n"},
        {{{SYS_openat, EACCES, 2, 0, O_CREAT | O_DIRECTORY}},
         1,
         ":0: it cannot be read; its chunk has to be run again\n"},
        {{{SYS_chdir, EACCES}}, 2, "the root 'in' cannot be entered: Permission denied\n"},
        {{{SYS_getcwd, EACCES}}, 2, "the root 'in' cannot be used: Permission denied; name "},
        {{{SYS_rename, EIO}}, 2, "cannot be written: Input/output error; choose another place"},
        {{}, 0, ""},
    };
    for (const auto& row : merges) {
        const ProgramRun ended = CommandWith(row.calls, merge);
        EXPECT_EQ(ended.status, row.status) << row.said;
        EXPECT_THAT(ended.err, HasSubstr(row.said));
    }
}

#endif
