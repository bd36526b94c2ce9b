#pragma once

#include <cstdint>
#include <vector>

#include "platform/headless/d3dx/language/HlGraph.h"
#include "platform/headless/shader/Tokens.h"

namespace headless::hl {

/// Kinds of registers before they have their places.
enum class HlRegister : uint8_t {
    None,
    Virtual, ///< a temporary one to be
    Uniform, ///< counted through all parameters
    Literal, ///< counted through the packed numbers
    Input,   ///< index into the program's inputs
    Output,  ///< index into the program's outputs
    Sampler, ///< counted through all samplers
    Whole,   ///< a whole constant
    Address,
};

struct HlSource {
    HlRegister kind = HlRegister::None;
    uint32_t number = 0;
    uint8_t component[4] = {0, 1, 2, 3};
    bool isNegative = false;
    bool isIndexed = false; ///< by a0.x
    HlRef index;            ///< what a0.x has to hold then
};

struct HlInstruction {
    shader::Opcode opcode = shader::Opcode::Nop;
    unsigned control = 0;
    HlRegister kind = HlRegister::None; ///< of the result
    uint32_t number = 0;
    unsigned mask = 15;
    bool saturates = false;
    bool keepsSources = false; ///< the result is not one of the sources' registers
    std::vector<HlSource> sources;
};

/// A register to be. Its components are fixed, unless it has only one.
struct HlVirtual {
    unsigned mask = 0;   ///< components that hold values
    bool floats = false; ///< one value, in whichever component
    uint32_t place = 0xFFFF;
    unsigned component = 0; ///< of one that floats, once it has a place
};

struct HlMachineCode {
    std::vector<HlInstruction> instructions;
    std::vector<HlVirtual> registers;
};

/// Gives temporaries to all virtual registers by their lives. Gives how many it takes.
unsigned HlAssignRegisters(HlMachineCode& code);

} // namespace headless::hl
