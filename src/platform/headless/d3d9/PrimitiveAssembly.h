#pragma once

#include "platform/headless/d3d9/DrawState.h"

#include <cstdint>

namespace headless {

/// The order in which a draw takes its vertices: straight on, or through indices.
struct IndexSource {
    const std::uint8_t* bytes = nullptr; ///< not owned; null to take vertices straight on
    UINT sizeBytes = 2;                  ///< of one index
    UINT first = 0;                      ///< vertex, or place among the indices
    INT base = 0;                        ///< added to every index

    /// The vertex at place `i` of the draw. Can lie outside of what there is.
    std::int64_t Vertex(UINT i) const;
};

/// Corners of one primitive of `type`: 1, 2 or 3.
int CornerCount(D3DPRIMITIVETYPE type);

/// Vertices that `count` primitives take, 0 for a `type` that is none; at most 3 * 2^32.
std::uint64_t VertexCountOf(D3DPRIMITIVETYPE type, UINT count);

/// Places of the corners of primitive `i`, all triangles turning alike. The first corner is the one
/// that gives its colour to flat shading.
void CornersOf(D3DPRIMITIVETYPE type, UINT i, UINT (&placesOut)[3]);

} // namespace headless
