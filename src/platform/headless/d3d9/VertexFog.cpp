#include "platform/headless/d3d9/VertexFog.h"

#include "platform/headless/d3d9/Adapter.h"

#include <algorithm>
#include <cmath>

namespace headless {

namespace {

Vector3 PlaceOf(const CameraVertex& vertex)
{
    return {vertex.position[0], vertex.position[1], vertex.position[2]};
}

} // namespace

FogCurve::FogCurve(const DrawState& state, D3DFOGMODE fogMode)
    : mode(fogMode),
      start(state.RenderFloat(D3DRS_FOGSTART)),
      end(state.RenderFloat(D3DRS_FOGEND)),
      density(state.RenderFloat(D3DRS_FOGDENSITY))
{}

float FogCurve::Factor(float distance) const
{
    if (mode == D3DFOG_LINEAR)
        return start == end ? 0.0f : Clamp01((end - distance) / (end - start));
    const double thickness = static_cast<double>(distance) * static_cast<double>(density);
    const double exponent = mode == D3DFOG_EXP2 ? thickness * thickness : thickness;
    return Clamp01(static_cast<float>(std::exp(-exponent)));
}

VertexFog::VertexFog(const DrawState& state, const VertexLayout& layout)
    : curve(state, static_cast<D3DFOGMODE>(state.Render(D3DRS_FOGVERTEXMODE))),
      isFromSpecular(layout.isTransformed || curve.mode == D3DFOG_NONE),
      isRange(state.Render(D3DRS_RANGEFOGENABLE) != 0)
{}

float VertexFog::Factor(const CameraVertex& vertex, float specularAlpha) const
{
    if (isFromSpecular)
        return specularAlpha;
    return curve.Factor(isRange ? Length(PlaceOf(vertex)) : std::fabs(vertex.position[2]));
}

PointSize::PointSize(const DrawState& state, const VertexLayout& layout)
    : isStored(layout.pointSize >= 0),
      isScaled(!layout.isTransformed && state.Render(D3DRS_POINTSCALEENABLE) != 0),
      size(state.RenderFloat(D3DRS_POINTSIZE)),
      least(state.RenderFloat(D3DRS_POINTSIZE_MIN)),
      most(state.RenderFloat(D3DRS_POINTSIZE_MAX)),
      scale{state.RenderFloat(D3DRS_POINTSCALE_A), state.RenderFloat(D3DRS_POINTSCALE_B),
            state.RenderFloat(D3DRS_POINTSCALE_C)},
      viewportHeight(static_cast<float>(state.viewport.Height))
{}

/// Scaled point sizes are a fraction of the viewport's height and shrink with distance from the
/// eye.
float PointSize::Of(const SourceVertex& source, const CameraVertex& vertex) const
{
    float side = isStored ? source.pointSize : size;
    if (isScaled) {
        const float distance = Length(PlaceOf(vertex));
        const float divisor = scale[0] + distance * (scale[1] + distance * scale[2]);
        side *= viewportHeight * (divisor > 0.0f ? 1.0f / std::sqrt(divisor) : 1.0f);
    }
    side = side > least ? side : least;
    side = side < most ? side : most;
    return side > 0.0f ? std::min(side, kMaxPointSize) : 0.0f; // whatever the limits are, even NaN
}

} // namespace headless
