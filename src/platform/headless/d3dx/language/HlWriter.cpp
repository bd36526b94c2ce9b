// Bytecode.

#include "platform/headless/d3dx/language/HlWriter.h"

#include <algorithm>
#include <bit>
#include <map>

#include "platform/headless/shader/Bytecode.h"
#include "platform/headless/shader/InstructionTable.h"

namespace headless::hl {

namespace {

using shader::Opcode;
using shader::RegisterKind;

constexpr unsigned kPosition = 0, kPointSize = 4, kTexCoord = 5, kColor = 10, kFog = 11,
                   kDepth = 12;
constexpr uint32_t kConstantsOfKind = 2048;

/// The semantics, in the order of their public numbers.
constexpr std::string_view kUsages[] = {
    "POSITION", "BLENDWEIGHT", "BLENDINDICES", "NORMAL", "PSIZE", "TEXCOORD", "TANGENT",
    "BINORMAL", "TESSFACTOR",  "POSITIONT",    "COLOR",  "FOG",   "DEPTH",    "SAMPLE"};

bool FindUsage(std::string_view semantic, unsigned& usageOut)
{
    for (unsigned i = 0; i < std::size(kUsages); ++i)
        if (fx::FxSameWord(semantic, kUsages[i])) {
            usageOut = i;
            return true;
        }
    return false;
}

std::string NameOf(const HlBinding& binding)
{
    return "'" + std::string(binding.semantic) + std::to_string(binding.usageIndex) + "'";
}

} // namespace

HlWriter::HlWriter(const HlProfile& target, const HlMachineCode& steps, HlConstants& uniforms,
                   HlLiterals& numbers, const std::vector<HlBinding>& arguments,
                   const std::vector<HlBinding>& results)
    : profile(target),
      code(steps),
      constants(uniforms),
      literals(numbers),
      inputs(arguments),
      outputs(results)
{}

bool HlWriter::Fail(FxPlace place, const std::string& text, bool isTooLarge)
{
    refusal = {text, place, isTooLarge};
    return false;
}

// ---- Places

bool HlWriter::PlaceConstants(FxPlace place)
{
    std::vector<bool> isRead(constants.RegisterCount());
    bool needsRounds = false;
    readInputs.assign(inputs.size(), false);
    for (const HlInstruction& instruction : code.instructions) {
        for (const HlSource& source : instruction.sources) {
            needsRounds |= source.kind == HlRegister::Whole && source.number == kHlNoRegister;
            if (source.kind == HlRegister::Input)
                readInputs[source.number] = true;
            if (source.kind != HlRegister::Uniform)
                continue;
            isRead[source.number] = true;
            if (const HlUniform* uniform =
                    source.isIndexed ? constants.FindByRegister(source.number) : nullptr)
                std::fill_n(isRead.begin() + uniform->first, uniform->count, true);
        }
        if (instruction.kind == HlRegister::Input) // of texkill
            readInputs[instruction.number] = true;
    }
    const uint32_t samplers = profile.isPixel ? 16 : 4;
    const std::string missing = constants.Assign(isRead, profile.constants, samplers);
    if (!missing.empty())
        return Fail(place,
                    "'" + missing + "' finds no free registers in " + std::string(profile.name),
                    true);
    std::vector<bool>& taken = constants.Taken();
    uint32_t next = 0;
    for (HlLiterals::Register& literal : literals.registers) {
        while (next < taken.size() && taken[next])
            ++next;
        if (next == taken.size())
            return Fail(place, "the numbers find no free registers in " + std::string(profile.name),
                        true);
        literal.place = next++;
    }
    if (needsRounds) {
        roundsPlace = 0;
        for (const HlUniform& uniform : constants.Uniforms())
            roundsPlace += uniform.countsRounds ? 1 : 0;
    }
    return true;
}

bool HlWriter::PlaceInput(const HlBinding& binding, Placed& placedOut)
{
    unsigned usage = 0;
    const bool isKnown = FindUsage(binding.semantic, usage);
    const auto number = static_cast<uint32_t>(&binding - inputs.data());
    if (profile.isPixel && profile.major == 3 && fx::FxSameWord(binding.semantic, "VPOS")) {
        placedOut = {RegisterKind::Misc, shader::kMiscPosition};
        return true;
    }
    if (profile.isPixel && profile.major == 3 && fx::FxSameWord(binding.semantic, "VFACE")) {
        placedOut = {RegisterKind::Misc, shader::kMiscFace};
        return true;
    }
    if (profile.isPixel && profile.major == 2) {
        const bool isColor = isKnown && usage == kColor;
        const unsigned count = isColor ? 2 : 8;
        if ((!isColor && !(isKnown && usage == kTexCoord)) || binding.usageIndex >= count)
            return Fail(binding.place,
                        std::string(profile.name) + " has no input " + NameOf(binding));
        placedOut = {isColor ? RegisterKind::Input : RegisterKind::Texture, binding.usageIndex};
        return true;
    }
    if (!isKnown || binding.usageIndex > 15)
        return Fail(binding.place, std::string(profile.name) + " has no input " + NameOf(binding));
    uint32_t place = 0; // the inputs that are read, in the order of the text
    for (uint32_t i = 0; i < number; ++i)
        place += readInputs[i] && inputPlaces[i].kind == RegisterKind::Input ? 1 : 0;
    if (place >= (profile.isPixel ? 10u : 16u))
        return Fail(binding.place,
                    "there are more inputs than " + std::string(profile.name) + " has");
    placedOut = {RegisterKind::Input, place};
    return true;
}

bool HlWriter::PlaceOldOutput(const HlBinding& binding, unsigned usage, Placed& placedOut)
{
    const uint32_t index = binding.usageIndex;
    if (usage == kPosition && index == 0)
        placedOut = {RegisterKind::RastOut, shader::kOutPosition};
    else if (usage == kFog && index == 0)
        placedOut = {RegisterKind::RastOut, shader::kOutFog};
    else if (usage == kPointSize && index == 0)
        placedOut = {RegisterKind::RastOut, shader::kOutPointSize};
    else if (usage == kColor && index < 2)
        placedOut = {RegisterKind::AttrOut, index};
    else if (usage == kTexCoord && index < 8)
        placedOut = {RegisterKind::TexCrdOut, index};
    else
        return false;
    return true;
}

bool HlWriter::PlaceOutput(const HlBinding& binding, Placed& placedOut)
{
    unsigned usage = 0;
    bool isPlaced = FindUsage(binding.semantic, usage);
    if (isPlaced && profile.isPixel) {
        isPlaced = (usage == kColor && binding.usageIndex < 4) ||
                   (usage == kDepth && binding.usageIndex == 0);
        placedOut = {usage == kColor ? RegisterKind::ColorOut : RegisterKind::DepthOut,
                     binding.usageIndex};
    } else if (isPlaced && profile.major < 3) {
        isPlaced = PlaceOldOutput(binding, usage, placedOut);
    } else {
        const auto number = static_cast<uint32_t>(&binding - outputs.data());
        isPlaced = isPlaced && number < 12 && binding.usageIndex < 16;
        placedOut = {RegisterKind::TexCrdOut, number};
    }
    for (const HlBinding& other : outputs) {
        if (&other == &binding)
            break;
        if (fx::FxSameWord(other.semantic, binding.semantic) &&
            other.usageIndex == binding.usageIndex)
            return Fail(binding.place, "the output " + NameOf(binding) + " is given twice");
    }
    return isPlaced ||
           Fail(binding.place, std::string(profile.name) + " has no output " + NameOf(binding));
}

bool HlWriter::PlaceBindings()
{
    inputPlaces.resize(inputs.size());
    outputPlaces.resize(outputs.size());
    for (size_t i = 0; i < inputs.size(); ++i)
        if (readInputs[i] && !PlaceInput(inputs[i], inputPlaces[i]))
            return false;
    for (size_t i = 0; i < outputs.size(); ++i)
        if (!PlaceOutput(outputs[i], outputPlaces[i]))
            return false;
    return true;
}

HlWriter::Placed HlWriter::Resolve(HlRegister kind, uint32_t number) const
{
    switch (kind) {
    case HlRegister::Virtual:
        return {RegisterKind::Temp, code.registers[number].place};
    case HlRegister::Uniform:
        return {RegisterKind::Const, constants.PlaceOf(number)};
    case HlRegister::Literal:
        return {RegisterKind::Const, literals.registers[number].place};
    case HlRegister::Input:
        return inputPlaces[number];
    case HlRegister::Output:
        return outputPlaces[number];
    case HlRegister::Sampler:
        return {RegisterKind::Sampler, constants.SamplerPlaceOf(number)};
    case HlRegister::Whole:
        if (number == kHlNoRegister)
            return {RegisterKind::ConstInt, roundsPlace};
        return {RegisterKind::ConstInt, constants.FindByRegister(number)->wholePlace};
    default:
        return {RegisterKind::Address, 0};
    }
}

// ---- Words

HlWriter::Word HlWriter::Parameter(RegisterKind kind, uint32_t number) const
{
    static constexpr RegisterKind kConstants[] = {RegisterKind::Const, RegisterKind::Const2,
                                                  RegisterKind::Const3, RegisterKind::Const4};
    if (kind == RegisterKind::Const) {
        kind = kConstants[number / kConstantsOfKind];
        number %= kConstantsOfKind;
    }
    const auto bits = static_cast<Word>(kind);
    return shader::kParameterBit | (bits & 7) << 28 | (bits >> 3 & 3) << 11 | number;
}

void HlWriter::Source(const HlSource& source)
{
    const Placed placed = Resolve(source.kind, source.number);
    Word swizzle = 0;
    for (unsigned i = 0; i < 4; ++i) {
        const bool floats =
            source.kind == HlRegister::Virtual && code.registers[source.number].floats;
        swizzle |= (floats ? code.registers[source.number].component : source.component[i])
                   << (i * 2);
    }
    if (source.kind == HlRegister::Sampler || source.kind == HlRegister::Whole)
        swizzle = shader::kNoSwizzle;
    const auto sign = static_cast<Word>(source.isNegative ? shader::SourceModifier::Neg
                                                          : shader::SourceModifier::None);
    words.push_back(Parameter(placed.kind, placed.number) | swizzle << 16 | sign << 24 |
                    (source.isIndexed ? shader::kRelativeBit : 0));
    if (source.isIndexed && profile.major > 1) // a0.x
        words.push_back(Parameter(RegisterKind::Address, 0));
}

void HlWriter::Instruction(const HlInstruction& instruction)
{
    const size_t first = words.size();
    words.push_back(static_cast<Word>(instruction.opcode) | instruction.control << 16);
    if (instruction.kind != HlRegister::None) {
        const Placed placed = Resolve(instruction.kind, instruction.number);
        unsigned mask = instruction.mask;
        if (instruction.kind == HlRegister::Virtual && code.registers[instruction.number].floats)
            mask = 1u << code.registers[instruction.number].component;
        const bool isSingle =
            placed.kind == RegisterKind::DepthOut ||
            (placed.kind == RegisterKind::RastOut && placed.number != shader::kOutPosition);
        mask = isSingle ? 15 : mask;
        words.push_back(Parameter(placed.kind, placed.number) | mask << 16 |
                        (instruction.saturates ? shader::kResultSaturate << 20 : 0));
    }
    if (instruction.opcode != Opcode::TexKill)
        for (const HlSource& source : instruction.sources)
            Source(source);
    if (profile.major > 1)
        words[first] |= static_cast<Word>(words.size() - first - 1) << 24;
}

void HlWriter::DeclareBinding(const HlBinding& binding, const Placed& placed, bool hasUsage)
{
    unsigned usage = 0;
    FindUsage(binding.semantic, usage);
    const unsigned mask = placed.kind == RegisterKind::TexCrdOut ? binding.mask : 15;
    const Word length = profile.major > 1 ? Word{2} << 24 : 0;
    words.push_back(static_cast<Word>(Opcode::Dcl) | length);
    words.push_back(shader::kParameterBit | (hasUsage ? usage | binding.usageIndex << 16 : 0));
    words.push_back(Parameter(placed.kind, placed.number) | mask << 16);
}

void HlWriter::Define()
{
    const Word length = profile.major > 1 ? Word{5} << 24 : 0;
    for (const HlLiterals::Register& literal : literals.registers) {
        words.push_back(static_cast<Word>(Opcode::Def) | length);
        words.push_back(Parameter(RegisterKind::Const, literal.place) | 15 << 16);
        for (const float value : literal.values)
            words.push_back(std::bit_cast<Word>(value));
    }
    if (roundsPlace == kHlNoRegister)
        return;
    words.push_back(static_cast<Word>(Opcode::DefI) | length);
    words.push_back(Parameter(RegisterKind::ConstInt, roundsPlace) | 15 << 16);
    words.insert(words.end(), {255, 0, 0, 0});
}

void HlWriter::Declare()
{
    const bool hasUsages = !profile.isPixel || profile.major == 3;
    for (size_t i = 0; i < inputs.size(); ++i)
        if (readInputs[i])
            DeclareBinding(inputs[i], inputPlaces[i],
                           hasUsages && inputPlaces[i].kind != RegisterKind::Misc);
    for (size_t i = 0; i < outputs.size() && !profile.isPixel && profile.major == 3; ++i)
        DeclareBinding(outputs[i], outputPlaces[i], true);
    for (const HlUsedSampler& sampler : constants.Samplers()) {
        if (sampler.place == kHlNoRegister || sampler.kind == shader::SamplerKind::Unknown)
            continue;
        words.push_back(static_cast<Word>(Opcode::Dcl) | Word{2} << 24);
        words.push_back(shader::kParameterBit | static_cast<Word>(sampler.kind) << 27);
        words.push_back(Parameter(RegisterKind::Sampler, sampler.place) | 15 << 16);
    }
}

bool HlWriter::CountSlots(FxPlace place)
{
    unsigned arithmetic = 0, texture = 0;
    for (const HlInstruction& instruction : code.instructions) {
        const shader::InstructionRow* row =
            shader::FindInstruction(instruction.opcode, profile.Version());
        if (!row)
            return Fail(place, std::string(profile.name) + " lacks an instruction for this", true);
        const bool isTexture = profile.texture > 0 && (row->traits & shader::kIsTexture) != 0;
        (isTexture ? texture : arithmetic) += static_cast<unsigned>(row->slots);
    }
    if (arithmetic > profile.arithmetic ||
        texture > profile.texture + (profile.texture ? 0 : kHlNoRegister))
        return Fail(
            place,
            "the shader takes " + std::to_string(arithmetic) + " slots" +
                (profile.texture ? " and " + std::to_string(texture) + " for textures" : "") +
                ", " + std::string(profile.name) + " has " + std::to_string(profile.arithmetic) +
                (profile.texture ? " and " + std::to_string(profile.texture) : ""),
            true);
    return true;
}

/// The rules of the bytecode have the last word.
bool HlWriter::Check(FxPlace place)
{
    shader::Bytecode bytecode;
    shader::Fault fault;
    if (shader::ReadBytecode(words, bytecode, fault) && shader::CheckBytecode(bytecode, fault))
        return true;
    return Fail(place, fault.reason);
}

bool HlWriter::Write(FxPlace place, std::vector<Word>& wordsOut, HlRefusal& refusalOut)
{
    unsigned used = 0;
    for (const HlVirtual& one : code.registers)
        used = std::max(used, one.place == 0xFFFF ? 0 : one.place + 1);
    bool isWritten =
        used <= profile.temporaries ||
        Fail(place,
             "the shader needs " + std::to_string(used) + " temporary registers, " +
                 std::string(profile.name) + " has " + std::to_string(profile.temporaries),
             true);
    isWritten = isWritten && PlaceConstants(place) && PlaceBindings() && CountSlots(place);
    if (isWritten) {
        words = {profile.version};
        const std::vector<Word> table = HlWriteConstantTable(constants, profile);
        words.push_back(static_cast<Word>(table.size() + 1) << 16 |
                        static_cast<Word>(Opcode::Comment));
        words.push_back(0x42415443); // CTAB
        words.insert(words.end(), table.begin(), table.end());
        Define();
        Declare();
        for (const HlInstruction& instruction : code.instructions)
            Instruction(instruction);
        words.push_back(shader::kEndWord);
        isWritten = Check(place);
    }
    wordsOut = words;
    refusalOut = refusal;
    return isWritten;
}

} // namespace headless::hl
