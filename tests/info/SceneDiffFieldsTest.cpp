// Each stored field is changed in turn; only that field and what follows from it must be reported.

#include "info/SceneDiff.h"

#include <functional>

#include "tests/info/SceneDiffTesting.h"

namespace {

struct FieldCase {
    const char* expected; ///< the complete text
    std::function<void(QsbFile&)> change;
};

QsbMesh& Hull(QsbFile& file)
{
    return file.scene.meshes[0];
}
QsbMesh& Skin(QsbFile& file)
{
    return file.scene.meshes[1];
}
QsbMesh& Spare(QsbFile& file)
{
    return file.scene.meshes[3];
}

class SceneDiffFields : public SceneDiffTest {
protected:
    void ExpectEach(const std::vector<FieldCase>& cases)
    {
        LoadedScene full;
        Load(full, FullBoat(), "a.qsb");
        for (const FieldCase& c : cases) {
            QsbFile file = FullBoat();
            c.change(file);
            LoadedScene changed;
            Load(changed, file, "b.qsb");
            EXPECT_EQ(Diff(full, changed), c.expected);
        }
    }
};

} // namespace

TEST_F(SceneDiffFields, HeaderAndSettingsAreCompared)
{
    ExpectEach({
        {"header/frameSpeed: 30 | 25\n", [](QsbFile& f) { f.frameSpeed = 25; }},
        {"header/firstFrame: 0 | 15\n", [](QsbFile& f) { f.firstFrame = 15; }},
        {"header/lastFrame: 100 | 99\n", [](QsbFile& f) { f.lastFrame = 99; }},
        {"header/soundFile: \"\" | \"a.wav\"\n", [](QsbFile& f) { f.sound = "a.wav"; }},
        {"header/scriptFile: \"\" | \"a\"\n", [](QsbFile& f) { f.script = "a"; }},
        {"settings/mirrorView: 0 | 1\n", [](QsbFile& f) { f.scene.settings[1] = 1; }},
        {"settings/reserved: 0 | 1\n", [](QsbFile& f) { f.scene.settings[2] = 1; }},
        {"settings/showObjects: -2 | -1\n", [](QsbFile& f) { f.scene.settings[3] = 0xFFFFFFFF; }},
        {"settings/showLights: -2 | 0\n", [](QsbFile& f) { f.scene.settings[4] = 0; }},
        {"settings/useAmbient: 0 | 1\n", [](QsbFile& f) { f.scene.settings[5] = 1; }},
        {"settings/useLights: 1 | 0\n", [](QsbFile& f) { f.scene.settings[6] = 0; }},
        {"settings/useFog: 0 | 1\n", [](QsbFile& f) { f.scene.settings[7] = 1; }},
        {"settings/sortTransparent: 1 | 0\n", [](QsbFile& f) { f.scene.settings[8] = 0; }},
        {"settings/showHierarchy: 0 | 1\n", [](QsbFile& f) { f.scene.settings[9] = 1; }},
        {"settings/fogColor: 0x00000000 | 0x00FFFFFF\n",
         [](QsbFile& f) { f.scene.settings[10] = 0xFFFFFF; }},
        {"settings/fogMode: 1 | 3\n", [](QsbFile& f) { f.scene.settings[11] = 3; }},
        {"settings/fogPerVertex: 1 | 0\n", [](QsbFile& f) { f.scene.settings[12] = 0; }},
        {"settings/fogStart: 0 | 1\n", [](QsbFile& f) { f.scene.settings[13] = 0x3F800000; }},
        {"settings/fogEnd: 1 | 0.5\n", [](QsbFile& f) { f.scene.settings[14] = 0x3F000000; }},
        {"settings/fogDensity: 0.5 | 1\n", [](QsbFile& f) { f.scene.settings[15] = 0x3F800000; }},
        {"settings/drawTransparentOnly: 1 | 0\n", [](QsbFile& f) { f.scene.settings[16] = 0; }},
    });
}

TEST_F(SceneDiffFields, FieldsOfTheSceneAreCompared)
{
    ExpectEach({
        {"scene/position.x: 0 | 1\n", [](QsbFile& f) { f.scene.object.position[0] = 1; }},
        {"scene/loopEnd: 100 | 2\n", [](QsbFile& f) { f.scene.object.loopEnd = 2; }},
        {"scene/posKeys[0].value.x: 0 | 1\n",
         [](QsbFile& f) { f.scene.object.posKeys[0].data[0] = 1; }},
        {"scene/clipMode: 0 | 3\n", [](QsbFile& f) { f.scene.clip.mode = 3; }},
        {"scene/radius: 0 | 3\n", [](QsbFile& f) { f.scene.clip.radius = 3; }},
        {"scene/center.y: 0 | 3\n", [](QsbFile& f) { f.scene.clip.center[1] = 3; }},
        {"scene/boxMin.x: 0 | -3\n", [](QsbFile& f) { f.scene.clip.low[0] = -3; }},
        {"scene/boxMax.z: 0 | 3\n", [](QsbFile& f) { f.scene.clip.high[2] = 3; }},
        {"scene/ambientColor: 0xFF000000 | 0xFF00007B\n",
         [](QsbFile& f) { f.scene.ambient = 0xFF00007B; }},
        {"scene/backgroundColor: 0xFF000000 | 0x00000000\n",
         [](QsbFile& f) { f.scene.background = 0; }},
        {"background.textureWord: 0 | 7\n",
         [](QsbFile& f) { f.scene.backgroundTexture[0].word = 7; }},
        {"background.slots[2].amount: 1 | 0.5\n",
         [](QsbFile& f) { f.scene.backgroundTexture[0].slots[2].amount = 0.5f; }},
        {"background.slots[0].offsetUTrack.loop: 0 | 1\n",
         [](QsbFile& f) { f.scene.backgroundTexture[0].slots[0].tracks[0].loop = 1; }},
    });
}

TEST_F(SceneDiffFields, NodesAreCompared)
{
    ExpectEach({
        {"objects/Arm/objectKind: 2 | 4\n", [](QsbFile& f) { f.scene.objects[1].kind = 4; }},
        {"meshes/Hull/initTM[3][1]: 0 | 5\n", [](QsbFile& f) { Hull(f).object.initTM[13] = 5; }},
        {"meshes/Hull/mirror.y: 1 | -1\n", [](QsbFile& f) { Hull(f).object.mirror[1] = -1; }},
        {"meshes/Hull/position.z: 0 | 1\n", [](QsbFile& f) { Hull(f).object.position[2] = 1; }},
        {"objects/Arm/scale.y: 1 | 2\n", [](QsbFile& f) { f.scene.objects[1].scale[1] = 2; }},
        {"meshes/Hull/rotationAxis.z: 0 | 1\n", [](QsbFile& f) { Hull(f).object.axis[2] = 1; }},
        {"meshes/Hull/rotationAngle: 0 | 1\n", [](QsbFile& f) { Hull(f).object.angle = 1; }},
        {"meshes/Hull/pivotTM[3][0]: 0 | 2\n", [](QsbFile& f) { Hull(f).object.pivot[9] = 2; }},
        {"meshes/Hull/parentName: \"Keel\" | \"Arm\"\n",
         [](QsbFile& f) { Hull(f).object.parentName = "Arm"; }},
        {"meshes/Hull/inheritPosition: 1 | 0\n", [](QsbFile& f) { Hull(f).object.inherit = 14; }},
        {"meshes/Hull/inheritScale: 1 | 0\n", [](QsbFile& f) { Hull(f).object.inherit = 13; }},
        {"meshes/Hull/inheritRotation: 1 | 0\n", [](QsbFile& f) { Hull(f).object.inherit = 11; }},
        {"meshes/Hull/inheritMirror: 1 | 0\n", [](QsbFile& f) { Hull(f).object.inherit = 7; }},
        {"meshes/Hull/posKeyCount: 2 | 1\n", [](QsbFile& f) { Hull(f).object.posKeys.pop_back(); }},
        {"meshes/Hull/rotKeyCount: 1 | 2\n",
         [](QsbFile& f) { Hull(f).object.rotKeys.push_back(QsbRotKey(1)); }},
        {"meshes/Hull/scaleKeyCount: 1 | 0\n",
         [](QsbFile& f) { Hull(f).object.scaleKeys.clear(); }},
        {"meshes/Hull/loop: 0 | 1\n", [](QsbFile& f) { Hull(f).object.loop = 1; }},
        {"meshes/Hull/loopEnd: 100 | 2\n", [](QsbFile& f) { Hull(f).object.loopEnd = 2; }},
    });
}

TEST_F(SceneDiffFields, KeysAreCompared)
{
    ExpectEach({
        {"meshes/Hull/posKeys[1].time: 1 | 3\n",
         [](QsbFile& f) { Hull(f).object.posKeys[1].time = 3; }},
        {"meshes/Hull/posKeys[1].interpolation: 0 | 1\n",
         [](QsbFile& f) { Hull(f).object.posKeys[1].interpolation = 1; }},
        {"meshes/Hull/posKeys[1].value.z: 6 | 7\n",
         [](QsbFile& f) { Hull(f).object.posKeys[1].data[2] = 7; }},
        {"meshes/Hull/posKeys[1].inTangent.y: 0 | 1\n",
         [](QsbFile& f) { Hull(f).object.posKeys[1].data[4] = 1; }},
        {"meshes/Hull/posKeys[1].outTangent.x: 0 | 1\n",
         [](QsbFile& f) { Hull(f).object.posKeys[1].data[6] = 1; }},
        {"meshes/Hull/scaleKeys[0].time: 0 | 3\n",
         [](QsbFile& f) { Hull(f).object.scaleKeys[0].time = 3; }},
        {"meshes/Hull/scaleKeys[0].interpolation: 0 | 1\n",
         [](QsbFile& f) { Hull(f).object.scaleKeys[0].interpolation = 1; }},
        {"meshes/Hull/scaleKeys[0].value.z: 1 | 7\n",
         [](QsbFile& f) { Hull(f).object.scaleKeys[0].data[2] = 7; }},
        {"meshes/Hull/scaleKeys[0].inTangent.y: 0 | 1\n",
         [](QsbFile& f) { Hull(f).object.scaleKeys[0].data[4] = 1; }},
        {"meshes/Hull/scaleKeys[0].outTangent.x: 0 | 1\n",
         [](QsbFile& f) { Hull(f).object.scaleKeys[0].data[6] = 1; }},
        {"meshes/Hull/rotKeys[0].time: 0 | 1\n",
         [](QsbFile& f) { Hull(f).object.rotKeys[0].time = 1; }},
        {"meshes/Hull/rotKeys[0].interpolation: 0 | 1\n",
         [](QsbFile& f) { Hull(f).object.rotKeys[0].interpolation = 1; }},
        {"meshes/Hull/rotKeys[0].axis.z: 0 | 2\n",
         [](QsbFile& f) { Hull(f).object.rotKeys[0].data[2] = 2; }},
        {"meshes/Hull/rotKeys[0].angle: 0 | 1\n",
         [](QsbFile& f) { Hull(f).object.rotKeys[0].data[3] = 1; }},
        {"meshes/Hull/rotKeys[0].tension: 0 | 1\n",
         [](QsbFile& f) { Hull(f).object.rotKeys[0].data[4] = 1; }},
        {"meshes/Hull/rotKeys[0].continuity: 0 | 1\n",
         [](QsbFile& f) { Hull(f).object.rotKeys[0].data[5] = 1; }},
        {"meshes/Hull/rotKeys[0].bias: 0 | 1\n",
         [](QsbFile& f) { Hull(f).object.rotKeys[0].data[6] = 1; }},
        {"meshes/Hull/rotKeys[0].easeIn: 0 | 1\n",
         [](QsbFile& f) { Hull(f).object.rotKeys[0].data[7] = 1; }},
        {"meshes/Hull/rotKeys[0].easeOut: 0 | 1\n",
         [](QsbFile& f) { Hull(f).object.rotKeys[0].data[8] = 1; }},
        {"meshes/Hull/rotKeys[0].rotation.x: 0 | 1\n",
         [](QsbFile& f) { Hull(f).object.rotKeys[0].data[9] = 1; }},
        {"meshes/Hull/rotKeys[0].inControl.y: 0 | 1\n",
         [](QsbFile& f) { Hull(f).object.rotKeys[0].data[14] = 1; }},
        {"meshes/Hull/rotKeys[0].outControl.z: 0 | 1\n",
         [](QsbFile& f) { Hull(f).object.rotKeys[0].data[19] = 1; }},
    });
}

TEST_F(SceneDiffFields, MeshesAreCompared)
{
    ExpectEach({
        {"meshes/Skin/clipMode: 0 | 1\n", [](QsbFile& f) { Skin(f).clip.mode = 1; }},
        {"meshes/Skin/ownGeometry: 1 | 0\n", [](QsbFile& f) { Skin(f).ownGeometry = 0; }},
        {"meshes/Skin/visible: 1 | 0\n", [](QsbFile& f) { Skin(f).visible = 0; }},
        {"meshes/Spare/hasTransparency: 0 | 1\n", [](QsbFile& f) { Spare(f).hasTransparency = 1; }},
        {"meshes/Spare/materialCount: 2 | 3\n",
         [](QsbFile& f) {
             Spare(f).materials.resize(3);
             Spare(f).textures.resize(3);
         }},
        {"meshes/Buoy/cloneSource: \"Hull\" | \"Spare\"\n",
         [](QsbFile& f) { f.scene.meshes[2].cloneSource = "Spare"; }},
        {"meshes/Skin/boneCount: 2 | 3\n",
         [](QsbFile& f) { Skin(f).bones.push_back(Skin(f).bones[1]); }},
        {"meshes/Spare/vertexCount: 3 | 4\n", [](QsbFile& f) { Spare(f).vertices.resize(4); }},
        {"meshes/Spare/faceCount: 1 | 2\n",
         [](QsbFile& f) {
             Spare(f).faces.push_back({0, 1, 2});
         }},
        {"meshes/Spare/fvf: 0x00000112 | 0x000001D2\n", [](QsbFile& f) { Spare(f).fvf = 0x1D2; }},
        {"meshes/Spare/userTag: -1 | 9\n", [](QsbFile& f) { Spare(f).userTag = 9; }},
        {"meshes/Skin/bones[1].name: \"Arm\" | \"Keel\"\n",
         [](QsbFile& f) { Skin(f).bones[1].name = "Keel"; }},
        {"meshes/Skin/bones[1].boneInitTM[0][0]: 1 | 2\n",
         [](QsbFile& f) { Skin(f).bones[1].boneInit[0] = 2; }},
        {"meshes/Skin/bones[1].meshInitTM[3][2]: 0 | 4\n",
         [](QsbFile& f) { Skin(f).bones[1].meshInit[14] = 4; }},
        {"meshes/Hull/vertices[2].position.y: 1 | 1.25\n",
         [](QsbFile& f) { Hull(f).vertices[2].position[1] = 1.25f; }},
        {"meshes/Hull/vertices[1].uv[1]: 0 | 0.5\n",
         [](QsbFile& f) { Hull(f).vertices[1].v = 0.5f; }},
        {"meshes/Hull/vertices[0].normal.z: 1 | 0\n",
         [](QsbFile& f) { Hull(f).vertices[0].normal[2] = 0; }},
        {"meshes/Skin/vertices[0].weights[0]: 0 | 1\n",
         [](QsbFile& f) { Skin(f).vertices[0].weights[0] = 65535; }},
        {"meshes/Skin/vertices[0].bones[3]: 0 | 1\n",
         [](QsbFile& f) { Skin(f).vertices[0].bones[3] = 1; }},
        {"meshes/Hull/faces[0].vertices[1]: 1 | 2\n"
         "meshes/Hull/faces[0].vertices[2]: 2 | 1\n",
         [](QsbFile& f) {
             Hull(f).faces[0] = {0, 2, 1};
         }},
        {"meshes/Spare/faces[0].attribute: 0 | 1\n", [](QsbFile& f) { Spare(f).attributes = {1}; }},
    });
}

TEST_F(SceneDiffFields, MaterialsAreCompared)
{
    ExpectEach({
        {"meshes/Skin/materials[0].diffuse.g: 1 | 0.5\n",
         [](QsbFile& f) { Skin(f).materials[0].colors[1] = 0.5f; }},
        {"meshes/Skin/materials[0].ambient.b: 1 | 0.5\n",
         [](QsbFile& f) { Skin(f).materials[0].colors[6] = 0.5f; }},
        {"meshes/Skin/materials[0].specular.r: 1 | 0.5\n",
         [](QsbFile& f) { Skin(f).materials[0].colors[8] = 0.5f; }},
        {"meshes/Skin/materials[0].emissive.a: 1 | 0.5\n",
         [](QsbFile& f) { Skin(f).materials[0].colors[15] = 0.5f; }},
        {"meshes/Skin/materials[0].power: 0 | 8\n",
         [](QsbFile& f) { Skin(f).materials[0].power = 8; }},
        {"meshes/Skin/materials[0].twoSided: 0 | 1\n",
         [](QsbFile& f) { Skin(f).materials[0].twoSided = 1; }},
        {"meshes/Spare/hasTransparency: 0 | 1\n"
         "meshes/Spare/materials[1].transparent: 0 | 1\n",
         [](QsbFile& f) { Spare(f).materials[1].transparent = 1; }},
        {"meshes/Skin/materials[0].reflectionSet: -1 | 0\n",
         [](QsbFile& f) { Skin(f).materials[0].reflectionSet = 0; }},
        {"meshes/Skin/materials[0].reflectionAmount: 1 | 0.5\n",
         [](QsbFile& f) { Skin(f).materials[0].reflectionAmount = 0.5f; }},
        {"meshes/Skin/materials[0].transparency: 0 | 0.25\n",
         [](QsbFile& f) { Skin(f).materials[0].transparency = 0.25f; }},
        {"meshes/Skin/materials[0].mirrorU: 0 | 1\n",
         [](QsbFile& f) { Skin(f).materials[0].flags[0] = 1; }},
        {"meshes/Skin/materials[0].mirrorV: 0 | 1\n",
         [](QsbFile& f) { Skin(f).materials[0].flags[1] = 1; }},
        {"meshes/Skin/materials[0].tileU: 1 | 0\n",
         [](QsbFile& f) { Skin(f).materials[0].flags[2] = 0; }},
        {"meshes/Skin/materials[0].tileV: 1 | 0\n",
         [](QsbFile& f) { Skin(f).materials[0].flags[3] = 0; }},
        {"meshes/Skin/materials[0].addEmissive: 1 | 0\n",
         [](QsbFile& f) { Skin(f).materials[0].flags[4] = 0; }},
        {"meshes/Skin/materials[0].transparencyType: 0 | 2\n",
         [](QsbFile& f) { Skin(f).materials[0].transparencyType = 2; }},
        {"meshes/Hull/materials[0].effect: \"waves.fx\" | \"wave.fx\"\n",
         [](QsbFile& f) { Hull(f).materials[0].effect = "wave.fx"; }},
        {"meshes/Hull/materials[0].float3: 0 | 1\n",
         [](QsbFile& f) { Hull(f).materials[0].values[2].number = 1; }},
        {"meshes/Hull/materials[0].float3: 0 | -\n",
         [](QsbFile& f) { Hull(f).materials[0].values[2].hasFloat = false; }},
        {"meshes/Hull/materials[0].float8: - | 0\n",
         [](QsbFile& f) { Hull(f).materials[0].values[7].hasFloat = true; }},
        {"meshes/Hull/materials[0].vector1: - | present\n",
         [](QsbFile& f) { Hull(f).materials[0].values[0].hasVector = true; }},
        {"meshes/Hull/materials[0].vector4[2]: 0 | 1\n",
         [](QsbFile& f) { Hull(f).materials[0].values[3].vector[2] = 1; }},
        {"meshes/Hull/materials[0].vector8: - | present\n",
         [](QsbFile& f) { Hull(f).materials[0].values[7].hasVector = true; }},
    });
}

TEST_F(SceneDiffFields, MaterialTracksAreCompared)
{
    ExpectEach({
        {"meshes/Hull/materials[0].diffuseTrack.interpolation: 1 | 2\n",
         [](QsbFile& f) { Hull(f).materials[0].colorTracks[0].interpolation = 2; }},
        {"meshes/Hull/materials[0].ambientTrack.loop: 0 | 1\n"
         "meshes/Hull/materials[0].ambientTrack.loopEnd: 0 | 4\n",
         [](QsbFile& f) {
             Hull(f).materials[0].colorTracks[1].loop = 1;
             Hull(f).materials[0].colorTracks[1].loopEnd = 4;
         }},
        {"meshes/Hull/materials[0].specularTrack.secondFlag: 0 | 1\n",
         [](QsbFile& f) { Hull(f).materials[0].colorTracks[2].secondFlag = 1; }},
        {"meshes/Hull/materials[0].selfIllumTrack.interpolation: 1 | 0\n",
         [](QsbFile& f) { Hull(f).materials[0].colorTracks[3].interpolation = 0; }},
        {"meshes/Hull/materials[0].ambientTrack.keyCount: 1 | 2\n",
         [](QsbFile& f) {
             Hull(f).materials[0].colorTracks[1].keys.push_back(std::vector<float>(13));
         }},
        {"meshes/Hull/materials[0].ambientTrack.keys[0].time: 0 | 1\n",
         [](QsbFile& f) { Hull(f).materials[0].colorTracks[1].keys[0][0] = 1; }},
        {"meshes/Hull/materials[0].ambient.g: 0 | 1\n"
         "meshes/Hull/materials[0].ambientTrack.keys[0].value.g: 0 | 1\n",
         [](QsbFile& f) { Hull(f).materials[0].colorTracks[1].keys[0][2] = 1; }},
        {"meshes/Hull/materials[0].ambientTrack.keys[0].inTangent.r: 0 | 1\n",
         [](QsbFile& f) { Hull(f).materials[0].colorTracks[1].keys[0][5] = 1; }},
        {"meshes/Hull/materials[0].ambientTrack.keys[0].outTangent.a: 0 | 1\n",
         [](QsbFile& f) { Hull(f).materials[0].colorTracks[1].keys[0][12] = 1; }},
        {"meshes/Hull/materials[0].opacityTrack.keyCount: 1 | 2\n",
         [](QsbFile& f) {
             Hull(f).materials[0].opacityTrack.keys.push_back({0, 0, 0, 0});
         }},
        {"meshes/Hull/materials[0].opacityTrack.interpolation: 1 | 2\n",
         [](QsbFile& f) { Hull(f).materials[0].opacityTrack.interpolation = 2; }},
        {"meshes/Hull/materials[0].opacityTrack.loop: 0 | 1\n",
         [](QsbFile& f) { Hull(f).materials[0].opacityTrack.loop = 1; }},
        {"meshes/Hull/materials[0].opacityTrack.secondFlag: 0 | 1\n",
         [](QsbFile& f) { Hull(f).materials[0].opacityTrack.secondFlag = 1; }},
        {"meshes/Hull/materials[0].opacityTrack.loopEnd: 0 | 4\n",
         [](QsbFile& f) { Hull(f).materials[0].opacityTrack.loopEnd = 4; }},
        {"meshes/Hull/materials[0].opacityTrack.keys[0].time: 0 | 1\n",
         [](QsbFile& f) { Hull(f).materials[0].opacityTrack.keys[0][0] = 1; }},
        {"meshes/Hull/materials[0].transparency: 0 | 0.5\n"
         "meshes/Hull/materials[0].opacityTrack.keys[0].value: 0 | 0.5\n",
         [](QsbFile& f) { Hull(f).materials[0].opacityTrack.keys[0][1] = 0.5f; }},
        {"meshes/Hull/materials[0].opacityTrack.keys[0].inTangent: 0 | 1\n",
         [](QsbFile& f) { Hull(f).materials[0].opacityTrack.keys[0][2] = 1; }},
        {"meshes/Hull/materials[0].opacityTrack.keys[0].outTangent: 0 | 1\n",
         [](QsbFile& f) { Hull(f).materials[0].opacityTrack.keys[0][3] = 1; }},
    });
}

TEST_F(SceneDiffFields, TexturesAreCompared)
{
    ExpectEach({
        {"meshes/Hull/textures[0].textureWord: 0 | 7\n",
         [](QsbFile& f) { Hull(f).textures[0].word = 7; }},
        {"meshes/Hull/textures[0].sequenceStart: 0 | 1\n",
         [](QsbFile& f) { Hull(f).textures[0].start = 1; }},
        {"meshes/Hull/textures[0].framePeriod: 0.2 | 1\n",
         [](QsbFile& f) { Hull(f).textures[0].period = 1; }},
        {"meshes/Hull/textures[0].sequenceMode: 0 | 2\n",
         [](QsbFile& f) { Hull(f).textures[0].mode = 2; }},
        {"meshes/Hull/textures[0].textureValue: 0 | 1\n",
         [](QsbFile& f) { Hull(f).textures[0].value = 1; }},
        {"meshes/Hull/textures[0].loadOptions: 0 | 1\n",
         [](QsbFile& f) { Hull(f).textures[0].options = 1; }},
        {"meshes/Hull/textures[0].slots[3].file: \"ripple.bmp\" | \"wave.bmp\"\n",
         [](QsbFile& f) { Hull(f).textures[0].slots[3].file = "wave.bmp"; }},
        {"meshes/Hull/textures[0].slots[2].type: 1 | 5\n",
         [](QsbFile& f) { Hull(f).textures[0].slots[2].type = 5; }},
        {"meshes/Hull/textures[0].slots[0].amount: 1 | 0.5\n",
         [](QsbFile& f) { Hull(f).textures[0].slots[0].amount = 0.5f; }},
        {"meshes/Hull/textures[0].slots[0].offsetU: 0 | 2\n",
         [](QsbFile& f) { Hull(f).textures[0].slots[0].constants[0] = 2; }},
        {"meshes/Hull/textures[0].slots[1].offsetV: 0 | 2\n",
         [](QsbFile& f) { Hull(f).textures[0].slots[1].constants[1] = 2; }},
        {"meshes/Hull/textures[0].slots[2].tileU: 1 | 2\n",
         [](QsbFile& f) { Hull(f).textures[0].slots[2].constants[2] = 2; }},
        {"meshes/Hull/textures[0].slots[3].tileV: 1 | 2\n",
         [](QsbFile& f) { Hull(f).textures[0].slots[3].constants[3] = 2; }},
        {"meshes/Hull/textures[0].slots[3].angle: 0 | 2\n",
         [](QsbFile& f) { Hull(f).textures[0].slots[3].constants[4] = 2; }},
        {"meshes/Hull/textures[0].slots[0].offsetUTrack.loop: 0 | 1\n",
         [](QsbFile& f) { Hull(f).textures[0].slots[0].tracks[0].loop = 1; }},
        {"meshes/Hull/textures[0].slots[1].offsetVTrack.loop: 0 | 1\n",
         [](QsbFile& f) { Hull(f).textures[0].slots[1].tracks[1].loop = 1; }},
        {"meshes/Hull/textures[0].slots[2].tileUTrack.loop: 0 | 1\n",
         [](QsbFile& f) { Hull(f).textures[0].slots[2].tracks[2].loop = 1; }},
        {"meshes/Hull/textures[0].slots[3].tileVTrack.loop: 0 | 1\n",
         [](QsbFile& f) { Hull(f).textures[0].slots[3].tracks[3].loop = 1; }},
        {"meshes/Hull/textures[0].slots[1].angleTrack.keys[0].value: 0 | 1\n",
         [](QsbFile& f) { Hull(f).textures[0].slots[1].tracks[4].keys[0][1] = 1; }},
    });
}

TEST_F(SceneDiffFields, CamerasObjectsAndLightsAreCompared)
{
    ExpectEach({
        {"cameras/Eye/position.y: 0 | 1\n",
         [](QsbFile& f) { f.scene.cameras[0].target.object.position[1] = 1; }},
        {"cameras/Eye/posKeys[0].value.z: 0 | 1\n",
         [](QsbFile& f) { f.scene.cameras[0].target.object.posKeys[0].data[2] = 1; }},
        {"cameras/Eye/targetName: \"Arm\" | \"Keel\"\n",
         [](QsbFile& f) { f.scene.cameras[0].target.targetName = "Keel"; }},
        {"cameras/Eye/fov: 0.785 | 1\n", [](QsbFile& f) { f.scene.cameras[0].fov = 1; }},
        {"objects/Arm/posKeys[0].value.x: 0 | 1\n",
         [](QsbFile& f) { f.scene.objects[1].posKeys[0].data[0] = 1; }},
        {"lights/Sun/loop: 0 | 1\n", [](QsbFile& f) { f.scene.lights[0].target.object.loop = 1; }},
        {"lights/Sun/targetName: \"\" | \"Arm\"\n",
         [](QsbFile& f) { f.scene.lights[0].target.targetName = "Arm"; }},
        {"lights/Sun/lightOn: 1 | 0\n", [](QsbFile& f) { f.scene.lights[0].on = 0; }},
        {"lights/Sun/lightMode: 1 | 0\n", [](QsbFile& f) { f.scene.lights[0].mode = 0; }},
        {"lights/Sun/type: 3 | 2\n", [](QsbFile& f) { f.scene.lights[0].type = 2; }},
        {"lights/Sun/diffuse.r: 0 | 5\n", [](QsbFile& f) { f.scene.lights[0].numbers[0] = 5; }},
        {"lights/Sun/specular.g: 0 | 5\n", [](QsbFile& f) { f.scene.lights[0].numbers[5] = 5; }},
        {"lights/Sun/ambient.b: 0 | 5\n", [](QsbFile& f) { f.scene.lights[0].numbers[10] = 5; }},
        {"lights/Sun/range: 0 | 5\n", [](QsbFile& f) { f.scene.lights[0].numbers[18] = 5; }},
        {"lights/Sun/falloff: 1 | 5\n", [](QsbFile& f) { f.scene.lights[0].numbers[19] = 5; }},
        {"lights/Sun/attenuation0: 0 | 5\n", [](QsbFile& f) { f.scene.lights[0].numbers[20] = 5; }},
        {"lights/Sun/attenuation1: 0 | 5\n", [](QsbFile& f) { f.scene.lights[0].numbers[21] = 5; }},
        {"lights/Sun/attenuation2: 0 | 5\n", [](QsbFile& f) { f.scene.lights[0].numbers[22] = 5; }},
        {"lights/Sun/theta: 0 | 5\n", [](QsbFile& f) { f.scene.lights[0].numbers[23] = 5; }},
        {"lights/Sun/phi: 0 | 5\n", [](QsbFile& f) { f.scene.lights[0].numbers[24] = 5; }},
        {"lights/Sun/lightPosition.x: 0 | 1\n"
         "lights/Sun/posKeys[0].value.x: 0 | 1\n",
         [](QsbFile& f) { f.scene.lights[0].target.object.posKeys[0].data[0] = 1; }},
        {"lights/Sun/scale.z: 1 | 2\n"
         "lights/Sun/lightDirection.z: -1 | -2\n",
         [](QsbFile& f) { f.scene.lights[0].target.object.scale[2] = 2; }},
    });
}

// A load sets it to 0, so files cannot differ in it.
TEST_F(SceneDiffFields, SettingThatALoadChangesIsComparedAsItIs)
{
    LoadedScene first;
    LoadedScene second;
    Load(first, FullBoat(), "a.qsb");
    Load(second, FullBoat(), "b.qsb");
    second.scene.settings.clearBackground = 1;
    EXPECT_EQ(Diff(first, second), "settings/clearBackground: 0 | 1\n");
}
