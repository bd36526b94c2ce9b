// Declared before use, written before read, results complete.

#include "platform/headless/shader/BytecodeRules.h"
#include "platform/headless/shader/InstructionTable.h"
#include "platform/headless/shader/RegisterTable.h"

#include <algorithm>
#include <map>

namespace headless::shader {

namespace {

/// Components of registers, by kind and number.
class ComponentSet {
public:
    unsigned Of(const Register& place) const
    {
        const auto found = masks.find(Key(place));
        return found == masks.end() ? 0 : found->second;
    }
    void Add(const Register& place, unsigned mask) { masks[Key(place)] |= mask; }

private:
    static unsigned Key(const Register& place)
    {
        return static_cast<unsigned>(place.kind) << 16 | place.number;
    }

    std::map<unsigned, unsigned> masks;
};

unsigned Swizzled(const Source& source, unsigned components)
{
    unsigned read = 0;
    for (unsigned i = 0; i < 4; ++i)
        if ((components >> i & 1) != 0)
            read |= 1u << source.Component(i);
    return read;
}

class UseCheck {
public:
    UseCheck(const Bytecode& bytecode, size_t& place) : code(bytecode), wordOut(place) {}

    const char* Run();

private:
    const char* Declare(const Instruction& instruction);
    const char* Define(const Instruction& instruction);
    const char* CheckReads(const Instruction& instruction);
    const char* CheckRead(const Source& source, unsigned components);
    unsigned CoordinatesOf(const Instruction& instruction, int i, unsigned components) const;
    const char* CheckWrite(const Instruction& instruction);
    const char* CheckOutputs();
    bool NeedsDeclaration(RegisterKind kind) const;
    bool IsTemporary(RegisterKind kind) const;
    void CollectWrites();

    const Bytecode& code;
    size_t& wordOut;
    ComponentSet declared;
    ComponentSet defined;
    ComponentSet written;
    std::map<unsigned, Word> samplerKinds;
    std::vector<std::pair<Word, Word>> inputUsages, outputUsages;
    Register positionOutput = {RegisterKind::RastOut, kOutPosition};
};

bool IsDefinition(Opcode opcode)
{
    return opcode == Opcode::Def || opcode == Opcode::DefI || opcode == Opcode::DefB;
}

/// Instructions whose first parameter is read.
bool IsReadOnly(Opcode opcode)
{
    return opcode == Opcode::TexKill || opcode == Opcode::TexDepth;
}

/// ps 1.x has no declarations.
bool UseCheck::NeedsDeclaration(RegisterKind kind) const
{
    const Version& version = code.version;
    if (!version.isPixel)
        return kind == RegisterKind::Input || kind == RegisterKind::Sampler ||
               (kind == RegisterKind::TexCrdOut && version.major == 3);
    return version.major >= 2 && (kind == RegisterKind::Input || kind == RegisterKind::Sampler ||
                                  kind == RegisterKind::Misc || kind == RegisterKind::Texture);
}

/// Registers that hold nothing until they are written.
bool UseCheck::IsTemporary(RegisterKind kind) const
{
    const Version& version = code.version;
    return kind == RegisterKind::Temp || kind == RegisterKind::Predicate ||
           (version.isPixel && version.major == 1 && version.minor < 4 &&
            kind == RegisterKind::Texture);
}

const char* UseCheck::Declare(const Instruction& instruction)
{
    const Destination& out = instruction.destination;
    const bool isSampler = out.place.kind == RegisterKind::Sampler;
    if ((declared.Of(out.place) & (isSampler ? kMaskAll : out.mask)) != 0)
        return "a register is declared twice";
    declared.Add(out.place, isSampler ? kMaskAll : out.mask);
    if (isSampler)
        samplerKinds[out.place.number] = instruction.usage;
    const bool hasUsage = !code.version.isPixel || code.version.major == 3;
    if (isSampler || !hasUsage || out.place.kind == RegisterKind::Misc)
        return nullptr;
    const std::pair<Word, Word> usage = {instruction.usage, instruction.usageIndex};
    const bool isOutput = out.place.kind == RegisterKind::TexCrdOut;
    auto& usages = isOutput ? outputUsages : inputUsages;
    if (std::find(usages.begin(), usages.end(), usage) != usages.end())
        return "a usage is declared twice";
    usages.push_back(usage);
    if (isOutput && usage == std::pair<Word, Word>{0, 0}) // D3DDECLUSAGE_POSITION
        positionOutput = out.place;
    return nullptr;
}

const char* UseCheck::Define(const Instruction& instruction)
{
    if (defined.Of(instruction.destination.place) != 0)
        return "a constant is defined twice";
    defined.Add(instruction.destination.place, kMaskAll);
    return nullptr;
}

const char* UseCheck::CheckRead(const Source& source, unsigned components)
{
    const RegisterKind kind = source.place.kind;
    if (source.relative.isUsed)
        return nullptr;
    const unsigned read = Swizzled(source, components);
    if (NeedsDeclaration(kind) && declared.Of(source.place) == 0)
        return "a register is read that is not declared";
    if (IsTemporary(kind) && (read & ~written.Of(source.place)) != 0)
        return "a register is read before it is written";
    return nullptr;
}

/// Of coordinates and gradients only as many matter as the declared kind of texture has.
unsigned UseCheck::CoordinatesOf(const Instruction& instruction, int i, unsigned components) const
{
    const bool isLoad = instruction.opcode == Opcode::Tex || instruction.opcode == Opcode::TexLdl ||
                        instruction.opcode == Opcode::TexLdd;
    if (!isLoad || i == 1 || instruction.sourceCount < 2)
        return components;
    const auto kind = samplerKinds.find(instruction.sources[1].place.number);
    if (kind == samplerKinds.end())
        return components;
    switch (static_cast<SamplerKind>(kind->second)) {
    case SamplerKind::OneD:
        return components & ~(kMaskY | kMaskZ);
    case SamplerKind::TwoD:
        return components & ~kMaskZ;
    default:
        return components;
    }
}

const char* UseCheck::CheckReads(const Instruction& instruction)
{
    if (instruction.isPredicated)
        if (const char* reason = CheckRead(instruction.predicate, kMaskX))
            return reason;
    const int rows = MatrixRows(instruction.opcode);
    for (int i = 0; i < instruction.sourceCount; ++i) {
        Source source = instruction.sources[i];
        const unsigned components =
            CoordinatesOf(instruction, i, ComponentsRead(instruction, i, code.version));
        for (int row = 0; row < (i == 1 && rows > 0 ? rows : 1); ++row, ++source.place.number)
            if (const char* reason = CheckRead(source, components))
                return reason;
    }
    if (IsReadOnly(instruction.opcode) && (code.version.major > 1 || code.version.minor == 4)) {
        Source killed;
        killed.place = instruction.destination.place;
        if (instruction.opcode == Opcode::TexDepth)
            return CheckRead(killed, kMaskX | kMaskY);
        const unsigned tested = code.version.major == 1 ? kMaskX | kMaskY | kMaskZ : kMaskAll;
        return CheckRead(killed, instruction.destination.mask & tested);
    }
    return nullptr;
}

const char* UseCheck::CheckWrite(const Instruction& instruction)
{
    const Destination& out = instruction.destination;
    if (!instruction.hasDestination || out.relative.isUsed || IsReadOnly(instruction.opcode))
        return nullptr;
    const bool isOutput = !code.version.isPixel && out.place.kind == RegisterKind::TexCrdOut;
    if (isOutput && NeedsDeclaration(out.place.kind) && (out.mask & ~declared.Of(out.place)) != 0)
        return "an output is written that is not declared";
    written.Add(out.place, out.mask);
    return nullptr;
}

/// A subroutine stands behind the code that calls it, so what it writes counts from the start.
void UseCheck::CollectWrites()
{
    const auto isCall = [](const Instruction& instruction) {
        return instruction.opcode == Opcode::Call || instruction.opcode == Opcode::CallNz;
    };
    if (!std::any_of(code.instructions.begin(), code.instructions.end(), isCall))
        return;
    for (const Instruction& instruction : code.instructions)
        if (instruction.hasDestination && instruction.opcode != Opcode::Dcl)
            written.Add(instruction.destination.place, instruction.destination.mask);
}

const char* UseCheck::CheckOutputs()
{
    if (!code.version.isPixel)
        return written.Of(positionOutput) == kMaskAll ? nullptr
                                                      : "the position is not written completely";
    if (code.version.major == 1)
        return written.Of({RegisterKind::Temp, 0}) != 0 ? nullptr
                                                        : "r0, the result, is not written";
    if (code.version.major == 2)
        return written.Of({RegisterKind::ColorOut, 0}) == kMaskAll
                   ? nullptr
                   : "oC0 is not written completely";
    return nullptr;
}

const char* UseCheck::Run()
{
    CollectWrites();
    for (const Instruction& instruction : code.instructions) {
        wordOut = instruction.word;
        const char* reason = nullptr;
        if (instruction.opcode == Opcode::Dcl)
            reason = Declare(instruction);
        else if (IsDefinition(instruction.opcode))
            reason = Define(instruction);
        else
            reason = CheckReads(instruction);
        if (!reason && instruction.opcode != Opcode::Dcl && !IsDefinition(instruction.opcode))
            reason = CheckWrite(instruction);
        if (reason)
            return reason;
    }
    return CheckOutputs();
}

} // namespace

const char* CheckUse(const Bytecode& code, size_t& wordOut)
{
    return UseCheck(code, wordOut).Run();
}

} // namespace headless::shader
