#pragma once

#include "platform/headless/d3d9/TriangleSetup.h"

namespace headless {

/// The planes of a point, which has one colour and depth throughout. A sprite's coordinates run
/// from 0 to 1, from its upper left to its lower right corner, in all stages.
void SetUpPoint(const Corner& centre, float side, bool isSprite, const VaryingLayout& varyings,
                Planes& planesOut);

/// The pixels whose centres lie in a square around the point, clipped to `area`; may be empty.
PixelArea PointArea(const Corner& centre, float side, const PixelArea& area);

} // namespace headless
