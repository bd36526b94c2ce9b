// Two machines that write in one directory of a share, as two UTS namespaces with host names of their own.
// The files that the other one has in hand carry no lock that is seen here, as on a share with local locks.

#include "platform/headless/win32/TemporaryName.h"
#include "tests/support/Emulator.h"
#include "tests/support/ScratchDirectory.h"
#include "tests/support/TreePaths.h"

#include <chrono>
#include <filesystem>
#include <gtest/gtest.h>

#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

constexpr int kNoNamespace = 77;

/// As root, or as a user who may make namespaces of his own.
bool EnterHost(const char* name)
{
    const bool entered = unshare(CLONE_NEWUTS) == 0 || unshare(CLONE_NEWUSER | CLONE_NEWUTS) == 0;
    return entered && sethostname(name, std::char_traits<char>::length(name)) == 0;
}

/// Converts "boat.qsa" on a host of that name. Returns the exit status, or `kNoNamespace`.
int ConvertOnHost(const char* host)
{
    const pid_t child = fork();
    if (child == 0) {
        const std::string program = ProgramPath();
        if (!EnterHost(host))
            _exit(kNoNamespace);
        execl(program.c_str(), program.c_str(), "boat.qsa", static_cast<char*>(nullptr));
        _exit(1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// A file that a process of `host` has left behind, or has in hand: here nobody can tell.
std::string TemporaryFileOf(const std::string& host)
{
    const pid_t ended = fork();
    if (ended == 0)
        _exit(0);
    waitpid(ended, nullptr, 0);
    return ".qsa2qsb-" + host + "-" + headless::TemporaryOwner::ThisProcess().boot + "-" +
           std::to_string(ended) + "-0.tmp";
}

} // namespace

TEST(SharedDirectory, FileOfALivingNeighbourIsNotLost)
{
    if (RunsUnderAnEmulator())
        GTEST_SKIP() << "starts the program in namespaces of its own";
    const ScratchDirectory scratch;
    scratch.Write("boat.qsa", "*3DSMAX_QSAEXPORT 200\n");
    const std::string neighbour = TemporaryFileOf("node-b");
    const std::string own = TemporaryFileOf("node-a");
    scratch.Write(neighbour, "in hand");
    scratch.Write(own, "left behind");
    const int status = ConvertOnHost("node-a");
    if (status == kNoNamespace)
        GTEST_SKIP() << "namespaces cannot be made here";
    EXPECT_EQ(status, 1) << "converted";
    EXPECT_TRUE(scratch.Has("boat.qsb"));
    EXPECT_EQ(scratch.Read(neighbour), "in hand");
    EXPECT_FALSE(scratch.Has(own));

    EXPECT_EQ(ConvertOnHost("node-b"), 1);
    EXPECT_FALSE(scratch.Has(neighbour)) << "its own host knows better";
}
