#include "tests/support/TestDevice.h"

#include <cstring>
#include <gtest/gtest.h>

namespace {

constexpr const char* kClassName = "QSA2QSB_TEST_DEVICE";

HWND CreateHiddenWindow(UINT width, UINT height)
{
    WNDCLASSEXA windowClass = {};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = DefWindowProcA;
    windowClass.hInstance = GetModuleHandleA(nullptr);
    windowClass.lpszClassName = kClassName;
    RegisterClassExA(&windowClass); // fails harmlessly while another test device lives
    // A pop-up has no frame, so its client area is as large as the window.
    return CreateWindowExA(0, kClassName, "test device", WS_POPUP, 0, 0, static_cast<int>(width),
                           static_cast<int>(height), nullptr, nullptr, windowClass.hInstance,
                           nullptr);
}

} // namespace

TestDevice::TestDevice(UINT width, UINT height, DWORD behaviorFlags)
    : window(CreateHiddenWindow(width, height)),
      d3d(Direct3DCreate9(D3D_SDK_VERSION))
{
    parameters.BackBufferWidth = width;
    parameters.BackBufferHeight = height;
    parameters.BackBufferFormat = D3DFMT_X8R8G8B8;
    parameters.BackBufferCount = 1;
    parameters.SwapEffect = D3DSWAPEFFECT_DISCARD;
    parameters.hDeviceWindow = window;
    parameters.Windowed = TRUE;
    parameters.EnableAutoDepthStencil = TRUE;
    parameters.AutoDepthStencilFormat = D3DFMT_D16;
    IDirect3DDevice9* made = nullptr;
    if (window && d3d)
        d3d->CreateDevice(D3DADAPTER_DEFAULT, D3DDEVTYPE_HAL, window, behaviorFlags, &parameters,
                          &made);
    device.reset(made);
    EXPECT_TRUE(device) << "no test device";
}

TestDevice::~TestDevice()
{
    device.reset();
    d3d.reset();
    if (window)
        DestroyWindow(window);
    UnregisterClassA(kClassName, GetModuleHandleA(nullptr));
}

std::vector<DWORD> TestDevice::ReadBackBuffer() const
{
    IDirect3DSurface9* surface = nullptr;
    if (device)
        device->GetBackBuffer(0, 0, D3DBACKBUFFER_TYPE_MONO, &surface);
    const ComHandle<IDirect3DSurface9> backBuffer(surface);
    std::vector<DWORD> pixels;
    if (backBuffer)
        pixels = ReadRenderTarget(device.get(), backBuffer.get());
    EXPECT_FALSE(pixels.empty()) << "the back buffer can not be read";
    return pixels;
}

std::vector<DWORD> ReadRenderTarget(IDirect3DDevice9* device, IDirect3DSurface9* renderTarget)
{
    D3DSURFACE_DESC desc = {};
    renderTarget->GetDesc(&desc);
    if (desc.Format != D3DFMT_X8R8G8B8 && desc.Format != D3DFMT_A8R8G8B8)
        return {};
    IDirect3DSurface9* made = nullptr;
    device->CreateOffscreenPlainSurface(desc.Width, desc.Height, desc.Format, D3DPOOL_SYSTEMMEM,
                                        &made, nullptr);
    const ComHandle<IDirect3DSurface9> copy(made);
    D3DLOCKED_RECT locked = {};
    if (!copy || FAILED(device->GetRenderTargetData(renderTarget, copy.get())) ||
        FAILED(copy->LockRect(&locked, nullptr, D3DLOCK_READONLY)))
        return {};
    std::vector<DWORD> pixels(std::size_t{desc.Width} * desc.Height);
    for (UINT y = 0; y < desc.Height; ++y)
        std::memcpy(&pixels[std::size_t{y} * desc.Width],
                    static_cast<const BYTE*>(locked.pBits) + std::ptrdiff_t{locked.Pitch} * y,
                    desc.Width * sizeof(DWORD));
    copy->UnlockRect();
    if (desc.Format == D3DFMT_X8R8G8B8) {
        for (DWORD& pixel : pixels)
            pixel |= 0xFF000000;
    }
    return pixels;
}
