#include "platform/headless/shader/RegisterNames.h"

#include "platform/headless/shader/RegisterTable.h"

#include <algorithm>
#include <charconv>

namespace headless::shader {

namespace {

/// The part of a version behind "vs_" or "ps_", and the word's low half.
struct VersionName {
    const char* text;
    bool isPixel;
    bool isVertex;
    Word low;
};

constexpr VersionName kVersions[] = {
    {"1_1", true, true, 0x0101},  {"1_2", true, false, 0x0102}, {"1_3", true, false, 0x0103},
    {"1_4", true, false, 0x0104}, {"2_0", true, true, 0x0200},  {"2_x", true, true, 0x0201},
    {"2_a", true, true, 0x0201},  {"2_b", true, false, 0x0201}, {"2_1", true, true, 0x0201},
    {"2_sw", true, true, 0x02FF}, {"3_0", true, true, 0x0300},  {"3_sw", true, true, 0x03FF},
};

struct RegisterName {
    const char* prefix;
    RegisterKind kind;
    bool isPixel;
    bool isVertex;
    int number; ///< -1 if a number follows
    int leastMajor;
    int mostMajor;
};

constexpr RegisterName kNames[] = {
    {"oPos", RegisterKind::RastOut, false, true, kOutPosition, 1, 2},
    {"oFog", RegisterKind::RastOut, false, true, kOutFog, 1, 2},
    {"oPts", RegisterKind::RastOut, false, true, kOutPointSize, 1, 2},
    {"oDepth", RegisterKind::DepthOut, true, false, 0, 2, 3},
    {"vPos", RegisterKind::Misc, true, false, kMiscPosition, 3, 3},
    {"vFace", RegisterKind::Misc, true, false, kMiscFace, 3, 3},
    {"aL", RegisterKind::Loop, true, true, 0, 2, 3},
    {"oD", RegisterKind::AttrOut, false, true, -1, 1, 2},
    {"oT", RegisterKind::TexCrdOut, false, true, -1, 1, 2},
    {"oC", RegisterKind::ColorOut, true, false, -1, 2, 3},
    {"o", RegisterKind::TexCrdOut, false, true, -1, 3, 3},
    {"r", RegisterKind::Temp, true, true, -1, 1, 3},
    {"v", RegisterKind::Input, true, true, -1, 1, 3},
    {"c", RegisterKind::Const, true, true, -1, 1, 3},
    {"a", RegisterKind::Address, false, true, -1, 1, 3},
    {"t", RegisterKind::Texture, true, false, -1, 1, 2},
    {"i", RegisterKind::ConstInt, true, true, -1, 2, 3},
    {"b", RegisterKind::ConstBool, true, true, -1, 2, 3},
    {"s", RegisterKind::Sampler, true, true, -1, 2, 3},
    {"l", RegisterKind::Label, true, true, -1, 2, 3},
    {"p", RegisterKind::Predicate, true, true, -1, 2, 3},
};

bool Fits(const RegisterName& name, const Version& version)
{
    return (version.isPixel ? name.isPixel : name.isVertex) && version.major >= name.leastMajor &&
           version.major <= name.mostMajor;
}

char Lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Letters of either case; names of registers are told apart without it.
bool IsSame(std::string_view a, std::string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return Lower(x) == Lower(y); });
}

} // namespace

bool ParseVersion(std::string_view text, Word& wordOut)
{
    if (text.size() < 5)
        return false;
    std::string name(text);
    std::transform(name.begin(), name.end(), name.begin(),
                   [](char c) { return c == '.' ? '_' : Lower(c); });
    const bool isPixel = name.starts_with("ps_");
    if (!isPixel && !name.starts_with("vs_"))
        return false;
    for (const VersionName& version : kVersions) {
        if (name.substr(3) != version.text || !(isPixel ? version.isPixel : version.isVertex))
            continue;
        wordOut = (isPixel ? 0xFFFF0000 : 0xFFFE0000) | version.low;
        return true;
    }
    return false;
}

std::string VersionText(Word word)
{
    for (const VersionName& version : kVersions)
        if (version.low == (word & 0xFFFF))
            return std::string(word >> 16 == 0xFFFF ? "ps_" : "vs_") + version.text;
    return "";
}

bool ParseRegister(std::string_view text, const Version& version, Register& registerOut)
{
    for (const RegisterName& name : kNames) {
        const std::string_view prefix = name.prefix;
        if (!Fits(name, version) || text.size() < prefix.size() ||
            !IsSame(text.substr(0, prefix.size()), prefix))
            continue;
        registerOut.kind = name.kind;
        const std::string_view rest = text.substr(prefix.size());
        if (name.number >= 0) {
            registerOut.number = static_cast<unsigned>(name.number);
            if (rest.empty())
                return true;
            continue;
        }
        registerOut.number = 0;
        const auto [end, error] =
            std::from_chars(rest.data(), rest.data() + rest.size(), registerOut.number);
        const bool isNumber = error == std::errc() && end == rest.data() + rest.size();
        if (rest.empty() || (isNumber && registerOut.number < kSoftwareConstants))
            return true;
    }
    return false;
}

std::string RegisterText(const Register& place, const Version& version)
{
    for (const RegisterName& name : kNames) {
        if (!Fits(name, version) || name.kind != place.kind)
            continue;
        if (name.number < 0)
            return name.prefix + std::to_string(place.number);
        if (name.number == static_cast<int>(place.number))
            return name.prefix;
    }
    return "?";
}

} // namespace headless::shader
