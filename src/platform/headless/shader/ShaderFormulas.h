#pragma once

#include "platform/headless/d3d9/LaneMath.h"

#include <limits>

namespace headless::shader {

/// The functions of ShaderMath.h for one form of lanes (FourLanes.inc, EightLanes.h).
template <typename F>
struct Formulas {
    using Floats = typename F::Floats;
    using Ints = typename F::Ints;

    static constexpr float kInfinity = std::numeric_limits<float>::infinity();

    /// Polynomials by Horner's rule, the highest power first.
    template <size_t Count>
    static Floats Polynomial(Floats x, const float (&coefficients)[Count])
    {
        Floats sum = F::Splat(coefficients[0]);
        for (size_t i = 1; i < Count; ++i)
            sum = sum * x + F::Splat(coefficients[i]);
        return sum;
    }

    /// The nearest whole number; ties as the processor rounds. For |value| below 2^23.
    static Floats RoundSmall(Floats value) { return ToFloats(Round(value)); }

    static Floats IsAtLeast(Floats a, Floats b) { return IsGreater(a, b) | IsSame(a, b); }

    static Floats IsSame(Floats a, Floats b)
    {
        const Floats all = AsFloats(F::SplatInt(-1));
        return AndNot(IsUnequal(a, b), all);
    }

    static Floats Reciprocal(Floats value) { return F::Splat(1.0f) / value; }

    static Floats ReciprocalRoot(Floats value)
    {
        return F::Splat(1.0f) / SquareRoot(Absolute(value));
    }

    /// Splits into a whole number, which becomes the exponent, and a rest within -1/2..1/2, for which the
    /// series of exp(rest * ln 2) converges fast: the first term left out is below 2^-27.
    static Floats Exp2(Floats value)
    {
        constexpr float kSeries[] = {1.5252733e-5f, 1.5403530e-4f, 1.3333558e-3f, 9.6181291e-3f,
                                     5.5504109e-2f, 2.4022651e-1f, 6.9314718e-1f, 1.0f};
        const Floats held =
            ClampLanes(value, F::Splat(-150.0f), F::Splat(129.0f)); // NaN becomes -150
        const Floats whole = RoundSmall(held);
        const Floats mantissa = Polynomial(held - whole, kSeries);
        // In two steps, since 2^128 alone is no float: the rest may lead back below it.
        const Ints exponent = Truncate(whole);
        const Ints half = F::SplatInt(64);
        const Floats isHigh = IsGreater(whole, F::Splat(63.0f));
        const Ints low = Select(AsInts(isHigh), exponent - half, exponent);
        const Ints biased = low + F::SplatInt(127);
        const Floats power = AsFloats(ShiftLeft(biased, 23));
        const Floats scaled =
            mantissa * power * Select(isHigh, F::Splat(18446744073709551616.0f), F::Splat(1.0f));
        const Floats isTiny = IsLess(value, F::Splat(-126.0f));
        const Floats result = Select(isTiny, F::Splat(0.0f), scaled);
        const Floats isHuge = IsAtLeast(value, F::Splat(128.0f));
        const Floats bounded = Select(isHuge, F::Splat(kInfinity), result);
        return Select(IsUnequal(value, value), value, bounded);
    }

    /// value = 2^n * m with m between the roots of 1/2 and 2. With s = (m - 1) / (m + 1) the natural
    /// logarithm of m is 2 (s + s^3/3 + s^5/5 + ...), and |s| is below 0.172: the first term left out is
    /// below 2^-29 of the first.
    static Floats Log2(Floats value)
    {
        constexpr float kTwoByLn2 = 2.8853900817779268f;
        constexpr float kSeries[] = {1.0f / 11.0f, 1.0f / 9.0f, 1.0f / 7.0f,
                                     1.0f / 5.0f,  1.0f / 3.0f, 1.0f};
        constexpr int kRootOfHalf = 0x3F3504F3;
        const Floats size = Absolute(value);
        const Ints bits = AsInts(size);
        const Ints steps = bits - F::SplatInt(kRootOfHalf);
        // An arithmetic shift: numbers below 1 have negative exponents.
        const Ints isNegative = IsLess(steps, F::SplatInt(0));
        const Ints shifted = ShiftRight(steps, 23);
        const Ints exponent = Select(isNegative, shifted | F::SplatInt(~0x1FF), shifted);
        const Floats m = AsFloats(bits - ShiftLeft(exponent, 23));
        const Floats s = (m - F::Splat(1.0f)) / (m + F::Splat(1.0f));
        const Floats logarithm =
            ToFloats(exponent) + s * Polynomial(s * s, kSeries) * F::Splat(kTwoByLn2);
        const Floats isZero = IsLess(size, F::Splat(1.17549435e-38f));
        const Floats isInfinite = IsSame(size, F::Splat(kInfinity));
        const Floats result = Select(isZero, F::Splat(-kInfinity), logarithm);
        const Floats bounded = Select(isInfinite, F::Splat(kInfinity), result);
        return Select(IsUnequal(value, value), value, bounded);
    }

    /// Subtracts the nearest multiple of pi/2, kept as three floats of few bits so that each product is
    /// exact, and evaluates the Taylor series within -pi/4..pi/4.
    static void SinCos(Floats angle, Floats& sineOut, Floats& cosineOut)
    {
        constexpr float kSine[] = {2.7557319e-6f, -1.9841270e-4f, 8.3333333e-3f, -1.6666667e-1f,
                                   1.0f};
        constexpr float kCosine[] = {2.4801587e-5f, -1.3888889e-3f, 4.1666668e-2f, -0.5f, 1.0f};
        const Floats isUsable = IsLess(Absolute(angle), F::Splat(8388608.0f));
        const Floats held = Select(isUsable, angle, F::Splat(0.0f));
        const Ints quarter = Round(held * F::Splat(0.63661977f));
        const Floats turns = ToFloats(quarter);
        Floats rest = held - turns * F::Splat(1.5703125f);
        rest = rest - turns * F::Splat(0x1.fb4p-12f);
        rest = rest - turns * F::Splat(0x1.444p-24f);
        rest = rest - turns * F::Splat(2.5633442e-12f);
        const Floats square = rest * rest;
        const Floats sine = rest * Polynomial(square, kSine);
        const Floats cosine = Polynomial(square, kCosine);
        const Floats isOdd = AsFloats(IsEqual(quarter & F::SplatInt(1), F::SplatInt(1)));
        const Ints sineSign = ShiftLeft(quarter & F::SplatInt(2), 30);
        const Ints cosineSign = ShiftLeft((quarter + F::SplatInt(1)) & F::SplatInt(2), 30);
        sineOut = Select(isOdd, cosine, sine) ^ AsFloats(sineSign);
        cosineOut = Select(isOdd, sine, cosine) ^ AsFloats(cosineSign);
    }
};

} // namespace headless::shader
