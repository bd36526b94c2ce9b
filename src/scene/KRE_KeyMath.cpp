#include "scene/KRE_KeyMath.h"

float SegmentRatio(float time, float start, float end)
{
    const float length = end - start;
    return length == 0 ? 0.0f : (time - start) / length;
}

float EaseRatio(float ratio, float easeFrom, float easeTo)
{
    const float sum = easeFrom + easeTo;
    if (sum == 0)
        return ratio;
    if (sum > 1) {
        easeFrom /= sum;
        easeTo /= sum;
    }
    const float speed = 1 / (2 - easeFrom - easeTo);
    if (ratio < easeFrom)
        return speed / easeFrom * ratio * ratio;
    if (ratio < 1 - easeTo)
        return speed * (2 * ratio - easeFrom);
    const float left = 1 - ratio;
    // Without an ease at the far end, only the end itself gets here, where 0 / 0 would give NaN.
    return left == 0 ? 1.0f : 1 - speed / easeTo * left * left;
}

D3DXQUATERNION Slerp(const D3DXQUATERNION& from, const D3DXQUATERNION& to, float ratio)
{
    D3DXQUATERNION result;
    D3DXQuaternionSlerp(&result, &from, &to, ratio);
    return result;
}
