// Compares the SIMD form that this build uses with the plain form bit by bit, and checks the odd
// cases against fixed values. If the build uses the plain form, only the second half tests it.

#include "platform/Simd.h"

#include "platform/SimdPlain.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <limits>

namespace {

using FloatArray = std::array<float, 4>;
using IntArray = std::array<int32_t, 4>;
using Words = std::array<uint32_t, 4>;
using DoubleArray = std::array<double, 2>;

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

constexpr float kFloats[] = {
    0.0f,     -0.0f,     1.0f,          -1.0f,         0.5f,           -0.5f,          1.5f,
    2.5f,     -2.5f,     254.49998f,    8388609.0f,    1e-45f,         -1e-40f,        FLT_MIN,
    3.4e-20f, 1.1e19f,   2147483520.0f, 2147483648.0f, -2147483648.0f, -2147483904.0f, FLT_MAX,
    -FLT_MAX, kInfinity, -kInfinity,    kNaN};

constexpr int32_t kInts[] = {0,          1,        -1,         2,          127,
                             128,        255,      256,        32767,      -32768,
                             65535,      65536,    0x00FF00FF, 0x7B2A7D2A, 0x12345678,
                             -559038737, 16777217, INT32_MAX,  INT32_MIN,  INT32_MIN + 1};

constexpr double kDoubles[] = {0.0,
                               -0.0,
                               0.5,
                               -0.5,
                               1.0,
                               -1.0,
                               0.1,
                               3.0e-310,
                               1e300,
                               -1e40,
                               16777217.0,
                               1.00000005960464477539,
                               1e-46,
                               DBL_MAX,
                               -DBL_MAX,
                               std::numeric_limits<double>::infinity(),
                               std::numeric_limits<double>::quiet_NaN()};

/// The bits of a result, so that the forms can be compared.
template <typename Value>
Words BitsOf(const Value& value)
{
    if constexpr (sizeof(Value) == sizeof(Words))
        return std::bit_cast<Words>(value);
    else
        return {std::bit_cast<uint32_t>(value), 0, 0, 0};
}

/// All NaNs count as equal when they come from arithmetic.
template <typename Number, typename Value>
Words NumbersOf(const Value& value)
{
    auto numbers = std::bit_cast<std::array<Number, 16 / sizeof(Number)>>(value);
    for (Number& number : numbers)
        if (number != number)
            number = std::numeric_limits<Number>::quiet_NaN();
    return std::bit_cast<Words>(numbers);
}

/// Applies `operation` in both forms to all pairs of floats.
template <typename Compared, typename Operation>
void HoldFloats(const char* what, Compared compared, Operation operation)
{
    for (const float a : kFloats)
        for (const float b : kFloats) {
            const FloatArray first = {a, b, 0.75f, a}, second = {b, a, a, -3.0f};
            const auto chosen = operation(std::bit_cast<simd::Floats4>(first),
                                          std::bit_cast<simd::Floats4>(second));
            const auto plain = operation(std::bit_cast<simd_plain::Floats4>(first),
                                         std::bit_cast<simd_plain::Floats4>(second));
            ASSERT_EQ(compared(chosen), compared(plain)) << what << " of " << a << " and " << b;
        }
}

template <typename Operation>
void HoldFloatBits(const char* what, Operation operation)
{
    HoldFloats(
        what, [](const auto& value) { return BitsOf(value); }, operation);
}

template <typename Operation>
void HoldFloatNumbers(const char* what, Operation operation)
{
    HoldFloats(
        what, [](const auto& value) { return NumbersOf<float>(value); }, operation);
}

template <typename Operation>
void HoldInts(const char* what, Operation operation)
{
    for (const int32_t a : kInts)
        for (const int32_t b : kInts) {
            const IntArray first = {a, b, 77, a}, second = {b, a, a, -3};
            const auto chosen =
                operation(std::bit_cast<simd::Ints4>(first), std::bit_cast<simd::Ints4>(second));
            const auto plain = operation(std::bit_cast<simd_plain::Ints4>(first),
                                         std::bit_cast<simd_plain::Ints4>(second));
            ASSERT_EQ(BitsOf(chosen), BitsOf(plain)) << what << " of " << a << " and " << b;
        }
}

template <typename Compared, typename Operation>
void HoldDoubles(const char* what, Compared compared, Operation operation)
{
    for (const double a : kDoubles)
        for (const double b : kDoubles) {
            const DoubleArray first = {a, b}, second = {b, a};
            const auto chosen = operation(std::bit_cast<simd::Doubles2>(first),
                                          std::bit_cast<simd::Doubles2>(second));
            const auto plain = operation(std::bit_cast<simd_plain::Doubles2>(first),
                                         std::bit_cast<simd_plain::Doubles2>(second));
            ASSERT_EQ(compared(chosen), compared(plain)) << what << " of " << a << " and " << b;
        }
}

template <typename Operation>
void HoldDoubleBits(const char* what, Operation operation)
{
    HoldDoubles(
        what, [](const auto& value) { return BitsOf(value); }, operation);
}

template <typename Operation>
void HoldDoubleNumbers(const char* what, Operation operation)
{
    HoldDoubles(
        what, [](const auto& value) { return NumbersOf<double>(value); }, operation);
}

FloatArray Lanes(simd::Floats4 value)
{
    return std::bit_cast<FloatArray>(value);
}

IntArray Lanes(simd::Ints4 value)
{
    return std::bit_cast<IntArray>(value);
}

} // namespace

TEST(Simd, BothFormsCalculateWithFloatsAlike)
{
    HoldFloatNumbers("sum", [](auto a, auto b) { return a + b; });
    HoldFloatNumbers("difference", [](auto a, auto b) { return a - b; });
    HoldFloatNumbers("product", [](auto a, auto b) { return a * b; });
    HoldFloatNumbers("quotient", [](auto a, auto b) { return a / b; });
    HoldFloatNumbers("root", [](auto a, auto) { return SquareRoot(a); });
}

TEST(Simd, BothFormsChooseFloatsAlike)
{
    HoldFloatBits("least", [](auto a, auto b) { return Min(a, b); });
    HoldFloatBits("most", [](auto a, auto b) { return Max(a, b); });
    HoldFloatBits("less", [](auto a, auto b) { return IsLess(a, b); });
    HoldFloatBits("greater", [](auto a, auto b) { return IsGreater(a, b); });
    HoldFloatBits("unequal", [](auto a, auto b) { return IsUnequal(a, b); });
    HoldFloatBits("select", [](auto a, auto b) { return Select(IsLess(a, b), a, b); });
    HoldFloatBits("turn", [](auto a, auto) { return TurnFirstThree(a); });
    HoldFloatBits("even", [](auto a, auto) { return EvenLanes(a); });
    HoldFloatBits("odd", [](auto a, auto) { return OddLanes(a); });
    HoldFloatBits("first", [](auto a, auto) { return FirstLane(a); });
    HoldFloatBits("lane bits", [](auto a, auto) { return LaneBits(a); });
}

TEST(Simd, BothFormsTreatTheBitsOfFloatsAlike)
{
    HoldFloatBits("and", [](auto a, auto b) { return a & b; });
    HoldFloatBits("or", [](auto a, auto b) { return a | b; });
    HoldFloatBits("either", [](auto a, auto b) { return a ^ b; });
    HoldFloatBits("and not", [](auto a, auto b) { return AndNot(a, b); });
    HoldFloatBits("absolute", [](auto a, auto) { return Absolute(a); });
    HoldFloatBits("as integers", [](auto a, auto) { return AsInts(a); });
}

TEST(Simd, BothFormsConvertFloatsAlike)
{
    HoldFloatBits("truncate", [](auto a, auto) { return Truncate(a); });
    HoldFloatBits("round", [](auto a, auto) { return Round(a); });
    HoldFloats(
        "first two", [](const auto& v) { return NumbersOf<double>(v); },
        [](auto a, auto) { return FirstTwo(a); });
    HoldFloats(
        "last two", [](const auto& v) { return NumbersOf<double>(v); },
        [](auto a, auto) { return LastTwo(a); });
}

TEST(Simd, BothFormsCalculateWithIntegersAlike)
{
    HoldInts("sum", [](auto a, auto b) { return a + b; });
    HoldInts("difference", [](auto a, auto b) { return a - b; });
    HoldInts("and", [](auto a, auto b) { return a & b; });
    HoldInts("or", [](auto a, auto b) { return a | b; });
    HoldInts("either", [](auto a, auto b) { return a ^ b; });
    HoldInts("select", [](auto a, auto b) { return Select(a, b, a + b); });
    HoldInts("less", [](auto a, auto b) { return IsLess(a, b); });
    HoldInts("greater", [](auto a, auto b) { return IsGreater(a, b); });
    HoldInts("equal", [](auto a, auto b) { return IsEqual(a, b); });
    HoldInts("lane bits", [](auto a, auto) { return LaneBits(a); });
    HoldInts("first", [](auto a, auto) { return FirstLane(a); });
    HoldInts("as floats", [](auto a, auto) { return AsFloats(a); });
    HoldInts("to floats", [](auto a, auto) { return ToFloats(a); });
    for (int bits = 0; bits < 32; ++bits) {
        HoldInts("left", [bits](auto a, auto) { return ShiftLeft(a, bits); });
        HoldInts("right", [bits](auto a, auto) { return ShiftRight(a, bits); });
    }
}

TEST(Simd, BothFormsCalculateWithHalvesAndBytesAlike)
{
    HoldInts("sum of halves", [](auto a, auto b) { return AddHalves(a, b); });
    HoldInts("difference of halves", [](auto a, auto b) { return SubtractHalves(a, b); });
    HoldInts("product of halves", [](auto a, auto b) { return MultiplyHalves(a, b); });
    for (int bits = 0; bits < 16; ++bits) {
        HoldInts("halves left", [bits](auto a, auto) { return ShiftHalvesLeft(a, bits); });
        HoldInts("halves right", [bits](auto a, auto) { return ShiftHalvesRight(a, bits); });
    }
    HoldInts("equal bytes", [](auto a, auto b) { return AreBytesEqual(a, b); });
    HoldInts("lesser bytes", [](auto a, auto b) { return MinBytes(a, b); });
    HoldInts("greater bytes", [](auto a, auto b) { return MaxBytes(a, b); });
    HoldInts("next bytes", [](auto a, auto) { return NextBytes(a); });
    HoldInts("byte bits", [](auto a, auto) { return ByteBits(a); });
}

TEST(Simd, BothFormsCalculateWithDoublesAlike)
{
    HoldDoubleNumbers("sum", [](auto a, auto b) { return a + b; });
    HoldDoubleNumbers("difference", [](auto a, auto b) { return a - b; });
    HoldDoubleNumbers("product", [](auto a, auto b) { return a * b; });
    HoldDoubleNumbers("quotient", [](auto a, auto b) { return a / b; });
    HoldDoubleNumbers("root", [](auto a, auto) { return SquareRoot(a); });
    HoldDoubleBits("and", [](auto a, auto b) { return a & b; });
    HoldDoubleBits("or", [](auto a, auto b) { return a | b; });
    HoldDoubleBits("and not", [](auto a, auto b) { return AndNot(a, b); });
    HoldDoubleBits("less", [](auto a, auto b) { return IsLess(a, b); });
    HoldDoubleBits("less or equal", [](auto a, auto b) { return IsLessOrEqual(a, b); });
    HoldDoubleBits("select", [](auto a, auto b) { return Select(IsLess(a, b), a, b); });
    HoldDoubles(
        "to floats", [](const auto& v) { return NumbersOf<float>(v); },
        [](auto a, auto b) { return ToFloats(a, b); });
}

TEST(Simd, BothFormsMakeAndLoadAlike)
{
    alignas(16) const float floats[] = {1.0f, -2.0f, 3.5f, kNaN};
    EXPECT_EQ(BitsOf(simd::LoadFloats(floats)), BitsOf(simd_plain::LoadFloats(floats)));
    EXPECT_EQ(BitsOf(simd::MakeFloats(1, 2, 3, 4)), BitsOf(simd_plain::MakeFloats(1, 2, 3, 4)));
    EXPECT_EQ(BitsOf(simd::MakeInts(1, 2, 3, 4)), BitsOf(simd_plain::MakeInts(1, 2, 3, 4)));
    EXPECT_EQ(BitsOf(simd::Splat(-0.5f)), BitsOf(simd_plain::Splat(-0.5f)));
    EXPECT_EQ(BitsOf(simd::SplatInt(-5)), BitsOf(simd_plain::SplatInt(-5)));
    EXPECT_EQ(BitsOf(simd::SplatHalf(-5)), BitsOf(simd_plain::SplatHalf(-5)));
    EXPECT_EQ(BitsOf(simd::SplatByte('*')), BitsOf(simd_plain::SplatByte('*')));
    EXPECT_EQ(BitsOf(simd::SplatDouble(-0.1)), BitsOf(simd_plain::SplatDouble(-0.1)));
    const char* const bytes =
        "\x01\xFF\x80\x7F\x10\x32\x54\x76\x98\xBA\xDC\xFE\x11\x22\x33\x44\x55";
    EXPECT_EQ(BitsOf(simd::LoadInts(bytes + 1)), BitsOf(simd_plain::LoadInts(bytes + 1)));
    EXPECT_EQ(BitsOf(simd::LoadBytes(bytes + 1, bytes + 7)),
              BitsOf(simd_plain::LoadBytes(bytes + 1, bytes + 7)));
    EXPECT_EQ(BitsOf(simd::LoadFourHalves(bytes + 1)),
              BitsOf(simd_plain::LoadFourHalves(bytes + 1)));
}

TEST(Simd, BothFormsJoinDigitsAlike)
{
    const auto bytes = [](const char* text) {
        std::array<char, 16> digits;
        for (size_t i = 0; i < digits.size(); ++i)
            digits[i] = static_cast<char>(text[i] - '0');
        return digits;
    };
    const auto first = bytes("1234567899999999"), last = bytes("0000000000000010");
    const IntArray numbers = {12345678, 99999999, 0, 10};
    EXPECT_EQ(std::bit_cast<IntArray>(
                  JoinDigits(std::bit_cast<simd::Ints4>(first), std::bit_cast<simd::Ints4>(last))),
              numbers);
    EXPECT_EQ(std::bit_cast<IntArray>(JoinDigits(std::bit_cast<simd_plain::Ints4>(first),
                                                 std::bit_cast<simd_plain::Ints4>(last))),
              numbers);
}

TEST(Simd, RoundsTiesToEven)
{
    EXPECT_EQ(Lanes(Round(simd::MakeFloats(0.5f, 1.5f, 2.5f, -1.5f))), (IntArray{0, 2, 2, -2}));
    EXPECT_EQ(Lanes(Truncate(simd::MakeFloats(0.9f, 1.5f, -2.5f, -0.9f))), (IntArray{0, 1, -2, 0}));
}

TEST(Simd, OutOfRangeBecomesTheLowestInteger)
{
    const simd::Floats4 tooLarge = simd::MakeFloats(2147483648.0f, -2147483904.0f, kInfinity, kNaN);
    const IntArray least = {INT32_MIN, INT32_MIN, INT32_MIN, INT32_MIN};
    EXPECT_EQ(Lanes(Truncate(tooLarge)), least);
    EXPECT_EQ(Lanes(Round(tooLarge)), least);
    EXPECT_EQ(Lanes(Truncate(simd::Splat(2147483520.0f))), Lanes(simd::SplatInt(2147483520)));
}

TEST(Simd, MinAndMaxReturnTheSecondForNaN)
{
    EXPECT_EQ(Lanes(Min(simd::Splat(kNaN), simd::Splat(2.0f))), Lanes(simd::Splat(2.0f)));
    EXPECT_EQ(Lanes(Max(simd::Splat(kNaN), simd::Splat(2.0f))), Lanes(simd::Splat(2.0f)));
    EXPECT_TRUE(std::isnan(FirstLane(Min(simd::Splat(2.0f), simd::Splat(kNaN)))));
    EXPECT_TRUE(std::isnan(FirstLane(Max(simd::Splat(2.0f), simd::Splat(kNaN)))));
    EXPECT_TRUE(std::signbit(FirstLane(Min(simd::Splat(0.0f), simd::Splat(-0.0f)))));
    EXPECT_FALSE(std::signbit(FirstLane(Min(simd::Splat(-0.0f), simd::Splat(0.0f)))));
}

TEST(Simd, LanesKeepTheirOrder)
{
    EXPECT_EQ(Lanes(TurnFirstThree(simd::MakeFloats(1, 2, 3, 4))), (FloatArray{3, 1, 2, 4}));
    EXPECT_EQ(Lanes(EvenLanes(simd::MakeFloats(1, 2, 3, 4))), (FloatArray{1, 1, 3, 3}));
    EXPECT_EQ(Lanes(OddLanes(simd::MakeFloats(1, 2, 3, 4))), (FloatArray{2, 2, 4, 4}));
    EXPECT_EQ(LaneBits(simd::MakeInts(-1, 0, 0, -1)), 9);
    EXPECT_EQ(ByteBits(AreBytesEqual(simd::LoadInts("...*...........*"), simd::SplatByte('*'))),
              0x8008u);
    const simd::Ints4 bytes = simd::LoadInts(" \x7F\x80z            ");
    EXPECT_EQ(ByteBits(AreBytesEqual(MinBytes(bytes, simd::SplatByte('z')), bytes)), 0xFFF9u);
    EXPECT_EQ(ByteBits(AreBytesEqual(MaxBytes(bytes, simd::SplatByte('z')), bytes)), 0x000Eu);
    EXPECT_EQ(Lanes(ToFloats(FirstTwo(simd::MakeFloats(1, 2, 3, 4)),
                             LastTwo(simd::MakeFloats(1, 2, 3, 4)))),
              (FloatArray{1, 2, 3, 4}));
}
