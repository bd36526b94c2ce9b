// The JSON document. docs/qsbinfo.md describes it: what is added here is added there, and what others
// read is never renamed without a new number of the format.

#include "info/FieldLister.h"
#include "info/JsonWriter.h"
#include "info/Report.h"
#include "info/SceneFacts.h"
#include "info/SceneFields.h"

namespace {

constexpr int64_t kDocumentFormat = 1;

class SceneJson {
public:
    SceneJson(LoadedScene& loadedIn, Output& output)
        : loaded(loadedIn),
          facts(FactsOf(loadedIn)),
          json(output)
    {}

    void Write()
    {
        json.BeginObject();
        json.Whole("qsbinfo", kDocumentFormat);
        WriteFile();
        WriteHeader();
        WriteCounts();
        WriteScene();
        WriteMeshes();
        WriteTargets("cameras", loaded.scene.cameras);
        WriteObjects();
        WriteTargets("lights", loaded.scene.lights);
        WriteFiles("textures", facts.textures);
        WriteFiles("effects", facts.effects);
        WriteWarnings();
        json.EndObject();
    }

private:
    template <class Record>
    void WriteFields(const Record& record)
    {
        fields.Clear();
        AddFields(record, fields);
        json.Fields(fields);
    }

    void WriteFile()
    {
        json.BeginObject("file");
        json.Text("path", loaded.path);
        json.Text("format", loaded.IsQsb() ? "QSB" : "QSA");
        if (loaded.IsQsb())
            json.Whole("version", loaded.version);
        else
            json.Null("version");
        json.Whole("bytes", loaded.sizeBytes);
        json.EndObject();
    }

    void WriteHeader()
    {
        json.BeginObject("header");
        WriteFields(loaded.header);
        json.Real("seconds", loaded.Seconds());
        json.EndObject();
    }

    void WriteCounts()
    {
        const SceneCounts& counts = facts.counts;
        json.BeginObject("counts");
        json.Whole("meshes", counts.meshes);
        json.Whole("clones", counts.clones);
        json.Whole("cameras", counts.cameras);
        json.Whole("lights", counts.lights);
        json.Whole("helpers", counts.helpers);
        json.Whole("bones", counts.bones);
        json.Whole("vertices", counts.vertices);
        json.Whole("faces", counts.faces);
        json.Whole("materials", counts.materials);
        json.Whole("transparentMaterials", counts.transparentMaterials);
        json.Whole("positionKeys", counts.positionKeys);
        json.Whole("rotationKeys", counts.rotationKeys);
        json.Whole("scaleKeys", counts.scaleKeys);
        json.Whole("materialKeys", counts.materialKeys);
        json.Whole("textures", static_cast<int64_t>(facts.textures.size()));
        json.Whole("missingTextures", facts.MissingTextures());
        json.Whole("warnings", loaded.warnings.Count());
        json.EndObject();
    }

    void WriteScene()
    {
        json.BeginObject("scene");
        WriteFields(loaded.scene);
        json.BeginObject("settings");
        WriteFields(loaded.scene.settings);
        json.EndObject();
        if (loaded.scene.backgroundTexture.IsValid())
            WriteTexture("background", loaded.scene.backgroundTexture);
        else
            json.Null("background");
        json.EndObject();
    }

    /// What all objects begin with.
    void WriteNodeStart(const KRE_3dObject& node)
    {
        json.Text("name", node.name.c_str());
        json.Text("kind", KindName(node));
        json.Bool("hasParent", node.parent != nullptr);
    }

    void WriteMeshes()
    {
        json.BeginList("meshes");
        for (const KRE_Mesh* mesh : loaded.scene.meshes) {
            json.BeginObject();
            WriteNodeStart(*mesh);
            WriteFields(*mesh);
            json.BeginList("bones");
            for (const KRE_BoneInfo* bone : mesh->bones)
                json.Text(nullptr, bone->name);
            json.EndList();
            json.BeginList("materials");
            for (int32_t i = 0; i < mesh->materialCount; ++i)
                WriteMaterial(mesh->materials[i], mesh->textures[i]);
            json.EndList();
            json.EndObject();
        }
        json.EndList();
    }

    void WriteTrack(const NamedTrack& named)
    {
        json.BeginObject(named.name);
        std::visit([this](const auto* track) { WriteFields(*track); }, named.track);
        json.EndObject();
    }

    void WriteMaterial(const KRE_MaterialInfo& material, const KRE_Texture& texture)
    {
        json.BeginObject();
        WriteFields(material);
        for (const NamedTrack& named : TracksOf(material))
            WriteTrack(named);
        WriteTexture("texture", texture);
        json.EndObject();
    }

    void WriteTexture(const char* key, const KRE_Texture& texture)
    {
        json.BeginObject(key);
        WriteFields(texture);
        json.BeginList("slots");
        for (int32_t slot = 0; slot < KRE_Texture::kSlots; ++slot) {
            if (texture.slotNames[slot].IsEmpty())
                continue;
            json.BeginObject();
            json.Whole("slot", slot);
            json.Text("kind", SlotTypeName(texture.slots[slot].type));
            fields.Clear();
            AddSlotFields(texture, slot, fields);
            json.Fields(fields);
            json.EndObject();
        }
        json.EndList();
        json.EndObject();
    }

    template <class List>
    void WriteTargets(const char* key, List& list)
    {
        json.BeginList(key);
        for (const auto* node : list) {
            json.BeginObject();
            WriteNodeStart(*node);
            WriteFields(*node);
            json.Bool("hasTarget", node->target != nullptr);
            json.EndObject();
        }
        json.EndList();
    }

    void WriteObjects()
    {
        json.BeginList("objects");
        for (const KRE_3dObject* object : loaded.scene.objects) {
            json.BeginObject();
            WriteNodeStart(*object);
            WriteFields(*object);
            json.EndObject();
        }
        json.EndList();
    }

    void WriteFiles(const char* key, const std::vector<NamedFile>& files)
    {
        json.BeginList(key);
        for (const NamedFile& file : files) {
            json.BeginObject();
            json.Text("name", file.name);
            json.Bool("found", file.IsFound());
            if (file.IsFound())
                json.Text("path", file.path);
            else
                json.Null("path");
            json.Whole("uses", file.uses);
            json.Whole("width", file.width);
            json.Whole("height", file.height);
            json.Whole("frames", file.frames);
            json.EndObject();
        }
        json.EndList();
    }

    void WriteWarnings()
    {
        json.BeginList("warnings");
        for (const ReaderWarning& warning : loaded.warnings.Kept()) {
            json.BeginObject();
            json.Text("source", warning.source);
            json.Text("text", warning.text);
            json.Whole("count", warning.count);
            json.EndObject();
        }
        json.EndList();
        json.Whole("warningsNotKept", loaded.warnings.LeftOut());
    }

    LoadedScene& loaded;
    const SceneFacts facts;
    JsonWriter json;
    FieldList fields;
};

} // namespace

void PrintJson(LoadedScene& loaded, Output& output)
{
    SceneJson(loaded, output).Write();
}
