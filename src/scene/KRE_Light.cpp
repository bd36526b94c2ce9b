#include "scene/KRE_Light.h"

KRE_Light::KRE_Light()
{
    SetClassName("KRE_Light");
    objectKind = kObjectLight;
}

D3DLIGHT9 KRE_Light::DefaultLight()
{
    D3DLIGHT9 light = {};
    light.Falloff = 1.0f;
    return light;
}

void KRE_Light::UpdateLightData(const D3DXMATRIX* extraTM)
{
    const D3DXMATRIX correction = CorrectionTM(extraTM);
    D3DXVECTOR3 moved;
    D3DXVec3TransformCoord(&moved, &worldPosition, &correction);
    light.Position = moved;
    D3DXVec3TransformCoord(&moved, &direction, &correction);
    light.Direction = moved;
}

int32_t KRE_Light::SetDirectional(float diffuseR, float diffuseG, float diffuseB,
                                  [[maybe_unused]] float diffuseA, float specularR, float specularG,
                                  float specularB, [[maybe_unused]] float specularA, float ambientR,
                                  float ambientG, float ambientB, [[maybe_unused]] float ambientA,
                                  float range)
{
    light = {};
    light.Type = D3DLIGHT_DIRECTIONAL;
    light.Diffuse = {diffuseR, diffuseG, diffuseB, 0};
    light.Specular = {specularR, specularG, specularB, 0};
    light.Ambient = {ambientR, ambientG, ambientB, 0};
    light.Range = range;
    lightMode = 0;
    return 1;
}

void KRE_Light::Reset()
{
    lightMode = 1;
    lightOn = 1;
    light = DefaultLight();
    KRE_Target3dObject::Reset();
    objectKind = kObjectLight;
}
