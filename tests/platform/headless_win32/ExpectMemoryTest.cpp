#include "platform/ExpectMemory.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace {

constexpr int64_t kMegabyte = int64_t{1} << 20;

/// The exit status of a child process that runs `work`: the heap of the test program stays as it is.
int InChild(const std::function<int()>& work)
{
    const pid_t child = fork();
    if (child == 0)
        _exit(work());
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

long Faults()
{
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_minflt;
}

int64_t ResidentBytes()
{
    std::ifstream file("/proc/self/statm");
    int64_t all = 0, resident = 0;
    file >> all >> resident;
    return resident * sysconf(_SC_PAGESIZE);
}

bool HasLargePages()
{
    std::ifstream file("/sys/kernel/mm/transparent_hugepage/enabled");
    std::string line;
    std::getline(file, line);
    return line.find("[madvise]") != std::string::npos ||
           line.find("[always]") != std::string::npos;
}

/// Fills the memory with pieces as small as a key of an animation.
void UseMemory(int64_t bytes)
{
    constexpr int64_t kPiece = 112;
    for (int64_t i = 0; i < bytes / kPiece; ++i)
        *static_cast<volatile char*>(std::malloc(kPiece - 16)) = 1;
}

} // namespace

TEST(ExpectMemory, UsesNoneOfIt)
{
    const int status = InChild([] {
        const int64_t before = ResidentBytes();
        ExpectMemory(1024 * kMegabyte);
        return ResidentBytes() - before < 4 * kMegabyte ? 0 : 1;
    });
    EXPECT_EQ(status, 0);
}

TEST(ExpectMemory, FailsNothingWhereMemoryIsLimited)
{
    const int status = InChild([] {
        rlimit limit = {};
        getrlimit(RLIMIT_AS, &limit);
        limit.rlim_cur = static_cast<rlim_t>(ResidentBytes() + 512 * kMegabyte);
        setrlimit(RLIMIT_AS, &limit);
        ExpectMemory(64 * 1024 * kMegabyte);
        UseMemory(32 * kMegabyte);
        return std::malloc(static_cast<size_t>(64 * kMegabyte)) != nullptr ? 0 : 1;
    });
    EXPECT_EQ(status, 0);
}

TEST(ExpectMemory, MakesFewerPagesThanTheHeapWouldAlone)
{
    if (!HasLargePages())
        GTEST_SKIP() << "this system makes small pages only";
    const auto work = [](bool expects) {
        return InChild([expects] {
            if (expects)
                ExpectMemory(128 * kMegabyte);
            const long before = Faults();
            UseMemory(96 * kMegabyte);
            return static_cast<int>((Faults() - before) / 256); // up to 96 of small pages
        });
    };
    const int alone = work(false);
    EXPECT_GT(alone, 80);
    EXPECT_LT(work(true), alone / 2);
}

TEST(ExpectMemory, AskedAgainGrowsTheHeapOnlyByWhatIsNew)
{
    const int status = InChild([] {
        ExpectMemory(64 * kMegabyte);
        auto* const first = static_cast<char*>(sbrk(0));
        ExpectMemory(64 * kMegabyte);
        ExpectMemory(20 * kMegabyte);
        if (sbrk(0) != first)
            return 1;
        ExpectMemory(100 * kMegabyte);
        return static_cast<char*>(sbrk(0)) - first < 80 * kMegabyte ? 0 : 2;
    });
    EXPECT_EQ(status, 0);
}
