#pragma once

#include "platform/headless/d3d9/Lanes.h"
#include "platform/headless/shader/Bytecode.h"
#include "platform/headless/shader/TextureUnit.h"

#include <cstdint>
#include <vector>

namespace headless::shader {

/// Groups of four vertices or pixels that one run of a program computes at most. For pixels, groups
/// 2i and 2i + 1 are two rows of four pixels, one below the other: two quads.
constexpr int kMaxGroups = 128;

/// Constants lie twice in the registers, one behind the other, for code that takes two groups at once.
constexpr uint32_t kConstantCopies = 2;

constexpr unsigned kMaxSamplers = 16;
constexpr int kMaxExecuted = 65535; ///< instructions of one vertex or pixel
constexpr int kMaxOpenBlocks = 120; ///< 24 in the shader and in each of four calls
constexpr int kMaxOpenLoops = 16;   ///< four in each of four calls
constexpr int kMaxOpenCalls = 4;

class Machine;
struct Operation;

using RunFunction = void (*)(const Operation& operation, Machine& machine);

/// Where a source is found: an index into the registers for each component, swizzle and write mask
/// resolved. Constants have one value for all groups, other registers one for each.
struct Operand {
    uint32_t place[4] = {};
    uint32_t step = 0; ///< from a group to the next: 1, or 0 for a constant
    bool isAbsolute = false;
    bool isNegated = false; ///< behind the absolute value
};

/// A source or result whose register number depends on a0 or aL.
struct Indexing {
    bool byLoop = false;      ///< aL, else a component of a0
    uint32_t indexPlace = 0;  ///< of the component of a0
    bool ofConstants = false; ///< of the array of constants, else of the registers
    int first = 0;            ///< the number written
    int count = 0;            ///< numbers that exist; others read 0 and are not written
    uint32_t base = 0;        ///< place of register 0, component x
};

/// One step of a program.
struct Operation {
    RunFunction run = nullptr;   ///< on four lanes at a time
    RunFunction eight = nullptr; ///< on eight, where the machine can
    Operand sources[3];
    uint32_t out[4] = {};      ///< places of the components that are written, in order
    uint8_t component[4] = {}; ///< which they are
    uint8_t count = 0;         ///< how many
    bool isFinished = false;   ///< no modifier and no predicate: results are stored as they are
    bool saturates = false;
    bool readsItsResult = false; ///< a component reads what an earlier one writes
    bool isCounted = false;      ///< the last step of an instruction
    float scale = 1.0f;
    uint32_t predicate[4] = {}; ///< places of the masks for each component; 0 if not predicated
    bool isPredicated = false;
    bool isPredicateInverted = false;
    uint8_t control = 0; ///< Compare, or the kind of a texture load
    uint8_t sampler = 0;
    int32_t target = 0;      ///< the operation to go on with
    uint32_t number = 0;     ///< of a whole or truth constant
    bool isInverted = false; ///< the truth constant counts inverted
    Indexing indexing;
};

/// An input or output of a program and the usage it is declared with.
struct Binding {
    Register place;
    Word usage = 0; ///< D3DDECLUSAGE
    Word usageIndex = 0;
    unsigned mask = kMaskAll;
    uint32_t at = 0; ///< place of component x of group 0
};

/// A constant that instructions name, and where its four components are.
struct ConstantUse {
    unsigned number;
    uint32_t at;
};

/// A constant that the shader itself defines.
struct DefinedFloats {
    unsigned number;
    float values[4];
};
struct DefinedSwitch {
    unsigned number;
    int values[4]; ///< of defi; defb uses the first
};

/// Registers lie on cache lines of their own.
struct alignas(64) RegisterLine {
    Lanes lanes[4];
};

/// A shader ready to run: bytecode with all names resolved, and the registers it works on.
struct Program {
    Version version;
    std::vector<Operation> operations;
    std::vector<RegisterLine> registers; ///< all values; tens of kilobytes, made by the first run
    uint32_t registerCount = 0;          ///< in lanes
    uint32_t ones = 0;                   ///< the place of registers that are 1; 0 for none
    std::vector<Binding> inputs;         ///< those that are read
    std::vector<Binding> outputs;        ///< those that are written
    std::vector<ConstantUse> constants;
    std::vector<DefinedFloats> definedFloats;
    std::vector<DefinedSwitch> definedInts;
    std::vector<DefinedSwitch> definedBools;
    std::vector<float> indexed; ///< all constants, four floats each, if one is read by an index
    unsigned samplers = 0;      ///< one bit for each sampler that is read
    bool canKill = false;
    bool writesDepth = false;
    bool hasFlow = false;     ///< not every step runs for every lane
    bool mayRunLong = false;  ///< a run may reach kMaxExecuted
    uint32_t temporaries = 0; ///< with flow control, places below it are 0 when a run starts
    uint32_t position = 0;    ///< vPos, if read
    uint32_t face = 0;        ///< vFace, if read
    uint32_t depth = 0;       ///< oDepth, if written
    uint32_t kill = 0;        ///< the lanes that texkill dropped
    bool readsPosition = false;
    bool readsFace = false;

    /// Makes the registers unless there are any. Effects may have very many shaders that never run.
    void MakeRegisters();
};

/// Resolves bytecode that `CheckBytecode` has passed.
void BuildProgram(const Bytecode& code, Program& programOut);

} // namespace headless::shader
