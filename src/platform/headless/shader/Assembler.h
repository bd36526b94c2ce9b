#pragma once

#include "platform/headless/shader/Tokens.h"

#include <string>
#include <string_view>
#include <vector>

namespace headless::shader {

/// The first error of an assembler text.
struct AssemblyFault {
    std::string reason; ///< "" if there is none
    int line = 0;       ///< from 1
    int column = 0;     ///< from 1
};

/// Turns assembler text into bytecode and checks it. False with a reason and its place if the text or
/// the bytecode is refused.
bool Assemble(std::string_view text, std::vector<Word>& wordsOut, AssemblyFault& faultOut);

/// The same without the checks that concern the meaning, for tests of those checks.
bool AssembleUnchecked(std::string_view text, std::vector<Word>& wordsOut, AssemblyFault& faultOut);

} // namespace headless::shader
