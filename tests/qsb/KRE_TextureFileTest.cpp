#include "tests/qsb/SceneFileTest.h"

#include <gmock/gmock.h>

using testing::HasSubstr;
using testing::Not;

namespace {

constexpr uint32_t kSingleMipLevel = 1;

class KRE_TextureFileTest : public SceneFileTest {
protected:
    /// A file with one mesh that has this texture.
    static QsbFile FileWith(const QsbTexture& texture)
    {
        QsbFile file;
        file.scene.object.name = "scene.qsb"; // the path of the load: a save gives the same bytes
        file.scene.meshes = {QsbTriangle("Hull")};
        file.scene.meshes[0].textures = {texture};
        return file;
    }
    KRE_Texture& LoadTexture(const QsbTexture& texture, uint32_t flags = 0, int32_t version = 106)
    {
        QsbFile file = FileWith(texture);
        file.version = version;
        Load(scene, file, flags);
        return scene.meshes.Get(0)->textures[0];
    }
    KRE_MaterialInfo& LoadMaterial(const QsbMaterial& material, int32_t version = 106)
    {
        QsbFile file = FileWith(QsbTexture());
        file.version = version;
        file.scene.meshes[0].materials = {material};
        Load(scene, file);
        return scene.meshes.Get(0)->materials[0];
    }

    KRE_3dScene scene;
};

/// A 24-bit picture of `size` by `size` pixels.
std::string Bmp(uint8_t size)
{
    std::string bytes("BM\0\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\1\0\0\0\1\0\0\0\1\0\x18\0", 30);
    bytes[18] = bytes[22] = static_cast<char>(size);
    bytes += std::string(24, '\0');
    const int rowBytes = (size * 3 + 3) / 4 * 4; // rows are padded to 4 bytes
    return bytes + std::string(static_cast<size_t>(rowBytes * size), 'x');
}

QsbTexture TextureOf(const std::string& file, int32_t type = 1)
{
    QsbTexture texture;
    texture.slots[0].file = file;
    texture.slots[0].type = type;
    return texture;
}

} // namespace

TEST_F(KRE_TextureFileTest, TexturesWithoutAnAnimationAreSavedWithAStillOne)
{
    KRE_Texture& texture = LoadTexture(QsbTexture());
    texture.matrixAni = KRE_SlotAnimations();
    ASSERT_FALSE(texture.matrixAni);
    EXPECT_EQ(QsbDifference(Saved(scene), MakeQsb(FileWith(QsbTexture())).bytes), "");
    texture.slotNames[0] = "wood.png";
    texture.slots[0].type = StageDiffuse;
    EXPECT_EQ(QsbDifference(Saved(scene), MakeQsb(FileWith(TextureOf("wood.png"))).bytes), "");
}

TEST_F(KRE_TextureFileTest, AllFieldsComeFromTheirPlaces)
{
    QsbTexture stored;
    stored.word = 0x89ABCDEF;
    stored.start = 1.5f;
    stored.period = 0.25f;
    stored.mode = 2;
    stored.value = -3;
    stored.options = 5;
    for (int i = 0; i < 4; ++i) {
        QsbSlot& slot = stored.slots[i];
        slot.type = i == 1 ? 4 : i + 1;
        slot.amount = static_cast<float>(i) + 0.5f;
        slot.constants = {1, 2, 3, 4, static_cast<float>(i)};
        slot.tracks[static_cast<size_t>(i)].keys = {{7, 8, 9, 10}};
        slot.tracks[static_cast<size_t>(i)].interpolation = 0;
        slot.tracks[static_cast<size_t>(i)].loop = 1;
        slot.tracks[static_cast<size_t>(i)].secondFlag = 2;
        slot.tracks[static_cast<size_t>(i)].loopEnd = 12;
    }
    const KRE_Texture& texture = LoadTexture(stored);
    EXPECT_EQ(texture.textureWord, 0x89ABCDEFu);
    EXPECT_EQ(texture.sequenceStart, 1.5f);
    EXPECT_EQ(texture.framePeriod, 0.25f);
    EXPECT_EQ(texture.sequenceMode, kSequenceOnce);
    EXPECT_EQ(texture.textureValue, -3);
    EXPECT_EQ(texture.loadOptions, 5u);
    for (int32_t i = 0; i < 4; ++i) {
        EXPECT_EQ(texture.slots[i].type, i == 1 ? 4 : i + 1);
        EXPECT_EQ(texture.slots[i].param, static_cast<float>(i) + 0.5f);
        const KRE_TextMatrixAni& animation = texture.matrixAni[i];
        EXPECT_EQ(animation.constants[KRE_TextMatrixAni::kOffsetV], 2);
        EXPECT_EQ(animation.constants[KRE_TextMatrixAni::kAngle], static_cast<float>(i));
        const KRE_FloatTrack& track = animation.tracks[i];
        ASSERT_EQ(track.GetKeyCount(), 1);
        EXPECT_EQ(track.Key(0).time, 7);
        EXPECT_EQ(track.Key(0).outTangent, 10);
        EXPECT_EQ(track.interpolation, 0);
        EXPECT_EQ(track.loop, 1);
        EXPECT_EQ(track.secondFlag, 2);
        EXPECT_EQ(track.loopEnd, 12);
    }
}

TEST_F(KRE_TextureFileTest, SlotsPastTheFourthOfAnOldFileAreDropped)
{
    directory.Write("map.bmp", Bmp(4));
    QsbTexture stored = TextureOf("map.bmp");
    stored.slots[3].amount = 3;
    stored.slots[4].amount = 4;
    stored.slots[4].file = "none.bmp";
    stored.slots[7].tracks[2].keys = {{0, 0, 0, 0}};
    const KRE_Texture& texture = LoadTexture(stored, 0, 104);
    EXPECT_EQ(texture.slots[3].param, 3);
    EXPECT_NE(texture.slotTextures[0], nullptr);
    EXPECT_THAT(LogText(), Not(HasSubstr("none.bmp")));
}

TEST_F(KRE_TextureFileTest, AReflectionInSlot1IsSwappedWithSlot0)
{
    directory.Write("sky.bmp", Bmp(2));
    directory.Write("wood.bmp", Bmp(4));
    for (const int32_t type : {3, 6}) {
        QsbTexture stored = TextureOf("wood.bmp");
        stored.slots[0].amount = 0.25f;
        stored.slots[0].constants[0] = 5;
        stored.slots[1].file = "sky.bmp";
        stored.slots[1].type = type;
        stored.slots[1].amount = 0.75f;
        stored.slots[1].tracks[0].keys = {{0, 1, 0, 0}};
        const KRE_Texture& texture = LoadTexture(stored);
        EXPECT_STREQ(texture.slotNames[0].c_str(), "sky.bmp");
        EXPECT_EQ(texture.slots[0].type, type);
        EXPECT_EQ(texture.slots[0].param, 0.75f);
        EXPECT_EQ(texture.matrixAni[0].tracks[0].GetKeyCount(), 1);
        EXPECT_EQ(texture.slotDescs[0].Width, 2u);
        EXPECT_STREQ(texture.slotNames[1].c_str(), "wood.bmp");
        EXPECT_EQ(texture.slots[1].type, 1);
        EXPECT_EQ(texture.matrixAni[1].constants[0], 5);
        EXPECT_EQ(texture.slotDescs[1].Width, 4u);
    }
}

TEST_F(KRE_TextureFileTest, QuirkTwoReflectionsChangePlacesWithEachLoad)
{
    directory.Write("sky.bmp", Bmp(2));
    directory.Write("sea.bmp", Bmp(4));
    QsbTexture stored = TextureOf("sea.bmp");
    stored.slots[0].type = 3;
    stored.slots[1].file = "sky.bmp";
    stored.slots[1].type = 6;
    const KRE_Texture& once = LoadTexture(stored);
    EXPECT_STREQ(once.slotNames[0].c_str(), "sky.bmp");
    EXPECT_EQ(once.slots[0].type, 6);
    std::swap(stored.slots[0], stored.slots[1]); // as it is saved
    const KRE_Texture& twice = LoadTexture(stored);
    EXPECT_STREQ(twice.slotNames[0].c_str(), "sea.bmp");
    EXPECT_EQ(twice.slots[0].type, 3);
}

TEST_F(KRE_TextureFileTest, OtherTypesInSlot1StayThere)
{
    QsbTexture stored;
    stored.slots[0].type = 3;
    stored.slots[1].type = 2;
    EXPECT_EQ(LoadTexture(stored).slots[0].type, 3);
}

TEST_F(KRE_TextureFileTest, AnUnknownTypeOfADrawnSlotIsAnError)
{
    static const struct {
        const char* what;
        size_t slot;
        int32_t type;
        const char* error;
    } cases[] = {
        {"the first type", 0, 1, ""},
        {"a bump map, which is not loaded here", 0, 2, ""},
        {"the last type", 0, 6, ""},
        {"0", 0, 0, "Hull: File 'scene.qsb': Invalid type of texture slot 0: 0"},
        {"one too many", 1, 7, "Hull: File 'scene.qsb': Invalid type of texture slot 1: 7"},
        {"negative", 1, -3, "Hull: File 'scene.qsb': Invalid type of texture slot 1: -3"},
        {"slot 2 is never drawn", 2, 7, ""},
        {"nor is slot 3", 3, 7, ""},
    };
    for (const auto& c : cases) {
        QsbTexture stored;
        stored.slots[c.slot].file = "none.bmp";
        stored.slots[c.slot].type = c.type;
        EXPECT_EQ(LoadError(MakeQsb(FileWith(stored)).bytes), c.error) << c.what;
    }
}

TEST_F(KRE_TextureFileTest, TheErrorNamesTheFilesSlotEvenIfSlotsAreSwapped)
{
    QsbTexture stored = TextureOf("wood.bmp", 9); // goes to slot 1, after the reflection
    stored.slots[1].file = "sky.bmp";
    stored.slots[1].type = 3;
    EXPECT_EQ(LoadError(MakeQsb(FileWith(stored)).bytes),
              "Hull: File 'scene.qsb': Invalid type of texture slot 0: 9");
}

TEST_F(KRE_TextureFileTest, TypesOfSlotsWithoutAFileAreKept)
{
    QsbTexture stored;
    for (int i = 0; i < 4; ++i)
        stored.slots[i].type = 100 + i;
    const std::string bytes = MakeQsb(FileWith(stored)).bytes;
    EXPECT_EQ(QsbDifference(Resaved(bytes), bytes), "");
}

TEST_F(KRE_TextureFileTest, ABackgroundOfUnknownTypeIsAnErrorOfTheScene)
{
    QsbFile file;
    file.scene.object.name = "boat.qsa";
    file.scene.backgroundTexture = {TextureOf("none.bmp", 8)};
    EXPECT_EQ(LoadError(MakeQsb(file).bytes),
              "boat.qsa: File 'scene.qsb': Invalid type of texture slot 0: 8");
}

TEST_F(KRE_TextureFileTest, PicturesAreFoundBesideTheFile)
{
    directory.Write("deck/map.bmp", Bmp(2));
    directory.Write("deck/scene.qsb", MakeQsb(FileWith(TextureOf("map.bmp"))).bytes);
    gGfx->LoadScene(scene, "deck/scene.qsb", 0);
    EXPECT_EQ(CheckScene(scene), "");
    EXPECT_EQ(scene.meshes.Get(0)->textures[0].slotDescs[0].Width, 2u);
    EXPECT_EQ(scene.meshes.Get(0)->textures[0].current,
              scene.meshes.Get(0)->textures[0].slotTextures[0]);
}

TEST_F(KRE_TextureFileTest, MapsWithoutAFrameListLoadWithoutAnyWarning)
{
    directory.Write("map.bmp", Bmp(2));
    directory.Write("other.bmp", Bmp(4));
    QsbTexture stored = TextureOf("map.bmp");
    stored.slots[1].file = "other.bmp";
    const KRE_Texture& texture = LoadTexture(stored);
    EXPECT_NE(texture.slotTextures[0], nullptr);
    EXPECT_NE(texture.slotTextures[1], nullptr);
    EXPECT_THAT(LogText(), Not(HasSubstr("Warning:")));
}

TEST_F(KRE_TextureFileTest, AMissingPictureIsAWarningAndLosesItsName)
{
    const KRE_Texture& texture = LoadTexture(TextureOf("none.bmp"));
    EXPECT_TRUE(texture.slotNames[0].IsEmpty());
    EXPECT_THAT(LogText(), HasSubstr("File 'scene.qsb': Can not open texture: none.bmp"));
}

TEST_F(KRE_TextureFileTest, APictureOfAnotherMachineIsTakenFromBesideTheFile)
{
    directory.Write("deck/map.bmp", Bmp(2));
    QsbFile file = FileWith(TextureOf("Q:\\art\\map.bmp"));
    file.scene.object.name = "deck/scene.qsb";
    file.scene.backgroundTexture = {TextureOf("old\\map.bmp")};
    directory.Write("deck/scene.qsb", MakeQsb(file).bytes);
    gGfx->LoadScene(scene, "deck/scene.qsb", 0);
    EXPECT_EQ(CheckScene(scene), "");
    EXPECT_EQ(scene.meshes.Get(0)->textures[0].slotDescs[0].Width, 2u);
    EXPECT_TRUE(scene.backgroundTexture.IsValid());
    EXPECT_EQ(QsbDifference(Saved(scene), MakeQsb(file).bytes), "") << "names are kept";
    EXPECT_THAT(LogText(), HasSubstr("Texture 'Q:\\art\\map.bmp' is not in its place, taken from "
                                     "beside the scene: 'deck\\map.bmp'"));
    EXPECT_THAT(LogText(), HasSubstr("Texture 'old\\map.bmp' is not in its place, taken from "
                                     "beside the scene: 'deck\\map.bmp'"));
}

TEST_F(KRE_TextureFileTest, APictureOfAnotherMachineIsReportedOncePerScene)
{
    directory.Write("a.bmp", Bmp(2));
    directory.Write("b.bmp", Bmp(2));
    QsbTexture texture = TextureOf("Q:\\art\\a.bmp");
    texture.slots[1].file = "Q:\\art\\b.bmp";
    QsbFile file = FileWith(texture);
    file.scene.meshes.push_back(file.scene.meshes[0]);
    file.scene.meshes[1].object.name = "Deck";
    const auto told = [&] {
        size_t count = 0;
        const std::string log = LogText();
        for (size_t at = log.find("is not in its place"); at != std::string::npos;
             at = log.find("is not in its place", at + 1))
            ++count;
        return count;
    };
    Load(scene, file);
    EXPECT_EQ(told(), 2u) << "two names, though two meshes have them";
    Load(scene, file);
    EXPECT_EQ(told(), 4u) << "the next load tells of them again";
}

TEST_F(KRE_TextureFileTest, BumpMapsAreLoadedOnlyIfTheyAreWanted)
{
    directory.Write("map.bmp", Bmp(2));
    EXPECT_EQ(LoadTexture(TextureOf("map.bmp", 2)).slotTextures[0], nullptr);
    EXPECT_STREQ(LoadTexture(TextureOf("map.bmp", 2)).slotNames[0].c_str(), "map.bmp");
    EXPECT_NE(LoadTexture(TextureOf("map.bmp", 2), kBumpMaps).slotTextures[0], nullptr);
}

TEST_F(KRE_TextureFileTest, Flag1AsksForOneMipLevel)
{
    directory.Write("map.bmp", Bmp(8));
    directory.Write("other.bmp", Bmp(4));
    EXPECT_EQ(LoadTexture(TextureOf("map.bmp"), kSingleMipLevel).levelCount, 1);
    EXPECT_EQ(LoadTexture(TextureOf("other.bmp")).levelCount, 3); // 4, 2, 1
}

TEST_F(KRE_TextureFileTest, APictureThatCannotBeReadIsAnError)
{
    directory.Write("map.bmp", "no picture");
    EXPECT_THAT(LoadError(MakeQsb(FileWith(TextureOf("map.bmp"))).bytes),
                HasSubstr("D3DXGetImageInfoFromFile failed"));
}

TEST_F(KRE_TextureFileTest, AFrameListKeepsItsTiming)
{
    directory.Write("a.bmp", Bmp(2));
    directory.Write("b.bmp", Bmp(4));
    directory.Write("run.ifl", "a.bmp\nb.bmp\n");
    QsbTexture stored = TextureOf("run.ifl");
    stored.period = 0.5f;
    stored.mode = 1;
    const KRE_Texture& texture = LoadTexture(stored);
    EXPECT_EQ(texture.sequenceCount, 2);
    EXPECT_EQ(texture.framePeriod, 0.5f);
    EXPECT_EQ(texture.sequenceMode, kSequencePingPong);
    EXPECT_EQ(QsbDifference(Saved(scene), MakeQsb(FileWith(stored)).bytes), "");
}

TEST_F(KRE_TextureFileTest, AMapBesideAFrameListIsAnErrorExplainedByTheWarningBeforeIt)
{
    directory.Write("a.bmp", Bmp(2));
    directory.Write("run.ifl", "a.bmp\n");
    QsbTexture both = TextureOf("run.ifl");
    both.slots[1].file = "a.bmp";
    QsbFile file = FileWith(TextureOf("a.bmp"));
    file.scene.meshes[0].materials.resize(2);
    file.scene.meshes[0].textures.push_back(both);
    EXPECT_EQ(LoadError(MakeQsb(file).bytes), "No stages with texture sequence allowed");
    std::string log = LogText();
    size_t at = log.find("Warning:KRE_Texture: File 'scene.qsb': Material 1 of 'Hull' has a frame "
                         "list and another map: a.bmp");
    ASSERT_NE(at, std::string::npos) << log;
    EXPECT_LT(at, log.find("Error:KRE_Texture: No stages with texture sequence allowed"));

    QsbFile background;
    background.scene.backgroundTexture = {both};
    EXPECT_EQ(LoadError(MakeQsb(background).bytes), "No stages with texture sequence allowed");
    log = LogText();
    at = log.find("Warning:KRE_Texture: File 'scene.qsb': Background has a frame list and another "
                  "map: a.bmp");
    ASSERT_NE(at, std::string::npos) << log;
    EXPECT_LT(at, log.rfind("Error:KRE_Texture: No stages with texture sequence allowed"));
}

TEST_F(KRE_TextureFileTest, TheBackgroundIsStoredOnlyIfItHoldsAPicture)
{
    directory.Write("map.bmp", Bmp(2));
    QsbFile file;
    file.scene.object.name = "scene.qsb";
    file.scene.backgroundTexture = {TextureOf("map.bmp")};
    Load(scene, file);
    EXPECT_TRUE(scene.backgroundTexture.IsValid());
    EXPECT_EQ(QsbDifference(Saved(scene), MakeQsb(file).bytes), "");

    QsbFile without;
    without.scene.object.name = "scene.qsb";
    file.scene.backgroundTexture = {TextureOf("none.bmp")};
    Load(scene, file);
    EXPECT_EQ(QsbDifference(Saved(scene), MakeQsb(without).bytes), "");
}

TEST_F(KRE_TextureFileTest, AFileWithoutABackgroundRemovesIt)
{
    directory.Write("map.bmp", Bmp(2));
    QsbFile file;
    file.scene.backgroundTexture = {TextureOf("map.bmp")};
    Load(scene, file);
    Load(scene, QsbFile());
    EXPECT_FALSE(scene.backgroundTexture.IsValid());
    EXPECT_TRUE(scene.backgroundTexture.slotNames[0].IsEmpty());
}

TEST_F(KRE_TextureFileTest, AFailedLoadHoldsNothing)
{
    directory.Write("map.bmp", Bmp(2));
    const std::string bytes = MakeQsb(FileWith(TextureOf("map.bmp"))).bytes;
    EXPECT_NE(LoadError(bytes.substr(0, bytes.size() - 20)), "");
    EXPECT_EQ(gGfx->textureManager.GetCount(), 0);
}

// ---- Materials

TEST_F(KRE_TextureFileTest, AMaterialComesFromItsPlaces)
{
    QsbMaterial stored;
    for (size_t i = 0; i < 16; ++i)
        stored.colors[i] = static_cast<float>(i) + 1;
    stored.power = 20;
    stored.twoSided = 2;
    stored.transparent = 3;
    stored.reflectionSet = 4;
    stored.reflectionAmount = 0.5f;
    stored.transparency = 0.75f;
    stored.flags = {11, 12, 13, 14, 15};
    stored.transparencyType = 16;
    stored.effect = "glow.fx";
    stored.values[2] = {true, 2.5f, true, {1, 2, 3}};
    const KRE_MaterialInfo& material = LoadMaterial(stored);
    EXPECT_EQ(material.diffuse.r, 1);
    EXPECT_EQ(material.ambient.r, 5);
    EXPECT_EQ(material.specular.b, 11);
    EXPECT_EQ(material.emissive.a, 16);
    EXPECT_EQ(material.power, 20);
    EXPECT_EQ(material.twoSided, 2);
    EXPECT_EQ(material.transparent, 3);
    EXPECT_EQ(material.reflectionSet, 4);
    EXPECT_EQ(material.reflectionAmount, 0.5f);
    EXPECT_EQ(material.transparency, 0.75f);
    EXPECT_EQ(material.mirrorU, 11);
    EXPECT_EQ(material.mirrorV, 12);
    EXPECT_EQ(material.tileU, 13);
    EXPECT_EQ(material.tileV, 14);
    EXPECT_EQ(material.addEmissive, 15);
    EXPECT_EQ(material.transparencyType, 16);
    EXPECT_STREQ(material.effectParams.name.c_str(), "glow.fx");
    EXPECT_EQ(material.effectParams.params[1].hasFloat, 0);
    EXPECT_EQ(material.effectParams.params[2].hasFloat, 1);
    EXPECT_EQ(material.effectParams.params[2].floatValue, 2.5f);
    EXPECT_EQ(material.effectParams.params[2].vectorValue[2], 3);
}

TEST_F(KRE_TextureFileTest, TracksOfAMaterialComeInTheirOrder)
{
    QsbMaterial stored;
    for (size_t i = 0; i < 4; ++i) {
        std::vector<float> key(13);
        for (size_t n = 0; n < 13; ++n)
            key[n] = static_cast<float>(100 * i + n);
        stored.colorTracks[i].keys = {key};
    }
    stored.opacityTrack.keys = {{1, 2, 3, 4}};
    const KRE_MaterialInfo& material = LoadMaterial(stored);
    const KRE_ColorTrack* tracks[] = {&material.diffuseTrack, &material.ambientTrack,
                                      &material.specularTrack, &material.selfIllumTrack};
    for (int32_t i = 0; i < 4; ++i) {
        ASSERT_EQ(tracks[i]->GetKeyCount(), 1);
        EXPECT_EQ(tracks[i]->Key(0).time, static_cast<float>(100 * i));
        EXPECT_EQ(tracks[i]->Key(0).value.r, static_cast<float>(100 * i + 1));
        EXPECT_EQ(tracks[i]->Key(0).inTangent.g, static_cast<float>(100 * i + 6));
        EXPECT_EQ(tracks[i]->Key(0).outTangent.a, static_cast<float>(100 * i + 12));
    }
    EXPECT_EQ(material.opacityTrack.Key(0).inTangent, 3);
}

TEST_F(KRE_TextureFileTest, OlderMaterialsLackWhatCameLater)
{
    QsbMaterial stored;
    stored.reflectionAmount = 0.5f;
    stored.effect = "glow.fx";
    stored.values[0] = {true, 2.5f, false, {}};
    const struct {
        int32_t version;
        float reflectionAmount;
        const char* effect;
        int hasFloat;
    } cases[] = {{106, 0.5f, "glow.fx", 1},
                 {105, 1.0f, "glow.fx", 1},
                 {104, 1.0f, "glow.fx", 0},
                 {103, 1.0f, "", 0}};
    for (const auto& c : cases) {
        const KRE_MaterialInfo& material = LoadMaterial(stored, c.version);
        EXPECT_EQ(material.reflectionAmount, c.reflectionAmount) << c.version;
        EXPECT_STREQ(material.effectParams.name.c_str(), c.effect) << c.version;
        EXPECT_EQ(material.effectParams.params[0].hasFloat, c.hasFloat) << c.version;
    }
}

TEST_F(KRE_TextureFileTest, WhatEffectsAreGivenSurvivesASave)
{
    QsbFile file = FileWith(QsbTexture());
    QsbMaterial& material = file.scene.meshes[0].materials[0];
    material.effect = "glow.fx";
    for (int i = 0; i < 8; ++i)
        material.values[i] = {i % 2 == 0, 1.5f, i % 3 == 0, {1, 2, 3}};
    EXPECT_EQ(QsbDifference(Resaved(MakeQsb(file).bytes), MakeQsb(file).bytes), "");
}
