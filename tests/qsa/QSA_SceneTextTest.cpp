#include "qsa/QSA_SceneText.h"

#include <filesystem>
#include <functional>
#include <random>

#include <gmock/gmock.h>

#include "tests/support/HostCost.h"
#include "tests/support/RaisedBy.h"
#include "tests/support/SceneEngine.h"

namespace {

/// A text in a file named "text".
class QSA_SceneTextTest : public SceneEngineTest {
protected:
    void Open(const std::string& text)
    {
        directory.Write("text", text);
        reader.SetFileName("text");
        reader.Open("text");
    }
    std::string Rest()
    {
        const std::string text = directory.Read("text");
        return text.substr(static_cast<size_t>(reader.TextPosition()));
    }
    int32_t ReadIntInList()
    {
        int32_t value = 0;
        QSA_TextCursor cursor = reader.Cursor();
        reader.ReadInt(cursor, &value);
        reader.MoveTo(cursor);
        return value;
    }
    float ReadFloatInList()
    {
        float value = 0.0f;
        QSA_TextCursor cursor = reader.Cursor();
        reader.ReadFloat(cursor, &value);
        reader.MoveTo(cursor);
        return value;
    }

    QSA_SceneText reader;
};

} // namespace

TEST_F(QSA_SceneTextTest, IntegerStopsAtAnyByteOutsideItsSet)
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
        reader.ReadInt(&value);
        EXPECT_EQ(value, c.expected) << c.text;
        EXPECT_EQ(Rest(), c.rest) << c.text;
    }
}

TEST_F(QSA_SceneTextTest, FloatTakesAWholeWord)
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
        reader.ReadFloat(&value);
        EXPECT_EQ(value, c.expected) << c.text;
        EXPECT_EQ(Rest(), c.rest) << c.text;
    }
}

TEST_F(QSA_SceneTextTest, ThreeNumbersMayHaveBlanksOrCommasBetweenThem)
{
    for (const char* text : {"1,2,3", "1 2 3", "1 , 2 ,3", "\n1\t,2\n3", "1,\n2 3"}) {
        Open(text);
        float value[3] = {};
        EXPECT_EQ(reader.ReadVector(value), 0) << text;
        EXPECT_THAT(value, testing::ElementsAre(1.0f, 2.0f, 3.0f)) << text;
    }
}

TEST_F(QSA_SceneTextTest, QuotedTextRunsToTheNextQuote)
{
    Open("  \"a \\ \r\n* { }\" rest");
    TokenBuffer text;
    EXPECT_EQ(reader.ReadQuoted(text), 0);
    EXPECT_STREQ(text, "a \\ \r\n* { }");
    EXPECT_EQ(Rest(), " rest");
}

TEST_F(QSA_SceneTextTest, MissingQuoteCostsAByteAndWarns)
{
    Open(" abc");
    TokenBuffer text;
    EXPECT_EQ(reader.ReadQuoted(text), 1);
    EXPECT_EQ(Rest(), "bc");
    EXPECT_THAT(LogText(), testing::HasSubstr("text: No text string found"));
}

TEST_F(QSA_SceneTextTest, FixedTextsEndAt127Bytes)
{
    const std::string longest(127, 'q');
    TokenBuffer text;
    Open('"' + longest + '"');
    EXPECT_EQ(reader.ReadQuoted(text), 0);
    EXPECT_EQ(text, longest);
    Open('"' + longest + "q\"");
    EXPECT_EQ(RaisedBy([&] { reader.ReadQuoted(text); }), "text: String too long (>127)");

    Open(longest + ' ');
    EXPECT_EQ(reader.ReadWord(text), 0);
    EXPECT_EQ(text, longest);
    Open(longest + "q ");
    EXPECT_EQ(RaisedBy([&] { reader.ReadWord(text); }), "text: String too long (>127)");
}

TEST_F(QSA_SceneTextTest, NumberOfTenThousandDigitsIsAnError)
{
    int32_t whole = 0;
    float real = 0.0f;
    Open(std::string(127, '0') + ' ');
    EXPECT_EQ(reader.ReadInt(&whole), 0);
    for (const char digit : {'0', '9', '.', '-'}) {
        Open(std::string(10000, digit) + ' ');
        EXPECT_EQ(RaisedBy([&] { reader.ReadInt(&whole); }), "text: String too long (>127)");
        Open(std::string(10000, digit) + ' ');
        EXPECT_EQ(RaisedBy([&] { reader.ReadFloat(&real); }), "text: String too long (>127)");
        Open(std::string(10000, digit) + ' ');
        EXPECT_EQ(RaisedBy([&] { ReadIntInList(); }), "text: String too long (>127)");
    }
}

TEST_F(QSA_SceneTextTest, GrowingTextHasNoLimit)
{
    for (const int32_t window : {1, 100, 4096, 256 * 1024}) {
        reader.SetWindow(window);
        for (const size_t length : {0u, 127u, 128u, 5000u, 300000u}) {
            const std::string text(length, 't');
            Open("  \"" + text + "\"rest");
            String read;
            EXPECT_EQ(reader.ReadQuoted(&read), 0) << length;
            EXPECT_EQ(read.c_str(), text) << length;
            EXPECT_EQ(Rest(), "rest") << length;
        }
        Open("\"never closed " + std::string(5000, 'x'));
        String read;
        EXPECT_EQ(reader.ReadQuoted(&read), 1);
        EXPECT_EQ(read.TextLength(), 13 + 5000);
    }
}

TEST_F(QSA_SceneTextTest, MissingCharacterIsAnErrorThatNamesTheLastByteRead)
{
    Open("abc");
    EXPECT_EQ(RaisedBy([&] { reader.SkipTo('{'); }), "text: 'c' not found");
    Open("ab{c");
    EXPECT_EQ(reader.SkipTo('{'), 0);
    EXPECT_EQ(Rest(), "c");
    // Across many windows.
    reader.SetWindow(10);
    Open(std::string(1000, 'z') + "{y");
    EXPECT_EQ(reader.SkipTo('{'), 0);
    EXPECT_EQ(Rest(), "y");
    EXPECT_EQ(RaisedBy([&] { reader.SkipTo('{'); }), "text: 'y' not found");
}

TEST_F(QSA_SceneTextTest, FileThatBecomesShorterIsAnErrorThatNamesThePosition)
{
    reader.SetWindow(1000);
    Open(std::string(5000, ' ') + "*");
    std::filesystem::resize_file("text", 1500);
    EXPECT_EQ(RaisedBy([&] { reader.NextToken(); }), "text: Error reading from file text at 1500");
    reader.Close();
    EXPECT_FALSE(reader.IsOpen());
}

// A value and its end need no more; what stands behind may come later or, as here, never.
TEST_F(QSA_SceneTextTest, ReadsNoFurtherThan256BytesAheadForAValue)
{
    const struct {
        const char* what;
        const char* start;
        std::function<void()> read;
    } cases[] = {
        {"integer", "1 ",
         [&] {
             int32_t value = 0;
             reader.ReadInt(&value);
         }},
        {"real", "1 ",
         [&] {
             float value = 0.0f;
             reader.ReadFloat(&value);
         }},
        {"word", "w ",
         [&] {
             TokenBuffer word;
             reader.ReadWord(word);
         }},
        {"quoted text", "\"q\" ",
         [&] {
             TokenBuffer text;
             reader.ReadQuoted(text);
         }},
    };
    reader.SetWindow(1);
    for (const auto& c : cases) {
        for (const auto& [bytesLeft, expected] :
             {std::pair{256, "no error"}, {255, "text: Error reading from file text at 255"}}) {
            Open(c.start + std::string(1000, ' '));
            std::filesystem::resize_file("text", static_cast<uintmax_t>(bytesLeft));
            EXPECT_EQ(RaisedBy(c.read), expected) << c.what;
            reader.Close();
        }
    }
}

TEST_F(QSA_SceneTextTest, PeekAtTheEndDoesNotMove)
{
    Open("a  ");
    EXPECT_EQ(reader.PeekBehindSpace(), 'a');
    EXPECT_EQ(reader.TextPosition(), 0);
    TokenBuffer word;
    reader.ReadWord(word);
    EXPECT_EQ(reader.PeekBehindSpace(), 0);
    EXPECT_EQ(reader.TextPosition(), 3);
    EXPECT_EQ(reader.PeekBehindSpace(), 0);
    EXPECT_EQ(reader.TextPosition(), 3);
}

TEST_F(QSA_SceneTextTest, HighBytesAreNotWhiteSpace)
{
    Open("  \x80 x");
    EXPECT_EQ(reader.SkipSpace(), 0);
    EXPECT_EQ(reader.TextPosition(), 2);
}

TEST_F(QSA_SceneTextTest, NulBytesAreWhiteSpaceAndEndWords)
{
    Open(std::string("\0\0*MESH\0{", 9));
    EXPECT_EQ(reader.NextToken(), QSA_Token::Mesh);
    EXPECT_EQ(reader.TextPosition(), 7);
}

TEST_F(QSA_SceneTextTest, TokensOfTheScanner)
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
        {"* *MESH", {0, 0x23, -1}},  // the word is the blank, which is consumed
        {"*} *MESH", {0, 0x23, -1}}, // the brace is the word, not structure
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
        reader.SetWindow(window);
        for (const auto& c : cases) {
            Open(c.text);
            std::vector<int> tokens;
            while (tokens.size() < 9 && (tokens.empty() || tokens.back() != -1))
                tokens.push_back(static_cast<int>(reader.NextToken()));
            EXPECT_EQ(tokens, c.expected) << c.text;
        }
    }
}

TEST_F(QSA_SceneTextTest, StarAndABlankIsAWordOfOneByte)
{
    Open("* {*MESH}");
    EXPECT_EQ(reader.NextToken(), QSA_Token::Unknown);
    EXPECT_EQ(Rest(), "{*MESH}");
}

TEST_F(QSA_SceneTextTest, KeywordOf128BytesIsAnErrorEvenIfItIsUnknown)
{
    Open('*' + std::string(127, 'K') + " *MESH");
    EXPECT_EQ(reader.NextToken(), QSA_Token::Unknown);
    EXPECT_EQ(reader.NextToken(), QSA_Token::Mesh);
    Open('*' + std::string(128, 'K') + ' ');
    EXPECT_EQ(RaisedBy([&] { reader.NextToken(); }), "text: String too long (>127)");
    // Nothing in a skipped block is a keyword.
    Open("{*" + std::string(500, 'K') + "} *MESH");
    EXPECT_EQ(reader.NextToken(), QSA_Token::Mesh);
}

TEST_F(QSA_SceneTextTest, VersionsCompareByMajorAndMinor)
{
    const struct {
        int32_t version, major, minor;
        bool expected;
    } cases[] = {{211, 2, 11, true}, {211, 2, 10, true},  {211, 2, 12, false}, {211, 3, 0, false},
                 {300, 2, 11, true}, {100, 2, 10, false}, {209, 2, 10, false}};
    for (const auto& c : cases) {
        Open("*3DSMAX_QSAEXPORT " + std::to_string(c.version));
        ASSERT_EQ(reader.NextToken(), QSA_Token::QsaExport);
        reader.ReadVersion();
        EXPECT_EQ(reader.FileVersionAtLeast(c.major, c.minor), c.expected)
            << c.version << ' ' << c.major << '.' << c.minor;
    }
    Open("*3DSMAX_QSAEXPORT 211");
    EXPECT_EQ(reader.FileMajor(), 1) << "as for each text until it gives its version";
    EXPECT_FALSE(reader.FileVersionAtLeast(1, 1));
}

TEST_F(QSA_SceneTextTest, ReadsInListsEqualTheOthersAtEveryWindow)
{
    std::mt19937 random(11);
    static constexpr char kBytes[] = "0123456789012345..-+e \t\n,:{}*x";
    for (int round = 0; round < 300; ++round) {
        std::string text;
        for (int i = 0; i < 300; ++i)
            text += kBytes[random() % (sizeof kBytes - 1)];
        const auto readAll = [&](int32_t window, bool inList) {
            reader.SetWindow(window);
            Open(text);
            std::string results;
            while (reader.BytesLeft() > 0) {
                int32_t whole = 0;
                float real = 0.0f;
                if (inList) {
                    whole = ReadIntInList();
                    real = ReadFloatInList();
                } else {
                    reader.ReadInt(&whole);
                    reader.ReadFloat(&real);
                }
                results += std::to_string(whole) + ' ' + std::to_string(real) + '@' +
                           std::to_string(reader.TextPosition()) + ' ';
            }
            return results;
        };
        const std::string expected = readAll(256 * 1024, false);
        EXPECT_EQ(readAll(256 * 1024, true), expected) << text;
        EXPECT_EQ(readAll(1, false), expected) << text;
        EXPECT_EQ(readAll(1 + round, true), expected) << text;
    }
}

TEST_F(QSA_SceneTextTest, BlockHandsOutItsOwnKeywordsUpToItsClose)
{
    const struct {
        const char* text;
        std::vector<QSA_Token> expected;
        int32_t result;
        const char* rest;
    } cases[] = {
        {"*MESH *FOO { *CLONE } *CLONE } *MESH",
         {QSA_Token::Mesh, QSA_Token::Unknown, QSA_Token::Clone},
         0,
         " *MESH"},
        {"}", {}, 0, ""},
        {"*MESH {", {QSA_Token::Mesh}, 1, ""},
    };
    for (const auto& c : cases) {
        Open(c.text);
        std::vector<QSA_Token> taken;
        const auto take = [&](QSA_Token token) {
            taken.push_back(token);
            return 0;
        };
        EXPECT_EQ(reader.ParseBlock(take), c.result) << c.text;
        EXPECT_EQ(taken, c.expected) << c.text;
        EXPECT_EQ(Rest(), c.rest) << c.text;
    }
}

TEST_F(QSA_SceneTextTest, BlockEndsWhereAKeywordIsRefused)
{
    Open("*MESH *CLONE }");
    EXPECT_EQ(reader.ParseBlock([](QSA_Token) { return 1; }), 1);
    EXPECT_EQ(Rest(), " *CLONE }");
}

TEST_F(QSA_SceneTextTest, ColorIsOpaqueAndLinesOfCommasAreVectors)
{
    Open("0.25,0.5,1 4 5 6");
    D3DCOLORVALUE color = {};
    reader.ReadColor(&color);
    EXPECT_EQ(color.r, 0.25f);
    EXPECT_EQ(color.g, 0.5f);
    EXPECT_EQ(color.b, 1.0f);
    EXPECT_EQ(color.a, 1.0f);
    D3DXVECTOR3 vector;
    reader.ReadVector(&vector);
    EXPECT_EQ(vector, D3DXVECTOR3(4.0f, 5.0f, 6.0f));
}

TEST_F(QSA_SceneTextTest, KeywordsThatCameBeforeAreFoundAsIfTheyNeverHad)
{
    const char* const words[] = {"*TM_ROW0",
                                 "*TM_ROW1",
                                 "*TM_ROW1X",
                                 "*TM_ROW",
                                 "*tm_row1",
                                 "*MESH",
                                 "*MESH_X",
                                 "*MESH_NUMVERTEX",
                                 "*NODE_NAME",
                                 "*",
                                 "*UNKNOWN_KEYWORD_OF_MANY_LETTERS",
                                 "}",
                                 "{ *TM_ROW1 }",
                                 "1.5",
                                 "\"*TM_ROW0\"",
                                 "{"};
    const char* const gaps[] = {" ", "\n\t", "", ",", "{}", "\"\"", "\r\n", "\x80"};
    std::mt19937 random(8);
    for (int round = 0; round < AffordableCases(60); ++round) {
        std::string text;
        // The same few words again and again, so that guesses are made, and then others.
        for (int i = 0; i < 60; ++i)
            text += std::string(words[random() % (i % 20 < 15 ? 3 : std::size(words))]) +
                    gaps[random() % (i % 20 < 15 ? 2 : std::size(gaps))];
        directory.Write("text", text);
        QSA_SceneText used;
        used.Open("text");
        for (QSA_Token token = QSA_Token::Unknown; token != QSA_Token::EndOfFile;) {
            QSA_SceneText fresh;
            directory.Write("rest.qsa", text.substr(static_cast<size_t>(used.TextPosition())));
            fresh.Open("rest.qsa");
            token = used.NextToken();
            ASSERT_EQ(token, fresh.NextToken()) << text;
            ASSERT_EQ(used.BytesLeft(), fresh.BytesLeft()) << text;
        }
    }
}
