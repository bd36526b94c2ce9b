// Any model, from its reader to the text of a scene: a hierarchy of nodes with tracks, meshes whose vertices
// meet in all ways, skins, cameras and lights, all made from the bytes of the input.

#include <cmath>
#include <cstdint>

#include "fuzz/ModelUse.h"

namespace {

/// Hands out the bytes of an input; zeros behind its end.
class Bytes {
public:
    Bytes(const uint8_t* dataIn, size_t sizeIn) : data(dataIn), size(sizeIn) {}

    int Below(int limit) { return limit > 0 ? Next() % limit : 0; }
    float Small() { return static_cast<float>(static_cast<int8_t>(Next())) / 8; }
    bool Flag() { return Next() % 2 != 0; }
    int Index(size_t count) { return Below(static_cast<int>(count) + 1) - 1; } ///< -1 for none

private:
    uint8_t Next() { return at < size ? data[at++] : uint8_t{0}; }

    const uint8_t* data;
    size_t size;
    size_t at = 0;
};

ModelPrimitive PrimitiveOf(Bytes& in, const Model& model)
{
    ModelPrimitive made;
    made.material = in.Index(model.materials.size());
    const bool hasNormals = in.Flag(), hasTexCoords = in.Flag(), hasWeights = in.Flag();
    const int vertices = 1 + in.Below(40);
    made.positions.reserve(static_cast<size_t>(vertices));
    for (int i = 0; i < vertices; ++i) {
        made.positions.push_back({in.Small(), in.Small(), in.Small()});
        if (hasNormals)
            made.normals.push_back({in.Small(), in.Small(), in.Small()});
        if (hasTexCoords)
            made.texCoords.push_back({in.Small(), in.Small()});
        if (hasWeights) {
            std::vector<ModelWeight>& weights = made.weights.emplace_back();
            for (int w = in.Below(7); w > 0; --w)
                weights.push_back({static_cast<uint32_t>(in.Below(5)), std::fabs(in.Small())});
        }
    }
    const int corners = 3 * in.Below(60);
    made.corners.reserve(static_cast<size_t>(corners));
    for (int i = corners; i > 0; --i)
        made.corners.push_back(static_cast<uint32_t>(in.Below(vertices)));
    return made;
}

ModelTrack TrackOf(Bytes& in)
{
    ModelTrack track;
    track.curve = static_cast<ModelCurve>(in.Below(3));
    double time = in.Small() / 128; // splines are sampled 30 times a second
    for (int i = in.Below(4); i > 0; --i) {
        time += 0.001 + std::fabs(in.Small()) / 1024;
        track.times.push_back(time);
        for (auto* list : {&track.values, &track.arriving, &track.leaving})
            list->push_back({in.Small(), in.Small(), in.Small(), in.Small()});
    }
    return track;
}

std::string NameOf(Bytes& in)
{
    static const char* const kNames[] = {"",     "a",      "A",          "Bounds", "a mirror",
                                         "\xC3", "a skin", "shader='x'", "a 2",    "*{\"}\n"};
    return kNames[in.Below(10)];
}

ModelNode NodeOf(Bytes& in, const Model& model)
{
    ModelNode node;
    node.name = NameOf(in);
    node.parent = in.Index(model.nodes.size());
    node.position = {in.Small(), in.Small(), in.Small()};
    const double angle = in.Small();
    node.rotation = {std::sin(angle), 0, 0, std::cos(angle)};
    node.scale = {in.Small(), in.Small(), in.Small()};
    node.mesh = in.Index(model.meshes.size());
    node.skin = in.Index(model.skins.size());
    node.camera = in.Index(model.cameras.size());
    node.light = in.Index(model.lights.size());
    node.isHidden = in.Below(8) == 1;
    if (in.Flag()) {
        node.positionTrack = TrackOf(in);
        node.rotationTrack = TrackOf(in);
        node.scaleTrack = TrackOf(in);
    }
    return node;
}

Model ModelOf(Bytes& in)
{
    Model model;
    model.images.resize(1);
    for (int i = in.Below(4); i > 0; --i) {
        ModelMaterial& material = model.materials.emplace_back();
        material.name = NameOf(in);
        material.map.image = in.Index(1);
        for (size_t axis = 0; axis < 2; ++axis) {
            material.map.mirror[axis] = in.Flag();
            material.map.offset[axis] = in.Small();
            material.map.scale[axis] = in.Small();
        }
    }
    for (int i = in.Below(4); i > 0; --i) {
        ModelMesh& mesh = model.meshes.emplace_back();
        mesh.name = NameOf(in);
        for (int part = in.Below(4); part > 0; --part)
            mesh.primitives.push_back(PrimitiveOf(in, model));
    }
    const int nodes = 1 + in.Below(8);
    for (int i = in.Below(3); i > 0; --i) {
        ModelSkin& skin = model.skins.emplace_back();
        for (int joint = 1 + in.Below(5); joint > 0; --joint) {
            skin.joints.push_back(in.Below(nodes));
            skin.binds.push_back(kModelIdentity);
            skin.binds.back()[12] = in.Small();
        }
    }
    model.cameras.resize(static_cast<size_t>(in.Below(3)));
    for (int i = in.Below(12); i > 0; --i) {
        ModelLight& light = model.lights.emplace_back();
        light.kind = static_cast<ModelLightKind>(in.Below(3));
        light.intensity = in.Small();
    }
    for (int i = 0; i < nodes; ++i) {
        model.nodes.push_back(NodeOf(in, model));
        if (model.nodes.back().parent >= 0)
            model.nodes[static_cast<size_t>(model.nodes.back().parent)].children.push_back(i);
    }
    return model;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Bytes in(data, size);
    UseModel(ModelOf(in));
    return 0;
}
