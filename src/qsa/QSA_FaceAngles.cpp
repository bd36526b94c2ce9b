#include "qsa/QSA_FaceAngles.h"

#include "platform/Simd.h"

using namespace simd;

namespace {

/// c[0] + x * (c[1] + x * (c[2] + ...)).
template <int number>
Doubles2 Polynomial(Doubles2 x, const double (&c)[number])
{
    Doubles2 sum = SplatDouble(c[number - 1]);
    for (int i = number - 2; i >= 0; --i)
        sum = sum * x + SplatDouble(c[i]);
    return sum;
}

/// Two arc cosines at once and without branches: the angles of a mesh are as good as random, so
/// branches make up most of the cost of a library version. For |x| up to 1/2 it is pi/2 - asin(x),
/// above that 2 asin(sqrt((1 - |x|) / 2)), mirrored for negative x.
Doubles2 Acos(Doubles2 x)
{
    // asin(s) = s + s * z * P(z) / Q(z) with z = s * s, for s up to 1/2: a rational minimax
    // approximation with an error below 2^-58.
    static constexpr double kP[] = {1.66666666666666657415e-01, -3.25565818622400915405e-01,
                                    2.01212532134862925881e-01, -4.00555345006794114027e-02,
                                    7.91534994289814532176e-04, 3.47933107596021167570e-05};
    static constexpr double kQ[] = {1.0, -2.40339491173441421878e+00, 2.02094576023350569471e+00,
                                    -6.88283971605453293030e-01, 7.70381505559019352791e-02};
    const Doubles2 kSign = SplatDouble(-0.0);
    const Doubles2 kHalf = SplatDouble(0.5);
    const Doubles2 kPi = SplatDouble(3.14159265358979311600e+00);
    const Doubles2 kHalfPi = SplatDouble(1.57079632679489655800e+00);

    const Doubles2 sign = x & kSign;
    const Doubles2 size = AndNot(kSign, x);
    const Doubles2 isSmall = IsLessOrEqual(size, kHalf);
    const Doubles2 rest = (SplatDouble(1.0) - size) * kHalf;
    const Doubles2 z = Select(isSmall, x * x, rest);
    const Doubles2 s = Select(isSmall, size, SquareRoot(rest));
    const Doubles2 ratio = z * Polynomial(z, kP) / Polynomial(z, kQ);
    const Doubles2 asin = s + s * ratio;

    const Doubles2 small = kHalfPi - (asin | sign);
    const Doubles2 twice = asin + asin;
    const Doubles2 isNegative = IsLess(x, SplatDouble(0.0));
    return Select(isSmall, small, Select(isNegative, kPi - twice, twice));
}

Floats4 Acos(Floats4 x)
{
    return ToFloats(Acos(FirstTwo(x)), Acos(LastTwo(x)));
}

Floats4 Dot(Floats4 ax, Floats4 ay, Floats4 az, Floats4 bx, Floats4 by, Floats4 bz)
{
    return ax * bx + ay * by + az * bz;
}

/// For each of the first three edges, the edge that ends where it begins.
Floats4 EdgeBefore(Floats4 edges)
{
    return TurnFirstThree(edges);
}

} // namespace

float QuickAcos(float cosine)
{
    return FirstLane(Acos(Splat(cosine)));
}

QSA_FaceAngles MeasureFace(const float (&a)[3], const float (&b)[3], const float (&c)[3])
{
    float ab[3];
    float ac[3];
    for (int i = 0; i < 3; ++i) {
        ab[i] = b[i] - a[i];
        ac[i] = c[i] - a[i];
    }
    // Lanes: the edges from a to b, b to c and c to a, and the cross product of ab and ac.
    const Floats4 x = MakeFloats(ab[0], c[0] - b[0], a[0] - c[0], ab[1] * ac[2] - ab[2] * ac[1]);
    const Floats4 y = MakeFloats(ab[1], c[1] - b[1], a[1] - c[1], ab[2] * ac[0] - ab[0] * ac[2]);
    const Floats4 z = MakeFloats(ab[2], c[2] - b[2], a[2] - c[2], ab[0] * ac[1] - ab[1] * ac[0]);
    const Floats4 length = SquareRoot(Dot(x, y, z, x, y, z));
    const Floats4 hasLength = IsUnequal(length, Splat(0.0f)); // true for NaN as well

    QSA_FaceAngles result;
    if ((LaneBits(hasLength) & 8) == 0)
        return result;
    result.isFace = true;
    // An edge whose squared length underflows stays the zero vector.
    const Floats4 ux = (x / length) & hasLength;
    const Floats4 uy = (y / length) & hasLength;
    const Floats4 uz = (z / length) & hasLength;

    // The other side of each corner is the previous edge, reversed.
    const Floats4 kSign = Splat(-0.0f);
    const Floats4 product =
        Dot(ux, uy, uz, EdgeBefore(ux) ^ kSign, EdgeBefore(uy) ^ kSign, EdgeBefore(uz) ^ kSign);
    // Rounding can take the dot product of two unit vectors beyond 1, where the arc cosine is
    // undefined. With the operands in this order NaN stays NaN.
    const Floats4 cosine = Min(Splat(1.0f), Max(Splat(-1.0f), product));
    alignas(16) float angles[4];
    StoreFloats(angles, Acos(cosine));
    for (int i = 0; i < 3; ++i)
        result.angle[i] = angles[i];
    alignas(16) float lanes[4];
    StoreFloats(lanes, ux);
    result.normal[0] = lanes[3];
    StoreFloats(lanes, uy);
    result.normal[1] = lanes[3];
    StoreFloats(lanes, uz);
    result.normal[2] = lanes[3];
    return result;
}
