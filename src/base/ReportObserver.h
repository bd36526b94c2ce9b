#pragma once

#include <cstdint>

enum class ReportKind : uint8_t { kError, kWarning };

/// Sees every error and warning as it comes, also where the log counts it as a repeat.
class ReportObserver {
public:
    /// `source` is the label of the class that reports. The text is cut where the log cuts its entry.
    virtual void OnReport(ReportKind kind, const char* source, const char* text) = 0;

protected:
    ~ReportObserver() = default;
};

extern ReportObserver* gReportObserver; ///< not owned; null: nobody looks

/// Tells the observer, if there is one.
void TellObserver(ReportKind kind, const char* source, const char* text);
