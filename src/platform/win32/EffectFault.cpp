#include "platform/EffectFault.h"

/// The system's library has no reason but a result.
std::string EffectFault(ID3DXEffect&, D3DXHANDLE)
{
    return "";
}
