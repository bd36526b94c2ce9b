#include <cmath>

#include "gltf/ModelFault.h"
#include "import/GltfReader.h"

using nlohmann::json;

namespace {

constexpr size_t kKeysAtLeast = 500000;

/// The number of the animation that is wanted, by number or name; -1 if there is none of that name.
int FindAnimation(const json& animations, const std::string& wanted)
{
    if (wanted.empty())
        return animations.empty() ? -1 : 0;
    for (size_t i = 0; i < animations.size(); ++i) {
        if (GltfFile::Text(animations[i], "name") == wanted || std::to_string(i) == wanted)
            return static_cast<int>(i);
    }
    throw ModelFault("it has no animation '" + wanted + "'");
}

} // namespace

void GltfReader::ReadAnimation(const std::string& wanted)
{
    const json& animations = file.List("animations");
    const int number = FindAnimation(animations, wanted);
    if (number < 0)
        return;
    if (animations.size() > 1)
        notices.Add("only one animation is carried, the others are left out",
                    static_cast<int64_t>(animations.size()) - 1);
    const json& animation = animations[static_cast<size_t>(number)];
    const auto channels = animation.find("channels");
    if (channels == animation.end() || !channels->is_array())
        throw ModelFault("an animation has no channels");
    for (const json& channel : *channels)
        ReadChannel(animation, channel);
}

void GltfReader::ReadChannel(const json& animation, const json& channel)
{
    const auto target = channel.find("target");
    const auto samplers = animation.find("samplers");
    if (target == channel.end() || samplers == animation.end() || !samplers->is_array())
        throw ModelFault("a channel of an animation has no target or sampler");
    const double sampler = GltfFile::Number(channel, "sampler", -1);
    if (sampler < 0 || sampler >= static_cast<double>(samplers->size()))
        throw ModelFault("a channel of an animation has no sampler");
    const int number = file.IndexOf("nodes", *target, "node");
    if (number < 0)
        return;
    ModelNode& node = model.nodes[static_cast<size_t>(number)];
    const json& chosen = (*samplers)[static_cast<size_t>(sampler)];
    const std::string path = GltfFile::Text(*target, "path");
    if (path == "translation")
        node.positionTrack = ReadTrack(chosen, 3);
    else if (path == "rotation")
        node.rotationTrack = ReadTrack(chosen, 4);
    else if (path == "scale")
        node.scaleTrack = ReadTrack(chosen, 3);
    else if (path == "weights")
        notices.Add("morphs are not carried");
    else
        notices.Add("animations of other properties are not carried");
}

ModelTrack GltfReader::ReadTrack(const json& sampler, size_t width)
{
    ModelTrack track;
    const std::string curve = GltfFile::Text(sampler, "interpolation");
    track.curve = curve == "STEP"          ? ModelCurve::kStep
                  : curve == "CUBICSPLINE" ? ModelCurve::kCubic
                                           : ModelCurve::kLinear;
    const int input = file.IndexOf("accessors", sampler, "input");
    const int output = file.IndexOf("accessors", sampler, "output");
    if (input < 0 || output < 0)
        throw ModelFault("a sampler of an animation has no keys");
    const GltfValues& times = file.Floats(input, 1);
    const GltfValues& values = file.Floats(output, width);
    const bool isCubic = track.curve == ModelCurve::kCubic;
    if (values.Count() < times.Count() * (isCubic ? 3 : 1))
        throw ModelFault("a sampler of an animation has fewer values than times");
    keyCount += times.Count(); // many channels may share one sampler
    if (keyCount > kKeysAtLeast + file.TotalBytes())
        throw ModelFault("its animations describe far more than the file holds");
    const auto valueAt = [&](size_t element) {
        ModelQuaternion value = {};
        for (size_t part = 0; part < width; ++part) {
            value[part] = values.At(element)[part];
            if (!std::isfinite(value[part]))
                throw ModelFault("a key of an animation is not finite");
        }
        return value;
    };
    for (size_t i = 0; i < times.Count(); ++i) {
        const double time = *times.At(i);
        if (!std::isfinite(time) || (!track.times.empty() && time <= track.times.back()))
            continue; // the format asks for ascending times
        track.times.push_back(time);
        track.values.push_back(valueAt(isCubic ? 3 * i + 1 : i));
        if (isCubic) {
            track.arriving.push_back(valueAt(3 * i));
            track.leaving.push_back(valueAt(3 * i + 2));
        }
    }
    return track;
}
