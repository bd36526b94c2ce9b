#include "base/ParseNumber.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <limits>

#include "base/Ascii.h"

namespace {

constexpr int64_t kExponentLimit =
    1000000; // far beyond any double; keeps sums of exponents in range
constexpr int kMantissaBits = 53;
constexpr int kLowestExponent = -1074; // of the last bit of a subnormal

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool IsCSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

int HexDigit(char c)
{
    if (IsDigit(c))
        return c - '0';
    const char upper = ToUpperAscii(c);
    return upper >= 'A' && upper <= 'F' ? upper - 'A' + 10 : -1;
}

bool StartsWithNoCase(const char* at, const char* end, const char* lowerWord)
{
    for (; *lowerWord; ++lowerWord, ++at) {
        if (at == end || ToLowerAscii(*at) != *lowerWord)
            return false;
    }
    return true;
}

/// The exponent after an exponent letter at `at`, limited to `kExponentLimit`; 0 without digits.
int64_t ReadExponent(const char* at, const char* end)
{
    const bool negative = at != end && *at == '-';
    if (at != end && (*at == '-' || *at == '+'))
        ++at;
    int64_t exponent = 0;
    for (; at != end && IsDigit(*at); ++at) {
        if (exponent < kExponentLimit)
            exponent = exponent * 10 + (*at - '0');
    }
    return negative ? -exponent : exponent;
}

/// mantissa * 2^exponent, rounded once to nearest even; `sticky`: nonzero bits were lost below.
double RoundBinary(uint64_t mantissa, int64_t exponent, bool sticky)
{
    if (mantissa == 0)
        return 0.0;
    const int bits = 64 - std::countl_zero(mantissa);
    int64_t drop = bits - kMantissaBits;
    if (exponent + drop < kLowestExponent)
        drop = kLowestExponent - exponent;
    if (drop > 64)
        return 0.0;
    if (drop > 0) {
        const uint64_t half = uint64_t{1} << (drop - 1);
        const uint64_t rest = drop == 64 ? mantissa : mantissa & (half * 2 - 1);
        mantissa = drop == 64 ? 0 : mantissa >> drop;
        exponent += drop;
        if (rest > half || (rest == half && (sticky || (mantissa & 1) != 0)))
            ++mantissa;
    }
    if (exponent > kExponentLimit)
        exponent = kExponentLimit;
    return std::ldexp(static_cast<double>(mantissa), static_cast<int>(exponent));
}

/// After "0x". False if there is no digit; the number is then the 0 before the x.
bool ParseHex(const char* at, const char* end, double* valueOut)
{
    uint64_t mantissa = 0;
    int64_t exponent = 0;
    bool sticky = false;
    bool anyDigit = false;
    bool behindPoint = false;
    for (; at != end; ++at) {
        if (*at == '.' && !behindPoint) {
            behindPoint = true;
            continue;
        }
        const int digit = HexDigit(*at);
        if (digit < 0)
            break;
        anyDigit = true;
        if ((mantissa >> 60) == 0) {
            mantissa = mantissa * 16 + static_cast<uint64_t>(digit);
            exponent -= behindPoint ? 4 : 0;
        } else {
            sticky = sticky || digit != 0;
            exponent += behindPoint ? 0 : 4;
        }
    }
    if (!anyDigit)
        return false;
    if (at != end && ToLowerAscii(*at) == 'p')
        exponent += ReadExponent(at + 1, end);
    *valueOut = RoundBinary(mantissa, exponent, sticky);
    return true;
}

/// What a decimal number outside the range of double rounds to: its decimal magnitude is either far
/// above or far below 1.
double OutOfRange(const char* at, const char* end)
{
    int64_t magnitude = 0; // digits before the point, or minus the zeros after it
    bool seen = false;     // a digit other than 0
    bool behindPoint = false;
    for (; at != end; ++at) {
        if (*at == '.' && !behindPoint) {
            behindPoint = true;
        } else if (IsDigit(*at)) {
            seen = seen || *at != '0';
            if (!behindPoint && seen)
                ++magnitude;
            if (behindPoint && !seen)
                --magnitude;
        } else {
            break;
        }
    }
    if (at != end && ToLowerAscii(*at) == 'e')
        magnitude += ReadExponent(at + 1, end);
    return seen && magnitude > 0 ? std::numeric_limits<double>::infinity() : 0.0;
}

/// Digits with at most one point and nothing else up to `end`, few enough that their integer and
/// the power of ten are exact in double: then one division gives the correctly rounded value.
bool ParsePlain(const char* at, const char* end, double* valueOut)
{
    static constexpr double kPowers[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                         1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    constexpr int64_t kMostDigits = 15;
    if (end - at > kMostDigits + 1 || at == end)
        return false;
    uint64_t digits = 0;
    int64_t number = 0;
    int64_t decimals = -1; // below 0 before the point
    for (; at != end; ++at) {
        if (IsDigit(*at)) {
            digits = digits * 10 + static_cast<uint64_t>(*at - '0');
            ++number;
            decimals += decimals >= 0 ? 1 : 0;
        } else if (*at == '.' && decimals < 0) {
            decimals = 0;
        } else {
            return false;
        }
    }
    if (number == 0 || number > kMostDigits)
        return false;
    const double whole = static_cast<double>(digits);
    *valueOut = decimals > 0 ? whole / kPowers[decimals] : whole;
    return true;
}

/// After the sign. False if there is no number.
bool ParseUnsigned(const char* at, const char* end, double* valueOut)
{
    if (ParsePlain(at, end, valueOut))
        return true;
    if (StartsWithNoCase(at, end, "0x") && ParseHex(at + 2, end, valueOut))
        return true;
    if (StartsWithNoCase(at, end, "inf")) {
        *valueOut = std::numeric_limits<double>::infinity();
        return true;
    }
    if (StartsWithNoCase(at, end, "nan")) {
        *valueOut = std::numeric_limits<double>::quiet_NaN();
        return true;
    }
    if (at == end || (!IsDigit(*at) && *at != '.'))
        return false; // a second sign is not a number
    const auto result = std::from_chars(at, end, *valueOut);
    if (result.ec == std::errc::result_out_of_range)
        *valueOut = OutOfRange(at, end);
    return result.ec != std::errc::invalid_argument;
}

} // namespace

double ParseDouble(const char* begin, const char* end)
{
    while (begin != end && IsCSpace(*begin))
        ++begin;
    const bool negative = begin != end && *begin == '-';
    if (begin != end && (*begin == '-' || *begin == '+'))
        ++begin;

    double value = 0.0;
    if (!ParseUnsigned(begin, end, &value))
        return 0.0; // a sign without a number gives no negative zero
    return negative ? -value : value;
}

int32_t ToInt32(double value)
{
    if (std::isnan(value))
        return 0;
    if (value <= static_cast<double>(INT32_MIN))
        return INT32_MIN;
    if (value >= static_cast<double>(INT32_MAX))
        return INT32_MAX;
    return static_cast<int32_t>(value);
}
