#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

#include "tests/support/RunProgram.h"

/// A run of qsbatch that goes on while the test does something to it. It is killed with this object if it
/// still runs.
class BackgroundBatch {
public:
    explicit BackgroundBatch(const std::vector<std::string>& arguments);
    ~BackgroundBatch();
    BackgroundBatch(const BackgroundBatch&) = delete;
    BackgroundBatch& operator=(const BackgroundBatch&) = delete;

    pid_t Id() const { return process; }
    /// The workers that run now.
    std::vector<pid_t> Workers() const;
    /// Those of them that sleep over a scene of the directory "in", as one does that waits for a pipe.
    std::vector<pid_t> WaitingWorkers() const;
    /// Waits until a worker other than `than` waits so. 0 if the run ends before.
    pid_t AwaitWorker(pid_t than = 0) const;
    void Signal(int number) const;
    /// The same, and waits until the run has taken notice of it.
    void SignalAndAwait(int number) const;
    /// Whether the run has ended; `Wait` has to follow.
    bool HasEnded() const;
    /// Whether the supervisor waits for news.
    bool IsAsleep() const;
    /// Seconds of processor time that the supervisor has taken.
    double ProcessorSeconds() const;
    /// Waits for the end. The status is 128 and the signal's number for a process that was killed.
    ProgramRun Wait();

private:
    pid_t process = -1;
    std::string base; ///< of the files of its output
};

/// Tries a condition for a minute, which no machine needs.
template <typename Condition>
bool Eventually(Condition condition);

/// Sleeps for so many milliseconds.
void SleepFor(int milliseconds);

template <typename Condition>
bool Eventually(Condition condition)
{
    for (int i = 0; i < 6000; ++i) {
        if (condition())
            return true;
        SleepFor(10);
    }
    return false;
}
