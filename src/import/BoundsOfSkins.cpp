#include "import/BoundsOfSkins.h"

#include <algorithm>
#include <limits>
#include <map>

#include "import/ModelPose.h"

namespace {

constexpr int kSamples = 16; // of the animation

struct Box {
    ModelVector low = {kFar, kFar, kFar};
    ModelVector high = {-kFar, -kFar, -kFar};

    void Add(const ModelVector& point)
    {
        for (size_t axis = 0; axis < 3; ++axis) {
            low[axis] = std::min(low[axis], point[axis]);
            high[axis] = std::max(high[axis], point[axis]);
        }
    }
    bool IsEmpty() const { return low[0] > high[0]; }

    static constexpr double kFar = std::numeric_limits<double>::max();
};

/// The boxes of a mesh's vertices: of those without a bone, and for each bone of those that follow it. What
/// several bones move lies between the places where each of them alone would move it.
struct MeshBoxes {
    Box still;
    std::map<uint32_t, Box> moved; ///< by joint
};

MeshBoxes BoxesOf(const ModelMesh& mesh, bool skinned)
{
    MeshBoxes boxes;
    for (const ModelPrimitive& primitive : mesh.primitives) {
        for (size_t v = 0; v < primitive.positions.size(); ++v) {
            const ModelPoint& p = primitive.positions[v];
            const ModelVector point = {p[0], p[1], p[2]};
            if (!skinned || v >= primitive.weights.size() || primitive.weights[v].empty()) {
                boxes.still.Add(point);
                continue;
            }
            for (const ModelWeight& weight : primitive.weights[v])
                boxes.moved[weight.joint].Add(point);
        }
    }
    return boxes;
}

/// Adds the corners of a box to the extent of the scene.
void AddCorners(const Box& box, const ModelMatrix& matrix, const SceneSpace& space, Box& extent)
{
    if (box.IsEmpty())
        return;
    for (int corner = 0; corner < 8; ++corner) {
        ModelVector point;
        for (size_t axis = 0; axis < 3; ++axis)
            point[axis] = corner >> axis & 1 ? box.high[axis] : box.low[axis];
        extent.Add(space.Position(Moved(point, matrix)));
    }
}

} // namespace

std::optional<std::array<ModelVector, 2>> BoundsOfSkins(const Model& model, const SceneSpace& space)
{
    const bool hasSkins = std::any_of(model.nodes.begin(), model.nodes.end(),
                                      [](const ModelNode& node) { return node.skin >= 0; });
    if (!hasSkins)
        return {};
    std::map<std::pair<int, bool>, MeshBoxes> meshes;
    for (const ModelNode& node : model.nodes) {
        const std::pair<int, bool> key = {node.mesh, node.skin >= 0};
        if (node.mesh >= 0 && !meshes.count(key))
            meshes[key] = BoxesOf(model.meshes[static_cast<size_t>(node.mesh)], key.second);
    }
    Box extent;
    const double last = LastKeyTime(model);
    for (int sample = 0; sample <= (last > 0 ? kSamples : 0); ++sample) {
        const std::vector<ModelMatrix> worlds = WorldMatrices(model, last * sample / kSamples);
        for (size_t i = 0; i < model.nodes.size(); ++i) {
            const ModelNode& node = model.nodes[i];
            if (node.mesh < 0)
                continue;
            const MeshBoxes& boxes = meshes.at({node.mesh, node.skin >= 0});
            AddCorners(boxes.still, node.skin < 0 ? worlds[i] : kModelIdentity, space, extent);
            for (const auto& [joint, box] : boxes.moved) {
                const ModelSkin& skin = model.skins[static_cast<size_t>(node.skin)];
                if (joint < skin.joints.size())
                    AddCorners(
                        box,
                        Product(skin.binds[joint], worlds[static_cast<size_t>(skin.joints[joint])]),
                        space, extent);
            }
        }
    }
    if (extent.IsEmpty())
        return {};
    return {{extent.low, extent.high}};
}
