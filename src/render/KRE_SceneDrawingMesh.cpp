#include "gfx/KRE_Gfx.h"
#include "render/KRE_SceneDrawing.h"
#include "scene/KRE_Mesh.h"

int32_t KRE_SceneDrawing::DrawMesh(KRE_Mesh* mesh, const D3DXMATRIX* parentTM,
                                   const KRE_MaterialInfo* overrideMaterial, int32_t singleStage,
                                   int32_t noMaterials)
{
    if (!mesh) {
        gfx.Warning("Pointer to mesh is zero");
        return 0;
    }
    if (!mesh->visible || !mesh->mesh)
        return 1;
    D3DXMATRIX identity;
    const D3DXMATRIX& extraTM = parentTM ? *parentTM : *D3DXMatrixIdentity(&identity);
    if (mesh->clipMode > 0 && !IsVisible(*mesh, mesh->pivotTM * mesh->worldTM * extraTM))
        return 0;

    ++gfx.drawnMeshes;
    const MeshDrawStates before = {gfx.blendMode, gfx.blendValue,  gfx.cullMode,
                                   gfx.zWrite,    gfx.addressU[0], gfx.addressV[0]};
    gfx.SetVertexBlend(mesh->vertexBlendFlags);
    gfx.SetVertexProcessingFor(mesh->processing);
    if (!parentTM && gfx.fillMode == D3DFILL_POINT)
        gfx.SetPointParameters(gfx.pointRecord, mesh->processing);
    gfx.SetNormalizeNormals(1);
    const MeshDraw draw = {*mesh, overrideMaterial, singleStage != 0, noMaterials != 0, before};
    if (mesh->blendCount == 0)
        DrawRigidMesh(draw, extraTM);
    else
        DrawSkinnedMesh(draw, extraTM);
    gfx.SelectEffect(nullptr);
    PutBack(before);
    return 1;
}

void KRE_SceneDrawing::PutBack(const MeshDrawStates& states)
{
    gfx.SetCullMode(states.cullMode);
    gfx.SetBlendMode(states.blendMode, states.blendValue, 0);
    gfx.SetZWrite(states.zWrite);
    gfx.SetTextureAddressU(states.addressU, 0);
    gfx.SetTextureAddressV(states.addressV, 0);
}

/// Switches culling if the matrix mirrors the object, so that the same faces stay visible.
int32_t KRE_SceneDrawing::CullModeUnder(const D3DXMATRIX& matrix)
{
    if (D3DXMatrixDeterminant(&matrix) < 0.0f)
        gfx.SetCullMode(-gfx.cullMode);
    return gfx.cullMode;
}

void KRE_SceneDrawing::DrawRigidMesh(const MeshDraw& draw, const D3DXMATRIX& extraTM)
{
    const D3DXMATRIX matrix = draw.mesh.pivotTM * draw.mesh.worldTM * extraTM;
    gfx.SetWorldMatrix(matrix);
    DrawMaterials(draw, CullModeUnder(matrix));
}

void KRE_SceneDrawing::DrawSkinnedMesh(const MeshDraw& draw, const D3DXMATRIX& extraTM)
{
    KRE_Mesh& mesh = draw.mesh;
    const int32_t boneCount = mesh.bones.Count();
    if (mesh.processing == 1 && static_cast<DWORD>(boneCount) > gfx.caps.MaxVertexBlendMatrixIndex)
        gfx.Warning("Number of bones too high for hardware vertex blending: %i", boneCount);
    gfx.SetIndexedVertexBlend(1);
    gfx.SetWorldMatrix(mesh.PaletteMatrix(0, extraTM));
    for (int32_t i = 1; i < boneCount; ++i)
        gfx.SetWorldMatrix(mesh.PaletteMatrix(i, extraTM), i);
    // The bones may mirror the mesh as bound, whatever its own matrix does.
    const D3DXMATRIX sign =
        (boneCount < 2 ? mesh.worldTM : mesh.bones.Get(1)->meshInitTM) * extraTM;
    DrawMaterials(draw, CullModeUnder(sign));
    gfx.SetIndexedVertexBlend(0);
    gfx.SetVertexBlend(D3DVBF_DISABLE);
}

/// Opaque materials come first, so that transparent ones of the mesh blend with them.
void KRE_SceneDrawing::DrawMaterials(const MeshDraw& draw, int32_t meshCullMode)
{
    KRE_Mesh& mesh = draw.mesh;
    if (mesh.materialCount <= 0) {
        if (!draw.noMaterials) {
            gfx.SetMaterial(draw.overrideMaterial ? draw.overrideMaterial->DeviceMaterial()
                                                  : gfx.defaultMaterial);
            gfx.SetTexture(nullptr);
        }
        gfx.SetCullMode(meshCullMode);
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

void KRE_SceneDrawing::DrawMaterial(const MeshDraw& draw, int32_t index, int32_t meshCullMode)
{
    const KRE_MaterialInfo& own = draw.mesh.materials[index];
    if (draw.overrideMaterial) {
        const KRE_MaterialInfo combined = own.Combine(*draw.overrideMaterial);
        DrawMaterialAs(combined, draw, index, meshCullMode);
    } else {
        DrawMaterialAs(own, draw, index, meshCullMode);
    }
}

void KRE_SceneDrawing::DrawMaterialAs(const KRE_MaterialInfo& info, const MeshDraw& draw,
                                      int32_t index, int32_t meshCullMode)
{
    if (info.transparency == 1.0f)
        return; // invisible
    const KRE_MaterialInfo& own = draw.mesh.materials[index];
    KRE_Texture& texture = draw.mesh.textures[index];
    if (!draw.noMaterials) {
        gfx.SelectEffect(own.effect.get());
        gfx.SetMaterialReflect(info, own.reflectionSet >= 0);
        if (draw.singleStage) {
            gfx.SetTexture(nullptr, 1);
            gfx.SetTexture(&texture, 0);
        } else {
            gfx.SetTexture(&texture);
        }
        gfx.ApplyMaterialBlend(info, texture.IsValid(), draw.before.blendMode,
                               static_cast<float>(draw.before.blendValue));
    }
    gfx.SetCullMode(own.twoSided ? 0 : meshCullMode);
    DrawSubset(draw.mesh, index);
}
