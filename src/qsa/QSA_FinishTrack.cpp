#include "qsa/QSA_FinishTrack.h"

namespace {

void Scale(D3DCOLORVALUE* tangent, float factor)
{
    tangent->r *= factor;
    tangent->g *= factor;
    tangent->b *= factor;
    tangent->a *= factor;
}

void Scale(float* tangent, float factor)
{
    *tangent *= factor;
}

template <class Track>
void Finish(Track* track, const QSA_TimeScale& time)
{
    const int32_t number = track->GetKeyCount();
    for (int32_t i = 0; i < number; ++i) {
        if (i > 0)
            Scale(&track->Key(i).inTangent, track->Key(i).time - track->Key(i - 1).time);
        if (i + 1 < number)
            Scale(&track->Key(i).outTangent, track->Key(i + 1).time - track->Key(i).time);
    }
    for (int32_t i = 0; i < number; ++i)
        track->Key(i).time = time.TicksToSeconds(track->Key(i).time);
}

} // namespace

void FinishTrack(KRE_ColorTrack* track, const QSA_TimeScale& time)
{
    Finish(track, time);
}

void FinishTrack(KRE_FloatTrack* track, const QSA_TimeScale& time)
{
    Finish(track, time);
}
