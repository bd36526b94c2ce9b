#include <cstring>

#include "qsb/QSB_InputFile.h"
#include "tests/qsb/SceneFileTest.h"

#include <gmock/gmock.h>

using testing::HasSubstr;

namespace {

class KRE_3dObjectFileTest : public SceneFileTest {
protected:
    /// A file with one object named "Mast".
    static QsbFile FileWith(QsbObject object)
    {
        QsbFile file;
        object.name = "Mast";
        file.scene.objects = {object};
        return file;
    }
    KRE_3dObject& LoadObject(const QsbObject& object)
    {
        Load(scene, FileWith(object));
        return *scene.objects.Get(0);
    }
    /// The error of a load if the number at a field of the object is replaced.
    std::string ErrorWith(const QsbObject& object, const std::string& field, int32_t value)
    {
        return LoadError(MakeQsb(FileWith(object)).WithInt32("object0." + field, value));
    }

    KRE_3dScene scene;
};

/// `count` consecutive numbers from `first` on, so that a misplaced one is noticed.
template <size_t kCount>
std::array<float, kCount> Counting(float first)
{
    std::array<float, kCount> values;
    for (float& value : values)
        value = first++;
    return values;
}

} // namespace

TEST_F(KRE_3dObjectFileTest, AllFieldsComeFromTheirPlaces)
{
    QsbObject object;
    object.kind = 2;
    object.initTM = Counting<16>(100);
    object.mirror = {-1, 1, -1};
    object.position = {1, 2, 3};
    object.scale = {4, 5, 6};
    object.axis = {0, 0, 1};
    object.angle = 0.5f;
    object.pivot = Counting<12>(200);
    object.parentName = "Deck";
    object.inherit = 5;
    object.loop = 3;
    object.loopEnd = 7.5f;
    const KRE_3dObject& loaded = LoadObject(object);

    EXPECT_EQ(loaded.objectKind, kObjectBone);
    EXPECT_EQ(loaded.initTM._11, 100);
    EXPECT_EQ(loaded.initTM._12, 101);
    EXPECT_EQ(loaded.initTM._44, 115);
    EXPECT_EQ(loaded.mirror, D3DXVECTOR3(-1, 1, -1));
    EXPECT_EQ(loaded.position, D3DXVECTOR3(1, 2, 3));
    EXPECT_EQ(loaded.scale, D3DXVECTOR3(4, 5, 6));
    EXPECT_EQ(loaded.rotationAxis, D3DXVECTOR3(0, 0, 1));
    EXPECT_EQ(loaded.rotationAngle, 0.5f);
    EXPECT_EQ(loaded.pivotTM._13, 202);
    EXPECT_EQ(loaded.pivotTM._21, 203);
    EXPECT_EQ(loaded.pivotTM._43, 211);
    EXPECT_STREQ(loaded.parentName.c_str(), "Deck");
    EXPECT_EQ(loaded.inheritPosition, 1);
    EXPECT_EQ(loaded.inheritScale, 0);
    EXPECT_EQ(loaded.inheritRotation, 1);
    EXPECT_EQ(loaded.inheritMirror, 0);
    EXPECT_EQ(loaded.loop, 3);
    EXPECT_EQ(loaded.loopEnd, 7.5f);
}

TEST_F(KRE_3dObjectFileTest, TheFourthColumnOfThePivotIsThatOfAnIdentity)
{
    const KRE_3dObject& loaded = LoadObject(QsbObject());
    EXPECT_EQ(loaded.pivotTM._14, 0);
    EXPECT_EQ(loaded.pivotTM._24, 0);
    EXPECT_EQ(loaded.pivotTM._34, 0);
    EXPECT_EQ(loaded.pivotTM._44, 1);
}

TEST_F(KRE_3dObjectFileTest, EachInheritFlagIsABit)
{
    for (uint8_t flags = 0; flags < 16; ++flags) {
        QsbObject object;
        object.inherit = flags;
        const KRE_3dObject& loaded = LoadObject(object);
        EXPECT_EQ(loaded.inheritPosition, flags & 1);
        EXPECT_EQ(loaded.inheritScale, flags >> 1 & 1);
        EXPECT_EQ(loaded.inheritRotation, flags >> 2 & 1);
        EXPECT_EQ(loaded.inheritMirror, flags >> 3 & 1);
        QsbFile expected = FileWith(object);
        expected.scene.object.name = "scene.qsb"; // the path of the load
        EXPECT_EQ(QsbDifference(Saved(scene), MakeQsb(expected).bytes), "");
    }
}

TEST_F(KRE_3dObjectFileTest, AnObjectIsEvaluatedAndDirtyAfterwards)
{
    // Read on its own, without what a scene does afterwards.
    QsbObject object;
    object.position = {1, 2, 3};
    const QsbImage image = MakeQsb(FileWith(object));
    directory.Write("object", image.bytes.substr(image.at.at("object0.read id")));
    QSB_InputFile file;
    file.Open("object", true, false, true);
    KRE_3dObject loaded;
    loaded.Load(file);
    EXPECT_EQ(loaded.worldTM._42, 2);
    EXPECT_EQ(loaded.dirty, 1);
}

TEST_F(KRE_3dObjectFileTest, AnObjectIsResetBeforeItIsRead)
{
    const QsbImage image = MakeQsb(FileWith(QsbObject()));
    directory.Write("object", image.bytes.substr(image.at.at("object0.read id")));
    QSB_InputFile file;
    file.Open("object", true, false, true);
    KRE_3dObject loaded;
    loaded.AddPosKey(KRE_PosKeyData());
    loaded.parent = &scene;
    loaded.frozen = 1;
    loaded.Load(file);
    EXPECT_EQ(loaded.posKeyCount, 0);
    EXPECT_FALSE(loaded.posKeys);
    EXPECT_EQ(loaded.parent, nullptr);
    EXPECT_EQ(loaded.frozen, 0);
}

TEST_F(KRE_3dObjectFileTest, ATargetObjectForgetsItsTargetBeforeItIsRead)
{
    // The stored pose has no rotation: the object looks along its own -z, which is that of the
    // world.
    QsbFile file;
    file.scene.cameras.resize(1);
    const QsbImage image = MakeQsb(file);
    directory.Write("object", image.bytes.substr(image.at.at("camera0.read id")));
    QSB_InputFile bytes;
    bytes.Open("object", true, false, true);
    KRE_Target3dObject loaded;
    loaded.target = &scene;
    loaded.targetName = "Buoy";
    loaded.Load(bytes);
    EXPECT_EQ(loaded.target, nullptr);
    EXPECT_TRUE(loaded.targetName.IsEmpty());
    EXPECT_EQ(loaded.direction, D3DXVECTOR3(0, 0, -1));
    EXPECT_EQ(loaded.up, D3DXVECTOR3(0, 1, 0));
}

TEST_F(KRE_3dObjectFileTest, KeysMayFillTheFileToItsEnd)
{
    // A position key takes 43 bytes: time, kind, nine floats and a byte that says whether another
    // follows. With this many keys, one more byte each would exceed the file.
    QsbObject object;
    for (int i = 0; i < 5000; ++i)
        object.posKeys.push_back(QsbVectorKey(static_cast<float>(i), {1, 2, 3}));
    const QsbImage image = MakeQsb(FileWith(object));
    const size_t behindCount = image.at.at("object0.position count") + 4;
    ASSERT_LT(image.bytes.size() - behindCount, size_t{5000} * 44);
    EXPECT_EQ(LoadObject(object).posKeyCount, 5000);
}

TEST_F(KRE_3dObjectFileTest, AWrongReadIdIsAnError)
{
    QsbObject object;
    object.readId = 0x1235;
    EXPECT_EQ(LoadError(MakeQsb(FileWith(object)).bytes),
              "*undefined*: Invalid file read id, file: scene.qsb");
}

TEST_F(KRE_3dObjectFileTest, KeysComeFromTheirPlaces)
{
    QsbObject object;
    object.posKeys = {QsbVectorKey(0.5f, {1, 2, 3}), QsbVectorKey(1.5f, {4, 5, 6})};
    object.posKeys[1].interpolation = 1;
    object.posKeys[1].data = {1, 2, 3, 4, 5, 6, 7, 8, 9};
    object.scaleKeys = {QsbVectorKey(2, {7, 8, 9})};
    object.rotKeys = {QsbRotKey(3)};
    object.rotKeys[0].interpolation = 2;
    for (int i = 0; i < 9; ++i)
        object.rotKeys[0].data[static_cast<size_t>(i)] = static_cast<float>(i + 1);
    object.rotKeys[0].data[13] = 13;
    object.rotKeys[0].data[20] = 20;
    const KRE_3dObject& loaded = LoadObject(object);

    EXPECT_EQ(loaded.posKeyCount, 2);
    EXPECT_EQ(loaded.posKeys.Head()->time, 0.5f);
    const KRE_PosKeyData& key = *loaded.posKeys.Tail();
    EXPECT_EQ(key.time, 1.5f);
    EXPECT_EQ(key.interpolation, kKeyBezier);
    EXPECT_EQ(key.value, D3DXVECTOR3(1, 2, 3));
    EXPECT_EQ(key.inTangent, D3DXVECTOR3(4, 5, 6));
    EXPECT_EQ(key.outTangent, D3DXVECTOR3(7, 8, 9));
    EXPECT_EQ(loaded.scaleKeys.Head()->value, D3DXVECTOR3(7, 8, 9));
    const KRE_RotKeyData& turn = *loaded.rotKeys.Head();
    EXPECT_EQ(turn.interpolation, kKeyTcb);
    EXPECT_EQ(turn.axis, D3DXVECTOR3(1, 2, 3));
    EXPECT_EQ(turn.angle, 4);
    EXPECT_EQ(turn.tension, 5);
    EXPECT_EQ(turn.continuity, 6);
    EXPECT_EQ(turn.bias, 7);
    EXPECT_EQ(turn.easeIn, 8);
    EXPECT_EQ(turn.easeOut, 9);
    EXPECT_EQ(turn.rotation.w, 1);
    EXPECT_EQ(turn.inControl.x, 13);
    EXPECT_EQ(turn.outControl.w, 20);
}

TEST_F(KRE_3dObjectFileTest, TheMoreByteEndsAChainWhateverTheCount)
{
    QsbObject object;
    object.posKeys = {QsbVectorKey(0, {0, 0, 0}), QsbVectorKey(1, {0, 0, 0})};
    object.rotKeys = {QsbRotKey(0), QsbRotKey(1)};
    object.scaleKeys = {QsbVectorKey(0, {0, 0, 0}), QsbVectorKey(1, {0, 0, 0})};
    EXPECT_EQ(ErrorWith(object, "position count", 1), "Mast: Check: Pos key numbers don't match");
    EXPECT_EQ(ErrorWith(object, "rotation count", 1), "Mast: Check: Rot key numbers don't match");
    EXPECT_EQ(ErrorWith(object, "scale count", 1), "Mast: Check: Scale key numbers don't match");
}

TEST_F(KRE_3dObjectFileTest, AnEndlessChainEndsWithTheFile)
{
    QsbObject object;
    object.scaleKeys = {QsbVectorKey(0, {0, 0, 0})};
    const QsbImage image = MakeQsb(FileWith(object));
    std::string bytes = image.With("object0.scale end", "\1");
    bytes.resize(image.at.at("object0.scale end") + 1); // a chain up to the end of the file
    for (int i = 0; i < 100; ++i)
        bytes += std::string(42, '\0') + "\1";
    EXPECT_EQ(LoadError(bytes), "scene.qsb: Error reading from file");
}

TEST_F(KRE_3dObjectFileTest, CountsOfKeysAreCheckedAgainstTheBytesLeft)
{
    for (const char* track : {"position", "rotation", "scale"}) {
        const std::string field = std::string(track) + " count";
        EXPECT_EQ(ErrorWith(QsbObject(), field, -1),
                  "Mast: File 'scene.qsb': Invalid number of " + std::string(track) + " keys: -1");
        EXPECT_THAT(ErrorWith(QsbObject(), field, INT32_MAX),
                    HasSubstr("Mast: File 'scene.qsb': Invalid number of " + std::string(track) +
                              " keys: 2147483647, with "));
    }
}

TEST_F(KRE_3dObjectFileTest, LengthsOfTextsAreCheckedAgainstTheBytesLeft)
{
    EXPECT_THAT(ErrorWith(QsbObject(), "name", 100000),
                HasSubstr("File 'scene.qsb': Invalid text length: 100000, with "));
    EXPECT_THAT(ErrorWith(QsbObject(), "parent", INT32_MAX),
                HasSubstr("Mast: File 'scene.qsb': Invalid text length: 2147483647, with "));
}

TEST_F(KRE_3dObjectFileTest, ATextOfNegativeLengthIsEmptyAndTakesFourBytes)
{
    QsbObject object;
    const QsbImage image = MakeQsb(FileWith(object));
    LoadBytes(scene, image.WithInt32("object0.parent", -5));
    EXPECT_TRUE(scene.objects.Get(0)->parentName.IsEmpty());
}

TEST_F(KRE_3dObjectFileTest, AWindowCutsTheKeys)
{
    QsbObject object;
    object.posKeys = {QsbVectorKey(0, {0, 0, 0}), QsbVectorKey(1, {1, 0, 0}),
                      QsbVectorKey(2, {2, 0, 0}), QsbVectorKey(3, {3, 0, 0})};
    const QsbImage image = MakeQsb(FileWith(object));
    directory.Write("object", image.bytes.substr(image.at.at("object0.read id")));
    QSB_InputFile file;
    file.Open("object", true, false, true);
    file.cutToWindow = true;
    file.windowStart = 1;
    file.windowEnd = 2;
    KRE_3dObject loaded;
    loaded.Load(file);
    // The key at 0 is dropped, since the next one is not after the start; of those after the end,
    // the last one has no next and stays.
    EXPECT_EQ(loaded.posKeyCount, 3);
    EXPECT_EQ(loaded.posKeys.Head()->value.x, 1);
    EXPECT_EQ(loaded.posKeys.Head()->time, 0);
}

// ---- Saving

TEST_F(KRE_3dObjectFileTest, CountersThatDoNotFitAreErrorsOfTheSave)
{
    QsbObject object;
    object.posKeys = object.scaleKeys = {QsbVectorKey(0, {0, 0, 0}), QsbVectorKey(1, {0, 0, 0})};
    object.rotKeys = {QsbRotKey(0), QsbRotKey(1)};
    KRE_3dObject& loaded = LoadObject(object);
    loaded.scaleKeyCount = 1;
    EXPECT_EQ(ErrorText([&] { Saved(scene); }), "Mast: numScaleKey does not match actual size");
    loaded.rotKeyCount = 3;
    EXPECT_EQ(ErrorText([&] { Saved(scene); }), "Mast: numRotKey does not match actual size");
    loaded.posKeyCount = 0;
    EXPECT_EQ(ErrorText([&] { Saved(scene); }), "Mast: numPosKey does not match actual size");
}

TEST_F(KRE_3dObjectFileTest, AnAbsentListWritesNothingWhateverTheCounter)
{
    KRE_3dObject& loaded = LoadObject(QsbObject());
    const std::string before = Saved(scene);
    loaded.posKeyCount = 5;
    EXPECT_EQ(Saved(scene), before);
}

TEST_F(KRE_3dObjectFileTest, AMillionKeysAreSavedAndLoadedByLoops)
{
    constexpr int32_t kKeys = 1000000;
    constexpr int32_t kTurns = 100000; // fewer of the other kind, to spare the disk
    auto* object = scene.objects.GetSlot(scene.objects.Add());
    KRE_PosKeyData key;
    KRE_RotKeyData turn;
    turn.rotation = {0, 0, 0, 1};
    for (int32_t i = 0; i < kKeys; ++i) {
        key.time = turn.time = static_cast<float>(i);
        object->posKeys.Append(key);
        if (i < kTurns)
            object->rotKeys.Append(turn);
    }
    object->posKeyCount = kKeys;
    object->rotKeyCount = kTurns;
    const std::string bytes = Saved(scene);
    // 43 and 91 bytes per key, after an object without keys.
    EXPECT_EQ(bytes.size(), MakeQsb(FileWith(QsbObject())).bytes.size() + 7 + kKeys * size_t{43} +
                                kTurns * size_t{91});
    KRE_3dScene again;
    LoadBytes(again, bytes);
    EXPECT_EQ(again.objects.Get(0)->posKeyCount, kKeys);
    EXPECT_EQ(again.objects.Get(0)->posKeys.Tail()->time, 999999.0f);
    EXPECT_EQ(again.objects.Get(0)->rotKeys.Tail()->time, 99999.0f);
}

// ---- Cameras and lights

TEST_F(KRE_3dObjectFileTest, ACameraComesFromItsPlaces)
{
    QsbFile file;
    file.scene.cameras.resize(1);
    file.scene.cameras[0].target.object.kind = 8;
    file.scene.cameras[0].target.object.name = "Eye";
    file.scene.cameras[0].target.object.parentName = "Mast";
    file.scene.cameras[0].target.targetName = "Mast";
    file.scene.cameras[0].fov = 1.25f;
    file.scene.objects.resize(1);
    file.scene.objects[0].name = "Mast";
    Load(scene, file);
    const KRE_Camera& camera = *scene.cameras.Get(0);
    EXPECT_EQ(camera.objectKind, kObjectCamera);
    EXPECT_EQ(camera.fov, 1.25f);
    EXPECT_EQ(camera.target, scene.objects.Get(0));
    EXPECT_EQ(camera.parent, scene.objects.Get(0));
    EXPECT_EQ(scene.activeCamera, -1);
}

TEST_F(KRE_3dObjectFileTest, ALightComesFromItsPlaces)
{
    QsbFile file;
    file.scene.lights.resize(1);
    QsbLight& stored = file.scene.lights[0];
    stored.target.object.kind = 32;
    stored.target.targetName = "Mast";
    stored.on = 5;
    stored.mode = 6;
    stored.type = 2;
    stored.numbers = Counting<25>(1);
    const QsbImage image = MakeQsb(file);
    directory.Write("light", image.bytes.substr(image.at.at("light0.read id")));
    QSB_InputFile bytes;
    bytes.Open("light", true, false, true);
    KRE_Light light;
    light.Load(bytes);
    EXPECT_EQ(light.lightOn, 5);
    EXPECT_EQ(light.lightMode, 6);
    EXPECT_STREQ(light.targetName.c_str(), "Mast");
    // After the type come diffuse, specular and ambient with 4 numbers each, position and direction
    // with 3, range, falloff, three attenuations, theta, phi.
    EXPECT_EQ(light.light.Type, D3DLIGHT_SPOT);
    EXPECT_EQ(light.light.Diffuse.r, 1);
    EXPECT_EQ(light.light.Specular.r, 5);
    EXPECT_EQ(light.light.Ambient.a, 12);
    EXPECT_EQ(light.light.Position.x, 13);
    EXPECT_EQ(light.light.Direction.z, 18);
    EXPECT_EQ(light.light.Range, 19);
    EXPECT_EQ(light.light.Falloff, 20);
    EXPECT_EQ(light.light.Attenuation2, 23);
    EXPECT_EQ(light.light.Phi, 25);
    EXPECT_EQ(bytes.GetBytesLeft(), 0);
}

// ---- The scene's own record

TEST_F(KRE_3dObjectFileTest, ASceneComesFromItsPlaces)
{
    QsbFile file = FullQsb();
    for (size_t i = 0; i < 13; ++i)
        file.scene.settings[i] = static_cast<uint32_t>(i + 10);
    const float fog[] = {13.5f, 14.5f, 15.5f};
    std::memcpy(&file.scene.settings[13], fog, sizeof fog);
    file.scene.settings[11] = 3; // fog is on, so its mode must be 0 to 3
    file.scene.settings[16] = 26;
    Load(scene, file);
    EXPECT_EQ(scene.objectKind, kObjectPlain);
    EXPECT_EQ(scene.ambientColor, 0xFF102030u);
    EXPECT_EQ(scene.backgroundColor, 0xFF405060u);
    EXPECT_EQ(scene.clipMode, 3);
    EXPECT_EQ(scene.radius, 4);
    EXPECT_EQ(scene.center, D3DXVECTOR3(1, 2, 3));
    EXPECT_EQ(scene.boxMin, D3DXVECTOR3(-1, 0, 1));
    EXPECT_EQ(scene.boxMax, D3DXVECTOR3(3, 4, 5));
    EXPECT_EQ(scene.settings.mirrorView, 11);
    EXPECT_EQ(scene.settings.showObjects, 13);
    EXPECT_EQ(scene.settings.showHierarchy, 19);
    EXPECT_EQ(scene.settings.fogColor, 20u);
    EXPECT_EQ(scene.settings.fogMode, 3);
    EXPECT_EQ(scene.settings.fogPerVertex, 22);
    EXPECT_EQ(scene.settings.fogStart, 13.5f);
    EXPECT_EQ(scene.settings.fogDensity, 15.5f);
    EXPECT_EQ(scene.settings.drawTransparentOnly, 26);
    EXPECT_EQ(scene.settings.disableLightsAfter, 1);
}

TEST_F(KRE_3dObjectFileTest, AnUnknownFogModeIsAnErrorIfFogIsOn)
{
    constexpr size_t kUseFog = 7;
    constexpr size_t kFogMode = 11;
    static const struct {
        const char* what;
        uint32_t useFog, fogMode;
        const char* error;
    } cases[] = {
        {"none", 1, 0, ""},
        {"linear", 1, 3, ""},
        {"one too many", 1, 4, "boat.qsa: File 'scene.qsb': Invalid fogMode: 4"},
        {"negative", 5, 0xFFFFFFFF, "boat.qsa: File 'scene.qsb': Invalid fogMode: -1"},
        {"not used", 0, 4, ""},
    };
    for (const auto& c : cases) {
        QsbFile file;
        file.scene.object.name = "boat.qsa";
        file.scene.settings[kUseFog] = c.useFog;
        file.scene.settings[kFogMode] = c.fogMode;
        EXPECT_EQ(LoadError(MakeQsb(file).bytes), c.error) << c.what;
    }
    // Unused values are kept and saved.
    QsbFile kept;
    kept.scene.object.name = "scene.qsb";
    kept.scene.settings[kFogMode] = 0x12345678;
    EXPECT_EQ(QsbDifference(Resaved(MakeQsb(kept).bytes), MakeQsb(kept).bytes), "");
}

TEST_F(KRE_3dObjectFileTest, OldFilesDrawOnlyTheTransparentInTheSortedPass)
{
    QsbFile file;
    file.scene.settings[16] = 0;
    Load(scene, file);
    EXPECT_EQ(scene.settings.drawTransparentOnly, 0);
    file.version = 103;
    Load(scene, file);
    EXPECT_EQ(scene.settings.drawTransparentOnly, 1);
}

TEST_F(KRE_3dObjectFileTest, ListsKeepTheirOrder)
{
    QsbFile file;
    for (const char* name : {"c", "a", "b"}) {
        QsbObject object;
        object.name = name;
        file.scene.objects.push_back(object);
        QsbCamera camera;
        camera.target.object.name = std::string(name) + "eye";
        camera.target.object.kind = 8;
        file.scene.cameras.push_back(camera);
        file.scene.meshes.push_back(QsbTriangle(std::string(name) + "mesh"));
    }
    Load(scene, file);
    Saved(scene);
    gGfx->LoadScene(scene, "saved.qsb", 0);
    EXPECT_STREQ(scene.objects.Get(0)->name.c_str(), "c");
    EXPECT_STREQ(scene.cameras.Get(1)->name.c_str(), "aeye");
    EXPECT_STREQ(scene.meshes.Get(2)->name.c_str(), "bmesh");
}

TEST_F(KRE_3dObjectFileTest, CountsOfListsAreCheckedAgainstTheBytesLeft)
{
    const QsbImage image = MakeQsb(FullQsb());
    const struct {
        const char* field;
        const char* what;
    } lists[] = {{"mesh count", "meshes"},
                 {"camera count", "cameras"},
                 {"object count", "objects"},
                 {"light count", "lights"}};
    for (const auto& list : lists) {
        EXPECT_EQ(LoadError(image.WithInt32(list.field, -2)),
                  std::string("boat.qsb: File 'scene.qsb': Invalid number of ") + list.what +
                      ": -2");
        EXPECT_THAT(LoadError(image.WithInt32(list.field, 1000000)),
                    HasSubstr(std::string("Invalid number of ") + list.what + ": 1000000, with "));
    }
}

TEST_F(KRE_3dObjectFileTest, AnExtraTrailingByteIsIgnored)
{
    LoadBytes(scene, MakeQsb(FullQsb()).bytes + "x");
    EXPECT_EQ(CheckScene(scene), "");
    EXPECT_EQ(scene.lights.Count(), 1);
}

TEST_F(KRE_3dObjectFileTest, MissingNamesAreWarnings)
{
    QsbObject object;
    object.parentName = "Deck";
    LoadObject(object);
    EXPECT_THAT(LogText(), HasSubstr("Parent object 'Deck' not found"));
}
