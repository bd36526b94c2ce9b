#pragma once

#include <string>

#include "info/Output.h"

/// Prints the assembler text of a file with bytecode or assembler text of a shader. False, with a line
/// to `err`, if it has none.
bool PrintDisassembly(const std::string& file, Output& out, Output& err);
