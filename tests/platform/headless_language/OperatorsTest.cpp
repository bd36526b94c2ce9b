// Operators, conversions, types and places. Expected values follow from the rules of the language.

#include "tests/platform/headless_language/LanguageRun.h"

#include <cmath>

#include <gtest/gtest.h>

namespace headless::hl {

namespace {

constexpr const char* kOperatorProfiles[] = {"vs_1_1", "vs_2_0", "vs_3_0", "ps_2_0",
                                             "ps_2_a", "ps_2_b", "ps_3_0"};

struct OperatorCase {
    const char* what;
    const char* declarations;
    const char* expression;
    Four wanted;
};

constexpr Four kOperandA = {1.5f, -2.25f, 3.0f, 0.5f};
constexpr Four kOperandB = {4.0f, 2.0f, -0.5f, 1.0f};

/// With a and b as constants of the program, and as numbers in the text.
void ExpectOperator(const OperatorCase& c, const std::string& profile)
{
    for (const bool isKnown : {false, true}) {
        const std::string ab =
            isKnown ? "static const float4 a = {1.5, -2.25, 3, 0.5}, b = {4, 2, -0.5, 1};\n"
                    : "float4 a, b;\n";
        LanguageRun run(TextOf(ab + c.declarations, c.expression, profile), profile);
        if (!run.IsMade())
            continue;
        run.Set("a", {kOperandA});
        run.Set("b", {kOperandB});
        const Four found = run.Result();
        for (size_t i = 0; i < 4; ++i)
            EXPECT_NEAR(found[i], c.wanted[i], 2e-6 * std::max(1.0f, std::fabs(c.wanted[i])))
                << profile << (isKnown ? " known " : " ") << c.what << " component " << i << '\n'
                << ListingOf(*run.made.shader);
    }
}

void ExpectAll(const std::vector<OperatorCase>& cases)
{
    for (const OperatorCase& c : cases)
        for (const char* profile : kOperatorProfiles)
            ExpectOperator(c, profile);
}

} // namespace

TEST(HlOperators, Arithmetic)
{
    ExpectAll({
        {"sum", "", "a + b", {5.5f, -0.25f, 2.5f, 1.5f}},
        {"difference", "", "a - b", {-2.5f, -4.25f, 3.5f, -0.5f}},
        {"product", "", "a * b", {6, -4.5f, -1.5f, 0.5f}},
        {"quotient", "", "a / b", {0.375f, -1.125f, -6, 0.5f}},
        {"remainder", "", "a % b", {1.5f, -0.25f, 0, 0.5f}},
        {"sign", "", "-a", {-1.5f, 2.25f, -3, -0.5f}},
        {"plus", "", "+a", kOperandA},
        {"precedence", "", "a + b * 2 - a / 2", {8.75f, 2.875f, 0.5f, 2.25f}},
        {"from the left", "", "a - b - a", {-4, -2, 0.5f, -1}},
        {"brackets", "", "(a + b) * 2", {11, -0.5f, 5, 3}},
        {"a number for all", "", "2 * a + 1", {4, -3.5f, 7, 2}},
        {"comma", "", "(a, b)", kOperandB},
    });
}

TEST(HlOperators, WholeNumbers)
{
    ExpectAll({
        {"division cuts",
         "",
         "float4((int)a.z / 2, (int)b.x / 3, -(int)a.z / 2, 7 / 2)",
         {1, 1, -1, 3}},
        {"exact division",
         "",
         "float4((int)(b.x * 10.25) / 41, (int)(b.x * 10) / 8, 1, 2)",
         {1, 5, 1, 2}},
        {"remainder",
         "",
         "float4((int)a.z % 2, (int)b.x % 3, -(int)a.z % 2, 7 % 4)",
         {1, 1, -1, 3}},
        {"a cast cuts", "", "float4((int)a.x, (int)a.y, (int)a.w, (int)b.z)", {1, -2, 0, 0}},
        {"int4 cuts", "", "int4(a)", {1, -2, 3, 0}},
        {"assignment cuts",
         "int i(float x) { int n = x; return n; }",
         "float4(i(a.x), i(a.y), 0, 1)",
         {1, -2, 0, 1}},
        {"truth to number", "", "float4((a > 1)) + bool4(a)", {2, 1, 2, 1}},
        {"bits of the text",
         "",
         "float4(6 & 3, 6 | 1, 6 ^ 3, 1 << 4) + (~0) + (64 >> 3)",
         {9, 14, 12, 23}},
        {"hexadecimal and octal", "", "float4(0x10, 010, 3u, 1e2)", {16, 8, 3, 100}},
        {"suffixes", "", "float4(1.5f, 2.5h, .5, 3.)", {1.5f, 2.5f, 0.5f, 3}},
    });
}

TEST(HlOperators, Truths)
{
    ExpectAll({
        {"less", "", "a < b ? 1 : 0", {1, 1, 0, 1}},
        {"at most", "", "a <= float4(1.5, -3, 3, 1) ? 1 : 0", {1, 0, 1, 1}},
        {"greater", "", "a > b ? 1 : 0", {0, 0, 1, 0}},
        {"at least", "", "a >= float4(1.5, -3, 4, 1) ? 1 : 0", {1, 1, 0, 0}},
        {"same", "", "a == float4(1.5, 2, 3, 1) ? 2 : 3", {2, 3, 2, 3}},
        {"other", "", "a != float4(1.5, 2, 3, 1) ? 2 : 3", {3, 2, 3, 2}},
        {"and", "", "(a > 0 && b > 0) ? 1 : 0", {1, 0, 0, 1}},
        {"or", "", "(a > 2 || b > 3) ? 1 : 0", {1, 0, 1, 0}},
        {"not", "", "!(a > 0) ? 1 : 0", {0, 1, 0, 0}},
        {"one condition", "", "a.x > 1 ? a : b", kOperandA},
        {"nested choice", "", "a.x > 2 ? a : b.x > 3 ? b : a + b", kOperandB},
        {"a number is a condition", "", "a.x ? b : a", kOperandB},
        {"zero is none", "", "(a.x - 1.5) ? a : b", kOperandB},
    });
}

TEST(HlOperators, ComponentsOnBothSides)
{
    ExpectAll({
        {"reversed", "", "a.wzyx", {0.5f, 3, -2.25f, 1.5f}},
        {"colours", "", "a.bgra", {3, -2.25f, 1.5f, 0.5f}},
        {"repeated", "", "a.xxyy * b.zwzw", {-0.75f, 1.5f, 1.125f, -2.25f}},
        {"of components", "", "a.zyx.yxxy", {-2.25f, 3, 3, -2.25f}},
        {"of a number", "", "a.x.xxxx", {1.5f, 1.5f, 1.5f, 1.5f}},
        {"written",
         "float4 f(float4 x, float4 y) { x.yw = y.xz; return x; }",
         "f(a, b)",
         {1.5f, 4, 3, -0.5f}},
        {"written crossed",
         "float4 f(float4 x) { x.xyzw = x.wzyx; return x; }",
         "f(a)",
         {0.5f, 3, -2.25f, 1.5f}},
        {"components of components written",
         "float4 f(float4 x) { x.wzy.xy = float2(7, 8); return x; }",
         "f(a)",
         {1.5f, -2.25f, 8, 7}},
        {"sum stored",
         "float4 f(float4 x, float4 y) { x.xz += y.yy; return x; }",
         "f(a, b)",
         {3.5f, -2.25f, 5, 0.5f}},
        {"places of a matrix",
         "float4 f(float4 x, float4 y) { float2x2 m = {x.x, x.y, y.x, y.y};"
         " m._m01_m10 = m._21_12; return float4(m._11, m._m01, m._21, m._22); }",
         "f(a, b)",
         {1.5f, 4, -2.25f, 2}},
        {"by an index",
         "float4 f(float4 x) { x[1] = 9; x[3] *= 2; return x; }",
         "f(a)",
         {1.5f, 9, 3, 1}},
        {"by an index that is not known",
         "float4 f(float4 x, int i) { x[i] = 9; return x + x[i + 1]; }",
         "f(a, (int)b.y - 1)",
         {4.5f, 12, 6, 3.5f}},
        {"steps",
         "float4 f(float x) { float y = x++; float z = ++x; return float4(x, y, z--, z); }",
         "f(a.x)",
         {3.5f, 1.5f, 3.5f, 2.5f}},
        {"assignment is a value",
         "float4 f(float x) { float y, z; y = z = x * 2; return float4(x, y, z, 1); }",
         "f(a.x)",
         {1.5f, 3, 3, 1}},
        {"all kinds of assignment",
         "float4 f(float4 x, float4 y) { float4 r = x; r.x -= y.x; r.y *= y.y; r.z /= y.z; r.w %= 0.4;"
         " return r; }",
         "f(a, b)",
         {-2.5f, -4.5f, -6, 0.1f}},
    });
}

TEST(HlOperators, MatricesAndArrays)
{
    ExpectAll({
        {"a row", "", "float2x4(a, b)[1]", kOperandB},
        {"sum", "", "(float2x4(a, b) + float2x4(b, b))[0]", {5.5f, -0.25f, 2.5f, 1.5f}},
        {"a smaller matrix",
         "",
         "float4(((float2x2)float3x3(a.xyz, b.xyz, a.xyz))[1], 0, 1)",
         {4, 2, 0, 1}},
        {"a matrix of a vector",
         "",
         "float4(((float2x2)a)[0], ((float2x2)a)[1].yx)",
         {1.5f, -2.25f, 0.5f, 3}},
        {"an array",
         "float4 f(float4 x) { float t[3] = {x.x, x.y, 5}; t[1] += t[2];"
         " return float4(t[0], t[1], t[2], 0); }",
         "f(a)",
         {1.5f, 2.75f, 5, 0}},
        {"two dimensions",
         "static const float t[2][3] = {{1, 2, 3}, {4, 5, 6}};",
         "float4(t[0][2], t[1][0], t[1][2], t[0][0]) * b.w",
         {3, 4, 6, 1}},
        {"an unstated length",
         "static const float t[] = {1, 2, 3, 4, 5};",
         "float4(t[0], t[3], t[4], 0) + a.w",
         {1.5f, 4.5f, 5.5f, 0.5f}},
        {"a length from a constant",
         "static const int n = 2; static const float t[n + 1] = {1, 2, 3};",
         "float4(t[0], t[1], t[2], a.x)",
         {1, 2, 3, 1.5f}},
        {"structs in structs",
         "struct In { float2 p; float q[2]; }; struct Out { In i; float r; };"
         "Out g(float4 x) { Out o; o.i.p = x.xy; o.i.q[0] = x.z; o.i.q[1] = x.w; o.r = 1; return o; }",
         "float4(g(a).i.p.y, g(a).i.q[0], g(a).i.q[1], g(a).r)",
         {-2.25f, 3, 0.5f, 1}},
        {"an array of a vector",
         "",
         "float4(((float[4])a)[1], ((int[4])a)[0], (float2)((float[2])b.zw))",
         {-2.25f, 1, -0.5f, 1}},
        {"a struct of zeros",
         "struct S { float4 x; float y; };"
         "float4 f() { S s = (S)0; return s.x + s.y; }",
         "f() + a", kOperandA},
        {"an initial list for a struct",
         "struct S { float2 x; float y[2]; };"
         "float4 f(float4 v) { S s = {v.xy, {7, 8}};"
         " return float4(s.x, s.y[0], s.y[1]); }",
         "f(a)",
         {1.5f, -2.25f, 7, 8}},
        {"names of types",
         "typedef float4 Colour; typedef float Pair[2];"
         "Colour f(Colour x) { Pair p = {1, 2}; return x * p[1]; }",
         "f(a)",
         {3, -4.5f, 6, 1}},
        {"vector and matrix",
         "vector<float, 4> f(vector<float, 4> x) {"
         " matrix<float, 2, 2> m = {1, 2, 3, 4}; return x + m[1][0]; }",
         "f(a)",
         {4.5f, 0.75f, 6, 3.5f}},
    });
}

TEST(HlOperators, Functions)
{
    ExpectAll({
        {"in, out, inout",
         "void f(in float x, out float y, inout float z) { y = x * 2; z += x; }"
         "float4 g(float4 v) { float y, z = 10; f(v.x, y, z); return float4(y, z, 0, 1); }",
         "g(a)",
         {3, 11.5f, 0, 1}},
        {"out to components",
         "void f(out float2 x) { x = float2(7, 8); }"
         "float4 g(float4 v) { f(v.wy); return v; }",
         "g(a)",
         {1.5f, 8, 3, 7}},
        {"a default",
         "float4 f(float4 x, float y = 2) { return x * y; }",
         "f(a) + f(a, 3)",
         {7.5f, -11.25f, 15, 2.5f}},
        {"overloads",
         "float f(float x) { return 1; } float f(float2 x) { return 2; } float f(int x) { return 3; }"
         "float f(float4 x) { return 4; }",
         "float4(f(a.x), f(a.xy), f((int)a.x), f(a))",
         {1, 2, 3, 4}},
        {"a parameter is a copy",
         "float f(float x) { x = 5; return x; }"
         "float4 g(float4 v) { float x = v.x; float y = f(x); return float4(x, y, 0, 0); }",
         "g(a)",
         {1.5f, 5, 0, 0}},
        {"static variables",
         "static float total = 1; void add(float x) { total += x; }"
         "float4 g(float4 v) { add(v.x); add(v.z); return total; }",
         "g(a)",
         {5.5f, 5.5f, 5.5f, 5.5f}},
        {"an inner name hides",
         "static const float x = 5;"
         "float4 g(float4 v) { float y = x; { float x = v.x; y += x; } return y + x; }",
         "g(a)",
         {11.5f, 11.5f, 11.5f, 11.5f}},
        {"own names before intrinsic ones",
         "float4 lerp(float4 x, float4 y) { return x * 2; }",
         "lerp(a, b)",
         {3, -4.5f, 6, 1}},
    });
}

} // namespace headless::hl
