#pragma once

#include "tests/support/ComHandle.h"
#include "tests/support/HiddenWindow.h"

#include <d3d9.h>

#include <vector>

/// A hidden window with a device on it, for tests that need a real one: windowed, X8R8G8B8, a D16
/// depth buffer. The destructor releases the device and `IDirect3D9` and then destroys the window;
/// all other references to the device must be gone by then (a process that ends with a live device
/// may not end cleanly).
class TestDevice {
public:
    /// Sizes are those of the back buffer in pixels. Fails the test if no device can be created.
    explicit TestDevice(UINT width = 64, UINT height = 64,
                        DWORD behaviorFlags = D3DCREATE_HARDWARE_VERTEXPROCESSING);

    HWND Window() const { return window.Handle(); }
    /// Null if the constructor failed, as are the other two.
    IDirect3D9* Direct3D() const { return d3d.get(); }
    IDirect3DDevice9* Device() const { return device.get(); }
    IDirect3DDevice9* operator->() const { return device.get(); }
    explicit operator bool() const { return device != nullptr; }

    /// The parameters that the device was created with.
    const D3DPRESENT_PARAMETERS& Parameters() const { return parameters; }

    /// The back buffer's pixels, 0xAARRGGBB row by row from the top, alpha always 255. Empty, and
    /// the test fails, if it cannot be read.
    std::vector<DWORD> ReadBackBuffer() const;

private:
    HiddenWindow window; // destroyed last
    ComHandle<IDirect3D9> d3d;
    ComHandle<IDirect3DDevice9> device;
    D3DPRESENT_PARAMETERS parameters = {};
};

/// The pixels of a render target of `device` in X8R8G8B8 or A8R8G8B8 as 0xAARRGGBB, row by row from
/// the top; alpha is 255 if the format has none. Empty if it cannot be read.
std::vector<DWORD> ReadRenderTarget(IDirect3DDevice9* device, IDirect3DSurface9* renderTarget);
