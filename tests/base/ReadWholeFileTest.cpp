#include "base/ReadWholeFile.h"

#include "tests/support/ScratchDirectory.h"

#include <filesystem>

#include <gtest/gtest.h>

TEST(ReadWholeFile, EveryByteIsReadAndWhatWasThereBeforeIsGone)
{
    const ScratchDirectory directory;
    const std::string bytes = std::string(70000, 'x') + std::string("\0\r\n\x1A\xFF", 5);
    directory.Write("file", bytes);
    std::string read = "old";
    ASSERT_TRUE(ReadWholeFile("file", read));
    EXPECT_EQ(read, bytes);
}

TEST(ReadWholeFile, WhatIsNoFileGivesNothing)
{
    const ScratchDirectory directory;
    std::filesystem::create_directory("folder");
    for (const char* path : {"folder", "missing", ""}) {
        std::string read = "old";
        EXPECT_FALSE(ReadWholeFile(path, read)) << path;
        EXPECT_EQ(read, "") << path;
    }
}
