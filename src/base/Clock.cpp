#include "base/Clock.h"

#include <windows.h>

static double SecondsPerTick()
{
    LARGE_INTEGER frequency;
    QueryPerformanceFrequency(&frequency);
    return 1.0 / static_cast<double>(frequency.QuadPart);
}

double GetTimeSeconds()
{
    static const double secondsPerTick = SecondsPerTick();
    LARGE_INTEGER ticks;
    QueryPerformanceCounter(&ticks);
    return static_cast<double>(ticks.QuadPart) * secondsPerTick;
}
