#pragma once

#include <map>
#include <vector>

#include "platform/headless/d3dx/language/HlConstants.h"
#include "platform/headless/d3dx/language/HlLiterals.h"
#include "platform/headless/d3dx/language/HlPlacement.h"

namespace headless::hl {

/// Makes instructions from the steps of a program.
class HlSelector {
public:
    HlSelector(const HlGraph& source, const HlLiveness& alive,
               const std::vector<HlBinding>& arguments, const std::vector<HlBinding>& results,
               HlLiterals& numbers, HlMachineCode& target);

    void Run();

private:
    /// What an instruction cannot have as a source.
    struct Rules {
        bool isTemporary = false; ///< neither constants nor signs
        bool isStraight = false;  ///< no swizzle
    };
    using Opcode = shader::Opcode;

    bool IsFree() const { return graph.Profile().hasFreeSwizzles; }
    HlSource Atom(HlRef ref) const;
    bool IsNumber(HlRef ref) const { return graph.ValueOf(ref).has_value(); }
    bool IsSame(const HlSource& a, const HlSource& b) const;
    bool Complete(HlSource& source, unsigned mask, bool isStraight) const;
    HlSource Numbers(const HlWanted& wanted);
    bool Direct(const HlWanted& wanted, const Rules& rules, HlSource& sourceOut);
    HlSource Source(const HlWanted& wanted, const Rules& rules);
    HlSource Gathered(const HlWanted& wanted, uint32_t group);
    HlSource Spread(HlRef ref);
    void CopyParts(HlRegister kind, uint32_t number, const HlWanted& wanted);
    void CopyPart(HlRegister kind, uint32_t number, const HlWanted& part);
    HlSource Whole(uint32_t number, unsigned mask) const;
    void Emit(HlInstruction instruction);
    void KeepPorts(HlInstruction& instruction);
    void ToTemporary(HlSource& source, unsigned mask);
    void LoadIndex(const HlInstruction& instruction);
    bool MayFloat(HlRegister kind, uint32_t number) const;

    void Step(uint32_t number);
    void Plain(uint32_t number, HlInstruction& instruction);
    void Sample(uint32_t number, HlInstruction& instruction);
    void Effect(uint32_t number);
    void Condition(Opcode opcode, HlRef truth);
    void Outputs();
    void NewBlock();

    const HlGraph& graph;
    const HlLiveness& liveness;
    const std::vector<HlBinding>& inputs;
    const std::vector<HlBinding>& outputs;
    HlLiterals& literals;
    HlMachineCode& code;
    HlPlacement placement;
    std::map<std::array<uint32_t, 5>, uint32_t> copies; ///< of this block, by what they hold
    HlRef index; ///< what a0.x holds; the undefined one for nothing
    bool isLoadingIndex = false;
};

} // namespace headless::hl
