#pragma once

#include <ctime>

/// Seconds of a clock that is never set. Workers stop the clock of the engine, but not this one.
inline double SecondsOfClock()
{
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}
