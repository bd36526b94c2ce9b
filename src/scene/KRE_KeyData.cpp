#include "scene/KRE_KeyData.h"

#include "scene/KRE_KeyMath.h"

// The factors are floats, widened in double expressions.
static constexpr double kInnerTension = 0.8f;
static constexpr double kEndTension = 0.63f;

D3DXQUATERNION RelativeRotation(const KRE_RotKeyData& key)
{
    D3DXQUATERNION rotation;
    D3DXQuaternionRotationAxis(&rotation, &key.axis, key.angle);
    return rotation;
}

void AccumulateRotation(KRE_RotKeyData& key)
{
    D3DXQUATERNION turn = RelativeRotation(key);
    if (key.prev) {
        // QUIRK: the sign is chosen by the relative rotation, not by the cumulative result; files
        // hold values computed this way.
        const D3DXQUATERNION& before = key.prev->rotation;
        if (D3DXQuaternionDot(&before, &turn) < 0)
            turn = -turn;
        D3DXQuaternionMultiply(&turn, &before, &turn);
    }
    key.rotation = turn;
}

/// For a key between two others: both controls lie on the arc through the mean of the directions to
/// the neighbours.
static void ComputeMiddleControls(KRE_RotKeyData& key)
{
    constexpr float kThird = 1.0f / 3.0f;
    const D3DXQUATERNION back = Slerp(key.rotation, key.prev->rotation, -kThird);
    const D3DXQUATERNION ahead = Slerp(key.rotation, key.next->rotation, kThird);
    const D3DXQUATERNION mean = Slerp(back, ahead, 0.5f);
    const double reach = key.tension * kInnerTension;
    key.inControl = Slerp(key.rotation, mean, static_cast<float>(reach - 1));
    key.outControl = Slerp(key.rotation, mean, static_cast<float>(1 - reach));
}

void ComputeInnerControls(KRE_RotKeyData& key)
{
    if (key.interpolation != kKeyTcb)
        return;
    if (key.prev && key.next) {
        ComputeMiddleControls(key);
        return;
    }
    key.inControl = key.rotation;
    key.outControl = key.rotation;
    const double reach = key.tension * kEndTension;
    if (key.prev)
        key.inControl =
            Slerp(key.prev->rotation, key.rotation, static_cast<float>((reach + 1) * 0.5));
    else if (key.next)
        key.outControl =
            Slerp(key.rotation, key.next->rotation, static_cast<float>((1 - reach) * 0.5));
}
