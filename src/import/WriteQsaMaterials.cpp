#include <cmath>

#include "import/QsaWriter.h"
#include "import/SceneNames.h"

namespace {

const char* const kTransparencyTypes[] = {"Filter", "Additive", "Subtractive"};

} // namespace

void QsaWriter::WriteMaterials()
{
    text.Open("*MATERIAL_LIST");
    text.Line("*MATERIAL_COUNT").AddWhole(static_cast<long long>(scene.materials.size()));
    for (size_t i = 0; i < scene.materials.size(); ++i) {
        const std::vector<int>& parts = scene.materials[i];
        const std::string head = "*MATERIAL " + std::to_string(i);
        if (parts.size() == 1) {
            WriteMaterial(head, parts[0]);
            continue;
        }
        text.Open(head);
        text.Line("*MATERIAL_NAME").AddText("Parts " + std::to_string(i));
        text.Line("*NUMSUBMTLS").AddWhole(static_cast<long long>(parts.size()));
        for (size_t part = 0; part < parts.size(); ++part)
            WriteMaterial("*SUBMATERIAL " + std::to_string(part), parts[part]);
        text.Close();
    }
    text.Close();
}

void QsaWriter::WriteMaterial(const std::string& head, int number)
{
    static const ModelMaterial kPlain;
    const ModelMaterial& material =
        number < 0 ? kPlain : model.materials[static_cast<size_t>(number)];
    text.Open(head);
    std::string name = HarmlessMaterialName(material.name);
    if (!material.effect.empty())
        name += " shader='" + HarmlessText(material.effect, 60) + "'";
    text.Line("*MATERIAL_NAME").AddText(name);
    WriteColors(material);
    if (HasPicture(material.map.image))
        WriteMap("*MAP_DIFFUSE", material.map,
                 material.moves ? *material.moves : MovesOf(material.map), 1);
    for (const ModelExtraMap& map : material.maps) {
        ModelMap tiled = material.map; // the tiling is the material's
        tiled.image = map.image;
        if (HasPicture(map.image))
            WriteMap(map.isBump ? "*MAP_BUMP" : "*MAP_REFLECT", tiled, map.moves, map.amount);
    }
    WriteMaterialTracks(material);
    text.Close();
}

bool QsaWriter::HasPicture(int image) const
{
    return image >= 0 && !pictures[static_cast<size_t>(image)].empty();
}

void QsaWriter::WriteColors(const ModelMaterial& material)
{
    text.Line("*MATERIAL_AMBIENT").AddVector(material.ambient);
    text.Line("*MATERIAL_DIFFUSE").AddVector(material.diffuse);
    text.Line("*MATERIAL_SPECULAR").AddVector(material.specular);
    text.Line("*MATERIAL_SHINE").Add(material.power / 100);
    text.Line("*MATERIAL_SHINESTRENGTH").Add(1);
    text.Line("*MATERIAL_TRANSPARENCY").Add(1 - material.opacity);
    if (material.opacity < 1 && material.transparencyType >= 0 && material.transparencyType < 3)
        text.Line("*MATERIAL_TRANSPARENCY_TYPE")
            .AddPlain(kTransparencyTypes[material.transparencyType]);
    text.Line("*MATERIAL_SELFILLUM_COLOR").AddVector(material.emissive);
    text.Line("*MATERIAL_TWOSIDED").AddWhole(material.twoSided ? 1 : 0);
}

void QsaWriter::WriteMaterialTracks(const ModelMaterial& material)
{
    static constexpr const char* kAttributes[ModelMaterial::kTracks] = {
        "Diffuse", "Ambient", "Specular", "SelfIllumColor", "Opacity"};
    bool isOpen = false;
    for (size_t i = 0; i < ModelMaterial::kTracks; ++i) {
        const ModelExtraTrack& track = material.tracks[i];
        if (track.keys.empty())
            continue;
        if (!isOpen)
            text.Open("*MATERIAL_ANIMATION");
        isOpen = true;
        text.Line("*MATERIAL_ATTRIBUTE").AddText(kAttributes[i]);
        const bool isNumber = i == ModelMaterial::kOpacity;
        const std::string block = isNumber ? "*CONTROL_FLOAT_" : "*CONTROL_COLOR_";
        const char* bezier = isNumber ? "*CONTROL_BEZIER_FLOAT_KEY" : "*CONTROL_BEZIER_POINT3_KEY";
        const char* linear = isNumber ? "*CONTROL_FLOAT_KEY" : "*CONTROL_POINT3_KEY";
        text.Open(block + (track.isBezier ? "BEZIER" : "LINEAR"));
        WriteExtraKeys(track.isBezier ? bezier : linear, track, isNumber ? 1 : 3, track.isBezier);
        text.Close();
    }
    if (isOpen)
        text.Close();
}

/// Tangents of the text are changes for a tick; those of the model are changes over a segment.
void QsaWriter::WriteExtraKeys(const char* keyword, const ModelExtraTrack& track, size_t parts,
                               bool withTangents)
{
    for (size_t i = 0; i < track.keys.size(); ++i) {
        const ModelExtraKey& key = track.keys[i];
        text.Line(keyword).Add(Ticks(key.seconds));
        const auto add = [&](const ModelVector& vector, double length) {
            for (size_t part = 0; part < parts; ++part)
                text.Add(length > 0 ? vector[part] / length : vector[part]);
        };
        add(key.value, 1);
        if (!withTangents)
            continue;
        const bool isFirst = i == 0, isLast = i + 1 == track.keys.size();
        add(key.arriving, isFirst ? 1 : Ticks(key.seconds - track.keys[i - 1].seconds));
        add(key.leaving, isLast ? 1 : Ticks(track.keys[i + 1].seconds - key.seconds));
    }
}

/// The scene format moves, turns and then scales a picture about its middle; the model scales, turns and moves
/// about a corner.
ModelMapMoves QsaWriter::MovesOf(const ModelMap& map)
{
    const double c = std::cos(-map.angle);
    const double s = std::sin(-map.angle);
    const double scaleU = map.scale[0] != 0 ? map.scale[0] : 1;
    const double scaleV = map.scale[1] != 0 ? map.scale[1] : 1;
    const double x = (map.offset[0] - 0.5) / scaleU;
    const double y = (map.offset[1] - 0.5) / scaleV;
    ModelMapMoves moves;
    moves.constants = {-0.5 - (x * c + y * s), y * c - x * s + 0.5, scaleU, scaleV, map.angle};
    return moves;
}

/// A mirrored tile is two pictures wide, so its tiling is halved.
void QsaWriter::WriteMap(const char* head, const ModelMap& map, ModelMapMoves moves, double amount)
{
    static constexpr const char* kConstants[ModelMapMoves::kParts] = {
        "*UVW_U_OFFSET", "*UVW_V_OFFSET", "*UVW_U_TILING", "*UVW_V_TILING", "*UVW_W_ANGLE"};
    for (size_t axis = 0; axis < 2; ++axis) {
        if (map.mirror[axis])
            Unmirror(moves, ModelMapMoves::kOffsetU + axis, ModelMapMoves::kTileU + axis);
    }
    const auto word = [&](int axis) {
        return map.mirror[axis] ? "Mirror" : map.tile[axis] ? "Tile" : "Clamp";
    };
    text.Open(head);
    text.Line("*BITMAP").AddText(pictures[static_cast<size_t>(map.image)]);
    text.Line("*MAP_AMOUNT").Add(amount);
    for (size_t part = 0; part < ModelMapMoves::kParts; ++part)
        text.Line(kConstants[part]).Add(moves.constants[part]);
    text.Line("*UVW_TILE_U").AddText(word(0));
    text.Line("*UVW_TILE_V").AddText(word(1));
    WriteMapTracks(moves);
    text.Close();
}

void QsaWriter::Unmirror(ModelMapMoves& moves, size_t offset, size_t tile)
{
    const double shift = 0.5 / moves.constants[tile];
    moves.constants[offset] += shift;
    moves.constants[tile] /= 2;
    for (ModelExtraKey& key : moves.tracks[offset].keys)
        key.value[0] += shift;
    for (ModelExtraKey& key : moves.tracks[tile].keys) {
        key.value[0] /= 2;
        key.arriving[0] /= 2;
        key.leaving[0] /= 2;
    }
}

void QsaWriter::WriteMapTracks(const ModelMapMoves& moves)
{
    static constexpr const char* kAttributes[ModelMapMoves::kParts] = {"OffsetU", "OffsetV",
                                                                       "TileU", "TileV", "AngleW"};
    bool isOpen = false;
    for (size_t part = 0; part < ModelMapMoves::kParts; ++part) {
        if (moves.tracks[part].keys.empty())
            continue;
        if (!isOpen)
            text.Open("*MAP_ANIMATION");
        isOpen = true;
        text.Line("*MAP_ATTRIBUTE").AddText(kAttributes[part]);
        text.Open("*CONTROL_FLOAT_BEZIER"); // the only kind that maps have
        WriteExtraKeys("*CONTROL_BEZIER_FLOAT_KEY", moves.tracks[part], 1, true);
        text.Close();
    }
    if (isOpen)
        text.Close();
}
