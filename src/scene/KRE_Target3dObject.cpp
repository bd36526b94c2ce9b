#include "scene/KRE_Target3dObject.h"

static D3DXVECTOR3 Normalized(float x, float y, float z)
{
    const D3DXVECTOR3 vector(x, y, z);
    const float length = D3DXVec3Length(&vector);
    return {x / length, y / length, z / length};
}

static D3DXVECTOR3 TransformPoint(float x, float y, float z, const D3DXMATRIX& matrix)
{
    const D3DXVECTOR4 point(x, y, z, 1);
    D3DXVECTOR4 result;
    D3DXVec4Transform(&result, &point, &matrix);
    return {result.x, result.y, result.z};
}

void KRE_Target3dObject::Reset()
{
    KRE_3dObject::Reset();
    targetName.Clear();
    target = nullptr;
    worldPosition = {0, 0, 0};
    direction = {0, 1, 0};
    up = {0, 0, 1};
    UpdateLightData(nullptr);
}

int32_t KRE_Target3dObject::SetPosition(float x, float y, float z)
{
    KRE_3dObject::SetPosition(x, y, z, 1);
    worldPosition = {x, y, z};
    UpdateLightData(nullptr);
    return 1;
}

int32_t KRE_Target3dObject::SetDirection(float x, float y, float z)
{
    direction = Normalized(x, y, z);
    UpdateLightData(nullptr);
    return 1;
}

int32_t KRE_Target3dObject::SetUp(float x, float y, float z)
{
    up = Normalized(x, y, z);
    UpdateLightData(nullptr);
    return 1;
}

void KRE_Target3dObject::FinishEvaluation()
{
    UpdateVectors();
    UpdateLightData(nullptr);
}

void KRE_Target3dObject::UpdateVectors()
{
    worldPosition = TransformPoint(0, 0, 0, worldTM);
    if (target) {
        D3DXVECTOR3 at;
        target->GetWorldPosition(at);
        direction = at - worldPosition;
        return;
    }
    up = TransformPoint(0, 1, 0, worldTM) - worldPosition;
    direction = TransformPoint(0, 0, -1, worldTM) - worldPosition;
}
