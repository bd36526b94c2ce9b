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
        const uint8_t* p = at;
        while (*p <= ' ')
            ++p;
        const uint8_t* const first = p;
        *valueOut = static_cast<int32_t>(ReadDigits(p));
        at = p;
        return IsShort(first, p, kMostDigits + 1) && *p <= ' ' && p < end;
    }

    /// Numbers of up to seven digits, or of as many before a point and one to seven behind it.
    template <size_t count>
    bool TakeFloats(float (&valuesOut)[count])
    {
        static constexpr double kSigns[] = {1.0, -1.0};
        // In local variables: a byte of text could be part of this object, for all the compiler knows.
        const uint8_t* p = at;
        Decimals form = decimals;
        bool isPlain = true;
        for (float& value : valuesOut) {
            while (*p <= ' ')
                ++p;
            const bool isNegative = *p == '-';
            p += isNegative ? 1 : 0;
            const uint8_t* const first = p;
            const uint32_t whole = ReadDigits(p);
            isPlain = isPlain && IsShort(first, p, kMostDigits);
            double size = static_cast<double>(static_cast<int32_t>(whole));
            if (*p == '.') {
                const uint64_t word = LoadTextWord(p + 1) ^ kDigitZeros;
                const uint64_t others = BytesAboveNine(word);
                // Most often there are as many as behind the last point, so that nothing waits for
                // the search.
                if ((others & form.upToEnd) != form.end && !FindDecimals(others, &form))
                    return false;
                const uint64_t part = JoinDigits(word << form.unused);
                const int64_t digits = static_cast<int64_t>(whole * form.scale + part);
                size = static_cast<double>(digits) / form.power;
                p += form.step;
            }
            // A product with 1 or -1 is exact, and signs are too random for a branch.
            value = static_cast<float>(size * kSigns[isNegative ? 1 : 0]);
            isPlain = isPlain && *p <= ' ';
        }
        at = p;
        decimals = form;
        return isPlain && p < end;
    }
    bool TakeFloat(float* valueOut)
    {
        float value[1];
        const bool isTaken = TakeFloats(value);
        *valueOut = value[0];
        return isTaken;
    }

    /// Behind the last number taken.
    const uint8_t* Place() const { return at; }

private:
    static constexpr size_t kMostDigits = 7;

    /// What follows from the number of digits behind a point.
    struct Decimals {
        uint64_t end;     ///< the bit of the first byte that is none of them
        uint64_t upToEnd; ///< that bit and the lower ones
        uint64_t scale;   ///< ten to that number
        double power;     ///< the same
        uint32_t unused;  ///< bits of a word
        uint32_t step;    ///< bytes, with the point
    };
    static constexpr Decimals MakeDecimals(uint32_t number)
    {
        const uint64_t bit = uint64_t{0x80} << (8 * number);
        uint64_t scale = 1;
        for (uint32_t i = 0; i < number; ++i)
            scale *= 10;
        return {bit,       bit | (bit - 1), scale, static_cast<double>(scale), 64 - 8 * number,
                number + 1};
    }

    /// A plain loop: the branch predictor guesses lengths well. Too many digits are refused
    /// afterwards.
    static uint32_t ReadDigits(const uint8_t*& p)
    {
        uint32_t value = 0;
        for (uint32_t digit = 0; (digit = *p - uint32_t{'0'}) <= 9; ++p)
            value = value * 10 + digit;
        return value;
    }

    static bool IsShort(const uint8_t* first, const uint8_t* p, size_t most)
    {
        return static_cast<size_t>(p - first) - 1 < most; // unsigned: there is a digit
    }

    /// `others` has a bit for each byte of a word that is no digit.
    static bool FindDecimals(uint64_t others, Decimals* formOut)
    {
        const int number = std::countr_zero(others) / 8;
        if (number == 0 || number > static_cast<int>(kMostDigits))
            return false;
        *formOut = MakeDecimals(static_cast<uint32_t>(number));
        return true;
    }

    const uint8_t* at;
    const uint8_t* const end;
    Decimals decimals = MakeDecimals(6); ///< of the last number with a point
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
