#pragma once

#include "platform/headless/d3d9/VertexFog.h"
#include "platform/headless/d3d9/VertexLight.h"
#include "platform/headless/d3d9/VertexTexGen.h"

namespace headless {

/// All vertex processing of one draw, with a cache of recent vertices: adjacent triangles share
/// vertices, and each is processed once.
class VertexPipeline {
public:
    /// `state` and `stream`'s bytes must not change until the draw ends.
    void Prepare(const DrawState& state, const VertexLayout& layout, const VertexStream& stream,
                 const VaryingLayout& varyings, bool drawsPoints);

    /// The vertices of one primitive, at most three; the indices are below the stream's count. The
    /// results are valid until the next call.
    void Shade(const UINT* indices, int count, const ShadedVertex** verticesOut);

private:
    void Process(UINT index, ShadedVertex& out);
    void Transform(const SourceVertex& source, CameraVertex& cameraOut, ShadedVertex& out);

    static constexpr UINT kKept = 1024; ///< cached vertices; a power of two

    VertexLayout layout;
    VertexStream stream;
    VaryingLayout varyings;
    bool drawsPoints = false;
    bool needsColours = false;
    UINT planeCount = 0;
    float planes[kClipPlaneCount][4] = {}; ///< in camera space; zeros if disabled
    VertexTransform transform;
    VertexLight light;
    VertexTexGen texGen;
    VertexFog fog;
    PointSize pointSize;
    UINT keptIndex[kKept] = {}; ///< vertex index plus one; 0 for an empty slot
    ShadedVertex kept[kKept] = {};
    ShadedVertex spare[3] = {}; ///< for corners of one primitive that map to the same slot
};

} // namespace headless
