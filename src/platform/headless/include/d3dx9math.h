#pragma once

// The D3DX mathematics: records with their operators, and the functions. Vectors are rows, so `a *
// b` applies `a` first; coordinates are left-handed; angles are in radians. A default-constructed
// record is uninitialised, even with `{}`, as on Windows.

#include "d3d9.h"

#define D3DX_PI 3.141592654f
#define D3DX_1BYPI 0.318309886f
#define D3DXToRadian(degree) ((degree) * (D3DX_PI / 180.0f))
#define D3DXToDegree(radian) ((radian) * (180.0f / D3DX_PI))

struct D3DXVECTOR2 {
    D3DXVECTOR2() {}
    D3DXVECTOR2(const FLOAT* values) : x(values[0]), y(values[1]) {}
    D3DXVECTOR2(FLOAT xValue, FLOAT yValue) : x(xValue), y(yValue) {}

    operator FLOAT*() { return &x; }
    operator const FLOAT*() const { return &x; }

    D3DXVECTOR2& operator+=(const D3DXVECTOR2& other) { return *this = *this + other; }
    D3DXVECTOR2& operator-=(const D3DXVECTOR2& other) { return *this = *this - other; }
    D3DXVECTOR2& operator*=(FLOAT factor) { return *this = *this * factor; }
    D3DXVECTOR2& operator/=(FLOAT divisor) { return *this = *this / divisor; }
    D3DXVECTOR2 operator+() const { return *this; }
    D3DXVECTOR2 operator-() const { return {-x, -y}; }
    D3DXVECTOR2 operator+(const D3DXVECTOR2& other) const { return {x + other.x, y + other.y}; }
    D3DXVECTOR2 operator-(const D3DXVECTOR2& other) const { return {x - other.x, y - other.y}; }
    D3DXVECTOR2 operator*(FLOAT factor) const { return {x * factor, y * factor}; }
    D3DXVECTOR2 operator/(FLOAT divisor) const { return {x / divisor, y / divisor}; }
    friend D3DXVECTOR2 operator*(FLOAT factor, const D3DXVECTOR2& vector)
    {
        return vector * factor;
    }
    BOOL operator==(const D3DXVECTOR2& other) const { return x == other.x && y == other.y; }
    BOOL operator!=(const D3DXVECTOR2& other) const { return !(*this == other); }

    FLOAT x, y;
};
using LPD3DXVECTOR2 = D3DXVECTOR2*;

struct D3DXVECTOR3 : D3DVECTOR {
    D3DXVECTOR3() {}
    D3DXVECTOR3(const FLOAT* values) : D3DXVECTOR3(values[0], values[1], values[2]) {}
    D3DXVECTOR3(const D3DVECTOR& vector) : D3DVECTOR(vector) {}
    D3DXVECTOR3(FLOAT xValue, FLOAT yValue, FLOAT zValue)
    {
        x = xValue; // one by one: the analyzer does not see into a base that is a plain record
        y = yValue;
        z = zValue;
    }

    operator FLOAT*() { return &x; }
    operator const FLOAT*() const { return &x; }

    D3DXVECTOR3& operator+=(const D3DXVECTOR3& other) { return *this = *this + other; }
    D3DXVECTOR3& operator-=(const D3DXVECTOR3& other) { return *this = *this - other; }
    D3DXVECTOR3& operator*=(FLOAT factor) { return *this = *this * factor; }
    D3DXVECTOR3& operator/=(FLOAT divisor) { return *this = *this / divisor; }
    D3DXVECTOR3 operator+() const { return *this; }
    D3DXVECTOR3 operator-() const { return {-x, -y, -z}; }
    D3DXVECTOR3 operator+(const D3DXVECTOR3& other) const
    {
        return {x + other.x, y + other.y, z + other.z};
    }
    D3DXVECTOR3 operator-(const D3DXVECTOR3& other) const
    {
        return {x - other.x, y - other.y, z - other.z};
    }
    D3DXVECTOR3 operator*(FLOAT factor) const { return {x * factor, y * factor, z * factor}; }
    D3DXVECTOR3 operator/(FLOAT divisor) const { return {x / divisor, y / divisor, z / divisor}; }
    friend D3DXVECTOR3 operator*(FLOAT factor, const D3DXVECTOR3& vector)
    {
        return vector * factor;
    }
    BOOL operator==(const D3DXVECTOR3& other) const
    {
        return x == other.x && y == other.y && z == other.z;
    }
    BOOL operator!=(const D3DXVECTOR3& other) const { return !(*this == other); }
};
using LPD3DXVECTOR3 = D3DXVECTOR3*;

struct D3DXVECTOR4 {
    D3DXVECTOR4() {}
    D3DXVECTOR4(const FLOAT* v) : x(v[0]), y(v[1]), z(v[2]), w(v[3]) {}
    D3DXVECTOR4(FLOAT xValue, FLOAT yValue, FLOAT zValue, FLOAT wValue)
        : x(xValue),
          y(yValue),
          z(zValue),
          w(wValue)
    {}

    operator FLOAT*() { return &x; }
    operator const FLOAT*() const { return &x; }

    D3DXVECTOR4& operator+=(const D3DXVECTOR4& other) { return *this = *this + other; }
    D3DXVECTOR4& operator-=(const D3DXVECTOR4& other) { return *this = *this - other; }
    D3DXVECTOR4& operator*=(FLOAT factor) { return *this = *this * factor; }
    D3DXVECTOR4& operator/=(FLOAT divisor) { return *this = *this / divisor; }
    D3DXVECTOR4 operator+() const { return *this; }
    D3DXVECTOR4 operator-() const { return {-x, -y, -z, -w}; }
    D3DXVECTOR4 operator+(const D3DXVECTOR4& other) const
    {
        return {x + other.x, y + other.y, z + other.z, w + other.w};
    }
    D3DXVECTOR4 operator-(const D3DXVECTOR4& other) const
    {
        return {x - other.x, y - other.y, z - other.z, w - other.w};
    }
    D3DXVECTOR4 operator*(FLOAT factor) const
    {
        return {x * factor, y * factor, z * factor, w * factor};
    }
    D3DXVECTOR4 operator/(FLOAT divisor) const
    {
        return {x / divisor, y / divisor, z / divisor, w / divisor};
    }
    friend D3DXVECTOR4 operator*(FLOAT factor, const D3DXVECTOR4& vector)
    {
        return vector * factor;
    }
    BOOL operator==(const D3DXVECTOR4& other) const
    {
        return x == other.x && y == other.y && z == other.z && w == other.w;
    }
    BOOL operator!=(const D3DXVECTOR4& other) const { return !(*this == other); }

    FLOAT x, y, z, w;
};
using LPD3DXVECTOR4 = D3DXVECTOR4*;

struct D3DXMATRIX : D3DMATRIX {
    D3DXMATRIX() {}
    D3DXMATRIX(const FLOAT* values);
    D3DXMATRIX(const D3DMATRIX& matrix) : D3DMATRIX(matrix) {}
    D3DXMATRIX(FLOAT f11, FLOAT f12, FLOAT f13, FLOAT f14, FLOAT f21, FLOAT f22, FLOAT f23,
               FLOAT f24, FLOAT f31, FLOAT f32, FLOAT f33, FLOAT f34, FLOAT f41, FLOAT f42,
               FLOAT f43, FLOAT f44);

    FLOAT& operator()(UINT row, UINT column) { return m[row][column]; }
    FLOAT operator()(UINT row, UINT column) const { return m[row][column]; }
    operator FLOAT*() { return &_11; }
    operator const FLOAT*() const { return &_11; }

    D3DXMATRIX& operator*=(const D3DXMATRIX& other);
    D3DXMATRIX& operator+=(const D3DXMATRIX& other);
    D3DXMATRIX& operator-=(const D3DXMATRIX& other);
    D3DXMATRIX& operator*=(FLOAT factor);
    /// Multiplies by the reciprocal, like all divisions of matrices, quaternions and colours.
    D3DXMATRIX& operator/=(FLOAT divisor) { return *this *= 1.0f / divisor; }
    D3DXMATRIX operator+() const { return *this; }
    D3DXMATRIX operator-() const { return *this * -1.0f; }
    D3DXMATRIX operator*(const D3DXMATRIX& other) const;
    D3DXMATRIX operator+(const D3DXMATRIX& other) const { return D3DXMATRIX(*this) += other; }
    D3DXMATRIX operator-(const D3DXMATRIX& other) const { return D3DXMATRIX(*this) -= other; }
    D3DXMATRIX operator*(FLOAT factor) const { return D3DXMATRIX(*this) *= factor; }
    D3DXMATRIX operator/(FLOAT divisor) const { return D3DXMATRIX(*this) /= divisor; }
    friend D3DXMATRIX operator*(FLOAT factor, const D3DXMATRIX& matrix) { return matrix * factor; }
    /// Compares the bits: 0 and -0 differ, a NaN equals itself.
    BOOL operator==(const D3DXMATRIX& other) const;
    BOOL operator!=(const D3DXMATRIX& other) const { return !(*this == other); }
};
using LPD3DXMATRIX = D3DXMATRIX*;

struct D3DXQUATERNION {
    D3DXQUATERNION() {}
    D3DXQUATERNION(const FLOAT* v) : x(v[0]), y(v[1]), z(v[2]), w(v[3]) {}
    D3DXQUATERNION(FLOAT xValue, FLOAT yValue, FLOAT zValue, FLOAT wValue)
        : x(xValue),
          y(yValue),
          z(zValue),
          w(wValue)
    {}

    operator FLOAT*() { return &x; }
    operator const FLOAT*() const { return &x; }

    D3DXQUATERNION& operator+=(const D3DXQUATERNION& other) { return *this = *this + other; }
    D3DXQUATERNION& operator-=(const D3DXQUATERNION& other) { return *this = *this - other; }
    D3DXQUATERNION& operator*=(const D3DXQUATERNION& other) { return *this = *this * other; }
    D3DXQUATERNION& operator*=(FLOAT factor) { return *this = *this * factor; }
    D3DXQUATERNION& operator/=(FLOAT divisor) { return *this = *this / divisor; }
    D3DXQUATERNION operator+() const { return *this; }
    D3DXQUATERNION operator-() const { return {-x, -y, -z, -w}; }
    D3DXQUATERNION operator+(const D3DXQUATERNION& other) const
    {
        return {x + other.x, y + other.y, z + other.z, w + other.w};
    }
    D3DXQUATERNION operator-(const D3DXQUATERNION& other) const
    {
        return {x - other.x, y - other.y, z - other.z, w - other.w};
    }
    /// Applies `*this` first, then `other`.
    D3DXQUATERNION operator*(const D3DXQUATERNION& other) const;
    D3DXQUATERNION operator*(FLOAT factor) const
    {
        return {x * factor, y * factor, z * factor, w * factor};
    }
    D3DXQUATERNION operator/(FLOAT divisor) const { return *this * (1.0f / divisor); }
    friend D3DXQUATERNION operator*(FLOAT factor, const D3DXQUATERNION& quaternion)
    {
        return quaternion * factor;
    }
    BOOL operator==(const D3DXQUATERNION& other) const
    {
        return x == other.x && y == other.y && z == other.z && w == other.w;
    }
    BOOL operator!=(const D3DXQUATERNION& other) const { return !(*this == other); }

    FLOAT x, y, z, w;
};
using LPD3DXQUATERNION = D3DXQUATERNION*;

/// The points with `a x + b y + c z + d = 0`.
struct D3DXPLANE {
    D3DXPLANE() {}
    D3DXPLANE(const FLOAT* v) : a(v[0]), b(v[1]), c(v[2]), d(v[3]) {}
    D3DXPLANE(FLOAT aValue, FLOAT bValue, FLOAT cValue, FLOAT dValue)
        : a(aValue),
          b(bValue),
          c(cValue),
          d(dValue)
    {}

    operator FLOAT*() { return &a; }
    operator const FLOAT*() const { return &a; }

    D3DXPLANE operator+() const { return *this; }
    D3DXPLANE operator-() const { return {-a, -b, -c, -d}; }
    BOOL operator==(const D3DXPLANE& other) const
    {
        return a == other.a && b == other.b && c == other.c && d == other.d;
    }
    BOOL operator!=(const D3DXPLANE& other) const { return !(*this == other); }

    FLOAT a, b, c, d;
};
using LPD3DXPLANE = D3DXPLANE*;

struct D3DXCOLOR {
    D3DXCOLOR() {}
    D3DXCOLOR(DWORD argb);
    D3DXCOLOR(const FLOAT* v) : r(v[0]), g(v[1]), b(v[2]), a(v[3]) {}
    D3DXCOLOR(const D3DCOLORVALUE& color) : r(color.r), g(color.g), b(color.b), a(color.a) {}
    D3DXCOLOR(FLOAT red, FLOAT green, FLOAT blue, FLOAT alpha) : r(red), g(green), b(blue), a(alpha)
    {}

    /// 0xAARRGGBB, each component clamped to [0, 1] and rounded to the nearest of 256 steps.
    operator DWORD() const;
    operator FLOAT*() { return &r; }
    operator const FLOAT*() const { return &r; }
    operator D3DCOLORVALUE() const { return {r, g, b, a}; }

    D3DXCOLOR& operator+=(const D3DXCOLOR& other) { return *this = *this + other; }
    D3DXCOLOR& operator-=(const D3DXCOLOR& other) { return *this = *this - other; }
    D3DXCOLOR& operator*=(FLOAT factor) { return *this = *this * factor; }
    D3DXCOLOR& operator/=(FLOAT divisor) { return *this = *this / divisor; }
    D3DXCOLOR operator+() const { return *this; }
    D3DXCOLOR operator-() const { return {-r, -g, -b, -a}; }
    D3DXCOLOR operator+(const D3DXCOLOR& other) const
    {
        return {r + other.r, g + other.g, b + other.b, a + other.a};
    }
    D3DXCOLOR operator-(const D3DXCOLOR& other) const
    {
        return {r - other.r, g - other.g, b - other.b, a - other.a};
    }
    D3DXCOLOR operator*(FLOAT factor) const
    {
        return {r * factor, g * factor, b * factor, a * factor};
    }
    D3DXCOLOR operator/(FLOAT divisor) const { return *this * (1.0f / divisor); }
    friend D3DXCOLOR operator*(FLOAT factor, const D3DXCOLOR& color) { return color * factor; }
    BOOL operator==(const D3DXCOLOR& other) const
    {
        return r == other.r && g == other.g && b == other.b && a == other.a;
    }
    BOOL operator!=(const D3DXCOLOR& other) const { return !(*this == other); }

    FLOAT r, g, b, a;
};
using LPD3DXCOLOR = D3DXCOLOR*;

static_assert(sizeof(D3DXVECTOR2) == 8 && sizeof(D3DXVECTOR3) == 12 && sizeof(D3DXVECTOR4) == 16);
static_assert(sizeof(D3DXMATRIX) == 64 && sizeof(D3DXQUATERNION) == 16);
static_assert(sizeof(D3DXPLANE) == 16 && sizeof(D3DXCOLOR) == 16);

// The functions below are implemented in platform/d3dxmath, on Windows too. An input may also be
// the output. No pointer may be null except that of a determinant. Each returns its output pointer.
extern "C" {

FLOAT WINAPI D3DXMatrixDeterminant(const D3DXMATRIX* matrix);
/// `determinantOut` may be null. If the determinant is 0, returns null and writes no matrix.
D3DXMATRIX* WINAPI D3DXMatrixInverse(D3DXMATRIX* matrixOut, FLOAT* determinantOut,
                                     const D3DXMATRIX* matrix);
D3DXMATRIX* WINAPI D3DXMatrixTranspose(D3DXMATRIX* matrixOut, const D3DXMATRIX* matrix);
/// Applies `first`, then `second`.
D3DXMATRIX* WINAPI D3DXMatrixMultiply(D3DXMATRIX* matrixOut, const D3DXMATRIX* first,
                                      const D3DXMATRIX* second);
D3DXMATRIX* WINAPI D3DXMatrixMultiplyTranspose(D3DXMATRIX* matrixOut, const D3DXMATRIX* first,
                                               const D3DXMATRIX* second);

D3DXMATRIX* WINAPI D3DXMatrixTranslation(D3DXMATRIX* matrixOut, FLOAT x, FLOAT y, FLOAT z);
D3DXMATRIX* WINAPI D3DXMatrixScaling(D3DXMATRIX* matrixOut, FLOAT x, FLOAT y, FLOAT z);
/// Positive angles rotate clockwise when looking along the axis towards the origin.
D3DXMATRIX* WINAPI D3DXMatrixRotationX(D3DXMATRIX* matrixOut, FLOAT angle);
D3DXMATRIX* WINAPI D3DXMatrixRotationY(D3DXMATRIX* matrixOut, FLOAT angle);
D3DXMATRIX* WINAPI D3DXMatrixRotationZ(D3DXMATRIX* matrixOut, FLOAT angle);
/// The axis need not be of unit length; a zero axis scales by the cosine of the angle.
D3DXMATRIX* WINAPI D3DXMatrixRotationAxis(D3DXMATRIX* matrixOut, const D3DXVECTOR3* axis,
                                          FLOAT angle);
/// The quaternion is used as given; unless it has unit length the result is not a pure rotation.
D3DXMATRIX* WINAPI D3DXMatrixRotationQuaternion(D3DXMATRIX* matrixOut,
                                                const D3DXQUATERNION* quaternion);
/// Roll about z first, then pitch about x, then yaw about y.
D3DXMATRIX* WINAPI D3DXMatrixRotationYawPitchRoll(D3DXMATRIX* matrixOut, FLOAT yaw, FLOAT pitch,
                                                  FLOAT roll);

D3DXMATRIX* WINAPI D3DXMatrixLookAtLH(D3DXMATRIX* matrixOut, const D3DXVECTOR3* eye,
                                      const D3DXVECTOR3* at, const D3DXVECTOR3* up);
D3DXMATRIX* WINAPI D3DXMatrixPerspectiveLH(D3DXMATRIX* matrixOut, FLOAT width, FLOAT height,
                                           FLOAT nearZ, FLOAT farZ);
/// `fovY` is the full vertical angle, `aspect` is width over height.
D3DXMATRIX* WINAPI D3DXMatrixPerspectiveFovLH(D3DXMATRIX* matrixOut, FLOAT fovY, FLOAT aspect,
                                              FLOAT nearZ, FLOAT farZ);
D3DXMATRIX* WINAPI D3DXMatrixOrthoLH(D3DXMATRIX* matrixOut, FLOAT width, FLOAT height, FLOAT nearZ,
                                     FLOAT farZ);
D3DXMATRIX* WINAPI D3DXMatrixOrthoOffCenterLH(D3DXMATRIX* matrixOut, FLOAT left, FLOAT right,
                                              FLOAT bottom, FLOAT top, FLOAT nearZ, FLOAT farZ);

/// A zero vector stays 0.
D3DXVECTOR2* WINAPI D3DXVec2Normalize(D3DXVECTOR2* vectorOut, const D3DXVECTOR2* vector);
/// Transforms a point: w is 1 and the result is divided by its w, without a check for 0.
D3DXVECTOR2* WINAPI D3DXVec2TransformCoord(D3DXVECTOR2* vectorOut, const D3DXVECTOR2* vector,
                                           const D3DXMATRIX* matrix);
/// Transforms a direction: the translation row is ignored.
D3DXVECTOR2* WINAPI D3DXVec2TransformNormal(D3DXVECTOR2* vectorOut, const D3DXVECTOR2* vector,
                                            const D3DXMATRIX* matrix);

/// A zero vector stays 0.
D3DXVECTOR3* WINAPI D3DXVec3Normalize(D3DXVECTOR3* vectorOut, const D3DXVECTOR3* vector);
D3DXVECTOR4* WINAPI D3DXVec3Transform(D3DXVECTOR4* vectorOut, const D3DXVECTOR3* vector,
                                      const D3DXMATRIX* matrix);
/// Transforms a point: w is 1 and the result is divided by its w, without a check for 0.
D3DXVECTOR3* WINAPI D3DXVec3TransformCoord(D3DXVECTOR3* vectorOut, const D3DXVECTOR3* vector,
                                           const D3DXMATRIX* matrix);
/// Transforms a direction: the translation row is ignored. The result is not normalised.
D3DXVECTOR3* WINAPI D3DXVec3TransformNormal(D3DXVECTOR3* vectorOut, const D3DXVECTOR3* vector,
                                            const D3DXMATRIX* matrix);

/// A zero vector stays 0.
D3DXVECTOR4* WINAPI D3DXVec4Normalize(D3DXVECTOR4* vectorOut, const D3DXVECTOR4* vector);
D3DXVECTOR4* WINAPI D3DXVec4Transform(D3DXVECTOR4* vectorOut, const D3DXVECTOR4* vector,
                                      const D3DXMATRIX* matrix);

/// Divides a, b, c and d by the length of (a, b, c); if that is 0, all four become 0.
D3DXPLANE* WINAPI D3DXPlaneNormalize(D3DXPLANE* planeOut, const D3DXPLANE* plane);
D3DXPLANE* WINAPI D3DXPlaneFromPointNormal(D3DXPLANE* planeOut, const D3DXVECTOR3* point,
                                           const D3DXVECTOR3* normal);
/// The normal has unit length and points to the side from which the corners appear clockwise.
D3DXPLANE* WINAPI D3DXPlaneFromPoints(D3DXPLANE* planeOut, const D3DXVECTOR3* a,
                                      const D3DXVECTOR3* b, const D3DXVECTOR3* c);

/// Applies `first`, then `second`.
D3DXQUATERNION* WINAPI D3DXQuaternionMultiply(D3DXQUATERNION* quaternionOut,
                                              const D3DXQUATERNION* first,
                                              const D3DXQUATERNION* second);
D3DXQUATERNION* WINAPI D3DXQuaternionNormalize(D3DXQUATERNION* quaternionOut,
                                               const D3DXQUATERNION* quaternion);
/// The conjugate divided by the square of the length.
D3DXQUATERNION* WINAPI D3DXQuaternionInverse(D3DXQUATERNION* quaternionOut,
                                             const D3DXQUATERNION* quaternion);
/// The axis need not be of unit length; a zero axis gives (0, 0, 0, cosine of half the angle).
D3DXQUATERNION* WINAPI D3DXQuaternionRotationAxis(D3DXQUATERNION* quaternionOut,
                                                  const D3DXVECTOR3* axis, FLOAT angle);
D3DXQUATERNION* WINAPI D3DXQuaternionRotationMatrix(D3DXQUATERNION* quaternionOut,
                                                    const D3DXMATRIX* matrix);
D3DXQUATERNION* WINAPI D3DXQuaternionRotationYawPitchRoll(D3DXQUATERNION* quaternionOut, FLOAT yaw,
                                                          FLOAT pitch, FLOAT roll);
/// Interpolates from `from` at 0 to `to` at 1 along the shorter arc; `t` outside [0, 1]
/// extrapolates. If the dot product is negative, `to` is negated, so the result at 1 may be `-to`.
D3DXQUATERNION* WINAPI D3DXQuaternionSlerp(D3DXQUATERNION* quaternionOut,
                                           const D3DXQUATERNION* from, const D3DXQUATERNION* to,
                                           FLOAT t);
/// Returns the vector part and twice the arc cosine of w; the axis is not normalised.
void WINAPI D3DXQuaternionToAxisAngle(const D3DXQUATERNION* quaternion, D3DXVECTOR3* axisOut,
                                      FLOAT* angleOut);

} // extern "C"

#include "d3dx9math.inl"
