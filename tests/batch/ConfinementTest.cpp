// What a process that was closed in gets of files, calls and limits. Each attempt is made by a child process.

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <utime.h>

#include "batch/Confinement.h"
#include "tests/batch/BatchTesting.h"
#include "tests/support/FileContent.h"

using namespace batch_testing;
namespace fs = std::filesystem;

namespace {

constexpr int kNotConfined = 250; // statuses of a child beside 0 and error numbers
constexpr int kSignalled = 1000;

/// What a call gives in a child process: 0, or its error number. The child is closed in before if there are `rules`.
int InChild(const ConfinementRules* rules, const std::function<long()>& call)
{
    const pid_t child = fork();
    if (child == 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        if (rules && !Confine(*rules).empty())
            _exit(kNotConfined);
        errno = 0;
        const long result = call();
        _exit(result >= 0 ? 0 : errno);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : kSignalled + WTERMSIG(status);
}

class ConfinementTest : public testing::Test {
protected:
    ConfinementTest()
    {
        scratch.Write("in/below/a", "source");
        scratch.Write("out/old", "result");
        scratch.Write("outside/secret", "secret");
        fs::create_directory("out/below");
        fs::create_symlink("../outside/secret", "in/link");
        fs::create_directory_symlink("../outside", "in/links");
        fs::create_symlink("../outside/secret", "out/link");
        here = fs::current_path().string();
        rules.readable = {here + "/in", here + "/not there"};
        rules.writable = {here + "/out"};
        rules.mostFileBytes = 1000000;
        rules.processorSeconds = 60;
    }
    void SetUp() override
    {
        if (RunsUnderAnEmulator())
            GTEST_SKIP() << "the emulator makes calls of its own";
    }
    /// Opens a file in a confined child; 0 or an error number.
    int Opened(const std::string& path, int flags) const
    {
        return InChild(&rules, [&] { return open(path.c_str(), flags, 0600); });
    }

    const ScratchDirectory scratch;
    std::string here;
    ConfinementRules rules;
};

/// Files only, by each version of Landlock that has rights of its own.
class LandlockTest : public ConfinementTest, public testing::WithParamInterface<int> {
protected:
    void SetUp() override
    {
        ConfinementTest::SetUp();
        rules.landlock = GetParam();
        if (LandlockVersion() < GetParam())
            GTEST_SKIP() << "the kernel has no Landlock of version " << GetParam();
    }
};

class CallFilterTest : public ConfinementTest {
protected:
    void SetUp() override
    {
        ConfinementTest::SetUp();
        if (MissingConfinement().find("the filter") != std::string::npos)
            GTEST_SKIP() << "without " << MissingConfinement();
    }
};

struct CallRow {
    const char* what;
    std::function<long()> call;
};

const std::string kOld = "out/old";
char gWord[] = "word";

/// Calls that any user may make: a child that is not closed in is never told EPERM.
const CallRow kCommonCalls[] = {
    {"truncate", [] { return truncate(kOld.c_str(), 0); }},
    {"ftruncate", [] { return ftruncate(open(kOld.c_str(), O_RDWR), 0); }},
    {"truncate as it is opened to read", [] { return open("in/below/a", O_RDONLY | O_TRUNC); }},
    {"truncate as it is opened for neither",
     [] { return open("in/below/a", O_ACCMODE | O_TRUNC); }},
    {"open for neither", [] { return open("in/below/a", O_ACCMODE); }},
    {"openat2", [] { return syscall(SYS_openat2, AT_FDCWD, "in/below/a", nullptr, 0); }},
    {"chmod", [] { return chmod(kOld.c_str(), 0777); }},
    {"fchmod", [] { return fchmod(open(kOld.c_str(), O_RDWR), 0777); }},
    {"chown", [] { return chown(kOld.c_str(), getuid(), getgid()); }},
    {"lchown", [] { return lchown(kOld.c_str(), getuid(), getgid()); }},
    {"fchown", [] { return fchown(open(kOld.c_str(), O_RDWR), getuid(), getgid()); }},
    {"fchownat", [] { return fchownat(AT_FDCWD, kOld.c_str(), getuid(), getgid(), 0); }},
    {"utime", [] { return utime(kOld.c_str(), nullptr); }},
    {"utimes", [] { return utimes(kOld.c_str(), nullptr); }},
    {"utimensat", [] { return utimensat(AT_FDCWD, kOld.c_str(), nullptr, 0); }},
    {"futimens", [] { return futimens(open(kOld.c_str(), O_RDWR), nullptr); }},
    {"setxattr", [] { return setxattr(kOld.c_str(), "user.a", "b", 1, 0); }},
    {"lsetxattr", [] { return lsetxattr(kOld.c_str(), "user.a", "b", 1, 0); }},
    {"fsetxattr", [] { return fsetxattr(open(kOld.c_str(), O_RDWR), "user.a", "b", 1, 0); }},
    {"removexattr", [] { return removexattr(kOld.c_str(), "user.a"); }},
    {"socket of the network", [] { return socket(AF_INET, SOCK_STREAM, 0); }},
    {"socket of this machine", [] { return socket(AF_UNIX, SOCK_STREAM, 0); }},
    {"socketpair",
     [] {
         int ends[2];
         return socketpair(AF_UNIX, SOCK_STREAM, 0, ends);
     }},
    {"send on another socket", [] { return send(STDIN_FILENO, "", 0, 0); }},
    {"kill of the parent", [] { return kill(getppid(), 0); }},
    {"kill of all", [] { return kill(0, 0); }},
    {"tgkill of the parent", [] { return syscall(SYS_tgkill, getppid(), getppid(), 0); }},
    {"tkill of the parent", [] { return syscall(SYS_tkill, getppid(), 0); }},
    {"pidfd_open", [] { return syscall(SYS_pidfd_open, getppid(), 0); }},
    {"fcntl that sends signals", [] { return fcntl(STDIN_FILENO, F_SETOWN, getppid()); }},
    {"execve",
     [] {
         char* const words[] = {gWord, nullptr};
         return execve("/bin/true", words, nullptr);
     }},
    {"execveat",
     [] {
         char* const words[] = {gWord, nullptr};
         return syscall(SYS_execveat, AT_FDCWD, "/bin/true", words, nullptr, 0);
     }},
    {"fork", [] { return fork(); }},
    {"clone3", [] { return syscall(SYS_clone3, nullptr, 0); }},
    {"ptrace", [] { return ptrace(PTRACE_TRACEME, 0, nullptr, nullptr); }},
    {"mknod of a pipe", [] { return mknod("out/pipe", S_IFIFO | 0600, 0); }},
    {"mknodat of a pipe", [] { return mknodat(AT_FDCWD, "out/pipe2", S_IFIFO | 0600, 0); }},
    {"link", [] { return link(kOld.c_str(), "out/other"); }},
    {"linkat", [] { return linkat(AT_FDCWD, kOld.c_str(), AT_FDCWD, "out/other2", 0); }},
    {"symlink", [] { return symlink("old", "out/other3"); }},
    {"symlinkat", [] { return symlinkat("old", AT_FDCWD, "out/other4"); }},
    {"chdir", [] { return chdir("out"); }},
    {"prlimit",
     [] {
         rlimit limit = {};
         return prlimit(0, RLIMIT_NOFILE, nullptr, &limit);
     }},
    {"prctl", [] { return prctl(PR_SET_NAME, "other"); }},
    {"memfd_create", [] { return memfd_create("other", 0); }},
    {"ioctl", [] { return syscall(SYS_ioctl, open("in/below/a", O_RDONLY), 0, 0); }},
    {"memory that can be run",
     [] {
         return mmap(nullptr, 4096, PROT_READ | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0) !=
                        MAP_FAILED
                    ? 0
                    : -1;
     }},
    {"memory that is made to be run",
     [] {
         void* const page = mmap(nullptr, 4096, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
         return mprotect(page, 4096, PROT_READ | PROT_EXEC);
     }},
};

/// Calls that need rights, or that a system may refuse to all.
const CallRow kUncommonCalls[] = {
    {"mknod of a device", [] { return mknod("out/device", S_IFCHR | 0600, 0x105); }},
    {"mount", [] { return syscall(SYS_mount, nullptr, "in", nullptr, 0, nullptr); }},
    {"unshare", [] { return syscall(SYS_unshare, 0); }},
    {"setns", [] { return syscall(SYS_setns, -1, 0); }},
    {"chroot", [] { return syscall(SYS_chroot, "not there"); }},
    {"personality", [] { return syscall(SYS_personality, 0xFFFFFFFF); }},
    {"open_by_handle_at", [] { return syscall(SYS_open_by_handle_at, -1, nullptr, 0); }},
    {"process_vm_writev", [] { return syscall(SYS_process_vm_writev, getppid(), 0, 0, 0, 0, 0); }},
    {"io_uring_setup", [] { return syscall(SYS_io_uring_setup, 0, nullptr); }},
    {"bpf", [] { return syscall(SYS_bpf, -1, nullptr, 0); }},
    {"userfaultfd", [] { return syscall(SYS_userfaultfd, 0); }},
    {"keyctl", [] { return syscall(SYS_keyctl, -1); }},
};

} // namespace

TEST_P(LandlockTest, FilesBelowTheSourcesAreRead)
{
    EXPECT_EQ(Opened("in/below/a", O_RDONLY), 0);
    EXPECT_EQ(Opened(here + "/in/below/../below/a", O_RDONLY), 0);
    EXPECT_EQ(Opened("in/below", O_RDONLY | O_DIRECTORY), 0);
}

TEST_P(LandlockTest, SourcesAreNotChanged)
{
    EXPECT_EQ(Opened("in/below/a", O_WRONLY), EACCES);
    EXPECT_EQ(Opened("in/below/a", O_RDWR), EACCES);
    EXPECT_EQ(Opened("in/new", O_WRONLY | O_CREAT), EACCES);
    EXPECT_EQ(InChild(&rules, [] { return unlink("in/below/a"); }), EACCES);
    EXPECT_EQ(InChild(&rules, [] { return rename("in/below/a", "in/below/b"); }), EACCES);
    EXPECT_EQ(InChild(&rules, [] { return mkdir("in/new", 0700); }), EACCES);
    EXPECT_NE(InChild(&rules, [] { return rename("in/below/a", "out/a"); }), 0);
    EXPECT_EQ(scratch.Read("in/below/a"), "source");
    EXPECT_FALSE(scratch.Has("in/new"));
}

TEST_P(LandlockTest, OtherFilesAreNotEvenRead)
{
    for (const std::string& path :
         {std::string("outside/secret"), here + "/outside/secret",
          std::string("in/../outside/secret"), std::string("in/link"),
          std::string("in/links/secret"), std::string("out/link"),
          std::string("/proc/self/environ"), std::string("/dev/zero"), std::string("/etc/passwd")})
        EXPECT_EQ(Opened(path, O_RDONLY), EACCES) << path;
    EXPECT_EQ(Opened("outside", O_RDONLY | O_DIRECTORY), EACCES);
    EXPECT_EQ(Opened(".", O_RDONLY | O_DIRECTORY), EACCES);
    EXPECT_EQ(Opened("outside/new", O_WRONLY | O_CREAT), EACCES);
    EXPECT_EQ(Opened("out/link", O_WRONLY), EACCES);
    EXPECT_EQ(scratch.Read("outside/secret"), "secret");
}

TEST_P(LandlockTest, ResultsAreMadeAndReplaced)
{
    EXPECT_EQ(Opened("out/new", O_RDWR | O_CREAT | O_EXCL), 0);
    EXPECT_EQ(Opened("out/old", O_WRONLY | O_TRUNC), 0);
    EXPECT_EQ(InChild(&rules, [] { return mkdir("out/made", 0700); }), 0);
    EXPECT_EQ(InChild(&rules, [] { return rename("out/new", "out/old"); }), 0);
    EXPECT_EQ(InChild(&rules, [] { return unlink("out/old"); }), 0);
}

TEST_P(LandlockTest, ResultsOfOtherDirectoriesAreOutOfReach)
{
    rules.writable = {here + "/out/below"};
    EXPECT_EQ(Opened("out/below/new", O_RDWR | O_CREAT), 0);
    EXPECT_EQ(Opened("out/old", O_RDONLY), EACCES);
    EXPECT_NE(InChild(&rules, [] { return rename("out/below/new", "out/new"); }), 0);
    EXPECT_FALSE(scratch.Has("out/new"));
}

TEST_P(LandlockTest, DirectoryForResultsMustBeThere)
{
    rules.writable.push_back(here + "/gone");
    EXPECT_EQ(Opened("in/below/a", O_RDONLY), kNotConfined);
}

INSTANTIATE_TEST_SUITE_P(Versions, LandlockTest, testing::Values(2, 3, 4, 5, 6));

TEST_F(CallFilterTest, CommonCallsAreRefused)
{
    rules.landlock = 2;
    for (const CallRow& row : kCommonCalls) {
        EXPECT_EQ(InChild(&rules, row.call), EPERM) << row.what;
        EXPECT_NE(InChild(nullptr, row.call), EPERM) << row.what;
        scratch.Write("in/below/a", "source");
        scratch.Write("out/old", "result");
    }
}

TEST_F(CallFilterTest, UncommonCallsAreRefused)
{
    for (const CallRow& row : kUncommonCalls)
        EXPECT_EQ(InChild(&rules, row.call), EPERM) << row.what;
    EXPECT_FALSE(scratch.Has("out/device"));
}

// Without Landlock, as with best effort, the filter stands alone.
TEST_F(CallFilterTest, FilterNeedsNoLandlock)
{
    rules.landlock = 0;
    EXPECT_EQ(Opened("outside/secret", O_RDONLY), 0);
    EXPECT_EQ(InChild(&rules, [] { return socket(AF_INET, SOCK_STREAM, 0); }), EPERM);
}

TEST_F(CallFilterTest, SocketOfTheWorkerIsUsed)
{
    int ends[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
    const auto sends = [&] { return send(ends[0], "a", 1, MSG_NOSIGNAL); };
    EXPECT_EQ(InChild(&rules, sends), EPERM);
    rules.socket = ends[0];
    EXPECT_EQ(InChild(&rules, sends), 0);
    close(ends[0]);
    close(ends[1]);
}

TEST_F(CallFilterTest, ProcessMayEndItself)
{
    EXPECT_EQ(InChild(&rules,
                      []() -> long {
                          std::signal(SIGABRT, SIG_DFL);
                          std::abort();
                      }),
              kSignalled + SIGABRT);
}

TEST_F(ConfinementTest, FilesDoNotGrowBeyondTheLimit)
{
    rules.mostFileBytes = 10;
    const auto writes = [](size_t size) {
        return write(open("out/new", O_WRONLY | O_CREAT | O_TRUNC, 0600), "0123456789a", size);
    };
    EXPECT_EQ(InChild(&rules, [&] { return writes(10); }), 0);
    EXPECT_EQ(InChild(&rules, [] { return pwrite(open("out/new", O_WRONLY), "b", 1, 10); }), EFBIG);
    EXPECT_EQ(InChild(nullptr, [] { return pwrite(open("out/new", O_WRONLY), "b", 1, 10); }), 0);
}

TEST_F(ConfinementTest, FewFilesAreOpenAtATime)
{
    const auto opens = [] {
        int last = 0;
        for (uint64_t i = 0; i < kMostOpenFiles && last >= 0; ++i)
            last = open("in/below/a", O_RDONLY);
        return last;
    };
    EXPECT_EQ(InChild(&rules, opens), EMFILE); // the standard streams count too
    EXPECT_EQ(InChild(nullptr, opens), 0);
}

TEST_F(ConfinementTest, ProcessorTimeEnds)
{
    rules.processorSeconds = 1;
    const int end = InChild(&rules, []() -> long {
        while (getppid() != 0)
            continue;
        return 0;
    });
    EXPECT_TRUE(end == kSignalled + SIGKILL || end == kSignalled + SIGXCPU) << end;
}
