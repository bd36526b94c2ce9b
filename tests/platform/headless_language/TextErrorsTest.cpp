// Broken texts: the place and the words of each message, written by reading the text.

#include "tests/platform/headless_language/LanguageRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace headless::hl {

namespace {

using testing::HasSubstr;
using testing::StartsWith;

struct Broken {
    const char* text;  ///< behind the declarations, on lines of their own from line 2 on
    const char* place; ///< "line,column"
    const char* word;  ///< in the message
};

constexpr const char* kBrokenDeclarations =
    "float4 a, b; float3 v; float2 t; int n; float4x4 m; sampler2D s; texture x; struct S { float4 p; };";

void ExpectBroken(const Broken& c, const char* profile)
{
    const CompiledText made =
        CompileText(std::string(kBrokenDeclarations) + "\n" + c.text, profile);
    EXPECT_FALSE(made.shader->IsMade()) << c.text;
    EXPECT_THAT(made.messages, StartsWith(std::string(c.place) + " X")) << c.text;
    EXPECT_THAT(made.messages, HasSubstr(c.word)) << c.text;
}

/// In a function of its own on line 2, from column 1 on.
void ExpectInBody(const Broken& c)
{
    const std::string text = "float4 main() : COLOR {\n" + std::string(c.text) + "\nreturn 0; }";
    ExpectBroken({text.c_str(), c.place, c.word}, "ps_2_0");
}

} // namespace

TEST(HlErrors, WhatIsExpectedIsTold)
{
    static const Broken kTexts[] = {
        {"float4 y = a", "4,1", "';' is expected, not 'return'"},
        {"a = ;", "3,5", "an expression is expected, not ';'"},
        {"a + * b;", "3,5", "an expression is expected, not '*'"},
        {"float4 y = (a;", "3,14", "')' is expected, not ';'"},
        {"float4 y = a[1;", "3,15", "']' is expected, not ';'"},
        {"float4 y = mul(a, b;", "3,20", "',' or ')' is expected, not ';'"},
        {"float4 y = a ? b;", "3,17", "':' is expected, not ';'"},
        {"if a.x > 0) b;", "3,4", "'(' is expected, not 'a'"},
        {"if (a.x > 0 b;", "3,13", "')' is expected, not 'b'"},
        {"for (int i = 0, i < 3; i++) ;", "3,19", "';' is expected, not '<'"},
        {"for (int i = 0; i < 3) ;", "3,22", "';' is expected, not ')'"},
        {"while (a.x) ; while", "4,1", "'(' is expected, not 'return'"},
        {"do { } while (1)", "4,1", "';' is expected, not 'return'"},
        {"do { }", "4,1", "'while' is expected, not 'return'"},
        {"float 3y;", "3,7", "a name is expected, not '3y'"},
        {"float y : register(c0;", "4,11", "')' is expected, not the end of the file"},
        {"float4 y[;", "3,10", "an expression is expected, not ';'"},
        {"float4 y = a.;", "3,14", "a member is expected, not ';'"},
        {"float4 y = {1, 2 3, 4};", "3,18", "',' or '}' is expected, not '3'"},
        {"break", "4,1", "';' is expected, not 'return'"},
        {"[unwind] for (;;) ;", "3,2", "unroll, loop, branch or flatten is expected, not 'unwind'"},
        {"vector<float, 7> y;", "3,15", "1 to 4 is expected, not '7'"},
        {"vector<S, 3> y;", "3,8", "a type of numbers is expected, not 'S'"},
        {"float4 y = float4(1, 2, 3, 4;", "3,29", "',' or ')' is expected, not ';'"},
        {"switch (n) { case 1: a; case 2: a; }", "3,25",
         "the case before this one needs a 'break'"},
        {"switch (n) { case n: a; }", "3,19", "a case is a whole number that the text tells"},
        {"switch (n) { case 1: break; case 2 - 1: a; }", "3,34",
         "the switch has this case already"},
        {"switch (n) { default: break; default: a; }", "3,30", "the switch has a default already"},
        {"switch (n) { a; }", "3,14", "case, default or '}' is expected, not 'a'"},
        {"switch (n) { case 1; }", "3,20", "':' is expected, not ';'"},
        {"else a;", "3,6", "';' is expected, not 'a'"},
        {"a b;", "3,3", "';' is expected, not 'b'"},
        {"float4 y = 1.2.3;", "3,12", "'1.2.3' is no number"},
        {"float4 y = 12abc;", "3,12", "'12abc' is no number"},
        {"float4 y = 0xg;", "3,12", "'0xg' is no number"},
        {"float y = $;", "3,11", "an expression is expected, not '$'"},
        {"struct T { float4 p }; T y;", "3,21", "';' is expected, not '}'"},
    };
    for (const Broken& c : kTexts)
        ExpectInBody(c);
}

TEST(HlErrors, UnknownNames)
{
    static const Broken kTexts[] = {
        {"float4 y = c;", "3,12", "there is no variable 'c'"},
        {"c = a;", "3,1", "there is no variable 'c'"},
        {"float4 y = smooth(a);", "3,12", "there is no function 'smooth'"},
        {"float4 y = tex4D(s, a);", "3,12", "there is no function 'tex4D'"},
        {"float4 y = noise(a);", "3,12", "no 'noise'"},
        {"float y = a.q;", "3,13", "float4 has no member 'q'"},
        {"float y = v.w;", "3,13", "float3 has no member 'w'"},
        {"float4 y = a.xyzwx;", "3,14", "no member 'xyzwx'"},
        {"float2 y = a.xg;", "3,14", "no member 'xg'"},
        {"float y = m._m44;", "3,13", "float4x4 has no member '_m44'"},
        {"float y = m._15;", "3,13", "no member '_15'"},
        {"float y = m._m0;", "3,13", "no member '_m0'"},
        {"float y = m.x;", "3,13", "float4x4 has no member 'x'"},
        {"S y = (S)0; y.q = a;", "3,15", "struct S has no member 'q'"},
        {"S y = (S)0; float z = y.x.x;", "3,25", "struct S has no member 'x'"},
        {"{ float k = 1; } float y = k;", "3,28", "there is no variable 'k'"},
        {"{ for (int i = 0; i < 2; i++) ; } float y = i;", "3,45", "there is no variable 'i'"},
        {"float y = x;", "3,11", "shaders cannot use 'x'"},
        {"Thing y;", "3,7", "';' is expected, not 'y'"},
    };
    for (const Broken& c : kTexts)
        ExpectInBody(c);
}

TEST(HlErrors, TypesThatDoNotFit)
{
    static const Broken kTexts[] = {
        {"float4 y = v;", "3,12", "float3 does not become float4"},
        {"float3 y = t;", "3,12", "float2 does not become float3"},
        {"float4x4 y = a;", "3,14", "float4 does not become float4x4"},
        {"S y = a;", "3,7", "float4 does not become struct S"},
        {"float y = (S)0;", "3,11", "struct S does not become float"},
        {"float4 y = s;", "3,12", "sampler2D does not become float4"},
        {"float4 y = a + m;", "3,14", "no such operation with float4 and float4x4"},
        {"float4 y = a * s;", "3,14", "no such operation with float4 and sampler2D"},
        {"S y = (S)0; y + y;", "3,15", "no such operation with struct S and struct S"},
        {"float4 y = -s;", "3,12", "a number is expected, not sampler2D"},
        {"float4 y = a & b;", "3,14", "operations on bits"},
        {"int y = n << 2;", "3,11", "operations on bits"},
        {"int y = ~n;", "3,9", "operations on bits"},
        {"if (a) b;", "3,5", "a condition is one number, not float4"},
        {"while (s) b;", "3,8", "a condition is one number, not sampler2D"},
        {"float4 y = a.xy ? a : b;", "3,17", "the condition is"},
        {"float4 y = float4(1, 2, 3);", "3,12", "float4 takes 4 numbers, not 3"},
        {"float4 y = float4(a, 1);", "3,12", "float4 takes 4 numbers, not 5"},
        {"float2x2 y = float2x2(1, 2, 3);", "3,14", "float2x2 takes 4 numbers, not 3"},
        {"float4 y = float4(s, 1, 2, 3);", "3,19", "a number is expected, not sampler2D"},
        {"float4 y = {1, 2, 3};", "3,12", "there are 3 values, not 4"},
        {"float y[2] = {1, 2, 3};", "3,14", "there are 3 values, not 2"},
        {"float y[];", "3,7", "the array 'y' needs a length"},
        {"float y[0];", "3,9", "the length of an array"},
        {"float y[1.5 * a.x];", "3,13", "the length of an array"},
        {"void y;", "3,6", "a variable cannot be void"},
        {"float y = 3 % 0;", "3,13", "divided by 0"},
        {"int y = n / 0;", "3,11", "divided by 0"},
    };
    for (const Broken& c : kTexts)
        ExpectInBody(c);
}

TEST(HlErrors, PlacesAndIndices)
{
    static const Broken kTexts[] = {
        {"a = b;", "3,1", "'a' is a constant"},
        {"a.x += 1;", "3,1", "'a' is a constant"},
        {"n++;", "3,1", "'n' is a constant"},
        {"const float y = 1; y = 2;", "3,20", "'y' is a constant"},
        {"1 = 2;", "3,1", "no variable that can be written"},
        {"sin(a) = b;", "3,1", "no variable that can be written"},
        {"float4 y = a; y.xx = t;", "3,17", "a component is written twice"},
        {"float y[3]; y[3] = 1;", "3,15", "there is no element 3 of 3"},
        {"float y = a[4];", "3,13", "there is no element 4 of 4"},
        {"float y = a[-1];", "3,13", "there is no element -1 of 4"},
        {"float4 y = m[5];", "3,14", "there is no element 5 of 4"},
        {"float y = n[0];", "3,13", "int has no elements"},
        {"float y = a[t];", "3,13", "an index is one number, not float2"},
        {"break;", "3,1", "'break' is outside of a loop"},
        {"continue;", "3,1", "'continue' is outside of a loop"},
        {"return;", "3,1", "'main' gives a value of type float4"},
        {"return v;", "3,8", "float3 does not become float4"},
    };
    for (const Broken& c : kTexts)
        ExpectInBody(c);
}

TEST(HlErrors, Calls)
{
    static const Broken kTexts[] = {
        {"float4 y = sin();", "3,12", "'sin' takes 1 arguments, not 0"},
        {"float4 y = lerp(a, b);", "3,12", "'lerp' takes 3 arguments, not 2"},
        {"float4 y = tex2D(a, t);", "3,18", "'tex2D' takes a sampler, not float4"},
        {"float4 y = tex2D(s, n, t);", "3,12", "takes 2 or 4 arguments, not 3"},
        {"float4 y = tex2D(s, v.x == 1 ? s : s);", "3,21", "'tex2D' takes a number, not sampler2D"},
        {"float4 y = tex2Dproj(s, v);", "3,25", "float3 does not become float4"},
        {"float4 y = tex2Dlod(s, a);", "3,12", "ps_2_0 has no 'tex2Dlod'"},
        {"float4 y = ddx(a);", "3,12", "ps_2_0 has no 'ddx'"},
        {"float4 y = cross(v, t).xyzz;", "3,21", "float2 does not become float3"},
        {"float4 y = dot(m, a);", "3,12", "no such operation with float4x4 and float4"},
        {"float4 y = transpose(a);", "3,22", "'transpose' takes a matrix, not float4"},
        {"float y = determinant((float3x4)m);", "3,23", "only a square matrix"},
        {"float y, z; sincos(1, y, 2);", "3,26", "no variable that can be written"},
        {"float4 y = abs(s);", "3,16", "'abs' takes a number, not sampler2D"},
    };
    for (const Broken& c : kTexts)
        ExpectInBody(c);
}

TEST(HlErrors, FunctionsAndSemantics)
{
    static const struct {
        Broken text;
        const char* profile;
    } kTexts[] = {
        {{"float f(float y) { return f(y); } float4 main() : COLOR { return f(1); }", "2,27",
          "'f' calls itself"},
         "ps_2_0"},
        {{"float f(float2 y) { return 1; }\nfloat4 main() : COLOR { return f(s); }", "3,32",
          "no function 'f' takes (sampler2D)"},
         "ps_2_0"},
        {{"float f(float y) { return 1; }\nfloat4 main() : COLOR { return f(); }", "3,32",
          "no function 'f' takes ()"},
         "ps_2_0"},
        {{"float f(int y) { return 1; } float f(bool y) { return 1; }\nfloat4 main() : COLOR { return f(1.5); }",
          "3,32", "fit equally"},
         "ps_2_0"},
        {{"void f() { return 1; } float4 main() : COLOR { f(); return 1; }", "2,12", "'f' is void"},
         "ps_2_0"},
        {{"void f(out float y) { y = 1; } float4 main() : COLOR { f(a.x); return 1; }", "2,58",
          "'a' is a constant"},
         "ps_2_0"},
        {{"float4 main(float4 y) : COLOR { return y; }", "2,20",
          "an input of a shader needs a semantic"},
         "ps_2_0"},
        {{"float4 main() { return a; }", "2,8", "an output of a shader needs a semantic"},
         "ps_2_0"},
        {{"float4 main(float4 y : NORMAL) : COLOR { return y; }", "2,20",
          "ps_2_0 has no input 'NORMAL0'"},
         "ps_2_0"},
        {{"float4 main() : NORMAL { return a; }", "2,8", "ps_2_0 has no output 'NORMAL0'"},
         "ps_2_0"},
        {{"float4 main(float4 y : TEXCOORD9) : COLOR { return y; }", "2,20",
          "ps_2_0 has no input 'TEXCOORD9'"},
         "ps_2_0"},
        {{"float4 main(out float4 y : COLOR) : COLOR { y = a; return a; }", "2,24",
          "'COLOR0' is given twice"},
         "ps_2_0"},
        {{"float4 main(float4 y : WEIGHT) : POSITION { return y; }", "2,20",
          "vs_2_0 has no input 'WEIGHT0'"},
         "vs_2_0"},
        {{"float4 main() : TEXCOORD8 { return a; }", "2,8", "vs_2_0 has no output 'TEXCOORD8'"},
         "vs_2_0"},
        {{"float4 main() : TEXCOORD { return a; }", "2,8",
          "the position is not written completely"},
         "vs_2_0"},
        {{"float4 main(float4 y : POSITION) : POSITION { return tex2D(s, y.xy); }", "2,54",
          "vs_2_0 has no 'tex2D'"},
         "vs_2_0"},
        {{"float4 main(uniform float y) : COLOR { return y; }", "2,27", "'y' has no value"},
         "ps_2_0"},
        {{"float4 main(sampler2D y : TEXCOORD) : COLOR { return 1; }", "2,23",
          "an input of a shader is a number"},
         "ps_2_0"},
        {{"float4 big[300];\nfloat4 main(float4 y : POSITION) : POSITION { return big[y.x]; }",
          "3,8", "'big' finds no free registers"},
         "vs_2_0"},
        {{"float4 main() : COLOR { return mul(m, s); }", "2,39",
          "'mul' takes a number, not sampler2D"},
         "ps_2_0"},
    };
    for (const auto& c : kTexts)
        ExpectBroken(c.text, c.profile);
}

TEST(HlErrors, SeveralInOneRun)
{
    const CompiledText made =
        CompileText("float4 a;\nfloat4 main() : COLOR {\n  float4 p = c;\n  p.q = 1;\n"
                    "  float3 r = a.xy;\n  return d;\n}",
                    "ps_2_0");
    EXPECT_EQ(made.messages, "3,14 X3001: there is no variable 'c'\n"
                             "4,5 X3007: float4 has no member 'q'\n"
                             "5,14 X3004: float2 does not become float3\n"
                             "6,10 X3001: there is no variable 'd'\n");
}

TEST(HlErrors, AnErrorInALoopIsToldOnce)
{
    const CompiledText made = CompileText(
        "float4 main() : COLOR { float x = 0;\nfor (int i = 0; i < 9; i++) x += y; return x; }",
        "ps_2_0");
    EXPECT_EQ(made.messages, "2,34 X3001: there is no variable 'y'\n");
}

TEST(HlErrors, Warnings)
{
    const CompiledText made =
        CompileText("float4 a;\nfloat4 main(out float4 other : COLOR1) : COLOR {\n  float2 p = a;\n"
                    "  float q;\n  return p.xyxy + q;\n}",
                    "ps_2_0");
    EXPECT_TRUE(made.shader->IsMade());
    EXPECT_EQ(made.messages, "warning 3,14 X3004: float4 is cut to float2\n"
                             "warning 5,19 X3004: 'q' is used before it has a value\n"
                             "warning 2,24 X3004: the output 'COLOR1' is never given a value\n");
}

TEST(HlErrors, WhatIsNeverReadIsTold)
{
    static const struct {
        const char* text;
        const char* messages;
    } kRows[] = {
        {"float4 main() : COLOR { float x = 1; return 2; }",
         "warning 1,31 X3004: 'x' is never used\n"},
        {"float4 main() : COLOR { float4 x; x.y = 1; x += 2; return 2; }",
         "warning 1,32 X3004: 'x' is never used\n"},
        {"float4 main() : COLOR { float x = 1, y = x; return 2; }",
         "warning 1,38 X3004: 'y' is never used\n"},
        {"float4 main() : COLOR { float x = 1; { float x = 2; return x; } }",
         "warning 1,31 X3004: 'x' is never used\n"},
        {"float4 main() : COLOR { int i = 0; float a[2]; a[i] = 1; return 2; }",
         "warning 1,42 X3004: 'a' is never used\n"},
        {"float4 main() : COLOR { int k = 0; float r = 0; for (int i = 0; i < 3; i++) { r += 1; k++; }"
         " return r; }",
         "warning 1,29 X3004: 'k' is never used\n"},
        {"float4 main() : COLOR { float r = 1; for (int i = 0; i < 3; ++i) r *= 2; return r + i; }",
         ""},
        {"float4 main() : COLOR { float x, y; y = x = 1; return y; }", ""},
        {"float4 main() : COLOR { float s, c; sincos(1, s, c); return c; }", ""},
        {"float4 main(float4 t : TEXCOORD) : COLOR { return 2; }", ""},
        {"float f(float a, float b, out float c) { c = 1; return a; }\n"
         "float4 main() : COLOR { float q; return f(1, 2, q) + f(2, 3, q); }",
         "warning 1,24 X3004: 'b' is never used\n"},
        {"float f(float a) { return 1; } float f(float2 a) { return 2; }\n"
         "float4 main() : COLOR { float2 v = 1; return f(1.0) + f(v) + f(v); }",
         "warning 1,15 X3004: 'a' is never used\nwarning 1,47 X3004: 'a' is never used\n"},
        {"float f() { float x = 1; return 3; } float4 main() : COLOR { return 1; }", ""},
    };
    for (const auto& c : kRows)
        EXPECT_EQ(CompileText(c.text, "ps_2_0").messages, c.messages) << c.text;
}

TEST(HlErrors, WhatIsTooDeepOrTooLargeIsTold)
{
    const auto many = [](int count, std::string_view text) {
        std::string all;
        for (int i = 0; i < count; ++i)
            all += text;
        return all;
    };
    const auto inMain = [](const std::string& body) {
        return "float4 c; float4 main() : COLOR { float x = c.x; " + body + " return x; }";
    };
    std::string calls = "float f0(float a) { return a; }";
    for (int i = 1; i < 700; ++i)
        calls += "float f" + std::to_string(i) + "(float a) { return f" + std::to_string(i - 1) +
                 "(a); }";
    const struct {
        std::string text;
        const char* message;
    } kRows[] = {
        {inMain("x = " + many(100, "(") + "x" + many(100, ")") + ";"),
         "the brackets are nested too deep"},
        {inMain("x = " + many(100, "- ") + "x;"), "the signs are nested too deep"},
        {inMain("x = " + many(100, "(float)") + "x;"), "the casts are nested too deep"},
        {inMain("float y[2] = " + many(100, "{") + "1, 2" + many(100, "}") + ";"),
         "the lists are nested too deep"},
        {inMain("x = x" + many(300, " + x") + ";"), "the expression is nested too deep"},
        {inMain(many(100, "{") + many(100, "}")), "the statements are nested too deep"},
        {inMain("float y; " + many(6, "while (x < 3) { ") + "x += 1;" + many(6, "}")),
         "the loops are nested too deep"},
        {calls + inMain("x = f699(x);"), "the calls are nested too deep"},
        {inMain("float y[65537];"), "the array is too large"},
        {inMain(many(100000, "x + x; ")), "the functions are too long"},
        {"float f(float a) { return a; } float f(int2 a) { return 1; }"
         "float f(int a, float b = 1) { return 1; }" +
             inMain("bool y = true; x = f(y);"),
         "several functions 'f' fit equally"},
    };
    for (const auto& c : kRows)
        EXPECT_THAT(CompileText(c.text, "ps_3_0").messages, HasSubstr(c.message))
            << c.text.substr(0, 200);
}

TEST(HlErrors, ACallHasALimitOfValues)
{
    std::string text = "float4 main() : COLOR {\n  return f(0";
    for (int i = 0; i < 300; ++i)
        text += ",1";
    EXPECT_TRUE(CompileText(text + "); }", "ps_2_0")
                    .messages.starts_with("2,524 X4000: there are too many values\n"));
}

TEST(HlErrors, CodeThatDoesNotFitIsMadeForTheNextVersion)
{
    const auto text = [](int steps) {
        return "float4 a;\nfloat4 main(float4 t : TEXCOORD) : COLOR { float4 r = t; for (int i = 0; i < " +
               std::to_string(steps) + "; i++) r = r * r + a; return r; }";
    };
    static const struct {
        int steps;
        const char* asked;
        const char* made; ///< "" for none
    } kRows[] = {{60, "ps_2_0", "ps_2_0"},
                 {70, "ps_2_0", "ps_2_a"},
                 {600, "ps_2_0", "ps_3_0"},
                 {60, "ps_1_1", "ps_1_1"},
                 {600, "ps_2_b", "ps_3_0"}};
    for (const auto& c : kRows) {
        const CompiledText made = CompileText(text(c.steps), c.asked);
        ASSERT_TRUE(made.shader->IsMade()) << made.messages;
        EXPECT_EQ(made.shader->profile->name, c.made) << c.steps;
        EXPECT_EQ(made.messages.empty(), std::string(c.asked) == c.made) << made.messages;
    }
    const std::string vertex =
        "float4 main(float4 t : POSITION) : POSITION { float4 r = t; for (int i = 0; i < 200; i++)"
        " r = r * r + t.wzyx; return r; }";
    EXPECT_EQ(CompileText(vertex, "vs_1_1").shader->profile->name, "vs_2_0");
    EXPECT_EQ(CompileText(vertex, "vs_1_1").messages,
              "warning 2,16 X4000: the shader is too large for vs_1_1 and becomes vs_2_0\n");
}

} // namespace headless::hl
