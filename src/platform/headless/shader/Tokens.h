#pragma once

#include <cstdint>

namespace headless::shader {

// The published layout of shader bytecode: a version word, then instructions of one opcode word and
// their parameter words, then the end word.

using Word = uint32_t;

constexpr Word kEndWord = 0x0000FFFF;
constexpr Word kRelativeBit = 1u << 13;
constexpr Word kPredicatedBit = 1u << 28;
constexpr Word kCoissueBit = 1u << 30;
constexpr Word kParameterBit = 1u << 31; ///< set in every parameter word, clear in opcodes

/// Control field of a texture load.
constexpr unsigned kLoadProjected = 1;
constexpr unsigned kLoadBiased = 2;

/// Components to write, one bit each.
constexpr unsigned kMaskAll = 15;
constexpr unsigned kMaskX = 1, kMaskY = 2, kMaskZ = 4, kMaskW = 8;

constexpr unsigned kNoSwizzle = 0xE4; ///< two bits for each component: x, y, z, w

/// Operations, with their public numbers.
enum class Opcode : uint16_t {
    Nop = 0,
    Mov = 1,
    Add = 2,
    Sub = 3,
    Mad = 4,
    Mul = 5,
    Rcp = 6,
    Rsq = 7,
    Dp3 = 8,
    Dp4 = 9,
    Min = 10,
    Max = 11,
    Slt = 12,
    Sge = 13,
    Exp = 14,
    Log = 15,
    Lit = 16,
    Dst = 17,
    Lrp = 18,
    Frc = 19,
    M4x4 = 20,
    M4x3 = 21,
    M3x4 = 22,
    M3x3 = 23,
    M3x2 = 24,
    Call = 25,
    CallNz = 26,
    Loop = 27,
    Ret = 28,
    EndLoop = 29,
    Label = 30,
    Dcl = 31,
    Pow = 32,
    Crs = 33,
    Sgn = 34,
    Abs = 35,
    Nrm = 36,
    SinCos = 37,
    Rep = 38,
    EndRep = 39,
    If = 40,
    Ifc = 41,
    Else = 42,
    EndIf = 43,
    Break = 44,
    BreakC = 45,
    MovA = 46,
    DefB = 47,
    DefI = 48,
    TexCoord = 64, ///< texcrd in ps 1.4
    TexKill = 65,
    Tex = 66, ///< texld from ps 1.4 on
    TexBem = 67,
    TexBemL = 68,
    TexReg2Ar = 69,
    TexReg2Gb = 70,
    TexM3x2Pad = 71,
    TexM3x2Tex = 72,
    TexM3x3Pad = 73,
    TexM3x3Tex = 74,
    TexM3x3Spec = 76,
    TexM3x3VSpec = 77,
    ExpP = 78,
    LogP = 79,
    Cnd = 80,
    Def = 81,
    TexReg2Rgb = 82,
    TexDp3Tex = 83,
    TexM3x2Depth = 84,
    TexDp3 = 85,
    TexM3x3 = 86,
    TexDepth = 87,
    Cmp = 88,
    Bem = 89,
    Dp2Add = 90,
    Dsx = 91,
    Dsy = 92,
    TexLdd = 93,
    SetP = 94,
    TexLdl = 95,
    BreakP = 96,
    Phase = 0xFFFD,
    Comment = 0xFFFE,
    End = 0xFFFF,
};

/// Kinds of registers, with their public numbers. Some numbers mean different registers in vertex
/// and in pixel shaders.
enum class RegisterKind : uint8_t {
    Temp = 0,
    Input = 1,
    Const = 2,
    Address = 3,   ///< vertex shaders: a0
    Texture = 3,   ///< pixel shaders: t0, t1, ...
    RastOut = 4,   ///< oPos, oFog, oPts
    AttrOut = 5,   ///< oD0, oD1
    TexCrdOut = 6, ///< oT0, ...; in vs 3.0 o0, ...
    ConstInt = 7,
    ColorOut = 8,
    DepthOut = 9,
    Sampler = 10,
    Const2 = 11, ///< c2048 and up
    Const3 = 12, ///< c4096 and up
    Const4 = 13, ///< c6144 and up
    ConstBool = 14,
    Loop = 15, ///< aL
    TempFloat16 = 16,
    Misc = 17, ///< vPos, vFace
    Label = 18,
    Predicate = 19,
};

/// Numbers of RastOut and Misc registers.
constexpr unsigned kOutPosition = 0, kOutFog = 1, kOutPointSize = 2;
constexpr unsigned kMiscPosition = 0, kMiscFace = 1;

enum class SourceModifier : uint8_t {
    None = 0,
    Neg = 1,
    Bias = 2,
    BiasNeg = 3,
    Sign = 4,
    SignNeg = 5,
    Comp = 6,
    X2 = 7,
    X2Neg = 8,
    Dz = 9,
    Dw = 10,
    Abs = 11,
    AbsNeg = 12,
    Not = 13,
};

/// Bits of the result modifier field.
constexpr unsigned kResultSaturate = 1, kResultPartial = 2, kResultCentroid = 4;

/// The condition of ifc, breakc and setp.
enum class Compare : uint8_t { Gt = 1, Eq = 2, Ge = 3, Lt = 4, Ne = 5, Le = 6 };

/// What a declared sampler reads.
enum class SamplerKind : uint8_t { Unknown = 0, OneD = 1, TwoD = 2, Cube = 3, Volume = 4 };

/// The version of a shader. `minor` is 1 for 2.x; software versions are the least limited ones.
struct Version {
    bool isPixel = false;
    bool isSoftware = false;
    int major = 0;
    int minor = 0;

    bool Is(int wantedMajor, int wantedMinor) const
    {
        return major == wantedMajor && minor == wantedMinor && !isSoftware;
    }
    /// From 2.x on: predication, free swizzles, flow control in pixel shaders.
    bool IsExtended() const { return major > 2 || (major == 2 && (minor > 0 || isSoftware)); }
};

/// False for a word that is not the version of a shader that this host runs.
inline bool ReadVersion(Word word, Version& versionOut)
{
    versionOut = {};
    versionOut.isPixel = word >> 16 == 0xFFFF;
    if (!versionOut.isPixel && word >> 16 != 0xFFFE)
        return false;
    versionOut.major = static_cast<int>(word >> 8 & 0xFF);
    const Word minor = word & 0xFF;
    versionOut.isSoftware = minor == 0xFF;
    versionOut.minor = versionOut.isSoftware ? 0 : static_cast<int>(minor);
    if (versionOut.isSoftware)
        return versionOut.major == 2 || versionOut.major == 3;
    switch (versionOut.major) {
    case 1:
        return minor >= 1 && minor <= (versionOut.isPixel ? 4u : 1u);
    case 2:
        return minor <= 1;
    case 3:
        return minor == 0;
    default:
        return false;
    }
}

} // namespace headless::shader
