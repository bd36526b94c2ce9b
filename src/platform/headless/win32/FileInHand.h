#pragma once

#include <string>

namespace headless {

/// The path from the pattern's directory to that of the file being converted, with a `/` after each
/// name; empty outside a conversion.
std::string DirectoriesBelowPattern();

} // namespace headless
