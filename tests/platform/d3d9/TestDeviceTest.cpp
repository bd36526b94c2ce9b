#include "tests/support/TestDevice.h"

#include "tests/support/InterfaceIds.h"
#include "tests/support/RecordingDirect3D.h"

#include <d3dx9.h>
#include <gmock/gmock.h>

// The test device itself, and the recording objects wrapped around the host's real device.

using testing::Contains;
using testing::ElementsAre;
using testing::StartsWith;

TEST(TestDevice, ReadsItsBackBufferBack)
{
    const TestDevice device;
    ASSERT_TRUE(device);
    const D3DRECT corner = {0, 0, 2, 1};
    device->Clear(0, nullptr, D3DCLEAR_TARGET, 0x00102030, 1.0f, 0);
    device->Clear(1, &corner, D3DCLEAR_TARGET, 0x00FF8040, 1.0f, 0);
    const std::vector<DWORD> pixels = device.ReadBackBuffer();
    ASSERT_EQ(pixels.size(), 64u * 64u);
    EXPECT_EQ(pixels[0], 0xFFFF8040);
    EXPECT_EQ(pixels[1], 0xFFFF8040);
    EXPECT_EQ(pixels[2], 0xFF102030);
    EXPECT_EQ(pixels[64], 0xFF102030);
    EXPECT_EQ(pixels[64 * 64 - 1], 0xFF102030);
}

TEST(TestDevice, TwoMayLiveAtOnce)
{
    const TestDevice first(16, 8);
    const TestDevice second(32, 32);
    ASSERT_TRUE(first && second);
    first->Clear(0, nullptr, D3DCLEAR_TARGET, 0x00000001, 1.0f, 0);
    second->Clear(0, nullptr, D3DCLEAR_TARGET, 0x00000002, 1.0f, 0);
    EXPECT_EQ(first.ReadBackBuffer(), std::vector<DWORD>(16 * 8, 0xFF000001));
    EXPECT_EQ(second.ReadBackBuffer(), std::vector<DWORD>(32 * 32, 0xFF000002));
}

TEST(TestDevice, HasTheDepthBufferItWasAskedFor)
{
    const TestDevice device;
    ASSERT_TRUE(device);
    IDirect3DSurface9* surface = nullptr;
    ASSERT_EQ(device->GetDepthStencilSurface(&surface), D3D_OK);
    const ComHandle<IDirect3DSurface9> depth(surface);
    D3DSURFACE_DESC desc = {};
    depth->GetDesc(&desc);
    EXPECT_EQ(desc.Format, D3DFMT_D16);
    EXPECT_EQ(desc.Width, 64u);
}

TEST(RealInterfaces, AnswerToTheIdsOfTheTestObjects)
{
    const TestDevice device;
    ASSERT_TRUE(device);
    IDirect3DVertexBuffer9* vertices = nullptr;
    IDirect3DIndexBuffer9* indices = nullptr;
    IDirect3DTexture9* texture = nullptr;
    IDirect3DSurface9* surface = nullptr;
    device->CreateVertexBuffer(12, 0, 0, D3DPOOL_DEFAULT, &vertices, nullptr);
    device->CreateIndexBuffer(6, 0, D3DFMT_INDEX16, D3DPOOL_DEFAULT, &indices, nullptr);
    device->CreateTexture(4, 4, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED, &texture, nullptr);
    device->CreateOffscreenPlainSurface(4, 4, D3DFMT_A8R8G8B8, D3DPOOL_SYSTEMMEM, &surface,
                                        nullptr);
    const ComHandle<IUnknown> made[] = {ComHandle<IUnknown>(vertices), ComHandle<IUnknown>(indices),
                                        ComHandle<IUnknown>(texture), ComHandle<IUnknown>(surface)};
    const struct {
        const char* what;
        IUnknown* object;
        GUID id;
    } cases[] = {
        {"Direct3D", device.Direct3D(), kDirect3DId},
        {"device", device.Device(), kDeviceId},
        {"vertex buffer", vertices, kVertexBufferId},
        {"index buffer", indices, kIndexBufferId},
        {"texture", texture, kTextureId},
        {"base texture", texture, kBaseTextureId},
        {"resource", texture, kResourceId},
        {"surface", surface, kSurfaceId},
        {"unknown", surface, kUnknownId},
    };
    for (const auto& c : cases) {
        ASSERT_NE(c.object, nullptr) << c.what;
        void* found = nullptr;
        EXPECT_EQ(c.object->QueryInterface(c.id, &found), S_OK) << c.what;
        const ComHandle<IUnknown> reference(static_cast<IUnknown*>(found));
        EXPECT_EQ(found, c.object) << c.what;
    }
}

TEST(RecordingRealDevice, CallsReachTheDevice)
{
    const TestDevice device;
    ASSERT_TRUE(device);
    const auto recording = RecordingDevice::Wrap(device.Device());
    recording->Clear(0, nullptr, D3DCLEAR_TARGET, 0x00ABCDEF, 1.0f, 0);
    recording->SetRenderState(D3DRS_CULLMODE, D3DCULL_CW);
    DWORD mode = 0;
    device->GetRenderState(D3DRS_CULLMODE, &mode);
    EXPECT_EQ(mode, static_cast<DWORD>(D3DCULL_CW));
    EXPECT_EQ(device.ReadBackBuffer(), std::vector<DWORD>(64 * 64, 0xFFABCDEF));
    EXPECT_THAT(recording->Lines(), ElementsAre("Clear 0 rects D3DCLEAR_TARGET 0x00ABCDEF 1 0",
                                                "SetRenderState D3DRS_CULLMODE D3DCULL_CW"));
}

TEST(RecordingRealDevice, OrderedFailuresDoNotReachTheDevice)
{
    const TestDevice device;
    ASSERT_TRUE(device);
    const auto recording = RecordingDevice::Wrap(device.Device());
    recording->Clear(0, nullptr, D3DCLEAR_TARGET, 0x00000011, 1.0f, 0);
    recording->FailNext("Clear", D3DERR_INVALIDCALL);
    EXPECT_EQ(recording->Clear(0, nullptr, D3DCLEAR_TARGET, 0x00000022, 1.0f, 0),
              D3DERR_INVALIDCALL);
    EXPECT_EQ(device.ReadBackBuffer()[0], 0xFF000011);
    recording->FailNext("Present", D3DERR_DEVICELOST);
    EXPECT_EQ(recording->Present(nullptr, nullptr, nullptr, nullptr), D3DERR_DEVICELOST);
    EXPECT_EQ(recording->Present(nullptr, nullptr, nullptr, nullptr), D3D_OK);
}

TEST(RecordingRealDevice, ObjectsBelongToTheWrappedDevice)
{
    const TestDevice device;
    ASSERT_TRUE(device);
    const auto recording = RecordingDevice::Wrap(device.Device());
    IDirect3DTexture9* made = nullptr;
    ASSERT_EQ(
        recording->CreateTexture(4, 4, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED, &made, nullptr),
        D3D_OK);
    const ComHandle<IDirect3DTexture9> texture(made);
    IDirect3DDevice9* owner = nullptr;
    EXPECT_EQ(texture->GetDevice(&owner), D3D_OK);
    const ComHandle<IDirect3DDevice9> held(owner);
    EXPECT_EQ(owner, device.Device());
}

TEST(RecordingRealDevice, CallsOfD3DXAreNoted)
{
    const TestDevice device;
    ASSERT_TRUE(device);
    const auto recording = RecordingDevice::Wrap(device.Device());
    IDirect3DTexture9* made = nullptr;
    ASSERT_EQ(
        D3DXCreateTexture(recording.get(), 8, 4, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED, &made),
        D3D_OK);
    const ComHandle<IDirect3DTexture9> texture(made);
    EXPECT_THAT(recording->Lines(),
                Contains("CreateTexture 8 4 1 0 D3DFMT_A8R8G8B8 D3DPOOL_MANAGED -> texture#1"));
}

TEST(RecordingFakeDirect3D, ItsDevicesServeD3DX)
{
    const int before = FakeObjectsAlive();
    auto d3d = RecordingDirect3D::Standalone();
    D3DPRESENT_PARAMETERS parameters = {};
    parameters.BackBufferWidth = 64;
    parameters.BackBufferHeight = 64;
    parameters.BackBufferFormat = D3DFMT_X8R8G8B8;
    IDirect3DDevice9* device = nullptr;
    ASSERT_EQ(d3d->CreateDevice(0, D3DDEVTYPE_HAL, nullptr, D3DCREATE_SOFTWARE_VERTEXPROCESSING,
                                &parameters, &device),
              D3D_OK);
    IDirect3DTexture9* texture = nullptr;
    ASSERT_EQ(D3DXCreateTexture(device, 8, 4, 1, 0, D3DFMT_R5G6B5, D3DPOOL_MANAGED, &texture),
              D3D_OK);
    D3DSURFACE_DESC desc = {};
    EXPECT_EQ(texture->GetLevelDesc(0, &desc), D3D_OK);
    EXPECT_EQ(desc.Format, D3DFMT_R5G6B5);
    EXPECT_EQ(desc.Height, 4u);
    texture->Release();
    device->Release();
    d3d.reset();
    EXPECT_EQ(FakeObjectsAlive(), before);
}

TEST(RecordingRealDirect3D, MakesARecordingDeviceThatLeavesNothingBehind)
{
    const TestDevice frame; // for its window and parameters
    ASSERT_TRUE(frame);
    auto recording = RecordingDirect3D::Wrap(frame.Direct3D());
    const auto recorder = recording->Recorder();
    recording->OverrideAdapters({{.description = "first"}, {.description = "second"}});
    D3DPRESENT_PARAMETERS parameters = frame.Parameters();
    IDirect3DDevice9* device = nullptr;
    // Adapter 1 exists only for the test; the device is created on the default one.
    ASSERT_EQ(recording->CreateDevice(1, D3DDEVTYPE_HAL, frame.Window(),
                                      D3DCREATE_HARDWARE_VERTEXPROCESSING, &parameters, &device),
              D3D_OK);
    D3DCAPS9 caps = {};
    EXPECT_EQ(recording->GetDeviceCaps(1, D3DDEVTYPE_HAL, &caps), D3D_OK);
    EXPECT_GE(caps.MaxTextureBlendStages, 2u);
    EXPECT_EQ(device->Clear(0, nullptr, D3DCLEAR_TARGET, 0, 1.0f, 0), D3D_OK);
    recording.reset();
    EXPECT_EQ(device->Release(), 0u);
    EXPECT_THAT(recorder->Lines(),
                ElementsAre(StartsWith("CreateDevice 1 D3DDEVTYPE_HAL window "
                                       "D3DCREATE_HARDWARE_VERTEXPROCESSING BackBufferWidth=64 "),
                            "GetDeviceCaps 1 D3DDEVTYPE_HAL",
                            "Clear 0 rects D3DCLEAR_TARGET 0x00000000 1 0"));
}
