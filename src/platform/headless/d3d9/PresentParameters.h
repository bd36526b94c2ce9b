#pragma once

#include <d3d9.h>

namespace headless {

/// Checks what a device is to be made or reset with, and completes it in place as the interface
/// publishes: a windowed size of 0 becomes the client size of the device window (or of `focusWindow`),
/// an unknown windowed format the desktop's, a back buffer count of 0 becomes 1. Gives
/// `D3DERR_INVALIDCALL` for what no device can be made with, `D3DERR_NOTAVAILABLE` for a full-screen
/// mode that the adapter does not have.
HRESULT CompletePresentParameters(D3DPRESENT_PARAMETERS& parameters, HWND focusWindow);

} // namespace headless
