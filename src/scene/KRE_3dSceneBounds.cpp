#include "scene/KRE_3dScene.h"

static constexpr float kFar = 89999998976.0f;

template <class List>
static void AddPositions(KRE_GrowingBox& box, const List& list)
{
    for (const KRE_3dObject* object : list) {
        D3DXVECTOR3 position;
        object->GetWorldPosition(position);
        box.Add(position);
    }
}

static void AddBoxes(KRE_GrowingBox& box, const DynaMem<KRE_Mesh, 64>& meshes)
{
    for (const KRE_Mesh* mesh : meshes) {
        D3DXMATRIX toWorld;
        D3DXMatrixMultiply(&toWorld, &mesh->pivotTM, &mesh->worldTM);
        box.AddCorners(mesh->boxMin, mesh->boxMax, toWorld);
    }
}

void KRE_3dScene::ComputeBounds()
{
    if (meshes.Count() == 0 && objects.Count() == 0)
        return;
    KRE_GrowingBox box(kFar);
    AddBoxes(box, meshes);
    AddPositions(box, objects);
    radius = box.Radius();
    center = box.Center();
    boxMin = box.low;
    boxMax = box.high;
}

float KRE_3dScene::GetSphere(D3DXVECTOR3& centerOut) const
{
    KRE_GrowingBox box(kFar);
    AddBoxes(box, meshes);
    AddPositions(box, objects);
    AddPositions(box, cameras);
    centerOut = box.Center();
    return box.Radius();
}
