#include "platform/headless/d3d9/PointSetup.h"

#include <algorithm>

namespace headless {

namespace {

int InSubPixels(float pixels)
{
    return static_cast<int>(pixels * static_cast<float>(kSubPixels) + 0.5f);
}

/// u grows along x and v along y, from the corner, which is the origin of the planes.
void SetSpriteCoordinates(int place, int count, bool isProjected, float reciprocalW, float side,
                          Planes& planes)
{
    const float slope = side > 0.0f ? reciprocalW / side : 0.0f;
    for (int i = 0; i < count + (isProjected ? 1 : 0); ++i)
        planes.at[place + i] = planes.dx[place + i] = planes.dy[place + i] = 0.0f;
    planes.dx[place] = slope;
    planes.dy[place + 1] = slope;
    if (isProjected)
        planes.at[place + count] = reciprocalW;
}

} // namespace

void SetUpPoint(const Corner& centre, float side, bool isSprite, const VaryingLayout& varyings,
                Planes& planesOut)
{
    planesOut.originX = static_cast<float>(centre.x) * kPixelsPerSubPixel - side * 0.5f;
    planesOut.originY = static_cast<float>(centre.y) * kPixelsPerSubPixel - side * 0.5f;
    planesOut.depth = {centre.depth, 0.0f, 0.0f};
    planesOut.reciprocalW = {centre.reciprocalW, 0.0f, 0.0f};
    for (int i = 0; i < varyings.count; ++i) {
        planesOut.at[i] = centre.varying[i] * centre.reciprocalW;
        planesOut.dx[i] = planesOut.dy[i] = 0.0f;
    }
    for (UINT stage = 0; isSprite && stage < kStageCount; ++stage)
        if (varyings.coordinates[stage] >= 0)
            SetSpriteCoordinates(varyings.coordinates[stage],
                                 std::max(varyings.coordinateCounts[stage], 2),
                                 varyings.isProjected[stage], centre.reciprocalW, side, planesOut);
}

PixelArea PointArea(const Corner& centre, float side, const PixelArea& area)
{
    const int whole = InSubPixels(side);
    const int left = centre.x - whole / 2;
    const int top = centre.y - whole / 2;
    return {std::max(CeilPixel(left), area.left), std::max(CeilPixel(top), area.top),
            std::min(CeilPixel(left + whole), area.right),
            std::min(CeilPixel(top + whole), area.bottom)};
}

} // namespace headless
