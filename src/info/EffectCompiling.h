#pragma once

#include <string>

#include "info/Output.h"

/// Writes the compiled form of an effect's text as a whole file. False, with a line to `err` and nothing
/// written, if it has none or cannot be written.
bool WriteCompiledEffect(const std::string& file, const std::string& target, Output& err);
