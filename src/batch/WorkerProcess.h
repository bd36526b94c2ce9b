#pragma once

#include <cstdint>
#include <string>

#include <sys/types.h>

#include "batch/Descriptor.h"
#include "batch/SceneJob.h"
#include "batch/Wire.h"

/// Why the supervisor ended a worker.
enum class WorkerEnd : uint8_t { kItself, kTimeout, kMemory };

/// A worker as the supervisor sees it. Its process ends with this object.
class WorkerProcess {
public:
    /// Starts the process, which keeps `heldByWorkers` open. Not running, with `errno`, if that fails.
    WorkerProcess(const WorkerSetup& setup, int heldByWorkers);
    ~WorkerProcess();
    WorkerProcess(const WorkerProcess&) = delete;
    WorkerProcess& operator=(const WorkerProcess&) = delete;

    bool IsRunning() const { return process > 0; }
    pid_t Id() const { return process; }
    int Socket() const { return socket.Get(); }

    /// Gives it a job; `isBusy` from then on.
    bool Start(const SceneJob& job, size_t number, double now);
    /// Ends the process; what it was doing is lost. The end of its socket follows.
    void Kill(WorkerEnd why);
    /// Waits for the end of the process and tells how it ended.
    SceneResult Bury();
    /// Whether a signal ended the process, which is buried.
    bool WasKilled() const { return wasKilled; }

    WireAssembler arrived;
    bool isReady = false; ///< its engine has started
    bool isBusy = false;
    size_t jobNumber = 0; ///< of the job in hand
    SceneJob job;         ///< in hand
    double startedAt = 0; ///< seconds

private:
    [[noreturn]] void BecomeWorker(int socketEnd, int heldByWorkers) const;
    void RemoveLitter() const;
    std::string HostText() const;

    pid_t process = -1;
    Descriptor socket;
    Descriptor errors; ///< its standard error, a file in memory
    WorkerEnd end = WorkerEnd::kItself;
    bool wasKilled = false;
};
