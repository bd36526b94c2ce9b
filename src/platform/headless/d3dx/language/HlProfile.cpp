#include "platform/headless/d3dx/language/HlProfile.h"

namespace headless::hl {

namespace {

constexpr unsigned kAny = 32768;

/// Targets before ps 2.0 are made as ps 2.0: a picture does not tell.
constexpr HlProfile kProfiles[] = {
    {"vs_1_1", 0xFFFE0101, false, 1, 12, 96, 128, 0, true, false, false, false, "vs_2_0"},
    {"vs_2_0", 0xFFFE0200, false, 2, 12, 256, 256, 0, true, false, true, false, "vs_3_0"},
    {"vs_2_a", 0xFFFE0201, false, 2, 13, 256, 256, 0, true, true, true, false, "vs_3_0"},
    {"vs_2_sw", 0xFFFE02FF, false, 2, 32, 8192, 256, 0, true, true, true, false, "vs_3_sw"},
    {"vs_3_0", 0xFFFE0300, false, 3, 32, 256, kAny, 0, true, true, true, false, ""},
    {"vs_3_sw", 0xFFFE03FF, false, 3, 32, 8192, kAny, 0, true, true, true, false, ""},
    {"ps_1_1", 0xFFFF0200, true, 2, 12, 32, 64, 32, false, false, false, false, "ps_2_a"},
    {"ps_1_2", 0xFFFF0200, true, 2, 12, 32, 64, 32, false, false, false, false, "ps_2_a"},
    {"ps_1_3", 0xFFFF0200, true, 2, 12, 32, 64, 32, false, false, false, false, "ps_2_a"},
    {"ps_1_4", 0xFFFF0200, true, 2, 12, 32, 64, 32, false, false, false, false, "ps_2_a"},
    {"ps_2_0", 0xFFFF0200, true, 2, 12, 32, 64, 32, false, false, false, false, "ps_2_a"},
    {"ps_2_a", 0xFFFF0201, true, 2, 22, 32, 512, 0, true, true, true, true, "ps_3_0"},
    {"ps_2_b", 0xFFFF0201, true, 2, 32, 32, 512, 0, false, false, false, false, "ps_3_0"},
    {"ps_2_sw", 0xFFFF02FF, true, 2, 32, 8192, 512, 0, true, true, true, true, "ps_3_sw"},
    {"ps_3_0", 0xFFFF0300, true, 3, 32, 224, kAny, 0, true, true, true, true, ""},
    {"ps_3_sw", 0xFFFF03FF, true, 3, 32, 8192, kAny, 0, true, true, true, true, ""},
};

constexpr HlProfile kValue = {"a value", 0xFFFE0200, false, 2,     0,     0, kAny,
                              0,         true,       false, false, false, ""};

} // namespace

const HlProfile& HlValueProfile()
{
    return kValue;
}

const HlProfile* HlFindProfile(std::string_view name)
{
    for (const HlProfile& profile : kProfiles)
        if (profile.name == name)
            return &profile;
    return nullptr;
}

} // namespace headless::hl
