#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// The picture that was drawn last.
struct DrawnFrame {
    int width = 0;
    int height = 0;
    std::vector<uint32_t> argb; ///< opaque, row by row from the top
};

/// Reads the back buffer. Empty if the device does not give it.
DrawnFrame ReadDrawnFrame();

/// Writes the frame as the converter keeps frames, into the current directory; an old picture is replaced
/// when the new one is complete. False with the reason.
bool KeepFrame(const DrawnFrame& frame, const std::string& leaf, std::string& reasonOut);

/// A JPEG picture of the frame that is at most 160 x 120, in its proportions.
std::string ThumbOf(const DrawnFrame& frame);
