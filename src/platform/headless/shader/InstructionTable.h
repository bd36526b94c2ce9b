#pragma once

#include "platform/headless/shader/Tokens.h"

#include <span>

namespace headless::shader {

/// One bit for each generation of shaders that the tables tell apart. 2.x covers 2.sw, 3.0 covers
/// 3.sw.
enum VersionBits : unsigned {
    kVs11 = 1,
    kVs20 = 2,
    kVs2x = 4,
    kVs30 = 8,
    kPs11 = 16,
    kPs12 = 32,
    kPs13 = 64,
    kPs14 = 128,
    kPs20 = 256,
    kPs2x = 512,
    kPs30 = 1024,
    kVs2Up = kVs20 | kVs2x | kVs30,
    kVsAll = kVs11 | kVs2Up,
    kPs2Up = kPs20 | kPs2x | kPs30,
    kPs13Down = kPs11 | kPs12 | kPs13,
    kPs1 = kPs13Down | kPs14,
    kPsAll = kPs1 | kPs2Up,
};

unsigned VersionBit(const Version& version);

/// What an instruction is to the rules that concern a group of them.
enum InstructionTraits : unsigned {
    kIsTexture = 1, ///< takes one of the slots for texture instructions
    kIsScalar = 2,  ///< reads one component of each source
    kIsFlow = 4,
    kHasNoResult = 8, ///< its first parameter has the form of a result but is only read
};

/// One instruction as certain versions have it.
struct InstructionRow {
    Opcode opcode;
    const char* name; ///< in assembler text
    unsigned versions;
    bool hasDestination;
    int sourceCount;
    int slots; ///< of the instruction limit
    unsigned traits;
};

/// Null if the version does not have the instruction.
const InstructionRow* FindInstruction(Opcode opcode, const Version& version);

/// dcl, def, defi or defb.
constexpr bool IsDeclaration(Opcode opcode)
{
    return opcode == Opcode::Dcl || opcode == Opcode::Def || opcode == Opcode::DefI ||
           opcode == Opcode::DefB;
}

/// Whether any version has it.
bool IsOpcode(Opcode opcode);

std::span<const InstructionRow> AllInstructions();

} // namespace headless::shader
