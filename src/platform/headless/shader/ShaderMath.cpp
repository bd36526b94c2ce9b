#include "platform/headless/shader/ShaderMath.h"

#include <limits>

namespace headless::shader {

namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

/// Polynomials by Horner's rule, the highest power first.
template <size_t Count>
Lanes Polynomial(Lanes x, const float (&coefficients)[Count])
{
    Lanes sum = Splat(coefficients[0]);
    for (size_t i = 1; i < Count; ++i)
        sum = sum * x + Splat(coefficients[i]);
    return sum;
}

/// The nearest whole number; ties as the processor rounds. For |value| below 2^23.
Lanes RoundSmall(Lanes value)
{
    return ToFloats(Round(value));
}

} // namespace

Lanes IsAtLeast(Lanes a, Lanes b)
{
    return IsGreater(a, b) | IsSame(a, b);
}

Lanes IsSame(Lanes a, Lanes b)
{
    const Lanes all = AsFloats(SplatInt(-1));
    return AndNot(IsUnequal(a, b), all);
}

Lanes Reciprocal(Lanes value)
{
    return Splat(1.0f) / value;
}

Lanes ReciprocalRoot(Lanes value)
{
    return Splat(1.0f) / SquareRoot(Absolute(value));
}

/// Splits into a whole number, which becomes the exponent, and a rest within -1/2..1/2, for which the
/// series of exp(rest * ln 2) converges fast: the first term left out is below 2^-27.
Lanes Exp2(Lanes value)
{
    constexpr float kSeries[] = {1.5252733e-5f, 1.5403530e-4f, 1.3333558e-3f, 9.6181291e-3f,
                                 5.5504109e-2f, 2.4022651e-1f, 6.9314718e-1f, 1.0f};
    const Lanes held = ClampLanes(value, Splat(-150.0f), Splat(129.0f)); // NaN becomes -150
    const Lanes whole = RoundSmall(held);
    const Lanes mantissa = Polynomial(held - whole, kSeries);
    // In two steps, since 2^128 alone is no float: the rest may lead back below it.
    const IntLanes exponent = Truncate(whole);
    const IntLanes half = SplatInt(64);
    const Lanes isHigh = IsGreater(whole, Splat(63.0f));
    const IntLanes low = Select(AsInts(isHigh), exponent - half, exponent);
    const IntLanes biased = low + SplatInt(127);
    const Lanes power = AsFloats(ShiftLeft(biased, 23));
    const Lanes scaled =
        mantissa * power * Select(isHigh, Splat(18446744073709551616.0f), Splat(1.0f));
    const Lanes isTiny = IsLess(value, Splat(-126.0f));
    const Lanes result = Select(isTiny, Splat(0.0f), scaled);
    const Lanes isHuge = IsAtLeast(value, Splat(128.0f));
    const Lanes bounded = Select(isHuge, Splat(kInfinity), result);
    return Select(IsUnequal(value, value), value, bounded);
}

/// value = 2^n * m with m between the roots of 1/2 and 2. With s = (m - 1) / (m + 1) the natural
/// logarithm of m is 2 (s + s^3/3 + s^5/5 + ...), and |s| is below 0.172: the first term left out is
/// below 2^-29 of the first.
Lanes Log2(Lanes value)
{
    constexpr float kTwoByLn2 = 2.8853900817779268f;
    constexpr float kSeries[] = {1.0f / 11.0f, 1.0f / 9.0f, 1.0f / 7.0f,
                                 1.0f / 5.0f,  1.0f / 3.0f, 1.0f};
    constexpr int kRootOfHalf = 0x3F3504F3;
    const Lanes size = Absolute(value);
    const IntLanes bits = AsInts(size);
    const IntLanes steps = bits - SplatInt(kRootOfHalf);
    // An arithmetic shift: numbers below 1 have negative exponents.
    const IntLanes isNegative = IsLess(steps, SplatInt(0));
    const IntLanes shifted = ShiftRight(steps, 23);
    const IntLanes exponent = Select(isNegative, shifted | SplatInt(~0x1FF), shifted);
    const Lanes m = AsFloats(bits - ShiftLeft(exponent, 23));
    const Lanes s = (m - Splat(1.0f)) / (m + Splat(1.0f));
    const Lanes logarithm = ToFloats(exponent) + s * Polynomial(s * s, kSeries) * Splat(kTwoByLn2);
    const Lanes isZero = IsLess(size, Splat(1.17549435e-38f));
    const Lanes isInfinite = IsSame(size, Splat(kInfinity));
    const Lanes result = Select(isZero, Splat(-kInfinity), logarithm);
    const Lanes bounded = Select(isInfinite, Splat(kInfinity), result);
    return Select(IsUnequal(value, value), value, bounded);
}

/// Subtracts the nearest multiple of pi/2, kept as three floats of few bits so that each product is
/// exact, and evaluates the Taylor series within -pi/4..pi/4.
void SinCos(Lanes angle, Lanes& sineOut, Lanes& cosineOut)
{
    constexpr float kSine[] = {2.7557319e-6f, -1.9841270e-4f, 8.3333333e-3f, -1.6666667e-1f, 1.0f};
    constexpr float kCosine[] = {2.4801587e-5f, -1.3888889e-3f, 4.1666668e-2f, -0.5f, 1.0f};
    const Lanes isUsable = IsLess(Absolute(angle), Splat(8388608.0f));
    const Lanes held = Select(isUsable, angle, Splat(0.0f));
    const IntLanes quarter = Round(held * Splat(0.63661977f));
    const Lanes turns = ToFloats(quarter);
    Lanes rest = held - turns * Splat(1.5703125f);
    rest = rest - turns * Splat(0x1.fb4p-12f);
    rest = rest - turns * Splat(0x1.444p-24f);
    rest = rest - turns * Splat(2.5633442e-12f);
    const Lanes square = rest * rest;
    const Lanes sine = rest * Polynomial(square, kSine);
    const Lanes cosine = Polynomial(square, kCosine);
    const Lanes isOdd = AsFloats(IsEqual(quarter & SplatInt(1), SplatInt(1)));
    const IntLanes sineSign = ShiftLeft(quarter & SplatInt(2), 30);
    const IntLanes cosineSign = ShiftLeft((quarter + SplatInt(1)) & SplatInt(2), 30);
    sineOut = Select(isOdd, cosine, sine) ^ AsFloats(sineSign);
    cosineOut = Select(isOdd, sine, cosine) ^ AsFloats(cosineSign);
}

} // namespace headless::shader
