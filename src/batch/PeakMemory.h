#pragma once

#include <cstdint>

#include <sys/types.h>

/// Begins to measure anew: the peak so far is forgotten, where the system can.
void ResetPeakMemory();

/// The most memory that this process had at a time, in KiB.
uint64_t PeakMemoryKiB();

/// The memory that another process has now, in bytes; 0 if it is gone.
uint64_t MemoryOfProcess(pid_t process);
