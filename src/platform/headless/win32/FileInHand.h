#pragma once

#include <string>

namespace headless {

/// The path from the pattern's directory to that of the file being converted, with a `/` after each
/// name; empty outside a conversion.
std::string DirectoriesBelowPattern();

/// Told when the scene in hand is a text without a keyword, in place of a line on standard error. Null:
/// nobody is told.
extern void (*gNoKeywordSink)();

} // namespace headless
