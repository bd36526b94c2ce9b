// qsbinfo --disassemble.

#include <gtest/gtest.h>

#include "tests/support/RunProgram.h"
#include "tests/support/ScratchDirectory.h"
#include "tests/support/TreePaths.h"

namespace {

ProgramRun Disassembled(const char* file)
{
    return RunProgramFile(InfoProgramPath(), {"--disassemble", file});
}

} // namespace

TEST(Disassembly, TextComesBackInItsPlainForm)
{
    const ScratchDirectory scratch;
    scratch.Write("a.psasm", "ps.2.0 ; half\ndef c0, .5,.5,.5,1\nmul r0,c0 , c1.x\n\nmov oC0,r0");
    const ProgramRun run = Disassembled("a.psasm");
    EXPECT_EQ(run.out,
              "ps_2_0\n    def c0, 0.5, 0.5, 0.5, 1\n    mul r0, c0, c1.x\n    mov oC0, r0\n");
    EXPECT_EQ(run.status, 0);
}

TEST(Disassembly, BytecodeIsRead)
{
    const ScratchDirectory scratch;
    const uint32_t words[] = {0xFFFF0101, 0x00000001, 0x800F0000, 0xA0E40000, 0x0000FFFF};
    scratch.Write("a.pso", std::string(reinterpret_cast<const char*>(words), sizeof words));
    EXPECT_EQ(Disassembled("a.pso").out, "ps_1_1\n    mov r0, c0\n");
    scratch.Write("b.pso", std::string(reinterpret_cast<const char*>(words), 12));
    const ProgramRun cut = Disassembled("b.pso");
    EXPECT_EQ(cut.err, "qsbinfo: b.pso: word 1: the stream ends within an instruction\n");
    EXPECT_EQ(cut.status, 2);
}

TEST(Disassembly, FaultsNameTheirPlace)
{
    const ScratchDirectory scratch;
    scratch.Write("a.psasm", "ps_1_1\nmov r0, c9");
    const ProgramRun run = Disassembled("a.psasm");
    EXPECT_EQ(run.err, "qsbinfo: a.psasm: (2,1): a register number is too high\n");
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(Disassembled("none.psasm").status, 2);
}

TEST(Disassembly, CompiledEffectsAreListed)
{
    const ScratchDirectory scratch;
    scratch.Write(
        "a.fx",
        "int side = 2;\nstring who = \"\xE9\"; technique q { pass { CullMode = <side>; } }");
    ASSERT_EQ(RunProgramFile(InfoProgramPath(), {"--compile", "a.fx", "-o", "a.fxo"}).status, 0);
    const ProgramRun run = Disassembled("a.fxo");
    EXPECT_EQ(run.out,
              "int side = 2;\nstring who = \"\xC3\xA9\";\n\ntechnique q\n{\n    pass \n    {\n"
              "        CullMode = <side>;\n    }\n}\n");
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.status, 0);
    scratch.Write("b.fxo", scratch.Read("a.fxo").substr(0, 40));
    const ProgramRun cut = Disassembled("b.fxo");
    EXPECT_EQ(cut.err,
              "qsbinfo: b.fxo: b.fxo(1,1): error X1008: the compiled effect is damaged near "
              "byte 0: it ends too early\n");
    EXPECT_EQ(cut.out, "");
    EXPECT_EQ(cut.status, 2);
}
