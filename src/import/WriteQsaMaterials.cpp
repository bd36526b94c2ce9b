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
    const bool hasPicture =
        material.map.image >= 0 && !pictures[static_cast<size_t>(material.map.image)].empty();
    if (hasPicture)
        WriteMap(material.map);
    text.Close();
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

/// The scene format moves, turns and then scales a picture about its middle; the model scales, turns and moves
/// about a corner. A mirrored tile is two pictures wide, so its tiling is halved.
void QsaWriter::WriteMap(const ModelMap& map)
{
    const double c = std::cos(-map.angle);
    const double s = std::sin(-map.angle);
    const double scaleU = map.scale[0] != 0 ? map.scale[0] : 1;
    const double scaleV = map.scale[1] != 0 ? map.scale[1] : 1;
    const double x = (map.offset[0] - 0.5) / scaleU;
    const double y = (map.offset[1] - 0.5) / scaleV;
    double offset[2] = {-0.5 - (x * c + y * s), y * c - x * s + 0.5};
    double tiling[2] = {scaleU, scaleV};
    for (int axis = 0; axis < 2; ++axis) {
        if (map.mirror[axis]) {
            offset[axis] += 0.5 / tiling[axis];
            tiling[axis] /= 2;
        }
    }
    const auto word = [&](int axis) {
        return map.mirror[axis] ? "Mirror" : map.tile[axis] ? "Tile" : "Clamp";
    };
    text.Open("*MAP_DIFFUSE");
    text.Line("*BITMAP").AddText(pictures[static_cast<size_t>(map.image)]);
    text.Line("*UVW_U_OFFSET").Add(offset[0]);
    text.Line("*UVW_V_OFFSET").Add(offset[1]);
    text.Line("*UVW_U_TILING").Add(tiling[0]);
    text.Line("*UVW_V_TILING").Add(tiling[1]);
    text.Line("*UVW_W_ANGLE").Add(map.angle);
    text.Line("*UVW_TILE_U").AddText(word(0));
    text.Line("*UVW_TILE_V").AddText(word(1));
    text.Close();
}
