#pragma once

#include <emmintrin.h>

#include <cstdint>

// The operations of platform/Simd.h on x86 processors. SimdPlain.h describes each of them.

namespace simd_sse2 {

struct Floats4 {
    __m128 lanes;
};
struct Ints4 {
    __m128i lanes;
};
struct Doubles2 {
    __m128d lanes;
};

inline Floats4 Splat(float value)
{
    return {_mm_set1_ps(value)};
}

inline Floats4 MakeFloats(float first, float second, float third, float fourth)
{
    return {_mm_setr_ps(first, second, third, fourth)};
}

inline Floats4 LoadFloats(const float* aligned)
{
    return {_mm_load_ps(aligned)};
}

inline void StoreFloats(float* aligned, Floats4 a)
{
    _mm_store_ps(aligned, a.lanes);
}

inline float FirstLane(Floats4 a)
{
    return _mm_cvtss_f32(a.lanes);
}

inline Floats4 operator+(Floats4 a, Floats4 b)
{
    return {_mm_add_ps(a.lanes, b.lanes)};
}

inline Floats4 operator-(Floats4 a, Floats4 b)
{
    return {_mm_sub_ps(a.lanes, b.lanes)};
}

inline Floats4 operator*(Floats4 a, Floats4 b)
{
    return {_mm_mul_ps(a.lanes, b.lanes)};
}

inline Floats4 operator/(Floats4 a, Floats4 b)
{
    return {_mm_div_ps(a.lanes, b.lanes)};
}

inline Floats4 operator&(Floats4 a, Floats4 b)
{
    return {_mm_and_ps(a.lanes, b.lanes)};
}

inline Floats4 operator|(Floats4 a, Floats4 b)
{
    return {_mm_or_ps(a.lanes, b.lanes)};
}

inline Floats4 operator^(Floats4 a, Floats4 b)
{
    return {_mm_xor_ps(a.lanes, b.lanes)};
}

inline Floats4 AndNot(Floats4 mask, Floats4 a)
{
    return {_mm_andnot_ps(mask.lanes, a.lanes)};
}

inline Floats4 Select(Floats4 mask, Floats4 a, Floats4 b)
{
    return (mask & a) | AndNot(mask, b);
}

inline Floats4 Absolute(Floats4 a)
{
    return AndNot(Splat(-0.0f), a);
}

inline Floats4 Min(Floats4 a, Floats4 b)
{
    return {_mm_min_ps(a.lanes, b.lanes)};
}

inline Floats4 Max(Floats4 a, Floats4 b)
{
    return {_mm_max_ps(a.lanes, b.lanes)};
}

inline Floats4 SquareRoot(Floats4 a)
{
    return {_mm_sqrt_ps(a.lanes)};
}

inline Floats4 IsLess(Floats4 a, Floats4 b)
{
    return {_mm_cmplt_ps(a.lanes, b.lanes)};
}

inline Floats4 IsGreater(Floats4 a, Floats4 b)
{
    return {_mm_cmpgt_ps(a.lanes, b.lanes)};
}

inline Floats4 IsUnequal(Floats4 a, Floats4 b)
{
    return {_mm_cmpneq_ps(a.lanes, b.lanes)};
}

inline int LaneBits(Floats4 mask)
{
    return _mm_movemask_ps(mask.lanes);
}

inline Floats4 TurnFirstThree(Floats4 a)
{
    return {_mm_shuffle_ps(a.lanes, a.lanes, _MM_SHUFFLE(3, 1, 0, 2))};
}

inline Floats4 EvenLanes(Floats4 a)
{
    return {_mm_shuffle_ps(a.lanes, a.lanes, _MM_SHUFFLE(2, 2, 0, 0))};
}

inline Floats4 OddLanes(Floats4 a)
{
    return {_mm_shuffle_ps(a.lanes, a.lanes, _MM_SHUFFLE(3, 3, 1, 1))};
}

inline Ints4 SplatInt(int32_t value)
{
    return {_mm_set1_epi32(value)};
}

inline Ints4 MakeInts(int32_t first, int32_t second, int32_t third, int32_t fourth)
{
    return {_mm_setr_epi32(first, second, third, fourth)};
}

inline Ints4 LoadInts(const void* at)
{
    return {_mm_loadu_si128(static_cast<const __m128i*>(at))};
}

inline void StoreInts(void* at, Ints4 a)
{
    _mm_storeu_si128(static_cast<__m128i*>(at), a.lanes);
}

inline Ints4 LoadFourHalves(const void* at)
{
    return {
        _mm_unpacklo_epi16(_mm_loadl_epi64(static_cast<const __m128i*>(at)), _mm_setzero_si128())};
}

inline int32_t FirstLane(Ints4 a)
{
    return _mm_cvtsi128_si32(a.lanes);
}

inline Ints4 operator+(Ints4 a, Ints4 b)
{
    return {_mm_add_epi32(a.lanes, b.lanes)};
}

inline Ints4 operator-(Ints4 a, Ints4 b)
{
    return {_mm_sub_epi32(a.lanes, b.lanes)};
}

inline Ints4 operator&(Ints4 a, Ints4 b)
{
    return {_mm_and_si128(a.lanes, b.lanes)};
}

inline Ints4 operator|(Ints4 a, Ints4 b)
{
    return {_mm_or_si128(a.lanes, b.lanes)};
}

inline Ints4 operator^(Ints4 a, Ints4 b)
{
    return {_mm_xor_si128(a.lanes, b.lanes)};
}

inline Ints4 Select(Ints4 mask, Ints4 a, Ints4 b)
{
    return {
        _mm_or_si128(_mm_and_si128(mask.lanes, a.lanes), _mm_andnot_si128(mask.lanes, b.lanes))};
}

inline Ints4 ShiftLeft(Ints4 a, int bits)
{
    return {_mm_slli_epi32(a.lanes, bits)};
}

inline Ints4 ShiftRight(Ints4 a, int bits)
{
    return {_mm_srli_epi32(a.lanes, bits)};
}

inline Ints4 IsLess(Ints4 a, Ints4 b)
{
    return {_mm_cmplt_epi32(a.lanes, b.lanes)};
}

inline Ints4 IsGreater(Ints4 a, Ints4 b)
{
    return {_mm_cmpgt_epi32(a.lanes, b.lanes)};
}

inline Ints4 IsEqual(Ints4 a, Ints4 b)
{
    return {_mm_cmpeq_epi32(a.lanes, b.lanes)};
}

inline int LaneBits(Ints4 mask)
{
    return _mm_movemask_ps(_mm_castsi128_ps(mask.lanes));
}

inline Floats4 ToFloats(Ints4 a)
{
    return {_mm_cvtepi32_ps(a.lanes)};
}

inline Ints4 Truncate(Floats4 a)
{
    return {_mm_cvttps_epi32(a.lanes)};
}

inline Ints4 Round(Floats4 a)
{
    return {_mm_cvtps_epi32(a.lanes)};
}

inline Floats4 AsFloats(Ints4 bits)
{
    return {_mm_castsi128_ps(bits.lanes)};
}

inline Ints4 AsInts(Floats4 bits)
{
    return {_mm_castps_si128(bits.lanes)};
}

inline Ints4 SplatHalf(int16_t value)
{
    return {_mm_set1_epi16(value)};
}

inline Ints4 AddHalves(Ints4 a, Ints4 b)
{
    return {_mm_add_epi16(a.lanes, b.lanes)};
}

inline Ints4 SubtractHalves(Ints4 a, Ints4 b)
{
    return {_mm_sub_epi16(a.lanes, b.lanes)};
}

inline Ints4 MultiplyHalves(Ints4 a, Ints4 b)
{
    return {_mm_mullo_epi16(a.lanes, b.lanes)};
}

inline Ints4 ShiftHalvesLeft(Ints4 a, int bits)
{
    return {_mm_slli_epi16(a.lanes, bits)};
}

inline Ints4 ShiftHalvesRight(Ints4 a, int bits)
{
    return {_mm_srli_epi16(a.lanes, bits)};
}

inline Ints4 SplatByte(char value)
{
    return {_mm_set1_epi8(value)};
}

inline Ints4 AreBytesEqual(Ints4 a, Ints4 b)
{
    return {_mm_cmpeq_epi8(a.lanes, b.lanes)};
}

inline Ints4 MinBytes(Ints4 a, Ints4 b)
{
    return {_mm_min_epu8(a.lanes, b.lanes)};
}

inline Ints4 MaxBytes(Ints4 a, Ints4 b)
{
    return {_mm_max_epu8(a.lanes, b.lanes)};
}

inline uint32_t ByteBits(Ints4 mask)
{
    return static_cast<uint32_t>(_mm_movemask_epi8(mask.lanes));
}

inline Ints4 LoadBytes(const void* firstEight, const void* lastEight)
{
    const __m128i first = _mm_loadl_epi64(static_cast<const __m128i*>(firstEight));
    return {_mm_unpacklo_epi64(first, _mm_loadl_epi64(static_cast<const __m128i*>(lastEight)))};
}

inline Ints4 NextBytes(Ints4 a)
{
    return {_mm_slli_epi64(a.lanes, 8)};
}

inline Ints4 JoinDigits(Ints4 firstTwo, Ints4 lastTwo)
{
    const auto joinFours = [](__m128i digits) {
        const __m128i tens =
            _mm_mullo_epi16(_mm_and_si128(digits, _mm_set1_epi16(0xFF)), _mm_set1_epi16(10));
        const __m128i pairs = _mm_add_epi16(tens, _mm_srli_epi16(digits, 8));
        return _mm_madd_epi16(pairs, _mm_set1_epi32(100 + (1 << 16)));
    };
    const __m128i fours = _mm_packs_epi32(joinFours(firstTwo.lanes), joinFours(lastTwo.lanes));
    return {_mm_madd_epi16(fours, _mm_set1_epi32(10000 + (1 << 16)))};
}

inline Doubles2 SplatDouble(double value)
{
    return {_mm_set1_pd(value)};
}

inline Doubles2 operator+(Doubles2 a, Doubles2 b)
{
    return {_mm_add_pd(a.lanes, b.lanes)};
}

inline Doubles2 operator-(Doubles2 a, Doubles2 b)
{
    return {_mm_sub_pd(a.lanes, b.lanes)};
}

inline Doubles2 operator*(Doubles2 a, Doubles2 b)
{
    return {_mm_mul_pd(a.lanes, b.lanes)};
}

inline Doubles2 operator/(Doubles2 a, Doubles2 b)
{
    return {_mm_div_pd(a.lanes, b.lanes)};
}

inline Doubles2 operator&(Doubles2 a, Doubles2 b)
{
    return {_mm_and_pd(a.lanes, b.lanes)};
}

inline Doubles2 operator|(Doubles2 a, Doubles2 b)
{
    return {_mm_or_pd(a.lanes, b.lanes)};
}

inline Doubles2 AndNot(Doubles2 mask, Doubles2 a)
{
    return {_mm_andnot_pd(mask.lanes, a.lanes)};
}

inline Doubles2 Select(Doubles2 mask, Doubles2 a, Doubles2 b)
{
    return (mask & a) | AndNot(mask, b);
}

inline Doubles2 SquareRoot(Doubles2 a)
{
    return {_mm_sqrt_pd(a.lanes)};
}

inline Doubles2 IsLess(Doubles2 a, Doubles2 b)
{
    return {_mm_cmplt_pd(a.lanes, b.lanes)};
}

inline Doubles2 IsLessOrEqual(Doubles2 a, Doubles2 b)
{
    return {_mm_cmple_pd(a.lanes, b.lanes)};
}

inline Doubles2 FirstTwo(Floats4 a)
{
    return {_mm_cvtps_pd(a.lanes)};
}

inline Doubles2 LastTwo(Floats4 a)
{
    return {_mm_cvtps_pd(_mm_movehl_ps(a.lanes, a.lanes))};
}

inline Floats4 ToFloats(Doubles2 firstTwo, Doubles2 lastTwo)
{
    return {_mm_movelh_ps(_mm_cvtpd_ps(firstTwo.lanes), _mm_cvtpd_ps(lastTwo.lanes))};
}

} // namespace simd_sse2
