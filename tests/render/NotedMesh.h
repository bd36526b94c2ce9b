#pragma once

#include "platform/ComPointer.h"
#include "tests/support/CallRecorder.h"
#include "tests/support/FakeObject.h"
#include "tests/support/RefusingMesh.h"

#include <d3dx9.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

/// A device mesh with vertices and an attribute table set by a test. It records drawing, locks and
/// table look-ups among the device's calls, as `Mesh::DrawSubset name 0`, and fails calls as
/// planned there; operations that drawing does not need always fail. Without a recorder it records
/// nothing.
class NotedMesh final : public RefusingMesh<FakeObject<ID3DXMesh>> {
public:
    NotedMesh(std::shared_ptr<CallRecorder> recorder, std::string meshName)
        : calls(std::move(recorder)),
          name(std::move(meshName))
    {}

    std::vector<uint8_t> vertices; ///< as in the buffer
    DWORD vertexCount = 0;
    DWORD faceCount = 0;
    std::vector<D3DXATTRIBUTERANGE> table;
    ComPointer<IDirect3DVertexBuffer9> vertexBuffer; ///< placeholders for the buffers; hold nothing
    ComPointer<IDirect3DIndexBuffer9> indexBuffer;
    std::function<void()> onDraw; ///< inspects the engine in the middle of a draw

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

private:
    HRESULT Note(const char* call, const std::string& argument)
    {
        return calls ? calls->Note(call, {argument}).failure.value_or(D3D_OK) : D3D_OK;
    }

    std::shared_ptr<CallRecorder> calls;
    std::string name;
};
