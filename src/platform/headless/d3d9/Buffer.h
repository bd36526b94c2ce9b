#pragma once

#include "platform/headless/d3d9/Resource.h"
#include "platform/headless/d3d9/ZeroedBytes.h"

namespace headless {

/// What vertex and index buffers share: their bytes and a lock count, as locks may nest.
struct BufferBytes {
    ZeroedBytes bytes;
    UINT size = 0;
    UINT lockCount = 0;

    /// Allocates zeroed memory; false on failure.
    bool Allocate(UINT sizeBytes);
    HRESULT Lock(UINT offset, UINT lockSize, void** dataOut);
    HRESULT Unlock();
};

class HeadlessVertexBuffer final
    : public Resource<IDirect3DVertexBuffer9, IID_IDirect3DVertexBuffer9>,
      public ResourceLife {
public:
    /// The caller holds no reference yet. Null if memory runs out.
    static HeadlessVertexBuffer* Create(ResourceOwner& owner, const D3DVERTEXBUFFER_DESC& desc);

    ULONG STDMETHODCALLTYPE AddRef() override { return AddReference(); }
    ULONG STDMETHODCALLTYPE Release() override { return RemoveReference(); }
    D3DRESOURCETYPE STDMETHODCALLTYPE GetType() override { return D3DRTYPE_VERTEXBUFFER; }
    /// A size of 0 means to the end. The range must lie inside the buffer.
    HRESULT STDMETHODCALLTYPE Lock(UINT offsetToLock, UINT sizeToLock, void** dataOut,
                                   DWORD flags) override;
    HRESULT STDMETHODCALLTYPE Unlock() override;
    HRESULT STDMETHODCALLTYPE GetDesc(D3DVERTEXBUFFER_DESC* descOut) override;

    const BufferBytes& Data() const { return data; }

private:
    HeadlessVertexBuffer(ResourceOwner& bufferOwner, const D3DVERTEXBUFFER_DESC& bufferDesc);
    ResourceOwner& GetOwner() const override { return Owner(); }
    D3DPOOL ResourcePool() const override { return desc.Pool; }

    const D3DVERTEXBUFFER_DESC desc;
    BufferBytes data;
};

class HeadlessIndexBuffer final : public Resource<IDirect3DIndexBuffer9, IID_IDirect3DIndexBuffer9>,
                                  public ResourceLife {
public:
    /// The caller holds no reference yet. Null if memory runs out.
    static HeadlessIndexBuffer* Create(ResourceOwner& owner, const D3DINDEXBUFFER_DESC& desc);

    ULONG STDMETHODCALLTYPE AddRef() override { return AddReference(); }
    ULONG STDMETHODCALLTYPE Release() override { return RemoveReference(); }
    D3DRESOURCETYPE STDMETHODCALLTYPE GetType() override { return D3DRTYPE_INDEXBUFFER; }
    /// A size of 0 means to the end. The range must lie inside the buffer.
    HRESULT STDMETHODCALLTYPE Lock(UINT offsetToLock, UINT sizeToLock, void** dataOut,
                                   DWORD flags) override;
    HRESULT STDMETHODCALLTYPE Unlock() override;
    HRESULT STDMETHODCALLTYPE GetDesc(D3DINDEXBUFFER_DESC* descOut) override;

    const BufferBytes& Data() const { return data; }
    const D3DINDEXBUFFER_DESC& Desc() const { return desc; }

private:
    HeadlessIndexBuffer(ResourceOwner& bufferOwner, const D3DINDEXBUFFER_DESC& bufferDesc);
    ResourceOwner& GetOwner() const override { return Owner(); }
    D3DPOOL ResourcePool() const override { return desc.Pool; }

    const D3DINDEXBUFFER_DESC desc;
    BufferBytes data;
};

} // namespace headless
