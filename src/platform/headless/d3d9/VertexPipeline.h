#pragma once

#include "platform/headless/d3d9/VertexFog.h"
#include "platform/headless/d3d9/VertexLight.h"
#include "platform/headless/d3d9/VertexTexGen.h"

namespace headless {

/// All vertex processing of one draw, with the vertices that were processed last: neighbours in a mesh
/// share vertices, and each is worked on once.
class VertexPipeline {
public:
    /// `state` and `stream`'s bytes stay as they are until the draw ends.
    void Prepare(const DrawState& state, const VertexLayout& layout, const VertexStream& stream,
                 const VaryingLayout& varyings, bool drawsPoints);

    /// The vertices of one primitive, at most three; the indices are below the stream's count. The
    /// results are good until the next call.
    void Shade(const UINT* indices, int count, const ShadedVertex** verticesOut);

private:
    void Process(UINT index, ShadedVertex& out);
    void Transform(const SourceVertex& source, CameraVertex& cameraOut, ShadedVertex& out);

    static constexpr UINT kKept = 1024; ///< vertices; a power of two

    VertexLayout layout;
    VertexStream stream;
    VaryingLayout varyings;
    bool drawsPoints = false;
    bool needsColours = false;
    UINT planeCount = 0;
    float planes[kClipPlaneCount][4] = {}; ///< in camera space; those that are off hold zeros
    VertexTransform transform;
    VertexLight light;
    VertexTexGen texGen;
    VertexFog fog;
    PointSize pointSize;
    UINT keptIndex[kKept] = {}; ///< one above the vertex's index; 0 for none
    ShadedVertex kept[kKept] = {};
    ShadedVertex spare[3] = {}; ///< for corners of one primitive that want the same place
};

} // namespace headless
