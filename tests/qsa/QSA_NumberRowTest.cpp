#include "qsa/QSA_NumberRow.h"

#include <cstdio>

#include "tests/qsa/TextTesting.h"
#include "tests/support/HostCost.h"

namespace {

uint32_t BitsOf(float value)
{
    return std::bit_cast<uint32_t>(value);
}

/// A row of four either is refused or agrees with the reader in values and place.
void CompareRow(const std::string& text, bool* takenOut)
{
    const PaddedText padded(text);
    QSA_TextCursor quick = padded.Cursor();
    float values[4];
    *takenOut = TakeRow(quick, values);
    if (!*takenOut) {
        EXPECT_EQ(padded.PlaceOf(quick), 0u) << text;
        return;
    }
    SlowReader slow(text);
    for (const float value : values) {
        float expected = 0.0f;
        EXPECT_EQ(slow.ReadFloat(&expected), 0) << text;
        EXPECT_EQ(BitsOf(value), BitsOf(expected)) << text;
    }
    EXPECT_EQ(padded.PlaceOf(quick), slow.Place()) << text;
}

std::string Formatted(const char* format, double value)
{
    char text[64];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

} // namespace

TEST(QSA_NumberRow, TakesThePlainNumbersOfExporters)
{
    const struct {
        const char* text;
        float expected;
    } cases[] = {
        {"1.5", 1.5f},           {"-0.25", -0.25f},
        {"12", 12.0f},           {"-7", -7.0f},
        {"0.000000", 0.0f},      {"-0.000000", -0.0f},
        {"-0", -0.0f},           {"00012.50", 12.5f},
        {"1234567", 1234567.0f}, {"1234567.0625", 1234567.0f},
        {"0.0000001", 1e-7f},    {"9.9999999", 9.9999999f},
    };
    for (const auto& c : cases) {
        for (const char* space : {" ", "\t", "\r\n\t"}) {
            const std::string text = space + std::string(c.text);
            const PaddedText padded(text + space);
            QSA_NumberRow row(padded.Cursor());
            float value = 77.0f;
            ASSERT_TRUE(row.TakeFloat(&value)) << c.text;
            EXPECT_EQ(BitsOf(value), BitsOf(c.expected)) << c.text;
            QSA_TextCursor place = padded.Cursor();
            place.at = row.Place();
            EXPECT_EQ(padded.PlaceOf(place), text.size()) << c.text;
        }
    }
}

TEST(QSA_NumberRow, RefusesEveryOtherForm)
{
    const char* const cases[] = {
        "1e5",      "1.5e-5",     "1,2",        "1.5,", "{1",   "1}",  "\"1",  "*1",
        "12345678", "12345678.5", "1.12345678", ".5",   "5.",   "-",   "-.5",  "--1",
        "+1",       "1-2",        "1.2.3",      "1:",   "0x10", "inf", "nan",  "1a",
        "1\xB0",    "\xB1",       ".",          "-.",   "1/",   "1;",  "1..2",
    };
    for (const char* text : cases) {
        float value = 0.0f;
        const PaddedText padded(' ' + std::string(text) + " 2 3\n");
        QSA_NumberRow row(padded.Cursor());
        EXPECT_FALSE(row.TakeFloat(&value)) << text;
    }
}

TEST(QSA_NumberRow, WholeNumbersHaveNoSignAndNoPoint)
{
    const PaddedText good("    7 12345678\t0 ");
    QSA_NumberRow row(good.Cursor());
    for (const int32_t expected : {7, 12345678, 0}) {
        int32_t value = -77;
        ASSERT_TRUE(row.TakeInt(&value));
        EXPECT_EQ(value, expected);
    }
    int32_t value = 0;
    EXPECT_FALSE(row.TakeInt(&value)) << "no number left";
    for (const char* text : {" -1 ", " 1.0 ", " 123456789 ", " 1: ", " 1, ", " 1e2 ", " 12"}) {
        const PaddedText bad(text);
        QSA_NumberRow badRow(bad.Cursor());
        EXPECT_FALSE(badRow.TakeInt(&value)) << text;
    }
}

TEST(QSA_NumberRow, EndsWithTheText)
{
    const std::string row = " 1.25 -2 3.5 4";
    bool isTaken = true;
    CompareRow(row, &isTaken);
    EXPECT_FALSE(isTaken) << "more digits may follow the text in memory";
    CompareRow(row + '\n', &isTaken);
    EXPECT_TRUE(isTaken);
    for (size_t length = 0; length <= row.size(); ++length) {
        CompareRow(row.substr(0, length), &isTaken);
        EXPECT_FALSE(isTaken) << length;
    }
}

TEST(QSA_NumberRow, AgreesWithTheReaderOnFixedDecimals)
{
    std::mt19937 random(4);
    std::uniform_real_distribution<double> fraction(-1.0, 1.0);
    const char* const formats[] = {"%.1f", "%.2f", "%.3f", "%.4f", "%.5f", "%.6f", "%.7f"};
    const double scales[] = {1.0, 10.0, 100.0, 1000.0, 99999.0};
    for (int i = 0; i < 40000; ++i) {
        std::string text;
        for (int k = 0; k < 4; ++k)
            text +=
                '\t' + Formatted(formats[random() % 7], fraction(random) * scales[random() % 5]);
        bool isTaken = false;
        CompareRow(text + '\n', &isTaken);
        ASSERT_TRUE(isTaken) << text;
    }
}

TEST(QSA_NumberRow, AgreesWithTheReaderOnAnythingLikeNumbers)
{
    std::mt19937 random(5);
    int taken = 0;
    for (int i = 0; i < AffordableCases(200000); ++i) {
        std::string text;
        for (int k = 0; k < 4; ++k)
            text += (random() % 2 ? " " : "\t") + NumberLike(random).substr(0, 1 + random() % 9);
        bool isTaken = false;
        CompareRow(text + '\n', &isTaken);
        taken += isTaken ? 1 : 0;
    }
    EXPECT_GT(taken, AffordableCases(1000));
}
