#include "qsa/QSA_TextCursor.h"

#include "tests/qsa/TextTesting.h"

namespace {

/// A fast read either fails and leaves its position, or agrees with the slow one in value and
/// position.
void CompareInt(const std::string& text, bool* takenOut = nullptr)
{
    const PaddedText padded(text);
    QSA_TextCursor quick = padded.Cursor();
    int32_t quickValue = -77;
    const bool isTaken = quick.TakeInt(&quickValue);
    if (takenOut)
        *takenOut = isTaken;
    if (!isTaken) {
        EXPECT_EQ(padded.PlaceOf(quick), 0u) << text;
        return;
    }
    SlowReader slow(text);
    int32_t slowValue = 0;
    EXPECT_EQ(slow.ReadInt(&slowValue), 0) << text;
    EXPECT_EQ(quickValue, slowValue) << text;
    EXPECT_EQ(padded.PlaceOf(quick), slow.Place()) << text;
}

void CompareFloat(const std::string& text, bool* takenOut = nullptr)
{
    const PaddedText padded(text);
    QSA_TextCursor quick = padded.Cursor();
    float quickValue = -77.0f;
    const bool isTaken = quick.TakeFloat(&quickValue);
    if (takenOut)
        *takenOut = isTaken;
    if (!isTaken) {
        EXPECT_EQ(padded.PlaceOf(quick), 0u) << text;
        return;
    }
    SlowReader slow(text);
    float slowValue = 0.0f;
    EXPECT_EQ(slow.ReadFloat(&slowValue), 0) << text;
    EXPECT_EQ(std::bit_cast<uint32_t>(quickValue), std::bit_cast<uint32_t>(slowValue)) << text;
    EXPECT_EQ(padded.PlaceOf(quick), slow.Place()) << text;
}

} // namespace

TEST(QSA_TextCursor, OrdinaryNumbersAreTakenQuickly)
{
    const struct {
        const char* text;
        float expected;
    } cases[] = {
        {"1.5 ", 1.5f},       {"  -0.25,", -0.25f},        {"12}", 12.0f},     {".5{", 0.5f},
        {"5.\n", 5.0f},       {"1.5e-05 ", 1.5e-05f},      {"2E+3 ", 2000.0f}, {"-0 ", -0.0f},
        {"0.000000\t", 0.0f}, {"123456789 ", 123456789.0f}};
    for (const auto& c : cases) {
        const PaddedText text(c.text);
        QSA_TextCursor cursor = text.Cursor();
        float value = 77.0f;
        ASSERT_TRUE(cursor.TakeFloat(&value)) << c.text;
        EXPECT_EQ(std::bit_cast<uint32_t>(value), std::bit_cast<uint32_t>(c.expected)) << c.text;
    }
}

TEST(QSA_TextCursor, OrdinaryIntegersAreTakenQuickly)
{
    const struct {
        const char* text;
        int32_t expected;
    } cases[] = {
        {"7 ", 7}, {" 12,", 12}, {"  \t\n-3}", -3}, {"\r\n5{", 5}, {" 123456789 ", 123456789},
        {"-0:", 0}};
    for (const auto& c : cases) {
        const PaddedText text(c.text);
        QSA_TextCursor cursor = text.Cursor();
        int32_t value = 77;
        ASSERT_TRUE(cursor.TakeInt(&value)) << c.text;
        EXPECT_EQ(value, c.expected) << c.text;
    }
}

TEST(QSA_TextCursor, KeywordsAreTakenAfterAnyWhiteSpace)
{
    for (const char* space : {"", " ", "  ", "\t", "\r\n", "\x01"}) {
        const PaddedText text(std::string(space) + "*MESH_FACE 1");
        QSA_TextCursor cursor = text.Cursor();
        EXPECT_TRUE(cursor.TakeKeyword("*MESH_FACE")) << '"' << space << '"';
    }
}

TEST(QSA_TextCursor, NumbersOutsideTheFastFormAreLeftToTheReader)
{
    for (const char* text : {"",
                             " ",
                             "+5 ",
                             "1e ",
                             "1e+ ",
                             "0x10 ",
                             "inf ",
                             "nan ",
                             "--5 ",
                             "1.2.3 ",
                             "5a ",
                             "1e400 ",
                             "1e-30 ",
                             "12345678901234567890 ",
                             "9007199254740993 ",
                             "1e0005 ",
                             "-",
                             ".",
                             "-. ",
                             "5" /* the text may go on */}) {
        const PaddedText padded(text);
        QSA_TextCursor cursor = padded.Cursor();
        float value = 77.0f;
        EXPECT_FALSE(cursor.TakeFloat(&value)) << text;
        EXPECT_EQ(padded.PlaceOf(cursor), 0u) << text;
    }
    for (const char* text : {"", "+5 ", "5.0 ", "5-3 ", "1234567890 ", "a", "- ", "5"}) {
        const PaddedText padded(text);
        QSA_TextCursor cursor = padded.Cursor();
        int32_t value = 77;
        EXPECT_FALSE(cursor.TakeInt(&value)) << text;
        EXPECT_EQ(padded.PlaceOf(cursor), 0u) << text;
    }
}

TEST(QSA_TextCursor, QuickReadsEqualTheSlowOnesOnRandomTexts)
{
    std::mt19937 random(20261121);
    int takenInts = 0;
    int takenFloats = 0;
    for (int i = 0; i < 100000; ++i) {
        const std::string text = NumberLike(random);
        bool isTaken = false;
        CompareInt(text, &isTaken);
        takenInts += isTaken;
        CompareFloat(text, &isTaken);
        takenFloats += isTaken;
    }
    // Otherwise the comparison would prove little.
    EXPECT_GT(takenInts, 10000);
    EXPECT_GT(takenFloats, 10000);
}

TEST(QSA_TextCursor, QuickFloatsRoundAsTheSlowOnes)
{
    std::mt19937 random(7);
    for (int i = 0; i < 100000; ++i) {
        const float value = std::bit_cast<float>(static_cast<uint32_t>(random()));
        static constexpr const char* kFormats[] = {"%.4f ", "%.6f ", "%.6e ", "%.9g ", "%.17g "};
        char text[400];
        std::snprintf(text, sizeof text, kFormats[i % 5], static_cast<double>(value));
        CompareFloat(text);
    }
    for (int i = -400; i < 400; ++i) {
        CompareFloat("1e" + std::to_string(i) + " ");
        CompareFloat("9007199254740991e" + std::to_string(i) + " ");
    }
}

TEST(QSA_TextCursor, KeywordIsTakenWithTheWhiteSpaceBeforeIt)
{
    const struct {
        const char* text;
        bool isTaken;
        size_t place;
    } cases[] = {
        {" \n*MESH_FACE 1", true, 12},
        {"*MESH_FACE{", true, 10},
        {"*MESH_FACE,", true, 10},
        {"*MESH_FACES ", false, 0},
        {"*MESH_FAC ", false, 0},
        {"x *MESH_FACE ", false, 0},
        {"*mesh_face ", false, 0},
        {"*MESH_FACE", false, 0}, // the word may go on
        {"", false, 0},
        {"* MESH_FACE ", false, 0},
    };
    for (const auto& c : cases) {
        const PaddedText padded(c.text);
        QSA_TextCursor cursor = padded.Cursor();
        EXPECT_EQ(cursor.TakeKeyword("*MESH_FACE"), c.isTaken) << c.text;
        EXPECT_EQ(padded.PlaceOf(cursor), c.place) << c.text;
    }
}

TEST(QSA_TextCursor, StructureIsFoundAtAnyDistance)
{
    for (size_t distance = 0; distance < 70; ++distance) {
        for (const char mark : {'*', '{', '}'}) {
            const std::string text = std::string(distance, 'x') + mark + "*{}";
            const PaddedText padded(text);
            QSA_TextCursor cursor = padded.Cursor();
            cursor.SkipToStructure();
            EXPECT_EQ(padded.PlaceOf(cursor), distance);
            cursor = padded.Cursor();
            cursor.SkipLineRest();
            EXPECT_EQ(padded.PlaceOf(cursor), std::min<size_t>(distance, 48));
        }
        // Without structure it stops at the first sentinel.
        const PaddedText plain(std::string(distance, '\xFD'));
        QSA_TextCursor cursor = plain.Cursor();
        cursor.SkipToStructure();
        EXPECT_EQ(plain.PlaceOf(cursor), distance);
    }
}

TEST(QSA_TextCursor, CharacterIsTakenThroughWithinAFewBytes)
{
    const PaddedText padded("01234567:");
    QSA_TextCursor cursor = padded.Cursor();
    EXPECT_FALSE(cursor.TakeThrough(':'));
    EXPECT_EQ(padded.PlaceOf(cursor), 0u);
    EXPECT_TRUE(cursor.TakeThrough('7'));
    EXPECT_EQ(padded.PlaceOf(cursor), 8u);
    EXPECT_TRUE(cursor.TakeThrough(':'));
    EXPECT_FALSE(cursor.TakeThrough('}')); // sentinels are not part of the text
    EXPECT_EQ(padded.PlaceOf(cursor), 9u);
}
