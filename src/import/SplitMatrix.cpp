#include <cmath>

#include "import/GltfReader.h"

namespace {

double RowLength(const ModelMatrix& m, size_t row)
{
    return std::hypot(m[row * 4], m[row * 4 + 1], m[row * 4 + 2]);
}

double Determinant(const ModelMatrix& m)
{
    return m[0] * (m[5] * m[10] - m[6] * m[9]) - m[1] * (m[4] * m[10] - m[6] * m[8]) +
           m[2] * (m[4] * m[9] - m[5] * m[8]);
}

/// The quaternion of a matrix whose rows are of length 1 and at right angles.
ModelQuaternion QuaternionOf(const double (&r)[3][3])
{
    const double trace = r[0][0] + r[1][1] + r[2][2];
    if (trace > 0) {
        const double s = 2 * std::sqrt(trace + 1);
        return {(r[1][2] - r[2][1]) / s, (r[2][0] - r[0][2]) / s, (r[0][1] - r[1][0]) / s, s / 4};
    }
    const size_t i = r[1][1] > r[0][0] ? (r[2][2] > r[1][1] ? 2 : 1) : r[2][2] > r[0][0] ? 2 : 0;
    const size_t j = (i + 1) % 3;
    const size_t k = (i + 2) % 3;
    const double s = 2 * std::sqrt(std::max(0.0, 1 + r[i][i] - r[j][j] - r[k][k]));
    ModelQuaternion q;
    q[i] = s / 4;
    q[j] = (r[i][j] + r[j][i]) / s;
    q[k] = (r[i][k] + r[k][i]) / s;
    q[3] = (r[j][k] - r[k][j]) / s;
    return q;
}

/// The first row as it is, the second at a right angle to it, the third across both.
void MakeRightAngles(double (&r)[3][3])
{
    const auto normalize = [](double(&row)[3]) {
        const double length = std::hypot(row[0], row[1], row[2]);
        for (double& part : row)
            part = length > 1e-12 ? part / length : 0;
        return length > 1e-12;
    };
    if (!normalize(r[0]))
        r[0][0] = 1;
    const double along = r[0][0] * r[1][0] + r[0][1] * r[1][1] + r[0][2] * r[1][2];
    for (size_t i = 0; i < 3; ++i)
        r[1][i] -= along * r[0][i];
    if (!normalize(r[1])) {
        const size_t least = std::fabs(r[0][0]) < 0.6 ? 0 : 1;
        for (size_t i = 0; i < 3; ++i)
            r[1][i] = (i == least ? 1.0 : 0.0) - r[0][least] * r[0][i];
        normalize(r[1]);
    }
    r[2][0] = r[0][1] * r[1][2] - r[0][2] * r[1][1];
    r[2][1] = r[0][2] * r[1][0] - r[0][0] * r[1][2];
    r[2][2] = r[0][0] * r[1][1] - r[0][1] * r[1][0];
}

} // namespace

void SplitMatrix(const ModelMatrix& matrix, ModelVector& position, ModelQuaternion& rotation,
                 ModelVector& scale, bool& sheared)
{
    position = {matrix[12], matrix[13], matrix[14]};
    const double sign = Determinant(matrix) < 0 ? -1 : 1;
    double r[3][3];
    double size = 0;
    for (size_t row = 0; row < 3; ++row) {
        scale[row] = RowLength(matrix, row) * (row == 2 ? sign : 1);
        size = std::max(size, std::fabs(scale[row]));
        for (size_t column = 0; column < 3; ++column)
            r[row][column] = matrix[row * 4 + column];
    }
    MakeRightAngles(r);
    rotation = QuaternionOf(r);
    double worst = 0;
    for (size_t row = 0; row < 3; ++row) {
        for (size_t column = 0; column < 3; ++column)
            worst =
                std::max(worst, std::fabs(r[row][column] * scale[row] - matrix[row * 4 + column]));
    }
    sheared = worst > 1e-4 * size;
}
