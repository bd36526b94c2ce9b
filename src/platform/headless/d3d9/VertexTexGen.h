#pragma once

#include "platform/headless/d3d9/VertexTransform.h"

namespace headless {

/// Where the texture coordinates of each stage come from and how they are transformed.
class VertexTexGen {
public:
    void Prepare(const DrawState& state, const VertexLayout& layout, const VaryingLayout& varyings);

    /// Writes the coordinates of all stages that the draw samples. `vertex` is not read if the
    /// vertices are pretransformed.
    void Write(const VertexStream& stream, UINT index, const CameraVertex& vertex,
               ShadedVertex& shadedOut) const;

private:
    struct Stage {
        int place;    ///< index into the varyings
        DWORD source; ///< a D3DTSS_TCI value
        UINT set;
        bool isMoved; ///< the stage's texture matrix applies
        bool isProjected;
        int count;    ///< coordinates to write, 2 or 3
        bool isWhole; ///< four coordinates are written as they are
        int floats;   ///< that the source, or the matrix, gives
        int divisor;  ///< index of the coordinate to divide by; -1 if not projected
        D3DMATRIX matrix;
    };

    const VertexLayout* layout = nullptr; ///< not owned
    int stageCount = 0;
    Stage stages[kStageCount] = {};
};

} // namespace headless
