#include "base/File.h"
#include "base/LoadInHand.h"
#include "qsa/QSA_SceneHeader.h"
#include "tests/qsb/SceneFileTest.h"

#include <chrono>
#include <filesystem>

#include <gmock/gmock.h>

using testing::HasSubstr;
using testing::Not;

namespace {

using LoadSceneTest = SceneFileTest;

constexpr uint32_t kAllFlags = ~uint32_t{0};
constexpr const char* kText = "*3DSMAX_QSAEXPORT 100\n"
                              "*SCENE {\n *SCENE_FIRSTFRAME 30\n *SCENE_LASTFRAME 90\n"
                              " *SCENE_FRAMESPEED 15\n *SCENE_TICKSPERFRAME 320\n}\n";

/// An object at x = `time` for times from 0 to 10 seconds.
QsbObject Mover(const std::string& name)
{
    QsbObject object;
    object.name = name;
    object.posKeys = {QsbVectorKey(0, {0, 0, 0}), QsbVectorKey(10, {10, 0, 0})};
    return object;
}

} // namespace

TEST_F(LoadSceneTest, Version106LoadsAnd107And99AreRefused)
{
    QsbFile file;
    KRE_3dScene scene;
    Load(scene, file);
    file.version = 107;
    EXPECT_EQ(LoadError(MakeQsb(file).bytes), "Unknown qsb file version: 107 (scene.qsb)");
    file.version = 99;
    EXPECT_EQ(LoadError(MakeQsb(file).bytes), "'scene.qsb': Obsolete qsb file version: 99");
}

TEST_F(LoadSceneTest, TheVersionIsAByteWithoutSign)
{
    QsbFile file;
    file.version = 200;
    EXPECT_EQ(LoadError(MakeQsb(file).bytes), "Unknown qsb file version: 200 (scene.qsb)");
}

TEST_F(LoadSceneTest, ATextThatBeginsWithTheMagicIsTakenForABinary)
{
    // The fourth byte is a letter: 'A' is 65, 'g' is 103.
    EXPECT_EQ(LoadError("QSBA text"), "'scene.qsb': Obsolete qsb file version: 65");
    EXPECT_EQ(LoadError("QSBg 1"), "scene.qsb: Error reading from file");
}

TEST_F(LoadSceneTest, AnythingElseIsReadAsTextWhateverItsExtension)
{
    KRE_3dScene scene;
    LoadBytes(scene, kText);
    EXPECT_EQ(gGfx->SceneHeader().frameSpeed, 15);
    EXPECT_EQ(CheckScene(scene), "");
}

TEST_F(LoadSceneTest, NoTextMagicIsRequired)
{
    KRE_3dScene scene;
    LoadBytes(scene, "*HELPEROBJECT {\n *NODE_NAME \"Mast\"\n}\n");
    EXPECT_EQ(scene.objects.Count(), 1);
}

TEST_F(LoadSceneTest, AZeroLengthFileIsAnError)
{
    EXPECT_EQ(LoadError(""), "scene.qsb: Error reading from file");
    EXPECT_EQ(LoadError("QSB"), "scene.qsb: Error reading from file");
}

TEST_F(LoadSceneTest, AMissingFileIsAWarningAndAnError)
{
    KRE_3dScene scene;
    EXPECT_EQ(ErrorText([&] { gGfx->LoadScene(scene, "none.qsb", 0); }),
              "none.qsb: File is not readable");
    EXPECT_THAT(LogText(), HasSubstr("Open() failed: No such file or directory, file:'none.qsb'"));
}

TEST_F(LoadSceneTest, AFrameSpeedOf0StartsAtTime0)
{
    QsbFile file;
    file.frameSpeed = 0;
    file.firstFrame = 30;
    file.scene.objects = {Mover("Gull")};
    KRE_3dScene scene;
    Load(scene, file);
    EXPECT_EQ(scene.objects.Get(0)->worldTM._41, 0);
}

TEST_F(LoadSceneTest, TheSceneIsAtItsFirstFrame)
{
    QsbFile file;
    file.frameSpeed = 20;
    file.firstFrame = 50; // 2.5 seconds
    file.scene.objects = {Mover("Gull")};
    KRE_3dScene scene;
    Load(scene, file);
    EXPECT_EQ(scene.objects.Get(0)->worldTM._41, 2.5f);
    EXPECT_EQ(scene.lastTime, 2.5);
}

TEST_F(LoadSceneTest, ATextSceneIsAtItsFirstFrame)
{
    KRE_3dScene scene;
    LoadBytes(scene, kText);
    EXPECT_EQ(scene.lastTime, 2.0); // frame 30 at 15 frames per second
}

TEST_F(LoadSceneTest, ALightOfNoTypeOfTheDeviceIsAWarningAndKeepsItsBytes)
{
    QsbFile file;
    file.scene.lights.resize(5);
    for (uint32_t type = 0; type < 5; ++type) {
        QsbLight& light = file.scene.lights[type];
        light.target.object.kind = 32;
        light.target.object.name = "Lamp" + std::to_string(type);
        light.type = type;
    }
    file.scene.lights[4].on = 0;
    KRE_3dScene scene;
    Load(scene, file);
    EXPECT_THAT(LogText(), HasSubstr("'scene.qsb': Light 'Lamp0' of type 0 does not shine"));
    EXPECT_THAT(LogText(), HasSubstr("'scene.qsb': Light 'Lamp4' of type 4 does not shine"));
    for (const char* sound : {"Lamp1", "Lamp2", "Lamp3"})
        EXPECT_THAT(LogText(), Not(HasSubstr(sound)));
    Saved(scene);
    KRE_3dScene again;
    gGfx->LoadScene(again, "saved.qsb", 0);
    for (int32_t type = 0; type < 5; ++type)
        EXPECT_EQ(static_cast<int32_t>(again.lights.Get(type)->light.Type), type);
}

TEST_F(LoadSceneTest, ATruncatedLightInATextIsAWarning)
{
    KRE_3dScene scene;
    LoadBytes(scene, "*LIGHTOBJECT {\n *NODE_NAME \"Lamp\"\n *LIGHT_TYPE Omni\n");
    ASSERT_EQ(scene.lights.Count(), 1);
    EXPECT_EQ(static_cast<int32_t>(scene.lights.Get(0)->light.Type), 0) << "the block never ended";
    EXPECT_THAT(LogText(), HasSubstr("'scene.qsb': Light 'Lamp' of type 0 does not shine"));
}

TEST_F(LoadSceneTest, ANetworkPathIsAWarning)
{
    KRE_3dScene scene;
    ErrorText([&] { gGfx->LoadScene(scene, "\\\\farm\\none.qsb", 0); });
    EXPECT_THAT(LogText(), HasSubstr("Network file accessed: '\\\\farm\\none.qsb'"));
}

TEST_F(LoadSceneTest, AnAbsolutePathIsAWarning)
{
    for (const char* path : {"c:none.qsb", "'none.qsb", "/none.qsb"}) {
        KRE_3dScene scene;
        ErrorText([&] { gGfx->LoadScene(scene, path, 0); });
        EXPECT_THAT(LogText(), HasSubstr("Absolute file path: '" + std::string(path) + "'"));
    }
}

TEST_F(LoadSceneTest, AnAbsolutePathOnlyWarns)
{
    const std::string path = (directory.Path() / "whole.qsb").generic_string();
    directory.Write("whole.qsb", MakeQsb(QsbFile()).bytes);
    KRE_3dScene scene;
    gGfx->LoadScene(scene, path.c_str(), 0);
    EXPECT_EQ(scene.name.c_str(), path);
    EXPECT_THAT(LogText(), HasSubstr("Absolute file path"));
}

TEST_F(LoadSceneTest, TheSceneHasItsPathAndTime)
{
    namespace fs = std::filesystem;
    directory.Write("deck/boat.qsb", MakeQsb(FullQsb()).bytes);
    KRE_3dScene scene;
    gGfx->LoadScene(scene, "deck/boat.qsb", 0);
    EXPECT_STREQ(scene.name.c_str(), "deck/boat.qsb");
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(now).count();
    EXPECT_NEAR(static_cast<double>(scene.fileTime), static_cast<double>(seconds), 100);
}

TEST_F(LoadSceneTest, TheBackgroundIsNotClearedWhateverTheFileSays)
{
    QsbFile file;
    file.scene.settings[0] = 1;
    KRE_3dScene scene;
    Load(scene, file);
    EXPECT_EQ(scene.settings.clearBackground, 0);
}

TEST_F(LoadSceneTest, TheHeaderIsRemembered)
{
    KRE_3dScene scene;
    Load(scene, FullQsb());
    const QSA_SceneHeader& header = gGfx->SceneHeader();
    EXPECT_EQ(header.frameSpeed, 25);
    EXPECT_EQ(header.firstFrame, 5);
    EXPECT_EQ(header.lastFrame, 50);
    EXPECT_STREQ(header.soundFile.c_str(), "waves.wav");
    EXPECT_STREQ(header.scriptFile.c_str(), "boat.txt");
}

TEST_F(LoadSceneTest, ASceneThatFailsLeavesTheHeaderAsItWas)
{
    KRE_3dScene scene;
    Load(scene, FullQsb());
    QsbFile other;
    other.frameSpeed = 1;
    other.scene.object.readId = 1;
    EXPECT_NE(LoadError(MakeQsb(other).bytes), "");
    EXPECT_EQ(gGfx->SceneHeader().frameSpeed, 25);
}

TEST_F(LoadSceneTest, AllFlagsSetCountAsNone)
{
    QsbFile file;
    file.scene.meshes = {QsbTriangle("Hull")};
    KRE_3dScene scene;
    Load(scene, file, kAllFlags);
    EXPECT_EQ(scene.meshes.Get(0)->fvf, 0x12u);
    Load(scene, file, kAllFlags & ~1u); // any other set of flags is used as it is
    EXPECT_EQ(scene.meshes.Get(0)->fvf, 0xD2u);
}

TEST_F(LoadSceneTest, FilesWithoutSceneBoundsGetThemComputed)
{
    QsbFile file;
    file.version = 102;
    file.scene.meshes = {QsbTriangle("Hull")}; // a box from (0,0,0) to (1,1,0)
    file.scene.objects.resize(1);
    file.scene.objects[0].position = {0, 0, 4};
    file.scene.objects[0].name = "Mast";
    KRE_3dScene scene;
    Load(scene, file);
    EXPECT_EQ(scene.boxMin, D3DXVECTOR3(0, 0, 0));
    EXPECT_EQ(scene.boxMax, D3DXVECTOR3(1, 1, 4));
    file.version = 103; // stored in the file: all zero
    Load(scene, file);
    EXPECT_EQ(scene.boxMax, D3DXVECTOR3(0, 0, 0));
}

TEST_F(LoadSceneTest, ASceneCanBeLoadedAgainAfterAnError)
{
    KRE_3dScene scene;
    const QsbImage image = MakeQsb(FullQsb());
    for (size_t size : {size_t{900}, size_t{2500}, image.bytes.size() - 1}) {
        EXPECT_NE(ErrorText([&] { LoadBytes(scene, image.bytes.substr(0, size)); }), "");
        Load(scene, FullQsb());
        EXPECT_EQ(scene.meshes.Count(), 3);
    }
}

TEST_F(LoadSceneTest, NothingIsHeldAfterALoad)
{
    KRE_3dScene scene;
    Load(scene, FullQsb());
    EXPECT_EQ(gOpenHandlesCount, 0);
    EXPECT_EQ(gLoadInHand.object, nullptr);
    EXPECT_NE(LoadError(MakeQsb(FullQsb()).bytes.substr(0, 1500)), "");
    EXPECT_EQ(gOpenHandlesCount, 0);
    EXPECT_EQ(gLoadInHand.object, nullptr);
}

TEST_F(LoadSceneTest, MaterialsGetTheirEffectsUnlessTheEngineLoadsNone)
{
    QsbFile file;
    file.scene.meshes.push_back(QsbTriangle("Hull"));
    file.scene.meshes[0].materials[0].effect = "lost.fx";
    KRE_3dScene scene;
    gGfx->loadsSceneEffects = 0;
    Load(scene, file);
    EXPECT_EQ(LogText().find("lost.fx"), std::string::npos);
    scene.Reset();
    gGfx->loadsSceneEffects = 1;
    Load(scene, file);
    EXPECT_THAT(LogText(), HasSubstr("DirectX shader effect 'lost.fx' not found (for scene "
                                     "'scene.qsb')"));
}
