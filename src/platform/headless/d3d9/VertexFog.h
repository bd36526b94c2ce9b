#pragma once

#include "platform/headless/d3d9/VertexTransform.h"

namespace headless {

// Fog and point size, which both depend on a vertex's distance.

/// The three published curves of fog over distance.
struct FogCurve {
    D3DFOGMODE mode = D3DFOG_NONE;
    float start = 0.0f;
    float end = 1.0f;
    float density = 1.0f;

    FogCurve() = default;
    FogCurve(const DrawState& state, D3DFOGMODE fogMode);
    /// 1 is no fog, 0 is fog only. If start and end are equal, all is fog.
    float Factor(float distance) const;
};

/// Fog computed per vertex, from depth or from true distance.
struct VertexFog {
    FogCurve curve;
    bool isFromSpecular = false; ///< no fog mode is set, or the vertex is pretransformed
    bool isRange = false;

    VertexFog() = default;
    VertexFog(const DrawState& state, const VertexLayout& layout);
    float Factor(const CameraVertex& vertex, float specularAlpha) const;
};

/// The side length of a point in pixels.
struct PointSize {
    bool isStored = false; ///< in each vertex
    bool isScaled = false;
    float size = 1.0f, least = 1.0f, most = 64.0f;
    float scale[3] = {1.0f, 0.0f, 0.0f};
    float viewportHeight = 0.0f;

    PointSize() = default;
    PointSize(const DrawState& state, const VertexLayout& layout);
    float Of(const SourceVertex& source, const CameraVertex& vertex) const;
};

} // namespace headless
