#include "export/MaterialExtras.h"

#include <string>

#include "gfx/KRE_Texture.h"
#include "gltf/GltfWriter.h"
#include "info/NameText.h"
#include "scene/KRE_MaterialInfo.h"

using nlohmann::json;

namespace {

json ColorOf(const D3DCOLORVALUE& color)
{
    const float parts[] = {color.r, color.g, color.b};
    return ShortNumbers(parts);
}

json ValueOf(const D3DCOLORVALUE& color)
{
    return ColorOf(color);
}

json ValueOf(float value)
{
    return ShortNumber(value);
}

template <class Track>
void AddTrack(json& extras, const char* name, const Track& track)
{
    json keys = json::array();
    for (int32_t i = 0; i < track.GetKeyCount(); ++i) {
        const auto& key = track.Key(i);
        keys.push_back({ShortNumber(key.time), ValueOf(key.value), ValueOf(key.inTangent),
                        ValueOf(key.outTangent)});
    }
    if (!keys.empty())
        extras[name] = {
            {"interpolation", track.interpolation == Track::kBezier ? "bezier" : "linear"},
            {"keys", std::move(keys)}};
}

void AddEffect(json& extras, const KRE_EffectParams& effect)
{
    if (effect.name.IsEmpty())
        return;
    extras["effect"] = Utf8Name(effect.name.c_str());
    for (int i = 0; i < KRE_EffectParams::kParams; ++i) {
        const KRE_EffectParam& param = effect.params[i];
        const std::string number = std::to_string(i + 1);
        if (param.hasFloat)
            extras["float" + number] = ShortNumber(param.floatValue);
        if (param.hasVector)
            extras["vector" + number] = ShortNumbers(param.vectorValue);
    }
}

void AddMaps(json& extras, const KRE_Texture& texture)
{
    static constexpr const char* kTracks[] = {"offsetU", "offsetV", "tileU", "tileV", "angle"};
    for (int32_t slot = 0; slot < KRE_Texture::kSlots; ++slot) {
        if (texture.slotNames[slot].IsEmpty())
            continue;
        json map = {{"slot", slot},
                    {"type", texture.slots[slot].type},
                    {"file", Utf8Name(texture.slotNames[slot].c_str())}};
        for (int i = 0; texture.matrixAni && i < KRE_TextMatrixAni::kTrackCount; ++i) {
            const KRE_TextMatrixAni& moves = texture.matrixAni[slot];
            map[kTracks[i]] = ShortNumber(moves.constants[i]);
            AddTrack(map, (std::string(kTracks[i]) + "Track").c_str(), moves.tracks[i]);
        }
        ListAt(extras, "maps").push_back(std::move(map));
    }
    if (texture.sequenceCount > 0)
        extras["sequence"] = {{"frames", texture.sequenceCount},
                              {"start", ShortNumber(texture.sequenceStart)},
                              {"period", ShortNumber(texture.framePeriod)},
                              {"mode", texture.sequenceMode}};
}

} // namespace

json MaterialExtras(const KRE_MaterialInfo& material, const KRE_Texture& texture)
{
    json extras = {
        {"diffuse", ColorOf(material.diffuse)},   {"ambient", ColorOf(material.ambient)},
        {"specular", ColorOf(material.specular)}, {"emissive", ColorOf(material.emissive)},
        {"power", ShortNumber(material.power)},   {"transparencyType", material.transparencyType}};
    if (material.reflectionSet >= 0)
        extras["reflectionAmount"] = ShortNumber(material.reflectionAmount);
    AddTrack(extras, "diffuseTrack", material.diffuseTrack);
    AddTrack(extras, "ambientTrack", material.ambientTrack);
    AddTrack(extras, "specularTrack", material.specularTrack);
    AddTrack(extras, "selfIllumTrack", material.selfIllumTrack);
    AddTrack(extras, "opacityTrack", material.opacityTrack);
    AddEffect(extras, material.effectParams);
    AddMaps(extras, texture);
    return extras;
}
