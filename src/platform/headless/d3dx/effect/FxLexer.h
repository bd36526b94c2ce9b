#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/headless/d3dx/effect/FxToken.h"

namespace headless::fx {

/// A file's text with its continued lines joined.
struct FxSourceText {
    std::string text;
    std::vector<std::uint32_t> joints; ///< offsets, rising, where a new line of the file begins

    /// Joins lines that end in a backslash; leaves out a byte order mark.
    static FxSourceText FromFile(std::string_view bytes);
};

/// Appends the tokens of `source` to `tokensOut`, at most `budget` of them. Comments are blanks. False
/// for a comment without an end or too many tokens; anything else becomes a token, since a text that
/// conditions leave out need not be one of the language. `source` must outlive the tokens.
bool FxLex(const FxSourceText& source, std::uint32_t file, std::size_t budget,
           FxDiagnostics& diagnostics, std::vector<FxToken>& tokensOut);

} // namespace headless::fx
