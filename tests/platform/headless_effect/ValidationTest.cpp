// Which techniques validate, and that those draw.

#include "tests/platform/headless_effect/EffectTest.h"

namespace {

class Validation : public EffectTest {
protected:
    /// Whether a triangle is drawn in the effect's only pass.
    bool Draws(ID3DXEffect* effect)
    {
        static constexpr float kCorners[9] = {0, 0, 0.5f, 0, 1, 0.5f, 1, 0, 0.5f};
        UINT passes = 0;
        EXPECT_EQ(effect->Begin(&passes, 0), D3D_OK);
        bool isDrawn = SUCCEEDED(effect->BeginPass(0));
        device->SetFVF(D3DFVF_XYZ);
        EXPECT_EQ(device->BeginScene(), D3D_OK);
        isDrawn =
            isDrawn && SUCCEEDED(device->DrawPrimitiveUP(D3DPT_TRIANGLELIST, 1, kCorners, 12));
        EXPECT_EQ(device->EndScene(), D3D_OK);
        effect->EndPass();
        effect->End();
        return isDrawn;
    }
};

#define VERTEX_SHADER(version, rest) "VertexShader = asm {\n" version "\n" rest "\n}; "
#define PIXEL_SHADER(version, rest) "PixelShader = asm {\n" version "\n" rest "\n}; "
#define OLD_VERTEX "dcl_position v0\nmov oPos, v0"
#define NEW_VERTEX "dcl_position v0\ndcl_position o0\nmov o0, v0"

} // namespace

TEST_F(Validation, TechniquesThatValidateDraw)
{
    static const struct {
        const char* states;
        bool isValid;
    } kCases[] = {
        {"CullMode = NONE;", true},
        {VERTEX_SHADER("vs_1_1", OLD_VERTEX) PIXEL_SHADER("ps_1_4", "mov r0, c0"), true},
        {VERTEX_SHADER("vs_2_0", OLD_VERTEX), true},
        {PIXEL_SHADER("ps_2_x", "mov oC0, c0"), true},
        {VERTEX_SHADER("vs_3_0", NEW_VERTEX) PIXEL_SHADER("ps_3_0", "mov oC0, c0"), true},
        // Shaders of 3.0 are linked to each other only.
        {VERTEX_SHADER("vs_3_0", NEW_VERTEX) PIXEL_SHADER("ps_2_0", "mov oC0, c0"), false},
        {VERTEX_SHADER("vs_2_0", OLD_VERTEX) PIXEL_SHADER("ps_3_0", "mov oC0, c0"), false},
        // Beyond the registers that the versions have.
        {PIXEL_SHADER("ps_2_0", "mov oC0, c31"), true},
        {PIXEL_SHADER("ps_2_0", "mov oC0, c32"), false},
        {VERTEX_SHADER("vs_1_1", "dcl_position v0\nadd oPos, v0, c256"), false},
        {PIXEL_SHADER("ps_9_0", "mov oC0, c0"), false},
        // Stages do not count where a pixel shader takes their place.
        {"ColorOp[0] = 99;", false},
        {"ColorOp[0] = 99; " PIXEL_SHADER("ps_2_0", "mov oC0, c0"), true},
        {"CullMode = 9;", false},
        {"CullMode = 9; " PIXEL_SHADER("ps_2_0", "mov oC0, c0"), false},
    };
    for (const auto& c : kCases) {
        const Com<ID3DXEffect> effect =
            Make("technique t { pass { Lighting = FALSE; " + std::string(c.states) + " } }");
        ASSERT_TRUE(effect) << c.states;
        testing::internal::CaptureStderr(); // one line for each that is not valid
        EXPECT_EQ(SUCCEEDED(effect->ValidateTechnique("t")), c.isValid) << c.states;
        EXPECT_TRUE(!c.isValid || Draws(effect.Get())) << c.states;
        testing::internal::GetCapturedStderr();
    }
}
