#pragma once

#include <d3dx9.h>

/// All operations of a device mesh, each of which fails: a test double overrides those that it
/// supports. `Object` is `ID3DXMesh` or a `FakeObject` of it.
template <class Object>
class RefusingMesh : public Object {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    DWORD STDMETHODCALLTYPE GetNumFaces() override { return 0; }
    DWORD STDMETHODCALLTYPE GetNumVertices() override { return 0; }
    HRESULT STDMETHODCALLTYPE GetVertexBuffer(IDirect3DVertexBuffer9**) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetIndexBuffer(IDirect3DIndexBuffer9**) override { return E_NOTIMPL; }
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
};
