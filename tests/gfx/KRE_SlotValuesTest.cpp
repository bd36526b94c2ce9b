// Values of map slots that few textures have.

#include <utility>

#include <gtest/gtest.h>

#include "gfx/KRE_SlotValues.h"

TEST(KRE_SlotValuesTest, AreZeroUntilSet)
{
    KRE_SlotValues<int> values;
    EXPECT_EQ(std::as_const(values)[3], 0);
    values[2] = 7;
    EXPECT_EQ(std::as_const(values)[2], 7);
    EXPECT_EQ(std::as_const(values)[3], 0);
}

TEST(KRE_SlotValuesTest, CopiesAreOfTheirOwn)
{
    KRE_SlotValues<int> values;
    values[0] = 1;
    KRE_SlotValues<int> copy;
    copy.CopyFrom(values);
    values[0] = 2;
    EXPECT_EQ(copy[0], 1);
    copy.CopyFrom(KRE_SlotValues<int>()); // nothing set also takes the place of something
    EXPECT_EQ(copy[0], 0);
}
