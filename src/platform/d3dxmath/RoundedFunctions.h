#pragma once

#include <cmath>

// Functions that C libraries round differently. Computed in double precision and rounded once to
// float, they agree on all hosts, so that stored values are identical to the bit.

/// `angle` in radians; any size.
inline float RoundedSin(float angle)
{
    return static_cast<float>(std::sin(static_cast<double>(angle)));
}

/// `angle` in radians; any size.
inline float RoundedCos(float angle)
{
    return static_cast<float>(std::cos(static_cast<double>(angle)));
}

/// `angle` in radians; any size.
inline float RoundedTan(float angle)
{
    return static_cast<float>(std::tan(static_cast<double>(angle)));
}

/// Radians in [0, pi]; a cosine outside [-1, 1], possible by rounding, is clamped.
inline float RoundedAcos(float cosine)
{
    const float bounded = cosine > 1 ? 1.0f : cosine < -1 ? -1.0f : cosine;
    return static_cast<float>(std::acos(static_cast<double>(bounded)));
}
