#pragma once

#include "platform/headless/shader/ShaderFormulas.h"

namespace headless::shader {

/// What instructions compute, for one form of lanes. Those of up to three sources take three and ignore the
/// rest.
template <typename F>
struct Arithmetic : Formulas<F> {
    using Floats = typename F::Floats;
    using Ints = typename F::Ints;
    using Formulas<F>::Exp2;
    using Formulas<F>::IsAtLeast;
    using Formulas<F>::IsSame;
    using Formulas<F>::Log2;
    using Formulas<F>::Reciprocal;
    using Formulas<F>::ReciprocalRoot;
    using Formulas<F>::SinCos;

    static Floats One() { return F::Splat(1.0f); }
    static Floats Zero() { return F::Splat(0.0f); }

    static Floats Move(Floats a, Floats, Floats) { return a; }
    static Floats Add(Floats a, Floats b, Floats) { return a + b; }
    static Floats Sub(Floats a, Floats b, Floats) { return a - b; }
    static Floats Mul(Floats a, Floats b, Floats) { return a * b; }
    static Floats Mad(Floats a, Floats b, Floats c) { return a * b + c; }
    static Floats Lesser(Floats a, Floats b, Floats) { return Min(a, b); }
    static Floats Greater(Floats a, Floats b, Floats) { return Max(a, b); }
    static Floats LessThan(Floats a, Floats b, Floats) { return IsLess(a, b) & One(); }
    static Floats AtLeast(Floats a, Floats b, Floats) { return IsAtLeast(a, b) & One(); }
    static Floats Lerp(Floats share, Floats a, Floats b) { return share * (a - b) + b; }
    static Floats Fraction(Floats a, Floats, Floats) { return a - F::Floor(a); }
    static Floats Magnitude(Floats a, Floats, Floats) { return Absolute(a); }
    static Floats Sign(Floats a, Floats, Floats)
    {
        return (IsGreater(a, Zero()) & One()) - (IsLess(a, Zero()) & One());
    }
    static Floats ChooseByHalf(Floats a, Floats b, Floats c)
    {
        return Select(IsGreater(a, F::Splat(0.5f)), b, c);
    }
    static Floats ChooseBySign(Floats a, Floats b, Floats c)
    {
        return Select(IsAtLeast(a, Zero()), b, c);
    }

    static Floats Rcp(Floats a, Floats) { return Reciprocal(a); }
    static Floats Rsq(Floats a, Floats) { return ReciprocalRoot(a); }
    static Floats Exp(Floats a, Floats) { return Exp2(a); }
    static Floats Log(Floats a, Floats) { return Log2(a); }
    static Floats Pow(Floats a, Floats b)
    {
        const Floats power = Exp2(Log2(a) * b);
        return Select(IsSame(b, Zero()), One(), power); // 0 to the power 0 is 1
    }

    static void Cross(const Floats (&a)[4], const Floats (&b)[4], Floats (&out)[4])
    {
        out[0] = a[1] * b[2] - a[2] * b[1];
        out[1] = a[2] * b[0] - a[0] * b[2];
        out[2] = a[0] * b[1] - a[1] * b[0];
        out[3] = Zero();
    }

    /// The length is that of x, y and z; a vector of length 0 becomes 0.
    static void Normalise(const Floats (&a)[4], const Floats (&)[4], Floats (&out)[4])
    {
        const Floats square = a[0] * a[0] + a[1] * a[1] + a[2] * a[2];
        const Floats scale = Select(IsGreater(square, Zero()), ReciprocalRoot(square), Zero());
        for (int i = 0; i < 4; ++i)
            out[i] = a[i] * scale;
    }

    /// Light factors from x = n.l, y = n.h and the exponent w, which is held within -127.9961..127.9961.
    static void Light(const Floats (&a)[4], const Floats (&)[4], Floats (&out)[4])
    {
        const Floats limit = F::Splat(127.9961f);
        const Floats isLit = IsGreater(a[0], Zero());
        const Floats shines = isLit & IsGreater(a[1], Zero());
        out[0] = out[3] = One();
        out[1] = Max(a[0], Zero());
        out[2] = shines & Pow(a[1], ClampLanes(a[3], Zero() - limit, limit));
    }

    static void Distance(const Floats (&a)[4], const Floats (&b)[4], Floats (&out)[4])
    {
        out[0] = One();
        out[1] = a[1] * b[1];
        out[2] = a[2];
        out[3] = b[3];
    }

    /// The cosine is in x, the sine in y.
    static void CosSin(const Floats (&a)[4], const Floats (&)[4], Floats (&out)[4])
    {
        SinCos(a[0], out[1], out[0]);
        out[2] = out[3] = Zero();
    }

    static void OldExp(const Floats (&a)[4], const Floats (&)[4], Floats (&out)[4])
    {
        const Floats whole = F::Floor(a[0]);
        out[0] = Exp2(whole);
        out[1] = a[0] - whole;
        out[2] = Exp2(a[0]);
        out[3] = One();
    }

    /// Exponent and mantissa of |x|: x = y * 2^exponent with y in 1..2.
    static void OldLog(const Floats (&a)[4], const Floats (&)[4], Floats (&out)[4])
    {
        const Ints bits = AsInts(Absolute(a[0]));
        const Floats exponent = ToFloats(ShiftRight(bits, 23) - F::SplatInt(127));
        const Floats mantissa = AsFloats((bits & F::SplatInt(0x7FFFFF)) | F::SplatInt(0x3F800000));
        const Floats whole = Log2(a[0]);
        const Floats isZero = IsLess(Absolute(a[0]), F::Splat(1.17549435e-38f));
        out[0] = Select(isZero, whole, exponent);
        out[1] = Select(isZero, One(), mantissa);
        out[2] = whole;
        out[3] = One();
    }

    static Floats RoundNearest(Floats a, Floats, Floats)
    {
        const Floats held = ClampLanes(a, F::Splat(-16384.0f), F::Splat(16384.0f));
        return ToFloats(Round(held));
    }
    static Floats RoundDown(Floats a, Floats, Floats)
    {
        return F::Floor(ClampLanes(a, F::Splat(-16384.0f), F::Splat(16384.0f)));
    }
};

} // namespace headless::shader
