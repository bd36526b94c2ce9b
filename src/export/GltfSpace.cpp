#include "export/GltfSpace.h"

#include <cmath>
#include <numbers>

namespace {

constexpr int kSource[] = {0, 2, 1};
constexpr float kSign[] = {1, 1, -1};
constexpr float kHalfRoot = std::numbers::sqrt2_v<float> / 2;

D3DXQUATERNION Normalized(const D3DXQUATERNION& q)
{
    const double length =
        std::sqrt(double{q.x} * q.x + double{q.y} * q.y + double{q.z} * q.z + double{q.w} * q.w);
    if (!(length > 0) || !std::isfinite(length))
        return {0, 0, 0, 1};
    const auto part = [length](float value) { return static_cast<float>(value / length); };
    return {part(q.x), part(q.y), part(q.z), part(q.w)};
}

} // namespace

D3DXMATRIX ToYUp(const D3DXMATRIX& matrix)
{
    D3DXMATRIX turned = matrix;
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column)
            turned.m[row][column] =
                kSign[row] * kSign[column] * matrix.m[kSource[row]][kSource[column]];
    }
    for (int column = 0; column < 3; ++column)
        turned.m[3][column] = kSign[column] * matrix.m[3][kSource[column]];
    return turned;
}

D3DXQUATERNION ToYUp(const D3DXQUATERNION& rotation, NodeAxes axes)
{
    if (axes == NodeAxes::kTurned)
        return Normalized({rotation.x, rotation.z, -rotation.y, rotation.w});
    D3DXQUATERNION turned;
    const D3DXQUATERNION view = ViewInTurnedNode();
    D3DXQuaternionMultiply(&turned, &rotation, &view); // the first one first
    return Normalized(turned);
}

D3DXVECTOR3 ScaleToYUp(const D3DXVECTOR3& scale, NodeAxes axes)
{
    return axes == NodeAxes::kTurned ? D3DXVECTOR3(scale.x, scale.z, scale.y) : scale;
}

D3DXQUATERNION ViewInTurnedNode()
{
    return {-kHalfRoot, 0, 0, kHalfRoot};
}
