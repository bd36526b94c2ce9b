// Sorting the faces of a mesh by attribute.

#include "platform/headless/d3d9/CallLog.h"
#include "platform/headless/d3dx/Mesh.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>
#include <numeric>
#include <string>

namespace headless {

namespace {

/// Flags allowed when sorting by attribute. DONOTSPLIT is accepted because nothing is ever split.
constexpr DWORD kSortFlags = D3DXMESHOPT_ATTRSORT | D3DXMESHOPT_DONOTSPLIT;

/// Extends `range`, initially without vertices, by those of one face.
template <typename Index>
void TakeVertices(D3DXATTRIBUTERANGE& range, const Index* face)
{
    const uint64_t low = std::min({face[0], face[1], face[2]});
    const uint64_t high = std::max({face[0], face[1], face[2]});
    const bool isFirst = range.VertexCount == 0;
    const uint64_t start = isFirst ? low : std::min<uint64_t>(low, range.VertexStart);
    const uint64_t end = std::max(high + 1, uint64_t{range.VertexStart} + range.VertexCount);
    range.VertexStart = static_cast<DWORD>(start);
    range.VertexCount = static_cast<DWORD>(std::min<uint64_t>(end - start, 0xFFFFFFFF));
}

template <typename Index>
struct FaceOf {
    Index corners[3];
};

template <typename Index>
void TakeFaces(const void* faces, const DWORD* order, DWORD count, void* facesOut)
{
    const auto* from = static_cast<const FaceOf<Index>*>(faces);
    auto* to = static_cast<FaceOf<Index>*>(facesOut);
    for (DWORD face = 0; face < count; ++face)
        to[face] = from[order[face]];
}

/// Gives the faces in order of their attributes, those of one attribute in the order that they have.
/// Meshes have few attributes, so these are counted.
void OrderFaces(const DWORD* attributes, DWORD count, DWORD* orderOut)
{
    constexpr DWORD kCounted = 256;
    DWORD places[kCounted] = {};
    DWORD highest = 0;
    for (DWORD face = 0; face < count; ++face) {
        highest = std::max(highest, attributes[face]);
        ++places[attributes[face] % kCounted];
    }
    if (highest >= kCounted) {
        std::iota(orderOut, orderOut + count, 0u);
        std::stable_sort(orderOut, orderOut + count,
                         [&](DWORD a, DWORD b) { return attributes[a] < attributes[b]; });
        return;
    }
    std::exclusive_scan(places, places + highest + 1, places, 0u);
    for (DWORD face = 0; face < count; ++face)
        orderOut[places[attributes[face]]++] = face;
}

} // namespace

HRESULT HeadlessMesh::OptimizeInplace(DWORD flags, const DWORD* adjacency, DWORD* adjacencyOut,
                                      DWORD* faceRemapOut, ID3DXBuffer** vertexRemapOut)
{
    const bool isSort = (flags & D3DXMESHOPT_ATTRSORT) != 0 && (flags & ~kSortFlags) == 0;
    if (!isSort || adjacencyOut != nullptr || vertexRemapOut != nullptr) {
        const std::string text = ArgumentText(flags) + ", " + ArgumentText(adjacency) + ", " +
                                 ArgumentText(adjacencyOut) + ", " + ArgumentText(faceRemapOut) +
                                 ", " + ArgumentText(vertexRemapOut);
        return LogUnmodelled("ID3DXMesh::OptimizeInplace", text, E_NOTIMPL);
    }

    const std::unique_ptr<DWORD[]> order(new (std::nothrow) DWORD[faceCount]);
    if (!order)
        return E_OUTOFMEMORY;
    OrderFaces(attributes.get(), faceCount, order.get());
    if (const HRESULT result = SortFaces(order.get()); FAILED(result))
        return result;
    if (faceRemapOut != nullptr)
        std::copy(order.get(), order.get() + faceCount, faceRemapOut);
    return D3D_OK;
}

/// `order` gives the old index of the face for each new position. Indices and attributes are
/// reordered together.
HRESULT HeadlessMesh::SortFaces(const DWORD* order)
{
    const bool isWide = (options & D3DXMESH_32BIT) != 0;
    const size_t faceBytes = isWide ? sizeof(FaceOf<DWORD>) : sizeof(FaceOf<WORD>);
    const std::unique_ptr<uint8_t[]> sorted(new (std::nothrow) uint8_t[faceBytes * faceCount]);
    std::unique_ptr<DWORD[]> sortedAttributes(new (std::nothrow) DWORD[faceCount]);
    if (!sorted || !sortedAttributes)
        return E_OUTOFMEMORY;
    void* indices = nullptr;
    if (const HRESULT result = indexBuffer->Lock(0, 0, &indices, 0); FAILED(result))
        return result;

    if (isWide)
        TakeFaces<DWORD>(indices, order, faceCount, sorted.get());
    else
        TakeFaces<WORD>(indices, order, faceCount, sorted.get());
    for (DWORD face = 0; face < faceCount; ++face)
        sortedAttributes[face] = attributes[order[face]];
    std::memcpy(indices, sorted.get(), faceBytes * faceCount);
    // In place: the caller may hold a lock on the attributes.
    std::copy(sortedAttributes.get(), sortedAttributes.get() + faceCount, attributes.get());
    MakeAttributeTable(indices);
    return indexBuffer->Unlock();
}

/// One entry for each attribute in use. The faces must be sorted.
void HeadlessMesh::MakeAttributeTable(const void* indices)
{
    attributeTable.clear();
    const bool isWide = (options & D3DXMESH_32BIT) != 0;
    for (DWORD face = 0; face < faceCount; ++face) {
        if (attributeTable.empty() || attributeTable.back().AttribId != attributes[face])
            attributeTable.push_back({attributes[face], face, 0, 0, 0});
        D3DXATTRIBUTERANGE& range = attributeTable.back();
        ++range.FaceCount;
        if (isWide)
            TakeVertices(range, static_cast<const DWORD*>(indices) + size_t{face} * 3);
        else
            TakeVertices(range, static_cast<const WORD*>(indices) + size_t{face} * 3);
    }
}

} // namespace headless
