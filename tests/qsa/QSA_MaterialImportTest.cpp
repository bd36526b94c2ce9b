#include "qsa/QSA_MaterialImport.h"

#include "tests/qsa/QSATesting.h"

namespace {

/// A triangle that uses top-level material `reference`, so that it can be checked.
std::string User(int reference = 0)
{
    MeshText mesh = Triangle();
    mesh.name += std::to_string(reference);
    mesh.more = "*MATERIAL_REF " + std::to_string(reference);
    return mesh.Text();
}

class QSA_MaterialImportTest : public QSALoaderTest {
protected:
    /// The finished material of this text.
    const KRE_MaterialInfo& Finished(const std::string& text, const char* version = "211")
    {
        Load("*3DSMAX_QSAEXPORT " + std::string(version) + "\n" + MaterialList({text}) + User());
        return Mesh(0).materials[0];
    }
};

} // namespace

TEST_F(QSA_MaterialImportTest, EmptyListGetsOneDefaultMaterial)
{
    Load("*MATERIAL_LIST { *MATERIAL_COUNT 0 }" + User());
    const KRE_MaterialInfo& material = Mesh(0).materials[0];
    ExpectColor(material.diffuse, 1, 1, 1, 1);
    ExpectColor(material.ambient, 1, 1, 1, 1);
    ExpectColor(material.specular, 0, 0, 0, 1); // white times the strength of 0
    ExpectColor(material.emissive, 0, 0, 0, 1);
    EXPECT_EQ(material.tileU, 1);
    EXPECT_THAT(AllWarnings(), testing::IsEmpty());
}

TEST_F(QSA_MaterialImportTest, ValuesOfTheTextBecomeTheRenderMaterial)
{
    const KRE_MaterialInfo& material =
        Finished("*MATERIAL_NAME \"m\" *MATERIAL_DIFFUSE 0.1 0.2 0.3 *MATERIAL_AMBIENT 0.4,0.5,0.6 "
                 "*MATERIAL_SPECULAR 0.5 1 0.25 *MATERIAL_SHINESTRENGTH 0.5 *MATERIAL_SHINE 0.25 "
                 "*MATERIAL_SELFILLUM_COLOR 0.7 0.8 0.9 *MATERIAL_TWOSIDED 5");
    ExpectColor(material.diffuse, 0.1f, 0.2f, 0.3f, 1);
    ExpectColor(material.ambient, 0.4f, 0.5f, 0.6f, 1);
    ExpectColor(material.specular, 0.25f, 0.5f, 0.125f, 1);
    ExpectColor(material.emissive, 0.7f, 0.8f, 0.9f, 1);
    EXPECT_EQ(material.power, 25.0f);
    EXPECT_EQ(material.twoSided, 1);
    EXPECT_EQ(material.transparent, 0);
}

TEST_F(QSA_MaterialImportTest, UnreadableTwoSidedIsOne)
{
    EXPECT_EQ(Finished("*MATERIAL_TWOSIDED 0").twoSided, 0);
    EXPECT_EQ(Finished("*MATERIAL_TWOSIDED *MATERIAL_SHINE 1").twoSided, 1);
}

TEST_F(QSA_MaterialImportTest, TransparencyMakesTheMaterialTransparent)
{
    const KRE_MaterialInfo& material = Finished("*MATERIAL_TRANSPARENCY 0.25");
    EXPECT_EQ(material.transparency, 0.25f);
    EXPECT_EQ(material.transparent, 1);
    EXPECT_EQ(Finished("*MATERIAL_TRANSPARENCY 0").transparent, 0);
    EXPECT_EQ(scene.opaqueMeshCount, 1);
}

TEST_F(QSA_MaterialImportTest, QuirkTransparencyTypeAheadOfTheTransparencyIsLost)
{
    EXPECT_EQ(Finished("*MATERIAL_TRANSPARENCY_TYPE Additive *MATERIAL_TRANSPARENCY 0.5")
                  .transparencyType,
              0);
    EXPECT_EQ(Finished("*MATERIAL_TRANSPARENCY 0.5 *MATERIAL_TRANSPARENCY_TYPE additive")
                  .transparencyType,
              1);
    EXPECT_EQ(Finished("*MATERIAL_TRANSPARENCY 0.5 *MATERIAL_TRANSPARENCY_TYPE Subtractive "
                       "*MATERIAL_TRANSPARENCY_TYPE Other")
                  .transparencyType,
              2);
}

TEST_F(QSA_MaterialImportTest, TilingStartsAtNothingFromVersion210On)
{
    EXPECT_EQ(Finished("", "209").tileU, 1);
    EXPECT_EQ(Finished("", "209").tileV, 1);
    EXPECT_EQ(Finished("", "210").tileU, 0);
    EXPECT_EQ(Finished("", "210").tileV, 0);
    EXPECT_EQ(Finished("", "210").mirrorU, 0);
}

TEST_F(QSA_MaterialImportTest, MaterialsMustComeInOrder)
{
    EXPECT_EQ(LoadError("*MATERIAL_LIST { *MATERIAL 1 { } }"),
              "scene.qsa: Material in wrong order!");
    EXPECT_EQ(LoadError("*MATERIAL_LIST { *MATERIAL 0 { *SUBMATERIAL 1 { } } }"),
              "scene.qsa: Submaterial in wrong order!");
    EXPECT_EQ(LoadError("*MATERIAL_LIST { *MATERIAL 0 { *SUBMATERIAL 0 { } *SUBMATERIAL 0 { } } }"),
              "scene.qsa: Submaterial in wrong order!");
}

TEST_F(QSA_MaterialImportTest, CountOfMaterialsIsReadLikeAnyNumber)
{
    const std::string list = "*MATERIAL_LIST { *MATERIAL_COUNT ";
    EXPECT_EQ(LoadError(list + std::string(127, '0') + " }"), "no error");
    EXPECT_EQ(LoadError(list + std::string(128, '0') + " }"), "scene.qsa: String too long (>127)");
}

TEST_F(QSA_MaterialImportTest, SecondListFinishesOnlyWhatItAdds)
{
    const std::string shiny = "*MATERIAL_SPECULAR 1 1 1 *MATERIAL_SHINESTRENGTH 0.5 "
                              "*MATERIAL_ANIMATION { *MATERIAL_ATTRIBUTE \"Opacity\" "
                              "*CONTROL_FLOAT_LINEAR { *CONTROL_FLOAT_KEY 4800 1 } }";
    Load(MaterialList({shiny}) + MaterialList({"*MATERIAL_DIFFUSE 1 0 0"}) + User(0) + User(1));
    // A second conversion of the key's time would divide it by 4800 again.
    const KRE_FloatTrack& track = scene.FindMesh("Triangle0", 0)->materials[0].opacityTrack;
    ASSERT_EQ(track.GetKeyCount(), 1);
    EXPECT_FLOAT_EQ(track.Key(0).time, 1.0f);
    ExpectColor(scene.FindMesh("Triangle1", 0)->materials[0].diffuse, 1, 0, 0, 1);
}

TEST_F(QSA_MaterialImportTest, SubmaterialBlocksThatAreThereCount)
{
    Load(MaterialList(
             {"*MATERIAL_NAME \"m\" *NUMSUBMTLS 5 *SUBMATERIAL 0 { *MATERIAL_DIFFUSE 1 0 0 }"}) +
         User());
    ExpectColor(Mesh(0).materials[0].diffuse, 1, 0, 0, 1);
    EXPECT_EQ(Warnings("Material 'm' announces 5 submaterials and has 1"), 1);
    Load(MaterialList({"*MATERIAL_NAME \"n\" *SUBMATERIAL 0 { *MATERIAL_DIFFUSE 0 1 0 }"}) +
         User());
    ExpectColor(Mesh(0).materials[0].diffuse, 0, 1, 0, 1);
    EXPECT_EQ(Warnings("Material 'n' announces 0 submaterials and has 1"), 1);
}

TEST_F(QSA_MaterialImportTest, SubmaterialsNestToAnyDepth)
{
    std::string text = "*MATERIAL_LIST { *MATERIAL 0 { *MATERIAL_DIFFUSE 0 0 1 ";
    const int depth = 20000;
    for (int i = 0; i < depth; ++i)
        text += "*NUMSUBMTLS 1 *SUBMATERIAL 0 { ";
    text += "*MATERIAL_DIFFUSE 1 0 0 ";
    for (int i = 0; i < depth + 2; ++i)
        text += "} ";
    Load(text + User());
    EXPECT_EQ(Mesh(0).materialCount, 1);
    EXPECT_THAT(AllWarnings(), testing::IsEmpty());
}

TEST_F(QSA_MaterialImportTest, ListThatIsCutOffEndsTheScene)
{
    const std::string text =
        "*MATERIAL_LIST { *MATERIAL 0 { *MATERIAL_NAME \"m\" *SUBMATERIAL 0 { ";
    Load(text);
    EXPECT_EQ(Warnings("Encountered unexpected end of file at pos " + std::to_string(text.size())),
              1);
}

TEST_F(QSA_MaterialImportTest, EffectAndParametersComeFromTheName)
{
    const KRE_MaterialInfo& material =
        Finished("*MATERIAL_NAME \"sea shader='sea.fx' fParam2='0.5' vParam3='1,2,3'\"");
    EXPECT_STREQ(material.effectParams.name.c_str(), "sea.fx");
    EXPECT_EQ(material.effectParams.params[1].floatValue, 0.5f);
    EXPECT_EQ(material.effectParams.params[2].vectorValue[2], 3.0f);
    EXPECT_EQ(material.transparent, 1); // as for every material with an effect
}

TEST_F(QSA_MaterialImportTest, ShaderNameWithoutClosingQuoteEndsAtTheEndOfTheName)
{
    EXPECT_STREQ(Finished("*MATERIAL_NAME \"shader='sea.fx\"").effectParams.name.c_str(), "sea.fx");
}

TEST_F(QSA_MaterialImportTest, MaterialsAreFoundByTheirPlaceInTheList)
{
    const QSA_TimeScale time;
    const QSA_LoadOptions options;
    QSA_SceneText& text =
        Opened("*MATERIAL 0 { *MATERIAL_NAME \"a\" *NUMSUBMTLS 1 *SUBMATERIAL 0 { "
               "*MATERIAL_NAME \"part\" } } *MATERIAL 1 { *MATERIAL_NAME \"b\" } } rest");
    QSA_MaterialImport materials(text, time, options);
    EXPECT_EQ(materials.ParseList(), 0);
    EXPECT_EQ(text.BytesLeft(), 5); // " rest"
    ASSERT_NE(materials.Find(0, "m"), nullptr);
    EXPECT_STREQ(materials.Find(0, "m")->name.c_str(), "a");
    ASSERT_EQ(materials.Find(0, "m")->subMaterials.size(), 1u);
    EXPECT_STREQ(materials.Find(0, "m")->subMaterials[0]->name.c_str(), "part");
    EXPECT_STREQ(materials.Find(1, "m")->name.c_str(), "b");
    EXPECT_EQ(materials.Find(-1, "m"), nullptr);
    EXPECT_THAT(AllWarnings(), testing::IsEmpty());
    EXPECT_EQ(materials.Find(2, "m"), nullptr);
    EXPECT_EQ(Warnings("Mesh 'm' has material 2 of 2"), 1);
}

TEST_F(QSA_MaterialImportTest, ListThatTheFileCutsOffIsFinished)
{
    const QSA_TimeScale time;
    const QSA_LoadOptions options;
    QSA_MaterialImport materials(Opened("*MATERIAL 0 { *MATERIAL_SHINE 0.25"), time, options);
    EXPECT_EQ(materials.ParseList(), 1);
    ASSERT_NE(materials.Find(0, "m"), nullptr);
    EXPECT_FLOAT_EQ(materials.Find(0, "m")->render.power, 25.0f); // a hundred times the shine
}
