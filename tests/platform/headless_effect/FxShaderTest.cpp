// Blocks of assembler in effects.

#include "tests/platform/headless_effect/EffectTest.h"

namespace {

class FxShaderTest : public EffectTest {
protected:
    /// The first word of the shader that the device has; 0 for none.
    DWORD Bound(bool isVertex)
    {
        DWORD words[256] = {};
        UINT size = sizeof words;
        Com<IDirect3DVertexShader9> vertex;
        Com<IDirect3DPixelShader9> pixel;
        EXPECT_EQ(device->GetVertexShader(vertex.Out()), D3D_OK);
        EXPECT_EQ(device->GetPixelShader(pixel.Out()), D3D_OK);
        if (isVertex && vertex) {
            EXPECT_EQ(vertex->GetFunction(words, &size), D3D_OK);
        }
        if (!isVertex && pixel) {
            EXPECT_EQ(pixel->GetFunction(words, &size), D3D_OK);
        }
        return words[0];
    }
};

constexpr const char* kVertex = "asm { vs_1_1 dcl_position v0 mov oPos, v0 }";

} // namespace

TEST_F(FxShaderTest, BlocksAreSetAndTakenAway)
{
    const std::string blocks[] = {
        kVertex,
        "asm { vs_1_1; dcl_position v0; mov oPos, v0; }",
        "ASM {\n vs.1.1 ; comment }\n dcl_position v0 // other\n mov oPos, v0\n}",
    };
    for (const std::string& block : blocks) {
        const Com<ID3DXEffect> effect = Make(
            "technique t { pass { VertexShader = " + block +
            "; PixelShader = asm { ps_2_x\n def c0, 1.0f, -0.5, 2, 1e-3\n mov oC0, c0.xxyy }; } }");
        ASSERT_TRUE(effect) << block;
        ASSERT_EQ(effect->ValidateTechnique("t"), D3D_OK) << block;
        ASSERT_EQ(effect->SetTechnique("t"), D3D_OK);
        EXPECT_EQ(Bound(true), 0u);
        BeginFirstPass(effect.Get());
        EXPECT_EQ(Bound(true), 0xFFFE0101u) << block;
        EXPECT_EQ(Bound(false), 0xFFFF0201u) << block;
        EndPassAndEffect(effect.Get());
        EXPECT_EQ(Bound(true), 0u);
        EXPECT_EQ(Bound(false), 0u);
    }
}

TEST_F(FxShaderTest, ParametersHoldShaders)
{
    const Com<ID3DXEffect> effect =
        Make(std::string("vertexshader one = ") + kVertex + ";\nint chosen = 1;\n" +
             "pixelshader list[2] = { asm { ps_1_1 mov r0, c0 }, asm { ps_1_4 mov r0, c0 } };\n"
             "technique t { pass { VertexShader = <one>; PixelShader = <list[chosen]>; } }");
    ASSERT_EQ(effect->ValidateTechnique("t"), D3D_OK);
    ASSERT_EQ(effect->SetTechnique("t"), D3D_OK);
    BeginFirstPass(effect.Get());
    EXPECT_EQ(Bound(true), 0xFFFE0101u);
    EXPECT_EQ(Bound(false), 0xFFFF0104u);
    EndPassAndEffect(effect.Get());
}

TEST_F(FxShaderTest, ThePassDescribesItsCode)
{
    const Com<ID3DXEffect> effect =
        Make("technique t { pass { PixelShader = asm { ps_1_1 mov r0, c0 }; } }");
    D3DXPASS_DESC desc = {};
    ASSERT_EQ(effect->GetPassDesc(effect->GetPass("t", 0), &desc), D3D_OK);
    EXPECT_EQ(desc.pVertexShaderFunction, nullptr);
    const DWORD words[] = {0xFFFF0101, 0x00000001, 0x800F0000, 0xA0E40000, 0x0000FFFF};
    for (size_t i = 0; i < std::size(words); ++i)
        EXPECT_EQ(desc.pPixelShaderFunction[i], words[i]) << i;
}

TEST_F(FxShaderTest, ConstantsAreSet)
{
    const Com<ID3DXEffect> effect = Make(
        "float4x4 m = { 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16 };\nfloat s = 3;\n"
        "technique t { pass { VertexShaderConstant[4] = <m>; VertexShaderConstantF[9] = { 1, 2 };\n"
        "PixelShaderConstantF[1] = s * 2; PixelShaderConstant[2] = {1, 2, 3, 4, 5, 6, 7, 8};\n"
        "PixelShaderConstantI[3] = {4, 5, 6, 7}; VertexShaderConstantB[6] = TRUE; } }");
    ASSERT_TRUE(effect);
    ASSERT_EQ(effect->ValidateTechnique("t"), D3D_OK);
    ASSERT_EQ(effect->SetTechnique("t"), D3D_OK);
    BeginFirstPass(effect.Get());
    float floats[24] = {};
    ASSERT_EQ(device->GetVertexShaderConstantF(4, floats, 6), D3D_OK);
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(floats[i], static_cast<float>(i + 1));
    EXPECT_EQ(floats[20], 1.0f);
    EXPECT_EQ(floats[21], 2.0f);
    EXPECT_EQ(floats[22], 0.0f);
    ASSERT_EQ(device->GetPixelShaderConstantF(1, floats, 3), D3D_OK);
    EXPECT_EQ(floats[0], 6.0f);
    EXPECT_EQ(floats[11], 8.0f);
    int ints[4] = {};
    ASSERT_EQ(device->GetPixelShaderConstantI(3, ints, 1), D3D_OK);
    EXPECT_EQ(ints[3], 7);
    BOOL truth = FALSE;
    ASSERT_EQ(device->GetVertexShaderConstantB(6, &truth, 1), D3D_OK);
    EXPECT_EQ(truth, TRUE);
    EndPassAndEffect(effect.Get());
}

TEST_F(FxShaderTest, AShaderOfTheWrongKindIsALack)
{
    const Com<ID3DXEffect> effect =
        Make(std::string("technique t { pass { PixelShader = ") + kVertex + "; } }");
    testing::internal::CaptureStderr();
    EXPECT_EQ(effect->ValidateTechnique("t"), D3DXERR_INVALIDDATA);
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                testing::HasSubstr("it is a vertex shader"));
}
