#include "qsa/QSA_FaceAngles.h"

#include <emmintrin.h>

namespace {

__m128d Select(__m128d mask, __m128d yes, __m128d no)
{
    return _mm_or_pd(_mm_and_pd(mask, yes), _mm_andnot_pd(mask, no));
}

/// c[0] + x * (c[1] + x * (c[2] + ...)).
template <int number>
__m128d Polynomial(__m128d x, const double (&c)[number])
{
    __m128d sum = _mm_set1_pd(c[number - 1]);
    for (int i = number - 2; i >= 0; --i)
        sum = _mm_add_pd(_mm_mul_pd(sum, x), _mm_set1_pd(c[i]));
    return sum;
}

/// Two arc cosines at once and without a branch, for the branches of a library's version are what
/// costs: angles of a mesh are as good as random. For |x| up to 1/2 it is pi/2 - asin(x), above that
/// 2 asin(sqrt((1 - |x|) / 2)), mirrored for negative x.
__m128d Acos(__m128d x)
{
    // asin(s) = s + s * z * P(z) / Q(z) with z = s * s, for s up to 1/2: a rational minimax
    // approximation with an error below 2^-58.
    static constexpr double kP[] = {1.66666666666666657415e-01, -3.25565818622400915405e-01,
                                    2.01212532134862925881e-01, -4.00555345006794114027e-02,
                                    7.91534994289814532176e-04, 3.47933107596021167570e-05};
    static constexpr double kQ[] = {1.0, -2.40339491173441421878e+00, 2.02094576023350569471e+00,
                                    -6.88283971605453293030e-01, 7.70381505559019352791e-02};
    const __m128d kSign = _mm_set1_pd(-0.0);
    const __m128d kHalf = _mm_set1_pd(0.5);
    const __m128d kPi = _mm_set1_pd(3.14159265358979311600e+00);
    const __m128d kHalfPi = _mm_set1_pd(1.57079632679489655800e+00);

    const __m128d sign = _mm_and_pd(x, kSign);
    const __m128d size = _mm_andnot_pd(kSign, x);
    const __m128d isSmall = _mm_cmple_pd(size, kHalf);
    const __m128d rest = _mm_mul_pd(_mm_sub_pd(_mm_set1_pd(1.0), size), kHalf);
    const __m128d z = Select(isSmall, _mm_mul_pd(x, x), rest);
    const __m128d s = Select(isSmall, size, _mm_sqrt_pd(rest));
    const __m128d ratio = _mm_div_pd(_mm_mul_pd(z, Polynomial(z, kP)), Polynomial(z, kQ));
    const __m128d asin = _mm_add_pd(s, _mm_mul_pd(s, ratio));

    const __m128d small = _mm_sub_pd(kHalfPi, _mm_or_pd(asin, sign));
    const __m128d twice = _mm_add_pd(asin, asin);
    const __m128d isNegative = _mm_cmplt_pd(x, _mm_setzero_pd());
    return Select(isSmall, small, Select(isNegative, _mm_sub_pd(kPi, twice), twice));
}

__m128 Acos(__m128 x)
{
    const __m128 low = _mm_cvtpd_ps(Acos(_mm_cvtps_pd(x)));
    const __m128 high = _mm_cvtpd_ps(Acos(_mm_cvtps_pd(_mm_movehl_ps(x, x))));
    return _mm_movelh_ps(low, high);
}

__m128 Dot(__m128 ax, __m128 ay, __m128 az, __m128 bx, __m128 by, __m128 bz)
{
    return _mm_add_ps(_mm_add_ps(_mm_mul_ps(ax, bx), _mm_mul_ps(ay, by)), _mm_mul_ps(az, bz));
}

/// The edge that ends where each of the first three begins.
__m128 EdgeBefore(__m128 edges)
{
    return _mm_shuffle_ps(edges, edges, _MM_SHUFFLE(3, 1, 0, 2));
}

} // namespace

float QuickAcos(float cosine)
{
    return _mm_cvtss_f32(Acos(_mm_set1_ps(cosine)));
}

QSA_FaceAngles MeasureFace(const float (&a)[3], const float (&b)[3], const float (&c)[3])
{
    float ab[3];
    float ac[3];
    for (int i = 0; i < 3; ++i) {
        ab[i] = b[i] - a[i];
        ac[i] = c[i] - a[i];
    }
    // Lanes: the edges from a to b, b to c and c to a, and the product of two of them.
    const __m128 x = _mm_setr_ps(ab[0], c[0] - b[0], a[0] - c[0], ab[1] * ac[2] - ab[2] * ac[1]);
    const __m128 y = _mm_setr_ps(ab[1], c[1] - b[1], a[1] - c[1], ab[2] * ac[0] - ab[0] * ac[2]);
    const __m128 z = _mm_setr_ps(ab[2], c[2] - b[2], a[2] - c[2], ab[0] * ac[1] - ab[1] * ac[0]);
    const __m128 length = _mm_sqrt_ps(Dot(x, y, z, x, y, z));
    const __m128 hasLength = _mm_cmpneq_ps(length, _mm_setzero_ps()); // no number has one

    QSA_FaceAngles result;
    if ((_mm_movemask_ps(hasLength) & 8) == 0)
        return result;
    result.isFace = true;
    // An edge whose square is too small for a float stays the zero vector.
    const __m128 ux = _mm_and_ps(_mm_div_ps(x, length), hasLength);
    const __m128 uy = _mm_and_ps(_mm_div_ps(y, length), hasLength);
    const __m128 uz = _mm_and_ps(_mm_div_ps(z, length), hasLength);

    // The way back along the edge before makes the corner's other side.
    const __m128 kSign = _mm_set1_ps(-0.0f);
    const __m128 product =
        Dot(ux, uy, uz, _mm_xor_ps(EdgeBefore(ux), kSign), _mm_xor_ps(EdgeBefore(uy), kSign),
            _mm_xor_ps(EdgeBefore(uz), kSign));
    // Rounding may carry the product of two unit vectors beyond 1, where there is no arc cosine. In
    // this order of the operands what is no number stays none.
    const __m128 cosine = _mm_min_ps(_mm_set1_ps(1.0f), _mm_max_ps(_mm_set1_ps(-1.0f), product));
    alignas(16) float angles[4];
    _mm_store_ps(angles, Acos(cosine));
    for (int i = 0; i < 3; ++i)
        result.angle[i] = angles[i];
    alignas(16) float lanes[4];
    _mm_store_ps(lanes, ux);
    result.normal[0] = lanes[3];
    _mm_store_ps(lanes, uy);
    result.normal[1] = lanes[3];
    _mm_store_ps(lanes, uz);
    result.normal[2] = lanes[3];
    return result;
}
