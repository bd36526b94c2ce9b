#include "base/TextFileReader.h"

#include <cerrno>
#include <string>
#include <vector>

#include "tests/base/LogFixture.h"

namespace {

/// Gives access to what only derived readers can see.
class OpenTextFileReader : public TextFileReader {
public:
    using TextFileReader::fileSize;
    using TextFileReader::lineLength;
    using TextFileReader::lineStart;
};

class TextFileReaderTest : public LogFixture {
protected:
    int32_t Index(const std::string& bytes)
    {
        reader.SetFileName("in.txt");
        reader.SetContent(bytes.data(), static_cast<int32_t>(bytes.size()));
        return reader.BuildLineIndex();
    }
    std::vector<std::string> Lines()
    {
        std::vector<std::string> lines;
        for (int32_t i = 0; i < reader.GetLineCount(); ++i) {
            const char* text = reader.GetLine(i);
            lines.emplace_back(text, static_cast<size_t>(reader.lineLength[i]));
        }
        return lines;
    }

    OpenTextFileReader reader;
};

TEST_F(TextFileReaderTest, StartsWithoutAFileAndWithNoError)
{
    EXPECT_STREQ(reader.GetLastError(), "No error");
    EXPECT_STREQ(reader.className, "Undefined");
    EXPECT_EQ(reader.GetLineCount(), 0);
    EXPECT_FALSE(reader.IsLoaded());
    EXPECT_EQ(reader.GetLine(0), nullptr);
}

TEST_F(TextFileReaderTest, ResultsHaveTheNumbersThatCallersKnow)
{
    EXPECT_EQ(kTextFileOk, 0);
    EXPECT_EQ(kTextFileCannotOpen, 1);
    EXPECT_EQ(kTextFileCannotRead, 2);
    EXPECT_EQ(kTextFileTooManyLines, 3);
    EXPECT_EQ(kTextFileLineTooLong, 4);
}

TEST_F(TextFileReaderTest, SplitsLines)
{
    using List = std::vector<std::string>;
    static const struct {
        const char* what;
        std::string bytes;
        List expected;
    } cases[] = {
        {"an empty file has one empty line", "", {""}},
        {"no final line end", "a\nb", {"a", "b"}},
        {"a final line end makes a last, empty line", "a\n", {"a", ""}},
        {"line end alone", "\n", {"", ""}},
        {"CR LF counts once", "a\r\nb", {"a", "b"}},
        {"LF CR counts twice", "a\n\rb", {"a", "", "b"}},
        {"CR alone", "a\rb", {"a", "b"}},
        {"CR CR LF counts twice", "a\r\r\nb", {"a", "", "b"}},
        {"CR at the very end", "a\r", {"a", ""}},
        {"tabs and blanks at the start stay", "\t a\n\t b", {"\t a", "\t b"}},
        {"control bytes behind a line end are left out", "a\n\x01\x1F\tb", {"a", "\tb"}},
        {"control bytes at the start of the file stay",
         "\x01"
         "a\nb",
         {"\x01"
          "a",
          "b"}},
        {"control bytes inside stay",
         "a\x01"
         "b",
         {"a\x01"
          "b"}},
        {"control bytes between line ends leave an empty line", "a\n\x02\nb", {"a", "", "b"}},
        {"control bytes part CR from LF", "a\r\x02\nb", {"a", "", "b"}},
        {"control bytes at the end", "a\n\x02\x03", {"a", ""}},
        {"NUL inside a line", std::string("a\0b\nc", 5), {std::string("a\0b", 3), "c"}},
        {"NUL behind a line end is left out", std::string("a\n\0b", 4), {"a", "b"}},
        {"only NULs", std::string(3, '\0'), {std::string(3, '\0')}},
        {"bytes above 127 are no control bytes", "a\n\xE4\xFF", {"a", "\xE4\xFF"}},
    };
    for (const auto& c : cases) {
        ASSERT_EQ(Index(c.bytes), kTextFileOk) << c.what;
        EXPECT_EQ(Lines(), c.expected) << c.what;
    }
}

TEST_F(TextFileReaderTest, LineAfterTheLastDoesNotExist)
{
    Index("a\nb");
    EXPECT_EQ(reader.GetLine(2), nullptr);
    EXPECT_STREQ(reader.GetLastError(), "Line #2 does not exist");
    EXPECT_EQ(reader.GetLine(-1), nullptr);
    EXPECT_STREQ(reader.GetLastError(), "Line #-1 does not exist");
    EXPECT_STREQ(reader.GetLine(1), "b");
    EXPECT_EQ(LogText(), "") << "failures of this reader are not logged";
}

TEST_F(TextFileReaderTest, LineThatDoesNotFitTheBufferIsTooLong)
{
    Index("abc");
    reader.lineLength[0] = 65536; // the index itself refuses such a line
    EXPECT_EQ(reader.GetLine(0), nullptr);
    EXPECT_STREQ(reader.GetLastError(), "Line #0 is too long:65536");
}

TEST_F(TextFileReaderTest, TextOfALineLivesUntilTheNextCall)
{
    Index("first\nsecond");
    const char* text = reader.GetLine(0);
    EXPECT_STREQ(text, "first");
    EXPECT_EQ(reader.GetLine(1), text);
    EXPECT_STREQ(text, "second");
}

TEST_F(TextFileReaderTest, HoldsNoMoreThan65535Lines)
{
    EXPECT_EQ(Index(std::string(65534, '\n')), kTextFileOk);
    EXPECT_EQ(reader.GetLineCount(), 65535);
    EXPECT_EQ(Index(std::string(65535, '\n')), kTextFileTooManyLines); // 65,536 lines
    EXPECT_STREQ(reader.GetLastError(), "File in.txt too big");
    EXPECT_EQ(reader.GetLineCount(), 0);
    EXPECT_EQ(reader.GetLine(0), nullptr);
}

TEST_F(TextFileReaderTest, HoldsLinesOfUpTo65535Bytes)
{
    const std::string longest(65535, 'x');
    EXPECT_EQ(Index("a\n" + longest), kTextFileOk);
    EXPECT_EQ(reader.GetLine(1), longest);
    EXPECT_EQ(Index("a\n" + longest + "x"), kTextFileLineTooLong);
    EXPECT_STREQ(reader.GetLastError(), "Line too long in file in.txt");
    EXPECT_EQ(Index(std::string(70000, 'y')), kTextFileLineTooLong);
    EXPECT_EQ(reader.GetLineCount(), 0);
}

TEST_F(TextFileReaderTest, ReadsAFileWhole)
{
    scratch.Write("in.txt", "one\r\ntwo");
    reader.SetFileName("in.txt");
    ASSERT_EQ(reader.ReadFile(), kTextFileOk);
    EXPECT_EQ(reader.fileSize, 8);
    ASSERT_EQ(reader.BuildLineIndex(), kTextFileOk);
    EXPECT_EQ(Lines(), (std::vector<std::string>{"one", "two"}));
    EXPECT_EQ(reader.lineStart[1], 5);
}

TEST_F(TextFileReaderTest, ReadsAnEmptyFile)
{
    scratch.Write("in.txt", "");
    reader.SetFileName("in.txt");
    EXPECT_EQ(reader.ReadFile(), kTextFileOk);
    EXPECT_EQ(reader.BuildLineIndex(), kTextFileOk);
    EXPECT_EQ(reader.GetLineCount(), 1);
}

TEST_F(TextFileReaderTest, MissingFileIsCodeOneWithTheSystemsNumber)
{
    reader.SetFileName("none.txt");
    EXPECT_EQ(reader.ReadFile(), kTextFileCannotOpen);
    EXPECT_EQ(reader.GetLastError(), "Can not open file none.txt, Code:" + std::to_string(ENOENT));
    EXPECT_EQ(LogText(), "");
}

TEST_F(TextFileReaderTest, FileThatDoesNotFitInt32CannotBeRead)
{
    scratch.Write("in.txt", "");
    std::filesystem::resize_file(scratch.Path() / "in.txt", uint64_t{1} << 31);
    reader.SetFileName("in.txt");
    EXPECT_EQ(reader.ReadFile(), kTextFileCannotRead);
    EXPECT_STREQ(reader.GetLastError(), "Can not read from file in.txt");
    EXPECT_EQ(reader.fileSize, 0);
}

TEST_F(TextFileReaderTest, FileNamesAreTruncatedTo255Bytes)
{
    const std::string name(300, 'n');
    reader.SetFileName(name.c_str());
    EXPECT_EQ(reader.GetFileName(), name.substr(0, 255));
    EXPECT_EQ(reader.ReadFile(), kTextFileCannotOpen);
    // "Can not open file " has 18 bytes; the text is limited to 255.
    EXPECT_EQ(reader.GetLastError(), "Can not open file " + name.substr(0, 237));
}

TEST_F(TextFileReaderTest, FailedReadForgetsTheFileBefore)
{
    Index("a\nb");
    reader.SetFileName("none.txt");
    EXPECT_EQ(reader.ReadFile(), kTextFileCannotOpen);
    EXPECT_EQ(reader.GetLineCount(), 0);
    EXPECT_EQ(reader.GetLine(0), nullptr);
}

} // namespace
