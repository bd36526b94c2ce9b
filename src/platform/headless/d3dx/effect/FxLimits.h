#pragma once

#include <cstddef>

namespace headless::fx {

// The limits of one effect. A text beyond any of them is refused with an error that names the
// place, so that memory, time and call depth never depend on a file.

inline constexpr std::size_t kFxMaxFileBytes = std::size_t{4} << 20;
/// All files of an effect, plus the text that macros produce.
inline constexpr std::size_t kFxMaxTextBytes = std::size_t{8} << 20;
/// Limits the tokens read and, separately, the tokens that macros produce.
inline constexpr std::size_t kFxMaxTokens = std::size_t{1} << 20;
inline constexpr std::size_t kFxMaxIncludes = 256;
inline constexpr std::size_t kFxMaxIncludeDepth = 16;
inline constexpr std::size_t kFxMaxConditionDepth = 64;
inline constexpr std::size_t kFxMaxMacroParameters = 64;
/// Macro calls nested in arguments of macro calls.
inline constexpr int kFxMaxArgumentDepth = 32;
/// Nested brackets, signs and conditions in an expression.
inline constexpr int kFxMaxNesting = 64;
inline constexpr int kFxMaxStructDepth = 8;
inline constexpr std::size_t kFxMaxElements = std::size_t{1} << 15;
/// Parameters, including elements, members and annotations.
inline constexpr std::size_t kFxMaxNodes = std::size_t{1} << 16;
/// Numbers in the values of all parameters.
inline constexpr std::size_t kFxMaxCells = std::size_t{1} << 20;

} // namespace headless::fx
