#pragma once

#include <algorithm>
#include <cmath>

namespace headless {

/// A direction or position in camera space.
struct Vector3 {
    float x, y, z;
};

inline Vector3 operator+(const Vector3& a, const Vector3& b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

inline Vector3 operator-(const Vector3& a, const Vector3& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

inline Vector3 operator*(const Vector3& v, float scale)
{
    return {v.x * scale, v.y * scale, v.z * scale};
}

inline float Dot(const Vector3& a, const Vector3& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

inline float Length(const Vector3& v)
{
    return std::sqrt(Dot(v, v));
}

/// NaN gives 0.
inline float Clamp01(float value)
{
    return value > 0.0f ? std::min(value, 1.0f) : 0.0f;
}

/// A zero-length vector is returned unchanged.
inline Vector3 Normalised(const Vector3& v)
{
    const float length = Length(v);
    return length > 0.0f ? v * (1.0f / length) : v;
}

/// `incoming`, of length 1, reflected by a surface with the unit normal `n`.
inline Vector3 Reflected(const Vector3& incoming, const Vector3& n)
{
    return incoming - n * (2.0f * Dot(incoming, n));
}

} // namespace headless
