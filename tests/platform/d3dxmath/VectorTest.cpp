#include "tests/platform/d3dxmath/MathExpectations.h"

#include <cmath>
#include <limits>

namespace {

/// Adds x to y and z to x, and translates by (10, 20, 30); column 4 gives w = 2z + 1.
const D3DXMATRIX kShear(1, 1, 0, 0, 0, 1, 0, 0, 1, 0, 1, 2, 10, 20, 30, 1);

} // namespace

TEST(D3DXVecNormalize, DividesByTheLength)
{
    const D3DXVECTOR3 three(2, -3, 6);
    D3DXVECTOR3 unit3;
    D3DXVec3Normalize(&unit3, &three);
    EXPECT_TRUE(unit3 == D3DXVECTOR3(2 / 7.0f, -3 / 7.0f, 6 / 7.0f));

    const D3DXVECTOR2 two(3, -4);
    D3DXVECTOR2 unit2;
    D3DXVec2Normalize(&unit2, &two);
    EXPECT_TRUE(unit2 == D3DXVECTOR2(3 / 5.0f, -4 / 5.0f));

    const D3DXVECTOR4 four(1, 2, 4, -10);
    D3DXVECTOR4 unit4;
    D3DXVec4Normalize(&unit4, &four);
    EXPECT_TRUE(unit4 == D3DXVECTOR4(1 / 11.0f, 2 / 11.0f, 4 / 11.0f, -10 / 11.0f));
}

TEST(D3DXVecNormalize, ZeroStaysZero)
{
    D3DXVECTOR2 two(0, 0);
    D3DXVECTOR3 three(0, -0.0f, 0);
    D3DXVECTOR4 four(0, 0, 0, 0);
    EXPECT_TRUE(*D3DXVec2Normalize(&two, &two) == D3DXVECTOR2(0, 0));
    EXPECT_TRUE(*D3DXVec3Normalize(&three, &three) == D3DXVECTOR3(0, 0, 0));
    EXPECT_TRUE(*D3DXVec4Normalize(&four, &four) == D3DXVECTOR4(0, 0, 0, 0));
}

TEST(D3DXVecNormalize, QuirkVectorWhoseSquareVanishesBecomesZero)
{
    D3DXVECTOR3 tiny(1e-30f, 0, 0); // the square, 1e-60, underflows
    EXPECT_TRUE(*D3DXVec3Normalize(&tiny, &tiny) == D3DXVECTOR3(0, 0, 0));
}

TEST(D3DXVec3Transform, AddsTheTranslationAndKeepsW)
{
    const D3DXVECTOR3 point(1, 2, 3); // x = 1 + 3 + 10, y = 1 + 2 + 20, z = 3 + 30, w = 6 + 1
    D3DXVECTOR4 result;
    D3DXVec3Transform(&result, &point, &kShear);
    EXPECT_TRUE(result == D3DXVECTOR4(14, 23, 33, 7));
}

TEST(D3DXVec4Transform, ScalesTheTranslationByW)
{
    D3DXVECTOR4 point(1, 2, 3, 2); // x = 4 + 20, y = 3 + 40, z = 3 + 60, w = 6 + 2
    D3DXVec4Transform(&point, &point, &kShear);
    EXPECT_TRUE(point == D3DXVECTOR4(24, 43, 63, 8));
}

TEST(D3DXVec3TransformCoord, DividesByW)
{
    D3DXVECTOR3 point(1, 2, 3);
    D3DXVec3TransformCoord(&point, &point, &kShear);
    EXPECT_TRUE(point == D3DXVECTOR3(14 / 7.0f, 23 / 7.0f, 33 / 7.0f));
    D3DXVECTOR2 flat(1, 2); // z = 0, so w = 1
    D3DXVec2TransformCoord(&flat, &flat, &kShear);
    EXPECT_TRUE(flat == D3DXVECTOR2(11, 23));
}

TEST(D3DXVec3TransformCoord, QuirkNothingGuardsAgainstWZero)
{
    D3DXVECTOR3 point(0, 0, -0.5f);
    D3DXVec3TransformCoord(&point, &point, &kShear);
    EXPECT_EQ(point.x, std::numeric_limits<float>::infinity());
}

TEST(D3DXVec3TransformNormal, LeavesTheTranslationOut)
{
    D3DXVECTOR3 direction(1, 2, 3);
    D3DXVec3TransformNormal(&direction, &direction, &kShear);
    EXPECT_TRUE(direction == D3DXVECTOR3(4, 3, 3));
    D3DXVECTOR2 flat(1, 2);
    D3DXVec2TransformNormal(&flat, &flat, &kShear);
    EXPECT_TRUE(flat == D3DXVECTOR2(1, 3));
}

TEST(D3DXPlane, FromPointsFacesWhereTheyRunClockwise)
{
    // Seen from z = 0 with y up, the corners go up and then down to the right.
    const D3DXVECTOR3 a(0, 0, 2), b(0, 3, 2), c(5, 0, 2);
    D3DXPLANE plane;
    D3DXPlaneFromPoints(&plane, &a, &b, &c);
    EXPECT_TRUE(plane == D3DXPLANE(0, 0, -1, 2));
}

TEST(D3DXPlane, FromPointNormalKeepsTheLength)
{
    const D3DXVECTOR3 point(1, 2, 3), normal(2, 0, 1);
    D3DXPLANE plane;
    D3DXPlaneFromPointNormal(&plane, &point, &normal);
    EXPECT_TRUE(plane == D3DXPLANE(2, 0, 1, -5));
}

TEST(D3DXPlane, NormalizeDividesAllFourByTheNormalsLength)
{
    D3DXPLANE plane(2, -3, 6, 21);
    D3DXPlaneNormalize(&plane, &plane);
    EXPECT_TRUE(plane == D3DXPLANE(2 / 7.0f, -3 / 7.0f, 6 / 7.0f, 3));
    D3DXPLANE none(0, 0, 0, 5);
    D3DXPlaneNormalize(&none, &none);
    EXPECT_TRUE(none == D3DXPLANE(0, 0, 0, 0));
}
