#pragma once

#include "platform/SimdAvx2.h"
#include "platform/headless/d3d9/LaneMath.h"

#include <cstddef>

namespace headless {

/// Four pixels of each of two rows, one below the other: small triangles have few pixels in a row. See
/// FourLanes.inc for each function.
struct EightLanes {
    using Floats = simd_avx2::Floats8;
    using Ints = simd_avx2::Ints8;
    static constexpr int kCount = 8;
    static constexpr int kRows = 2;

    static Floats Splat(float value) { return simd_avx2::Splat8(value); }
    static Ints SplatInt(int value) { return simd_avx2::SplatInt8(value); }
    static Ints SplatHalf(int16_t value) { return simd_avx2::SplatHalf8(value); }
    static Floats Load(const float* at) { return simd_avx2::LoadFloats8(at); }
    static void Store(float* at, Floats a) { simd_avx2::StoreFloats(at, a); }
    static Ints LoadInts(const int32_t* at) { return simd_avx2::LoadInts8(at, at + 4); }
    static void Store(int32_t* at, Ints a) { simd_avx2::StoreInts(at, at + 4, a); }

    static Floats Columns()
    {
        return simd_avx2::MakeFloats8(0.0f, 1.0f, 2.0f, 3.0f, 0.0f, 1.0f, 2.0f, 3.0f);
    }
    static Ints WholeColumns() { return simd_avx2::MakeInts8(0, 1, 2, 3, 0, 1, 2, 3); }
    static Floats OfRows(const float (&values)[kRows])
    {
        const float a = values[0], b = values[1];
        return simd_avx2::MakeFloats8(a, a, a, a, b, b, b, b);
    }
    static Ints OfRows(const int (&values)[kRows])
    {
        const int a = values[0], b = values[1];
        return simd_avx2::MakeInts8(a, a, a, a, b, b, b, b);
    }

    static Ints LoadWords(uint8_t* const (&rows)[kRows])
    {
        return simd_avx2::LoadInts8(rows[0], rows[1]);
    }
    static void StoreWords(uint8_t* const (&rows)[kRows], Ints words)
    {
        simd_avx2::StoreInts(rows[0], rows[1], words);
    }
    static Ints LoadHalves(uint8_t* const (&rows)[kRows])
    {
        return simd_avx2::LoadFourHalvesTwice(rows[0], rows[1]);
    }

    static Floats Floor(Floats value) { return simd_avx2::Floor(value); }
    static Floats FloorSmall(Floats value) { return simd_avx2::Floor(value); }

    static Ints Gather(const uint32_t* words, int pitch, Ints x, Ints y)
    {
        return simd_avx2::Gather(words, MultiplyInts(y, SplatInt(pitch)) + x);
    }
    static void GatherPairs(const uint32_t* words, int pitch, Ints x, Ints y, Ints& leftOut,
                            Ints& rightOut)
    {
        simd_avx2::GatherPairs(words, MultiplyInts(y, SplatInt(pitch)) + x, leftOut, rightOut);
    }
};

template <>
struct FormOf<simd_avx2::Floats8> {
    using Form = EightLanes;
};

} // namespace headless
