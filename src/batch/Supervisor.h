#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "batch/BatchOptions.h"
#include "batch/ScenePlan.h"
#include "batch/SignalWatch.h"
#include "batch/WorkerProcess.h"

class RunReport;
class SourceTrees;

/// Gives scenes to workers and takes their results, until all is done or a signal ends the run. A worker
/// that crashes, takes too long or too much memory costs its scene only: another one takes its place, and
/// the scene is tried once more alone, when no other one is in hand.
/// A worker is given its next scenes while it has one in hand. What becomes of the one does not count for
/// the others, and a scene that waits while another worker has none goes to that one.
class Supervisor {
public:
    /// `heldByWorkers` is a descriptor that workers keep open as long as they live; -1 for none. `trees` is what
    /// untrusted scenes may read, null if scenes are trusted.
    Supervisor(const BatchOptions& options, ScenePlan& plan, RunReport& report, int heldByWorkers,
               const SourceTrees* trees);

    /// False if workers cannot be started; `error` says why.
    bool Run();
    /// The signal that ended the run; 0 if none did.
    int Signal() const { return signal; }
    std::string error;

private:
    using Workers = std::vector<std::unique_ptr<WorkerProcess>>;

    bool IsFinished() const;
    bool MayStart() const { return signal == 0 && !hasFailedFast && !isBroken; }
    size_t BusyCount() const;
    void StartJobs(double now);
    bool StartNext(double now);
    bool IsTooEarly() const;
    void StartAgain(double now);
    void Give(NumberedJob job, double now);
    size_t MostBusy() const;
    bool HasMore() const { return !isPlanDone || !returned.empty(); }
    bool HasRoom() const { return BusyCount() < MostBusy() || WorkerForNext(); }
    WorkerProcess* IdleWorker();
    WorkerProcess* WorkerForNext() const;
    bool TakeBack(WorkerProcess& worker);
    void TakeBackForIdle();
    void LetResultsGather() const;
    void WaitForNews(double now);
    void HandleSignals();
    void HandleWorker(WorkerProcess& worker);
    void TakeReady(WorkerProcess& worker, const std::string& message);
    void TakeResult(WorkerProcess& worker, const std::string& message);
    void TakeEnd(WorkerProcess& worker);
    void TakeFailedStart(WorkerProcess& worker, const SceneResult& result);
    double SecondsOf(const WorkerProcess& worker) const;
    void WatchLimits(double now);
    void Finish(const NumberedJob& job, const SceneResult& result);
    void Skip(const NumberedJob& job);
    void ClearBeside(const std::string& file);
    void RemoveEnded();
    std::string WhyEnded(const SceneResult& result) const;

    const BatchOptions& options; // not owned, as the next two
    ScenePlan& plan;
    RunReport& report;
    int heldByWorkers;
    WorkerSetup setup;
    SignalWatch signals;
    Workers workers;
    std::set<std::string> cleared; ///< directories
    std::deque<NumberedJob> again; ///< that were tried once
    std::deque<NumberedJob>
        returned; ///< that were taken from the plan, and from a worker that did not try them
    std::optional<PlannedScene> planned; ///< of the plan; it was too early for it
    bool isPlanDone = false;
    bool isAlone = false; ///< the job in hand is one that is tried once more
    bool hasFailedFast = false;
    bool isBroken = false;
    bool isKilled = false; ///< a second signal has come
    int signal = 0;
    int failedStarts = 0;      ///< in a row
    double memoryLookedAt = 0; ///< seconds
};
