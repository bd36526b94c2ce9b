#include <algorithm>
#include <string_view>
#include <vector>

#include "scene/KRE_3dScene.h"

namespace {

/// The objects of a scene by exact name, the first of each name as in `FindObject`. Sorted, not
/// hashed: names come from files, and no choice of names can make a look-up slow.
class SceneNames {
public:
    explicit SceneNames(KRE_3dScene& scene)
    {
        AddAll(scene.meshes);
        AddAll(scene.objects);
        AddAll(scene.cameras);
        AddAll(scene.lights);
        std::stable_sort(entries.begin(), entries.end(), IsBefore);
    }

    KRE_3dObject* Find(const char* name) const
    {
        const Entry wanted = {name, nullptr};
        const auto found = std::lower_bound(entries.begin(), entries.end(), wanted, IsBefore);
        return found != entries.end() && found->name == wanted.name ? found->object : nullptr;
    }

private:
    struct Entry {
        std::string_view name;
        KRE_3dObject* object; ///< not owned, lives in the scene
    };

    static bool IsBefore(const Entry& a, const Entry& b) { return a.name < b.name; }

    template <class List>
    void AddAll(List& list)
    {
        for (KRE_3dObject* object : list)
            entries.push_back({object->name.c_str(), object});
    }

    std::vector<Entry> entries;
};

/// Links the names of one scene's objects to the objects of another, or the same, scene.
class Linker {
public:
    Linker(KRE_3dScene& sceneIn, KRE_3dScene& sourceIn)
        : scene(sceneIn),
          source(sourceIn),
          names(sourceIn)
    {}

    void LinkParent(KRE_3dObject& child) const
    {
        child.parent = child.parentName.IsEmpty() ? nullptr : Find(child.parentName, child);
    }

    void LinkBones(KRE_Mesh& mesh) const
    {
        mesh.AllocateBoneObjects();
        int32_t i = 0;
        for (const KRE_BoneInfo* bone : mesh.bones) {
            KRE_3dObject* found = names.Find(bone->name);
            if (!found)
                scene.Warning("Bone '%s' not found in scene '%s'. Child: '%s'", bone->name,
                              source.name.c_str(), mesh.name.c_str());
            mesh.boneObjects[i++] = found;
        }
    }

    void LinkCamera(KRE_Camera& camera) const
    {
        LinkParent(camera);
        if (camera.targetName.IsEmpty())
            camera.parent = nullptr;
        else
            camera.target = Find(camera.targetName, camera);
    }

private:
    /// QUIRK: a target that is not found is reported under the parent's name.
    KRE_3dObject* Find(const String& name, const KRE_3dObject& child) const
    {
        KRE_3dObject* found = names.Find(name.c_str());
        if (!found)
            scene.Warning("Parent object '%s' not found in scene '%s'. Child: '%s'",
                          child.parentName.c_str(), source.name.c_str(), child.name.c_str());
        return found;
    }

    KRE_3dScene& scene;
    KRE_3dScene& source;
    SceneNames names;
};

} // namespace

int32_t KRE_3dScene::LinkObjects(KRE_3dScene& source)
{
    const Linker linker(*this, source);
    for (KRE_Mesh* mesh : meshes)
        linker.LinkParent(*mesh);
    for (KRE_Mesh* mesh : meshes)
        linker.LinkBones(*mesh);
    for (KRE_Camera* camera : cameras)
        linker.LinkCamera(*camera);
    for (KRE_3dObject* object : objects)
        linker.LinkParent(*object);
    for (KRE_Light* light : lights)
        linker.LinkParent(*light);
    return 1;
}

template <class List>
static void ForgetParent(List& list, const KRE_3dObject* parent)
{
    for (KRE_3dObject* object : list) {
        if (object->parent == parent)
            object->parent = nullptr;
    }
}

template <class List>
static void ForgetTarget(List& list, const KRE_3dObject* target)
{
    for (KRE_Target3dObject* object : list) {
        if (object->target == target)
            object->target = nullptr;
    }
}

void KRE_3dScene::ForgetObject(const KRE_3dObject* object)
{
    ForgetParent(meshes, object);
    ForgetParent(objects, object);
    ForgetParent(cameras, object);
    ForgetParent(lights, object);
    ForgetTarget(cameras, object);
    ForgetTarget(lights, object);
    for (KRE_Mesh* mesh : meshes)
        std::replace_if(
            mesh->boneObjects.Get(), mesh->boneObjects.Get() + mesh->boneObjectCount,
            [&](const KRE_3dObject* bone) { return bone == object; }, nullptr);
}
