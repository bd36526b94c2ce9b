#include "platform/headless/win32/StoppedClock.h"

#include <windows.h>

#include <ctime>
#include <unistd.h>

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
    const auto pageBytes = static_cast<SIZE_T>(sysconf(_SC_PAGESIZE));
    *statusOut = {};
    statusOut->dwLength = sizeof(MEMORYSTATUS);
    statusOut->dwTotalPhys = static_cast<SIZE_T>(sysconf(_SC_PHYS_PAGES)) * pageBytes;
    statusOut->dwAvailPhys = static_cast<SIZE_T>(sysconf(_SC_AVPHYS_PAGES)) * pageBytes;
}
