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

/// Takes every entry, cut at 1023 bytes and without a note, in place of the file. Null: the file.
/// For programs that may not write: nothing is counted, limited or left out as a repeat then.
extern void (*gLogSink)(const char* entry);

/// Where the note takes its figures from. Tests put their own in place.
extern double (*gLogClock)();        ///< seconds
extern uint64_t (*gLogFreeMemory)(); ///< bytes of free physical memory

/// Adds one entry to the log, cut at 1023 bytes, followed by its note of time and memory or by a
/// line end. The first entry of a run empties the file; it stays in the directory that was current
/// then. A log that cannot be opened is reported nowhere and the entry is not counted. After 500000
/// entries nothing more is written.
[[gnu::format(printf, 1, 2)]] void LogWrite(const char* format, ...);
