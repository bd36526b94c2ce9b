#pragma once

#include "tools/frames/FrameComparison.h"

#include <string>
#include <vector>

/// A part of a scene's frame that a host is known to draw wrong. In pixels; negative ones count from
/// the far side, and 0 on the right or at the bottom is the far side itself.
struct FrameException {
    std::string scene; ///< "*" for all
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    std::string reason;

    bool IsWholeFrame() const { return left == 0 && top == 0 && right == 0 && bottom == 0; }
};

/// Reads lines of scene, four numbers and a reason; lines that begin with # are comments. Other lines
/// are ignored. Empty if the file does not exist.
std::vector<FrameException> ReadFrameExceptions(const std::string& path);

/// Blackens the scene's exceptions, as far as they lie in the frame.
void BlankExceptions(Frame& frame, const std::vector<FrameException>& exceptions,
                     const std::string& scene);
