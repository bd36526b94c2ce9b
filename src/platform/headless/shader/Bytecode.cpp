#include "platform/headless/shader/Bytecode.h"

#include "platform/headless/shader/InstructionTable.h"

namespace headless::shader {

namespace {

constexpr unsigned kConstBlock =
    2048; ///< constants in each of the four kinds of constant registers

Opcode OpcodeOf(Word word)
{
    return static_cast<Opcode>(word & 0xFFFF);
}

size_t CommentWords(Word word)
{
    return word >> 16 & 0x7FFF;
}

Register RegisterOf(Word word)
{
    Register place;
    place.kind = static_cast<RegisterKind>((word >> 28 & 7) | (word >> 8 & 0x18));
    place.number = word & 0x7FF;
    if (place.kind >= RegisterKind::Const2 && place.kind <= RegisterKind::Const4) {
        const unsigned block =
            static_cast<unsigned>(place.kind) - static_cast<unsigned>(RegisterKind::Const2) + 1;
        place.number += block * kConstBlock;
        place.kind = RegisterKind::Const;
    }
    return place;
}

/// Reads the words of one stream in order.
class Reader {
public:
    Reader(std::span<const Word> stream, Bytecode& codeOut, Fault& reportOut)
        : words(stream),
          code(codeOut),
          fault(reportOut)
    {}

    bool ReadAll();

private:
    bool Fail(const char* reason)
    {
        fault = {reason, start};
        return false;
    }

    bool ReadOne(Word opcodeWord);
    bool ReadParts(const InstructionRow& row, Instruction& instruction);
    bool ReadDeclaration(Instruction& instruction);
    bool ReadConstant(Instruction& instruction);
    bool TakeParameter(Word& wordOut);
    bool TakeRelative(Word parameter, RelativeIndex& relativeOut);
    bool TakeDestination(Destination& destinationOut);
    bool TakeSource(Source& sourceOut);
    bool CheckLength(Word opcodeWord);

    std::span<const Word> words;
    Bytecode& code;
    Fault& fault;
    size_t next = 0;
    size_t start = 0; ///< of the instruction being read
};

bool Reader::ReadAll()
{
    if (words.empty() || !ReadVersion(words[0], code.version))
        return Fail("the version is not one of vs 1.1 to 3.0 or ps 1.1 to 3.0");
    next = 1;
    while (next < words.size()) {
        start = next;
        const Word word = words[next++];
        if (word == kEndWord)
            return true;
        if (OpcodeOf(word) == Opcode::Comment && (word & kParameterBit) == 0) {
            if (CommentWords(word) > words.size() - next)
                return Fail("a comment is longer than the stream");
            next += CommentWords(word);
        } else if (!ReadOne(word)) {
            return false;
        }
    }
    start = words.size();
    return Fail("the stream has no end word");
}

bool Reader::ReadOne(Word word)
{
    Instruction instruction;
    instruction.word = start;
    instruction.opcode = OpcodeOf(word);
    instruction.control = word >> 16 & 0xFF;
    instruction.isCoissued = (word & kCoissueBit) != 0;
    instruction.isPredicated = (word & kPredicatedBit) != 0;
    if ((word & kParameterBit) != 0 || !IsOpcode(instruction.opcode))
        return Fail("a word is not an instruction");
    bool isRead = false;
    switch (instruction.opcode) {
    case Opcode::Dcl:
        isRead = ReadDeclaration(instruction);
        break;
    case Opcode::Def:
    case Opcode::DefI:
    case Opcode::DefB:
        isRead = ReadConstant(instruction);
        break;
    default: {
        const InstructionRow* row = FindInstruction(instruction.opcode, code.version);
        if (!row)
            return Fail("the version does not have the instruction");
        isRead = ReadParts(*row, instruction);
    }
    }
    if (!isRead || !CheckLength(word))
        return false;
    code.instructions.push_back(instruction);
    return true;
}

/// From 2.0 on, an instruction states how many words follow it.
bool Reader::CheckLength(Word word)
{
    if (code.version.major < 2 || OpcodeOf(word) == Opcode::Phase)
        return true;
    const size_t stated = word >> 24 & 15;
    return stated == next - start - 1 || Fail("an instruction states a wrong length");
}

bool Reader::ReadParts(const InstructionRow& row, Instruction& instruction)
{
    if (instruction.isPredicated && !code.version.IsExtended())
        return Fail("the version has no predication");
    instruction.hasDestination = row.hasDestination;
    instruction.sourceCount = row.sourceCount;
    if (row.hasDestination && !TakeDestination(instruction.destination))
        return false;
    if (instruction.isPredicated && !TakeSource(instruction.predicate))
        return false;
    for (int i = 0; i < row.sourceCount; ++i)
        if (!TakeSource(instruction.sources[i]))
            return false;
    return true;
}

bool Reader::ReadDeclaration(Instruction& instruction)
{
    Word usage = 0;
    if (!TakeParameter(usage) || !TakeDestination(instruction.destination))
        return false;
    instruction.hasDestination = true;
    const bool isSampler = instruction.destination.place.kind == RegisterKind::Sampler;
    instruction.usage = isSampler ? usage >> 27 & 15 : usage & 15;
    instruction.usageIndex = isSampler ? 0 : usage >> 16 & 15;
    return true;
}

bool Reader::ReadConstant(Instruction& instruction)
{
    if (!TakeDestination(instruction.destination))
        return false;
    instruction.hasDestination = true;
    const size_t count = instruction.opcode == Opcode::DefB ? 1 : 4;
    if (count > words.size() - next)
        return Fail("the stream ends within an instruction");
    for (size_t i = 0; i < count; ++i)
        instruction.values[i] = words[next++];
    return true;
}

bool Reader::TakeParameter(Word& wordOut)
{
    if (next >= words.size())
        return Fail("the stream ends within an instruction");
    wordOut = words[next++];
    return (wordOut & kParameterBit) != 0 || Fail("a parameter is missing");
}

/// In vs 1.1 the index is always a0.x and has no word of its own.
bool Reader::TakeRelative(Word parameter, RelativeIndex& relativeOut)
{
    relativeOut.isUsed = (parameter & kRelativeBit) != 0;
    if (!relativeOut.isUsed)
        return true;
    relativeOut.base = {RegisterKind::Address, 0};
    if (code.version.major < 2)
        return true;
    Word index = 0;
    if (!TakeParameter(index))
        return false;
    if ((index & kRelativeBit) != 0)
        return Fail("an index register is itself indexed");
    relativeOut.base = RegisterOf(index);
    relativeOut.component = index >> 16 & 3;
    return true;
}

bool Reader::TakeDestination(Destination& out)
{
    Word word = 0;
    if (!TakeParameter(word))
        return false;
    out.place = RegisterOf(word);
    out.mask = word >> 16 & 15;
    out.modifiers = word >> 20 & 15;
    const int shift = static_cast<int>(word >> 24 & 15);
    out.shift = shift < 8 ? shift : shift - 16;
    return TakeRelative(word, out.relative);
}

bool Reader::TakeSource(Source& out)
{
    Word word = 0;
    if (!TakeParameter(word))
        return false;
    out.place = RegisterOf(word);
    out.swizzle = word >> 16 & 0xFF;
    const unsigned modifier = word >> 24 & 15;
    if (modifier > static_cast<unsigned>(SourceModifier::Not))
        return Fail("a source modifier is unknown");
    out.modifier = static_cast<SourceModifier>(modifier);
    return TakeRelative(word, out.relative);
}

} // namespace

size_t StreamWords(const Word* words)
{
    Version version;
    if (!ReadVersion(words[0], version))
        return 0;
    size_t at = 1;
    while (at < kMaxWords) {
        const Word word = words[at++];
        if (word == kEndWord)
            return at;
        if ((word & kParameterBit) != 0)
            continue;
        if (OpcodeOf(word) == Opcode::Comment)
            at += CommentWords(word);
        else if (version.major >= 2)
            at += word >> 24 & 15;
        else if (OpcodeOf(word) == Opcode::Def)
            at += 5;
    }
    return 0;
}

bool ReadBytecode(std::span<const Word> words, Bytecode& codeOut, Fault& faultOut)
{
    codeOut = {};
    faultOut = {};
    return Reader(words, codeOut, faultOut).ReadAll();
}

} // namespace headless::shader
