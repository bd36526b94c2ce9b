#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/headless/d3dx/effect/FxDiagnostics.h"

namespace headless::fx {

enum class FxTokenKind : std::uint8_t {
    End,
    Identifier,
    Number,
    String, ///< the text has its quotation marks
    Punctuation,
    Unknown, ///< a byte that means nothing here, or a string without an end
};

/// A word of an effect's text. The bytes live in `FxSources`.
struct FxToken {
    std::string_view text;
    FxPlace place;
    FxTokenKind kind = FxTokenKind::End;
    bool startsLine = false;
    bool spaceBefore = false;
    bool isFinal = false; ///< never again taken for a macro: it stands in that macro's own text

    bool Is(std::string_view wanted) const
    {
        return (kind == FxTokenKind::Punctuation || kind == FxTokenKind::Identifier) &&
               text == wanted;
    }
    /// For keywords and states, which ignore the case of letters.
    bool IsWord(std::string_view wanted) const;
};

/// Compares as keywords, states and semantics do: A to Z without regard to case.
bool FxSameWord(std::string_view a, std::string_view b);

/// The token as an error names it: its text in quotation marks, or "the end of the file".
std::string FxDescribe(const FxToken& token);

} // namespace headless::fx
