#pragma once

#include "platform/headless/shader/Bytecode.h"

namespace headless::shader {

/// The text of bytecode, one instruction a line, blocks indented. Assembling it gives the same words,
/// comments and unused bits apart.
std::string Disassemble(const Bytecode& code);

} // namespace headless::shader
