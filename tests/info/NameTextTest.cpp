#include "info/NameText.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

using std::string_literals::operator""s;

TEST(NameText, InvalidUtf8IsReadAsCodePage1252)
{
    static const struct {
        const char* what;
        std::string bytes;
        const char* expected;
    } cases[] = {
        {"plain", "Boat", "Boat"},
        {"two bytes of UTF-8", "B\xC3\xA4r", "B\xC3\xA4r"},
        {"four bytes of UTF-8", "\xF0\x9F\x9A\xA2", "\xF0\x9F\x9A\xA2"},
        {"a single byte above 127", "B\xE4r", "B\xC3\xA4r"},   // U+00E4
        {"the euro of the code page", "\x80", "\xE2\x82\xAC"}, // U+20AC
        {"a quote of the code page", "\x93", "\xE2\x80\x9C"},  // U+201C
        {"no character of the code page", "\x81", "\\x81"},    // U+0081, a control character
        {"one bad byte makes all of the name code page", "\xC3\xA4\xE4",
         "\xC3\x83\xC2\xA4\xC3\xA4"},
        {"cut at the end", "a\xC3", "a\xC3\x83"},               // U+00C3
        {"longer than needed", "\xC0\xAF", "\xC3\x80\xC2\xAF"}, // not a slash
        {"half of a pair", "\xED\xA0\x80", "\xC3\xAD\xC2\xA0\xE2\x82\xAC"},
        {"above the last character", "\xF4\x90\x80\x80",
         "\xC3\xB4\\x90\xE2\x82\xAC\xE2\x82\xAC"}, // U+0090 is a control character
    };
    for (const auto& c : cases)
        EXPECT_EQ(ShownName(c.bytes), c.expected) << c.what;
}

TEST(NameText, ShownNamesAreOneLineWithoutControlCharacters)
{
    static const struct {
        const char* what;
        std::string bytes;
        const char* expected;
    } cases[] = {
        {"a path", "maps\\sky.png", "maps\\sky.png"},
        {"line end and tab", "a\nb\tc", "a\\x0Ab\\x09c"},
        {"escape of a terminal", "\x1B[31m", "\\x1B[31m"},
        {"delete", "\x7F", "\\x7F"},
        {"control character of 8 bits", "\xC2\x9B", "\\x9B"}, // U+009B as UTF-8
        {"right to left",
         "a\xE2\x80\xAE"
         "b",
         "a\\u202Eb"},
        {"no width", "\xEF\xBB\xBF", "\\uFEFF"},
        {"a NUL", "a\0b"s, "a\\x00b"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ShownName(c.bytes), c.expected) << c.what;
    EXPECT_EQ(QuotedName("a\nb"), "\"a\\x0Ab\"");
}

TEST(NameText, ShortestTextIsTheShortestThatGivesTheFloatAgain)
{
    static const struct {
        float value;
        const char* expected;
    } cases[] = {
        {0.1f, "0.1"}, {1.5f, "1.5"},     {-3, "-3"},          {16777216, "16777216"},
        {NAN, "nan"},  {INFINITY, "inf"}, {-INFINITY, "-inf"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ShortestText(c.value), c.expected);
}

TEST(NameText, RoundedTextHasNoZerosAtTheEnd)
{
    static const struct {
        double value;
        int digits;
        const char* expected;
    } cases[] = {
        {1.5, 3, "1.5"},
        {2, 3, "2"},
        {0.0004, 3, "0"},
        {-0.0004, 3, "0"},
        {100, 0, "100"},
        {3.33333, 3, "3.333"},
        {NAN, 3, "nan"},
        {-INFINITY, 1, "-inf"},
        {89999998976.0, 3, "9e+10"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(RoundedText(c.value, c.digits), c.expected);
}

TEST(NameText, CountsHaveCommasAndAWordThatFits)
{
    EXPECT_EQ(CountText(0), "0");
    EXPECT_EQ(CountText(999), "999");
    EXPECT_EQ(CountText(1000), "1,000");
    EXPECT_EQ(CountText(-1234567), "-1,234,567");
    EXPECT_EQ(CountText(std::numeric_limits<int64_t>::max()), "9,223,372,036,854,775,807");
    EXPECT_EQ(CountOf(1, "vertex", "vertices"), "1 vertex");
    EXPECT_EQ(CountOf(0, "vertex", "vertices"), "0 vertices");
}

TEST(NameText, PaddingCountsCharactersAndNotBytes)
{
    EXPECT_EQ(ShownWidth("B\xC3\xA4r"), 3u);
    EXPECT_EQ(Padded("B\xC3\xA4r", 5), "B\xC3\xA4r  ");
    EXPECT_EQ(Padded("Boat", 2), "Boat");
}
