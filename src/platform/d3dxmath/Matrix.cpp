// Matrices: products, inverses and simple transforms. Row vectors, so translation is in row 4.

#include <d3dx9.h>

namespace {

/// Cofactors of a 4x4 matrix from the 2x2 determinants of its upper and its lower two rows
/// (Laplace's expansion by complementary minors).
struct PairMinors {
    float upper[6];
    float lower[6];
};

constexpr int kPairs[6][2] = {{0, 1}, {0, 2}, {0, 3}, {1, 2}, {1, 3}, {2, 3}};

PairMinors MakePairMinors(const D3DXMATRIX& matrix)
{
    PairMinors minors;
    for (int i = 0; i < 6; ++i) {
        const int a = kPairs[i][0];
        const int b = kPairs[i][1];
        minors.upper[i] = matrix.m[0][a] * matrix.m[1][b] - matrix.m[0][b] * matrix.m[1][a];
        minors.lower[i] = matrix.m[2][a] * matrix.m[3][b] - matrix.m[2][b] * matrix.m[3][a];
    }
    return minors;
}

/// The index in `kPairs` of the column pair {b, c} from 0 to 3, b < c.
constexpr int PairIndex(int b, int c)
{
    return b == 0 ? c - 1 : b == 1 ? c + 1 : 5;
}

/// The cofactor of the element in `row` and `column`: its partner row expanded by the minors of the
/// other two rows.
float Cofactor(const D3DXMATRIX& matrix, const PairMinors& minors, int row, int column)
{
    const int partner = row ^ 1;
    const float* pairs = row < 2 ? minors.lower : minors.upper;
    int rest[3];
    for (int c = 0, count = 0; c < 4; ++c)
        if (c != column)
            rest[count++] = c;
    const float* values = matrix.m[partner];
    const float minor = values[rest[0]] * pairs[PairIndex(rest[1], rest[2])] -
                        values[rest[1]] * pairs[PairIndex(rest[0], rest[2])] +
                        values[rest[2]] * pairs[PairIndex(rest[0], rest[1])];
    return (row + column) % 2 == 0 ? minor : -minor;
}

} // namespace

FLOAT WINAPI D3DXMatrixDeterminant(const D3DXMATRIX* matrix)
{
    const PairMinors minors = MakePairMinors(*matrix);
    const float* row = matrix->m[0];
    float determinant = row[0] * Cofactor(*matrix, minors, 0, 0);
    for (int column = 1; column < 4; ++column)
        determinant += row[column] * Cofactor(*matrix, minors, 0, column);
    return determinant;
}

D3DXMATRIX* WINAPI D3DXMatrixInverse(D3DXMATRIX* matrixOut, FLOAT* determinantOut,
                                     const D3DXMATRIX* matrix)
{
    const float determinant = D3DXMatrixDeterminant(matrix);
    if (determinant == 0)
        return nullptr;

    const PairMinors minors = MakePairMinors(*matrix);
    D3DXMATRIX inverse;
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            inverse.m[column][row] = Cofactor(*matrix, minors, row, column) / determinant;
    *matrixOut = inverse;
    if (determinantOut != nullptr)
        *determinantOut = determinant;
    return matrixOut;
}

D3DXMATRIX* WINAPI D3DXMatrixTranspose(D3DXMATRIX* matrixOut, const D3DXMATRIX* matrix)
{
    const D3DXMATRIX source = *matrix;
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            matrixOut->m[row][column] = source.m[column][row];
    return matrixOut;
}

D3DXMATRIX* WINAPI D3DXMatrixMultiply(D3DXMATRIX* matrixOut, const D3DXMATRIX* first,
                                      const D3DXMATRIX* second)
{
    D3DXMATRIX product;
    for (int row = 0; row < 4; ++row) {
        const float* a = first->m[row];
        for (int column = 0; column < 4; ++column)
            product.m[row][column] = a[0] * second->m[0][column] + a[1] * second->m[1][column] +
                                     a[2] * second->m[2][column] + a[3] * second->m[3][column];
    }
    *matrixOut = product;
    return matrixOut;
}

D3DXMATRIX* WINAPI D3DXMatrixMultiplyTranspose(D3DXMATRIX* matrixOut, const D3DXMATRIX* first,
                                               const D3DXMATRIX* second)
{
    D3DXMatrixMultiply(matrixOut, first, second);
    return D3DXMatrixTranspose(matrixOut, matrixOut);
}

D3DXMATRIX* WINAPI D3DXMatrixTranslation(D3DXMATRIX* matrixOut, FLOAT x, FLOAT y, FLOAT z)
{
    *matrixOut = D3DXMATRIX(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, x, y, z, 1);
    return matrixOut;
}

D3DXMATRIX* WINAPI D3DXMatrixScaling(D3DXMATRIX* matrixOut, FLOAT x, FLOAT y, FLOAT z)
{
    *matrixOut = D3DXMATRIX(x, 0, 0, 0, 0, y, 0, 0, 0, 0, z, 0, 0, 0, 0, 1);
    return matrixOut;
}
