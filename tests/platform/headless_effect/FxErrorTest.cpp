#include "tests/platform/headless_effect/EffectTest.h"
#include "tests/support/ScratchDirectory.h"

// Invalid texts and the places of their errors. The columns are counted by hand, from 1: each is
// that of the word that the error is about.

namespace {

using FxErrorTest = EffectTest;

struct BadText {
    const char* what;
    const char* text;
    const char* place; ///< what the error begins with
};

std::string Repeat(const char* text, int count)
{
    std::string result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

/// A text in a technique's only pass, whose states begin at column 27 of line 1.
std::string InPass(const std::string& states)
{
    return "technique t { pass p {    " + states + " } }";
}

} // namespace

TEST_F(FxErrorTest, APreprocessorErrorNamesItsPlace)
{
    static const BadText cases[] = {
        {"unknown directive", "\n  #nothing x", "memory(2,4): error X1002: "},
        {"a name is missing", "#define 5 x", "memory(1,9): error X1005: "},
        {"no name at all", "#define", "memory(1,2): error X1005: "},
        {"macro parameters", "#define f(a,,b) a", "memory(1,10): error X1005: "},
        {"a parameter twice", "#define f(a,a) a", "memory(1,13): error X1005: "},
        {"undef of nothing", "#undef 3", "memory(1,2): error X1002: "},
        {"too few arguments", "#define f(a,b) a\nfloat x = f(1);", "memory(2,11): error X1006: "},
        {"a call left open", "#define f(a) a\nfloat x = f(1;", "memory(2,11): error X1006: "},
        {"no word to paste", "#define f(a) a ## +\nfloat x = f(1);", "memory(2,13): error X1006: "},
        {"condition left open", "float a;\n#if 1\nfloat b;\n", "memory(2,1): error X1003: "},
        {"else without if", "#else", "memory(1,1): error X1003: "},
        {"endif without if", "float a;\n #endif", "memory(2,2): error X1003: "},
        {"a second else", "#if 1\n#else\n#else\n#endif", "memory(3,1): error X1003: "},
        {"elif behind else", "#if 1\n#else\n#elif 1\n#endif", "memory(3,1): error X1003: "},
        {"ifdef without name", "#ifdef\n#endif", "memory(1,2): error X1002: "},
        {"empty condition", "#if\n#endif", "memory(1,2): error X1004: "},
        {"condition divides by 0", "#if 1 / 0\n#endif", "memory(1,2): error X1004: "},
        {"condition with a float", "#if 1.5\n#endif", "memory(1,5): error X1004: "},
        {"condition left over", "#if 1 2\n#endif", "memory(1,7): error X1004: "},
        {"condition bracket", "#if (1\n#endif", "memory(1,2): error X1004: "},
        {"defined of nothing", "#if defined(\n#endif", "memory(1,5): error X1004: "},
        {"error directive", "#ifndef NEVER\n#error no good  at all\n#endif",
         "memory(2,1): error X1007: no good at all"},
        {"no includes in memory", "\n#include \"a.fxh\"", "memory(2,10): error X1001: "},
        {"include of nothing", "#include a", "memory(1,10): error X1002: "},
        {"line without number", "#line x", "memory(1,2): error X1002: "},
        {"comment left open", "float a;\nfloat /* b;", "memory(2,7): error X1008: "},
    };
    for (const BadText& c : cases)
        EXPECT_EQ(ErrorOf(c.text).substr(0, std::string(c.place).size()), c.place)
            << c.what << ": " << ErrorOf(c.text);
}

TEST_F(FxErrorTest, ADeclarationErrorNamesItsPlace)
{
    static const BadText cases[] = {
        {"unknown type", "colour a;", "memory(1,1): error X3003: "},
        {"no name", "float ;", "memory(1,7): error X3000: "},
        {"no semicolon", "float a\nfloat b;", "memory(2,1): error X3000: "},
        {"text ends", "float a", "memory(1,7): error X3000: "},
        {"an unknown byte", "float a; $", "memory(1,10): error X3000: "},
        {"void parameter", "void a;", "memory(1,6): error X3003: "},
        {"twice", "float a;\nint a;", "memory(2,5): error X3002: "},
        {"array of none", "float a[0];", "memory(1,9): error X3006: "},
        {"array below none", "float a[-1];", "memory(1,9): error X3006: "},
        {"array of arrays of none", "float a[2][x];", "memory(1,12): error X3001: "},
        {"too many values", "float2 a = {1, 2, 3};", "memory(1,19): error X3005: "},
        {"too few values", "float2 a = {1};", "memory(1,12): error X3005: "},
        {"array without braces", "float a[2] = 1;", "memory(1,14): error X3005: "},
        {"vector too short", "float4 a = float3(1,2,3);", "memory(1,12): error X3004: "},
        {"unknown word", "float a = b;", "memory(1,11): error X3001: "},
        {"unknown function", "float a = noise(1);", "memory(1,11): error X3001: "},
        {"arguments do not fit", "float3 a = cross(1, 2);", "memory(1,12): error X3004: "},
        {"operands do not fit", "float2 a = float2(1,2) + float3(1,2,3);",
         "memory(1,24): error X3004: "},
        {"bits of floats", "int a = 1.0 | 2;", "memory(1,13): error X3004: "},
        {"constructor too short", "float4 a = float4(1, 2);", "memory(1,12): error X3004: "},
        {"no such component", "float a = float2(1,2).z;", "memory(1,23): error X3007: "},
        {"mixed components", "float2 a = float2(1,2).xg;", "memory(1,24): error X3007: "},
        {"no such cell", "float a = float2x2(1,2,3,4)._m20;", "memory(1,29): error X3007: "},
        {"index too high", "float a = float2(1,2)[2];", "memory(1,22): error X3006: "},
        {"element too high", "float a[2]; float b = a[2];", "memory(1,24): error X3006: "},
        {"array as a number", "float a[2]; float b = a;", "memory(1,23): error X3004: "},
        {"texture as a number", "texture t; float b = t;", "memory(1,22): error X3004: "},
        {"not a number", "float a = 1.2.3;", "memory(1,11): error X3009: "},
        {"whole number too large", "int a = 4294967296;", "memory(1,9): error X3009: "},
        {"string without quotes", "string a = b;", "memory(1,12): error X3000: "},
        {"string left open", "string a = \"b;", "memory(1,12): error X3000: "},
        {"texture with a value", "texture a = \"b\";", "memory(1,13): error X3000: "},
        {"unknown sampler state", "sampler s = sampler_state {\n Colour = 1; };",
         "memory(2,2): error X3008: "},
        {"render state in sampler", "sampler s = sampler_state { ZEnable = 1; };",
         "memory(1,29): error X3008: "},
        {"sampler without states", "sampler s = 3;", "memory(1,13): error X3000: "},
        {"annotation without value", "float a < string b; >;", "memory(1,19): error X3000: "},
        {"annotation of a texture", "float a < texture b = NULL; >;",
         "memory(1,19): error X3003: "},
        {"annotation twice", "float a < int b = 1; int b = 2; >;", "memory(1,26): error X3002: "},
        {"function left open", "float f() { if (1) { }", "memory(1,11): error X3000: "},
        {"member twice", "struct s { float a; float a; };", "memory(1,27): error X3002: "},
        {"struct in a struct", "struct s { struct i { int a;", "memory(1,21): error X3000: "},
        {"type in a struct", "struct s { struct i { int a; } b; } x; j y;",
         "memory(1,40): error X3003: "},
        {"parameter of no type twice", "stateblock a; float a;", "memory(1,21): error X3002: "},
        {"unknown struct", "struct s a;", "memory(1,8): error X3003: "},
        {"member of a template", "vector<string, 3> a;", "memory(1,8): error X3003: "},
        {"extent of a template", "vector<float, 5> a;", "memory(1,15): error X3006: "},
    };
    for (const BadText& c : cases)
        EXPECT_EQ(ErrorOf(c.text).substr(0, std::string(c.place).size()), c.place)
            << c.what << ": " << ErrorOf(c.text);
}

TEST_F(FxErrorTest, APassErrorNamesItsPlace)
{
    static const BadText cases[] = {
        {"unknown state", "Colour = 1;", "memory(1,27): error X3008: "},
        {"no value", "ZEnable = ;", "memory(1,37): error X3000: "},
        {"no semicolon", "ZEnable = 1 ", "memory(1,40): error X3000: "},
        {"unknown word of a state", "CullMode = SIDEWAYS;", "memory(1,38): error X3001: "},
        {"word of another state", "CullMode = SRCALPHA;", "memory(1,38): error X3001: "},
        {"stage too high", "ColorOp[8] = ADD;", "memory(1,35): error X3006: "},
        {"place below 0", "ColorOp[-1] = ADD;", "memory(1,35): error X3006: "},
        {"sampler too high", "MinFilter[16] = POINT;", "memory(1,37): error X3006: "},
        {"index of a single state", "ZEnable[1] = 1;", "memory(1,35): error X3006: "},
        {"vector for a number", "ZEnable = float2(1, 0);", "memory(1,37): error X3004: "},
        {"number for a matrix", "ViewTransform = 1;", "memory(1,43): error X3004: "},
        {"vector too short", "MaterialDiffuse = float3(1, 1, 1);", "memory(1,45): error X3004: "},
        {"colour too short", "Ambient = float2(1, 1);", "memory(1,37): error X3004: "},
        {"list too short", "MaterialDiffuse = {1, 2, 3};", "memory(1,45): error X3005: "},
        {"list too long", "MaterialDiffuse = {1, 2, 3, 4, 5};", "memory(1,58): error X3005: "},
        {"list of none", "MaterialPower = {};", "memory(1,43): error X3005: "},
        {"list for one number", "ZEnable = {1, 0};", "memory(1,41): error X3005: "},
        {"list of a colour", "Ambient = {1, 1, 1};", "memory(1,37): error X3005: "},
        {"list left open", "MaterialPower = {1;", "memory(1,45): error X3000: "},
        {"list in brackets", "MaterialDiffuse = ({1, 2, 3, 4});", "memory(1,46): error X3000: "},
        {"unknown texture", "Texture[0] = <t>;", "memory(1,41): error X3001: "},
        {"angle left open", "ZEnable = <1;", "memory(1,39): error X3000: "},
        {"assembler left open", "VertexShader = asm { { { vs_1_1", "memory(1,46): error X3000: "},
        {"assembler without a block", "VertexShader = asm vs_1_1;", "memory(1,46): error X3000: "},
        {"nothing behind a shader", "VertexShader = compile vs_9_9 f() }",
         "memory(1,61): error X3000: "},
        {"state that nearly is one", "StateBlocks = 1;", "memory(1,27): error X3008: "},
        {"no shader", "PixelShader = 5;", "memory(1,41): error X3000: "},
    };
    for (const BadText& c : cases)
        EXPECT_EQ(ErrorOf(InPass(c.text)).substr(0, std::string(c.place).size()), c.place)
            << c.what << ": " << ErrorOf(InPass(c.text));
}

TEST_F(FxErrorTest, ATechniqueErrorNamesItsPlace)
{
    static const BadText cases[] = {
        {"no brace", "technique t", "memory(1,11): error X3000: "},
        {"not a pass", "technique t {\n  float a; }", "memory(2,3): error X3000: "},
        {"technique left open", "technique t { pass p { }", "memory(1,24): error X3000: "},
        {"pass left open", "technique t { pass p { ", "memory(1,22): error X3000: "},
        {"texture of a wrong kind", "float t;\ntechnique { pass { Texture[0] = <t>; } }",
         "memory(2,34): error X3004: "},
        {"array of textures", "texture t[2];\ntechnique { pass { Texture[0] = <t>; } }",
         "memory(2,34): error X3004: "},
        {"sampler of a wrong kind", "texture t;\ntechnique { pass { Sampler[0] = <t>; } }",
         "memory(2,34): error X3004: "},
    };
    for (const BadText& c : cases)
        EXPECT_EQ(ErrorOf(c.text).substr(0, std::string(c.place).size()), c.place)
            << c.what << ": " << ErrorOf(c.text);
}

TEST_F(FxErrorTest, LimitsHoldWithoutDeepRecursionOrMuchMemory)
{
    const std::string deep = Repeat("(", 100000);
    std::string doubling = "#define m0(x) x x\n";
    for (int i = 1; i < 30; ++i)
        doubling += "#define m" + std::to_string(i) + "(x) m" + std::to_string(i - 1) + "(x) m" +
                    std::to_string(i - 1) + "(x)\n";
    std::string pasting = "#define c(a,b) d(a,b)\n#define d(a,b) a##b\n#define p0 xxxxxxxx\n";
    for (int i = 1; i < 31; ++i)
        pasting += "#define p" + std::to_string(i) + " c(p" + std::to_string(i - 1) + ",p" +
                   std::to_string(i - 1) + ")\n";
    std::string structs = "struct s0 { float a; };\n";
    for (int i = 1; i < 9; ++i)
        structs += "struct s" + std::to_string(i) + " { s" + std::to_string(i - 1) + " a; };\n";

    const struct {
        const char* what;
        std::string text;
        const char* error;
    } cases[] = {
        {"brackets", "float a = " + deep + "1;", "error X4000: an expression"},
        {"signs", "float a = " + Repeat("- ", 100000) + "1;", "error X4000: an expression"},
        {"conditions in a value", "float a = " + Repeat("1 ? 1 : ", 100000) + "1;",
         "error X4000: an expression"},
        {"indices", "float a[2]; float b = " + Repeat("a[", 100000) + "0;",
         "error X4000: an expression"},
        {"brackets of a condition", "#if " + deep + "1\n#endif", "error X4000: a condition"},
        {"signs of a condition", "#if " + Repeat("!", 100000) + "1\n#endif",
         "error X4000: a condition"},
        {"conditions in one another", Repeat("#if 1\n", 65), "error X4000: conditions"},
        {"calls in calls",
         "#define f(x) x\nfloat a = " + Repeat("f(", 1000) + "1" + Repeat(")", 1000) + ";",
         "error X4000: macro calls"},
        {"macros that double", doubling + "m29(1)", "error X4000: macros yield"},
        {"words that double", pasting + "p30", "error X4000: macros yield"},
        {"macro parameters",
         "#define f(" +
             [] {
                 std::string list = "a";
                 for (int i = 0; i < 64; ++i)
                     list += ",a" + std::to_string(i);
                 return list;
             }() +
             ") 1",
         "error X4000: a macro"},
        {"words", Repeat(";", 1 << 20) + ";", "error X4000: the effect's text"},
        {"bytes", Repeat("        ", (1 << 19) + 1), "error X4000: the effect's text"},
        {"elements", "float4x4 a[32768]; float4x4 b[32768]; float4x4 c[32768];",
         "error X4000: the effect has too many"},
        {"cells of an array", "float4x4 a[32769];", "error X3006: "},
        {"structs in structs", structs, "error X4000: the struct"},
        {"members in members",
         "struct a { float x[30000]; }; struct b { a x[30000]; }; struct c { b x[30000]; };",
         "error X4000: the struct"},
        {"braces", "float a = " + Repeat("{", 100000), "error X3000: "},
        {"blocks of a function", "float f() " + Repeat("{", 100000), "error X3000: "},
    };
    for (const auto& c : cases)
        EXPECT_NE(ErrorOf(c.text).find(c.error), std::string::npos)
            << c.what << ": " << ErrorOf(c.text);
}

TEST_F(FxErrorTest, EveryCutTextIsAnEffectOrAStatedError)
{
    const std::string text =
        "#define A(x) x\n#if A(1)\nfloat4 a : COLOR < string n = \"v\"; > = {1, 2, A(3), 4};\n"
        "#endif\ntexture t; sampler s = sampler_state { Texture = <t>; MinFilter = LINEAR; };\n"
        "float4 f(float4 x : COLOR) : COLOR { return x; }\ntechnique q { pass p < int k = 2; > { CullMode = NONE;"
        " Sampler[0] = <s>; PixelShader = compile ps_2_0 f(); Ambient = a * 0.5 + a.wzyx; } }";
    EXPECT_EQ(ErrorOf(text), "");
    for (size_t length = 0; length < text.size(); ++length) {
        const std::string error = ErrorOf(text.substr(0, length));
        if (!error.empty()) {
            EXPECT_EQ(error.compare(0, 7, "memory("), 0) << error;
            EXPECT_NE(error.find("): error X"), std::string::npos) << error;
        }
    }
}

TEST_F(FxErrorTest, AnErrorNamesTheFileThatHoldsIt)
{
    const ScratchDirectory folder;
    folder.Write("fx/main.fx", "float a;\n#include \"inc/colours.fxh\"\n");
    folder.Write("fx/inc/colours.fxh", "\n\n  colour b;\n");
    EXPECT_EQ(ErrorOfFile("fx/main.fx"),
              "fx/inc/colours.fxh(3,3): error X3003: there is no type 'colour'\n");
}

TEST_F(FxErrorTest, ALineDirectiveMovesThePlaces)
{
    EXPECT_EQ(ErrorOf("#line 100 \"other.fx\"\n\n bad a;").substr(0, 17), "other.fx(101,2): ");
}

// A file with a zero byte is not a text; a file that it includes may contain one.
TEST_F(FxErrorTest, NoByteOfAFileEndsTheTextEarly)
{
    const ScratchDirectory folder;
    folder.Write("main.fx", "#include \"name.fxh\"\n");
    folder.Write("name.fxh", std::string("#line 5 \"a\0b.fx\"\nbad x;", 23));
    EXPECT_EQ(ErrorOfFile("main.fx"), "a?b.fx(5,1): error X3003: there is no type 'bad'\n");
    folder.Write("name.fxh", std::string("float \0;", 8));
    EXPECT_EQ(ErrorOfFile("main.fx"), "name.fxh(1,7): error X3000: a name is expected, not '?'\n");
}

TEST_F(FxErrorTest, AContinuedLineKeepsThePlacesOfTheFile)
{
    // The backslash is on line 1; "bad" begins at column 3 of line 2.
    EXPECT_EQ(ErrorOf("float a; \\\n  bad b;").substr(0, 13), "memory(2,3): ");
    EXPECT_EQ(ErrorOf("\\\nbad b;").substr(0, 13), "memory(2,1): ");
}

TEST_F(FxErrorTest, AMissingFileHasNoText)
{
    Com<ID3DXEffect> effect;
    Com<ID3DXBuffer> errors;
    EXPECT_EQ(D3DXCreateEffectFromFileA(device.Get(), "no such.fx", nullptr, nullptr, 0, nullptr,
                                        effect.Out(), errors.Out()),
              D3DXERR_INVALIDDATA);
    EXPECT_FALSE(errors);
    EXPECT_FALSE(effect);
}

TEST_F(FxErrorTest, NullPointersAreRefused)
{
    Com<ID3DXEffect> effect;
    EXPECT_EQ(D3DXCreateEffect(nullptr, "", 0, nullptr, nullptr, 0, nullptr, effect.Out(), nullptr),
              D3DERR_INVALIDCALL);
    EXPECT_EQ(D3DXCreateEffect(device.Get(), nullptr, 0, nullptr, nullptr, 0, nullptr, effect.Out(),
                               nullptr),
              D3DERR_INVALIDCALL);
    EXPECT_EQ(D3DXCreateEffect(device.Get(), "", 0, nullptr, nullptr, 0, nullptr, nullptr, nullptr),
              D3DERR_INVALIDCALL);
    EXPECT_EQ(D3DXCreateEffectFromFileA(device.Get(), nullptr, nullptr, nullptr, 0, nullptr,
                                        effect.Out(), nullptr),
              D3DERR_INVALIDCALL);
    // Without `errorsOut` an error is only a result code.
    EXPECT_EQ(D3DXCreateEffect(device.Get(), "bad", 3, nullptr, nullptr, 0, nullptr, effect.Out(),
                               nullptr),
              D3DXERR_INVALIDDATA);
}
