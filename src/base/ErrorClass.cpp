#include "base/ErrorClass.h"

#include <cstdarg>

#include "base/FormatText.h"
#include "base/Log.h"

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

/// Fills the record and logs the error, without throwing.
static void LogError(const char* label, const char* format, va_list arguments)
{
    FormatTextV(gErrorRecord.message, sizeof gErrorRecord.message, format, arguments);
    CopyText(gErrorRecord.source, sizeof gErrorRecord.source, label);

    char text[kTextSize];
    FormatText(text, sizeof text, "Error:%s: %s", label, gErrorRecord.message);
    LogWrite("%s", text);
}

static void LogWarning(const char* label, const char* format, va_list arguments)
{
    if (gWarningCount >= kMaxWarnings)
        return;
    FormatTextV(gErrorRecord.message, sizeof gErrorRecord.message, format, arguments);
    CopyText(gErrorRecord.source, sizeof gErrorRecord.source, label);

    char text[kTextSize];
    FormatText(text, sizeof text, "Warning:%s: %s", label, gErrorRecord.message);
    FilterWarning(kWarnings, text);
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
