#pragma once

#include <string>

#include <d3dx9.h>

/// Why the host cannot draw a technique of an effect, as one line with file and place; for null,
/// why it can draw none of them. "" if there is no reason, and on a host that does not report one.
std::string EffectFault(ID3DXEffect& effect, D3DXHANDLE technique);
