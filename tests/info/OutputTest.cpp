#include "info/Output.h"

#include <memory>

#include <gtest/gtest.h>

#include "tests/support/TreePaths.h"

namespace {

struct Closer {
    void operator()(FILE* file) const { std::fclose(file); }
};
using Stream = std::unique_ptr<FILE, Closer>;

} // namespace

TEST(Output, KeepsTheTextWithoutAStream)
{
    Output output;
    output.Add("a");
    output.Line({"b", "c"});
    EXPECT_EQ(output.Text(), "abc\n");
    EXPECT_TRUE(output.Flush());
    EXPECT_EQ(output.Text(), "abc\n");
}

TEST(Output, WritesEverythingToItsStreamInPieces)
{
    const Stream stream(std::tmpfile());
    ASSERT_TRUE(stream);
    const std::string piece(50000, 'x');
    {
        Output output(stream.get());
        output.Add(piece);
        output.Add(piece);
        EXPECT_LT(output.Text().size(), piece.size()) << "more than the size of a piece is written";
        output.Add("end");
        EXPECT_TRUE(output.Flush());
    }
    EXPECT_EQ(std::ftell(stream.get()), 100003);
}

TEST(Output, ReportsAFailedWrite)
{
    const Stream stream(std::tmpfile());
    ASSERT_TRUE(stream);
    const Stream readOnly(std::fopen(SourcePath("README.md").c_str(), "rb"));
    ASSERT_TRUE(readOnly);
    Output output(readOnly.get());
    output.Add("text");
    EXPECT_FALSE(output.Flush());
    EXPECT_FALSE(output.Flush()) << "what was lost stays lost";
}
