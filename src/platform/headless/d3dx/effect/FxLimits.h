#pragma once

#include <cstddef>

namespace headless::fx {

// What one effect may take. A text beyond any of these is refused by an error that names the place:
// memory, time and the depth of calls never depend on what a file says.

inline constexpr std::size_t kFxMaxFileBytes = std::size_t{4} << 20;
/// All files of an effect, and the text that macros make.
inline constexpr std::size_t kFxMaxTextBytes = std::size_t{8} << 20;
/// Tokens read, and again tokens that macros yield.
inline constexpr std::size_t kFxMaxTokens = std::size_t{1} << 20;
inline constexpr std::size_t kFxMaxIncludes = 256;
inline constexpr std::size_t kFxMaxIncludeDepth = 16;
inline constexpr std::size_t kFxMaxConditionDepth = 64;
inline constexpr std::size_t kFxMaxMacroParameters = 64;
/// Macro calls in the arguments of macro calls.
inline constexpr int kFxMaxArgumentDepth = 32;
/// Brackets, signs and conditions inside one another in an expression.
inline constexpr int kFxMaxNesting = 64;
inline constexpr int kFxMaxStructDepth = 8;
inline constexpr std::size_t kFxMaxElements = std::size_t{1} << 15;
/// Parameters with their elements, members and annotations.
inline constexpr std::size_t kFxMaxNodes = std::size_t{1} << 16;
/// Numbers in the values of all parameters.
inline constexpr std::size_t kFxMaxCells = std::size_t{1} << 20;

} // namespace headless::fx
