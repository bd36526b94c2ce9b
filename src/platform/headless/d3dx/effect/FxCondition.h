#pragma once

#include <span>

#include "platform/headless/d3dx/effect/FxToken.h"

namespace headless::fx {

/// Evaluates the expression after `#if` or `#elif`, with macros already replaced and `defined`
/// resolved. 64-bit integers; remaining identifiers count as 0. An empty expression is reported at
/// `place`.
bool FxEvaluateCondition(std::span<const FxToken> words, FxPlace place, FxDiagnostics& diagnostics,
                         bool& valueOut);

} // namespace headless::fx
