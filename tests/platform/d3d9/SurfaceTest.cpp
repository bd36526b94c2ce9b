#include "tests/platform/d3d9/DeviceTestFixture.h"

#include <cstring>

namespace {

using SurfaceTest = DeviceTest;

} // namespace

TEST_F(SurfaceTest, APlainSurfaceDescribesItself)
{
    Com<IDirect3DSurface9> surface;
    ASSERT_EQ(device->CreateOffscreenPlainSurface(10, 6, D3DFMT_R5G6B5, D3DPOOL_SYSTEMMEM,
                                                  surface.Out(), nullptr),
              D3D_OK);
    D3DSURFACE_DESC desc = {};
    ASSERT_EQ(surface->GetDesc(&desc), D3D_OK);
    EXPECT_EQ(desc.Width, 10u);
    EXPECT_EQ(desc.Height, 6u);
    EXPECT_EQ(desc.Format, D3DFMT_R5G6B5);
    EXPECT_EQ(desc.Pool, D3DPOOL_SYSTEMMEM);
    EXPECT_EQ(desc.Usage, 0u);
    EXPECT_EQ(surface->GetType(), D3DRTYPE_SURFACE);
}

TEST_F(SurfaceTest, UnlockingWhatIsNotLockedFails)
{
    const Com<IDirect3DSurface9> surface = SystemSurface(4, 4);
    EXPECT_EQ(surface->UnlockRect(), D3DERR_INVALIDCALL);
    D3DLOCKED_RECT locked = {};
    ASSERT_EQ(surface->LockRect(&locked, nullptr, 0), D3D_OK);
    EXPECT_EQ(surface->LockRect(&locked, nullptr, 0), D3DERR_INVALIDCALL);
    EXPECT_EQ(surface->UnlockRect(), D3D_OK);
    EXPECT_EQ(surface->UnlockRect(), D3DERR_INVALIDCALL);
}

TEST_F(SurfaceTest, ALockedRectangleBeginsAtItsCorner)
{
    const Com<IDirect3DSurface9> surface = SystemSurface(4, 2, {0, 1, 2, 3, 4, 5, 6, 7});
    const RECT area = {2, 1, 4, 2};
    D3DLOCKED_RECT locked = {};
    ASSERT_EQ(surface->LockRect(&locked, &area, D3DLOCK_READONLY), D3D_OK);
    uint32_t pixels[2] = {};
    std::memcpy(pixels, locked.pBits, sizeof pixels);
    EXPECT_EQ(pixels[0], 6u);
    EXPECT_EQ(pixels[1], 7u);
    EXPECT_EQ(surface->UnlockRect(), D3D_OK);
}

TEST_F(SurfaceTest, RowsBeginAtMultiplesOfFourBytes)
{
    // 3 pixels of 2 bytes are 6 bytes, padded to 8.
    const Com<IDirect3DSurface9> surface = SystemSurface(3, 2, {}, D3DFMT_R5G6B5);
    D3DLOCKED_RECT locked = {};
    ASSERT_EQ(surface->LockRect(&locked, nullptr, 0), D3D_OK);
    EXPECT_EQ(locked.Pitch, 8);
    EXPECT_EQ(surface->UnlockRect(), D3D_OK);
}

TEST_F(SurfaceTest, OnlyLockableTargetsCanBeLocked)
{
    D3DLOCKED_RECT locked = {};
    const Com<IDirect3DSurface9> target = Target(8, 8);
    EXPECT_EQ(target->LockRect(&locked, nullptr, 0), D3DERR_INVALIDCALL);
    Com<IDirect3DSurface9> lockable;
    ASSERT_EQ(device->CreateRenderTarget(8, 8, D3DFMT_X8R8G8B8, D3DMULTISAMPLE_NONE, 0, TRUE,
                                         lockable.Out(), nullptr),
              D3D_OK);
    EXPECT_EQ(lockable->LockRect(&locked, nullptr, 0), D3D_OK);
    EXPECT_EQ(lockable->UnlockRect(), D3D_OK);
}

TEST_F(SurfaceTest, ADepthBufferCannotBeLocked)
{
    Com<IDirect3DSurface9> depth;
    ASSERT_EQ(device->CreateDepthStencilSurface(8, 8, D3DFMT_D24S8, D3DMULTISAMPLE_NONE, 0, FALSE,
                                                depth.Out(), nullptr),
              D3D_OK);
    D3DLOCKED_RECT locked = {};
    EXPECT_EQ(depth->LockRect(&locked, nullptr, 0), D3DERR_INVALIDCALL);
}

TEST_F(SurfaceTest, RefusesInvalidArguments)
{
    Com<IDirect3DSurface9> surface;
    EXPECT_TRUE(FAILED(device->CreateOffscreenPlainSurface(0, 4, D3DFMT_A8R8G8B8, D3DPOOL_SYSTEMMEM,
                                                           surface.Out(), nullptr)));
    EXPECT_EQ(device->CreateOffscreenPlainSurface(4, 4, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED,
                                                  surface.Out(), nullptr),
              D3DERR_INVALIDCALL);
    EXPECT_TRUE(FAILED(device->CreateRenderTarget(4, 4, D3DFMT_DXT1, D3DMULTISAMPLE_NONE, 0, FALSE,
                                                  surface.Out(), nullptr)));
    EXPECT_TRUE(FAILED(device->CreateDepthStencilSurface(4, 4, D3DFMT_A8R8G8B8, D3DMULTISAMPLE_NONE,
                                                         0, FALSE, surface.Out(), nullptr)));
    EXPECT_FALSE(surface);
}

TEST_F(SurfaceTest, ScratchMemoryTakesFormatsThatTheDeviceCannotDraw)
{
    Com<IDirect3DSurface9> surface;
    EXPECT_EQ(device->CreateOffscreenPlainSurface(5, 3, D3DFMT_R8G8B8, D3DPOOL_SCRATCH,
                                                  surface.Out(), nullptr),
              D3D_OK);
    D3DLOCKED_RECT locked = {};
    ASSERT_EQ(surface->LockRect(&locked, nullptr, 0), D3D_OK);
    EXPECT_EQ(locked.Pitch, 16) << "15 bytes, padded to four";
    EXPECT_EQ(surface->UnlockRect(), D3D_OK);
}
