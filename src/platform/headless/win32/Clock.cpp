#include "platform/headless/win32/StoppedClock.h"

#include <windows.h>

#include <ctime>
#include <sys/sysinfo.h>

static bool gClockStands = false;

void headless::StopClock()
{
    gClockStands = true;
}

BOOL WINAPI QueryPerformanceFrequency(LARGE_INTEGER* frequencyOut)
{
    frequencyOut->QuadPart = 1000000000;
    return TRUE;
}

BOOL WINAPI QueryPerformanceCounter(LARGE_INTEGER* countOut)
{
    timespec now = {1, 0}; // a count that a clock may have
    if (!gClockStands)
        clock_gettime(CLOCK_MONOTONIC, &now);
    countOut->QuadPart = static_cast<LONGLONG>(now.tv_sec) * 1000000000 + now.tv_nsec;
    return TRUE;
}

void WINAPI GlobalMemoryStatus(MEMORYSTATUS* statusOut)
{
    *statusOut = {};
    statusOut->dwLength = sizeof(MEMORYSTATUS);
    struct sysinfo memory;
    if (sysinfo(&memory) != 0)
        return;
    statusOut->dwTotalPhys = static_cast<SIZE_T>(memory.totalram) * memory.mem_unit;
    statusOut->dwAvailPhys = static_cast<SIZE_T>(memory.freeram) * memory.mem_unit;
}
