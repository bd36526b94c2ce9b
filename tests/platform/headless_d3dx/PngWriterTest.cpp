#include "platform/headless/d3dx/PngWriter.h"

#include "platform/headless/d3dx/TemporaryFile.h"
#include "tests/platform/headless_d3dx/DecodedPixels.h"
#include "tests/support/ScratchDirectory.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace headless;

namespace {

const uint32_t kPixels[] = {0x80010203, 0xFF040506, 0x00070809, 0xFFFFFFFF, 0, 0xFF000000};

size_t FileCount()
{
    size_t count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("."))
        ++count;
    return count;
}

} // namespace

TEST(PngWriter, WritesWhatTheDecoderReads)
{
    const ScratchDirectory scratch;
    std::string error;
    ASSERT_TRUE(WritePngFile("a.png", 3, 2, kPixels, true, error)) << error;
    EXPECT_EQ(DecodedPixels(scratch.Read("a.png")),
              std::vector<uint32_t>(std::begin(kPixels), std::end(kPixels)));
}

TEST(PngWriter, LeavesTheAlphaOutWhenAsked)
{
    const ScratchDirectory scratch;
    std::string error;
    ASSERT_TRUE(WritePngFile("a.png", 1, 1, kPixels, false, error)) << error;
    EXPECT_EQ(ReportedFormat(scratch.Read("a.png")), D3DFMT_X8R8G8B8);
    EXPECT_EQ(DecodedPixels(scratch.Read("a.png")), std::vector<uint32_t>{0xFF010203});
}

TEST(PngWriter, EqualPicturesAreEqualFiles)
{
    const ScratchDirectory scratch;
    std::string error;
    ASSERT_TRUE(WritePngFile("a.png", 3, 2, kPixels, true, error));
    ASSERT_TRUE(WritePngFile("b.png", 3, 2, kPixels, true, error));
    EXPECT_EQ(scratch.Read("a.png"), scratch.Read("b.png"));
    EXPECT_EQ(FileCount(), 2u) << "no temporary file stays behind";
}

TEST(PngWriter, RefusesWhatIsNotAPicture)
{
    const ScratchDirectory scratch;
    const std::pair<int, int> sizes[] = {{0, 1}, {1, 0}, {-1, 1}, {16385, 1}, {1, 16385}};
    for (const auto& [width, height] : sizes) {
        std::string error;
        EXPECT_FALSE(WritePngFile("a.png", width, height, kPixels, true, error));
        EXPECT_EQ(error, "not a picture of 1 to 16384 pixels a side");
    }
    std::string error;
    EXPECT_FALSE(WritePngFile("a.png", 1, 1, nullptr, true, error));
    EXPECT_EQ(FileCount(), 0u);
}

TEST(PngWriter, KeepsTheOldFileWhenItFails)
{
    const ScratchDirectory scratch;
    std::string error;
    EXPECT_FALSE(WritePngFile("no/such/folder/a.png", 1, 1, kPixels, true, error));
    EXPECT_FALSE(error.empty());

    std::filesystem::create_directory("taken.png"); // a file cannot replace it
    error.clear();
    EXPECT_FALSE(WritePngFile("taken.png", 1, 1, kPixels, true, error));
    EXPECT_EQ(error, "Is a directory");
    EXPECT_EQ(FileCount(), 1u);
}

TEST(TemporaryFile, AppearsWhenItIsComplete)
{
    const ScratchDirectory scratch;
    scratch.Write("a.txt", "old");
    {
        TemporaryFile file("a.txt");
        ASSERT_NE(file.Stream(), nullptr);
        std::fputs("new", file.Stream());
        EXPECT_EQ(scratch.Read("a.txt"), "old");
        EXPECT_TRUE(file.Commit());
        EXPECT_EQ(scratch.Read("a.txt"), "new");
        EXPECT_FALSE(file.Commit()) << "there is nothing left to commit";
    }
    EXPECT_EQ(FileCount(), 1u);
}

TEST(TemporaryFile, LeavesNothingWithoutACommit)
{
    const ScratchDirectory scratch;
    scratch.Write("a.txt", "old");
    {
        const TemporaryFile file("a.txt");
        std::fputs("new", file.Stream());
    }
    EXPECT_EQ(scratch.Read("a.txt"), "old");
    EXPECT_EQ(FileCount(), 1u);
}

TEST(TemporaryFile, ReportsAFullDisk)
{
    // This device refuses all output for lack of space, at the latest when flushed.
    if (!std::filesystem::exists("/dev/full"))
        GTEST_SKIP() << "this machine has no full device";
    const ScratchDirectory scratch;
    std::filesystem::create_symlink("/dev/full", "a.png");
    std::string error;
    EXPECT_FALSE(WritePngFile("a.png", 1, 1, kPixels, true, error));
    EXPECT_FALSE(error.empty());
    EXPECT_EQ(FileCount(), 1u);
}
