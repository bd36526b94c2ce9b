#include "base/TextDataFileReader.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "platform/OpenFileStream.h"
#include "tests/base/LogFixture.h"

namespace {

/// Gives access to what only derived readers can see.
class OpenReader : public TextDataFileReader {
public:
    using TextDataFileReader::atEnd;
    using TextDataFileReader::position;
    using TextDataFileReader::size;
};

/// Every test reads once from memory and once from a stream: both must give the same.
class TextDataFileReaderTest : public LogFixture, public testing::WithParamInterface<bool> {
protected:
    void Open(const std::string& bytes)
    {
        const int32_t size = static_cast<int32_t>(bytes.size());
        reader.SetFileName("in.qsa");
        if (GetParam()) {
            auto copy = std::make_unique<uint8_t[]>(bytes.size() + 1);
            std::memcpy(copy.get(), bytes.data(), bytes.size());
            copy[bytes.size()] = '7'; // must never be read: it is after the end
            reader.SetData(std::move(copy), size);
        } else {
            reader.FreeData();
            scratch.Write("in.qsa", bytes);
            reader.SetStream(FileStream(OpenFileStream("in.qsa", "rb")), size);
        }
    }
    /// Words up to the end of the file.
    std::vector<std::string> Words()
    {
        std::vector<std::string> words;
        TokenBuffer word;
        while (reader.SkipSpace() == 0 && reader.ReadWord(word) == 0)
            words.push_back(word);
        return words;
    }

    OpenReader reader;
};

INSTANTIATE_TEST_SUITE_P(MemoryAndStream, TextDataFileReaderTest, testing::Bool(),
                         [](const auto& row) { return row.param ? "Memory" : "Stream"; });

TEST_P(TextDataFileReaderTest, ReadBytesReadsAtMostTheRemainingBytes)
{
    Open("abcdef");
    char bytes[8] = "-------";
    EXPECT_EQ(reader.ReadBytes(bytes, 4), 4);
    EXPECT_EQ(std::string(bytes), "abcd---");
    EXPECT_EQ(reader.ReadBytes(bytes, 4), 2);
    EXPECT_EQ(std::string(bytes), "efcd---");
    EXPECT_EQ(reader.atEnd, 0) << "the end is met by reading at it";
    EXPECT_EQ(reader.ReadBytes(bytes, 4), 0);
    EXPECT_EQ(reader.atEnd, 1);
    reader.SeekRelative(-6);
    EXPECT_EQ(reader.ReadBytes(bytes, 0), 0);
    EXPECT_EQ(reader.ReadBytes(bytes, -1), 0);
    EXPECT_EQ(reader.position, 0);
}

TEST_P(TextDataFileReaderTest, SeekRelativeIsClampedToTheFile)
{
    Open("abcdef");
    static const struct {
        const char* what;
        int32_t delta, result, position;
    } cases[] = {
        {"forwards", 4, 1, 4},
        {"backwards", -1, 1, 3},
        {"not at all", 0, 1, 3},
        {"to the end", 3, 1, 6},
        {"behind the end", 1, 0, 6},
        {"to the start", -6, 1, 0},
        {"ahead of the start", -1, 0, 0},
        {"far behind the end", std::numeric_limits<int32_t>::max(), 0, 6},
        {"far ahead of the start", std::numeric_limits<int32_t>::min(), 0, 0},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(reader.SeekRelative(c.delta), c.result) << c.what;
        EXPECT_EQ(reader.position, c.position) << c.what;
    }
    EXPECT_EQ(reader.ReadChar(), 'a');
}

TEST_P(TextDataFileReaderTest, SkipToConsumesTheByteItSearchesFor)
{
    Open("ab{c{");
    EXPECT_EQ(reader.SkipTo('{'), 0);
    EXPECT_EQ(reader.ReadChar(), 'c');
    EXPECT_EQ(reader.SkipTo('{'), 0);
    EXPECT_EQ(reader.position, 5);
}

TEST_P(TextDataFileReaderTest, SkipToTheEndIsAnError)
{
    Open("ab");
    EXPECT_EQ(RaisedBy([&] { reader.SkipTo('}'); }), "in.qsa: 'b' not found");
    EXPECT_EQ(LogText(), Entry("Error:TextDataFileReader: in.qsa: 'b' not found"));
    reader.throwOnError = 0;
    EXPECT_EQ(reader.SkipTo('}'), 1);
}

TEST_P(TextDataFileReaderTest, QuirkMissingByteIsReportedByTheLastOneThatWasRead)
{
    Open("xyz");
    EXPECT_EQ(RaisedBy([&] { reader.SkipTo('{'); }), "in.qsa: 'z' not found");
    EXPECT_EQ(RaisedBy([&] { reader.SkipTo('{'); }), "in.qsa: '{' not found") << "nothing was read";
}

TEST_P(TextDataFileReaderTest, SkipSpaceStopsAtTheFirstOtherByte)
{
    static const struct {
        const char* what;
        std::string bytes;
        int32_t result, position;
    } cases[] = {
        {"nothing to skip", "a ", 0, 0},
        {"blanks and line ends",
         " \t\r\n\x01"
         "a",
         0, 5},
        {"NUL bytes", std::string("\0\0a", 3), 0, 2},
        {"byte 32 is skipped, 33 is not", " !", 0, 1},
        {"byte 127", "\x7F", 0, 0},
        {"bytes above 127 are no white space", " \xE4", 0, 1},
        {"highest byte", "\xFF", 0, 0},
        {"only white space", "  ", 1, 2},
        {"empty", "", 1, 0},
    };
    for (const auto& c : cases) {
        Open(c.bytes);
        EXPECT_EQ(reader.SkipSpace(), c.result) << c.what;
        EXPECT_EQ(reader.position, c.position) << c.what;
        EXPECT_EQ(reader.atEnd, c.result) << c.what;
    }
}

TEST_P(TextDataFileReaderTest, PeekCharLeavesTheByteThere)
{
    Open("a\xFF");
    EXPECT_EQ(reader.PeekChar(), 'a');
    EXPECT_EQ(reader.ReadChar(), 'a');
    EXPECT_EQ(reader.PeekChar(), '\xFF');
    EXPECT_EQ(reader.ReadChar(), '\xFF');
    EXPECT_EQ(reader.PeekChar(), 0);
    EXPECT_EQ(reader.ReadChar(), 0);
    EXPECT_EQ(reader.atEnd, 1);
    EXPECT_EQ(reader.position, 2);
}

TEST_P(TextDataFileReaderTest, NumberTextIsDigitsSignsAndPoints)
{
    static const struct {
        const char* what;
        const char* bytes;
        int32_t result;
        const char* expected;
        int32_t position;
    } cases[] = {
        {"up to a blank", "12 3", 0, "12", 2},
        {"up to an exponent", "1.5e3", 0, "1.5", 3},
        {"all its bytes in any order", "+-.09x", 0, "+-.09", 5},
        {"up to the end of the file", "42", 0, "42", 2},
        {"white space in front is no number", " 1", 1, "", 0},
        {"no number", "x1", 1, "", 0},
        {"comma", ",", 1, "", 0},
        {"empty", "", 1, "", 0},
    };
    for (const auto& c : cases) {
        Open(c.bytes);
        TokenBuffer text = "old";
        EXPECT_EQ(reader.ReadNumberText(text), c.result) << c.what;
        EXPECT_STREQ(text, c.expected) << c.what;
        EXPECT_EQ(reader.position, c.position) << c.what;
    }
}

TEST_P(TextDataFileReaderTest, WordsEndAtWhiteSpaceBracesQuotesAndCommas)
{
    using List = std::vector<std::string>;
    static const struct {
        const char* what;
        std::string bytes;
        List expected;
    } cases[] = {
        {"white space", "one two\tthree\r\nfour", {"one", "two", "three", "four"}},
        {"delimiters in first place are words",
         "a{b}c\"d,e",
         {"a", "{", "b", "}", "c", "\"", "d", ",", "e"}},
        {"delimiters in a row", "{{},", {"{", "{", "}", ","}},
        {"other signs belong to words", "*NODE_NAME:1;#[2]", {"*NODE_NAME:1;#[2]"}},
        {"bytes above 127 belong to words", "\xE4\xFFz \xC0", {"\xE4\xFFz", "\xC0"}},
        {"NUL ends a word and is white space", std::string("a\0b", 3), {"a", "b"}},
        {"nothing", "", {}},
        {"only white space", " \n", {}},
    };
    for (const auto& c : cases) {
        Open(c.bytes);
        EXPECT_EQ(Words(), c.expected) << c.what;
        EXPECT_EQ(reader.atEnd, 1) << c.what;
    }
}

TEST_P(TextDataFileReaderTest, WhiteSpaceInFirstPlaceIsAWordOfOneByte)
{
    Open(" a");
    TokenBuffer word;
    EXPECT_EQ(reader.ReadWord(word), 0);
    EXPECT_STREQ(word, " ");
    EXPECT_EQ(reader.ReadWord(word), 0);
    EXPECT_STREQ(word, "a");
    EXPECT_EQ(reader.ReadWord(word), 1);
    EXPECT_STREQ(word, "");
}

TEST_P(TextDataFileReaderTest, TokensHoldUpTo127Bytes)
{
    const std::string longest(127, '1');
    TokenBuffer text;
    for (const char* tail : {"", " ", "}"}) {
        Open(longest + tail);
        EXPECT_EQ(reader.ReadWord(text), 0);
        EXPECT_EQ(text, longest);
        Open(longest + tail);
        EXPECT_EQ(reader.ReadNumberText(text), 0);
        EXPECT_EQ(text, longest);
    }
    Open("\"" + longest + "\"");
    EXPECT_EQ(reader.ReadQuoted(text), 0);
    EXPECT_EQ(text, longest);
    EXPECT_EQ(LogText(), "");
}

TEST_P(TextDataFileReaderTest, TokenOf128BytesIsAnError)
{
    const std::string tooLong(128, '1');
    const char* expected = "in.qsa: String too long (>127)";
    TokenBuffer text;
    float real = 0;
    int32_t number = 0;
    for (const char* tail : {"", " ", "1111"}) {
        Open(tooLong + tail);
        EXPECT_EQ(RaisedBy([&] { reader.ReadWord(text); }), expected);
        Open(tooLong + tail);
        EXPECT_EQ(RaisedBy([&] { reader.ReadNumberText(text); }), expected);
        Open(tooLong + tail);
        EXPECT_EQ(RaisedBy([&] { reader.ReadInt(&number); }), expected);
        Open(tooLong + tail);
        EXPECT_EQ(RaisedBy([&] { reader.ReadFloat(&real); }), expected);
    }
    Open("\"" + tooLong + "\"");
    EXPECT_EQ(RaisedBy([&] { reader.ReadQuoted(text); }), expected);
    EXPECT_EQ(LogText().rfind("Error:TextDataFileReader: in.qsa: String too long (>127)(T", 0), 0u);
}

TEST_P(TextDataFileReaderTest, TooLongTokensAreTruncatedWithThrowingOff)
{
    const std::string tooLong(200, '1');
    reader.throwOnError = 0;
    TokenBuffer text;
    Open(tooLong);
    EXPECT_EQ(reader.ReadWord(text), 0);
    EXPECT_EQ(text, tooLong.substr(0, 127));
    Open("\"" + tooLong + "\"");
    EXPECT_EQ(reader.ReadQuoted(text), 1);
    EXPECT_EQ(text, tooLong.substr(0, 127));
}

TEST_P(TextDataFileReaderTest, QuotedTextsKeepAllBytesUpToTheClosingQuote)
{
    static const struct {
        const char* what;
        std::string bytes;
        int32_t result;
        std::string expected;
    } cases[] = {
        {"plain", "\"boat\" x", 0, "boat"},
        {"white space in front", " \n\"boat\"", 0, "boat"},
        {"empty", "\"\"", 0, ""},
        {"line ends and braces", "\"a\r\n{b} *C\"", 0, "a\r\n{b} *C"},
        {"no escapes", "\"a\\\"b\"", 0, "a\\"},
        {"bytes above 127", "\"\xE4\xFF\"", 0, "\xE4\xFF"},
        {"not closed", "\"boat", 1, "boat"},
        {"quote alone", "\"", 1, ""},
    };
    for (const auto& c : cases) {
        Open(c.bytes);
        TokenBuffer text = "old";
        EXPECT_EQ(reader.ReadQuoted(text), c.result) << c.what;
        EXPECT_EQ(text, c.expected) << c.what;
        Open(c.bytes);
        String heapText("old");
        EXPECT_EQ(reader.ReadQuoted(&heapText), c.result) << c.what;
        EXPECT_EQ(heapText.c_str(), c.expected) << c.what;
        EXPECT_EQ(heapText.length, static_cast<int32_t>(c.expected.size())) << c.what;
    }
    EXPECT_EQ(LogText(), "");
}

TEST_P(TextDataFileReaderTest, MissingQuoteLosesTheByteWithAWarningAndKeepsTheOldText)
{
    Open(" boat");
    TokenBuffer text = "old";
    EXPECT_EQ(reader.ReadQuoted(text), 1);
    EXPECT_STREQ(text, "old");
    EXPECT_EQ(reader.ReadChar(), 'o');
    String heapText("old");
    EXPECT_EQ(reader.ReadQuoted(&heapText), 1);
    EXPECT_STREQ(heapText.c_str(), "old");
    EXPECT_EQ(reader.ReadChar(), 't');
    EXPECT_EQ(reader.ReadQuoted(text), 1) << "at the end";
    const std::string line = "Warning:TextDataFileReader: in.qsa: No text string found";
    EXPECT_EQ(LogText(), Entry(line) + Entry(line)); // the third one counts as a repeat
    EXPECT_EQ(gWarningRepeat, 1u);
}

TEST_P(TextDataFileReaderTest, LongTextsGoIntoStringsWhole)
{
    for (const size_t length : {127u, 128u, 129u, 256u, 257u, 70000u}) {
        const std::string text(length, 'x');
        Open("\"" + text + "\"y");
        String heapText;
        EXPECT_EQ(reader.ReadQuoted(&heapText), 0) << length;
        EXPECT_EQ(heapText.c_str(), text) << length;
        EXPECT_EQ(heapText.length, static_cast<int32_t>(length));
        EXPECT_EQ(reader.ReadChar(), 'y') << length;
    }
}

TEST_P(TextDataFileReaderTest, IntegersEndAtAnyOtherByte)
{
    static const struct {
        const char* what;
        const char* bytes;
        int32_t result, expected, position;
    } cases[] = {
        {"plain", "42", 0, 42, 2},
        {"white space in front", " \n-7 ", 0, -7, 4},
        {"plus sign", "+3,", 0, 3, 2},
        {"cut towards zero", "-2.9", 0, -2, 4},
        {"an exponent is no part of it", "1e3", 0, 1, 1},
        {"colon behind", "5:", 0, 5, 1},
        {"second sign ends the number, not the text", "1-2", 0, 1, 3},
        {"signs alone", "--", 0, 0, 2},
        {"largest", "2147483647", 0, 2147483647, 10},
        {"above the largest", "2147483648", 0, 2147483647, 10},
        {"far below the smallest", "-99999999999999999999", 0, std::numeric_limits<int32_t>::min(),
         21},
        {"no number", "x", 1, 0, 0},
        {"end of the file", "  ", 1, 0, 2},
    };
    for (const auto& c : cases) {
        Open(c.bytes);
        int32_t number = 99;
        EXPECT_EQ(reader.ReadInt(&number), c.result) << c.what;
        EXPECT_EQ(number, c.expected) << c.what;
        EXPECT_EQ(reader.position, c.position) << c.what;
    }
}

TEST_P(TextDataFileReaderTest, FloatsAreWholeWords)
{
    static const struct {
        const char* what;
        const char* bytes;
        int32_t result;
        float expected;
        int32_t position;
    } cases[] = {
        {"plain", "1.5 2", 0, 1.5f, 3},
        {"exponent", "1.5e-05,", 0, 1.5e-05f, 7},
        {"white space in front", "\t\n-2", 0, -2.0f, 4},
        {"what follows in the word is passed over", "3:x }", 0, 3.0f, 3},
        {"brace behind", "4}", 0, 4.0f, 1},
        {"delimiter in first place is a word", "}5", 0, 0.0f, 1},
        {"no number", "boat 1", 0, 0.0f, 4},
        {"above float", "1e39", 0, std::numeric_limits<float>::infinity(), 4},
        {"below float", "1e-60", 0, 0.0f, 5},
        {"rounded twice, by way of double", "16777217", 0, 16777216.0f, 8}, // 2^24 + 1: to even
        {"end of the file", " ", 1, 0.0f, 1},
    };
    for (const auto& c : cases) {
        Open(c.bytes);
        float number = 99.0f;
        EXPECT_EQ(reader.ReadFloat(&number), c.result) << c.what;
        EXPECT_EQ(number, c.expected) << c.what;
        EXPECT_EQ(reader.position, c.position) << c.what;
    }
    Open("nan");
    float number = 0.0f;
    EXPECT_EQ(reader.ReadFloat(&number), 0);
    EXPECT_TRUE(std::isnan(number));
}

TEST_P(TextDataFileReaderTest, VectorsMayHaveCommas)
{
    static const struct {
        const char* what;
        const char* bytes;
        bool ok;
        float x, y, z;
        int32_t position;
    } cases[] = {
        {"commas", "1, 2 ,3", true, 1, 2, 3, 7},
        {"blanks", "1 2 3", true, 1, 2, 3, 5},
        {"no blanks", "1,2,3,4", true, 1, 2, 3, 5},
        {"comma behind the third stays", "1 2 3 ,", true, 1, 2, 3, 5},
        {"second comma is a word and no number", "1,,2,3", true, 1, 0, 2, 4},
        {"text runs out", "1 2", false, 1, 2, 0, 3},
        {"nothing", "", false, 0, 0, 0, 0},
    };
    for (const auto& c : cases) {
        Open(c.bytes);
        float values[3] = {9, 9, 9};
        EXPECT_EQ(reader.ReadVector(values) == 0, c.ok) << c.what;
        EXPECT_EQ(values[0], c.x) << c.what;
        EXPECT_EQ(values[1], c.y) << c.what;
        EXPECT_EQ(values[2], c.z) << c.what;
        EXPECT_EQ(reader.position, c.position) << c.what;
    }
}

TEST_P(TextDataFileReaderTest, EveryTruncationEndsInTheFile)
{
    const std::string whole = "*A { 1.5, -2e3 \"text\" 7 } b";
    for (size_t length = 0; length <= whole.size(); ++length) {
        Open(whole.substr(0, length));
        size_t joined = 0;
        for (const std::string& word : Words())
            joined += word.size();
        size_t solid = 0; // all bytes except white space are returned in words
        for (const char c : whole.substr(0, length))
            solid += c == ' ' ? 0 : 1;
        EXPECT_EQ(joined, solid) << length;
        EXPECT_EQ(reader.position, static_cast<int32_t>(length));
    }
}

TEST_P(TextDataFileReaderTest, FreeDataLeavesAnEmptyReader)
{
    Open("abc");
    reader.ReadChar();
    reader.FreeData();
    EXPECT_EQ(reader.size, 0);
    EXPECT_EQ(reader.position, 0);
    EXPECT_EQ(reader.ReadChar(), 0);
    EXPECT_EQ(reader.SkipSpace(), 1);
    TokenBuffer word;
    EXPECT_EQ(reader.ReadWord(word), 1);
}

class TextDataFileReaderNames : public LogFixture {};

TEST_F(TextDataFileReaderNames, MessagesBeginWithTheNameTruncatedTo255Bytes)
{
    TextDataFileReader reader;
    const std::string name(300, 'n');
    reader.SetFileName(name.c_str());
    EXPECT_EQ(RaisedBy([&] { reader.Error("bad %i", 1); }), name.substr(0, 255) + ": bad 1");
    reader.Warning("odd %i", 2);
    EXPECT_EQ(LogText(),
              Entry("Error:TextDataFileReader: " + name.substr(0, 255) + ": bad 1") +
                  Entry("Warning:TextDataFileReader: " + name.substr(0, 255) + ": odd 2"));
}

TEST_F(TextDataFileReaderNames, StreamThatBecameShorterEndsWhereItsBytesEnd)
{
    OpenReader reader;
    scratch.Write("in.qsa", "abc");
    reader.SetStream(FileStream(OpenFileStream("in.qsa", "rb")), 10);
    char bytes[10];
    EXPECT_EQ(reader.ReadBytes(bytes, 10), 3);
    EXPECT_EQ(reader.size, 3);
    EXPECT_EQ(reader.ReadBytes(bytes, 1), 0);
}

TEST_F(TextDataFileReaderNames, NothingToReadFromIsAnEmptyFile)
{
    OpenReader reader;
    reader.SetData(nullptr, 10);
    EXPECT_EQ(reader.ReadChar(), 0);
    EXPECT_EQ(reader.size, 0);
    reader.SetStream(nullptr, 10);
    EXPECT_EQ(reader.ReadChar(), 0);
    reader.SetData(std::make_unique<uint8_t[]>(4), -4);
    EXPECT_EQ(reader.SkipSpace(), 1);
}

} // namespace
