#include "batch/JsonLine.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

namespace {

/// Bytes of the character at the start; 0 if it is not a valid one.
size_t Utf8Length(std::string_view bytes)
{
    const auto byte = [&](size_t i) {
        return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0u;
    };
    const auto follows = [&](size_t i) { return (byte(i) & 0xC0) == 0x80; };
    const unsigned first = byte(0);
    if (first < 0x80)
        return 1;
    if (first >= 0xC2 && first <= 0xDF)
        return follows(1) ? 2 : 0;
    if (first >= 0xE0 && first <= 0xEF) {
        const bool isLong = first == 0xE0 && byte(1) < 0xA0;
        const bool isSurrogate = first == 0xED && byte(1) > 0x9F;
        return follows(1) && follows(2) && !isLong && !isSurrogate ? 3 : 0;
    }
    if (first >= 0xF0 && first <= 0xF4) {
        const bool isOutside =
            (first == 0xF0 && byte(1) < 0x90) || (first == 0xF4 && byte(1) > 0x8F);
        return follows(1) && follows(2) && follows(3) && !isOutside ? 4 : 0;
    }
    return 0;
}

bool IsPlain(char c)
{
    return c >= 0x20 && c < 0x7F && c != '"' && c != '\\';
}

void AddEscaped(std::string& text, char c)
{
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
        text += '\\';
        text += c;
    } else if (c == '\n') {
        text += "\\n";
    } else {
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(byte));
        text += escape;
    }
}

void AddString(std::string& text, std::string_view bytes)
{
    text += '"';
    while (!bytes.empty()) {
        const auto odd = std::find_if_not(bytes.begin(), bytes.end(), IsPlain);
        const auto plain = static_cast<size_t>(odd - bytes.begin());
        text.append(bytes.substr(0, plain));
        bytes.remove_prefix(plain);
        if (bytes.empty())
            break;
        const size_t length = Utf8Length(bytes);
        if (length == 1)
            AddEscaped(text, bytes.front());
        else if (length == 0)
            text += "\\ufffd";
        else
            text.append(bytes.substr(0, length));
        bytes.remove_prefix(length == 0 ? 1 : length);
    }
    text += '"';
}

} // namespace

std::string JsonString(std::string_view bytes)
{
    std::string text;
    AddString(text, bytes);
    return text;
}

bool IsUtf8(std::string_view bytes)
{
    while (!bytes.empty()) {
        const size_t length = Utf8Length(bytes);
        if (length == 0)
            return false;
        bytes.remove_prefix(length);
    }
    return true;
}

void JsonLine::Key(const char* key)
{
    if (text.size() > 1)
        text += ',';
    text += '"';
    text += key;
    text += "\":";
}

JsonLine& JsonLine::Text(const char* key, std::string_view value)
{
    Key(key);
    AddString(text, value);
    return *this;
}

JsonLine& JsonLine::Number(const char* key, uint64_t value)
{
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    return Json(key, {digits, static_cast<size_t>(end - digits)});
}

JsonLine& JsonLine::Seconds(const char* key, double value)
{
    constexpr int kDecimals = 6;
    char digits[400]; // of the largest number there is
    const auto end =
        std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, kDecimals)
            .ptr;
    return Json(key, {digits, static_cast<size_t>(end - digits)});
}

JsonLine& JsonLine::Flag(const char* key, bool value)
{
    return Json(key, value ? "true" : "false");
}

JsonLine& JsonLine::Json(const char* key, std::string_view value)
{
    Key(key);
    text.append(value);
    return *this;
}
