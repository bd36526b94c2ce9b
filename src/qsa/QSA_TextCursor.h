#pragma once

#include "platform/Simd.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

/// Bytes after a text in memory, all of them `kTextSentinel`: no loop below runs past them, and a
/// keyword can be compared without checking how much of the text is left.
inline constexpr int32_t kTextPadding = 64;
inline constexpr uint8_t kTextSentinel = '}';

/// A position in a text in memory, with fast versions of the reads that make up most of a scene:
/// plain numbers and keywords as exporters write them. A fast read either does exactly what
/// TextDataFileReader would do, or leaves the position unchanged and returns false; then the caller
/// uses the reader's own operation.
struct QSA_TextCursor {
    const uint8_t* at = nullptr;
    const uint8_t* end = nullptr; ///< of the text; `kTextPadding` sentinels follow

    /// Skips bytes below 33.
    void SkipSpace()
    {
        while (*at <= ' ')
            ++at;
    }

    /// Skips to the next star or brace, or to the first sentinel.
    void SkipToStructure()
    {
        const simd::Ints4 star = simd::SplatByte('*');
        const simd::Ints4 open = simd::SplatByte('{');
        const simd::Ints4 close = simd::SplatByte('}');
        for (;; at += sizeof(simd::Ints4)) {
            const simd::Ints4 bytes = simd::LoadInts(at);
            const simd::Ints4 braces = AreBytesEqual(bytes, open) | AreBytesEqual(bytes, close);
            const simd::Ints4 hits = AreBytesEqual(bytes, star) | braces;
            const uint32_t mask = ByteBits(hits);
            if (mask != 0) {
                at += std::countr_zero(mask);
                return;
            }
        }
    }

    /// The same within a line's length, byte by byte: where lines are alike the branch predictor
    /// guesses their length, and nothing waits for the search.
    void SkipLineRest()
    {
        constexpr int kReach = 48; // for a face line's edge flags; the padding is longer
        for (int i = 0; i < kReach && !IsStructure(*at); ++i)
            ++at;
    }

    /// Takes white space and `keyword`, which includes its star but not its delimiter.
    template <size_t size>
    bool TakeKeyword(const char (&keyword)[size])
    {
        static_assert(size <= kTextPadding);
        const uint8_t* p = at;
        while (*p <= ' ')
            ++p;
        if (std::memcmp(p, keyword, size - 1) != 0 || !EndsWord(p[size - 1]) || p + size > end)
            return false;
        at = p + size - 1;
        return true;
    }

    /// Takes everything up to and including the next `c` if it comes within a few bytes.
    bool TakeThrough(char c)
    {
        constexpr int kReach = 8;
        for (int i = 0; i < kReach && at + i < end; ++i) {
            if (at[i] == static_cast<uint8_t>(c)) {
                at += i + 1;
                return true;
            }
        }
        return false;
    }

    /// Takes white space and a decimal integer of up to nine digits.
    bool TakeInt(int32_t* valueOut)
    {
        const uint8_t* p = at;
        while (*p <= ' ')
            ++p;
        const bool isNegative = *p == '-';
        p += isNegative ? 1 : 0;
        uint64_t value = 0;
        const ptrdiff_t number = TakeDigits(p, &value);
        p += number;
        if (number == 0 || number > kMostIntDigits || IsNumber(*p) || p >= end)
            return false;
        *valueOut = isNegative ? -static_cast<int32_t>(value) : static_cast<int32_t>(value);
        at = p;
        return true;
    }

    /// Takes white space and a decimal number. Its digits form an integer that is exact in double
    /// and its exponent a power of ten that is exact too, so one multiplication or division rounds
    /// as the C library would; everything else is left to the slow, exact path.
    bool TakeFloat(float* valueOut)
    {
        const uint8_t* p = at;
        while (*p <= ' ')
            ++p;
        const bool isNegative = *p == '-';
        p += isNegative ? 1 : 0;

        uint64_t digits = 0;
        ptrdiff_t number = TakeDigits(p, &digits);
        p += number;
        ptrdiff_t exponent = 0;
        if (*p == '.') {
            const ptrdiff_t decimals = TakeDigits(++p, &digits);
            p += decimals;
            number += decimals;
            exponent = -decimals;
        }
        if ((*p | 0x20) == 'e')
            p = TakeExponent(p, &exponent);
        if (number == 0 || number > kMostDigits || digits > kMostExact || !EndsWord(*p) || p >= end)
            return false;
        if (exponent < -kMostPower || exponent > kMostPower)
            return false;

        const double whole = static_cast<double>(digits);
        const double value = exponent < 0 ? whole / kPowers[static_cast<size_t>(-exponent)]
                                          : whole * kPowers[static_cast<size_t>(exponent)];
        *valueOut = static_cast<float>(isNegative ? -value : value);
        at = p;
        return true;
    }

    /// White space, braces, the double quote and the comma.
    static bool EndsWord(uint8_t c) { return (kClasses[c] & kEndsWord) != 0; }
    /// Digits, `-`, `+` and `.`.
    static bool IsNumber(uint8_t c) { return (kClasses[c] & kIsNumber) != 0; }
    /// Bytes that mean something between two keywords: the star and the braces.
    static bool IsStructure(uint8_t c) { return (kClasses[c] & kIsStructure) != 0; }

private:
    static constexpr ptrdiff_t kMostIntDigits = 9;            ///< always fit 31 bits
    static constexpr ptrdiff_t kMostDigits = 19;              ///< always fit 64 bits
    static constexpr uint64_t kMostExact = uint64_t{1} << 53; ///< largest run of exact integers
    static constexpr ptrdiff_t kMostPower = 22;               ///< 10^22 is the last exact one
    static constexpr double kPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                         1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                         1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    static constexpr uint8_t kEndsWord = 1;
    static constexpr uint8_t kIsNumber = 2;
    static constexpr uint8_t kIsStructure = 4;

    static constexpr std::array<uint8_t, 256> MakeClasses()
    {
        std::array<uint8_t, 256> classes{};
        for (size_t c = 0; c < classes.size(); ++c) {
            const bool endsWord = c <= ' ' || c == '{' || c == '}' || c == '"' || c == ',';
            const bool isNumber = (c >= '0' && c <= '9') || c == '-' || c == '+' || c == '.';
            const bool isStructure = c == '*' || c == '{' || c == '}';
            classes[c] =
                static_cast<uint8_t>((endsWord ? kEndsWord : 0) | (isNumber ? kIsNumber : 0) |
                                     (isStructure ? kIsStructure : 0));
        }
        return classes;
    }
    static const std::array<uint8_t, 256> kClasses;

    /// Appends the run of digits at `p` to those in `digits` and returns its length. If the run is
    /// too long, only the length is meaningful. A plain loop: the branch predictor guesses lengths
    /// well, and nothing waits for the digits.
    static ptrdiff_t TakeDigits(const uint8_t* p, uint64_t* digits)
    {
        const uint8_t* const first = p;
        for (uint32_t digit = 0; (digit = *p - uint32_t{'0'}) <= 9; ++p)
            *digits = *digits * 10 + digit;
        return p - first;
    }

    /// At an exponent letter: adds one to three digits with an optional sign and returns the
    /// position after them. For any other form returns the letter's position, where no word ends.
    static const uint8_t* TakeExponent(const uint8_t* p, ptrdiff_t* exponent)
    {
        constexpr ptrdiff_t kDigits = 3;
        const uint8_t* letter = p++;
        const bool isNegative = *p == '-';
        p += *p == '-' || *p == '+' ? 1 : 0;
        const uint8_t* first = p;
        ptrdiff_t value = 0;
        for (uint32_t digit = 0; p - first <= kDigits && (digit = *p - uint32_t{'0'}) <= 9; ++p)
            value = value * 10 + static_cast<ptrdiff_t>(digit);
        if (p == first || p - first > kDigits)
            return letter;
        *exponent += isNegative ? -value : value;
        return p;
    }
};

inline constexpr std::array<uint8_t, 256> QSA_TextCursor::kClasses = QSA_TextCursor::MakeClasses();
