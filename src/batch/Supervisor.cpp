#include "batch/Supervisor.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <csignal>
#include <cstring>
#include <thread>
#include <utility>

#include <poll.h>
#include <unistd.h>

#include "batch/MessageTable.h"
#include "batch/PeakMemory.h"
#include "batch/RunReport.h"
#include "batch/SourceTrees.h"
#include "batch/SteadyClock.h"
#include "batch/Worker.h"
#include "platform/headless/win32/AbandonedFiles.h"

namespace {

constexpr double kMemoryInterval = 0.1;  // seconds between two looks at the workers' memory
constexpr double kMostStartSeconds = 60; // for the engine of a worker
constexpr int kMostFailedStarts = 3;     // in a row, of workers that something else ended
constexpr double kLongestWait = 0.25;    // seconds; the status line moves, the state is kept
constexpr size_t kEnoughAhead = kMostAhead / 2;
constexpr useconds_t kGatherMicroseconds = 1000; // scenes of a few kilobytes take a tenth of it
constexpr double kDecisionSeconds = 0.02; // scenes without a job are decided for so long at a time

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
                       int heldByWorkersIn, const SourceTrees* trees)
    : options(optionsIn),
      plan(planIn),
      report(reportIn),
      heldByWorkers(heldByWorkersIn)
{
    setup.engineOptions = options.EngineOptions();
    setup.memoryBytes = options.memoryBytes;
    setup.isStrict = options.strict;
    setup.checks = options.check;
    setup.imports = options.import;
    setup.importOptions = options.importOptions;
    setup.isDurable = options.durable;
    setup.isConfined = trees != nullptr;
    if (!trees)
        return;
    setup.readable = trees->Paths();
    // Beside the supervisor's clock, which is the one that counts.
    setup.processorSeconds = static_cast<uint64_t>(std::ceil(options.timeoutSeconds)) + 1;
}

bool Supervisor::Run()
{
    while (!IsFinished()) {
        const double now = SecondsOfClock();
        StartJobs(now);
        if (BusyCount() > 0 || !MayStart())
            WaitForNews(now);
        else
            HandleSignals();
        RemoveEnded();
        report.Tick(SecondsOfClock());
    }
    plan.End();
    for (const NumberedJob& job : again)
        Skip(job);
    for (const NumberedJob& job : returned)
        Skip(job);
    for (PlannedScene rest = planned ? std::move(*planned) : plan.Next();
         rest.kind != PlannedScene::Kind::kDone; rest = plan.Next())
        Skip({rest.number, rest.job});
    return !isBroken;
}

void Supervisor::Skip(const NumberedJob& job)
{
    SceneResult skipped;
    skipped.status = SceneStatus::kSkipped;
    report.Done(job.number, job.job, skipped);
}

bool Supervisor::IsFinished() const
{
    if (BusyCount() > 0)
        return false;
    return !MayStart() || (!HasMore() && again.empty());
}

size_t Supervisor::BusyCount() const
{
    return static_cast<size_t>(std::count_if(workers.begin(), workers.end(),
                                             [](const auto& worker) { return worker->isBusy; }));
}

size_t Supervisor::MostBusy() const
{
    if (options.workers > 0)
        return static_cast<size_t>(options.workers);
    return std::max(1u, std::thread::hardware_concurrency());
}

void Supervisor::StartJobs(double now)
{
    const double end = now + kDecisionSeconds;
    if (MayStart() && isPlanDone)
        TakeBackForIdle();
    while (MayStart() && HasMore() && !isAlone && HasRoom() && SecondsOfClock() < end) {
        if (options.failFast && !again.empty())
            break;
        if (!StartNext(now))
            break;
    }
    const bool isTimeForAgain = !HasMore() || options.failFast;
    if (MayStart() && isTimeForAgain && !again.empty() && BusyCount() == 0)
        StartAgain(now);
}

/// False when there is nothing more to start.
bool Supervisor::StartNext(double now)
{
    if (!returned.empty()) {
        NumberedJob job = std::move(returned.front());
        returned.pop_front();
        Give(std::move(job), now);
        return MayStart();
    }
    if (!planned)
        planned = plan.Next();
    if (planned->kind == PlannedScene::Kind::kDecided && IsTooEarly())
        return false;
    PlannedScene scene = std::move(*planned);
    planned.reset();
    switch (scene.kind) {
    case PlannedScene::Kind::kDone:
        isPlanDone = true;
        return false;
    case PlannedScene::Kind::kDecided:
        Finish({scene.number, scene.job}, scene.result);
        ClearBeside(scene.job.target);
        ClearBeside(scene.job.frame);
        return true;
    case PlannedScene::Kind::kJob:
        break;
    }
    Give({scene.number, std::move(scene.job)}, now);
    return MayStart();
}

/// A scene without a job is told when those before it are nearly done. But no worker waits for that.
bool Supervisor::IsTooEarly() const
{
    return BusyCount() == MostBusy() &&
           std::any_of(workers.begin(), workers.end(),
                       [](const auto& worker) { return worker->AheadCount() > 1; });
}

/// To a worker without a job, or else to one that can have its next job ahead.
void Supervisor::Give(NumberedJob job, double now)
{
    if (setup.isConfined) { // the worker cannot see which processes have ended
        ClearBeside(job.job.target);
        ClearBeside(job.job.frame);
    }
    WorkerProcess* const worker = BusyCount() < MostBusy() ? IdleWorker() : WorkerForNext();
    if (worker && worker->isBusy)
        worker->StartNext(std::move(job));
    else if (worker)
        worker->Start(std::move(job), now); // if it is gone already, the end of its socket follows
    else
        returned.push_front(std::move(job));
}

/// After a failure of a scene nothing may be begun that a worker has ahead, so with --fail-fast none has.
WorkerProcess* Supervisor::WorkerForNext() const
{
    if (options.failFast)
        return nullptr;
    WorkerProcess* found = nullptr;
    for (const auto& worker : workers) {
        if (worker->MayGetNext() && (!found || worker->AheadCount() < found->AheadCount()))
            found = worker.get();
    }
    return found;
}

bool Supervisor::TakeBack(WorkerProcess& worker)
{
    NumberedJob job;
    if (!worker.TakeLastBack(job))
        return false;
    returned.push_front(std::move(job)); // it came before those that were taken back first
    return true;
}

/// When nothing else is left for workers without a job.
void Supervisor::TakeBackForIdle()
{
    while (BusyCount() + returned.size() < MostBusy()) {
        const auto richest =
            std::max_element(workers.begin(), workers.end(), [](const auto& a, const auto& b) {
                return a->AheadCount() < b->AheadCount();
            });
        if (richest == workers.end() || !TakeBack(**richest))
            return;
    }
}

/// In a worker that has done nothing else.
void Supervisor::StartAgain(double now)
{
    NumberedJob job = std::move(again.front());
    again.pop_front();
    workers.clear();
    isAlone = true;
    if (WorkerProcess* const worker = IdleWorker())
        worker->Start(std::move(job), now);
    else
        returned.push_back(std::move(job));
}

WorkerProcess* Supervisor::IdleWorker()
{
    for (const auto& worker : workers) {
        if (!worker->isBusy && !worker->isSpent && worker->IsRunning())
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

/// To be woken for each of many small scenes would take the processor from the workers. As long as all have
/// enough to do, nobody waits for the answer.
void Supervisor::LetResultsGather() const
{
    const bool haveEnough =
        !workers.empty() && std::all_of(workers.begin(), workers.end(), [](const auto& worker) {
            return worker->AheadCount() >= kEnoughAhead;
        });
    if (haveEnough)
        usleep(kGatherMicroseconds);
}

void Supervisor::WaitForNews(double now)
{
    LetResultsGather();
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
    WatchLimits(SecondsOfClock());
}

/// The first signal lets what is in hand end. The second one ends it. What workers have ahead is not begun.
void Supervisor::HandleSignals()
{
    for (int number = signals.Take(); number != 0; number = signals.Take()) {
        if (signal != 0)
            isKilled = true;
        else
            signal = number;
    }
    for (const auto& worker : workers) {
        while (signal != 0 && TakeBack(*worker))
            continue;
        if (isKilled && worker->isBusy)
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
            TakeReady(worker, message);
        failedStarts = 0;
    }
    if (worker.arrived.IsBroken())
        worker.Kill(WorkerEnd::kItself);
    if (arrival == WireAssembler::Arrival::kEnd)
        TakeEnd(worker);
}

void Supervisor::TakeReady(WorkerProcess& worker, const std::string& message)
{
    worker.startedAt = SecondsOfClock(); // the start of its engine is not the scene's fault
    worker.isReady = true;
    worker.takesNext = !isAlone && message == kWorkerReadyForTwo;
}

void Supervisor::TakeResult(WorkerProcess& worker, const std::string& message)
{
    SceneResult result;
    if (!worker.isBusy || !DecodeResult(message, result)) {
        worker.Kill(WorkerEnd::kItself);
        return;
    }
    NumberedJob job = std::move(worker.inHand);
    worker.EndJob(SecondsOfClock());
    worker.isSpent = setup.isConfined;
    const bool isMemory = result.status == SceneStatus::kOutOfMemory;
    if (isMemory && !isAlone) {
        again.push_back(std::move(job));
        return;
    }
    if (isMemory)
        result.messages.push_back(OwnMessage(kCodeOutOfMemory, SizeText(options.memoryBytes)));
    isAlone = false;
    Finish(job, result);
}

void Supervisor::TakeEnd(WorkerProcess& worker)
{
    const bool wasReady = worker.isReady;
    SceneResult result = worker.Bury();
    for (NumberedJob& job : worker.TakeUntried())
        returned.push_back(std::move(job));
    const bool wasBusy = std::exchange(worker.isBusy, false);
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
        again.push_back(std::move(worker.inHand));
        return;
    } else if (result.status == SceneStatus::kTimedOut) {
        result.messages.push_back(OwnMessage(kCodeTimedOut, SecondsText(options.timeoutSeconds)));
    } else if (result.status == SceneStatus::kOutOfMemory) {
        result.messages.push_back(OwnMessage(kCodeOutOfMemory, SizeText(options.memoryBytes)));
    }
    isAlone = false;
    result.seconds = SecondsOfClock() - worker.startedAt;
    Finish(worker.inHand, result);
}

/// A worker that ended before its scene was begun: the scene goes to another one. If workers end by
/// themselves, or again and again, no scene can be converted.
void Supervisor::TakeFailedStart(WorkerProcess& worker, const SceneResult& result)
{
    const bool mayHelp = worker.WasKilled() && ++failedStarts < kMostFailedStarts;
    if (!mayHelp) {
        isBroken = true;
        error = "a worker cannot start for '" + worker.inHand.job.path + "': " + WhyEnded(result);
    } else if (WorkerProcess* const other = IdleWorker()) {
        other->Start(std::move(worker.inHand), SecondsOfClock());
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

void Supervisor::Finish(const NumberedJob& job, const SceneResult& result)
{
    report.Done(job.number, job.job, result);
    if (options.failFast && IsFailure(result.status))
        hasFailedFast = true;
}

/// A worker clears the directory that it writes to. But where a run was killed after it had made all targets,
/// nothing is written any more.
void Supervisor::ClearBeside(const std::string& file)
{
    const std::string directory = file.substr(0, file.find_last_of('/') + 1);
    if (!file.empty() && cleared.insert(directory).second)
        headless::RemoveAbandoned(directory, 0);
}

void Supervisor::RemoveEnded()
{
    std::erase_if(workers,
                  [](const auto& worker) { return worker->isSpent || !worker->IsRunning(); });
}
