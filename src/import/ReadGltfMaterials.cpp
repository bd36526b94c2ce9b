#include <algorithm>
#include <cmath>

#include "gltf/ColorSpace.h"
#include "gltf/DataUri.h"
#include "gltf/GltfConstants.h"
#include "gltf/ModelFault.h"
#include "import/GltfReader.h"

using nlohmann::json;

namespace {

constexpr size_t kImageBytesAtLeast = 1 << 20;

const json& MemberOf(const json& owner, const char* key)
{
    static const json kNone = json::object();
    const auto found = owner.find(key);
    return found != owner.end() && found->is_object() ? *found : kNone;
}

ModelVector ScreenColor(const std::vector<double>& linear)
{
    return {ScreenFromLinear(linear[0]), ScreenFromLinear(linear[1]), ScreenFromLinear(linear[2])};
}

} // namespace

void GltfReader::ReadImages(const std::string& folder)
{
    for (const json& image : file.List("images")) {
        ModelImage& made = model.images.emplace_back();
        made.name = GltfFile::Text(image, "name");
        const std::string uri = GltfFile::Text(image, "uri");
        if (const json* view = file.Named("bufferViews", image, "bufferView")) {
            const std::string_view bytes = file.ViewBytes(*view);
            imageBytes += bytes.size(); // many may name one view
            if (imageBytes > kImageBytesAtLeast + 2 * file.TotalBytes())
                throw ModelFault("its pictures are far more than the file holds");
            made.bytes = bytes;
        } else if (uri.compare(0, 5, "data:") == 0) {
            if (!DecodeDataUri(uri, made.bytes))
                notices.Add("pictures inside the model are damaged");
        } else if (!uri.empty()) {
            made.file = folder + UnescapedUri(uri);
            made.name = made.file.substr(made.file.find_last_of('/') + 1);
        }
    }
}

void GltfReader::ReadMaterials()
{
    for (const json& material : file.List("materials")) {
        ModelMaterial& made = model.materials.emplace_back();
        made.name = GltfFile::Text(material, "name");
        const json& metal = MemberOf(material, "pbrMetallicRoughness");
        const std::vector<double> color = GltfFile::Numbers(metal, "baseColorFactor", {1, 1, 1, 1});
        const double metallic = std::clamp(GltfFile::Number(metal, "metallicFactor", 1), 0.0, 1.0);
        const double rough = std::clamp(GltfFile::Number(metal, "roughnessFactor", 1), 0.03, 1.0);
        made.diffuse = made.ambient = ScreenColor(color);
        // Blinn's exponent for a highlight of this width. Rough surfaces have none.
        made.power = rough < 1 ? 2 / (rough * rough) - 2 : 0;
        for (size_t i = 0; i < 3; ++i)
            made.specular[i] = (1 - rough) * (0.5 + (made.diffuse[i] - 0.5) * metallic);
        made.emissive = ScreenColor(GltfFile::Numbers(material, "emissiveFactor", {0, 0, 0}));
        made.twoSided = GltfFile::Flag(material, "doubleSided");
        const std::string alpha = GltfFile::Text(material, "alphaMode");
        made.alpha = alpha == "BLEND"  ? ModelAlpha::kBlend
                     : alpha == "MASK" ? ModelAlpha::kCutOut
                                       : ModelAlpha::kOpaque;
        made.opacity = made.alpha == ModelAlpha::kBlend ? std::clamp(color[3], 0.0, 1.0) : 1;
        ReadMap(metal, made);
        ReadMaterialExtras(material, made);
        for (const char* lost : {"normalTexture", "occlusionTexture", "emissiveTexture"}) {
            if (material.contains(lost))
                notices.Add("maps other than that of the base colour are not carried");
        }
        if (metal.contains("metallicRoughnessTexture"))
            notices.Add("maps other than that of the base colour are not carried");
    }
}

void GltfReader::ReadMap(const json& metal, ModelMaterial& made)
{
    const auto info = metal.find("baseColorTexture");
    if (info == metal.end())
        return;
    const json* texture = file.Named("textures", *info, "index");
    if (!texture)
        return;
    made.map.image = file.IndexOf("images", *texture, "source");
    if (made.map.image < 0)
        notices.Add("pictures of kinds that are not read are left out");
    made.map.set = GltfFile::Small(*info, "texCoord", 0);
    if (const json* sampler = file.Named("samplers", *texture, "sampler")) {
        const char* const keys[] = {"wrapS", "wrapT"};
        for (int axis = 0; axis < 2; ++axis) {
            const int wrap = GltfFile::Small(*sampler, keys[axis], kGltfRepeat);
            made.map.tile[axis] = wrap == kGltfRepeat;
            made.map.mirror[axis] = wrap == kGltfMirror;
        }
    }
    ReadTextureTransform(*info, made.map);
}

void GltfReader::ReadTextureTransform(const json& info, ModelMap& map)
{
    const json& transform = MemberOf(MemberOf(info, "extensions"), "KHR_texture_transform");
    const std::vector<double> offset = GltfFile::Numbers(transform, "offset", {0, 0});
    const std::vector<double> scale = GltfFile::Numbers(transform, "scale", {1, 1});
    map.angle = GltfFile::Number(transform, "rotation", 0);
    for (size_t axis = 0; axis < 2; ++axis) {
        map.offset[axis] = offset[axis];
        map.scale[axis] = scale[axis];
    }
    if (transform.contains("texCoord"))
        map.set = GltfFile::Small(transform, "texCoord", 0);
    if (map.angle != 0 && map.scale[0] != map.scale[1])
        notices.Add("turned pictures are not stretched before the turn");
}
