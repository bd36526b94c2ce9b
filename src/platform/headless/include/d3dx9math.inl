#pragma once

// What the D3DX mathematics defines in its header. Sums run in the order x, y, z, w; the Windows
// header does the same, so that both hosts agree to the bit.

#include <cmath>
#include <cstring>

inline D3DXMATRIX::D3DXMATRIX(const FLOAT* values)
{
    std::memcpy(m, values, sizeof m);
}

inline D3DXMATRIX::D3DXMATRIX(FLOAT f11, FLOAT f12, FLOAT f13, FLOAT f14, FLOAT f21, FLOAT f22,
                              FLOAT f23, FLOAT f24, FLOAT f31, FLOAT f32, FLOAT f33, FLOAT f34,
                              FLOAT f41, FLOAT f42, FLOAT f43, FLOAT f44)
{
    const FLOAT values[] = {f11, f12, f13, f14, f21, f22, f23, f24,
                            f31, f32, f33, f34, f41, f42, f43, f44};
    std::memcpy(m, values, sizeof m);
}

inline D3DXMATRIX& D3DXMATRIX::operator*=(const D3DXMATRIX& other)
{
    return *D3DXMatrixMultiply(this, this, &other);
}

inline D3DXMATRIX& D3DXMATRIX::operator+=(const D3DXMATRIX& other)
{
    for (UINT row = 0; row < 4; ++row)
        for (UINT column = 0; column < 4; ++column)
            m[row][column] += other.m[row][column];
    return *this;
}

inline D3DXMATRIX& D3DXMATRIX::operator-=(const D3DXMATRIX& other)
{
    for (UINT row = 0; row < 4; ++row)
        for (UINT column = 0; column < 4; ++column)
            m[row][column] -= other.m[row][column];
    return *this;
}

inline D3DXMATRIX& D3DXMATRIX::operator*=(FLOAT factor)
{
    for (auto& row : m)
        for (FLOAT& element : row)
            element *= factor;
    return *this;
}

inline D3DXMATRIX D3DXMATRIX::operator*(const D3DXMATRIX& other) const
{
    D3DXMATRIX product;
    D3DXMatrixMultiply(&product, this, &other);
    return product;
}

inline BOOL D3DXMATRIX::operator==(const D3DXMATRIX& other) const
{
    // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison): the bits are meant.
    return std::memcmp(m, other.m, sizeof m) == 0;
}

inline D3DXQUATERNION D3DXQUATERNION::operator*(const D3DXQUATERNION& other) const
{
    D3DXQUATERNION product;
    D3DXQuaternionMultiply(&product, this, &other);
    return product;
}

inline D3DXCOLOR::D3DXCOLOR(DWORD argb)
{
    const FLOAT step = 1.0f / 255.0f;
    r = step * static_cast<FLOAT>(argb >> 16 & 0xFF);
    g = step * static_cast<FLOAT>(argb >> 8 & 0xFF);
    b = step * static_cast<FLOAT>(argb & 0xFF);
    a = step * static_cast<FLOAT>(argb >> 24);
}

inline D3DXCOLOR::operator DWORD() const
{
    DWORD argb = 0;
    const FLOAT parts[] = {a, r, g, b};
    for (const FLOAT part : parts) {
        const DWORD steps = part >= 1.0f  ? 0xFF
                            : part > 0.0f ? static_cast<DWORD>(part * 255.0f + 0.5f)
                                          : 0; // a NaN too
        argb = argb << 8 | steps;
    }
    return argb;
}

inline FLOAT D3DXVec2Dot(const D3DXVECTOR2* a, const D3DXVECTOR2* b)
{
    return a->x * b->x + a->y * b->y;
}

inline FLOAT D3DXVec2LengthSq(const D3DXVECTOR2* vector)
{
    return D3DXVec2Dot(vector, vector);
}

inline FLOAT D3DXVec2Length(const D3DXVECTOR2* vector)
{
    return std::sqrt(D3DXVec2LengthSq(vector));
}

inline FLOAT D3DXVec3Dot(const D3DXVECTOR3* a, const D3DXVECTOR3* b)
{
    return a->x * b->x + a->y * b->y + a->z * b->z;
}

inline FLOAT D3DXVec3LengthSq(const D3DXVECTOR3* vector)
{
    return D3DXVec3Dot(vector, vector);
}

inline FLOAT D3DXVec3Length(const D3DXVECTOR3* vector)
{
    return std::sqrt(D3DXVec3LengthSq(vector));
}

inline D3DXVECTOR3* D3DXVec3Subtract(D3DXVECTOR3* differenceOut, const D3DXVECTOR3* a,
                                     const D3DXVECTOR3* b)
{
    *differenceOut = *a - *b;
    return differenceOut;
}

inline D3DXVECTOR3* D3DXVec3Cross(D3DXVECTOR3* productOut, const D3DXVECTOR3* a,
                                  const D3DXVECTOR3* b)
{
    *productOut = D3DXVECTOR3(a->y * b->z - a->z * b->y, a->z * b->x - a->x * b->z,
                              a->x * b->y - a->y * b->x);
    return productOut;
}

inline D3DXVECTOR3* D3DXVec3Minimize(D3DXVECTOR3* vectorOut, const D3DXVECTOR3* a,
                                     const D3DXVECTOR3* b)
{
    *vectorOut = D3DXVECTOR3(a->x < b->x ? a->x : b->x, a->y < b->y ? a->y : b->y,
                             a->z < b->z ? a->z : b->z);
    return vectorOut;
}

inline D3DXVECTOR3* D3DXVec3Maximize(D3DXVECTOR3* vectorOut, const D3DXVECTOR3* a,
                                     const D3DXVECTOR3* b)
{
    *vectorOut = D3DXVECTOR3(a->x > b->x ? a->x : b->x, a->y > b->y ? a->y : b->y,
                             a->z > b->z ? a->z : b->z);
    return vectorOut;
}

inline FLOAT D3DXVec4Dot(const D3DXVECTOR4* a, const D3DXVECTOR4* b)
{
    return a->x * b->x + a->y * b->y + a->z * b->z + a->w * b->w;
}

inline FLOAT D3DXVec4LengthSq(const D3DXVECTOR4* vector)
{
    return D3DXVec4Dot(vector, vector);
}

inline FLOAT D3DXVec4Length(const D3DXVECTOR4* vector)
{
    return std::sqrt(D3DXVec4LengthSq(vector));
}

inline D3DXMATRIX* D3DXMatrixIdentity(D3DXMATRIX* matrixOut)
{
    *matrixOut = D3DXMATRIX(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1);
    return matrixOut;
}

/// Compares the values: -0 is 0. Not const, as it is on Windows.
inline BOOL D3DXMatrixIsIdentity(D3DXMATRIX* matrix)
{
    for (UINT row = 0; row < 4; ++row)
        for (UINT column = 0; column < 4; ++column)
            if (matrix->m[row][column] != (row == column ? 1.0f : 0.0f))
                return FALSE;
    return TRUE;
}

inline FLOAT D3DXQuaternionDot(const D3DXQUATERNION* a, const D3DXQUATERNION* b)
{
    return a->x * b->x + a->y * b->y + a->z * b->z + a->w * b->w;
}

inline FLOAT D3DXQuaternionLengthSq(const D3DXQUATERNION* quaternion)
{
    return D3DXQuaternionDot(quaternion, quaternion);
}

inline FLOAT D3DXQuaternionLength(const D3DXQUATERNION* quaternion)
{
    return std::sqrt(D3DXQuaternionLengthSq(quaternion));
}

inline D3DXQUATERNION* D3DXQuaternionIdentity(D3DXQUATERNION* quaternionOut)
{
    *quaternionOut = D3DXQUATERNION(0, 0, 0, 1);
    return quaternionOut;
}

/// Not const, as it is on Windows.
inline BOOL D3DXQuaternionIsIdentity(D3DXQUATERNION* quaternion)
{
    return *quaternion == D3DXQUATERNION(0, 0, 0, 1);
}

inline D3DXQUATERNION* D3DXQuaternionConjugate(D3DXQUATERNION* quaternionOut,
                                               const D3DXQUATERNION* quaternion)
{
    *quaternionOut = D3DXQUATERNION(-quaternion->x, -quaternion->y, -quaternion->z, quaternion->w);
    return quaternionOut;
}
