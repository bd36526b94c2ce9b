#pragma once

#include <initializer_list>
#include <string_view>
#include <vector>
#include <windows.h>

// Shader bytecode laid out by hand, so that the pictures of single instructions depend on no assembler.
// All numbers are the published ones.

/// The shader versions of the pictures, one bit each.
enum ShaderVersions : unsigned {
    kVs11 = 1,
    kVs20 = 2,
    kVs2x = 4,
    kVs2sw = 8,
    kVs30 = 16,
    kPs11 = 32,
    kPs12 = 64,
    kPs13 = 128,
    kPs14 = 256,
    kPs20 = 512,
    kPs2x = 1024,
    kPs30 = 2048,
};

struct VersionRow {
    unsigned bit;
    DWORD word;
    const char* name; ///< begins the names of its pictures
};

constexpr VersionRow kVersionRows[] = {
    {kVs11, 0xFFFE0101, "vs11"},   {kVs20, 0xFFFE0200, "vs20"}, {kVs2x, 0xFFFE0201, "vs2x"},
    {kVs2sw, 0xFFFE02FF, "vs2sw"}, {kVs30, 0xFFFE0300, "vs30"}, {kPs11, 0xFFFF0101, "ps11"},
    {kPs12, 0xFFFF0102, "ps12"},   {kPs13, 0xFFFF0103, "ps13"}, {kPs14, 0xFFFF0104, "ps14"},
    {kPs20, 0xFFFF0200, "ps20"},   {kPs2x, 0xFFFF0201, "ps2x"}, {kPs30, 0xFFFF0300, "ps30"},
};

enum ShaderOpcode : DWORD {
    kNop = 0,
    kMov = 1,
    kAdd = 2,
    kSub = 3,
    kMad = 4,
    kMul = 5,
    kRcp = 6,
    kRsq = 7,
    kDp3 = 8,
    kDp4 = 9,
    kMin = 10,
    kMax = 11,
    kSlt = 12,
    kSge = 13,
    kExp = 14,
    kLog = 15,
    kLit = 16,
    kDst = 17,
    kLrp = 18,
    kFrc = 19,
    kM4x4 = 20,
    kM4x3 = 21,
    kM3x4 = 22,
    kM3x3 = 23,
    kM3x2 = 24,
    kCall = 25,
    kCallNz = 26,
    kLoop = 27,
    kRet = 28,
    kEndLoop = 29,
    kLabel = 30,
    kDcl = 31,
    kPow = 32,
    kCrs = 33,
    kSgn = 34,
    kAbs = 35,
    kNrm = 36,
    kSinCos = 37,
    kRep = 38,
    kEndRep = 39,
    kIf = 40,
    kIfc = 41,
    kElse = 42,
    kEndIf = 43,
    kBreak = 44,
    kBreakC = 45,
    kMovA = 46,
    kDefB = 47,
    kDefI = 48,
    kTexCoord = 64,
    kTexKill = 65,
    kTex = 66,
    kTexBem = 67,
    kTexBemL = 68,
    kTexReg2Ar = 69,
    kTexReg2Gb = 70,
    kTexM3x2Pad = 71,
    kTexM3x2Tex = 72,
    kTexM3x3Pad = 73,
    kTexM3x3Tex = 74,
    kTexM3x3Spec = 76,
    kTexM3x3VSpec = 77,
    kExpP = 78,
    kLogP = 79,
    kCnd = 80,
    kDef = 81,
    kTexReg2Rgb = 82,
    kTexDp3Tex = 83,
    kTexM3x2Depth = 84,
    kTexDp3 = 85,
    kTexM3x3 = 86,
    kTexDepth = 87,
    kCmp = 88,
    kBem = 89,
    kDp2Add = 90,
    kDsx = 91,
    kDsy = 92,
    kTexLdd = 93,
    kSetP = 94,
    kTexLdl = 95,
    kBreakP = 96,
    kPhase = 0xFFFD,
};

/// Comparisons of if, break and setp, in the control field.
enum ShaderCompare : DWORD { kGt = 1, kEq = 2, kGe = 3, kLt = 4, kNe = 5, kLe = 6 };

/// What a vertex holds, as declarations say it.
enum ShaderUsage : DWORD {
    kUsagePosition = 0,
    kUsageNormal = 3,
    kUsageCoordinates = 5,
    kUsageColour = 10
};

/// Source modifiers.
enum ShaderModifier : DWORD {
    kNegate = 1,
    kBias = 2,
    kBiasNegate = 3,
    kSigned = 4,
    kSignedNegate = 5,
    kInvert = 6,
    kTwice = 7,
    kTwiceNegate = 8,
    kByZ = 9,
    kByW = 10,
    kAbsolute = 11,
    kAbsoluteNegate = 12,
    kNot = 13,
};

/// A parameter of an instruction. Without a mask or swizzle it stands for all components.
struct Parameter {
    DWORD word;
    bool isShaped = false;
};

constexpr Parameter ShaderRegister(DWORD kind, DWORD number)
{
    return {0x80000000 | (kind & 7) << 28 | (kind >> 3) << 11 | number};
}

constexpr Parameter R(DWORD number)
{
    return ShaderRegister(0, number);
}
constexpr Parameter V(DWORD number)
{
    return ShaderRegister(1, number);
}
constexpr Parameter C(DWORD number)
{
    return ShaderRegister(2, number);
}
constexpr Parameter T(DWORD number)
{
    return ShaderRegister(3, number);
} ///< pixel shaders
constexpr Parameter I(DWORD number)
{
    return ShaderRegister(7, number);
}
constexpr Parameter S(DWORD number)
{
    return ShaderRegister(10, number);
}
constexpr Parameter B(DWORD number)
{
    return ShaderRegister(14, number);
}
constexpr Parameter L(DWORD number)
{
    return ShaderRegister(18, number);
}
constexpr Parameter OutTexture(DWORD number)
{
    return ShaderRegister(6, number);
}
constexpr Parameter OutColour(DWORD number)
{
    return ShaderRegister(5, number);
}
constexpr Parameter kA0 = ShaderRegister(3, 0);
constexpr Parameter kPosition = ShaderRegister(4, 0), kFog = ShaderRegister(4, 1),
                    kPointSize = ShaderRegister(4, 2);
constexpr Parameter kColour = ShaderRegister(8, 0), kDepth = ShaderRegister(9, 0);
constexpr Parameter kAL = ShaderRegister(15, 0);
constexpr Parameter kPlace = ShaderRegister(17, 0), kFace = ShaderRegister(17, 1);
constexpr Parameter kP0 = ShaderRegister(19, 0);

constexpr DWORD ComponentOf(char letter)
{
    return letter == 'x' || letter == 'r'   ? 0
           : letter == 'y' || letter == 'g' ? 1
           : letter == 'z' || letter == 'b' ? 2
                                            : 3;
}

/// The components to write.
constexpr Parameter To(Parameter parameter, std::string_view components)
{
    for (const char letter : components)
        parameter.word |= 0x10000u << ComponentOf(letter);
    return {parameter.word, true};
}

/// The components to read; the last letter is repeated.
constexpr Parameter Of(Parameter parameter, std::string_view components)
{
    for (size_t i = 0; i < 4; ++i) {
        const char letter = components[i < components.size() ? i : components.size() - 1];
        parameter.word |= ComponentOf(letter) << (16 + 2 * i);
    }
    return {parameter.word, true};
}

constexpr Parameter With(Parameter source, ShaderModifier modifier)
{
    if (!source.isShaped)
        source = Of(source, "xyzw");
    return {source.word | static_cast<DWORD>(modifier) << 24, true};
}

constexpr Parameter Minus(Parameter source)
{
    return With(source, kNegate);
}

/// With modifiers of the result: 1 saturates, 2 allows partial precision; shift 1, 2, 3 doubles so
/// often, -1, -2, -3 halves.
constexpr Parameter Modified(Parameter result, DWORD modifiers, int shift = 0)
{
    if (!result.isShaped)
        result = To(result, "xyzw");
    return {result.word | modifiers << 20 | (static_cast<DWORD>(shift) & 15) << 24, true};
}

/// A shader in the making.
class ShaderWords {
public:
    explicit ShaderWords(DWORD version) : words{version} {}

    bool IsPixel() const { return words[0] >> 16 == 0xFFFF; }
    DWORD Major() const { return words[0] >> 8 & 0xFF; }

    /// An instruction whose first parameter is its result.
    ShaderWords& Op(DWORD opcode, Parameter result, std::initializer_list<Parameter> sources = {})
    {
        Begin(opcode);
        words.push_back(result.isShaped ? result.word : result.word | 0xF0000);
        return End(sources);
    }
    /// The same, running where a predicate holds.
    ShaderWords& If(Parameter predicate, DWORD opcode, Parameter result,
                    std::initializer_list<Parameter> sources)
    {
        Begin(opcode | 1u << 28);
        words.push_back(result.isShaped ? result.word : result.word | 0xF0000);
        Put(predicate);
        return End(sources);
    }
    /// The second half of a pair.
    ShaderWords& Paired(DWORD opcode, Parameter result, std::initializer_list<Parameter> sources)
    {
        return Op(opcode | 1u << 30, result, sources);
    }
    /// An instruction without a result.
    ShaderWords& Flow(DWORD opcode, std::initializer_list<Parameter> sources = {})
    {
        Begin(opcode);
        return End(sources);
    }
    /// A constant that is read at `index` above its number.
    ShaderWords& Indexed(DWORD opcode, Parameter result, Parameter source, Parameter index);
    /// Declares a register with a usage, or a sampler with a kind of texture.
    ShaderWords& Declare(Parameter what, DWORD usage = 0, DWORD usageIndex = 0);
    ShaderWords& DeclareSampler(DWORD number, DWORD kind = 2);
    ShaderWords& Define(DWORD number, float x, float y, float z, float w);
    ShaderWords& DefineInt(DWORD number, int x, int y, int z);
    ShaderWords& DefineBool(DWORD number, bool value);

    /// The stream with its end word.
    std::vector<DWORD> Stream() const;

private:
    void Begin(DWORD opcode);
    void Put(Parameter source)
    {
        words.push_back(source.isShaped ? source.word : source.word | 0xE40000);
    }
    ShaderWords& End(std::initializer_list<Parameter> sources);
    /// From 2.0 on the first word of an instruction says how many follow.
    void Close();

    std::vector<DWORD> words;
    size_t start = 0;
};
