#include "scene/KRE_MaterialInfo.h"

namespace {

D3DCOLORVALUE Product(const D3DCOLORVALUE& a, const D3DCOLORVALUE& b)
{
    return {a.r * b.r, a.g * b.g, a.b * b.b, a.a * b.a};
}

D3DCOLORVALUE Sum(const D3DCOLORVALUE& a, const D3DCOLORVALUE& b)
{
    return {a.r + b.r, a.g + b.g, a.b + b.b, a.a + b.a};
}

void EvaluateInto(KRE_ColorTrack& track, float time, D3DCOLORVALUE* color)
{
    if (track.GetKeyCount() > 0)
        *color = track.Evaluate(time);
}

} // namespace

void KRE_MaterialInfo::SetDrawingDefaults()
{
    diffuse = ambient = {0.9f, 0.9f, 0.9f, 1.0f};
    specular = emissive = {0.0f, 0.0f, 0.0f, 1.0f};
    power = 0.0f;
}

D3DMATERIAL9 KRE_MaterialInfo::DeviceMaterial() const
{
    D3DMATERIAL9 material;
    material.Diffuse = diffuse;
    material.Ambient = ambient;
    material.Specular = specular;
    material.Emissive = emissive;
    material.Power = power;
    return material;
}

void KRE_MaterialInfo::Evaluate(float time)
{
    EvaluateInto(diffuseTrack, time, &diffuse);
    EvaluateInto(specularTrack, time, &specular);
    EvaluateInto(ambientTrack, time, &ambient);
    EvaluateInto(selfIllumTrack, time, &ambient);
    if (opacityTrack.GetKeyCount() > 0)
        transparency = opacityTrack.Evaluate(time);
}

KRE_MaterialInfo KRE_MaterialInfo::Combine(const KRE_MaterialInfo& override) const
{
    KRE_MaterialInfo result;
    result.reflectionSet = override.reflectionSet;
    result.transparency = 1.0f - (1.0f - override.transparency) * (1.0f - transparency);
    result.power = power;
    result.diffuse = Product(override.diffuse, diffuse);
    result.ambient = Product(override.ambient, ambient);
    result.specular = Product(override.specular, specular);
    result.emissive = override.addEmissive ? Sum(override.emissive, emissive)
                                           : Product(override.emissive, emissive);
    result.transparencyType = transparencyType;
    result.mirrorU = mirrorU;
    result.mirrorV = mirrorV;
    result.tileU = tileU;
    result.tileV = tileV;
    result.reflectionAmount = override.reflectionAmount * reflectionAmount;
    return result;
}
