#pragma once

#include <string>

#include <d3dx9.h>

/// Why the host cannot draw a technique of an effect, in a line with file and place; for null why it can
/// draw none of the effect. "" for no reason, and on a host that does not tell.
std::string EffectFault(ID3DXEffect& effect, D3DXHANDLE technique);
