#include "platform/headless/d3d9/TriangleSetup.h"

#include "platform/headless/d3d9/Lanes.h"

#include <algorithm>

namespace headless {

namespace {

/// Distance from the origin of a plane, in pixels.
float InPixels(int subPixels)
{
    return static_cast<float>(subPixels) * (1.0f / kSubPixels);
}

/// Weights that turn value differences along two sides into slopes.
struct Slopes {
    float bx, by; ///< side from the first to the second corner
    float cx, cy; ///< side from the first to the third
    float scale;

    Plane Through(float a, float b, float c) const
    {
        const float toB = b - a, toC = c - a;
        return {a, (toB * cy - toC * by) * scale, (toC * bx - toB * cx) * scale};
    }
};

int64_t FloorDivide(int64_t value, int64_t divisor)
{
    const int64_t quotient = value / divisor;
    return value % divisor < 0 ? quotient - 1 : quotient;
}

} // namespace

int64_t TwiceArea(const Corner& a, const Corner& b, const Corner& c)
{
    return int64_t{b.x - a.x} * (c.y - a.y) - int64_t{c.x - a.x} * (b.y - a.y);
}

void SetUpTriangle(const Corner& a, const Corner& b, const Corner& c, int64_t twiceArea,
                   int varyingCount, Planes& planesOut)
{
    constexpr float kUnit = static_cast<float>(kSubPixels) * static_cast<float>(kSubPixels);
    const Slopes slopes = {InPixels(b.x - a.x), InPixels(b.y - a.y), InPixels(c.x - a.x),
                           InPixels(c.y - a.y), kUnit / static_cast<float>(twiceArea)};
    planesOut.originX = InPixels(a.x);
    planesOut.originY = InPixels(a.y);
    planesOut.depth = slopes.Through(a.depth, b.depth, c.depth);
    planesOut.reciprocalW = slopes.Through(a.reciprocalW, b.reciprocalW, c.reciprocalW);
    const Lanes bx = Splat(slopes.bx), by = Splat(slopes.by), cx = Splat(slopes.cx),
                cy = Splat(slopes.cy), scale = Splat(slopes.scale);
    for (int i = 0; i < varyingCount; i += 4) {
        const Lanes at = LoadFloats(a.varying + i) * Splat(a.reciprocalW);
        const Lanes toB = LoadFloats(b.varying + i) * Splat(b.reciprocalW) - at;
        const Lanes toC = LoadFloats(c.varying + i) * Splat(c.reciprocalW) - at;
        const Lanes dx = toB * cy - toC * by;
        const Lanes dy = toC * bx - toB * cx;
        StoreFloats(planesOut.at + i, at);
        StoreFloats(planesOut.dx + i, dx * scale);
        StoreFloats(planesOut.dy + i, dy * scale);
    }
}

TriangleRows::TriangleRows(const Corner& a, const Corner& b, const Corner& c,
                           const PixelArea& allowed)
    : area(allowed)
{
    const auto [top, bottom] = std::minmax({a.y, b.y, c.y});
    const int firstRow = std::max(CeilPixel(top), area.top);
    lastRow = std::min(CeilPixel(bottom), area.bottom) - 1; // the lowest point is outside
    y = firstRow - 1;
    if (firstRow > lastRow)
        return;
    AddEdge(a, b, firstRow);
    AddEdge(b, c, firstRow);
    AddEdge(c, a, firstRow);
}

/// The inside of an edge is where slopeX * x + slopeY * y + constant >= 0, all in sub-pixels. A
/// row's border is where that becomes 0. Horizontal edges set no border: the first and last row do.
void TriangleRows::AddEdge(const Corner& from, const Corner& to, int firstRow)
{
    const int64_t slopeX = from.y - to.y;
    const int64_t slopeY = to.x - from.x;
    if (slopeX == 0)
        return;
    const bool isLeft = slopeX > 0;
    const int64_t onEdge = isLeft ? 0 : -1; // centres on a right edge are outside
    const int64_t value =
        slopeX * -from.x + slopeY * (int64_t{firstRow} * kSubPixels - from.y) + onEdge;
    const int64_t step = slopeY * kSubPixels;
    Border border;
    border.divisor = (isLeft ? slopeX : -slopeX) * kSubPixels;
    border.place = FloorDivide(value, border.divisor);
    border.rest = value - border.place * border.divisor;
    border.placeStep = FloorDivide(step, border.divisor);
    border.restStep = step - border.placeStep * border.divisor;
    // Starts one row early, because each row begins with a step.
    border.place -= border.placeStep;
    border.rest -= border.restStep;
    if (border.rest < 0) {
        border.rest += border.divisor;
        --border.place;
    }
    if (isLeft)
        lefts[leftCount++] = border;
    else
        rights[rightCount++] = border;
}

bool TriangleRows::Next(int& yOut, int& leftOut, int& rightOut)
{
    if (++y > lastRow)
        return false;
    int64_t left = area.left, right = area.right;
    for (int i = 0; i < leftCount; ++i) {
        lefts[i].Step();
        left = std::max(left, -lefts[i].place);
    }
    for (int i = 0; i < rightCount; ++i) {
        rights[i].Step();
        right = std::min(right, rights[i].place + 1);
    }
    yOut = y;
    leftOut = static_cast<int>(std::min<int64_t>(left, area.right));
    rightOut = static_cast<int>(std::max<int64_t>(right, area.left));
    return true;
}

} // namespace headless
