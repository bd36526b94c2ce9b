#include "tests/platform/d3d9/DeviceTestFixture.h"

namespace {

class ResetTest : public DeviceTest {
protected:
    HRESULT Reset() { return device->Reset(&parameters); }
};

} // namespace

TEST_F(ResetTest, TakesTheNewSize)
{
    parameters.BackBufferWidth = 100;
    parameters.BackBufferHeight = 70;
    ASSERT_EQ(Reset(), D3D_OK);
    Com<IDirect3DSurface9> backBuffer, depth;
    ASSERT_EQ(device->GetBackBuffer(0, 0, D3DBACKBUFFER_TYPE_MONO, backBuffer.Out()), D3D_OK);
    ASSERT_EQ(device->GetDepthStencilSurface(depth.Out()), D3D_OK);
    for (IDirect3DSurface9* surface : {backBuffer.Get(), depth.Get()}) {
        D3DSURFACE_DESC desc = {};
        ASSERT_EQ(surface->GetDesc(&desc), D3D_OK);
        EXPECT_EQ(desc.Width, 100u);
        EXPECT_EQ(desc.Height, 70u);
    }
    D3DVIEWPORT9 viewport = {};
    ASSERT_EQ(device->GetViewport(&viewport), D3D_OK);
    EXPECT_EQ(viewport.Width, 100u);
    EXPECT_EQ(viewport.Height, 70u);
}

TEST_F(ResetTest, AZeroSizeFollowsTheWindow)
{
    RECT before = {}, client = {};
    ASSERT_TRUE(GetClientRect(window.Get(), &before));
    ASSERT_TRUE(MoveWindow(window.Get(), 0, 0, 400, 300, FALSE));
    ASSERT_TRUE(GetClientRect(window.Get(), &client));
    ASSERT_NE(before.right, client.right);
    parameters.BackBufferWidth = parameters.BackBufferHeight = 0;
    ASSERT_EQ(Reset(), D3D_OK);
    EXPECT_EQ(parameters.BackBufferWidth, static_cast<UINT>(client.right));
    EXPECT_EQ(parameters.BackBufferHeight, static_cast<UINT>(client.bottom));
}

TEST_F(ResetTest, ATextureInTheDefaultPoolIsInTheWay)
{
    Com<IDirect3DTexture9> texture = Texture(4, 4, 1, D3DPOOL_DEFAULT);
    EXPECT_EQ(Reset(), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->TestCooperativeLevel(), D3DERR_DEVICENOTRESET);
    EXPECT_EQ(texture.Release(), 0u);
    EXPECT_EQ(device->TestCooperativeLevel(), D3DERR_DEVICENOTRESET) << "until a clean reset";
    EXPECT_EQ(Reset(), D3D_OK);
    EXPECT_EQ(device->TestCooperativeLevel(), D3D_OK);
}

TEST_F(ResetTest, AHeldRenderTargetIsInTheWay)
{
    Com<IDirect3DSurface9> target;
    ASSERT_EQ(device->GetRenderTarget(0, target.Out()), D3D_OK);
    EXPECT_EQ(Reset(), D3DERR_INVALIDCALL);
    target.Release();
    EXPECT_EQ(Reset(), D3D_OK);
}

TEST_F(ResetTest, AVertexBufferInTheDefaultPoolIsInTheWay)
{
    Com<IDirect3DVertexBuffer9> buffer;
    ASSERT_EQ(device->CreateVertexBuffer(16, 0, 0, D3DPOOL_DEFAULT, buffer.Out(), nullptr), D3D_OK);
    EXPECT_EQ(Reset(), D3DERR_INVALIDCALL);
    buffer.Release();
    EXPECT_EQ(Reset(), D3D_OK);
}

TEST_F(ResetTest, WhatIsNotInTheDefaultPoolStays)
{
    const Com<IDirect3DTexture9> managed = Texture(4, 4, 1, D3DPOOL_MANAGED);
    const Com<IDirect3DSurface9> system = SystemSurface(4, 4);
    EXPECT_EQ(Reset(), D3D_OK);
    EXPECT_EQ(managed->GetLevelCount(), 1u);
}

TEST_F(ResetTest, StatesGoBackToTheirDefaults)
{
    D3DMATRIX moved = {};
    moved._11 = moved._22 = moved._33 = moved._44 = 2.0f;
    ASSERT_EQ(device->SetRenderState(D3DRS_CULLMODE, D3DCULL_NONE), D3D_OK);
    ASSERT_EQ(device->SetSamplerState(0, D3DSAMP_MAGFILTER, D3DTEXF_LINEAR), D3D_OK);
    ASSERT_EQ(device->SetTextureStageState(3, D3DTSS_COLOROP, D3DTOP_ADD), D3D_OK);
    ASSERT_EQ(device->SetTransform(D3DTS_VIEW, &moved), D3D_OK);
    ASSERT_EQ(device->SetFVF(D3DFVF_XYZ), D3D_OK);
    const Com<IDirect3DTexture9> texture = Texture(4, 4, 1, D3DPOOL_MANAGED);
    ASSERT_EQ(device->SetTexture(0, texture.Get()), D3D_OK);

    ASSERT_EQ(Reset(), D3D_OK);

    DWORD value = 0;
    ASSERT_EQ(device->GetRenderState(D3DRS_CULLMODE, &value), D3D_OK);
    EXPECT_EQ(value, static_cast<DWORD>(D3DCULL_CCW));
    ASSERT_EQ(device->GetSamplerState(0, D3DSAMP_MAGFILTER, &value), D3D_OK);
    EXPECT_EQ(value, static_cast<DWORD>(D3DTEXF_POINT));
    ASSERT_EQ(device->GetTextureStageState(3, D3DTSS_COLOROP, &value), D3D_OK);
    EXPECT_EQ(value, static_cast<DWORD>(D3DTOP_DISABLE));
    D3DMATRIX view = {};
    ASSERT_EQ(device->GetTransform(D3DTS_VIEW, &view), D3D_OK);
    EXPECT_EQ(view._11, 1.0f);
    ASSERT_EQ(device->GetFVF(&value), D3D_OK);
    EXPECT_EQ(value, 0u);
    Com<IDirect3DBaseTexture9> bound;
    ASSERT_EQ(device->GetTexture(0, bound.Out()), D3D_OK);
    EXPECT_FALSE(bound);
}

TEST_F(ResetTest, BadParametersLeaveTheDeviceToBeReset)
{
    D3DPRESENT_PARAMETERS bad = parameters;
    bad.PresentationInterval = 77;
    EXPECT_TRUE(FAILED(device->Reset(&bad)));
    EXPECT_EQ(Reset(), D3D_OK);
    EXPECT_EQ(device->TestCooperativeLevel(), D3D_OK);
}
