#include "info/Arguments.h"

#include <gtest/gtest.h>

using Words = std::vector<std::string>;

TEST(Arguments, ModesAndFiles)
{
    static const struct {
        const char* what;
        Words words;
        InfoMode mode;
        Words files;
    } cases[] = {
        {"a file alone", {"a.qsb"}, InfoMode::kReport, {"a.qsb"}},
        {"option ahead", {"--tree", "a.qsb"}, InfoMode::kTree, {"a.qsb"}},
        {"option behind", {"a.qsb", "--json"}, InfoMode::kJson, {"a.qsb"}},
        {"effects", {"--effects", "a.qsb"}, InfoMode::kEffects, {"a.qsb"}},
        {"a shader", {"--disassemble", "a.vsasm"}, InfoMode::kDisassemble, {"a.vsasm"}},
        {"an effect", {"--compile", "a.fx", "-o", "b"}, InfoMode::kCompile, {"a.fx"}},
        {"twice the same", {"--check", "--check", "a"}, InfoMode::kCheck, {"a"}},
        {"a comparison", {"diff", "a", "b"}, InfoMode::kDiff, {"a", "b"}},
        {"a file called diff", {"./diff"}, InfoMode::kReport, {"./diff"}},
        {"a file called diff behind the mark", {"--", "diff"}, InfoMode::kReport, {"diff"}},
        {"diff that is not the first word", {"diff", "diff", "b"}, InfoMode::kDiff, {"diff", "b"}},
        {"a file that looks like an option", {"--", "--tree"}, InfoMode::kReport, {"--tree"}},
        {"a single dash is a file", {"-"}, InfoMode::kReport, {"-"}},
        {"help needs no file", {"--help"}, InfoMode::kHelp, {}},
        {"help wins", {"diff", "-h"}, InfoMode::kHelp, {}},
        {"version", {"--version"}, InfoMode::kVersion, {}},
    };
    for (const auto& c : cases) {
        const InfoArguments read = ReadArguments(c.words);
        EXPECT_EQ(read.error, "") << c.what;
        EXPECT_EQ(read.mode, c.mode) << c.what;
        EXPECT_EQ(read.files, c.files) << c.what;
        EXPECT_FALSE(read.all) << c.what;
    }
}

TEST(Arguments, ToleranceAndAll)
{
    EXPECT_EQ(ReadArguments({"diff", "a", "b"}).tolerance, std::nullopt);
    EXPECT_EQ(ReadArguments({"diff", "a", "--exact", "b"}).tolerance, 0);
    EXPECT_EQ(ReadArguments({"diff", "--tolerance", "0.5", "a", "b"}).tolerance, 0.5);
    EXPECT_EQ(ReadArguments({"diff", "a", "b", "--tolerance=1e-3"}).tolerance, 0.001);
    EXPECT_TRUE(ReadArguments({"diff", "a", "--all", "b"}).all);
    EXPECT_TRUE(ReadArguments({"--all", "a"}).all);
}

TEST(Arguments, ErrorsAreReported)
{
    static const char kOnce[] = "'--tolerance' and '--exact' are given only once, and not together";
    static const char kNumber[] = "option '--tolerance' needs a number from 0 on";
    static const struct {
        Words words;
        const char* expected;
    } cases[] = {
        {{}, "a file is needed"},
        {{"--json"}, "a file is needed"},
        {{"diff"}, "two files are needed"},
        {{"diff", "a"}, "two files are needed"},
        {{"diff", "a", "b", "c"}, "one file too many: 'c'"},
        {{"a", "b"}, "one file too many: 'b'"},
        {{"--trees", "a"}, "unknown option '--trees'"},
        {{"-j", "a"}, "unknown option '-j'"},
        {{"--tree", "--json", "a"}, "option '--json' does not go with the others"},
        {{"diff", "a", "b", "--check"}, "option '--check' does not go with the others"},
        {{"--compile", "a.fx"}, "'--compile' and '-o FILE' go together"},
        {{"--tree", "a", "-o", "b"}, "'--compile' and '-o FILE' go together"},
        {{"--compile", "a.fx", "-o"}, "option '-o' needs a file"},
        {{"--tolerance", "1", "a"}, "'--tolerance' and '--exact' go with diff only"},
        {{"--exact", "a"}, "'--tolerance' and '--exact' go with diff only"},
        {{"diff", "a", "b", "--exact", "--tolerance=1"}, kOnce},
        {{"diff", "a", "b", "--tolerance", "0", "--exact"}, kOnce},
        {{"--tolerances", "1", "a"}, "unknown option '--tolerances'"},
        {{"diff", "a", "b", "--tolerance"}, kNumber},
        {{"diff", "a", "b", "--tolerance="}, kNumber},
        {{"diff", "a", "b", "--tolerance", "-1"}, kNumber},
        {{"diff", "a", "b", "--tolerance", "x"}, kNumber},
        {{"diff", "a", "b", "--tolerance", "1x"}, kNumber},
        {{"diff", "a", "b", "--tolerance", "nan"}, kNumber},
        {{"diff", "a", "b", "--tolerance", "inf"}, kNumber},
        {{"diff", "a", "b", "--tolerance", "1e999"}, kNumber},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ReadArguments(c.words).error, c.expected);
}
