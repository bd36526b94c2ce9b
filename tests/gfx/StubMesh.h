#pragma once

#include "gfx/KRE_VertexLayout.h"
#include "platform/ComPointer.h"
#include "tests/support/RefusingMesh.h"

#include <d3dx9.h>

/// A mesh of two buffers and a face count; everything else fails. If a result is not D3D_OK, there
/// is no buffer.
class StubMesh final : public RefusingMesh<ID3DXMesh> {
public:
    ComPointer<IDirect3DVertexBuffer9> vertices;
    ComPointer<IDirect3DIndexBuffer9> indices;
    DWORD vertexCount = 0;
    DWORD faceCount = 0;
    HRESULT vertexBufferResult = D3D_OK;
    HRESULT indexBufferResult = D3D_OK;

    /// Six vertices of the format KRE_VertexPosTex and ten faces, in buffers of the device.
    void Make(IDirect3DDevice9* device)
    {
        vertexCount = 6;
        faceCount = 10;
        device->CreateVertexBuffer(vertexCount * sizeof(KRE_VertexPosTex), 0,
                                   KRE_VertexPosTex::kFvf, D3DPOOL_MANAGED, vertices.Out(),
                                   nullptr);
        device->CreateIndexBuffer(faceCount * 3 * sizeof(WORD), 0, D3DFMT_INDEX16, D3DPOOL_MANAGED,
                                  indices.Out(), nullptr);
    }

    ULONG STDMETHODCALLTYPE AddRef() override { return 2; } // its creator owns the object
    ULONG STDMETHODCALLTYPE Release() override { return 1; }

    DWORD STDMETHODCALLTYPE GetNumFaces() override { return faceCount; }
    DWORD STDMETHODCALLTYPE GetNumVertices() override { return vertexCount; }
    HRESULT STDMETHODCALLTYPE GetVertexBuffer(IDirect3DVertexBuffer9** bufferOut) override
    {
        *bufferOut = FAILED(vertexBufferResult) ? nullptr : Copy(vertices);
        return vertexBufferResult;
    }
    HRESULT STDMETHODCALLTYPE GetIndexBuffer(IDirect3DIndexBuffer9** bufferOut) override
    {
        *bufferOut = FAILED(indexBufferResult) ? nullptr : Copy(indices);
        return indexBufferResult;
    }

private:
    template <class Buffer>
    static Buffer* Copy(const ComPointer<Buffer>& buffer)
    {
        return ComPointer<Buffer>(buffer).Detach();
    }
};
