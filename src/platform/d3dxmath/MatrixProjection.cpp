// View and projection matrices: left-handed, depth from 0 at the near plane to 1 at the far plane.

#include "platform/d3dxmath/RoundedFunctions.h"

#include <d3dx9.h>

D3DXMATRIX* WINAPI D3DXMatrixLookAtLH(D3DXMATRIX* matrixOut, const D3DXVECTOR3* eye,
                                      const D3DXVECTOR3* at, const D3DXVECTOR3* up)
{
    D3DXVECTOR3 x, y, z;
    D3DXVec3Subtract(&z, at, eye);
    D3DXVec3Normalize(&z, &z);
    D3DXVec3Cross(&x, up, &z);
    D3DXVec3Cross(&y, &z, &x); // before normalising x: saves one rounding
    D3DXVec3Normalize(&x, &x);
    D3DXVec3Normalize(&y, &y);
    *matrixOut = D3DXMATRIX(x.x, y.x, z.x, 0, x.y, y.y, z.y, 0, x.z, y.z, z.z, 0,
                            -D3DXVec3Dot(&x, eye), -D3DXVec3Dot(&y, eye), -D3DXVec3Dot(&z, eye), 1);
    return matrixOut;
}

D3DXMATRIX* WINAPI D3DXMatrixPerspectiveLH(D3DXMATRIX* matrixOut, FLOAT width, FLOAT height,
                                           FLOAT nearZ, FLOAT farZ)
{
    *matrixOut = D3DXMATRIX(2 * nearZ / width, 0, 0, 0, 0, 2 * nearZ / height, 0, 0, 0, 0,
                            farZ / (farZ - nearZ), 1, 0, 0, nearZ * farZ / (nearZ - farZ), 0);
    return matrixOut;
}

D3DXMATRIX* WINAPI D3DXMatrixPerspectiveFovLH(D3DXMATRIX* matrixOut, FLOAT fovY, FLOAT aspect,
                                              FLOAT nearZ, FLOAT farZ)
{
    const float tangent = RoundedTan(fovY / 2);
    *matrixOut = D3DXMATRIX(1 / (aspect * tangent), 0, 0, 0, 0, 1 / tangent, 0, 0, 0, 0,
                            farZ / (farZ - nearZ), 1, 0, 0, farZ * nearZ / (nearZ - farZ), 0);
    return matrixOut;
}

D3DXMATRIX* WINAPI D3DXMatrixOrthoLH(D3DXMATRIX* matrixOut, FLOAT width, FLOAT height, FLOAT nearZ,
                                     FLOAT farZ)
{
    *matrixOut = D3DXMATRIX(2 / width, 0, 0, 0, 0, 2 / height, 0, 0, 0, 0, 1 / (farZ - nearZ), 0, 0,
                            0, nearZ / (nearZ - farZ), 1);
    return matrixOut;
}

D3DXMATRIX* WINAPI D3DXMatrixOrthoOffCenterLH(D3DXMATRIX* matrixOut, FLOAT left, FLOAT right,
                                              FLOAT bottom, FLOAT top, FLOAT nearZ, FLOAT farZ)
{
    *matrixOut = D3DXMATRIX(2 / (right - left), 0, 0, 0, 0, 2 / (top - bottom), 0, 0, 0, 0,
                            1 / (farZ - nearZ), 0, -1 - 2 * left / (right - left),
                            1 + 2 * top / (bottom - top), nearZ / (nearZ - farZ), 1);
    return matrixOut;
}
