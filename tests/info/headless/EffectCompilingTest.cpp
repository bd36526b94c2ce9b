// qsbinfo --compile.

#include <gtest/gtest.h>

#include "tests/support/RunProgram.h"
#include "tests/support/ScratchDirectory.h"
#include "tests/support/TreePaths.h"

namespace {

ProgramRun Compiled(const char* file, const char* target)
{
    return RunProgramFile(InfoProgramPath(), {"--compile", file, "-o", target});
}

} // namespace

TEST(EffectCompiling, WritesTheCompiledForm)
{
    const ScratchDirectory scratch;
    scratch.Write("a.fx", "float x = 1; technique t { pass { CullMode = 1; } }");
    const ProgramRun run = Compiled("a.fx", "a.fxo");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out + run.err, "");
    EXPECT_EQ(scratch.Read("a.fxo").substr(0, 4), std::string("\x01\x09\xFF\xFE", 4));
}

TEST(EffectCompiling, FaultsLeaveTheTargetAsItWas)
{
    const ScratchDirectory scratch;
    scratch.Write("a.fx", "technique t { pass {\nColour = 1; } }");
    scratch.Write("a.fxo", "old");
    const ProgramRun run = Compiled("a.fx", "a.fxo");
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.err, "qsbinfo: a.fx: a.fx(2,1): error X3008: there is no state 'Colour'\n");
    EXPECT_EQ(scratch.Read("a.fxo"), "old");
    EXPECT_EQ(Compiled("none.fx", "a.fxo").err,
              "qsbinfo: none.fx: it cannot be read, or is larger than any effect\n");
}

TEST(EffectCompiling, TargetThatCannotBeWrittenIsNamed)
{
    const ScratchDirectory scratch;
    scratch.Write("a.fx", "technique t { }");
    const ProgramRun run = Compiled("a.fx", "none/a.fxo");
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.err, "qsbinfo: none/a.fxo: it cannot be written: No such file or directory\n");
}
