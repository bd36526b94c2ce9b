#include "platform/headless/shader/RegisterTable.h"

#include "platform/headless/shader/InstructionTable.h"

namespace headless::shader {

namespace {

constexpr unsigned kVsDynamic = kVs2x | kVs30;
constexpr unsigned kPsDynamic = kPs2x | kPs30;
constexpr unsigned kVsBelow3 = kVs11 | kVs20 | kVs2x;

constexpr RegisterRow kRegisterRows[] = {
    {false, RegisterKind::Temp, kVs11 | kVs20, 12, true, true},
    {false, RegisterKind::Temp, kVsDynamic, 32, true, true},
    {false, RegisterKind::Input, kVsAll, 16, true, false},
    {false, RegisterKind::Const, kVsAll, kHardwareVertexConstants, true, false},
    {false, RegisterKind::Address, kVsAll, 1, false, false},
    {false, RegisterKind::RastOut, kVsBelow3, 3, false, true},
    {false, RegisterKind::AttrOut, kVsBelow3, 2, false, true},
    {false, RegisterKind::TexCrdOut, kVsBelow3, 8, false, true},
    {false, RegisterKind::TexCrdOut, kVs30, 12, false, true},
    {false, RegisterKind::ConstInt, kVs2Up, kHardwareSwitches, false, false},
    {false, RegisterKind::ConstBool, kVs2Up, kHardwareSwitches, false, false},
    {false, RegisterKind::Loop, kVs2Up, 1, false, false},
    {false, RegisterKind::Sampler, kVs30, 4, false, false},
    {false, RegisterKind::Label, kVs20 | kVs2x, 16, false, false},
    {false, RegisterKind::Label, kVs30, 2048, false, false},
    {false, RegisterKind::Predicate, kVsDynamic, 1, false, false},
    {true, RegisterKind::Temp, kPs13Down, 2, true, true},
    {true, RegisterKind::Temp, kPs14, 6, true, true},
    {true, RegisterKind::Temp, kPs20, 12, true, true},
    {true, RegisterKind::Temp, kPsDynamic, 32, true, true},
    {true, RegisterKind::Input, kPs1 | kPs20 | kPs2x, 2, true, false},
    {true, RegisterKind::Input, kPs30, 10, true, false},
    {true, RegisterKind::Const, kPs1, 8, true, false},
    {true, RegisterKind::Const, kPs20 | kPs2x, 32, true, false},
    {true, RegisterKind::Const, kPs30, 224, true, false},
    {true, RegisterKind::Texture, kPs13Down, 4, true, true},
    {true, RegisterKind::Texture, kPs14, 6, false, false},
    {true, RegisterKind::Texture, kPs20 | kPs2x, 8, true, false},
    {true, RegisterKind::ColorOut, kPs2Up, 4, false, true},
    {true, RegisterKind::DepthOut, kPs2Up, 1, false, true},
    {true, RegisterKind::Sampler, kPs2Up, 16, false, false},
    {true, RegisterKind::ConstInt, kPsDynamic, kHardwareSwitches, false, false},
    {true, RegisterKind::ConstBool, kPsDynamic, kHardwareSwitches, false, false},
    {true, RegisterKind::Loop, kPs30, 1, false, false},
    {true, RegisterKind::Label, kPs2x, 16, false, false},
    {true, RegisterKind::Label, kPs30, 2048, false, false},
    {true, RegisterKind::Predicate, kPsDynamic, 1, false, false},
    {true, RegisterKind::Misc, kPs30, 2, true, false},
};

/// The components that a texture load takes as coordinates.
unsigned CoordinatesRead(const Instruction& instruction, const Version& version)
{
    if (version.major == 1)
        return kMaskX | kMaskY | kMaskZ;
    const bool needsFourth = instruction.opcode == Opcode::TexLdl || instruction.control != 0;
    return kMaskX | kMaskY | kMaskZ | (needsFourth ? kMaskW : 0);
}

/// The product of a vector with three or four rows reads as many components of each.
unsigned MatrixComponents(Opcode opcode)
{
    return opcode == Opcode::M4x4 || opcode == Opcode::M4x3 ? kMaskAll : kMaskX | kMaskY | kMaskZ;
}

} // namespace

const RegisterRow* FindRegisters(RegisterKind kind, const Version& version)
{
    const unsigned bit = VersionBit(version);
    for (const RegisterRow& row : kRegisterRows)
        if (row.isPixel == version.isPixel && row.kind == kind && (row.versions & bit) != 0)
            return &row;
    return nullptr;
}

unsigned RegisterCount(RegisterKind kind, const Version& version)
{
    const RegisterRow* row = FindRegisters(kind, version);
    if (!row)
        return 0;
    if (version.isSoftware && kind == RegisterKind::Const)
        return kSoftwareConstants;
    if (version.isSoftware && (kind == RegisterKind::ConstInt || kind == RegisterKind::ConstBool))
        return kSoftwareSwitches;
    return row->count;
}

int MatrixRows(Opcode opcode)
{
    switch (opcode) {
    case Opcode::M4x4:
    case Opcode::M3x4:
        return 4;
    case Opcode::M4x3:
    case Opcode::M3x3:
        return 3;
    case Opcode::M3x2:
        return 2;
    default:
        return 0;
    }
}

unsigned ComponentsRead(const Instruction& instruction, int i, const Version& version)
{
    constexpr unsigned kThree = kMaskX | kMaskY | kMaskZ;
    switch (instruction.opcode) {
    case Opcode::Rcp:
    case Opcode::Rsq:
    case Opcode::Exp:
    case Opcode::Log:
    case Opcode::ExpP:
    case Opcode::LogP:
    case Opcode::Pow:
    case Opcode::SinCos:
        return kMaskX;
    case Opcode::Dp3:
    case Opcode::Nrm:
        return kThree;
    case Opcode::Crs:
        return kThree;
    case Opcode::Dp4:
        return kMaskAll;
    case Opcode::Dp2Add:
        return i < 2 ? kMaskX | kMaskY : kMaskX;
    case Opcode::Bem:
        return kMaskX | kMaskY;
    case Opcode::Sgn: // the others are room for intermediate results
        return i == 0 ? instruction.destination.mask : 0;
    case Opcode::Lit:
        return kMaskX | kMaskY | kMaskW;
    case Opcode::Dst:
        return i == 0 ? kMaskY | kMaskZ : kMaskY | kMaskW;
    case Opcode::M4x4:
    case Opcode::M4x3:
    case Opcode::M3x4:
    case Opcode::M3x3:
    case Opcode::M3x2:
        return MatrixComponents(instruction.opcode);
    case Opcode::TexCoord:
        return instruction.destination.mask;
    case Opcode::Tex:
    case Opcode::TexLdl:
    case Opcode::TexLdd:
        return i == 0 ? CoordinatesRead(instruction, version) : (i == 1 ? kMaskAll : kThree);
    case Opcode::TexBem:
    case Opcode::TexBemL:
    case Opcode::TexReg2Ar:
    case Opcode::TexReg2Gb:
    case Opcode::TexReg2Rgb:
    case Opcode::TexM3x2Pad:
    case Opcode::TexM3x2Tex:
    case Opcode::TexM3x2Depth:
    case Opcode::TexM3x3Pad:
    case Opcode::TexM3x3Tex:
    case Opcode::TexM3x3Spec:
    case Opcode::TexM3x3VSpec:
    case Opcode::TexM3x3:
    case Opcode::TexDp3:
    case Opcode::TexDp3Tex:
        return kMaskAll;
    default:
        return instruction.hasDestination ? instruction.destination.mask : kMaskAll;
    }
}

} // namespace headless::shader
