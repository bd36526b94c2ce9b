#include "base/Ascii.h"
#include "qsa/QSALoader.h"
#include "scene/KRE_3dScene.h"
#include "scene/ResolveClones.h"

void QSALoader::LinkScene()
{
    header.firstFrame = static_cast<float>(firstFrame);
    header.lastFrame = static_cast<float>(lastFrame);
    scene->LinkObjects(*scene);
    scene->SetLoopEnd(duration);
    FinishAllKeys();
    for (KRE_Mesh* mesh : scene->meshes) {
        if (!mesh->cloneSource.IsEmpty())
            FinishCloneMaterials(mesh);
    }
    ResolveClones(*scene, *this);
    if (!TakeBoundsObject()) {
        const double start = frameSpeed != 0.0f ? double{header.firstFrame} / frameSpeed : 0.0;
        scene->Update(start, 1);
        scene->ComputeBounds();
        if (hasSkinnedMesh)
            Warning("Skinned meshes without 'Bounds' object");
    }
    scene->PartitionMeshes();
}

void QSALoader::FinishAllKeys()
{
    for (KRE_Mesh* mesh : scene->meshes)
        FinishKeys(mesh);
    for (KRE_3dObject* object : scene->objects)
        FinishKeys(object);
    for (KRE_Camera* camera : scene->cameras)
        FinishKeys(camera);
    for (KRE_Light* light : scene->lights)
        FinishKeys(light);
}

// ---- Clones

/// Gives a clone materials of its own. Pictures that no other mesh has asked for are not loaded.
void QSALoader::FinishCloneMaterials(KRE_Mesh* mesh)
{
    const auto* own = meshInfos.Find(mesh->name);
    const auto* source = meshInfos.Find(mesh->cloneSource);
    if (!own || !source)
        Error("Internal error: no mesh info for mesh '%s'", mesh->name.c_str());
    const QSA_Material* material = FindMaterial(own->data.materialRef, mesh);
    const bool hasParts = material && !material->subMaterials.empty();
    const int32_t attributes = hasParts ? source->data.attributeCount : 1;
    if (attributes == 0)
        return;
    mesh->AllocateMaterials(attributes);
    FillCloneMaterials(mesh, own->data, source->data, material);
}

void QSALoader::FillCloneMaterials(KRE_Mesh* mesh, const QSA_MeshLoadInfo& own,
                                   const QSA_MeshLoadInfo& source, const QSA_Material* material)
{
    if (!material) {
        mesh->materials[0] = WireMaterial(own.wireColour);
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

// ---- The object that stands for the scene's bounds

/// Takes the first mesh named "Bounds" out of the scene and its box for the scene's bounds. False if
/// there is none.
bool QSALoader::TakeBoundsObject()
{
    for (int32_t i = 0; i < scene->meshes.Count(); ++i) {
        KRE_Mesh* mesh = scene->meshes.Get(i);
        if (CompareNoCase(mesh->name.c_str(), "Bounds") != 0)
            continue;
        mesh->Evaluate(0.0, 1, 1);
        scene->clipMode = 3;
        scene->boxMin = mesh->boxMin;
        scene->boxMax = mesh->boxMax;
        scene->TransformBounds(mesh->worldTM);
        scene->ForgetObject(mesh);
        scene->meshes.Delete(i);
        return true;
    }
    return false;
}
