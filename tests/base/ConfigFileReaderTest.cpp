#include "base/ConfigFileReader.h"

#include <string>

#include "tests/base/LogFixture.h"

namespace {

constexpr const char* kSample = "; textures of the harbour\n"
                                "path = \"textures\"\n"
                                "#one\n"
                                "desc \"Boat\"\n"
                                "colour \"red\"\n"
                                "tex2 \"two.png\"\n"
                                "tex2_1 = \"two one.png\"\n"
                                "##\n"
                                "desc \"Sail\"\n"
                                "  size=\"12\" \"13\"\n"
                                "##\n"
                                "desc \"Mast\"\n"
                                "#two\n"
                                "desc \"Pier\"\n"
                                "{\n"
                                "key \"x\"\n"
                                "plank {\n"
                                "}\n"
                                "}\n";

class ConfigFileReaderTest : public LogFixture {
protected:
    int32_t Load(const std::string& bytes)
    {
        return reader.LoadContent("in.cfg", bytes.data(), static_cast<int32_t>(bytes.size()), true);
    }
    std::string Value(const char* key, int32_t entry, int32_t index1 = -1, int32_t index2 = -1)
    {
        char value[64];
        const int32_t result = reader.GetString(key, value, sizeof value, entry, index1, index2);
        return result == kConfigOk ? value : "code " + std::to_string(result);
    }

    ConfigFileReader reader;
};

TEST_F(ConfigFileReaderTest, ResultsHaveTheNumbersThatCallersKnow)
{
    EXPECT_EQ(kConfigOk, 0);
    EXPECT_EQ(kConfigKeyNotFound, 1);
    EXPECT_EQ(kConfigNoEntry, 2);
    EXPECT_EQ(kConfigNoValue, 9);
}

TEST_F(ConfigFileReaderTest, NewReaderHasReadNothing)
{
    EXPECT_FALSE(reader.IsLoaded());
    EXPECT_EQ(reader.GetLineCount(), 0);
    EXPECT_EQ(reader.GetEntryCount(), 0);
    EXPECT_EQ(reader.GetEntry(0), nullptr);
    EXPECT_EQ(reader.GetBlockLevel(0), 0);
    EXPECT_FALSE(reader.FoundInBase());
}

TEST_F(ConfigFileReaderTest, FindsEntriesWithTheirLinesAndParents)
{
    ASSERT_EQ(Load(kSample), kTextFileOk);
    EXPECT_TRUE(reader.IsLoaded());
    EXPECT_STREQ(reader.className, "ConfigFileReader");
    static const struct {
        int32_t firstLine, lineCount, parent;
    } expected[] = {{2, 5, -1}, {7, 3, 0}, {10, 2, 0}, {12, 8, -1}}; // the last line is empty
    ASSERT_EQ(reader.GetEntryCount(), 4);
    for (int32_t i = 0; i < 4; ++i) {
        EXPECT_EQ(reader.GetEntry(i)->firstLine, expected[i].firstLine) << i;
        EXPECT_EQ(reader.GetEntryLineCount(i), expected[i].lineCount) << i;
        EXPECT_EQ(reader.GetEntry(i)->parent, expected[i].parent) << i;
    }
    EXPECT_EQ(reader.GetEntryLineCount(-1), 20);
    EXPECT_EQ(reader.GetEntryLineCount(4), -1);
    EXPECT_EQ(reader.GetEntryLineCount(-2), -1);
    EXPECT_EQ(reader.GetEntry(4), nullptr);
    EXPECT_EQ(reader.GetEntry(-1), nullptr);
}

TEST_F(ConfigFileReaderTest, EmptyFileHasOneEmptyLineAndNoEntries)
{
    EXPECT_EQ(Load(""), kTextFileOk);
    EXPECT_EQ(reader.GetLineCount(), 1);
    EXPECT_STREQ(reader.GetLine(0), "");
    EXPECT_EQ(reader.GetEntryCount(), 0);
    EXPECT_EQ(Value("key", -1), "code 1");
    EXPECT_EQ(Value("key", 0), "code 2");
    EXPECT_EQ(reader.GetBlockLevel(0), 0);
}

TEST_F(ConfigFileReaderTest, EntriesMayLieAnywhereInTheFile)
{
    static const struct {
        const char* what;
        std::string bytes;
        int32_t entries;
    } cases[] = {
        {"no entry", "key \"x\"\n", 0},
        {"first line", "#", 1},
        {"blanks and tabs in front", " \t#a\n\t##b", 2},
        {"commented out", ";#a\n  ;#b\n#c", 1},
        {"not the first word", "x #a", 0},
        {"NUL bytes in front of the sign", std::string("a\n\0\0#b", 6), 1},
        {"bytes above 127 in front", "\xE4#a", 0},
    };
    for (const auto& c : cases) {
        ASSERT_EQ(Load(c.bytes), kTextFileOk) << c.what;
        EXPECT_EQ(reader.GetEntryCount(), c.entries) << c.what;
    }
}

TEST_F(ConfigFileReaderTest, KeyMustBeAWholeWord)
{
    static const struct {
        const char* what;
        const char* line;
        const char* key;
        int32_t expected;
    } cases[] = {
        {"followed by a blank", "texture \"x\"", "texture", 0},
        {"followed by an equals sign", "texture=\"x\"", "texture", 0},
        {"in other case", "TexTure \"x\"", "texture", 0},
        {"behind blanks and tabs", " \t texture \"x\"", "texture", 3},
        {"only the start of a word", "texture2 \"x\"", "texture", -1},
        {"followed by a tab", "texture\t\"x\"", "texture", -1},
        {"followed by its value", "texture\"x\"", "texture", -1},
        {"alone in its line", "texture", "texture", -1},
        {"second word", "my texture \"x\"", "texture", -1},
        {"comment", ";texture \"x\"", "texture", -1},
        {"comment behind blanks", "  ; texture \"x\"", "texture", -1},
        {"comment sign as the key", "; x", ";", -1},
        {"comment sign as the key, alone in its line", ";", ";", -1},
        {"line shorter than the key", "tex", "texture", -1},
        {"blanks too short for the key", "     te", "texture", -1},
        {"empty line", "", "texture", -1},
    };
    for (const auto& c : cases) {
        ASSERT_EQ(Load(c.line), kTextFileOk) << c.what;
        EXPECT_EQ(reader.FindKeyInLine(0, c.key), c.expected) << c.what;
    }
    EXPECT_EQ(reader.FindKeyInLine(1, "x"), -1) << "line out of range";
    EXPECT_EQ(reader.FindKeyInLine(-1, "x"), -1);
    EXPECT_EQ(reader.FindKeyInLine(0, nullptr), -1);
}

TEST_F(ConfigFileReaderTest, QuirkKeyBelowTheLettersMatchesAsAPrefix)
{
    ASSERT_EQ(Load("#foo\n1st \"x\""), kTextFileOk);
    EXPECT_EQ(reader.FindKeyInLine(0, "#"), 0);
    EXPECT_EQ(reader.FindKeyInLine(0, "#f"), 0);
    EXPECT_EQ(reader.FindKeyInLine(1, "1"), 0);
}

TEST_F(ConfigFileReaderTest, CaseSensitiveReaderDistinguishesCase)
{
    reader.SetCaseSensitive(true);
    ASSERT_EQ(Load("Key \"a\"\nkey \"b\""), kTextFileOk);
    EXPECT_EQ(Value("key", -1), "b");
    EXPECT_EQ(Value("KEY", -1), "code 1");
    reader.SetCaseSensitive(false);
    EXPECT_EQ(Value("KEY", -1), "a");
}

TEST_F(ConfigFileReaderTest, KeyLinesAreFoundInTheirEntry)
{
    ASSERT_EQ(Load(kSample), kTextFileOk);
    EXPECT_EQ(reader.FindKeyLine("path", -1), 1) << "in front of all entries";
    EXPECT_EQ(reader.FindKeyLine("path", 0), -1);
    EXPECT_EQ(reader.FindKeyLine("colour", 0), 4);
    EXPECT_EQ(reader.FindKeyLine("desc", -1), 3);
    EXPECT_EQ(reader.FindKeyLine("desc", 3), 13);
    EXPECT_EQ(reader.FindKeyLine("desc", 4), -2);
    EXPECT_EQ(reader.FindKeyLine("desc", -2), -2);
}

TEST_F(ConfigFileReaderTest, QuirkChildInheritsFromTheNearestPlainEntryAndNoDeeper)
{
    ASSERT_EQ(Load(kSample), kTextFileOk);
    EXPECT_EQ(Value("size", 1), "12");
    EXPECT_EQ(Value("colour", 1), "red") << "of the parent";
    EXPECT_EQ(Value("desc", 1), "Sail") << "its own first";
    EXPECT_EQ(Value("colour", 2), "red");
    EXPECT_EQ(Value("size", 2), "code 1") << "the child in front is no parent";
    EXPECT_EQ(Value("colour", 3), "code 1");
}

TEST_F(ConfigFileReaderTest, ChildWithoutAPlainEntryInFrontHasNoParent)
{
    ASSERT_EQ(Load("##a\n##b\n###c"), kTextFileOk);
    ASSERT_EQ(reader.GetEntryCount(), 3);
    EXPECT_EQ(reader.GetEntry(0)->parent, -1);
    EXPECT_EQ(reader.GetEntry(1)->parent, 0) << "the entry in front has no parent itself";
    EXPECT_EQ(reader.GetEntry(2)->parent, 0);
}

TEST_F(ConfigFileReaderTest, NumbersAreAddedToTheKey)
{
    ASSERT_EQ(Load(kSample), kTextFileOk);
    EXPECT_EQ(Value("tex", 0, 2), "two.png");
    EXPECT_EQ(Value("tex", 0, 2, 1), "two one.png");
    EXPECT_EQ(Value("tex", 0, 3), "code 1");
    EXPECT_EQ(Value("tex2", 0, -1, 1), "two.png") << "the second number alone counts for nothing";
    EXPECT_EQ(Value("tex", 0), "code 1");
}

TEST_F(ConfigFileReaderTest, ValueIsBetweenTheFirstTwoDoubleQuotes)
{
    static const struct {
        const char* what;
        const char* line;
        const char* expected;
    } cases[] = {
        {"plain", "key \"boat\"", "boat"},
        {"equals sign", "key= \"boat\"", "boat"},
        {"text ahead of the quote is passed over", "key x y \"boat\" z", "boat"},
        {"second value is left", "key \"a\" \"b\"", "a"},
        {"empty value", "key \"\"", ""},
        {"blanks are kept", "key \" a b \"", " a b "},
        {"bytes above 127", "key \"\xE4\xFF\"", "\xE4\xFF"},
        {"no quote", "key boat", "code 9"},
        {"no closing quote", "key \"boat", "code 9"},
        {"quote at the very end", "key \"", "code 9"},
        {"value in the next line", "key\n\"boat\"", "code 1"},
        {"closing quote in the next line", "key \"a\nb\"", "code 9"},
    };
    for (const auto& c : cases) {
        ASSERT_EQ(Load(c.line), kTextFileOk) << c.what;
        EXPECT_EQ(Value("key", -1), c.expected) << c.what;
    }
}

TEST_F(ConfigFileReaderTest, ValueIsTruncatedToTheBuffer)
{
    ASSERT_EQ(Load("key \"boats\""), kTextFileOk);
    char value[8] = "1234567";
    EXPECT_EQ(reader.GetString("key", value, 5, -1), kConfigOk);
    EXPECT_STREQ(value, "boat");
    EXPECT_EQ(value[5], '6') << "nothing is written behind the size";
    EXPECT_EQ(reader.GetString("key", value, 1, -1), kConfigOk);
    EXPECT_STREQ(value, "");
    EXPECT_EQ(reader.GetString("key", value, 0, -1), kConfigNoValue);
}

TEST_F(ConfigFileReaderTest, BufferIsLeftAloneOnFailure)
{
    ASSERT_EQ(Load("key x"), kTextFileOk);
    char value[8] = "old";
    EXPECT_EQ(reader.GetString("key", value, 8, -1), kConfigNoValue);
    EXPECT_EQ(reader.GetString("none", value, 8, -1), kConfigKeyNotFound);
    EXPECT_EQ(reader.GetString("key", value, 8, 0), kConfigNoEntry);
    EXPECT_STREQ(value, "old");
}

TEST_F(ConfigFileReaderTest, BaseReaderIsAskedFirstAndAsAWhole)
{
    const std::string common = "path \"common\"\n#a\ncolour \"green\"\nbad x\n";
    ConfigFileReader base;
    ASSERT_EQ(
        base.LoadContent("base.cfg", common.data(), static_cast<int32_t>(common.size()), true),
        kTextFileOk);
    ASSERT_EQ(Load(std::string(kSample) + "bad \"good\"\n"), kTextFileOk);
    reader.SetBaseReader(&base);
    EXPECT_EQ(Value("path", -1), "common");
    EXPECT_TRUE(reader.FoundInBase());
    EXPECT_EQ(Value("desc", 3), "Pier");
    EXPECT_FALSE(reader.FoundInBase());
    EXPECT_EQ(Value("colour", 99), "green") << "even for an entry that is not there";
    EXPECT_TRUE(reader.FoundInBase());
    EXPECT_EQ(Value("bad", 3), "good") << "a value that the base reader cannot give";
    EXPECT_EQ(Value("none", 99), "code 2");
    EXPECT_FALSE(reader.FoundInBase());
}

TEST_F(ConfigFileReaderTest, BlockDepthIsKeptForTheStartOfEachLine)
{
    ASSERT_EQ(Load(kSample), kTextFileOk);
    static const int32_t expected[] = {0, 0, 1, 1, 2, 1, 0}; // lines 13 to 19
    for (int32_t i = 0; i < 7; ++i)
        EXPECT_EQ(reader.GetBlockLevel(13 + i), expected[i]) << 13 + i;
    EXPECT_EQ(reader.GetBlockLevel(20), 0);
    EXPECT_EQ(reader.GetBlockLevel(-1), 0);
}

TEST_F(ConfigFileReaderTest, BrokenBlocksAreErrorsWithFileAndLine)
{
    static const struct {
        const char* what;
        std::string bytes;
        const char* expected;
    } cases[] = {
        {"closed with nothing open", "#a\nx\n}\n", "Invalid '}' in file 'in.cfg' at line 2"},
        {"closed twice", "#a\n{\n}\n}\n", "Invalid '}' in file 'in.cfg' at line 3"},
        {"closed in another entry", "#a\n{\n#b\n}\n", "Invalid '}' in file 'in.cfg' at line 3"},
        {"text behind an opening brace", "#a\n{ x\n}\n",
         "Invalid block start/end in file 'in.cfg' at line 1"},
        {"text behind a closing brace", "#a\n{\n}x\n",
         "Invalid block start/end in file 'in.cfg' at line 2"},
        {"two braces in a line", "#a\n{}\n", "Invalid block start/end in file 'in.cfg' at line 1"},
        {"byte above 127 behind a brace", "#a\n{\xE4\n}\n",
         "Invalid block start/end in file 'in.cfg' at line 1"},
        {"open at the end of the file", "#a\n{\n", "Unfinished block in file 'in.cfg'"},
        {"blanks and control bytes behind a brace", "#a\n{ \t\x01\n} \n", "no error"},
        {"text in front of a brace", "#a\nx {\ny }\n", "no error"},
        {"braces in front of the first entry", "}\n#a\n", "no error"},
        {"braces without entries", "}\n{{\n", "no error"},
        {"brace in the line of the entry", "#a {\n}\n", "no error"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(RaisedBy([&] { Load(c.bytes); }), c.expected) << c.what;
}

TEST_F(ConfigFileReaderTest, BrokenBlocksAreReadOverWithThrowingOff)
{
    reader.throwOnError = 0;
    EXPECT_EQ(Load("#a\n}\n{ x\nkey \"boat\"\n"), kTextFileOk);
    EXPECT_EQ(reader.errorHappened, 1);
    EXPECT_EQ(reader.GetBlockLevel(3), 1) << "the brace itself counts";
    EXPECT_EQ(Value("key", 0), "boat");
}

TEST_F(ConfigFileReaderTest, QuirkBlockLeftOpenInAMiddleEntryGoesUnnoticed)
{
    EXPECT_EQ(RaisedBy([&] { Load("#a\n{\n{\n#b\nx\n"); }), "no error");
    EXPECT_EQ(reader.GetBlockLevel(3), 0);
}

TEST_F(ConfigFileReaderTest, EntriesAreFoundByName)
{
    reader.SetDescKey("desc");
    ASSERT_EQ(Load(kSample), kTextFileOk);
    EXPECT_EQ(reader.FindEntry("Boat"), 0);
    EXPECT_EQ(reader.FindEntry("SAIL"), 1);
    EXPECT_EQ(reader.FindEntry("mast"), 2);
    EXPECT_EQ(reader.FindEntry("Pier"), 3);
    EXPECT_EQ(reader.FindEntry("none"), -1);
    EXPECT_EQ(LogText(), "");
    EXPECT_EQ(RaisedBy([&] { reader.FindEntry(""); }), "Empty name string");
}

TEST_F(ConfigFileReaderTest, WithoutADescKeyNoNamesAreIndexed)
{
    ASSERT_EQ(Load(kSample), kTextFileOk);
    EXPECT_EQ(reader.FindEntry("Boat"), -1);
    EXPECT_EQ(LogText(), "");
}

TEST_F(ConfigFileReaderTest, EntriesWithoutANameOrWithATakenOneAreWarnings)
{
    reader.SetDescKey("desc");
    ASSERT_EQ(Load("#a\n#b\ndesc \"Boat\"\n#c\ndesc \"BOAT\"\n##d\n"), kTextFileOk);
    EXPECT_EQ(LogText(),
              Entry("Warning:ConfigFileReader: No 'desc' entry in entry 0 in file 'in.cfg'") +
                  Entry("Warning:ConfigFileReader: 'desc' entry in 'in.cfg' (2) not unique: "
                        "'BOAT'") +
                  Entry("Warning:ConfigFileReader: 'desc' entry in 'in.cfg' (3) not unique: "
                        "'BOAT'")); // inherited by the child
    EXPECT_EQ(reader.FindEntry("boat"), 1);
}

// A name and its terminator take 1024 bytes.
TEST_F(ConfigFileReaderTest, NamesDifferByTheirFirst1023Bytes)
{
    const std::string fits(1022, 'x');
    const std::string full(1023, 'y');
    reader.SetDescKey("desc");
    std::string text;
    for (const std::string& name : {fits + 'a', fits + 'b', full + 'a', full + 'b'})
        text += "#\ndesc \"" + name + "\"\n";
    ASSERT_EQ(Load(text), kTextFileOk);
    EXPECT_EQ(reader.FindEntry((fits + 'a').c_str()), 0);
    EXPECT_EQ(reader.FindEntry((fits + 'b').c_str()), 1);
    EXPECT_EQ(reader.FindEntry(full.c_str()), 2) << "cut, and the name of the next one with it";
    EXPECT_EQ(reader.FindEntry((full + 'a').c_str()), -1);
    EXPECT_NE(LogText().find("'desc' entry in 'in.cfg' (3) not unique: 'yyy"), std::string::npos);
    EXPECT_EQ(LogText().find("(1) not unique"), std::string::npos);
}

TEST_F(ConfigFileReaderTest, NameThatNoTreeHoldsEndsTheLoad)
{
    reader.SetDescKey("desc");
    EXPECT_EQ(RaisedBy([&] { Load("#a\ndesc \"\"\n"); }), "Empty name string");
    EXPECT_EQ(RaisedBy([&] { Load("#a\ndesc \"\xC4rger\"\n"); }),
              "Character in name string out of range: -60"); // 0xC4 - 256
    EXPECT_FALSE(reader.IsLoaded());
}

TEST_F(ConfigFileReaderTest, LoadsFilesAndForgetsTheOneBefore)
{
    reader.SetDescKey("desc");
    scratch.Write("in.cfg", kSample);
    ASSERT_EQ(reader.Load("in.cfg", true), kTextFileOk);
    EXPECT_EQ(reader.FindEntry("Boat"), 0);
    scratch.Write("in.cfg", "#x\ndesc \"Gull\"\n");
    ASSERT_EQ(reader.Load("in.cfg", true), kTextFileOk);
    EXPECT_EQ(reader.GetEntryCount(), 1);
    EXPECT_EQ(reader.FindEntry("Gull"), 0);
    EXPECT_EQ(reader.FindEntry("Boat"), -1);
    EXPECT_EQ(reader.Load("none.cfg", true), kTextFileCannotOpen);
    EXPECT_FALSE(reader.IsLoaded());
    EXPECT_EQ(reader.GetEntryCount(), 0);
    EXPECT_EQ(reader.FindEntry("Gull"), -1);
}

TEST_F(ConfigFileReaderTest, WithoutAnIndexOnlyTheBytesAreLoaded)
{
    scratch.Write("in.cfg", "#a\n}\n");
    ASSERT_EQ(reader.Load("in.cfg", false), kTextFileOk);
    EXPECT_TRUE(reader.IsLoaded());
    EXPECT_EQ(reader.GetLineCount(), 0);
    EXPECT_EQ(reader.GetEntryCount(), 0);
    EXPECT_EQ(reader.BuildLineIndex(), kTextFileOk);
    EXPECT_EQ(reader.GetLineCount(), 3);
}

TEST_F(ConfigFileReaderTest, LoadWithoutAnIndexForgetsTheBlocksBefore)
{
    ASSERT_EQ(Load(kSample), kTextFileOk);
    ASSERT_EQ(reader.GetBlockLevel(15), 1);
    const std::string bytes = kSample;
    ASSERT_EQ(reader.LoadContent("in.cfg", bytes.data(), static_cast<int32_t>(bytes.size()), false),
              kTextFileOk);
    ASSERT_EQ(reader.BuildLineIndex(), kTextFileOk);
    for (int32_t line = 0; line < reader.GetLineCount(); ++line)
        EXPECT_EQ(reader.GetBlockLevel(line), 0) << line;
}

TEST_F(ConfigFileReaderTest, LoadReturnsTheCodesOfTheLineIndex)
{
    scratch.Write("lines.cfg", std::string(65535, '\n'));
    EXPECT_EQ(reader.Load("lines.cfg", true), kTextFileTooManyLines);
    EXPECT_STREQ(reader.GetLastError(), "File lines.cfg too big");
    scratch.Write("long.cfg", "#" + std::string(70000, 'x'));
    EXPECT_EQ(reader.Load("long.cfg", true), kTextFileLineTooLong);
    EXPECT_STREQ(reader.GetLastError(), "Line too long in file long.cfg");
    EXPECT_FALSE(reader.IsLoaded());
    EXPECT_EQ(reader.GetEntryCount(), 0);
}

TEST_F(ConfigFileReaderTest, FileOfTheMostLinesIsAllEntries)
{
    std::string bytes;
    for (int i = 0; i < 65535; ++i)
        bytes += i == 0 ? "#" : "\n#";
    ASSERT_EQ(Load(bytes), kTextFileOk);
    EXPECT_EQ(reader.GetEntryCount(), 65535);
    EXPECT_EQ(reader.GetEntryLineCount(65534), 1);
}

TEST_F(ConfigFileReaderTest, EveryTruncationOfAFileIsReadOrRefused)
{
    reader.SetDescKey("desc");
    const std::string whole(kSample);
    const size_t firstBrace = whole.find('{');
    const size_t lastBrace = whole.rfind('}');
    for (size_t size = 0; size <= whole.size(); ++size) {
        // Only a cut inside the block leaves it open; an empty name never arises.
        const bool isOpen = size > firstBrace && size <= lastBrace;
        EXPECT_EQ(RaisedBy([&] { Load(whole.substr(0, size)); }),
                  isOpen ? "Unfinished block in file 'in.cfg'" : "no error")
            << size;
    }
}

} // namespace
