#include "tools/frames/FrameComparison.h"

#include <algorithm>
#include <cstdlib>

namespace {

enum class Match { Alike, Displaced, Wrong };

int StepBetween(uint32_t a, uint32_t b)
{
    int largest = 0;
    for (int shift = 0; shift < 24; shift += 8)
        largest = std::max(largest, std::abs(static_cast<int>(a >> shift & 0xFF) -
                                             static_cast<int>(b >> shift & 0xFF)));
    return largest;
}

/// Checks the pixel and its existing neighbours among the eight around it.
bool IsNear(const Frame& frame, size_t x, size_t y, uint32_t pixel, int step)
{
    const size_t right = std::min(x + 2, frame.width), bottom = std::min(y + 2, frame.height);
    for (size_t row = y > 0 ? y - 1 : 0; row < bottom; ++row)
        for (size_t column = x > 0 ? x - 1 : 0; column < right; ++column)
            if (StepBetween(frame.pixels[row * frame.width + column], pixel) <= step)
                return true;
    return false;
}

/// Searches both ways: otherwise a line that one frame lacks would count as displaced, because its
/// background is near in the frame that has it.
Match MatchAt(const Frame& a, const Frame& b, size_t i, int step)
{
    if (StepBetween(a.pixels[i], b.pixels[i]) <= step)
        return Match::Alike;
    const size_t x = i % a.width, y = i / a.width;
    const bool isFound = IsNear(b, x, y, a.pixels[i], step) && IsNear(a, x, y, b.pixels[i], step);
    return isFound ? Match::Displaced : Match::Wrong;
}

bool IsShareWithin(size_t part, size_t whole, double percent)
{
    return static_cast<double>(part) * 100.0 <= static_cast<double>(whole) * percent;
}

} // namespace

FrameDifference CompareFrames(const Frame& a, const Frame& b, int step)
{
    FrameDifference difference;
    difference.isSameSize = a.width == b.width && a.height == b.height;
    if (!difference.isSameSize)
        return difference;
    difference.count = a.pixels.size();
    for (size_t i = 0; i < a.pixels.size(); ++i) {
        const Match match = MatchAt(a, b, i, step);
        difference.displaced += match == Match::Displaced;
        difference.wrong += match == Match::Wrong;
        difference.largestStep =
            std::max(difference.largestStep, StepBetween(a.pixels[i], b.pixels[i]));
    }
    return difference;
}

bool IsWithin(const FrameDifference& difference, const FrameTolerance& tolerance)
{
    return difference.isSameSize &&
           IsShareWithin(difference.displaced, difference.count, tolerance.displacedPercent) &&
           IsShareWithin(difference.wrong, difference.count, tolerance.wrongPercent);
}

SceneDifference CompareSceneFrames(const Frame& a, const Frame& b)
{
    return {CompareFrames(a, b, SceneDifference::kRounding),
            CompareFrames(a, b, SceneDifference::kLarge)};
}

bool SceneDifference::IsWithin() const
{
    return rounding.isSameSize && IsShareWithin(large.wrong, large.count, kLonePercent) &&
           IsShareWithin(rounding.displaced + rounding.wrong, rounding.count, kDifferingPercent);
}

Frame DifferenceFrame(const Frame& a, const Frame& b, int step)
{
    constexpr uint32_t kYellow = 0xFFFFFF00, kRed = 0xFFFF0000;
    Frame frame = a;
    for (size_t i = 0; i < a.pixels.size(); ++i) {
        const Match match = MatchAt(a, b, i, step);
        const uint32_t dimmed = 0xFF000000 | (a.pixels[i] >> 2 & 0x3F3F3F);
        frame.pixels[i] =
            match == Match::Alike ? dimmed : (match == Match::Displaced ? kYellow : kRed);
    }
    return frame;
}
