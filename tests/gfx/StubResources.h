#pragma once

#include <vector>

#include "tests/support/FakeResources.h"

// Device resources with bytes and results chosen by a test. They belong to no device.

class StubSurface : public FakeResource<IDirect3DSurface9> {
public:
    /// `bytes` are the pixels, rows of `pitch` bytes.
    StubSurface(D3DFORMAT format, UINT width, UINT height, int pitchBytes,
                std::vector<uint8_t> pixels)
        : FakeResource(nullptr, false),
          pitch(pitchBytes),
          bytes(std::move(pixels))
    {
        desc.Format = format;
        desc.Width = width;
        desc.Height = height;
    }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** objectOut) override
    {
        *objectOut = nullptr;
        return E_NOINTERFACE;
    }
    D3DRESOURCETYPE STDMETHODCALLTYPE GetType() override { return D3DRTYPE_SURFACE; }
    HRESULT STDMETHODCALLTYPE GetContainer(REFIID, void**) override { return D3DERR_INVALIDCALL; }
    HRESULT STDMETHODCALLTYPE GetDesc(D3DSURFACE_DESC* descOut) override
    {
        *descOut = desc;
        return descResult;
    }
    /// The bytes of a rectangle start with its own top left pixel, for formats of `rectPixelBytes`.
    HRESULT STDMETHODCALLTYPE LockRect(D3DLOCKED_RECT* lockedOut, const RECT* rect, DWORD) override
    {
        const int skipped = rect ? rect->top * pitch + rect->left * rectPixelBytes : 0;
        *lockedOut = {pitch, bytes.data() + skipped};
        return lockResult;
    }
    HRESULT STDMETHODCALLTYPE UnlockRect() override { return unlockResult; }
    HRESULT STDMETHODCALLTYPE GetDC(HDC*) override { return D3DERR_INVALIDCALL; }
    HRESULT STDMETHODCALLTYPE ReleaseDC(HDC) override { return D3DERR_INVALIDCALL; }

    D3DSURFACE_DESC desc{};
    int pitch;
    int rectPixelBytes = 4;
    std::vector<uint8_t> bytes;
    HRESULT descResult = D3D_OK;
    HRESULT lockResult = D3D_OK;
    HRESULT unlockResult = D3D_OK;
};

/// A texture of one level.
class StubTexture : public FakeResource<IDirect3DTexture9> {
public:
    static constexpr int kObjects = 2; ///< it and its level count as alive

    StubTexture(D3DFORMAT format, UINT width, UINT height, int pitch, std::vector<uint8_t> pixels)
        : FakeResource(nullptr, false),
          surface(format, width, height, pitch, std::move(pixels))
    {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** objectOut) override
    {
        *objectOut = nullptr;
        return E_NOINTERFACE;
    }
    D3DRESOURCETYPE STDMETHODCALLTYPE GetType() override { return D3DRTYPE_TEXTURE; }
    DWORD STDMETHODCALLTYPE SetLOD(DWORD) override { return 0; }
    DWORD STDMETHODCALLTYPE GetLOD() override { return 0; }
    DWORD STDMETHODCALLTYPE GetLevelCount() override { return 1; }
    HRESULT STDMETHODCALLTYPE SetAutoGenFilterType(D3DTEXTUREFILTERTYPE) override
    {
        return D3DERR_INVALIDCALL;
    }
    D3DTEXTUREFILTERTYPE STDMETHODCALLTYPE GetAutoGenFilterType() override { return D3DTEXF_NONE; }
    void STDMETHODCALLTYPE GenerateMipSubLevels() override {}
    HRESULT STDMETHODCALLTYPE GetLevelDesc(UINT, D3DSURFACE_DESC* descOut) override
    {
        return surface.GetDesc(descOut);
    }
    HRESULT STDMETHODCALLTYPE GetSurfaceLevel(UINT, IDirect3DSurface9**) override
    {
        return D3DERR_INVALIDCALL;
    }
    HRESULT STDMETHODCALLTYPE LockRect(UINT, D3DLOCKED_RECT* lockedOut, const RECT* rect,
                                       DWORD flags) override
    {
        return surface.LockRect(lockedOut, rect, flags);
    }
    HRESULT STDMETHODCALLTYPE UnlockRect(UINT) override { return surface.UnlockRect(); }
    HRESULT STDMETHODCALLTYPE AddDirtyRect(const RECT*) override { return D3D_OK; }

    StubSurface surface;
};

/// A vertex buffer that cannot be locked.
class BrokenVertexBuffer : public FakeResource<IDirect3DVertexBuffer9> {
public:
    BrokenVertexBuffer() : FakeResource(nullptr, false) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** objectOut) override
    {
        *objectOut = nullptr;
        return E_NOINTERFACE;
    }
    D3DRESOURCETYPE STDMETHODCALLTYPE GetType() override { return D3DRTYPE_VERTEXBUFFER; }
    HRESULT STDMETHODCALLTYPE Lock(UINT, UINT, void** dataOut, DWORD) override
    {
        *dataOut = nullptr;
        return D3DERR_OUTOFVIDEOMEMORY;
    }
    HRESULT STDMETHODCALLTYPE Unlock() override { return D3DERR_INVALIDCALL; }
    HRESULT STDMETHODCALLTYPE GetDesc(D3DVERTEXBUFFER_DESC*) override { return D3DERR_INVALIDCALL; }
};
