#include <algorithm>
#include <cmath>

#include "export/SceneNodes.h"
#include "scene/KRE_3dScene.h"

using nlohmann::json;

namespace {

constexpr int kMarksPerKey = 4;

/// The rotation of a view along `direction`, in the scene's axes. Straight up or down, `up` gives no
/// side, and any other does.
D3DXQUATERNION LookingAlong(const D3DXVECTOR3& direction, const D3DXVECTOR3& up)
{
    D3DXVECTOR3 back = -direction;
    const float length = D3DXVec3Length(&back);
    back = length > 0 ? back / length : D3DXVECTOR3(0, 0, 1);
    D3DXVECTOR3 side, above;
    D3DXVec3Cross(&side, &up, &back);
    if (D3DXVec3Length(&side) < 1e-6f) {
        const D3DXVECTOR3 north(0, 1, 0);
        D3DXVec3Cross(&side, &north, &back);
    }
    side = side / std::max(D3DXVec3Length(&side), 1e-20f);
    D3DXVec3Cross(&above, &back, &side);
    D3DXMATRIX matrix = IdentityMatrix();
    const D3DXVECTOR3* const rows[] = {&side, &above, &back};
    for (int row = 0; row < 3; ++row) {
        matrix.m[row][0] = rows[row]->x;
        matrix.m[row][1] = rows[row]->y;
        matrix.m[row][2] = rows[row]->z;
    }
    D3DXQUATERNION rotation;
    D3DXQuaternionRotationMatrix(&rotation, &matrix);
    return rotation;
}

template <class Key>
void AddTimes(const KRE_KeyList<Key>& keys, std::vector<float>& timesOut)
{
    for (const Key* key = keys.Head(); key; key = key->next) {
        if (std::isfinite(key->time) && key->time > 0)
            timesOut.push_back(key->time);
    }
}

void AddTimesOf(const KRE_3dObject* object, std::vector<float>& timesOut)
{
    for (; object; object = object->parent) {
        AddTimes(object->posKeys, timesOut);
        AddTimes(object->rotKeys, timesOut);
        AddTimes(object->scaleKeys, timesOut);
    }
}

} // namespace

void SceneNodes::AddAnimation()
{
    for (KRE_3dObject* object : objects) {
        const bool isTarget = std::any_of(looking.begin(), looking.end(), [&](const auto& view) {
            return view.first == object && view.second == nodes[object];
        });
        if (isTarget)
            continue;
        const NodeAxes axes = AxesOf(*object);
        const int node = nodes[object];
        AddChannel(node, "translation", PositionTrack(*object), 3);
        AddChannel(node, "rotation", RotationTrack(*object, axes), 4);
        AddChannel(node, "scale", ScaleTrack(*object, axes), 3);
    }
    for (const auto& [object, node] : looking)
        AddTargetPose(*object, node);
    if (!channels.empty())
        writer.Append("animations", {{"name", "Scene"},
                                     {"channels", std::move(channels)},
                                     {"samplers", std::move(samplers)}});
}

/// A camera that looks at a target stands in the world, where it is sampled.
void SceneNodes::AddTargetPose(KRE_Target3dObject& object, int node)
{
    const auto poseAt = [&](float time) {
        object.Evaluate(time, 1, 1);
        const D3DXQUATERNION turn = LookingAlong(object.direction, object.up);
        return SampledPose{ToYUp(object.worldPosition), ToYUp(turn, NodeAxes::kView)};
    };
    const SampledTracks tracks = SamplePose(poseAt, MarksOf(object), scene.radius * 1e-5f);
    json& placed = writer.At("nodes", node);
    const std::vector<float>& at = tracks.position.values;
    const std::vector<float>& turn = tracks.rotation.values;
    placed["translation"] = ShortNumbers({at.data(), 3});
    placed["rotation"] = ShortNumbers({turn.data(), 4});
    placed.erase("scale");
    const KRE_3dObject* const parent = parents.count(&object) ? parents[&object] : nullptr;
    if (parent && node == nodes[&object]) {
        json& children = writer.At("nodes", nodes[parent])["children"];
        children.erase(std::find(children.begin(), children.end(), json(node)));
        if (children.empty())
            writer.At("nodes", nodes[parent]).erase("children");
    }
    if (tracks.position.times.size() < 2)
        return;
    AddChannel(node, "translation", tracks.position, 3);
    AddChannel(node, "rotation", tracks.rotation, 4);
}

/// The times of all keys that move the object or its target, with some between them.
std::vector<float> SceneNodes::MarksOf(KRE_Target3dObject& object)
{
    std::vector<float> times = {0};
    AddTimesOf(parents.count(&object) || !object.parent ? &object : nullptr, times);
    AddTimesOf(object.target, times);
    std::sort(times.begin(), times.end());
    times.erase(std::unique(times.begin(), times.end()), times.end());
    std::vector<float> marks;
    for (size_t i = 0; i < times.size(); ++i) {
        for (int part = 0; i > 0 && part < kMarksPerKey - 1; ++part)
            marks.push_back(times[i - 1] + (times[i] - times[i - 1]) *
                                               static_cast<float>(part + 1) / kMarksPerKey);
        marks.push_back(times[i]);
    }
    marks.erase(std::unique(marks.begin(), marks.end()), marks.end());
    return marks;
}

void SceneNodes::AddChannel(int node, const char* path, const GltfTrack& track, int width)
{
    if (track.IsEmpty())
        return;
    const auto found = timeAccessors.find(track.times);
    const int input = found != timeAccessors.end()
                          ? found->second
                          : writer.AddFloats(track.times, "SCALAR", 1, true);
    timeAccessors[track.times] = input;
    const char* type = width == 4 ? "VEC4" : "VEC3";
    samplers.push_back({{"input", input},
                        {"interpolation", track.interpolation},
                        {"output", writer.AddFloats(track.values, type, width, false)}});
    channels.push_back(
        {{"sampler", samplers.size() - 1}, {"target", {{"node", node}, {"path", path}}}});
}
