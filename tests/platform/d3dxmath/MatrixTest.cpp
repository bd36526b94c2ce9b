#include "tests/platform/d3dxmath/MathExpectations.h"

#include <limits>

namespace {

/// Row t is (1, t, t^2, t^3) for t = 1 to 4. The determinant is the product of the differences,
/// 1 * 2 * 3 * 1 * 2 * 1 = 12.
D3DXMATRIX Vandermonde()
{
    return {1, 1, 1, 1, 1, 2, 4, 8, 1, 3, 9, 27, 1, 4, 16, 64};
}

/// Column t holds the coefficients, lowest first, of the cubic that is 1 at t and 0 at the other
/// three; so row t of the matrix above times it is 1, and the other rows times it are 0.
///   t = 1: (x - 2)(x - 3)(x - 4) / -6 = (x^3 - 9x^2 + 26x - 24) / -6
///   t = 2: (x - 1)(x - 3)(x - 4) /  2 = (x^3 - 8x^2 + 19x - 12) / 2
///   t = 3: (x - 1)(x - 2)(x - 4) / -2 = (x^3 - 7x^2 + 14x - 8) / -2
///   t = 4: (x - 1)(x - 2)(x - 3) /  6 = (x^3 - 6x^2 + 11x - 6) / 6
D3DXMATRIX VandermondeInverse()
{
    return {4,    -6, 4,    -1, -26 / 6.0f, 9.5f, -7,    11 / 6.0f,
            1.5f, -4, 3.5f, -1, -1 / 6.0f,  0.5f, -0.5f, 1 / 6.0f};
}

} // namespace

TEST(D3DXMatrixMultiply, AppliesTheFirstFactorFirst)
{
    D3DXMATRIX scaling, translation, product;
    D3DXMatrixScaling(&scaling, 2, 3, 4);
    D3DXMatrixTranslation(&translation, 10, 20, 30);

    D3DXMatrixMultiply(&product, &scaling, &translation);
    EXPECT_TRUE(product == D3DXMATRIX(2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 4, 0, 10, 20, 30, 1));
    EXPECT_TRUE(scaling * translation == product);

    D3DXMatrixMultiply(&product, &translation, &scaling);
    EXPECT_TRUE(product == D3DXMATRIX(2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 4, 0, 20, 60, 120, 1));
}

TEST(D3DXMatrixMultiply, SumsRowTimesColumnInOrder)
{
    // In this order the sum is ((1e8 + 1) - 1e8) + 1 = 1, as 1e8 + 1 rounds to 1e8; any order that
    // adds the large numbers first gives 2.
    D3DXMATRIX row, column;
    D3DXMatrixIdentity(&row);
    D3DXMatrixIdentity(&column);
    const float values[] = {1e8f, 1, -1e8f, 1};
    for (int i = 0; i < 4; ++i) {
        row.m[0][i] = values[i];
        column.m[i][0] = 1;
    }
    EXPECT_EQ((row * column)._11, 1.0f);
}

TEST(D3DXMatrixMultiply, MayOverwriteEitherFactor)
{
    const D3DXMATRIX a = Vandermonde();
    const D3DXMATRIX b = VandermondeInverse();
    const D3DXMATRIX product = a * b;
    D3DXMATRIX first = a;
    D3DXMatrixMultiply(&first, &first, &b);
    EXPECT_TRUE(first == product);
    D3DXMATRIX second = b;
    D3DXMatrixMultiply(&second, &a, &second);
    EXPECT_TRUE(second == product);
}

TEST(D3DXMatrixMultiplyTranspose, TransposesTheProduct)
{
    const D3DXMATRIX a = Vandermonde();
    D3DXMATRIX shift, product;
    D3DXMatrixTranslation(&shift, 1, 0, 0);
    // a * shift adds column 4 to column 1; transposed, row 4 is added to row 1.
    D3DXMatrixMultiplyTranspose(&product, &a, &shift);
    EXPECT_TRUE(product == D3DXMATRIX(2, 9, 28, 65, 1, 2, 3, 4, 1, 4, 9, 16, 1, 8, 27, 64));
}

TEST(D3DXMatrixTranspose, MayOverwriteItsInput)
{
    D3DXMATRIX matrix = Vandermonde();
    D3DXMatrixTranspose(&matrix, &matrix);
    EXPECT_TRUE(matrix == D3DXMATRIX(1, 1, 1, 1, 1, 2, 3, 4, 1, 4, 9, 16, 1, 8, 27, 64));
}

TEST(D3DXMatrixDeterminant, IsExactForSmallIntegers)
{
    D3DXMATRIX matrix = Vandermonde();
    EXPECT_EQ(D3DXMatrixDeterminant(&matrix), 12.0f);
    for (float& element : matrix.m[2])
        element = -element; // negating a row changes the sign
    EXPECT_EQ(D3DXMatrixDeterminant(&matrix), -12.0f);
    D3DXMatrixScaling(&matrix, 2, -3, 4);
    EXPECT_EQ(D3DXMatrixDeterminant(&matrix), -24.0f);
}

TEST(D3DXMatrixInverse, DividesTheCofactorsByTheDeterminant)
{
    const D3DXMATRIX matrix = Vandermonde();
    const D3DXMATRIX expected = VandermondeInverse();
    D3DXMATRIX inverse;
    float determinant = 0;
    ASSERT_EQ(D3DXMatrixInverse(&inverse, &determinant, &matrix), &inverse);
    EXPECT_EQ(determinant, 12.0f);
    for (int i = 0; i < 16; ++i)
        EXPECT_FLOAT_EQ((&inverse._11)[i], (&expected._11)[i]) << i;
}

TEST(D3DXMatrixInverse, UndoesScalingAndTranslation)
{
    // x' = 2x + 1, y' = 4y + 2, z' = 8z + 3, so x = x' / 2 - 1 / 2, y = y' / 4 - 2 / 4 and so on.
    const D3DXMATRIX matrix(2, 0, 0, 0, 0, 4, 0, 0, 0, 0, 8, 0, 1, 2, 3, 1);
    D3DXMATRIX inverse;
    D3DXMatrixInverse(&inverse, nullptr, &matrix);
    ExpectNear(inverse, {0.5f, 0, 0, 0, 0, 0.25f, 0, 0, 0, 0, 0.125f, 0, -0.5f, -0.5f, -0.375f, 1},
               0);
}

TEST(D3DXMatrixInverse, MayOverwriteItsInput)
{
    D3DXMATRIX matrix;
    D3DXMatrixTranslation(&matrix, 1, 2, 3);
    D3DXMatrixInverse(&matrix, nullptr, &matrix);
    ExpectNear(matrix, {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, -1, -2, -3, 1}, 0);
}

TEST(D3DXMatrixInverse, SingularGivesNullAndWritesNothing)
{
    D3DXMATRIX singular;
    D3DXMatrixScaling(&singular, 1, 0, 1);
    D3DXMATRIX inverse = Vandermonde();
    float determinant = 5;
    EXPECT_EQ(D3DXMatrixInverse(&inverse, &determinant, &singular), nullptr);
    EXPECT_TRUE(inverse == Vandermonde());
    EXPECT_EQ(determinant, 5.0f);
}

TEST(D3DXMatrixInverse, NanPassesThrough)
{
    D3DXMATRIX matrix;
    D3DXMatrixScaling(&matrix, std::numeric_limits<float>::quiet_NaN(), 1, 1);
    D3DXMATRIX inverse;
    EXPECT_EQ(D3DXMatrixInverse(&inverse, nullptr, &matrix), &inverse);
    EXPECT_NE(inverse._11, inverse._11);
}
