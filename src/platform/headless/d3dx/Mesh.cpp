#include "platform/headless/d3dx/Mesh.h"

#include "platform/headless/d3d9/CallLog.h"
#include "platform/headless/d3d9/VertexFormat.h"

#include <algorithm>
#include <string>

namespace headless {

namespace {

/// Hands out another reference.
template <typename Interface>
HRESULT Share(const ComPointer<Interface>& held, Interface** objectOut)
{
    if (objectOut == nullptr)
        return D3DERR_INVALIDCALL;
    held->AddRef();
    *objectOut = held.Get();
    return D3D_OK;
}

template <typename... Arguments>
HRESULT NotImplemented(const char* name, Arguments... arguments)
{
    std::string text;
    ((text += (text.empty() ? "" : ", ") + ArgumentText(arguments)), ...);
    return LogUnmodelled(name, text, E_NOTIMPL);
}

} // namespace

DWORD HeadlessMesh::GetNumBytesPerVertex()
{
    return VertexSize(fvf);
}

HRESULT HeadlessMesh::GetDevice(IDirect3DDevice9** deviceOut)
{
    return Share(device, deviceOut);
}

HRESULT HeadlessMesh::GetVertexBuffer(IDirect3DVertexBuffer9** bufferOut)
{
    return Share(vertexBuffer, bufferOut);
}

HRESULT HeadlessMesh::GetIndexBuffer(IDirect3DIndexBuffer9** bufferOut)
{
    return Share(indexBuffer, bufferOut);
}

HRESULT HeadlessMesh::LockVertexBuffer(DWORD flags, void** dataOut)
{
    return vertexBuffer->Lock(0, 0, dataOut, flags);
}

HRESULT HeadlessMesh::UnlockVertexBuffer()
{
    return vertexBuffer->Unlock();
}

HRESULT HeadlessMesh::LockIndexBuffer(DWORD flags, void** dataOut)
{
    return indexBuffer->Lock(0, 0, dataOut, flags);
}

HRESULT HeadlessMesh::UnlockIndexBuffer()
{
    return indexBuffer->Unlock();
}

HRESULT HeadlessMesh::LockAttributeBuffer(DWORD flags, DWORD** dataOut)
{
    if (dataOut == nullptr)
        return D3DERR_INVALIDCALL;
    if ((flags & D3DLOCK_READONLY) == 0)
        attributeTable.clear(); // the caller may write attributes that contradict it
    ++attributeLocks;
    *dataOut = attributes.get();
    return D3D_OK;
}

HRESULT HeadlessMesh::UnlockAttributeBuffer()
{
    if (attributeLocks == 0)
        return D3DERR_INVALIDCALL;
    --attributeLocks;
    return D3D_OK;
}

HRESULT HeadlessMesh::GetAttributeTable(D3DXATTRIBUTERANGE* tableOut, DWORD* countOut)
{
    if (countOut != nullptr)
        *countOut = static_cast<DWORD>(attributeTable.size());
    if (tableOut != nullptr)
        std::copy(attributeTable.begin(), attributeTable.end(), tableOut);
    return D3D_OK;
}

HRESULT HeadlessMesh::SetAttributeTable(const D3DXATTRIBUTERANGE* newTable, DWORD count)
{
    if (newTable == nullptr && count > 0)
        return D3DERR_INVALIDCALL;
    attributeTable.assign(newTable, newTable + count);
    return D3D_OK;
}

HRESULT HeadlessMesh::GetDeclaration(D3DVERTEXELEMENT9* declarationOut)
{
    return NotImplemented("ID3DXMesh::GetDeclaration", declarationOut);
}

HRESULT HeadlessMesh::CloneMeshFVF(DWORD cloneOptions, DWORD cloneFvf,
                                   IDirect3DDevice9* cloneDevice, ID3DXMesh** cloneOut)
{
    return NotImplemented("ID3DXMesh::CloneMeshFVF", cloneOptions, cloneFvf, cloneDevice, cloneOut);
}

HRESULT HeadlessMesh::CloneMesh(DWORD cloneOptions, const D3DVERTEXELEMENT9* declaration,
                                IDirect3DDevice9* cloneDevice, ID3DXMesh** cloneOut)
{
    return NotImplemented("ID3DXMesh::CloneMesh", cloneOptions, declaration, cloneDevice, cloneOut);
}

HRESULT HeadlessMesh::ConvertPointRepsToAdjacency(const DWORD* pointReps, DWORD* adjacencyOut)
{
    return NotImplemented("ID3DXMesh::ConvertPointRepsToAdjacency", pointReps, adjacencyOut);
}

HRESULT HeadlessMesh::ConvertAdjacencyToPointReps(const DWORD* adjacency, DWORD* pointRepsOut)
{
    return NotImplemented("ID3DXMesh::ConvertAdjacencyToPointReps", adjacency, pointRepsOut);
}

HRESULT HeadlessMesh::GenerateAdjacency(FLOAT epsilon, DWORD* adjacencyOut)
{
    return NotImplemented("ID3DXMesh::GenerateAdjacency", epsilon, adjacencyOut);
}

HRESULT HeadlessMesh::UpdateSemantics(D3DVERTEXELEMENT9* declaration)
{
    return NotImplemented("ID3DXMesh::UpdateSemantics", declaration);
}

HRESULT HeadlessMesh::Optimize(DWORD flags, const DWORD* adjacency, DWORD* adjacencyOut,
                               DWORD* faceRemapOut, ID3DXBuffer** vertexRemapOut,
                               ID3DXMesh** meshOut)
{
    return NotImplemented("ID3DXMesh::Optimize", flags, adjacency, adjacencyOut, faceRemapOut,
                          vertexRemapOut, meshOut);
}

} // namespace headless
