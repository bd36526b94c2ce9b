#pragma once

#include <immintrin.h>

#include <cstdint>

// Eight floats, eight integers or four doubles at once, for processors with AVX2. Each lane gives the same bits as the
// operation of the same name in SimdPlain.h. Only sources that are compiled for AVX2 may include this; the
// processor has to be asked before their code runs. Everything here is local to the source that includes
// it, because the linker keeps one copy of a shared function, and that one must run everywhere.

namespace simd_avx2 {

struct Floats8 {
    __m256 lanes;
};
struct Ints8 {
    __m256i lanes;
};

static inline Floats8 Splat8(float value)
{
    return {_mm256_set1_ps(value)};
}

static inline Floats8 MakeFloats8(float a, float b, float c, float d, float e, float f, float g,
                                  float h)
{
    return {_mm256_setr_ps(a, b, c, d, e, f, g, h)};
}

/// At any alignment, like StoreFloats.
static inline Floats8 LoadFloats8(const float* at)
{
    return {_mm256_loadu_ps(at)};
}

static inline void StoreFloats(float* at, Floats8 a)
{
    _mm256_storeu_ps(at, a.lanes);
}

static inline Floats8 operator+(Floats8 a, Floats8 b)
{
    return {_mm256_add_ps(a.lanes, b.lanes)};
}

static inline Floats8 operator-(Floats8 a, Floats8 b)
{
    return {_mm256_sub_ps(a.lanes, b.lanes)};
}

static inline Floats8 operator*(Floats8 a, Floats8 b)
{
    return {_mm256_mul_ps(a.lanes, b.lanes)};
}

static inline Floats8 operator/(Floats8 a, Floats8 b)
{
    return {_mm256_div_ps(a.lanes, b.lanes)};
}

static inline Floats8 operator&(Floats8 a, Floats8 b)
{
    return {_mm256_and_ps(a.lanes, b.lanes)};
}

static inline Floats8 operator|(Floats8 a, Floats8 b)
{
    return {_mm256_or_ps(a.lanes, b.lanes)};
}

static inline Floats8 operator^(Floats8 a, Floats8 b)
{
    return {_mm256_xor_ps(a.lanes, b.lanes)};
}

static inline Floats8 AndNot(Floats8 mask, Floats8 a)
{
    return {_mm256_andnot_ps(mask.lanes, a.lanes)};
}

static inline Floats8 Select(Floats8 mask, Floats8 a, Floats8 b)
{
    return {_mm256_blendv_ps(b.lanes, a.lanes, mask.lanes)};
}

static inline Floats8 Absolute(Floats8 a)
{
    return {_mm256_andnot_ps(_mm256_set1_ps(-0.0f), a.lanes)};
}

static inline Floats8 Min(Floats8 a, Floats8 b)
{
    return {_mm256_min_ps(a.lanes, b.lanes)};
}

static inline Floats8 Max(Floats8 a, Floats8 b)
{
    return {_mm256_max_ps(a.lanes, b.lanes)};
}

static inline Floats8 SquareRoot(Floats8 a)
{
    return {_mm256_sqrt_ps(a.lanes)};
}

static inline Floats8 IsLess(Floats8 a, Floats8 b)
{
    return {_mm256_cmp_ps(a.lanes, b.lanes, _CMP_LT_OS)};
}

static inline Floats8 IsGreater(Floats8 a, Floats8 b)
{
    return {_mm256_cmp_ps(a.lanes, b.lanes, _CMP_GT_OS)};
}

static inline Floats8 IsUnequal(Floats8 a, Floats8 b)
{
    return {_mm256_cmp_ps(a.lanes, b.lanes, _CMP_NEQ_UQ)};
}

static inline Floats8 EvenLanes(Floats8 a)
{
    return {_mm256_moveldup_ps(a.lanes)};
}

static inline Floats8 OddLanes(Floats8 a)
{
    return {_mm256_movehdup_ps(a.lanes)};
}

/// The last four lanes less the first four, twice.
static inline Floats8 HalvesDifference(Floats8 a)
{
    const __m256 first = _mm256_permute2f128_ps(a.lanes, a.lanes, 0x00);
    const __m256 last = _mm256_permute2f128_ps(a.lanes, a.lanes, 0x11);
    return {_mm256_sub_ps(last, first)};
}

/// Adding 0 turns the -0 that rounding gives for itself into 0.
static inline Floats8 Floor(Floats8 a)
{
    return {_mm256_add_ps(_mm256_floor_ps(a.lanes), _mm256_setzero_ps())};
}

static inline Ints8 SplatInt8(int32_t value)
{
    return {_mm256_set1_epi32(value)};
}

static inline Ints8 MakeInts8(int a, int b, int c, int d, int e, int f, int g, int h)
{
    return {_mm256_setr_epi32(a, b, c, d, e, f, g, h)};
}

/// Four integers from each of two places.
static inline Ints8 LoadInts8(const void* low, const void* high)
{
    return {
        _mm256_loadu2_m128i(static_cast<const __m128i*>(high), static_cast<const __m128i*>(low))};
}

static inline void StoreInts(void* low, void* high, Ints8 a)
{
    _mm256_storeu2_m128i(static_cast<__m128i*>(high), static_cast<__m128i*>(low), a.lanes);
}

static inline Ints8 operator+(Ints8 a, Ints8 b)
{
    return {_mm256_add_epi32(a.lanes, b.lanes)};
}

static inline Ints8 operator-(Ints8 a, Ints8 b)
{
    return {_mm256_sub_epi32(a.lanes, b.lanes)};
}

static inline Ints8 operator&(Ints8 a, Ints8 b)
{
    return {_mm256_and_si256(a.lanes, b.lanes)};
}

static inline Ints8 operator|(Ints8 a, Ints8 b)
{
    return {_mm256_or_si256(a.lanes, b.lanes)};
}

static inline Ints8 operator^(Ints8 a, Ints8 b)
{
    return {_mm256_xor_si256(a.lanes, b.lanes)};
}

static inline Ints8 Select(Ints8 mask, Ints8 a, Ints8 b)
{
    return {_mm256_or_si256(_mm256_and_si256(mask.lanes, a.lanes),
                            _mm256_andnot_si256(mask.lanes, b.lanes))};
}

static inline Ints8 MultiplyInts(Ints8 a, Ints8 b)
{
    return {_mm256_mullo_epi32(a.lanes, b.lanes)};
}

static inline Ints8 ShiftLeft(Ints8 a, int bits)
{
    return {_mm256_slli_epi32(a.lanes, bits)};
}

static inline Ints8 ShiftRight(Ints8 a, int bits)
{
    return {_mm256_srli_epi32(a.lanes, bits)};
}

static inline Ints8 IsLess(Ints8 a, Ints8 b)
{
    return {_mm256_cmpgt_epi32(b.lanes, a.lanes)};
}

static inline Ints8 IsGreater(Ints8 a, Ints8 b)
{
    return {_mm256_cmpgt_epi32(a.lanes, b.lanes)};
}

static inline Ints8 IsEqual(Ints8 a, Ints8 b)
{
    return {_mm256_cmpeq_epi32(a.lanes, b.lanes)};
}

static inline Floats8 ToFloats(Ints8 a)
{
    return {_mm256_cvtepi32_ps(a.lanes)};
}

static inline Ints8 Truncate(Floats8 a)
{
    return {_mm256_cvttps_epi32(a.lanes)};
}

static inline Ints8 Round(Floats8 a)
{
    return {_mm256_cvtps_epi32(a.lanes)};
}

static inline Floats8 AsFloats(Ints8 bits)
{
    return {_mm256_castsi256_ps(bits.lanes)};
}

static inline Ints8 AsInts(Floats8 bits)
{
    return {_mm256_castps_si256(bits.lanes)};
}

static inline int LaneBits(Floats8 mask)
{
    return _mm256_movemask_ps(mask.lanes);
}

static inline int LaneBits(Ints8 mask)
{
    return LaneBits(AsFloats(mask));
}

static inline Ints8 SplatHalf8(int16_t value)
{
    return {_mm256_set1_epi16(value)};
}

static inline Ints8 AddHalves(Ints8 a, Ints8 b)
{
    return {_mm256_add_epi16(a.lanes, b.lanes)};
}

static inline Ints8 SubtractHalves(Ints8 a, Ints8 b)
{
    return {_mm256_sub_epi16(a.lanes, b.lanes)};
}

static inline Ints8 MultiplyHalves(Ints8 a, Ints8 b)
{
    return {_mm256_mullo_epi16(a.lanes, b.lanes)};
}

static inline Ints8 ShiftHalvesLeft(Ints8 a, int bits)
{
    return {_mm256_slli_epi16(a.lanes, bits)};
}

static inline Ints8 ShiftHalvesRight(Ints8 a, int bits)
{
    return {_mm256_srli_epi16(a.lanes, bits)};
}

/// The words at eight places.
static inline Ints8 Gather(const uint32_t* words, Ints8 places)
{
    return {_mm256_i32gather_epi32(reinterpret_cast<const int*>(words), places.lanes, 4)};
}

/// The words at eight places, and those that follow them.
static inline void GatherPairs(const uint32_t* words, Ints8 places, Ints8& firstOut, Ints8& nextOut)
{
    const auto* pairs = reinterpret_cast<const long long*>(words);
    const auto pairsAt = [pairs](__m128i four) {
        return _mm256_castsi256_ps(_mm256_i32gather_epi64(pairs, four, 4));
    };
    const __m256 low = pairsAt(_mm256_castsi256_si128(places.lanes));
    const __m256 high = pairsAt(_mm256_extracti128_si256(places.lanes, 1));
    const auto inOrder = [](__m256 mixed) { // lanes 0, 1, 4, 5, 2, 3, 6, 7
        return Ints8{_mm256_permute4x64_epi64(_mm256_castps_si256(mixed), 0xD8)};
    };
    firstOut = inOrder(_mm256_shuffle_ps(low, high, 0x88));
    nextOut = inOrder(_mm256_shuffle_ps(low, high, 0xDD));
}

/// Four unsigned 16-bit integers from each of two places.
static inline Ints8 LoadFourHalvesTwice(const void* low, const void* high)
{
    const __m128i a = _mm_loadl_epi64(static_cast<const __m128i*>(low));
    const __m128i b = _mm_loadl_epi64(static_cast<const __m128i*>(high));
    return {_mm256_cvtepu16_epi32(_mm_unpacklo_epi64(a, b))};
}

/// Four doubles. As a mask, all bits of a lane are set or none.
struct Doubles4 {
    __m256d lanes;
};

static inline Doubles4 SplatDouble4(double value)
{
    return {_mm256_set1_pd(value)};
}

/// Four floats, at any alignment.
static inline Doubles4 LoadAsDoubles(const float* at)
{
    return {_mm256_cvtps_pd(_mm_loadu_ps(at))};
}

static inline void StoreAsFloats(float* at, Doubles4 a)
{
    _mm_storeu_ps(at, _mm256_cvtpd_ps(a.lanes));
}

static inline Doubles4 operator+(Doubles4 a, Doubles4 b)
{
    return {_mm256_add_pd(a.lanes, b.lanes)};
}

static inline Doubles4 operator-(Doubles4 a, Doubles4 b)
{
    return {_mm256_sub_pd(a.lanes, b.lanes)};
}

static inline Doubles4 operator*(Doubles4 a, Doubles4 b)
{
    return {_mm256_mul_pd(a.lanes, b.lanes)};
}

static inline Doubles4 operator/(Doubles4 a, Doubles4 b)
{
    return {_mm256_div_pd(a.lanes, b.lanes)};
}

static inline Doubles4 operator&(Doubles4 a, Doubles4 b)
{
    return {_mm256_and_pd(a.lanes, b.lanes)};
}

static inline Doubles4 operator|(Doubles4 a, Doubles4 b)
{
    return {_mm256_or_pd(a.lanes, b.lanes)};
}

static inline Doubles4 AndNot(Doubles4 mask, Doubles4 a)
{
    return {_mm256_andnot_pd(mask.lanes, a.lanes)};
}

static inline Doubles4 Select(Doubles4 mask, Doubles4 a, Doubles4 b)
{
    return (mask & a) | AndNot(mask, b);
}

static inline Doubles4 SquareRoot(Doubles4 a)
{
    return {_mm256_sqrt_pd(a.lanes)};
}

static inline Doubles4 IsLess(Doubles4 a, Doubles4 b)
{
    return {_mm256_cmp_pd(a.lanes, b.lanes, _CMP_LT_OS)};
}

static inline Doubles4 IsLessOrEqual(Doubles4 a, Doubles4 b)
{
    return {_mm256_cmp_pd(a.lanes, b.lanes, _CMP_LE_OS)};
}

} // namespace simd_avx2
