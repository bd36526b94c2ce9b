#pragma once

#include "platform/headless/d3dx/PixelCopy.h"

namespace headless {

/// True if `rect` is not empty and lies inside `width` by `height` pixels.
bool IsRectInside(const RECT& rect, UINT width, UINT height);

/// Crops `source` to `rect`, which must start on a block border of the format. False if it does
/// not, or extends outside the picture.
bool CropSource(PixelSource& sourceInOut, const RECT& rect);

} // namespace headless
