#include "gfx/KRE_Gfx.h"

static constexpr int32_t kHighestLight = KRE_StateCache::kLights - 1;

static void CheckLight(KRE_Gfx& gfx, int32_t index)
{
    if (index < 0 || index > kHighestLight)
        gfx.Error("Light index >%i", kHighestLight);
}

void KRE_Gfx::SetLighting(int32_t on, const D3DCOLOR* color)
{
    lighting = on;
    unlitColor = on || !color ? 0xFFFFFFFF : (*color | 0xFF000000);
    SetRenderStateOnce(D3DRS_LIGHTING, static_cast<DWORD>(on));
}

void KRE_Gfx::SetSpecular(int32_t on)
{
    specular = on;
    SetRenderStateOnce(D3DRS_SPECULARENABLE, static_cast<DWORD>(on));
}

void KRE_Gfx::SetAmbient(D3DCOLOR color)
{
    ambientColor = color;
    SetRenderState(D3DRS_AMBIENT, color);
}

void KRE_Gfx::SetLight(int32_t index, const D3DLIGHT9& light)
{
    CheckLight(*this, index);
    lights[index] = light;
    Check(device->SetLight(static_cast<DWORD>(index), &lights[index]), "SetLight failed: %s");
}

void KRE_Gfx::LightEnable(int32_t index, int32_t on)
{
    CheckLight(*this, index);
    if (cache.lightEnable[index] == on)
        return;
    Check(device->LightEnable(static_cast<DWORD>(index), on), " LightEnable failed: %s");
    cache.lightEnable[index] = on;
}

void KRE_Gfx::SetMaterial(const D3DMATERIAL9& newMaterial)
{
    material = newMaterial;
    if (sceneEffect || materialEffect)
        return;
    Check(device->SetMaterial(&material), "SetMaterial failed: %s");
}
