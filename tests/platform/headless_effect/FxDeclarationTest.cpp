// Arrays of several dimensions and of unstated length, structs in structs, samplers in passes.

#include "tests/platform/headless_effect/EffectTest.h"

#include <gmock/gmock.h>

namespace {

class FxDeclaration : public EffectTest {
protected:
    /// What the expression gives behind the declarations, from the text and from its compiled form.
    void ExpectFogStart(const std::string& declarations, const std::string& expression,
                        float wanted)
    {
        const std::string text =
            declarations + " technique t { pass { FogStart = (" + expression + "); } }";
        const Com<ID3DXEffect> drawn = Make(text), compiled = MakeCompiled(text);
        ASSERT_TRUE(drawn && compiled) << text;
        EXPECT_FLOAT_EQ(FogStartOf(drawn.Get()), wanted) << text;
        EXPECT_FLOAT_EQ(FogStartOf(compiled.Get()), wanted) << text;
    }
};

UINT ElementsOf(ID3DXEffect* effect, const char* name)
{
    D3DXPARAMETER_DESC desc = {};
    EXPECT_EQ(effect->GetParameterDesc(effect->GetParameterByName(nullptr, name), &desc), D3D_OK);
    return desc.Elements;
}

} // namespace

TEST_F(FxDeclaration, ArraysHaveTheElementsOfAllDimensions)
{
    static const struct {
        const char* declaration; ///< of x
        UINT elements;
    } cases[] = {
        {"float x[] = { 1, 2, 3 };", 3},
        {"float x[] = { 1, 2, 3, };", 3},
        {"float3 x[] = { { 1, 2, 3 }, { 4, 5, 6 } };", 2},
        {"float3 x[] = { float3(1, 2, 3), float3(4, 5, 6) };", 2},
        {"float x[] : NAME < string a = \"b\"; > = { 1, 2 };", 2},
        {"float x[2][3];", 6},
        {"float x[][2] = { { 1, 2 }, { 3, 4 }, { 5, 6 } };", 6},
        {"struct s { float a; float2 b; }; s x[] = { 1, 2, 3, 4, 5, 6 };", 2},
        {"string x[] = { \"a\", \"b\" };", 2},
        {"texture t; sampler x[] = { sampler_state { Texture = <t>; }, sampler_state { } };", 2},
        {"pixelshader x[] = { asm { ps_2_0\n def c0, 1, 1, 1, 1\n mov oC0, c0\n }, NULL };", 2},
        {"typedef float list[3]; list x;", 3},
        {"typedef float list[3]; list x[2];", 6},
        {"typedef float list[2]; typedef list two[4]; two x;", 8},
    };
    for (const auto& c : cases) {
        const Com<ID3DXEffect> drawn = Make(c.declaration), compiled = MakeCompiled(c.declaration);
        ASSERT_TRUE(drawn && compiled) << c.declaration;
        EXPECT_EQ(ElementsOf(drawn.Get(), "x"), c.elements) << c.declaration;
        EXPECT_EQ(ElementsOf(compiled.Get(), "x"), c.elements) << c.declaration;
    }
}

TEST_F(FxDeclaration, IndicesSelectByDimension)
{
    const std::string numbers = "float x[2][3] = { {1, 2, 3}, {4, 5, 6} }; int i = 1; int j = 2;";
    ExpectFogStart(numbers, "x[1][0]", 4);
    ExpectFogStart(numbers, "x[i][0]", 4);
    ExpectFogStart(numbers, "x[0][j]", 3);
    ExpectFogStart(numbers, "x[i][j]", 6);
    ExpectFogStart(numbers, "x[0][j + i]", 3); // the nearest in its own row
    ExpectFogStart(numbers, "x[i - j][1]", 2);
    ExpectFogStart("typedef float2 list[2]; list x[2] = { 1, 2, 3, 4, 5, 6, 7, 8 }; int i = 1;",
                   "x[i][0].y", 6);
    ExpectFogStart("struct s { float a[2][2]; }; s x = { 1, 2, 3, 4 }; int i = 1;", "x.a[i][0]", 3);
    ExpectFogStart("float x[] = { 7, 8, 9 }; int i = 2;", "x[i]", 9);
}

TEST_F(FxDeclaration, LengthsAndIndicesThatDoNotFitAreErrors)
{
    static const struct {
        const char* text;
        const char* message;
    } cases[] = {
        {"float x[];",
         "memory(1,7): error X3006: an array without a length needs an initial value"},
        {"float x[] = 1;", "memory(1,13): error X3000: '{' is expected"},
        {"float x[] = { };", "memory(1,13): error X3006: an array cannot have 0 elements"},
        {"float2 x[] = { 1, 2, 3 };",
         "memory(1,14): error X3005: there are 3 values, not a multiple of 2"},
        {"float x[2][];", "memory(1,12): error X3000: a value is expected"},
        {"struct s { float x[]; };", "memory(1,18): error X3006: an array without a length"},
        {"typedef float x[];", "memory(1,15): error X3006: an array without a length"},
        {"float x[300][300];", "memory(1,14): error X3006: an array cannot have 90000 elements"},
        {"float x[2][2]; float y = x[1];", "memory(1,30): error X3006: 'x' needs 2 indices"},
        {"float x[2][2]; float y = x[0][2];",
         "memory(1,30): error X3006: the index 2 is outside of 'x'"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ErrorOf(c.text).substr(0, std::string(c.message).size()), c.message) << c.text;
}

TEST_F(FxDeclaration, StructsAreDeclaredInStructs)
{
    const std::string text = "struct B { struct A { float x; float z; } a; float y; };"
                             "B b = { 1, 2, 3 }; A alone = { 4, 5 };";
    ExpectFogStart(text, "b.a.z * 10 + b.y", 23);
    ExpectFogStart(text, "alone.z", 5);
    ExpectFogStart("struct B { struct { float x[2]; } a[2]; } b = { 1, 2, 3, 4 };", "b.a[1].x[0]",
                   3);
    ExpectFogStart("struct B { struct A { float x; }; A a, c; } b = { 1, 2 };", "b.c.x", 2);
    std::string deep = "float x; ";
    for (int i = 0; i < 9; ++i)
        deep = "struct { " + deep + "} s" + std::to_string(i) + "; ";
    EXPECT_THAT(ErrorOf(deep), testing::HasSubstr("error X4000: the struct"));
    EXPECT_THAT(ErrorOf("struct s { struct s { float a; } b; };"),
                testing::HasSubstr("error X3002: there is a type 's' already"));
}

TEST_F(FxDeclaration, ASamplerInAPassSetsItsStates)
{
    const std::string text =
        "texture t; int mode = 3; technique a { pass { Sampler[2] = "
        "sampler_state { Texture = <t>; MinFilter = LINEAR; AddressU = <mode>; "
        "}; CullMode = NONE; } }";
    for (const Com<ID3DXEffect>& effect : {Make(text), MakeCompiled(text)}) {
        ASSERT_TRUE(effect);
        const Com<IDirect3DTexture9> texture = Texture(1, 1, 1, D3DPOOL_MANAGED);
        ASSERT_EQ(effect->SetTexture("t", texture.Get()), D3D_OK);
        BeginFirstPass(effect.Get());
        EXPECT_EQ(BoundTexture(2), texture.Get());
        EXPECT_EQ(Sampler(2, D3DSAMP_MINFILTER), static_cast<DWORD>(D3DTEXF_LINEAR));
        EXPECT_EQ(Sampler(2, D3DSAMP_ADDRESSU), static_cast<DWORD>(D3DTADDRESS_CLAMP));
        EXPECT_EQ(Render(D3DRS_CULLMODE), static_cast<DWORD>(D3DCULL_NONE));
        EndPassAndEffect(effect.Get());
        EXPECT_EQ(Sampler(2, D3DSAMP_MINFILTER), static_cast<DWORD>(D3DTEXF_POINT));
    }
    EXPECT_THAT(ErrorOf("technique a { pass { Sampler[2] = sampler_state { ZEnable = 1; }; } }"),
                testing::HasSubstr("error X3008"));
}
