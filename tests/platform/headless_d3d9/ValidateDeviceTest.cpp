// ValidateDevice agrees with an actual draw.

#include "tests/platform/d3d9/DeviceTestFixture.h"

namespace {

class ValidateDeviceTest : public DeviceTest {
protected:
    HRESULT Validate()
    {
        DWORD passes = 0;
        testing::internal::CaptureStderr();
        const HRESULT result = device->ValidateDevice(&passes);
        testing::internal::GetCapturedStderr();
        EXPECT_EQ(passes, 1u);
        return result;
    }
    /// Draws a triangle with the texture on each stage, in a scene.
    HRESULT Draw()
    {
        const float corners[3][5] = {{0, 0, 0, 0, 0}, {1, 0, 0, 1, 0}, {0, 1, 0, 0, 1}};
        EXPECT_EQ(device->BeginScene(), D3D_OK);
        testing::internal::CaptureStderr();
        const HRESULT result = device->DrawPrimitiveUP(D3DPT_TRIANGLELIST, 1, corners, 20);
        testing::internal::GetCapturedStderr();
        EXPECT_EQ(device->EndScene(), D3D_OK);
        return result;
    }
};

} // namespace

TEST_F(ValidateDeviceTest, EveryStateIsValidatedLikeADraw)
{
    const Com<IDirect3DTexture9> texture = Texture(4, 4, 1, D3DPOOL_MANAGED);
    for (DWORD stage = 0; stage < 8; ++stage)
        ASSERT_EQ(device->SetTexture(stage, texture.Get()), D3D_OK);
    ASSERT_EQ(device->SetFVF(D3DFVF_XYZ | D3DFVF_TEX1), D3D_OK);
    ASSERT_EQ(device->SetTextureStageState(1, D3DTSS_COLOROP, D3DTOP_ADD), D3D_OK);
    ASSERT_EQ(device->SetRenderState(D3DRS_ALPHABLENDENABLE, TRUE), D3D_OK);
    ASSERT_EQ(Validate(), D3D_OK);
    int refused = 0;
    // All states, with values that few of them accept.
    for (const DWORD value : {0u, 1u, 2u, 99u}) {
        for (DWORD number = 0; number < 256; ++number) {
            const auto state = static_cast<D3DRENDERSTATETYPE>(number);
            DWORD before = 0;
            if (FAILED(device->GetRenderState(state, &before)))
                continue;
            ASSERT_EQ(device->SetRenderState(state, value), D3D_OK);
            EXPECT_EQ(Validate(), Draw()) << "render state " << number << " = " << value;
            refused += FAILED(Validate()) ? 1 : 0;
            ASSERT_EQ(device->SetRenderState(state, before), D3D_OK);
        }
        for (DWORD number = 0; number < 64; ++number) {
            const auto state = static_cast<D3DTEXTURESTAGESTATETYPE>(number % 33);
            const DWORD stage = number / 33;
            DWORD before = 0;
            if (FAILED(device->GetTextureStageState(stage, state, &before)))
                continue;
            ASSERT_EQ(device->SetTextureStageState(stage, state, value), D3D_OK);
            EXPECT_EQ(Validate(), Draw()) << "stage " << stage << ' ' << state << " = " << value;
            refused += FAILED(Validate()) ? 1 : 0;
            ASSERT_EQ(device->SetTextureStageState(stage, state, before), D3D_OK);
        }
        for (DWORD number = 0; number < 28; ++number) {
            const auto state = static_cast<D3DSAMPLERSTATETYPE>(number % 14);
            DWORD before = 0;
            if (FAILED(device->GetSamplerState(number / 14, state, &before)))
                continue;
            ASSERT_EQ(device->SetSamplerState(number / 14, state, value), D3D_OK);
            EXPECT_EQ(Validate(), Draw()) << "sampler " << number / 14 << ' ' << state;
            refused += FAILED(Validate()) ? 1 : 0;
            ASSERT_EQ(device->SetSamplerState(number / 14, state, before), D3D_OK);
        }
    }
    EXPECT_GT(refused, 50); // neither accepts everything
    EXPECT_EQ(Validate(), D3D_OK);
}

TEST_F(ValidateDeviceTest, AVertexFormatThatCannotBeDrawnIsRefused)
{
    ASSERT_EQ(device->SetFVF(D3DFVF_NORMAL), D3D_OK);
    EXPECT_EQ(Validate(), D3DERR_INVALIDCALL);
    ASSERT_EQ(device->SetFVF(0), D3D_OK); // the next draw may set another one
    EXPECT_EQ(Validate(), D3D_OK);
}

TEST_F(ValidateDeviceTest, ItNeedsAnOutputPointer)
{
    EXPECT_EQ(device->ValidateDevice(nullptr), D3DERR_INVALIDCALL);
}
