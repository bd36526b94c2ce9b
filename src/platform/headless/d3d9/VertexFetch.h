#pragma once

#include "platform/headless/d3d9/DrawState.h"

#include <cstdint>

namespace headless {

/// Where the parts of a vertex are, in bytes from its start; -1 for a part that it does not have.
struct VertexLayout {
    UINT sizeBytes = 0;
    bool isTransformed = false; ///< D3DFVF_XYZRHW
    bool hasW = false;          ///< D3DFVF_XYZW
    int weightCount = 0;        ///< floats, without the one that holds the indices
    int weights = -1;
    int indices = -1;
    bool indicesAreColour = false; ///< stored in the order red, green, blue, alpha
    int normal = -1;
    int pointSize = -1;
    int diffuse = -1;
    int specular = -1;
    int setCount = 0;
    int sets[D3DDP_MAXTEXCOORD] = {};
    int setFloats[D3DDP_MAXTEXCOORD] = {};
};

/// False for a format without a position or with more than eight texture sets.
bool MakeVertexLayout(DWORD fvf, VertexLayout& layoutOut);

/// The vertices of one draw. Vertex i is `bytes + i * strideBytes`; 0..count-1 are all in memory.
struct VertexStream {
    const uint8_t* bytes = nullptr; ///< not owned
    UINT strideBytes = 0;
    UINT count = 0;
};

/// A vertex as stored. Parts that the format lacks hold the published default: no weights, indices
/// 0 to 3, no normal, white diffuse and black specular colour, coordinates of 0.
struct SourceVertex {
    float position[4]; ///< the last is 1, W or RHW
    float weights[4];
    uint8_t indices[4];
    float normal[3];
    float pointSize;
    D3DCOLOR diffuse;
    D3DCOLOR specular;
};

/// `index` must be below `stream.count`.
void FetchVertex(const VertexLayout& layout, const VertexStream& stream, UINT index,
                 SourceVertex& vertexOut);

/// The texture set as four numbers: a 1 and then zeros follow the stored ones, so that the texture
/// matrix row after the last coordinate translates. A set that the format lacks is 0, 0, extended
/// likewise.
void FetchCoordinates(const VertexLayout& layout, const VertexStream& stream, UINT index, UINT set,
                      float (&coordinatesOut)[4]);

} // namespace headless
