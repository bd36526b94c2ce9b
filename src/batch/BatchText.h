#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// A path or a message on one line: control bytes as `\x0A`.
std::string OneLine(std::string_view text);

/// With a comma between thousands.
std::string GroupedNumber(uint64_t number);

/// With one digit after the point.
std::string TenthsText(double number);
