#include "tests/support/QsbBytes.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstring>

namespace {

class Writer {
public:
    explicit Writer(int32_t versionIn) : version(versionIn) {}

    template <class T>
    void Put(T value)
    {
        char text[sizeof value];
        std::memcpy(text, &value, sizeof value);
        image.bytes.append(text, sizeof value);
    }
    void Mark(const std::string& field) { image.at.emplace(prefix + field, image.bytes.size()); }
    void Int(const std::string& field, int32_t value)
    {
        Mark(field);
        Put(value);
    }
    void Count(const std::string& field, size_t value) { Int(field, static_cast<int32_t>(value)); }
    template <size_t kCount>
    void Floats(const std::array<float, kCount>& values)
    {
        for (const float value : values)
            Put(value);
    }
    void Text(const std::string& field, const std::string& text)
    {
        Count(field, text.size());
        image.bytes += text;
    }

    void Keys(const std::string& field, const std::vector<QsbKey>& keys)
    {
        Count(field + " count", keys.size());
        for (size_t i = 0; i < keys.size(); ++i) {
            Put(keys[i].time);
            Put(keys[i].interpolation);
            for (const float value : keys[i].data)
                Put(value);
            if (i + 1 == keys.size())
                Mark(field + " end");
            Put(static_cast<uint8_t>(i + 1 < keys.size()));
        }
    }

    void Object(const QsbObject& object)
    {
        Mark("read id");
        Put(object.readId);
        Int("kind", object.kind);
        Mark("pose");
        Floats(object.initTM);
        Floats(object.mirror);
        Floats(object.position);
        Floats(object.scale);
        Floats(object.axis);
        Put(object.angle);
        Mark("pivot");
        Floats(object.pivot);
        Text("name", object.name);
        Text("parent", object.parentName);
        Mark("inherit");
        Put(object.inherit);
        Keys("position", object.posKeys);
        Keys("rotation", object.rotKeys);
        Keys("scale", object.scaleKeys);
        Int("loop", object.loop);
        Put(object.loopEnd);
    }

    void Clip(const QsbClip& clip)
    {
        Int("clip", clip.mode);
        Put(clip.radius);
        Floats(clip.center);
        Floats(clip.low);
        Floats(clip.high);
    }

    void Track(const QsbTrack& track)
    {
        Count("track count", track.keys.size());
        Put(track.interpolation);
        Put(track.loop);
        Put(track.secondFlag);
        Put(track.loopEnd);
        for (const auto& key : track.keys)
            for (const float value : key)
                Put(value);
    }

    void Material(const QsbMaterial& material)
    {
        Mark("material");
        Floats(material.colors);
        Put(material.power);
        Put(material.twoSided);
        Put(material.transparent);
        Put(material.reflectionSet);
        if (version >= 106)
            Put(material.reflectionAmount);
        Put(material.transparency);
        for (const QsbTrack& track : material.colorTracks)
            Track(track);
        Track(material.opacityTrack);
        for (const uint8_t flag : material.flags)
            Put(flag);
        Put(material.transparencyType);
        if (version >= 104)
            Text("effect", material.effect);
        if (version < 105 || material.effect.empty())
            return;
        for (const QsbEffectValue& value : material.values) {
            Put(static_cast<uint8_t>(value.hasFloat));
            if (value.hasFloat)
                Put(value.number);
            Put(static_cast<uint8_t>(value.hasVector));
            if (value.hasVector)
                Floats(value.vector);
        }
    }

    void Texture(const QsbTexture& texture)
    {
        Mark("texture");
        Put(texture.word);
        Put(texture.start);
        Put(texture.period);
        Put(texture.mode);
        Put(texture.value);
        Put(texture.options);
        for (int i = 0; i < (version >= 105 ? 4 : 8); ++i) {
            const QsbSlot& slot = texture.slots[i];
            for (const QsbTrack& track : slot.tracks)
                Track(track);
            Floats(slot.constants);
            Text("texture file", slot.file);
            Put(slot.type);
            Put(slot.amount);
        }
    }

    void Vertex(const QsbVertex& vertex, int weights, bool hasUV)
    {
        Floats(vertex.position);
        if (hasUV || version <= 101) {
            Put(vertex.u);
            Put(vertex.v);
        }
        for (const int16_t part : vertex.normal)
            Put(part);
        for (int i = 0; i < weights; ++i)
            Put(vertex.weights[static_cast<size_t>(i)]);
        if (weights > 0)
            for (const uint8_t bone : vertex.bones)
                Put(bone);
    }

    void Geometry(const QsbMesh& mesh)
    {
        const bool isRaw = version == 100;
        Int("vertex count", isRaw ? mesh.rawCount : static_cast<int32_t>(mesh.vertices.size()));
        Count("face count", mesh.faces.size());
        Int("fvf", static_cast<int32_t>(mesh.fvf));
        // Positions with n betas are 4 + 2 * n from 6 on; texture sets are counted in bits 8 to 11.
        const uint32_t position = mesh.fvf & 0xE;
        const int weights = position >= 6 ? static_cast<int>(position - 4) / 2 : 0;
        Mark("vertices");
        if (isRaw)
            image.bytes += mesh.rawVertices;
        else
            for (const QsbVertex& vertex : mesh.vertices)
                Vertex(vertex, weights, (mesh.fvf & 0xF00) != 0);
        Mark("indices");
        for (const auto& face : mesh.faces)
            for (const uint16_t index : face)
                Put(index);
        Mark("attributes");
        for (size_t i = 0; i < mesh.faces.size(); ++i)
            Put(i < mesh.attributes.size() ? mesh.attributes[i] : uint16_t{0});
    }

    void Mesh(const QsbMesh& mesh)
    {
        Object(mesh.object);
        Clip(mesh.clip);
        Int("own geometry", mesh.ownGeometry);
        Int("visible", mesh.visible);
        Int("has transparency", mesh.hasTransparency);
        Count("material count", mesh.materials.size());
        for (const QsbMaterial& material : mesh.materials)
            Material(material);
        for (const QsbTexture& texture : mesh.textures)
            Texture(texture);
        Text("clone source", mesh.cloneSource);
        Count("bone count", mesh.bones.size());
        if (mesh.cloneSource.empty())
            Geometry(mesh);
        Int("user tag", mesh.userTag);
        for (const QsbBone& bone : mesh.bones) {
            Text("bone", bone.name);
            Floats(bone.boneInit);
            Floats(bone.meshInit);
        }
    }

    void Target(const QsbTarget& target)
    {
        Object(target.object);
        Text("target", target.targetName);
    }

    void Camera(const QsbCamera& camera)
    {
        Target(camera.target);
        Mark("fov");
        Put(camera.fov);
    }

    void Light(const QsbLight& light)
    {
        Target(light.target);
        Mark("light");
        Put(light.on);
        Put(light.mode);
        Put(light.type);
        Floats(light.numbers);
    }

    template <class List, class Write>
    void All(const std::string& what, const List& list, Write write)
    {
        prefix.clear();
        Count(what + " count", list.size());
        for (size_t i = 0; i < list.size(); ++i) {
            prefix = what + std::to_string(i) + ".";
            write(list[i]);
        }
    }

    void Scene(const QsbScene& scene)
    {
        prefix = "scene.";
        Object(scene.object);
        if (version >= 103)
            Clip(scene.clip);
        Int("ambient", static_cast<int32_t>(scene.ambient));
        Int("background", static_cast<int32_t>(scene.background));
        Mark("has background");
        Put(static_cast<uint8_t>(scene.backgroundTexture.size()));
        for (const QsbTexture& texture : scene.backgroundTexture)
            Texture(texture);
        Mark("settings");
        for (size_t i = 0; i < (version >= 104 ? 17u : 16u); ++i)
            Put(scene.settings[i]);
        All("mesh", scene.meshes, [this](const QsbMesh& mesh) { Mesh(mesh); });
        All("camera", scene.cameras, [this](const QsbCamera& camera) { Camera(camera); });
        All("object", scene.objects, [this](const QsbObject& object) { Object(object); });
        All("light", scene.lights, [this](const QsbLight& light) { Light(light); });
    }

    QsbImage image;

private:
    int32_t version;
    std::string prefix;
};

} // namespace

QsbKey QsbVectorKey(float time, QsbVector value)
{
    return {time, 0, {value[0], value[1], value[2], 0, 0, 0, 0, 0, 0}};
}

QsbKey QsbRotKey(float time)
{
    QsbKey key = {time, 0, std::vector<float>(21, 0.0f)};
    key.data[12] = 1; // w of the cumulative rotation, the 10th to 13th number
    return key;
}

std::string QsbImage::With(const std::string& field, const std::string& replacement) const
{
    std::string changed = bytes;
    changed.replace(at.at(field), replacement.size(), replacement);
    return changed;
}

std::string QsbImage::WithInt32(const std::string& field, int32_t value) const
{
    char text[4];
    std::memcpy(text, &value, 4);
    return With(field, std::string(text, 4));
}

int32_t QsbImage::Int32At(const std::string& field) const
{
    int32_t value;
    std::memcpy(&value, bytes.data() + at.at(field), 4);
    return value;
}

QsbImage MakeQsb(const QsbFile& file)
{
    Writer writer(file.version);
    writer.image.bytes = "QSB";
    writer.Put(static_cast<uint8_t>(file.version));
    writer.Mark("header");
    writer.Put(file.frameSpeed);
    writer.Put(file.firstFrame);
    writer.Put(file.lastFrame);
    writer.Text("sound", file.sound);
    writer.Text("script", file.script);
    writer.Scene(file.scene);
    return writer.image;
}

QsbMesh QsbTriangle(const std::string& name)
{
    QsbMesh mesh;
    mesh.object.name = name;
    mesh.object.kind = 1;
    // The sphere around the middle of the box, whose corner is the square root of 0.5 away.
    mesh.clip = {3, 0.70710678f, {0.5f, 0.5f, 0}, {0, 0, 0}, {1, 1, 0}};
    mesh.hasTransparency = 0;
    mesh.materials.resize(1);
    mesh.textures.resize(1);
    mesh.vertices.resize(3);
    mesh.vertices[1].position = {1, 0, 0};
    mesh.vertices[2].position = {0, 1, 0};
    mesh.faces = {{0, 1, 2}};
    return mesh;
}

static QsbMesh SkinnedSquare()
{
    QsbMesh mesh = QsbTriangle("Sail");
    mesh.clip.mode = 0;
    mesh.fvf = 0x1018 | 0x100; // two betas with bone indices, normal, one texture set
    mesh.vertices.push_back({{1, 1, 0}, 1, 1, {0, 0, 32767}, {0, 0, 0, 0}, {0, 0, 0, 0}});
    mesh.vertices[0].weights = {65535, 0, 0, 0};
    mesh.vertices[0].bones = {1, 0, 0, 0};
    mesh.vertices[3].bones = {0, 1, 0, 0};
    mesh.faces = {{0, 1, 2}, {2, 1, 3}};
    mesh.attributes = {0, 1};
    mesh.materials.resize(2);
    mesh.textures.resize(2);
    mesh.bones.resize(2);
    mesh.bones[0].name = "Sail";
    mesh.bones[1].name = "Mast";
    mesh.bones[1].boneInit[12] = 2;
    mesh.bones[1].meshInit[13] = 3;
    mesh.userTag = 77;
    return mesh;
}

static QsbMaterial AnimatedMaterial()
{
    QsbMaterial material;
    material.power = 12;
    material.twoSided = 1;
    material.transparent = 1;
    material.reflectionSet = 0;
    material.reflectionAmount = 0.5f;
    material.transparency = 0.25f;
    material.flags = {1, 0, 0, 1, 0};
    material.transparencyType = 2;
    // The tracks are constant at the material's values: a load evaluates them.
    std::fill(material.colors.begin(), material.colors.begin() + 12, 0.5f);
    std::vector<float> key(13, 0.5f);
    for (size_t track = 0; track < 4; ++track) {
        material.colorTracks[track].interpolation = 0;
        material.colorTracks[track].loopEnd = static_cast<float>(track);
        material.colorTracks[track].keys = {key, key};
        material.colorTracks[track].keys[1][0] = 1;
    }
    material.opacityTrack.interpolation = 0;
    material.opacityTrack.secondFlag = 9;
    material.opacityTrack.keys = {{0, 0.25f, 0, 0}, {1, 0.25f, 0.125f, 0}};
    material.effect = "glow.fx";
    material.values[0] = {true, 1.5f, false, {}};
    material.values[7] = {false, 0, true, {1, 2, 3}};
    return material;
}

QsbFile FullQsb(int32_t version)
{
    QsbFile file;
    file.version = version;
    file.frameSpeed = 25;
    file.firstFrame = 5;
    file.lastFrame = 50;
    file.sound = "waves.wav";
    file.script = "boat.txt";
    QsbScene& scene = file.scene;
    scene.object.name = "boat.qsb";
    scene.clip = {3, 4, {1, 2, 3}, {-1, 0, 1}, {3, 4, 5}};
    scene.ambient = 0xFF102030;
    scene.background = 0xFF405060;
    scene.settings[1] = 1;

    QsbMesh hull = QsbTriangle("Hull");
    hull.object.position = {1, 2, 3};
    hull.object.posKeys = {QsbVectorKey(0, {1, 2, 3}), QsbVectorKey(1, {4, 5, 6})};
    hull.object.rotKeys = {QsbRotKey(0), QsbRotKey(2)};
    hull.object.scaleKeys = {QsbVectorKey(0, {1, 1, 1})};
    hull.object.loop = 1;
    hull.object.loopEnd = 2;
    hull.materials[0] = AnimatedMaterial();
    hull.hasTransparency = 1;
    hull.textures[0].word = 7;
    hull.textures[0].value = 0.5f;
    hull.textures[0].options = 1;
    hull.textures[0].slots[0].tracks[4].keys = {{0, 0, 0, 0}, {1, 3, 0, 0}};
    QsbMesh copy = QsbTriangle("Second hull");
    copy.object.parentName = "Mast";
    copy.cloneSource = "Hull";
    scene.meshes = {SkinnedSquare(), copy, hull};

    scene.cameras.resize(1);
    scene.cameras[0].target.object.name = "Eye";
    scene.cameras[0].target.object.kind = 8;
    scene.cameras[0].target.targetName = "Mast";
    scene.objects.resize(1);
    scene.objects[0].name = "Mast";
    scene.objects[0].kind = 2;
    scene.objects[0].position = {0, 0, 9};
    scene.objects[0].pivot[9] = 4; // row 3
    scene.lights.resize(1);
    scene.lights[0].target.object.name = "Sun";
    scene.lights[0].target.object.kind = 32;
    scene.lights[0].target.object.inherit = 5;
    scene.lights[0].numbers[17] = -1; // looks down its own z axis
    return file;
}

std::string QsbDifference(const std::string& actual, const std::string& expected)
{
    if (actual == expected)
        return "";
    const size_t shorter = std::min(actual.size(), expected.size());
    const size_t at = static_cast<size_t>(
        std::mismatch(actual.begin(), actual.begin() + static_cast<ptrdiff_t>(shorter),
                      expected.begin())
            .first -
        actual.begin());
    char text[200];
    const int first = at < actual.size() ? static_cast<uint8_t>(actual[at]) : -1;
    const int second = at < expected.size() ? static_cast<uint8_t>(expected[at]) : -1;
    std::snprintf(text, sizeof text, "byte %zu of %zu is %d, of %zu expected is %d", at,
                  actual.size(), first, expected.size(), second);
    return text;
}
