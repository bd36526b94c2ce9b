#pragma once

#include "platform/headless/shader/Assembler.h"
#include "platform/headless/shader/AssemblerWords.h"
#include "platform/headless/shader/Bytecode.h"
#include "platform/headless/shader/InstructionTable.h"

namespace headless::shader {

/// The name of an instruction with its suffixes taken apart.
struct InstructionName {
    std::string base;
    unsigned modifiers = 0;
    int shift = 0;
    unsigned compare = 0;
};

/// Reads one text.
class AssemblerRun {
public:
    AssemblerRun(std::string_view text, std::vector<Word>& words, AssemblyFault& report)
        : source(text),
          out(words),
          fault(report)
    {}

    bool Run();
    bool Check();

private:
    bool Fail(const AsmWord& word, std::string reason);
    bool FailAtWord(const Fault& found);
    bool Statement();
    bool Instruction(const AsmWord& name);
    bool SplitName(const AsmWord& name, InstructionName& out) const;
    const InstructionRow* FindRow(const InstructionName& name, Word& controlOut) const;
    bool Operands(const InstructionRow& row, const InstructionName& name);
    bool Declaration(const AsmWord& name);
    bool DeclaredUsage(const AsmWord& name, std::string& usage, Word& wordOut, Word& modifiersOut);
    bool Constant(const AsmWord& name);
    bool ConstantValue(char kind, Word& valueOut);
    bool NumberValue(bool isWhole, Word& valueOut);
    bool Predicate();
    bool TakeRegister(Register& place, std::string& suffixOut, AsmWord& wordOut);
    bool TakeIndex(Register& place, std::vector<Word>& indexOut, Word& bitsInOut);
    bool TakeMask(Word& maskOut);
    bool TakeSwizzle(Word& swizzleOut);
    bool DestinationOperand(Word modifierBits);
    bool SourceOperand();
    bool ModifierOf(const AsmWord& word, const std::string& suffix, bool isNegated, Word& bitsOut);
    bool Expect(char sign, const char* what);
    void EndInstruction(size_t start, Word opcode);

    AsmWords source;
    std::vector<Word>& out;
    AssemblyFault& fault;
    Version version;
    std::vector<Word> predicate; ///< of the instruction being read
    bool isCoissued = false;
    struct Place {
        size_t word;
        int line, column;
    };
    std::vector<Place> places; ///< of the instructions
};

} // namespace headless::shader
