#include "export/ExportMaterials.h"

#include <cmath>

#include "export/MaterialExtras.h"
#include "gfx/KRE_Texture.h"
#include "gltf/ColorSpace.h"
#include "scene/KRE_MaterialInfo.h"

using nlohmann::json;

namespace {

double RoundedFactor(double value)
{
    return ShortNumber(static_cast<float>(value));
}

json LinearColor(const D3DCOLORVALUE& color)
{
    return {RoundedFactor(LinearFromScreen(color.r)), RoundedFactor(LinearFromScreen(color.g)),
            RoundedFactor(LinearFromScreen(color.b))};
}

bool IsBlack(const D3DCOLORVALUE& color)
{
    return !(color.r > 0) && !(color.g > 0) && !(color.b > 0);
}

/// The roughness whose highlight is as wide as one of this exponent: sqrt(2 / (n + 2)), Blinn's
/// exponent for a Beckmann distribution. Without highlights the surface is rough.
double RoughnessOf(const KRE_MaterialInfo& material)
{
    if (IsBlack(material.specular) || !(material.power > 0))
        return 1;
    return RoundedFactor(std::sqrt(2 / (std::min(material.power, 1e6f) + 2.0)));
}

json PlainMaterial(const KRE_MaterialInfo& material)
{
    json color = LinearColor(material.diffuse);
    const float clear = std::isfinite(material.transparency) ? material.transparency : 0;
    color.push_back(ShortNumber(std::min(1.0f, std::max(0.0f, 1 - clear))));
    json made = {{"pbrMetallicRoughness",
                  {{"baseColorFactor", std::move(color)},
                   {"metallicFactor", 0},
                   {"roughnessFactor", RoughnessOf(material)}}}};
    if (!IsBlack(material.emissive))
        made["emissiveFactor"] = LinearColor(material.emissive);
    if (material.twoSided)
        made["doubleSided"] = true;
    if (clear > 0)
        made["alphaMode"] = "BLEND";
    return made;
}

int WrapOf(bool tiles, bool mirrors)
{
    return mirrors ? kGltfMirror : tiles ? kGltfRepeat : kGltfClamp;
}

} // namespace

int ExportMaterials::MaterialOf(const KRE_MaterialInfo& material, const KRE_Texture& texture,
                                const std::string& name, bool withPictures)
{
    json made = PlainMaterial(material);
    ObjectAt(made, "extras")["qsb"] = MaterialExtras(material, texture);
    if (withPictures) {
        AddPicture(made, material, texture);
        AddOtherPictures(made, texture);
    }
    const std::string key =
        "materials " + made.dump(-1, ' ', false, json::error_handler_t::replace);
    const auto found = shared.find(key);
    if (found != shared.end())
        return found->second;
    made["name"] = name;
    return shared[key] = writer.Append("materials", std::move(made));
}

/// The colour map. A picture with alpha is cut out or blended, as the scene draws it.
void ExportMaterials::AddPicture(json& made, const KRE_MaterialInfo& material,
                                 const KRE_Texture& texture)
{
    for (int slot = 0; slot < KRE_Texture::kSlots; ++slot) {
        if (texture.slots[slot].type != StageDiffuse || texture.slotNames[slot].IsEmpty())
            continue;
        const int image = pictures.ImageOf(texture, slot);
        if (image < 0)
            return;
        made["pbrMetallicRoughness"]["baseColorTexture"] =
            TextureOf(image, material, texture, slot);
        if (material.transparent && texture.hasAlpha)
            made["alphaMode"] = "BLEND";
        else if (texture.hasAlpha && !made.contains("alphaMode"))
            made["alphaMode"] = "MASK";
        return;
    }
}

/// Maps that glTF has no place for: their pictures, for whoever reads the extras.
void ExportMaterials::AddOtherPictures(json& made, const KRE_Texture& texture)
{
    json& extras = made["extras"]["qsb"];
    if (!extras.contains("maps"))
        return;
    for (json& map : extras["maps"]) {
        const int slot = map["slot"];
        if (texture.slots[slot].type == StageDiffuse)
            continue;
        const int image = pictures.ImageOf(texture, slot);
        if (image >= 0)
            map["image"] = image;
    }
}

json ExportMaterials::TextureOf(int image, const KRE_MaterialInfo& material,
                                const KRE_Texture& texture, int slot)
{
    const int index = Shared("textures", {{"source", image}, {"sampler", SamplerOf(material)}});
    json info = {{"index", index}};
    AddTransform(info, texture, slot);
    return info;
}

int ExportMaterials::SamplerOf(const KRE_MaterialInfo& material)
{
    return Shared("samplers", {{"wrapS", WrapOf(material.tileU, material.mirrorU)},
                               {"wrapT", WrapOf(material.tileV, material.mirrorV)}});
}

int ExportMaterials::Shared(const char* list, const json& element)
{
    const std::string key = std::string(list) + " " + element.dump();
    const auto found = shared.find(key);
    return found != shared.end() ? found->second : shared[key] = writer.Append(list, element);
}

/// The scene turns the picture and then scales it, glTF does it the other way round: a turned picture with
/// two different scales has no words in glTF.
void ExportMaterials::AddTransform(json& info, const KRE_Texture& texture, int slot)
{
    if (!texture.matrixAni)
        return;
    const KRE_TextMatrixAni& moves = texture.matrixAni[slot];
    for (const KRE_FloatTrack& track : moves.tracks) {
        if (track.GetKeyCount() > 0) {
            notices.Add("animated pictures are exported as they are at second 0");
            break;
        }
    }
    float v[KRE_TextMatrixAni::kTrackCount];
    KRE_TextMatrixAni copy = moves;
    for (int i = 0; i < KRE_TextMatrixAni::kTrackCount; ++i)
        v[i] = copy.Evaluate(static_cast<KRE_TextMatrixAni::Track>(i), 0);
    if (v[0] == 0 && v[1] == 0 && v[2] == 1 && v[3] == 1 && v[4] == 0)
        return;
    if (v[4] != 0 && v[2] != v[3])
        notices.Add("turned pictures are not stretched after the turn");
    const double c = std::cos(-double{v[4]});
    const double s = std::sin(-double{v[4]});
    const double shiftU = -0.5 - v[0];
    const double shiftV = v[1] - 0.5;
    json transform = {{"offset",
                       {RoundedFactor((shiftU * c - shiftV * s) * v[2] + 0.5),
                        RoundedFactor((shiftU * s + shiftV * c) * v[3] + 0.5)}},
                      {"scale", {ShortNumber(v[2]), ShortNumber(v[3])}}};
    if (v[4] != 0)
        transform["rotation"] = ShortNumber(v[4]);
    ObjectAt(info, "extensions")["KHR_texture_transform"] = std::move(transform);
    writer.UseExtension("KHR_texture_transform");
}
