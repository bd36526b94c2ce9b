#include "scene/WrapTime.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

TEST(WrapTime, FoldsIntoOnePeriod)
{
    static const struct {
        const char* what;
        double time, length;
        float expected;
    } cases[] = {
        {"inside the period", 0.5, 2.0, 0.5f},  {"start of the second period", 2.0, 2.0, 0.0f},
        {"exact multiple", 4.0, 2.0, 0.0f},     {"third period", 5.5, 2.0, 1.5f},
        {"below zero", -0.5, 2.0, 1.5f},        // -0.5 + (1 - 0) * 2
        {"two periods below", -2.5, 2.0, 1.5f}, // -2.5 + (1 + 1) * 2
        {"no length", 3.0, 0.0, 0.0f},
    };
    for (const auto& c : cases)
        EXPECT_EQ(WrapTime(c.time, c.length), c.expected) << c.what;
}

TEST(WrapTime, QuirkNegativeMultipleGivesTheLength)
{
    EXPECT_EQ(WrapTime(-4.0, 2.0), 2.0f);
}

TEST(WrapTime, KeepsDoublePrecisionUntilTheEnd)
{
    // 100000.1 - 50000 * 2 is 0.1 to within 1e-11; in single precision 100000.1 is 100000.1015625,
    // and the rest would be 0.1015625.
    EXPECT_NEAR(WrapTime(100000.1, 2.0), 0.1f, 1e-6f);
}

TEST(WrapTime, SurvivesTimesThatAreNotNumbers)
{
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_TRUE(std::isnan(WrapTime(std::numeric_limits<double>::quiet_NaN(), 2.0)));
    EXPECT_TRUE(std::isnan(WrapTime(infinity, 2.0)));
}
