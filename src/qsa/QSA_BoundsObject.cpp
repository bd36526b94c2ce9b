#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>
#include <vector>

#include "base/Ascii.h"
#include "base/LoadInHand.h"
#include "qsa/QSALoader.h"
#include "scene/KRE_3dScene.h"
#include "scene/ResolveClones.h"

namespace {

/// The names of all meshes, with repeats. Sorted, not hashed: they come from files, and no choice of
/// names makes a look-up slow.
std::vector<std::string_view> SortedNames(KRE_3dScene& scene)
{
    std::vector<std::string_view> names;
    for (const KRE_Mesh* mesh : scene.meshes)
        names.push_back(mesh->name.c_str());
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace

void QSALoader::LinkScene()
{
    header.firstFrame = static_cast<float>(time.firstFrame);
    header.lastFrame = static_cast<float>(time.lastFrame);
    scene->LinkObjects(*scene);
    scene->SetLoopEnd(time.Duration());
    FinishAllKeys();
    for (KRE_Mesh* mesh : scene->meshes) {
        if (!mesh->cloneSource.IsEmpty())
            FinishCloneMaterials(mesh);
    }
    ResolveClones(*scene, *this);
    CheckCloneMaterials();
    if (!TakeBoundsObject()) {
        scene->Update(time.StartSeconds(), 1);
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
    const LoadScope inHand(mesh->name);
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

/// Faces of an attribute without a material are not drawn.
void QSALoader::CheckCloneMaterials()
{
    for (KRE_Mesh* mesh : scene->meshes) {
        const int32_t attributes = mesh->cloneSource.IsEmpty() ? 0 : mesh->AttributeCount();
        if (mesh->materialCount < attributes)
            Warning("Clone '%s' of '%s' has %i of %i materials", mesh->name.c_str(),
                    mesh->cloneSource.c_str(), mesh->materialCount, attributes);
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
        const String name = mesh->name;
        scene->ForgetObject(mesh);
        scene->meshes.Delete(i);
        PassOnGeometry(name);
        return true;
    }
    return false;
}

/// Files do not hold the mesh that the bounds came from, so its clones need another source: the first
/// of them becomes a mesh of its own and the source of the others. One whose name would not lead the
/// others to it leaves that to the next.
void QSALoader::PassOnGeometry(const String& takenMesh)
{
    const std::vector<std::string_view> names = SortedNames(*scene);
    const String* source = nullptr; // the name by which later clones find the geometry
    for (KRE_Mesh* mesh : scene->meshes) {
        if (std::strcmp(mesh->cloneSource.c_str(), takenMesh.c_str()) != 0)
            continue;
        if (source) {
            mesh->cloneSource = *source;
            continue;
        }
        mesh->cloneSource.Clear();
        FillUpMaterials(mesh);
        Warning("Mesh '%s' keeps the geometry of '%s', which is taken out of the scene",
                mesh->name.c_str(), takenMesh.c_str());
        const auto [first, end] =
            std::equal_range(names.begin(), names.end(), std::string_view(mesh->name.c_str()));
        if (end - first == 1)
            source = &mesh->name;
    }
}

/// A clone may have fewer materials than its geometry has attributes, but no mesh of its own may. The
/// faces that were not drawn get materials that are not seen.
void QSALoader::FillUpMaterials(KRE_Mesh* mesh)
{
    const int32_t attributes = mesh->AttributeCount();
    const int32_t count = mesh->materialCount;
    if (attributes <= std::max(count, 1))
        return;
    const HeapArray<KRE_MaterialInfo> materials = std::move(mesh->materials);
    const HeapArray<KRE_Texture> textures = std::move(mesh->textures);
    mesh->AllocateMaterials(attributes);
    for (int32_t i = 0; i < count; ++i) {
        mesh->materials[i] = materials[i];
        mesh->textures[i].CopyFrom(textures[i]);
    }
    // Without any material the first attribute is drawn as with a new one.
    for (int32_t i = std::max(count, 1); i < attributes; ++i)
        mesh->materials[i].transparency = 1.0f;
}
