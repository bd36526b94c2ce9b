#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

/// How far a run is.
struct RunProgress {
    size_t total = 0;
    size_t done = 0;
    size_t failed = 0;
    size_t converted = 0;
    uint64_t bytesIn = 0; ///< of converted scenes
    double seconds = 0;   ///< since the run began
};

/// "120 of 1,000, 1 failed, 41.2 files/s, 3.1 MB/s, 21 s left".
std::string ProgressText(const RunProgress& progress);

/// The messages of a run on standard error. On a terminal a line below them shows how far the run is.
class StatusLine {
public:
    /// `isWanted` is false for a run that shall say little.
    explicit StatusLine(bool isWanted);
    ~StatusLine();
    StatusLine(const StatusLine&) = delete;
    StatusLine& operator=(const StatusLine&) = delete;

    /// Writes a line above the status line.
    void Say(const std::string& line);
    /// Shows how far the run is, now and then.
    void Show(const RunProgress& progress);
    /// Takes the status line away.
    void Clear();

private:
    bool isShown = false; ///< whether there may be a status line at all
    bool isThere = false; ///< whether there is one now
    double shownAt = -1;  ///< seconds since the run began
};
