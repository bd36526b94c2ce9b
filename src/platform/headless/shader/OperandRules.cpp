// Which registers, masks, swizzles and modifiers an instruction may have in each version.

#include "platform/headless/shader/BytecodeRules.h"
#include "platform/headless/shader/InstructionTable.h"
#include "platform/headless/shader/RegisterTable.h"

namespace headless::shader {

namespace {

constexpr unsigned kMaskXyz = kMaskX | kMaskY | kMaskZ;

bool IsTexture(const InstructionRow& row)
{
    return (row.traits & kIsTexture) != 0;
}

/// vs 1.1 addresses constants by a0; 2.0 and up by aL too; 3.0 also its inputs and outputs.
const char* CheckRelative(const RelativeIndex& index, const Register& place, const Version& version)
{
    if (!index.isUsed)
        return nullptr;
    const bool isAddress = index.base == Register{RegisterKind::Address, 0} && !version.isPixel;
    const bool isLoop = index.base == Register{RegisterKind::Loop, 0} &&
                        RegisterCount(RegisterKind::Loop, version) > 0;
    if (!isAddress && !isLoop)
        return "an index is not a0 or aL";
    if (place.kind == RegisterKind::Const && !version.isPixel)
        return nullptr;
    if (version.major == 3 && place.kind == RegisterKind::Input)
        return nullptr;
    if (version.major == 3 && !version.isPixel && place.kind == RegisterKind::TexCrdOut)
        return nullptr;
    return "the version cannot index this kind of register";
}

const char* CheckNumber(const Register& place, unsigned span, const Version& version)
{
    const unsigned count = RegisterCount(place.kind, version);
    if (count == 0)
        return "the version does not have this kind of register";
    return place.number < count && span <= count - place.number ? nullptr
                                                                : "a register number is too high";
}

/// Results that only certain instructions write.
bool IsWritable(const Instruction& instruction, const InstructionRow& row, const Version& version)
{
    const RegisterKind kind = instruction.destination.place.kind;
    if (instruction.opcode == Opcode::SetP)
        return kind == RegisterKind::Predicate;
    if (instruction.opcode == Opcode::MovA)
        return kind == RegisterKind::Address;
    if (!version.isPixel && kind == RegisterKind::Address)
        return version.major == 1 && instruction.opcode == Opcode::Mov;
    if ((row.traits & kHasNoResult) != 0)
        return kind == RegisterKind::Temp || kind == RegisterKind::Texture ||
               (version.major == 3 && kind == RegisterKind::Input);
    if (instruction.opcode == Opcode::TexDepth)
        return instruction.destination.place == Register{RegisterKind::Temp, 5};
    if (version.isPixel && version.major == 2 &&
        (kind == RegisterKind::ColorOut || kind == RegisterKind::DepthOut))
        return instruction.opcode == Opcode::Mov;
    if (version.isPixel && version.major == 1 && version.minor < 4 && IsTexture(row))
        return kind == RegisterKind::Texture;
    const RegisterRow* registers = FindRegisters(kind, version);
    return registers && registers->isWritten;
}

const char* CheckMask(const Instruction& instruction, const Version& version)
{
    const Destination& out = instruction.destination;
    if (out.mask == 0)
        return "no component is written";
    const bool isOld = version.isPixel && version.major == 1 && version.minor < 4;
    if (isOld && out.mask != kMaskAll && out.mask != kMaskXyz && out.mask != kMaskW)
        return "the version cannot write these components alone";
    switch (instruction.opcode) {
    case Opcode::M4x3:
    case Opcode::M3x3:
        return out.mask == kMaskXyz ? nullptr : "a product of three rows writes x, y and z";
    case Opcode::M3x2:
        return out.mask == (kMaskX | kMaskY) ? nullptr : "a product of two rows writes x and y";
    case Opcode::M4x4:
    case Opcode::M3x4:
        return out.mask == kMaskAll ? nullptr : "a product of four rows writes all components";
    case Opcode::Crs:
    case Opcode::Nrm:
        if (instruction.opcode == Opcode::Nrm && out.mask == kMaskAll)
            return nullptr;
        return (out.mask & kMaskW) == 0 ? nullptr : "the instruction does not write w";
    case Opcode::SinCos:
        return (out.mask & ~(kMaskX | kMaskY)) == 0 ? nullptr : "sincos writes x and y only";
    case Opcode::Frc:
        if (version.isPixel || version.major > 1)
            return nullptr;
        return (out.mask & ~(kMaskX | kMaskY)) == 0 ? nullptr : "frc of vs 1.1 writes x and y only";
    default:
        return nullptr;
    }
}

const char* CheckResultModifiers(const Instruction& instruction, const InstructionRow& row,
                                 const Version& version)
{
    const Destination& out = instruction.destination;
    if (out.shift != 0) {
        const bool canShift = version.isPixel && version.major == 1 && !IsTexture(row);
        if (!canShift || out.shift > 3 || out.shift < -3 ||
            (version.minor < 4 && (out.shift > 2 || out.shift < -1)))
            return "the version cannot scale the result like this";
    }
    if ((out.modifiers & 8) != 0)
        return "a result modifier is unknown";
    const bool canSaturate = version.isPixel || version.major == 3;
    if ((out.modifiers & kResultSaturate) != 0 && (!canSaturate || IsTexture(row)))
        return "the result cannot be saturated here";
    if ((out.modifiers & (kResultPartial | kResultCentroid)) != 0 &&
        (!version.isPixel || version.major < 2))
        return "a result modifier is not in this version";
    return nullptr;
}

const char* CheckDestination(const Instruction& instruction, const InstructionRow& row,
                             const Version& version)
{
    const Destination& out = instruction.destination;
    if (!IsWritable(instruction, row, version))
        return "the instruction cannot write this register";
    if (const char* reason = CheckNumber(out.place, 1, version))
        return reason;
    if (const char* reason = CheckRelative(out.relative, out.place, version))
        return reason;
    if (const char* reason = CheckMask(instruction, version))
        return reason;
    return CheckResultModifiers(instruction, row, version);
}

/// The kinds of registers that the flow and texture instructions take instead of numbers.
bool IsReadable(const Instruction& instruction, int i, const Version& version)
{
    const RegisterKind kind = instruction.sources[i].place.kind;
    switch (instruction.opcode) {
    case Opcode::Call:
    case Opcode::Label:
        return kind == RegisterKind::Label;
    case Opcode::CallNz:
        if (i == 0)
            return kind == RegisterKind::Label;
        [[fallthrough]];
    case Opcode::If:
        return kind == RegisterKind::ConstBool ||
               (kind == RegisterKind::Predicate && version.IsExtended());
    case Opcode::BreakP:
        return kind == RegisterKind::Predicate;
    case Opcode::Rep:
        return kind == RegisterKind::ConstInt;
    case Opcode::Loop:
        return kind == (i == 0 ? RegisterKind::Loop : RegisterKind::ConstInt);
    case Opcode::Tex:
    case Opcode::TexLdl:
    case Opcode::TexLdd:
        if (i == 1)
            return kind == RegisterKind::Sampler;
        break;
    default:
        break;
    }
    if (version.Is(1, 4) && version.isPixel && kind == RegisterKind::Texture)
        return instruction.opcode == Opcode::Tex || instruction.opcode == Opcode::TexCoord;
    const RegisterRow* registers = FindRegisters(kind, version);
    return registers && registers->isRead;
}

bool IsPs20Swizzle(unsigned swizzle)
{
    constexpr unsigned kTurned[] = {kNoSwizzle, 0xC9, 0xD2, 0x1B}; // xyzw, yzxw, zxyw, wzyx
    for (const unsigned one : kTurned)
        if (swizzle == one)
            return true;
    return swizzle == (swizzle & 3) * 0x55;
}

const char* CheckSwizzle(const Instruction& instruction, const InstructionRow& row,
                         const Source& source, const Version& version)
{
    const char* const kRefused = "the version does not have this swizzle";
    const bool needsOne = (row.traits & kIsScalar) != 0 && !(instruction.opcode == Opcode::SinCos &&
                                                             &source != &instruction.sources[0]);
    if (needsOne && !source.IsReplicate())
        return "a scalar instruction reads one component";
    if (!version.isPixel || version.IsExtended())
        return nullptr;
    if (version.major == 2)
        return IsPs20Swizzle(source.swizzle) ? nullptr : kRefused;
    if (source.swizzle == kNoSwizzle)
        return nullptr;
    if (IsTexture(row)) // 1.4 projects by the third or fourth coordinate: xyz and xyw
        return version.minor == 4 && (source.swizzle == 0xA4 || source.swizzle == 0xF4) ? nullptr
                                                                                        : kRefused;
    const bool isBlueOrAlpha = source.swizzle == 0xAA || source.swizzle == 0xFF;
    return (version.minor == 4 ? source.IsReplicate() : isBlueOrAlpha) ? nullptr : kRefused;
}

const char* CheckSourceModifier(const Instruction& instruction, const InstructionRow& row,
                                const Source& source, const Version& version)
{
    const SourceModifier modifier = source.modifier;
    const char* const kRefused = "the version does not have this source modifier";
    if (modifier == SourceModifier::None)
        return nullptr;
    if (modifier == SourceModifier::Not)
        return source.place.kind == RegisterKind::Predicate ||
                       source.place.kind == RegisterKind::ConstBool
                   ? nullptr
                   : kRefused;
    if (source.place.kind == RegisterKind::Predicate || (row.traits & kIsFlow) == kIsFlow) {
        const bool compares =
            instruction.opcode == Opcode::Ifc || instruction.opcode == Opcode::BreakC;
        if (!compares)
            return kRefused;
    }
    if (modifier == SourceModifier::Neg)
        return !version.isPixel || version.major > 1 || source.place.kind != RegisterKind::Const ||
                       version.minor == 4
                   ? nullptr
                   : "a constant of ps 1.x has no modifiers";
    if (modifier == SourceModifier::Abs || modifier == SourceModifier::AbsNeg)
        return version.major == 3 ? nullptr : kRefused;
    if (!version.isPixel || version.major > 1)
        return kRefused;
    if (modifier == SourceModifier::Dz || modifier == SourceModifier::Dw)
        return version.minor == 4 && IsTexture(row) ? nullptr : kRefused;
    if (IsTexture(row)) // _bx2 on the source of the old matrix instructions
        return modifier == SourceModifier::Sign ? nullptr : kRefused;
    if ((modifier == SourceModifier::X2 || modifier == SourceModifier::X2Neg) && version.minor < 4)
        return kRefused;
    return source.place.kind == RegisterKind::Const && version.minor < 4
               ? "a constant of ps 1.x has no modifiers"
               : nullptr;
}

const char* CheckSource(const Instruction& instruction, const InstructionRow& row, int i,
                        const Version& version)
{
    const Source& source = instruction.sources[i];
    if (!IsReadable(instruction, i, version))
        return "the instruction cannot read this register";
    const bool isMatrix = i == 1 && MatrixRows(instruction.opcode) > 0;
    const auto span = static_cast<unsigned>(isMatrix ? MatrixRows(instruction.opcode) : 1);
    if (const char* reason = CheckNumber(source.place, span, version))
        return reason;
    if (const char* reason = CheckRelative(source.relative, source.place, version))
        return reason;
    if (isMatrix && source.swizzle != kNoSwizzle)
        return "the matrix of a product has no swizzle";
    if (const char* reason = CheckSwizzle(instruction, row, source, version))
        return reason;
    return CheckSourceModifier(instruction, row, source, version);
}

const char* CheckControl(const Instruction& instruction, const Version& version)
{
    switch (instruction.opcode) {
    case Opcode::Ifc:
    case Opcode::BreakC:
    case Opcode::SetP:
        return instruction.control >= 1 && instruction.control <= 6 ? nullptr
                                                                    : "a comparison is unknown";
    case Opcode::Tex:
        return instruction.control == 0 ||
                       (version.major >= 2 && instruction.control <= kLoadBiased)
                   ? nullptr
                   : "the kind of a texture load is unknown";
    default:
        return nullptr;
    }
}

const char* CheckPredicate(const Instruction& instruction, const InstructionRow& row)
{
    if (!instruction.isPredicated)
        return nullptr;
    const Source& predicate = instruction.predicate;
    if (predicate.place != Register{RegisterKind::Predicate, 0})
        return "an instruction is predicated by something else than p0";
    if ((row.traits & kIsFlow) != 0 || instruction.opcode == Opcode::SetP)
        return "the instruction cannot be predicated";
    if (predicate.modifier != SourceModifier::None && predicate.modifier != SourceModifier::Not)
        return "the predicate has no such modifier";
    return predicate.swizzle == kNoSwizzle || predicate.IsReplicate()
               ? nullptr
               : "the predicate has no such swizzle";
}

} // namespace

const char* CheckOperands(const Instruction& instruction, const Version& version)
{
    const InstructionRow& row = *FindInstruction(instruction.opcode, version);
    if (const char* reason = CheckControl(instruction, version))
        return reason;
    if (instruction.hasDestination)
        if (const char* reason = CheckDestination(instruction, row, version))
            return reason;
    if (const char* reason = CheckPredicate(instruction, row))
        return reason;
    for (int i = 0; i < instruction.sourceCount; ++i)
        if (const char* reason = CheckSource(instruction, row, i, version))
            return reason;
    return nullptr;
}

namespace {

const char* CheckConstant(const Instruction& instruction, const Version& version)
{
    const Register& place = instruction.destination.place;
    const RegisterKind wanted = instruction.opcode == Opcode::Def    ? RegisterKind::Const
                                : instruction.opcode == Opcode::DefI ? RegisterKind::ConstInt
                                                                     : RegisterKind::ConstBool;
    if (place.kind != wanted)
        return "a value is defined for a register of another kind";
    return CheckNumber(place, 1, version);
}

/// Inputs of ps 2.x are v and t without a usage; from 3.0 on all inputs have one.
bool CanDeclare(RegisterKind kind, const Version& version)
{
    if (kind == RegisterKind::Input)
        return !version.isPixel || version.major >= 2;
    if (kind == RegisterKind::Sampler)
        return version.isPixel ? version.major >= 2 : version.major == 3;
    if (version.isPixel)
        return (version.major == 2 && kind == RegisterKind::Texture) ||
               (version.major == 3 && kind == RegisterKind::Misc);
    return version.major == 3 && kind == RegisterKind::TexCrdOut;
}

constexpr Word kLastUsage = 13; // D3DDECLUSAGE_SAMPLE

} // namespace

const char* CheckDeclaration(const Instruction& instruction, const Version& version)
{
    if (instruction.opcode != Opcode::Dcl)
        return CheckConstant(instruction, version);
    const Destination& out = instruction.destination;
    if (!CanDeclare(out.place.kind, version))
        return "the version does not declare this kind of register";
    if (const char* reason = CheckNumber(out.place, 1, version))
        return reason;
    if (out.mask == 0)
        return "no component is declared";
    if (out.place.kind == RegisterKind::Sampler)
        return instruction.usage >= static_cast<Word>(SamplerKind::OneD) &&
                       instruction.usage <= static_cast<Word>(SamplerKind::Volume)
                   ? nullptr
                   : "a sampler is declared without a kind of texture";
    return instruction.usage <= kLastUsage ? nullptr : "a declared usage is unknown";
}

} // namespace headless::shader
