#pragma once

#include <functional>
#include <string>

#include <d3d9.h>

/// Finds the state because of which the device refuses a draw: the first one that brings the draw about
/// when it, and those looked at before it, are put back to what a new device has. Gives it as
/// "D3DRS_STENCILENABLE = 1", stages as "D3DTSS_COLOROP[1] = 27"; "" if none does, or if the device has
/// changed its mind. `fvf` is the vertex format that the draw is made for.
///
/// For the way to an error only: states stay as the search left them, and something may be drawn.
std::string FindRefusedState(IDirect3DDevice9& device, DWORD fvf,
                             const std::function<HRESULT()>& draw);
