// Quaternions (x, y, z, w), where w is the real part. Products apply the left factor first.

#include "platform/d3dxmath/RoundedFunctions.h"

#include <d3dx9.h>

D3DXQUATERNION* WINAPI D3DXQuaternionMultiply(D3DXQUATERNION* quaternionOut,
                                              const D3DXQUATERNION* first,
                                              const D3DXQUATERNION* second)
{
    const D3DXQUATERNION a = *first;
    const D3DXQUATERNION b = *second;
    *quaternionOut = D3DXQUATERNION(b.w * a.x + b.x * a.w + b.y * a.z - b.z * a.y,
                                    b.w * a.y - b.x * a.z + b.y * a.w + b.z * a.x,
                                    b.w * a.z + b.x * a.y - b.y * a.x + b.z * a.w,
                                    b.w * a.w - b.x * a.x - b.y * a.y - b.z * a.z);
    return quaternionOut;
}

D3DXQUATERNION* WINAPI D3DXQuaternionNormalize(D3DXQUATERNION* quaternionOut,
                                               const D3DXQUATERNION* quaternion)
{
    const D3DXQUATERNION q = *quaternion;
    const float length = D3DXQuaternionLength(&q);
    *quaternionOut = length == 0
                         ? D3DXQUATERNION(0, 0, 0, 0)
                         : D3DXQUATERNION(q.x / length, q.y / length, q.z / length, q.w / length);
    return quaternionOut;
}

D3DXQUATERNION* WINAPI D3DXQuaternionInverse(D3DXQUATERNION* quaternionOut,
                                             const D3DXQUATERNION* quaternion)
{
    const D3DXQUATERNION q = *quaternion;
    const float square = D3DXQuaternionLengthSq(&q);
    *quaternionOut = D3DXQUATERNION(-q.x / square, -q.y / square, -q.z / square, q.w / square);
    return quaternionOut;
}

D3DXQUATERNION* WINAPI D3DXQuaternionRotationAxis(D3DXQUATERNION* quaternionOut,
                                                  const D3DXVECTOR3* axis, FLOAT angle)
{
    D3DXVECTOR3 n;
    D3DXVec3Normalize(&n, axis);
    const float s = RoundedSin(angle / 2);
    *quaternionOut = D3DXQUATERNION(s * n.x, s * n.y, s * n.z, RoundedCos(angle / 2));
    return quaternionOut;
}

// Shepperd's method: takes the root of the largest of four terms, so that no digits are lost. With
// a positive trace that is w; otherwise the component of the largest diagonal element.
D3DXQUATERNION* WINAPI D3DXQuaternionRotationMatrix(D3DXQUATERNION* quaternionOut,
                                                    const D3DXMATRIX* matrix)
{
    const D3DXMATRIX m = *matrix;
    const float trace = m._11 + m._22 + m._33 + 1;
    if (trace > 1) {
        const float s = 2 * std::sqrt(trace);
        *quaternionOut = D3DXQUATERNION((m._23 - m._32) / s, (m._31 - m._13) / s,
                                        (m._12 - m._21) / s, 0.25f * s);
        return quaternionOut;
    }

    int i = 0;
    for (int axis = 1; axis < 3; ++axis)
        if (m.m[axis][axis] > m.m[i][i])
            i = axis;
    const int j = (i + 1) % 3;
    const int k = (i + 2) % 3;
    const float s = 2 * std::sqrt(1 + m.m[i][i] - m.m[j][j] - m.m[k][k]);
    float vector[3];
    vector[i] = 0.25f * s;
    vector[j] = (m.m[i][j] + m.m[j][i]) / s;
    vector[k] = (m.m[i][k] + m.m[k][i]) / s;
    *quaternionOut = D3DXQUATERNION(vector[0], vector[1], vector[2], (m.m[j][k] - m.m[k][j]) / s);
    return quaternionOut;
}

D3DXQUATERNION* WINAPI D3DXQuaternionRotationYawPitchRoll(D3DXQUATERNION* quaternionOut, FLOAT yaw,
                                                          FLOAT pitch, FLOAT roll)
{
    const float sy = RoundedSin(yaw / 2), cy = RoundedCos(yaw / 2);
    const float sp = RoundedSin(pitch / 2), cp = RoundedCos(pitch / 2);
    const float sr = RoundedSin(roll / 2), cr = RoundedCos(roll / 2);
    *quaternionOut = D3DXQUATERNION(sy * cp * sr + cy * sp * cr, sy * cp * cr - cy * sp * sr,
                                    cy * cp * sr - sy * sp * cr, cy * cp * cr + sy * sp * sr);
    return quaternionOut;
}

D3DXQUATERNION* WINAPI D3DXQuaternionSlerp(D3DXQUATERNION* quaternionOut,
                                           const D3DXQUATERNION* from, const D3DXQUATERNION* to,
                                           FLOAT t)
{
    float cosine = D3DXQuaternionDot(from, to);
    float fromWeight = 1 - t;
    float toWeight = t;
    if (cosine < 0) { // `-to` is nearer
        cosine = -cosine;
        toWeight = -toWeight;
    }
    // Below some 2.6 degrees the quotient of sines loses digits, and linear interpolation is as
    // good.
    constexpr float kNear = 0.001f;
    // Shortcuts for the values of t that curves without tension mostly use; the trigonometric
    // functions are most of their cost. A sine divided by itself is exactly 1, and 0 divided by one
    // is 0: at t = 1 both weights already have these values, at t = -1 one of them has. Sine is
    // odd, so at t = 1/2 one serves both.
    if (t != 1 && 1 - cosine > kNear) {
        const float fromPart = fromWeight;
        const float angle = RoundedAcos(cosine);
        const float sine = RoundedSin(angle);
        fromWeight = RoundedSin(angle * fromPart) / sine;
        if (std::fabs(toWeight) == fromPart)
            toWeight = std::copysign(fromWeight, toWeight);
        else if (std::fabs(toWeight) != 1)
            toWeight = RoundedSin(angle * toWeight) / sine;
    }
    *quaternionOut = D3DXQUATERNION(
        fromWeight * from->x + toWeight * to->x, fromWeight * from->y + toWeight * to->y,
        fromWeight * from->z + toWeight * to->z, fromWeight * from->w + toWeight * to->w);
    return quaternionOut;
}

void WINAPI D3DXQuaternionToAxisAngle(const D3DXQUATERNION* quaternion, D3DXVECTOR3* axisOut,
                                      FLOAT* angleOut)
{
    *axisOut = D3DXVECTOR3(quaternion->x, quaternion->y, quaternion->z);
    *angleOut = 2 * RoundedAcos(quaternion->w);
}
