#pragma once

#include <cstdint>

/// The frames and ticks of a scene file, and their conversion to seconds.
class QSA_TimeScale {
public:
    QSA_TimeScale() { Update(); }

    /// Call once the four values have been read. False for a scene without speed: all its times
    /// become 0, so nothing moves.
    bool Update();

    /// The time of a key. Ticks count from frame 0, seconds from the first frame.
    float TicksToSeconds(float ticks) const
    {
        return (ticks - static_cast<float>(firstFrame) * ticksPerFrame) * secondsPerTick;
    }
    float SecondsPerTick() const { return secondsPerTick; }
    /// Seconds from the first frame to the last.
    float Duration() const { return duration; }
    /// Seconds from frame 0 to the first; 0 without a frame speed.
    double StartSeconds() const;

    // As the text gives them.
    float frameSpeed = 30.0f; ///< frames per second
    float ticksPerFrame = 160.0f;
    int32_t firstFrame = 0;
    int32_t lastFrame = 100;

private:
    float secondsPerTick = 0.0f;
    float duration = 0.0f;
};
