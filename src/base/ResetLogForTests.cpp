#include "base/ResetLogForTests.h"

#include "base/ErrorClass.h"
#include "base/KRE_Base.h"
#include "base/Log.h"
#include "base/ReportObserver.h"
#include "base/String.h"

static double (*const kLogClock)() = gLogClock;
static uint64_t (*const kLogFreeMemory)() = gLogFreeMemory;

void ResetLogForTests()
{
    CloseLog();
    gLogEntries = 0;
    gLogStartTime = 0.0;
    gLogDirectory.Clear();
    gLogWithTime = 1;
    gLogSink = nullptr;
    gReportObserver = nullptr;
    gLogClock = kLogClock;
    gLogFreeMemory = kLogFreeMemory;

    gWarningCount = 0;
    gWarningRepeat = 0;
    gLastWarning[0] = 0;
    gErrorRecord = ErrorMsg();

    gKreWarningCount = 0;
    gKreWarningRepeat = 0;
    gKreLastWarning[0] = 0;
    gKreErrorRecord = KRE_Error();
}
