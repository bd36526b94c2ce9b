#pragma once

#include <cstdint>

inline constexpr int32_t kLabelSize = 32;     ///< of a class label, terminator included
inline constexpr int32_t kMessageSize = 1024; ///< of a formatted message, terminator included
inline constexpr int32_t kMaxWarnings = 0x10000;
inline constexpr uint32_t kMaxWarningRepeat = 0xFFFFFFF;

/// State shared by the warnings of one family of classes. Not owned: the module's variables.
struct WarningState {
    int32_t& count;   ///< warnings logged so far; the family is silent from `kMaxWarnings` on
    uint32_t& repeat; ///< repeats of the last warning that are not logged yet
    char* lastText;
    int32_t lastTextSize;     ///< bytes at `lastText`, terminator included
    const char* limitMessage; ///< logged once, after the last warning
};

/// Logs a warning unless its text equals the previous one; repeats are counted, and their count is logged
/// before the next different one. Do not call it once `count` has reached `kMaxWarnings`.
void FilterWarning(const WarningState& state, const char* text);

/// Logs the count of repeats not logged yet, if there are any, and sets it to 0.
void FlushWarningRepeat(uint32_t& repeat);
