// The light equation of the published fixed-function pipeline:
//   diffuse  = emissive + ambient * (global + sum La a s) + diffuse * sum (N.L) Ld a s
//   specular = specular * sum (N.H)^power Ls a s
// with a the attenuation by distance and s the spot factor of each light.

#include "platform/headless/d3d9/VertexLight.h"

#include <algorithm>
#include <cmath>

namespace headless {

namespace {

enum Source { kAmbient, kDiffuse, kSpecular, kEmissive };

Float4 ValueOf(const D3DCOLORVALUE& value)
{
    return {value.r, value.g, value.b, value.a};
}

void AddScaled(Float4& sum, const Float4& colour, float scale)
{
    sum.r += colour.r * scale;
    sum.g += colour.g * scale;
    sum.b += colour.b * scale;
}

/// Cosine of half an angle, computed in double and rounded once.
float HalfCosine(float angleRadians)
{
    return static_cast<float>(std::cos(static_cast<double>(angleRadians) * 0.5));
}

float Power(float base, float exponent)
{
    return static_cast<float>(std::pow(static_cast<double>(base), static_cast<double>(exponent)));
}

Vector3 TurnedBy(const D3DMATRIX& m, const D3DVECTOR& v)
{
    return {v.x * m._11 + v.y * m._21 + v.z * m._31, v.x * m._12 + v.y * m._22 + v.z * m._32,
            v.x * m._13 + v.y * m._23 + v.z * m._33};
}

/// The material's or the vertex's colour, as `source` selects.
Float4 Reflecting(DWORD source, const D3DCOLORVALUE& own, const SourceVertex& vertex)
{
    if (source == D3DMCS_COLOR1)
        return ColourOf(vertex.diffuse);
    return source == D3DMCS_COLOR2 ? ColourOf(vertex.specular) : ValueOf(own);
}

} // namespace

Float4 ColourOf(D3DCOLOR colour)
{
    const auto part = [colour](int shift) {
        return static_cast<float>(colour >> shift & 0xFF) / 255.0f;
    };
    return {part(16), part(8), part(0), part(24)};
}

void VertexLight::Prepare(const DrawState& state, const VertexLayout& layout)
{
    lights.clear();
    isLit = state.Render(D3DRS_LIGHTING) != 0;
    if (!isLit)
        return;
    isLocalViewer = state.Render(D3DRS_LOCALVIEWER) != 0;
    hasHighlights = state.Render(D3DRS_SPECULARENABLE) != 0;
    material = state.material;
    globalAmbient = ColourOf(state.Render(D3DRS_AMBIENT));
    constexpr D3DRENDERSTATETYPE kSources[] = {
        D3DRS_AMBIENTMATERIALSOURCE, D3DRS_DIFFUSEMATERIALSOURCE, D3DRS_SPECULARMATERIALSOURCE,
        D3DRS_EMISSIVEMATERIALSOURCE};
    for (int i = 0; i < 4; ++i) {
        sources[i] = D3DMCS_MATERIAL;
        const DWORD source = state.Render(kSources[i]);
        const bool has = (source == D3DMCS_COLOR1 && layout.diffuse >= 0) ||
                         (source == D3DMCS_COLOR2 && layout.specular >= 0);
        if (has && state.Render(D3DRS_COLORVERTEX))
            sources[i] = source;
    }
    for (const auto& [index, slot] : state.lights)
        if (slot.enabled)
            lights.push_back(MakeLight(slot.light, state.view));
}

VertexLight::Light VertexLight::MakeLight(const D3DLIGHT9& light, const D3DMATRIX& view)
{
    Light made = {};
    made.type = light.Type;
    made.diffuse = ValueOf(light.Diffuse);
    made.specular = ValueOf(light.Specular);
    made.ambient = ValueOf(light.Ambient);
    made.position = TurnedBy(view, light.Position) + Vector3{view._41, view._42, view._43};
    made.direction = Normalised(TurnedBy(view, light.Direction));
    made.range = light.Range;
    made.attenuation[0] = light.Attenuation0;
    made.attenuation[1] = light.Attenuation1;
    made.attenuation[2] = light.Attenuation2;
    made.falloff = light.Falloff;
    made.cosInner = HalfCosine(light.Theta);
    made.cosOuter = HalfCosine(light.Phi);
    return made;
}

void VertexLight::AddLight(const Light& light, const CameraVertex& vertex, const Vector3& toEye,
                           float power, Sums& sums) const
{
    Vector3 toLight = light.direction * -1.0f;
    float strength = 1.0f;
    if (light.type != D3DLIGHT_DIRECTIONAL) {
        toLight =
            light.position - Vector3{vertex.position[0], vertex.position[1], vertex.position[2]};
        const float distance = Length(toLight);
        if (!(distance <= light.range))
            return;
        toLight = Normalised(toLight);
        const float* a = light.attenuation;
        const float weakening = a[0] + distance * (a[1] + distance * a[2]);
        strength = weakening > 0.0f ? 1.0f / weakening : 1.0f;
    }
    if (light.type == D3DLIGHT_SPOT) {
        const float rho = -Dot(light.direction, toLight);
        if (!(rho > light.cosOuter))
            return;
        if (rho <= light.cosInner)
            strength *=
                Power((rho - light.cosOuter) / (light.cosInner - light.cosOuter), light.falloff);
    }
    AddScaled(sums.ambient, light.ambient, strength);
    const float facing = Dot(vertex.normal, toLight);
    if (!(facing > 0.0f))
        return;
    AddScaled(sums.diffuse, light.diffuse, facing * strength);
    const float shine = hasHighlights ? Dot(vertex.normal, Normalised(toEye + toLight)) : 0.0f;
    if (shine > 0.0f)
        AddScaled(sums.specular, light.specular, Power(shine, power) * strength);
}

VertexColours VertexLight::Colours(const SourceVertex& source, const CameraVertex& vertex) const
{
    VertexColours colours = {ColourOf(source.diffuse), ColourOf(source.specular)};
    if (!isLit)
        return colours;
    const float* p = vertex.position;
    const Vector3 toEye =
        isLocalViewer ? Normalised({-p[0], -p[1], -p[2]}) : Vector3{0.0f, 0.0f, -1.0f};
    Sums sums = {globalAmbient, {}, {}};
    for (const Light& light : lights)
        AddLight(light, vertex, toEye, material.Power, sums);

    const Float4 ambient = Reflecting(sources[kAmbient], material.Ambient, source);
    const Float4 diffuse = Reflecting(sources[kDiffuse], material.Diffuse, source);
    const Float4 specular = Reflecting(sources[kSpecular], material.Specular, source);
    const Float4 emissive = Reflecting(sources[kEmissive], material.Emissive, source);
    const auto lit = [&](float Float4::*c) {
        return Clamp01(emissive.*c + ambient.*c * sums.ambient.*c + diffuse.*c * sums.diffuse.*c);
    };
    colours.diffuse = {lit(&Float4::r), lit(&Float4::g), lit(&Float4::b), Clamp01(diffuse.a)};
    // Alpha stays the vertex's own, which may be a fog factor.
    colours.specular = {Clamp01(specular.r * sums.specular.r),
                        Clamp01(specular.g * sums.specular.g),
                        Clamp01(specular.b * sums.specular.b), colours.specular.a};
    return colours;
}

} // namespace headless
