#include "scene/KRE_Mesh.h"

#include <algorithm>
#include <utility>

#include "gfx/KRE_ResourceManager.h"

KRE_Mesh::KRE_Mesh()
{
    SetClassName("KRE_Mesh");
    objectKind = kObjectMesh;
}

void KRE_Mesh::AllocateBoneObjects()
{
    boneObjectCount = bones.Count();
    boneObjects.Free();
    if (boneObjectCount > 0)
        boneObjects = HeapArray<KRE_3dObject*>(boneObjectCount);
}

D3DXMATRIX KRE_Mesh::PaletteMatrix(int32_t i, const D3DXMATRIX& extraTM) const
{
    const bool isBone = i > 0 && i < bones.Count() && i < boneObjectCount && boneObjects[i];
    if (!isBone)
        return worldTM * extraTM;
    return bones.Get(i)->bindTM * boneObjects[i]->worldTM * extraTM;
}

void KRE_Mesh::SetVertexBlendFlags()
{
    // The last weight of a vertex is not stored, so n weights need the flag of n - 1.
    static constexpr DWORD kFlags[] = {D3DVBF_DISABLE, D3DVBF_0WEIGHTS, D3DVBF_1WEIGHTS,
                                       D3DVBF_2WEIGHTS, D3DVBF_3WEIGHTS};
    if (blendCount < 0 || blendCount >= static_cast<int32_t>(std::size(kFlags)))
        Error("Invalid weight number");
    vertexBlendFlags = kFlags[blendCount];
}

int32_t KRE_Mesh::CopyGeometryTo(KRE_Mesh& dest, int32_t keepObject, int32_t keepMaterials)
{
    if (&dest == this)
        return mesh ? 1 : 0;
    HeapArray<KRE_MaterialInfo> keptMaterials;
    HeapArray<KRE_Texture> keptTextures;
    int32_t keptCount = 0;
    if (keepMaterials) {
        keptMaterials = std::move(dest.materials);
        keptTextures = std::move(dest.textures);
        keptCount = std::exchange(dest.materialCount, 0);
    }
    KRE_ObjectFields keptObject;
    if (keepObject)
        keptObject = std::move(static_cast<KRE_ObjectFields&>(dest));

    dest.Reset();
    if (!mesh)
        return 0;
    dest.CopyMeshFields(*this);
    dest.vertexBlendFlags = vertexBlendFlags;
    dest.userTag = userTag;
    if (keepObject)
        static_cast<KRE_ObjectFields&>(dest) = std::move(keptObject);
    else
        dest.Assign(*this);
    dest.ShareDeviceMesh(*this);

    if (keepMaterials) {
        dest.materials = std::move(keptMaterials);
        dest.textures = std::move(keptTextures);
        dest.materialCount = keptCount;
    } else {
        dest.AllocateMaterials(materialCount);
        for (int32_t i = 0; i < materialCount; ++i) {
            dest.textures[i].CopyFrom(textures[i]);
            dest.materials[i] = materials[i];
        }
    }
    dest.CopyBones(*this);
    return 1;
}

void KRE_Mesh::CopyBones(const KRE_Mesh& other)
{
    for (const KRE_BoneInfo* bone : other.bones) {
        if (!bones.GetSlot(bones.Add(bone)))
            Error("Not enough memory for the scene");
    }
    bones.SetSize(bones.Count());
    boneObjectCount = other.boneObjectCount;
    boneObjects = HeapArray<KRE_3dObject*>(boneObjectCount);
    std::copy_n(other.boneObjects.Get(), boneObjectCount, boneObjects.Get());
}

void KRE_Mesh::Reset()
{
    KRE_MeshBase::Reset();
    objectKind = kObjectMesh;
    bones.Clear();
    boneObjects.Free();
    boneObjectCount = 0;
    vertexBlendFlags = D3DVBF_DISABLE;
    userTag = -1;
}
