#include "qsa/QSA_FaceAngles.h"

#include <algorithm>

#include "platform/Simd.h"

using namespace simd;

namespace {

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

void QSA_FaceAngles::Measure(size_t i, const float (&a)[3], const float (&b)[3],
                             const float (&c)[3])
{
    float ab[3];
    float ac[3];
    for (int k = 0; k < 3; ++k) {
        ab[k] = b[k] - a[k];
        ac[k] = c[k] - a[k];
    }
    // Lanes: the edges from a to b, b to c and c to a, and the cross product of ab and ac.
    const Floats4 x = MakeFloats(ab[0], c[0] - b[0], a[0] - c[0], ab[1] * ac[2] - ab[2] * ac[1]);
    const Floats4 y = MakeFloats(ab[1], c[1] - b[1], a[1] - c[1], ab[2] * ac[0] - ab[0] * ac[2]);
    const Floats4 z = MakeFloats(ab[2], c[2] - b[2], a[2] - c[2], ab[0] * ac[1] - ab[1] * ac[0]);
    const Floats4 length = SquareRoot(Dot(x, y, z, x, y, z));
    const Floats4 hasLength = IsUnequal(length, Splat(0.0f)); // true for NaN as well

    isFace[i] = (LaneBits(hasLength) & 8) != 0;
    if (!isFace[i])
        return;
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
    alignas(16) float lanes[4];
    StoreFloats(lanes, cosine);
    std::copy_n(lanes, 3, angles + i * 3);
    StoreFloats(lanes, ux);
    normal[i][0] = lanes[3];
    StoreFloats(lanes, uy);
    normal[i][1] = lanes[3];
    StoreFloats(lanes, uz);
    normal[i][2] = lanes[3];
}
