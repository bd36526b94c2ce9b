#pragma once

#include "platform/Simd.h"
#include "platform/headless/d3d9/LaneMath.h"

namespace headless {

#include "platform/headless/d3d9/FourLanes.inc"

template <>
struct FormOf<simd::Floats4> {
    using Form = FourLanes;
};

// Four pixels at a time, on the operations of platform/Simd.h.

using Lanes = simd::Floats4;  ///< a float of each of four pixels
using IntLanes = simd::Ints4; ///< a 32-bit integer of each of four pixels
using Rgba4 = Rgba<FourLanes>;

using simd::LoadFloats;
using simd::LoadInts;
using simd::MakeFloats;
using simd::MakeInts;
using simd::Splat;
using simd::SplatHalf;
using simd::SplatInt;

inline Rgba4 SplatColour(float r, float g, float b, float a)
{
    return {{Splat(r), Splat(g), Splat(b), Splat(a)}};
}

/// For values whose integer part fits an `int`.
inline Lanes FloorSmall(Lanes value)
{
    return FourLanes::FloorSmall(value);
}

/// NaN and infinity are returned unchanged.
inline Lanes Floor(Lanes value)
{
    return FourLanes::Floor(value);
}

} // namespace headless
