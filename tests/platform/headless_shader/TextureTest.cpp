// Texture instructions, on a texture whose colour is its coordinates.

#include "tests/platform/headless_shader/ShaderRun.h"

#include <gtest/gtest.h>

namespace headless::shader {

namespace {

/// Colour: u, v, w, level. The level is the sum of all slopes.
class EchoTexture final : public TextureUnit {
public:
    bool NeedsLevel() const override { return true; }
    void SampleSteps(const Lanes (&coordinates)[3], const CoordinateSteps& steps, Lanes bias,
                     int lanes, Lanes (&colourOut)[4]) const override
    {
        const Lanes level =
            steps.dx[0] + steps.dx[1] + steps.dx[2] + steps.dy[0] + steps.dy[1] + steps.dy[2];
        Sample(coordinates, level + bias, lanes, colourOut);
    }
    float Bias() const override { return 0.0f; }
    void Sample(const Lanes (&coordinates)[3], Lanes level, int lanes,
                Lanes (&colourOut)[4]) const override
    {
        for (int i = 0; i < 3; ++i)
            colourOut[i] = coordinates[i];
        colourOut[3] = level;
        lanesAsked = lanes;
    }

    mutable int lanesAsked = 0;
};

/// The same for whole runs, with the bias as level.
class RunEchoTexture final : public TextureUnit {
public:
    bool NeedsLevel() const override { return true; }
    float Bias() const override { return 0.0f; }
    void SampleSteps(const Lanes (&)[3], const CoordinateSteps&, Lanes, int,
                     Lanes (&)[4]) const override
    {
        ADD_FAILURE() << "a group is sampled on its own";
    }
    void Sample(const Lanes (&)[3], Lanes, int, Lanes (&)[4]) const override
    {
        ADD_FAILURE() << "a group is sampled on its own";
    }
    bool SampleRun(const RunCoordinates& coordinates, int groups,
                   Lanes* const (&coloursOut)[4]) const override
    {
        for (int g = 0; g < groups; ++g) {
            const Lanes colour[4] = {coordinates.at[0][g], coordinates.at[1][g],
                                     coordinates.at[2][g],
                                     coordinates.bias ? coordinates.bias[g] : Splat(0.0f)};
            for (int c = 0; c < 4; ++c)
                coloursOut[c][g] = colour[c];
        }
        return true;
    }
};

Four Sampled(const std::string& text, Four first, Four second = {}, StageValues stage = {})
{
    static const EchoTexture echo;
    ShaderRun run(text);
    for (unsigned i = 0; i < 4; ++i) {
        run.machine.units[i] = &echo;
        run.machine.stages[i] = stage;
    }
    run.SetFloats(0, {0.5f, 0.25f, 1, 0});
    run.SetInput(5, 0, first);
    run.SetInput(5, 1, second);
    run.SetInput(5, 2, Four{0, 0, 1, 4});
    run.SetInput(5, 3, Four{1, 1, 1, 1});
    run.SetInput(10, 0, Four{0.25f, 0.5f, 0.75f, 1});
    run.Run();
    return run.Colour();
}

const char* const kTwo = "ps_2_0\ndcl t0\ndcl t1\ndcl_volume s0\n";
const char* const kThree = "ps_3_0\ndcl_texcoord v0\ndcl_volume s0\n";

} // namespace

TEST(ShaderTexture, Loads)
{
    const Four at = {2, 4, 6, 8};
    EXPECT_EQ(Sampled(std::string(kTwo) + "texld r0, t0, s0\nmov oC0, r0", at), (Four{2, 4, 6, 0}));
    EXPECT_EQ(Sampled(std::string(kTwo) + "texldp r0, t0, s0\nmov oC0, r0", at),
              (Four{0.25f, 0.5f, 0.75f, 0}));
    EXPECT_EQ(Sampled(std::string(kTwo) + "texldb r0, t0, s0\nmov oC0, r0", at),
              (Four{2, 4, 6, 8}));
    EXPECT_EQ(Sampled(std::string(kThree) + "texldl r0, v0, s0\nmov oC0, r0", at),
              (Four{2, 4, 6, 8}));
    EXPECT_EQ(Sampled(std::string(kThree) + "texldd r0, v0, s0, v0.x, v0.y\nmov oC0, r0", at),
              (Four{2, 4, 6, 3 * 2 + 3 * 4}));
    EXPECT_EQ(Sampled(std::string(kThree) + "texld r0, v0.zyx, s0.wzyx\nmov oC0, r0", at),
              (Four{0, 2, 4, 6}));
}

TEST(ShaderTexture, RunsAreSampledAtOnce)
{
    static const RunEchoTexture echo;
    const struct {
        const char* code;
        Four expected;
    } cases[] = {
        {"texld r0, v0, s0", {2, 4, 6, 0}},
        {"texldb r0, v0, s0", {2, 4, 6, 8}},
        {"texldp r0, v0, s0", {0.25f, 0.5f, 0.75f, 0}},
        {"texld r0, -v0, s0", {-2, -4, -6, 0}},
        {"texld r0, c0, s0", {0.5f, 0.25f, 1, 0}},
        {"texldb r0, v0, s0.yywx", {4, 4, 8, 2}},
        {"mov r0, v0\ntexldb r0, r0.zxyw, s0.wzyx", {8, 4, 2, 6}},
        {"mov r0, v0\ntexld r0.yw, v0, s0.zyxw", {2, 4, 6, 0}},
    };
    for (const auto& row : cases) {
        ShaderRun run(std::string(kThree) + row.code + "\nmov oC0, r0");
        run.machine.units[0] = &echo;
        run.SetFloats(0, {0.5f, 0.25f, 1, 0});
        run.SetInput(5, 0, Four{2, 4, 6, 8});
        run.Run();
        for (const int lane : {0, 7})
            EXPECT_EQ(run.Colour(lane), row.expected) << row.code;
    }
}

TEST(ShaderTexture, LevelsComeFromTheQuads)
{
    static const EchoTexture echo;
    ShaderRun run(std::string(kThree) + "texld r0, v0, s0\nmov oC0, r0");
    run.machine.units[0] = &echo;
    std::array<Four, 8> values = {};
    for (size_t i = 0; i < 8; ++i)
        values[i] = {static_cast<float>(i % 4 * (i % 4)), static_cast<float>(100 * (i / 4)), 0, 0};
    run.SetInput(5, 0, values);
    run.Run();
    EXPECT_EQ(run.Colour(0)[3], 101); // columns 0 and 1 are 1 apart, rows 100
    EXPECT_EQ(run.Colour(5)[3], 101);
    EXPECT_EQ(run.Colour(2)[3], 105); // 9 - 4
    EXPECT_EQ(run.Colour(7)[3], 105);
}

TEST(ShaderTexture, WithoutATextureAllIsBlack)
{
    ShaderRun run(std::string(kThree) + "texld r0, v0, s0\nmov oC0, r0");
    run.SetInput(5, 0, Four{1, 2, 3, 4});
    run.Run();
    EXPECT_EQ(run.Colour(), (Four{0, 0, 0, 1}));
}

TEST(ShaderTexture, OnlyRunningLanesAreSampled)
{
    static const EchoTexture echo;
    ShaderRun run("ps_3_0\ndef c0, 4, 0, 0, 0\ndcl_texcoord v0\ndcl_2d s0\nmov r0, c0.y\n"
                  "if_ge v0.x, c0.x\ntexldl r0, v0, s0\nendif\nmov oC0, r0");
    run.machine.units[0] = &echo;
    std::array<Four, 8> values = {};
    for (size_t i = 0; i < 8; ++i)
        values[i] = {static_cast<float>(i), 0, 0, 1};
    values[7][0] = 0;
    run.SetInput(5, 0, values);
    run.Run();
    EXPECT_EQ(echo.lanesAsked, 7); // of the second row, whose last lane stays out
    EXPECT_EQ(run.Colour(5), (Four{5, 0, 0, 1}));
    EXPECT_EQ(run.Colour(7), (Four{0, 0, 0, 0}));
}

TEST(ShaderTexture, Kill)
{
    ShaderRun run("ps_2_0\ndcl t0\nmov r0, t0\ntexkill r0\nmov oC0, r0");
    std::array<Four, 8> values = {};
    values[1] = {-1, 0, 0, 0};
    values[2] = {0, 0, 0, -1};
    values[5] = {1, 1, -0.5f, 1};
    run.SetInput(5, 0, values);
    run.Run();
    for (int lane = 0; lane < 8; ++lane)
        EXPECT_EQ(run.IsKilled(lane), lane == 1 || lane == 2 || lane == 5) << lane;
    ShaderRun old("ps_1_1\ntexkill t0\nmov r0, c0");
    old.SetInput(5, 0, values);
    old.Run();
    for (int lane = 0; lane < 8; ++lane) // the fourth coordinate does not count
        EXPECT_EQ(old.IsKilled(lane), lane == 1 || lane == 5) << lane;
}

TEST(ShaderTexture, KillTestsTheComponentsOfItsMask)
{
    std::array<Four, 8> values = {};
    for (size_t i = 0; i < 4; ++i)
        values[i][i] = -1; // lane i has its component i below 0
    static const struct {
        const char* text;
        int killed;
    } cases[] = {
        {"ps_2_0\ndcl t0\nmov r0, t0\ntexkill r0.x\nmov oC0, r0", 1},
        {"ps_2_0\ndcl t0\nmov r0, t0\ntexkill r0.yw\nmov oC0, r0", 2 | 8},
        {"ps_3_0\ndcl_texcoord v0\nmov r0, v0\ntexkill r0.xyz\nmov oC0, r0", 1 | 2 | 4},
        {"ps_2_0\ndcl t0\ntexkill t0\nmov oC0, t0", 15},
        {"ps_1_4\ntexcrd r1.rgb, t0\nphase\ntexkill r1\nmov r0, c0", 1 | 2 | 4},
    };
    for (const auto& row : cases) {
        ShaderRun run(row.text);
        run.SetInput(5, 0, values);
        run.Run();
        for (int lane = 0; lane < 8; ++lane)
            EXPECT_EQ(run.IsKilled(lane), (row.killed >> lane & 1) != 0) << row.text << lane;
    }
}

TEST(ShaderTexture, OldLoads)
{
    const Four at = {0.5f, 0.25f, 2, 4};
    EXPECT_EQ(Sampled("ps_1_1\ntex t0\nmov r0, t0", at), (Four{0.5f, 0.25f, 2, 0}));
    EXPECT_EQ(Sampled("ps_1_1\ntexcoord t0\nmov r0, t0", at), (Four{0.5f, 0.25f, 1, 1}));
    EXPECT_EQ(Sampled("ps_1_4\ntexcrd r0.rgb, t0\nmov r0.a, c0.r", at),
              (Four{0.5f, 0.25f, 2, 0.5f}));
    EXPECT_EQ(Sampled("ps_1_4\ntexcrd r0.rg, t0_dw.xyw\nmov r0.ba, c0", at),
              (Four{0.125f, 0.0625f, 1, 0}));
    EXPECT_EQ(Sampled("ps_1_4\ntexld r0, t0_dz.xyz", at), (Four{0.25f, 0.125f, 2, 0}));
    EXPECT_EQ(Sampled("ps_1_4\ntexld r0, t0\nphase\ntexld r0, r0", at), (Four{0.5f, 0.25f, 2, 0}));
    StageValues projected;
    projected.isProjected = true;
    EXPECT_EQ(Sampled("ps_1_1\ntex t0\nmov r0, t0", at, {}, projected),
              (Four{0.125f, 0.0625f, 0.5f, 0}));
    projected.divisor = 2;
    EXPECT_EQ(Sampled("ps_1_1\ntex t0\nmov r0, t0", at, {}, projected),
              (Four{0.25f, 0.125f, 1, 0}));
}

TEST(ShaderTexture, OldDependentReads)
{
    // t0 is sampled as 0.5, 0.25, 2, 0 each time; t1 has the coordinates 1, 2, 4.
    const Four at = {0.5f, 0.25f, 2, 4};
    const Four other = {1, 2, 4, 1};
    EXPECT_EQ(Sampled("ps_1_1\ntex t0\ntexreg2ar t1, t0\nmov r0, t1", at, other),
              (Four{0, 0.5f, 0.5f, 0}));
    EXPECT_EQ(Sampled("ps_1_1\ntex t0\ntexreg2gb t1, t0\nmov r0, t1", at, other),
              (Four{0.25f, 2, 2, 0}));
    EXPECT_EQ(Sampled("ps_1_2\ntex t0\ntexreg2rgb t1, t0\nmov r0, t1", at, other),
              (Four{0.5f, 0.25f, 2, 0}));
    // 0.5 * 1 + 0.25 * 2 + 2 * 4 = 9
    EXPECT_EQ(Sampled("ps_1_2\ntex t0\ntexdp3 t1, t0\nmov r0, t1", at, other), (Four{9, 9, 9, 9}));
    EXPECT_EQ(Sampled("ps_1_2\ntex t0\ntexdp3tex t1, t0\nmov r0, t1", at, other),
              (Four{9, 0, 0, 0}));
}

TEST(ShaderTexture, OldBumpMaps)
{
    StageValues stage;
    stage.bumpMatrix[0][0] = 2;
    stage.bumpMatrix[0][1] = 3;
    stage.bumpMatrix[1][0] = 4;
    stage.bumpMatrix[1][1] = 5;
    stage.luminanceScale = 0.5f;
    stage.luminanceOffset = 1;
    const Four at = {0.5f, 0.25f, 2, 4};
    const Four other = {1, 2, 4, 1};
    // u = 1 + 0.5 * 2 + 0.25 * 4 = 3, v = 2 + 0.5 * 3 + 0.25 * 5 = 4.75
    EXPECT_EQ(Sampled("ps_1_1\ntex t0\ntexbem t1, t0\nmov r0, t1", at, other, stage),
              (Four{3, 4.75f, 4, 0}));
    // times the luminance 2 * 0.5 + 1 = 2
    EXPECT_EQ(Sampled("ps_1_1\ntex t0\ntexbeml t1, t0\nmov r0, t1", at, other, stage),
              (Four{6, 9.5f, 8, 0}));
    // c0.rg = 0.5, 0.25 moves v0.rg = 0.25, 0.5
    EXPECT_EQ(Sampled("ps_1_4\nbem r0.rg, v0, c0\nmov r0.ba, c0", at, other, stage),
              (Four{0.25f + 1 + 1, 0.5f + 1.5f + 1.25f, 1, 0}));
}

TEST(ShaderTexture, OldMatrices)
{
    // t0 = 0.5, 0.25, 2. Its products with the coordinates of stages 1, 2 and 3 are 0.5 + 0.5 + 8 = 9,
    // 2 and 0.5 + 0.25 + 2 = 2.75.
    const Four at = {0.5f, 0.25f, 2, 4};
    const Four other = {1, 2, 4, 1};
    EXPECT_EQ(
        Sampled("ps_1_1\ntex t0\ntexm3x2pad t1, t0\ntexm3x2tex t2, t0\nmov r0, t2", at, other),
        (Four{9, 2, 0, 0}));
    const std::string pads = "\ntex t0\ntexm3x3pad t1, t0\ntexm3x3pad t2, t0\n";
    EXPECT_EQ(Sampled("ps_1_1" + pads + "texm3x3tex t3, t0\nmov r0, t3", at, other),
              (Four{9, 2, 2.75f, 0}));
    EXPECT_EQ(Sampled("ps_1_2" + pads + "texm3x3 t3, t0\nmov r0, t3", at, other),
              (Four{9, 2, 2.75f, 1}));
    // N = 9, 2, 2.75 and E = 0.5, 0.25, 1: 2 N.E / N.N = 2 * 7.75 / 92.5625
    const float scale = 15.5f / 92.5625f;
    const Four spec = Sampled("ps_1_1" + pads + "texm3x3spec t3, t0, c0\nmov r0, t3", at, other);
    EXPECT_NEAR(spec[0], 9 * scale - 0.5f, 1e-5f);
    EXPECT_NEAR(spec[1], 2 * scale - 0.25f, 1e-5f);
    EXPECT_NEAR(spec[2], 2.75f * scale - 1, 1e-5f);
    // E from the fourth coordinates: 1, 4, 1; N.E = 9 + 8 + 2.75
    const float own = 39.5f / 92.5625f;
    const Four varied = Sampled("ps_1_1" + pads + "texm3x3vspec t3, t0\nmov r0, t3", at, other);
    EXPECT_NEAR(varied[0], 9 * own - 1, 1e-5f);
    EXPECT_NEAR(varied[1], 2 * own - 4, 1e-5f);
    EXPECT_NEAR(varied[2], 2.75f * own - 1, 1e-5f);
}

TEST(ShaderTexture, Depth)
{
    const auto depthOf = [](const std::string& text, Four first, Four second) {
        ShaderRun run(text);
        run.SetInput(5, 0, first);
        run.SetInput(5, 1, second);
        run.SetInput(5, 2, Four{0, 0, 1, 0});
        run.SetFloats(0, {1, 1, 1, 1});
        run.Run();
        EXPECT_TRUE(run.program.writesDepth);
        return run.At(run.program.depth, 0)[0];
    };
    const std::string quotient =
        "ps_1_3\ntexcoord t0\ntexm3x2pad t1, t0\ntexm3x2depth t2, t0\nmov r0, c0";
    // t0 = 0.5, 0, 1: z = 0.25 * 0.5 = 0.125 and w = 1
    EXPECT_EQ(depthOf(quotient, {0.5f, 0, 1, 1}, {0.25f, 0, 0, 0}), 0.125f);
    EXPECT_EQ(depthOf(quotient, {0.5f, 0, 0, 1}, {0.25f, 0, 0, 0}), 1.0f); // w is 0
    const std::string old = "ps_1_4\ntexcrd r5.rgb, t0\nphase\ntexdepth r5\nmov r0, c0";
    EXPECT_EQ(depthOf(old, {0.25f, 0.5f, 0, 1}, {}), 0.5f);
    EXPECT_EQ(depthOf(old, {0.25f, 2, 0, 1}, {}), 0.25f); // held to 1
    EXPECT_EQ(depthOf(old, {0.25f, 0, 0, 1}, {}), 1.0f);
    EXPECT_EQ(depthOf("ps_2_0\ndcl t0\nmov r0, t0\nmov oDepth, r0.y\nmov oC0, r0",
                      {0.25f, 0.75f, 0, 1}, {}),
              0.75f);
}

} // namespace headless::shader
