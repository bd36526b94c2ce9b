#pragma once

#include <string>
#include <vector>

#include <d3dx9.h>

/// Why the host cannot draw a technique of an effect, as one line with file and place; for null,
/// why it can draw none of them. "" if there is no reason, and on a host that does not report one.
std::string EffectFault(ID3DXEffect& effect, D3DXHANDLE technique);

/// What the compiler of shaders has to say about a technique that the host can draw, each as one line with
/// file and place.
std::vector<std::string> EffectWarnings(ID3DXEffect& effect, D3DXHANDLE technique);
