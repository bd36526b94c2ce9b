#pragma once

#include <string>

namespace headless {

/// The way from the directory of the pattern to that of the file that is being converted, each name
/// with a `/` behind it; empty outside of a conversion.
std::string DirectoriesBelowPattern();

/// Told when the scene in hand is a text without a keyword, in place of a line on standard error. Null:
/// nobody is told.
extern void (*gNoKeywordSink)();

} // namespace headless
