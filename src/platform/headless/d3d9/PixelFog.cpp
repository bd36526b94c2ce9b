#include "platform/headless/d3d9/PixelFog.h"

#include "platform/headless/d3d9/ColourParts.h"

namespace headless {

namespace {

/// The fourth column of a projection without perspective is 0, 0, 0, 1.
bool IsPerspective(const D3DMATRIX& m)
{
    return m._14 != 0.0f || m._24 != 0.0f || m._34 != 0.0f || m._44 != 1.0f;
}

FogSource SourceOf(const DrawState& state)
{
    if (!state.Render(D3DRS_FOGENABLE))
        return FogSource::None;
    if (state.Render(D3DRS_FOGTABLEMODE) == D3DFOG_NONE)
        return FogSource::Vertex;
    return IsPerspective(state.projection) ? FogSource::EyeW : FogSource::Depth;
}

} // namespace

PixelFog MakePixelFog(const DrawState& state)
{
    PixelFog fog;
    fog.source = SourceOf(state);
    fog.curve = FogCurve(state, static_cast<D3DFOGMODE>(state.Render(D3DRS_FOGTABLEMODE)));
    UnpackColour(state.Render(D3DRS_FOGCOLOR), fog.colour);
    return fog;
}

} // namespace headless
