#include "tests/platform/d3dxmath/MathExpectations.h"

namespace {

D3DXVECTOR3 Project(const D3DXVECTOR3& point, const D3DXMATRIX& matrix)
{
    D3DXVECTOR3 projected;
    D3DXVec3TransformCoord(&projected, &point, &matrix);
    return projected;
}

} // namespace

TEST(D3DXMatrixLookAtLH, FromTheFrontOnlyMoves)
{
    const D3DXVECTOR3 eye(0, 0, -5), at(0, 0, 0), up(0, 1, 0);
    D3DXMATRIX view;
    D3DXMatrixLookAtLH(&view, &eye, &at, &up);
    ExpectNear(view, {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 5, 1}, 0);
}

TEST(D3DXMatrixLookAtLH, AlongXTurnsTheAxes)
{
    // z' = (1, 0, 0), x' = up x z' = (0, 0, -1), y' = z' x x' = (0, 1, 0); their dot products with
    // the eye are -3, 2 and 1.
    const D3DXVECTOR3 eye(1, 2, 3), at(5, 2, 3), up(0, 4, 0);
    D3DXMATRIX view;
    D3DXMatrixLookAtLH(&view, &eye, &at, &up);
    ExpectNear(view, {0, 0, 1, 0, 0, 1, 0, 0, -1, 0, 0, 0, 3, -2, -1, 1}, 0);
}

TEST(D3DXMatrixLookAtLH, UpNeedNotBePerpendicular)
{
    const D3DXVECTOR3 eye(1, 2, 3), at(5, 2, 3), up(3, 4, 0);
    D3DXMATRIX view;
    D3DXMatrixLookAtLH(&view, &eye, &at, &up);
    ExpectNear(view, {0, 0, 1, 0, 0, 1, 0, 0, -1, 0, 0, 0, 3, -2, -1, 1}, 0);
}

TEST(D3DXMatrixLookAtLH, UpAlongTheViewFlattensTheTwoOtherAxes)
{
    const D3DXVECTOR3 eye(0, 0, 0), at(0, 3, 0), up(0, 1, 0);
    D3DXMATRIX view;
    D3DXMatrixLookAtLH(&view, &eye, &at, &up);
    ExpectNear(view, {0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 1}, 0);
}

TEST(D3DXMatrixPerspectiveFovLH, MapsTheFrustumToTheCube)
{
    // Half of 90 degrees has tangent 1: at depth z the view is 2z high and, with aspect 2, 4z wide.
    D3DXMATRIX matrix;
    D3DXMatrixPerspectiveFovLH(&matrix, D3DX_PI / 2, 2, 1, 3);
    ExpectNear(matrix, {0.5f, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1.5f, 1, 0, 0, -1.5f, 0}, 1e-6);
    ExpectNear(Project({2, -1, 1}, matrix), {1, -1, 0}, 1e-6, "near corner");
    ExpectNear(Project({-6, 3, 3}, matrix), {-1, 1, 1}, 1e-6, "far corner");
}

TEST(D3DXMatrixPerspectiveLH, TakesTheSizeOfTheNearPlane)
{
    D3DXMATRIX matrix;
    D3DXMatrixPerspectiveLH(&matrix, 2, 4, 1, 3);
    ExpectNear(matrix, {1, 0, 0, 0, 0, 0.5f, 0, 0, 0, 0, 1.5f, 1, 0, 0, -1.5f, 0}, 0);
}

TEST(D3DXMatrixOrthoLH, MapsTheBoxToTheCube)
{
    D3DXMATRIX matrix;
    D3DXMatrixOrthoLH(&matrix, 4, 2, 1, 3);
    ExpectNear(Project({2, -1, 1}, matrix), {1, -1, 0}, 0, "near corner");
    ExpectNear(Project({-2, 1, 3}, matrix), {-1, 1, 1}, 0, "far corner");
}

TEST(D3DXMatrixOrthoOffCenterLH, MapsTheBoxToTheCube)
{
    D3DXMATRIX matrix;
    D3DXMatrixOrthoOffCenterLH(&matrix, 1, 5, 10, 2, 1, 3);
    ExpectNear(Project({1, 10, 1}, matrix), {-1, -1, 0}, 0, "left bottom near");
    ExpectNear(Project({5, 2, 3}, matrix), {1, 1, 1}, 0, "right top far");
}
