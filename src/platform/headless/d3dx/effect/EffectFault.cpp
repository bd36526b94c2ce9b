#include "platform/EffectFault.h"

#include "platform/headless/d3dx/effect/FxEffect.h"

using namespace headless::fx;

std::string EffectFault(ID3DXEffect& effect, D3DXHANDLE technique)
{
    auto* const own = dynamic_cast<FxEffect*>(&effect); // tests may pass other implementations
    return own ? own->Fault(technique) : "";
}

std::vector<std::string> EffectWarnings(ID3DXEffect& effect, D3DXHANDLE technique)
{
    auto* const own = dynamic_cast<FxEffect*>(&effect);
    return own ? own->Warnings(technique) : std::vector<std::string>();
}
