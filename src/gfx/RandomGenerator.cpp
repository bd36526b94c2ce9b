#include "gfx/RandomGenerator.h"

void RandomGenerator::Seed(uint32_t seed)
{
    uint32_t x = seed;
    const auto nextHighHalf = [&x] {
        x = x * 69069u + 1u;
        return x & 0xFFFF0000u;
    };
    // The low bits of a linear rule are poor, so each word takes the high halves of two steps.
    for (uint32_t& word : table) {
        const uint32_t first = nextHighHalf();
        const uint32_t second = nextHighHalf();
        word = first | (second >> 16);
    }
}
