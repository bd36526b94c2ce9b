#pragma once

#include "platform/ComPointer.h"
#include "platform/headless/d3d9/ComObject.h"

#include <d3dx9.h>

#include <memory>
#include <vector>

namespace headless {

/// A mesh on any device: it needs only the two buffers and the draw calls.
class HeadlessMesh final : public ComObject<ID3DXMesh, IID_ID3DXBaseMesh, IID_ID3DXMesh> {
public:
    /// Null if the buffers cannot be created; `resultOut` then holds the reason. All arguments have
    /// been checked. The caller holds the first reference.
    static HeadlessMesh* Create(DWORD faceCount, DWORD vertexCount, DWORD options, DWORD fvf,
                                IDirect3DDevice9& device, HRESULT& resultOut);

    HRESULT STDMETHODCALLTYPE DrawSubset(DWORD attributeId) override;
    DWORD STDMETHODCALLTYPE GetNumFaces() override { return faceCount; }
    DWORD STDMETHODCALLTYPE GetNumVertices() override { return vertexCount; }
    DWORD STDMETHODCALLTYPE GetFVF() override { return fvf; }
    HRESULT STDMETHODCALLTYPE GetDeclaration(D3DVERTEXELEMENT9* declarationOut) override;
    DWORD STDMETHODCALLTYPE GetNumBytesPerVertex() override;
    DWORD STDMETHODCALLTYPE GetOptions() override { return options; }
    HRESULT STDMETHODCALLTYPE GetDevice(IDirect3DDevice9** deviceOut) override;
    HRESULT STDMETHODCALLTYPE CloneMeshFVF(DWORD cloneOptions, DWORD cloneFvf,
                                           IDirect3DDevice9* cloneDevice,
                                           ID3DXMesh** cloneOut) override;
    HRESULT STDMETHODCALLTYPE CloneMesh(DWORD cloneOptions, const D3DVERTEXELEMENT9* declaration,
                                        IDirect3DDevice9* cloneDevice,
                                        ID3DXMesh** cloneOut) override;
    HRESULT STDMETHODCALLTYPE GetVertexBuffer(IDirect3DVertexBuffer9** bufferOut) override;
    HRESULT STDMETHODCALLTYPE GetIndexBuffer(IDirect3DIndexBuffer9** bufferOut) override;
    HRESULT STDMETHODCALLTYPE LockVertexBuffer(DWORD flags, void** dataOut) override;
    HRESULT STDMETHODCALLTYPE UnlockVertexBuffer() override;
    HRESULT STDMETHODCALLTYPE LockIndexBuffer(DWORD flags, void** dataOut) override;
    HRESULT STDMETHODCALLTYPE UnlockIndexBuffer() override;
    HRESULT STDMETHODCALLTYPE GetAttributeTable(D3DXATTRIBUTERANGE* tableOut,
                                                DWORD* countOut) override;
    HRESULT STDMETHODCALLTYPE ConvertPointRepsToAdjacency(const DWORD* pointReps,
                                                          DWORD* adjacencyOut) override;
    HRESULT STDMETHODCALLTYPE ConvertAdjacencyToPointReps(const DWORD* adjacency,
                                                          DWORD* pointRepsOut) override;
    HRESULT STDMETHODCALLTYPE GenerateAdjacency(FLOAT epsilon, DWORD* adjacencyOut) override;
    HRESULT STDMETHODCALLTYPE UpdateSemantics(D3DVERTEXELEMENT9* declaration) override;
    HRESULT STDMETHODCALLTYPE LockAttributeBuffer(DWORD flags, DWORD** dataOut) override;
    HRESULT STDMETHODCALLTYPE UnlockAttributeBuffer() override;
    HRESULT STDMETHODCALLTYPE Optimize(DWORD flags, const DWORD* adjacency, DWORD* adjacencyOut,
                                       DWORD* faceRemapOut, ID3DXBuffer** vertexRemapOut,
                                       ID3DXMesh** meshOut) override;
    HRESULT STDMETHODCALLTYPE OptimizeInplace(DWORD flags, const DWORD* adjacency,
                                              DWORD* adjacencyOut, DWORD* faceRemapOut,
                                              ID3DXBuffer** vertexRemapOut) override;
    HRESULT STDMETHODCALLTYPE SetAttributeTable(const D3DXATTRIBUTERANGE* newTable,
                                                DWORD count) override;

private:
    HeadlessMesh(DWORD faces, DWORD vertices, DWORD meshOptions, DWORD format,
                 IDirect3DDevice9& owner);
    ~HeadlessMesh() override = default;

    HRESULT MakeBuffers();
    HRESULT DrawRange(const D3DXATTRIBUTERANGE& range);
    HRESULT DrawUnsorted(DWORD attributeId);
    HRESULT SortFaces(const DWORD* order);
    void MakeAttributeTable(const void* indices);

    const DWORD faceCount;
    const DWORD vertexCount;
    const DWORD options;
    const DWORD fvf;
    ComPointer<IDirect3DDevice9> device;
    ComPointer<IDirect3DVertexBuffer9> vertexBuffer;
    ComPointer<IDirect3DIndexBuffer9> indexBuffer;
    std::unique_ptr<DWORD[]> attributes; // owned, one per face
    int attributeLocks = 0;
    std::vector<D3DXATTRIBUTERANGE> attributeTable;
};

} // namespace headless
