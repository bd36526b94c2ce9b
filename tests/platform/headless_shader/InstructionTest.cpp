// Each arithmetic instruction on numbers whose results are plain to see.

#include "tests/platform/headless_shader/ShaderRun.h"

#include <cmath>
#include <gtest/gtest.h>

namespace headless::shader {

namespace {

struct Case {
    const char* body;
    Four expected;
};

/// c0 = 1, -2, 3, 0.5; c1 = 4, 5, -6, 8; c2 = 0.25, 0.5, 0.75, 2; c3 = 0, 1, -1, -3.
constexpr std::array<Four, 4> kConstants = {Four{1, -2, 3, 0.5f}, Four{4, 5, -6, 8},
                                            Four{0.25f, 0.5f, 0.75f, 2}, Four{0, 1, -1, -3}};

void ExpectNear(const Four& actual, const Four& expected, const char* what)
{
    for (size_t i = 0; i < 4; ++i) {
        if (std::isinf(expected[i]))
            EXPECT_EQ(actual[i], expected[i]) << what << ", component " << i;
        else
            EXPECT_NEAR(actual[i], expected[i], 2e-6f) << what << ", component " << i;
    }
}

constexpr Case kArithmetic[] = {
    {"mov r0, c0", {1, -2, 3, 0.5f}},
    {"add r0, c0, c1", {5, 3, -3, 8.5f}},
    {"sub r0, c0, c1", {-3, -7, 9, -7.5f}},
    {"mul r0, c0, c1", {4, -10, -18, 4}},
    {"mad r0, c0, c1, c2", {4.25f, -9.5f, -17.25f, 6}},
    {"min r0, c0, c1", {1, -2, -6, 0.5f}},
    {"max r0, c0, c1", {4, 5, 3, 8}},
    {"frc r0, c0", {0, 0, 0, 0.5f}},
    {"frc r0, -c2", {0.75f, 0.5f, 0.25f, 0}},
    {"abs r0, c0", {1, 2, 3, 0.5f}},
    {"cmp r0, c0, c1, c2", {4, 0.5f, -6, 8}},
    {"cmp r0, c3, c1, c2", {4, 5, 0.75f, 2}},         // 0 counts as not negative
    {"lrp r0, c2, c0, c1", {3.25f, 1.5f, 0.75f, -7}}, // 4 + .25 * -3 and so on
    {"dp3 r0, c0, c1", {-24, -24, -24, -24}},         // 4 - 10 - 18
    {"dp4 r0, c0, c1", {-20, -20, -20, -20}},
    {"dp2add r0, c0, c1, c2.z", {-5.25f, -5.25f, -5.25f, -5.25f}}, // 4 - 10 + .75
    {"rcp r0, c1.x", {0.25f, 0.25f, 0.25f, 0.25f}},
    {"rcp r0, c3.x", {kInfinity, kInfinity, kInfinity, kInfinity}},
    {"rsq r0, c1.x", {0.5f, 0.5f, 0.5f, 0.5f}},
    {"rsq r0, -c1.x", {0.5f, 0.5f, 0.5f, 0.5f}},
    {"exp r0, c0.z", {8, 8, 8, 8}},
    {"log r0, c1.w", {3, 3, 3, 3}},
    {"log r0, -c1.w", {3, 3, 3, 3}},
    {"pow r0, c1.x, c0.w", {2, 2, 2, 2}},
    {"pow r0, c3.x, c3.x", {1, 1, 1, 1}},
    {"mov r0, c3\ncrs r0.xyz, c0, c1", {-3, 18, 13, -3}},                  // 12-15, 12+6, 5+8
    {"nrm r0, c1.xxww", {0.4082483f, 0.4082483f, 0.8164966f, 0.8164966f}}, // by sqrt(96)
    {"nrm r0, c3.x", {0, 0, 0, 0}},
    {"mov r0, c3\nsincos r0.xy, c3.x", {1, 0, -1, -3}},
    {"mov r0, c3\nsincos r0.y, c0.x", {0, 0.8414710f, -1, -3}},
    {"m4x4 r0, c0, c0", {14.25f, -20, 0.25f * 1 - 1 + 2.25f + 1, 0 - 2 - 3 - 1.5f}},
    {"m3x4 r0, c0, c0", {14, -24, 1.5f, -5}},
    {"mov r0, c3\nm3x3 r0.xyz, c0, c0", {14, -24, 1.5f, -3}},
    {"mov r0, c3\nm3x2 r0.xy, c0, c0", {14, -24, -1, -3}},
    {"mov r0, c3\nm4x3 r0.xyz, c0, c0", {14.25f, -20, 2.5f, -3}},
    {"mov r0, c0\nm3x3 r0.xyz, r0, c0", {14, -24, 1.5f, 0.5f}}, // the result is a source
};

TEST(ShaderInstructions, ArithmeticGivesTheDefinedResults)
{
    for (const Case& row : kArithmetic)
        ExpectNear(ResultOf(row.body, kConstants), row.expected, row.body);
}

constexpr Case kParts[] = {
    {"mov r0, c0.wzyx", {0.5f, 3, -2, 1}},
    {"mov r0, c0.y", {-2, -2, -2, -2}},
    {"mov r0, c0.yz", {-2, 3, 3, 3}},
    {"mov r0, -c0", {-1, 2, -3, -0.5f}},
    {"mov r0, c0_abs", {1, 2, 3, 0.5f}},
    {"mov r0, -c0_abs", {-1, -2, -3, -0.5f}},
    {"add r0, -c0.yxwz, c1_abs", {6, 4, 5.5f, 5}},
    {"mov_sat r0, c0", {1, 0, 1, 0.5f}},
    {"mov r0, c0\nmov r0.yw, c1", {1, 5, 3, 8}},
    {"mov r0, c0\nmov r0.xy, r0.yx", {-2, 1, 3, 0.5f}}, // a swap in place
    {"mov r0, c0\ndp3 r0.z, c0, c1", {1, -2, -24, 0.5f}},
    {"mov r0, c0\nadd r0.xw, r0, c1.yzwx", {6, -2, 3, 4.5f}},
};

TEST(ShaderInstructions, SwizzlesModifiersAndMasks)
{
    for (const Case& row : kParts)
        ExpectNear(ResultOf(row.body, kConstants), row.expected, row.body);
}

/// A vertex shader of 2.0 whose first texture output is the result.
Four VertexResult(const std::string& body, const char* version = "vs_1_1")
{
    ShaderRun run(std::string(version) + "\ndcl_position v0\n" + body +
                  "\nmov oT0, r0\nmov oPos, v0");
    for (unsigned i = 0; i < 4; ++i)
        run.SetFloats(i, kConstants[i]);
    run.SetInput(0, 0, Four{1, 2, 3, 1});
    run.Run();
    return run.Output(5, 0);
}

TEST(ShaderInstructions, VertexOnes)
{
    const Case cases[] = {
        {"slt r0, c0, c1", {1, 1, 0, 1}},
        {"sge r0, c0, c1", {0, 0, 1, 0}},
        {"sge r0, c0, c0", {1, 1, 1, 1}},
        {"lit r0, c2", {1, 0.25f, 0.25f, 1}}, // 0.5 to the power 2
        {"lit r0, c3", {1, 0, 0, 1}},         // x is not above 0: no highlight
        {"lit r0, c0", {1, 1, 0, 1}},         // nor with y below 0
        {"dst r0, c0, c1", {1, -10, 3, 8}},
        {"expp r0, c2.w", {4, 0, 4, 1}},                 // 2 = 2 + 0
        {"expp r0, -c2.x", {0.5f, 0.75f, 0.840896f, 1}}, // -0.25 = -1 + 0.75
        {"logp r0, c1.z", {2, 1.5f, 2.584963f, 1}},      // 6 = 2^2 * 1.5
        {"mov r0, c0\nfrc r0.xy, c2", {0.25f, 0.5f, 3, 0.5f}},
    };
    for (const Case& row : cases)
        ExpectNear(VertexResult(row.body), row.expected, row.body);
}

TEST(ShaderInstructions, VertexOnesOfLaterVersions)
{
    const Case cases[] = {
        {"expp r0, c2.w", {4, 4, 4, 4}},
        {"logp r0, c1.w", {3, 3, 3, 3}},
        {"sgn r0, c0, r1, r2", {1, -1, 1, 1}},
        {"sgn r0, c3, r1, r2", {0, 1, -1, -1}},
        {"mova a0.x, c2.w\nmov r0, c[a0.x + 1]", {0, 1, -1, -3}},  // c3
        {"mova a0.x, c0.y\nmov r0, c3[a0.x]", {4, 5, -6, 8}},      // c1
        {"mova a0.xy, c2.zy\nmov r0, c[a0.x + 0]", {4, 5, -6, 8}}, // 0.75 rounds to 1
    };
    for (const Case& row : cases) {
        const bool isSign = std::string(row.body).starts_with("sgn");
        const std::string before = isSign ? "mov r1, c0\nmov r2, c0\n" : "";
        ExpectNear(VertexResult(before + row.body, "vs_2_0"), row.expected, row.body);
    }
}

TEST(ShaderInstructions, IndexedConstantsOfTheOldestVersionRoundDown)
{
    // 0.75 rounds down to 0, -2 + 3 is 1, and the index behind the last constant reads 0.
    ExpectNear(VertexResult("mov a0.x, c2.z\nmov r0, c[a0.x + 1]"), {4, 5, -6, 8}, "down");
    ExpectNear(VertexResult("mov a0.x, c0.y\nmov r0, c[a0.x + 3]"), {4, 5, -6, 8}, "negative");
    ExpectNear(VertexResult("mov a0.x, c1.w\nmov r0, c[a0.x + 255]"), {0, 0, 0, 0}, "behind");
    ExpectNear(VertexResult("mov a0.x, c3.w\nmov r0, c[a0.x + 1]"), {0, 0, 0, 0}, "before");
}

TEST(ShaderInstructions, EachLaneHasItsOwnIndex)
{
    ShaderRun run("vs_2_0\ndcl_position v0\nmova a0.x, v0.x\nmov oT0, c[a0.x]\nmov oPos, v0");
    for (unsigned i = 0; i < 4; ++i)
        run.SetFloats(i, kConstants[i]);
    std::array<Four, 8> values = {};
    for (size_t i = 0; i < 8; ++i)
        values[i][0] = static_cast<float>(7 - i) / 2.0f - 0.25f; // rounds to 3, 3, 2, 2, 1, 1, 0, 0
    run.SetInput(0, 0, values);
    run.Run();
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(run.Output(5, 0, i), kConstants[static_cast<size_t>(3 - i / 2)]) << i;
}

TEST(ShaderInstructions, DefinedConstantsTakePrecedence)
{
    ExpectNear(ResultOf("def c0, 7, 8, 9, 10\nmov r0, c0", kConstants), {7, 8, 9, 10}, "def");
    ExpectNear(VertexResult("mova a0.x, c3.y\nmov r0, c[a0.x]", "vs_2_0"), {4, 5, -6, 8}, "index");
    ShaderRun run("vs_2_0\ndef c1, 7, 8, 9, 10\ndcl_position v0\nmova a0.x, v0.x\n"
                  "mov oT0, c[a0.x]\nmov oPos, v0");
    run.SetInput(0, 0, Four{1, 0, 0, 0});
    run.Run();
    EXPECT_EQ(run.Output(5, 0), (Four{7, 8, 9, 10}));
}

/// Pixel shaders of 1.x: r0 is the result, v0 and v1 are 0.25, 0.5, 0.75, 1 and 1, 0.25, 0, 0.5.
Four OldPixel(const std::string& body, const char* version = "ps_1_4")
{
    ShaderRun run(std::string(version) + "\n" + body);
    for (unsigned i = 0; i < 4; ++i)
        run.SetFloats(i, kConstants[i]);
    run.SetInput(10, 0, Four{0.25f, 0.5f, 0.75f, 1});
    run.SetInput(10, 1, Four{1, 0.25f, 0, 0.5f});
    run.Run();
    return run.Colour();
}

TEST(ShaderInstructions, OldPixelModifiers)
{
    const Case cases[] = {
        {"mov r0, v0_bias", {-0.25f, 0, 0.25f, 0.5f}},
        {"mov r0, -v0_bias", {0.25f, 0, -0.25f, -0.5f}},
        {"mov r0, v0_bx2", {-0.5f, 0, 0.5f, 1}},
        {"mov r0, -v0_bx2", {0.5f, 0, -0.5f, -1}},
        {"mov r0, 1-v0", {0.75f, 0.5f, 0.25f, 0}},
        {"mov r0, v0_x2", {0.5f, 1, 1.5f, 2}},
        {"mov r0, -v0_x2", {-0.5f, -1, -1.5f, -2}},
        {"mov r0, v0.b", {0.75f, 0.75f, 0.75f, 0.75f}},
        {"mov_x2 r0, v0", {0.5f, 1, 1.5f, 2}},
        {"mov_x4 r0, v0", {1, 2, 3, 4}},
        {"mov_x8 r0, v0", {2, 4, 6, 8}},
        {"mov_d2 r0, v0", {0.125f, 0.25f, 0.375f, 0.5f}},
        {"mov_d4 r0, v0", {0.0625f, 0.125f, 0.1875f, 0.25f}},
        {"mov_d8 r0, v0", {0.03125f, 0.0625f, 0.09375f, 0.125f}},
        {"mov_x2_sat r0, v0", {0.5f, 1, 1, 1}},
        {"mov r0, c1", {1, 1, -1, 1}}, // constants hold -1 to 1
        {"cnd r0, v0, c0, c2", {0.25f, 0.5f, 1, 0.5f}},
        {"cmp r0, v0_bias, c3, v0", {0.25f, 1, -1, -1}},
        {"add_sat r0, v0, v1", {1, 0.75f, 0.75f, 1}},
        {"lrp r0, v0, c0, c2", {0.4375f, -0.25f, 0.9375f, 0.5f}},
    };
    for (const Case& row : cases)
        ExpectNear(OldPixel(row.body), row.expected, row.body);
}

TEST(ShaderInstructions, PairsReadWhatWasThereBefore)
{
    // The second half reads r0.b, which the first half writes: it must see the older value.
    const Four result = OldPixel("mov r0, v0\nmov r0.rgb, v1\n+mov r0.a, r0.b", "ps_1_1");
    ExpectNear(result, {1, 0.25f, 0, 0.75f}, "pair");
    ExpectNear(OldPixel("mov r0, v0\nadd r0.rgb, r0, v1\n+mul r0.a, v1, v1", "ps_1_1"),
               {1.25f, 0.75f, 0.75f, 0.25f}, "apart");
}

TEST(ShaderInstructions, DerivativesAreDifferencesWithinQuads)
{
    ShaderRun run(
        "ps_3_0\ndcl_texcoord v0\ndsx r0, v0\ndsy r1, v0\nmov r0.zw, r1.xxyx\nmov oC0, r0");
    std::array<Four, 8> values = {};
    for (size_t i = 0; i < 8; ++i) {
        const float x = static_cast<float>(i % 4), y = static_cast<float>(i / 4);
        values[i] = {x * x, x * y, 0, 0};
        values[i][1] = 10 * x + 100 * y;
    }
    run.SetInput(5, 0, values);
    run.Run();
    // x squared grows by 1 from column 0 to 1 and by 5 from 2 to 3; rows are 100 apart.
    EXPECT_EQ(run.Colour(0), (Four{1, 10, 100, 0}));
    EXPECT_EQ(run.Colour(1), (Four{1, 10, 100, 0}));
    EXPECT_EQ(run.Colour(2), (Four{5, 10, 100, 0}));
    EXPECT_EQ(run.Colour(7), (Four{5, 10, 100, 0}));
}

TEST(ShaderInstructions, OutputsAndInputsAreReachedByIndex)
{
    ShaderRun run("vs_3_0\ndefi i0, 3, 1, 1, 0\ndcl_position v0\ndcl_texcoord0 v1\n"
                  "dcl_texcoord1 v2\ndcl_texcoord2 v3\ndcl_position o0\ndcl_texcoord0 o1\n"
                  "dcl_texcoord1 o2\ndcl_texcoord2 o3\nmov o0, v0\n"
                  "loop aL, i0\nadd o[aL], v[aL], v0\nendloop");
    run.SetInput(0, 0, Four{1, 2, 3, 1});
    for (Word i = 0; i < 3; ++i)
        run.SetInput(5, i, Four{static_cast<float>(10 * (i + 1)), 0, 0, 0});
    run.Run();
    EXPECT_EQ(run.Output(0, 0), (Four{1, 2, 3, 1}));
    EXPECT_EQ(run.Output(5, 0), (Four{11, 2, 3, 1}));
    EXPECT_EQ(run.Output(5, 1), (Four{21, 2, 3, 1}));
    EXPECT_EQ(run.Output(5, 2), (Four{31, 2, 3, 1}));
}

} // namespace

} // namespace headless::shader
