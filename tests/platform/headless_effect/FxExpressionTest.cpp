#include <cmath>

#include "tests/platform/headless_effect/EffectTest.h"

// Expressions, checked by the initial values they produce.

namespace {

using FxExpressionTest = EffectTest;

} // namespace

TEST_F(FxExpressionTest, OperatorsFollowTheirPrecedence)
{
    static const struct {
        const char* text;
        float value;
    } cases[] = {
        {"1 + 2 * 3", 7},
        {"(1 + 2) * 3", 9},
        {"8 - 3 - 2", 3},
        {"7 / 2", 3},
        {"7 / 2.0", 3.5f},
        {"7 % 4", 3},
        {"7.5 % 2", 1.5f},
        {"-7 / 2", -3},
        {"1 / 0", 0},
        {"2147483647 + 1", -2147483648.0f},
        {"- -3", 3},
        {"+4", 4},
        {"!0", 1},
        {"!2.5", 0},
        {"~0", -1},
        {"1 << 4", 16},
        {"-16 >> 2", -4},
        {"6 & 3 | 8 ^ 1", 11}, // & before ^ before |: 2 | 9
        {"1 < 2 == 1", 1},
        {"2 >= 2 && 3 != 3 || 1 > 2", 0},
        {"1 <= 0 || true", 1},
        {"0 ? 1 : 2 ? 3 : 4", 3},
        {"1 ? 2 : 3.5", 2},
        {"0x1F", 31},
        {"010", 8},
        {"1.5e2f", 150},
        {".5h", 0.5f},
        {"3u", 3},
        {"false", 0},
        {"(int)2.9", 2},
        {"(int)-2.9", -2},
        {"(bool)0.1", 1},
        {"(float)7 / 2", 3.5f},
        {"(int)1e20", 2147483648.0f}, // saturates at 2147483647, which rounds to this float
        {"float4(1, 2, 3, 4).z", 3},
        {"float4(float2(1, 2), float2(3, 4)).wzyx.x", 4},
        {"float3(1, 2, 3).bgr[0]", 3},
        {"float2x2(1, 2, 3, 4)._21", 3},
        {"float2x2(1, 2, 3, 4)._m01_m10.y", 3},
        {"float2x2(1, 2, 3, 4)[1][0]", 3},
        {"((float2)float4(1, 2, 3, 4)).y", 2},
        {"((float2x2)float3x3(1, 2, 3, 4, 5, 6, 7, 8, 9))._22", 5},
        {"(2).xxx.z", 2},
    };
    for (const auto& c : cases) {
        const Com<ID3DXEffect> effect = Make("float x = " + std::string(c.text) + ";");
        ASSERT_TRUE(effect) << c.text;
        EXPECT_EQ(FloatOf(effect.Get(), "x"), c.value) << c.text;
    }
}

TEST_F(FxExpressionTest, FunctionsGiveTheirMathematicalValue)
{
    static const struct {
        const char* text;
        float value;
    } cases[] = {
        {"abs(-2)", 2},
        {"ceil(1.2)", 2},
        {"floor(-1.2)", -2},
        {"frac(-0.25)", 0.75f},
        {"round(2.6)", 3},
        {"sign(-3)", -1},
        {"saturate(7)", 1},
        {"saturate(-7)", 0},
        {"clamp(5, 1, 3)", 3},
        {"min(2, 3)", 2},
        {"max(2, 3)", 3},
        {"fmod(-7, 3)", -1},
        {"lerp(2, 4, 0.25)", 2.5f},
        {"step(2, 3)", 1},
        {"step(3, 2)", 0},
        {"smoothstep(0, 2, 1)", 0.5f}, // 0.25 * (3 - 1)
        {"pow(2, 10)", 1024},
        {"sqrt(16)", 4},
        {"rsqrt(16)", 0.25f},
        {"exp(0)", 1},
        {"exp2(3)", 8},
        {"log(1)", 0},
        {"log2(8)", 3},
        {"log10(1000)", 3},
        {"sin(0)", 0},
        {"cos(0)", 1},
        {"tan(0)", 0},
        {"asin(0)", 0},
        {"acos(1)", 0},
        {"atan(0)", 0},
        {"atan2(0, 1)", 0},
        {"degrees(radians(90))", 90},
        {"dot(float3(1, 2, 3), float3(4, 5, 6))", 32}, // 4 + 10 + 18
        {"length(float2(3, 4))", 5},
        {"distance(float2(1, 1), float2(4, 5))", 5},
        {"normalize(float2(3, 4)).y", 0.8f},
        {"normalize(float2(0, 0)).x", 0},
        {"cross(float3(1, 0, 0), float3(0, 1, 0)).z", 1},
        {"transpose(float2x3(1, 2, 3, 4, 5, 6))._32", 6},
        {"mul(float2(1, 2), float2x2(3, 4, 5, 6)).x", 13},           // 1 * 3 + 2 * 5
        {"mul(float2x2(3, 4, 5, 6), float2(1, 2)).x", 11},           // 3 * 1 + 4 * 2
        {"mul(float2x2(1, 2, 3, 4), float2x2(5, 6, 7, 8))._12", 22}, // 1 * 6 + 2 * 8
        {"mul(float2(1, 2), float2(3, 4))", 11},
        {"mul(2, float2(3, 4)).y", 8},
        {"cosh(1)", 1.5430806348152437f},
        {"sinh(1)", 1.1752011936438014f},
        {"tanh(1)", 0.7615941559557649f},
        {"ldexp(3, 4)", 48},
        {"ldexp(3, -1)", 1.5f},
        {"trunc(-2.7)", -2},
        {"trunc(2.7)", 2},
        {"isnan(sqrt(-1.0))", 1},
        {"isnan(1.0)", 0},
        {"isinf(1.0 / 0.0)", 1},
        {"isinf(2.0)", 0},
        {"isfinite(1.0 / 0.0)", 0},
        {"isfinite(2.0)", 1},
        {"determinant(float2x2(1, 2, 3, 4))", -2},
        {"determinant(float3x3(0, 2, 0, 3, 0, 0, 0, 0, 4))", -24}, // two rows exchanged
        {"determinant(float4x4(2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 4, 0, 1, 1, 1, 5))", 120},
        {"reflect(float2(1, -1), float2(0, 1)).y", 1},
        {"refract(float2(0, -1), float2(0, 1), 0.5).y", -1}, // straight on
        {"refract(float2(0.6, -0.8), float2(0, 1), 0.5).x", 0.3f},
        {"refract(float2(0.6, -0.8), float2(0, 1), 2).x", 0}, // nothing passes
        {"faceforward(float2(1, 2), float2(0, -1), float2(0, 1)).y", 2},
        {"faceforward(float2(1, 2), float2(0, 1), float2(0, 1)).y", -2},
        {"lit(0.5, 0.25, 2).y", 0.5f},
        {"lit(0.5, 0.25, 2).z", 0.0625f},
        {"lit(-0.5, 0.25, 2).z", 0},
        {"lit(-0.5, 0.25, 2).y", 0},
        {"D3DCOLORtoUBYTE4(float4(1, 0.5, 0, 0.2)).z", 255},
        {"D3DCOLORtoUBYTE4(float4(1, 0.5, 0, 0.2)).y", 127},
        {"D3DCOLORtoUBYTE4(float4(1, 0.5, 0, 0.2)).w", 51},
        {"any(float2(0, 1))", 1},
        {"all(float2(0, 1))", 0},
    };
    for (const auto& c : cases) {
        const Com<ID3DXEffect> effect = Make("float x = " + std::string(c.text) + ";");
        ASSERT_TRUE(effect) << c.text;
        EXPECT_FLOAT_EQ(FloatOf(effect.Get(), "x"), c.value) << c.text;
    }
}

TEST_F(FxExpressionTest, OtherParametersCanBeRead)
{
    const Com<ID3DXEffect> effect = Make(
        "struct pair { float a; int2 b; };\n"
        "pair p = {1.5, 2, 3}; pair q[2] = {{1, 2, 3}, {4, 5, 6}};\n"
        "static const int N = 3; float list[N] = {10, 20, 30}; int i = 2;\n"
        "float member = p.b.y; float element = q[1].a; float far = list[i];\n"
        "float clamped = list[i + 7]; float4x4 m = {1,2,3,4, 5,6,7,8, 9,10,11,12, 13,14,15,16};\n"
        "float4 row = m[2]; float cell = m._m13;");
    EXPECT_EQ(FloatOf(effect.Get(), "member"), 3);
    EXPECT_EQ(FloatOf(effect.Get(), "element"), 4);
    EXPECT_EQ(FloatOf(effect.Get(), "far"), 30);
    EXPECT_EQ(FloatOf(effect.Get(), "clamped"), 30) << "an index outside takes the nearest element";
    EXPECT_EQ(FloatOf(effect.Get(), "cell"), 8);
    D3DXVECTOR4 row;
    ASSERT_EQ(effect->GetVector("row", &row), D3D_OK);
    EXPECT_EQ(row.x, 9);
    EXPECT_EQ(row.w, 12);
    EXPECT_EQ(effect->GetParameterByName(nullptr, "N"), nullptr) << "a static one is nobody's";
}
