#pragma once

#include "platform/headless/d3d9/VertexTransform.h"

namespace headless {

/// Where the texture coordinates of each stage come from and what is done to them.
class VertexTexGen {
public:
    void Prepare(const DrawState& state, const VertexLayout& layout, const VaryingLayout& varyings);

    /// Writes the coordinates of all stages that the draw samples. `vertex` is not read for vertices
    /// that came transformed.
    void Write(const VertexStream& stream, UINT index, const CameraVertex& vertex,
               ShadedVertex& shadedOut) const;

private:
    struct Stage {
        int place;    ///< in the varyings
        DWORD source; ///< a D3DTSS_TCI value
        UINT set;
        bool isMoved; ///< by the stage's texture matrix
        bool isProjected;
        int divisor; ///< of projected ones: the coordinate that divides the others; -1 for none
        D3DMATRIX matrix;
    };

    const VertexLayout* layout = nullptr; ///< not owned
    int stageCount = 0;
    Stage stages[kStageCount] = {};
};

} // namespace headless
