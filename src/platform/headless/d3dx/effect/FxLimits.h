#pragma once

#include <cstddef>

namespace headless::fx {

// The limits of one effect. A text beyond any of them is refused with an error that names the
// place, so that memory, time and call depth never depend on a file.

inline constexpr size_t kFxMaxFileBytes = size_t{4} << 20;
/// All files of an effect, plus the text that macros produce.
inline constexpr size_t kFxMaxTextBytes = size_t{8} << 20;
/// Limits the tokens read and, separately, the tokens that macros produce.
inline constexpr size_t kFxMaxTokens = size_t{1} << 20;
inline constexpr size_t kFxMaxIncludes = 256;
inline constexpr size_t kFxMaxIncludeDepth = 16;
inline constexpr size_t kFxMaxConditionDepth = 64;
inline constexpr size_t kFxMaxMacroParameters = 64;
/// Macro calls nested in arguments of macro calls.
inline constexpr int kFxMaxArgumentDepth = 32;
/// Nested brackets, signs and conditions in an expression.
inline constexpr int kFxMaxNesting = 64;
inline constexpr int kFxMaxStructDepth = 8;
inline constexpr size_t kFxMaxElements = size_t{1} << 15;
/// Parameters, including elements, members and annotations.
inline constexpr size_t kFxMaxNodes = size_t{1} << 16;
/// Numbers in the values of all parameters.
inline constexpr size_t kFxMaxCells = size_t{1} << 20;
/// States of passes and of the samplers that they reach, each as often as it is reached.
inline constexpr size_t kFxMaxTouched = size_t{1} << 20;
/// Rows that bind parameters to registers, and the registers of programs, in all programs of a compiled
/// effect.
inline constexpr size_t kFxMaxRows = size_t{1} << 18;
/// Steps of the functions that values call, at each call again.
inline constexpr size_t kFxMaxValueSteps = size_t{1} << 16;
/// Bytes of a compiled effect.
inline constexpr size_t kFxMaxCompiledBytes = size_t{16} << 20;

} // namespace headless::fx
