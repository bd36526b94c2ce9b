#include "tests/support/TestDevice.h"

#include <cstring>
#include <gtest/gtest.h>

TestDevice::TestDevice(UINT width, UINT height, DWORD behaviorFlags)
    : window(static_cast<int>(width), static_cast<int>(height)),
      d3d(Direct3DCreate9(D3D_SDK_VERSION))
{
    parameters.BackBufferWidth = width;
    parameters.BackBufferHeight = height;
    parameters.BackBufferFormat = D3DFMT_X8R8G8B8;
    parameters.BackBufferCount = 1;
    parameters.SwapEffect = D3DSWAPEFFECT_DISCARD;
    parameters.hDeviceWindow = window.Handle();
    parameters.Windowed = TRUE;
    parameters.EnableAutoDepthStencil = TRUE;
    parameters.AutoDepthStencilFormat = D3DFMT_D16;
    IDirect3DDevice9* made = nullptr;
    if (window.Handle() && d3d)
        d3d->CreateDevice(D3DADAPTER_DEFAULT, D3DDEVTYPE_HAL, window.Handle(), behaviorFlags,
                          &parameters, &made);
    device.reset(made);
    EXPECT_TRUE(device) << "no test device";
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
    std::vector<DWORD> pixels(size_t{desc.Width} * desc.Height);
    for (UINT y = 0; y < desc.Height; ++y)
        std::memcpy(&pixels[size_t{y} * desc.Width],
                    static_cast<const BYTE*>(locked.pBits) + ptrdiff_t{locked.Pitch} * y,
                    desc.Width * sizeof(DWORD));
    copy->UnlockRect();
    if (desc.Format == D3DFMT_X8R8G8B8) {
        for (DWORD& pixel : pixels)
            pixel |= 0xFF000000;
    }
    return pixels;
}
