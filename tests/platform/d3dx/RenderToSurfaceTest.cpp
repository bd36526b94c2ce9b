#include "tests/platform/d3dx/ImageDevice.h"

namespace {

using SurfaceHandle = ComHandle<IDirect3DSurface9>;

class RenderToSurface : public ImageDevice {
protected:
    void SetUp() override
    {
        ImageDevice::SetUp();
        IDirect3DTexture9* made = nullptr;
        ASSERT_EQ(device->CreateTexture(32, 16, 1, D3DUSAGE_RENDERTARGET, D3DFMT_A8R8G8B8,
                                        D3DPOOL_DEFAULT, &made, nullptr),
                  D3D_OK);
        texture.reset(made);
        IDirect3DSurface9* level = nullptr;
        ASSERT_EQ(texture->GetSurfaceLevel(0, &level), D3D_OK);
        surface.reset(level);
    }

    void TearDown() override
    {
        path.reset();
        surface.reset();
        texture.reset();
        ImageDevice::TearDown();
    }

    void Create(BOOL depthStencil)
    {
        ID3DXRenderToSurface* made = nullptr;
        ASSERT_EQ(D3DXCreateRenderToSurface(device, 32, 16, D3DFMT_A8R8G8B8, depthStencil,
                                            depthStencil ? D3DFMT_D16 : D3DFMT_UNKNOWN, &made),
                  D3D_OK);
        path.reset(made);
    }

    SurfaceHandle Target() const
    {
        IDirect3DSurface9* target = nullptr;
        EXPECT_EQ(device->GetRenderTarget(0, &target), D3D_OK);
        return SurfaceHandle(target);
    }

    SurfaceHandle Depth() const
    {
        IDirect3DSurface9* depth = nullptr;
        device->GetDepthStencilSurface(&depth);
        return SurfaceHandle(depth);
    }

    TextureHandle texture;
    SurfaceHandle surface;
    ComHandle<ID3DXRenderToSurface> path;
};

} // namespace

TEST_F(RenderToSurface, ReportsItsCreationParameters)
{
    Create(FALSE);
    D3DXRTS_DESC desc = {};
    ASSERT_EQ(path->GetDesc(&desc), D3D_OK);
    EXPECT_EQ(desc.Width, 32u);
    EXPECT_EQ(desc.Height, 16u);
    EXPECT_EQ(desc.Format, D3DFMT_A8R8G8B8);
    EXPECT_EQ(desc.DepthStencil, FALSE);
    IDirect3DDevice9* owner = nullptr;
    ASSERT_EQ(path->GetDevice(&owner), D3D_OK);
    EXPECT_EQ(owner, device);
    owner->Release();
}

TEST_F(RenderToSurface, RedirectsDrawingAndRestoresTheDevice)
{
    Create(FALSE);
    const SurfaceHandle backBuffer = Target();
    const SurfaceHandle depth = Depth();
    const D3DVIEWPORT9 before = {3, 4, 20, 10, 0.25f, 0.75f};
    ASSERT_EQ(device->SetViewport(&before), D3D_OK);

    ASSERT_EQ(path->BeginScene(surface.get(), nullptr), D3D_OK);
    EXPECT_EQ(Target().get(), surface.get());
    EXPECT_EQ(Depth().get(), nullptr);
    D3DVIEWPORT9 during = {};
    EXPECT_EQ(device->GetViewport(&during), D3D_OK);
    EXPECT_EQ(during.Width, 32u);
    EXPECT_EQ(during.Height, 16u);
    EXPECT_EQ(device->BeginScene(), D3DERR_INVALIDCALL) << "a scene runs";
    EXPECT_EQ(path->EndScene(D3DX_FILTER_NONE), D3D_OK);

    EXPECT_EQ(Target().get(), backBuffer.get());
    EXPECT_EQ(Depth().get(), depth.get());
    D3DVIEWPORT9 after = {};
    EXPECT_EQ(device->GetViewport(&after), D3D_OK);
    EXPECT_EQ(after.X, 3u);
    EXPECT_EQ(after.Height, 10u);
    EXPECT_EQ(after.MaxZ, 0.75f);
}

TEST_F(RenderToSurface, TakesTheViewportThatIsGiven)
{
    Create(FALSE);
    const D3DVIEWPORT9 viewport = {1, 2, 30, 14, 0.0f, 1.0f};
    ASSERT_EQ(path->BeginScene(surface.get(), &viewport), D3D_OK);
    D3DVIEWPORT9 during = {};
    EXPECT_EQ(device->GetViewport(&during), D3D_OK);
    EXPECT_EQ(during.X, 1u);
    EXPECT_EQ(during.Width, 30u);
    EXPECT_EQ(path->EndScene(D3DX_FILTER_NONE), D3D_OK);
}

TEST_F(RenderToSurface, BringsADepthSurfaceOfItsOwn)
{
    Create(TRUE);
    const SurfaceHandle before = Depth();
    ASSERT_EQ(path->BeginScene(surface.get(), nullptr), D3D_OK);
    {
        const SurfaceHandle during = Depth();
        ASSERT_TRUE(during);
        EXPECT_NE(during.get(), before.get());
        D3DSURFACE_DESC desc = {};
        EXPECT_EQ(during->GetDesc(&desc), D3D_OK);
        EXPECT_EQ(desc.Width, 32u);
        EXPECT_EQ(desc.Format, D3DFMT_D16);
    }
    EXPECT_EQ(path->EndScene(D3DX_FILTER_NONE), D3D_OK);
    EXPECT_EQ(Depth().get(), before.get());
}

TEST_F(RenderToSurface, RefusesScenesOutOfOrderAndForeignSurfaces)
{
    Create(FALSE);
    EXPECT_EQ(path->EndScene(D3DX_FILTER_NONE), D3DERR_INVALIDCALL);
    EXPECT_EQ(path->BeginScene(nullptr, nullptr), D3DERR_INVALIDCALL);
    EXPECT_EQ(path->BeginScene(Target().get(), nullptr), D3DERR_INVALIDCALL) << "another size";
    ASSERT_EQ(path->BeginScene(surface.get(), nullptr), D3D_OK);
    EXPECT_EQ(path->BeginScene(surface.get(), nullptr), D3DERR_INVALIDCALL);
    EXPECT_EQ(path->EndScene(D3DX_FILTER_NONE), D3D_OK);
    EXPECT_EQ(
        D3DXCreateRenderToSurface(device, 1, 1, D3DFMT_A8R8G8B8, FALSE, D3DFMT_UNKNOWN, nullptr),
        D3DERR_INVALIDCALL);
}

TEST_F(RenderToSurface, FreesWhatBlocksAReset)
{
    Create(TRUE);
    ASSERT_EQ(path->BeginScene(surface.get(), nullptr), D3D_OK);
    ASSERT_EQ(path->EndScene(D3DX_FILTER_NONE), D3D_OK);
    EXPECT_EQ(path->OnLostDevice(), D3D_OK);
    surface.reset();
    texture.reset();
    EXPECT_EQ(Reset(), D3D_OK);
    EXPECT_EQ(path->OnResetDevice(), D3D_OK);
}
