#pragma once

#include "platform/headless/d3d9/DrawState.h"

#include <cstdint>

namespace headless {

/// The order in which a draw takes its vertices: sequentially, or through indices.
struct IndexSource {
    const uint8_t* bytes = nullptr; ///< not owned; null for sequential vertices
    UINT sizeBytes = 2;             ///< of one index
    UINT first = 0;                 ///< vertex, or position in the indices
    INT base = 0;                   ///< added to every index

    /// The vertex at position `i` of the draw. May be out of range.
    int64_t Vertex(UINT i) const;
    /// The lowest and highest of the first `count` indices, at least 1, without `base`. Only where
    /// there are indices.
    void FindRange(UINT count, uint32_t& lowestOut, uint32_t& highestOut) const;
};

/// Corners of one primitive of `type`: 1, 2 or 3.
int CornerCount(D3DPRIMITIVETYPE type);

/// Number of vertices that `count` primitives take, 0 for an unknown `type`; at most 3 * 2^32.
uint64_t VertexCountOf(D3DPRIMITIVETYPE type, UINT count);

/// Positions of the corners of primitive `i`; all triangles get the same winding. Flat shading
/// takes the colour of the first corner.
void CornersOf(D3DPRIMITIVETYPE type, UINT i, UINT (&placesOut)[3]);

} // namespace headless
