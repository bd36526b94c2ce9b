#include "batch/BatchText.h"

#include <cstdio>

std::string OneLine(std::string_view text)
{
    static constexpr char kDigits[] = "0123456789ABCDEF";
    std::string line;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x20 && byte != 0x7F) {
            line += c;
            continue;
        }
        line += "\\x";
        line += kDigits[byte >> 4];
        line += kDigits[byte & 15];
    }
    return line;
}

std::string GroupedNumber(uint64_t number)
{
    std::string digits = std::to_string(number);
    for (size_t at = digits.size(); at > 3; at -= 3)
        digits.insert(at - 3, 1, ',');
    return digits;
}

std::string TenthsText(double number)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.1f", number);
    return text;
}
