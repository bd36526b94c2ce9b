#pragma once

#include "platform/headless/d3d9/TriangleSetup.h"

namespace headless {

/// The planes of a line: values change along its longer axis only.
void SetUpLine(const Corner& a, const Corner& b, int varyingCount, Planes& planesOut);

/// Walks the pixels of a line: one for each step of its longer axis, nearest to the line along the
/// shorter one. The pixel of the end belongs to it only if `drawsEnd`, so that lines in a row meet
/// without drawing a pixel twice.
class LineRuns {
public:
    LineRuns(const Corner& a, const Corner& b, bool drawsEnd, const PixelArea& area);

    /// The next pixels side by side in a row; false at the end.
    bool Next(int& yOut, int& leftOut, int& rightOut);

private:
    int MinorAt(int major) const;

    PixelArea area;
    bool isSteep = false; ///< the longer axis is y
    Corner low = {};      ///< the end with the lower place on the longer axis
    Corner high = {};
    int next = 0;
    int end = 0; ///< pixels along the longer axis: next <= i < end
};

} // namespace headless
