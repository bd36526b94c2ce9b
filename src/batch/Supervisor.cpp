#include "batch/Supervisor.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <csignal>
#include <cstring>
#include <ctime>
#include <thread>
#include <utility>

#include <poll.h>
#include <unistd.h>

#include "batch/MessageTable.h"
#include "batch/PeakMemory.h"
#include "batch/RunReport.h"

namespace {

constexpr double kMemoryInterval = 0.1;   // seconds between two looks at the workers' memory
constexpr double kMostStartSeconds = 60;  // for the engine of a worker
constexpr int kMostFailedStarts = 3;      // in a row, of workers that something else ended
constexpr double kLongestWait = 0.25;     // seconds; the status line moves, the state is kept
constexpr double kDecisionSeconds = 0.02; // scenes without a job are decided for so long at a time

double ClockSeconds()
{
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

std::string SizeText(uint64_t bytes)
{
    static constexpr const char* kUnits[] = {" bytes", " KiB", " MiB", " GiB", " TiB"};
    size_t unit = 0;
    while (bytes >= 1024 && bytes % 1024 == 0 && unit + 1 < std::size(kUnits)) {
        bytes /= 1024;
        ++unit;
    }
    return std::to_string(bytes) + kUnits[unit];
}

std::string SecondsText(double seconds)
{
    std::string text = std::to_string(seconds);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.')
        text.pop_back();
    return text;
}

} // namespace

Supervisor::Supervisor(const BatchOptions& optionsIn, ScenePlan& planIn, RunReport& reportIn,
                       int heldByWorkersIn)
    : options(optionsIn),
      plan(planIn),
      report(reportIn),
      heldByWorkers(heldByWorkersIn)
{
    setup.engineOptions = options.EngineOptions();
    setup.memoryBytes = options.memoryBytes;
    setup.isStrict = options.strict;
    setup.checks = options.check;
}

bool Supervisor::Run()
{
    while (!IsFinished()) {
        const double now = ClockSeconds();
        StartJobs(now);
        if (BusyCount() > 0 || !MayStart())
            WaitForNews(now);
        else
            HandleSignals();
        RemoveEnded();
        report.Tick(ClockSeconds());
    }
    plan.End();
    for (const AgainJob& job : again)
        Skip(job.number, job.job);
    for (PlannedScene rest = plan.Next(); rest.kind != PlannedScene::Kind::kDone;
         rest = plan.Next())
        Skip(rest.number, rest.job);
    return !isBroken;
}

void Supervisor::Skip(size_t number, const SceneJob& job)
{
    SceneResult skipped;
    skipped.status = SceneStatus::kSkipped;
    report.Done(number, job, skipped);
}

bool Supervisor::IsFinished() const
{
    if (BusyCount() > 0)
        return false;
    return !MayStart() || (isPlanDone && again.empty());
}

size_t Supervisor::BusyCount() const
{
    return static_cast<size_t>(std::count_if(workers.begin(), workers.end(),
                                             [](const auto& worker) { return worker->isBusy; }));
}

void Supervisor::StartJobs(double now)
{
    const auto most = static_cast<size_t>(
        options.workers > 0 ? options.workers
                            : static_cast<int>(std::max(1u, std::thread::hardware_concurrency())));
    const double end = now + kDecisionSeconds;
    while (MayStart() && !isPlanDone && !isAlone && BusyCount() < most && ClockSeconds() < end) {
        if (options.failFast && !again.empty())
            break;
        if (!StartNext(now))
            break;
    }
    const bool isTimeForAgain = isPlanDone || options.failFast;
    if (MayStart() && isTimeForAgain && !again.empty() && BusyCount() == 0)
        StartAgain(now);
}

/// False when there is nothing more to start.
bool Supervisor::StartNext(double now)
{
    const PlannedScene planned = plan.Next();
    switch (planned.kind) {
    case PlannedScene::Kind::kDone:
        isPlanDone = true;
        return false;
    case PlannedScene::Kind::kDecided:
        Finish(planned.number, planned.job, planned.result);
        return true;
    case PlannedScene::Kind::kJob:
        break;
    }
    if (WorkerProcess* const worker = IdleWorker())
        GiveJob(*worker, planned.number, planned.job, now);
    return MayStart();
}

/// In a worker that has done nothing else.
void Supervisor::StartAgain(double now)
{
    const AgainJob job = again.front();
    again.pop_front();
    workers.clear();
    isAlone = true;
    if (WorkerProcess* const worker = IdleWorker())
        GiveJob(*worker, job.number, job.job, now);
}

WorkerProcess* Supervisor::IdleWorker()
{
    for (const auto& worker : workers) {
        if (!worker->isBusy && worker->IsRunning())
            return worker.get();
    }
    workers.push_back(std::make_unique<WorkerProcess>(setup, heldByWorkers));
    if (workers.back()->IsRunning())
        return workers.back().get();
    error = std::string("a worker process cannot be started: ") + std::strerror(errno);
    isBroken = true;
    workers.pop_back();
    return nullptr;
}

void Supervisor::GiveJob(WorkerProcess& worker, size_t number, const SceneJob& job, double now)
{
    worker.Start(job, number, now); // if it is gone already, the end of its socket follows
}

void Supervisor::WaitForNews(double now)
{
    double wait = kLongestWait;
    std::vector<pollfd> handles = {{signals.Handle(), POLLIN, 0}};
    for (const auto& worker : workers) {
        handles.push_back({worker->Socket(), POLLIN, 0});
        if (!worker->isBusy)
            continue;
        const double limit = SecondsOf(*worker);
        if (limit > 0)
            wait = std::min(wait, worker->startedAt + limit - now);
        if (options.memoryBytes > 0)
            wait = std::min(wait, kMemoryInterval);
    }
    const int milliseconds = std::max(0, static_cast<int>(std::ceil(wait * 1000)));
    if (poll(handles.data(), handles.size(), milliseconds) > 0) {
        for (size_t i = 1; i < handles.size();
             ++i) { // workers that start meanwhile have no handle yet
            if (handles[i].revents != 0)
                HandleWorker(*workers[i - 1]);
        }
        if (handles[0].revents != 0)
            HandleSignals();
    }
    WatchLimits(ClockSeconds());
}

/// The first signal lets what is in hand end. The second one ends it.
void Supervisor::HandleSignals()
{
    for (int number = signals.Take(); number != 0; number = signals.Take()) {
        if (signal != 0)
            isKilled = true;
        else
            signal = number;
    }
    if (!isKilled)
        return;
    for (const auto& worker : workers) {
        if (worker->isBusy)
            worker->Kill(WorkerEnd::kItself);
    }
}

void Supervisor::HandleWorker(WorkerProcess& worker)
{
    const WireAssembler::Arrival arrival = worker.arrived.ReadFrom(worker.Socket());
    std::string message;
    while (worker.arrived.Next(message)) {
        if (worker.isReady)
            TakeResult(worker, message);
        else
            worker.startedAt = ClockSeconds(); // the start of its engine is not the scene's fault
        worker.isReady = true;
        failedStarts = 0;
    }
    if (worker.arrived.IsBroken())
        worker.Kill(WorkerEnd::kItself);
    if (arrival == WireAssembler::Arrival::kEnd)
        TakeEnd(worker);
}

void Supervisor::TakeResult(WorkerProcess& worker, const std::string& message)
{
    SceneResult result;
    if (!worker.isBusy || !DecodeResult(message, result)) {
        worker.Kill(WorkerEnd::kItself);
        return;
    }
    worker.isBusy = false;
    const bool isMemory = result.status == SceneStatus::kOutOfMemory;
    if (isMemory && !isAlone) {
        again.push_back({worker.jobNumber, worker.job});
        return;
    }
    if (isMemory)
        result.messages.push_back(OwnMessage(kCodeOutOfMemory, SizeText(options.memoryBytes)));
    isAlone = false;
    Finish(worker.jobNumber, worker.job, result);
}

void Supervisor::TakeEnd(WorkerProcess& worker)
{
    const bool wasBusy = worker.isBusy;
    const bool wasReady = worker.isReady;
    SceneResult result = worker.Bury();
    worker.isBusy = false;
    if (!wasReady && MayStart()) {
        TakeFailedStart(worker, result);
        return;
    }
    if (!wasBusy)
        return;
    if (isKilled || !wasReady) {
        result = SceneResult();
        result.status = SceneStatus::kSkipped;
    } else if (!isAlone) {
        again.push_back({worker.jobNumber, worker.job});
        return;
    } else if (result.status == SceneStatus::kTimedOut) {
        result.messages.push_back(OwnMessage(kCodeTimedOut, SecondsText(options.timeoutSeconds)));
    } else if (result.status == SceneStatus::kOutOfMemory) {
        result.messages.push_back(OwnMessage(kCodeOutOfMemory, SizeText(options.memoryBytes)));
    }
    isAlone = false;
    result.seconds = ClockSeconds() - worker.startedAt;
    Finish(worker.jobNumber, worker.job, result);
}

/// A worker that ended before its scene was begun: the scene goes to another one. If workers end by
/// themselves, or again and again, no scene can be converted.
void Supervisor::TakeFailedStart(WorkerProcess& worker, const SceneResult& result)
{
    const bool mayHelp = worker.WasKilled() && ++failedStarts < kMostFailedStarts;
    if (!mayHelp) {
        isBroken = true;
        error = "a worker cannot start: " + WhyEnded(result);
    } else if (WorkerProcess* const other = IdleWorker()) {
        GiveJob(*other, worker.jobNumber, worker.job, ClockSeconds());
    }
}

std::string Supervisor::WhyEnded(const SceneResult& result) const
{
    if (result.status == SceneStatus::kOutOfMemory)
        return SizeText(options.memoryBytes) + " of memory are too few, see --memory";
    if (result.status == SceneStatus::kTimedOut)
        return "its engine does not start";
    return result.messages.empty() ? "no reason is known" : result.messages.front().text;
}

/// How long a worker may do what it does; 0 for no limit.
double Supervisor::SecondsOf(const WorkerProcess& worker) const
{
    return worker.isReady ? options.timeoutSeconds : kMostStartSeconds;
}

void Supervisor::WatchLimits(double now)
{
    const bool looksAtMemory = options.memoryBytes > 0 && now - memoryLookedAt >= kMemoryInterval;
    if (looksAtMemory)
        memoryLookedAt = now;
    for (const auto& worker : workers) {
        if (!worker->isBusy)
            continue;
        const double limit = SecondsOf(*worker);
        if (limit > 0 && now - worker->startedAt > limit)
            worker->Kill(WorkerEnd::kTimeout);
        else if (looksAtMemory && MemoryOfProcess(worker->Id()) > options.memoryBytes)
            worker->Kill(WorkerEnd::kMemory);
    }
}

void Supervisor::Finish(size_t number, const SceneJob& job, const SceneResult& result)
{
    report.Done(number, job, result);
    if (options.failFast && IsFailure(result.status))
        hasFailedFast = true;
}

void Supervisor::RemoveEnded()
{
    std::erase_if(workers, [](const auto& worker) { return !worker->IsRunning(); });
}
