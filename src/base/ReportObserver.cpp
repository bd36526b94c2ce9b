#include "base/ReportObserver.h"

#include <cstring>

#include "base/FormatText.h"
#include "base/Log.h"

ReportObserver* gReportObserver = nullptr;

void TellObserver(ReportKind kind, const char* source, const char* text)
{
    if (!gReportObserver)
        return;
    const char* const mark = kind == ReportKind::kError ? "Error:" : "Warning:";
    char entry[kLogTextSize];
    FormatText(entry, sizeof entry, "%s%s: %s", mark, source, text);
    gReportObserver->OnReport(kind, source, entry + std::strlen(mark) + std::strlen(source) + 2);
}
