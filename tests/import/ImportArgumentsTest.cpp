#include "import/ImportArguments.h"

#include <gtest/gtest.h>

TEST(ImportArguments, KeepNothingOfTheLastCommandLine)
{
    ImportCommandLine line;
    const ImportArguments first =
        line.Read({"--up", "y", "--memory", "100", "--scale", "2", "-q", "a.obj"});
    EXPECT_EQ(first.error, "");
    EXPECT_EQ(first.options.mostBytes, 100u << 20);
    EXPECT_TRUE(line.Read({"--help"}).help);
    EXPECT_NE(line.Read({"--scale", "x", "a.obj"}).error, "");

    const ImportArguments second = line.Read({"b.obj"});
    EXPECT_EQ(second.error, "");
    EXPECT_EQ(second.models, std::vector<std::string>{"b.obj"});
    EXPECT_FALSE(second.help);
    EXPECT_FALSE(second.quiet);
    EXPECT_EQ(second.options.plan.up, PlanOptions::Up::kModel);
    EXPECT_EQ(second.options.plan.unit, 1);
    EXPECT_EQ(second.options.mostBytes, ImportOptions().mostBytes);
}
