#include "base/KRE_Base.h"

#include <cstdarg>

#include "base/FormatText.h"
#include "base/LoadInHand.h"
#include "base/Log.h"
#include "base/ReportObserver.h"

int32_t gKreBaseCount = 0;
int32_t gKreWarningCount = 0;
uint32_t gKreWarningRepeat = 0;
char gKreLastWarning[1024] = "";
KRE_Error gKreErrorRecord;

static constexpr size_t kKreTextSize = 1024; // prefix, label and message

static constinit const WarningState kKreWarnings = {
    gKreWarningCount, gKreWarningRepeat, gKreLastWarning, sizeof gKreLastWarning,
    "KRE_Base: Maximum number of warnings reached!"};

static void FillKreRecord(const char* label, const char* message)
{
    CopyText(gKreErrorRecord.message, sizeof gKreErrorRecord.message, message);
    CopyText(gKreErrorRecord.source, sizeof gKreErrorRecord.source, label);
}

void KreFlushWarningRepeat()
{
    FlushWarningRepeat(gKreWarningRepeat);
}

KRE_Base::KRE_Base()
{
    ++gKreBaseCount;
    SetClassName("Undefined");
}

KRE_Base::KRE_Base(const KRE_Base& other)
    : lastResult(other.lastResult),
      errorHappened(other.errorHappened)
{
    ++gKreBaseCount;
    SetClassName(other.className);
}

KRE_Base::~KRE_Base()
{
    if (--gKreBaseCount <= 0)
        KreFlushWarningRepeat();
}

void KRE_Base::SetClassName(const char* name)
{
    CopyText(className, sizeof className, name);
}

void KRE_Base::Error(const char* format, ...) const
{
    char message[kMessageSize];
    va_list arguments;
    va_start(arguments, format);
    FormatTextV(message, sizeof message, format, arguments);
    va_end(arguments);
    char load[kMessageSize];
    if (DescribeLoad(message, load, sizeof load))
        KRE_Base::Warning("%s", load);

    FillKreRecord(className, message);
    TellObserver(ReportKind::kError, className, message);
    char text[kKreTextSize];
    FormatText(text, sizeof text, "Error:%s: %s", className, gKreErrorRecord.message);
    errorHappened = 1;
    LogWrite("%s", text);
    throw KRE_Error(gKreErrorRecord);
}

void KRE_Base::Warning(const char* format, ...) const
{
    if (gKreWarningCount >= kMaxWarnings)
        return;
    char message[kMessageSize];
    va_list arguments;
    va_start(arguments, format);
    FormatTextV(message, sizeof message, format, arguments);
    va_end(arguments);

    FillKreRecord(className, message);
    TellObserver(ReportKind::kWarning, className, message);
    char text[kKreTextSize];
    FormatText(text, sizeof text, "Warning:%s: %s", className, gKreErrorRecord.message);
    FilterWarning(kKreWarnings, text);
}
