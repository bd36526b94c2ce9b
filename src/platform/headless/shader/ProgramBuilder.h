#pragma once

#include "platform/headless/shader/Kernels.h"

#include <map>

namespace headless::shader {

constexpr uint32_t kRegisterPlaces = 4 * kMaxGroups;

inline bool IsNegated(SourceModifier modifier)
{
    return modifier == SourceModifier::Neg || modifier == SourceModifier::AbsNeg;
}

inline bool IsAbsolute(SourceModifier modifier)
{
    return modifier == SourceModifier::Abs || modifier == SourceModifier::AbsNeg;
}

/// Whether abs and neg bits are enough for it.
inline bool IsSignModifier(SourceModifier modifier)
{
    return modifier == SourceModifier::None || IsNegated(modifier) || IsAbsolute(modifier);
}

/// Turns instructions into operations, one after the other.
class ProgramBuilder {
public:
    ProgramBuilder(const Bytecode& bytecode, Program& result) : code(bytecode), program(result) {}

    void Build();

private:
    // Registers.
    uint32_t AddRegister();
    uint32_t PlaceOf(const Register& place);
    uint32_t ConstantPlace(unsigned number);
    uint32_t CoordinatePlace(unsigned number);
    uint32_t OnePlace();
    uint32_t PredicatePlace(unsigned component);
    void PlaceInputsAndOutputs();
    void PlaceIndexed();
    void PlaceSpecial();
    void BindInput(const Register& place, Word usage, Word usageIndex, unsigned mask);
    void BindOutput(const Register& place, Word usage, Word usageIndex, unsigned mask);
    void CollectDefinitions();
    bool UsesFlow() const;
    bool MayRunLong() const;
    unsigned InputMask(const Register& place) const;
    unsigned CoordinateMask(const Instruction& instruction) const;
    bool IsRead(const Register& place) const;
    bool IsWritten(const Register& place) const;

    // Operands.
    Operand OperandAt(uint32_t base, uint32_t step) const;
    Operand SourceOf(const Source& source, Shape shape, unsigned mask);
    Operand RawSource(const Source& source);
    uint32_t LoadIndexed(const Source& source);
    uint32_t Modify(const Source& source);
    void SetResult(const Instruction& instruction, Operation& operation);
    void SetResult(uint32_t base, unsigned mask, Operation& operation) const;
    void SetPredicate(const Instruction& instruction, Operation& operation);
    void SetTruth(const Source& source, Operation& operation);
    Indexing IndexOf(const RelativeIndex& relative, const Register& place);
    void Emit(const Operation& operation) { program.operations.push_back(operation); }
    void EndInstruction();

    // Instructions.
    void Add(const Instruction& instruction);
    void AddPair(const Instruction& first, const Instruction& second);
    void AddArithmetic(const Instruction& instruction);
    void AddMatrix(const Instruction& instruction);
    void AddOther(const Instruction& instruction);
    bool AddFlow(const Instruction& instruction, size_t at);
    bool AddTexture(const Instruction& instruction);
    void AddLoad(const Instruction& instruction);
    bool AddOldTexture(const Instruction& instruction);
    void AddOldCoordinate(const Instruction& instruction);
    void AddOldSample(const Instruction& instruction, uint32_t coordinates);
    void AddOldBump(const Instruction& instruction);
    void AddOldColourLookup(const Instruction& instruction);
    void AddOldMatrixRow(const Instruction& instruction);
    void AddOldMatrixEnd(const Instruction& instruction);
    void AddKill(const Instruction& instruction);
    void AddDepth(const Instruction& instruction, uint32_t from, uint8_t control);
    void AddIf(const Instruction& instruction);
    void AddLoopStart(const Instruction& instruction);
    void AddCall(const Instruction& instruction);
    void AddReturn(size_t at);
    void LinkCalls();
    Operation Simple(RunFunction run) const;
    int32_t Here() const { return static_cast<int32_t>(program.operations.size()); }

    const Bytecode& code;
    Program& program;
    std::map<unsigned, uint32_t> places;      ///< of registers, by kind and number
    std::map<unsigned, uint32_t> constants;   ///< by number
    std::map<unsigned, uint32_t> coordinates; ///< of ps 1.1 to 1.3, by number
    uint32_t registerEnd = 0;
    uint32_t constantEnd = 0, constantBlockEnd = 0;
    uint32_t scratch[4] = {}; ///< for what an operation needs before it
    int scratchUsed = 0;
    uint32_t resultScratch = 0;
    uint32_t ones = 0;   ///< a register of ones, 0 as long as none is needed
    uint32_t matrix = 0; ///< rows gathered by the texture matrix instructions
    int matrixRows = 0;
    unsigned matrixCoordinates[3] = {};
    bool hasFlow = false;
    bool isInLabel = false;
    std::vector<size_t> openBlocks; ///< operations that wait for their target
    std::vector<size_t> openLoops;
    std::map<unsigned, int32_t> labelPlaces; ///< operations, by label
    std::vector<std::pair<size_t, unsigned>> calls;
    std::vector<Operation> delayed; ///< to emit after the current operation
};

} // namespace headless::shader
