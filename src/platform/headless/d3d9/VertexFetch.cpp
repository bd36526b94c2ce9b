#include "platform/headless/d3d9/VertexFetch.h"

#include "platform/LittleEndian.h"
#include "platform/headless/d3d9/VertexFormat.h"

#include <algorithm>
#include <cstring>

namespace headless {

namespace {

struct PositionPart {
    DWORD bits;
    int floats;
    int betas; ///< how many of these are floats for blending
};

constexpr PositionPart kPositions[] = {
    {D3DFVF_XYZ, 3, 0},   {D3DFVF_XYZRHW, 4, 0}, {D3DFVF_XYZB1, 4, 1}, {D3DFVF_XYZB2, 5, 2},
    {D3DFVF_XYZB3, 6, 3}, {D3DFVF_XYZB4, 7, 4},  {D3DFVF_XYZB5, 8, 5}, {D3DFVF_XYZW, 4, 0},
};

/// Assigns consecutive offsets to the parts.
struct Places {
    int next = 0;

    int Take(bool present, int bytes)
    {
        const int place = next;
        next += present ? bytes : 0;
        return present ? place : -1;
    }
};

void PlaceBlending(DWORD fvf, int betas, VertexLayout& layout)
{
    const bool hasIndices = (fvf & (D3DFVF_LASTBETA_UBYTE4 | D3DFVF_LASTBETA_D3DCOLOR)) != 0;
    const int floats = betas - (hasIndices && betas > 0 ? 1 : 0);
    layout.weightCount = std::min(floats, 4);
    layout.weights = betas > 0 ? 12 : -1;
    layout.indices = hasIndices && betas > 0 ? 12 + floats * 4 : -1;
    layout.indicesAreColour = (fvf & D3DFVF_LASTBETA_D3DCOLOR) != 0;
}

template <typename T>
void Load(const uint8_t* vertex, int place, T* valuesOut, int count = 1)
{
    if (place >= 0)
        std::memcpy(valuesOut, vertex + place, sizeof(T) * static_cast<size_t>(count));
}

const uint8_t* VertexBytes(const VertexStream& stream, UINT index)
{
    return stream.bytes + size_t{index} * stream.strideBytes;
}

} // namespace

bool MakeVertexLayout(DWORD fvf, VertexLayout& layoutOut)
{
    const auto* position =
        std::find_if(std::begin(kPositions), std::end(kPositions), [fvf](const PositionPart& row) {
            return row.bits == (fvf & D3DFVF_POSITION_MASK);
        });
    const DWORD setCount = (fvf & D3DFVF_TEXCOUNT_MASK) >> D3DFVF_TEXCOUNT_SHIFT;
    if (position == std::end(kPositions) || setCount > D3DDP_MAXTEXCOORD)
        return false;
    layoutOut = {};
    layoutOut.isTransformed = position->bits == D3DFVF_XYZRHW;
    layoutOut.hasW = position->bits == D3DFVF_XYZW;
    PlaceBlending(fvf, position->betas, layoutOut);
    Places places = {position->floats * 4};
    layoutOut.normal = places.Take((fvf & D3DFVF_NORMAL) != 0, 12);
    layoutOut.pointSize = places.Take((fvf & D3DFVF_PSIZE) != 0, 4);
    layoutOut.diffuse = places.Take((fvf & D3DFVF_DIFFUSE) != 0, 4);
    layoutOut.specular = places.Take((fvf & D3DFVF_SPECULAR) != 0, 4);
    layoutOut.setCount = static_cast<int>(setCount);
    for (int set = 0; set < layoutOut.setCount; ++set) {
        layoutOut.setFloats[set] = static_cast<int>(TextureSetFloats(fvf, static_cast<UINT>(set)));
        layoutOut.sets[set] = places.Take(true, layoutOut.setFloats[set] * 4);
    }
    layoutOut.sizeBytes = VertexSize(fvf);
    return true;
}

void FetchVertex(const VertexLayout& layout, const VertexStream& stream, UINT index,
                 SourceVertex& vertexOut)
{
    const uint8_t* vertex = VertexBytes(stream, index);
    vertexOut = {{0, 0, 0, 1}, {}, {0, 1, 2, 3}, {}, 1.0f, 0xFFFFFFFF, 0};
    Load(vertex, 0, vertexOut.position, layout.isTransformed || layout.hasW ? 4 : 3);
    Load(vertex, layout.weights, vertexOut.weights, layout.weightCount);
    Load(vertex, layout.indices, vertexOut.indices, 4);
    if (layout.indices >= 0 && layout.indicesAreColour) { // a number: blue is its lowest byte
        ReorderWords(vertexOut.indices, 4, 1);
        std::swap(vertexOut.indices[0], vertexOut.indices[2]);
    }
    Load(vertex, layout.normal, vertexOut.normal, 3);
    Load(vertex, layout.pointSize, &vertexOut.pointSize);
    Load(vertex, layout.diffuse, &vertexOut.diffuse);
    Load(vertex, layout.specular, &vertexOut.specular);
}

void FetchCoordinates(const VertexLayout& layout, const VertexStream& stream, UINT index, UINT set,
                      float (&coordinatesOut)[4])
{
    std::fill(std::begin(coordinatesOut), std::end(coordinatesOut), 0.0f);
    int floats = 2;
    if (set < static_cast<UINT>(layout.setCount)) {
        floats = layout.setFloats[set];
        Load(VertexBytes(stream, index), layout.sets[set], coordinatesOut, floats);
    }
    if (floats < 4)
        coordinatesOut[floats] = 1.0f;
}

} // namespace headless
