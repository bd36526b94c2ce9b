#include "tests/support/RecordingDirect3D.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::EndsWith;
using testing::StartsWith;

namespace {

class RecordingDirect3DTest : public testing::Test {
protected:
    void TearDown() override
    {
        d3d.reset();
        EXPECT_EQ(FakeObjectsAlive(), before) << "leaked fake objects";
    }

    HRESULT CreateDevice(IDirect3DDevice9** deviceOut)
    {
        D3DPRESENT_PARAMETERS parameters = {};
        parameters.BackBufferWidth = 64;
        parameters.BackBufferHeight = 32;
        parameters.BackBufferFormat = D3DFMT_X8R8G8B8;
        return d3d->CreateDevice(0, D3DDEVTYPE_HAL, nullptr, D3DCREATE_SOFTWARE_VERTEXPROCESSING,
                                 &parameters, deviceOut);
    }

    int before = FakeObjectsAlive();
    ComHandle<RecordingDirect3D> d3d = RecordingDirect3D::Standalone();
};

} // namespace

TEST_F(RecordingDirect3DTest, RecordsEveryQuery)
{
    D3DDISPLAYMODE mode = {};
    D3DADAPTER_IDENTIFIER9 identifier = {};
    EXPECT_EQ(d3d->GetAdapterCount(), 1u);
    EXPECT_EQ(d3d->GetAdapterIdentifier(0, 0, &identifier), D3D_OK);
    EXPECT_EQ(d3d->GetAdapterModeCount(0, D3DFMT_R5G6B5), 2u);
    EXPECT_EQ(d3d->EnumAdapterModes(0, D3DFMT_X8R8G8B8, 1, &mode), D3D_OK);
    EXPECT_EQ(mode.Width, 1024u);
    EXPECT_EQ(d3d->GetAdapterDisplayMode(0, &mode), D3D_OK);
    EXPECT_EQ(d3d->CheckDeviceFormat(0, D3DDEVTYPE_HAL, D3DFMT_X8R8G8B8, D3DUSAGE_RENDERTARGET,
                                     D3DRTYPE_TEXTURE, D3DFMT_DXT1),
              D3D_OK);
    EXPECT_THAT(d3d->Lines(),
                ElementsAre("GetAdapterCount", "GetAdapterIdentifier 0 0x0",
                            "GetAdapterModeCount 0 D3DFMT_R5G6B5",
                            "EnumAdapterModes 0 D3DFMT_X8R8G8B8 1", "GetAdapterDisplayMode 0",
                            "CheckDeviceFormat 0 D3DDEVTYPE_HAL D3DFMT_X8R8G8B8 "
                            "D3DUSAGE_RENDERTARGET D3DRTYPE_TEXTURE D3DFMT_DXT1"));
}

TEST_F(RecordingDirect3DTest, DevicesWriteIntoTheSameRecorder)
{
    IDirect3DDevice9* device = nullptr;
    ASSERT_EQ(CreateDevice(&device), D3D_OK);
    device->BeginScene();
    IDirect3D9* maker = nullptr;
    EXPECT_EQ(device->GetDirect3D(&maker), D3D_OK);
    EXPECT_EQ(maker, d3d.get());
    maker->Release();
    const auto recorder = d3d->Recorder();
    d3d.reset(); // the device keeps it alive
    EXPECT_EQ(device->Release(), 0u);
    EXPECT_THAT(recorder->Lines(),
                ElementsAre(StartsWith("CreateDevice 0 D3DDEVTYPE_HAL null "
                                       "D3DCREATE_SOFTWARE_VERTEXPROCESSING BackBufferWidth=64 "
                                       "BackBufferHeight=32 BackBufferFormat=D3DFMT_X8R8G8B8 "),
                            "BeginScene", "GetDirect3D -> direct3d#1"));
    EXPECT_THAT(recorder->Lines()[0], EndsWith(" -> device#1"));
}

TEST_F(RecordingDirect3DTest, FailsByOrder)
{
    static const struct {
        const char* name;
        HRESULT result;
    } orders[] = {{"GetAdapterDisplayMode", D3DERR_NOTAVAILABLE},
                  {"EnumAdapterModes", D3DERR_INVALIDCALL},
                  {"CheckDeviceFormat", D3DERR_NOTAVAILABLE},
                  {"GetDeviceCaps", D3DERR_INVALIDDEVICE},
                  {"CreateDevice", D3DERR_OUTOFVIDEOMEMORY}};
    for (const auto& order : orders)
        d3d->FailNext(order.name, order.result);
    D3DDISPLAYMODE mode = {};
    D3DCAPS9 caps = {};
    IDirect3DDevice9* device = nullptr;
    EXPECT_EQ(d3d->GetAdapterDisplayMode(0, &mode), D3DERR_NOTAVAILABLE);
    EXPECT_EQ(d3d->EnumAdapterModes(0, D3DFMT_X8R8G8B8, 0, &mode), D3DERR_INVALIDCALL);
    EXPECT_EQ(
        d3d->CheckDeviceFormat(0, D3DDEVTYPE_HAL, D3DFMT_X8R8G8B8, 0, D3DRTYPE_TEXTURE, D3DFMT_L8),
        D3DERR_NOTAVAILABLE);
    EXPECT_EQ(d3d->GetDeviceCaps(0, D3DDEVTYPE_HAL, &caps), D3DERR_INVALIDDEVICE);
    EXPECT_EQ(CreateDevice(&device), D3DERR_OUTOFVIDEOMEMORY);
    EXPECT_EQ(device, nullptr);
    EXPECT_EQ(d3d->Recorder()->FailuresLeft(), 0u);
}

TEST_F(RecordingDirect3DTest, OneFormatCanBeRefused)
{
    d3d->FailAlways("CheckDeviceFormat", D3DERR_NOTAVAILABLE, "D3DFMT_DXT1");
    const auto check = [&](D3DFORMAT format) {
        return d3d->CheckDeviceFormat(0, D3DDEVTYPE_HAL, D3DFMT_X8R8G8B8, 0, D3DRTYPE_TEXTURE,
                                      format);
    };
    EXPECT_EQ(check(D3DFMT_DXT1), D3DERR_NOTAVAILABLE);
    EXPECT_EQ(check(D3DFMT_DXT3), D3D_OK);
    EXPECT_EQ(check(D3DFMT_DXT1), D3DERR_NOTAVAILABLE);
}

TEST_F(RecordingDirect3DTest, AdaptersAreWhatTheTestSays)
{
    d3d->OverrideAdapters({{.description = "first"},
                           {.description = "second",
                            .desktop = {800, 600, 75, D3DFMT_R5G6B5},
                            .modes = {{800, 600, 75, D3DFMT_R5G6B5}}}});
    EXPECT_EQ(d3d->GetAdapterCount(), 2u);
    D3DADAPTER_IDENTIFIER9 identifier = {};
    EXPECT_EQ(d3d->GetAdapterIdentifier(1, 0, &identifier), D3D_OK);
    EXPECT_STREQ(identifier.Description, "second");
    EXPECT_EQ(d3d->GetAdapterIdentifier(2, 0, &identifier), D3DERR_INVALIDCALL);
    EXPECT_EQ(d3d->GetAdapterModeCount(1, D3DFMT_X8R8G8B8), 0u);
    EXPECT_EQ(d3d->GetAdapterModeCount(1, D3DFMT_R5G6B5), 1u);
    EXPECT_EQ(d3d->GetAdapterModeCount(2, D3DFMT_R5G6B5), 0u);
    D3DDISPLAYMODE mode = {};
    EXPECT_EQ(d3d->EnumAdapterModes(1, D3DFMT_R5G6B5, 0, &mode), D3D_OK);
    EXPECT_EQ(mode.RefreshRate, 75u);
    EXPECT_EQ(d3d->EnumAdapterModes(1, D3DFMT_R5G6B5, 1, &mode), D3DERR_INVALIDCALL);
    EXPECT_EQ(d3d->GetAdapterDisplayMode(1, &mode), D3D_OK);
    EXPECT_EQ(mode.Width, 800u);
    EXPECT_EQ(d3d->GetAdapterDisplayMode(2, &mode), D3DERR_INVALIDCALL);
}

TEST_F(RecordingDirect3DTest, CapsReachTheDevicesMadeLater)
{
    D3DCAPS9 caps = {};
    caps.MaxPointSize = 3.0f;
    d3d->OverrideCaps(caps);
    D3DCAPS9 told = {};
    EXPECT_EQ(d3d->GetDeviceCaps(0, D3DDEVTYPE_REF, &told), D3D_OK);
    EXPECT_EQ(told.MaxPointSize, 3.0f);
    EXPECT_EQ(told.DeviceType, D3DDEVTYPE_REF);
    IDirect3DDevice9* device = nullptr;
    ASSERT_EQ(CreateDevice(&device), D3D_OK);
    EXPECT_EQ(device->GetDeviceCaps(&told), D3D_OK);
    EXPECT_EQ(told.MaxPointSize, 3.0f);
    device->Release();
}
