#include "platform/headless/d3d9/LineSetup.h"

#include <algorithm>
#include <cstdlib>

namespace headless {

namespace {

bool IsSteep(const Corner& a, const Corner& b)
{
    return std::abs(b.y - a.y) > std::abs(b.x - a.x);
}

int NearestPixel(int subPixels)
{
    return (subPixels + kSubPixels / 2) >> kSubPixelBits;
}

int Major(const Corner& corner, bool isSteep)
{
    return isSteep ? corner.y : corner.x;
}

} // namespace

void SetUpLine(const Corner& a, const Corner& b, int varyingCount, Planes& planesOut)
{
    const bool isSteep = IsSteep(a, b);
    const int length = Major(b, isSteep) - Major(a, isSteep);
    const float perPixel =
        length != 0 ? 1.0f / (static_cast<float>(length) * kPixelsPerSubPixel) : 0.0f;
    const float alongX = isSteep ? 0.0f : perPixel;
    const float alongY = isSteep ? perPixel : 0.0f;
    const auto through = [=](float from, float to) {
        return Plane{from, (to - from) * alongX, (to - from) * alongY};
    };
    planesOut.originX = static_cast<float>(a.x) * kPixelsPerSubPixel;
    planesOut.originY = static_cast<float>(a.y) * kPixelsPerSubPixel;
    planesOut.depth = through(a.depth, b.depth);
    planesOut.reciprocalW = through(a.reciprocalW, b.reciprocalW);
    for (int i = 0; i < varyingCount; ++i) {
        const Plane plane = through(a.varying[i] * a.reciprocalW, b.varying[i] * b.reciprocalW);
        planesOut.at[i] = plane.at;
        planesOut.dx[i] = plane.dx;
        planesOut.dy[i] = plane.dy;
    }
}

LineRuns::LineRuns(const Corner& a, const Corner& b, bool drawsEnd, const PixelArea& allowed)
    : area(allowed),
      isSteep(IsSteep(a, b)),
      low(a),
      high(b)
{
    const bool turns = Major(b, isSteep) < Major(a, isSteep);
    if (turns)
        std::swap(low, high);
    next = NearestPixel(Major(low, isSteep));
    end = NearestPixel(Major(high, isSteep)) + 1;
    if (!drawsEnd && turns)
        ++next;
    else if (!drawsEnd)
        --end;
    next = std::max(next, isSteep ? area.top : area.left);
    end = std::min(end, isSteep ? area.bottom : area.right);
}

int LineRuns::MinorAt(int major) const
{
    const int start = isSteep ? low.x : low.y;
    const int64_t rise = (isSteep ? high.x : high.y) - start;
    const int64_t length = Major(high, isSteep) - Major(low, isSteep);
    if (length == 0)
        return NearestPixel(start);
    const int64_t along = int64_t{major} * kSubPixels - Major(low, isSteep);
    return NearestPixel(static_cast<int>(start + rise * along / length));
}

bool LineRuns::Next(int& yOut, int& leftOut, int& rightOut)
{
    const int least = isSteep ? area.left : area.top;
    const int most = isSteep ? area.right : area.bottom;
    int minor = 0;
    do {
        if (next >= end)
            return false;
        minor = MinorAt(next++);
    } while (minor < least || minor >= most);
    if (isSteep) {
        yOut = next - 1;
        leftOut = minor;
        rightOut = minor + 1;
        return true;
    }
    yOut = minor;
    leftOut = next - 1;
    while (next < end && MinorAt(next) == minor)
        ++next;
    rightOut = next;
    return true;
}

} // namespace headless
