#include "platform/headless/shader/Disassembler.h"

#include "platform/headless/shader/InstructionTable.h"
#include "platform/headless/shader/RegisterNames.h"

#include <bit>
#include <charconv>
#include <iterator>

namespace headless::shader {

namespace {

constexpr char kComponents[] = "xyzw";

Word VersionWord(const Version& version)
{
    const Word minor = version.isSoftware ? 0xFF : static_cast<Word>(version.minor);
    return (version.isPixel ? 0xFFFF0000 : 0xFFFE0000) | static_cast<Word>(version.major) << 8 |
           minor;
}

/// The shortest text that reads back as the same float.
std::string FloatText(float value)
{
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, value).ptr;
    return std::string(text, end);
}

std::string MaskText(unsigned mask)
{
    if (mask == kMaskAll)
        return "";
    std::string text = ".";
    for (unsigned i = 0; i < 4; ++i)
        if ((mask >> i & 1) != 0)
            text += kComponents[i];
    return text;
}

/// Components behind the last one that differs from it are left out, as the reader repeats it.
std::string SwizzleText(unsigned swizzle)
{
    if (swizzle == kNoSwizzle)
        return "";
    std::string text;
    for (unsigned i = 0; i < 4; ++i)
        text += kComponents[swizzle >> (i * 2) & 3];
    while (text.size() > 1 && text[text.size() - 2] == text.back())
        text.pop_back();
    return "." + text;
}

class Writer {
public:
    explicit Writer(const Bytecode& bytecode) : code(bytecode) {}

    std::string Write();

private:
    std::string Line(const Instruction& instruction) const;
    std::string NameText(const Instruction& instruction) const;
    std::string DeclarationText(const Instruction& instruction) const;
    std::string PlaceText(const Register& place, const RelativeIndex& relative) const;
    std::string SourceText(const Source& source) const;
    std::string DestinationText(const Destination& out) const
    {
        return PlaceText(out.place, out.relative) + MaskText(out.mask);
    }

    const Bytecode& code;
};

std::string Writer::PlaceText(const Register& place, const RelativeIndex& relative) const
{
    const std::string text = RegisterText(place, code.version);
    if (!relative.isUsed)
        return text;
    std::string index = RegisterText(relative.base, code.version);
    if (relative.base.kind == RegisterKind::Address)
        index += std::string(".") + kComponents[relative.component];
    const size_t digits = text.find_first_of("0123456789");
    return text.substr(0, digits) + "[" + index + " + " + std::to_string(place.number) + "]";
}

std::string Writer::SourceText(const Source& source) const
{
    std::string text = PlaceText(source.place, source.relative);
    std::string_view suffix;
    bool isNegated = source.modifier == SourceModifier::Neg;
    for (const ModifierName& row : kModifierNames) {
        if (source.modifier != row.plain && source.modifier != row.negated)
            continue;
        suffix = row.suffix;
        isNegated = source.modifier != row.plain;
        break;
    }
    if (!suffix.empty()) {
        // The suffix belongs to the name, in front of an index.
        const size_t end = std::min(text.find('['), text.size());
        text.insert(end, "_" + std::string(suffix));
    }
    if (source.modifier == SourceModifier::Comp)
        text = "1-" + text;
    if (source.modifier == SourceModifier::Not)
        text = "!" + text;
    return (isNegated ? "-" : "") + text +
           (source.place.kind == RegisterKind::Loop ? "" : SwizzleText(source.swizzle));
}

std::string Writer::NameText(const Instruction& instruction) const
{
    const InstructionRow* row = FindInstruction(instruction.opcode, code.version);
    std::string text = row ? row->name : "?";
    if (instruction.opcode == Opcode::Tex && code.version.major >= 2 && instruction.control != 0)
        text += instruction.control == kLoadProjected ? "p" : "b";
    const bool compares = instruction.opcode == Opcode::Ifc ||
                          instruction.opcode == Opcode::BreakC ||
                          instruction.opcode == Opcode::SetP;
    if (compares && instruction.control < std::size(kCompareNames))
        text += std::string("_") + kCompareNames[instruction.control];
    const Destination& out = instruction.destination;
    for (const ShiftName& shift : kShiftNames)
        if (instruction.hasDestination && shift.shift == out.shift)
            text += std::string("_") + shift.suffix;
    text += (out.modifiers & kResultPartial) != 0 ? "_pp" : "";
    text += (out.modifiers & kResultCentroid) != 0 ? "_centroid" : "";
    text += (out.modifiers & kResultSaturate) != 0 ? "_sat" : "";
    return text;
}

std::string Writer::DeclarationText(const Instruction& instruction) const
{
    const Destination& out = instruction.destination;
    const std::string place = PlaceText(out.place, {});
    std::string values;
    for (const Word word : instruction.values)
        values +=
            ", " + (instruction.opcode == Opcode::Def ? FloatText(std::bit_cast<float>(word))
                                                      : std::to_string(static_cast<int>(word)));
    if (instruction.opcode == Opcode::Def)
        return "def " + place + values;
    if (instruction.opcode == Opcode::DefI)
        return "defi " + place + values;
    if (instruction.opcode == Opcode::DefB)
        return "defb " + place + (instruction.values[0] != 0 ? ", true" : ", false");
    std::string usage;
    const bool hasUsage =
        (!code.version.isPixel || code.version.major == 3) && out.place.kind != RegisterKind::Misc;
    if (out.place.kind == RegisterKind::Sampler)
        usage = std::string("_") + kSamplerNames[instruction.usage % std::size(kSamplerNames)];
    else if (hasUsage)
        usage = std::string("_") + kUsageNames[instruction.usage % std::size(kUsageNames)] +
                (instruction.usageIndex > 0 ? std::to_string(instruction.usageIndex) : "");
    usage += (out.modifiers & kResultPartial) != 0 ? "_pp" : "";
    usage += (out.modifiers & kResultCentroid) != 0 ? "_centroid" : "";
    return "dcl" + usage + " " + place + MaskText(out.mask);
}

std::string Writer::Line(const Instruction& instruction) const
{
    switch (instruction.opcode) {
    case Opcode::Dcl:
    case Opcode::Def:
    case Opcode::DefI:
    case Opcode::DefB:
        return DeclarationText(instruction);
    default:
        break;
    }
    std::string text = instruction.isCoissued ? "+ " : "";
    if (instruction.isPredicated)
        text += "(" + SourceText(instruction.predicate) + ") ";
    text += NameText(instruction);
    const char* between = " ";
    if (instruction.hasDestination) {
        text += between + DestinationText(instruction.destination);
        between = ", ";
    }
    for (int i = 0; i < instruction.sourceCount; ++i) {
        text += between + SourceText(instruction.sources[i]);
        between = ", ";
    }
    return text;
}

std::string Writer::Write()
{
    std::string text = VersionText(VersionWord(code.version)) + "\n";
    int depth = 1;
    for (const Instruction& instruction : code.instructions) {
        const Opcode opcode = instruction.opcode;
        const bool closes = opcode == Opcode::Else || opcode == Opcode::EndIf ||
                            opcode == Opcode::EndRep || opcode == Opcode::EndLoop;
        depth -= closes && depth > 1 ? 1 : 0;
        const bool isLabel = opcode == Opcode::Label || opcode == Opcode::Phase;
        text.append(isLabel ? 0 : static_cast<size_t>(depth) * 4, ' ');
        text += Line(instruction) + "\n";
        const bool opens = opcode == Opcode::If || opcode == Opcode::Ifc ||
                           opcode == Opcode::Else || opcode == Opcode::Rep ||
                           opcode == Opcode::Loop;
        depth += opens ? 1 : 0;
    }
    return text;
}

} // namespace

std::string Disassemble(const Bytecode& code)
{
    return Writer(code).Write();
}

} // namespace headless::shader
