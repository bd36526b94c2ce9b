#include "base/File.h"
#include "qsa/QSA_SceneHeader.h"
#include "qsb/WriteScene.h"
#include "tests/qsb/SceneFileTest.h"

#include <cstring>
#include <filesystem>

#include <gmock/gmock.h>

using testing::HasSubstr;

namespace {

using SaveSceneTest = SceneFileTest;

int CountEntries(const std::filesystem::path& directory)
{
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(directory))
        count += entry.path().filename() != "logfile.txt" ? 1 : 0;
    return count;
}

} // namespace

TEST_F(SaveSceneTest, AnEmptySceneHasFourZeroCountsAndAllFixedRecords)
{
    // Header 4 + 12 + two empty texts of 4. Scene: object 2 + 4 + 116 + 48, the texts 4 + 11 and 4, 1
    // for the flags, 3 counts of keys, loop and its end 8; bounds 44; two colours 8; no background 1;
    // 17 settings; 4 counts.
    constexpr size_t kHeader = 4 + 12 + 8;
    constexpr size_t kObject = 2 + 4 + 116 + 48 + 15 + 4 + 1 + 12 + 8;
    constexpr size_t kScene = kObject + 44 + 8 + 1 + 68 + 16;
    KRE_3dScene scene;
    const std::string bytes = Saved(scene);
    EXPECT_EQ(bytes.size(), kHeader + kScene);
    EXPECT_EQ(bytes.substr(bytes.size() - 16), std::string(16, '\0'));
    // Compared field by field: a new scene and a new header have the defaults of this test's
    // writer.
    EXPECT_EQ(QsbDifference(bytes, MakeQsb(QsbFile()).bytes), "");
}

TEST_F(SaveSceneTest, WritingToAnOpenFileGivesTheBytesOfASave)
{
    KRE_3dScene scene;
    Load(scene, FullQsb());
    File file;
    ASSERT_TRUE(file.Create("written.qsb", true, true));
    WriteScene(scene, file);
    ASSERT_TRUE(file.Close());
    EXPECT_EQ(QsbDifference(directory.Read("written.qsb"), Saved(scene)), "");
}

TEST_F(SaveSceneTest, AllRecordsComeOutAsTheyWentIn)
{
    // The numbers of this file survive 16 bits: normals of 0 and 32767, weights of 0 and 65535.
    QsbFile file = FullQsb();
    file.scene.object.name = "scene.qsb"; // the path of the load
    QsbFile expected = file;
    expected.scene.meshes[1].hasTransparency = 1; // after a load the clone's is its source's
    EXPECT_EQ(QsbDifference(Resaved(MakeQsb(file).bytes), MakeQsb(expected).bytes), "");
}

TEST_F(SaveSceneTest, ASavedSceneAlwaysHasVersion106)
{
    for (int32_t version = 101; version <= 106; ++version) {
        const std::string bytes = Resaved(MakeQsb(FullQsb(version)).bytes);
        EXPECT_EQ(bytes[3], 106) << version;
    }
}

TEST_F(SaveSceneTest, SavesAreEqualFromTheSecondOn)
{
    for (int32_t version = 101; version <= 106; ++version) {
        const std::string first = Resaved(MakeQsb(FullQsb(version)).bytes);
        const std::string second = Resaved(first);
        EXPECT_EQ(QsbDifference(Resaved(second), second), "") << version;
    }
}

TEST_F(SaveSceneTest, FacesOutOfOrderAreSortedByTheFirstLoad)
{
    QsbFile file;
    QsbMesh mesh = QsbTriangle("Hull");
    mesh.materials.resize(2);
    mesh.textures.resize(2);
    mesh.faces = {{0, 1, 2}, {1, 2, 0}, {2, 0, 1}};
    mesh.attributes = {1, 0, 1};
    file.scene.meshes = {mesh};
    const std::string first = Resaved(MakeQsb(file).bytes);
    mesh.faces = {{1, 2, 0}, {0, 1, 2}, {2, 0, 1}};
    mesh.attributes = {0, 1, 1};
    file.scene.meshes = {mesh};
    file.scene.object.name = "scene.qsb";
    EXPECT_EQ(QsbDifference(first, MakeQsb(file).bytes), "");
    EXPECT_EQ(QsbDifference(Resaved(first), first), "");
}

TEST_F(SaveSceneTest, TheHeaderOfTheLastLoadIsSaved)
{
    KRE_3dScene scene;
    Load(scene, FullQsb());
    QSA_SceneHeader& header = gGfx->SceneHeader();
    header.lastFrame = 77;
    header.scriptFile = "other.txt";
    const std::string bytes = Saved(scene);
    float last = 0;
    std::memcpy(&last, bytes.data() + 12, 4);
    EXPECT_EQ(last, 77);
    EXPECT_EQ(bytes.substr(16, 4), std::string("\x09\0\0\0", 4)); // "waves.wav"
    EXPECT_EQ(bytes.substr(33, 9), "other.txt");
}

TEST_F(SaveSceneTest, ATextSceneIsSavedUnderItsPath)
{
    directory.Write("boat.qsa", "*HELPEROBJECT {\n *NODE_NAME \"Mast\"\n}\n");
    KRE_3dScene scene;
    gGfx->LoadScene(scene, "boat.qsa", 0);
    gGfx->SaveScene(scene, "boat.qsb");
    KRE_3dScene again;
    gGfx->LoadScene(again, "boat.qsb", 0);
    EXPECT_EQ(CheckScene(again), "");
    ASSERT_EQ(again.objects.Count(), 1);
    EXPECT_STREQ(again.objects.Get(0)->name.c_str(), "Mast");
    EXPECT_THAT(directory.Read("boat.qsb"), HasSubstr("boat.qsa"));
}

TEST_F(SaveSceneTest, APartlyFilledTextIsStoredUpToItsEnd)
{
    KRE_3dScene scene;
    scene.name.Assign("boat");
    scene.name.GetBuffer(100);
    EXPECT_EQ(Saved(scene).size(), MakeQsb(QsbFile()).bytes.size() - 11 + 4);
}

// ---- The target

TEST_F(SaveSceneTest, AFileIsSavedOverItself)
{
    directory.Write("x.qsb", MakeQsb(FullQsb(103)).bytes);
    KRE_3dScene scene;
    gGfx->LoadScene(scene, "x.qsb", 0);
    gGfx->SaveScene(scene, "x.qsb");
    EXPECT_EQ(directory.Read("x.qsb")[3], 106);
    gGfx->LoadScene(scene, "x.qsb", 0);
    EXPECT_EQ(CheckScene(scene), "");
    EXPECT_EQ(CountEntries(directory.Path()), 1);
}

TEST_F(SaveSceneTest, AFailedSaveLeavesTheOldTargetAndNoLitter)
{
    directory.Write("boat.qsb", "old");
    KRE_3dScene scene;
    Load(scene, FullQsb());
    scene.objects.Get(0)->posKeyCount = 3;
    scene.objects.Get(0)->posKeys.Append(KRE_PosKeyData());
    const int before = CountEntries(directory.Path());
    EXPECT_EQ(ErrorText([&] { gGfx->SaveScene(scene, "boat.qsb"); }),
              "Mast: numPosKey does not match actual size");
    EXPECT_EQ(directory.Read("boat.qsb"), "old");
    EXPECT_EQ(CountEntries(directory.Path()), before);
    EXPECT_EQ(gOpenHandlesCount, 0);
}

TEST_F(SaveSceneTest, ATargetInAMissingDirectoryIsAWarningAndAnError)
{
    KRE_3dScene scene;
    EXPECT_EQ(ErrorText([&] { gGfx->SaveScene(scene, "none/boat.qsb"); }),
              "none/boat.qsb: File is not writeable");
    EXPECT_THAT(LogText(),
                HasSubstr("Create() failed: No such file or directory, file:'none/boat.qsb'"));
}

TEST_F(SaveSceneTest, ADirectoryIsNotATarget)
{
    directory.Write("boat.qsb/inside", "kept");
    KRE_3dScene scene;
    EXPECT_EQ(ErrorText([&] { gGfx->SaveScene(scene, "boat.qsb"); }),
              "boat.qsb: File is not writeable");
    EXPECT_EQ(directory.Read("boat.qsb/inside"), "kept");
    EXPECT_THAT(LogText(), HasSubstr("Create() failed: "));
}

TEST_F(SaveSceneTest, TheDirectoryOfATargetIsFoundInAnyLetterCase)
{
    directory.Write("Deck/other.txt", "");
    KRE_3dScene scene;
    gGfx->SaveScene(scene, "deck\\boat.qsb");
    EXPECT_EQ(CountEntries(directory.Path()), 1);
    EXPECT_EQ(directory.Read("Deck/boat.qsb"), MakeQsb(QsbFile()).bytes);
}

TEST_F(SaveSceneTest, TheTargetMayBeInAnotherDirectory)
{
    directory.Write("deck/other.txt", "");
    KRE_3dScene scene;
    gGfx->SaveScene(scene, "deck\\boat.qsb");
    EXPECT_EQ(directory.Read("deck/boat.qsb"), MakeQsb(QsbFile()).bytes);
    EXPECT_EQ(CountEntries(directory.Path() / "deck"), 2);
}
