#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "batch/SceneJob.h"

// The table of all messages, as docs/message-codes.md has it.

struct MessageRow {
    uint16_t code;
    MessageLevel level;
    const char* format; ///< as in the call that reports it
};

extern const MessageRow kMessageRows[]; ///< by code
extern const size_t kMessageRowCount;

// Messages of this program itself.
inline constexpr uint16_t kCodeNoKeyword = 901;
inline constexpr uint16_t kCodeNoObject = 902;
inline constexpr uint16_t kCodeSourceChanged = 903;
inline constexpr uint16_t kCodeCannotOpen = 904;
inline constexpr uint16_t kCodeCrashed = 905;
inline constexpr uint16_t kCodeTimedOut = 906;
inline constexpr uint16_t kCodeOutOfMemory = 907;
inline constexpr uint16_t kCodeTargetDirectory = 908;
inline constexpr uint16_t kCodeFrameNotWritten = 909;
inline constexpr uint16_t kCodeDamagedTarget = 910;
inline constexpr uint16_t kCodeSameTarget = 911;
inline constexpr uint16_t kCodeTargetNotRead = 913;
inline constexpr uint16_t kCodeDirectoryNotRead = 914;
inline constexpr uint16_t kCodeUnknown = 915;
inline constexpr uint16_t kCodeTargetNotLoaded = 916;
inline constexpr uint16_t kCodeUnmodelled = 917;
inline constexpr uint16_t kCodeNotImported = 918;
inline constexpr uint16_t kCodeNotCarried = 919;
inline constexpr uint16_t kCodeNotConfined = 920;

/// "Q104".
std::string CodeText(uint16_t code);

/// The row of a code; that of `kCodeUnknown` for a code without one.
const MessageRow& RowOf(uint16_t code);

/// The row whose format gives the text; of several the one with the most letters of its own. A text may
/// have "NAME: " or "File 'NAME': " in front of the message. The row of `kCodeUnknown` if there is none.
const MessageRow& RowOfText(std::string_view text);

/// A message of this program, the one %s of its row replaced by `what`.
SceneMessage OwnMessage(uint16_t code, const std::string& what = "");
