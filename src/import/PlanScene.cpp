#include "import/PlanScene.h"

#include <algorithm>
#include <cmath>

#include "gltf/ModelFault.h"
#include "import/BoundsOfSkins.h"
#include "import/ModelPose.h"
#include "import/ScenePlanner.h"

namespace {

constexpr double kUsualRate = 30;
constexpr double kLeastScale = 1e-6; // a node without extent has no inverse

bool IsNoRotation(const ModelQuaternion& q)
{
    return q[0] == 0 && q[1] == 0 && q[2] == 0;
}

bool IsNegative(double value)
{
    return value < 0;
}

} // namespace

ModelMatrix SceneSpace::Matrix(const ModelMatrix& m) const
{
    ModelMatrix turned = m;
    const size_t source[] = {0, turns ? 2u : 1u, turns ? 1u : 2u};
    const double sign[] = {1, turns ? -1.0 : 1.0, 1};
    for (size_t row = 0; row < 3; ++row) {
        for (size_t column = 0; column < 3; ++column)
            turned[row * 4 + column] =
                sign[row] * sign[column] * m[source[row] * 4 + source[column]];
        turned[12 + row] = sign[row] * m[12 + source[row]] * unit;
    }
    return turned;
}

void ScenePlanner::Plan()
{
    CutMeshes();
    const bool hasFaces = std::any_of(scene.meshes.begin(), scene.meshes.end(),
                                      [](const CutResult& cut) { return !cut.pieces.empty(); });
    if (!hasFaces)
        throw ModelFault("it has no mesh with faces");
    inner.resize(model.nodes.size());
    restWorlds = WorldMatrices(model, 0);
    PlanLights();
    for (size_t i = 0; i < model.nodes.size(); ++i)
        inner[i] = names.Take(model.nodes[i].name, "Node");
    for (size_t i = 0; i < model.nodes.size(); ++i)
        PlanNode(static_cast<int>(i));
    // Only now all nodes have their final names.
    for (const ModelNode& node : model.nodes) {
        if (node.skin >= 0 && node.mesh >= 0)
            AddSkinned(node);
    }
    scene.bounds = model.scene.bounds ? model.scene.bounds : BoundsOfSkins(model, space);
}

std::string ScenePlanner::ParentName(const ModelNode& node) const
{
    return node.parent < 0 ? "" : inner[static_cast<size_t>(node.parent)];
}

/// Two mirrored axes are half a turn, three are one mirrored axis and half a turn.
void ScenePlanner::FoldSigns(const ModelNode& node, int& mirrored, ModelQuaternion& before)
{
    const ModelVector scale =
        space.Scale(node.scaleTrack.IsEmpty() ? node.scale : VectorAt(node.scaleTrack, 0));
    std::vector<size_t> negative;
    for (size_t axis = 0; axis < 3; ++axis) {
        if (IsNegative(scale[axis]))
            negative.push_back(axis);
    }
    mirrored = negative.size() % 2 == 1 ? static_cast<int>(negative[0]) : -1;
    before = {0, 0, 0, 1};
    if (negative.size() >= 2) {
        const size_t turned = negative.size() == 3 ? negative[0] : 3 - negative[0] - negative[1];
        before = {0, 0, 0, 0};
        before[turned] = 1;
    }
    for (const ModelQuaternion& value : node.scaleTrack.values) {
        const ModelVector at = space.Scale({value[0], value[1], value[2]});
        for (size_t axis = 0; axis < 3; ++axis) {
            if (at[axis] != 0 && IsNegative(at[axis]) != IsNegative(scale[axis])) {
                notices.Add("scales that change their sign are not carried");
                return;
            }
        }
    }
}

QsaNode ScenePlanner::PlaceNode(const ModelNode& node, const std::string& parent, int& mirrored,
                                ModelQuaternion& before)
{
    FoldSigns(node, mirrored, before);
    const ModelQuaternion none = {0, 0, 0, 1};
    QsaNode made;
    made.parent = parent;
    made.position = space.Position(node.positionTrack.IsEmpty() ? node.position
                                                                : VectorAt(node.positionTrack, 0));
    made.rotation = Product(before, space.Rotation(node.rotationTrack.IsEmpty()
                                                       ? node.rotation
                                                       : RotationAt(node.rotationTrack, 0)));
    made.scale = space.Scale(node.scaleTrack.IsEmpty() ? node.scale : VectorAt(node.scaleTrack, 0));
    for (double& part : made.scale)
        part = std::max(std::fabs(part), kLeastScale);
    made.positions = PositionKeys(node.positionTrack, space);
    made.rotations = RotationKeys(node.rotationTrack, space, sampling, before, none);
    made.scales = ScaleKeys(node.scaleTrack, space, sampling);
    return made;
}

void ScenePlanner::PlanNode(int number)
{
    const ModelNode& node = model.nodes[static_cast<size_t>(number)];
    const std::string name = inner[static_cast<size_t>(number)];
    if (node.camera >= 0 && IsBare(node)) {
        AddCamera(number, name);
        return;
    }
    if (node.light >= 0 && node.camera < 0 && IsBare(node)) {
        AddLight(node, QsaNode{});
        return;
    }
    int mirrored = -1;
    ModelQuaternion before;
    QsaNode made = PlaceNode(node, ParentName(node), mirrored, before);
    made.name = name;
    made.kind = node.isBone ? QsaKind::kBone : QsaKind::kHelper;
    const bool isTurned = !IsNoRotation(made.rotation) || !made.rotations.empty();
    if (mirrored >= 0 && isTurned) {
        // Only a node without rotation can be mirrored, so a second one carries the scale.
        QsaNode second;
        second.name = names.Take(name + " mirror", "Node");
        second.kind = made.kind;
        second.parent = name;
        std::swap(second.scale, made.scale);
        std::swap(second.scales, made.scales);
        scene.nodes.push_back(std::move(made));
        made = std::move(second);
        inner[static_cast<size_t>(number)] = made.name;
    }
    made.mirrored = mirrored;
    SetContents(made, node);
    if (node.camera >= 0)
        AddCamera(number, names.Take(name + " camera", "Camera"));
    if (node.light >= 0) {
        QsaNode light;
        light.parent = inner[static_cast<size_t>(number)];
        light.name = names.Take(name + " light", "Light");
        AddLight(node, std::move(light));
    }
}

void ScenePlanner::SetContents(QsaNode& made, const ModelNode& node)
{
    if (node.mesh >= 0 && node.skin < 0)
        AddMesh(std::move(made), node.mesh);
    else if (node.mesh < 0 || !node.children.empty() || node.isBone || node.camera >= 0)
        scene.nodes.push_back(std::move(made));
}

void PlanScene(const Model& model, const PlanOptions& options, NoticeList& notices, QsaScene& scene)
{
    SceneSpace space;
    space.turns =
        options.up == PlanOptions::Up::kModel ? !model.isZUp : options.up == PlanOptions::Up::kY;
    space.unit = options.unit * model.unit;
    scene.framesPerSecond = options.framesPerSecond > 0
                                ? options.framesPerSecond
                                : model.scene.frameSpeed.value_or(kUsualRate);
    if (!(scene.framesPerSecond > 0.01 && scene.framesPerSecond < 10000))
        scene.framesPerSecond = kUsualRate;
    const double last = std::max(std::ceil(LastKeyTime(model) * scene.framesPerSecond - 1e-3),
                                 model.scene.lastFrame);
    if (last > 0)
        scene.lastFrame = static_cast<int>(std::min(last, 1e8));
    ScenePlanner(model, space, notices, scene, options.mostLooks).Plan();
}
