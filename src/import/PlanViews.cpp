#include <algorithm>
#include <cmath>

#include "import/GltfReader.h"
#include "import/ModelPose.h"
#include "import/ScenePlanner.h"

namespace {

constexpr size_t kMostLights = 9;

/// Of a camera, in the scene's space.
struct CameraPose {
    ModelVector position;
    ModelQuaternion rotation;
};

} // namespace

bool ScenePlanner::IsBare(const ModelNode& node) const
{
    return node.mesh < 0 && node.children.empty() && !node.isBone &&
           (node.camera < 0 || node.light < 0);
}

/// The brightest light of each kind has the strength 1, unless the file states strengths of its own. Only the
/// nine brightest are carried.
void ScenePlanner::PlanLights()
{
    double brightest[3] = {};
    for (const ModelLight& light : model.lights) {
        double& most = brightest[static_cast<size_t>(light.kind)];
        most = std::max(most, light.intensity);
    }
    for (const ModelLight& light : model.lights) {
        const double most = brightest[static_cast<size_t>(light.kind)];
        const double share = most > 0 ? std::max(light.intensity, 0.0) / most : 0;
        strengths.push_back(light.strength.value_or(share));
    }
    std::vector<int> lit;
    for (size_t i = 0; i < model.nodes.size(); ++i) {
        if (model.nodes[i].light >= 0)
            lit.push_back(static_cast<int>(i));
    }
    std::stable_sort(lit.begin(), lit.end(), [&](int a, int b) {
        const auto strength = [&](int node) {
            const auto light = static_cast<size_t>(model.nodes[static_cast<size_t>(node)].light);
            return model.lights[light].isOn ? strengths[light] : 0;
        };
        return strength(a) > strength(b);
    });
    for (size_t i = 0; i < lit.size(); ++i)
        isLit[lit[i]] = i < kMostLights;
    if (lit.size() > kMostLights)
        notices.Add("lights beyond the nine brightest are left out",
                    static_cast<int64_t>(lit.size() - kMostLights));
}

/// `made` has a name if the light hangs below its node; otherwise it is the node.
void ScenePlanner::AddLight(const ModelNode& node, QsaNode made)
{
    const auto number = static_cast<size_t>(&node - model.nodes.data());
    if (!isLit[static_cast<int>(number)])
        return;
    if (made.name.empty()) {
        const ModelQuaternion view = space.View();
        const ModelQuaternion none = {0, 0, 0, 1};
        int mirrored = -1;
        ModelQuaternion before;
        made = PlaceNode(node, ParentName(node), mirrored, before);
        made.name = inner[number];
        made.scale = {1, 1, 1};
        made.scales = {};
        // A view turns around itself only, so its own axes stay.
        const ModelQuaternion rest =
            node.rotationTrack.IsEmpty() ? node.rotation : RotationAt(node.rotationTrack, 0);
        SceneSpace same = space;
        same.turns = false;
        made.rotation = Product(rest, view);
        made.rotations = RotationKeys(node.rotationTrack, same, sampling, none, view);
    } else {
        made.rotation = space.View();
    }
    made.kind = QsaKind::kLight;
    made.light = model.lights[static_cast<size_t>(node.light)];
    made.light.strength = strengths[static_cast<size_t>(node.light)];
    scene.nodes.push_back(std::move(made));
}

/// Cameras stand in the world: the scene format drops their parents. Below nodes that move they are sampled.
void ScenePlanner::AddCamera(int number, const std::string& name)
{
    std::vector<double> marks;
    size_t depth = 0;
    for (int at = number; at >= 0; at = model.nodes[static_cast<size_t>(at)].parent) {
        const ModelNode& node = model.nodes[static_cast<size_t>(at)];
        ++depth;
        for (const ModelTrack* track : {&node.positionTrack, &node.rotationTrack, &node.scaleTrack})
            marks.insert(marks.end(), track->times.begin(), track->times.end());
    }
    sampling.Spend(marks.size());
    const auto poseAt = [&](double time) {
        ModelVector position, scale;
        bool sheared = false;
        ModelQuaternion rotation;
        SplitMatrix(WorldMatrix(model, number, time), position, rotation, scale, sheared);
        return CameraPose{space.Position(position), Product(rotation, space.View())};
    };
    const CameraPose rest = poseAt(0);
    QsaNode made;
    made.position = rest.position;
    made.rotation = rest.rotation;
    made.name = name;
    made.kind = QsaKind::kCamera;
    const ModelNode& node = model.nodes[static_cast<size_t>(number)];
    made.cameraAngle = model.cameras[static_cast<size_t>(node.camera)].angle;
    std::sort(marks.begin(), marks.end());
    marks.erase(std::unique(marks.begin(), marks.end()), marks.end());
    const auto isStraight = [&](double from, double to) {
        const CameraPose first = poseAt(from);
        const CameraPose last = poseAt(to);
        for (const double part : {0.25, 0.5, 0.75}) {
            const CameraPose real = poseAt(from + (to - from) * part);
            double way = 0;
            double size = 1;
            for (size_t i = 0; i < 3; ++i) {
                way = std::max(way, std::fabs(first.position[i] +
                                              (last.position[i] - first.position[i]) * part -
                                              real.position[i]));
                size = std::max(size, std::fabs(real.position[i]));
            }
            if (way > kSampledStretch * size ||
                !IsNearRotation(first.rotation, last.rotation, part, real.rotation))
                return false;
        }
        return true;
    };
    for (const double time : SampleTimes(marks, sampling, depth, isStraight)) {
        const CameraPose pose = poseAt(time);
        made.positions.keys.push_back({time, pose.position, {}, {}});
        made.rotations.push_back({time, pose.rotation});
    }
    scene.nodes.push_back(std::move(made));
}
