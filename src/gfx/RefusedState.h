#pragma once

#include <functional>
#include <string>

#include <d3d9.h>

/// Finds the state that makes the device refuse a draw: the first one that lets the draw succeed
/// when it, and those tried before it, are reset to the values of a new device. Returns it as
/// "D3DRS_STENCILENABLE = 1", stages as "D3DTSS_COLOROP[1] = 27"; "" if there is none, or if the
/// draw now succeeds unchanged. `fvf` is the vertex format of the draw.
///
/// Use only before raising an error: states stay as the search left them, and something may be
/// drawn.
std::string FindRefusedState(IDirect3DDevice9& device, DWORD fvf,
                             const std::function<HRESULT()>& draw);
