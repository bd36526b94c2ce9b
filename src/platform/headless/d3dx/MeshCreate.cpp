// Creating meshes, and what their options require of the two buffers.

#include "platform/headless/d3d9/VertexFormat.h"
#include "platform/headless/d3dx/Mesh.h"

#include <cstdint>
#include <limits>
#include <new>

namespace headless {

namespace {

struct OptionUsage {
    DWORD option;
    DWORD usage;
};

constexpr OptionUsage kVertexUsages[] = {
    {D3DXMESH_DONOTCLIP, D3DUSAGE_DONOTCLIP},
    {D3DXMESH_POINTS, D3DUSAGE_POINTS},
    {D3DXMESH_RTPATCHES, D3DUSAGE_RTPATCHES},
    {D3DXMESH_NPATCHES, D3DUSAGE_NPATCHES},
    {D3DXMESH_VB_WRITEONLY, D3DUSAGE_WRITEONLY},
    {D3DXMESH_VB_DYNAMIC, D3DUSAGE_DYNAMIC},
    {D3DXMESH_VB_SOFTWAREPROCESSING, D3DUSAGE_SOFTWAREPROCESSING},
};

constexpr OptionUsage kIndexUsages[] = {
    {D3DXMESH_DONOTCLIP, D3DUSAGE_DONOTCLIP},
    {D3DXMESH_POINTS, D3DUSAGE_POINTS},
    {D3DXMESH_RTPATCHES, D3DUSAGE_RTPATCHES},
    {D3DXMESH_NPATCHES, D3DUSAGE_NPATCHES},
    {D3DXMESH_IB_WRITEONLY, D3DUSAGE_WRITEONLY},
    {D3DXMESH_IB_DYNAMIC, D3DUSAGE_DYNAMIC},
    {D3DXMESH_IB_SOFTWAREPROCESSING, D3DUSAGE_SOFTWAREPROCESSING},
};

/// A mesh that shares another's vertices, or is for hardware only, can only come from cloning; bits
/// above the last option have no meaning.
constexpr DWORD kRefusedOptions = D3DXMESH_VB_SHARE | D3DXMESH_USEHWONLY | 0xFFFE0000;

DWORD UsageOf(DWORD options, const OptionUsage (&usages)[7])
{
    DWORD usage = 0;
    for (const OptionUsage& entry : usages)
        if ((options & entry.option) != 0)
            usage |= entry.usage;
    return usage;
}

D3DPOOL PoolOf(DWORD options, DWORD systemMemory, DWORD managed)
{
    if ((options & systemMemory) != 0)
        return D3DPOOL_SYSTEMMEM;
    return (options & managed) != 0 ? D3DPOOL_MANAGED : D3DPOOL_DEFAULT;
}

bool IsFormatPossible(DWORD fvf)
{
    const bool hasReserved = (fvf & (D3DFVF_RESERVED0 | D3DFVF_RESERVED2)) != 0;
    const bool hasTooManySets = (fvf & D3DFVF_TEXCOUNT_MASK) > D3DFVF_TEX8;
    return !hasReserved && !hasTooManySets && VertexSize(fvf) > 0;
}

} // namespace

HeadlessMesh::HeadlessMesh(DWORD faces, DWORD vertices, DWORD meshOptions, DWORD format,
                           IDirect3DDevice9& owner)
    : faceCount(faces),
      vertexCount(vertices),
      options(meshOptions),
      fvf(format)
{
    device = decltype(device)::Share(&owner);
}

HeadlessMesh* HeadlessMesh::Create(DWORD faceCount, DWORD vertexCount, DWORD options, DWORD fvf,
                                   IDirect3DDevice9& device, HRESULT& resultOut)
{
    ComPointer<HeadlessMesh> mesh;
    *mesh.Out() = new (std::nothrow) HeadlessMesh(faceCount, vertexCount, options, fvf, device);
    resultOut = mesh ? mesh->MakeBuffers() : E_OUTOFMEMORY;
    return SUCCEEDED(resultOut) ? mesh.Detach() : nullptr;
}

HRESULT HeadlessMesh::MakeBuffers()
{
    const bool isWide = (options & D3DXMESH_32BIT) != 0;
    const uint64_t vertexBytes = uint64_t{vertexCount} * VertexSize(fvf);
    const uint64_t indexBytes = uint64_t{faceCount} * 3 * (isWide ? 4 : 2);
    constexpr uint64_t kMostBytes = std::numeric_limits<UINT>::max();
    if (vertexBytes > kMostBytes || indexBytes > kMostBytes)
        return E_OUTOFMEMORY;

    HRESULT result = device->CreateVertexBuffer(
        static_cast<UINT>(vertexBytes), UsageOf(options, kVertexUsages), fvf,
        PoolOf(options, D3DXMESH_VB_SYSTEMMEM, D3DXMESH_VB_MANAGED), vertexBuffer.Out(), nullptr);
    if (FAILED(result))
        return result;
    result = device->CreateIndexBuffer(
        static_cast<UINT>(indexBytes), UsageOf(options, kIndexUsages),
        isWide ? D3DFMT_INDEX32 : D3DFMT_INDEX16,
        PoolOf(options, D3DXMESH_IB_SYSTEMMEM, D3DXMESH_IB_MANAGED), indexBuffer.Out(), nullptr);
    if (FAILED(result))
        return result;
    attributes.reset(new (std::nothrow) DWORD[faceCount]());
    return attributes ? D3D_OK : E_OUTOFMEMORY;
}

} // namespace headless

using namespace headless;

HRESULT WINAPI D3DXCreateMeshFVF(DWORD faceCount, DWORD vertexCount, DWORD options, DWORD fvf,
                                 IDirect3DDevice9* device, ID3DXMesh** meshOut)
{
    if (device == nullptr || meshOut == nullptr)
        return D3DERR_INVALIDCALL;
    *meshOut = nullptr;
    if (faceCount == 0 || vertexCount == 0 || (options & kRefusedOptions) != 0 ||
        !IsFormatPossible(fvf))
        return D3DERR_INVALIDCALL;
    HRESULT result = D3D_OK;
    *meshOut = HeadlessMesh::Create(faceCount, vertexCount, options, fvf, *device, result);
    return result;
}
