#include "base/Log.h"

#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/base/LogFixture.h"

namespace {

class LogProcess : public LogFixture {};

int OpenDescriptors()
{
    int count = 0;
    for (int i = 0; i < 256; ++i)
        count += fcntl(i, F_GETFD) != -1;
    return count;
}

TEST_F(LogProcess, ClosingTheLogClosesItsFile)
{
    const int before = OpenDescriptors();
    LogWrite("entry");
    EXPECT_EQ(OpenDescriptors(), before + 1);
    CloseLog();
    EXPECT_EQ(OpenDescriptors(), before);
}

TEST_F(LogProcess, KilledAfterAnyEntryLeavesAllOfThemWhole)
{
    for (const int entries : {1, 2, 7}) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            for (int i = 1; i <= entries; ++i)
                LogWrite("entry %i", i);
            kill(getpid(), SIGKILL);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status));
        std::string expected;
        for (int i = 1; i <= entries; ++i)
            expected += Entry("entry " + std::to_string(i));
        EXPECT_EQ(LogText(), expected);
    }
}

TEST_F(LogProcess, ManyEntriesHoldNoMoreThanOneDescriptor)
{
    const int before = OpenDescriptors();
    for (int i = 0; i < 20; ++i) {
        LogWrite("x");
        if (i % 3 == 0)
            std::filesystem::remove(scratch.Path() / "logfile.txt");
    }
    EXPECT_LE(OpenDescriptors(), before + 1);
    CloseLog();
    EXPECT_EQ(OpenDescriptors(), before);
}

TEST_F(LogProcess, NoDescriptorOfTheLogReachesAnotherProgram)
{
    LogWrite("x");
    for (int i = 3; i < 256; ++i) {
        struct stat open;
        struct stat log;
        ASSERT_EQ(stat("logfile.txt", &log), 0);
        const bool isLog = fstat(i, &open) == 0 && open.st_ino == log.st_ino;
        EXPECT_TRUE(!isLog || (fcntl(i, F_GETFD) & FD_CLOEXEC) != 0);
    }
}

TEST_F(LogProcess, EntryThatFindsNoRoomIsCountedAndTheNextOnesStillCome)
{
    LogWrite("one");
    // A file that may not grow takes no more, as on a full disk.
    const auto old = std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit;
    getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit small = {static_cast<rlim_t>(LogText().size()), limit.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    LogWrite("lost");
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, old);
    LogWrite("two");
    EXPECT_EQ(gLogEntries, 3);
    EXPECT_EQ(LogText(), Entry("one") + Entry("two"));
}

TEST_F(LogProcess, ReaderOfAPipeInPlaceOfTheLogSeesAnEndAfterEachEntry)
{
    ASSERT_EQ(mkfifo("logfile.txt", 0600), 0);
    const int reader = open("logfile.txt", O_RDONLY | O_NONBLOCK);
    ASSERT_GE(reader, 0);
    for (const char* name : {"one", "two"}) {
        LogWrite("%s", name);
        char text[256];
        const ssize_t length = read(reader, text, sizeof text);
        ASSERT_GT(length, 0);
        EXPECT_EQ(std::string(text, static_cast<size_t>(length)), Entry(name));
        EXPECT_EQ(read(reader, text, sizeof text), 0); // no writer holds the pipe open
    }
    close(reader);
}

TEST_F(LogProcess, NewFileHasTheModeThatAnyNewFileHas)
{
    const mode_t old = umask(027);
    LogWrite("x");
    umask(old);
    struct stat info;
    ASSERT_EQ(stat("logfile.txt", &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0640u);
}

} // namespace
