#include "info/NameText.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <iterator>

namespace {

/// Code page 1252 from 0x80 to 0x9F; its five undefined bytes map to themselves.
constexpr char32_t kCodePage[32] = {
    0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178,
};

struct CodeRange {
    char32_t first;
    char32_t last;
};

/// Control characters, Unicode line ends, and characters that change the writing direction.
constexpr CodeRange kHidden[] = {
    {0, 0x1F},        {0x7F, 0x9F},     {0x061C, 0x061C}, {0x200B, 0x200F},   {0x2028, 0x202E},
    {0x2060, 0x2069}, {0xFEFF, 0xFEFF}, {0xFFF9, 0xFFFB}, {0xE0000, 0xE007F},
};

bool IsHidden(char32_t code)
{
    for (const CodeRange& range : kHidden) {
        if (code >= range.first && code <= range.last)
            return true;
    }
    return false;
}

/// A lead byte of UTF-8: how long its character is, and the lowest code allowed at that length.
struct Lead {
    unsigned mask, bits;
    size_t length;
    char32_t least;
};
constexpr Lead kLeads[] = {
    {0x80, 0x00, 1, 0}, {0xE0, 0xC0, 2, 0x80}, {0xF0, 0xE0, 3, 0x800}, {0xF8, 0xF0, 4, 0x10000}};

/// Decodes the character at `at` and moves `at` past it; false if there is no valid one.
bool TakeUtf8(std::string_view bytes, size_t& at, char32_t& codeOut)
{
    const auto byteAt = [&](size_t i) { return static_cast<unsigned char>(bytes[i]); };
    for (const Lead& lead : kLeads) {
        if ((byteAt(at) & lead.mask) != lead.bits)
            continue;
        if (bytes.size() - at < lead.length)
            return false;
        char32_t code = byteAt(at) & ~lead.mask;
        for (size_t i = 1; i < lead.length; ++i) {
            if ((byteAt(at + i) & 0xC0u) != 0x80)
                return false;
            code = code << 6 | (byteAt(at + i) & 0x3Fu);
        }
        const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
        if (code < lead.least || code > 0x10FFFF || isSurrogate)
            return false;
        at += lead.length;
        codeOut = code;
        return true;
    }
    return false;
}

void AppendUtf8(std::string& text, char32_t code)
{
    size_t length = 1;
    while (length < 4 && code >= (length == 1 ? 0x80u : 1u << (5 * length + 1)))
        ++length;
    text += static_cast<char>(kLeads[length - 1].bits | code >> (6 * (length - 1)));
    while (--length > 0)
        text += static_cast<char>(0x80 | (code >> (6 * (length - 1)) & 0x3F));
}

/// Printable ASCII: nearly all names, and nothing needs to be done for them.
bool IsPlain(std::string_view bytes)
{
    for (const char byte : bytes) {
        if (byte < ' ' || byte > '~')
            return false;
    }
    return true;
}

bool IsUtf8(std::string_view bytes)
{
    char32_t code = 0;
    for (size_t at = 0; at < bytes.size();) {
        if (!TakeUtf8(bytes, at, code))
            return false;
    }
    return true;
}

char32_t CodeOfByte(unsigned char byte)
{
    return byte >= 0x80 && byte < 0xA0 ? kCodePage[byte - 0x80] : byte;
}

/// Passes each character to `visit(code)`.
template <class Visit>
void VisitCharacters(std::string_view bytes, Visit visit)
{
    if (!IsUtf8(bytes)) {
        for (const char byte : bytes)
            visit(CodeOfByte(static_cast<unsigned char>(byte)));
        return;
    }
    char32_t code = 0;
    for (size_t at = 0; at < bytes.size() && TakeUtf8(bytes, at, code);)
        visit(code);
}

void AppendFormatted(std::string& text, const char* format, char32_t code)
{
    char number[16];
    std::snprintf(number, sizeof number, format, static_cast<unsigned>(code));
    text += number;
}

} // namespace

std::string ShownName(std::string_view bytes)
{
    if (IsPlain(bytes))
        return std::string(bytes);
    std::string text;
    VisitCharacters(bytes, [&text](char32_t code) {
        if (!IsHidden(code))
            AppendUtf8(text, code);
        else
            AppendFormatted(text, code < 0x100 ? "\\x%02X" : "\\u%04X", code);
    });
    return text;
}

std::string QuotedName(std::string_view bytes)
{
    std::string text = "\"";
    text += ShownName(bytes);
    text += '"';
    return text;
}

std::string Utf8Name(std::string_view bytes)
{
    std::string text;
    VisitCharacters(bytes, [&text](char32_t code) { AppendUtf8(text, code); });
    return text;
}

bool HasHiddenCharacters(std::string_view text)
{
    bool hasHidden = false;
    VisitCharacters(text, [&hasHidden](char32_t code) { hasHidden = hasHidden || IsHidden(code); });
    return hasHidden;
}

std::string ShortestText(float value)
{
    if (!std::isfinite(value))
        return std::isnan(value) ? "nan" : value < 0 ? "-inf" : "inf";
    char text[32];
    const auto end = std::to_chars(std::begin(text), std::end(text), value);
    return {text, end.ptr};
}

std::string RoundedText(double value, int digits)
{
    if (!std::isfinite(value) || std::fabs(value) >= 1e9)
        return ShortestText(static_cast<float>(value));
    char number[64];
    std::snprintf(number, sizeof number, "%.*f", digits, value);
    std::string text = number;
    if (digits > 0) {
        text.erase(text.find_last_not_of('0') + 1);
        if (text.back() == '.')
            text.pop_back();
    }
    return text == "-0" ? "0" : text;
}

std::string CountText(int64_t count)
{
    std::string text = std::to_string(count);
    const size_t first = count < 0 ? 1 : 0;
    for (size_t at = text.size(); at > first + 3;) {
        at -= 3;
        text.insert(at, 1, ',');
    }
    return text;
}

std::string CountOf(int64_t count, const char* one, const char* many)
{
    return CountText(count) + ' ' + (count == 1 ? one : many);
}

size_t ShownWidth(std::string_view text)
{
    size_t width = 0;
    for (const char byte : text)
        width += (static_cast<unsigned char>(byte) & 0xC0) != 0x80 ? 1 : 0;
    return width;
}

std::string Padded(std::string text, size_t width)
{
    const size_t shown = ShownWidth(text);
    if (shown < width)
        text.append(width - shown, ' ');
    return text;
}
