#pragma once

#include "platform/headless/shader/Tokens.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace headless::shader {

// The names that assembler text has for registers, usages, versions and modifiers.

/// "vs_2_0" and so on; both "vs_1_1" and "vs.1.1" are read. False for other text.
bool ParseVersion(std::string_view text, Word& wordOut);
std::string VersionText(Word word);

struct Register;

/// A register by its name in a version, such as "oPos", "c12" or "aL". The number may be left out
/// where an index follows, as in "c[a0.x]".
bool ParseRegister(std::string_view text, const Version& version, Register& registerOut);
std::string RegisterText(const Register& place, const Version& version);

/// Names of D3DDECLUSAGE values, by their numbers.
constexpr const char* kUsageNames[] = {
    "position", "blendweight", "blendindices", "normal", "psize", "texcoord", "tangent",
    "binormal", "tessfactor",  "positiont",    "color",  "fog",   "depth",    "sample"};
/// By SamplerKind.
constexpr const char* kSamplerNames[] = {"", "1d", "2d", "cube", "volume"};
/// By Compare.
constexpr const char* kCompareNames[] = {"", "gt", "eq", "ge", "lt", "ne", "le"};

/// Suffixes of sources, by SourceModifier without its sign.
struct ModifierName {
    const char* suffix;
    SourceModifier plain;
    SourceModifier negated;
};
constexpr ModifierName kModifierNames[] = {
    {"bias", SourceModifier::Bias, SourceModifier::BiasNeg},
    {"bx2", SourceModifier::Sign, SourceModifier::SignNeg},
    {"x2", SourceModifier::X2, SourceModifier::X2Neg},
    {"dz", SourceModifier::Dz, SourceModifier::Dz},
    {"db", SourceModifier::Dz, SourceModifier::Dz},
    {"dw", SourceModifier::Dw, SourceModifier::Dw},
    {"da", SourceModifier::Dw, SourceModifier::Dw},
    {"abs", SourceModifier::Abs, SourceModifier::AbsNeg},
};

/// Suffixes that scale a result.
struct ShiftName {
    const char* suffix;
    int shift;
};
constexpr ShiftName kShiftNames[] = {{"x2", 1},  {"x4", 2},  {"x8", 3},
                                     {"d2", -1}, {"d4", -2}, {"d8", -3}};

} // namespace headless::shader
