#include "platform/EffectFault.h"

/// The system's library reports only a result code.
std::string EffectFault(ID3DXEffect&, D3DXHANDLE)
{
    return "";
}

std::vector<std::string> EffectWarnings(ID3DXEffect&, D3DXHANDLE)
{
    return {};
}
