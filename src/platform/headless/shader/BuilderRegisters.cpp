// Where the registers of a program are, and which inputs and outputs it has.

#include "platform/headless/shader/InstructionTable.h"
#include "platform/headless/shader/ProgramBuilder.h"
#include "platform/headless/shader/RegisterTable.h"

#include <algorithm>
#include <bit>

namespace headless::shader {

namespace {

constexpr uint32_t kConstantPlaces = 4 * kConstantCopies;

unsigned Key(const Register& place)
{
    return static_cast<unsigned>(place.kind) << 16 | place.number;
}

} // namespace

uint32_t ProgramBuilder::AddRegister()
{
    const uint32_t place = registerEnd;
    registerEnd += kRegisterPlaces;
    return place;
}

uint32_t ProgramBuilder::PlaceOf(const Register& place)
{
    const auto [found, isNew] = places.try_emplace(Key(place), 0);
    if (isNew)
        found->second = AddRegister();
    return found->second;
}

/// Constants have one value for all groups, so several share the room of a register.
uint32_t ProgramBuilder::ConstantPlace(unsigned number)
{
    const auto [found, isNew] = constants.try_emplace(number, 0);
    if (!isNew)
        return found->second;
    if (constantEnd == constantBlockEnd) {
        constantEnd = AddRegister();
        constantBlockEnd = constantEnd + kRegisterPlaces;
    }
    found->second = constantEnd;
    constantEnd += kConstantPlaces;
    program.constants.push_back({number, found->second});
    return found->second;
}

uint32_t ProgramBuilder::OnePlace()
{
    if (ones == 0)
        ones = AddRegister();
    return ones;
}

uint32_t ProgramBuilder::PredicatePlace(unsigned component)
{
    return PlaceOf({RegisterKind::Predicate, 0}) + component * kMaxGroups;
}

/// The coordinates that a stage of ps 1.1 to 1.3 gets, as opposed to the register of the same name.
uint32_t ProgramBuilder::CoordinatePlace(unsigned number)
{
    const auto [found, isNew] = coordinates.try_emplace(number, 0);
    if (!isNew)
        return found->second;
    found->second = AddRegister();
    constexpr Word kTexCoord = 5; // D3DDECLUSAGE_TEXCOORD
    program.inputs.push_back(
        {{RegisterKind::Texture, number}, kTexCoord, number, kMaskAll, found->second});
    return found->second;
}

bool ProgramBuilder::IsRead(const Register& place) const
{
    return InputMask(place) != 0;
}

/// The components of a register that any instruction reads; all if it is read by an index.
unsigned ProgramBuilder::InputMask(const Register& place) const
{
    unsigned mask = 0;
    for (const Instruction& instruction : code.instructions) {
        if (IsDeclaration(instruction.opcode))
            continue;
        for (int i = 0; i < instruction.sourceCount; ++i) {
            const Source& source = instruction.sources[i];
            if (source.place.kind != place.kind)
                continue;
            if (source.relative.isUsed)
                return kMaskAll;
            if (source.place.number != place.number)
                continue;
            unsigned components = ComponentsRead(instruction, i, code.version);
            if (i == 0)
                components &= CoordinateMask(instruction);
            for (unsigned c = 0; c < 4; ++c)
                if ((components >> c & 1) != 0)
                    mask |= 1u << source.Component(c);
            if (!IsSignModifier(source.modifier))
                mask = kMaskAll;
        }
        if (instruction.opcode == Opcode::TexKill && instruction.destination.place == place)
            mask |= instruction.destination.mask | (code.version.major == 1 ? 7u : 0u);
    }
    return mask;
}

/// The coordinates that a load from a declared kind of texture can need.
unsigned ProgramBuilder::CoordinateMask(const Instruction& instruction) const
{
    const bool isLoad = instruction.opcode == Opcode::Tex || instruction.opcode == Opcode::TexLdl ||
                        instruction.opcode == Opcode::TexLdd;
    if (!isLoad || code.version.major == 1)
        return kMaskAll;
    for (const Instruction& declaration : code.instructions) {
        const bool isFlat = declaration.usage == static_cast<Word>(SamplerKind::TwoD) ||
                            declaration.usage == static_cast<Word>(SamplerKind::OneD);
        if (declaration.opcode == Opcode::Dcl && isFlat &&
            declaration.destination.place == instruction.sources[1].place)
            return kMaskX | kMaskY | kMaskW;
    }
    return kMaskAll;
}

bool ProgramBuilder::IsWritten(const Register& place) const
{
    return std::any_of(code.instructions.begin(), code.instructions.end(),
                       [&place](const Instruction& instruction) {
                           const Destination& out = instruction.destination;
                           return instruction.hasDestination &&
                                  !IsDeclaration(instruction.opcode) &&
                                  out.place.kind == place.kind &&
                                  (out.relative.isUsed || out.place.number == place.number);
                       });
}

void ProgramBuilder::BindInput(const Register& place, Word usage, Word usageIndex, unsigned mask)
{
    const unsigned read = InputMask(place) & mask;
    if (read != 0)
        program.inputs.push_back({place, usage, usageIndex, read, PlaceOf(place)});
}

void ProgramBuilder::BindOutput(const Register& place, Word usage, Word usageIndex, unsigned mask)
{
    if (IsWritten(place))
        program.outputs.push_back({place, usage, usageIndex, mask, PlaceOf(place)});
}

/// Registers read or written by an index lie one behind the other.
void ProgramBuilder::PlaceIndexed()
{
    const auto placeAll = [this](RegisterKind kind) {
        for (unsigned i = 0; i < RegisterCount(kind, code.version); ++i)
            PlaceOf({kind, i});
    };
    for (const Instruction& instruction : code.instructions) {
        if (instruction.destination.relative.isUsed)
            placeAll(RegisterKind::TexCrdOut);
        for (int i = 0; i < instruction.sourceCount; ++i) {
            const Source& source = instruction.sources[i];
            if (!source.relative.isUsed)
                continue;
            if (source.place.kind == RegisterKind::Input)
                placeAll(RegisterKind::Input);
            else if (program.indexed.empty())
                program.indexed.resize(RegisterCount(RegisterKind::Const, code.version) * 4);
        }
    }
}

/// Usages of the outputs that have no declaration: D3DDECLUSAGE_POSITION, FOG, PSIZE, COLOR,
/// TEXCOORD.
void ProgramBuilder::PlaceInputsAndOutputs()
{
    constexpr Word kPosition = 0, kPointSize = 4, kTexCoord = 5, kColour = 10, kFog = 11;
    const Version& version = code.version;
    for (const Instruction& instruction : code.instructions) {
        if (instruction.opcode != Opcode::Dcl)
            continue;
        const Destination& out = instruction.destination;
        if (out.place.kind == RegisterKind::Input && (!version.isPixel || version.major == 3))
            BindInput(out.place, instruction.usage, instruction.usageIndex, out.mask);
        if (out.place.kind == RegisterKind::TexCrdOut)
            BindOutput(out.place, instruction.usage, instruction.usageIndex, out.mask);
    }
    if (version.isPixel && version.major < 3) {
        for (unsigned i = 0; i < 2; ++i)
            BindInput({RegisterKind::Input, i}, kColour, i, kMaskAll);
        const bool areCoordinates = version.major == 2 || version.minor == 4;
        for (unsigned i = 0; areCoordinates && i < 8; ++i)
            BindInput({RegisterKind::Texture, i}, kTexCoord, i, kMaskAll);
    }
    if (!version.isPixel && version.major < 3) {
        BindOutput({RegisterKind::RastOut, kOutPosition}, kPosition, 0, kMaskAll);
        BindOutput({RegisterKind::RastOut, kOutFog}, kFog, 0, kMaskAll);
        BindOutput({RegisterKind::RastOut, kOutPointSize}, kPointSize, 0, kMaskAll);
        for (unsigned i = 0; i < 2; ++i)
            BindOutput({RegisterKind::AttrOut, i}, kColour, i, kMaskAll);
        for (unsigned i = 0; i < 8; ++i)
            BindOutput({RegisterKind::TexCrdOut, i}, kTexCoord, i, kMaskAll);
    }
}

void ProgramBuilder::PlaceSpecial()
{
    const Register position = {RegisterKind::Misc, kMiscPosition};
    const Register face = {RegisterKind::Misc, kMiscFace};
    if (code.version.isPixel && IsRead(position)) {
        program.readsPosition = true;
        program.position = PlaceOf(position);
    }
    if (code.version.isPixel && IsRead(face)) {
        program.readsFace = true;
        program.face = PlaceOf(face);
    }
    const auto has = [this](Opcode opcode) {
        return std::any_of(code.instructions.begin(), code.instructions.end(),
                           [opcode](const Instruction& i) { return i.opcode == opcode; });
    };
    program.canKill = has(Opcode::TexKill);
    if (program.canKill)
        program.kill = AddRegister();
    program.writesDepth = IsWritten({RegisterKind::DepthOut, 0}) || has(Opcode::TexDepth) ||
                          has(Opcode::TexM3x2Depth);
    if (program.writesDepth)
        program.depth = PlaceOf({RegisterKind::DepthOut, 0});
    if (code.version.isPixel)
        for (unsigned i = 0; i < (code.version.major == 1 ? 0u : 4u); ++i)
            BindOutput({RegisterKind::ColorOut, i}, 0, i, kMaskAll);
}

void ProgramBuilder::CollectDefinitions()
{
    for (const Instruction& instruction : code.instructions) {
        const unsigned number = instruction.destination.place.number;
        const Word(&words)[4] = instruction.values;
        if (instruction.opcode == Opcode::Def)
            program.definedFloats.push_back(
                {number,
                 {std::bit_cast<float>(words[0]), std::bit_cast<float>(words[1]),
                  std::bit_cast<float>(words[2]), std::bit_cast<float>(words[3])}});
        const DefinedSwitch row = {number,
                                   {static_cast<int>(words[0]), static_cast<int>(words[1]),
                                    static_cast<int>(words[2]), static_cast<int>(words[3])}};
        if (instruction.opcode == Opcode::DefI)
            program.definedInts.push_back(row);
        if (instruction.opcode == Opcode::DefB)
            program.definedBools.push_back(row);
    }
}

bool ProgramBuilder::UsesFlow() const
{
    return std::any_of(
        code.instructions.begin(), code.instructions.end(), [](const Instruction& i) {
            const bool isBlock = (i.opcode >= Opcode::Call && i.opcode <= Opcode::Label) ||
                                 (i.opcode >= Opcode::Rep && i.opcode <= Opcode::BreakC);
            return isBlock || i.isPredicated || i.destination.relative.isUsed;
        });
}

/// Each loop may go round 255 times. Calls may repeat what they lead to, so they always count.
bool ProgramBuilder::MayRunLong() const
{
    int64_t weight = 1, sum = 0;
    for (const Instruction& instruction : code.instructions) {
        if (instruction.opcode == Opcode::Call || instruction.opcode == Opcode::CallNz)
            return true;
        if (instruction.opcode == Opcode::EndLoop || instruction.opcode == Opcode::EndRep) {
            sum += weight;
            weight /= 255;
            continue;
        }
        sum += weight;
        if (instruction.opcode == Opcode::Loop || instruction.opcode == Opcode::Rep)
            weight *= 255;
    }
    return sum > kMaxExecuted;
}

} // namespace headless::shader
