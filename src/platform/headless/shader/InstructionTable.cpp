#include "platform/headless/shader/InstructionTable.h"

#include <iterator>

namespace headless::shader {

namespace {

constexpr unsigned kAll = kVsAll | kPsAll;
constexpr unsigned kVsAndPs2 = kVsAll | kPs2Up;
constexpr unsigned kTwoUp = kVs2Up | kPs2Up;
constexpr unsigned kDynamic = kVs2x | kVs30 | kPs2x | kPs30;
constexpr unsigned kStatic = kVs2Up | kPs2x | kPs30;
constexpr unsigned kLoops = kVs2Up | kPs30;
constexpr unsigned kNot30 = kVs20 | kVs2x | kPs20 | kPs2x;

/// The published instructions: opcode, name, versions, result, sources, slots, traits.
constexpr InstructionRow kInstructionRows[] = {
    {Opcode::Nop, "nop", kAll, false, 0, 1, 0},
    {Opcode::Mov, "mov", kAll, true, 1, 1, 0},
    {Opcode::Add, "add", kAll, true, 2, 1, 0},
    {Opcode::Sub, "sub", kAll, true, 2, 1, 0},
    {Opcode::Mad, "mad", kAll, true, 3, 1, 0},
    {Opcode::Mul, "mul", kAll, true, 2, 1, 0},
    {Opcode::Rcp, "rcp", kVsAndPs2, true, 1, 1, kIsScalar},
    {Opcode::Rsq, "rsq", kVsAndPs2, true, 1, 1, kIsScalar},
    {Opcode::Dp3, "dp3", kAll, true, 2, 1, 0},
    {Opcode::Dp4, "dp4", kVsAndPs2 | kPs12 | kPs13 | kPs14, true, 2, 1, 0},
    {Opcode::Min, "min", kVsAndPs2, true, 2, 1, 0},
    {Opcode::Max, "max", kVsAndPs2, true, 2, 1, 0},
    {Opcode::Slt, "slt", kVsAll, true, 2, 1, 0},
    {Opcode::Sge, "sge", kVsAll, true, 2, 1, 0},
    {Opcode::Exp, "exp", kVsAndPs2, true, 1, 1, kIsScalar},
    {Opcode::Log, "log", kVsAndPs2, true, 1, 1, kIsScalar},
    {Opcode::Lit, "lit", kVsAll, true, 1, 3, 0},
    {Opcode::Dst, "dst", kVsAll, true, 2, 1, 0},
    {Opcode::Lrp, "lrp", kPs1, true, 3, 1, 0},
    {Opcode::Lrp, "lrp", kTwoUp, true, 3, 2, 0},
    {Opcode::Frc, "frc", kVs11, true, 1, 3, 0},
    {Opcode::Frc, "frc", kTwoUp, true, 1, 1, 0},
    {Opcode::M4x4, "m4x4", kVsAndPs2, true, 2, 4, 0},
    {Opcode::M4x3, "m4x3", kVsAndPs2, true, 2, 3, 0},
    {Opcode::M3x4, "m3x4", kVsAndPs2, true, 2, 4, 0},
    {Opcode::M3x3, "m3x3", kVsAndPs2, true, 2, 3, 0},
    {Opcode::M3x2, "m3x2", kVsAndPs2, true, 2, 2, 0},
    {Opcode::Call, "call", kStatic, false, 1, 2, kIsFlow},
    {Opcode::CallNz, "callnz", kStatic, false, 2, 3, kIsFlow},
    {Opcode::Loop, "loop", kLoops, false, 2, 3, kIsFlow},
    {Opcode::Ret, "ret", kStatic, false, 0, 1, kIsFlow},
    {Opcode::EndLoop, "endloop", kLoops, false, 0, 2, kIsFlow},
    {Opcode::Label, "label", kStatic, false, 1, 0, kIsFlow},
    {Opcode::Pow, "pow", kTwoUp, true, 2, 3, kIsScalar},
    {Opcode::Crs, "crs", kTwoUp, true, 2, 2, 0},
    {Opcode::Sgn, "sgn", kVs20 | kVs2x, true, 3, 3, 0},
    {Opcode::Sgn, "sgn", kVs30, true, 1, 3, 0},
    {Opcode::Abs, "abs", kTwoUp, true, 1, 1, 0},
    {Opcode::Nrm, "nrm", kTwoUp, true, 1, 3, 0},
    {Opcode::SinCos, "sincos", kNot30, true, 3, 8, kIsScalar},
    {Opcode::SinCos, "sincos", kVs30 | kPs30, true, 1, 8, kIsScalar},
    {Opcode::Rep, "rep", kStatic, false, 1, 3, kIsFlow},
    {Opcode::EndRep, "endrep", kStatic, false, 0, 2, kIsFlow},
    {Opcode::If, "if", kStatic, false, 1, 3, kIsFlow},
    {Opcode::Ifc, "if", kDynamic, false, 2, 3, kIsFlow | kIsScalar},
    {Opcode::Else, "else", kStatic, false, 0, 1, kIsFlow},
    {Opcode::EndIf, "endif", kStatic, false, 0, 1, kIsFlow},
    {Opcode::Break, "break", kDynamic, false, 0, 1, kIsFlow},
    {Opcode::BreakC, "break", kDynamic, false, 2, 3, kIsFlow | kIsScalar},
    {Opcode::BreakP, "breakp", kDynamic, false, 1, 3, kIsFlow},
    {Opcode::MovA, "mova", kVs2Up, true, 1, 1, 0},
    {Opcode::TexCoord, "texcoord", kPs13Down, true, 0, 1, kIsTexture},
    {Opcode::TexCoord, "texcrd", kPs14, true, 1, 1, kIsTexture},
    {Opcode::TexKill, "texkill", kPs1, true, 0, 1, kIsTexture | kHasNoResult},
    {Opcode::TexKill, "texkill", kPs2Up, true, 0, 2, kIsTexture | kHasNoResult},
    {Opcode::Tex, "tex", kPs13Down, true, 0, 1, kIsTexture},
    {Opcode::Tex, "texld", kPs14, true, 1, 1, kIsTexture},
    {Opcode::Tex, "texld", kPs2Up, true, 2, 1, kIsTexture},
    {Opcode::TexBem, "texbem", kPs13Down, true, 1, 1, kIsTexture},
    {Opcode::TexBemL, "texbeml", kPs13Down, true, 1, 2, kIsTexture},
    {Opcode::TexReg2Ar, "texreg2ar", kPs13Down, true, 1, 1, kIsTexture},
    {Opcode::TexReg2Gb, "texreg2gb", kPs13Down, true, 1, 1, kIsTexture},
    {Opcode::TexM3x2Pad, "texm3x2pad", kPs13Down, true, 1, 1, kIsTexture},
    {Opcode::TexM3x2Tex, "texm3x2tex", kPs13Down, true, 1, 1, kIsTexture},
    {Opcode::TexM3x3Pad, "texm3x3pad", kPs13Down, true, 1, 1, kIsTexture},
    {Opcode::TexM3x3Tex, "texm3x3tex", kPs13Down, true, 1, 1, kIsTexture},
    {Opcode::TexM3x3Spec, "texm3x3spec", kPs13Down, true, 2, 1, kIsTexture},
    {Opcode::TexM3x3VSpec, "texm3x3vspec", kPs13Down, true, 1, 1, kIsTexture},
    {Opcode::ExpP, "expp", kVsAll, true, 1, 1, kIsScalar},
    {Opcode::LogP, "logp", kVsAll, true, 1, 1, kIsScalar},
    {Opcode::Cnd, "cnd", kPs1, true, 3, 1, 0},
    {Opcode::TexReg2Rgb, "texreg2rgb", kPs12 | kPs13, true, 1, 1, kIsTexture},
    {Opcode::TexDp3Tex, "texdp3tex", kPs12 | kPs13, true, 1, 1, kIsTexture},
    {Opcode::TexM3x2Depth, "texm3x2depth", kPs13, true, 1, 1, kIsTexture},
    {Opcode::TexDp3, "texdp3", kPs12 | kPs13, true, 1, 1, kIsTexture},
    {Opcode::TexM3x3, "texm3x3", kPs12 | kPs13, true, 1, 1, kIsTexture},
    {Opcode::TexDepth, "texdepth", kPs14, true, 0, 1, kIsTexture},
    {Opcode::Cmp, "cmp", kPs12 | kPs13, true, 3, 2, 0},
    {Opcode::Cmp, "cmp", kPs14 | kPs2Up, true, 3, 1, 0},
    {Opcode::Bem, "bem", kPs14, true, 2, 2, 0},
    {Opcode::Dp2Add, "dp2add", kPs2Up, true, 3, 2, 0},
    {Opcode::Dsx, "dsx", kPs2x | kPs30, true, 1, 2, 0},
    {Opcode::Dsy, "dsy", kPs2x | kPs30, true, 1, 2, 0},
    {Opcode::TexLdd, "texldd", kPs2x | kPs30, true, 4, 3, kIsTexture},
    {Opcode::SetP, "setp", kDynamic, true, 2, 1, 0},
    {Opcode::TexLdl, "texldl", kVs30 | kPs30, true, 2, 2, kIsTexture},
    {Opcode::Phase, "phase", kPs14, false, 0, 0, 0},
};

/// Words that declare something rather than run.
constexpr Opcode kDeclarations[] = {Opcode::Dcl, Opcode::Def, Opcode::DefI, Opcode::DefB,
                                    Opcode::Comment};

} // namespace

unsigned VersionBit(const Version& version)
{
    const bool isExtended = version.IsExtended();
    if (!version.isPixel) {
        if (version.major == 1)
            return kVs11;
        return version.major == 3 ? kVs30 : (isExtended ? kVs2x : kVs20);
    }
    if (version.major == 1)
        return kPs11 << (version.minor - 1);
    return version.major == 3 ? kPs30 : (isExtended ? kPs2x : kPs20);
}

const InstructionRow* FindInstruction(Opcode opcode, const Version& version)
{
    const unsigned bit = VersionBit(version);
    for (const InstructionRow& row : kInstructionRows)
        if (row.opcode == opcode && (row.versions & bit) != 0)
            return &row;
    return nullptr;
}

bool IsOpcode(Opcode opcode)
{
    for (const InstructionRow& row : kInstructionRows)
        if (row.opcode == opcode)
            return true;
    for (const Opcode declaration : kDeclarations)
        if (declaration == opcode)
            return true;
    return false;
}

std::span<const InstructionRow> AllInstructions()
{
    return kInstructionRows;
}

} // namespace headless::shader
