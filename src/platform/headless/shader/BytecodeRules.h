#pragma once

#include "platform/headless/shader/Bytecode.h"

namespace headless::shader {

// The parts of `CheckBytecode`. Each gives the reason why the stream is refused, or null.

/// Registers, masks, swizzles and modifiers of one instruction.
const char* CheckOperands(const Instruction& instruction, const Version& version);

/// One dcl, def, defi or defb.
const char* CheckDeclaration(const Instruction& instruction, const Version& version);

/// Blocks, loops, calls and labels of a whole shader; `wordOut` is the place of the fault.
const char* CheckFlow(const Bytecode& code, size_t& wordOut);

/// Declared before use, written before read, outputs written, no value declared twice.
const char* CheckUse(const Bytecode& code, size_t& wordOut);

/// The order of instructions, paired ones, and their number.
const char* CheckOrder(const Bytecode& code, size_t& wordOut);

} // namespace headless::shader
