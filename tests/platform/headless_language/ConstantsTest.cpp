// What a shader reads: parameters in registers, inputs, textures.

#include "tests/platform/headless_language/LanguageRun.h"

#include <gtest/gtest.h>

namespace headless::hl {

namespace {

constexpr Four kMatrixRows[] = {{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12}, {13, 14, 15, 16}};

/// The registers that a matrix with these rows takes, column by column.
std::vector<Four> Columns(int count)
{
    std::vector<Four> columns;
    for (size_t c = 0; c < static_cast<size_t>(count); ++c)
        columns.push_back(
            {kMatrixRows[0][c], kMatrixRows[1][c], kMatrixRows[2][c], kMatrixRows[3][c]});
    return columns;
}

} // namespace

// (1, 2, 0, 1) times the rows above, by hand.
TEST(HlConstants, MatricesLieInColumnsUnlessTheTextSaysRows)
{
    const std::string use = "float4 main() : COLOR { return mul(float4(v), m); }";
    for (const char* profile : {"ps_2_0", "ps_3_0"}) {
        LanguageRun columns("float4x4 m; float4 v;" + use, profile);
        columns.Set("m", Columns(4));
        columns.Set("v", {{1, 2, 0, 1}});
        EXPECT_EQ(columns.Result(), (Four{24, 28, 32, 36}));
        EXPECT_EQ(columns.Find("m")->type.kind, D3DXPC_MATRIX_COLUMNS);
        LanguageRun rows("row_major float4x4 m; float4 v;" + use, profile);
        rows.Set("m", {std::begin(kMatrixRows), std::end(kMatrixRows)});
        rows.Set("v", {{1, 2, 0, 1}});
        EXPECT_EQ(rows.Result(), (Four{24, 28, 32, 36}));
        EXPECT_EQ(rows.Find("m")->type.kind, D3DXPC_MATRIX_ROWS);
    }
}

TEST(HlConstants, AMatrixOnTheLeftMultipliesAColumn)
{
    // Each row times (1, 0, 2, 1): 1 + 6 + 4, 5 + 14 + 8, ...
    for (const bool isRows : {false, true}) {
        LanguageRun run(std::string(isRows ? "row_major " : "") +
                            "float4x4 m; float4 v; float4 main() : COLOR { return mul(m, v); }",
                        "ps_2_0");
        run.Set("m", isRows ? std::vector<Four>(std::begin(kMatrixRows), std::end(kMatrixRows))
                            : Columns(4));
        run.Set("v", {{1, 0, 2, 1}});
        EXPECT_EQ(run.Result(), (Four{11, 27, 43, 59}));
    }
}

TEST(HlConstants, ANarrowMatrixTakesARegisterForEachColumn)
{
    LanguageRun run(
        "float4x3 m; float4 v; float4 main() : COLOR { return float4(mul(v, m), m[1][2]); }",
        "ps_2_0");
    EXPECT_EQ(run.Find("m")->registerCount, 3u);
    run.Set("m", Columns(3));
    run.Set("v", {{1, 2, 0, 1}});
    EXPECT_EQ(run.Result(), (Four{24, 28, 32, 7}));
}

TEST(HlConstants, StructsAndArraysTakeRegistersInOrder)
{
    LanguageRun run(
        "struct Light { float3 colour; float size[2]; }; Light lights[2]; float4 rest;"
        "float4 main() : COLOR { return float4(lights[1].colour.xy, lights[1].size[1], rest.w); }",
        "ps_2_0");
    ASSERT_TRUE(run.IsMade());
    EXPECT_EQ(run.Find("lights")->registerCount, 6u);
    run.Set("lights",
            {{1, 1, 1, 1}, {2, 2, 2, 2}, {3, 3, 3, 3}, {4, 5, 6, 6}, {7, 7, 7, 7}, {8, 8, 8, 8}});
    run.Set("rest", {{0, 0, 0, 9}});
    EXPECT_EQ(run.Result(), (Four{4, 5, 8, 9}));
}

TEST(HlConstants, UnusedParametersAndElementsTakeNoRegisters)
{
    LanguageRun run(
        "float4 unused; float4 list[8]; float4 main() : COLOR { float4 x = unused; return list[2]; }",
        "ps_2_0");
    EXPECT_EQ(run.Find("unused"), nullptr);
    EXPECT_EQ(run.Find("list")->registerCount, 3u);
}

TEST(HlConstants, TheTextMayNameTheRegister)
{
    LanguageRun run(
        "float4 p; float4 q : register(c0); float4 r : register(c5); sampler2D s : register(s3);"
        "float4 main(float2 t : TEXCOORD) : COLOR { return p + q + r + tex2D(s, t) + 0.25; }",
        "ps_2_0");
    EXPECT_EQ(run.Find("q")->firstRegister, 0u);
    EXPECT_EQ(run.Find("r")->firstRegister, 5u);
    EXPECT_EQ(run.Find("p")->firstRegister, 1u);
    EXPECT_EQ(run.Find("s")->firstRegister, 3u);
    EXPECT_EQ(run.Find("s")->set, fx::FxRegisterSet::Sampler);
}

TEST(HlConstants, AVertexShaderReadsArraysByAnIndex)
{
    for (const char* profile : {"vs_1_1", "vs_2_0", "vs_2_a", "vs_3_0"}) {
        LanguageRun run(
            "float4x3 bones[3]; void main(float4 i : BLENDINDICES, out float4 p : POSITION,"
            " out float4 r : TEXCOORD0) { p = 1; int4 n = i;"
            " r = float4(mul(float4(1, 0, 0, 1), bones[n.y]), bones[n.x][0].x + bones[i.z][1].y); }",
            profile);
        ASSERT_TRUE(run.IsMade());
        std::vector<Four> registers;
        for (float bone = 0; bone < 3; ++bone)
            for (float column = 0; column < 3; ++column) {
                const float base = bone * 100 + column * 10;
                registers.push_back({base + 1, base + 2, base + 3, base + 4});
            }
        run.Set("bones", registers);
        run.run->SetInput(2, 0, Four{2.0f, 1.0f, 0.5f, 0.0f});
        // Bone 1, rows 0 and 3: (101 + 104, 111 + 114, 121 + 124); bone 2 at 0, 0 and bone 0 at 1, 1.
        EXPECT_EQ(run.Result(), (Four{205, 225, 245, 201 + 12}))
            << profile << ListingOf(*run.made.shader);
    }
}

TEST(HlConstants, APixelShaderChoosesFromArrays)
{
    LanguageRun run("float4 list[4]; float i; float4 main() : COLOR { return list[i]; }", "ps_2_0");
    run.Set("list", {std::begin(kMatrixRows), std::end(kMatrixRows)});
    for (const auto& [index, row] : {std::pair{0.0f, 0}, {1.0f, 1}, {2.9f, 2}, {3.0f, 3}}) {
        run.Set("i", {{index, 0, 0, 0}});
        EXPECT_EQ(run.Result(), kMatrixRows[row]) << index;
    }
}

TEST(HlConstants, InputsComeBySemantics)
{
    const std::string text =
        "struct In { float4 p : POSITION; float3 n : NORMAL; float2 t[2] : TEXCOORD1; };"
        "struct Out { float4 p : POSITION; float4 c : TEXCOORD0; };"
        "Out main(In i, float4 d : COLOR) { Out o; o.p = i.p;"
        " o.c = float4(i.n.z, i.t[0].y, i.t[1].x, d.w); return o; }";
    for (const char* profile : {"vs_1_1", "vs_2_0", "vs_3_0"}) {
        LanguageRun run(text, profile);
        ASSERT_TRUE(run.IsMade());
        run.run->SetInput(0, 0, Four{1, 2, 3, 4});
        run.run->SetInput(3, 0, Four{0, 0, 5, 0});
        run.run->SetInput(5, 1, Four{0, 6, 0, 0});
        run.run->SetInput(5, 2, Four{7, 0, 0, 0});
        run.run->SetInput(10, 0, Four{0, 0, 0, 8});
        EXPECT_EQ(run.Result(), (Four{5, 6, 7, 8})) << profile;
        EXPECT_EQ(run.run->Output(0, 0), (Four{1, 2, 3, 4})) << profile;
    }
}

TEST(HlConstants, ArgumentsOfCompileAreNumbers)
{
    const std::string text =
        "float4 a; float4 main(uniform int n, uniform bool turns, uniform float f = 3) : COLOR {"
        " float4 r = a; for (int i = 0; i < n; i++) r += 1; return turns ? -r * f : r * f; }";
    LanguageRun run(text, "ps_2_0", "2, true");
    run.Set("a", {{1, 2, 3, 4}});
    EXPECT_EQ(run.Result(), (Four{-9, -12, -15, -18}));
    LanguageRun other(text, "ps_2_0", "1, false, 2");
    other.Set("a", {{1, 2, 3, 4}});
    EXPECT_EQ(other.Result(), (Four{4, 6, 8, 10}));
}

TEST(HlConstants, EachTextureFunctionHasItsInstruction)
{
    static const struct {
        const char* call;
        const char* instruction;
        const char* declaration;
        const char* profile;
    } kRows[] = {{"tex2D(s, t.xy)", "texld ", "dcl_2d", "ps_2_0"},
                 {"tex2Dproj(s, t)", "texldp", "dcl_2d", "ps_2_0"},
                 {"tex2Dbias(s, t)", "texldb", "dcl_2d", "ps_2_0"},
                 {"tex2Dlod(s, t)", "texldl", "dcl_2d", "ps_3_0"},
                 {"tex2Dgrad(s, t.xy, t.zw, t.yx)", "texldd", "dcl_2d", "ps_2_a"},
                 {"tex2D(s, t.xy, t.zw, t.yx)", "texldd", "dcl_2d", "ps_3_0"},
                 {"tex1D(s, t.x)", "texld ", "dcl_1d", "ps_2_0"},
                 {"tex1Dproj(s, t)", "texldp", "dcl_1d", "ps_2_0"},
                 {"tex1Dbias(s, t)", "texldb", "dcl_1d", "ps_2_0"},
                 {"tex1Dlod(s, t)", "texldl", "dcl_1d", "ps_3_0"},
                 {"tex1Dgrad(s, t.x, t.y, t.z)", "texldd", "dcl_1d", "ps_3_0"},
                 {"tex3D(s, t.xyz)", "texld ", "dcl_volume", "ps_2_0"},
                 {"tex3Dproj(s, t)", "texldp", "dcl_volume", "ps_2_0"},
                 {"tex3Dbias(s, t)", "texldb", "dcl_volume", "ps_2_0"},
                 {"tex3Dlod(s, t)", "texldl", "dcl_volume", "ps_3_0"},
                 {"tex3Dgrad(s, t.xyz, t.yzx, t.zxy)", "texldd", "dcl_volume", "ps_3_0"},
                 {"texCUBE(s, t.xyz)", "texld ", "dcl_cube", "ps_2_0"},
                 {"texCUBEproj(s, t)", "texldp", "dcl_cube", "ps_2_0"},
                 {"texCUBEbias(s, t)", "texldb", "dcl_cube", "ps_2_0"},
                 {"texCUBElod(s, t)", "texldl", "dcl_cube", "ps_3_0"},
                 {"texCUBEgrad(s, t.xyz, t.yzx, t.zxy)", "texldd", "dcl_cube", "ps_3_0"}};
    for (const auto& c : kRows) {
        const CompiledText made =
            CompileText("sampler s; float4 main(float4 t : TEXCOORD) : COLOR { return " +
                            std::string(c.call) + "; }",
                        c.profile);
        ASSERT_TRUE(made.shader->IsMade()) << c.call << made.messages;
        const std::string listing = ListingOf(*made.shader);
        EXPECT_NE(listing.find(c.instruction), std::string::npos) << c.call << listing;
        EXPECT_NE(listing.find(c.declaration), std::string::npos) << c.call << listing;
    }
    EXPECT_TRUE(
        CompileText(
            "sampler s; void main(float4 t : POSITION, out float4 p : POSITION) { p = tex2Dlod(s, t); }",
            "vs_3_0")
            .shader->IsMade());
}

TEST(HlConstants, NeighboursGiveDifferences)
{
    LanguageRun run(
        "float4 main(float4 t : TEXCOORD) : COLOR { return float4(ddx(t.x), ddy(t.x), fwidth(t.x), 1); }",
        "ps_3_0");
    std::array<Four, 8> pixels; // 4 by 2: x + 10 y
    for (size_t i = 0; i < 8; ++i)
        pixels[i] = {static_cast<float>(i % 4) * 2 + static_cast<float>(i / 4) * -10, 0, 0, 0};
    run.run->SetInput(5, 0, pixels);
    EXPECT_EQ(run.Result(), (Four{2, -10, 12, 1}));
}

TEST(HlConstants, NumbersShareRegisters)
{
    const CompiledText made =
        CompileText("float4 a; float4 main() : COLOR { return a * float4(1, 2, 3, 4) + a.x * 2"
                    " - a.yyyy * float4(-1, -2, -3, -4) + 3; }",
                    "ps_2_a");
    const std::string listing = ListingOf(*made.shader);
    size_t count = 0;
    for (size_t at = 0; (at = listing.find("def ", at)) != std::string::npos; ++at)
        ++count;
    EXPECT_EQ(count, 1u) << listing;
}

TEST(HlConstants, NothingIsComputedTwiceOrForNothing)
{
    const CompiledText made = CompileText(
        "float4 a; float4 main() : COLOR { float4 unused = sin(a); float4 x = exp2(a.x);"
        " float4 y = exp2(a.x); return x * y; }",
        "ps_2_0");
    const std::string listing = ListingOf(*made.shader);
    EXPECT_EQ(listing.find("sincos"), std::string::npos) << listing;
    EXPECT_EQ(listing.find("exp"), listing.rfind("exp")) << listing;
}

} // namespace headless::hl
