// Operands and declarations of assembler text.

#include "platform/headless/shader/AssemblerRun.h"
#include "platform/headless/shader/RegisterNames.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <iterator>

namespace headless::shader {

namespace {

Word KindBits(RegisterKind kind)
{
    const Word number = static_cast<Word>(kind);
    return (number & 7) << 28 | (number & 0x18) << 8;
}

/// Constants above 2047 are other kinds of registers in the stream.
Word RegisterBits(const Register& place)
{
    if (place.kind != RegisterKind::Const || place.number < 2048)
        return kParameterBit | KindBits(place.kind) | place.number;
    const auto block = static_cast<Word>(RegisterKind::Const2) + place.number / 2048 - 1;
    return kParameterBit | KindBits(static_cast<RegisterKind>(block)) | place.number % 2048;
}

int ComponentOf(char c)
{
    constexpr std::string_view kNames = "xyzwrgba";
    const size_t at = kNames.find(c);
    return at == std::string_view::npos ? -1 : static_cast<int>(at % 4);
}

} // namespace

// ---- Declarations

/// What stands behind "dcl_": a usage with its number, or a kind of texture, and suffixes.
bool AssemblerRun::DeclaredUsage(const AsmWord& name, std::string& usage, Word& wordOut,
                                 Word& modifiersOut)
{
    std::string_view rest = name.text.substr(3);
    while (!rest.empty()) {
        rest.remove_prefix(1); // the '_'
        const std::string_view part = rest.substr(0, rest.find('_'));
        rest.remove_prefix(part.size());
        if (part == "pp")
            modifiersOut |= kResultPartial << 20;
        else if (part == "centroid")
            modifiersOut |= kResultCentroid << 20;
        else
            usage = part;
    }
    wordOut = kParameterBit;
    const auto* kind = std::find(std::begin(kSamplerNames) + 1, std::end(kSamplerNames), usage);
    if (kind != std::end(kSamplerNames)) {
        wordOut |= static_cast<Word>(kind - std::begin(kSamplerNames)) << 27;
        return true;
    }
    const size_t digits = std::min(usage.find_first_of("0123456789"), usage.size());
    const std::string base = usage.substr(0, digits);
    unsigned number = 0;
    std::from_chars(usage.data() + digits, usage.data() + usage.size(), number);
    const auto* known = std::find(std::begin(kUsageNames), std::end(kUsageNames), base);
    if (usage.empty())
        return true;
    if (known == std::end(kUsageNames) || number > 15)
        return Fail(name, "there is no usage '" + usage + "'");
    wordOut |= static_cast<Word>(known - std::begin(kUsageNames)) | number << 16;
    return true;
}

bool AssemblerRun::Declaration(const AsmWord& name)
{
    std::string usage;
    Word word = 0, modifiers = 0;
    if (name.text.size() > 3 && name.text[3] != '_')
        return Fail(name, "the version has no instruction '" + std::string(name.text) + "'");
    if (!DeclaredUsage(name, usage, word, modifiers))
        return false;
    const size_t start = out.size();
    out.push_back(0);
    out.push_back(word);
    if (!DestinationOperand(modifiers))
        return false;
    EndInstruction(start, static_cast<Word>(Opcode::Dcl));
    return true;
}

bool AssemblerRun::NumberValue(bool isWhole, Word& valueOut)
{
    const bool isNegative = source.Accept('-');
    if (!isNegative)
        source.Accept('+');
    const AsmWord number = source.Next();
    std::string_view text = number.text;
    if (!isWhole && (text.ends_with('f') || text.ends_with('F')))
        text.remove_suffix(1);
    const char* const end = text.data() + text.size();
    int64_t whole = 0;
    float real = 0.0f;
    const auto result = isWhole ? std::from_chars(text.data(), end, whole)
                                : std::from_chars(text.data(), end, real);
    const bool isRead =
        number.kind == AsmKind::Number && result.ec == std::errc() && result.ptr == end;
    if (!isRead || (isWhole && whole > 0xFFFFFFFF))
        return Fail(number, "expected a number");
    valueOut = isWhole ? static_cast<Word>(isNegative ? -whole : whole)
                       : std::bit_cast<Word>(isNegative ? -real : real);
    return true;
}

bool AssemblerRun::ConstantValue(char kind, Word& valueOut)
{
    if (kind != 'b')
        return NumberValue(kind == 'i', valueOut);
    const AsmWord word = source.Peek();
    if (word.kind != AsmKind::Name)
        return NumberValue(true, valueOut);
    source.Next();
    valueOut = word.text == "true" ? 1 : 0;
    return word.text == "true" || word.text == "false" || Fail(word, "expected true or false");
}

/// def c0, x, y, z, w; defi i0, ...; defb b0, true.
bool AssemblerRun::Constant(const AsmWord& name)
{
    const char kind = name.text.back();
    const Opcode opcode = kind == 'i' ? Opcode::DefI : (kind == 'b' ? Opcode::DefB : Opcode::Def);
    const size_t start = out.size();
    out.push_back(0);
    if (!DestinationOperand(0))
        return false;
    for (int i = 0; i < (kind == 'b' ? 1 : 4); ++i) {
        Word value = 0;
        if (!Expect(',', "','") || !ConstantValue(kind, value))
            return false;
        out.push_back(value);
    }
    EndInstruction(start, static_cast<Word>(opcode));
    return true;
}

// ---- Operands

bool AssemblerRun::Predicate()
{
    const bool isInverted = source.Accept('!');
    Register place;
    std::string suffix;
    AsmWord word;
    Word swizzle = 0;
    if (!TakeRegister(place, suffix, word) || !TakeSwizzle(swizzle) || !Expect(')', "')'"))
        return false;
    const auto modifier =
        static_cast<Word>(isInverted ? SourceModifier::Not : SourceModifier::None);
    predicate = {RegisterBits(place) | swizzle << 16 | modifier << 24};
    return true;
}

/// A register's name may carry the suffix of a modifier: "r0_bx2".
bool AssemblerRun::TakeRegister(Register& place, std::string& suffixOut, AsmWord& wordOut)
{
    wordOut = source.Next();
    const size_t end = wordOut.text.find('_');
    suffixOut = end == std::string_view::npos ? "" : std::string(wordOut.text.substr(end + 1));
    if (wordOut.kind != AsmKind::Name ||
        !ParseRegister(wordOut.text.substr(0, end), version, place))
        return Fail(wordOut, "the version has no register '" + std::string(wordOut.text) + "'");
    return true;
}

/// "[a0.x + 5]", "[5 + a0.x]", "[aL]" or "[5]" behind a register.
bool AssemblerRun::TakeIndex(Register& place, std::vector<Word>& indexOut, Word& bitsInOut)
{
    if (!source.Accept('['))
        return true;
    do {
        const AsmWord word = source.Peek();
        if (word.kind == AsmKind::Number) {
            Word number = 0;
            if (!NumberValue(true, number))
                return false;
            place.number += number;
            continue;
        }
        Register index;
        std::string suffix;
        AsmWord name;
        Word swizzle = 0;
        if (!indexOut.empty() || !TakeRegister(index, suffix, name) || !TakeSwizzle(swizzle))
            return fault.reason.empty() ? Fail(word, "two registers in one index") : false;
        if (index.kind == RegisterKind::Address && swizzle == kNoSwizzle)
            swizzle = 0; // a0 alone means a0.x
        indexOut.push_back(RegisterBits(index) | swizzle << 16);
        bitsInOut |= kRelativeBit;
    } while (source.Accept('+'));
    return place.number < 8192 ? Expect(']', "']'")
                               : Fail(source.Peek(), "the register number is too high");
}

bool AssemblerRun::TakeMask(Word& maskOut)
{
    maskOut = kMaskAll;
    if (!source.Accept('.'))
        return true;
    const AsmWord word = source.Next();
    maskOut = 0;
    int last = -1;
    for (const char c : word.text) {
        const int component = ComponentOf(c);
        if (component <= last)
            return Fail(word, "expected components in order");
        last = component;
        maskOut |= 1u << component;
    }
    return true;
}

/// Missing components repeat the last one.
bool AssemblerRun::TakeSwizzle(Word& swizzleOut)
{
    swizzleOut = kNoSwizzle;
    if (!source.Accept('.'))
        return true;
    const AsmWord word = source.Next();
    if (word.kind != AsmKind::Name || word.text.size() > 4)
        return Fail(word, "expected one to four components");
    swizzleOut = 0;
    for (size_t i = 0; i < 4; ++i) {
        const int component = ComponentOf(word.text[std::min(i, word.text.size() - 1)]);
        if (component < 0)
            return Fail(word, "expected one to four components");
        swizzleOut |= static_cast<Word>(component) << (i * 2);
    }
    return true;
}

bool AssemblerRun::DestinationOperand(Word modifierBits)
{
    Register place;
    std::string suffix;
    AsmWord word;
    std::vector<Word> index;
    Word bits = 0, mask = 0;
    if (!TakeRegister(place, suffix, word) || !TakeIndex(place, index, bits) || !TakeMask(mask))
        return false;
    if (!suffix.empty())
        return Fail(word, "a result has no modifier");
    const bool isSampler = place.kind == RegisterKind::Sampler;
    out.push_back(RegisterBits(place) | bits | (isSampler ? kMaskAll : mask) << 16 | modifierBits);
    if (version.major >= 2)
        out.insert(out.end(), index.begin(), index.end());
    return true;
}

bool AssemblerRun::ModifierOf(const AsmWord& word, const std::string& suffix, bool isNegated,
                              Word& bitsOut)
{
    SourceModifier modifier = isNegated ? SourceModifier::Neg : SourceModifier::None;
    if (!suffix.empty()) {
        const auto* row =
            std::find_if(std::begin(kModifierNames), std::end(kModifierNames),
                         [&](const ModifierName& one) { return suffix == one.suffix; });
        if (row == std::end(kModifierNames))
            return Fail(word, "there is no modifier '_" + suffix + "'");
        modifier = isNegated ? row->negated : row->plain;
    }
    bitsOut = static_cast<Word>(modifier) << 24;
    return true;
}

bool AssemblerRun::SourceOperand()
{
    const AsmWord first = source.Peek();
    const bool isInverted = source.Accept('!');
    bool isComplement = false;
    if (first.kind == AsmKind::Number) { // 1-r0
        isComplement = true;
        if (source.Next().text != "1" || !source.Accept('-'))
            return Fail(first, "expected a register");
    }
    const bool isNegated = source.Accept('-');
    Register place;
    std::string suffix;
    AsmWord word;
    std::vector<Word> index;
    Word bits = 0, swizzle = 0, modifier = 0;
    if (!TakeRegister(place, suffix, word) || !TakeIndex(place, index, bits) ||
        !ModifierOf(word, suffix, isNegated, modifier) || !TakeSwizzle(swizzle))
        return false;
    if (isInverted)
        modifier = static_cast<Word>(SourceModifier::Not) << 24;
    if (isComplement)
        modifier = static_cast<Word>(SourceModifier::Comp) << 24;
    out.push_back(RegisterBits(place) | bits | swizzle << 16 | modifier);
    if (version.major >= 2)
        out.insert(out.end(), index.begin(), index.end());
    return true;
}

} // namespace headless::shader
