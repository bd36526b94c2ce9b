#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

/// Builds one JSON object on one line. Texts that are not UTF-8 have U+FFFD for each byte that is not.
class JsonLine {
public:
    JsonLine()
    {
        text.reserve(kUsualLine);
        text = "{";
    }

    JsonLine& Text(const char* key, std::string_view value);
    JsonLine& Number(const char* key, uint64_t value);
    JsonLine& Seconds(const char* key, double value);
    JsonLine& Flag(const char* key, bool value);
    /// A value that is JSON already.
    JsonLine& Json(const char* key, std::string_view value);

    /// The whole object. Nothing more can be added.
    std::string End()
    {
        text += '}';
        return std::move(text);
    }

private:
    static constexpr size_t kUsualLine = 1024;

    void Key(const char* key);

    std::string text;
};

/// A text as a JSON string, with its quotes.
std::string JsonString(std::string_view bytes);

/// Whether a text is valid UTF-8.
bool IsUtf8(std::string_view bytes);
