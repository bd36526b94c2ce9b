#pragma once

#include <cmath>

// The functions that C libraries round differently. Taken in double precision and rounded once to
// float they agree on all hosts, so that stored values agree to the bit.

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

/// Radians in [0, pi]; a cosine outside [-1, 1], which rounding can give, counts as its end.
inline float RoundedAcos(float cosine)
{
    const float bounded = cosine > 1 ? 1.0f : cosine < -1 ? -1.0f : cosine;
    return static_cast<float>(std::acos(static_cast<double>(bounded)));
}
