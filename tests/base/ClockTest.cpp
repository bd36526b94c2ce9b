#include "base/Clock.h"

#include <chrono>
#include <thread>

#include <gtest/gtest.h>

TEST(Clock, CountsSecondsForwards)
{
    const double start = GetTimeSeconds();
    std::this_thread::sleep_for(std::chrono::milliseconds(60));
    const double elapsed = GetTimeSeconds() - start;
    // The lower bound proves the unit; the upper one is wide, for a machine under load.
    EXPECT_GE(elapsed, 0.050);
    EXPECT_LT(elapsed, 30.0);
}
