#include "scene/KRE_KeyMath.h"

#include <cmath>

#include <gmock/gmock.h>

TEST(SegmentRatio, OfASegmentWithoutLengthIsZero)
{
    EXPECT_EQ(SegmentRatio(1.5f, 1.0f, 3.0f), 0.25f);
    EXPECT_EQ(SegmentRatio(2.0f, 2.0f, 2.0f), 0.0f);
}

TEST(EaseRatio, WithoutEaseGivesTheRatio)
{
    for (const float ratio : {0.0f, 0.3f, 0.7f, 1.0f})
        EXPECT_EQ(EaseRatio(ratio, 0, 0), ratio);
}

TEST(EaseRatio, SharesAboveOneAreScaledToOne)
{
    // 0.7 and 0.7 become 0.5 each, so the speed is 1 / (2 - 1) = 1: a parabola r * r / 0.5 up to
    // the middle, and its mirror image from there.
    EXPECT_FLOAT_EQ(EaseRatio(0.25f, 0.7f, 0.7f), 0.125f);
    EXPECT_FLOAT_EQ(EaseRatio(0.5f, 0.7f, 0.7f), 0.5f);
    EXPECT_FLOAT_EQ(EaseRatio(0.75f, 0.7f, 0.7f), 0.875f);
}

TEST(EaseRatio, RunsThroughThreePieces)
{
    // a = 0.25, b = 0.5: f = 1 / 1.25 = 0.8.
    static const struct {
        const char* what;
        float ratio, expected;
    } cases[] = {
        {"start", 0.0f, 0.0f},
        {"ease out of the first key: 0.8 / 0.25 * 0.0625", 0.125f, 0.05f},
        {"steady: 0.8 * (0.75 - 0.25)", 0.375f, 0.4f},
        {"ease into the second key: 1 - 0.8 / 0.5 * 0.0625", 0.75f, 0.9f},
        {"end", 1.0f, 1.0f},
    };
    for (const auto& c : cases)
        EXPECT_NEAR(EaseRatio(c.ratio, 0.25f, 0.5f), c.expected, 1e-6f) << c.what;
}

TEST(EaseRatio, IsContinuousAndEndsAtOne)
{
    for (const float a : {0.0f, 0.1f, 0.5f, 1.0f}) {
        for (const float b : {0.0f, 0.2f, 0.5f, 1.0f}) {
            float last = EaseRatio(0, a, b);
            EXPECT_EQ(last, 0.0f) << a << " " << b;
            for (int i = 1; i <= 1000; ++i) {
                const float now = EaseRatio(static_cast<float>(i) / 1000, a, b);
                EXPECT_LE(last, now + 1e-6f) << a << " " << b << " at " << i;
                EXPECT_LT(now - last, 0.0025f)
                    << a << " " << b << " at " << i; // speed is at most 2
                last = now;
            }
            EXPECT_NEAR(last, 1.0f, 1e-6f) << a << " " << b;
        }
    }
}

TEST(EaseRatio, IsANumberAtTheEndWithoutEase)
{
    EXPECT_EQ(EaseRatio(1, 0.5f, 0), 1.0f);
}

TEST(Slerp, AgreesWithTheArcInDoublePrecision)
{
    const D3DXQUATERNION a(0.5f, 0.5f, 0.5f, 0.5f);
    const D3DXQUATERNION b(0, 0.6f, 0, 0.8f);
    const double angle = std::acos(0.5 * 0.6 + 0.5 * 0.8);
    for (const float t : {-0.5f, 0.0f, 0.25f, 0.9f, 1.0f}) {
        const double from = std::sin((1 - t) * angle) / std::sin(angle);
        const double to = std::sin(t * angle) / std::sin(angle);
        const D3DXQUATERNION q = Slerp(a, b, t);
        EXPECT_NEAR(q.x, from * 0.5, 1e-6) << t;
        EXPECT_NEAR(q.y, from * 0.5 + to * 0.6, 1e-6) << t;
        EXPECT_NEAR(q.z, from * 0.5, 1e-6) << t;
        EXPECT_NEAR(q.w, from * 0.5 + to * 0.8, 1e-6) << t;
    }
}
