#pragma once

#include "tests/support/ComHandle.h"
#include "tests/support/HiddenWindow.h"

#include <d3d9.h>

#include <vector>

/// A hidden window with a device on it, for tests that need a real one: windowed, X8R8G8B8, a depth
/// buffer D16. The destructor releases device and `IDirect3D9` and then destroys the window; all
/// other references to the device must be gone by then (a process that ends with a live device may
/// end badly).
class TestDevice {
public:
    /// Sizes are those of the back buffer in pixels. Fails the test if there is no device.
    explicit TestDevice(UINT width = 64, UINT height = 64,
                        DWORD behaviorFlags = D3DCREATE_HARDWARE_VERTEXPROCESSING);

    HWND Window() const { return window.Handle(); }
    /// Null if the constructor failed, as are the other two.
    IDirect3D9* Direct3D() const { return d3d.get(); }
    IDirect3DDevice9* Device() const { return device.get(); }
    IDirect3DDevice9* operator->() const { return device.get(); }
    explicit operator bool() const { return device != nullptr; }

    /// What the device was made with.
    const D3DPRESENT_PARAMETERS& Parameters() const { return parameters; }

    /// The back buffer's pixels, 0xAARRGGBB row by row from the top, alpha 255 throughout. Empty,
    /// and the test fails, if it can not be read.
    std::vector<DWORD> ReadBackBuffer() const;

private:
    HiddenWindow window; // goes last
    ComHandle<IDirect3D9> d3d;
    ComHandle<IDirect3DDevice9> device;
    D3DPRESENT_PARAMETERS parameters = {};
};

/// The pixels of a render target of `device` in X8R8G8B8 or A8R8G8B8 as 0xAARRGGBB, row by row from
/// the top; alpha is 255 for a format without it. Empty if it can not be read.
std::vector<DWORD> ReadRenderTarget(IDirect3DDevice9* device, IDirect3DSurface9* renderTarget);
