#pragma once

#include "platform/headless/d3dx/ImageCodec.h"

namespace headless {

/// Unpacks run-length coded BMP pixels into one palette index per byte, `width` * `height` of them,
/// in the file's row order. `fourBits` selects the 4-bit coding, else the 8-bit one. Pixels that
/// the coding skips become 0. False if the data ends before all rows are filled and without an end
/// mark, or moves outside the picture.
bool UnpackBmpRuns(ImageFile coded, bool fourBits, UINT width, UINT height, uint8_t* indicesOut);

} // namespace headless
