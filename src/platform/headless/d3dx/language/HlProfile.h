#pragma once

#include <optional>
#include <string_view>

#include "platform/headless/shader/Tokens.h"

namespace headless::hl {

/// What a target of `compile` has.
struct HlProfile {
    std::string_view name;
    shader::Word version; ///< of the code that is made for it
    bool isPixel;
    int major;
    unsigned temporaries;
    unsigned constants;  ///< 0: no program runs, the steps are computed for a value of a state
    unsigned arithmetic; ///< slots; of all instructions if `texture` is 0
    unsigned texture;
    bool hasFreeSwizzles;
    bool hasDynamicFlow; ///< loops that end when a value says so
    bool hasStaticLoops; ///< loops whose rounds a constant counts
    bool hasGradients;
    std::string_view larger; ///< the profile for code that does not fit; "" for none

    shader::Version Version() const
    {
        shader::Version result;
        shader::ReadVersion(version, result);
        return result;
    }
};

/// Null if there is no such profile.
const HlProfile* HlFindProfile(std::string_view name);
/// For functions that values of states call: every loop is unrolled, there is no texture and no limit.
const HlProfile& HlValueProfile();

} // namespace headless::hl
