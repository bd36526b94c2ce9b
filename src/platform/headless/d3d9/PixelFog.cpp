#include "platform/headless/d3d9/PixelFog.h"

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
    const D3DCOLOR colour = state.Render(D3DRS_FOGCOLOR);
    const auto part = [colour](int shift) {
        return static_cast<float>(colour >> shift & 0xFF) / 255.0f;
    };
    fog.colour = SplatColour(part(16), part(8), part(0), 1.0f);
    return fog;
}

Lanes FogFactors(const PixelFog& fog, Lanes depth, Lanes w)
{
    const Lanes distance = fog.source == FogSource::Depth ? depth : w;
    if (fog.curve.mode == D3DFOG_LINEAR && fog.curve.start != fog.curve.end) {
        const Lanes left = Splat(fog.curve.end) - distance;
        return Saturate(left / Splat(fog.curve.end - fog.curve.start));
    }
    alignas(16) float values[4];
    StoreFloats(values, distance);
    for (float& value : values)
        value = fog.curve.Factor(value);
    return LoadFloats(values);
}

void ApplyFog(const PixelFog& fog, Lanes factor, Rgba4& colourInOut)
{
    for (int c = 0; c < 3; ++c) {
        const Lanes difference = colourInOut.c[c] - fog.colour.c[c];
        colourInOut.c[c] = fog.colour.c[c] + difference * factor;
    }
}

} // namespace headless
