#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/// A frame as 0xAARRGGBB, row by row from the top. The comparison ignores alpha.
struct Frame {
    size_t width = 0;
    size_t height = 0;
    std::vector<uint32_t> pixels;
};

/// How much two frames may differ and still count as equal.
struct FrameTolerance {
    /// Difference of a channel, 0..255, that is ignored: rasterizers round at different steps.
    int step = 4;
    /// Percent of the pixels that may be displaced: lines, silhouettes and borders of texels, where the
    /// rules leave open which of two neighbours is drawn.
    double displacedPercent = 2.0;
    /// Percent of the pixels that may be neither equal nor displaced.
    double wrongPercent = 0.1;
};

/// Result of a comparison, in pixels.
struct FrameDifference {
    bool isSameSize = false;
    size_t count = 0;     ///< all pixels
    size_t displaced = 0; ///< differ, but each is found within one pixel in the other frame
    size_t wrong = 0;     ///< differ, and at least one is not found nearby
    int largestStep = 0;  ///< of any channel of any pixel
};

/// Frames of different sizes are not compared further.
FrameDifference CompareFrames(const Frame& a, const Frame& b, int step);

/// True if the frames have one size and both shares are within the tolerance.
bool IsWithin(const FrameDifference& difference, const FrameTolerance& tolerance);

/// How a frame of a scene differs between two hosts that both draw it correctly: rounding nearly
/// everywhere, and more only at edges.
struct SceneDifference {
    static constexpr int kRounding = 2; ///< steps of a channel
    static constexpr int kLarge = 16;   ///< steps of a channel
    static constexpr double kDifferingPercent =
        1.0; ///< of the pixels may differ by more than rounding
    /// Where two edges cross, a pixel may have a colour that is not nearby in either frame.
    static constexpr double kLonePercent = 0.001;
    FrameDifference rounding; ///< of more than `kRounding`
    FrameDifference large;    ///< of more than `kLarge`; displaced are those at edges
    /// Also false for frames of different sizes.
    bool IsWithin() const;
};

SceneDifference CompareSceneFrames(const Frame& a, const Frame& b);

/// The difference of two frames of one size: `a`, dimmed, where they are equal, yellow where displaced,
/// red where wrong.
Frame DifferenceFrame(const Frame& a, const Frame& b, int step);
