#include "info/SceneFacts.h"

#include <algorithm>
#include <map>

#include "info/SceneFields.h"

namespace {

/// Gathers files by name.
class FileGatherer {
public:
    /// The entry for a name, with one more use counted.
    NamedFile& Meet(const char* name)
    {
        NamedFile& file = files[name];
        ++file.uses;
        return file;
    }
    void AddLost(const std::string& name) { files[name]; }
    /// Asks `find(name)` for each path.
    template <class Find>
    std::vector<NamedFile> Take(Find find)
    {
        std::vector<NamedFile> all;
        for (auto& [name, file] : files) {
            file.name = name;
            file.path = find(name.c_str());
            all.push_back(std::move(file));
        }
        return all;
    }

private:
    std::map<std::string, NamedFile> files;
};

/// Walks a scene once.
class FactGatherer {
public:
    explicit FactGatherer(LoadedScene& loadedIn) : loaded(loadedIn) {}

    SceneFacts Gather()
    {
        KRE_3dScene& scene = loaded.scene;
        AddNode(scene);
        for (const KRE_Mesh* mesh : scene.meshes)
            AddMesh(*mesh);
        for (const KRE_Camera* camera : scene.cameras)
            AddNode(*camera);
        for (const KRE_3dObject* object : scene.objects) {
            AddNode(*object);
            ++(object->objectKind == kObjectBone ? facts.counts.bones : facts.counts.helpers);
        }
        for (const KRE_Light* light : scene.lights)
            AddNode(*light);
        facts.counts.cameras = scene.cameras.Count();
        facts.counts.lights = scene.lights.Count();
        AddTexture(scene.backgroundTexture);
        for (const std::string& name : loaded.lostTextures)
            textures.AddLost(name);
        facts.textures =
            textures.Take([this](const char* name) { return loaded.FindTexture(name); });
        facts.effects = effects.Take([this](const char* name) { return loaded.FindEffect(name); });
        return std::move(facts);
    }

private:
    void AddNode(const KRE_3dObject& node)
    {
        facts.counts.positionKeys += node.posKeyCount;
        facts.counts.rotationKeys += node.rotKeyCount;
        facts.counts.scaleKeys += node.scaleKeyCount;
    }

    void AddMesh(const KRE_Mesh& mesh)
    {
        AddNode(mesh);
        ++facts.counts.meshes;
        if (mesh.cloneSource.IsEmpty()) {
            facts.counts.vertices += mesh.vertexCount;
            facts.counts.faces += mesh.faceCount;
        } else {
            ++facts.counts.clones;
        }
        for (int32_t i = 0; i < mesh.materialCount; ++i) {
            AddMaterial(mesh.materials[i]);
            AddTexture(mesh.textures[i]);
        }
    }

    void AddMaterial(const KRE_MaterialInfo& material)
    {
        ++facts.counts.materials;
        facts.counts.transparentMaterials += material.transparent != 0 ? 1 : 0;
        AddTracks(TracksOf(material));
        if (!material.effectParams.name.IsEmpty())
            effects.Meet(material.effectParams.name.c_str());
    }

    void AddTracks(const std::vector<NamedTrack>& tracks)
    {
        for (const NamedTrack& named : tracks)
            facts.counts.materialKeys += named.KeyCount();
    }

    void AddTexture(const KRE_Texture& texture)
    {
        for (int32_t slot = 0; slot < KRE_Texture::kSlots; ++slot) {
            AddTracks(TracksOf(AnimationOf(texture, slot)));
            if (texture.slotNames[slot].IsEmpty())
                continue;
            NamedFile& file = textures.Meet(texture.slotNames[slot].c_str());
            if (texture.sequenceCount > 0) {
                file.frames = texture.sequenceCount;
                file.width = texture.width;
                file.height = texture.height;
            } else if (texture.slotTextures[slot]) {
                file.width = static_cast<int32_t>(texture.slotDescs[slot].Width);
                file.height = static_cast<int32_t>(texture.slotDescs[slot].Height);
            }
        }
    }

    LoadedScene& loaded;
    SceneFacts facts;
    FileGatherer textures;
    FileGatherer effects;
};

} // namespace

int64_t SceneFacts::MissingTextures() const
{
    return std::count_if(textures.begin(), textures.end(),
                         [](const NamedFile& file) { return !file.IsFound(); });
}

SceneFacts FactsOf(LoadedScene& loaded)
{
    return FactGatherer(loaded).Gather();
}

const char* KindName(const KRE_3dObject& object)
{
    switch (object.objectKind) {
    case kObjectMesh:
        return "mesh";
    case kObjectBone:
        return "bone";
    case kObjectHelper:
        return "helper";
    case kObjectCamera:
        return "camera";
    case kObjectLight:
        return "light";
    default:
        return "object";
    }
}

std::string SlotTypeName(int32_t type)
{
    static constexpr const char* kNames[] = {"diffuse",  "bump", "reflection",
                                             "modulate", "add",  "sphere"};
    if (type >= StageDiffuse && type <= StageSphere)
        return kNames[type - StageDiffuse];
    return "type " + std::to_string(type);
}
