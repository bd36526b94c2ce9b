#pragma once

#include <string>
#include <vector>

#include "platform/headless/d3dx/language/HlConstants.h"
#include "platform/headless/d3dx/language/HlLiterals.h"
#include "platform/headless/d3dx/language/HlMachineCode.h"
#include "platform/headless/d3dx/language/HlRunner.h"

namespace headless::hl {

/// Why a program does not become code of its profile.
struct HlRefusal {
    std::string text;
    FxPlace place;
    bool isTooLarge = false; ///< a larger profile may hold it
};

/// Writes the bytecode of a program, with its constant table.
class HlWriter {
public:
    HlWriter(const HlProfile& target, const HlMachineCode& steps, HlConstants& uniforms,
             HlLiterals& numbers, const std::vector<HlBinding>& arguments,
             const std::vector<HlBinding>& results);

    /// False, and why, if the profile lacks registers or slots, or something has no register there.
    bool Write(FxPlace place, std::vector<shader::Word>& wordsOut, HlRefusal& refusalOut);

private:
    using Word = shader::Word;
    struct Placed {
        shader::RegisterKind kind = shader::RegisterKind::Temp;
        uint32_t number = 0;
    };

    bool Fail(FxPlace place, const std::string& text, bool isTooLarge = false);
    bool PlaceConstants(FxPlace place);
    bool PlaceBindings();
    bool PlaceInput(const HlBinding& binding, Placed& placedOut);
    bool PlaceOutput(const HlBinding& binding, Placed& placedOut);
    bool PlaceOldOutput(const HlBinding& binding, unsigned usage, Placed& placedOut);
    void Declare();
    void DeclareBinding(const HlBinding& binding, const Placed& placed, bool hasUsage);
    void Define();
    void Instruction(const HlInstruction& instruction);
    void Source(const HlSource& source);
    Word Parameter(shader::RegisterKind kind, uint32_t number) const;
    Placed Resolve(HlRegister kind, uint32_t number) const;
    bool CountSlots(FxPlace place);
    bool Check(FxPlace place);

    const HlProfile& profile;
    const HlMachineCode& code;
    HlConstants& constants;
    HlLiterals& literals;
    const std::vector<HlBinding>& inputs;
    const std::vector<HlBinding>& outputs;
    std::vector<Placed> inputPlaces, outputPlaces;
    std::vector<bool> readInputs;
    uint32_t roundsPlace = kHlNoRegister; ///< the whole constant of loops that nothing counts
    std::vector<Word> words;
    HlRefusal refusal;
};

/// The contents of a constant table's comment.
std::vector<shader::Word> HlWriteConstantTable(const HlConstants& constants,
                                               const HlProfile& profile);

} // namespace headless::hl
