#include "info/SceneDiff.h"

#include <cmath>
#include <functional>

#include <gmock/gmock.h>

#include "tests/info/InfoTesting.h"

using testing::HasSubstr;

namespace {

class SceneDiffTest : public InfoTest {
protected:
    /// What differs between two files.
    std::string Diff(const QsbFile& first, const QsbFile& second, const DiffOptions& options = {})
    {
        LoadedScene a;
        LoadedScene b;
        Load(a, first, "a.qsb");
        Load(b, second, "b.qsb");
        Output output;
        count = SceneDiff(options, output).Compare(a, b);
        return output.Text();
    }

    int64_t count = 0;
};

/// A boat with something of everything.
QsbFile FullBoat()
{
    QsbFile file = InfoBoat();
    QsbMesh& hull = file.scene.meshes[0];
    hull.object.posKeys = {QsbVectorKey(0, {1, 2, 3}), QsbVectorKey(1, {4, 5, 6})};
    hull.object.scaleKeys = {QsbVectorKey(0, {1, 1, 1})};
    hull.object.rotKeys = {QsbRotKey(0)};
    hull.materials[0].colourTracks[1].keys = {std::vector<float>(13)};
    hull.materials[0].opacityTrack.keys = {std::vector<float>(4)};
    hull.materials[0].effect = "waves.fx";
    hull.materials[0].values[2].hasFloat = true;
    hull.materials[0].values[3].hasVector = true;
    hull.textures[0].slots[1].tracks[4].keys = {std::vector<float>(4)};
    QsbMesh skin = InfoTriangle("Skin");
    skin.fvf = 0x1118; // two weights and bones, normal, one set
    skin.bones.resize(2);
    skin.bones[0].name = "Skin";
    skin.bones[1].name = "Arm";
    file.scene.meshes.push_back(skin);
    return file;
}

} // namespace

TEST_F(SceneDiffTest, SameScenesHaveNoDifference)
{
    EXPECT_EQ(Diff(FullBoat(), FullBoat()), "");
    EXPECT_EQ(count, 0);
}

TEST_F(SceneDiffTest, EveryStoredFieldIsCompared)
{
    using Change = std::function<void(QsbFile&)>;
    static const auto hull = [](QsbFile& f) -> QsbMesh& { return f.scene.meshes[0]; };
    static const auto skin = [](QsbFile& f) -> QsbMesh& { return f.scene.meshes[1]; };
    static const struct {
        const char* expected; ///< all of the text
        Change change;
    } cases[] = {
        {"header/frameSpeed: 30 | 25\n", [](auto& f) { f.frameSpeed = 25; }},
        {"header/lastFrame: 100 | 99\n", [](auto& f) { f.lastFrame = 99; }},
        {"header/soundFile: \"\" | \"a.wav\"\n", [](auto& f) { f.sound = "a.wav"; }},
        {"header/scriptFile: \"\" | \"a\"\n", [](auto& f) { f.script = "a"; }},
        {"scene/position.x: 0 | 1\n", [](auto& f) { f.scene.object.position[0] = 1; }},
        {"scene/loopEnd: 100 | 2\n", [](auto& f) { f.scene.object.loopEnd = 2; }},
        {"scene/radius: 0 | 3\n", [](auto& f) { f.scene.clip.radius = 3; }},
        {"scene/boxMax.z: 0 | 3\n", [](auto& f) { f.scene.clip.high[2] = 3; }},
        {"scene/ambientColor: 0xFF000000 | 0xFF00007B\n",
         [](auto& f) { f.scene.ambient = 0xFF00007B; }},
        {"scene/backgroundColor: 0xFF000000 | 0x00000000\n",
         [](auto& f) { f.scene.background = 0; }},
        {"settings/mirrorView: 0 | 1\n", [](auto& f) { f.scene.settings[1] = 1; }},
        {"settings/showObjects: -2 | -1\n", [](auto& f) { f.scene.settings[3] = 0xFFFFFFFF; }},
        {"settings/fogColor: 0x00000000 | 0x00FFFFFF\n",
         [](auto& f) { f.scene.settings[10] = 0xFFFFFF; }},
        {"settings/fogDensity: 0.5 | 1\n", [](auto& f) { f.scene.settings[15] = 0x3F800000; }},
        {"settings/drawTransparentOnly: 1 | 0\n", [](auto& f) { f.scene.settings[16] = 0; }},
        {"meshes/Hull/initTM[3][1]: 0 | 5\n", [](auto& f) { hull(f).object.initTM[13] = 5; }},
        {"meshes/Hull/mirror.y: 1 | -1\n", [](auto& f) { hull(f).object.mirror[1] = -1; }},
        {"meshes/Hull/rotationAxis.z: 0 | 1\n", [](auto& f) { hull(f).object.axis[2] = 1; }},
        {"meshes/Hull/rotationAngle: 0 | 1\n", [](auto& f) { hull(f).object.angle = 1; }},
        {"meshes/Hull/pivotTM[3][0]: 0 | 2\n", [](auto& f) { hull(f).object.pivot[9] = 2; }},
        {"meshes/Hull/parentName: \"Keel\" | \"Arm\"\n",
         [](auto& f) { hull(f).object.parentName = "Arm"; }},
        {"meshes/Hull/inheritScale: 1 | 0\n", [](auto& f) { hull(f).object.inherit = 13; }},
        {"meshes/Hull/loop: 0 | 1\n", [](auto& f) { hull(f).object.loop = 1; }},
        {"meshes/Hull/clipMode: 0 | 1\n", [](auto& f) { hull(f).clip.mode = 1; }},
        {"meshes/Hull/ownGeometry: 1 | 0\n", [](auto& f) { hull(f).ownGeometry = 0; }},
        {"meshes/Skin/visible: 1 | 0\n", [](auto& f) { skin(f).visible = 0; }},
        {"meshes/Hull/userTag: -1 | 9\n", [](auto& f) { hull(f).userTag = 9; }},
        {"meshes/Hull/posKeyCount: 2 | 1\n", [](auto& f) { hull(f).object.posKeys.pop_back(); }},
        {"meshes/Hull/posKeys[1].value.z: 6 | 7\n",
         [](auto& f) { hull(f).object.posKeys[1].data[2] = 7; }},
        {"meshes/Hull/posKeys[1].interpolation: 0 | 1\n",
         [](auto& f) { hull(f).object.posKeys[1].interpolation = 1; }},
        {"meshes/Hull/scaleKeys[0].outTangent.x: 0 | 1\n",
         [](auto& f) { hull(f).object.scaleKeys[0].data[6] = 1; }},
        {"meshes/Hull/rotKeys[0].bias: 0 | 1\n",
         [](auto& f) { hull(f).object.rotKeys[0].data[6] = 1; }},
        {"meshes/Hull/materials[0].diffuse.g: 1 | 0.5\n",
         [](auto& f) { hull(f).materials[0].colours[1] = 0.5f; }},
        {"meshes/Hull/materials[0].power: 0 | 8\n",
         [](auto& f) { hull(f).materials[0].power = 8; }},
        {"meshes/Hull/materials[0].tileU: 1 | 0\n",
         [](auto& f) { hull(f).materials[0].flags[2] = 0; }},
        {"meshes/Hull/materials[0].transparencyType: 0 | 2\n",
         [](auto& f) { hull(f).materials[0].transparencyType = 2; }},
        {"meshes/Hull/materials[0].effect: \"waves.fx\" | \"wave.fx\"\n",
         [](auto& f) { hull(f).materials[0].effect = "wave.fx"; }},
        {"meshes/Hull/materials[0].float3: 0 | 1\n",
         [](auto& f) { hull(f).materials[0].values[2].number = 1; }},
        {"meshes/Hull/materials[0].float3: 0 | -\n",
         [](auto& f) { hull(f).materials[0].values[2].hasFloat = false; }},
        {"meshes/Hull/materials[0].vector1: - | present\n",
         [](auto& f) { hull(f).materials[0].values[0].hasVector = true; }},
        {"meshes/Hull/materials[0].vector4[2]: 0 | 1\n",
         [](auto& f) { hull(f).materials[0].values[3].vector[2] = 1; }},
        {"meshes/Hull/materials[0].ambientTrack.loop: 0 | 1\n"
         "meshes/Hull/materials[0].ambientTrack.loopEnd: 0 | 4\n",
         [](auto& f) {
             hull(f).materials[0].colourTracks[1].loop = 1;
             hull(f).materials[0].colourTracks[1].loopEnd = 4;
         }},
        {"meshes/Hull/materials[0].ambientTrack.keys[0].inTangent.r: 0 | 1\n",
         [](auto& f) { hull(f).materials[0].colourTracks[1].keys[0][5] = 1; }},
        {"meshes/Hull/materials[0].opacityTrack.keyCount: 1 | 2\n",
         [](auto& f) {
             hull(f).materials[0].opacityTrack.keys.push_back({0, 0, 0, 0});
         }},
        {"meshes/Hull/textures[0].framePeriod: 0.2 | 1\n",
         [](auto& f) { hull(f).textures[0].period = 1; }},
        {"meshes/Hull/textures[0].textureWord: 0 | 7\n",
         [](auto& f) { hull(f).textures[0].word = 7; }},
        {"meshes/Hull/textures[0].slots[2].type: 1 | 5\n",
         [](auto& f) { hull(f).textures[0].slots[2].type = 5; }},
        {"meshes/Hull/textures[0].slots[0].amount: 1 | 0.5\n",
         [](auto& f) { hull(f).textures[0].slots[0].amount = 0.5f; }},
        {"meshes/Hull/textures[0].slots[3].tileV: 1 | 2\n",
         [](auto& f) { hull(f).textures[0].slots[3].constants[3] = 2; }},
        {"meshes/Hull/textures[0].slots[1].angleTrack.keys[0].value: 0 | 1\n",
         [](auto& f) { hull(f).textures[0].slots[1].tracks[4].keys[0][1] = 1; }},
        {"meshes/Hull/vertices[2].position.y: 1 | 1.25\n",
         [](auto& f) { hull(f).vertices[2].position[1] = 1.25f; }},
        {"meshes/Hull/vertices[1].uv[1]: 0 | 0.5\n", [](auto& f) { hull(f).vertices[1].v = 0.5f; }},
        {"meshes/Hull/vertices[0].normal.z: 1 | 0\n",
         [](auto& f) { hull(f).vertices[0].normal[2] = 0; }},
        {"meshes/Hull/faces[0].vertices[1]: 1 | 2\n"
         "meshes/Hull/faces[0].vertices[2]: 2 | 1\n",
         [](auto& f) {
             hull(f).faces[0] = {0, 2, 1};
         }},
        {"meshes/Skin/vertices[0].weights[0]: 0 | 1\n",
         [](auto& f) { skin(f).vertices[0].weights[0] = 65535; }},
        {"meshes/Skin/vertices[0].bones[3]: 0 | 1\n",
         [](auto& f) { skin(f).vertices[0].bones[3] = 1; }},
        {"meshes/Skin/bones[1].name: \"Arm\" | \"Keel\"\n",
         [](auto& f) { skin(f).bones[1].name = "Keel"; }},
        {"meshes/Skin/bones[1].boneInitTM[0][0]: 1 | 2\n",
         [](auto& f) { skin(f).bones[1].boneInit[0] = 2; }},
        {"cameras/Eye/fov: 0.785 | 1\n", [](auto& f) { f.scene.cameras[0].fov = 1; }},
        {"cameras/Eye/targetName: \"Arm\" | \"Keel\"\n",
         [](auto& f) { f.scene.cameras[0].target.targetName = "Keel"; }},
        {"objects/Arm/scale.y: 1 | 2\n", [](auto& f) { f.scene.objects[1].scale[1] = 2; }},
        {"objects/Arm/objectKind: 2 | 4\n", [](auto& f) { f.scene.objects[1].kind = 4; }},
        {"lights/Sun/lightOn: 1 | 0\n", [](auto& f) { f.scene.lights[0].on = 0; }},
        {"lights/Sun/type: 3 | 2\n", [](auto& f) { f.scene.lights[0].type = 2; }},
        {"lights/Sun/diffuse.r: 0 | 1\n", [](auto& f) { f.scene.lights[0].numbers[0] = 1; }},
        {"lights/Sun/range: 0 | 5\n", [](auto& f) { f.scene.lights[0].numbers[18] = 5; }},
        {"lights/Sun/phi: 0 | 5\n", [](auto& f) { f.scene.lights[0].numbers[24] = 5; }},
    };
    for (const auto& c : cases) {
        QsbFile changed = FullBoat();
        c.change(changed);
        EXPECT_EQ(Diff(FullBoat(), changed), c.expected);
    }
}

TEST_F(SceneDiffTest, ObjectsArePairedByNameAndNotByPlace)
{
    QsbFile first;
    first.scene.objects = {InfoHelper("A"), InfoHelper("B"), InfoHelper("C")};
    QsbFile second;
    second.scene.objects = {InfoHelper("C"), InfoHelper("A"), InfoHelper("D")};
    EXPECT_EQ(Diff(first, second), "objects/B: present | -\nobjects/D: - | present\n");
    EXPECT_EQ(count, 2);
}

TEST_F(SceneDiffTest, ObjectsOfOneNameArePairedInTheirOrder)
{
    QsbFile first;
    first.scene.objects = {InfoHelper("A"), InfoHelper("A"), InfoHelper("A")};
    QsbFile second = first;
    second.scene.objects.pop_back();
    second.scene.objects[1].loop = 1;
    EXPECT_EQ(Diff(first, second), "objects/A#2/loop: 0 | 1\nobjects/A#3: present | -\n");
    EXPECT_EQ(Diff(second, first), "objects/A#2/loop: 1 | 0\nobjects/A#3: - | present\n");
}

TEST_F(SceneDiffTest, AnotherOrderOfTheSameObjectsIsADifference)
{
    QsbFile first;
    first.scene.objects = {InfoHelper("A"), InfoHelper("B"), InfoHelper("C")};
    QsbFile second;
    second.scene.objects = {InfoHelper("A"), InfoHelper("C"), InfoHelper("B")};
    EXPECT_EQ(Diff(first, second), "objects/order[1].name: \"B\" | \"C\"\n"
                                   "objects/order[2].name: \"C\" | \"B\"\n");
}

TEST_F(SceneDiffTest, ToleranceIsAbsoluteAndForFloatsOnly)
{
    const QsbFile first = FullBoat();
    QsbFile second = FullBoat();
    second.scene.meshes[0].vertices[2].position[1] = 1.25f;
    EXPECT_NE(Diff(first, second, {0.2, false}), "");
    EXPECT_EQ(Diff(first, second, {0.25, false}), "") << "the difference is just the tolerance";
    second.scene.meshes[0].userTag = 0;
    second.scene.ambient = 0xFF000001;
    EXPECT_EQ(Diff(first, second, {5, false}), "scene/ambientColor: 0xFF000000 | 0xFF000001\n"
                                               "meshes/Hull/userTag: -1 | 0\n");
}

TEST_F(SceneDiffTest, NumbersThatAreNoneEqualEachOther)
{
    QsbFile first;
    QsbFile second;
    first.scene.clip.radius = second.scene.clip.radius = NAN;
    first.scene.clip.center[0] = second.scene.clip.center[0] = INFINITY;
    EXPECT_EQ(Diff(first, second), "");
    second.scene.clip.radius = 1;
    second.scene.clip.center[0] = -INFINITY;
    EXPECT_EQ(Diff(first, second, {1e30, false}), "scene/radius: nan | 1\n"
                                                  "scene/center.x: inf | -inf\n");
}

TEST_F(SceneDiffTest, LongArraysAreCutUnlessAllIsAskedFor)
{
    QsbFile first = InfoBoat();
    QsbMesh& mesh = first.scene.meshes[0];
    mesh.vertices.resize(60);
    for (uint16_t i = 0; i < 20; ++i)
        mesh.faces.push_back({static_cast<uint16_t>(3 * i), static_cast<uint16_t>(3 * i + 1),
                              static_cast<uint16_t>(3 * i + 2)});
    QsbFile second = first;
    for (QsbVertex& vertex : second.scene.meshes[0].vertices)
        vertex.u = 1;
    second.scene.meshes[0].userTag = 4;
    const std::string cut = Diff(first, second);
    EXPECT_EQ(count, 61);
    EXPECT_THAT(cut, HasSubstr("meshes/Hull/vertices[9].uv[0]: 0 | 1\n"
                               "meshes/Hull/vertices: 50 differences more\n"));
    EXPECT_EQ(std::count(cut.begin(), cut.end(), '\n'), 12); // the tag, ten lines, the rest
    const std::string all = Diff(first, second, {0, true});
    EXPECT_EQ(std::count(all.begin(), all.end(), '\n'), 61);
    EXPECT_EQ(count, 61);
}

TEST_F(SceneDiffTest, LayoutsThatDifferAreComparedByWhatBothHave)
{
    const QsbFile first = InfoBoat();
    QsbFile second = InfoBoat();
    second.scene.meshes[0].fvf = 0x12; // without texture coordinates
    EXPECT_EQ(Diff(first, second), "meshes/Hull/fvf: 0x00000112 | 0x00000012\n"
                                   "meshes/Hull/vertices[0].uv: present | -\n"
                                   "meshes/Hull/vertices[1].uv: present | -\n"
                                   "meshes/Hull/vertices[2].uv: present | -\n");
}

TEST_F(SceneDiffTest, GeometryThatTwoClonesShareIsComparedOnce)
{
    QsbFile first = InfoBoat();
    QsbMesh clone = InfoTriangle("Hull2");
    clone.cloneSource = "Hull";
    clone.vertices.clear();
    clone.faces.clear();
    first.scene.meshes.push_back(clone);
    QsbFile second = first;
    second.scene.meshes[0].vertices[0].u = 1;
    EXPECT_EQ(Diff(first, second), "meshes/Hull/vertices[0].uv[0]: 0 | 1\n");
}

TEST_F(SceneDiffTest, PathsAreOneLineWhateverNamesHold)
{
    QsbFile first;
    first.scene.objects = {InfoHelper("a\nb")};
    EXPECT_EQ(Diff(first, QsbFile()), "objects/a\\x0Ab: present | -\n");
}
