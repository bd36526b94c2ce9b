// Rotation matrices. A positive angle turns y to z about x, z to x about y, x to y about z.

#include "platform/d3dxmath/RoundedFunctions.h"

#include <d3dx9.h>

namespace {

/// A transform whose rows are the images of the x, y and z axes.
D3DXMATRIX* SetAxes(D3DXMATRIX* matrixOut, const D3DXVECTOR3& x, const D3DXVECTOR3& y,
                    const D3DXVECTOR3& z)
{
    *matrixOut = D3DXMATRIX(x.x, x.y, x.z, 0, y.x, y.y, y.z, 0, z.x, z.y, z.z, 0, 0, 0, 0, 1);
    return matrixOut;
}

} // namespace

D3DXMATRIX* WINAPI D3DXMatrixRotationX(D3DXMATRIX* matrixOut, FLOAT angle)
{
    const float s = RoundedSin(angle);
    const float c = RoundedCos(angle);
    return SetAxes(matrixOut, {1, 0, 0}, {0, c, s}, {0, -s, c});
}

D3DXMATRIX* WINAPI D3DXMatrixRotationY(D3DXMATRIX* matrixOut, FLOAT angle)
{
    const float s = RoundedSin(angle);
    const float c = RoundedCos(angle);
    return SetAxes(matrixOut, {c, 0, -s}, {0, 1, 0}, {s, 0, c});
}

D3DXMATRIX* WINAPI D3DXMatrixRotationZ(D3DXMATRIX* matrixOut, FLOAT angle)
{
    const float s = RoundedSin(angle);
    const float c = RoundedCos(angle);
    return SetAxes(matrixOut, {c, s, 0}, {-s, c, 0}, {0, 0, 1});
}

// Rodrigues' formula: cosine * 1 + (1 - cosine) * axis^T axis + sine * [axis]. The order of the
// products, column before row, affects the last bit; the system's library uses the same.
D3DXMATRIX* WINAPI D3DXMatrixRotationAxis(D3DXMATRIX* matrixOut, const D3DXVECTOR3* axis,
                                          FLOAT angle)
{
    D3DXVECTOR3 n;
    D3DXVec3Normalize(&n, axis);
    const float s = RoundedSin(angle);
    const float c = RoundedCos(angle);
    const D3DXVECTOR3 rest = (1 - c) * n;
    return SetAxes(matrixOut, {rest.x * n.x + c, rest.y * n.x + s * n.z, rest.z * n.x - s * n.y},
                   {rest.x * n.y - s * n.z, rest.y * n.y + c, rest.z * n.y + s * n.x},
                   {rest.x * n.z + s * n.y, rest.y * n.z - s * n.x, rest.z * n.z + c});
}

D3DXMATRIX* WINAPI D3DXMatrixRotationQuaternion(D3DXMATRIX* matrixOut,
                                                const D3DXQUATERNION* quaternion)
{
    const D3DXQUATERNION q = *quaternion;
    const float xx = q.x * q.x, yy = q.y * q.y, zz = q.z * q.z;
    const float xy = q.x * q.y, xz = q.x * q.z, yz = q.y * q.z;
    const float xw = q.x * q.w, yw = q.y * q.w, zw = q.z * q.w;
    return SetAxes(matrixOut, {1 - 2 * (yy + zz), 2 * (xy + zw), 2 * (xz - yw)},
                   {2 * (xy - zw), 1 - 2 * (xx + zz), 2 * (yz + xw)},
                   {2 * (xz + yw), 2 * (yz - xw), 1 - 2 * (xx + yy)});
}

// The rotations about z, x and y, multiplied out.
D3DXMATRIX* WINAPI D3DXMatrixRotationYawPitchRoll(D3DXMATRIX* matrixOut, FLOAT yaw, FLOAT pitch,
                                                  FLOAT roll)
{
    const float sy = RoundedSin(yaw), cy = RoundedCos(yaw);
    const float sp = RoundedSin(pitch), cp = RoundedCos(pitch);
    const float sr = RoundedSin(roll), cr = RoundedCos(roll);
    return SetAxes(matrixOut, {sr * sp * sy + cr * cy, sr * cp, sr * sp * cy - cr * sy},
                   {cr * sp * sy - sr * cy, cr * cp, cr * sp * cy + sr * sy},
                   {cp * sy, -sp, cp * cy});
}
