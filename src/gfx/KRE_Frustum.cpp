#include "gfx/KRE_Frustum.h"

#include <cmath>

namespace {

/// Column of the product of two matrices.
void ProductColumn(const D3DXMATRIX& a, const D3DXMATRIX& b, int column, double (&columnOut)[4])
{
    for (int row = 0; row < 4; ++row) {
        columnOut[row] = 0.0;
        for (int i = 0; i < 4; ++i)
            columnOut[row] += double{a.m[row][i]} * b.m[i][column];
    }
}

} // namespace

/// A point is inside if its clip-space position (x, y, z, w) satisfies -w <= x <= w, -w <= y <= w
/// and 0 <= z <= w. Each inequality is linear in the world-space point, so it is a plane in world
/// space, whose coefficients are a sum of columns of the matrix.
void KRE_Frustum::Update(const D3DXMATRIX& view, const D3DXMATRIX& projection)
{
    if (hasPlanes && view == ofView && projection == ofProjection)
        return;
    hasPlanes = true;
    ofView = view;
    ofProjection = projection;

    static constexpr struct {
        int column;
        double sign;
        double wFactor;
    } kSides[kPlanes] = {{0, -1, -1}, {0, 1, -1}, {1, -1, -1}, {1, 1, -1}, {2, -1, 0}, {2, 1, -1}};
    double w[4];
    ProductColumn(view, projection, 3, w);
    for (int i = 0; i < kPlanes; ++i) {
        double side[4];
        ProductColumn(view, projection, kSides[i].column, side);
        for (int row = 0; row < 4; ++row)
            side[row] = kSides[i].sign * side[row] + kSides[i].wFactor * w[row];
        const double length = std::hypot(side[0], side[1], side[2]);
        const double scale = length > 0.0 ? 1.0 / length : 0.0;
        planes[i] = {{side[0] * scale, side[1] * scale, side[2] * scale}, side[3] * scale};
    }
}
