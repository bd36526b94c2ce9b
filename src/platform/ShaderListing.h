#pragma once

#include <string>
#include <string_view>

/// The assembler text of a shader, one instruction a line, for `bytes` that hold bytecode or
/// assembler text. Returns why there is none, with line and column for a text; "" if there is one.
std::string ListShader(std::string_view bytes, std::string& listingOut);
