#include "platform/headless/d3d9/VertexTransform.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace headless {

namespace {

/// The row vector times the matrix.
void Multiply(const float (&v)[4], const D3DMATRIX& m, float (&out)[4])
{
    for (int i = 0; i < 4; ++i)
        out[i] = v[0] * m.m[0][i] + v[1] * m.m[1][i] + v[2] * m.m[2][i] + v[3] * m.m[3][i];
}

float Cofactor(const D3DMATRIX& m, int row, int column)
{
    const int r1 = (row + 1) % 3, r2 = (row + 2) % 3;
    const int c1 = (column + 1) % 3, c2 = (column + 2) % 3;
    return m.m[r1][c1] * m.m[r2][c2] - m.m[r1][c2] * m.m[r2][c1];
}

/// The inverse of the upper 3 x 3, transposed: its cofactors over its determinant. A singular
/// matrix has no inverse, but its cofactors at least give the right direction.
void MakeNormalMatrix(const D3DMATRIX& m, float (&out)[3][3])
{
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            out[row][column] = Cofactor(m, row, column);
    const float determinant = m._11 * out[0][0] + m._12 * out[0][1] + m._13 * out[0][2];
    const float scale = determinant != 0.0f ? 1.0f / determinant : 1.0f;
    for (auto& row : out)
        for (float& element : row)
            element *= scale;
}

/// Number of weights for each value of D3DRS_VERTEXBLEND; one more matrix than that is blended.
int BlendWeights(DWORD blend)
{
    return blend <= D3DVBF_3WEIGHTS ? static_cast<int>(blend) : 0;
}

} // namespace

void VertexTransform::Prepare(const DrawState& drawState, const VertexLayout& layout)
{
    state = &drawState;
    const DWORD blend = drawState.Render(D3DRS_VERTEXBLEND);
    isBlended = blend != D3DVBF_DISABLE;
    isIndexed = isBlended && drawState.Render(D3DRS_INDEXEDVERTEXBLENDENABLE) != 0;
    weightCount = std::min(BlendWeights(blend), layout.weightCount);
    hasNormal = layout.normal >= 0;
    normalises = drawState.Render(D3DRS_NORMALIZENORMALS) != 0;
    made.reset();
}

const VertexTransform::Pair& VertexTransform::Matrix(UINT index)
{
    Pair& pair = pairs[index];
    if (!made[index]) {
        pair.position = MultiplyMatrices(state->world[index], state->view);
        MakeNormalMatrix(pair.position, pair.normal);
        made[index] = true;
    }
    return pair;
}

void VertexTransform::ToCamera(const SourceVertex& source, CameraVertex& vertexOut)
{
    vertexOut = {};
    float left = 1.0f;
    for (int i = 0; i <= weightCount; ++i) {
        const float weight = i < weightCount ? source.weights[i] : left;
        left -= weight;
        const Pair& pair = Matrix(isIndexed ? source.indices[i] : static_cast<UINT>(i));
        float moved[4];
        Multiply(source.position, pair.position, moved);
        for (int axis = 0; axis < 4; ++axis)
            vertexOut.position[axis] += moved[axis] * weight;
        if (!hasNormal)
            continue;
        const float* n = source.normal;
        const auto turned = [&](int c) {
            return n[0] * pair.normal[0][c] + n[1] * pair.normal[1][c] + n[2] * pair.normal[2][c];
        };
        vertexOut.normal = vertexOut.normal + Vector3{turned(0), turned(1), turned(2)} * weight;
    }
    if (normalises)
        vertexOut.normal = Normalised(vertexOut.normal);
}

void VertexTransform::ToClip(const CameraVertex& vertex, float (&clipOut)[4]) const
{
    Multiply(vertex.position, state->projection, clipOut);
}

/// Gauss-Jordan elimination with the largest pivot of each column.
bool InvertMatrix(const D3DMATRIX& matrix, D3DMATRIX& inverseOut)
{
    double rows[4][8] = {};
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column)
            rows[row][column] = static_cast<double>(matrix.m[row][column]);
        rows[row][4 + row] = 1.0;
    }
    for (int column = 0; column < 4; ++column) {
        int pivot = column;
        for (int row = column + 1; row < 4; ++row)
            if (std::fabs(rows[row][column]) > std::fabs(rows[pivot][column]))
                pivot = row;
        if (!(std::fabs(rows[pivot][column]) > 0.0)) // also true for NaN
            return false;
        std::swap(rows[pivot], rows[column]);
        const double scale = 1.0 / rows[column][column];
        for (double& element : rows[column])
            element *= scale;
        for (int row = 0; row < 4; ++row) {
            const double share = row == column ? 0.0 : rows[row][column];
            for (int i = 0; i < 8; ++i)
                rows[row][i] -= share * rows[column][i];
        }
    }
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            inverseOut.m[row][column] = static_cast<float>(rows[row][4 + column]);
    return true;
}

} // namespace headless
