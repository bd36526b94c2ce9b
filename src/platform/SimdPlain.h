#pragma once

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>

// The operations of platform/Simd.h without processor-specific instructions. They give the same
// bits as SimdSse2.h, odd cases included; only the sign and payload of a NaN produced by arithmetic
// are unspecified, as in IEEE.

namespace simd_plain {

/// Four floats. As a mask, all bits of a lane are set or none.
struct Floats4 {
    std::array<float, 4> lanes;
};

/// Four 32-bit integers; also eight halves or sixteen bytes, where an operation says so. The first
/// is at the lowest address.
struct Ints4 {
    std::array<int32_t, 4> lanes;
};

struct Doubles2 {
    std::array<double, 2> lanes;
};

using Bits4 = std::array<uint32_t, 4>;
using Bits2 = std::array<uint64_t, 2>;
using Halves8 = std::array<uint16_t, 8>;
using Bytes16 = std::array<uint8_t, 16>;

/// Builds a `Result` of `Number` lanes of type `Lane`; `lane(i)` returns lane i.
template <typename Result, typename Lane, size_t Number, typename MakeLane>
Result ForLanes(MakeLane lane)
{
    std::array<Lane, Number> made{};
    for (size_t i = 0; i < Number; ++i)
        made[i] = lane(i);
    return std::bit_cast<Result>(made);
}

template <typename MakeLane>
Floats4 EachFloat(MakeLane lane)
{
    return ForLanes<Floats4, float, 4>(lane);
}

template <typename Result, typename MakeLane>
Result EachBits(MakeLane lane)
{
    return ForLanes<Result, uint32_t, 4>(lane);
}

template <typename MakeLane>
Ints4 EachHalf(MakeLane lane)
{
    return ForLanes<Ints4, uint16_t, 8>(lane);
}

template <typename MakeLane>
Doubles2 EachDouble(MakeLane lane)
{
    return ForLanes<Doubles2, double, 2>(lane);
}

template <typename MakeLane>
Doubles2 EachLongBits(MakeLane lane)
{
    return ForLanes<Doubles2, uint64_t, 2>(lane);
}

inline uint32_t MaskOf(bool isSet)
{
    return isSet ? ~uint32_t{0} : 0;
}

inline uint64_t LongMaskOf(bool isSet)
{
    return isSet ? ~uint64_t{0} : 0;
}

// Floats.

inline Floats4 Splat(float value)
{
    return {{value, value, value, value}};
}

inline Floats4 MakeFloats(float first, float second, float third, float fourth)
{
    return {{first, second, third, fourth}};
}

/// `aligned` is aligned to 16 bytes, also in StoreFloats.
inline Floats4 LoadFloats(const float* aligned)
{
    Floats4 a;
    std::memcpy(&a, aligned, sizeof(a));
    return a;
}

inline void StoreFloats(float* aligned, Floats4 a)
{
    std::memcpy(aligned, &a, sizeof(a));
}

inline float FirstLane(Floats4 a)
{
    return a.lanes[0];
}

inline Floats4 operator+(Floats4 a, Floats4 b)
{
    return EachFloat([&](size_t i) { return a.lanes[i] + b.lanes[i]; });
}

inline Floats4 operator-(Floats4 a, Floats4 b)
{
    return EachFloat([&](size_t i) { return a.lanes[i] - b.lanes[i]; });
}

inline Floats4 operator*(Floats4 a, Floats4 b)
{
    return EachFloat([&](size_t i) { return a.lanes[i] * b.lanes[i]; });
}

inline Floats4 operator/(Floats4 a, Floats4 b)
{
    return EachFloat([&](size_t i) { return a.lanes[i] / b.lanes[i]; });
}

inline Floats4 operator&(Floats4 a, Floats4 b)
{
    const Bits4 x = std::bit_cast<Bits4>(a), y = std::bit_cast<Bits4>(b);
    return EachBits<Floats4>([&](size_t i) { return x[i] & y[i]; });
}

inline Floats4 operator|(Floats4 a, Floats4 b)
{
    const Bits4 x = std::bit_cast<Bits4>(a), y = std::bit_cast<Bits4>(b);
    return EachBits<Floats4>([&](size_t i) { return x[i] | y[i]; });
}

inline Floats4 operator^(Floats4 a, Floats4 b)
{
    const Bits4 x = std::bit_cast<Bits4>(a), y = std::bit_cast<Bits4>(b);
    return EachBits<Floats4>([&](size_t i) { return x[i] ^ y[i]; });
}

/// The bits of `a` that are not in `mask`.
inline Floats4 AndNot(Floats4 mask, Floats4 a)
{
    const Bits4 x = std::bit_cast<Bits4>(mask), y = std::bit_cast<Bits4>(a);
    return EachBits<Floats4>([&](size_t i) { return ~x[i] & y[i]; });
}

/// `a` where the bits of `mask` are set, else `b`.
inline Floats4 Select(Floats4 mask, Floats4 a, Floats4 b)
{
    return (mask & a) | AndNot(mask, b);
}

inline Floats4 Absolute(Floats4 a)
{
    return AndNot(Splat(-0.0f), a);
}

/// Returns `b` if either is NaN or both are zero. So does Max.
inline Floats4 Min(Floats4 a, Floats4 b)
{
    return EachFloat([&](size_t i) { return a.lanes[i] < b.lanes[i] ? a.lanes[i] : b.lanes[i]; });
}

inline Floats4 Max(Floats4 a, Floats4 b)
{
    return EachFloat([&](size_t i) { return a.lanes[i] > b.lanes[i] ? a.lanes[i] : b.lanes[i]; });
}

inline Floats4 SquareRoot(Floats4 a)
{
    return EachFloat([&](size_t i) { return std::sqrt(a.lanes[i]); });
}

/// Comparisons return masks. NaN is neither less nor greater than anything, and unequal to
/// everything.
inline Floats4 IsLess(Floats4 a, Floats4 b)
{
    return EachBits<Floats4>([&](size_t i) { return MaskOf(a.lanes[i] < b.lanes[i]); });
}

inline Floats4 IsGreater(Floats4 a, Floats4 b)
{
    return EachBits<Floats4>([&](size_t i) { return MaskOf(a.lanes[i] > b.lanes[i]); });
}

inline Floats4 IsUnequal(Floats4 a, Floats4 b)
{
    return EachBits<Floats4>([&](size_t i) { return MaskOf(!(a.lanes[i] == b.lanes[i])); });
}

/// The highest bit of each lane; the first lane gives the lowest bit.
inline int LaneBits(Floats4 mask)
{
    const Bits4 x = std::bit_cast<Bits4>(mask);
    return static_cast<int>(x[0] >> 31 | x[1] >> 31 << 1 | x[2] >> 31 << 2 | x[3] >> 31 << 3);
}

/// The first lane of each pair, twice: lanes 0, 0, 2, 2.
inline Floats4 EvenLanes(Floats4 a)
{
    return {{a.lanes[0], a.lanes[0], a.lanes[2], a.lanes[2]}};
}

/// The second lane of each pair, twice: lanes 1, 1, 3, 3.
inline Floats4 OddLanes(Floats4 a)
{
    return {{a.lanes[1], a.lanes[1], a.lanes[3], a.lanes[3]}};
}

/// Rotates the first three lanes to third, first, second; the fourth stays.
inline Floats4 TurnFirstThree(Floats4 a)
{
    return {{a.lanes[2], a.lanes[0], a.lanes[1], a.lanes[3]}};
}

// 32-bit integers. Sums and differences wrap.

inline Ints4 SplatInt(int32_t value)
{
    return {{value, value, value, value}};
}

inline Ints4 MakeInts(int32_t first, int32_t second, int32_t third, int32_t fourth)
{
    return {{first, second, third, fourth}};
}

/// At any alignment, like StoreInts.
inline Ints4 LoadInts(const void* at)
{
    Ints4 a;
    std::memcpy(&a, at, sizeof(a));
    return a;
}

inline void StoreInts(void* at, Ints4 a)
{
    std::memcpy(at, &a, sizeof(a));
}

/// Four unsigned 16-bit integers, at any alignment.
inline Ints4 LoadFourHalves(const void* at)
{
    std::array<uint16_t, 4> halves;
    std::memcpy(halves.data(), at, sizeof(halves));
    return {{halves[0], halves[1], halves[2], halves[3]}};
}

inline int32_t FirstLane(Ints4 a)
{
    return a.lanes[0];
}

inline Ints4 operator+(Ints4 a, Ints4 b)
{
    const Bits4 x = std::bit_cast<Bits4>(a), y = std::bit_cast<Bits4>(b);
    return EachBits<Ints4>([&](size_t i) { return x[i] + y[i]; });
}

inline Ints4 operator-(Ints4 a, Ints4 b)
{
    const Bits4 x = std::bit_cast<Bits4>(a), y = std::bit_cast<Bits4>(b);
    return EachBits<Ints4>([&](size_t i) { return x[i] - y[i]; });
}

inline Ints4 operator&(Ints4 a, Ints4 b)
{
    const Bits4 x = std::bit_cast<Bits4>(a), y = std::bit_cast<Bits4>(b);
    return EachBits<Ints4>([&](size_t i) { return x[i] & y[i]; });
}

inline Ints4 operator|(Ints4 a, Ints4 b)
{
    const Bits4 x = std::bit_cast<Bits4>(a), y = std::bit_cast<Bits4>(b);
    return EachBits<Ints4>([&](size_t i) { return x[i] | y[i]; });
}

inline Ints4 operator^(Ints4 a, Ints4 b)
{
    const Bits4 x = std::bit_cast<Bits4>(a), y = std::bit_cast<Bits4>(b);
    return EachBits<Ints4>([&](size_t i) { return x[i] ^ y[i]; });
}

inline Ints4 Select(Ints4 mask, Ints4 a, Ints4 b)
{
    const Bits4 m = std::bit_cast<Bits4>(mask);
    const Bits4 x = std::bit_cast<Bits4>(a), y = std::bit_cast<Bits4>(b);
    return EachBits<Ints4>([&](size_t i) { return (m[i] & x[i]) | (~m[i] & y[i]); });
}

/// By 0 to 31 bits. Shifts in zeros at either end; the highest bit is not a sign here.
inline Ints4 ShiftLeft(Ints4 a, int bits)
{
    const Bits4 x = std::bit_cast<Bits4>(a);
    return EachBits<Ints4>([&](size_t i) { return x[i] << bits; });
}

inline Ints4 ShiftRight(Ints4 a, int bits)
{
    const Bits4 x = std::bit_cast<Bits4>(a);
    return EachBits<Ints4>([&](size_t i) { return x[i] >> bits; });
}

/// Signed, like IsGreater.
inline Ints4 IsLess(Ints4 a, Ints4 b)
{
    return EachBits<Ints4>([&](size_t i) { return MaskOf(a.lanes[i] < b.lanes[i]); });
}

inline Ints4 IsGreater(Ints4 a, Ints4 b)
{
    return EachBits<Ints4>([&](size_t i) { return MaskOf(a.lanes[i] > b.lanes[i]); });
}

inline Ints4 IsEqual(Ints4 a, Ints4 b)
{
    return EachBits<Ints4>([&](size_t i) { return MaskOf(a.lanes[i] == b.lanes[i]); });
}

inline int LaneBits(Ints4 mask)
{
    return LaneBits(std::bit_cast<Floats4>(mask));
}

// Between integers and floats.

inline Floats4 ToFloats(Ints4 a)
{
    return EachFloat([&](size_t i) { return static_cast<float>(a.lanes[i]); });
}

/// NaN and out-of-range values become the lowest integer.
inline int32_t WholeNumber(float value)
{
    const bool fits = value >= -2147483648.0f && value < 2147483648.0f;
    return fits ? static_cast<int32_t>(value) : INT32_MIN;
}

/// Towards zero; see WholeNumber.
inline Ints4 Truncate(Floats4 a)
{
    return ForLanes<Ints4, int32_t, 4>([&](size_t i) { return WholeNumber(a.lanes[i]); });
}

/// To nearest, ties to even; see WholeNumber.
inline Ints4 Round(Floats4 a)
{
    return ForLanes<Ints4, int32_t, 4>(
        [&](size_t i) { return WholeNumber(std::nearbyint(a.lanes[i])); });
}

/// The same bits.
inline Floats4 AsFloats(Ints4 bits)
{
    return std::bit_cast<Floats4>(bits);
}

inline Ints4 AsInts(Floats4 bits)
{
    return std::bit_cast<Ints4>(bits);
}

// Eight 16-bit integers. All results keep their low 16 bits.

inline Ints4 SplatHalf(int16_t value)
{
    return EachHalf([&](size_t) { return static_cast<uint16_t>(value); });
}

inline Ints4 AddHalves(Ints4 a, Ints4 b)
{
    const Halves8 x = std::bit_cast<Halves8>(a), y = std::bit_cast<Halves8>(b);
    return EachHalf([&](size_t i) { return static_cast<uint16_t>(x[i] + y[i]); });
}

inline Ints4 SubtractHalves(Ints4 a, Ints4 b)
{
    const Halves8 x = std::bit_cast<Halves8>(a), y = std::bit_cast<Halves8>(b);
    return EachHalf([&](size_t i) { return static_cast<uint16_t>(x[i] - y[i]); });
}

inline Ints4 MultiplyHalves(Ints4 a, Ints4 b)
{
    const Halves8 x = std::bit_cast<Halves8>(a), y = std::bit_cast<Halves8>(b);
    return EachHalf(
        [&](size_t i) { return static_cast<uint16_t>(uint32_t{x[i]} * uint32_t{y[i]}); });
}

/// By 0 to 15 bits; shifts in zeros.
inline Ints4 ShiftHalvesLeft(Ints4 a, int bits)
{
    const Halves8 x = std::bit_cast<Halves8>(a);
    return EachHalf([&](size_t i) { return static_cast<uint16_t>(x[i] << bits); });
}

inline Ints4 ShiftHalvesRight(Ints4 a, int bits)
{
    const Halves8 x = std::bit_cast<Halves8>(a);
    return EachHalf([&](size_t i) { return static_cast<uint16_t>(x[i] >> bits); });
}

// Sixteen bytes.

inline Ints4 SplatByte(char value)
{
    return ForLanes<Ints4, char, 16>([&](size_t) { return value; });
}

inline Ints4 AreBytesEqual(Ints4 a, Ints4 b)
{
    const Bytes16 x = std::bit_cast<Bytes16>(a), y = std::bit_cast<Bytes16>(b);
    return ForLanes<Ints4, uint8_t, 16>(
        [&](size_t i) { return static_cast<uint8_t>(x[i] == y[i] ? 0xFF : 0); });
}

/// The lesser or the greater of each two bytes, taken as unsigned.
inline Ints4 MinBytes(Ints4 a, Ints4 b)
{
    const Bytes16 x = std::bit_cast<Bytes16>(a), y = std::bit_cast<Bytes16>(b);
    return ForLanes<Ints4, uint8_t, 16>([&](size_t i) { return std::min(x[i], y[i]); });
}

inline Ints4 MaxBytes(Ints4 a, Ints4 b)
{
    const Bytes16 x = std::bit_cast<Bytes16>(a), y = std::bit_cast<Bytes16>(b);
    return ForLanes<Ints4, uint8_t, 16>([&](size_t i) { return std::max(x[i], y[i]); });
}

/// The highest bit of each byte; the first byte gives the lowest bit.
inline uint32_t ByteBits(Ints4 mask)
{
    const Bytes16 x = std::bit_cast<Bytes16>(mask);
    uint32_t bits = 0;
    for (size_t i = 0; i < x.size(); ++i)
        bits |= static_cast<uint32_t>(x[i] >> 7) << i;
    return bits;
}

/// Eight bytes from each of two places.
inline Ints4 LoadBytes(const void* firstEight, const void* lastEight)
{
    Bytes16 bytes;
    std::memcpy(bytes.data(), firstEight, 8);
    std::memcpy(bytes.data() + 8, lastEight, 8);
    return std::bit_cast<Ints4>(bytes);
}

/// In each half of eight bytes, each byte at the place behind its own, and 0 at the first.
inline Ints4 NextBytes(Ints4 a)
{
    const Bytes16 bytes = std::bit_cast<Bytes16>(a);
    return ForLanes<Ints4, uint8_t, 16>(
        [&bytes](size_t i) { return i % 8 != 0 ? bytes[i - 1] : uint8_t{0}; });
}

/// Four numbers of eight decimal digits, each digit a byte of 0 to 9, the highest digit first.
inline Ints4 JoinDigits(Ints4 firstTwo, Ints4 lastTwo)
{
    const std::array<Bytes16, 2> digits = {std::bit_cast<Bytes16>(firstTwo),
                                           std::bit_cast<Bytes16>(lastTwo)};
    return ForLanes<Ints4, int32_t, 4>([&digits](size_t number) {
        int32_t value = 0;
        for (size_t i = 0; i < 8; ++i)
            value = value * 10 + digits[number / 2][number % 2 * 8 + i];
        return value;
    });
}

// Doubles. As a mask, all bits of a lane are set or none.

inline Doubles2 SplatDouble(double value)
{
    return {{value, value}};
}

inline Doubles2 operator+(Doubles2 a, Doubles2 b)
{
    return EachDouble([&](size_t i) { return a.lanes[i] + b.lanes[i]; });
}

inline Doubles2 operator-(Doubles2 a, Doubles2 b)
{
    return EachDouble([&](size_t i) { return a.lanes[i] - b.lanes[i]; });
}

inline Doubles2 operator*(Doubles2 a, Doubles2 b)
{
    return EachDouble([&](size_t i) { return a.lanes[i] * b.lanes[i]; });
}

inline Doubles2 operator/(Doubles2 a, Doubles2 b)
{
    return EachDouble([&](size_t i) { return a.lanes[i] / b.lanes[i]; });
}

inline Doubles2 operator&(Doubles2 a, Doubles2 b)
{
    const Bits2 x = std::bit_cast<Bits2>(a), y = std::bit_cast<Bits2>(b);
    return EachLongBits([&](size_t i) { return x[i] & y[i]; });
}

inline Doubles2 operator|(Doubles2 a, Doubles2 b)
{
    const Bits2 x = std::bit_cast<Bits2>(a), y = std::bit_cast<Bits2>(b);
    return EachLongBits([&](size_t i) { return x[i] | y[i]; });
}

inline Doubles2 AndNot(Doubles2 mask, Doubles2 a)
{
    const Bits2 x = std::bit_cast<Bits2>(mask), y = std::bit_cast<Bits2>(a);
    return EachLongBits([&](size_t i) { return ~x[i] & y[i]; });
}

inline Doubles2 Select(Doubles2 mask, Doubles2 a, Doubles2 b)
{
    return (mask & a) | AndNot(mask, b);
}

inline Doubles2 SquareRoot(Doubles2 a)
{
    return EachDouble([&](size_t i) { return std::sqrt(a.lanes[i]); });
}

inline Doubles2 IsLess(Doubles2 a, Doubles2 b)
{
    return EachLongBits([&](size_t i) { return LongMaskOf(a.lanes[i] < b.lanes[i]); });
}

inline Doubles2 IsLessOrEqual(Doubles2 a, Doubles2 b)
{
    return EachLongBits([&](size_t i) { return LongMaskOf(a.lanes[i] <= b.lanes[i]); });
}

/// The first two floats as doubles.
inline Doubles2 FirstTwo(Floats4 a)
{
    return {{a.lanes[0], a.lanes[1]}};
}

inline Doubles2 LastTwo(Floats4 a)
{
    return {{a.lanes[2], a.lanes[3]}};
}

/// Rounded to nearest.
inline Floats4 ToFloats(Doubles2 firstTwo, Doubles2 lastTwo)
{
    return {{static_cast<float>(firstTwo.lanes[0]), static_cast<float>(firstTwo.lanes[1]),
             static_cast<float>(lastTwo.lanes[0]), static_cast<float>(lastTwo.lanes[1])}};
}

} // namespace simd_plain
