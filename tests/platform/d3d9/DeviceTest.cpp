#include "tests/platform/d3d9/DeviceTestFixture.h"

TEST_F(DeviceTest, ReportsItsCreationParameters)
{
    D3DDEVICE_CREATION_PARAMETERS creation = {};
    ASSERT_EQ(device->GetCreationParameters(&creation), D3D_OK);
    EXPECT_EQ(creation.AdapterOrdinal, 0u);
    EXPECT_EQ(creation.DeviceType, D3DDEVTYPE_HAL);
    EXPECT_EQ(creation.hFocusWindow, window.Get());
    EXPECT_TRUE(creation.BehaviorFlags & D3DCREATE_SOFTWARE_VERTEXPROCESSING);
}

TEST_F(DeviceTest, GivesItsInterfaceWithAReference)
{
    Com<IDirect3D9> parent;
    ASSERT_EQ(device->GetDirect3D(parent.Out()), D3D_OK);
    EXPECT_EQ(parent.Get(), d3d.Get());
    EXPECT_EQ(device->GetDirect3D(nullptr), D3DERR_INVALIDCALL);
}

TEST_F(DeviceTest, IsCooperativeAndHasOneSwapChain)
{
    EXPECT_EQ(device->TestCooperativeLevel(), D3D_OK);
    EXPECT_EQ(device->GetNumberOfSwapChains(), 1u);
}

TEST_F(DeviceTest, ReportsTheDesktopModeInAWindow)
{
    D3DDISPLAYMODE desktop = {}, mode = {};
    ASSERT_EQ(d3d->GetAdapterDisplayMode(0, &desktop), D3D_OK);
    ASSERT_EQ(device->GetDisplayMode(0, &mode), D3D_OK);
    EXPECT_EQ(mode.Width, desktop.Width);
    EXPECT_EQ(mode.Height, desktop.Height);
    EXPECT_EQ(mode.Format, desktop.Format);
}

TEST_F(DeviceTest, BeginsAndEndsScenesInTurn)
{
    EXPECT_EQ(device->EndScene(), D3DERR_INVALIDCALL) << "no scene was begun";
    EXPECT_EQ(device->BeginScene(), D3D_OK);
    EXPECT_EQ(device->BeginScene(), D3DERR_INVALIDCALL) << "the scene is not ended";
    EXPECT_EQ(device->EndScene(), D3D_OK);
    EXPECT_EQ(device->EndScene(), D3DERR_INVALIDCALL);
}

TEST_F(DeviceTest, PresentsTheBackBufferAndKeepsIt)
{
    ASSERT_EQ(device->Clear(0, nullptr, D3DCLEAR_TARGET, 0xFF336699, 1.0f, 0), D3D_OK);
    EXPECT_EQ(device->Present(nullptr, nullptr, nullptr, nullptr), D3D_OK);
    EXPECT_EQ(ReadBackBuffer(), std::vector<uint32_t>(64 * 48, 0x336699));
}

TEST_F(DeviceTest, ABackBufferHasTheAskedSizeAndIsTheFirstTarget)
{
    Com<IDirect3DSurface9> backBuffer, target;
    ASSERT_EQ(device->GetBackBuffer(0, 0, D3DBACKBUFFER_TYPE_MONO, backBuffer.Out()), D3D_OK);
    ASSERT_EQ(device->GetRenderTarget(0, target.Out()), D3D_OK);
    EXPECT_EQ(backBuffer.Get(), target.Get());
    D3DSURFACE_DESC desc = {};
    ASSERT_EQ(backBuffer->GetDesc(&desc), D3D_OK);
    EXPECT_EQ(desc.Width, 64u);
    EXPECT_EQ(desc.Height, 48u);
    EXPECT_EQ(desc.Format, D3DFMT_X8R8G8B8);
    EXPECT_EQ(desc.Usage, static_cast<DWORD>(D3DUSAGE_RENDERTARGET));
    EXPECT_EQ(desc.Pool, D3DPOOL_DEFAULT);
    EXPECT_EQ(desc.Type, D3DRTYPE_SURFACE);
    EXPECT_EQ(device->GetBackBuffer(0, 1, D3DBACKBUFFER_TYPE_MONO, target.Out()),
              D3DERR_INVALIDCALL);
}

TEST_F(DeviceTest, ABackBufferCannotBeLocked)
{
    Com<IDirect3DSurface9> backBuffer;
    ASSERT_EQ(device->GetBackBuffer(0, 0, D3DBACKBUFFER_TYPE_MONO, backBuffer.Out()), D3D_OK);
    D3DLOCKED_RECT locked = {};
    EXPECT_EQ(backBuffer->LockRect(&locked, nullptr, 0), D3DERR_INVALIDCALL);
}

TEST_F(DeviceTest, TheAutomaticDepthBufferIsBound)
{
    Com<IDirect3DSurface9> depth;
    ASSERT_EQ(device->GetDepthStencilSurface(depth.Out()), D3D_OK);
    D3DSURFACE_DESC desc = {};
    ASSERT_EQ(depth->GetDesc(&desc), D3D_OK);
    EXPECT_EQ(desc.Format, D3DFMT_D16);
    EXPECT_EQ(desc.Usage, static_cast<DWORD>(D3DUSAGE_DEPTHSTENCIL));
    EXPECT_EQ(desc.Width, 64u);
}

TEST_F(DeviceTest, WithoutADepthBufferNoneIsFound)
{
    ASSERT_EQ(device->SetDepthStencilSurface(nullptr), D3D_OK);
    Com<IDirect3DSurface9> depth;
    EXPECT_EQ(device->GetDepthStencilSurface(depth.Out()), D3DERR_NOTFOUND);
    EXPECT_FALSE(depth);
}

TEST_F(DeviceTest, HeldChildrenKeepTheDeviceAlive)
{
    EXPECT_EQ(ReferenceCount(device.Get()), 1u);
    {
        const Com<IDirect3DTexture9> texture = Texture(4, 4, 1, D3DPOOL_MANAGED);
        EXPECT_EQ(ReferenceCount(device.Get()), 2u);
        Com<IDirect3DDevice9> owner;
        ASSERT_EQ(texture->GetDevice(owner.Out()), D3D_OK);
        EXPECT_EQ(owner.Get(), device.Get());
        EXPECT_EQ(ReferenceCount(device.Get()), 3u);
    }
    EXPECT_EQ(ReferenceCount(device.Get()), 1u);
}

TEST_F(DeviceTest, HeldImplicitSurfacesCountAsReferences)
{
    Com<IDirect3DSurface9> backBuffer;
    ASSERT_EQ(device->GetBackBuffer(0, 0, D3DBACKBUFFER_TYPE_MONO, backBuffer.Out()), D3D_OK);
    EXPECT_EQ(ReferenceCount(device.Get()), 2u);
    EXPECT_EQ(backBuffer.Release(), 0u);
    EXPECT_EQ(ReferenceCount(device.Get()), 1u);
    EXPECT_EQ(device->GetBackBuffer(0, 0, D3DBACKBUFFER_TYPE_MONO, backBuffer.Out()), D3D_OK)
        << "its last reference was released, and it lives on";
}
