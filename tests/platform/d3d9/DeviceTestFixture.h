#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include <d3d9.h>
#include <gtest/gtest.h>

// A window and a device for tests on either host. Everything is released on every exit from a test:
// a device still alive at the end of the process can crash it on the Windows host.

/// Owns one reference to a reference-counted object.
template <typename Interface>
class Com {
public:
    Com() = default;
    ~Com() { Release(); }
    Com(Com&& other) noexcept : object(std::exchange(other.object, nullptr)) {}
    Com& operator=(Com&& other) noexcept
    {
        std::swap(object, other.object);
        return *this;
    }

    Interface* Get() const { return object; }
    Interface* operator->() const { return object; }
    explicit operator bool() const { return object != nullptr; }

    /// For operations that return a reference; releases the current one first.
    Interface** Out()
    {
        Release();
        return &object;
    }

    /// Releases the reference early; returns the remaining count.
    ULONG Release()
    {
        Interface* last = std::exchange(object, nullptr);
        return last ? last->Release() : 0;
    }

private:
    Interface* object = nullptr;
};

/// The number of references, found by adding one.
template <typename Interface>
ULONG ReferenceCount(Interface* object)
{
    object->AddRef();
    return object->Release();
}

/// A hidden window that is destroyed with the test.
class TestWindow {
public:
    TestWindow(int width, int height, const char* title = "Device test");
    ~TestWindow();
    TestWindow(const TestWindow&) = delete;
    TestWindow& operator=(const TestWindow&) = delete;
    HWND Get() const { return window; }

private:
    HWND window;
};

/// Windowed, 64 by 48 pixels of X8R8G8B8, with a 16-bit depth buffer.
D3DPRESENT_PARAMETERS WindowedParameters(HWND window);

/// The references to `d3d` but the caller's. Test programs of a host may share one object.
ULONG OtherReferences(IDirect3D9* d3d);

/// A device with `WindowedParameters`. At the end of a test nothing may still hold it.
class DeviceTest : public testing::Test {
protected:
    explicit DeviceTest(DWORD vertexProcessing = D3DCREATE_SOFTWARE_VERTEXPROCESSING);
    void SetUp() override;
    void TearDown() override;

    /// A surface in system memory, filled row by row if `pixels` are given (32-bit formats only).
    Com<IDirect3DSurface9> SystemSurface(UINT width, UINT height,
                                         const std::vector<uint32_t>& pixels = {},
                                         D3DFORMAT format = D3DFMT_A8R8G8B8);
    /// A render target that cannot be locked.
    Com<IDirect3DSurface9> Target(UINT width, UINT height, D3DFORMAT format = D3DFMT_A8R8G8B8);
    Com<IDirect3DTexture9> Texture(UINT width, UINT height, UINT levels, D3DPOOL pool,
                                   DWORD usage = 0, D3DFORMAT format = D3DFMT_A8R8G8B8);
    /// All pixels of a render target of a 32-bit format, row by row.
    std::vector<uint32_t> Read(IDirect3DSurface9* target);
    /// All pixels of the device's current target, with the X byte masked out.
    std::vector<uint32_t> ReadBackBuffer();

    TestWindow window{320, 240};
    D3DPRESENT_PARAMETERS parameters = {};
    Com<IDirect3D9> d3d;
    Com<IDirect3DDevice9> device;

private:
    const DWORD behaviour;
    ULONG otherReferences = 0;
};
