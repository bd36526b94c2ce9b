#pragma once

#include "platform/ComPointer.h"
#include "tests/support/CallRecorder.h"
#include "tests/support/FakeObject.h"

#include <d3dx9.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

/// A device mesh of vertices and an attribute table that a test puts in. It notes drawing, locks and
/// look-ups of the table among the device's calls, as `Mesh::DrawSubset name 0`, and fails what is
/// planned there; what drawing does not need fails. Without a recorder it is silent.
class NotedMesh final : public FakeObject<ID3DXMesh> {
public:
    NotedMesh(std::shared_ptr<CallRecorder> recorder, std::string meshName)
        : calls(std::move(recorder)),
          name(std::move(meshName))
    {}

    std::vector<uint8_t> vertices; ///< as they lie in the buffer
    DWORD vertexCount = 0;
    DWORD faceCount = 0;
    std::vector<D3DXATTRIBUTERANGE> table;
    ComPointer<IDirect3DVertexBuffer9> vertexBuffer; ///< stand for the buffers, hold nothing
    ComPointer<IDirect3DIndexBuffer9> indexBuffer;
    std::function<void()> onDraw; ///< looks at the engine in the middle of a draw

    HRESULT STDMETHODCALLTYPE DrawSubset(DWORD attribute) override
    {
        if (onDraw)
            onDraw();
        return Note("Mesh::DrawSubset", name + " " + std::to_string(attribute));
    }
    HRESULT STDMETHODCALLTYPE GetAttributeTable(D3DXATTRIBUTERANGE* out, DWORD* count) override
    {
        const HRESULT result = Note("Mesh::GetAttributeTable", out ? "entries" : "count");
        if (out)
            std::copy(table.begin(), table.end(), out);
        *count = static_cast<DWORD>(table.size());
        return result;
    }
    HRESULT STDMETHODCALLTYPE LockVertexBuffer(DWORD flags, void** dataOut) override
    {
        *dataOut = vertices.data();
        return Note("Mesh::LockVertexBuffer", std::to_string(flags));
    }
    HRESULT STDMETHODCALLTYPE UnlockVertexBuffer() override
    {
        return Note("Mesh::UnlockVertexBuffer", "");
    }
    HRESULT STDMETHODCALLTYPE GetVertexBuffer(IDirect3DVertexBuffer9** out) override
    {
        *out = ComPointer<IDirect3DVertexBuffer9>(vertexBuffer).Detach();
        return D3D_OK;
    }
    HRESULT STDMETHODCALLTYPE GetIndexBuffer(IDirect3DIndexBuffer9** out) override
    {
        *out = ComPointer<IDirect3DIndexBuffer9>(indexBuffer).Detach();
        return D3D_OK;
    }
    DWORD STDMETHODCALLTYPE GetNumFaces() override { return faceCount; }
    DWORD STDMETHODCALLTYPE GetNumVertices() override { return vertexCount; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
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
    HRESULT STDMETHODCALLTYPE LockIndexBuffer(DWORD, void**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE UnlockIndexBuffer() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE LockAttributeBuffer(DWORD, DWORD**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE UnlockAttributeBuffer() override { return E_NOTIMPL; }
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
    HRESULT Note(const char* call, const std::string& argument)
    {
        return calls ? calls->Note(call, {argument}).failure.value_or(D3D_OK) : D3D_OK;
    }

    std::shared_ptr<CallRecorder> calls;
    std::string name;
};
