#include "tests/support/headless/FailingCalls.h"

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <functional>
#include <iterator>
#include <thread>

#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int kAnswer = 128; // in a child, the number of the pipe to its parent
constexpr unsigned kNumber = offsetof(seccomp_data, nr);
constexpr unsigned kLoad = BPF_LD | BPF_W | BPF_ABS;
constexpr unsigned kJumpIfEqual = BPF_JMP | BPF_JEQ | BPF_K;
constexpr unsigned kEnd = BPF_RET | BPF_K;

/// Of the lower half of an argument.
unsigned PlaceOfArgument(int argument)
{
    const size_t half = __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__ ? 4 : 0;
    return static_cast<unsigned>(offsetof(seccomp_data, args) +
                                 static_cast<size_t>(argument) * sizeof(uint64_t) + half);
}

sock_filter Step(unsigned code, unsigned value, unsigned char ifTrue = 0, unsigned char ifFalse = 0)
{
    return {static_cast<uint16_t>(code), ifTrue, ifFalse, value};
}

bool MayFilter()
{
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0;
}

/// What a child process says; it leaves without the parent's end.
std::string SaidByChild(const std::function<std::string()>& work)
{
    int ends[2];
    if (pipe(ends) != 0)
        return "no pipe";
    const pid_t child = fork();
    if (child == 0) {
        close(ends[0]);
        const int answer = fcntl(ends[1], F_DUPFD_CLOEXEC, kAnswer);
        close(ends[1]);
        const std::string said = work();
        ssize_t put = 0; // a short text goes as a whole
        do {
            put = write(answer, said.data(), said.size());
        } while (put < 0 && errno == EINTR);
        _exit(put == static_cast<ssize_t>(said.size()) ? 0 : 1);
    }
    close(ends[1]);
    std::string said;
    char part[4096];
    for (ssize_t got = read(ends[0], part, sizeof part); got > 0;
         got = read(ends[0], part, sizeof part))
        said.append(part, static_cast<size_t>(got));
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? said : said + " (the child failed)";
}

/// Answers the kernel's questions about a call of another thread: it is interrupted, or made.
void InterruptEverySecond(const std::atomic<int>& listener)
{
    while (listener == 0)
        std::this_thread::yield();
    seccomp_notif asked = {};
    for (bool isInterrupted = true; ioctl(listener, SECCOMP_IOCTL_NOTIF_RECV, &asked) == 0;
         isInterrupted = !isInterrupted) {
        seccomp_notif_resp answer = {};
        answer.id = asked.id;
        if (isInterrupted)
            answer.error = -EINTR;
        else
            answer.flags = SECCOMP_USER_NOTIF_FLAG_CONTINUE;
        ioctl(listener, SECCOMP_IOCTL_NOTIF_SEND, &answer);
        asked = {};
    }
}

} // namespace

bool LetFail(const std::vector<FailingCall>& calls)
{
    std::vector<sock_filter> steps;
    for (const FailingCall& failing : calls) {
        const bool hasArgument = failing.argument >= 0;
        steps.push_back(Step(kLoad, kNumber));
        steps.push_back(
            Step(kJumpIfEqual, static_cast<unsigned>(failing.call), 0, hasArgument ? 4 : 1));
        if (hasArgument) {
            steps.push_back(Step(kLoad, PlaceOfArgument(failing.argument)));
            steps.push_back(Step(BPF_ALU | BPF_AND | BPF_K, failing.mask));
            steps.push_back(Step(kJumpIfEqual, failing.value, 0, 1));
        }
        steps.push_back(Step(kEnd, SECCOMP_RET_ERRNO | static_cast<unsigned>(failing.error)));
    }
    steps.push_back(Step(kEnd, SECCOMP_RET_ALLOW));
    const sock_fprog filter = {static_cast<unsigned short>(steps.size()), steps.data()};
    return MayFilter() && prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

std::string SaidWith(const std::vector<FailingCall>& calls,
                     const std::function<std::string()>& work)
{
    return SaidByChild([&] { return LetFail(calls) ? work() : std::string("no filter"); });
}

std::string SaidWithInterrupted(long call, const std::function<std::string()>& work)
{
    return SaidByChild([&]() -> std::string {
        static std::atomic<int> listener = 0;
        std::thread(InterruptEverySecond, std::cref(listener)).detach(); // until the child leaves
        sock_filter steps[] = {
            Step(kLoad, kNumber),
            Step(kJumpIfEqual, static_cast<unsigned>(call), 0, 1),
            Step(kEnd, SECCOMP_RET_USER_NOTIF),
            Step(kEnd, SECCOMP_RET_ALLOW),
        };
        const sock_fprog filter = {std::size(steps), steps};
        const long made = MayFilter() ? syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER,
                                                SECCOMP_FILTER_FLAG_NEW_LISTENER, &filter)
                                      : -1;
        if (made < 0)
            return "no filter";
        listener = static_cast<int>(made);
        return work();
    });
}

size_t OpenFileCount()
{
    size_t count = 0;
    for (int number = 0; number < 1024; ++number)
        count += fcntl(number, F_GETFD) >= 0;
    return count;
}
