#include "export/SceneNodes.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "info/NameText.h"
#include "scene/KRE_3dScene.h"

using nlohmann::json;

namespace {

// The converter's own near and far planes.
constexpr double kNear = 1;
constexpr double kFar = 10000;

constexpr float kUnlimitedRange = 1e18f;
constexpr float kFullAt = 10; // units from a point light

D3DXQUATERNION RestRotation(const KRE_3dObject& object)
{
    const D3DXVECTOR3& axis = object.rotationAxis;
    if (object.rotationAngle == 0 || D3DXVec3Length(&axis) == 0)
        return {0, 0, 0, 1};
    D3DXQUATERNION rotation;
    D3DXQuaternionRotationAxis(&rotation, &axis, object.rotationAngle);
    return rotation;
}

void SetParts(json& node, const D3DXVECTOR3& at, const D3DXQUATERNION& turn,
              const D3DXVECTOR3& scale)
{
    const float translation[] = {at.x, at.y, at.z};
    const float rotation[] = {turn.x, turn.y, turn.z, turn.w};
    const float factors[] = {scale.x, scale.y, scale.z};
    if (at.x != 0 || at.y != 0 || at.z != 0)
        node["translation"] = ShortNumbers(translation);
    if (turn.w != 1)
        node["rotation"] = ShortNumbers(rotation);
    if (scale.x != 1 || scale.y != 1 || scale.z != 1)
        node["scale"] = ShortNumbers(factors);
}

const char* const kLightTypes[] = {"", "point", "spot", "directional"};

} // namespace

std::vector<int> SceneNodes::Add()
{
    CollectObjects();
    for (KRE_3dObject* object : objects)
        AddNode(*object);
    AddTree();
    for (KRE_Mesh* mesh : scene.meshes)
        AddMesh(*mesh);
    AddViews();
    AddAnimation();
    return Roots();
}

void SceneNodes::CollectObjects()
{
    for (KRE_Mesh* mesh : scene.meshes)
        objects.push_back(mesh);
    for (KRE_3dObject* object : scene.objects)
        objects.push_back(object);
    for (KRE_Camera* camera : scene.cameras)
        views.insert(objects.emplace_back(camera));
    for (KRE_Light* light : scene.lights)
        views.insert(objects.emplace_back(light));
    for (const KRE_3dObject* object : objects) {
        if (KRE_3dObject* parent = ParentOf(*object)) {
            parents[object] = parent;
            withChildren.insert(parent);
        }
        if (!(object->inheritPosition & object->inheritScale & object->inheritRotation &
              object->inheritMirror))
            notices.Add("objects that inherit only a part of their parent's matrix get all of it");
    }
}

/// The parent, unless the object is among its own ancestors.
KRE_3dObject* SceneNodes::ParentOf(const KRE_3dObject& object) const
{
    std::set<const KRE_3dObject*> seen = {&object};
    for (const KRE_3dObject* at = object.parent; at; at = at->parent) {
        if (!seen.insert(at).second)
            return nullptr;
    }
    return object.parent;
}

/// A camera or light turns its own axes unless others hang below it.
NodeAxes SceneNodes::AxesOf(const KRE_3dObject& object) const
{
    return views.count(&object) && !withChildren.count(&object) ? NodeAxes::kView
                                                                : NodeAxes::kTurned;
}

void SceneNodes::AddNode(KRE_3dObject& object)
{
    json node = {{"name", Utf8Name(object.name.c_str())}};
    PlaceNode(node, object, AxesOf(object));
    if (object.objectKind == kObjectBone)
        ObjectAt(ObjectAt(node, "extras"), "qsb")["kind"] = "bone";
    nodes[&object] = writer.Append("nodes", std::move(node));
}

/// The pose at second 0.
void SceneNodes::PlaceNode(json& node, const KRE_3dObject& object, NodeAxes axes)
{
    const auto valueAt0 = [](const GltfTrack& track, const D3DXVECTOR3& rest) {
        if (track.IsEmpty())
            return rest;
        const size_t at = track.interpolation[0] == 'C' ? 3 : 0;
        return D3DXVECTOR3(track.values[at], track.values[at + 1], track.values[at + 2]);
    };
    const D3DXVECTOR3 scale(object.scale.x * object.mirror.x, object.scale.y * object.mirror.y,
                            object.scale.z * object.mirror.z);
    const GltfTrack turns = RotationTrack(object, axes);
    const D3DXQUATERNION turn =
        turns.IsEmpty() ? ToYUp(RestRotation(object), axes) : D3DXQUATERNION(turns.values.data());
    SetParts(node, valueAt0(PositionTrack(object), ToYUp(object.position)), turn,
             valueAt0(ScaleTrack(object, axes), ScaleToYUp(scale, axes)));
}

void SceneNodes::AddTree()
{
    for (const KRE_3dObject* object : objects) {
        const auto parent = parents.find(object);
        if (parent != parents.end())
            ListAt(writer.At("nodes", nodes[parent->second]), "children").push_back(nodes[object]);
    }
}

// ---- Meshes and skins

/// A hidden mesh is named in the extras only: glTF draws all that its nodes have.
void SceneNodes::AddMesh(KRE_Mesh& mesh)
{
    const int added = meshes.MeshOf(mesh);
    if (added < 0)
        return;
    json& node = writer.At("nodes", nodes[&mesh]);
    if (!mesh.visible)
        ObjectAt(node, "extras")["qsb"] = {{"visible", false}, {"mesh", added}};
    else if (mesh.blendCount > 0)
        AddSkinned(mesh, added);
    else
        node["mesh"] = added;
}

/// The node of the mesh moves it as one of its bones; a second node, without a matrix, draws it.
void SceneNodes::AddSkinned(KRE_Mesh& mesh, int glTFMesh)
{
    std::vector<float> binds;
    json joints = json::array();
    std::set<int> taken;
    for (int32_t bone = 0; bone < std::max(1, mesh.bones.Count()); ++bone) {
        const bool isBone = bone > 0 && bone < mesh.boneObjectCount && mesh.boneObjects[bone];
        const D3DXMATRIX bind = ToYUp(isBone ? mesh.bones.Get(bone)->bindTM : IdentityMatrix());
        for (int i = 0; i < 16; ++i)
            binds.push_back(i % 4 == 3 ? (i == 15 ? 1.0f : 0.0f) : bind.m[i / 4][i % 4]);
        joints.push_back(JointOf(mesh, bone, taken));
    }
    const int skin = writer.Append(
        "skins", {{"joints", std::move(joints)},
                  {"inverseBindMatrices", writer.AddFloats(binds, "MAT4", 16, false)}});
    skinned.push_back(writer.Append(
        "nodes",
        {{"name", Utf8Name(mesh.name.c_str()) + " skin"}, {"mesh", glTFMesh}, {"skin", skin}}));
}

/// The node of a bone. One that an earlier bone has gets a child in its place: a skin has a node once.
int SceneNodes::JointOf(KRE_Mesh& mesh, int32_t bone, std::set<int>& taken)
{
    const bool isBone = bone > 0 && bone < mesh.boneObjectCount && mesh.boneObjects[bone];
    int node = nodes[isBone ? mesh.boneObjects[bone] : &mesh];
    if (!taken.insert(node).second) {
        const std::string name = writer.At("nodes", node).value("name", "");
        const int twin = writer.Append("nodes", {{"name", name + " joint"}});
        ListAt(writer.At("nodes", node), "children").push_back(twin);
        node = twin;
    }
    return node;
}

// ---- Cameras and lights

void SceneNodes::AddViews()
{
    for (KRE_Camera* camera : scene.cameras)
        AddCamera(*camera);
    for (KRE_Light* light : scene.lights)
        AddLight(*light);
}

/// The node whose -Z axis is the view of a camera or a light.
int SceneNodes::ViewNode(const KRE_Target3dObject& object)
{
    const int own = nodes[&object];
    if (AxesOf(object) == NodeAxes::kView)
        return own;
    const D3DXQUATERNION turn = ViewInTurnedNode();
    const float rotation[] = {turn.x, turn.y, turn.z, turn.w};
    const std::string name = Utf8Name(object.name.c_str()) + " view";
    const int view = writer.Append("nodes", {{"name", name}, {"rotation", ShortNumbers(rotation)}});
    ListAt(writer.At("nodes", own), "children").push_back(view);
    return view;
}

void SceneNodes::AddCamera(KRE_Camera& camera)
{
    const bool isUsable = camera.fov > 0 && camera.fov < std::numbers::pi_v<float>;
    if (!isUsable)
        notices.Add("cameras have an angle of view that no lens has, 45 degrees are used");
    const double angle = isUsable ? ShortNumber(camera.fov) : std::numbers::pi / 4;
    const int index = writer.Append(
        "cameras", {{"type", "perspective"},
                    {"name", Utf8Name(camera.name.c_str())},
                    {"perspective", {{"yfov", angle}, {"znear", kNear}, {"zfar", kFar}}}});
    int view = nodes[&camera];
    if (camera.target && withChildren.count(&camera)) // its children do not look at the target
        view = writer.Append("nodes", {{"name", Utf8Name(camera.name.c_str()) + " view"}});
    else if (!camera.target)
        view = ViewNode(camera);
    if (camera.target) {
        json& extras = ObjectAt(writer.At("nodes", view), "extras");
        ObjectAt(extras, "qsb")["target"] = Utf8Name(camera.targetName.c_str());
        looking.emplace_back(&camera, view);
    }
    writer.At("nodes", view)["camera"] = index;
}

/// A light of strength 1 gives a white surface that faces it all its colour, and so do pi lux. A point
/// light of glTF fades: it gets the candelas that have this effect ten units away.
void SceneNodes::AddLight(KRE_Light& light)
{
    if (!light.HasDeviceType()) {
        notices.Add("lights of an unknown type do not shine");
        return;
    }
    const D3DLIGHT9& device = light.light;
    const float strength = std::max({device.Diffuse.r, device.Diffuse.g, device.Diffuse.b});
    const bool shines = strength > 0 && std::isfinite(strength);
    const float shown = light.lightOn && shines ? strength : 0;
    const bool isSun = device.Type == D3DLIGHT_DIRECTIONAL;
    const float power = shown * std::numbers::pi_v<float> * (isSun ? 1 : kFullAt * kFullAt);
    json made = {
        {"type", kLightTypes[light.TypeNumber()]},
        {"name", Utf8Name(light.name.c_str())},
        {"intensity", ShortNumber(power)},
        {"extras",
         {{"qsb",
           {{"intensity", ShortNumber(shines ? strength : 0)}, {"on", light.lightOn != 0}}}}}};
    if (shines) {
        const float color[] = {std::max(device.Diffuse.r / strength, 0.0f),
                               std::max(device.Diffuse.g / strength, 0.0f),
                               std::max(device.Diffuse.b / strength, 0.0f)};
        made["color"] = ShortNumbers(color);
    }
    if (device.Range > 0 && device.Range < kUnlimitedRange && !isSun)
        made["range"] = ShortNumber(device.Range);
    if (device.Type == D3DLIGHT_SPOT) {
        constexpr float kWidest = std::numbers::pi_v<float> / 2;
        const float outer = std::clamp(device.Phi / 2, 1e-3f, kWidest);
        const float inner = std::clamp(device.Theta / 2, 0.0f, outer * 0.999f);
        made["spot"] = {{"innerConeAngle", ShortNumber(inner)},
                        {"outerConeAngle", ShortNumber(outer)}};
    }
    json& extension = ObjectAt(ObjectAt(writer.document, "extensions"), "KHR_lights_punctual");
    json& lights = ListAt(extension, "lights");
    lights.push_back(std::move(made));
    writer.UseExtension("KHR_lights_punctual");
    json& extensions = ObjectAt(writer.At("nodes", ViewNode(light)), "extensions");
    ObjectAt(extensions, "KHR_lights_punctual")["light"] = lights.size() - 1;
}

// ---- Roots

/// Nodes without a parent. The joints of a skin need a common root, so a scene with skins gets one.
std::vector<int> SceneNodes::Roots()
{
    std::set<int> children;
    for (const json& node : writer.document.value("nodes", json::array())) {
        for (const json& child : node.value("children", json::array()))
            children.insert(child.get<int>());
    }
    const std::set<int> apart(skinned.begin(), skinned.end());
    std::vector<int> roots;
    for (int i = 0; i < static_cast<int>(writer.Count("nodes")); ++i) {
        if (!children.count(i) && !apart.count(i))
            roots.push_back(i);
    }
    if (!skinned.empty() && roots.size() > 1)
        roots = {writer.Append("nodes", {{"name", "Scene root"}, {"children", roots}})};
    roots.insert(roots.end(), skinned.begin(), skinned.end());
    return roots;
}
