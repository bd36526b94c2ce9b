#pragma once

#include <cstdint>

/// How many times fewer cases tests over many files take on this host: 1 where everything happens in
/// the process, more where each device object is the system's.
extern const int kHostSlowness;

/// Starts to watch the memory of the process anew.
void ForgetPeakMemory();
/// The most bytes that were resident above what was at the last `ForgetPeakMemory`; -1 where the host
/// does not tell, or where a sanitizer holds on to freed memory.
int64_t PeakMemoryGrowth();
