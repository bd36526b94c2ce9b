#include "batch/Base64.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace {

constexpr std::string_view kBase64Digits =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr uint8_t kNoDigit = 255;

constexpr std::array<uint8_t, 256> ValuesOfDigits()
{
    std::array<uint8_t, 256> values{};
    values.fill(kNoDigit);
    for (size_t i = 0; i < kBase64Digits.size(); ++i)
        values[static_cast<unsigned char>(kBase64Digits[i])] = static_cast<uint8_t>(i);
    return values;
}

constexpr std::array<uint8_t, 256> kDigitValues = ValuesOfDigits();

} // namespace

std::string Base64(std::string_view bytes)
{
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (size_t at = 0; at < bytes.size(); at += 3) {
        const size_t count = std::min<size_t>(3, bytes.size() - at);
        uint32_t group = 0;
        for (size_t i = 0; i < 3; ++i)
            group = group << 8 | (i < count ? static_cast<unsigned char>(bytes[at + i]) : 0u);
        for (size_t i = 0; i < 4; ++i)
            text += i <= count ? kBase64Digits[group >> (18 - 6 * i) & 63] : '=';
    }
    return text;
}

bool BytesOfBase64(std::string_view text, std::string& bytesOut)
{
    bytesOut.clear();
    if (text.size() % 4 != 0)
        return false;
    bytesOut.reserve(text.size() / 4 * 3);
    size_t filled = 0;
    if (text.ends_with('='))
        filled = text.ends_with("==") ? 2 : 1;
    text.remove_suffix(filled);
    uint32_t group = 0;
    for (size_t at = 0; at < text.size(); ++at) {
        const uint8_t value = kDigitValues[static_cast<unsigned char>(text[at])];
        if (value == kNoDigit)
            return false;
        group = group << 6 | value;
        if (at % 4 != 0) // the first digit of four does not fill a byte yet
            bytesOut += static_cast<char>(group >> (6 - 2 * (at % 4)) & 0xFF);
    }
    return true;
}
