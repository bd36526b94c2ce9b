#include "base/ResetLogForTests.h"

#include "base/Log.h"
#include "base/ReportObserver.h"
#include "base/ResetReports.h"

static double (*const kLogClock)() = gLogClock;
static uint64_t (*const kLogFreeMemory)() = gLogFreeMemory;

void ResetLogForTests()
{
    CloseLog();
    ResetReports();
    gLogWithTime = 1;
    gLogSink = nullptr;
    gReportObserver = nullptr;
    gLogClock = kLogClock;
    gLogFreeMemory = kLogFreeMemory;
}
