#include "gfx/KRE_Gfx.h"

void KRE_Gfx::SetFog(const KRE_FogRecord& record)
{
    fog = record;
    SetRenderState(D3DRS_FOGCOLOR, fog.color);
    // QUIRK: the flag selects the other kind of fog; scenes set it for range-based fog.
    if (fog.tableFlag) {
        SetRenderState(D3DRS_FOGVERTEXMODE, static_cast<DWORD>(fog.mode));
        SetRenderState(D3DRS_RANGEFOGENABLE, DWORD{1});
    } else {
        SetRenderState(D3DRS_FOGTABLEMODE, static_cast<DWORD>(fog.mode));
    }
    if (fog.mode == D3DFOG_LINEAR) {
        SetRenderState(D3DRS_FOGSTART, fog.start);
        SetRenderState(D3DRS_FOGEND, fog.end);
    } else {
        SetRenderState(D3DRS_FOGDENSITY, fog.density);
    }
}

void KRE_Gfx::SetFogEnable(int32_t on)
{
    fogEnable = on;
    SetRenderState(D3DRS_FOGENABLE, static_cast<DWORD>(on));
}
