#include "gfx/RandomGenerator.h"

#include <gtest/gtest.h>
#include <random>
#include <sstream>

TEST(RandomGenerator, TableTakesTheHighHalvesOfTwoStepsPerWord)
{
    // From seed 0 the rule x * 69069 + 1 gives 1, 69070 (0x00010DCE), 475628535 (0x1C5983F7) and
    // 3277404108 (0xC35937CC) modulo 2^32: each is computed from the previous one by hand.
    RandomGenerator random;
    random.Seed(0);
    EXPECT_EQ(random.table[0], 0x00000001u);
    EXPECT_EQ(random.table[1], 0x1C59C359u);
}

TEST(RandomGenerator, EveryWordIsFilled)
{
    // Step n in closed form: a^n * seed + (a^(n-1) + ... + 1), summed from the other end.
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

TEST(RandomGenerator, NumbersAreThoseOfTheStandardsGeneratorFromTheSameTable)
{
    // The standard library's generator reads its state from a text: 624 words, and for libstdc++
    // the position after them. 1500 numbers regenerate the table twice.
    RandomGenerator random;
    random.Seed(1234);
    std::stringstream state;
    for (uint32_t word : random.table)
        state << word << ' ';
    state << RandomGenerator::kWords;
    std::mt19937 standard;
    state >> standard;
    ASSERT_FALSE(state.fail());
    for (int i = 0; i < 1500; ++i) {
        // The upper 24 bits, which a float holds exactly, over 2^24.
        const float expected = static_cast<float>(standard() >> 8) / 16777216.0f;
        ASSERT_EQ(random.NextFloat(), expected) << i;
    }
}

TEST(RandomGenerator, NumbersAreFromZeroToBelowOne)
{
    RandomGenerator random;
    random.Seed(77);
    for (int i = 0; i < 10000; ++i) {
        const float number = random.NextFloat();
        ASSERT_GE(number, 0.0f);
        ASSERT_LT(number, 1.0f);
    }
}

TEST(RandomGenerator, SeedRestartsTheSequence)
{
    RandomGenerator random;
    random.Seed(9);
    const float first = random.NextFloat();
    random.NextFloat();
    random.Seed(9);
    EXPECT_EQ(random.NextFloat(), first);
}
