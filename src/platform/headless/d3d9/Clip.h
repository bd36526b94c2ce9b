#pragma once

#include "platform/headless/d3d9/DrawVertex.h"

namespace headless {

/// What a draw is clipped against. The near, far and user planes apply only if the caller asks for
/// clipping; the eye plane and the guard band always apply, as they keep all later numbers in
/// range.
struct ClipRules {
    bool clipsDepth = false; ///< 0 <= z <= w
    float guardX = 1.0f;     ///< |x| <= guardX * w
    float guardY = 1.0f;
    DWORD planes = 0; ///< one bit for each user plane
    int varyingCount = 0;
};

/// Each plane can add one corner to a triangle.
constexpr int kMaxClippedCorners = 3 + 7 + static_cast<int>(kClipPlaneCount);

/// One bit for each plane that the vertex is outside of.
DWORD ClipCode(const ClipRules& rules, const ShadedVertex& vertex);

/// False for a vertex whose position has an infinite or NaN component: it cannot be drawn.
bool IsFinite(const ShadedVertex& vertex);

/// Clips the polygon, which has at most three corners, in place; `codes` are the planes that any
/// corner is outside of. Returns the number of corners left, or 0.
int ClipPolygon(const ClipRules& rules, DWORD codes, ShadedVertex (&corners)[kMaxClippedCorners],
                int count);

/// The same for a line; false if nothing is left.
bool ClipLine(const ClipRules& rules, DWORD codes, ShadedVertex& a, ShadedVertex& b);

} // namespace headless
