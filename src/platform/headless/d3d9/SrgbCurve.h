#pragma once

#include "platform/headless/d3d9/Lanes.h"

namespace headless {

/// The public curve of sRGB, both ways, for 0..1. Exact to 2^-20.
Lanes LinearOfSrgb(Lanes stored);
Lanes SrgbOfLinear(Lanes light);

} // namespace headless
