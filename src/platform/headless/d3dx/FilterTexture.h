#pragma once

#include <d3dx9.h>

namespace headless {

/// Fills the levels from `firstLevel` on, each from the next larger one. `filter` has passed
/// `CheckFilter`, `firstLevel` is at least 1.
HRESULT FillLowerLevels(IDirect3DTexture9& texture, UINT firstLevel, DWORD filter);

} // namespace headless
