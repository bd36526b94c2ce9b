#pragma once

#include "platform/ComPointer.h"

#include <d3dx9.h>

/// A mesh of two buffers and a face count; everything else fails. Where a result is not D3D_OK,
/// there is no buffer.
class StubMesh final : public ID3DXMesh {
public:
    ComPointer<IDirect3DVertexBuffer9> vertices;
    ComPointer<IDirect3DIndexBuffer9> indices;
    DWORD vertexCount = 0;
    DWORD faceCount = 0;
    HRESULT vertexBufferResult = D3D_OK;
    HRESULT indexBufferResult = D3D_OK;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; } // the object is its maker's
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

    HRESULT STDMETHODCALLTYPE DrawSubset(DWORD) override { return E_NOTIMPL; }
    DWORD STDMETHODCALLTYPE GetFVF() override { return 0; }
    HRESULT STDMETHODCALLTYPE GetDeclaration(D3DVERTEXELEMENT9*) override { return E_NOTIMPL; }
    DWORD STDMETHODCALLTYPE GetNumBytesPerVertex() override { return 0; }
    DWORD STDMETHODCALLTYPE GetOptions() override { return 0; }
    HRESULT STDMETHODCALLTYPE GetDevice(IDirect3DDevice9**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CloneMeshFVF(DWORD, DWORD, IDirect3DDevice9*, ID3DXMesh**) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE CloneMesh(DWORD, const D3DVERTEXELEMENT9*, IDirect3DDevice9*,
                                        ID3DXMesh**) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE LockVertexBuffer(DWORD, void**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE UnlockVertexBuffer() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE LockIndexBuffer(DWORD, void**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE UnlockIndexBuffer() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetAttributeTable(D3DXATTRIBUTERANGE*, DWORD*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE ConvertPointRepsToAdjacency(const DWORD*, DWORD*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE ConvertAdjacencyToPointReps(const DWORD*, DWORD*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GenerateAdjacency(FLOAT, DWORD*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE UpdateSemantics(D3DVERTEXELEMENT9*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE LockAttributeBuffer(DWORD, DWORD**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE UnlockAttributeBuffer() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Optimize(DWORD, const DWORD*, DWORD*, DWORD*, ID3DXBuffer**,
                                       ID3DXMesh**) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE OptimizeInplace(DWORD, const DWORD*, DWORD*, DWORD*,
                                              ID3DXBuffer**) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetAttributeTable(const D3DXATTRIBUTERANGE*, DWORD) override
    {
        return E_NOTIMPL;
    }

private:
    template <class Buffer>
    static Buffer* Copy(const ComPointer<Buffer>& buffer)
    {
        return ComPointer<Buffer>(buffer).Detach();
    }
};
