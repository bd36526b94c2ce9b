#pragma once

#include "tools/frames/FrameComparison.h"

#include <string>

/// A started program with a hidden window whose client area has the size of the frame, whatever its
/// border. The clock is stopped at the beginning, for effects too. The destructor removes everything, so
/// that no process ends with a live device. One at a time.
class FrameStage {
public:
    /// Size in pixels. Lets errors through.
    FrameStage(int width, int height);
    ~FrameStage();
    FrameStage(const FrameStage&) = delete;
    FrameStage& operator=(const FrameStage&) = delete;

    /// Loads a scene of the current directory and draws it with the banner as a run would. Nothing is
    /// presented, and no file is written except `targetName`, to which the scene is saved before its
    /// frame. Empty if the frame cannot be read back. Errors pass through.
    Frame Draw(const char* fileName, const char* targetName = nullptr);
    /// The current back buffer. Reading waits until everything is drawn.
    static Frame BackBuffer();
    /// Seconds for drawing the last frame, until it could be read back.
    double DrawSeconds() const { return drawSeconds; }

    /// Whether the host's D3DX reads effect files in text form. Wine's does not.
    static bool ReadsEffectTexts();

private:
    double drawSeconds = 0.0;
};

/// Writes the frame through the host's picture library. False if it cannot be written.
bool WriteFramePng(const Frame& frame, const std::string& path);
