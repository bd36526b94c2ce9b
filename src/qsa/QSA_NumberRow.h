#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

#include "qsa/QSA_DigitWord.h"
#include "qsa/QSA_TextCursor.h"

/// Numbers with nothing but white space between them, as they follow a keyword. Takes what
/// `QSA_TextCursor` takes, but only plain numbers: few digits, no exponent, white space behind.
/// Once it gave false, the cursor must be asked for all of them.
class QSA_NumberRow {
public:
    explicit QSA_NumberRow(const QSA_TextCursor& cursor) : at(cursor.at), end(cursor.end) {}

    /// A number of up to eight digits without a sign.
    bool TakeInt(int32_t* valueOut)
    {
        SkipSpace();
        const uint8_t* const first = at;
        *valueOut = static_cast<int32_t>(TakeDigits());
        return IsEnd(first, kMostDigits);
    }

    /// A number of up to seven digits, or of as many before a point and one to seven behind it.
    bool TakeFloat(float* valueOut)
    {
        static constexpr double kSigns[] = {1.0, -1.0};
        SkipSpace();
        const bool isNegative = *at == '-';
        at += isNegative ? 1 : 0;
        const uint8_t* const first = at;
        double value = 0.0;
        const uint32_t whole = TakeDigits();
        // Unsigned, so that there is a digit.
        const bool isPlain = static_cast<size_t>(at - first) - 1 < kMostDigits - 1;
        if (*at != '.') {
            value = static_cast<double>(static_cast<int32_t>(whole));
        } else {
            const uint64_t word = LoadTextWord(at + 1) ^ kDigitZeros;
            if (!FindDecimals(BytesAboveNine(word)))
                return false;
            const uint64_t part = JoinDigits(word << (64 - 8 * decimals));
            const uint64_t digits = uint64_t{whole} * kScales[decimals] + part;
            value = static_cast<double>(static_cast<int64_t>(digits)) / kPowers[decimals];
            at += 1 + decimals;
        }
        // A product with 1 or -1 is exact, and signs are too random for a branch.
        *valueOut = static_cast<float>(value * kSigns[isNegative ? 1 : 0]);
        return isPlain && IsEnd();
    }

    template <size_t count>
    bool TakeFloats(float (&valuesOut)[count])
    {
        for (float& value : valuesOut) {
            if (!TakeFloat(&value))
                return false;
        }
        return true;
    }

    /// Behind the last number taken.
    const uint8_t* Place() const { return at; }

private:
    static constexpr size_t kMostDigits = 8;
    static constexpr uint32_t kScales[kMostDigits] = {1,     10,     100,     1000,
                                                      10000, 100000, 1000000, 10000000};
    static constexpr double kPowers[kMostDigits] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7};

    void SkipSpace()
    {
        while (*at <= ' ')
            ++at;
    }

    /// A plain loop: the branch predictor guesses lengths well. A run of many digits is refused
    /// afterwards.
    uint32_t TakeDigits()
    {
        uint32_t value = 0;
        for (uint32_t digit = 0; (digit = *at - uint32_t{'0'}) <= 9; ++at)
            value = value * 10 + digit;
        return value;
    }

    /// The number of digits behind a point, from which bytes there are none. Most often it is that of
    /// the number before: so the next number need not wait for the search.
    bool FindDecimals(uint64_t others)
    {
        const uint64_t first = uint64_t{0x80} << (8 * decimals);
        if ((others & (first | (first - 1))) == first)
            return true;
        decimals = others == 0 ? 0 : static_cast<uint32_t>(std::countr_zero(others)) / 8;
        return decimals != 0;
    }

    /// White space within the text; a number may go on behind it.
    bool IsEnd() const { return *at <= ' ' && at < end; }
    bool IsEnd(const uint8_t* first, size_t most) const
    {
        return static_cast<size_t>(at - first) - 1 < most && IsEnd();
    }

    const uint8_t* at;
    const uint8_t* const end;
    uint32_t decimals = 6; ///< of the last number with a point
};

/// Takes numbers that stand in a row; false, with the cursor unchanged, for any other.
template <size_t count>
bool TakeRow(QSA_TextCursor& cursor, float (&valuesOut)[count])
{
    QSA_NumberRow row(cursor);
    if (!row.TakeFloats(valuesOut))
        return false;
    cursor.at = row.Place();
    return true;
}
