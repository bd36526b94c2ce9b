#include "gfx/KRE_Gfx.h"

#include "base/Clock.h"
#include "gfx/DirectXErrorName.h"

namespace {

/// One sixtieth of a second as a float, widened to double.
constexpr double kSampleInterval = 0.01666666753590107;
constexpr double kSampleWindow = 1.0; // seconds

LONG Width(const RECT& rect)
{
    return rect.right - rect.left;
}

LONG Height(const RECT& rect)
{
    return rect.bottom - rect.top;
}

constexpr int32_t Before(int32_t index)
{
    return (index + KRE_Gfx::kFrameSamples - 1) % KRE_Gfx::kFrameSamples;
}

constexpr int32_t After(int32_t index)
{
    return (index + 1) % KRE_Gfx::kFrameSamples;
}

void SampleFrameRate(KRE_Gfx& gfx, double now)
{
    if (now - gfx.fpsRing[Before(gfx.fpsRingIndex)].time > kSampleInterval) {
        gfx.fpsRing[gfx.fpsRingIndex] = {now, gfx.frameCount};
        gfx.fpsRingIndex = After(gfx.fpsRingIndex);
    }
    gfx.lastFrameTime = now;
    ++gfx.frameCount;
}

} // namespace

int32_t KRE_Gfx::ShowFrame()
{
    ++frameNumber;
    if (windowed) {
        const RECT before = clientRect;
        GetClientRect(window, &clientRect);
        if (Width(clientRect) != Width(before) || Height(clientRect) != Height(before)) {
            ResetDevice(nullptr);
            return 0;
        }
    }
    const HRESULT result = device->Present(nullptr, nullptr, nullptr, nullptr);
    lastResult = result;
    SampleFrameRate(*this, GetTimeSeconds());
    if (SUCCEEDED(result))
        return 1;
    if (result != D3DERR_DEVICELOST)
        Error("Present failed! %s", DirectXErrorName(result));
    ResetDevice(nullptr);
    return 0;
}

float KRE_Gfx::GetFramesPerSecond() const
{
    const int32_t newestIndex = Before(fpsRingIndex);
    const FrameSample& newest = fpsRing[newestIndex];
    int32_t oldest = fpsRingIndex;
    while (oldest != newestIndex && newest.time - fpsRing[oldest].time > kSampleWindow)
        oldest = After(oldest);
    const int32_t frames = newest.frames - fpsRing[oldest].frames;
    return static_cast<float>(frames / (newest.time - fpsRing[oldest].time));
}
