// Effect texts in compiled form: they set what the texts set.

#include "platform/EffectCompiler.h"
#include "platform/EffectListing.h"
#include "tests/platform/headless_effect/EffectTest.h"
#include "tests/support/ScratchDirectory.h"

#include <bit>
#include <cmath>

namespace {

class EffectCompiler : public EffectTest {
protected:
    std::string Compile(const std::string& text, std::string& compiledOut)
    {
        folder.Write("a.fx", text);
        return CompileEffect("a.fx", compiledOut);
    }

    const ScratchDirectory folder;
};

constexpr const char* kParameters =
    "float a = 0.75; float b = -2.5; int i = 7; int j = -3; bool t = true;\n"
    "float3 v = { 1, 2, 3 }; float4 w = { 0.5, -1, 0.25, 2 }; float2x2 m = { 1, 2, 3, 4 };\n"
    "float4x4 big = { 1,2,3,4, 5,6,7,8, 9,10,11,12, 13,14,15,16 }; float list[3] = { 4, 5, 6 };\n"
    "struct Lamp { float3 place; float reach; } lamp = { 7, 8, 9, 10 }; static float hidden = 3;\n";

} // namespace

TEST_F(EffectCompiler, ExpressionsKeepTheirValues)
{
    static const char* const kExpressions[] = {
        "a",
        "a + b",
        "a - b",
        "a * b",
        "a / b",
        "-b",
        "a % 0.5",
        "i + j",
        "i * j",
        "i / j",
        "i % j",
        "a < b",
        "a <= b",
        "a > b",
        "a >= b",
        "a == 0.75",
        "a != 0.75",
        "t && (a > 1)",
        "t || (a > 1)",
        "!t",
        "t ? a : b",
        "(a > 1) ? a : b",
        "(int)b",
        "(float)i",
        "(bool)b",
        "v.y",
        "w.zyxw.x",
        "v[i - 6]",
        "v[i]",
        "m[1][0]",
        "big[i - 5].z",
        "list[1]",
        "list[i - 5]",
        "list[i]",
        "lamp.reach",
        "lamp.place.z",
        "hidden + a",
        "abs(b)",
        "acos(a)",
        "asin(a)",
        "atan(b)",
        "atan2(a, b)",
        "ceil(b)",
        "clamp(b, -1, 1)",
        "cos(b)",
        "degrees(a)",
        "exp(a)",
        "exp2(b)",
        "floor(b)",
        "fmod(b, 2)",
        "frac(b)",
        "lerp(a, b, 0.25)",
        "log(a)",
        "log2(a)",
        "log10(a)",
        "max(a, b)",
        "min(a, b)",
        "pow(a, 3)",
        "radians(b)",
        "rsqrt(a)",
        "saturate(b)",
        "saturate(a)",
        "sign(b)",
        "sin(b)",
        "smoothstep(0, 1, a)",
        "sqrt(a)",
        "step(b, a)",
        "tan(a)",
        "all(v)",
        "any(w)",
        "cross(v, w.xyz).y",
        "distance(v, w.xyz)",
        "dot(v, w.xyz)",
        "length(v)",
        "mul(m, m)[1][0]",
        "mul(v.xy, m).y",
        "mul(m, v.xy).x",
        "cosh(a)",
        "sinh(b)",
        "tanh(b)",
        "ldexp(a, 3)",
        "trunc(b)",
        "round(a)",
        "round(b)",
        "round(b - 1)",
        "round(b + 0.25)",
        "isnan(a)",
        "isinf(a / 0.0001)",
        "isfinite(a)",
        "determinant(m)",
        "determinant(big + transpose(big) * big)",
        "determinant((float3x3)big * float3x3(1,2,0,a,1,b,2,0,3))",
        "reflect(v, w.xyz).y",
        "refract(v * 0.1, w.xyz, 0.5).z",
        "refract(v * 0.1, w.xyz, 9).z",
        "faceforward(v, w.xyz, v).x",
        "faceforward(v, w.xyz, -v).x",
        "lit(a, 0.5, 3).z",
        "lit(a, b, 3).z",
        "lit(b, 1, 1).y",
        "D3DCOLORtoUBYTE4(w * 0.25).x",
        "normalize(v).z",
        "transpose(m)[0][1]",
        "float3(a, v.yz).z",
        "(v + a).y",
        "(v * w.xyz).z"};
    for (const char* expression : kExpressions) {
        const std::string text =
            std::string(kParameters) + "technique q { pass { FogStart = (" + expression + "); } }";
        const float wanted = FogStartOf(Make(text).Get());
        const float got = FogStartOf(MakeCompiled(text).Get());
        EXPECT_NEAR(got, wanted, 1e-6f * std::max(1.0f, std::fabs(wanted))) << expression;
    }
}

TEST_F(EffectCompiler, ChangedParametersChangeTheValue)
{
    const Com<ID3DXEffect> effect = MakeCompiled(
        std::string(kParameters) + "technique q { pass { FogStart = lamp.reach * a; } }");
    ASSERT_TRUE(effect);
    ASSERT_EQ(effect->SetFloat("lamp.reach", 8.0f), D3D_OK);
    EXPECT_EQ(FogStartOf(effect.Get()), 6.0f);
}

TEST_F(EffectCompiler, StatesOfAllKinds)
{
    const Com<ID3DXEffect> effect = MakeCompiled(
        "int cull = 3; float4 tint = { 1, 0.5, 0, 1 }; texture map; float4x4 turn;\n"
        "sampler look = sampler_state { Texture = <map>; AddressU = CLAMP; MipMapLodBias = 0.5; };\n"
        "technique q { pass { CullMode = <cull>; AlphaBlendEnable = true; TextureFactor = <tint>;\n"
        "Ambient = float4(0, 1, 0, 0); ColorOp[2] = ADD; Sampler[3] = <look>; FogEnd = 2.5;\n"
        "ViewTransform = <turn>; MaterialDiffuse = float4(0.1, 0.2, 0.3, 0.4); LightType[1] = POINT;\n"
        "LightRange[1] = tint.y; VertexShaderConstantF[4] = <tint>; PixelShader = NULL; } }");
    ASSERT_TRUE(effect);
    D3DXMATRIX turn(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16);
    ASSERT_EQ(effect->SetMatrix("turn", &turn), D3D_OK);
    const Com<IDirect3DTexture9> map = Texture(1, 1, 1, D3DPOOL_MANAGED);
    ASSERT_EQ(effect->SetTexture("map", map.Get()), D3D_OK);
    BeginFirstPass(effect.Get());
    EXPECT_EQ(Render(D3DRS_CULLMODE), static_cast<DWORD>(D3DCULL_CCW));
    EXPECT_EQ(Render(D3DRS_ALPHABLENDENABLE), 1u);
    EXPECT_EQ(Render(D3DRS_TEXTUREFACTOR), 0xFFFF8000u);
    EXPECT_EQ(Render(D3DRS_AMBIENT), 0x0000FF00u);
    EXPECT_EQ(Stage(2, D3DTSS_COLOROP), static_cast<DWORD>(D3DTOP_ADD));
    EXPECT_EQ(Sampler(3, D3DSAMP_ADDRESSU), static_cast<DWORD>(D3DTADDRESS_CLAMP));
    EXPECT_EQ(Sampler(3, D3DSAMP_MIPMAPLODBIAS), std::bit_cast<DWORD>(0.5f));
    EXPECT_EQ(BoundTexture(3), map.Get());
    EXPECT_EQ(Render(D3DRS_FOGEND), std::bit_cast<DWORD>(2.5f));
    EXPECT_EQ(Transform(D3DTS_VIEW)._23, 7.0f);
    D3DMATERIAL9 material = {};
    device->GetMaterial(&material);
    EXPECT_EQ(material.Diffuse.g, 0.2f);
    D3DLIGHT9 light = {};
    ASSERT_EQ(device->GetLight(1, &light), D3D_OK);
    EXPECT_EQ(light.Type, D3DLIGHT_POINT);
    EXPECT_EQ(light.Range, 0.5f);
    float constant[4] = {};
    ASSERT_EQ(device->GetVertexShaderConstantF(4, constant, 1), D3D_OK);
    EXPECT_EQ(constant[1], 0.5f);
    EndPassAndEffect(effect.Get());
    device->SetTexture(3, nullptr);
}

/// A state of the system's D3DX sets one register right.
TEST_F(EffectCompiler, RegistersHaveAStateEach)
{
    std::string bytes, listing;
    ASSERT_EQ(
        Compile("float2x3 m; float f; bool2 b; static const float4x4 one = {1, 2, 3, 4, 5, 6, "
                "7, 8, 9, 10, 11, 12, 13, 14, 15, 16};\n"
                "technique t { pass p { VertexShaderConstantF[4] = <m>; "
                "VertexShaderConstantI[1] = <f>; PixelShaderConstantB[2] = <b>; "
                "PixelShaderConstantF[8] = <one>; } }",
                bytes),
        "");
    ASSERT_EQ(ListEffect("a.fxo", bytes, listing), "");
    const auto computed = [](const char* state, const char* lines) {
        return std::string("        ") + state + " = computed\n        {\n" + lines +
               "        };\n";
    };
    EXPECT_EQ(listing.substr(listing.find("pass p")),
              "pass p\n    {\n" +
                  computed("VertexShaderConstantF[4]", "            mov out0.xyz, m[0].xyz\n"
                                                       "            mov out0.w, 0\n") +
                  computed("VertexShaderConstantF[5]", "            mov out0.xyz, m[1].xyz\n"
                                                       "            mov out0.w, 0\n") +
                  computed("VertexShaderConstantI[1]", "            mov out0.x, f\n"
                                                       "            mov out0.y, 0\n"
                                                       "            mov out0.z, 0\n"
                                                       "            mov out0.w, 0\n") +
                  computed("PixelShaderConstantB[2]", "            mov out0.x, b.x\n") +
                  computed("PixelShaderConstantB[3]", "            mov out0.x, b.y\n") +
                  "        PixelShaderConstantF[8] = {1, 2, 3, 4};\n"
                  "        PixelShaderConstantF[9] = {5, 6, 7, 8};\n"
                  "        PixelShaderConstantF[10] = {9, 10, 11, 12};\n"
                  "        PixelShaderConstantF[11] = {13, 14, 15, 16};\n"
                  "    }\n}\n");
}

TEST_F(EffectCompiler, RegistersHaveTheValuesOfTheText)
{
    const std::string text =
        "float2x3 m = {1, 2, 3, 4, 5, 6}; int i = 7; bool2 b = {false, true};\n"
        "technique t { pass p { VertexShaderConstantF[4] = <m>; VertexShaderConstantF[6] = i * 0.5; "
        "VertexShaderConstantI[1] = <i>; PixelShaderConstantB[2] = <b>; "
        "PixelShaderConstantF[8] = transpose(m); } }";
    const auto constants = [&](ID3DXEffect* effect) {
        std::vector<float> floats(24);
        int wholes[4] = {};
        BOOL truths[2] = {};
        device->SetVertexShaderConstantF(4, std::vector<float>(12, -1.0f).data(), 3);
        device->SetPixelShaderConstantF(8, std::vector<float>(12, -1.0f).data(), 3);
        BeginFirstPass(effect);
        EXPECT_EQ(device->GetVertexShaderConstantF(4, floats.data(), 3), D3D_OK);
        EXPECT_EQ(device->GetPixelShaderConstantF(8, floats.data() + 12, 3), D3D_OK);
        EXPECT_EQ(device->GetVertexShaderConstantI(1, wholes, 1), D3D_OK);
        EXPECT_EQ(device->GetPixelShaderConstantB(2, truths, 2), D3D_OK);
        EndPassAndEffect(effect);
        for (const int whole : wholes)
            floats.push_back(static_cast<float>(whole));
        for (const BOOL truth : truths)
            floats.push_back(static_cast<float>(truth));
        return floats;
    };
    const std::vector<float> wanted = {1, 2, 3, 0, 4, 5, 6, 0, 3.5f, 0, 0, 0, 1, 4, 0,
                                       0, 2, 5, 0, 0, 3, 6, 0, 0,    7, 0, 0, 0, 0, 1};
    EXPECT_EQ(constants(Make(text).Get()), wanted);
    EXPECT_EQ(constants(MakeCompiled(text).Get()), wanted);
}

TEST_F(EffectCompiler, ParametersKeepTheirTypesValuesAndAnnotations)
{
    const Com<ID3DXEffect> effect = MakeCompiled(
        std::string(kParameters) +
        "texture map : Diffuse < string ResourceName = \"sand.png\"; int n = 4; >;\n"
        "string author = \"Ada\"; technique q < int order = 2; > { pass p { } } technique r { }");
    ASSERT_TRUE(effect);
    EXPECT_EQ(FloatOf(effect.Get(), "lamp.reach"), 10.0f);
    EXPECT_EQ(FloatOf(effect.Get(), "list[2]"), 6.0f);
    EXPECT_EQ(IntOf(effect.Get(), "j"), -3);
    EXPECT_EQ(StringOf(effect.Get(), "author"), "Ada");
    EXPECT_EQ(StringOf(effect.Get(), "map@ResourceName"), "sand.png");
    EXPECT_NE(effect->GetParameterBySemantic(nullptr, "DIFFUSE"), nullptr);
    EXPECT_EQ(effect->GetParameterByName(nullptr, "hidden"), nullptr);
    D3DXTECHNIQUE_DESC desc = {};
    ASSERT_EQ(effect->GetTechniqueDesc(effect->GetTechniqueByName("q"), &desc), D3D_OK);
    EXPECT_EQ(desc.Passes, 1u);
    EXPECT_EQ(desc.Annotations, 1u);
}

TEST_F(EffectCompiler, ShadersInPassesParametersAndArrays)
{
    const Com<ID3DXEffect> effect = MakeCompiled(
        "int n = 1;\n"
        "pixelshader one = asm { ps_2_0\n def c0, 1, 1, 1, 1\n mov oC0, c0\n };\n"
        "pixelshader many[2] = { asm { ps_1_1\n def c0, 1, 0, 0, 0\n mov r0, c0\n },\n"
        "asm { ps_1_4\n def c0, 0, 1, 0, 0\n mov r0, c0\n } };\n"
        "technique a { pass { PixelShader = <one>; } }\n"
        "technique b { pass { PixelShader = <many[n]>; } }\n"
        "technique c { pass { VertexShader = asm { vs_1_1\n dcl_position v0\n mov oPos, v0\n }; } }");
    ASSERT_TRUE(effect);
    const auto firstWord = [&](const char* technique) {
        EXPECT_EQ(effect->SetTechnique(technique), D3D_OK);
        BeginFirstPass(effect.Get());
        Com<IDirect3DPixelShader9> shader;
        EXPECT_EQ(device->GetPixelShader(shader.Out()), D3D_OK);
        std::vector<DWORD> words(64);
        UINT bytes = 256;
        if (shader)
            shader->GetFunction(words.data(), &bytes);
        EndPassAndEffect(effect.Get());
        return words[0];
    };
    EXPECT_EQ(firstWord("a"), D3DPS_VERSION(2, 0));
    EXPECT_EQ(firstWord("b"), D3DPS_VERSION(1, 4));
    ASSERT_EQ(effect->SetInt("n", 0), D3D_OK);
    EXPECT_EQ(firstWord("b"), D3DPS_VERSION(1, 1));
    EXPECT_EQ(effect->ValidateTechnique("c"), D3D_OK);
}

TEST_F(EffectCompiler, WhatHasNoCompiledFormIsNamed)
{
    static const struct {
        const char* text;
        const char* reason;
    } kCases[] = {
        {"technique a { pass {\nPixelShader = compile ps_2_0 f(); } }",
         "a.fx(2,30): error X3001: there is no function 'f'"},
        {"int i = 1; technique a { pass { CullMode = (i | 2); } }",
         "a.fx(1,26): CullMode: an operation on bits has an operand that changes"},
        {"float a[100]; int i; technique q { pass { FogStart = a[i]; } }",
         "a.fx(1,36): FogStart: an array of more than 64 elements is read by an index"},
        {"vertexshader s = compile vs_9_9 f(); technique q { }",
         "the parameter 's' has a shader that is not assembled"},
        {"technique a { pass { Colour = 1; } }",
         "a.fx(1,22): error X3008: there is no state 'Colour'"},
    };
    for (const auto& c : kCases) {
        std::string bytes;
        EXPECT_EQ(Compile(c.text, bytes), c.reason);
    }
    std::string bytes;
    ASSERT_EQ(Compile("technique a { }", bytes), "");
    std::string again;
    EXPECT_EQ(Compile(bytes, again), "it is compiled already");
    EXPECT_EQ(CompileEffect("none.fx", again), "it cannot be read, or is larger than any effect");
}
