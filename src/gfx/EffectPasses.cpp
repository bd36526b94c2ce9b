#include "gfx/EffectPasses.h"

#include <string>

#include "gfx/RefusedState.h"

void WarnOfRefusedPass(KRE_Gfx& gfx, const KRE_ShaderEffect& effect, UINT pass,
                       const std::function<HRESULT()>& draw)
{
    const std::string state = FindRefusedState(*gfx.device.Get(), gfx.currentFvf, draw);
    if (!state.empty())
        gfx.Warning("The device refuses %s in pass %u of technique %i of the effect '%s'",
                    state.c_str(), pass, effect.technique, effect.data->file.c_str());
}
