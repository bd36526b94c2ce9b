#include "scene/KRE_ColorTrack.h"

#include "scene/HermiteWeights.h"

using Channel = float D3DCOLORVALUE::*;

static constexpr Channel kWeighted[] = {&D3DCOLORVALUE::r, &D3DCOLORVALUE::g, &D3DCOLORVALUE::b};

static float Blend(const HermiteWeights& weights, const KRE_ColorKey& from, const KRE_ColorKey& to,
                   Channel channel)
{
    return weights.h00 * from.value.*channel + weights.h10 * from.outTangent.*channel -
           weights.h11 * to.inTangent.*channel + weights.h01 * to.value.*channel;
}

static D3DCOLORVALUE BlendBezier(float ratio, const KRE_ColorKey& from, const KRE_ColorKey& to)
{
    const HermiteWeights weights = HermiteAt(ratio);
    D3DCOLORVALUE color;
    for (const Channel channel : kWeighted)
        color.*channel = Blend(weights, from, to, channel);
    color.a = from.value.a + from.outTangent.a - to.inTangent.a + to.value.a;
    return color;
}

static D3DCOLORVALUE BlendLinear(float ratio, const KRE_ColorKey& from, const KRE_ColorKey& to)
{
    D3DCOLORVALUE color;
    for (const Channel channel : kWeighted)
        color.*channel = from.value.*channel + (to.value.*channel - from.value.*channel) * ratio;
    color.a = from.value.a + (to.value.a - from.value.a);
    return color;
}

D3DCOLORVALUE KRE_ColorTrack::Evaluate(float time, D3DCOLORVALUE* derivativeOut)
{
    const Place place = Locate(time);
    if (!place.from)
        return {};
    if (!place.to)
        return place.from->value;
    if (interpolation != kBezier)
        return BlendLinear(place.ratio, *place.from, *place.to);
    if (derivativeOut) {
        const HermiteWeights slope = HermiteSlopeAt(place.ratio);
        for (const Channel channel : kWeighted)
            derivativeOut->*channel =
                Blend(slope, *place.from, *place.to, channel) / place.lengthSeconds;
    }
    return BlendBezier(place.ratio, *place.from, *place.to);
}
