#pragma once

#include "tools/frames/FrameComparison.h"

#include <string>

/// A program that has come through its start-up, with a hidden window whose client area has the size
/// of the frame, whatever border the host gives it. The clock stands at the
/// beginning, that of effects too. Everything is
/// gone again with it, so that no process ends with a live device. One at a time.
class FrameStage {
public:
    /// Size in pixels. Lets failures through.
    FrameStage(int width, int height);
    ~FrameStage();
    FrameStage(const FrameStage&) = delete;
    FrameStage& operator=(const FrameStage&) = delete;

    /// Loads a scene of the current directory and draws it with the banner as a run would; nothing is
    /// presented, and no file is written but `targetName`, to which the scene is saved ahead of its
    /// frame. Empty if the frame can not be read back. Lets failures through.
    Frame Draw(const char* fileName, const char* targetName = nullptr);
    /// The back buffer as it stands. Reading waits until everything is drawn.
    static Frame BackBuffer();
    /// Seconds that drawing the last frame took, until it could be read back.
    double DrawSeconds() const { return drawSeconds; }

    /// Whether the host's D3DX reads effect files in text form. Wine's does not.
    static bool ReadsEffectTexts();

private:
    double drawSeconds = 0.0;
};

/// Writes the frame through the host's picture library. False if it can not be written.
bool WriteFramePng(const Frame& frame, const std::string& path);
