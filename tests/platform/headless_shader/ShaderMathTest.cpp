#include "platform/headless/shader/ShaderMath.h"
#include "tests/platform/headless_shader/ShaderRun.h"

#include <cmath>
#include <gtest/gtest.h>

namespace headless::shader {

namespace {

const double kBound21 = std::ldexp(1.0, -21);
const double kBound20 = std::ldexp(1.0, -20);

template <typename Function>
float One(Function function, float value)
{
    return FirstLane(function(Splat(value)));
}

/// The largest error over many numbers, relative to the true value where that is above 1.
template <typename Function, typename Truth>
double WorstError(Function function, Truth truth, float from, float to, int count, bool isRelative)
{
    double worst = 0.0;
    for (int i = 0; i <= count; ++i) {
        const double share = static_cast<double>(i) / count;
        const auto x = static_cast<float>(from + (static_cast<double>(to) - from) * share);
        const double expected = truth(static_cast<double>(x));
        const double error = std::fabs(static_cast<double>(One(function, x)) - expected);
        worst = std::max(
            worst, error / (isRelative ? std::fabs(expected) : std::max(1.0, std::fabs(expected))));
    }
    return worst;
}

float Sine(float angle)
{
    Lanes sine, cosine;
    SinCos(Splat(angle), sine, cosine);
    return FirstLane(sine);
}

float Cosine(float angle)
{
    Lanes sine, cosine;
    SinCos(Splat(angle), sine, cosine);
    return FirstLane(cosine);
}

} // namespace

TEST(ShaderMath, ReciprocalsAreExactToTheBound)
{
    const auto rcp = [](double x) { return 1.0 / x; };
    const auto rsq = [](double x) { return 1.0 / std::sqrt(std::fabs(x)); };
    EXPECT_LT(WorstError(Reciprocal, rcp, 0.001f, 50.0f, 40000, true), kBound21);
    EXPECT_LT(WorstError(ReciprocalRoot, rsq, 0.001f, 50.0f, 40000, true), kBound21);
    EXPECT_LT(WorstError(ReciprocalRoot, rsq, -1e6f, -10.0f, 40000, true), kBound21);
    EXPECT_EQ(One(Reciprocal, 1.0f), 1.0f);
    EXPECT_EQ(One(Reciprocal, 0.0f), kInfinity);
    EXPECT_EQ(One(ReciprocalRoot, 0.0f), kInfinity);
    EXPECT_EQ(One(ReciprocalRoot, -4.0f), 0.5f);
}

TEST(ShaderMath, PowersOfTwoAreExactToTheBound)
{
    const auto exp2 = [](double x) { return std::exp2(x); };
    EXPECT_LT(WorstError(Exp2, exp2, -126.0f, 127.9f, 200000, true), kBound21);
    EXPECT_LT(WorstError(Exp2, exp2, -1.0f, 1.0f, 200000, true), kBound21);
    for (int power = -126; power < 128; ++power)
        EXPECT_EQ(One(Exp2, static_cast<float>(power)), std::ldexp(1.0f, power)) << power;
    EXPECT_EQ(One(Exp2, 128.0f), kInfinity);
    EXPECT_EQ(One(Exp2, kInfinity), kInfinity);
    EXPECT_EQ(One(Exp2, -127.0f), 0.0f);
    EXPECT_EQ(One(Exp2, -kInfinity), 0.0f);
    EXPECT_TRUE(std::isnan(One(Exp2, std::nanf(""))));
}

TEST(ShaderMath, LogarithmsAreExactToTheBound)
{
    const auto log2 = [](double x) { return std::log2(std::fabs(x)); };
    EXPECT_LT(WorstError(Log2, log2, 1e-6f, 4.0f, 200000, false), kBound21);
    EXPECT_LT(WorstError(Log2, log2, 0.99f, 1.01f, 200000, false), kBound21);
    EXPECT_LT(WorstError(Log2, log2, -1e30f, -1e20f, 20000, false), kBound21);
    for (int power = -126; power < 128; ++power)
        EXPECT_EQ(One(Log2, std::ldexp(1.0f, power)), static_cast<float>(power)) << power;
    EXPECT_EQ(One(Log2, 0.0f), -kInfinity);
    EXPECT_EQ(One(Log2, -0.0f), -kInfinity);
    EXPECT_EQ(One(Log2, kInfinity), kInfinity);
    EXPECT_TRUE(std::isnan(One(Log2, std::nanf(""))));
}

TEST(ShaderMath, SineAndCosineAreExactToTheBound)
{
    for (int i = 0; i <= 400000; ++i) {
        const float angle = static_cast<float>(i - 200000) * (8192.0f / 200000.0f);
        ASSERT_NEAR(Sine(angle), std::sin(static_cast<double>(angle)), kBound20) << angle;
        ASSERT_NEAR(Cosine(angle), std::cos(static_cast<double>(angle)), kBound20) << angle;
    }
    for (int i = 0; i <= 100000; ++i) {
        const float angle = static_cast<float>(i - 50000) * (3.2f / 50000.0f);
        ASSERT_NEAR(Sine(angle), std::sin(static_cast<double>(angle)), kBound20) << angle;
        ASSERT_NEAR(Cosine(angle), std::cos(static_cast<double>(angle)), kBound20) << angle;
    }
    EXPECT_EQ(Sine(0.0f), 0.0f);
    EXPECT_EQ(Cosine(0.0f), 1.0f);
    EXPECT_EQ(Sine(1e9f), 0.0f);
    EXPECT_EQ(Cosine(kInfinity), 1.0f);
}

TEST(ShaderMath, ComparisonsWithNoNumberHoldNowhere)
{
    const Lanes none = Splat(std::nanf(""));
    EXPECT_EQ(LaneBits(IsAtLeast(none, Splat(0.0f))), 0);
    EXPECT_EQ(LaneBits(IsSame(none, none)), 0);
    EXPECT_EQ(LaneBits(IsAtLeast(MakeFloats(1, 2, 3, 4), Splat(3.0f))), 12);
    EXPECT_EQ(LaneBits(IsSame(MakeFloats(1, 2, 3, 4), Splat(3.0f))), 4);
}

} // namespace headless::shader
