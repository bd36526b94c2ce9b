#include "batch/Worker.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <new>
#include <string>
#include <utility>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include "base/ErrorClass.h"
#include "base/KRE_Base.h"
#include "base/Log.h"
#include "batch/Confinement.h"
#include "batch/Descriptor.h"
#include "batch/JobTicket.h"
#include "batch/MessageTable.h"
#include "batch/PeakMemory.h"
#include "batch/SceneConverter.h"
#include "batch/SourceTrees.h"
#include "batch/SteadyCalls.h"
#include "batch/Wire.h"
#include "batch/WorkingDirectory.h"
#include "platform/headless/win32/FileLookups.h"
#include "platform/headless/win32/SyncedFiles.h"
#include "platform/headless/win32/TemporaryName.h"
#include "platform/headless/win32/Uninterrupted.h"

// An address sanitizer takes terabytes of address space for itself.
#if defined(__SANITIZE_ADDRESS__)
#define BATCH_HAS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define BATCH_HAS_SANITIZER 1
#endif
#endif

namespace {

/// Files of a crash would lie about in the directories of scenes. If memory runs short, the system shall
/// take it from a worker and not from the supervisor.
void PrepareProcess()
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGXFSZ})
        std::signal(number, SIG_IGN);
    const rlimit none = {0, 0};
    setrlimit(RLIMIT_CORE, &none);
    const Descriptor score = OpenAt(AT_FDCWD, "/proc/self/oom_score_adj", O_WRONLY | O_CLOEXEC);
    const auto put = [&] { return write(score.Get(), "900", 3); };
    if (score.IsOpen() && headless::Uninterrupted(put) < 0)
        return; // a hint only
}

/// Memory that is short ends the worker at once: what an engine does with half of its memory is not what
/// a run of its own would have done.
void LimitMemory(uint64_t bytes)
{
    std::set_new_handler([] { _exit(kWorkerOutOfMemory); });
#ifndef BATCH_HAS_SANITIZER
    if (bytes == 0)
        return;
    const rlimit limit = {bytes, bytes};
    setrlimit(RLIMIT_AS, &limit);
#else
    static_cast<void>(bytes);
#endif
}

/// What the host has written to standard error, which is empty afterwards.
std::string TakeHostText()
{
    const off_t size = lseek(STDERR_FILENO, 0, SEEK_END);
    if (size <= 0)
        return "";
    std::string text(static_cast<size_t>(size), '\0');
    const ssize_t got = ReadAt(STDERR_FILENO, text.data(), text.size(), 0);
    text.resize(got > 0 ? static_cast<size_t>(got) : 0);
    if (ftruncate(STDERR_FILENO, 0) != 0)
        return "";
    lseek(STDERR_FILENO, 0, SEEK_SET);
    return text;
}

void AddHostMessages(SceneResult& result)
{
    const std::string text = TakeHostText();
    for (size_t at = 0; at < text.size();) {
        const size_t end = std::min(text.find('\n', at), text.size());
        SceneMessage message = OwnMessage(kCodeUnmodelled);
        message.text = text.substr(at, end - at);
        message.source = "host";
        if (!message.text.empty())
            result.messages.push_back(std::move(message));
        at = end + 1;
    }
}

/// Descriptors that whoever started the program left open are no business of a confined worker; nor is the lock of
/// the state, through which the state could be written.
void CloseOtherFiles(int socket)
{
    close(kWorkerHeld);
    close_range(static_cast<unsigned>(std::max(socket, kWorkerTicket)) + 1, ~0u, 0);
}

/// Opens what is kept open, as it cannot be opened later.
void OpenWhatIsKept()
{
    headless::TemporaryOwner::ThisProcess();
    ResetPeakMemory();
    PeakMemoryKiB();
}

/// From here on the scene may decide what the process does. Gives what failed; empty if nothing did.
std::string CloseIn(const WorkerSetup& setup, const SceneJob& job, int socket)
{
    ConfinementRules rules;
    rules.readable = setup.readable;
    rules.mostFileBytes = setup.memoryBytes; // a target is made in memory
    rules.processorSeconds = setup.processorSeconds;
    rules.socket = socket;
    for (const std::string& result : {job.target, job.frame}) {
        const Descriptor directory =
            result.empty() ? Descriptor() : MakeDirectory(AT_FDCWD, SplitPath(result).directory);
        if (!directory.IsOpen())
            continue; // the scene fails when it is opened again
        rules.writable.push_back(PathOfDirectory(directory));
        if (setup.isDurable && !headless::SyncNamesAbove(rules.writable.back()))
            return "'" + rules.writable.back() + "': " + std::strerror(errno);
        for (const std::string& tree : setup.readable) {
            if (IsInDirectory(rules.writable.back(), tree))
                return "'" + rules.writable.back() + "' is among the sources";
        }
    }
    OpenWhatIsKept();
    headless::gRegularFilesOnly = true;
    return Confine(rules);
}

/// The one scene of a confined worker.
SceneResult ConvertConfined(const WorkerSetup& setup, const SceneJob& job, int socket,
                            SceneConverter& converter)
{
    const std::string failure = CloseIn(setup, job, socket);
    if (failure.empty())
        return converter.Convert(job);
    SceneResult result;
    result.messages.push_back(OwnMessage(kCodeNotConfined, failure));
    return result;
}

int ServeJobs(int socket, WireAssembler& arrived, const WorkerSetup& setup, JobTicket& ticket)
{
    SceneConverter converter(setup);
    const bool takesTwo = ticket.IsOpen() && !setup.isConfined;
    if (!SendWire(socket, takesTwo ? kWorkerReadyForTwo : kWorkerReady))
        return 0;
    std::string message;
    SceneJob job;
    while (arrived.Await(socket, message) && DecodeJob(message, job)) {
        if (job.ticket != 0 && !ticket.Take(job.ticket))
            continue; // taken back
        SceneResult result = setup.isConfined ? ConvertConfined(setup, job, socket, converter)
                                              : converter.Convert(job);
        AddHostMessages(result);
        if (!SendWire(socket, EncodeResult(result)) || setup.isConfined)
            break;
    }
    return 0; // the supervisor is gone or has no more work
}

} // namespace

int RunWorker(int socket)
{
    for (const int number : {socket, kWorkerTicket})
        fcntl(number, F_SETFD, FD_CLOEXEC);
    PrepareProcess();
    gLogSink = [](const char*) {};
    std::string message;
    WorkerSetup setup;
    WireAssembler arrived;
    JobTicket ticket;
    ticket.Open(kWorkerTicket);
    if (!arrived.Await(socket, message) || !DecodeSetup(message, setup))
        return kWorkerNoEngine;
    LimitMemory(setup.memoryBytes);
    headless::gSyncsReplacements = setup.isDurable;
    if (setup.isConfined)
        CloseOtherFiles(socket);
    try {
        return ServeJobs(socket, arrived, setup, ticket);
    } catch (const KRE_Error& error) {
        std::fprintf(stderr, "%s\n", error.message);
    } catch (const ErrorMsg& error) {
        std::fprintf(stderr, "%s\n", error.message);
    }
    return kWorkerNoEngine;
}
