// Blocks, loops, calls and predicates, and where a run ends.

#include "tests/platform/headless_shader/ShaderRun.h"

#include <gtest/gtest.h>

namespace headless::shader {

namespace {

/// ps 3.0 code that counts in r0, with the number of each lane in v0.x, 0 to 7.
ShaderRun LaneRun(const std::string& body)
{
    ShaderRun run("ps_3_0\ndef c0, 0, 1, 2, 3\ndef c1, 4, 5, 6, 7\ndcl_texcoord v0\n"
                  "mov r0, c0.x\n" +
                  body + "\nmov oC0, r0");
    std::array<Four, 8> lanes = {};
    for (size_t i = 0; i < 8; ++i)
        lanes[i] = {static_cast<float>(i), static_cast<float>(i % 2), 0, 1};
    run.SetInput(5, 0, lanes);
    return run;
}

/// r0.x of each lane after the code.
std::array<float, 8> Counted(ShaderRun run)
{
    run.Run();
    std::array<float, 8> counts;
    for (int i = 0; i < 8; ++i)
        counts[static_cast<size_t>(i)] = run.Colour(i)[0];
    return counts;
}

using Counts = std::array<float, 8>;

} // namespace

TEST(ShaderFlow, LanesTakeTheirOwnBranch)
{
    EXPECT_EQ(Counted(LaneRun("if_lt v0.x, c0.z\nmov r0.x, c0.y\nelse\nmov r0.x, c0.w\nendif")),
              (Counts{1, 1, 3, 3, 3, 3, 3, 3}));
    EXPECT_EQ(Counted(LaneRun("if_ge v0.x, c1.x\nadd r0.x, r0.x, c0.y\nif_gt v0.y, c0.x\n"
                              "add r0.x, r0.x, c0.z\nendif\nendif\nadd r0.x, r0.x, c1.y")),
              (Counts{5, 5, 5, 5, 6, 8, 6, 8}));
}

TEST(ShaderFlow, AllComparisons)
{
    const struct {
        const char* name;
        Counts expected; // of lane number against 2
    } cases[] = {
        {"gt", {0, 0, 0, 1, 1, 1, 1, 1}}, {"eq", {0, 0, 1, 0, 0, 0, 0, 0}},
        {"ge", {0, 0, 1, 1, 1, 1, 1, 1}}, {"lt", {1, 1, 0, 0, 0, 0, 0, 0}},
        {"ne", {1, 1, 0, 1, 1, 1, 1, 1}}, {"le", {1, 1, 1, 0, 0, 0, 0, 0}},
    };
    for (const auto& row : cases) {
        const std::string name = row.name;
        EXPECT_EQ(Counted(LaneRun("if_" + name + " v0.x, c0.z\nmov r0.x, c0.y\nendif")),
                  row.expected)
            << name;
        EXPECT_EQ(Counted(LaneRun("setp_" + name + " p0.x, v0.x, c0.z\n(p0.x) mov r0.x, c0.y")),
                  row.expected)
            << name;
    }
}

TEST(ShaderFlow, PredicatesChooseComponents)
{
    ShaderRun run = LaneRun("setp_gt p0, v0, c0.x\n(p0) mov r0, c1\n(!p0) mov r0, c0.y");
    run.Run();
    EXPECT_EQ(run.Colour(0), (Four{1, 1, 1, 7}));
    EXPECT_EQ(run.Colour(3), (Four{4, 5, 1, 7}));
    ShaderRun other =
        LaneRun("setp_gt p0, v0, c0.x\n(p0.y) mov r0, c1\nif !p0.x\nmov r0.w, c0.z\nendif");
    other.Run();
    EXPECT_EQ(other.Colour(0), (Four{0, 0, 0, 2}));
    EXPECT_EQ(other.Colour(1), (Four{4, 5, 6, 7}));
    EXPECT_EQ(other.Colour(2), (Four{0, 0, 0, 0}));
}

TEST(ShaderFlow, SwitchesChooseForAllLanes)
{
    ShaderRun run = LaneRun("if b0\nadd r0.x, r0.x, c0.y\nelse\nadd r0.x, r0.x, c0.z\nendif\n"
                            "if !b1\nadd r0.x, r0.x, c1.x\nendif");
    run.SetBool(0, true);
    run.Run();
    EXPECT_EQ(run.Colour()[0], 5);
    run.SetBool(0, false);
    run.SetBool(1, true);
    run.Run();
    EXPECT_EQ(run.Colour()[0], 2);
    ShaderRun defined("ps_3_0\ndef c0, 1, 2, 3, 4\ndefb b3, true\nmov r0, c0.x\nif b3\n"
                      "mov r0, c0\nendif\nmov oC0, r0");
    defined.Run();
    EXPECT_EQ(defined.Colour(), (Four{1, 2, 3, 4}));
}

TEST(ShaderFlow, LoopsGoRoundAsOftenAsTheirConstantSays)
{
    ShaderRun run = LaneRun("rep i0\nadd r0.x, r0.x, c0.y\nendrep");
    for (const int count : {0, 1, 7, 255, 256, 1000, -3}) {
        run.SetInts(0, count, 9, 9);
        run.Run();
        EXPECT_EQ(run.Colour()[0], std::clamp(count, 0, 255)) << count;
    }
}

TEST(ShaderFlow, LanesLeaveALoopAlone)
{
    // Lane n adds until it has added n times, at most five times.
    EXPECT_EQ(
        Counted(LaneRun("rep i0\nif_ge r0.x, v0.x\nbreak\nendif\nadd r0.x, r0.x, c0.y\nendrep")),
        Counts{}); // i0 is 0: no round
    ShaderRun run = LaneRun(
        "rep i0\nif_ge r0.x, v0.x\nbreak\nendif\nadd r0.x, r0.x, c0.y\nendrep\nadd r0.x, r0.x, c1.x");
    run.SetInts(0, 5, 0, 0);
    run.Run();
    const float expected[] = {4, 5, 6, 7, 8, 9, 9, 9};
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(run.Colour(i)[0], expected[i]) << i;
    ShaderRun compared = LaneRun("rep i0\nbreak_ge r0.x, v0.x\nadd r0.x, r0.x, c0.y\nendrep");
    compared.SetInts(0, 5, 0, 0);
    EXPECT_EQ(Counted(std::move(compared)), (Counts{0, 1, 2, 3, 4, 5, 5, 5}));
    ShaderRun predicated =
        LaneRun("rep i0\nsetp_ge p0.x, r0.x, v0.x\nbreakp p0.x\nadd r0.x, r0.x, c0.y\nendrep");
    predicated.SetInts(0, 5, 0, 0);
    EXPECT_EQ(Counted(std::move(predicated)), (Counts{0, 1, 2, 3, 4, 5, 5, 5}));
}

TEST(ShaderFlow, NestedLoopsEachHaveTheirBreak)
{
    ShaderRun run = LaneRun("rep i0\nrep i1\nadd r0.x, r0.x, c0.y\nbreak_eq v0.x, c0.x\nendrep\n"
                            "add r0.x, r0.x, c1.x\nendrep");
    run.SetInts(0, 2, 0, 0);
    run.SetInts(1, 3, 0, 0);
    run.Run();
    EXPECT_EQ(run.Colour(0)[0], 10); // lane 0 leaves each inner loop after its first round
    EXPECT_EQ(run.Colour(1)[0], 14);
}

TEST(ShaderFlow, TheLoopCounterIndexesRegisters)
{
    ShaderRun run("vs_2_0\ndef c10, 0, 0, 0, 0\ndcl_position v0\nmov r0, c10\nloop aL, i0\n"
                  "add r0, r0, c[aL + 1]\nendloop\nmov oT0, r0\nmov oPos, v0");
    for (unsigned i = 0; i < 9; ++i)
        run.SetFloats(i, {static_cast<float>(1 << i), 0, 0, 0});
    run.SetInts(0, 3, 1, 2); // aL = 1, 3, 5: c2, c4, c6
    run.Run();
    EXPECT_EQ(run.Output(5, 0)[0], 4 + 16 + 64);
    run.SetInts(0, 3, 5, -2); // aL = 5, 3, 1
    run.Run();
    EXPECT_EQ(run.Output(5, 0)[0], 64 + 16 + 4);
}

TEST(ShaderFlow, CallsReturnBehindTheCall)
{
    ShaderRun run("ps_2_x\ndef c0, 0, 1, 10, 100\nmov r0, c0.x\ncall l0\nadd r0.x, r0.x, c0.z\n"
                  "call l0\nmul r0.x, r0.x, c0.z\nmov oC0, r0\nret\n"
                  "label l0\nadd r0.x, r0.x, c0.y\nret");
    run.Run();
    EXPECT_EQ(run.Colour()[0], 120); // ((0 + 1) + 10 + 1) * 10
}

TEST(ShaderFlow, CallsByConditionAndReturnsInBlocks)
{
    const char* text = "ps_3_0\ndef c0, 0, 1, 2, 3\ndcl_texcoord v0\nmov r0, c0.x\n"
                       "call l0\ncallnz l1, b0\ncallnz l1, !b0\nsetp_gt p0, v0.x, c0.z\n"
                       "callnz l1, p0.x\nmov oC0, r0\nret\n"
                       "label l0\nadd r0.x, r0.x, c0.y\nif_lt v0.x, c0.y\nret\nendif\n"
                       "add r0.y, r0.y, c0.y\ncall l2\nret\n"
                       "label l1\nadd r0.z, r0.z, c0.y\nret\n"
                       "label l2\nadd r0.w, r0.w, c0.w\nret";
    ShaderRun run(text);
    std::array<Four, 8> lanes = {};
    for (size_t i = 0; i < 8; ++i)
        lanes[i][0] = static_cast<float>(i);
    run.SetInput(5, 0, lanes);
    run.Run();
    EXPECT_EQ(run.Colour(0), (Four{1, 0, 1, 0})); // lane 0 returns early
    EXPECT_EQ(run.Colour(1), (Four{1, 1, 1, 3}));
    EXPECT_EQ(run.Colour(3), (Four{1, 1, 2, 3})); // lanes above 2 call l1 once more
}

/// The last mov of each lane is cut off; r0 is copied to the result in each round, so that it shows.
TEST(ShaderFlow, ARunEndsAfter65535Instructions)
{
    ShaderRun run(
        "ps_3_0\ndef c0, 0, 1, 0, 0\ndefi i0, 255, 0, 0, 0\nmov r0, c0.x\nrep i0\nrep i0\n"
        "add r0.x, r0.x, c0.y\nmov oC0, r0\nendrep\nendrep\nmov oC0, c0.y");
    run.Run();
    // mov and rep are 2. A round of the outer loop is rep, 255 times (add, mov, endrep), endrep: 767.
    // 65,535 - 2 = 85 * 767 + 338; of these, rep takes 1, and 337 = 112 * 3 + 1: in the last round
    // 113 additions happen, of which the last is not copied.
    EXPECT_EQ(run.Colour(), (Four{85 * 255 + 112, 0, 0, 0}));
}

/// Lanes count for themselves: those that skip a block get further.
TEST(ShaderFlow, EachLaneHasItsOwnLimit)
{
    ShaderRun run = LaneRun("rep i0\nrep i0\nif_lt v0.x, c0.y\nadd r0.y, r0.y, c0.y\n"
                            "add r0.y, r0.y, c0.y\nendif\nadd r0.x, r0.x, c0.y\nmov oC0, r0\n"
                            "endrep\nendrep");
    run.SetInts(0, 255, 0, 0);
    run.Run();
    // A round takes 4 steps (if, add, mov, endrep), and 7 in lane 0, whose endif counts too. Outer
    // rounds add rep and endrep. Lane 1: 65,533 = 64 * 1022 + 125, 124 = 31 * 4: 64 * 255 + 31
    // additions. Lane 0: 65,533 = 36 * 1787 + 1201, 1200 = 171 * 7 + 3: 36 * 255 + 171.
    EXPECT_EQ(run.Colour(1)[0], 64 * 255 + 31);
    EXPECT_EQ(run.Colour(0)[0], 36 * 255 + 171);
}

TEST(ShaderFlow, ShortLoopsAreNotCounted)
{
    ShaderRun run = LaneRun("rep i0\nadd r0.x, r0.x, c0.y\nendrep");
    EXPECT_FALSE(run.program.mayRunLong);
    EXPECT_TRUE(LaneRun("rep i0\nrep i0\nadd r0.x, r0.x, c0.y\nendrep\nendrep").program.mayRunLong);
}

TEST(ShaderFlow, WhatNoPathWroteReadsZero)
{
    ShaderRun run = LaneRun("if_gt v0.x, c0.y\nmov r1, c1\nendif\nmov r0, r1");
    run.Run();
    EXPECT_EQ(run.Colour(0), (Four{0, 0, 0, 0}));
    EXPECT_EQ(run.Colour(2), (Four{4, 5, 6, 7}));
    run.SetInput(5, 0, Four{0, 0, 0, 0}); // now no lane takes the path
    run.Run();
    EXPECT_EQ(run.Colour(2), (Four{0, 0, 0, 0})) << "left of the run before";
}

} // namespace headless::shader
