#include "bench/BareScan.h"

#include <charconv>

namespace {

bool IsSpace(char c)
{
    return static_cast<unsigned char>(c) <= ' ';
}

bool StartsNumber(char c)
{
    return (c >= '0' && c <= '9') || c == '-' || c == '.';
}

} // namespace

BareScanResult BareScan(const char* text, size_t size)
{
    BareScanResult result;
    const char* const end = text + size;
    const char* at = text;
    for (;;) {
        while (at != end && IsSpace(*at))
            ++at;
        if (at == end)
            return result;
        if (StartsNumber(*at)) {
            double value = 0.0;
            const std::from_chars_result read = std::from_chars(at, end, value);
            if (read.ec == std::errc()) {
                at = read.ptr;
                ++result.numbers;
                result.sum += value;
                continue;
            }
        }
        ++result.words;
        while (at != end && !IsSpace(*at))
            ++at;
    }
}
