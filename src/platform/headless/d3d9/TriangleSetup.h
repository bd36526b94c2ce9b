#pragma once

#include "platform/headless/d3d9/Planes.h"

#include <cstdint>

namespace headless {

/// Twice the area in square sub-pixels, positive for corners that are clockwise on the screen.
int64_t TwiceArea(const Corner& a, const Corner& b, const Corner& c);

/// The planes through three corners; `twiceArea` is theirs and must not be 0.
void SetUpTriangle(const Corner& a, const Corner& b, const Corner& c, int64_t twiceArea,
                   int varyingCount, Planes& planesOut);

/// The pixels of a target that may be written: left <= x < right, top <= y < bottom.
struct PixelArea {
    int left, top, right, bottom;
};

/// Walks the rows of a triangle and finds the pixels whose centres are inside. A centre on an edge
/// belongs to the triangle whose upper or left edge it is, so that adjacent triangles neither share
/// nor miss a pixel. The arithmetic is all integer, so this holds exactly.
class TriangleRows {
public:
    TriangleRows() = default; ///< none
    /// Corners in clockwise order, within 2^15 pixels of the origin.
    TriangleRows(const Corner& a, const Corner& b, const Corner& c, const PixelArea& area);

    /// The next row and the run of pixels in it, which may be empty (left >= right); false at the end.
    bool Next(int& yOut, int& leftOut, int& rightOut);

    /// The last row of the triangle, which may have no pixel.
    int LastRow() const { return lastRow; }

private:
    /// The left or right border that an edge gives each row, stepped from row to row without
    /// division: floor(value / divisor) and the remainder.
    struct Border {
        int64_t divisor;
        int64_t rest, restStep;
        int64_t place, placeStep;

        void Step()
        {
            place += placeStep;
            rest += restStep;
            if (rest >= divisor) {
                rest -= divisor;
                ++place;
            }
        }
    };

    void AddEdge(const Corner& from, const Corner& to, int firstRow);

    PixelArea area = {};
    int y = 0;
    int lastRow = -1;
    Border lefts[2], rights[2];
    int leftCount = 0, rightCount = 0;
};

} // namespace headless
