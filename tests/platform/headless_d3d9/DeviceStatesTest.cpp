#include "tests/platform/d3d9/DeviceTestFixture.h"

// Null pointers and limits that other hosts do not check.

namespace {

using DeviceStatesTest = DeviceTest;

} // namespace

TEST_F(DeviceStatesTest, NullPointersAreRefused)
{
    EXPECT_EQ(device->SetMaterial(nullptr), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->GetMaterial(nullptr), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->SetLight(0, nullptr), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->SetTransform(D3DTS_VIEW, nullptr), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->MultiplyTransform(D3DTS_VIEW, nullptr), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->SetViewport(nullptr), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->GetViewport(nullptr), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->SetScissorRect(nullptr), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->SetClipPlane(0, nullptr), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->GetRenderState(D3DRS_LIGHTING, nullptr), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->GetTexture(0, nullptr), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->GetRenderTarget(0, nullptr), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->GetIndices(nullptr), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->GetDeviceCaps(nullptr), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->Reset(nullptr), D3DERR_INVALIDCALL);
}

TEST_F(DeviceStatesTest, AViewportMustLieInTheTarget)
{
    static const struct {
        D3DVIEWPORT9 viewport;
        HRESULT result;
    } cases[] = {
        {{0, 0, 64, 48, 0.0f, 1.0f}, D3D_OK},
        {{63, 47, 1, 1, 0.0f, 1.0f}, D3D_OK},
        {{1, 0, 64, 48, 0.0f, 1.0f}, D3DERR_INVALIDCALL},
        {{0, 0, 64, 49, 0.0f, 1.0f}, D3DERR_INVALIDCALL},
        {{65, 0, 0, 0, 0.0f, 1.0f}, D3DERR_INVALIDCALL},
        {{8, 0, 0xFFFFFFF8, 1, 0.0f, 1.0f}, D3DERR_INVALIDCALL}, // the sum wraps to 0
    };
    for (const auto& c : cases)
        EXPECT_EQ(device->SetViewport(&c.viewport), c.result) << c.viewport.X;
}

TEST_F(DeviceStatesTest, SlotsEndWhereTheDeviceEnds)
{
    const float plane[4] = {};
    EXPECT_EQ(device->SetClipPlane(5, plane), D3D_OK);
    EXPECT_EQ(device->SetClipPlane(6, plane), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->SetTexture(15, nullptr), D3D_OK);
    EXPECT_EQ(device->SetTexture(16, nullptr), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->SetStreamSource(15, nullptr, 0, 0), D3D_OK);
    EXPECT_EQ(device->SetStreamSource(16, nullptr, 0, 0), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->SetRenderTarget(1, nullptr), D3DERR_INVALIDCALL);
    D3DMATRIX matrix = {};
    EXPECT_EQ(device->SetTransform(D3DTS_WORLDMATRIX(255), &matrix), D3D_OK);
    EXPECT_EQ(device->SetTransform(static_cast<D3DTRANSFORMSTATETYPE>(256 + 256), &matrix),
              D3DERR_INVALIDCALL);
}

TEST_F(DeviceStatesTest, StatesThatDoNotExistAreRefused)
{
    DWORD value = 0;
    EXPECT_EQ(device->SetRenderState(static_cast<D3DRENDERSTATETYPE>(1), 0), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->GetRenderState(static_cast<D3DRENDERSTATETYPE>(999), &value),
              D3DERR_INVALIDCALL);
    EXPECT_EQ(device->SetTextureStageState(8, D3DTSS_COLOROP, D3DTOP_ADD), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->SetSamplerState(16, D3DSAMP_MAGFILTER, D3DTEXF_POINT), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->GetSamplerState(0, static_cast<D3DSAMPLERSTATETYPE>(0), &value),
              D3DERR_INVALIDCALL);
    D3DMATRIX matrix = {};
    EXPECT_EQ(device->SetTransform(static_cast<D3DTRANSFORMSTATETYPE>(512), &matrix),
              D3DERR_INVALIDCALL);
}

TEST_F(DeviceStatesTest, LightsWithNegativeRangeOrFallOffAreRefused)
{
    D3DLIGHT9 light = {};
    light.Type = D3DLIGHT_SPOT;
    light.Range = 10.0f;
    EXPECT_EQ(device->SetLight(0, &light), D3D_OK);
    light.Range = -1.0f;
    EXPECT_EQ(device->SetLight(0, &light), D3DERR_INVALIDCALL);
    light.Range = 10.0f;
    light.Attenuation2 = -0.5f;
    EXPECT_EQ(device->SetLight(0, &light), D3DERR_INVALIDCALL);
}

TEST_F(DeviceStatesTest, TexturesOutOfReachCannotBeBound)
{
    for (const D3DPOOL pool : {D3DPOOL_SYSTEMMEM, D3DPOOL_SCRATCH}) {
        const Com<IDirect3DTexture9> texture = Texture(4, 4, 1, pool);
        EXPECT_EQ(device->SetTexture(0, texture.Get()), D3DERR_INVALIDCALL) << pool;
    }
}

TEST_F(DeviceStatesTest, ASoftwareDeviceStaysOne)
{
    EXPECT_TRUE(device->GetSoftwareVertexProcessing());
    EXPECT_EQ(device->SetSoftwareVertexProcessing(TRUE), D3D_OK);
    EXPECT_EQ(device->SetSoftwareVertexProcessing(FALSE), D3DERR_INVALIDCALL);
}

TEST_F(DeviceStatesTest, AResetEndsAScene)
{
    ASSERT_EQ(device->BeginScene(), D3D_OK);
    ASSERT_EQ(device->Reset(&parameters), D3D_OK);
    EXPECT_EQ(device->BeginScene(), D3D_OK);
    EXPECT_EQ(device->EndScene(), D3D_OK);
}

/// The identity ramp: 8 bits widened to 16, 255 to 65,535.
TEST_F(DeviceStatesTest, TheGammaRampBeginsStraightAndIsKept)
{
    D3DGAMMARAMP ramp = {};
    device->GetGammaRamp(0, &ramp);
    EXPECT_EQ(ramp.red[0], 0);
    EXPECT_EQ(ramp.green[1], 257);
    EXPECT_EQ(ramp.blue[255], 65535);
    ramp.red[128] = 12345;
    device->SetGammaRamp(0, D3DSGR_NO_CALIBRATION, &ramp);
    D3DGAMMARAMP kept = {};
    device->GetGammaRamp(0, &kept);
    EXPECT_EQ(kept.red[128], 12345);
}

TEST_F(DeviceStatesTest, WithoutADepthBufferTheDepthTestStartsOff)
{
    parameters.EnableAutoDepthStencil = FALSE;
    ASSERT_EQ(device->Reset(&parameters), D3D_OK);
    DWORD value = 99;
    ASSERT_EQ(device->GetRenderState(D3DRS_ZENABLE, &value), D3D_OK);
    EXPECT_EQ(value, static_cast<DWORD>(D3DZB_FALSE));
    Com<IDirect3DSurface9> depth;
    EXPECT_EQ(device->GetDepthStencilSurface(depth.Out()), D3DERR_NOTFOUND);
}
