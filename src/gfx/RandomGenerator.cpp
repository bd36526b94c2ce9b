#include "gfx/RandomGenerator.h"

void RandomGenerator::Seed(uint32_t seed)
{
    next = kWords;
    uint32_t x = seed;
    const auto nextHighHalf = [&x] {
        x = x * 69069u + 1u;
        return x & 0xFFFF0000u;
    };
    // The low bits of a linear congruence are poor, so each word combines the high halves of two
    // steps.
    for (uint32_t& word : table) {
        const uint32_t first = nextHighHalf();
        const uint32_t second = nextHighHalf();
        word = first | (second >> 16);
    }
}

/// The recurrence and tempering of MT19937 (Matsumoto and Nishimura, 1998).
float RandomGenerator::NextFloat()
{
    static constexpr int32_t kShift = 397;
    static constexpr uint32_t kTwist = 0x9908B0DF;
    if (next >= kWords) {
        for (int32_t i = 0; i < kWords; ++i) {
            const uint32_t mixed =
                (table[i] & 0x80000000u) | (table[(i + 1) % kWords] & 0x7FFFFFFFu);
            table[i] = table[(i + kShift) % kWords] ^ (mixed >> 1) ^ (mixed & 1 ? kTwist : 0);
        }
        next = 0;
    }
    uint32_t word = table[next++];
    word ^= word >> 11;
    word ^= word << 7 & 0x9D2C5680u;
    word ^= word << 15 & 0xEFC60000u;
    word ^= word >> 18;
    return static_cast<float>(word >> 8) * 0x1p-24f; // 24 bits, which a float holds exactly
}
