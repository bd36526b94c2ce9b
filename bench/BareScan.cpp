#include "bench/BareScan.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <cstring>

namespace {

enum class Kind : uint8_t { kOther, kSpace, kNumber, kKeyword, kOpen, kClose, kQuote };

constexpr std::array<Kind, 256> MakeKinds()
{
    std::array<Kind, 256> kinds{};
    for (uint8_t c = 0; c <= ' '; ++c)
        kinds[c] = Kind::kSpace;
    for (const char c : {'0', '1', '2', '3', '4', '5', '6', '7', '8', '9', '-', '.'})
        kinds[static_cast<uint8_t>(c)] = Kind::kNumber;
    kinds['*'] = Kind::kKeyword;
    kinds['{'] = Kind::kOpen;
    kinds['}'] = Kind::kClose;
    kinds['"'] = Kind::kQuote;
    return kinds;
}
constexpr std::array<Kind, 256> kKinds = MakeKinds();

bool EndsKeyword(char c)
{
    return static_cast<uint8_t>(c) <= ' ' || c == '{' || c == '}' || c == '"' || c == ',';
}

/// Adds a number to the result, a whole one as an integer; returns its end, or the next byte if it is none.
const char* TakeNumber(const char* at, const char* end, BareScanResult* result)
{
    int whole = 0;
    std::from_chars_result read = std::from_chars(at, end, whole);
    double value = whole;
    if (read.ptr != end && (*read.ptr == '.' || *read.ptr == 'e' || *read.ptr == 'E'))
        read = std::from_chars(at, end, value);
    if (read.ptr == at)
        return at + 1;
    result->sum += value;
    ++result->numbers;
    return read.ptr;
}

} // namespace

BareScanResult BareScan(const char* text, size_t size)
{
    BareScanResult result;
    const char* const end = text + size;
    const char* at = text;
    while (at != end) {
        switch (kKinds[static_cast<uint8_t>(*at)]) {
        case Kind::kNumber:
            at = TakeNumber(at, end, &result);
            break;
        case Kind::kKeyword:
            for (++at; at != end && !EndsKeyword(*at); ++at)
                result.hash = result.hash * 31 + static_cast<uint8_t>(*at);
            ++result.words;
            break;
        case Kind::kOpen:
            ++result.depth;
            ++at;
            break;
        case Kind::kClose:
            --result.depth;
            ++at;
            break;
        case Kind::kQuote: {
            const void* const close = std::memchr(at + 1, '"', static_cast<size_t>(end - at - 1));
            at = close ? static_cast<const char*>(close) + 1 : end;
            break;
        }
        default:
            ++at;
        }
    }
    return result;
}
