#include "platform/headless/d3d9/Buffer.h"

#include <new>

namespace headless {

bool BufferBytes::Allocate(UINT sizeBytes)
{
    bytes = AllocateZeroed(sizeBytes);
    size = bytes ? sizeBytes : 0;
    return bytes != nullptr;
}

HRESULT BufferBytes::Lock(UINT offset, UINT lockSize, void** dataOut)
{
    if (!dataOut)
        return D3DERR_INVALIDCALL;
    *dataOut = nullptr;
    if (offset >= size || lockSize > size - offset)
        return D3DERR_INVALIDCALL;
    ++lockCount;
    *dataOut = bytes.get() + offset;
    return D3D_OK;
}

HRESULT BufferBytes::Unlock()
{
    if (lockCount == 0)
        return D3DERR_INVALIDCALL;
    --lockCount;
    return D3D_OK;
}

HeadlessVertexBuffer::HeadlessVertexBuffer(ResourceOwner& bufferOwner,
                                           const D3DVERTEXBUFFER_DESC& bufferDesc)
    : ResourceLife(bufferOwner, ObjectKind::VertexBuffer, bufferDesc.Pool),
      desc(bufferDesc)
{}

HeadlessVertexBuffer* HeadlessVertexBuffer::Create(ResourceOwner& owner,
                                                   const D3DVERTEXBUFFER_DESC& desc)
{
    std::unique_ptr<HeadlessVertexBuffer> buffer(new (std::nothrow)
                                                     HeadlessVertexBuffer(owner, desc));
    return buffer && buffer->data.Allocate(desc.Size) ? buffer.release() : nullptr;
}

HRESULT HeadlessVertexBuffer::Lock(UINT offsetToLock, UINT sizeToLock, void** dataOut, DWORD)
{
    return data.Lock(offsetToLock, sizeToLock, dataOut);
}

HRESULT HeadlessVertexBuffer::Unlock()
{
    return data.Unlock();
}

HRESULT HeadlessVertexBuffer::GetDesc(D3DVERTEXBUFFER_DESC* descOut)
{
    if (!descOut)
        return D3DERR_INVALIDCALL;
    *descOut = desc;
    return D3D_OK;
}

HeadlessIndexBuffer::HeadlessIndexBuffer(ResourceOwner& bufferOwner,
                                         const D3DINDEXBUFFER_DESC& bufferDesc)
    : ResourceLife(bufferOwner, ObjectKind::IndexBuffer, bufferDesc.Pool),
      desc(bufferDesc)
{}

HeadlessIndexBuffer* HeadlessIndexBuffer::Create(ResourceOwner& owner,
                                                 const D3DINDEXBUFFER_DESC& desc)
{
    std::unique_ptr<HeadlessIndexBuffer> buffer(new (std::nothrow)
                                                    HeadlessIndexBuffer(owner, desc));
    return buffer && buffer->data.Allocate(desc.Size) ? buffer.release() : nullptr;
}

HRESULT HeadlessIndexBuffer::Lock(UINT offsetToLock, UINT sizeToLock, void** dataOut, DWORD)
{
    return data.Lock(offsetToLock, sizeToLock, dataOut);
}

HRESULT HeadlessIndexBuffer::Unlock()
{
    return data.Unlock();
}

HRESULT HeadlessIndexBuffer::GetDesc(D3DINDEXBUFFER_DESC* descOut)
{
    if (!descOut)
        return D3DERR_INVALIDCALL;
    *descOut = desc;
    return D3D_OK;
}

} // namespace headless
