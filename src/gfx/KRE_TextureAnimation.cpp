#include "gfx/KRE_Texture.h"

#include <algorithm>
#include <cmath>

#include "base/ParseNumber.h"

/// Wraps a number to 0 to `count` - 1, negative numbers included.
static int32_t Wrap(int32_t number, int32_t count)
{
    const int32_t rest = number % count;
    return rest < 0 ? rest + count : rest;
}

void KRE_Texture::Evaluate(float time)
{
    currentTime = time;
    const bool hasSequence = sequenceCount > 0;
    const int32_t first = hasSequence ? 0 : currentSlot;
    const int32_t last = hasSequence ? kSlots - 1 : currentSlot;
    for (int32_t slot = first; slot <= last; ++slot) {
        if (!matrixAni) {
            slotMatrixSet[slot] = 0;
            continue;
        }
        float values[KRE_TextMatrixAni::kTrackCount];
        for (int32_t i = 0; i < KRE_TextMatrixAni::kTrackCount; ++i)
            values[i] = matrixAni[slot].Evaluate(static_cast<KRE_TextMatrixAni::Track>(i), time);
        SetMatrixOf(slot, values);
    }
    if (hasSequence)
        SelectFrame(FrameAt(time));
}

/// The frame to show; its number is valid for any period, start and time that a file may hold.
int32_t KRE_Texture::FrameAt(float time) const
{
    const float elapsed = time - sequenceStart;
    if (sequenceMode == kSequenceOnce) {
        if (time < sequenceStart)
            return 0;
        return std::clamp(ToInt32(elapsed / framePeriod), 0, sequenceCount - 1);
    }
    if (sequenceMode != kSequencePingPong)
        return Wrap(ToInt32(elapsed / framePeriod), sequenceCount);
    if (sequenceCount == 1)
        return 0;
    const float roundSeconds = framePeriod * static_cast<float>(sequenceCount);
    const int32_t rounds = ToInt32(elapsed / roundSeconds);
    const float rest = elapsed - static_cast<float>(rounds) * roundSeconds;
    const int32_t frame = Wrap(ToInt32(rest / framePeriod), sequenceCount);
    return rounds % 2 == 0 ? frame : sequenceCount - frame - 1;
}

void KRE_Texture::SetMatrixFromTrack(float offsetU, float offsetV, float tileU, float tileV,
                                     float angle)
{
    SetMatrixOf(currentSlot, {offsetU, offsetV, tileU, tileV, angle});
}

void KRE_Texture::SetMatrixOf(int32_t slot, const float (&values)[KRE_TextMatrixAni::kTrackCount])
{
    const auto [offsetU, offsetV, tileU, tileV, angle] = values;
    const bool isPlain =
        offsetU == 0.0f && offsetV == 0.0f && tileU == 1.0f && tileV == 1.0f && angle == 0.0f;
    slotMatrixSet[slot] = isPlain ? 0 : 1;
    if (isPlain)
        return;

    // The product of translation, rotation about (0, 0, 1) by -angle, and scaling, without the
    // elements that are 0 or 1. The translation is in the third row, because it is multiplied by
    // the third texture coordinate, which is 1.
    const float shiftU = -0.5f - offsetU;
    const float shiftV = offsetV - 0.5f;
    const float cosine = static_cast<float>(std::cos(-static_cast<double>(angle)));
    const float sine = static_cast<float>(std::sin(-static_cast<double>(angle)));
    D3DMATRIX& matrix = slotMatrices[slot];
    matrix = {};
    matrix._11 = cosine * tileU;
    matrix._12 = sine * tileV;
    matrix._21 = -sine * tileU;
    matrix._22 = cosine * tileV;
    matrix._31 = (shiftU * cosine - shiftV * sine) * tileU + 0.5f;
    matrix._32 = (shiftU * sine + shiftV * cosine) * tileV + 0.5f;
    matrix._33 = 1.0f;
    matrix._44 = 1.0f;
}
