#include "platform/headless/win32/TemporaryName.h"
#include "tests/qsb/SceneFileTest.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <thread>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/file.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using testing::HasSubstr;
namespace fs = std::filesystem;

namespace {

/// The name of a file of this host that a process has left behind.
std::string AbandonedName()
{
    const pid_t ended = fork();
    if (ended == 0)
        _exit(0);
    waitpid(ended, nullptr, 0);
    const headless::TemporaryOwner self = headless::TemporaryOwner::ThisProcess();
    return ".qsa2qsb-" + self.host + "-" + self.boot + "-" + std::to_string(ended) + "-0.tmp";
}

/// Sets the time of the last write back, by hours.
void MakeOlder(const std::string& path, int hours)
{
    fs::last_write_time(path, fs::last_write_time(path) - std::chrono::hours(hours));
}

/// Saves over "boat.qsb" and checks what is left when that is interrupted.
class InterruptedSaveTest : public SceneFileTest {
protected:
    InterruptedSaveTest()
    {
        // Large enough for several writes: positions of 2000 vertices alone take 24,000 bytes.
        QsbFile file = FullQsb();
        file.scene.meshes[2].vertices.resize(2000);
        LoadBytes(scene, MakeQsb(file).bytes);
        fs::remove("scene.qsb");
        gGfx->SaveScene(scene, "boat.qsb");
        complete = directory.Read("boat.qsb");
        fs::remove("boat.qsb");
        directory.Write("boat.qsb", "old");
    }

    /// Runs `action` in a separate process, which ends without any clean-up.
    static pid_t Fork(const std::function<void()>& action)
    {
        const pid_t child = fork();
        if (child == 0) {
            ErrorText(action);
            _exit(0);
        }
        return child;
    }

    void ExpectOldOrNew(const std::string& what)
    {
        const std::string bytes = directory.Read("boat.qsb");
        EXPECT_TRUE(bytes == "old" || bytes == complete)
            << what << ": " << bytes.size() << " bytes";
        countOfNew += bytes == complete ? 1 : 0;
        directory.Write("boat.qsb", "old");
    }

    /// Saves as a later run of the program would: a directory is cleared when it is entered, which
    /// this process has done already.
    void SaveInALaterRun()
    {
        fs::create_directory("other");
        const pid_t child = Fork([&] {
            gGfx->SaveScene(scene, "other/boat.qsb");
            gGfx->SaveScene(scene, "boat.qsb");
        });
        waitpid(child, nullptr, 0);
        fs::remove_all("other");
    }

    /// The number of files beside "boat.qsb" and the log.
    static int Litter()
    {
        int count = 0;
        for (const auto& entry : fs::directory_iterator("."))
            count += entry.path() == "./boat.qsb" || entry.path() == "./logfile.txt" ? 0 : 1;
        return count;
    }

    KRE_3dScene scene;
    std::string complete;
    int countOfNew = 0;
};

void LimitFiles(rlim_t bytes)
{
    const rlimit limit = {bytes, RLIM_INFINITY};
    setrlimit(RLIMIT_FSIZE, &limit);
}

} // namespace

TEST_F(InterruptedSaveTest, AFullDiskIsAnErrorAndLeavesTheOldTarget)
{
    for (rlim_t bytes = 0; bytes < complete.size(); bytes += 4001) {
        const pid_t child = fork();
        if (child == 0) {
            std::signal(SIGXFSZ, SIG_IGN); // writes fail as on a full disk
            LimitFiles(bytes);
            const std::string error = ErrorText([&] { gGfx->SaveScene(scene, "boat.qsb"); });
            _exit(error == "boat.qsb: Error writing to file" ? 0 : 1);
        }
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0) << "at " << bytes;
        EXPECT_EQ(directory.Read("boat.qsb"), "old") << "at " << bytes;
        EXPECT_EQ(Litter(), 0) << "at " << bytes;
    }
}

TEST_F(InterruptedSaveTest, AFullDeviceIsAnError)
{
    if (access("/dev/full", W_OK) != 0)
        GTEST_SKIP() << "there is no /dev/full";
    EXPECT_EQ(ErrorText([&] { gGfx->SaveScene(scene, "/dev/full"); }),
              "/dev/full: Error writing to file");
    struct stat info;
    EXPECT_EQ(stat("/dev/full", &info), 0);
    EXPECT_TRUE(S_ISCHR(info.st_mode));
}

TEST_F(InterruptedSaveTest, AProcessKilledAtAnyByteLeavesTheOldTarget)
{
    for (rlim_t bytes = 0; bytes < complete.size(); bytes += 997) {
        const pid_t child = fork();
        if (child == 0) {
            std::signal(SIGXFSZ, SIG_DFL); // the first write beyond the limit ends the process
            const rlimit none = {0, 0};
            setrlimit(RLIMIT_CORE, &none);
            LimitFiles(bytes);
            gGfx->SaveScene(scene, "boat.qsb");
            _exit(0);
        }
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_TRUE(WIFSIGNALED(status)) << "at " << bytes;
        EXPECT_EQ(directory.Read("boat.qsb"), "old") << "at " << bytes;
    }
    EXPECT_GT(Litter(), 0);
    SaveInALaterRun();
    ExpectOldOrNew("after all");
    EXPECT_EQ(countOfNew, 1);
    EXPECT_EQ(Litter(), 0);
}

TEST_F(InterruptedSaveTest, AProcessKilledAtAnySystemCallLeavesOldOrNew)
{
    int calls = 0;
    for (int killAt = 1;; ++killAt) {
        const pid_t child = fork();
        if (child == 0) {
            if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0)
                _exit(77);
            raise(SIGSTOP);
            gGfx->SaveScene(scene, "boat.qsb");
            _exit(0);
        }
        int status = 0;
        waitpid(child, &status, 0);
        if (!WIFSTOPPED(status))
            GTEST_SKIP() << "processes cannot be traced here";
        int stops = 0; // one before each call and one after it
        while (stops < killAt && WIFSTOPPED(status)) {
            ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
            waitpid(child, &status, 0);
            ++stops;
        }
        const bool isOver = !WIFSTOPPED(status);
        if (!isOver) {
            kill(child, SIGKILL);
            waitpid(child, &status, 0);
        }
        ExpectOldOrNew("killed at stop " + std::to_string(killAt));
        if (isOver)
            break;
        calls = killAt;
    }
    EXPECT_GT(calls, 20);
    EXPECT_GE(countOfNew, 2); // there are calls after the replacement, too
    SaveInALaterRun();
    EXPECT_EQ(Litter(), 0);
}

TEST_F(InterruptedSaveTest, AProcessKilledAtAnyTimeLeavesOldOrNew)
{
    for (int round = 0; round < 100; ++round) {
        const pid_t child = Fork([&] {
            for (;;)
                gGfx->SaveScene(scene, "boat.qsb");
        });
        std::this_thread::sleep_for(std::chrono::microseconds(137 * round));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        ExpectOldOrNew("round " + std::to_string(round));
    }
    EXPECT_GT(countOfNew, 0);
}

// ---- What other processes leave behind

TEST_F(InterruptedSaveTest, AbandonedFilesAreRemovedAndOthersAreNot)
{
    const std::string abandoned = AbandonedName();
    directory.Write(abandoned, "half");
    directory.Write(".qsa2qsb-notes", "kept");
    directory.Write("deck.qsb", "kept");
    SaveInALaterRun();
    EXPECT_FALSE(directory.Has(abandoned));
    EXPECT_EQ(directory.Read(".qsa2qsb-notes"), "kept");
    EXPECT_EQ(directory.Read("deck.qsb"), "kept");
}

TEST_F(InterruptedSaveTest, FilesOfRunningProcessesAreLeftAlone)
{
    const std::string locked = AbandonedName();
    directory.Write(locked, "half");
    const int held = open(locked.c_str(), O_RDWR);
    ASSERT_EQ(flock(held, LOCK_EX | LOCK_NB), 0);
    // Locks need not reach from one mount of a share to the other; the process id does.
    const headless::TemporaryOwner self = headless::TemporaryOwner::ThisProcess();
    const std::string unlocked =
        ".qsa2qsb-" + self.host + "-" + self.boot + "-" + std::to_string(getpid()) + "-9.tmp";
    directory.Write(unlocked, "half");
    SaveInALaterRun();
    close(held);
    EXPECT_TRUE(directory.Has(locked));
    EXPECT_TRUE(directory.Has(unlocked));
}

TEST_F(InterruptedSaveTest, FilesOfOtherHostsAreLeftAloneForADay)
{
    const headless::TemporaryOwner self = headless::TemporaryOwner::ThisProcess();
    const std::string process = AbandonedName().substr(10 + self.host.size() + self.boot.size());
    const std::string names[] = {
        ".qsa2qsb-other" + self.host + "-" + self.boot + process,                // another host
        ".qsa2qsb-" + self.host + "-0123456789abcdef0123456789abcdef" + process, // its namesake
        ".qsa2qsb-1234-0.tmp", // of an older version
    };
    for (const std::string& name : names) {
        directory.Write(name, "half");
        MakeOlder(name, 23);
    }
    SaveInALaterRun();
    for (const std::string& name : names) {
        EXPECT_TRUE(directory.Has(name)) << name;
        MakeOlder(name, 2);
    }
    SaveInALaterRun();
    for (const std::string& name : names)
        EXPECT_FALSE(directory.Has(name)) << name;
}

TEST_F(InterruptedSaveTest, ManyProcessesMaySaveInOneDirectory)
{
    std::vector<pid_t> children;
    for (int i = 0; i < 4; ++i) {
        children.push_back(Fork([&, i] {
            for (int round = 0; round < 30; ++round) {
                // A directory is cleared when it is entered: leaving and returning does so each
                // time.
                gGfx->SaveScene(scene, ("boat" + std::to_string(i) + ".qsb").c_str());
                fs::create_directory("other" + std::to_string(i));
                gGfx->SaveScene(scene, ("other" + std::to_string(i) + "/boat.qsb").c_str());
            }
            directory.Write("done" + std::to_string(i), "");
        }));
    }
    for (const pid_t child : children)
        waitpid(child, nullptr, 0);
    for (int i = 0; i < 4; ++i) {
        EXPECT_TRUE(directory.Has("done" + std::to_string(i))) << "process " << i << " failed";
        EXPECT_EQ(directory.Read("boat" + std::to_string(i) + ".qsb"), complete);
    }
}

// ---- Kinds of targets

TEST_F(InterruptedSaveTest, AWriteProtectedTargetIsKept)
{
    if (geteuid() == 0)
        GTEST_SKIP() << "nothing is protected from the superuser";
    chmod("boat.qsb", 0444);
    EXPECT_EQ(ErrorText([&] { gGfx->SaveScene(scene, "boat.qsb"); }),
              "boat.qsb: File is not writeable");
    EXPECT_THAT(LogText(), HasSubstr("Create() failed: Permission denied, file:'boat.qsb'"));
    EXPECT_EQ(directory.Read("boat.qsb"), "old");
}

TEST_F(InterruptedSaveTest, PermissionsAndLinksStay)
{
    chmod("boat.qsb", 0640);
    fs::create_directory("fleet");
    fs::create_symlink("../boat.qsb", "fleet/link.qsb");
    gGfx->SaveScene(scene, "fleet/link.qsb");
    EXPECT_TRUE(fs::is_symlink("fleet/link.qsb"));
    EXPECT_EQ(directory.Read("boat.qsb"), complete);
    struct stat info;
    ASSERT_EQ(stat("boat.qsb", &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0640u);
}
