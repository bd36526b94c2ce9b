#pragma once

#include "tests/support/FakeObject.h"

#include <vector>

/// The device as its resources see it.
class FakeResourceHost : public FakeObject<IDirect3DDevice9> {
public:
    /// Forgets a resource that is being destroyed. Bound resources are not referenced, or device
    /// and resource would keep each other alive.
    virtual void Unbind(const IUnknown* resource) = 0;

    /// What a lock of a surface or of a texture's level returns; after a failure nothing is locked.
    HRESULT lockResult = D3D_OK;
};

/// Common base of the fake resources. Private data is not stored; priorities are 0.
template <class Interface>
class FakeResource : public FakeObject<Interface> {
public:
    HRESULT STDMETHODCALLTYPE GetDevice(IDirect3DDevice9** deviceOut) override
    {
        *deviceOut = Shared<IDirect3DDevice9>(device).release();
        return device ? D3D_OK : D3DERR_INVALIDCALL;
    }
    HRESULT STDMETHODCALLTYPE SetPrivateData(REFGUID, const void*, DWORD, DWORD) override
    {
        return D3DERR_INVALIDCALL;
    }
    HRESULT STDMETHODCALLTYPE GetPrivateData(REFGUID, void*, DWORD*) override
    {
        return D3DERR_NOTFOUND;
    }
    HRESULT STDMETHODCALLTYPE FreePrivateData(REFGUID) override { return D3DERR_NOTFOUND; }
    DWORD STDMETHODCALLTYPE SetPriority(DWORD) override { return 0; }
    DWORD STDMETHODCALLTYPE GetPriority() override { return 0; }
    void STDMETHODCALLTYPE PreLoad() override {}

protected:
    /// A resource keeps its device alive, except for those that the device itself keeps.
    FakeResource(FakeResourceHost* deviceOfResource, bool keepsDevice)
        : device(deviceOfResource),
          kept(keepsDevice ? Shared(deviceOfResource) : nullptr)
    {}
    ~FakeResource() override
    {
        if (device)
            device->Unbind(this);
    }

    FakeResourceHost* device; // not owned; null once the device is gone

private:
    ComHandle<FakeResourceHost> kept;
};

/// A surface with its own pixels, initially zero.
class FakeSurface final : public FakeResource<IDirect3DSurface9> {
public:
    /// Null for a format without a known size or a side outside 1 to 8192.
    static ComHandle<FakeSurface> Create(FakeResourceHost* device, const D3DSURFACE_DESC& desc);
    /// For the device's own surfaces, which do not keep it alive.
    static ComHandle<FakeSurface> CreateImplicit(FakeResourceHost* device,
                                                 const D3DSURFACE_DESC& desc);
    /// A level of a texture: references to it are references to `container`, which owns it.
    static std::unique_ptr<FakeSurface>
    CreateLevel(FakeResourceHost* device, const D3DSURFACE_DESC& desc, IUnknown* container);

    void ForgetDevice() { device = nullptr; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** objectOut) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    D3DRESOURCETYPE STDMETHODCALLTYPE GetType() override { return D3DRTYPE_SURFACE; }
    HRESULT STDMETHODCALLTYPE GetContainer(REFIID iid, void** containerOut) override;
    HRESULT STDMETHODCALLTYPE GetDesc(D3DSURFACE_DESC* descOut) override;
    HRESULT STDMETHODCALLTYPE LockRect(D3DLOCKED_RECT* lockedOut, const RECT* rect,
                                       DWORD flags) override;
    HRESULT STDMETHODCALLTYPE UnlockRect() override;
    HRESULT STDMETHODCALLTYPE GetDC(HDC* dcOut) override;
    HRESULT STDMETHODCALLTYPE ReleaseDC(HDC dc) override;

private:
    FakeSurface(FakeResourceHost* deviceOfSurface, const D3DSURFACE_DESC& surfaceDesc,
                bool keepsDevice, IUnknown* containerOrNull);

    D3DSURFACE_DESC description;
    UINT pitch;
    std::vector<BYTE> bytes;
    IUnknown* container; // not owned, owns this; null for a stand-alone surface
    bool isLocked = false;
};

class FakeTexture final : public FakeResource<IDirect3DTexture9> {
public:
    /// 0 levels means the full chain. Null for what FakeSurface rejects, or too many levels.
    static ComHandle<FakeTexture> Create(FakeResourceHost* device, UINT width, UINT height,
                                         UINT levels, DWORD usage, D3DFORMAT format, D3DPOOL pool);

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** objectOut) override;
    D3DRESOURCETYPE STDMETHODCALLTYPE GetType() override { return D3DRTYPE_TEXTURE; }
    DWORD STDMETHODCALLTYPE SetLOD(DWORD) override { return 0; }
    DWORD STDMETHODCALLTYPE GetLOD() override { return 0; }
    DWORD STDMETHODCALLTYPE GetLevelCount() override;
    HRESULT STDMETHODCALLTYPE SetAutoGenFilterType(D3DTEXTUREFILTERTYPE) override { return D3D_OK; }
    D3DTEXTUREFILTERTYPE STDMETHODCALLTYPE GetAutoGenFilterType() override
    {
        return D3DTEXF_LINEAR;
    }
    void STDMETHODCALLTYPE GenerateMipSubLevels() override {}
    HRESULT STDMETHODCALLTYPE GetLevelDesc(UINT level, D3DSURFACE_DESC* descOut) override;
    HRESULT STDMETHODCALLTYPE GetSurfaceLevel(UINT level,
                                              IDirect3DSurface9** surfaceLevelOut) override;
    HRESULT STDMETHODCALLTYPE LockRect(UINT level, D3DLOCKED_RECT* lockedOut, const RECT* rect,
                                       DWORD flags) override;
    HRESULT STDMETHODCALLTYPE UnlockRect(UINT level) override;
    HRESULT STDMETHODCALLTYPE AddDirtyRect(const RECT*) override { return D3D_OK; }

private:
    explicit FakeTexture(FakeResourceHost* deviceOfTexture) : FakeResource(deviceOfTexture, true) {}

    std::vector<std::unique_ptr<FakeSurface>> surfaces; // by level
};

/// A vertex or index buffer in memory.
template <class Interface, class Description>
class FakeBuffer final : public FakeResource<Interface> {
public:
    static ComHandle<FakeBuffer> Create(FakeResourceHost* device, const Description& desc);

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** objectOut) override;
    D3DRESOURCETYPE STDMETHODCALLTYPE GetType() override { return description.Type; }
    /// A size of 0 extends to the end. Fails outside the buffer; locks may nest.
    HRESULT STDMETHODCALLTYPE Lock(UINT offsetToLock, UINT sizeToLock, void** dataOut,
                                   DWORD flags) override;
    HRESULT STDMETHODCALLTYPE Unlock() override;
    HRESULT STDMETHODCALLTYPE GetDesc(Description* descOut) override;

private:
    FakeBuffer(FakeResourceHost* deviceOfBuffer, const Description& desc)
        : FakeResource<Interface>(deviceOfBuffer, true),
          description(desc),
          bytes(desc.Size)
    {}

    Description description;
    std::vector<BYTE> bytes;
    int locks = 0;
};

using FakeVertexBuffer = FakeBuffer<IDirect3DVertexBuffer9, D3DVERTEXBUFFER_DESC>;
using FakeIndexBuffer = FakeBuffer<IDirect3DIndexBuffer9, D3DINDEXBUFFER_DESC>;
extern template class FakeBuffer<IDirect3DVertexBuffer9, D3DVERTEXBUFFER_DESC>;
extern template class FakeBuffer<IDirect3DIndexBuffer9, D3DINDEXBUFFER_DESC>;
