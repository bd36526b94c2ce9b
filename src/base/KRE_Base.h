#pragma once

#include <cstddef>
#include <cstdint>

#include <windows.h>

#include "base/WarningFilter.h"

/// What `KRE_Base` throws, by value. Both texts always end in a NUL.
struct KRE_Error {
    char source[kLabelSize]{};
    char message[kMessageSize]{};
};
static_assert(sizeof(KRE_Error) == 1056);
static_assert(offsetof(KRE_Error, message) == 32);

extern int32_t gKreBaseCount;      ///< live objects of the family
extern int32_t gKreWarningCount;   ///< warnings logged so far
extern uint32_t gKreWarningRepeat; ///< repeats of the last warning that are not logged yet
extern char gKreLastWarning[1024]; ///< text of the last warning
extern KRE_Error gKreErrorRecord;  ///< label and message of the last report

/// Logs the count of repeats of the last warning, if it is not logged yet.
void KreFlushWarningRepeat();

/// Root of the engine classes. Copies are counted as objects of their own. A report does not count as a
/// change of the object.
class KRE_Base {
public:
    /// Logs, sets `errorHappened` and throws `KRE_Error`; overrides must throw as well. A warning before
    /// it names the file being loaded, as in `ErrorClass`.
    [[noreturn]] [[gnu::format(printf, 2, 3)]] virtual void Error(const char* format, ...) const;
    /// Logs, unless the text is the same as last time, and returns.
    [[gnu::format(printf, 2, 3)]] virtual void Warning(const char* format, ...) const;
    virtual ~KRE_Base();

    /// The label of all messages, truncated to 31 bytes; null empties it.
    void SetClassName(const char* name);

    mutable HRESULT lastResult = S_OK; ///< of the last device call
    mutable int32_t errorHappened = 0; ///< set by `Error`
    char className[kLabelSize];

protected:
    KRE_Base();
    KRE_Base(const KRE_Base& other);
    KRE_Base& operator=(const KRE_Base&) = default;
};
