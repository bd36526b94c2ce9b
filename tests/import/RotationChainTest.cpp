#include "import/RotationChain.h"

#include <cmath>

#include <gtest/gtest.h>

namespace {

/// Reads steps as the text import does: each about an axis in the parent's space, after the last rotation.
class ReaderOfSteps {
public:
    D3DXQUATERNION Read(const RotationChain::Step& step)
    {
        const D3DXVECTOR3 axis(-step.axis[0], -step.axis[1], -step.axis[2]);
        D3DXQUATERNION turn;
        D3DXQuaternionRotationAxis(&turn, &axis, step.angle);
        if (D3DXQuaternionDot(&last, &turn) < 0 && !isFirst)
            turn = -turn;
        if (!isFirst)
            D3DXQuaternionMultiply(&turn, &last, &turn);
        isFirst = false;
        return last = turn;
    }

private:
    D3DXQUATERNION last = {0, 0, 0, 1};
    bool isFirst = true;
};

ModelQuaternion TurnAbout(double x, double y, double z, double angle)
{
    const double s = std::sin(angle / 2) / std::sqrt(x * x + y * y + z * z);
    return {x * s, y * s, z * s, std::cos(angle / 2)};
}

double Distance(const D3DXQUATERNION& read, const ModelQuaternion& b)
{
    D3DXQUATERNION a; // its length does drift, as the format has only turns of length 1
    D3DXQuaternionNormalize(&a, &read);
    const double same = std::hypot(a.x - b[0], a.y - b[1], std::hypot(a.z - b[2], a.w - b[3]));
    const double other = std::hypot(a.x + b[0], a.y + b[1], std::hypot(a.z + b[2], a.w + b[3]));
    return std::min(same, other);
}

} // namespace

TEST(RotationChain, ErrorsDoNotAddUp)
{
    RotationChain chain;
    ReaderOfSteps reader;
    double farthest = 0;
    for (int i = 0; i < 20000; ++i) {
        const ModelQuaternion wanted = TurnAbout(1, 2 + std::sin(i), 3, 0.7 + i * 1.3);
        farthest = std::max(farthest, Distance(reader.Read(chain.Next(wanted)), wanted));
    }
    EXPECT_LT(farthest, 1e-6);
}

TEST(RotationChain, AnglesAreWrittenAgainstTheRightHandRule)
{
    const RotationChain::Step step = WrittenRotation(TurnAbout(0, 0, 1, 0.5));
    EXPECT_FLOAT_EQ(step.axis[2], -1);
    EXPECT_FLOAT_EQ(step.angle, 0.5f);
}
