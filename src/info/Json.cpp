// The JSON document. docs/qsbinfo.md describes it: additions here are also added there, and nothing
// that others read is renamed without a new format number.

#include "info/FieldLister.h"
#include "info/JsonDocument.h"
#include "info/Report.h"
#include "info/SceneFacts.h"
#include "info/SceneFields.h"

namespace {

constexpr int64_t kDocumentFormat = 1;

JsonValue PathOrNull(const std::string& path)
{
    return path.empty() ? JsonValue() : JsonName(path);
}

template <class Record>
void AddRecord(const Record& record, JsonValue& object)
{
    FieldList fields;
    AddFields(record, fields);
    AddJsonFields(fields, object);
}

JsonValue FileOf(const LoadedScene& loaded)
{
    JsonValue file = JsonValue::object();
    file["path"] = JsonName(loaded.path);
    file["format"] = loaded.IsQsb() ? "QSB" : "QSA";
    file["version"] = loaded.IsQsb() ? JsonValue(loaded.version) : JsonValue();
    file["bytes"] = loaded.sizeBytes;
    return file;
}

JsonValue HeaderOf(const LoadedScene& loaded)
{
    JsonValue header = JsonValue::object();
    AddRecord(loaded.header, header);
    header["seconds"] = JsonReal(loaded.Seconds());
    return header;
}

JsonValue CountsOf(const SceneFacts& facts, const LoadedScene& loaded)
{
    const SceneCounts& counts = facts.counts;
    return {
        {"meshes", counts.meshes},
        {"clones", counts.clones},
        {"cameras", counts.cameras},
        {"lights", counts.lights},
        {"helpers", counts.helpers},
        {"bones", counts.bones},
        {"vertices", counts.vertices},
        {"faces", counts.faces},
        {"materials", counts.materials},
        {"transparentMaterials", counts.transparentMaterials},
        {"positionKeys", counts.positionKeys},
        {"rotationKeys", counts.rotationKeys},
        {"scaleKeys", counts.scaleKeys},
        {"materialKeys", counts.materialKeys},
        {"textures", facts.textures.size()},
        {"missingTextures", facts.MissingTextures()},
        {"warnings", loaded.warnings.Count()},
    };
}

// ---- Materials

JsonValue TextureOf(const KRE_Texture& texture)
{
    JsonValue object = JsonValue::object();
    AddRecord(texture, object);
    JsonValue& slots = object["slots"] = JsonValue::array();
    for (int32_t slot = 0; slot < KRE_Texture::kSlots; ++slot) {
        if (texture.slotNames[slot].IsEmpty())
            continue;
        FieldList fields;
        AddSlotFields(texture, slot, fields);
        JsonValue& added = slots.emplace_back(JsonValue::object());
        added["slot"] = slot;
        added["kind"] = SlotTypeName(texture.slots[slot].type);
        AddJsonFields(fields, added);
    }
    return object;
}

JsonValue MaterialOf(const KRE_MaterialInfo& material, const KRE_Texture& texture)
{
    JsonValue object = JsonValue::object();
    AddRecord(material, object);
    for (const NamedTrack& named : TracksOf(material))
        std::visit(
            [&](const auto* track) { AddRecord(*track, object[named.name] = JsonValue::object()); },
            named.track);
    object["texture"] = TextureOf(texture);
    return object;
}

// ---- Objects

/// The members that all objects begin with, and the object's own fields.
template <class Node>
JsonValue NodeOf(const Node& node)
{
    JsonValue object = JsonValue::object();
    object["name"] = JsonName(node.name.c_str());
    object["kind"] = KindName(node);
    object["hasParent"] = node.parent != nullptr;
    AddRecord(node, object);
    return object;
}

JsonValue MeshOf(const KRE_Mesh& mesh)
{
    JsonValue object = NodeOf(mesh);
    JsonValue& bones = object["bones"] = JsonValue::array();
    for (const KRE_BoneInfo* bone : mesh.bones)
        bones.push_back(JsonName(bone->name));
    JsonValue& materials = object["materials"] = JsonValue::array();
    for (int32_t i = 0; i < mesh.materialCount; ++i)
        materials.push_back(MaterialOf(mesh.materials[i], mesh.textures[i]));
    return object;
}

/// A camera or a light.
template <class Node>
JsonValue TargetOf(const Node& node)
{
    JsonValue object = NodeOf(node);
    object["hasTarget"] = node.target != nullptr;
    return object;
}

template <class List, class Make>
JsonValue ListOf(const List& list, Make make)
{
    JsonValue values = JsonValue::array();
    for (const auto* node : list)
        values.push_back(make(*node));
    return values;
}

JsonValue SceneOf(const KRE_3dScene& scene)
{
    JsonValue object = JsonValue::object();
    AddRecord(scene, object);
    AddRecord(scene.settings, object["settings"] = JsonValue::object());
    const KRE_Texture& background = scene.backgroundTexture;
    object["background"] = background.IsValid() ? TextureOf(background) : JsonValue();
    return object;
}

// ---- Files and warnings

JsonValue FilesOf(const std::vector<NamedFile>& files)
{
    JsonValue values = JsonValue::array();
    for (const NamedFile& file : files) {
        JsonValue& value = values.emplace_back(JsonValue::object());
        value["name"] = JsonName(file.name);
        value["found"] = file.IsFound();
        value["path"] = PathOrNull(file.path);
        value["uses"] = file.uses;
        value["width"] = file.width;
        value["height"] = file.height;
        value["frames"] = file.frames;
    }
    return values;
}

JsonValue WarningsOf(const WarningList& warnings)
{
    JsonValue values = JsonValue::array();
    for (const ReaderWarning& warning : warnings.Kept()) {
        JsonValue& value = values.emplace_back(JsonValue::object());
        value["source"] = JsonName(warning.source);
        value["text"] = JsonName(warning.text);
        value["count"] = warning.count;
    }
    return values;
}

} // namespace

void PrintJson(LoadedScene& loaded, Output& output)
{
    const SceneFacts facts = FactsOf(loaded);
    const KRE_3dScene& scene = loaded.scene;
    JsonValue document = JsonValue::object();
    document["qsbinfo"] = kDocumentFormat;
    document["file"] = FileOf(loaded);
    document["header"] = HeaderOf(loaded);
    document["counts"] = CountsOf(facts, loaded);
    document["scene"] = SceneOf(scene);
    document["meshes"] = ListOf(scene.meshes, MeshOf);
    document["cameras"] = ListOf(scene.cameras, TargetOf<KRE_Camera>);
    document["objects"] = ListOf(scene.objects, NodeOf<KRE_3dObject>);
    document["lights"] = ListOf(scene.lights, TargetOf<KRE_Light>);
    document["textures"] = FilesOf(facts.textures);
    document["effects"] = FilesOf(facts.effects);
    document["warnings"] = WarningsOf(loaded.warnings);
    document["warningsNotKept"] = loaded.warnings.LeftOut();
    PrintDocument(document, output);
}
