#pragma once

#include <cstddef>
#include <cstdint>

namespace headless {

// What all forms of lanes (FourLanes.inc, EightLanes.h) compute alike, from the operations of
// platform/Simd.h.

/// `Form`, the class of lanes that a vector of floats belongs to.
template <typename Floats>
struct FormOf;

template <typename Floats>
using Form = typename FormOf<Floats>::Form;

/// Red, green, blue and alpha of some pixels.
template <typename F>
struct Rgba {
    typename F::Floats c[4];
};

template <typename F>
inline Rgba<F> SplatRgba(const float (&colour)[4])
{
    return {{F::Splat(colour[0]), F::Splat(colour[1]), F::Splat(colour[2]), F::Splat(colour[3])}};
}

/// NaN becomes `low`.
template <typename Floats>
inline Floats ClampLanes(Floats value, Floats low, Floats high)
{
    return Min(Max(value, low), high);
}

/// Clamps to 0..1; NaN becomes 0, because Max and Min return their second operand for NaN.
template <typename Floats>
inline Floats Saturate(Floats value)
{
    return ClampLanes(value, Form<Floats>::Splat(0.0f), Form<Floats>::Splat(1.0f));
}

template <typename Floats>
inline Floats OneMinus(Floats value)
{
    return Form<Floats>::Splat(1.0f) - value;
}

/// 0..1 to 0..`steps`, rounded to nearest; anything else is clamped.
template <typename Floats>
inline auto Quantise(Floats value, float steps)
{
    using F = Form<Floats>;
    return Truncate(Saturate(value) * F::Splat(steps) + F::Splat(0.5f));
}

/// A8R8G8B8 words as colours of 0..1.
template <typename F>
inline Rgba<F> UnpackArgb(typename F::Ints argb)
{
    const auto byte = F::SplatInt(0xFF);
    const auto scale = F::Splat(1.0f / 255.0f);
    return {{ToFloats(ShiftRight(argb, 16) & byte) * scale,
             ToFloats(ShiftRight(argb, 8) & byte) * scale, ToFloats(argb & byte) * scale,
             ToFloats(ShiftRight(argb, 24)) * scale}};
}

} // namespace headless
