#include "tests/support/StateTable.h"

#include <bit>
#include <charconv>

std::string NameOf(std::span<const NamedValue> table, DWORD value)
{
    for (const NamedValue& row : table) {
        if (row.value == value)
            return row.name;
    }
    return std::to_string(value);
}

std::string FlagNames(std::span<const NamedValue> table, DWORD flags)
{
    std::string text;
    DWORD rest = flags;
    for (const NamedValue& row : table) {
        if ((rest & row.value) != row.value)
            continue;
        text += (text.empty() ? "" : "|") + std::string(row.name);
        rest &= ~row.value;
    }
    if (rest != 0)
        text += (text.empty() ? "" : "|") + HexText(rest);
    return text.empty() ? "0" : text;
}

// The C library of Windows writes exponents differently, so no printf here.
std::string FloatText(float value)
{
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, static_cast<double>(value),
                                   std::chars_format::general, 6);
    return std::string(text, end.ptr);
}

std::string FloatBitsText(DWORD bits)
{
    return FloatText(std::bit_cast<float>(bits));
}

std::string HexText(DWORD value)
{
    char text[16];
    const auto end = std::to_chars(text, text + sizeof text, value, 16);
    std::string digits(text, end.ptr);
    for (char& digit : digits) {
        if (digit >= 'a')
            digit = static_cast<char>(digit - 'a' + 'A');
    }
    return "0x" + digits;
}

std::string ColorText(D3DCOLOR color)
{
    const std::string digits = HexText(color).substr(2);
    return "0x" + std::string(8 - digits.size(), '0') + digits;
}

namespace {

const StateRow* Find(std::span<const StateRow> table, DWORD state)
{
    for (const StateRow& row : table) {
        if (row.state == state)
            return &row;
    }
    return nullptr;
}

} // namespace

std::string NameOfState(std::span<const StateRow> table, DWORD state)
{
    const StateRow* row = Find(table, state);
    return row ? row->name : NumberText(state);
}

std::string ValueOfState(std::span<const StateRow> table, DWORD state, DWORD value)
{
    const StateRow* row = Find(table, state);
    return row ? row->write(value) : NumberText(value);
}
