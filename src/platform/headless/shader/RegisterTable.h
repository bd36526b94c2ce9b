#pragma once

#include "platform/headless/shader/Bytecode.h"

namespace headless::shader {

/// Float, whole and truth constants of the two kinds of versions.
constexpr unsigned kHardwareVertexConstants = 256;
constexpr unsigned kSoftwareConstants = 8192;
constexpr unsigned kHardwareSwitches = 16; ///< whole constants, and truth constants
constexpr unsigned kSoftwareSwitches = 2048;

/// What a version has of one kind of register.
struct RegisterRow {
    bool isPixel;
    RegisterKind kind;
    unsigned versions;
    unsigned count;
    bool isRead;    ///< by arithmetic instructions
    bool isWritten; ///< by arithmetic instructions
};

/// Null if the version has no register of the kind.
const RegisterRow* FindRegisters(RegisterKind kind, const Version& version);

/// How many registers of a kind a version has; software versions have more of some kinds.
unsigned RegisterCount(RegisterKind kind, const Version& version);

/// Components of source `i` that the instruction reads, before its swizzle: bit 0 is x.
unsigned ComponentsRead(const Instruction& instruction, int i, const Version& version);

/// Rows of the matrix that m4x4 and its kin read, from the register of the second source on; 0 for
/// other instructions.
int MatrixRows(Opcode opcode);

} // namespace headless::shader
