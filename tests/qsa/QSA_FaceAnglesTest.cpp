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

struct Cosines {
    alignas(16) float values[8] = {};
};

float ArcCosineOf(float cosine)
{
    Cosines cosines{{cosine}};
    ArcCosines(cosines.values, 1);
    return cosines.values[0];
}

/// Holds a form against the C library of the host, rounded once, for cosines of all sizes.
void HoldAgainstTheLibrary(ArcCosinesFunction arcCosines)
{
    constexpr uint32_t kAtOnce = 8;
    for (uint32_t bits = 0; bits + kAtOnce * kCosineStep <= kOne; bits += kAtOnce * kCosineStep) {
        Cosines cosines;
        for (uint32_t i = 0; i < kAtOnce; ++i)
            cosines.values[i] =
                std::bit_cast<float>((bits + i * kCosineStep) | (i % 2 == 0 ? kSign : 0));
        const Cosines given = cosines;
        arcCosines(cosines.values, kAtOnce);
        for (uint32_t i = 0; i < kAtOnce; ++i)
            ASSERT_EQ(cosines.values[i], static_cast<float>(std::acos(double{given.values[i]})))
                << given.values[i];
    }
}

/// Some triangles' measures.
struct Measured : QSA_FaceAngles {
    Measured(const float (&a)[3], const float (&b)[3], const float (&c)[3])
    {
        Measure(0, a, b, c);
        Finish(1);
    }
};

} // namespace

TEST(QSA_ArcCosines, AreTheLibrarysForCosinesOfAllSizes)
{
    HoldAgainstTheLibrary(ArcCosines);
}

TEST(QSA_ArcCosines, PlainFormIsTheLibrarysToo)
{
    HoldAgainstTheLibrary(PlainArcCosines);
}

TEST(QSA_ArcCosines, OfTheEndsAndTheMiddle)
{
    EXPECT_EQ(ArcCosineOf(1.0f), 0.0f);
    EXPECT_EQ(ArcCosineOf(-1.0f), 3.14159265358979f);
    EXPECT_EQ(ArcCosineOf(0.0f), 1.57079632679490f);
    EXPECT_EQ(ArcCosineOf(-0.0f), 1.57079632679490f);
    EXPECT_EQ(ArcCosineOf(0.5f), 1.04719755119660f);  // pi / 3
    EXPECT_EQ(ArcCosineOf(-0.5f), 2.09439510239320f); // 2 pi / 3
    EXPECT_TRUE(std::isnan(ArcCosineOf(kNan)));
}

TEST(QSA_ArcCosines, AnyNumberOfThem)
{
    for (size_t number = 0; number <= 8; ++number) {
        Cosines cosines{{0.5f, -0.5f, 0.5f, -0.5f, 0.5f, -0.5f, 0.5f, -0.5f}};
        ArcCosines(cosines.values, number);
        for (size_t i = 0; i < number; ++i)
            EXPECT_EQ(cosines.values[i], i % 2 == 0 ? 1.04719755119660f : 2.09439510239320f)
                << i << " of " << number;
    }
}

// Legs of 3 and 4 along x and y: the angles are a right angle, atan(4 / 3) and atan(3 / 4), and the
// normal is +z, since the corners are counter-clockwise as seen from above.
TEST(QSA_FaceAngles, RightTriangleOfThreeFourFive)
{
    const Measured face({0, 0, 2}, {3, 0, 2}, {0, 4, 2});
    EXPECT_TRUE(face.isFace[0]);
    EXPECT_FLOAT_EQ(face.Angle(0, 0), 1.57079633f);
    EXPECT_FLOAT_EQ(face.Angle(0, 1), 0.92729522f);
    EXPECT_FLOAT_EQ(face.Angle(0, 2), 0.64350111f);
    EXPECT_EQ(face.normal[0][0], 0.0f);
    EXPECT_EQ(face.normal[0][1], 0.0f);
    EXPECT_EQ(face.normal[0][2], 1.0f);
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
        const Measured face(a, b, c);
        ASSERT_TRUE(face.isFace[0]);
        EXPECT_NEAR(face.Angle(0, 0) + face.Angle(0, 1) + face.Angle(0, 2), 3.14159265f, 2e-3f)
            << round;
        float alongAB = 0.0f;
        float alongAC = 0.0f;
        float length = 0.0f;
        for (int i = 0; i < 3; ++i) {
            alongAB += face.normal[0][i] * (b[i] - a[i]);
            alongAC += face.normal[0][i] * (c[i] - a[i]);
            length += face.normal[0][i] * face.normal[0][i];
        }
        EXPECT_NEAR(alongAB, 0.0f, 1e-2f) << round;
        EXPECT_NEAR(alongAC, 0.0f, 1e-2f) << round;
        EXPECT_NEAR(length, 1.0f, 1e-6f) << round;
    }
}

TEST(QSA_FaceAngles, CornersOnALineAreNotAFace)
{
    EXPECT_FALSE(Measured({0, 0, 0}, {1, 1, 1}, {2, 2, 2}).isFace[0]);
    EXPECT_FALSE(Measured({5, 5, 5}, {5, 5, 5}, {5, 5, 5}).isFace[0]);
    EXPECT_FALSE(Measured({0, 0, 0}, {1, 0, 0}, {0, 0, 0}).isFace[0]);
    // So small that the squared length of the product is 0 in float.
    EXPECT_FALSE(Measured({0, 0, 0}, {1e-15f, 0, 0}, {0, 1e-15f, 0}).isFace[0]);
}

TEST(QSA_FaceAngles, NonFiniteCornersGiveNonFiniteResults)
{
    const Measured face({kNan, 0, 0}, {1, 0, 0}, {0, 1, 0});
    EXPECT_TRUE(face.isFace[0]);
    EXPECT_TRUE(std::isnan(face.Angle(0, 0)));
    EXPECT_TRUE(std::isnan(face.normal[0][0]));
}

// Each of many triangles in a row is a right triangle with legs of its own, or none at all.
TEST(QSA_FaceAngles, TrianglesOfARowAreMeasuredForThemselves)
{
    QSA_FaceAngles row;
    for (int round = 0; round < 2; ++round) {
        for (size_t i = 0; i < QSA_FaceAngles::kMost; ++i) {
            const float leg = static_cast<float>(i % 5) * static_cast<float>(round + 1);
            row.Measure(i, {0, 0, 0}, {1, 0, 0}, {0, leg, 0});
        }
        row.Finish(QSA_FaceAngles::kMost);
        for (size_t i = 0; i < QSA_FaceAngles::kMost; ++i) {
            const double leg = static_cast<double>(i % 5) * (round + 1);
            ASSERT_EQ(row.isFace[i], i % 5 != 0) << i;
            if (i % 5 == 0)
                continue;
            EXPECT_FLOAT_EQ(row.Angle(i, 0), 1.57079633f) << i;
            EXPECT_NEAR(row.Angle(i, 1), std::atan(leg), 1e-6) << i;
            EXPECT_NEAR(row.Angle(i, 2), std::atan(1 / leg), 1e-6) << i;
        }
    }
}
