#include "app/CommandLine.h"

#include "base/Ascii.h"
#include "base/ParseNumber.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>

namespace {

/// A token inside the command line, not copied.
struct Token {
    const char* text;
    size_t length;
};

/// The token at or after `text`; its text is null at the end of the line.
Token NextToken(const char* text)
{
    while (*text == ' ')
        ++text;
    if (*text == '\0')
        return {nullptr, 0};
    return {text, std::strcspn(text, " ")};
}

Token FirstToken(const char* commandLine)
{
    return NextToken(commandLine != nullptr ? commandLine : "");
}

bool StartsWith(const Token& token, const char* name, size_t nameLength)
{
    if (token.length < nameLength)
        return false;
    return std::equal(name, name + nameLength, token.text,
                      [](char a, char b) { return ToUpperAscii(a) == ToUpperAscii(b); });
}

/// The value part of the first token that begins with `name`; its text is null if there is no such
/// token or no separator after the name.
Token FindValue(const char* commandLine, const char* name)
{
    const size_t nameLength = std::strlen(name);
    Token token = FirstToken(commandLine);
    while (token.text != nullptr && !StartsWith(token, name, nameLength))
        token = NextToken(token.text + token.length);
    if (token.text == nullptr)
        return token;

    const char separator = token.text[nameLength];
    if (separator != ':' && separator != '=')
        return {nullptr, 0};
    // QUIRK: both lengths are bytes, so a token of 256 characters and more loses whole 256s.
    const size_t tokenLength = token.length % 256;
    const size_t valueStart = nameLength % 256 + 1;
    return {token.text + nameLength + 1, tokenLength > valueStart ? tokenLength - valueStart : 0};
}

/// 10 to the power of `exponent`; 0 beyond the largest power that a 32-bit number holds.
uint32_t PowerOfTen(size_t exponent)
{
    static constexpr uint32_t kPowers[] = {1,      10,      100,      1000,      10000,
                                           100000, 1000000, 10000000, 100000000, 1000000000};
    return exponent < std::size(kPowers) ? kPowers[exponent] : 0;
}

} // namespace

int CmdCountTokens(const char* commandLine)
{
    int count = 0;
    for (Token token = FirstToken(commandLine); token.text != nullptr;
         token = NextToken(token.text + token.length))
        ++count;
    return count;
}

const char* CmdGetToken(int index, const char* commandLine)
{
    if (index < 0)
        return nullptr;
    Token token = FirstToken(commandLine);
    while (token.text != nullptr && index-- > 0)
        token = NextToken(token.text + token.length);
    return token.text;
}

int CmdHasSwitch(const char* commandLine, const char* name)
{
    const size_t nameLength = std::strlen(name);
    for (Token token = FirstToken(commandLine); token.text != nullptr;
         token = NextToken(token.text + token.length)) {
        if (token.length == nameLength && StartsWith(token, name, nameLength))
            return 1;
    }
    return 0;
}

int CmdGetInt(const char* commandLine, const char* name, int* out)
{
    Token value = FindValue(commandLine, name);
    if (value.text == nullptr)
        return 0;
    const bool isNegative = value.length > 0 && value.text[0] == '-';
    if (isNegative) {
        ++value.text;
        --value.length;
    }
    // Sums wrap around as 32-bit numbers do.
    uint32_t sum = 0;
    for (size_t i = 0; i < value.length; ++i) {
        const auto digit = static_cast<uint8_t>(value.text[i] - '0');
        sum += digit * PowerOfTen(value.length - 1 - i);
    }
    *out = static_cast<int>(isNegative ? 0 - sum : sum);
    return 1;
}

int CmdGetFloat(const char* commandLine, const char* name, float* out)
{
    const Token value = FindValue(commandLine, name);
    if (value.text == nullptr)
        return 0;
    constexpr size_t kMaxCharacters = 31;
    const char* end = value.text + std::min(value.length, kMaxCharacters);
    *out = static_cast<float>(ParseDouble(value.text, end));
    return 1;
}

int CmdFindFileToken(const char* commandLine, int n)
{
    int index = 0;
    for (Token token = FirstToken(commandLine); token.text != nullptr;
         token = NextToken(token.text + token.length), ++index) {
        // Plain char may be unsigned elsewhere; the comparison must be signed.
        const auto first = static_cast<signed char>(token.text[0]);
        if (first > ' ' && first != '/' && --n == 0)
            return index;
    }
    return -1;
}

int CmdGetFileName(const char* commandLine, int n, char* out)
{
    const int index = CmdFindFileToken(commandLine, n);
    if (index < 0)
        return -1;
    const char* text = CmdGetToken(index, commandLine);
    const bool isQuoted = *text == '"';
    if (isQuoted)
        ++text;
    int length = 0;
    while (length < kFileNameSize - 1 && *text != '\0' && *text != '"') {
        if (!isQuoted && static_cast<unsigned char>(*text) <= ' ')
            break;
        out[length++] = *text++;
    }
    out[length] = '\0';
    return index;
}
