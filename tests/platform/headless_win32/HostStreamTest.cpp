#include "platform/HostStream.h"

#include "platform/headless/win32/DescriptorStream.h"
#include "platform/headless/win32/DirectoryEntries.h"
#include "tests/support/ScratchDirectory.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <set>
#include <string>
#include <thread>

#include <dirent.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/time.h>
#include <unistd.h>

using namespace headless;

namespace {

std::string Pattern(size_t size)
{
    std::string bytes(size, '\0');
    for (size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<char>(i * 7 + i / 251);
    return bytes;
}

/// A timer whose signal interrupts the calls of this thread every millisecond, and a pipe.
class InterruptedStream : public testing::Test {
protected:
    InterruptedStream()
    {
        EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
        struct sigaction action = {};
        action.sa_handler = [](int) {};
        sigaction(SIGALRM, &action, &before); // without SA_RESTART
    }
    ~InterruptedStream() override
    {
        SetTimer(0);
        sigaction(SIGALRM, &before, nullptr);
    }

    static void SetTimer(int microseconds)
    {
        const itimerval every = {{0, microseconds}, {0, microseconds}};
        setitimer(ITIMER_REAL, &every, nullptr);
    }

    /// Signals go to the thread that did not block them: the test's own.
    template <class Work>
    static std::thread Beside(const Work& work)
    {
        sigset_t alarm, old;
        sigemptyset(&alarm);
        sigaddset(&alarm, SIGALRM);
        pthread_sigmask(SIG_BLOCK, &alarm, &old);
        std::thread thread(work);
        pthread_sigmask(SIG_SETMASK, &old, nullptr);
        return thread;
    }

    std::array<int, 2> ends{};
    struct sigaction before = {};
};

} // namespace

TEST_F(InterruptedStream, WritesEachByteOnce)
{
    const std::string sent = Pattern(300'000); // a pipe holds 65,536
    std::string got;
    std::thread reader = Beside([&] {
        char part[20'000];
        for (ssize_t count = 1; count > 0;) {
            usleep(5000); // the writer waits, and is interrupted
            count = read(ends[0], part, sizeof part);
            got.append(part, count > 0 ? static_cast<size_t>(count) : 0);
        }
    });
    SetTimer(1000);
    FILE* const stream = DescriptorStream(ends[1], "w");
    ASSERT_NE(stream, nullptr);
    for (size_t at = 0; at < sent.size(); at += 3000)
        EXPECT_EQ(std::fwrite(sent.data() + at, 1, 3000, stream), 3000u);
    EXPECT_TRUE(CloseStream(stream));
    SetTimer(0);
    reader.join();
    close(ends[0]);
    EXPECT_TRUE(got == sent) << got.size();
}

TEST_F(InterruptedStream, ReadsEachByteOnce)
{
    const std::string sent = Pattern(50'000);
    std::thread writer = Beside([&] {
        for (size_t at = 0; at < sent.size(); at += 5000) {
            usleep(5000); // the reader waits, and is interrupted
            EXPECT_EQ(write(ends[1], sent.data() + at, 5000), 5000);
        }
        close(ends[1]);
    });
    FILE* const stream = fdopen(ends[0], "rb");
    std::setvbuf(stream, nullptr, _IONBF, 0);
    SetTimer(1000);
    std::string got(sent.size() + 1, '?');
    got.resize(ReadStream(stream, got.data(), got.size()));
    SetTimer(0);
    writer.join();
    EXPECT_TRUE(CloseStream(stream));
    EXPECT_TRUE(got == sent) << got.size();
}

TEST(HostStream, EndOfAFileEndsARead)
{
    const ScratchDirectory scratch;
    scratch.Write("a", "abc");
    FILE* const stream = OpenHostStream("a", "rb");
    ASSERT_NE(stream, nullptr);
    char bytes[8] = "";
    EXPECT_EQ(ReadStream(stream, bytes, sizeof bytes), 3u);
    EXPECT_STREQ(bytes, "abc");
    EXPECT_TRUE(CloseStream(stream));
}

TEST(HostStream, OpensByTheModesOfTheLibrary)
{
    const ScratchDirectory scratch;
    EXPECT_EQ(OpenHostStream("a", "rb"), nullptr);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(OpenHostStream("a", "r+b"), nullptr);
    for (const auto& [mode, text, expected] :
         {std::array{"wb", "abcd", "abcd"}, std::array{"ab", "ef", "abcdef"},
          std::array{"r+b", "X", "Xbcdef"}, std::array{"wb", "new", "new"}}) {
        FILE* const stream = OpenHostStream("a", mode);
        ASSERT_NE(stream, nullptr) << mode;
        EXPECT_GE(fileno(stream), 0) << mode;
        std::fputs(text, stream);
        EXPECT_TRUE(CloseStream(stream));
        EXPECT_EQ(scratch.Read("a"), expected) << mode;
    }
}

TEST(HostStream, FailedWriteIsToldWhenItIsClosed)
{
    if (access("/dev/full", W_OK) != 0)
        GTEST_SKIP() << "there is no /dev/full";
    FILE* const stream = OpenHostStream("/dev/full", "wb");
    ASSERT_NE(stream, nullptr);
    std::fputs("abc", stream);
    EXPECT_FALSE(CloseStream(stream));
    EXPECT_EQ(errno, ENOSPC);
}

TEST(DirectoryEntries, EachIsVisited)
{
    const ScratchDirectory scratch;
    scratch.Write("a", "");
    scratch.Write("b", "");
    std::set<std::string> names;
    EXPECT_TRUE(VisitEntries("", [&](const dirent& entry) { names.insert(entry.d_name); }));
    EXPECT_EQ(names, (std::set<std::string>{".", "..", "a", "b"}));
    EXPECT_FALSE(VisitEntries("none", [](const dirent&) {}));
    EXPECT_EQ(errno, ENOENT);
}
