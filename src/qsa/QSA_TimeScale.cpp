#include "qsa/QSA_TimeScale.h"

bool QSA_TimeScale::Update()
{
    if (frameSpeed == 0.0f || ticksPerFrame == 0.0f) {
        secondsPerTick = 0.0f;
        duration = 0.0f;
        return false;
    }
    secondsPerTick = 1.0f / (ticksPerFrame * frameSpeed);
    duration = static_cast<float>(int64_t{lastFrame} - firstFrame) / frameSpeed;
    return true;
}

double QSA_TimeScale::StartSeconds() const
{
    return frameSpeed != 0.0f ? static_cast<double>(static_cast<float>(firstFrame)) / frameSpeed
                              : 0.0;
}
