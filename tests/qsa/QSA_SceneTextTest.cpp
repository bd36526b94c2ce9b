#include <random>

#include "tests/qsa/QSATesting.h"

namespace {

using Access = QSALoaderTestAccess;

/// Reads a text by the loader's operations.
class QSALoaderTextTest : public QSALoaderTest {
protected:
    void Open(const std::string& text)
    {
        directory.Write("text", text);
        Access::Open(loader, "text");
    }
    std::string Rest()
    {
        std::string rest;
        const std::string text = directory.Read("text");
        return text.substr(static_cast<size_t>(Access::Position(loader)));
    }
};

} // namespace

TEST_F(QSALoaderTextTest, IntegerStopsAtAnyByteOutsideItsSet)
{
    const struct {
        const char* text;
        int32_t expected;
        const char* rest;
    } cases[] = {
        {"1.5e-05", 1, "e-05"},
        {" \t-12:", -12, ":"},
        {"7,", 7, ","},
        {"2.9 ", 2, " "},
        {"-2.9}", -2, "}"},
        {"+3 ", 3, " "},
        {"x", 0, "x"},
        {"", 0, ""},
        {"1-2 ", 1, " "},
        {"99999999999 ", INT32_MAX, " "},
        {"-99999999999 ", INT32_MIN, " "},
        {"--4 ", 0, " "},
    };
    for (const auto& c : cases) {
        Open(c.text);
        int32_t value = 77;
        Access::ReadInt(loader, &value);
        EXPECT_EQ(value, c.expected) << c.text;
        EXPECT_EQ(Rest(), c.rest) << c.text;
    }
}

TEST_F(QSALoaderTextTest, FloatTakesAWholeWord)
{
    const struct {
        const char* text;
        float expected;
        const char* rest;
    } cases[] = {
        {"1.5e-05", 1.5e-05f, ""},
        {" 2x,", 2.0f, ","},
        {"3{", 3.0f, "{"},
        {"4\"", 4.0f, "\""},
        {"}5", 0.0f, "5"},
        {",5", 0.0f, "5"},
        {"", 0.0f, ""},
        {"abc 1", 0.0f, " 1"},
        {"0x1p4 ", 16.0f, " "},
        {"-0.5e1 ", -5.0f, " "},
        {"1e39 ", INFINITY, " "},
        {"-inf ", -INFINITY, " "},
    };
    for (const auto& c : cases) {
        Open(c.text);
        float value = 77.0f;
        Access::ReadFloat(loader, &value);
        EXPECT_EQ(value, c.expected) << c.text;
        EXPECT_EQ(Rest(), c.rest) << c.text;
    }
}

TEST_F(QSALoaderTextTest, ThreeNumbersMayHaveBlanksOrCommasBetweenThem)
{
    for (const char* text : {"1,2,3", "1 2 3", "1 , 2 ,3", "\n1\t,2\n3", "1,\n2 3"}) {
        Open(text);
        float value[3] = {};
        EXPECT_EQ(Access::ReadVector(loader, value), 0) << text;
        EXPECT_THAT(value, testing::ElementsAre(1.0f, 2.0f, 3.0f)) << text;
    }
}

TEST_F(QSALoaderTextTest, QuotedTextRunsToTheNextQuote)
{
    Open("  \"a \\ \r\n* { }\" rest");
    TokenBuffer text;
    EXPECT_EQ(Access::ReadQuoted(loader, text), 0);
    EXPECT_STREQ(text, "a \\ \r\n* { }");
    EXPECT_EQ(Rest(), " rest");
}

TEST_F(QSALoaderTextTest, MissingQuoteCostsAByteAndWarns)
{
    Open(" abc");
    TokenBuffer text;
    EXPECT_EQ(Access::ReadQuoted(loader, text), 1);
    EXPECT_EQ(Rest(), "bc");
    EXPECT_THAT(LogText(), testing::HasSubstr("text: No text string found"));
}

TEST_F(QSALoaderTextTest, FixedTextsEndAt127Bytes)
{
    const std::string longest(127, 'q');
    TokenBuffer text;
    Open('"' + longest + '"');
    EXPECT_EQ(Access::ReadQuoted(loader, text), 0);
    EXPECT_EQ(text, longest);
    Open('"' + longest + "q\"");
    EXPECT_EQ(RaisedBy([&] { Access::ReadQuoted(loader, text); }), "text: String too long (>127)");

    Open(longest + ' ');
    EXPECT_EQ(Access::ReadWord(loader, text), 0);
    EXPECT_EQ(text, longest);
    Open(longest + "q ");
    EXPECT_EQ(RaisedBy([&] { Access::ReadWord(loader, text); }), "text: String too long (>127)");
}

TEST_F(QSALoaderTextTest, NumberOfTenThousandDigitsIsAnError)
{
    int32_t whole = 0;
    float real = 0.0f;
    Open(std::string(127, '0') + ' ');
    EXPECT_EQ(Access::ReadInt(loader, &whole), 0);
    for (const char digit : {'0', '9', '.', '-'}) {
        Open(std::string(10000, digit) + ' ');
        EXPECT_EQ(RaisedBy([&] { Access::ReadInt(loader, &whole); }),
                  "text: String too long (>127)");
        Open(std::string(10000, digit) + ' ');
        EXPECT_EQ(RaisedBy([&] { Access::ReadFloat(loader, &real); }),
                  "text: String too long (>127)");
        Open(std::string(10000, digit) + ' ');
        EXPECT_EQ(RaisedBy([&] { Access::ReadIntInList(loader); }), "text: String too long (>127)");
    }
}

TEST_F(QSALoaderTextTest, GrowingTextHasNoLimit)
{
    for (const int32_t window : {1, 100, 4096, 256 * 1024}) {
        Access::SetWindow(loader, window);
        for (const size_t length : {0u, 127u, 128u, 5000u, 300000u}) {
            const std::string text(length, 't');
            Open("  \"" + text + "\"rest");
            String read;
            EXPECT_EQ(Access::ReadQuoted(loader, &read), 0) << length;
            EXPECT_EQ(read.c_str(), text) << length;
            EXPECT_EQ(Rest(), "rest") << length;
        }
        Open("\"never closed " + std::string(5000, 'x'));
        String read;
        EXPECT_EQ(Access::ReadQuoted(loader, &read), 1);
        EXPECT_EQ(read.TextLength(), 13 + 5000);
    }
}

TEST_F(QSALoaderTextTest, MissingCharacterIsAnErrorThatNamesTheLastByteRead)
{
    Open("abc");
    EXPECT_EQ(RaisedBy([&] { Access::SkipTo(loader, '{'); }), "text: 'c' not found");
    Open("ab{c");
    EXPECT_EQ(Access::SkipTo(loader, '{'), 0);
    EXPECT_EQ(Rest(), "c");
    // Across many windows.
    Access::SetWindow(loader, 10);
    Open(std::string(1000, 'z') + "{y");
    EXPECT_EQ(Access::SkipTo(loader, '{'), 0);
    EXPECT_EQ(Rest(), "y");
    EXPECT_EQ(RaisedBy([&] { Access::SkipTo(loader, '{'); }), "text: 'y' not found");
}

TEST_F(QSALoaderTextTest, PeekAtTheEndDoesNotMove)
{
    Open("a  ");
    EXPECT_EQ(Access::PeekBehindSpace(loader), 'a');
    EXPECT_EQ(Access::Position(loader), 0);
    TokenBuffer word;
    Access::ReadWord(loader, word);
    EXPECT_EQ(Access::PeekBehindSpace(loader), 0);
    EXPECT_EQ(Access::Position(loader), 3);
    EXPECT_EQ(Access::PeekBehindSpace(loader), 0);
    EXPECT_EQ(Access::Position(loader), 3);
}

TEST_F(QSALoaderTextTest, HighBytesAreNoWhiteSpace)
{
    Open("  \x80 x");
    EXPECT_EQ(Access::SkipSpace(loader), 0);
    EXPECT_EQ(Access::Position(loader), 2);
}

TEST_F(QSALoaderTextTest, NulBytesAreWhiteSpaceAndEndWords)
{
    Open(std::string("\0\0*MESH\0{", 9));
    EXPECT_EQ(Access::NextToken(loader), QSA_Token::Mesh);
    EXPECT_EQ(Access::Position(loader), 7);
}

TEST_F(QSALoaderTextTest, TokensOfTheScanner)
{
    const struct {
        const char* text;
        std::vector<int> expected; ///< up to the end of the file
    } cases[] = {
        {"", {-1}},
        {"plain text", {-1}},
        {"*MESH *mesh *Mesh{}", {0x23, 0x23, 0x23, -1}},
        {"*FOO *MESH", {0, 0x23, -1}},
        {"*FOO { *MESH { } } *CLONE", {0, 0x43, -1}},
        {"} }", {-2, -2, -1}},
        {"{ *MESH } *CLONE", {0x43, -1}},
        {"{ { } *MESH", {-1}},
        {"* *MESH", {0, 0x23, -1}},  // the word is the blank, which is taken
        {"*} *MESH", {0, 0x23, -1}}, // the brace is the word and no structure
        {"*{ *MESH }", {0, 0x23, -2, -1}},
        {"*\"*MESH", {0, 0x23, -1}},
        {"*MESH\"x\"", {0x23, -1}},
        {"*MESH,1", {0x23, -1}},
        {"*MESH*CLONE", {0, -1}}, // a star does not end a word
        {"**MESH", {0, -1}},
        {"*", {0, -1}},
        {"*MESH", {0x23, -1}},
    };
    for (const int32_t window : {1, 256 * 1024}) {
        Access::SetWindow(loader, window);
        for (const auto& c : cases) {
            Open(c.text);
            std::vector<int> tokens;
            while (tokens.size() < 9 && (tokens.empty() || tokens.back() != -1))
                tokens.push_back(static_cast<int>(Access::NextToken(loader)));
            EXPECT_EQ(tokens, c.expected) << c.text;
        }
    }
}

TEST_F(QSALoaderTextTest, StarAndABlankIsAWordOfOneByte)
{
    Open("* {*MESH}");
    EXPECT_EQ(Access::NextToken(loader), QSA_Token::Unknown);
    EXPECT_EQ(Rest(), "{*MESH}");
}

TEST_F(QSALoaderTextTest, KeywordOf128BytesIsAnErrorEvenIfItIsUnknown)
{
    Open('*' + std::string(127, 'K') + " *MESH");
    EXPECT_EQ(Access::NextToken(loader), QSA_Token::Unknown);
    EXPECT_EQ(Access::NextToken(loader), QSA_Token::Mesh);
    Open('*' + std::string(128, 'K') + ' ');
    EXPECT_EQ(RaisedBy([&] { Access::NextToken(loader); }), "text: String too long (>127)");
    // In a block that is skipped nothing is a keyword.
    Open("{*" + std::string(500, 'K') + "} *MESH");
    EXPECT_EQ(Access::NextToken(loader), QSA_Token::Mesh);
}

TEST_F(QSALoaderTextTest, VersionsCompareByMajorAndMinor)
{
    const struct {
        int32_t version, major, minor;
        bool expected;
    } cases[] = {{211, 2, 11, true}, {211, 2, 10, true},  {211, 2, 12, false}, {211, 3, 0, false},
                 {300, 2, 11, true}, {100, 2, 10, false}, {209, 2, 10, false}};
    for (const auto& c : cases)
        EXPECT_EQ(Access::VersionAtLeast(loader, c.version, c.major, c.minor), c.expected)
            << c.version << ' ' << c.major << '.' << c.minor;
}

TEST_F(QSALoaderTextTest, ReadsInListsEqualTheOthersAtEveryWindow)
{
    std::mt19937 random(11);
    static constexpr char kBytes[] = "0123456789012345..-+e \t\n,:{}*x";
    for (int round = 0; round < 300; ++round) {
        std::string text;
        for (int i = 0; i < 300; ++i)
            text += kBytes[random() % (sizeof kBytes - 1)];
        const auto readAll = [&](int32_t window, bool inList) {
            Access::SetWindow(loader, window);
            Open(text);
            std::string results;
            while (Access::AtEnd(loader) == 0) {
                int32_t whole = 0;
                float real = 0.0f;
                if (inList) {
                    whole = Access::ReadIntInList(loader);
                    real = Access::ReadFloatInList(loader);
                } else {
                    Access::ReadInt(loader, &whole);
                    Access::ReadFloat(loader, &real);
                }
                results += std::to_string(whole) + ' ' + std::to_string(real) + '@' +
                           std::to_string(Access::Position(loader)) + ' ';
            }
            return results;
        };
        const std::string expected = readAll(256 * 1024, false);
        EXPECT_EQ(readAll(256 * 1024, true), expected) << text;
        EXPECT_EQ(readAll(1, false), expected) << text;
        EXPECT_EQ(readAll(1 + round, true), expected) << text;
    }
}
