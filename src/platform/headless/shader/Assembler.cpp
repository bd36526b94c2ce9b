#include "platform/headless/shader/Assembler.h"

#include "platform/headless/shader/AssemblerRun.h"
#include "platform/headless/shader/RegisterNames.h"

#include <algorithm>
#include <iterator>

namespace headless::shader {

bool AssemblerRun::Fail(const AsmWord& word, std::string reason)
{
    fault = {std::move(reason), word.line, word.column};
    return false;
}

bool AssemblerRun::Expect(char sign, const char* what)
{
    return source.Accept(sign) || Fail(source.Peek(), std::string("expected ") + what);
}

bool AssemblerRun::Run()
{
    const AsmWord name = source.NextVersion();
    Word word = 0;
    if (!ParseVersion(name.text, word))
        return Fail(name, "the text does not begin with a version such as vs_1_1");
    ReadVersion(word, version);
    places.push_back({0, name.line, name.column});
    out.push_back(word);
    while (source.Peek().kind != AsmKind::End)
        if (!Statement())
            return false;
    places.push_back({out.size(), source.Peek().line, source.Peek().column});
    out.push_back(kEndWord);
    return true;
}

bool AssemblerRun::FailAtWord(const Fault& found)
{
    Place place = {0, 1, 1};
    for (const Place& one : places)
        if (one.word <= found.word)
            place = one;
    fault = {found.reason, place.line, place.column};
    return false;
}

bool AssemblerRun::Check()
{
    Bytecode code;
    Fault found;
    return (ReadBytecode(out, code, found) && CheckBytecode(code, found)) || FailAtWord(found);
}

bool AssemblerRun::Statement()
{
    isCoissued = source.Accept('+');
    predicate.clear();
    places.push_back({out.size(), source.Peek().line, source.Peek().column});
    if (source.Accept('(') && !Predicate())
        return false;
    const AsmWord name = source.Next();
    if (name.kind != AsmKind::Name)
        return Fail(name, "expected an instruction");
    if (name.text.starts_with("dcl"))
        return Declaration(name);
    if (name.text == "def" || name.text == "defi" || name.text == "defb")
        return Constant(name);
    return Instruction(name);
}

/// "mul_x2_sat", "if_gt", "texld_pp".
bool AssemblerRun::SplitName(const AsmWord& name, InstructionName& split) const
{
    std::string_view rest = name.text;
    const size_t end = rest.find('_');
    split.base = rest.substr(0, end);
    while (rest.find('_') != std::string_view::npos) {
        rest.remove_prefix(rest.find('_') + 1);
        const std::string_view suffix = rest.substr(0, rest.find('_'));
        const auto* compare =
            std::find(std::begin(kCompareNames) + 1, std::end(kCompareNames), suffix);
        const auto* shift =
            std::find_if(std::begin(kShiftNames), std::end(kShiftNames),
                         [suffix](const ShiftName& one) { return suffix == one.suffix; });
        if (suffix == "sat")
            split.modifiers |= kResultSaturate;
        else if (suffix == "pp")
            split.modifiers |= kResultPartial;
        else if (suffix == "centroid")
            split.modifiers |= kResultCentroid;
        else if (compare != std::end(kCompareNames))
            split.compare = static_cast<unsigned>(compare - std::begin(kCompareNames));
        else if (shift != std::end(kShiftNames))
            split.shift = shift->shift;
        else
            return false;
    }
    return true;
}

const InstructionRow* AssemblerRun::FindRow(const InstructionName& name, Word& controlOut) const
{
    controlOut = name.compare;
    std::string base = name.base;
    if (version.major >= 2 && (base == "texldp" || base == "texldb")) {
        controlOut = base == "texldp" ? kLoadProjected : kLoadBiased;
        base = "texld";
    }
    const unsigned bit = VersionBit(version);
    for (const InstructionRow& row : AllInstructions()) {
        const bool compares =
            row.opcode == Opcode::Ifc || row.opcode == Opcode::BreakC || row.opcode == Opcode::SetP;
        if (base == row.name && (row.versions & bit) != 0 && compares == (name.compare != 0))
            return &row;
    }
    return nullptr;
}

void AssemblerRun::EndInstruction(size_t start, Word opcode)
{
    if (version.major >= 2)
        opcode |= static_cast<Word>(out.size() - start - 1) << 24;
    out[start] = opcode;
}

bool AssemblerRun::Instruction(const AsmWord& nameWord)
{
    InstructionName name;
    Word control = 0;
    const InstructionRow* row = SplitName(nameWord, name) ? FindRow(name, control) : nullptr;
    if (!row)
        return Fail(nameWord,
                    "the version has no instruction '" + std::string(nameWord.text) + "'");
    const size_t start = out.size();
    out.push_back(0);
    if (!Operands(*row, name))
        return false;
    Word opcode = static_cast<Word>(row->opcode) | control << 16;
    opcode |= predicate.empty() ? 0 : kPredicatedBit;
    opcode |= isCoissued ? kCoissueBit : 0;
    if (row->opcode == Opcode::Phase)
        out[start] = opcode;
    else
        EndInstruction(start, opcode);
    return true;
}

bool AssemblerRun::Operands(const InstructionRow& row, const InstructionName& name)
{
    const Word modifiers = name.modifiers << 20 | static_cast<Word>(name.shift & 15) << 24;
    if (row.hasDestination && !DestinationOperand(modifiers))
        return false;
    out.insert(out.end(), predicate.begin(), predicate.end());
    for (int i = 0; i < row.sourceCount; ++i) {
        if ((i > 0 || row.hasDestination) && !Expect(',', "','"))
            return false;
        if (!SourceOperand())
            return false;
    }
    return true;
}

namespace {

bool Run(std::string_view text, bool checks, std::vector<Word>& wordsOut, AssemblyFault& faultOut)
{
    wordsOut.clear();
    faultOut = {};
    AssemblerRun run(text, wordsOut, faultOut);
    return run.Run() && (!checks || run.Check());
}

} // namespace

bool Assemble(std::string_view text, std::vector<Word>& wordsOut, AssemblyFault& faultOut)
{
    return Run(text, true, wordsOut, faultOut);
}

bool AssembleUnchecked(std::string_view text, std::vector<Word>& wordsOut, AssemblyFault& faultOut)
{
    return Run(text, false, wordsOut, faultOut);
}

} // namespace headless::shader
