#pragma once

#include "platform/headless/d3d9/DrawVertex.h"

namespace headless {

/// What a draw is clipped against. The near and far planes and the user's go only where the caller
/// asks for clipping; the eye's plane and the guard band always do, as they keep every later number
/// in its range.
struct ClipRules {
    bool clipsDepth = false; ///< 0 <= z <= w
    float guardX = 1.0f;     ///< |x| <= guardX * w
    float guardY = 1.0f;
    DWORD planes = 0; ///< bits of the user's planes
    int varyingCount = 0;
};

/// A triangle can gain a corner at each plane.
constexpr int kMaxClippedCorners = 3 + 7 + static_cast<int>(kClipPlaneCount);

/// One bit for each plane that the vertex is outside of.
DWORD ClipCode(const ClipRules& rules, const ShadedVertex& vertex);

/// False for a vertex with a place that is no number: nothing can be drawn from it.
bool IsFinite(const ShadedVertex& vertex);

/// Clips the polygon, which has at most three corners; `codes` are the planes that any corner is
/// outside of. Gives the corners that are left, in order, or 0.
int ClipPolygon(const ClipRules& rules, DWORD codes, ShadedVertex (&corners)[kMaxClippedCorners],
                int count);

/// The same for a line; false if nothing is left.
bool ClipLine(const ClipRules& rules, DWORD codes, ShadedVertex& a, ShadedVertex& b);

} // namespace headless
