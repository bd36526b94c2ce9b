#include "tests/support/HostCost.h"

const int kHostSlowness = 160;

void ForgetPeakMemory()
{}

int64_t PeakMemoryGrowth()
{
    return -1; // the peak of a process cannot be reset
}
