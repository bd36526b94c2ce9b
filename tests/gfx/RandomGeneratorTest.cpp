#include "gfx/RandomGenerator.h"

#include <gtest/gtest.h>

TEST(RandomGenerator, TableTakesTheHighHalvesOfTwoStepsAWord)
{
    // From seed 0 the rule x * 69069 + 1 gives 1, 69070 (0x00010DCE), 475628535 (0x1C5983F7) and
    // 3277404108 (0xC35937CC) modulo 2^32: each is the one before it, multiplied out by hand.
    RandomGenerator random;
    random.Seed(0);
    EXPECT_EQ(random.table[0], 0x00000001u);
    EXPECT_EQ(random.table[1], 0x1C59C359u);
}

TEST(RandomGenerator, EveryWordIsFilled)
{
    // Step n in closed form: a^n * seed + (a^(n-1) + ... + 1), summed up from the other end.
    constexpr uint32_t kSeed = 0x12345678;
    RandomGenerator random;
    random.Seed(kSeed);
    const auto step = [](int n) {
        uint32_t power = 1;
        uint32_t sum = 0;
        for (int i = 0; i < n; ++i) {
            sum += power;
            power *= 69069u;
        }
        return power * kSeed + sum;
    };
    for (int word : {0, 1, 311, 622, 623}) {
        const uint32_t expected = (step(2 * word + 1) & 0xFFFF0000u) | (step(2 * word + 2) >> 16);
        EXPECT_EQ(random.table[word], expected) << word;
    }
}

TEST(RandomGenerator, SeedsDiffer)
{
    RandomGenerator one;
    RandomGenerator two;
    one.Seed(1);
    two.Seed(2);
    EXPECT_NE(one.table[623], two.table[623]);
}
