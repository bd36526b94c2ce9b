// The records, their operators and the functions defined in the header itself.

#include <cstddef>
#include <d3dx9.h>
#include <gtest/gtest.h>
#include <limits>

static_assert(offsetof(D3DXMATRIX, _41) == 48 && offsetof(D3DXMATRIX, _14) == 12);
static_assert(offsetof(D3DXQUATERNION, w) == 12 && offsetof(D3DXCOLOR, a) == 12);

TEST(D3dxVector, OperatorsWorkOnEachComponent)
{
    const D3DXVECTOR3 a(1, 2, 3);
    const D3DXVECTOR3 b(10, 20, 40);
    EXPECT_TRUE(a + b == D3DXVECTOR3(11, 22, 43));
    EXPECT_TRUE(b - a == D3DXVECTOR3(9, 18, 37));
    EXPECT_TRUE(a * 2 == D3DXVECTOR3(2, 4, 6));
    EXPECT_TRUE(2 * a == D3DXVECTOR3(2, 4, 6));
    EXPECT_TRUE(b / 2 == D3DXVECTOR3(5, 10, 20));
    EXPECT_TRUE(-a == D3DXVECTOR3(-1, -2, -3));
    EXPECT_TRUE(a != b);
    D3DXVECTOR3 c = a;
    c += b;
    c -= a;
    c *= 3;
    c /= 2;
    EXPECT_TRUE(c == D3DXVECTOR3(15, 30, 60));

    EXPECT_TRUE(D3DXVECTOR2(1, 2) + D3DXVECTOR2(3, 5) == D3DXVECTOR2(4, 7));
    EXPECT_TRUE(D3DXVECTOR4(1, 2, 3, 4) * 2 == D3DXVECTOR4(2, 4, 6, 8));
}

// The floats next to 5 / 3 are 5 / 3 - 3.97e-8 and 5 / 3 + 7.95e-8. The quotient is nearer to the
// first. The reciprocal of 3 is 1 / 3 + 9.93e-9, and five times that, 5 / 3 + 4.97e-8, is nearer to
// the second.
constexpr float kFiveThirds = 1.66666662693f;
constexpr float kFiveTimesAThird = 1.66666674614f;

TEST(D3dxVector, DivisionRoundsOnce)
{
    EXPECT_EQ((D3DXVECTOR3(5, 0, 0.0f) / 3).x, kFiveThirds);
    EXPECT_EQ((D3DXVECTOR2(5, 0.0f) / 3).x, kFiveThirds);
    EXPECT_EQ((D3DXVECTOR4(5, 0, 0, 0.0f) / 3).x, kFiveThirds);
}

TEST(D3dxVector, IsReadAsAnArray)
{
    D3DXVECTOR3 vector(1, 2, 3);
    float* values = vector;
    values[2] = 7;
    EXPECT_EQ(vector.z, 7.0f);
    const float from[] = {4, 5, 6};
    EXPECT_TRUE(D3DXVECTOR3(from) == D3DXVECTOR3(4, 5, 6));
}

TEST(D3dxVector, DotLengthAndCross)
{
    const D3DXVECTOR3 a(2, 3, 6);
    const D3DXVECTOR3 b(1, -1, 2);
    EXPECT_EQ(D3DXVec3Dot(&a, &b), 2.0f - 3 + 12);
    EXPECT_EQ(D3DXVec3LengthSq(&a), 49.0f);
    EXPECT_EQ(D3DXVec3Length(&a), 7.0f);
    D3DXVECTOR3 cross;
    D3DXVec3Cross(&cross, &a, &b); // (3*2 - 6*-1, 6*1 - 2*2, 2*-1 - 3*1)
    EXPECT_TRUE(cross == D3DXVECTOR3(12, 2, -5));
    const D3DXVECTOR4 c(1, 2, 4, 10);
    EXPECT_EQ(D3DXVec4Length(&c), 11.0f);
    const D3DXVECTOR2 d(3, 4);
    EXPECT_EQ(D3DXVec2Length(&d), 5.0f);
}

TEST(D3dxVector, CrossMayOverwriteItsInput)
{
    D3DXVECTOR3 a(1, 0, 0);
    const D3DXVECTOR3 b(0, 1, 0);
    D3DXVec3Cross(&a, &a, &b);
    EXPECT_TRUE(a == D3DXVECTOR3(0, 0, 1));
}

TEST(D3dxVector, MinimizeAndMaximizeChooseEachComponent)
{
    const D3DXVECTOR3 a(1, 5, -3);
    const D3DXVECTOR3 b(2, 4, -4);
    D3DXVECTOR3 low, high;
    D3DXVec3Minimize(&low, &a, &b);
    D3DXVec3Maximize(&high, &a, &b);
    EXPECT_TRUE(low == D3DXVECTOR3(1, 4, -4));
    EXPECT_TRUE(high == D3DXVECTOR3(2, 5, -3));
}

TEST(D3dxMatrix, ElementsHaveTheirRowsAndColumns)
{
    const D3DXMATRIX matrix(11, 12, 13, 14, 21, 22, 23, 24, 31, 32, 33, 34, 41, 42, 43, 44);
    EXPECT_EQ(matrix._23, 23.0f);
    EXPECT_EQ(matrix.m[3][0], 41.0f);
    EXPECT_EQ(matrix(0, 3), 14.0f);
    const float* values = matrix;
    EXPECT_EQ(values[6], 23.0f);
}

TEST(D3dxMatrix, SumsAndMultiplesWorkOnEachElement)
{
    D3DXMATRIX one;
    D3DXMatrixIdentity(&one);
    const D3DXMATRIX matrix = (one * 4.0f + one - one * 2.0f) / 2.0f; // (4 + 1 - 2) / 2
    EXPECT_EQ(matrix._11, 1.5f);
    EXPECT_EQ(matrix._44, 1.5f);
    EXPECT_EQ(matrix._12, 0.0f);
    EXPECT_EQ((-matrix)._33, -1.5f);
}

TEST(D3dxMatrix, QuirkDivisionMultipliesByTheReciprocal)
{
    D3DXMATRIX one;
    D3DXMatrixIdentity(&one);
    EXPECT_EQ((one * 5.0f / 3.0f)._11, kFiveTimesAThird);
    EXPECT_EQ((D3DXQUATERNION(5, 0, 0, 0.0f) / 3).x, kFiveTimesAThird);
    EXPECT_EQ((D3DXCOLOR(5.0f, 0.0f, 0.0f, 0.0f) / 3.0f).r, kFiveTimesAThird);
}

TEST(D3dxMatrix, ComparesBits)
{
    D3DXMATRIX a;
    D3DXMatrixIdentity(&a);
    D3DXMATRIX b = a;
    EXPECT_TRUE(a == b);
    b._12 = -0.0f;
    EXPECT_TRUE(a != b);
    a._12 = b._12 = std::numeric_limits<float>::quiet_NaN();
    EXPECT_TRUE(a == b);
}

TEST(D3dxMatrix, IdentityIsKnownByItsValues)
{
    D3DXMATRIX matrix;
    D3DXMatrixIdentity(&matrix);
    matrix._43 = -0.0f;
    EXPECT_TRUE(D3DXMatrixIsIdentity(&matrix));
    matrix._43 = 1e-30f;
    EXPECT_FALSE(D3DXMatrixIsIdentity(&matrix));
}

TEST(D3dxQuaternion, IdentityConjugateAndLength)
{
    D3DXQUATERNION q;
    D3DXQuaternionIdentity(&q);
    EXPECT_TRUE(D3DXQuaternionIsIdentity(&q));
    q = D3DXQUATERNION(1, 2, 4, 10);
    EXPECT_FALSE(D3DXQuaternionIsIdentity(&q));
    EXPECT_EQ(D3DXQuaternionLength(&q), 11.0f);
    D3DXQuaternionConjugate(&q, &q);
    EXPECT_TRUE(q == D3DXQUATERNION(-1, -2, -4, 10));
    const D3DXQUATERNION other(1, 1, 1, 1);
    EXPECT_EQ(D3DXQuaternionDot(&q, &other), 3.0f);
}

TEST(D3dxColor, EveryByteComesBack)
{
    for (DWORD level = 0; level < 256; ++level) {
        const DWORD argb = level << 24 | (255 - level) << 16 | level << 8 | (level ^ 0x55);
        EXPECT_EQ(static_cast<DWORD>(D3DXCOLOR(argb)), argb);
    }
}

TEST(D3dxColor, PartsAreClampedAndRounded)
{
    // 0.5 * 255 + 0.5 = 128; 0.25 * 255 + 0.5 = 64.25, truncated to 64.
    EXPECT_EQ(static_cast<DWORD>(D3DXCOLOR(-1.0f, 2.0f, 0.5f, 0.25f)), 0x4000FF80u);
}

TEST(D3dxColor, OperatorsWorkOnEachPart)
{
    const D3DXCOLOR color = (D3DXCOLOR(1, 2, 3, 4) + D3DXCOLOR(1, 1, 1, 1)) * 2.0f;
    EXPECT_TRUE(color == D3DXCOLOR(4, 6, 8, 10));
}
