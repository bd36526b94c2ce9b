#pragma once

#include "platform/headless/d3d9/DrawVertex.h"
#include "platform/headless/d3d9/Vector3.h"
#include "platform/headless/d3d9/VertexFetch.h"

#include <bitset>

namespace headless {

/// A vertex in camera space: the eye is at the origin and looks along z.
struct CameraVertex {
    float position[4];
    Vector3 normal;
};

/// The matrices of a draw: world times view for each blend matrix, computed when a vertex first
/// needs it, and the projection.
class VertexTransform {
public:
    /// `ToCamera` reads `state` again, so it must not change before the last such call.
    void Prepare(const DrawState& state, const VertexLayout& layout);

    /// Blends with up to three stored weights; the last weight is what remains to 1.
    void ToCamera(const SourceVertex& source, CameraVertex& vertexOut);
    void ToClip(const CameraVertex& vertex, float (&clipOut)[4]) const;

private:
    /// A matrix from model to camera, and the one for normals: the inverse, transposed.
    struct Pair {
        D3DMATRIX position;
        float normal[3][3];
    };

    const Pair& Matrix(UINT index);

    const DrawState* state = nullptr; ///< not owned
    int weightCount = 0;              ///< number of stored weights; one more matrix is blended
    bool isBlended = false;
    bool isIndexed = false;
    bool hasNormal = false;
    bool normalises = false;
    std::bitset<kWorldMatrixCount> made;
    Pair pairs[kWorldMatrixCount];
};

/// Inverts a matrix; false if it is singular.
bool InvertMatrix(const D3DMATRIX& matrix, D3DMATRIX& inverseOut);

} // namespace headless
