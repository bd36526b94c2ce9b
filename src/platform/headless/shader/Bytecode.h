#pragma once

#include "platform/headless/shader/Tokens.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace headless::shader {

/// Why a stream is refused, and where.
struct Fault {
    std::string reason; ///< "" if there is none
    size_t word = 0;    ///< the first word of the instruction, counted from the version word
};

/// A register by kind and number. The kinds Const2 to Const4 are folded into Const.
struct Register {
    RegisterKind kind = RegisterKind::Temp;
    unsigned number = 0;

    bool operator==(const Register&) const = default;
};

/// The register whose value is added to a register number.
struct RelativeIndex {
    bool isUsed = false;
    Register base;
    unsigned component = 0;
};

struct Destination {
    Register place;
    unsigned mask = kMaskAll;
    unsigned modifiers = 0; ///< kResultSaturate and so on
    int shift = 0;          ///< the result is multiplied by 2 to this power
    RelativeIndex relative;
};

struct Source {
    Register place;
    unsigned swizzle = kNoSwizzle;
    SourceModifier modifier = SourceModifier::None;
    RelativeIndex relative;

    unsigned Component(unsigned i) const { return swizzle >> (i * 2) & 3; }
    bool IsReplicate() const { return swizzle == (swizzle & 3) * 0x55; }
};

struct Instruction {
    Opcode opcode = Opcode::Nop;
    unsigned control = 0; ///< comparison of ifc, breakc, setp; kind of a texture load
    bool isCoissued = false;
    bool isPredicated = false;
    bool hasDestination = false;
    int sourceCount = 0;
    Destination destination;
    Source predicate;
    Source sources[4];
    Word values[4] = {}; ///< of def, defi, defb
    Word usage = 0;      ///< D3DDECLUSAGE of dcl, or the SamplerKind
    Word usageIndex = 0; ///< of dcl
    size_t word = 0;     ///< where it begins in the stream
};

/// A stream taken apart, without comments, phases included.
struct Bytecode {
    Version version;
    std::vector<Instruction> instructions;
};

/// Longest stream that is read, in words.
constexpr size_t kMaxWords = 1u << 18;

/// Words of a stream from its version to its end word; 0 if no end word comes within `kMaxWords`, or
/// the version is none. Reads no word behind the end word.
size_t StreamWords(const Word* words);

/// Takes a stream apart and checks its form: version, opcodes, parameter words, end. `CheckBytecode`
/// checks what the parts mean. False with a reason if the stream is refused.
bool ReadBytecode(std::span<const Word> words, Bytecode& codeOut, Fault& faultOut);

/// Checks all other rules of a shader's version; docs/shaders.md lists them.
bool CheckBytecode(const Bytecode& code, Fault& faultOut);

} // namespace headless::shader
