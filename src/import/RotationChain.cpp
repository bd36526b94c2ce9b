#include "import/RotationChain.h"

#include <cmath>

namespace {

// The reader takes an angle above half a turn the other way round.
constexpr double kHalfTurn = 3.141592f;
constexpr double kFullTurn = 6.283184f;

ModelQuaternion Normalized(ModelQuaternion q)
{
    double length = std::sqrt(q[0] * q[0] + q[1] * q[1] + q[2] * q[2] + q[3] * q[3]);
    if (!(length > 0))
        return {0, 0, 0, 1};
    if (q[3] < 0)
        length = -length;
    for (double& part : q)
        part /= length;
    return q;
}

} // namespace

RotationChain::Step WrittenRotation(const ModelQuaternion& rotation)
{
    const ModelQuaternion q = Normalized(rotation);
    const double sine = std::sqrt(q[0] * q[0] + q[1] * q[1] + q[2] * q[2]);
    if (!(sine > 1e-15))
        return {{0, 0, 1}, 0};
    return {{static_cast<float>(-q[0] / sine), static_cast<float>(-q[1] / sine),
             static_cast<float>(-q[2] / sine)},
            static_cast<float>(2 * std::atan2(sine, q[3]))};
}

RotationChain::Step RotationChain::Next(const ModelQuaternion& wanted)
{
    // wanted = read, then step: the step is wanted times the inverse of what was read.
    const ModelQuaternion a = {-double{read.x}, -double{read.y}, -double{read.z}, double{read.w}};
    const ModelQuaternion& b = wanted;
    const ModelQuaternion turn = {b[3] * a[0] + b[0] * a[3] + b[1] * a[2] - b[2] * a[1],
                                  b[3] * a[1] - b[0] * a[2] + b[1] * a[3] + b[2] * a[0],
                                  b[3] * a[2] + b[0] * a[1] - b[1] * a[0] + b[2] * a[3],
                                  b[3] * a[3] - b[0] * a[0] - b[1] * a[1] - b[2] * a[2]};
    const Step step = WrittenRotation(turn);
    const D3DXVECTOR3 axis(-step.axis[0], -step.axis[1], -step.axis[2]);
    float angle = step.angle;
    if (angle > kHalfTurn && angle < kFullTurn)
        angle = static_cast<float>(angle - kFullTurn);
    D3DXQUATERNION stored;
    D3DXQuaternionRotationAxis(&stored, &axis, angle);
    if (!isFirst) {
        if (D3DXQuaternionDot(&read, &stored) < 0)
            stored = -stored;
        D3DXQuaternionMultiply(&stored, &read, &stored);
    }
    read = stored;
    isFirst = false;
    return step;
}
