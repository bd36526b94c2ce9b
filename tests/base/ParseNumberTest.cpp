#include "base/ParseNumber.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>

namespace {

double Parse(const std::string& text)
{
    return ParseDouble(text.data(), text.data() + text.size());
}

uint64_t Bits(double value)
{
    return std::bit_cast<uint64_t>(value);
}

TEST(ParseNumber, ConvertsWhatTheCLibraryConverts)
{
    // The bit patterns are those of IEEE double: sign, 11 bits of exponent + 1023, 52 of fraction.
    static const std::string kTiny = "0." + std::string(400, '0') + "1";
    static const struct {
        const char* what;
        const char* text;
        uint64_t expected;
    } cases[] = {
        {"zero", "0", 0},
        {"negative zero", "-0", 0x8000000000000000},
        {"one", "1", 0x3FF0000000000000},
        {"sign in front", "+2.5", 0x4004000000000000}, // 1.25 * 2^1
        {"white space in front", " \t\n\v\f\r-1", 0xBFF0000000000000},
        {"no digit in front of the point", ".5", 0x3FE0000000000000},
        {"no digit behind the point", "2.", 0x4000000000000000},
        {"exponent", "1e3", 0x408F400000000000}, // 1000 = 1.953125 * 2^9
        {"exponent with a sign", "1E+3", 0x408F400000000000},
        {"exponent without digits ends ahead of it", "1e+", 0x3FF0000000000000},
        {"second point ends it", "1.5.7", 0x3FF8000000000000},
        {"text behind", "2:x", 0x4000000000000000},
        {"comma is no point", "2,5", 0x4000000000000000},
        {"nearest to a tenth", "0.1", 0x3FB999999999999A},
        {"tie goes to even", "9007199254740993", 0x4340000000000000}, // 2^53 + 1
        {"above the tie", "9007199254740993.00000000001", 0x4340000000000001},
        {"other tie goes to even", "9007199254740995", 0x4340000000000002}, // 2^53 + 3
        {"largest", "1.7976931348623157e308", 0x7FEFFFFFFFFFFFFF},
        {"above the largest", "1.7976931348623159e308", 0x7FF0000000000000},
        {"far above", "-1e999999999999", 0xFFF0000000000000},
        {"long and above", "1000000000000000000000e300", 0x7FF0000000000000},
        {"smallest", "4.9406564584124654e-324", 1},
        {"just above half of the smallest", "2.4703282292062328e-324", 1},
        {"just below half of the smallest", "2.4703282292062327e-324", 0},
        {"far below keeps its sign", "-1e-400", 0x8000000000000000},
        {"zeros behind the point and far above", "0.0001e400", 0x7FF0000000000000}, // 1e396
        {"zeros behind the point and far below", "0.0001e-400", 0},
        {"far below without an exponent", kTiny.c_str(), 0}, // 1e-401
        {"smallest normal", "2.2250738585072014e-308", 0x0010000000000000},
        {"zero with a huge exponent", "0e999999", 0},
        {"hexadecimal", "0x1F", 0x403F000000000000}, // 31 = 1.9375 * 2^4
        {"hexadecimal fraction", "-0X.8p1", 0xBFF0000000000000},
        {"hexadecimal exponent", "0x1p-1074", 1},
        {"hexadecimal half of the smallest", "0x1p-1075", 0},
        {"hexadecimal above half of the smallest", "0x1.8p-1075", 1},
        {"hexadecimal tie", "0x20000000000001", 0x4340000000000000},
        {"hexadecimal above the tie", "0x20000000000001.00000001", 0x4340000000000001},
        {"hexadecimal too large", "0x1p1024", 0x7FF0000000000000},
        {"hexadecimal far too large", "0x1p999999999999", 0x7FF0000000000000},
        {"hexadecimal far too small", "0x1p-999999999999", 0},
        {"x without digits is the zero ahead of it", "-0xg", 0x8000000000000000},
        {"infinity", "inf", 0x7FF0000000000000},
        {"infinity in full", "-InFiNiTy", 0xFFF0000000000000},
        {"infinity with more", "infx", 0x7FF0000000000000},
        {"nothing", "", 0},
        {"blank", "  ", 0},
        {"sign alone is no negative zero", "-", 0},
        {"sign and letters", "-abc", 0},
        {"two signs", "-+1", 0},
        {"point alone", "-.", 0},
        {"exponent alone", "e5", 0},
        {"letters", "abc", 0},
        {"half of infinity", "in", 0},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Bits(Parse(c.text)), c.expected) << c.what << ": " << c.text;
}

TEST(ParseNumber, NanInAnyCaseWithOrWithoutPayload)
{
    for (const char* text : {"nan", "NaN", "-nan", "nan(12)", "nanx"})
        EXPECT_TRUE(std::isnan(Parse(text))) << text;
}

TEST(ParseNumber, ReadsNothingAfterTheEnd)
{
    const char text[] = "1234e5";
    EXPECT_EQ(ParseDouble(text, text + 2), 12.0);
    EXPECT_EQ(ParseDouble(text, text + 5), 1234.0) << "the exponent's digit lies behind the end";
    EXPECT_EQ(ParseDouble(text, text), 0.0);
    const char infinity[] = "inf";
    EXPECT_EQ(ParseDouble(infinity, infinity + 2), 0.0);
}

TEST(ParseNumber, EveryDoubleComesBackFromItsTexts)
{
    std::mt19937_64 random(20240607);
    for (int i = 0; i < 100000; ++i) {
        const double value = std::bit_cast<double>(random());
        if (!std::isfinite(value))
            continue;
        char text[64];
        for (const auto format : {std::chars_format::scientific, std::chars_format::general}) {
            const auto end = std::to_chars(text, text + sizeof text, value, format).ptr;
            ASSERT_EQ(Bits(ParseDouble(text, end)), Bits(value)) << std::string(text, end);
        }
        // The library omits "0x", which belongs between sign and digits.
        const auto end =
            std::to_chars(text, text + sizeof text, std::fabs(value), std::chars_format::hex).ptr;
        const std::string hex = (std::signbit(value) ? "-0x" : "0x") + std::string(text, end);
        ASSERT_EQ(Bits(Parse(hex)), Bits(value)) << hex;
    }
}

TEST(ParseNumber, ShortDecimalsAreTheQuotientOfExactNumbers)
{
    // Up to 15 digits and a power of ten up to 10^15 are exact, so IEEE division of the two is the
    // correctly rounded value.
    std::mt19937_64 random(7);
    for (int i = 0; i < 100000; ++i) {
        const int decimals = 1 + static_cast<int>(random() % 14);
        uint64_t power = 1;
        for (int k = 0; k < decimals; ++k)
            power *= 10;
        const uint64_t digits = random() % 1000000000000000u;
        std::string fraction = std::to_string(digits % power);
        fraction.insert(0, static_cast<size_t>(decimals) - fraction.size(), '0');
        const std::string text = std::to_string(digits / power) + "." + fraction;
        const double expected = static_cast<double>(digits) / static_cast<double>(power);
        ASSERT_EQ(Bits(Parse(text)), Bits(expected)) << text;
    }
}

TEST(ParseNumber, AgreesWithTheCLibraryOnRandomTexts)
{
    // Made of the pieces of numbers, so that most texts are nearly numbers.
    static const char* const pieces[] = {"0",  "1",  "7",   "42", "999", "12345678", ".",   ".5",
                                         "e",  "E-", "e+2", "-",  "+",   "0x",       "p3",  "p-2",
                                         "aF", "in", "inf", " ",  ",",   "000",      "e30", "}"};
    std::mt19937 random(1);
    for (int i = 0; i < 300000; ++i) {
        std::string text;
        for (auto n = random() % 7; n > 0; --n)
            text += pieces[random() % std::size(pieces)];
        char* end = nullptr;
        const double converted = std::strtod(text.c_str(), &end);
        // If nothing was converted, the C standard requires zero; one library returns -0 for "-+".
        const double expected = end == text.c_str() ? 0.0 : converted;
        ASSERT_EQ(Bits(Parse(text)), Bits(expected)) << text;
    }
}

TEST(ParseNumber, ToInt32TruncatesTowardsZeroAndStaysInRange)
{
    static const struct {
        const char* what;
        double value;
        int32_t expected;
    } cases[] = {
        {"cut down", 2.9, 2},
        {"cut up", -2.9, -2},
        {"negative zero", -0.0, 0},
        {"largest", 2147483647.0, 2147483647},
        {"above the largest", 2147483648.0, 2147483647},
        {"smallest", -2147483648.0, std::numeric_limits<int32_t>::min()},
        {"fraction below the smallest", -2147483648.5, std::numeric_limits<int32_t>::min()},
        {"infinity", std::numeric_limits<double>::infinity(), 2147483647},
        {"negative infinity", -std::numeric_limits<double>::infinity(),
         std::numeric_limits<int32_t>::min()},
        {"no number", std::numeric_limits<double>::quiet_NaN(), 0},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ToInt32(c.value), c.expected) << c.what;
}

} // namespace
