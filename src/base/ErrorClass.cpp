#include "base/ErrorClass.h"

#include <cstdarg>

#include "base/FormatText.h"
#include "base/LoadInHand.h"
#include "base/Log.h"
#include "base/ReportObserver.h"

int32_t gErrorClassCount = 0;
int32_t gWarningCount = 0;
uint32_t gWarningRepeat = 0;
char gLastWarning[256] = "";
ErrorMsg gErrorRecord;

static constexpr const char* kSimpleLabel = "ErrorClassSimple";
static constexpr size_t kTextSize = 2048; // prefix, label and message

static constinit const WarningState kWarnings = {gWarningCount, gWarningRepeat, gLastWarning,
                                                 sizeof gLastWarning,
                                                 "ErrorClass: Maximum number of warnings reached!"};

static void FillRecord(const char* label, const char* message)
{
    CopyText(gErrorRecord.message, sizeof gErrorRecord.message, message);
    CopyText(gErrorRecord.source, sizeof gErrorRecord.source, label);
}

static void LogWarning(const char* label, const char* message)
{
    if (gWarningCount >= kMaxWarnings)
        return;
    FillRecord(label, message);
    TellObserver(ReportKind::kWarning, label, message);
    char text[kTextSize];
    FormatText(text, sizeof text, "Warning:%s: %s", label, gErrorRecord.message);
    FilterWarning(kWarnings, text);
}

static void LogWarning(const char* label, const char* format, va_list arguments)
{
    char message[kMessageSize];
    FormatTextV(message, sizeof message, format, arguments);
    LogWarning(label, message);
}

/// Fills the record and logs the error, without throwing.
static void LogError(const char* label, const char* format, va_list arguments)
{
    char message[kMessageSize];
    FormatTextV(message, sizeof message, format, arguments);
    char load[kMessageSize];
    if (DescribeLoad(message, load, sizeof load))
        LogWarning(label, load);

    FillRecord(label, message);
    TellObserver(ReportKind::kError, label, message);
    char text[kTextSize];
    FormatText(text, sizeof text, "Error:%s: %s", label, gErrorRecord.message);
    LogWrite("%s", text);
}

ErrorClassSimple::ErrorClassSimple()
{
    ++gErrorClassCount;
}

ErrorClassSimple::ErrorClassSimple(const ErrorClassSimple&)
{
    ++gErrorClassCount;
}

ErrorClassSimple::~ErrorClassSimple()
{
    if (--gErrorClassCount <= 0)
        FlushWarningRepeat(gWarningRepeat);
}

void ErrorClassSimple::Error(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    LogError(kSimpleLabel, format, arguments);
    va_end(arguments);
    throw ErrorMsg(gErrorRecord);
}

void ErrorClassSimple::Warning(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    LogWarning(kSimpleLabel, format, arguments);
    va_end(arguments);
}

ErrorClass::ErrorClass()
{
    SetClassName("Undefined");
}

void ErrorClass::SetClassName(const char* name)
{
    CopyText(className, sizeof className, name);
}

void ErrorClass::Error(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    LogError(className, format, arguments);
    va_end(arguments);
    errorHappened = 1;
    if (throwOnError)
        throw ErrorMsg(gErrorRecord);
}

void ErrorClass::Warning(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    LogWarning(className, format, arguments);
    va_end(arguments);
}
