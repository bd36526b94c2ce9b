#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/headless/d3dx/effect/FxDiagnostics.h"

namespace headless::fx {

enum class FxTokenKind : uint8_t {
    End,
    Identifier,
    Number,
    String, ///< includes the quotation marks
    Punctuation,
    Unknown, ///< a byte without a meaning here, or an unterminated string
};

/// A token of an effect's text. `FxSources` owns the bytes.
struct FxToken {
    std::string_view text;
    FxPlace place;
    FxTokenKind kind = FxTokenKind::End;
    // One byte, as a text may have a million of these.
    bool startsLine : 1 = false;
    bool spaceBefore : 1 = false;
    bool isFinal : 1 = false;   ///< never expanded again: it is in that macro's own text
    bool packsRows : 1 = false; ///< matrices declared here lie in rows, unless they say otherwise

    bool Is(std::string_view wanted) const
    {
        return (kind == FxTokenKind::Punctuation || kind == FxTokenKind::Identifier) &&
               text == wanted;
    }
    /// For keywords and states; ignores case.
    bool IsWord(std::string_view wanted) const;
};

/// Compares keywords, states and semantics: A to Z, ignoring case.
bool FxSameWord(std::string_view a, std::string_view b);

/// The token as an error shows it: its text in quotation marks, or "the end of the file".
std::string FxDescribe(const FxToken& token);

} // namespace headless::fx
