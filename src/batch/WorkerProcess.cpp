#include "batch/WorkerProcess.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>
#include <iterator>
#include <memory>
#include <optional>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/wait.h>

#include "batch/MessageTable.h"
#include "batch/SteadyCalls.h"
#include "batch/Worker.h"
#include "platform/headless/win32/DirectoryEntries.h"
#include "platform/headless/win32/TemporaryName.h"
#include "platform/headless/win32/Uninterrupted.h"

namespace {

constexpr int kWorkerSocket = 3;  // numbers in the worker
constexpr int kOtherNumbers = 10; // from here on nothing is in the way of them
constexpr int kMostEndWaits = 2000;
constexpr useconds_t kEndWaitMicroseconds = 1000;

/// About so many on its way to the worker.
size_t BytesOf(const SceneJob& job)
{
    return job.path.size() + job.target.size() + job.frame.size() + 32;
}

/// A key that ends the run goes to all processes of the terminal, but what becomes of workers is the
/// supervisor's decision; also while they start.
void LeaveSignalsToSupervisor()
{
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        std::signal(number, SIG_IGN);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

} // namespace

WorkerProcess::WorkerProcess(const WorkerSetup& setup, int heldByWorkers)
    : temporaryStart(headless::TemporaryNameStart())
{
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
        return;
    socket = Descriptor(ends[0]);
    const Descriptor other(ends[1]);
    const Descriptor ticketFile(JobTicket::MakeFile());
    ticket.Open(ticketFile.Get());
    errors = Descriptor(memfd_create("worker-errors", MFD_CLOEXEC));
    process = fork();
    if (process == 0)
        BecomeWorker(other.Get(), ticketFile.Get(), heldByWorkers);
    if (process > 0 && !SendWire(socket.Get(), EncodeSetup(setup)))
        Kill(WorkerEnd::kItself);
}

/// In the new process: only calls that are safe after a fork.
void WorkerProcess::BecomeWorker(int socketEnd, int ticketFile, int heldByWorkers) const
{
    LeaveSignalsToSupervisor();
    const int nothing = headless::Uninterrupted([] { return open("/dev/null", O_RDWR); });
    dup2(nothing, STDIN_FILENO);
    dup2(nothing, STDOUT_FILENO);
    dup2(errors.IsOpen() ? errors.Get() : nothing, STDERR_FILENO);
    const int socketCopy = fcntl(socketEnd, F_DUPFD_CLOEXEC, kOtherNumbers);
    const int heldCopy = fcntl(heldByWorkers, F_DUPFD_CLOEXEC, kOtherNumbers);
    const int ticketCopy = fcntl(ticketFile, F_DUPFD_CLOEXEC, kOtherNumbers);
    dup2(socketCopy, kWorkerSocket);
    close(kWorkerTicket);
    if (heldCopy >= 0)
        dup2(heldCopy, kWorkerHeld);
    if (ticketCopy >= 0)
        dup2(ticketCopy, kWorkerTicket);
    execl("/proc/self/exe", "qsbatch", "--worker", "3", static_cast<char*>(nullptr));
    _exit(kWorkerNoEngine);
}

WorkerProcess::~WorkerProcess()
{
    if (!IsRunning())
        return;
    if (isBusy || isSpent) {
        End();
        return;
    }
    socket.Close(); // it ends when there are no more jobs
    for (int i = 0; i < kMostEndWaits; ++i) {
        if (waitpid(process, nullptr, WNOHANG) != 0)
            return;
        usleep(kEndWaitMicroseconds);
    }
    kill(process, SIGKILL); // it was stopped, or hangs
    waitpid(process, nullptr, 0);
}

bool WorkerProcess::Start(NumberedJob given, double now)
{
    inHand = std::move(given);
    inHand.job.ticket = 0;
    startedAt = now;
    isBusy = true;
    return SendWire(socket.Get(), EncodeJob(inHand.job));
}

void WorkerProcess::StartNext(NumberedJob given)
{
    static_assert(JobTicket::kMost > kMostAhead); // and one in hand that it may not have begun
    given.job.ticket = ++lastTicket;
    ticket.Put(lastTicket);
    SendWire(socket.Get(), EncodeJob(given.job)); // if it is gone, the end of its socket follows
    aheadBytes += BytesOf(given.job);
    ahead.push_back(std::move(given));
}

bool WorkerProcess::TakeLastBack(NumberedJob& takenOut)
{
    if (ahead.empty() || !ticket.Take(ahead.back().job.ticket))
        return false;
    takenOut = std::move(ahead.back());
    ahead.pop_back();
    return true;
}

void WorkerProcess::EndJob(double now)
{
    isBusy = !ahead.empty();
    if (!isBusy)
        return;
    inHand = std::move(ahead.front());
    ahead.pop_front();
    aheadBytes = ahead.empty() ? 0 : aheadBytes - BytesOf(inHand.job);
    startedAt = now;
    isEndOfOther = end != WorkerEnd::kItself;
}

void WorkerProcess::Kill(WorkerEnd why)
{
    if (end == WorkerEnd::kItself)
        end = why;
    kill(process, SIGKILL);
}

std::string WorkerProcess::HostText() const
{
    char text[512];
    const ssize_t got = errors.IsOpen() ? ReadAt(errors.Get(), text, sizeof text, 0) : 0;
    return got > 0 ? std::string(text, static_cast<size_t>(got)) : std::string();
}

/// Removes the unfinished files of a process that was ended. It may have begun any of the jobs that it was given, so
/// the directories of all of them are searched. Allocates nothing: the process may have ended for lack of memory.
void WorkerProcess::RemoveLitter() const
{
    std::optional<std::string_view> last; // neighbours are often in one directory
    const auto removeBeside = [&](std::string_view path) {
        const std::string_view directory = path.substr(0, path.find_last_of('/') + 1);
        if (path.empty() || directory == last)
            return;
        RemoveLitterIn(directory);
        last = directory;
    };
    for (const std::string SceneJob::*const path : {&SceneJob::target, &SceneJob::frame}) {
        removeBeside(inHand.job.*path);
        for (const NumberedJob& job : ahead)
            removeBeside(job.job.*path);
    }
}

/// In a directory with its separator; empty for the current one.
void WorkerProcess::RemoveLitterIn(std::string_view directory) const
{
    char path[PATH_MAX] = "./";
    if (directory.size() >= sizeof path)
        return;
    std::copy(directory.begin(), directory.end(), path);
    if (!directory.empty())
        path[directory.size()] = '\0';
    constexpr int kFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK;
    const int opened = headless::Uninterrupted([&] { return open(path, kFlags); });
    const struct {
        const WorkerProcess& worker;
        int directory;
    } in = {*this, opened};
    headless::VisitEntries(opened, [&in](const dirent& entry) {
        if (headless::IsTemporaryNameOf(entry.d_name, in.worker.temporaryStart, in.worker.process))
            unlinkat(in.directory, entry.d_name, 0);
    });
}

/// Ends the process and waits for its end; returns its status, as `waitpid` has it.
int WorkerProcess::End()
{
    kill(process, SIGKILL);
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR)
        continue;
    if (isBusy)
        RemoveLitter();
    process = -1;
    wasKilled = WIFSIGNALED(status);
    return status;
}

SceneResult WorkerProcess::Bury()
{
    const int status = End(); // its socket is closed: it is of no more use, whatever it does
    SceneResult result;
    const bool isOutOfMemory = WIFEXITED(status) && WEXITSTATUS(status) == kWorkerOutOfMemory;
    if (end == WorkerEnd::kTimeout) {
        result.status = SceneStatus::kTimedOut;
    } else if (end == WorkerEnd::kMemory || isOutOfMemory) {
        result.status = SceneStatus::kOutOfMemory;
    } else {
        result.status = SceneStatus::kCrashed;
        std::string how = WIFSIGNALED(status) ? strsignal(WTERMSIG(status))
                                              : "status " + std::to_string(WEXITSTATUS(status));
        const std::string said = HostText();
        if (!said.empty())
            how += ": " + said.substr(0, said.find('\n'));
        result.messages.push_back(OwnMessage(kCodeCrashed, how));
    }
    return result;
}

std::vector<NumberedJob> WorkerProcess::TakeUntried()
{
    std::vector<NumberedJob> untried;
    const uint32_t number = isBusy ? inHand.job.ticket : 0;
    if (isBusy && (isEndOfOther || (number != 0 && ticket.Take(number)))) {
        untried.push_back(std::move(inHand));
        isBusy = false;
    }
    std::move(ahead.begin(), ahead.end(), std::back_inserter(untried));
    ahead.clear();
    aheadBytes = 0;
    return untried;
}
