#include "platform/OpenFileStream.h"

#include "platform/headless/win32/ServedFile.h"
#include "tests/support/ScratchDirectory.h"

#include <chrono>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <sys/stat.h>

using namespace headless;

namespace {

struct StreamCloser {
    void operator()(FILE* stream) const { std::fclose(stream); }
};
using Stream = std::unique_ptr<FILE, StreamCloser>;

/// All that is left of a stream.
std::string Rest(FILE* stream)
{
    std::string bytes(100, '?');
    bytes.resize(std::fread(bytes.data(), 1, bytes.size(), stream));
    return bytes;
}

std::string ContentOf(const char* path)
{
    const Stream stream(OpenFileStream(path, "rb"));
    return stream ? Rest(stream.get()) : "none";
}

const std::string kBytes("ab\0cd", 5);

} // namespace

TEST(OpenFileStream, TellsTheSizeOfWhatIsRead)
{
    const ScratchDirectory scratch;
    scratch.Write("a", kBytes);
    int64_t size = 0;
    EXPECT_NE(Stream(OpenFileStream("a", "rb", &size)), nullptr);
    EXPECT_EQ(size, 5);
    EXPECT_NE(Stream(OpenFileStream("A", "r+b", &size)), nullptr); // in any case of letters
    EXPECT_EQ(size, 5);
    EXPECT_EQ(Stream(OpenFileStream("gone", "rb", &size)), nullptr);
    EXPECT_EQ(size, -1);
    EXPECT_NE(Stream(OpenFileStream("/dev/null", "rb", &size)), nullptr);
    EXPECT_EQ(size, -1);
    EXPECT_NE(Stream(OpenFileStream("a", "wb", &size)), nullptr);
    EXPECT_EQ(size, -1);
}

TEST(OpenFileStream, MakesEmptyFiles)
{
    const ScratchDirectory scratch;
    for (const char* const mode : {"wb", "w+b"}) {
        scratch.Write("a", kBytes);
        EXPECT_NE(Stream(OpenFileStream("a", mode)), nullptr);
        EXPECT_EQ(scratch.Read("a"), "") << mode;
        const Stream stream(OpenFileStream("b", mode));
        ASSERT_NE(stream, nullptr);
        EXPECT_EQ(std::fwrite(kBytes.data(), kBytes.size(), 1, stream.get()), 1u);
        EXPECT_EQ(std::fread(std::string(1, 0).data(), 1, 1, stream.get()), 0u);
        EXPECT_EQ(std::fflush(stream.get()), 0);
        EXPECT_EQ(scratch.Read("b"), kBytes) << mode;
    }
    const Stream kept(OpenFileStream("b", "ab"));
    EXPECT_EQ(scratch.Read("b"), kBytes);
}

// To truncate a file that has nothing makes it expensive to close, and shows in its time.
TEST(OpenFileStream, LeavesEmptyFilesAsTheyAre)
{
    const ScratchDirectory scratch;
    scratch.Write("a", "");
    const auto old = std::filesystem::last_write_time("a") - std::chrono::hours(1);
    std::filesystem::last_write_time("a", old);
    EXPECT_NE(Stream(OpenFileStream("a", "wb")), nullptr);
    EXPECT_EQ(std::filesystem::last_write_time("a"), old);
}

TEST(OpenFileStream, ServedFilesComeFromMemory)
{
    const ScratchDirectory scratch;
    scratch.Write("a", "of the disk");
    scratch.Write("ab", "other");
    {
        const ServingFile serving({"a", kBytes.data(), kBytes.size()});
        int64_t size = 0;
        const Stream stream(OpenFileStream("a", "rb", &size));
        ASSERT_NE(stream, nullptr);
        EXPECT_EQ(size, 5);
        EXPECT_EQ(Rest(stream.get()), kBytes);
        EXPECT_EQ(std::fseek(stream.get(), -2, SEEK_END), 0);
        EXPECT_EQ(std::ftell(stream.get()), 3);
        EXPECT_EQ(Rest(stream.get()), "cd");
        EXPECT_EQ(std::fseek(stream.get(), 1, SEEK_SET), 0);
        EXPECT_EQ(Rest(stream.get()), kBytes.substr(1));
        EXPECT_NE(std::fseek(stream.get(), 6, SEEK_SET), 0);
        EXPECT_NE(std::fseek(stream.get(), -6, SEEK_END), 0);
        EXPECT_EQ(ContentOf("ab"), "other");
        EXPECT_EQ(ContentOf("./a"), "of the disk");
        EXPECT_EQ(ContentOf("A"), "of the disk");
        EXPECT_EQ(Rest(Stream(OpenFileStream("a", "r+b")).get()), "of the disk");
    }
    EXPECT_EQ(ContentOf("a"), "of the disk");
    const ServingFile none({"a", kBytes.data(), 0});
    EXPECT_EQ(ContentOf("a"), "of the disk");
}
