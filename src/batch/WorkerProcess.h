#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

#include "batch/Descriptor.h"
#include "batch/JobTicket.h"
#include "batch/SceneJob.h"
#include "batch/Wire.h"

/// Why the supervisor ended a worker.
enum class WorkerEnd : uint8_t { kItself, kTimeout, kMemory };

/// A job and the number of its scene in the list.
struct NumberedJob {
    size_t number = 0;
    SceneJob job;
};

/// Jobs that a worker may have besides the one in hand.
inline constexpr size_t kMostAhead = 32;
/// Bytes of these on their way. They must fit into the socket: a supervisor that waits for a worker to read
/// them could not read a long result that the worker waits to hand over.
inline constexpr size_t kMostAheadBytes = 32768;

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
    bool Start(NumberedJob given, double now);
    /// Whether it can be given another job while it has one in hand.
    bool MayGetNext() const
    {
        return isBusy && takesNext && ahead.size() < kMostAhead && aheadBytes < kMostAheadBytes;
    }
    /// Gives it another job, which it begins when those before are done.
    void StartNext(NumberedJob given);
    /// Jobs that it has besides the one in hand.
    size_t AheadCount() const { return ahead.size(); }
    /// Takes the last of these back. False if there is none, or if the worker has begun it.
    bool TakeLastBack(NumberedJob& takenOut);
    /// The job in hand is done: the next one is in hand, if there is one.
    void EndJob(double now);
    /// Ends the process; what it was doing is lost. The end of its socket follows.
    void Kill(WorkerEnd why);
    /// Waits for the end of the process and tells how it ended.
    SceneResult Bury();
    /// Takes the jobs of a process that is buried and that its end says nothing about: those that it had
    /// not begun, and one that it had begun when it was ended for an earlier one.
    std::vector<NumberedJob> TakeUntried();
    /// Whether a signal ended the process, which is buried.
    bool WasKilled() const { return wasKilled; }

    WireAssembler arrived;
    bool isReady = false; ///< its engine has started
    bool isBusy = false;
    bool takesNext = false; ///< it can be given jobs ahead
    bool isSpent = false;   ///< it was for one job, which is done
    NumberedJob inHand;
    double startedAt = 0; ///< seconds

private:
    [[noreturn]] void BecomeWorker(int socketEnd, int ticketFile, int heldByWorkers) const;
    int End();
    void RemoveLitter() const;
    void RemoveLitterIn(std::string_view directory) const;
    std::string HostText() const;

    const std::string temporaryStart; ///< of the names of its temporary files
    pid_t process = -1;
    Descriptor socket;
    Descriptor errors; ///< its standard error, a file in memory
    JobTicket ticket;
    uint32_t lastTicket = 0;
    std::deque<NumberedJob> ahead;
    size_t aheadBytes = 0; ///< of these, and of those taken back since there were none
    WorkerEnd end = WorkerEnd::kItself;
    bool isEndOfOther = false; ///< it was ended for a job before the one in hand
    bool wasKilled = false;
};
