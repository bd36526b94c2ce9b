#pragma once

#include <string>

namespace headless {

/// The way from the directory of the pattern to that of the file that is being converted, each name
/// with a `/` behind it; empty outside of a conversion.
std::string DirectoriesBelowPattern();

} // namespace headless
