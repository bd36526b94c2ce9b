#include "platform/d3dxmath/RoundedFunctions.h"
#include "tests/platform/d3dxmath/MathExpectations.h"

#include <cfenv>
#include <cmath>

namespace {

constexpr double kQuaternionTolerance = 1e-6;

/// The rotation about x by `angle`, computed in double.
D3DXQUATERNION AboutX(double angle)
{
    return {static_cast<float>(std::sin(angle / 2)), 0, 0, static_cast<float>(std::cos(angle / 2))};
}

double Degrees(double degrees)
{
    return degrees * 3.14159265358979323846 / 180;
}

} // namespace

// The hosts agree to the bit only if both round the exact value. A long double has 11 bits more
// than a double, so it decides; near a tie of floats neither would be certain, but no argument here
// is near one.
TEST(RoundedFunctions, AreTheNearestFloats)
{
    // A Direct3D device of an earlier test may have cut the digits of a long double.
    std::fesetenv(FE_DFL_ENV);
    for (int i = -3000; i <= 3000; ++i) {
        const float angle = static_cast<float>(i) * 1.0471e-3f;
        const long double exact = angle;
        ASSERT_EQ(RoundedSin(angle), static_cast<float>(std::sin(exact))) << i;
        ASSERT_EQ(RoundedCos(angle), static_cast<float>(std::cos(exact))) << i;
        ASSERT_EQ(RoundedTan(angle / 2.01f),
                  static_cast<float>(std::tan(static_cast<long double>(angle / 2.01f))))
            << i;
        const float cosine = static_cast<float>(i) / 3000.0f;
        ASSERT_EQ(RoundedAcos(cosine),
                  static_cast<float>(std::acos(static_cast<long double>(cosine))))
            << i;
    }
}

TEST(RoundedFunctions, ArcCosineAcceptsValuesThatRoundingPushedOut)
{
    EXPECT_EQ(RoundedAcos(1.0000001f), 0.0f);
    EXPECT_EQ(RoundedAcos(-1.0000001f), static_cast<float>(Degrees(180)));
}

TEST(D3DXQuaternionMultiply, AppliesTheFirstFactorFirst)
{
    // A quarter turn about x takes y to z, then one about y takes z to x; x goes to -z; z goes to
    // -y in the first turn and stays there. In the other order z would go to x and stay.
    const float s = std::sqrt(0.5f);
    const D3DXQUATERNION aboutX(s, 0, 0, s), aboutY(0, s, 0, s);
    D3DXQUATERNION product;
    D3DXQuaternionMultiply(&product, &aboutX, &aboutY);
    ExpectNear(product, {0.5f, 0.5f, -0.5f, 0.5f}, kQuaternionTolerance);
    D3DXMATRIX matrix;
    D3DXMatrixRotationQuaternion(&matrix, &product);
    ExpectNear(matrix, {0, 0, -1, 0, 1, 0, 0, 0, 0, -1, 0, 0, 0, 0, 0, 1}, kQuaternionTolerance);
    EXPECT_TRUE(aboutX * aboutY == product);
}

TEST(D3DXQuaternionMultiply, MultipliesAsHamiltonSaid)
{
    // second * first in the classic order: (2 + 3i + 4j + 5k)(1 + 6i + 7j + 8k)
    // w = 2 - 18 - 28 - 40, i = 12 + 3 + 32 - 35, j = 14 - 24 + 4 + 30, k = 16 + 21 - 24 + 5.
    const D3DXQUATERNION first(6, 7, 8, 1), second(3, 4, 5, 2);
    D3DXQUATERNION product = first;
    D3DXQuaternionMultiply(&product, &product, &second);
    EXPECT_TRUE(product == D3DXQUATERNION(12, 24, 18, -84));
}

TEST(D3DXQuaternionNormalize, DividesByTheLength)
{
    D3DXQUATERNION q(1, 2, 4, -10);
    D3DXQuaternionNormalize(&q, &q);
    EXPECT_TRUE(q == D3DXQUATERNION(1 / 11.0f, 2 / 11.0f, 4 / 11.0f, -10 / 11.0f));
    D3DXQUATERNION none(0, 0, 0, 0);
    D3DXQuaternionNormalize(&none, &none);
    EXPECT_TRUE(none == D3DXQUATERNION(0, 0, 0, 0));
}

TEST(D3DXQuaternionInverse, IsTheConjugateOverTheSquare)
{
    const D3DXQUATERNION q(0, 0, 3, 4);
    D3DXQUATERNION inverse, product;
    D3DXQuaternionInverse(&inverse, &q);
    EXPECT_TRUE(inverse == D3DXQUATERNION(0, 0, -3 / 25.0f, 4 / 25.0f));
    D3DXQuaternionMultiply(&product, &q, &inverse);
    ExpectNear(product, {0, 0, 0, 1}, kQuaternionTolerance);
}

TEST(D3DXQuaternionRotationAxis, TakesHalfTheAngle)
{
    const D3DXVECTOR3 axis(0, 0, 2);
    D3DXQUATERNION q;
    D3DXQuaternionRotationAxis(&q, &axis, static_cast<float>(Degrees(60)));
    ExpectNear(q, {0, 0, 0.5f, std::sqrt(0.75f)}, kQuaternionTolerance);
}

TEST(D3DXQuaternionRotationAxis, QuirkAxisOfLengthZeroKeepsTheCosine)
{
    const D3DXVECTOR3 none(0, 0, 0);
    D3DXQUATERNION q;
    D3DXQuaternionRotationAxis(&q, &none, 1.0f);
    EXPECT_TRUE(q == D3DXQUATERNION(0, 0, 0, static_cast<float>(std::cos(0.5))));
}

TEST(D3DXQuaternionRotationAxis, TurnsAsTheMatrixDoes)
{
    const D3DXVECTOR3 axis(1, -2, 0.5f);
    for (float angle = -7; angle < 7; angle += 0.37f) {
        D3DXQUATERNION q;
        D3DXMATRIX fromAxis, fromQuaternion;
        D3DXQuaternionRotationAxis(&q, &axis, angle);
        D3DXMatrixRotationQuaternion(&fromQuaternion, &q);
        D3DXMatrixRotationAxis(&fromAxis, &axis, angle);
        ExpectNear(fromQuaternion, fromAxis, kQuaternionTolerance, std::to_string(angle));
    }
}

TEST(D3DXQuaternionRotationMatrix, UndoesTheMatrix)
{
    const float s = std::sqrt(0.5f);
    const struct {
        const char* what;
        D3DXQUATERNION q;
    } cases[] = {
        {"none", {0, 0, 0, 1}},
        {"quarter about x", {s, 0, 0, s}},
        {"backwards about y", {0, -s, 0, s}},
        {"half about x", {1, 0, 0, 0}},
        {"half about y", {0, 1, 0, 0}},
        {"half about z", {0, 0, 1, 0}},
        {"third about the diagonal", {0.5f, 0.5f, 0.5f, 0.5f}},
        {"x largest, w small", {0.8f, 0.4f, -0.4f, 0.2f}},
        {"y largest, w small", {0.4f, 0.8f, -0.4f, 0.2f}},
        {"z largest, w negative", {-0.4f, 0.4f, 0.8f, -0.2f}},
    };
    for (const auto& c : cases) {
        D3DXMATRIX matrix;
        D3DXQUATERNION q;
        D3DXMatrixRotationQuaternion(&matrix, &c.q);
        D3DXQuaternionRotationMatrix(&q, &matrix);
        const float sign = D3DXQuaternionDot(&q, &c.q) < 0 ? -1.0f : 1.0f; // -q rotates like q
        ExpectNear(q * sign, c.q, kQuaternionTolerance, c.what);
    }
}

TEST(D3DXQuaternionRotationYawPitchRoll, RollsPitchesAndYaws)
{
    const D3DXVECTOR3 x(1, 0, 0), y(0, 1, 0), z(0, 0, 1);
    D3DXQUATERNION q, roll, pitch, yaw;
    D3DXQuaternionRotationYawPitchRoll(&q, 0.3f, -0.8f, 2.0f);
    D3DXQuaternionRotationAxis(&roll, &z, 2.0f);
    D3DXQuaternionRotationAxis(&pitch, &x, -0.8f);
    D3DXQuaternionRotationAxis(&yaw, &y, 0.3f);
    ExpectNear(q, roll * pitch * yaw, kQuaternionTolerance);
}

TEST(D3DXQuaternionSlerp, GoesAlongTheArcAtAnEvenSpeed)
{
    static const struct {
        const char* what;
        double from, to;
        float t;
        double expected;
    } cases[] = {
        {"begin", 10, 100, 0, 10},
        {"end", 10, 100, 1, 100},
        {"third", 10, 100, 1 / 3.0f, 40},
        {"beyond the end", 10, 100, 1.5f, 145},
        {"before the begin", 10, 100, -1 / 3.0f, -20},
        {"backwards", 100, 10, 0.5f, 55},
    };
    for (const auto& c : cases) {
        const D3DXQUATERNION from = AboutX(Degrees(c.from)), to = AboutX(Degrees(c.to));
        D3DXQUATERNION q;
        D3DXQuaternionSlerp(&q, &from, &to, c.t);
        ExpectNear(q, AboutX(Degrees(c.expected)), kQuaternionTolerance, c.what);
    }
}

TEST(D3DXQuaternionSlerp, TakesTheShorterArc)
{
    // Forward 280 degrees is backward 80 degrees; half of that gives 10 - 40 degrees.
    const D3DXQUATERNION from = AboutX(Degrees(10)), to = AboutX(Degrees(290));
    D3DXQUATERNION q;
    D3DXQuaternionSlerp(&q, &from, &to, 0.5f);
    ExpectNear(q, AboutX(Degrees(-30)), kQuaternionTolerance);
}

TEST(D3DXQuaternionSlerp, QuirkEndOfATurnedArcIsTheNegativeTarget)
{
    const D3DXQUATERNION from = AboutX(Degrees(10)), to = AboutX(Degrees(290));
    D3DXQUATERNION q;
    D3DXQuaternionSlerp(&q, &from, &to, 1);
    ExpectNear(q, -to, kQuaternionTolerance);
}

TEST(D3DXQuaternionSlerp, QuirkNearbyOrientationsTakeTheChord)
{
    // Halfway between unit quaternions with dot product c the chord has length sqrt((1 + c) / 2),
    // the arc 1. The limit is c = 0.999, a rotation of 5.13 degrees.
    static const struct {
        const char* what;
        double degrees;
        bool isChord;
    } cases[] = {{"5 degrees", 5.0, true}, {"5.2 degrees", 5.2, false}, {"none", 0, true}};
    for (const auto& c : cases) {
        const D3DXQUATERNION from = AboutX(0), to = AboutX(Degrees(c.degrees));
        D3DXQUATERNION q;
        D3DXQuaternionSlerp(&q, &from, &to, 0.5f);
        const double cosine = std::cos(Degrees(c.degrees) / 2);
        const double expected = c.isChord ? std::sqrt((1 + cosine) / 2) : 1.0;
        EXPECT_NEAR(D3DXQuaternionLength(&q), expected, 2e-7) << c.what;
    }
}

TEST(D3DXQuaternionSlerp, OppositeSignsOfOneOrientationKeepIt)
{
    const D3DXQUATERNION from = AboutX(Degrees(50)), to = -from;
    D3DXQUATERNION q;
    D3DXQuaternionSlerp(&q, &from, &to, 0.25f);
    ExpectNear(q, from, kQuaternionTolerance);
}

TEST(D3DXQuaternionSlerp, MayOverwriteItsInput)
{
    D3DXQUATERNION q = AboutX(0);
    const D3DXQUATERNION to = AboutX(Degrees(90));
    D3DXQuaternionSlerp(&q, &q, &to, 0.5f);
    ExpectNear(q, AboutX(Degrees(45)), kQuaternionTolerance);
}

TEST(D3DXQuaternionToAxisAngle, GivesTheVectorAndTheWholeAngle)
{
    const D3DXQUATERNION q(0, std::sqrt(0.75f), 0, 0.5f);
    D3DXVECTOR3 axis;
    float angle;
    D3DXQuaternionToAxisAngle(&q, &axis, &angle);
    EXPECT_TRUE(axis == D3DXVECTOR3(0, std::sqrt(0.75f), 0)); // sine of 60 degrees long
    EXPECT_NEAR(angle, Degrees(120), kQuaternionTolerance);
}
