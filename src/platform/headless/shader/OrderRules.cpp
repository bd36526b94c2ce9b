// The order of instructions, pairs, and limits of their number.

#include "platform/headless/shader/BytecodeRules.h"
#include "platform/headless/shader/InstructionTable.h"

namespace headless::shader {

namespace {

/// The most slots of a shader, or of one phase of ps 1.4. 0 in `texture`: all share one limit.
struct SlotLimit {
    unsigned versions;
    int arithmetic;
    int texture;
};

constexpr SlotLimit kLimits[] = {
    {kVs11, 128, 0}, {kVs20, 256, 0}, {kVs2x, 256, 0}, {kVs30, 32768, 0}, {kPs13Down, 8, 4},
    {kPs14, 8, 6},   {kPs20, 64, 32}, {kPs2x, 512, 0}, {kPs30, 32768, 0},
};

bool IsPad(Opcode opcode)
{
    return opcode == Opcode::TexM3x2Pad || opcode == Opcode::TexM3x3Pad;
}

/// The instructions that end a matrix product begun by pads, and how many pads come before.
int PadsBefore(Opcode opcode)
{
    switch (opcode) {
    case Opcode::TexM3x2Tex:
    case Opcode::TexM3x2Depth:
        return 1;
    case Opcode::TexM3x3Tex:
    case Opcode::TexM3x3Spec:
    case Opcode::TexM3x3VSpec:
    case Opcode::TexM3x3:
        return 2;
    default:
        return 0;
    }
}

class OrderCheck {
public:
    OrderCheck(const Bytecode& bytecode, size_t& place) : code(bytecode), wordOut(place) {}

    const char* Run();

private:
    const char* Step(const Instruction& instruction, const Instruction* last);
    const char* CheckPair(const Instruction& second, const Instruction* first) const;
    const char* CheckPads(const Instruction& instruction);
    const char* CountSlots(const Instruction& instruction, const InstructionRow& row);
    bool IsOldPixel() const { return code.version.isPixel && code.version.major == 1; }

    const Bytecode& code;
    size_t& wordOut;
    bool hasStarted = false; ///< an instruction that runs has occurred
    bool hasPhase = false;
    bool hasArithmetic = false; ///< in this phase
    int arithmetic = 0;
    int texture = 0;
    int pads = 0;
    Opcode pad = Opcode::Nop;
    unsigned padPlace = 0;
    Register padSource;
};

/// Two instructions of ps 1.x that run together: one writes colour, the other alpha.
const char* OrderCheck::CheckPair(const Instruction& second, const Instruction* first) const
{
    if (!second.isCoissued)
        return nullptr;
    const auto isArithmetic = [this](const Instruction& instruction) {
        const InstructionRow* row = FindInstruction(instruction.opcode, code.version);
        return row && row->hasDestination && (row->traits & kIsTexture) == 0;
    };
    if (!IsOldPixel() || !first || first->isCoissued || !isArithmetic(*first) ||
        !isArithmetic(second))
        return "a paired instruction has no partner";
    const unsigned a = first->destination.mask, b = second.destination.mask;
    const bool isSplit = (a & b) == 0 && ((a | b) & kMaskW) != 0 && (a == kMaskW || b == kMaskW);
    return isSplit ? nullptr : "a pair does not write colour and alpha apart";
}

/// Pads, and what ends them, follow each other on stages in order and with the same source.
const char* OrderCheck::CheckPads(const Instruction& instruction)
{
    const char* const kBroken = "texture matrix instructions are out of order";
    const int wanted = PadsBefore(instruction.opcode);
    const unsigned place = instruction.destination.place.number;
    if (!IsPad(instruction.opcode) && wanted == 0)
        return pads > 0 ? kBroken : nullptr;
    const Register source = instruction.sources[0].place;
    if (pads > 0 && (place != padPlace + 1 || !(source == padSource)))
        return kBroken;
    if (IsPad(instruction.opcode)) {
        if (pads > 0 && pad != instruction.opcode)
            return kBroken;
        pad = instruction.opcode;
        padPlace = place;
        padSource = source;
        ++pads;
        return nullptr;
    }
    const Opcode wantedPad = wanted == 1 ? Opcode::TexM3x2Pad : Opcode::TexM3x3Pad;
    if (pads != wanted || pad != wantedPad)
        return kBroken;
    pads = 0;
    return nullptr;
}

const char* OrderCheck::CountSlots(const Instruction& instruction, const InstructionRow& row)
{
    const bool isTexture = (row.traits & kIsTexture) != 0;
    const int slots = instruction.isCoissued ? 0 : row.slots;
    (isTexture ? texture : arithmetic) += slots;
    if (code.version.isSoftware)
        return nullptr;
    const unsigned bit = VersionBit(code.version);
    for (const SlotLimit& limit : kLimits) {
        if ((limit.versions & bit) == 0)
            continue;
        const bool isOver = limit.texture == 0
                                ? arithmetic + texture > limit.arithmetic
                                : arithmetic > limit.arithmetic || texture > limit.texture;
        if (isOver)
            return "there are more instructions than the version allows";
    }
    return nullptr;
}

const char* OrderCheck::Step(const Instruction& instruction, const Instruction* last)
{
    if (IsDeclaration(instruction.opcode))
        return hasStarted ? "a declaration follows an instruction" : nullptr;
    hasStarted = true;
    if (instruction.opcode == Opcode::Phase) {
        if (hasPhase)
            return "a second phase begins";
        hasPhase = true;
        hasArithmetic = false;
        arithmetic = texture = 0;
        return nullptr;
    }
    const InstructionRow& row = *FindInstruction(instruction.opcode, code.version);
    if (const char* reason = CheckPair(instruction, last))
        return reason;
    const bool isTexture = (row.traits & kIsTexture) != 0;
    const bool isFree = instruction.opcode == Opcode::Nop || instruction.opcode == Opcode::TexDepth;
    if (IsOldPixel() && !isFree) {
        if (isTexture && hasArithmetic)
            return "a texture instruction follows an arithmetic one";
        hasArithmetic = hasArithmetic || !isTexture;
        if (const char* reason = CheckPads(instruction))
            return reason;
    }
    return CountSlots(instruction, row);
}

const char* OrderCheck::Run()
{
    const Instruction* last = nullptr;
    for (const Instruction& instruction : code.instructions) {
        wordOut = instruction.word;
        if (const char* reason = Step(instruction, last))
            return reason;
        last = &instruction;
    }
    return pads > 0 ? "texture matrix instructions are out of order" : nullptr;
}

} // namespace

const char* CheckOrder(const Bytecode& code, size_t& wordOut)
{
    return OrderCheck(code, wordOut).Run();
}

bool CheckBytecode(const Bytecode& code, Fault& faultOut)
{
    faultOut = {};
    const auto fail = [&faultOut](const char* reason, size_t word) {
        faultOut = {reason, word};
        return false;
    };
    for (const Instruction& instruction : code.instructions) {
        const char* reason = IsDeclaration(instruction.opcode)
                                 ? CheckDeclaration(instruction, code.version)
                                 : CheckOperands(instruction, code.version);
        if (reason)
            return fail(reason, instruction.word);
    }
    size_t word = 0;
    using Check = const char* (*)(const Bytecode&, size_t&);
    for (const Check check : {CheckOrder, CheckFlow, CheckUse})
        if (const char* reason = check(code, word))
            return fail(reason, word);
    return true;
}

} // namespace headless::shader
