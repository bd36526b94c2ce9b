#include "platform/headless/d3d9/TestControl.h"
#include "tests/platform/d3d9/DeviceTestFixture.h"

using namespace headless;

namespace {

class LeakReportTest : public DeviceTest {
protected:
    void SetUp() override
    {
        DeviceTest::SetUp();
        TakeLeakReport();
    }

    /// Releases the device and returns what it wrote to standard error.
    std::string ReleaseDevice()
    {
        testing::internal::CaptureStderr();
        device.Release();
        return testing::internal::GetCapturedStderr();
    }
};

} // namespace

TEST_F(LeakReportTest, ACleanEndReportsNothing)
{
    EXPECT_EQ(ReleaseDevice(), "");
    EXPECT_EQ(TakeLeakReport(), "");
}

TEST_F(LeakReportTest, ReportsKindsAndCountsOfLiveObjects)
{
    Com<IDirect3DTexture9> first = Texture(4, 4, 1, D3DPOOL_MANAGED);
    Com<IDirect3DTexture9> second = Texture(4, 4, 3, D3DPOOL_MANAGED);
    Com<IDirect3DSurface9> surface = SystemSurface(4, 4);
    Com<IDirect3DVertexBuffer9> vertices;
    ASSERT_EQ(device->CreateVertexBuffer(16, 0, 0, D3DPOOL_MANAGED, vertices.Out(), nullptr),
              D3D_OK);
    EXPECT_EQ(ReleaseDevice(), "IDirect3DDevice9 released with live children: 2 textures, "
                               "1 surface, 1 vertex buffer\n");
    EXPECT_EQ(TakeLeakReport(), "2 textures, 1 surface, 1 vertex buffer");
    EXPECT_EQ(TakeLeakReport(), "") << "told once";
}

TEST_F(LeakReportTest, TheDeviceEndsWithItsLastChild)
{
    Com<IDirect3DTexture9> texture = Texture(4, 4, 1, D3DPOOL_MANAGED);
    ReleaseDevice();
    EXPECT_EQ(LiveObjectReport(), "1 interface, 1 device, 1 texture");
    EXPECT_EQ(texture.Release(), 0u);
    EXPECT_EQ(LiveObjectReport(), "1 interface");
}

TEST_F(LeakReportTest, AHeldLevelCountsAsItsTexture)
{
    Com<IDirect3DSurface9> level;
    {
        const Com<IDirect3DTexture9> texture = Texture(4, 4, 1, D3DPOOL_MANAGED);
        ASSERT_EQ(texture->GetSurfaceLevel(0, level.Out()), D3D_OK);
    }
    ReleaseDevice();
    EXPECT_EQ(TakeLeakReport(), "1 texture");
}

TEST_F(LeakReportTest, ABoundTextureWithoutAHolderIsNotALeak)
{
    {
        const Com<IDirect3DTexture9> texture = Texture(4, 4, 1, D3DPOOL_MANAGED);
        ASSERT_EQ(device->SetTexture(0, texture.Get()), D3D_OK);
    }
    EXPECT_EQ(ReleaseDevice(), "");
    EXPECT_EQ(LiveObjectReport(), "1 interface");
}

TEST_F(LeakReportTest, AnInterfaceReportsItsDevice)
{
    testing::internal::CaptureStderr();
    EXPECT_EQ(d3d.Release(), 1u);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "IDirect3D9 released with live children: 1 device\n");
    EXPECT_EQ(TakeLeakReport(), "1 device");
}

TEST_F(LeakReportTest, ASurplusReleaseDestroysNothing)
{
    IDirect3DTexture9* texture = nullptr;
    ASSERT_EQ(
        device->CreateTexture(4, 4, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED, &texture, nullptr),
        D3D_OK);
    ASSERT_EQ(device->SetTexture(0, texture), D3D_OK);
    EXPECT_EQ(texture->Release(), 0u);
    EXPECT_EQ(texture->Release(), 0u); // the stage still uses it
    Com<IDirect3DBaseTexture9> bound;
    EXPECT_EQ(device->GetTexture(0, bound.Out()), D3D_OK);
    EXPECT_EQ(bound->GetLevelCount(), 1u);
}
