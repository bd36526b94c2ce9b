#pragma once

#include <cstdint>

/// By how much tests over many files reduce their cases on this host: 1 where everything happens in
/// the process, more where each device object is the system's.
extern const int kHostSlowness;

/// Restarts the measurement of the process's peak memory.
void ForgetPeakMemory();
/// The peak of resident memory in bytes above that at the last `ForgetPeakMemory`; -1 if the host
/// does not report it, or if a sanitizer holds on to freed memory.
int64_t PeakMemoryGrowth();
