#include "scene/KRE_ClipObject.h"

#include <algorithm>

void KRE_GrowingBox::Add(const D3DXVECTOR3& point)
{
    low = {std::min(low.x, point.x), std::min(low.y, point.y), std::min(low.z, point.z)};
    high = {std::max(high.x, point.x), std::max(high.y, point.y), std::max(high.z, point.z)};
}

void KRE_GrowingBox::AddCorners(const D3DXVECTOR3& boxMin, const D3DXVECTOR3& boxMax,
                                const D3DXMATRIX& matrix)
{
    for (int corner = 0; corner < 8; ++corner) {
        D3DXVECTOR3 point(corner & 1 ? boxMax.x : boxMin.x, corner & 2 ? boxMax.y : boxMin.y,
                          corner & 4 ? boxMax.z : boxMin.z);
        D3DXVec3TransformCoord(&point, &point, &matrix);
        Add(point);
    }
}

float KRE_GrowingBox::Radius() const
{
    const D3DXVECTOR3 extent = (high - low) * 0.5f;
    return D3DXVec3Length(&extent);
}

void KRE_ClipObject::TransformBounds(const D3DXMATRIX& matrix)
{
    constexpr float kFar = 8999999488.0f; // differs from the limit that a scene's bounds start from
    KRE_GrowingBox box(kFar);
    box.AddCorners(boxMin, boxMax, matrix);
    boxMin = box.low;
    boxMax = box.high;
    center = box.Center();
    const D3DXVECTOR3 diagonal = boxMax - boxMin;
    radius = D3DXVec3Length(&diagonal) * 0.5f;
}
