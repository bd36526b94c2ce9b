#include "tests/platform/d3d9/DeviceTestFixture.h"

#include <cstring>

namespace {

const char* TestWindowClass()
{
    static const char kName[] = "Direct3DTest";
    static const bool registered = [] {
        WNDCLASSEXA record = {};
        record.cbSize = sizeof record;
        record.lpfnWndProc = DefWindowProcA;
        record.lpszClassName = kName;
        return RegisterClassExA(&record) != 0;
    }();
    EXPECT_TRUE(registered);
    return kName;
}

} // namespace

TestWindow::TestWindow(int width, int height, const char* title)
    : window(CreateWindowExA(0, TestWindowClass(), title, WS_OVERLAPPEDWINDOW, 0, 0, width, height,
                             nullptr, nullptr, nullptr, nullptr))
{}

TestWindow::~TestWindow()
{
    DestroyWindow(window);
}

D3DPRESENT_PARAMETERS WindowedParameters(HWND window)
{
    D3DPRESENT_PARAMETERS parameters = {};
    parameters.BackBufferWidth = 64;
    parameters.BackBufferHeight = 48;
    parameters.BackBufferFormat = D3DFMT_X8R8G8B8;
    parameters.BackBufferCount = 1;
    parameters.SwapEffect = D3DSWAPEFFECT_FLIP;
    parameters.hDeviceWindow = window;
    parameters.Windowed = TRUE;
    parameters.EnableAutoDepthStencil = TRUE;
    parameters.AutoDepthStencilFormat = D3DFMT_D16;
    return parameters;
}

ULONG OtherReferences(IDirect3D9* d3d)
{
    d3d->AddRef();
    return d3d->Release() - 1;
}

DeviceTest::DeviceTest(DWORD vertexProcessing) : behaviour(vertexProcessing)
{}

void DeviceTest::SetUp()
{
    *d3d.Out() = Direct3DCreate9(D3D_SDK_VERSION);
    ASSERT_TRUE(d3d);
    otherReferences = OtherReferences(d3d.Get());
    parameters = WindowedParameters(window.Get());
    ASSERT_EQ(d3d->CreateDevice(D3DADAPTER_DEFAULT, D3DDEVTYPE_HAL, window.Get(), behaviour,
                                &parameters, device.Out()),
              D3D_OK);
}

void DeviceTest::TearDown()
{
    EXPECT_EQ(device.Release(), 0u) << "references to the device or its children are left";
    EXPECT_EQ(d3d.Release(), otherReferences) << "references to the interface are left";
}

Com<IDirect3DSurface9> DeviceTest::SystemSurface(UINT width, UINT height,
                                                 const std::vector<uint32_t>& pixels,
                                                 D3DFORMAT format)
{
    Com<IDirect3DSurface9> surface;
    EXPECT_EQ(device->CreateOffscreenPlainSurface(width, height, format, D3DPOOL_SYSTEMMEM,
                                                  surface.Out(), nullptr),
              D3D_OK);
    D3DLOCKED_RECT locked = {};
    if (!surface || pixels.empty() || FAILED(surface->LockRect(&locked, nullptr, 0)))
        return surface;
    for (UINT y = 0; y < height; ++y)
        std::memcpy(static_cast<uint8_t*>(locked.pBits) +
                        size_t{y} * static_cast<UINT>(locked.Pitch),
                    pixels.data() + size_t{y} * width, size_t{width} * 4);
    EXPECT_EQ(surface->UnlockRect(), D3D_OK);
    return surface;
}

Com<IDirect3DSurface9> DeviceTest::Target(UINT width, UINT height, D3DFORMAT format)
{
    Com<IDirect3DSurface9> surface;
    EXPECT_EQ(device->CreateRenderTarget(width, height, format, D3DMULTISAMPLE_NONE, 0, FALSE,
                                         surface.Out(), nullptr),
              D3D_OK);
    return surface;
}

Com<IDirect3DTexture9> DeviceTest::Texture(UINT width, UINT height, UINT levels, D3DPOOL pool,
                                           DWORD usage, D3DFORMAT format)
{
    Com<IDirect3DTexture9> texture;
    EXPECT_EQ(
        device->CreateTexture(width, height, levels, usage, format, pool, texture.Out(), nullptr),
        D3D_OK);
    return texture;
}

std::vector<uint32_t> DeviceTest::Read(IDirect3DSurface9* target)
{
    D3DSURFACE_DESC desc = {};
    EXPECT_EQ(target->GetDesc(&desc), D3D_OK);
    const Com<IDirect3DSurface9> copy = SystemSurface(desc.Width, desc.Height, {}, desc.Format);
    EXPECT_EQ(device->GetRenderTargetData(target, copy.Get()), D3D_OK);
    std::vector<uint32_t> pixels(size_t{desc.Width} * desc.Height);
    D3DLOCKED_RECT locked = {};
    if (FAILED(copy->LockRect(&locked, nullptr, D3DLOCK_READONLY)))
        return {};
    for (UINT y = 0; y < desc.Height; ++y)
        std::memcpy(pixels.data() + size_t{y} * desc.Width,
                    static_cast<const uint8_t*>(locked.pBits) +
                        size_t{y} * static_cast<UINT>(locked.Pitch),
                    size_t{desc.Width} * 4);
    EXPECT_EQ(copy->UnlockRect(), D3D_OK);
    return pixels;
}

std::vector<uint32_t> DeviceTest::ReadBackBuffer()
{
    Com<IDirect3DSurface9> backBuffer;
    EXPECT_EQ(device->GetBackBuffer(0, 0, D3DBACKBUFFER_TYPE_MONO, backBuffer.Out()), D3D_OK);
    std::vector<uint32_t> pixels = Read(backBuffer.Get());
    for (uint32_t& pixel : pixels)
        pixel &= 0x00FFFFFF;
    return pixels;
}
