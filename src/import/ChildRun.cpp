#include "import/ChildRun.h"

#include <cerrno>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "gltf/ModelFault.h"
#include "platform/headless/win32/DescriptorStream.h"
#include "platform/headless/win32/Uninterrupted.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kWorkDone = 0;
constexpr int kWorkFailed = 3; // memory ran out

uint64_t AddressSpace()
{
    FILE* stream = headless::OpenDescriptorStream("/proc/self/statm", "re");
    unsigned long pages = 0;
    const bool isRead = stream && std::fscanf(stream, "%lu", &pages) == 1;
    if (stream)
        std::fclose(stream);
    return isRead ? uint64_t{pages} * static_cast<uint64_t>(sysconf(_SC_PAGESIZE)) : 0;
}

void SetLimit(int what, uint64_t value)
{
    const rlimit limit = {static_cast<rlim_t>(value), static_cast<rlim_t>(value)};
    setrlimit(static_cast<__rlimit_resource>(what), &limit);
}

[[noreturn]] void BeChild(int out, const ChildLimits& limits,
                          const std::function<std::string()>& work)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL); // a parent that is stopped leaves nothing behind
    SetLimit(RLIMIT_CORE, 0);
    SetLimit(RLIMIT_AS, AddressSpace() + limits.bytes);
    SetLimit(RLIMIT_CPU, static_cast<uint64_t>(std::ceil(limits.seconds)) + 1);
    for (const int signal : {SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL})
        std::signal(signal, SIG_DFL);
    // What the library says on the way is of no use to anyone.
    const int nowhere =
        headless::Uninterrupted([] { return open("/dev/null", O_WRONLY | O_CLOEXEC); });
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
    int status = kWorkFailed;
    try {
        const std::string text = work();
        size_t at = 0;
        while (at < text.size()) {
            const ssize_t count = write(out, text.data() + at, text.size() - at);
            if (count < 0 && errno != EINTR)
                _exit(kWorkFailed);
            at += count > 0 ? static_cast<size_t>(count) : 0;
        }
        status = kWorkDone;
    } catch (const std::exception&) {}
    _exit(status); // nothing of the parent's may run or be written twice
}

/// Reads to the end; false if the time is over first.
bool ReadUntil(int in, Clock::time_point end, std::string& textOut)
{
    for (;;) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        pollfd waiting = {in, POLLIN, 0};
        if (left <= 0)
            return false;
        const int ready = poll(&waiting, 1, static_cast<int>(std::min<int64_t>(left, 1000)));
        if (ready <= 0)
            continue;
        char part[65536];
        const ssize_t count = read(in, part, sizeof part);
        if (count == 0)
            return true;
        if (count > 0)
            textOut.append(part, static_cast<size_t>(count));
        else if (errno != EINTR)
            return true;
    }
}

/// A pipe to read from, and the child that writes to it. Whatever comes, both are gone at its end.
class Child {
public:
    Child()
    {
        if (pipe2(ends, O_CLOEXEC) != 0)
            throw ModelFault(std::string("no child process: ") + std::strerror(errno));
    }
    ~Child()
    {
        for (const int end : ends) {
            if (end >= 0)
                close(end);
        }
        if (process > 0)
            Wait(true);
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    void Start(const ChildLimits& limits, const std::function<std::string()>& work)
    {
        process = fork();
        const int reason = errno;
        if (process == 0)
            BeChild(ends[1], limits, work);
        close(std::exchange(ends[1], -1));
        if (process < 0)
            throw ModelFault(std::string("no child process: ") + std::strerror(reason));
    }
    int ReadEnd() const { return ends[0]; }
    /// The status of its end.
    int Wait(bool isUnwanted)
    {
        if (isUnwanted)
            kill(process, SIGKILL);
        int status = 0;
        while (waitpid(process, &status, 0) < 0 && errno == EINTR) {}
        process = -1;
        return status;
    }

private:
    int ends[2] = {-1, -1};
    pid_t process = -1;
};

} // namespace

std::string RunInChild(const ChildLimits& limits, const std::function<std::string()>& work)
{
    std::fflush(nullptr);
    const auto end =
        Clock::now() + std::chrono::milliseconds(static_cast<int64_t>(limits.seconds * 1000));
    Child child;
    child.Start(limits, work);
    std::string text;
    const bool isInTime = ReadUntil(child.ReadEnd(), end, text);
    const int status = child.Wait(!isInTime);
    if (!isInTime || (WIFSIGNALED(status) && WTERMSIG(status) == SIGXCPU))
        throw ModelFault("reading it takes too long");
    if (WIFSIGNALED(status))
        throw ModelFault(std::string("its reader crashed: ") + strsignal(WTERMSIG(status)));
    if (WEXITSTATUS(status) != kWorkDone)
        throw ModelFault("reading it needs too much memory");
    return text;
}
