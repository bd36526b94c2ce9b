#include "qsa/QSA_BoundsObject.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>
#include <vector>

#include "base/Ascii.h"
#include "scene/KRE_3dScene.h"

namespace {

/// The names of all meshes, duplicates included. Sorted rather than hashed: the names come from
/// files, and with sorting no choice of names can make look-ups slow.
std::vector<std::string_view> SortedNames(KRE_3dScene& scene)
{
    std::vector<std::string_view> names;
    for (const KRE_Mesh* mesh : scene.meshes)
        names.push_back(mesh->name.c_str());
    std::sort(names.begin(), names.end());
    return names;
}

/// A clone may have fewer materials than its geometry has attributes; a mesh with geometry of its
/// own may not. Faces without a material were not drawn, so they get fully transparent ones.
void FillUpMaterials(KRE_Mesh* mesh)
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
    // A mesh without materials draws its first attribute with a default one.
    for (int32_t i = std::max(count, 1); i < attributes; ++i)
        mesh->materials[i].transparency = 1.0f;
}

/// The mesh that gave the bounds is not saved, so its clones need another source: the first clone
/// becomes a mesh of its own and the source of the others. A clone whose name is not unique cannot
/// be a source, so the next one is tried.
void PassOnGeometry(KRE_3dScene& scene, const String& takenMesh, ErrorClass& report)
{
    const std::vector<std::string_view> names = SortedNames(scene);
    const String* source = nullptr; // the name by which later clones find the geometry
    for (KRE_Mesh* mesh : scene.meshes) {
        if (std::strcmp(mesh->cloneSource.c_str(), takenMesh.c_str()) != 0)
            continue;
        if (source) {
            mesh->cloneSource = *source;
            continue;
        }
        mesh->cloneSource.Clear();
        FillUpMaterials(mesh);
        report.Warning("Mesh '%s' keeps the geometry of '%s', which is taken out of the scene",
                       mesh->name.c_str(), takenMesh.c_str());
        const auto [first, end] =
            std::equal_range(names.begin(), names.end(), std::string_view(mesh->name.c_str()));
        if (end - first == 1)
            source = &mesh->name;
    }
}

} // namespace

bool TakeBoundsObject(KRE_3dScene& scene, ErrorClass& report)
{
    for (int32_t i = 0; i < scene.meshes.Count(); ++i) {
        KRE_Mesh* mesh = scene.meshes.Get(i);
        if (CompareNoCase(mesh->name.c_str(), "Bounds") != 0)
            continue;
        mesh->Evaluate(0.0, 1, 1);
        scene.clipMode = 3;
        scene.boxMin = mesh->boxMin;
        scene.boxMax = mesh->boxMax;
        scene.TransformBounds(mesh->worldTM);
        const String name = mesh->name;
        scene.ForgetObject(mesh);
        scene.meshes.Delete(i);
        PassOnGeometry(scene, name, report);
        return true;
    }
    return false;
}
