#pragma once

#include <d3dx9.h>

namespace headless {

/// The format nearest to `wanted` among those that the device supports for textures with `usage`:
/// the one that loses the fewest bits and then adds the fewest. `D3DFMT_UNKNOWN` counts as
/// A8R8G8B8. Returns `D3DFMT_UNKNOWN` if the device supports none.
D3DFORMAT NearestTextureFormat(IDirect3DDevice9& device, DWORD usage, D3DFORMAT wanted);

/// A format with alpha in place of one that cannot hold the transparency that a colour key makes.
D3DFORMAT WithAlpha(D3DFORMAT format);

} // namespace headless
