#include "import/WeightRules.h"

#include <limits>

#include <gtest/gtest.h>

TEST(WeightRules, KeptWeightsHaveTheSumOneInDescendingOrder)
{
    const auto kept = KeptWeights({{3, 0.05f}, {1, 0.25f}, {2, 0.5f}, {1, 0.25f}});
    ASSERT_EQ(kept.size(), 2u); // 0.05 is less than a tenth of 1.05
    EXPECT_EQ(kept[0].joint, 1u);
    EXPECT_FLOAT_EQ(kept[0].weight, 0.5f);
    EXPECT_EQ(kept[1].joint, 2u);
    EXPECT_FLOAT_EQ(kept[1].weight, 0.5f);
}

TEST(WeightRules, TheLargestFourCount)
{
    const auto kept = KeptWeights({{0, 1}, {1, 1.5f}, {2, 1.5f}, {3, 2}, {4, 3}});
    ASSERT_EQ(kept.size(), 4u);
    EXPECT_EQ(kept[0].joint, 4u);
    EXPECT_FLOAT_EQ(kept[0].weight, 3.0f / 8);
    EXPECT_FLOAT_EQ(kept[3].weight, 1.5f / 8);
}

TEST(WeightRules, TheLargestFloatsStillHaveASum)
{
    constexpr float kMost = std::numeric_limits<float>::max();
    const auto kept = KeptWeights({{0, kMost}, {1, kMost}, {0, kMost}});
    ASSERT_EQ(kept.size(), 2u);
    EXPECT_FLOAT_EQ(kept[0].weight, 0.5f);
    EXPECT_FLOAT_EQ(kept[1].weight, 0.5f);
}
