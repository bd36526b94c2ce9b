#pragma once

/// Arc cosines without branches: the angles of a mesh are as good as random, so branches make up most of
/// the cost of a library version. `Lanes` gives the type of some doubles at once and how to fill one. A
/// template for one source each, so that none shares code with a source for other processors.
template <class Lanes>
struct QSA_ArcCosine {
    using Doubles = typename Lanes::Doubles;

    /// c[0] + x * (c[1] + x * (c[2] + ...)).
    template <int number>
    static Doubles Polynomial(Doubles x, const double (&c)[number])
    {
        Doubles sum = Lanes::Splat(c[number - 1]);
        for (int i = number - 2; i >= 0; --i)
            sum = sum * x + Lanes::Splat(c[i]);
        return sum;
    }

    /// For |x| up to 1/2 it is pi/2 - asin(x), above that 2 asin(sqrt((1 - |x|) / 2)), mirrored for
    /// negative x.
    static Doubles Of(Doubles x)
    {
        // asin(s) = s + s * z * P(z) / Q(z) with z = s * s, for s up to 1/2: a rational minimax
        // approximation with an error below 2^-58.
        static constexpr double kP[] = {1.66666666666666657415e-01, -3.25565818622400915405e-01,
                                        2.01212532134862925881e-01, -4.00555345006794114027e-02,
                                        7.91534994289814532176e-04, 3.47933107596021167570e-05};
        static constexpr double kQ[] = {1.0, -2.40339491173441421878e+00,
                                        2.02094576023350569471e+00, -6.88283971605453293030e-01,
                                        7.70381505559019352791e-02};
        const Doubles kSign = Lanes::Splat(-0.0);
        const Doubles kHalf = Lanes::Splat(0.5);
        const Doubles kPi = Lanes::Splat(3.14159265358979311600e+00);
        const Doubles kHalfPi = Lanes::Splat(1.57079632679489655800e+00);

        const Doubles sign = x & kSign;
        const Doubles size = AndNot(kSign, x);
        const Doubles isSmall = IsLessOrEqual(size, kHalf);
        const Doubles rest = (Lanes::Splat(1.0) - size) * kHalf;
        const Doubles z = Select(isSmall, x * x, rest);
        const Doubles s = Select(isSmall, size, SquareRoot(rest));
        const Doubles ratio = z * Polynomial(z, kP) / Polynomial(z, kQ);
        const Doubles asin = s + s * ratio;

        const Doubles small = kHalfPi - (asin | sign);
        const Doubles twice = asin + asin;
        const Doubles isNegative = IsLess(x, Lanes::Splat(0.0));
        return Select(isSmall, small, Select(isNegative, kPi - twice, twice));
    }
};
