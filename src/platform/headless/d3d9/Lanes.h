#pragma once

#include "platform/Simd.h"

namespace headless {

// Four pixels at a time, on the operations of platform/Simd.h.

using Lanes = simd::Floats4;  ///< a float of each of four pixels
using IntLanes = simd::Ints4; ///< a 32-bit integer of each of four pixels

using simd::LoadFloats;
using simd::LoadInts;
using simd::MakeFloats;
using simd::MakeInts;
using simd::Splat;
using simd::SplatHalf;
using simd::SplatInt;

/// Red, green, blue and alpha of four pixels.
struct Rgba4 {
    Lanes c[4];
};

inline Rgba4 SplatColour(float r, float g, float b, float a)
{
    return {{Splat(r), Splat(g), Splat(b), Splat(a)}};
}

/// Clamps to 0..1; NaN becomes 0, because Max and Min return their second operand for NaN.
inline Lanes Saturate(Lanes value)
{
    return Min(Max(value, Splat(0.0f)), Splat(1.0f));
}

/// NaN becomes `low`.
inline Lanes ClampLanes(Lanes value, Lanes low, Lanes high)
{
    return Min(Max(value, low), high);
}

/// For values whose integer part fits an `int`.
inline Lanes FloorSmall(Lanes value)
{
    const Lanes truncated = ToFloats(Truncate(value));
    const Lanes isAbove = IsGreater(truncated, value);
    return truncated - (isAbove & Splat(1.0f));
}

/// Beyond 2^23 every float is already an integer, possibly too large for an `int`. NaN and infinity
/// are returned unchanged.
inline Lanes Floor(Lanes value)
{
    const Lanes isSmall = IsLess(Absolute(value), Splat(8388608.0f));
    return Select(isSmall, FloorSmall(value), value);
}

/// The four A8R8G8B8 words as colours of 0..1.
inline Rgba4 UnpackColours(IntLanes argb)
{
    const IntLanes byte = SplatInt(0xFF);
    const Lanes scale = Splat(1.0f / 255.0f);
    return {{ToFloats(ShiftRight(argb, 16) & byte) * scale,
             ToFloats(ShiftRight(argb, 8) & byte) * scale, ToFloats(argb & byte) * scale,
             ToFloats(ShiftRight(argb, 24)) * scale}};
}

inline Lanes OneMinus(Lanes value)
{
    return Splat(1.0f) - value;
}

/// 0..1 to 0..`steps`, rounded to nearest; anything else is clamped.
inline IntLanes Quantise(Lanes value, float steps)
{
    return Truncate(Saturate(value) * Splat(steps) + Splat(0.5f));
}

} // namespace headless
