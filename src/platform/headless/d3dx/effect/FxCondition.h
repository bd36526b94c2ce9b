#pragma once

#include <span>

#include "platform/headless/d3dx/effect/FxToken.h"

namespace headless::fx {

/// The value of what stands behind `#if` or `#elif`, with macros already replaced and `defined` answered.
/// Whole numbers of 64 bits; words that are left count as 0. `place` is where an empty one is reported.
bool FxEvaluateCondition(std::span<const FxToken> words, FxPlace place, FxDiagnostics& diagnostics,
                         bool& valueOut);

} // namespace headless::fx
