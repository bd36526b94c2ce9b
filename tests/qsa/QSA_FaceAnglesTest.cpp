#include "qsa/QSA_FaceAngles.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

#include <gtest/gtest.h>

namespace {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr uint32_t kOne = 0x3F800000; // the bits of 1.0f
constexpr uint32_t kSign = 0x80000000;

/// An ordinary run tests one cosine of this many: a prime, so that all digits occur.
constexpr uint32_t kCosineStep = 1009;

} // namespace

// The reference is the C library of the host, rounded once.
TEST(QSA_FaceAngles, ArcCosineIsTheLibrarysForCosinesOfAllSizes)
{
    for (const uint32_t sign : {0u, kSign}) {
        for (uint32_t bits = 0; bits <= kOne; bits += kCosineStep) {
            const float cosine = std::bit_cast<float>(bits | sign);
            const float expected = static_cast<float>(std::acos(static_cast<double>(cosine)));
            ASSERT_EQ(QuickAcos(cosine), expected) << cosine;
        }
    }
}

TEST(QSA_FaceAngles, ArcCosineOfTheEndsAndTheMiddle)
{
    EXPECT_EQ(QuickAcos(1.0f), 0.0f);
    EXPECT_EQ(QuickAcos(-1.0f), 3.14159265358979f);
    EXPECT_EQ(QuickAcos(0.0f), 1.57079632679490f);
    EXPECT_EQ(QuickAcos(-0.0f), 1.57079632679490f);
    EXPECT_EQ(QuickAcos(0.5f), 1.04719755119660f);  // pi / 3
    EXPECT_EQ(QuickAcos(-0.5f), 2.09439510239320f); // 2 pi / 3
    EXPECT_TRUE(std::isnan(QuickAcos(kNan)));
}

// Legs of 3 and 4 along x and y: the angles are a right angle, atan(4 / 3) and atan(3 / 4), and the
// normal is +z, since the corners are counter-clockwise as seen from above.
TEST(QSA_FaceAngles, RightTriangleOfThreeFourFive)
{
    const QSA_FaceAngles face = MeasureFace({0, 0, 2}, {3, 0, 2}, {0, 4, 2});
    EXPECT_TRUE(face.isFace);
    EXPECT_FLOAT_EQ(face.angle[0], 1.57079633f);
    EXPECT_FLOAT_EQ(face.angle[1], 0.92729522f);
    EXPECT_FLOAT_EQ(face.angle[2], 0.64350111f);
    EXPECT_EQ(face.normal[0], 0.0f);
    EXPECT_EQ(face.normal[1], 0.0f);
    EXPECT_EQ(face.normal[2], 1.0f);
}

// The angles of a triangle add up to half a turn, and the normal is perpendicular to both edges.
TEST(QSA_FaceAngles, AnglesAddUpToHalfATurnAndTheNormalIsPerpendicularToTheEdges)
{
    std::mt19937 random(3);
    const auto number = [&random] {
        return static_cast<float>(random() % 20001) / 100.0f - 100.0f;
    };
    for (int round = 0; round < 1000; ++round) {
        const float a[3] = {number(), number(), number()};
        const float b[3] = {number(), number(), number()};
        const float c[3] = {number(), number(), number()};
        const QSA_FaceAngles face = MeasureFace(a, b, c);
        ASSERT_TRUE(face.isFace);
        EXPECT_NEAR(face.angle[0] + face.angle[1] + face.angle[2], 3.14159265f, 2e-3f) << round;
        float alongAB = 0.0f;
        float alongAC = 0.0f;
        float length = 0.0f;
        for (int i = 0; i < 3; ++i) {
            alongAB += face.normal[i] * (b[i] - a[i]);
            alongAC += face.normal[i] * (c[i] - a[i]);
            length += face.normal[i] * face.normal[i];
        }
        EXPECT_NEAR(alongAB, 0.0f, 1e-2f) << round;
        EXPECT_NEAR(alongAC, 0.0f, 1e-2f) << round;
        EXPECT_NEAR(length, 1.0f, 1e-6f) << round;
    }
}

TEST(QSA_FaceAngles, CornersOnALineAreNotAFace)
{
    EXPECT_FALSE(MeasureFace({0, 0, 0}, {1, 1, 1}, {2, 2, 2}).isFace);
    EXPECT_FALSE(MeasureFace({5, 5, 5}, {5, 5, 5}, {5, 5, 5}).isFace);
    EXPECT_FALSE(MeasureFace({0, 0, 0}, {1, 0, 0}, {0, 0, 0}).isFace);
    // So small that the squared length of the product is 0 in float.
    EXPECT_FALSE(MeasureFace({0, 0, 0}, {1e-15f, 0, 0}, {0, 1e-15f, 0}).isFace);
}

TEST(QSA_FaceAngles, NonFiniteCornersGiveNonFiniteResults)
{
    const QSA_FaceAngles face = MeasureFace({kNan, 0, 0}, {1, 0, 0}, {0, 1, 0});
    EXPECT_TRUE(face.isFace);
    EXPECT_TRUE(std::isnan(face.angle[0]));
    EXPECT_TRUE(std::isnan(face.normal[0]));
}
