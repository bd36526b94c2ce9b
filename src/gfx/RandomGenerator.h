#pragma once

#include <cstdint>

/// The engine's random numbers: a Mersenne twister's table.
class RandomGenerator {
public:
    static constexpr int32_t kWords = 624;

    /// Fills the table from one number, by the linear congruence x * 69069 + 1.
    void Seed(uint32_t seed);

    /// The next number of the sequence, from 0 to below 1.
    float NextFloat();

    uint32_t table[kWords] = {};
    int32_t next = kWords; ///< word to return next; at the end the table is regenerated
};
