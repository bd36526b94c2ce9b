#pragma once

#include "tests/support/FakeObject.h"
#include "tests/support/RefusingMesh.h"

#include <d3dx9.h>

#include <map>
#include <string>
#include <vector>

/// A device mesh that records locks, unlocks and sorting by name, and fails those that a test
/// names. Every other operation fails. Its locks return addresses in `bytes`.
class FakeMesh final : public RefusingMesh<FakeObject<ID3DXMesh>> {
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

private:
    HRESULT Note(const char* name, DWORD flags)
    {
        calls.push_back(flags == 0 ? name : name + (" " + std::to_string(flags)));
        const auto failure = failures.find(name);
        return failure == failures.end() ? D3D_OK : failure->second;
    }
};
