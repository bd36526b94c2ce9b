// Blocks, loops, calls and labels.

#include "platform/headless/shader/BytecodeRules.h"

#include <algorithm>

namespace headless::shader {

namespace {

constexpr size_t kMaxBlocks = 24;
constexpr int kMaxLoops = 4;

enum class Block : uint8_t { If, Else, Rep, Loop };

/// Walks a shader and keeps the open blocks.
class FlowCheck {
public:
    FlowCheck(const Bytecode& bytecode, size_t& place) : code(bytecode), wordOut(place) {}

    const char* Run();

private:
    struct LabelPlace {
        unsigned number;
        size_t instruction;
        int depth; ///< of the calls that lead to it
    };

    const char* Step(size_t at);
    const char* StepLabel(size_t at);
    const char* StepCall(const Instruction& instruction, size_t at);
    const char* Open(Block block);
    const char* Close(Block block, const char* reason);
    const char* CheckIndex(const RelativeIndex& index) const;
    int LoopsOpen() const;
    LabelPlace* FindLabel(unsigned number);
    int MaxCalls() const { return code.version.IsExtended() ? 4 : 1; }

    const Bytecode& code;
    size_t& wordOut;
    std::vector<Block> blocks;
    std::vector<LabelPlace> labels;
    int depth = 0;        ///< calls that lead to the instructions being checked
    bool isEnded = false; ///< the last instruction was a ret outside all blocks
    bool isInLabel = false;
};

const char* FlowCheck::Run()
{
    for (size_t i = 0; i < code.instructions.size(); ++i)
        if (code.instructions[i].opcode == Opcode::Label)
            labels.push_back({code.instructions[i].sources[0].place.number, i, 0});
    for (size_t i = 0; i < code.instructions.size(); ++i) {
        wordOut = code.instructions[i].word;
        if (const char* reason = Step(i))
            return reason;
    }
    if (!blocks.empty())
        return "a block is not closed";
    return isInLabel && !isEnded ? "a subroutine does not end with ret" : nullptr;
}

FlowCheck::LabelPlace* FlowCheck::FindLabel(unsigned number)
{
    const auto found =
        std::find_if(labels.begin(), labels.end(),
                     [number](const LabelPlace& label) { return label.number == number; });
    return found == labels.end() ? nullptr : &*found;
}

int FlowCheck::LoopsOpen() const
{
    return static_cast<int>(std::count_if(blocks.begin(), blocks.end(), [](Block block) {
        return block == Block::Rep || block == Block::Loop;
    }));
}

const char* FlowCheck::Open(Block block)
{
    blocks.push_back(block);
    if (blocks.size() > kMaxBlocks)
        return "blocks are nested too deep";
    return LoopsOpen() > kMaxLoops ? "loops are nested too deep" : nullptr;
}

const char* FlowCheck::Close(Block block, const char* reason)
{
    const bool fits = !blocks.empty() && (blocks.back() == block ||
                                          (block == Block::If && blocks.back() == Block::Else));
    if (!fits)
        return reason;
    blocks.pop_back();
    return nullptr;
}

/// aL has a value only in a loop; a subroutine may be called from one.
const char* FlowCheck::CheckIndex(const RelativeIndex& index) const
{
    if (!index.isUsed || index.base.kind != RegisterKind::Loop || isInLabel)
        return nullptr;
    const bool isInLoop = std::find(blocks.begin(), blocks.end(), Block::Loop) != blocks.end();
    return isInLoop ? nullptr : "aL is used outside a loop";
}

/// Calls lead forward only, so that no chain of calls can go in a circle.
const char* FlowCheck::StepCall(const Instruction& instruction, size_t at)
{
    LabelPlace* label = FindLabel(instruction.sources[0].place.number);
    if (!label)
        return "a call has no label";
    if (label->instruction < at)
        return "a call leads backward";
    label->depth = std::max(label->depth, depth + 1);
    return label->depth > MaxCalls() ? "calls are nested too deep" : nullptr;
}

const char* FlowCheck::StepLabel(size_t at)
{
    const unsigned number = code.instructions[at].sources[0].place.number;
    LabelPlace* label = FindLabel(number);
    if (label->instruction != at)
        return "a label occurs twice";
    if (!blocks.empty() || !isEnded)
        return "a label does not follow a ret";
    depth = label->depth;
    isInLabel = true;
    isEnded = false;
    return nullptr;
}

const char* FlowCheck::Step(size_t at)
{
    const Instruction& instruction = code.instructions[at];
    if (isEnded && instruction.opcode != Opcode::Label)
        return "an instruction follows the last ret";
    for (int i = 0; i < instruction.sourceCount; ++i)
        if (const char* reason = CheckIndex(instruction.sources[i].relative))
            return reason;
    if (const char* reason = CheckIndex(instruction.destination.relative))
        return reason;
    switch (instruction.opcode) {
    case Opcode::If:
    case Opcode::Ifc:
        return Open(Block::If);
    case Opcode::Else:
        if (blocks.empty() || blocks.back() != Block::If)
            return "else without if";
        blocks.back() = Block::Else;
        return nullptr;
    case Opcode::EndIf:
        return Close(Block::If, "endif without if");
    case Opcode::Rep:
        return Open(Block::Rep);
    case Opcode::EndRep:
        return Close(Block::Rep, "endrep without rep");
    case Opcode::Loop:
        return Open(Block::Loop);
    case Opcode::EndLoop:
        return Close(Block::Loop, "endloop without loop");
    case Opcode::Break:
    case Opcode::BreakC:
    case Opcode::BreakP:
        return LoopsOpen() == 0 ? "break outside a loop" : nullptr;
    case Opcode::Call:
    case Opcode::CallNz:
        return StepCall(instruction, at);
    case Opcode::Label:
        return StepLabel(at);
    case Opcode::Ret:
        isEnded = blocks.empty();
        return nullptr;
    default:
        return nullptr;
    }
}

} // namespace

const char* CheckFlow(const Bytecode& code, size_t& wordOut)
{
    return FlowCheck(code, wordOut).Run();
}

} // namespace headless::shader
