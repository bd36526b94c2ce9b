#include "base/LoadInHand.h"
#include "qsa/QSA_MeshImport.h"
#include "qsa/QSA_NewObject.h"
#include "scene/KRE_3dScene.h"
#include "scene/ResolveClones.h"

namespace {

/// A material of one colour, for meshes that have none.
KRE_MaterialInfo WireMaterial(const D3DCOLORVALUE& color)
{
    KRE_MaterialInfo material;
    material.diffuse = color;
    material.ambient = color;
    material.specular = {0.0f, 0.0f, 0.0f, 1.0f};
    material.emissive = {0.0f, 0.0f, 0.0f, 1.0f};
    return material;
}

/// Faces of an attribute without a material are not drawn.
void CheckCloneMaterials(KRE_3dScene& scene, ErrorClass& report)
{
    for (KRE_Mesh* mesh : scene.meshes) {
        const int32_t attributes = mesh->cloneSource.IsEmpty() ? 0 : mesh->AttributeCount();
        if (mesh->materialCount < attributes)
            report.Warning("Clone '%s' of '%s' has %i of %i materials", mesh->name.c_str(),
                           mesh->cloneSource.c_str(), mesh->materialCount, attributes);
    }
}

} // namespace

void QSA_MeshImport::CopyMaterial(KRE_Mesh* mesh, int32_t slot, const QSA_Material* material)
{
    copies.Take(AnimationBytes(material->render), *mesh, text);
    mesh->materials[slot] = material->render;
    if (!material->texture)
        return;
    copies.Take(AnimationBytes(*material->texture), *mesh, text);
    mesh->textures[slot].CopyFrom(*material->texture);
}

void QSA_MeshImport::FillCloneMaterials(KRE_Mesh* mesh, const QSA_MeshLoadInfo& own,
                                        const QSA_MeshLoadInfo& source,
                                        const QSA_Material* material)
{
    if (!material) {
        mesh->materials[0] = WireMaterial(own.wireColor);
        return;
    }
    if (material->subMaterials.empty()) {
        CopyMaterial(mesh, 0, material);
        return;
    }
    for (size_t s = 0; s < source.subMaterialMap.size(); ++s) {
        const int32_t attribute = source.subMaterialMap[s];
        if (attribute >= 0)
            CopyMaterial(mesh, attribute,
                         material->subMaterials[s % material->subMaterials.size()]);
    }
}

void QSA_MeshImport::ApplyMaterials(KRE_Mesh* mesh, QSA_Material* material)
{
    if (!material) {
        mesh->materials[0] = WireMaterial(geometry.wireColor);
        return;
    }
    materials.LoadTextures(material, *mesh, copies);
    if (material->subMaterials.empty()) {
        CopyMaterial(mesh, 0, material);
        return;
    }
    for (size_t s = 0; s < builder.subMaterialMap.size(); ++s) {
        if (builder.subMaterialMap[s] >= 0)
            CopyMaterial(mesh, builder.subMaterialMap[s], material->subMaterials[s]);
    }
}

/// Gives a clone materials of its own. Loads no pictures: it has only those that other meshes
/// loaded.
void QSA_MeshImport::FinishCloneMaterials(KRE_Mesh* mesh)
{
    const LoadScope inHand(mesh->name);
    const auto* own = meshInfos.Find(mesh->name);
    const auto* source = meshInfos.Find(mesh->cloneSource);
    if (!own || !source)
        text.Error("Internal error: no mesh info for mesh '%s'", mesh->name.c_str());
    const QSA_Material* material = materials.Find(own->data.materialRef, mesh->name.c_str());
    const bool hasParts = material && !material->subMaterials.empty();
    const int32_t attributes = hasParts ? source->data.attributeCount : 1;
    if (attributes == 0)
        return;
    if (attributes > 1) // one in each clone is no more than the text of the clone
        copies.Take(attributes * kMaterialBytes, *mesh, text);
    mesh->AllocateMaterials(attributes);
    FillCloneMaterials(mesh, own->data, source->data, material);
}

void QSA_MeshImport::FinishClones()
{
    for (KRE_Mesh* mesh : scene.meshes) {
        if (!mesh->cloneSource.IsEmpty())
            WithMemoryFor(*mesh, text, [&] { FinishCloneMaterials(mesh); });
    }
    ResolveClones(scene, copies, text);
    CheckCloneMaterials(scene, text);
}
