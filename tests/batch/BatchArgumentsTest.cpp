#include "batch/BatchArguments.h"

#include <gtest/gtest.h>

#include "batch/FarmArguments.h"

TEST(BatchArguments, KeepNothingOfTheLastCommandLine)
{
    BatchArguments line;
    const BatchOptions first = line.Read({"--camera", "3", "--timeout=5", "--loop", "--exclude",
                                          "x", "--untrusted", "--out", "o", "a.qsa"});
    EXPECT_EQ(first.error, "");
    EXPECT_EQ(first.camera, 3);
    EXPECT_TRUE(first.loop);
    EXPECT_NE(line.Read({"--camera", "x", "a.qsa"}).error, "");

    const BatchOptions second = line.Read({"b.qsa"});
    EXPECT_EQ(second.error, "");
    EXPECT_EQ(second.paths, std::vector<std::string>{"b.qsa"});
    EXPECT_EQ(second.includes, std::vector<std::string>{"*.qsa"});
    EXPECT_TRUE(second.excludes.empty());
    EXPECT_EQ(second.outDirectory, "");
    EXPECT_EQ(second.camera, BatchOptions().camera);
    EXPECT_EQ(second.timeoutSeconds, BatchOptions().timeoutSeconds);
    EXPECT_FALSE(second.loop);
    EXPECT_EQ(second.confining, BatchOptions().confining);
}

TEST(FarmArguments, KeepNothingOfTheLastCommandLine)
{
    FarmArguments line(FarmCommand::kPlan);
    EXPECT_EQ(line.Read({"--chunks", "3", "-o", "d", "a.qsa"}).chunkCount, 3u);
    EXPECT_FALSE(line.Read({"--help"}).help.empty());
    const FarmOptions second = line.Read({"--chunk-mb", "1", "-o", "e", "a.qsa"});
    EXPECT_EQ(second.batch.error, "");
    EXPECT_EQ(second.chunkCount, 0u);
    EXPECT_EQ(second.chunkBytes, 1048576u);
    EXPECT_EQ(second.output, "e");
    EXPECT_EQ(second.help, "");
    EXPECT_EQ(line.Read({"--chunks", "3", "a.qsa"}).batch.error, "option '-o' is needed");
}
