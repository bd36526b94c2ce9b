#include "platform/headless/d3d9/TestControl.h"
#include "tests/platform/d3d9/DeviceTestFixture.h"

using namespace headless;

namespace {

class LostDeviceTest : public DeviceTest {
protected:
    HRESULT Present() { return device->Present(nullptr, nullptr, nullptr, nullptr); }
};

} // namespace

TEST_F(LostDeviceTest, ALostDeviceCanNeitherPresentNorReset)
{
    SimulateDeviceLost(device.Get());
    EXPECT_EQ(device->TestCooperativeLevel(), D3DERR_DEVICELOST);
    EXPECT_EQ(Present(), D3DERR_DEVICELOST);
    EXPECT_EQ(device->Reset(&parameters), D3DERR_DEVICELOST);
    EXPECT_EQ(device->TestCooperativeLevel(), D3DERR_DEVICELOST);
}

TEST_F(LostDeviceTest, ALostDeviceStillTakesStatesAndMakesTextures)
{
    SimulateDeviceLost(device.Get());
    EXPECT_EQ(device->SetRenderState(D3DRS_CULLMODE, D3DCULL_NONE), D3D_OK);
    EXPECT_EQ(device->Clear(0, nullptr, D3DCLEAR_TARGET, 0, 1.0f, 0), D3D_OK);
    EXPECT_TRUE(Texture(4, 4, 1, D3DPOOL_MANAGED));
}

TEST_F(LostDeviceTest, ALostDeviceGivesNoPixels)
{
    const Com<IDirect3DSurface9> target = Target(4, 4);
    const Com<IDirect3DSurface9> copy = SystemSurface(4, 4);
    SimulateDeviceLost(device.Get());
    EXPECT_EQ(device->GetRenderTargetData(target.Get(), copy.Get()), D3DERR_DEVICELOST);
    EXPECT_EQ(device->GetFrontBufferData(0, copy.Get()), D3DERR_DEVICELOST);
}

TEST_F(LostDeviceTest, ARestorableDeviceWaitsForAReset)
{
    SimulateDeviceLost(device.Get());
    SimulateDeviceRestorable(device.Get());
    EXPECT_EQ(device->TestCooperativeLevel(), D3DERR_DEVICENOTRESET);
    EXPECT_EQ(Present(), D3DERR_DEVICELOST);
    EXPECT_EQ(device->Reset(&parameters), D3D_OK);
    EXPECT_EQ(device->TestCooperativeLevel(), D3D_OK);
    EXPECT_EQ(Present(), D3D_OK);
}

TEST_F(LostDeviceTest, ARestorableDeviceStillNeedsAnEmptyDefaultPool)
{
    Com<IDirect3DSurface9> target = Target(4, 4);
    SimulateDeviceRestorable(device.Get());
    EXPECT_EQ(device->Reset(&parameters), D3DERR_INVALIDCALL);
    target.Release();
    EXPECT_EQ(device->Reset(&parameters), D3D_OK);
}
