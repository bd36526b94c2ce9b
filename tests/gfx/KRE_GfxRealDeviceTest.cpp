#include "tests/gfx/EngineTest.h"
#include "tests/support/TestDevice.h"

using testing::Each;
using testing::SizeIs;

// The engine on the host's own Direct3D, where the device's documented rules apply.

namespace {

class KRE_GfxRealDeviceTest : public EngineTest {
protected:
    KRE_GfxRealDeviceTest() : EngineTest(RecordingDirect3D::WrapReal()) {}

    std::vector<DWORD> Picture()
    {
        return ReadRenderTarget(gfx.device.Get(), gfx.renderTarget.Get());
    }
};

} // namespace

TEST_F(KRE_GfxRealDeviceTest, StartsInAWindowAndClears)
{
    Start();
    EXPECT_EQ(gfx.viewport.Width, 64u);
    EXPECT_EQ(gfx.viewport.Height, 48u);
    gfx.BeginScene();
    gfx.Clear(0xFF336699);
    gfx.EndScene();
    const std::vector<DWORD> picture = Picture();
    EXPECT_THAT(picture, SizeIs(64 * 48));
    EXPECT_THAT(picture, Each(0xFF336699u));
    EXPECT_EQ(gfx.ShowFrame(), 1);
}

TEST_F(KRE_GfxRealDeviceTest, StartsWithEachKindOfVertexProcessingAndDepth)
{
    for (int32_t vertexProcessing : {0, 1, 2}) {
        for (int32_t zBits : {0, 16, 24}) {
            EXPECT_EQ(gfx.InitDevice(window.Handle(), 1, nullptr, zBits, 0, vertexProcessing, 0), 1)
                << vertexProcessing << " " << zBits;
            EXPECT_EQ(static_cast<bool>(gfx.depthSurface), zBits != 0);
            gfx.Clear(0xFF000000);
            EXPECT_EQ(gfx.ShowFrame(), 1);
        }
    }
}

TEST_F(KRE_GfxRealDeviceTest, ResizeResetsToTheNewClientSize)
{
    Start();
    EXPECT_EQ(gfx.ShowFrame(), 1);
    window.Resize(80, 60);
    EXPECT_EQ(gfx.ShowFrame(), 0);
    EXPECT_EQ(gfx.backBuffer.width, 80);
    EXPECT_EQ(gfx.backBuffer.height, 60);
    gfx.Clear(0xFF808080);
    EXPECT_THAT(Picture(), SizeIs(80 * 60));
    EXPECT_EQ(gfx.ShowFrame(), 1);
}

TEST_F(KRE_GfxRealDeviceTest, ResetSucceedsWithEveryKindOfResourceAlive)
{
    Start();
    ComPointer<IDirect3DTexture9> managed;
    ASSERT_TRUE(SUCCEEDED(gfx.device->CreateTexture(8, 8, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED,
                                                    managed.Out(), nullptr)));
    IDirect3DTexture9* defaultTexture = nullptr;
    ASSERT_TRUE(SUCCEEDED(gfx.device->CreateTexture(8, 8, 1, D3DUSAGE_RENDERTARGET, D3DFMT_A8R8G8B8,
                                                    D3DPOOL_DEFAULT, &defaultTexture, nullptr)));
    IDirect3DSurface9* defaultSurface = nullptr;
    ASSERT_TRUE(SUCCEEDED(gfx.device->CreateRenderTarget(8, 8, D3DFMT_X8R8G8B8, D3DMULTISAMPLE_NONE,
                                                         0, FALSE, &defaultSurface, nullptr)));
    gfx.textureManager.Add(managed.Get(), "managed");
    gfx.textureManager.Add(defaultTexture, "default");
    gfx.surfaceManager.Add(defaultSurface, "surface");
    const uint32_t pixel = 0xFFABCDEF;
    D3DLOCKED_RECT locked{};
    ASSERT_TRUE(SUCCEEDED(managed->LockRect(0, &locked, nullptr, 0)));
    memcpy(locked.pBits, &pixel, sizeof pixel);
    managed->UnlockRect(0);

    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(RaisedBy([&] { gfx.ResetDevice(nullptr); }), "no error") << i;

    ASSERT_TRUE(SUCCEEDED(managed->LockRect(0, &locked, nullptr, D3DLOCK_READONLY)));
    EXPECT_EQ(memcmp(locked.pBits, &pixel, sizeof pixel), 0) << "managed pictures are kept";
    managed->UnlockRect(0);
    gfx.Clear(0xFF00FF00);
    EXPECT_THAT(Picture(), Each(0xFF00FF00u));
    EXPECT_EQ(gfx.ShowFrame(), 1);
}

TEST_F(KRE_GfxRealDeviceTest, HeldTargetMakesTheResetFail)
{
    Start();
    const ComPointer<IDirect3DSurface9> held = gfx.renderTarget;
    EXPECT_EQ(RaisedBy([&] { gfx.ResetDevice(nullptr); }),
              "Device Reset failed: D3DERR_INVALIDCALL");
}

TEST_F(KRE_GfxRealDeviceTest, StatesThatTheEngineSetAreTheDevices)
{
    Start();
    gfx.SetCullMode(1);
    gfx.SetFog({0xFF112233, D3DFOG_LINEAR, 0, 5.0f, 6.0f, 0.0f});
    gfx.ResetDevice(nullptr);
    DWORD value = 0;
    EXPECT_EQ(gfx.device->GetRenderState(D3DRS_CULLMODE, &value), D3D_OK);
    EXPECT_EQ(value, DWORD{D3DCULL_CW});
    EXPECT_EQ(gfx.device->GetRenderState(D3DRS_FOGCOLOR, &value), D3D_OK);
    EXPECT_EQ(value, 0xFF112233u);
    EXPECT_EQ(gfx.device->GetRenderState(D3DRS_ZENABLE, &value), D3D_OK);
    EXPECT_EQ(value, DWORD{D3DZB_TRUE}) << "a new device with a depth buffer";
}

TEST_F(KRE_GfxRealDeviceTest, NothingOfItOutlivesFreeDevice)
{
    Start();
    gfx.ShowFrame();
    auto direct3D = gfx.d3d; // the last reference, once the device is gone
    auto device = gfx.device;
    gfx.FreeDevice();
    EXPECT_EQ(device.Detach()->Release(), 0u) << "the test's own was the last reference";
    EXPECT_EQ(direct3D.Detach()->Release(), 0u);
}
