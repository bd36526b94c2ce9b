#include "base/ResetReports.h"

#include "base/ErrorClass.h"
#include "base/KRE_Base.h"
#include "base/Log.h"
#include "base/String.h"

void ResetReports()
{
    gLogEntries = 0;
    gLogStartTime = 0.0;
    gLogDirectory.Clear();

    gWarningCount = 0;
    gWarningRepeat = 0;
    gLastWarning[0] = 0;
    gErrorRecord = ErrorMsg();

    gKreWarningCount = 0;
    gKreWarningRepeat = 0;
    gKreLastWarning[0] = 0;
    gKreErrorRecord = KRE_Error();
}
