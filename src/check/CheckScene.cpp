#include "check/CheckScene.h"

#include <cmath>
#include <cstdarg>
#include <cstring>
#include <map>
#include <set>
#include <string_view>
#include <vector>

#include "base/FormatText.h"

namespace {

constexpr double kUnitTolerance = 1e-3;

template <class List>
void CheckList(const char* what, List& list, SceneFaults& faults)
{
    if (list.count < 0 || list.count > list.capacity) {
        faults.Add(what, "%i elements in %i slots", list.count, list.capacity);
        return;
    }
    if (!list.data) {
        if (list.count != 0)
            faults.Add(what, "%i elements and no slots", list.count);
        return;
    }
    int32_t used = 0;
    for (int32_t slot = 0; slot < list.capacity; ++slot) {
        used += list.data[slot] ? 1 : 0;
        if (!list.data[slot] && slot < list.firstFree)
            faults.Add(what, "slot %i is free, the search begins at %i", slot, list.firstFree);
    }
    if (used != list.count)
        faults.Add(what, "%i elements are counted, %i are there", list.count, used);
    list.begin(); // brings the order up to date
    std::vector<bool> isListed(static_cast<size_t>(list.capacity));
    for (int32_t i = 0; i < list.count; ++i) {
        const int32_t slot = list.order[i];
        const bool isSlot = slot >= 0 && slot < list.capacity && list.data[slot];
        if (!isSlot)
            faults.Add(what, "place %i of the order is slot %i without an element", i, slot);
        else if (isListed[static_cast<size_t>(slot)])
            faults.Add(what, "slot %i is in the order twice", slot);
        else
            isListed[static_cast<size_t>(slot)] = true;
    }
}

/// A time that is no number is equal to none, itself included.
bool IsSameTime(float a, float b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

template <class T>
void CheckTrack(const char* object, const char* track, const KRE_KeyList<T>& keys, int32_t counter,
                const KRE_KeyIndex<T>& index, SceneFaults& faults)
{
    int32_t count = 0;
    const T* before = nullptr;
    for (const T* key = keys.Head(); key; before = key, key = key->next, ++count) {
        if (key->prev != before)
            faults.Add(object, "%s key %i is not linked to the one before", track, count);
        const int32_t place = count / index.Step();
        if (index && count % index.Step() == 0 && place < index.EntryCount() &&
            (index.Entries()[place].key != key ||
             !IsSameTime(index.Entries()[place].time, key->time)))
            faults.Add(object, "%s key %i is not the one of the index", track, count);
    }
    if (keys.Tail() != before)
        faults.Add(object, "the last %s key is not the tail", track);
    if (count != counter)
        faults.Add(object, "%i %s keys are counted, %i are there", counter, track, count);
    if (index.Count() != count)
        faults.Add(object, "%i %s keys are indexed, %i are there", index.Count(), track, count);
}

void CheckRotation(const char* object, const char* what, const D3DXQUATERNION& q,
                   SceneFaults& faults)
{
    const double length =
        std::sqrt(static_cast<double>(q.x) * q.x + static_cast<double>(q.y) * q.y +
                  static_cast<double>(q.z) * q.z + static_cast<double>(q.w) * q.w);
    if (std::isfinite(length) && std::fabs(length - 1) > kUnitTolerance)
        faults.Add(object, "%s has the length %g", what, length);
}

/// Checks the nodes of one scene.
class NodeChecker {
public:
    NodeChecker(KRE_3dScene& sceneIn, SceneFaults& faultsIn) : scene(sceneIn), faults(faultsIn)
    {
        for (KRE_Mesh* mesh : scene.meshes)
            meshesByName.emplace(mesh->name.c_str(), mesh); // the first of a name wins
        AddAll(scene.meshes);
        AddAll(scene.cameras);
        AddAll(scene.objects);
        AddAll(scene.lights);
    }

    void CheckAll()
    {
        CheckNode(scene);
        for (KRE_Mesh* mesh : scene.meshes) {
            CheckNode(*mesh);
            if (mesh->objectKind != kObjectMesh)
                faults.Add(mesh->name.c_str(), "a mesh of the kind %i", mesh->objectKind);
            const bool isShared =
                !mesh->cloneSource.IsEmpty() && !seen.insert(mesh->mesh.Get()).second;
            CheckMesh(*mesh, isShared ? MeshCheck::kWithoutGeometry : MeshCheck::kAll, faults);
            CheckBoneObjects(*mesh);
            CheckClone(*mesh);
        }
        for (KRE_Camera* camera : scene.cameras)
            CheckTarget(*camera);
        for (KRE_3dObject* object : scene.objects)
            CheckNode(*object);
        for (KRE_Light* light : scene.lights)
            CheckTarget(*light);
        CheckAncestors();
    }

private:
    template <class List>
    void AddAll(List& list)
    {
        for (const KRE_3dObject* object : list) {
            if (inside.insert(object).second)
                inOrder.push_back(object);
        }
    }

    void CheckNode(const KRE_3dObject& node)
    {
        const char* name = node.name.c_str();
        CheckTrack(name, "position", node.posKeys, node.posKeyCount, node.posIndex, faults);
        CheckTrack(name, "rotation", node.rotKeys, node.rotKeyCount, node.rotIndex, faults);
        CheckTrack(name, "scale", node.scaleKeys, node.scaleKeyCount, node.scaleIndex, faults);
        for (const KRE_RotKeyData* key = node.rotKeys.Head(); key; key = key->next)
            CheckRotation(name, "a rotation key", key->rotation, faults);
        CheckRotation(name, "the current rotation", node.currentRotation, faults);
        CheckLink(node, "the parent", node.parent);
        if (inside.count(node.parent) &&
            std::strcmp(node.parent->name.c_str(), node.parentName.c_str()) != 0)
            faults.Add(name, "the parent is '%s' and not '%s'", node.parent->name.c_str(),
                       node.parentName.c_str());
    }

    void CheckTarget(const KRE_Target3dObject& node)
    {
        CheckNode(node);
        CheckLink(node, "the target", node.target);
    }

    void CheckLink(const KRE_3dObject& from, const char* what, const KRE_3dObject* to)
    {
        if (to && !inside.count(to))
            faults.Add(from.name.c_str(), "%s is not of the scene", what);
        if (to == &from)
            faults.Add(from.name.c_str(), "%s is the object itself", what);
    }

    void CheckBoneObjects(KRE_Mesh& mesh)
    {
        if (mesh.boneObjectCount != mesh.bones.Count())
            faults.Add(mesh.name.c_str(), "%i bones and %i bone objects", mesh.bones.Count(),
                       mesh.boneObjectCount);
        for (int32_t i = 0; i < mesh.boneObjectCount; ++i) {
            if (mesh.boneObjects[i] && !inside.count(mesh.boneObjects[i]))
                faults.Add(mesh.name.c_str(), "bone object %i is not of the scene", i);
        }
    }

    void CheckClone(const KRE_Mesh& clone)
    {
        if (clone.cloneSource.IsEmpty())
            return;
        const auto source = meshesByName.find(clone.cloneSource.c_str());
        if (source == meshesByName.end())
            faults.Add(clone.name.c_str(), "no mesh '%s' to be a clone of",
                       clone.cloneSource.c_str());
        else if (source->second->mesh.Get() != clone.mesh.Get())
            faults.Add(clone.name.c_str(), "a clone with another geometry than '%s'",
                       clone.cloneSource.c_str());
    }

    /// Visits each object once: a walk ends where an earlier one has been.
    void CheckAncestors()
    {
        std::map<const KRE_3dObject*, size_t> walks; // the walk that visited each object
        size_t walk = 0;
        for (const KRE_3dObject* object : inOrder) {
            ++walk;
            const KRE_3dObject* at = object;
            while (inside.count(at) && walks.emplace(at, walk).second)
                at = at->parent;
            // An object that is its own parent is reported with its links.
            if (inside.count(at) && walks[at] == walk && at->parent != at)
                faults.Add(at->name.c_str(), "an ancestor is the object itself");
        }
    }

    KRE_3dScene& scene;
    SceneFaults& faults;
    std::set<const KRE_3dObject*> inside;
    std::vector<const KRE_3dObject*> inOrder;                 ///< the same, in list order
    std::map<std::string_view, const KRE_Mesh*> meshesByName; ///< not owned, live in the scene
    std::set<const ID3DXMesh*> seen;                          ///< geometry checked so far
};

void CheckOrder(KRE_3dScene& scene, SceneFaults& faults)
{
    const char* name = scene.name.c_str();
    if (scene.activeCamera < -1 || scene.activeCamera >= scene.cameras.Count())
        faults.Add(name, "the active camera is %i of %i", scene.activeCamera,
                   scene.cameras.Count());
    if (scene.opaqueMeshCount < 0 || scene.opaqueMeshCount > scene.meshes.Count())
        faults.Add(name, "%i opaque meshes of %i", scene.opaqueMeshCount, scene.meshes.Count());
    for (int32_t i = 0; i < scene.meshes.Count(); ++i) {
        KRE_Mesh* mesh = scene.meshes.Get(i);
        const bool isBehind = i >= scene.opaqueMeshCount;
        // After a load a clone has the flag of its source but keeps the place of its own.
        if (mesh->cloneSource.IsEmpty() && (mesh->HasTransparency() != 0) != isBehind)
            faults.Add(mesh->name.c_str(), isBehind ? "opaque behind the opaque meshes"
                                                    : "transparent among the opaque meshes");
    }
}

} // namespace

void SceneFaults::Add(const char* object, const char* format, ...)
{
    if (++count > kMostKept)
        return;
    char what[512];
    va_list arguments;
    va_start(arguments, format);
    FormatTextV(what, sizeof what, format, arguments);
    va_end(arguments);
    kept.push_back({object, what});
}

std::string SceneFaults::Text() const
{
    std::string text;
    for (const SceneFault& fault : kept)
        text += fault.object + ": " + fault.what + "\n";
    return text;
}

void FindSceneFaults(KRE_3dScene& scene, SceneFaults& faults)
{
    CheckList("meshes", scene.meshes, faults);
    CheckList("cameras", scene.cameras, faults);
    CheckList("objects", scene.objects, faults);
    CheckList("lights", scene.lights, faults);
    if (faults.Count() > 0)
        return; // walking damaged lists would go astray
    for (KRE_Mesh* mesh : scene.meshes)
        CheckList(mesh->name.c_str(), mesh->bones, faults);
    if (faults.Count() > 0)
        return;
    NodeChecker(scene, faults).CheckAll();
    CheckOrder(scene, faults);
    CheckMaterial("override material", scene.overrideMaterial, faults);
    CheckTexture("background", scene.backgroundTexture, faults);
}

std::string CheckScene(KRE_3dScene& scene)
{
    SceneFaults faults;
    FindSceneFaults(scene, faults);
    return faults.Text();
}
