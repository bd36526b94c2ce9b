// Effects whose shaders are compiled from text: constants, textures, versions, messages.

#include "platform/EffectCompiler.h"
#include "platform/EffectFault.h"
#include "tests/platform/headless_effect/EffectTest.h"
#include "tests/support/ScratchDirectory.h"

#include <array>

#include <gmock/gmock.h>

namespace {

using Four = std::array<float, 4>;

class LanguageEffect : public EffectTest {
protected:
    Four VertexConstant(UINT place)
    {
        Four value = {};
        device->GetVertexShaderConstantF(place, value.data(), 1);
        return value;
    }
    /// The same effect by way of its compiled form.
    Com<ID3DXEffect> Compiled(const std::string& text)
    {
        const ScratchDirectory folder;
        folder.Write("a.fx", text);
        std::string bytes;
        EXPECT_EQ(CompileEffect("a.fx", bytes), "");
        Com<ID3DXEffect> effect;
        EXPECT_EQ(D3DXCreateEffect(device.Get(), bytes.data(), static_cast<UINT>(bytes.size()),
                                   nullptr, nullptr, 0, nullptr, effect.Out(), nullptr),
                  D3D_OK);
        return effect;
    }
    DWORD VersionOf(ID3DXEffect* effect, bool isVertex)
    {
        D3DXPASS_DESC desc = {};
        EXPECT_EQ(effect->GetPassDesc(effect->GetPass(effect->GetTechnique(0), 0), &desc), D3D_OK);
        const DWORD* const code = isVertex ? desc.pVertexShaderFunction : desc.pPixelShaderFunction;
        return code ? *code : 0;
    }
};

/// Takes four registers for the matrix in the order of the text, then one for the colour.
std::string MatrixText(const std::string& order)
{
    return order + " float4x4 m : register(c0); float4 colour : register(c4);\n"
                   "float4 v(float4 p : POSITION) : POSITION { return mul(p, m) * colour; }\n"
                   "technique t { pass { VertexShader = compile vs_1_1 v(); } }";
}

} // namespace

TEST_F(LanguageEffect, ParametersGoToTheRegistersOfTheirTable)
{
    for (const char* order : {"", "column_major", "row_major"})
        for (const bool isCompiled : {false, true}) {
            const std::string text = MatrixText(order);
            const Com<ID3DXEffect> effect = isCompiled ? Compiled(text) : Make(text);
            D3DXMATRIX matrix;
            for (int i = 0; i < 16; ++i)
                (&matrix._11)[i] = static_cast<float>(i + 1);
            const D3DXVECTOR4 colour = {0.25f, 0.5f, 0.75f, 1.0f};
            ASSERT_EQ(effect->SetMatrix("m", &matrix), D3D_OK);
            ASSERT_EQ(effect->SetVector("colour", &colour), D3D_OK);
            ASSERT_EQ(effect->ValidateTechnique("t"), D3D_OK);
            BeginFirstPass(effect.Get());
            const bool isRows = order[0] == 'r';
            EXPECT_EQ(VertexConstant(0), (isRows ? Four{1, 2, 3, 4} : Four{1, 5, 9, 13}))
                << order << isCompiled;
            EXPECT_EQ(VertexConstant(3), (isRows ? Four{13, 14, 15, 16} : Four{4, 8, 12, 16}))
                << order;
            EXPECT_EQ(VertexConstant(4), (Four{0.25f, 0.5f, 0.75f, 1.0f})) << order;
            EndPassAndEffect(effect.Get());
        }
}

TEST_F(LanguageEffect, APragmaPacksMatricesInRows)
{
    const Com<ID3DXEffect> effect = Make("#pragma pack_matrix(row_major)\n" + MatrixText(""));
    D3DXMATRIX matrix;
    for (int i = 0; i < 16; ++i)
        (&matrix._11)[i] = 0.0f;
    matrix._12 = 7.0f;
    ASSERT_EQ(effect->SetMatrix("m", &matrix), D3D_OK);
    BeginFirstPass(effect.Get());
    EXPECT_EQ(VertexConstant(0), (Four{0, 7, 0, 0}));
    EndPassAndEffect(effect.Get());
}

TEST_F(LanguageEffect, ASamplerBringsItsTextureAndStates)
{
    const std::string text =
        "texture wall; sampler2D first = sampler_state { Texture = <wall>; AddressU = CLAMP; };\n"
        "sampler second : register(s3) = sampler_state { Texture = <wall>; AddressU = MIRROR; };\n"
        "float4 p(float2 t : TEXCOORD0) : COLOR { return tex2D(first, t) + tex2D(second, t); }\n"
        "technique t { pass { PixelShader = compile ps_2_0 p(); } }";
    for (const bool isCompiled : {false, true}) {
        const Com<ID3DXEffect> effect = isCompiled ? Compiled(text) : Make(text);
        Com<IDirect3DTexture9> texture;
        ASSERT_EQ(device->CreateTexture(4, 4, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED, texture.Out(),
                                        nullptr),
                  D3D_OK);
        ASSERT_EQ(effect->SetTexture("wall", texture.Get()), D3D_OK);
        BeginFirstPass(effect.Get());
        EXPECT_EQ(BoundTexture(0), texture.Get()) << isCompiled;
        EXPECT_EQ(BoundTexture(3), texture.Get()) << isCompiled;
        EXPECT_EQ(Sampler(0, D3DSAMP_ADDRESSU), static_cast<DWORD>(D3DTADDRESS_CLAMP))
            << isCompiled;
        EXPECT_EQ(Sampler(3, D3DSAMP_ADDRESSU), static_cast<DWORD>(D3DTADDRESS_MIRROR))
            << isCompiled;
        EndPassAndEffect(effect.Get());
    }
}

TEST_F(LanguageEffect, ShadersOfAnArrayAreChosenByAnIndex)
{
    const Com<ID3DXEffect> effect = Make(
        "int i = 1; float4 a : register(c2); float4 p(uniform float x) : COLOR { return a * x; }\n"
        "pixelshader list[2] = { compile ps_2_0 p(1), compile ps_2_a p(2) };\n"
        "technique t { pass { PixelShader = <list[i]>; } }");
    EXPECT_EQ(effect->ValidateTechnique("t"), D3D_OK);
    const D3DXVECTOR4 value = {1, 2, 3, 4};
    ASSERT_EQ(effect->SetVector("a", &value), D3D_OK);
    BeginFirstPass(effect.Get());
    Com<IDirect3DPixelShader9> shader;
    ASSERT_EQ(device->GetPixelShader(shader.Out()), D3D_OK);
    EXPECT_TRUE(static_cast<bool>(shader));
    EndPassAndEffect(effect.Get());
}

TEST_F(LanguageEffect, APartnerFollowsToVersion3)
{
    const std::string body =
        "float4 a; float4 v(float4 p : POSITION) : POSITION { return p * a; }\n"
        "float4 p(float4 t : TEXCOORD) : COLOR { float4 r = t;"
        " for (int i = 0; i < ROUNDS; i++) r = r * r + a; return r; }\n"
        "technique t { pass { VertexShader = compile vs_1_1 v();"
        " PixelShader = compile ps_2_0 p(); } }";
    const Com<ID3DXEffect> small = Make("#define ROUNDS 9\n" + body);
    EXPECT_EQ(VersionOf(small.Get(), true), static_cast<DWORD>(D3DVS_VERSION(1, 1)));
    const Com<ID3DXEffect> large = Make("#define ROUNDS 600\n" + body);
    EXPECT_EQ(VersionOf(large.Get(), true), static_cast<DWORD>(D3DVS_VERSION(3, 0)));
    EXPECT_EQ(VersionOf(large.Get(), false), static_cast<DWORD>(D3DPS_VERSION(3, 0)));
    EXPECT_EQ(large->ValidateTechnique("t"), D3D_OK);
    EXPECT_THAT(
        EffectWarnings(*large.Get(), "t"),
        testing::ElementsAre(
            "memory(4,86): warning X4000: the shader is too large for ps_2_0 and becomes ps_3_0"));
}

TEST_F(LanguageEffect, AWarningOfAFunctionThatShadersShareIsToldOnce)
{
    const Com<ID3DXEffect> effect = Make(
        "float f(float a, float b) { return a; }\n"
        "float4 v(float4 p : POSITION) : POSITION { return p * f(1, 2); }\n"
        "float4 p(uniform float x) : COLOR { return f(x, 3); }\n"
        "technique t { pass { VertexShader = compile vs_1_1 v(); PixelShader = compile ps_2_0 p(1); }"
        " pass { VertexShader = compile vs_1_1 v(); PixelShader = compile ps_2_0 p(2); } }");
    EXPECT_THAT(EffectWarnings(*effect.Get(), "t"),
                testing::ElementsAre("memory(1,24): warning X3004: 'b' is never used"));
}

TEST_F(LanguageEffect, AShaderBeyondTheLimitsIsTheFaultOfItsTechnique)
{
    const Com<ID3DXEffect> effect =
        Make("float4 p(float4 t : TEXCOORD) : COLOR {\n"
             "  for (int i = 0; i < 2000; i++) t += t * t;\n  return t;\n}\n"
             "technique t { pass { PixelShader = compile ps_2_0 p(); } }");
    EXPECT_EQ(effect->ValidateTechnique("t"), D3DXERR_INVALIDDATA);
    EXPECT_THAT(EffectFault(*effect.Get(), "t"), testing::StartsWith("memory(2,3): error X4000: "));
}
