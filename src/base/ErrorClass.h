#pragma once

#include <cstddef>
#include <cstdint>

#include "base/WarningFilter.h"

/// What `ErrorClassSimple` and `ErrorClass` throw, by value. Both texts always end in a NUL.
struct ErrorMsg {
    char source[kLabelSize]{};
    char message[kMessageSize]{};
};
static_assert(sizeof(ErrorMsg) == 1056);
static_assert(offsetof(ErrorMsg, message) == 32);

extern int32_t gErrorClassCount; ///< live objects of the family
extern int32_t gWarningCount;    ///< warnings logged so far, of both classes together
extern uint32_t gWarningRepeat;  ///< repeats of the last warning that are not logged yet
extern char gLastWarning[256];   ///< start of the last warning's text
extern ErrorMsg gErrorRecord;    ///< label and message of the last report

/// Root of the classes that report without a label of their own. Errors are logged and thrown,
/// warnings are logged and guarded against floods. Copies are counted as objects of their own.
class ErrorClassSimple {
public:
    /// Logs and throws `ErrorMsg`. Messages are cut at 1023 bytes. While a file is being loaded that
    /// the message does not name, a warning before it names the file (`LoadInHand.h`); here and below.
    [[gnu::format(printf, 2, 3)]] virtual void Error(const char* format, ...);
    /// Logs, unless the text is the same as last time, and returns.
    [[gnu::format(printf, 2, 3)]] virtual void Warning(const char* format, ...);
    virtual ~ErrorClassSimple();

protected:
    ErrorClassSimple();
    ErrorClassSimple(const ErrorClassSimple&);
    ErrorClassSimple& operator=(const ErrorClassSimple&) = default;
};

/// Root of the foundation classes that report under a label. If an object's `throwOnError` is 0, its
/// `Error` returns: code after a call of `Error` must handle that.
class ErrorClass : public ErrorClassSimple {
public:
    /// Logs, sets `errorHappened` and throws `ErrorMsg` unless `throwOnError` is 0.
    [[gnu::format(printf, 2, 3)]] void Error(const char* format, ...) override;
    [[gnu::format(printf, 2, 3)]] void Warning(const char* format, ...) override;
    /// The label of all messages, truncated to 31 bytes; null empties it.
    void SetClassName(const char* name);

    char className[kLabelSize];
    uint8_t errorHappened = 0; ///< set by `Error`, never cleared here
    uint8_t reserved = 0;
    uint8_t throwOnError = 1;

protected:
    ErrorClass();
};
