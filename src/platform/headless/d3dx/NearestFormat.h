#pragma once

#include <d3dx9.h>

namespace headless {

/// The format nearest to `wanted` of those that the device can make a texture of with `usage`:
/// the one that loses the fewest bits and then adds the fewest. `D3DFMT_UNKNOWN` counts as
/// A8R8G8B8. Gives `D3DFMT_UNKNOWN` if the device can make none.
D3DFORMAT NearestTextureFormat(IDirect3DDevice9& device, DWORD usage, D3DFORMAT wanted);

} // namespace headless
