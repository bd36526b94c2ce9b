#include <algorithm>
#include <cmath>
#include <numbers>

#include "gltf/ModelFault.h"
#include "import/GltfReader.h"
#include "import/ReadGltf.h"

using nlohmann::json;

namespace {

constexpr size_t kDeepestNode = 4000; // a chain's work grows with the square of its length

const json& Inner(const json& owner, std::initializer_list<const char*> keys)
{
    static const json kNone = json::object();
    const json* at = &owner;
    for (const char* key : keys) {
        const auto found = at->find(key);
        if (found == at->end() || !found->is_object())
            return kNone;
        at = &*found;
    }
    return *at;
}

template <size_t N>
std::array<double, N> ArrayOf(const std::vector<double>& values)
{
    std::array<double, N> array;
    std::copy_n(values.begin(), N, array.begin());
    return array;
}

std::optional<ModelVector> VectorAt(const json& owner, const char* key)
{
    if (!owner.contains(key))
        return {};
    return ArrayOf<3>(GltfFile::Numbers(owner, key, {0, 0, 0}));
}

ModelQuaternion UnitOf(ModelQuaternion q)
{
    const double length = std::sqrt(q[0] * q[0] + q[1] * q[1] + q[2] * q[2] + q[3] * q[3]);
    if (!(length > 1e-12))
        return {0, 0, 0, 1};
    for (double& part : q)
        part /= length;
    return q;
}

} // namespace

void GltfReader::ReadNodes()
{
    const json& nodes = file.List("nodes");
    model.nodes.resize(nodes.size());
    for (size_t i = 0; i < nodes.size(); ++i)
        ReadNode(nodes[i], model.nodes[i]);
    LinkNodes(nodes);
}

void GltfReader::ReadNode(const json& node, ModelNode& made)
{
    made.name = GltfFile::Text(node, "name");
    made.mesh = file.IndexOf("meshes", node, "mesh");
    made.skin = file.IndexOf("skins", node, "skin");
    made.camera = file.IndexOf("cameras", node, "camera");
    const json& light = Inner(node, {"extensions", "KHR_lights_punctual"});
    if (light.contains("light")) {
        const double number = GltfFile::Number(light, "light", -1);
        if (number < 0 || number >= static_cast<double>(model.lights.size()))
            throw ModelFault("a node has a light that does not exist");
        made.light = static_cast<int>(number);
    }
    const json& extras = Inner(node, {"extras", "qsb"});
    if (extras.contains("visible") && made.mesh < 0) {
        made.isHidden = true;
        made.mesh = file.IndexOf("meshes", extras, "mesh");
    }
    made.isBone = extras.contains("kind");
    if (Inner(node, {"extensions"}).contains("EXT_mesh_gpu_instancing"))
        notices.Add("instances made by an extension are not carried");
    if (node.contains("matrix")) {
        ReadMatrix(node, made);
        return;
    }
    made.position = ArrayOf<3>(GltfFile::Numbers(node, "translation", {0, 0, 0}));
    made.rotation = UnitOf(ArrayOf<4>(GltfFile::Numbers(node, "rotation", {0, 0, 0, 1})));
    made.scale = ArrayOf<3>(GltfFile::Numbers(node, "scale", {1, 1, 1}));
}

void GltfReader::ReadMatrix(const json& node, ModelNode& made)
{
    const std::vector<double> fallback(16);
    bool sheared = false;
    SplitMatrix(ArrayOf<16>(GltfFile::Numbers(node, "matrix", fallback)), made.position,
                made.rotation, made.scale, sheared);
    if (sheared)
        notices.Add("shear is not carried");
}

/// Sets parents and children. A node has one parent at most, and is not below itself.
void GltfReader::LinkNodes(const json& nodes)
{
    for (size_t i = 0; i < nodes.size(); ++i) {
        const auto children = nodes[i].find("children");
        if (children == nodes[i].end())
            continue;
        if (!children->is_array())
            throw ModelFault("the children of a node are no list");
        for (const json& child : *children) {
            const int number = file.IndexIn("nodes", child, "child");
            ModelNode& node = model.nodes[static_cast<size_t>(number)];
            if (node.parent >= 0)
                throw ModelFault("a node has two parents");
            node.parent = static_cast<int>(i);
            model.nodes[i].children.push_back(number);
        }
    }
}

int GltfReader::RootOf(int number) const
{
    for (size_t steps = 0; model.nodes[static_cast<size_t>(number)].parent >= 0; ++steps) {
        if (steps > model.nodes.size())
            throw ModelFault("a node is among its own ancestors");
        if (steps > kDeepestNode)
            throw ModelFault("its nodes are nested too deeply");
        number = model.nodes[static_cast<size_t>(number)].parent;
    }
    return number;
}

/// Keeps the nodes of the scene, parents first. Joints count as well: some files leave them out.
void GltfReader::KeepScene()
{
    std::vector<int> order;
    const json* scene = file.Named("scenes", file.document, "scene");
    if (!scene && !file.List("scenes").empty())
        scene = &file.List("scenes")[0];
    std::vector<bool> isKept(model.nodes.size());
    const auto keep = [&](int number) {
        if (!isKept[static_cast<size_t>(number)])
            order.push_back(number);
        isKept[static_cast<size_t>(number)] = true;
    };
    const auto keepRootOf = [&](int number) { keep(RootOf(number)); };
    if (scene && scene->contains("nodes") && (*scene)["nodes"].is_array()) {
        for (const json& root : (*scene)["nodes"])
            keepRootOf(file.IndexIn("nodes", root, "root"));
    } else if (!scene) {
        for (size_t i = 0; i < model.nodes.size(); ++i) {
            if (model.nodes[i].parent < 0)
                keep(static_cast<int>(i));
        }
    }
    for (const ModelSkin& skin : model.skins) {
        for (const int joint : skin.joints)
            keepRootOf(joint);
    }
    std::vector<size_t> depths(order.size());
    for (size_t i = 0; i < order.size(); ++i) {
        if (depths[i] > kDeepestNode)
            throw ModelFault("its nodes are nested too deeply");
        for (const int child : model.nodes[static_cast<size_t>(order[i])].children) {
            keep(child);
            depths.resize(order.size(), depths[i] + 1);
        }
    }

    std::vector<int> place(model.nodes.size(), -1);
    std::vector<ModelNode> kept;
    kept.reserve(order.size());
    for (const int number : order) {
        place[static_cast<size_t>(number)] = static_cast<int>(kept.size());
        kept.push_back(std::move(model.nodes[static_cast<size_t>(number)]));
    }
    const auto renumber = [&](int& number) {
        number = number < 0 ? -1 : place[static_cast<size_t>(number)];
    };
    for (ModelNode& node : kept) {
        renumber(node.parent);
        std::for_each(node.children.begin(), node.children.end(), renumber);
    }
    for (ModelSkin& skin : model.skins)
        std::for_each(skin.joints.begin(), skin.joints.end(), renumber);
    model.nodes = std::move(kept);
}

void GltfReader::ReadSkins()
{
    for (const json& skin : file.List("skins")) {
        ModelSkin& made = model.skins.emplace_back();
        const auto joints = skin.find("joints");
        if (joints == skin.end() || !joints->is_array() || joints->empty())
            throw ModelFault("a skin has no joints");
        for (const json& joint : *joints) {
            made.joints.push_back(file.IndexIn("nodes", joint, "joint"));
            model.nodes[static_cast<size_t>(made.joints.back())].isBone = true;
        }
        made.binds.resize(made.joints.size(), kModelIdentity);
        const int accessor = file.IndexOf("accessors", skin, "inverseBindMatrices");
        if (accessor < 0)
            continue;
        const GltfValues& binds = file.Floats(accessor, 16);
        if (binds.Count() < made.binds.size())
            throw ModelFault("a skin has fewer matrices than joints");
        for (size_t i = 0; i < made.binds.size(); ++i) {
            for (size_t part = 0; part < 16; ++part) {
                const double value = binds.At(i)[part];
                if (!std::isfinite(value))
                    throw ModelFault("a matrix of a skin is not finite");
                made.binds[i][part] = value;
            }
        }
    }
}

void GltfReader::ReadCameras()
{
    for (const json& camera : file.List("cameras")) {
        ModelCamera& made = model.cameras.emplace_back();
        if (GltfFile::Text(camera, "type") != "perspective")
            notices.Add("cameras without perspective get one");
        else
            made.angle = GltfFile::Number(Inner(camera, {"perspective"}), "yfov", made.angle);
    }
}

void GltfReader::ReadLights()
{
    const json& extension = Inner(file.document, {"extensions", "KHR_lights_punctual"});
    const auto lights = extension.find("lights");
    if (lights == extension.end() || !lights->is_array())
        return;
    for (const json& light : *lights) {
        ModelLight& made = model.lights.emplace_back();
        const std::string type = GltfFile::Text(light, "type");
        made.kind = type == "directional" ? ModelLightKind::kDirectional
                    : type == "spot"      ? ModelLightKind::kSpot
                                          : ModelLightKind::kPoint;
        made.color = ArrayOf<3>(GltfFile::Numbers(light, "color", {1, 1, 1}));
        made.intensity = GltfFile::Number(light, "intensity", 1);
        const json& spot = Inner(light, {"spot"});
        made.inner = GltfFile::Number(spot, "innerConeAngle", 0);
        made.outer = GltfFile::Number(spot, "outerConeAngle", std::numbers::pi / 4);
        const json& extras = Inner(light, {"extras", "qsb"});
        if (extras.contains("intensity"))
            made.strength = GltfFile::Number(extras, "intensity", 1);
        made.isOn = !extras.contains("on") || GltfFile::Flag(extras, "on");
        if (made.kind != ModelLightKind::kDirectional && !made.strength)
            notices.Add("light does not fade with the distance");
    }
}

/// Clones cannot have bones: each node with a skin gets the whole mesh, and looks at all bones.
void GltfReader::CountSkinnedNodes()
{
    for (const ModelNode& node : model.nodes) {
        if (node.mesh < 0 || node.skin < 0)
            continue;
        for (const ModelPrimitive& primitive :
             model.meshes[static_cast<size_t>(node.mesh)].primitives)
            CountCorners(primitive.corners.size());
        CountCorners(model.skins[static_cast<size_t>(node.skin)].joints.size());
    }
}

/// What a file of our own says about the scene.
void GltfReader::ReadSceneExtras()
{
    const json* scene = file.Named("scenes", file.document, "scene");
    if (!scene)
        return;
    const json& extras = Inner(*scene, {"extras", "qsb"});
    model.scene.ambient = VectorAt(extras, "ambient");
    model.scene.background = VectorAt(extras, "background");
    model.scene.fog = VectorAt(Inner(extras, {"fog"}), "color");
    const std::optional<ModelVector> low = VectorAt(extras, "boundsMin");
    const std::optional<ModelVector> high = VectorAt(extras, "boundsMax");
    if (low && high)
        model.scene.bounds = {{*low, *high}};
    model.scene.backgroundImage = file.IndexOf("images", extras, "backgroundImage");
    model.scene.soundFile = GltfFile::Text(extras, "soundFile");
    model.scene.scriptFile = GltfFile::Text(extras, "scriptFile");
    if (extras.contains("frameSpeed"))
        model.scene.frameSpeed = GltfFile::Number(extras, "frameSpeed", 30);
    model.scene.lastFrame = GltfFile::Number(extras, "lastFrame", 0);
}

Model GltfReader::Read(const std::string& path, const std::string& animation)
{
    ReadImages(path.substr(0, path.find_last_of('/') + 1));
    ReadMaterials();
    ReadMeshes();
    ReadCameras();
    ReadLights();
    ReadNodes();
    ReadSkins();
    ReadAnimation(animation);
    KeepScene();
    CountSkinnedNodes();
    ReadSceneExtras();
    for (const json& required : file.document.value("extensionsRequired", json::array()))
        if (required != "KHR_lights_punctual" && required != "KHR_texture_transform" &&
            required != "KHR_materials_unlit" && required != "KHR_mesh_quantization")
            throw ModelFault("it requires the extension " + required.dump().substr(0, 60) +
                             ", which is not read");
    model.inputs = file.LookedFor();
    return std::move(model);
}

Model ReadGltf(const std::string& path, const std::string& animation, NoticeList& notices)
{
    GltfFile file;
    file.Read(path);
    try {
        return GltfReader(file, notices).Read(path, animation);
    } catch (const json::exception&) {
        throw ModelFault("a member of its text is of the wrong kind");
    }
}
