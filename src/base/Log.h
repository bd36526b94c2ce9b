#pragma once

#include <cstdint>

class String;

inline constexpr int32_t kMaxLogEntries = 500000;
inline constexpr int32_t kLogTextSize =
    1024; ///< of one entry, terminator included, without its note
inline constexpr const char* kLogFileName = "logfile.txt";

extern int32_t gLogEntries;   ///< entries written in this run
extern double gLogStartTime;  ///< seconds on `gLogClock` at the first entry
extern String& gLogDirectory; ///< current directory at the first entry; outlives every destructor
extern uint8_t gLogWithTime;  ///< 1: each entry carries the note of time and free memory

/// Gets every entry instead of the file, truncated to 1023 bytes and without a note. Null: the file.
/// For programs that must not write a log: entries are not counted, limited or filtered for repeats.
extern void (*gLogSink)(const char* entry);

/// The sources of the note's figures. Tests replace them.
extern double (*gLogClock)();        ///< seconds
extern uint64_t (*gLogFreeMemory)(); ///< bytes of free physical memory

/// Adds one entry to the log, truncated to 1023 bytes, followed by its note of time and memory or by a
/// line end. The first entry of a run empties the file; the log stays in the directory that is current
/// then. If the log cannot be opened, nothing is reported and the entry is not counted. After 500000
/// entries nothing more is written.
[[gnu::format(printf, 1, 2)]] void LogWrite(const char* format, ...);

/// Leaves the log without an open file. The next entry opens it again.
void CloseLog();
