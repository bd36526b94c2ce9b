#pragma once

#include "platform/headless/d3d9/TriangleSetup.h"

namespace headless {

/// The planes of a line: values change along its major axis only.
void SetUpLine(const Corner& a, const Corner& b, int varyingCount, Planes& planesOut);

/// Walks the pixels of a line: one per step of the major axis, the nearest one along the minor
/// axis. The end pixel is included only if `drawsEnd`, so that consecutive lines meet without
/// drawing a pixel twice.
class LineRuns {
public:
    LineRuns(const Corner& a, const Corner& b, bool drawsEnd, const PixelArea& area);

    /// The next horizontal run of pixels; false at the end.
    bool Next(int& yOut, int& leftOut, int& rightOut);

private:
    int MinorAt(int major) const;

    PixelArea area;
    bool isSteep = false; ///< the major axis is y
    Corner low = {};      ///< the end with the lower coordinate on the major axis
    Corner high = {};
    int next = 0;
    int end = 0; ///< half-open range on the major axis: next <= i < end
};

} // namespace headless
