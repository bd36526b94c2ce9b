#include <filesystem>

#include "tests/qsa/QSATesting.h"

namespace {

using testing::IsEmpty;

const char* const kNamed = "*HELPEROBJECT { *NODE_NAME \"";

std::string Named(const std::string& name)
{
    return kNamed + name + "\" }\n";
}

} // namespace

TEST_F(QSALoaderTest, StrayClosingBraceAtTheTopIsSkipped)
{
    Load("} } " + Named("a") + "}" + Named("b"));
    ASSERT_EQ(scene.objects.Count(), 2);
    EXPECT_STREQ(Object(1).name.c_str(), "b");
    EXPECT_THAT(AllWarnings(), IsEmpty());
}

TEST_F(QSALoaderTest, ObjectInAStrayBracePairIsSkipped)
{
    Load("{ " + Named("a") + "} " + Named("b"));
    ASSERT_EQ(scene.objects.Count(), 1);
    EXPECT_STREQ(Object(0).name.c_str(), "b");
}

TEST_F(QSALoaderTest, FileWithoutAnyKeywordIsAnEmptyScene)
{
    Load("none");
    EXPECT_EQ(scene.meshes.Count() + scene.objects.Count() + scene.lights.Count(), 0);
    EXPECT_THAT(AllWarnings(), IsEmpty());
}

TEST_F(QSALoaderTest, EmptyFileIsAnEmptyScene)
{
    Load("");
    EXPECT_EQ(scene.objects.Count(), 0);
}

TEST_F(QSALoaderTest, FileWithoutItsFirstKeywordIsOfVersionOne)
{
    // A mesh of major version 1 has its pivot reset.
    MeshText mesh = Triangle();
    mesh.more = "*PIVOT_TM { *TM_ROW0 2 0 0 *TM_ROW1 0 2 0 *TM_ROW2 0 0 2 }";
    Load(mesh.Text());
    EXPECT_EQ(Mesh(0).pivotTM._11, 1.0f);
    Load("*3DSMAX_QSAEXPORT 200\n" + mesh.Text());
    EXPECT_EQ(Mesh(0).pivotTM._11, 2.0f);
}

TEST_F(QSALoaderTest, KeywordsInSmallLettersAreTheSame)
{
    Load("*helperobject { *node_name \"Small\" *Node_Parent \"\" }");
    ASSERT_EQ(scene.objects.Count(), 1);
    EXPECT_STREQ(Object(0).name.c_str(), "Small");
}

TEST_F(QSALoaderTest, TextAfterTheLastBraceIsIgnored)
{
    Load(Named("a") + "the end \" , 5");
    EXPECT_EQ(scene.objects.Count(), 1);
    EXPECT_THAT(AllWarnings(), IsEmpty());
}

TEST_F(QSALoaderTest, UnknownBlocksAreSkippedWithAllThatIsInThem)
{
    Load("*NEWTHING 5 { *HELPEROBJECT { *NODE_NAME \"no\" } } " + Named("yes"));
    ASSERT_EQ(scene.objects.Count(), 1);
    EXPECT_STREQ(Object(0).name.c_str(), "yes");
}

TEST_F(QSALoaderTest, QuirkGroupAddsNothingAndDoesNotEndAtItsBrace)
{
    for (const char* text : {"*GROUP \"g\" { 1 } 2", "*GROUP \"g\" { 1 2 }",
                             "*GROUP { *GROUP { 1 } } 2", "*GROUP { 1 *GROUP { 2"}) {
        std::string file = text;
        file.replace(file.find('1'), 1, Named("a"));
        file.replace(file.find('2'), 1, Named("b"));
        Load(file);
        ASSERT_EQ(scene.objects.Count(), 2) << text;
        EXPECT_STREQ(Object(0).name.c_str(), "a") << text;
        EXPECT_STREQ(Object(1).name.c_str(), "b") << text;
        EXPECT_THAT(AllWarnings(), IsEmpty()) << text;
    }
}

TEST_F(QSALoaderTest, MillionNestedGroupsLoad)
{
    std::string text;
    for (int i = 0; i < 1000000; ++i)
        text += "*GROUP{";
    Load(text + Named("deep"));
    ASSERT_EQ(scene.objects.Count(), 1);
}

TEST_F(QSALoaderTest, GroupWithoutABraceIsAnError)
{
    EXPECT_EQ(LoadError("*GROUP x"), "scene.qsa: 'x' not found");
}

TEST_F(QSALoaderTest, FileThatEndsInsideABlockLoadsAsFarAsItGoes)
{
    const std::string text = Named("a") + kNamed + std::string("b\"");
    Load(text);
    ASSERT_EQ(scene.objects.Count(), 2);
    EXPECT_STREQ(Object(1).name.c_str(), "b");
    EXPECT_EQ(Warnings("Encountered unexpected end of file at pos " + std::to_string(text.size())),
              1);
}

TEST_F(QSALoaderTest, MissingFileIsAnError)
{
    EXPECT_EQ(RaisedBy([&] { loader.Load(scene, "none.qsa", 0); }),
              "none.qsa: Can not open file none.qsa");
}

TEST_F(QSALoaderTest, FileThatCannotBeReadIsAnError)
{
    // Some hosts can open a folder, but it has no bytes that could be read.
    std::filesystem::create_directory("folder");
    EXPECT_THAT(RaisedBy([&] { loader.Load(scene, "folder", 0); }),
                testing::AnyOf("folder: Can not open file folder",
                               "folder: Error reading from file folder at 0"));
}

TEST_F(QSALoaderTest, LoadEmptiesTheSceneFirst)
{
    Load(Named("a") + "*LIGHTOBJECT { }");
    Load(Named("b"));
    EXPECT_EQ(scene.objects.Count(), 1);
    EXPECT_EQ(scene.lights.Count(), 0);
}

TEST_F(QSALoaderTest, NoStateCarriesOverToTheNextFile)
{
    Load("*3DSMAX_QSAEXPORT 211 *SCENE { *SCENE_FIRSTFRAME 10 *SCENE_LASTFRAME 20 "
         "*SCENE_FRAMESPEED 25 *SCENE_TICKSPERFRAME 192 *SCENE_SOUNDFILE \"s\" "
         "*SCENE_SCRIPTFILE \"t\" }" +
         MaterialList({"*MATERIAL_NAME \"m\""}) + Triangle().Text());
    EXPECT_FALSE(loader.IsOpen());
    Load("none");
    EXPECT_STREQ(loader.header.soundFile.c_str(), "");
    EXPECT_STREQ(loader.header.scriptFile.c_str(), "");
    EXPECT_EQ(loader.header.frameSpeed, 30.0f);
    EXPECT_EQ(loader.header.firstFrame, 0.0f);
    EXPECT_EQ(loader.header.lastFrame, 100.0f);
    EXPECT_FLOAT_EQ(loader.Time().SecondsPerTick(), 1.0f / 4800.0f);
    MeshText mesh = Triangle();
    mesh.more = "*MATERIAL_REF 0 *PIVOT_TM { *TM_ROW0 2 0 0 }";
    Load(mesh.Text());
    EXPECT_EQ(Mesh(0).pivotTM._11, 1.0f); // version 1 again
    EXPECT_EQ(Warnings("Mesh 'Triangle' has material 0 of 0"), 1);
}

TEST_F(QSALoaderTest, ErrorLeavesNothingBehind)
{
    EXPECT_NE(LoadError(Triangle().Text() + "*MATERIAL_LIST { *MATERIAL 1 { } }"), "no error");
    EXPECT_FALSE(loader.IsOpen());
    EXPECT_TRUE(std::filesystem::remove("scene.qsa")); // the file is closed
    Load(Named("a"));
    EXPECT_EQ(scene.objects.Count(), 1);
}

TEST_F(QSALoaderTest, AllBitsSetCountAsNoOptions)
{
    Load(Triangle().Text(), ~uint32_t{0});
    EXPECT_EQ(Mesh(0).fvf, DWORD{D3DFVF_XYZ | D3DFVF_NORMAL});
}

TEST_F(QSALoaderTest, FreshSceneHasItsSettings)
{
    Load("none");
    EXPECT_EQ(scene.settings.useAmbient, 1);
    EXPECT_EQ(scene.settings.clearBackground, 0);
    EXPECT_EQ(scene.settings.fogMode, 1);
    EXPECT_EQ(scene.settings.fogDensity, 0.008f);
    EXPECT_EQ(scene.settings.useFog, 0);
    EXPECT_EQ(scene.backgroundColor, 0xFF000000u);
}

TEST_F(QSALoaderTest, SceneWithoutACameraHasNoActiveOne)
{
    Load(Named("a"));
    EXPECT_EQ(scene.activeCamera, -1);
}

TEST_F(QSALoaderTest, FirstCameraBecomesActive)
{
    Load("*CAMERAOBJECT { *NODE_NAME \"c\" } *CAMERAOBJECT { *NODE_NAME \"d\" }");
    EXPECT_EQ(scene.cameras.Count(), 2);
    EXPECT_EQ(scene.activeCamera, 0);
}

TEST_F(QSALoaderTest, WindowOfAnySizeGivesTheSameScene)
{
    MeshText mesh = Cube({"1,2", "", "3", "1,2", "300", "5,6,7"});
    mesh.tVertices = {{0, 0}, {0.5, 0.25}, {1, 1}};
    mesh.tFaces.assign(12, {0, 1, 2});
    const std::string text =
        "*3DSMAX_QSAEXPORT\t211\n*SCENE {\n*SCENE_LASTFRAME 50\n}\n" +
        MaterialList({"*MATERIAL_NAME \"one\" *MATERIAL_DIFFUSE 0.5 0.25,0.125"}) + mesh.Text() +
        Helper("*NODE_NAME \"" + std::string(100, 'n') +
               "\" *TM_ANIMATION { *CONTROL_POS_TRACK { *CONTROL_POS_SAMPLE 160 1.5 2.5 -3.5e-2 } "
               "*CONTROL_ROT_TRACK { *CONTROL_ROT_SAMPLE 160 0 0 1 0.5 } }");
    const auto contents = [&] {
        std::string all;
        for (const MeshContents::Vertex& v : ReadMesh(Mesh(0)).vertices)
            all += std::to_string(v.position.x) + std::to_string(v.normal.y) + std::to_string(v.u);
        const KRE_PosKeyData* key = Object(0).posKeys.Head();
        return all + Object(0).name.c_str() + std::to_string(key->time) +
               std::to_string(key->value.z) + std::to_string(Mesh(0).materials[0].diffuse.g) +
               std::to_string(Object(0).rotKeyCount) + std::to_string(scene.loopEnd);
    };
    Load(text);
    const std::string expected = contents();
    // A window grows to 256 bytes at the first word, so all smaller sizes behave the same. Each
    // window begins where the one before it stopped, so sizes three apart put boundaries at every
    // place of the text.
    const int32_t size = static_cast<int32_t>(text.size());
    for (int32_t window = 1; window < size + 40; window += window < 2     ? 250
                                                           : window < 700 ? 3
                                                                          : 37) {
        loader.SetWindow(window);
        directory.Write("scene.qsa", text);
        loader.Load(scene, "scene.qsa", 0);
        ASSERT_EQ(contents(), expected) << window;
    }
}
