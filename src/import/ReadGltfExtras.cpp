#include <cmath>

#include "gltf/ModelFault.h"
#include "import/GltfReader.h"

using nlohmann::json;

// What only files of our own have. They may have been changed since, so what does not look as expected is left
// out without a word.

namespace {

constexpr size_t kMostKeys = 1023; // of a track of the scene format
// Kinds of maps, as the binary format numbers them.
constexpr int kTypeDiffuse = 1;
constexpr int kTypeBump = 2;
constexpr int kTypeReflection = 3;

const char* const kTrackNames[ModelMaterial::kTracks] = {
    "diffuseTrack", "ambientTrack", "specularTrack", "selfIllumTrack", "opacityTrack"};
const char* const kMoveNames[ModelMapMoves::kParts] = {"offsetU", "offsetV", "tileU", "tileV",
                                                       "angle"};

bool IsNear(const ModelVector& a, const ModelVector& b)
{
    constexpr double kTolerance = 2e-3;
    return std::fabs(a[0] - b[0]) < kTolerance && std::fabs(a[1] - b[1]) < kTolerance &&
           std::fabs(a[2] - b[2]) < kTolerance;
}

/// A colour, or one number as the first part.
std::optional<ModelVector> ValueOf(const json& value)
{
    if (value.is_number())
        return ModelVector{value.get<double>(), 0, 0};
    if (!value.is_array() || value.size() != 3)
        return {};
    ModelVector color;
    for (size_t i = 0; i < 3; ++i) {
        if (!value[i].is_number())
            return {};
        color[i] = value[i].get<double>();
    }
    return color;
}

std::optional<ModelVector> ValueAt(const json& extras, const char* key)
{
    const auto found = extras.find(key);
    return found == extras.end() ? std::nullopt : ValueOf(*found);
}

ModelExtraTrack TrackAt(const json& extras, const std::string& key)
{
    ModelExtraTrack track;
    const auto found = extras.find(key);
    if (found == extras.end() || !found->is_object() || !found->contains("keys"))
        return track;
    track.isBezier = found->value("interpolation", "") == "bezier";
    for (const json& entry : (*found)["keys"]) {
        if (!entry.is_array() || entry.size() != 4 || !entry[0].is_number() ||
            track.keys.size() == kMostKeys)
            return {};
        const std::optional<ModelVector> value = ValueOf(entry[1]);
        const std::optional<ModelVector> arriving = ValueOf(entry[2]);
        const std::optional<ModelVector> leaving = ValueOf(entry[3]);
        const double seconds = entry[0].get<double>();
        const bool isLater = track.keys.empty() || seconds >= track.keys.back().seconds;
        if (!value || !arriving || !leaving || !isLater)
            return {};
        track.keys.push_back({seconds, *value, *arriving, *leaving});
    }
    return track;
}

ModelMapMoves MovesOf(const json& map)
{
    ModelMapMoves moves;
    for (size_t part = 0; part < ModelMapMoves::kParts; ++part) {
        const std::string name = kMoveNames[part];
        if (const std::optional<ModelVector> constant = ValueAt(map, kMoveNames[part]))
            moves.constants[part] = (*constant)[0];
        moves.tracks[part] = TrackAt(map, name + "Track");
    }
    return moves;
}

bool HasKeys(const ModelMapMoves& moves)
{
    for (const ModelExtraTrack& track : moves.tracks) {
        if (!track.keys.empty())
            return true;
    }
    return false;
}

} // namespace

/// Says what the colours were. It counts as long as nobody has changed the colour.
void GltfReader::ReadMaterialExtras(const json& material, ModelMaterial& made)
{
    const auto outer = material.find("extras");
    if (outer == material.end() || !outer->is_object() || !outer->contains("qsb"))
        return;
    const json& extras = (*outer)["qsb"];
    const std::optional<ModelVector> diffuse = ValueAt(extras, "diffuse");
    if (!diffuse || !IsNear(*diffuse, made.diffuse))
        return;
    made.diffuse = *diffuse;
    made.ambient = ValueAt(extras, "ambient").value_or(made.ambient);
    made.specular = ValueAt(extras, "specular").value_or(made.specular);
    made.emissive = ValueAt(extras, "emissive").value_or(made.emissive);
    if (extras.contains("power"))
        made.power = GltfFile::Number(extras, "power", 0);
    if (extras.contains("transparencyType"))
        made.transparencyType = GltfFile::Small(extras, "transparencyType", 0);
    made.effect = GltfFile::Text(extras, "effect");
    for (size_t i = 0; i < ModelMaterial::kTracks; ++i)
        made.tracks[i] = TrackAt(extras, kTrackNames[i]);
    for (ModelExtraKey& key : made.tracks[ModelMaterial::kOpacity].keys) {
        key.value[0] = 1 - key.value[0]; // the binary format has transparencies
        key.arriving[0] = -key.arriving[0];
        key.leaving[0] = -key.leaving[0];
    }
    if (extras.contains("maps"))
        ReadExtraMaps(extras, made);
}

void GltfReader::ReadExtraMaps(const json& extras, ModelMaterial& made)
{
    const double amount = GltfFile::Number(extras, "reflectionAmount", 1);
    for (const json& map : extras["maps"]) {
        if (!map.is_object())
            return;
        const int type = GltfFile::Small(map, "type", 0);
        ModelMapMoves moves = MovesOf(map);
        if (type == kTypeDiffuse && HasKeys(moves)) {
            made.moves = std::move(moves);
            continue;
        }
        const int image = file.IndexOf("images", map, "image");
        if (image < 0 || (type != kTypeBump && type != kTypeReflection))
            continue;
        ModelExtraMap& other = made.maps.emplace_back();
        other.isBump = type == kTypeBump;
        other.image = image;
        other.amount = other.isBump ? 1 : amount;
        other.moves = std::move(moves);
    }
}
