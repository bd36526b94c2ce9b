#include "scene/KRE_FloatTrack.h"

#include "scene/HermiteWeights.h"

static float Blend(const HermiteWeights& weights, const KRE_FloatKey& from, const KRE_FloatKey& to)
{
    return weights.h10 * from.outTangent + weights.h00 * from.value - weights.h11 * to.inTangent +
           weights.h01 * to.value;
}

float KRE_FloatTrack::Evaluate(float time, float* derivativeOut)
{
    const Place place = Locate(time);
    if (!place.from)
        return 0.0f;
    const KRE_FloatKey& from = *place.from;
    if (!place.to)
        return from.value;
    const KRE_FloatKey& to = *place.to;
    if (interpolation != kBezier)
        return (to.value - from.value) * place.ratio + from.value;
    if (derivativeOut)
        *derivativeOut = Blend(HermiteSlopeAt(place.ratio), from, to) / place.lengthSeconds;
    return Blend(HermiteAt(place.ratio), from, to);
}
