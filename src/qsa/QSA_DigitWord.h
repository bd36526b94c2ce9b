#pragma once

#include <cstdint>

#include "platform/LittleEndian.h"

// Eight bytes of text as one word, the first byte in the lowest bits on every machine.

inline constexpr uint64_t kDigitZeros = 0x3030303030303030;

inline uint64_t LoadTextWord(const uint8_t* at)
{
    return LoadLittle<uint64_t>(at);
}

/// Not 0 if one of the bytes is above 9.
inline uint64_t BytesAboveNine(uint64_t word)
{
    return ((word + 0x7676767676767676) | word) & 0x8080808080808080;
}

/// The number whose eight digits are the bytes of a word, each 0 to 9, the first one in the lowest
/// bits: neighbours are joined to numbers of two digits, these to four, these to eight.
inline uint64_t JoinDigits(uint64_t word)
{
    constexpr uint64_t kPairs = 0x000000FF000000FF;
    constexpr uint64_t kOuter = 100 + (uint64_t{1000000} << 32);
    constexpr uint64_t kInner = 1 + (uint64_t{10000} << 32);
    word = word * 10 + (word >> 8);
    return ((word & kPairs) * kOuter + ((word >> 16) & kPairs) * kInner) >> 32;
}
