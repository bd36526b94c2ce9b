#include "batch/JsonLine.h"

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

void AddEscaped(std::string& text, char c)
{
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
        text += '\\';
        text += c;
    } else if (c == '\n') {
        text += "\\n";
    } else if (byte < 0x20 || byte == 0x7F) {
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(byte));
        text += escape;
    } else {
        text += c;
    }
}

} // namespace

std::string JsonString(std::string_view bytes)
{
    std::string text = "\"";
    while (!bytes.empty()) {
        const size_t length = Utf8Length(bytes);
        if (length == 1)
            AddEscaped(text, bytes.front());
        else if (length == 0)
            text += "\\ufffd";
        else
            text.append(bytes.substr(0, length));
        bytes.remove_prefix(length == 0 ? 1 : length);
    }
    return text + "\"";
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
    return Json(key, JsonString(value));
}

JsonLine& JsonLine::Number(const char* key, uint64_t value)
{
    return Json(key, std::to_string(value));
}

JsonLine& JsonLine::Seconds(const char* key, double value)
{
    char digits[64];
    std::snprintf(digits, sizeof digits, "%.6f", value);
    return Json(key, digits);
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
