#pragma once

#include "platform/headless/d3dx/PixelCopy.h"

namespace headless {

/// True if `rect` is not empty and lies inside `width` by `height` pixels.
bool IsRectInside(const RECT& rect, UINT width, UINT height);

/// The part of `source` in `rect`, which begins at a whole block of the format. False if it does not,
/// or sticks out of the picture.
bool CropSource(PixelSource& sourceInOut, const RECT& rect);

} // namespace headless
