#pragma once

#include <d3d9.h>

namespace headless {

/// Checks the parameters for creating or resetting a device and completes them in place as
/// published: a windowed size of 0 becomes the client size of the device window (or of
/// `focusWindow`), an unknown windowed format the desktop's, a back buffer count of 0 becomes 1.
/// Returns `D3DERR_INVALIDCALL` for impossible parameters, `D3DERR_NOTAVAILABLE` for a full-screen
/// mode that the adapter lacks.
HRESULT CompletePresentParameters(D3DPRESENT_PARAMETERS& parameters, HWND focusWindow);

} // namespace headless
