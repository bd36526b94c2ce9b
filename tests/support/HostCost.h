#pragma once

#include <cstdint>

/// By how much tests over many files reduce their cases on this host: 1 where everything happens in
/// the process, more where each device object is the system's, or a sanitizer looks on.
extern const int kHostSlowness;
/// How many of so many like cases this build runs: all, or a fifth under sanitizers and on Windows, where each
/// costs ten times as much.
inline int AffordableCases(int cases)
{
    return kHostSlowness > 1 ? cases / 5 : cases;
}

/// Restarts the measurement of the process's peak memory.
void ForgetPeakMemory();
/// The peak of resident memory in bytes above that at the last `ForgetPeakMemory`; -1 if the host
/// does not report it, or if a sanitizer holds on to freed memory.
int64_t PeakMemoryGrowth();
