#pragma once

#include <emmintrin.h>

// Four pixels at a time. Everything here is plain SSE2 and rounds as IEEE says, so that a picture is
// the same on every machine; the fast approximations of reciprocals are not, and are not used.

using Lanes = __m128;     ///< a float of each of four pixels
using IntLanes = __m128i; ///< a 32-bit integer of each of four pixels

/// Red, green, blue and alpha of four pixels.
struct Rgba4 {
    Lanes c[4];
};

inline Lanes Splat(float value)
{
    return _mm_set1_ps(value);
}

inline Rgba4 SplatColour(float r, float g, float b, float a)
{
    return {{Splat(r), Splat(g), Splat(b), Splat(a)}};
}

/// 0..1; NaN becomes 0, because the second operand of both instructions wins over NaN.
inline Lanes Saturate(Lanes value)
{
    return _mm_min_ps(_mm_max_ps(value, _mm_setzero_ps()), Splat(1.0f));
}

/// `low` for NaN.
inline Lanes ClampLanes(Lanes value, Lanes low, Lanes high)
{
    return _mm_min_ps(_mm_max_ps(value, low), high);
}

/// `a` where the bits of `mask` are set, else `b`.
inline Lanes Select(Lanes mask, Lanes a, Lanes b)
{
    return _mm_or_ps(_mm_and_ps(mask, a), _mm_andnot_ps(mask, b));
}

inline IntLanes SelectInt(IntLanes mask, IntLanes a, IntLanes b)
{
    return _mm_or_si128(_mm_and_si128(mask, a), _mm_andnot_si128(mask, b));
}

inline Lanes Absolute(Lanes value)
{
    return _mm_andnot_ps(Splat(-0.0f), value);
}

/// For values whose whole part fits an `int`.
inline Lanes FloorSmall(Lanes value)
{
    const Lanes truncated = _mm_cvtepi32_ps(_mm_cvttps_epi32(value));
    const Lanes isAbove = _mm_cmpgt_ps(truncated, value);
    return _mm_sub_ps(truncated, _mm_and_ps(isAbove, Splat(1.0f)));
}

/// Beyond 2^23 every float is a whole number already, and may be too large for an integer. NaN and
/// infinity stay what they are.
inline Lanes Floor(Lanes value)
{
    const Lanes isSmall = _mm_cmplt_ps(Absolute(value), Splat(8388608.0f));
    return Select(isSmall, FloorSmall(value), value);
}

/// The four A8R8G8B8 words as colours of 0..1.
inline Rgba4 UnpackColours(IntLanes argb)
{
    const IntLanes byte = _mm_set1_epi32(0xFF);
    const Lanes scale = Splat(1.0f / 255.0f);
    return {{_mm_mul_ps(_mm_cvtepi32_ps(_mm_and_si128(_mm_srli_epi32(argb, 16), byte)), scale),
             _mm_mul_ps(_mm_cvtepi32_ps(_mm_and_si128(_mm_srli_epi32(argb, 8), byte)), scale),
             _mm_mul_ps(_mm_cvtepi32_ps(_mm_and_si128(argb, byte)), scale),
             _mm_mul_ps(_mm_cvtepi32_ps(_mm_srli_epi32(argb, 24)), scale)}};
}

/// 0..1 to 0..`steps`, rounded to the nearest; anything else is clamped.
inline IntLanes Quantise(Lanes value, float steps)
{
    return _mm_cvttps_epi32(_mm_add_ps(_mm_mul_ps(Saturate(value), Splat(steps)), Splat(0.5f)));
}

/// One bit for each lane, the first pixel lowest.
inline int LaneBits(Lanes mask)
{
    return _mm_movemask_ps(mask);
}
