#include "gfx/KRE_Gfx.h"
#include "scene/KRE_Mesh.h"

int32_t KRE_Gfx::DrawMesh(KRE_Mesh* mesh, const D3DXMATRIX* parentTM,
                          const KRE_MaterialInfo* overrideMaterial, int32_t singleStage,
                          int32_t noMaterials)
{
    if (!mesh) {
        Warning("Pointer to mesh is zero");
        return 0;
    }
    if (!mesh->visible || !mesh->mesh)
        return 1;
    D3DXMATRIX identity;
    const D3DXMATRIX& extraTM = parentTM ? *parentTM : *D3DXMatrixIdentity(&identity);
    if (mesh->clipMode > 0 && !IsVisible(*mesh, mesh->pivotTM * mesh->worldTM * extraTM))
        return 0;

    ++drawnMeshes;
    const MeshDrawStates before = {blendMode, blendValue,  cullMode,
                                   zWrite,    addressU[0], addressV[0]};
    SetVertexBlend(mesh->vertexBlendFlags);
    SetVertexProcessingFor(mesh->processing);
    if (!parentTM && fillMode == D3DFILL_POINT)
        SetPointParameters(pointRecord, mesh->processing);
    SetNormalizeNormals(1);
    const MeshDraw draw = {*mesh, overrideMaterial, singleStage != 0, noMaterials != 0, before};
    if (mesh->blendCount == 0)
        DrawRigidMesh(draw, extraTM);
    else
        DrawSkinnedMesh(draw, extraTM);
    SelectEffect(nullptr);
    PutBack(before);
    return 1;
}

void KRE_Gfx::PutBack(const MeshDrawStates& states)
{
    SetCullMode(states.cullMode);
    SetBlendMode(states.blendMode, states.blendValue, 0);
    SetZWrite(states.zWrite);
    SetTextureAddressU(states.addressU, 0);
    SetTextureAddressV(states.addressV, 0);
}

/// Culling that keeps the faces of an object under a matrix that may mirror it.
int32_t KRE_Gfx::CullModeUnder(const D3DXMATRIX& matrix)
{
    if (D3DXMatrixDeterminant(&matrix) < 0.0f)
        SetCullMode(-cullMode);
    return cullMode;
}

void KRE_Gfx::DrawRigidMesh(const MeshDraw& draw, const D3DXMATRIX& extraTM)
{
    const D3DXMATRIX matrix = draw.mesh.pivotTM * draw.mesh.worldTM * extraTM;
    SetWorldMatrix(matrix);
    DrawMaterials(draw, CullModeUnder(matrix));
}

void KRE_Gfx::DrawSkinnedMesh(const MeshDraw& draw, const D3DXMATRIX& extraTM)
{
    KRE_Mesh& mesh = draw.mesh;
    const int32_t boneCount = mesh.bones.Count();
    if (mesh.processing == 1 && static_cast<DWORD>(boneCount) > caps.MaxVertexBlendMatrixIndex)
        Warning("Number of bones too high for hardware vertex blending: %i", boneCount);
    SetIndexedVertexBlend(1);
    SetWorldMatrix(mesh.PaletteMatrix(0, extraTM));
    for (int32_t i = 1; i < boneCount; ++i)
        SetWorldMatrix(mesh.PaletteMatrix(i, extraTM), i);
    // The bones may mirror the mesh as it was bound, whatever its own matrix does.
    const D3DXMATRIX sign =
        (boneCount < 2 ? mesh.worldTM : mesh.bones.Get(1)->meshInitTM) * extraTM;
    DrawMaterials(draw, CullModeUnder(sign));
    SetIndexedVertexBlend(0);
    SetVertexBlend(D3DVBF_DISABLE);
}

/// Opaque materials come first, so that transparent ones of the mesh blend with them.
void KRE_Gfx::DrawMaterials(const MeshDraw& draw, int32_t meshCullMode)
{
    KRE_Mesh& mesh = draw.mesh;
    if (mesh.materialCount <= 0) {
        if (!draw.noMaterials) {
            SetMaterial(draw.overrideMaterial ? draw.overrideMaterial->DeviceMaterial()
                                              : defaultMaterial);
            SetTexture(nullptr);
        }
        SetCullMode(meshCullMode);
        DrawSubset(mesh, 0);
        return;
    }
    for (int32_t pass = 0; pass < 2; ++pass) {
        for (int32_t i = 0; i < mesh.materialCount; ++i) {
            if (mesh.materials[i].transparent == pass)
                DrawMaterial(draw, i, meshCullMode);
        }
    }
}

void KRE_Gfx::DrawMaterial(const MeshDraw& draw, int32_t index, int32_t meshCullMode)
{
    const KRE_MaterialInfo& own = draw.mesh.materials[index];
    if (draw.overrideMaterial) {
        const KRE_MaterialInfo combined = own.Combine(*draw.overrideMaterial);
        DrawMaterialAs(combined, draw, index, meshCullMode);
    } else {
        DrawMaterialAs(own, draw, index, meshCullMode);
    }
}

void KRE_Gfx::DrawMaterialAs(const KRE_MaterialInfo& info, const MeshDraw& draw, int32_t index,
                             int32_t meshCullMode)
{
    if (info.transparency == 1.0f)
        return; // nothing of it is seen
    const KRE_MaterialInfo& own = draw.mesh.materials[index];
    KRE_Texture& texture = draw.mesh.textures[index];
    if (!draw.noMaterials) {
        SelectEffect(own.effect.get());
        SetMaterialReflect(info, own.reflectionSet >= 0);
        if (draw.singleStage) {
            SetTexture(nullptr, 1);
            SetTexture(&texture, 0);
        } else {
            SetTexture(&texture);
        }
        ApplyMaterialBlend(info, texture.IsValid(), draw.before.blendMode,
                           static_cast<float>(draw.before.blendValue));
    }
    SetCullMode(own.twoSided ? 0 : meshCullMode);
    DrawSubset(draw.mesh, index);
}
