#pragma once

#include "platform/headless/d3dx/ImageCodec.h"

namespace headless {

/// Unpacks run-length coded BMP pixels into one palette index a byte, `width` * `height` of them, in
/// the file's order of rows. `fourBits` tells the 4-bit coding from the 8-bit one. Pixels that the
/// coding skips become 0. False if the coding ends without its end mark before all rows are filled,
/// or moves outside the picture.
bool UnpackBmpRuns(ImageFile coded, bool fourBits, UINT width, UINT height,
                   std::uint8_t* indicesOut);

} // namespace headless
