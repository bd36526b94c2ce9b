#pragma once

#include "tests/support/FakeObject.h"

#include <d3dx9.h>

#include <map>
#include <string>
#include <vector>

/// A device mesh that notes locks, unlocks and sorting by name, and fails those that a test names.
/// Every other operation fails. Its locks give addresses in `bytes`.
class FakeMesh final : public FakeObject<ID3DXMesh> {
public:
    std::vector<std::string> calls;
    std::map<std::string, HRESULT> failures; ///< by the operation's name
    DWORD bytes[64] = {};

    HRESULT STDMETHODCALLTYPE LockIndexBuffer(DWORD flags, void** dataOut) override
    {
        *dataOut = bytes;
        return Note("LockIndexBuffer", flags);
    }
    HRESULT STDMETHODCALLTYPE LockVertexBuffer(DWORD flags, void** dataOut) override
    {
        *dataOut = bytes + 16;
        return Note("LockVertexBuffer", flags);
    }
    HRESULT STDMETHODCALLTYPE LockAttributeBuffer(DWORD flags, DWORD** dataOut) override
    {
        *dataOut = bytes + 32;
        return Note("LockAttributeBuffer", flags);
    }
    HRESULT STDMETHODCALLTYPE UnlockIndexBuffer() override { return Note("UnlockIndexBuffer", 0); }
    HRESULT STDMETHODCALLTYPE UnlockVertexBuffer() override
    {
        return Note("UnlockVertexBuffer", 0);
    }
    HRESULT STDMETHODCALLTYPE UnlockAttributeBuffer() override
    {
        return Note("UnlockAttributeBuffer", 0);
    }
    HRESULT STDMETHODCALLTYPE OptimizeInplace(DWORD flags, const DWORD*, DWORD*, DWORD*,
                                              ID3DXBuffer**) override
    {
        return Note("OptimizeInplace", flags);
    }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    HRESULT STDMETHODCALLTYPE DrawSubset(DWORD) override { return E_NOTIMPL; }
    DWORD STDMETHODCALLTYPE GetNumFaces() override { return 0; }
    DWORD STDMETHODCALLTYPE GetNumVertices() override { return 0; }
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
    HRESULT STDMETHODCALLTYPE GetVertexBuffer(IDirect3DVertexBuffer9**) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetIndexBuffer(IDirect3DIndexBuffer9**) override { return E_NOTIMPL; }
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
    HRESULT STDMETHODCALLTYPE Optimize(DWORD, const DWORD*, DWORD*, DWORD*, ID3DXBuffer**,
                                       ID3DXMesh**) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetAttributeTable(const D3DXATTRIBUTERANGE*, DWORD) override
    {
        return E_NOTIMPL;
    }

private:
    HRESULT Note(const char* name, DWORD flags)
    {
        calls.push_back(flags == 0 ? name : name + (" " + std::to_string(flags)));
        const auto failure = failures.find(name);
        return failure == failures.end() ? D3D_OK : failure->second;
    }
};
