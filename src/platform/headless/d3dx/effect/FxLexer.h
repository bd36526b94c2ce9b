#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/headless/d3dx/effect/FxToken.h"

namespace headless::fx {

/// A file's text with continued lines joined.
struct FxSourceText {
    std::string text;
    std::vector<uint32_t> joints; ///< offsets, rising, where a new line of the file begins

    /// Joins lines that end in a backslash; drops a byte order mark.
    static FxSourceText FromFile(std::string_view bytes);
};

/// Appends the tokens of `source` to `tokensOut`, at most `budget` of them. Comments count as white
/// space. False for an unterminated comment or too many tokens; any other bytes become tokens,
/// since text excluded by conditions need not be valid. `source` must outlive the tokens.
bool FxLex(const FxSourceText& source, uint32_t file, size_t budget, FxDiagnostics& diagnostics,
           std::vector<FxToken>& tokensOut);

} // namespace headless::fx
