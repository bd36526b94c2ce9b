#include "base/File.h"

#include <ctime>
#include <fcntl.h>
#include <limits>
#include <unistd.h>

#include "tests/base/LogFixture.h"

namespace {

constexpr int32_t kTooMuchToKeep = 100000; // bytes that a stream stores at once

/// The descriptor that the next file gets: the lowest free one.
int NextDescriptor()
{
    const int lowest = dup(fileno(stderr));
    close(lowest);
    return lowest;
}

class FileTest : public LogFixture {
protected:
    FileTest() { gOpenHandlesCount = 0; }

    /// For reading and writing, but the system refuses the writes, and its position is `streamPosition`.
    void OpenWithoutWrites(const char* name, int32_t streamPosition)
    {
        file.Close();
        const int descriptor = NextDescriptor();
        ASSERT_TRUE(file.Open(name, false, false, true));
        const int readOnly = open(name, O_RDONLY);
        ASSERT_GE(dup2(readOnly, descriptor), 0);
        close(readOnly);
        ASSERT_EQ(lseek(descriptor, streamPosition, SEEK_SET), streamPosition);
    }
    /// Creates the file, writes `bytes`, and closes the descriptor behind its back.
    void CreateAndLose(const char* name, const std::string& bytes)
    {
        const int descriptor = NextDescriptor();
        ASSERT_TRUE(file.Create(name, true, false));
        ASSERT_TRUE(file.Write(bytes.data(), static_cast<int32_t>(bytes.size())));
        ASSERT_EQ(close(descriptor), 0);
    }

    const std::string manyBytes = std::string(kTooMuchToKeep, 'x');
    File file;
};

/// Both ways of reading: from the stream and from memory.
class FileReading : public LogFixture, public testing::WithParamInterface<bool> {
protected:
    FileReading() { gOpenHandlesCount = 0; }

    void Open(const std::string& bytes)
    {
        scratch.Write("in.bin", bytes);
        ASSERT_TRUE(file.Open("in.bin", true, GetParam(), true));
    }
    File file;
};

INSTANTIATE_TEST_SUITE_P(StreamAndMemory, FileReading, testing::Bool(),
                         [](const auto& row) { return row.param ? "Memory" : "Stream"; });

TEST_P(FileReading, PrimitivesAreLittleEndianAndUnaligned)
{
    Open(std::string("\x01\x78\x56\x34\x12\xFE\xFF\x00\x00\x20\x41", 11));
    int8_t byte = 0;
    int32_t number = 0;
    int16_t small = 0;
    float real = 0;
    EXPECT_TRUE(file.ReadInt8(&byte));
    EXPECT_TRUE(file.ReadInt32(&number));
    EXPECT_TRUE(file.ReadInt16(&small));
    EXPECT_TRUE(file.ReadFloat32(&real));
    EXPECT_EQ(byte, 1);
    EXPECT_EQ(number, 0x12345678);
    EXPECT_EQ(small, -2);
    EXPECT_EQ(real, 10.0f); // 0x41200000: 1.25 * 2^3
    EXPECT_EQ(file.GetPosition(), 11);
    EXPECT_EQ(file.GetSize(), 11);
    EXPECT_EQ(file.GetBytesLeft(), 0);
}

TEST_P(FileReading, PastTheEndIsAnError)
{
    Open("abc");
    int32_t number = 0;
    EXPECT_EQ(RaisedBy([&] { file.ReadInt32(&number); }), "in.bin: Error reading from file");
    EXPECT_EQ(file.errorHappened, 1);
    file.throwOnError = 0;
    file.Seek(3);
    EXPECT_FALSE(file.Read(&number, 1));
    EXPECT_TRUE(file.Read(&number, 0));
}

TEST_P(FileReading, NegativeSizeIsAnError)
{
    Open("abc");
    char buffer[4];
    EXPECT_EQ(RaisedBy([&] { file.Read(buffer, -1); }), "in.bin: Error reading from file");
    EXPECT_EQ(RaisedBy([&] { file.Read(buffer, std::numeric_limits<int32_t>::min()); }),
              "in.bin: Error reading from file");
}

TEST_P(FileReading, SeekCountsFromTheStart)
{
    Open("abcdef");
    char c = 0;
    file.Seek(4);
    EXPECT_EQ(file.GetBytesLeft(), 2);
    EXPECT_TRUE(file.Read(&c, 1));
    EXPECT_EQ(c, 'e');
    file.Seek(0);
    EXPECT_TRUE(file.Read(&c, 1));
    EXPECT_EQ(c, 'a');
}

TEST_P(FileReading, StringsComeWithTheirLength)
{
    Open(std::string("\x04\0\0\0boat\0\0\0\0\xFF\xFF\xFF\xFFx", 17));
    String text("old");
    EXPECT_TRUE(file.ReadString(&text));
    EXPECT_STREQ(text.c_str(), "boat");
    EXPECT_EQ(text.length, 4);
    EXPECT_TRUE(file.ReadString(&text)) << "length 0";
    EXPECT_EQ(text.length, 0);
    text.Assign("old");
    EXPECT_TRUE(file.ReadString(&text)) << "negative length";
    EXPECT_EQ(text.length, 0);
    EXPECT_EQ(text.data, nullptr);
    EXPECT_EQ(file.GetPosition(), 16);
}

TEST_P(FileReading, StringLongerThanWhatIsLeftIsAnErrorBeforeMemoryIsTaken)
{
    Open(std::string("\xFF\xFF\xFF\x7Fxyz", 7));
    String text("old");
    EXPECT_EQ(RaisedBy([&] { file.ReadString(&text); }),
              "in.bin: String of 2147483647 bytes exceeds the 3 bytes left in file");
    EXPECT_EQ(text.data, nullptr);
}

TEST_P(FileReading, EveryTruncationOfAStringFails)
{
    const std::string whole("\x04\0\0\0boat", 8);
    for (size_t size = 0; size < whole.size(); ++size) {
        Open(whole.substr(0, size));
        String text;
        EXPECT_NE(RaisedBy([&] { file.ReadString(&text); }), "no error") << size;
        EXPECT_EQ(text.length, 0) << size;
    }
}

TEST_P(FileReading, EmptyFileHasSizeZero)
{
    Open("");
    EXPECT_EQ(file.GetSize(), 0);
    char c = 0;
    EXPECT_EQ(RaisedBy([&] { file.Read(&c, 1); }), "in.bin: Error reading from file");
}

TEST_P(FileReading, SeekOutsideTheFileIsSafe)
{
    Open("abc");
    char c = 0;
    for (const int32_t position : {-1, 4, std::numeric_limits<int32_t>::max()}) {
        const std::string error = RaisedBy([&] {
            file.Seek(position);
            file.Read(&c, 1);
        });
        const bool seekFails = !GetParam() && position < 0;
        EXPECT_EQ(error, seekFails ? "in.bin: fseek failed: -1" : "in.bin: Error reading from file")
            << position;
    }
}

TEST_F(FileTest, FailedSeekThatDoesNotThrowStoresThePlace)
{
    scratch.Write("in.bin", "abc");
    ASSERT_TRUE(file.Open("in.bin", true, false, true));
    file.throwOnError = 0;
    file.Seek(-5);
    EXPECT_EQ(file.GetPosition(), -5);
    EXPECT_EQ(LogText(), Entry("Error:File: in.bin: fseek failed: -1"));
    file.Seek(1);
    char c = 0;
    EXPECT_TRUE(file.Read(&c, 1));
    EXPECT_EQ(c, 'b');
}

TEST_F(FileTest, ReadsMayCrossTheEndOfTheWindow)
{
    // The window holds 65,536 bytes. 251 is prime, so no two stretches are alike.
    std::string bytes(200000, ' ');
    for (size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<char>(i % 251);
    scratch.Write("in.bin", bytes);
    ASSERT_TRUE(file.Open("in.bin", true, false, true));
    size_t place = 0;
    // Up to 6 bytes before its end, across its end, a piece larger than it with some of it left,
    // the rest.
    for (const size_t size : {100u, 65430u, 20u, 100000u, 34450u}) {
        std::string piece(size, ' ');
        EXPECT_TRUE(file.Read(piece.data(), static_cast<int32_t>(size)));
        EXPECT_EQ(piece, bytes.substr(place, size)) << "from " << place;
        place += size;
        EXPECT_EQ(file.GetPosition(), static_cast<int32_t>(place));
    }
    EXPECT_EQ(file.GetBytesLeft(), 0);
}

TEST_F(FileTest, ReadsAheadNoFurtherThanTheWindow)
{
    // The window holds 65,536 bytes. It is used up to its last byte, and what comes after it is
    // replaced before that is read.
    scratch.Write("in.bin", std::string(65536, 'a') + "old");
    ASSERT_TRUE(file.Open("in.bin", true, false, true));
    int8_t first = 0;
    std::string rest(65535, ' ');
    EXPECT_TRUE(file.ReadInt8(&first));
    EXPECT_TRUE(file.Read(rest.data(), 65535));
    scratch.Write("in.bin", std::string(65536, 'a') + "new");
    std::string behind(3, ' ');
    EXPECT_TRUE(file.Read(behind.data(), 3));
    EXPECT_EQ(behind, "new");
}

TEST_F(FileTest, ReadOfNothingOnAClosedFileIsAnError)
{
    char c = 0;
    EXPECT_EQ(RaisedBy([&] { file.Read(&c, 0); }), ": File is not readable");
    EXPECT_EQ(RaisedBy([&] { file.Write(&c, 0); }), ": File is not writeable");
    EXPECT_EQ(RaisedBy([&] { file.Seek(0); }), ": fseek failed: -1");
    file.throwOnError = 0;
    EXPECT_FALSE(file.Read(&c, 1));
    EXPECT_FALSE(file.Write(&c, 1));
    EXPECT_EQ(file.GetFileTime(), -1);
    EXPECT_FALSE(file.IsOpen());
}

TEST_F(FileTest, LogLineHoldsLabelNameAndMessage)
{
    scratch.Write("in.bin", "");
    ASSERT_TRUE(file.Open("in.bin", true, false, true));
    EXPECT_EQ(RaisedBy([&] { file.Write("x", 1); }), "in.bin: File is not writeable");
    EXPECT_EQ(LogText(), Entry("Error:File: in.bin: File is not writeable"));
}

TEST_F(FileTest, WholeFileNeedsReadOnly)
{
    scratch.Write("in.bin", "abc");
    EXPECT_EQ(RaisedBy([&] { file.Open("in.bin", false, true, true); }),
              ": LoadWholeFile requires ReadOnly");
    file.throwOnError = 0;
    EXPECT_FALSE(file.Open("in.bin", false, true, true));
}

TEST_F(FileTest, MissingFileIsAWarningOnlyWhenAskedFor)
{
    EXPECT_FALSE(file.Open("none.bin", true, false, false));
    EXPECT_EQ(LogText(), "");
    EXPECT_FALSE(file.Open("none.bin", true, false, true));
    EXPECT_EQ(LogText(), Entry("Warning:File: Open() failed: No such file or directory, "
                               "file:'none.bin'"));
    EXPECT_STREQ(file.GetFileName().c_str(), "none.bin");
    EXPECT_FALSE(file.Open(nullptr, true, false, true)) << "null is the empty name";
    EXPECT_EQ(gOpenHandlesCount, 0);
}

TEST_F(FileTest, DirectoryCannotBeOpened)
{
    scratch.Write("folder/inner.bin", "");
    EXPECT_FALSE(file.Open("folder", true, false, true));
    EXPECT_FALSE(file.Open("folder", true, true, true));
    EXPECT_NE(LogText().find("Warning:File: Open() failed: "), std::string::npos);
    EXPECT_EQ(gOpenHandlesCount, 0);
}

TEST_F(FileTest, CreateInAMissingDirectoryIsAWarning)
{
    EXPECT_FALSE(file.Create("none/out.bin", true, false));
    EXPECT_EQ(LogText(), "");
    EXPECT_FALSE(file.Create("none/out.bin", true, true));
    EXPECT_EQ(LogText(), Entry("Warning:File: Create() failed: No such file or directory, "
                               "file:'none/out.bin'"));
    EXPECT_FALSE(file.IsOpen());
}

TEST_F(FileTest, FailedCreateKeepsTheNameOfTheFileBefore)
{
    scratch.Write("in.bin", "abc");
    ASSERT_TRUE(file.Open("in.bin", true, false, true));
    EXPECT_FALSE(file.Create("none/out.bin", true, false));
    EXPECT_STREQ(file.GetFileName().c_str(), "in.bin");
    ASSERT_TRUE(file.Create("out.bin", true, true));
    EXPECT_STREQ(file.GetFileName().c_str(), "out.bin");
}

TEST_F(FileTest, CreatedFileStartsAtPositionZero)
{
    scratch.Write("in.bin", "abcdef");
    ASSERT_TRUE(file.Open("in.bin", true, false, true));
    file.Seek(4);
    EXPECT_FALSE(file.Create("none/out.bin", true, false));
    EXPECT_EQ(file.GetPosition(), 4) << "nothing was created";
    ASSERT_TRUE(file.Create("out.bin", true, true));
    EXPECT_EQ(file.GetPosition(), 0);
    EXPECT_TRUE(file.WriteInt32(1));
    EXPECT_EQ(file.GetPosition(), 4);
}

TEST_F(FileTest, WritesAreRawLittleEndianWithoutPadding)
{
    ASSERT_TRUE(file.Create("out.bin", true, true));
    EXPECT_TRUE(file.WriteInt8(1));
    EXPECT_TRUE(file.WriteInt32(0x12345678));
    EXPECT_TRUE(file.WriteInt16(-2));
    EXPECT_TRUE(file.WriteFloat32(10.0f));
    EXPECT_TRUE(file.WriteString(String("boat")));
    EXPECT_TRUE(file.WriteString(String()));
    EXPECT_EQ(file.GetPosition(), 23);
    EXPECT_EQ(file.GetSize(), 23);
    file.Close();
    EXPECT_EQ(scratch.Read("out.bin"),
              std::string("\x01\x78\x56\x34\x12\xFE\xFF\0\0\x20\x41\x04\0\0\0boat\0\0\0\0", 23));
}

TEST_F(FileTest, WriteOnlyFileCannotBeRead)
{
    ASSERT_TRUE(file.Create("out.bin", true, true));
    char c = 0;
    EXPECT_EQ(RaisedBy([&] { file.Read(&c, 1); }), "out.bin: File is not readable");
}

TEST_F(FileTest, CreatedFileCanBeReadBack)
{
    ASSERT_TRUE(file.Create("both.bin", false, true));
    EXPECT_TRUE(file.WriteInt32(1));
    EXPECT_TRUE(file.WriteInt32(2));
    file.Seek(0);
    int32_t number = 0;
    EXPECT_TRUE(file.ReadInt32(&number));
    EXPECT_EQ(number, 1);
    EXPECT_TRUE(file.WriteInt32(7)); // directly after a read
    file.Seek(4);
    EXPECT_TRUE(file.ReadInt32(&number));
    EXPECT_EQ(number, 7);
    EXPECT_EQ(file.GetSize(), 8);
}

TEST_F(FileTest, OpenForBothKeepsTheContent)
{
    scratch.Write("both.bin", "abcdef");
    ASSERT_TRUE(file.Open("both.bin", false, false, true));
    file.Seek(2);
    EXPECT_TRUE(file.Write("XY", 2));
    file.Close();
    EXPECT_EQ(scratch.Read("both.bin"), "abXYef");
}

TEST_F(FileTest, NameAndPositionStayAfterClose)
{
    scratch.Write("in.bin", "abcdef");
    ASSERT_TRUE(file.Open("in.bin", true, false, true));
    file.Seek(4);
    file.Close();
    EXPECT_STREQ(file.GetFileName().c_str(), "in.bin");
    EXPECT_EQ(file.GetPosition(), 4);
    EXPECT_EQ(file.GetSize(), 6);
    EXPECT_TRUE(file.Open(file.GetFileName().c_str(), true, false, true));
    EXPECT_EQ(file.GetPosition(), 0);
}

TEST_F(FileTest, QuirkSizeOfTheFileBeforeStaysAsTheLeastSize)
{
    scratch.Write("long.bin", "0123456789");
    ASSERT_TRUE(file.Open("long.bin", true, false, true));
    ASSERT_TRUE(file.Create("short.bin", true, true));
    EXPECT_TRUE(file.WriteInt32(1));
    EXPECT_EQ(file.GetPosition(), 4);
    EXPECT_EQ(file.GetSize(), 10);
}

TEST_F(FileTest, OpenHandlesAreCounted)
{
    scratch.Write("in.bin", "abc");
    ASSERT_TRUE(file.Open("in.bin", true, false, true));
    EXPECT_EQ(gOpenHandlesCount, 1);
    {
        File other;
        ASSERT_TRUE(other.Create("out.bin", true, true));
        EXPECT_EQ(gOpenHandlesCount, 2);
    }
    EXPECT_EQ(gOpenHandlesCount, 1);
    file.Close();
    file.Close();
    EXPECT_EQ(gOpenHandlesCount, 0);
}

TEST_F(FileTest, OpeningAndCreatingCloseTheFileBefore)
{
    scratch.Write("in.bin", "abc");
    ASSERT_TRUE(file.Create("out.bin", true, true));
    file.Write("xy", 2);
    ASSERT_TRUE(file.Open("in.bin", true, true, true));
    EXPECT_EQ(gOpenHandlesCount, 1);
    EXPECT_EQ(scratch.Read("out.bin"), "xy");
    ASSERT_TRUE(file.Create("new.bin", true, true));
    EXPECT_EQ(gOpenHandlesCount, 1);
}

TEST_F(FileTest, CloseWithNoHandleCountedIsAWarning)
{
    scratch.Write("in.bin", "abc");
    ASSERT_TRUE(file.Open("in.bin", true, true, true));
    gOpenHandlesCount = 0;
    file.Close();
    EXPECT_EQ(LogText(), Entry("Warning:File: Invalid m_OpenHandlesCount !"));
    EXPECT_FALSE(file.IsOpen());
    EXPECT_EQ(gOpenHandlesCount, 0);
}

TEST_F(FileTest, FailureToWriteIsAnError)
{
    scratch.Write("in.bin", "abc");
    OpenWithoutWrites("in.bin", 0);
    EXPECT_EQ(RaisedBy([&] { file.Write(manyBytes.data(), kTooMuchToKeep); }),
              "in.bin: Error writing to file");
}

TEST_F(FileTest, FailedWriteTakesThePositionOfTheStreamAndRaisesTheSizeToIt)
{
    scratch.Write("in.bin", "abc");
    static const struct {
        const char* what;
        int32_t streamPosition, size;
    } cases[] = {
        {"inside the file", 1, 3},
        {"at its end", 3, 3},
        {"behind its end", 5, 5},
    };
    for (const auto& c : cases) {
        OpenWithoutWrites("in.bin", c.streamPosition);
        EXPECT_EQ(RaisedBy([&] { file.Write(manyBytes.data(), kTooMuchToKeep); }),
                  "in.bin: Error writing to file")
            << c.what;
        EXPECT_EQ(file.GetPosition(), c.streamPosition) << c.what;
        EXPECT_EQ(file.GetSize(), c.size) << c.what;
    }
}

TEST_F(FileTest, FailuresReturnFalseWithThrowingOff)
{
    file.throwOnError = 0;
    scratch.Write("in.bin", std::string("\x05\0\0\0boat", 8));
    String text;
    for (const bool inMemory : {false, true}) {
        ASSERT_TRUE(file.Open("in.bin", true, inMemory, true));
        EXPECT_FALSE(file.ReadString(&text)) << "longer than what is left";
        EXPECT_FALSE(file.Write("x", 1));
        EXPECT_FALSE(file.WriteString(String("x")));
        file.Seek(6);
        EXPECT_FALSE(file.ReadString(&text)) << "no whole length";
        file.Seek(-1);
        EXPECT_FALSE(file.Read(&text, -1));
    }
    ASSERT_TRUE(file.Open("in.bin", false, false, true));
    EXPECT_FALSE(file.Write("x", -1));
    EXPECT_TRUE(file.Write("x", 0));
}

TEST_F(FileTest, WriteThatLeavesTheRangeOfInt32IsAnError)
{
    ASSERT_TRUE(file.Create("out.bin", true, true));
    file.Seek(std::numeric_limits<int32_t>::max() - 3);
    EXPECT_EQ(RaisedBy([&] { file.WriteInt32(1); }), "out.bin: Error writing to file");
    EXPECT_EQ(RaisedBy([&] { file.Write("x", -1); }), "out.bin: Error writing to file");
}

TEST_F(FileTest, FileThatDoesNotFitInt32IsNotOpened)
{
    scratch.Write("in.bin", "");
    std::filesystem::resize_file(scratch.Path() / "in.bin", uint64_t{1} << 31);
    EXPECT_FALSE(file.Open("in.bin", true, true, true));
    EXPECT_EQ(LogText(), Entry("Warning:File: Open() failed: File too large, file:'in.bin'"));
    EXPECT_FALSE(file.IsOpen());
    EXPECT_EQ(gOpenHandlesCount, 0);
}

TEST_F(FileTest, NameThatIsTooLongForTheHostIsAWarning)
{
    const std::string name(300, 'n');
    EXPECT_FALSE(file.Open(name.c_str(), true, false, true));
    EXPECT_NE(LogText().find(", file:'" + name + "'"), std::string::npos);
    EXPECT_STREQ(file.GetFileName().c_str(), name.c_str());
}

TEST_F(FileTest, FileTimeIsThatOfTheOpenFileWhateverItsNameMeans)
{
    scratch.Write("deeper/other.bin", "");
    scratch.Write("in.bin", "abc");
    ASSERT_TRUE(file.Open("in.bin", true, false, true));
    const int32_t modified = file.GetFileTime();
    EXPECT_GT(modified, 0);
    std::filesystem::current_path(scratch.Path() / "deeper");
    EXPECT_EQ(file.GetFileTime(), modified);
    std::filesystem::current_path(scratch.Path());
}

TEST_F(FileTest, FileTimeIsInSecondsSince1970)
{
    const std::time_t before = std::time(nullptr);
    scratch.Write("in.bin", "abc");
    ASSERT_TRUE(file.Open("in.bin", true, false, true));
    const int32_t modified = file.GetFileTime();
    // File systems have coarse timestamps: allow two seconds.
    EXPECT_GE(modified, before - 2);
    EXPECT_LE(modified, std::time(nullptr) + 2);
    file.Close();
    EXPECT_EQ(file.GetFileTime(), -1);
}

TEST_F(FileTest, FlushBringsWhatWasWrittenToTheFile)
{
    ASSERT_TRUE(file.Create("out.bin", true, false));
    file.Write("abc", 3);
    EXPECT_TRUE(file.Flush());
    EXPECT_EQ(scratch.Read("out.bin"), "abc");
    EXPECT_TRUE(file.Close());
}

TEST_F(FileTest, FlushOfAFileThatIsNotOpenForWritingIsAnError)
{
    scratch.Write("in.bin", "abc");
    ASSERT_TRUE(file.Open("in.bin", true, false, true));
    EXPECT_EQ(RaisedBy([&] { file.Flush(); }), "in.bin: File is not writeable");
}

// As many bytes as a stream does not keep back for later.
TEST_F(FileTest, SeekAfterBytesThatCanNotBeStoredIsAnError)
{
    CreateAndLose("out.bin", std::string(60000, 'x'));
    EXPECT_EQ(RaisedBy([&] { file.Seek(0); }), "out.bin: Error writing to file");
    EXPECT_EQ(file.GetPosition(), 60000);
}

TEST_F(FileTest, CloseReportsAFailure)
{
    CreateAndLose("out.bin", "");
    EXPECT_FALSE(file.Close());
    EXPECT_TRUE(file.Close()); // nothing is open any more
}

TEST_F(FileTest, CloseThatFailsIsAWarning)
{
    CreateAndLose("out.bin", "");
    file.Close();
    EXPECT_EQ(LogText(), Entry("Warning:File: Could not close file: 'out.bin' - "
                               "Bad file descriptor"));
    EXPECT_FALSE(file.IsOpen());
    EXPECT_EQ(gOpenHandlesCount, 1) << "a failed close does not count down";
}

} // namespace
