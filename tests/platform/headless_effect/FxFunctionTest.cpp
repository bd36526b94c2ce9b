// Functions of an effect's text in the values of states, as texts and in compiled form.

#include "tests/platform/headless_effect/EffectTest.h"
#include "tests/platform/headless_language/FlowCases.h"

#include <bit>
#include <cmath>

namespace {

using FxFunctionTest = EffectTest;

constexpr const char* kPass = "technique q { pass { FogStart = (";
constexpr const char* kEnd = "); } }";

} // namespace

TEST_F(FxFunctionTest, BranchesAndLoopsOfFunctions)
{
    constexpr float kX[] = {1.5f, -2.0f, 0.25f, 3.0f}, kY[] = {0.5f, 2.0f, -1.0f, 1.25f};
    for (const headless::hl::FlowCase& c : headless::hl::kFlowCases) {
        const std::string text =
            std::string("float x, y;\n") + c.function + kPass + "f(x, y)" + kEnd;
        const Com<ID3DXEffect> effects[] = {Make(text), MakeCompiled(text)};
        for (const Com<ID3DXEffect>& effect : effects)
            for (size_t i = 0; effect && i < std::size(kX); ++i) {
                ASSERT_EQ(effect->SetFloat("x", kX[i]), D3D_OK);
                ASSERT_EQ(effect->SetFloat("y", kY[i]), D3D_OK);
                const float wanted = c.rule(kX[i], kY[i]);
                EXPECT_NEAR(FogStartOf(effect.Get()), wanted,
                            1e-5f * std::max(1.0f, std::fabs(wanted)))
                    << c.what << ' ' << kX[i] << ' ' << kY[i];
            }
    }
}

TEST_F(FxFunctionTest, TypesArgumentsAndParametersOfFunctions)
{
    static const struct {
        const char* text;
        const char* value;
        float wanted;
    } kCases[] = {
        {"float f(float3 v) { return dot(v, float3(1, 2, 3)); }", "f(float3(a, 5, 6))", 30.0f},
        {"float3 f(float3 v) { return normalize(v); }", "f(float3(0, a, 0)).y * 3", 3.0f},
        {"float f(float4x4 m) { return m._23 + m[3].w; }", "f(big)", 23.0f},
        {"float f() { return big._23 + list[2] + lamp.reach; }", "f()", 23.0f},
        {"float f(int i) { return list[i]; }", "f(a) + f(7)", 12.0f},
        {"float f(int i) { return lamps[i].place.y; }", "f(a - 1)", 15.0f},
        {"struct Two { float p, q; }; Two g(float v) { Two t; t.p = v; t.q = v * v; return t; }"
         "float f(float v) { return g(v).q; }",
         "f(a + 1)", 9.0f},
        {"void g(float v, out float w, inout float s) { w = v + 1; s += v; }"
         "float f(float v) { float w, s = 10; g(v, w, s); return w * 100 + s; }",
         "f(a)", 312.0f},
        {"float f(float v) { return v; } float f(float2 v) { return v.y * 10; }",
         "f(a) + f(float2(a, a))", 22.0f},
        {"float f(float v, float w = 4) { return v * w; }", "f(a) + f(a, 1)", 10.0f},
        {"static const float kBase = 6; static float counter = 1;"
         "float f(float v) { counter += v; return counter * kBase; }",
         "f(a)", 18.0f},
        {"float f(float v) { return sin(v) * sin(v) + cos(v) * cos(v); }", "f(a)", 1.0f},
        {"float f(float v) { float s, c; sincos(v, s, c); return s * s + c * c; }", "f(a)", 1.0f},
        {"float f(float v) { return sqrt(v - 2) + pow(v, 3) + abs(-v) + frac(-0.25 * v); }", "f(a)",
         10.5f},
        {"int f(float v) { return v * 1.75; }", "f(a)", 3.0f},
        {"bool f(float v) { return v > 1.5; }", "f(a) ? 5 : 7", 5.0f},
        {"float2x2 f(float v) { return float2x2(1, v, 3, 4); }", "mul(f(a), f(a))._12", 10.0f},
        {"float f(float v) { return saturate(v) + clamp(v, 0, 1.5) + min(v, 1) + max(v, 5); }",
         "f(a)", 8.5f},
        {"float f(float v) { return exp2(v) + log2(v * 4) + rsqrt(v * 8) + 1 / v; }", "f(a)",
         7.75f},
        {"float f(float2 v) { return dot(v, v) + length(v); }", "f(float2(3, 2 * a))", 30.0f},
        {"float f(float4 v) { return dot(v, v); }", "f(a)", 16.0f},
    };
    constexpr const char* kParameters =
        "float a = 2; float4x4 big = { 1,2,3,4, 5,6,7,8, 9,10,11,12, 13,14,15,16 };\n"
        "float list[3] = { 4, 5, 6 }; struct Lamp { float3 place; float reach; };\n"
        "Lamp lamp = { 7, 8, 9, 10 }; Lamp lamps[2] = { 11, 12, 13, 14, 1, 15, 3, 4 };\n";
    for (const auto& c : kCases) {
        const std::string text = std::string(kParameters) + c.text + kPass + c.value + kEnd;
        const Com<ID3DXEffect> effects[] = {Make(text), MakeCompiled(text)};
        for (const Com<ID3DXEffect>& effect : effects) {
            ASSERT_TRUE(effect) << c.text;
            EXPECT_NEAR(FogStartOf(effect.Get()), c.wanted, 1e-5f * c.wanted) << c.text;
        }
    }
}

/// A pass that runs sees a parameter that only a function reads.
TEST_F(FxFunctionTest, ChangedParametersChangeWhatAFunctionGives)
{
    const std::string text =
        std::string("float a = 1; float f() { return a * 2; }") + kPass + "f() + 1" + kEnd;
    for (const Com<ID3DXEffect>& effect : {Make(text), MakeCompiled(text)}) {
        ASSERT_TRUE(effect);
        BeginFirstPass(effect.Get());
        ASSERT_EQ(effect->SetFloat("a", 5.0f), D3D_OK);
        ASSERT_EQ(effect->CommitChanges(), D3D_OK);
        EXPECT_EQ(std::bit_cast<float>(Render(D3DRS_FOGSTART)), 11.0f);
        EndPassAndEffect(effect.Get());
    }
}

TEST_F(FxFunctionTest, InitialValuesAndLengthsCallFunctions)
{
    const Com<ID3DXEffect> effect = Make(
        "int count(int n) { int sum = 0; for (int i = 1; i <= 4; i++) sum += i * n; return sum; }"
        "float f(float v) { return v * v; }"
        "float list[count(1)]; float x = f(3) + f(f(2)); technique q { }");
    ASSERT_TRUE(effect);
    EXPECT_EQ(FloatOf(effect.Get(), "x"), 25.0f);
    D3DXPARAMETER_DESC description = {};
    ASSERT_EQ(effect->GetParameterDesc(effect->GetParameterByName(nullptr, "list"), &description),
              D3D_OK);
    EXPECT_EQ(description.Elements, 10u);
}

TEST_F(FxFunctionTest, WhatFunctionsInValuesCannotDoIsTold)
{
    static const struct {
        const char* text;
        const char* message;
    } kCases[] = {
        {"float f(float v) { return f(v); } float x = f(1);",
         "memory(1,27): error X4000: 'f' calls itself\n"},
        {"void f(float v) { } float x = f(1);", "memory(1,31): error X3004: 'f' gives no number\n"},
        {"struct S { float a; }; S f() { S s; s.a = 1; return s; }\nfloat x = f();",
         "memory(2,11): error X3004: 'f' gives no number\n"},
        {"float f(float2 v) { return v.x; } struct S { float a; };\nfloat x = f(1, 2);",
         "memory(2,11): error X3004: no function 'f' takes (int, int)\n"},
        {"float f(out float v) { v = 1; return 2; }\nfloat x = f(3);",
         "memory(2,13): error X3004: this is no variable that can be written\n"},
        {"sampler s; float f(float2 v) { return tex2D(s, v).x; }\nfloat x = f(float2(1, 1));",
         "memory(1,39): error X3001: a value has no 'tex2D'\n"},
        {"float f(float v) { return ddx(v); }\nfloat x = f(1);",
         "memory(1,27): error X3001: a value has no 'ddx'\n"},
        {"float f(int n) { float s = 0; for (int i = 0; i < n; i++) s += i; return s; }\n"
         "float n; float x = f(n);",
         "memory(1,31): error X4000: the loop cannot be unrolled: its rounds are not known, or "
         "more than 1024\n"},
        {"float f() { return late; }\nfloat x = f(); float late = 3;",
         "memory(2,11): error X3001: the function 'f' reads a parameter that is not known here\n"},
        {"float f(float v) { return v + what; }\nfloat x = f(1);",
         "memory(1,31): error X3001: there is no variable 'what'\n"},
    };
    for (const auto& c : kCases)
        EXPECT_EQ(ErrorOf(c.text), c.message) << c.text;
}

/// All calls of an effect together have a limit.
TEST_F(FxFunctionTest, ManyLargeFunctionsAreAnError)
{
    std::string text = "float f(float v) {\n";
    for (int i = 0; i < 1000; ++i)
        text += "v = sin(v) * v + cos(v);\n";
    text += "return v; }\nfloat a;\ntechnique t {\n";
    for (int i = 0; i < 300; ++i)
        text += "pass { FogStart = f(a); }\n";
    EXPECT_TRUE(
        ErrorOf(text + "}").ends_with("error X4000: the functions in values are too large\n"));
}
