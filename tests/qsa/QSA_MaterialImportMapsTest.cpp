#include "qsa/QSA_MaterialImport.h"

#include <sstream>

#include "tests/qsa/QSATesting.h"

namespace {

std::string Map(const char* kind, const std::string& inside)
{
    return std::string("*MAP_") + kind + " { " + inside + " }\n";
}

class QSA_MaterialImportMapsTest : public QSALoaderTest {
protected:
    QSA_MaterialImportMapsTest()
    {
        for (const char* name : {"d.bmp", "r.bmp", "b.bmp"})
            directory.Write(name, OnePixelBitmap());
    }
    /// Loads a triangle with such a material.
    void LoadMaterial(const std::string& text, uint32_t flags = 0, const char* version = "211")
    {
        MeshText mesh = Triangle();
        mesh.more = "*MATERIAL_REF 0";
        Load("*3DSMAX_QSAEXPORT " + std::string(version) + "\n" + MaterialList({text}) +
                 mesh.Text(),
             flags);
    }
    KRE_Texture& Texture() { return Mesh(0).textures[0]; }
    KRE_MaterialInfo& Material() { return Mesh(0).materials[0]; }
    /// The constants that a diffuse map with this text gets, as text.
    std::string Constants(const std::string& inside)
    {
        LoadMaterial(Map("DIFFUSE", "*BITMAP \"d.bmp\" " + inside));
        const KRE_TextMatrixAni& ani = Texture().matrixAni[0];
        std::ostringstream out;
        out << ani.constants[KRE_TextMatrixAni::kOffsetU] << ' '
            << ani.constants[KRE_TextMatrixAni::kOffsetV] << ' '
            << ani.constants[KRE_TextMatrixAni::kTileU] << ' '
            << ani.constants[KRE_TextMatrixAni::kTileV] << ' '
            << ani.constants[KRE_TextMatrixAni::kAngle];
        return out.str();
    }
};

} // namespace

TEST_F(QSA_MaterialImportMapsTest, CoordinatesBecomeTheConstantsOfTheMap)
{
    EXPECT_EQ(Constants(""), "0 0 1 1 0");
    EXPECT_EQ(Constants("*UVW_U_OFFSET 0.25 *UVW_V_OFFSET -0.5 *UVW_U_TILING 2 *UVW_V_TILING 3 "
                        "*UVW_W_ANGLE 0.125 *UVW_U_ANGLE 7 *UVW_V_ANGLE 8"),
              "0.25 -0.5 2 3 0.125");
}

TEST_F(QSA_MaterialImportMapsTest, MatrixOfAMapShiftsRotatesAndScalesAboutTheCentreOfThePicture)
{
    // (u, v, 1) is shifted by (-0.5 - 0.25, -0.5 + -0.5) = (-0.75, -1), rotated by a right angle in
    // the opposite sense of the angle, so that (x, y) becomes (y, -x), scaled by (2, 3), and
    // shifted back by (0.5, 0.5). The rows are the images of (1, 0), of (0, 1), and of the shift:
    // (0, -1) and (1, 0) scaled; (-1, 0.75) scaled is (-2, 2.25).
    const QSA_TimeScale time;
    const QSA_LoadOptions options;
    QSA_MaterialImport materials(
        Opened("*MATERIAL 0 { " +
               Map("DIFFUSE", "*UVW_U_OFFSET 0.25 *UVW_V_OFFSET -0.5 *UVW_U_TILING 2 "
                              "*UVW_V_TILING 3 *UVW_W_ANGLE 1.5707963") +
               "} }"),
        time, options);
    ASSERT_EQ(materials.ParseList(), 0);
    const D3DXMATRIX matrix = materials.Find(0, "m")->maps[kMapDiffuse]->matrix;
    const float expected[4][4] = {{0, -3, 0, 0}, {2, 0, 0, 0}, {-1.5f, 2.75f, 1, 0}, {0, 0, 0, 1}};
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            EXPECT_NEAR(matrix.m[row][column], expected[row][column], 1e-6f)
                << "row " << row << " column " << column;
}

TEST_F(QSA_MaterialImportMapsTest, MirroredTilingOfOneGivesTilingTwoAndOffsetMinusAQuarter)
{
    // Twice 1 is 2; half of a tile of 1 / 2 is 0.25.
    EXPECT_EQ(Constants("*UVW_TILE_U \"Mirror\""), "-0.25 0 2 1 0");
    EXPECT_EQ(Material().mirrorU, 1);
    EXPECT_EQ(Material().tileU, 0);
    // Twice 4 is 8; 0.5 / 8 is 0.0625, subtracted from 0.5.
    EXPECT_EQ(Constants("*UVW_TILE_V \"mirror\" *UVW_V_TILING 4 *UVW_V_OFFSET 0.5"),
              "0 0.4375 1 8 0");
    EXPECT_EQ(Material().mirrorV, 1);
}

TEST_F(QSA_MaterialImportMapsTest, MirroringChangesTheKeysToo)
{
    const std::string animation =
        "*MAP_ANIMATION { *MAP_ATTRIBUTE \"TileU\" *CONTROL_FLOAT_BEZIER { "
        "*CONTROL_BEZIER_FLOAT_KEY 0 3 5 7 } *MAP_ATTRIBUTE \"OffsetU\" *CONTROL_FLOAT_BEZIER { "
        "*CONTROL_BEZIER_FLOAT_KEY 0 1 5 7 } *MAP_ATTRIBUTE \"TileV\" *CONTROL_FLOAT_BEZIER { "
        "*CONTROL_BEZIER_FLOAT_KEY 0 3 5 7 } }";
    LoadMaterial(Map("DIFFUSE", "*BITMAP \"d.bmp\" *UVW_TILE_U \"Mirror\" " + animation));
    KRE_TextMatrixAni& ani = Texture().matrixAni[0];
    EXPECT_EQ(ani.tracks[KRE_TextMatrixAni::kTileU].Key(0).value, 6.0f);
    EXPECT_EQ(ani.tracks[KRE_TextMatrixAni::kTileU].Key(0).inTangent, 10.0f);
    EXPECT_EQ(ani.tracks[KRE_TextMatrixAni::kTileU].Key(0).outTangent, 14.0f);
    EXPECT_EQ(ani.tracks[KRE_TextMatrixAni::kOffsetU].Key(0).value, 0.75f);
    EXPECT_EQ(ani.tracks[KRE_TextMatrixAni::kTileV].Key(0).value, 3.0f); // the other axis
}

TEST_F(QSA_MaterialImportMapsTest, TileFlagsBelongToTheMaterialAndAreOnlyAdded)
{
    LoadMaterial(Map("DIFFUSE", "*UVW_TILE_U \"Tile\" *UVW_TILE_V \"Other\"") +
                 Map("BUMP", "*UVW_TILE_V \"TILE\" *UVW_TILE_U \"None\""));
    EXPECT_EQ(Material().tileU, 1);
    EXPECT_EQ(Material().tileV, 1);
    EXPECT_EQ(Material().mirrorU, 0);
}

TEST_F(QSA_MaterialImportMapsTest, DiffuseMapIsLoadedAndRemovesTheTint)
{
    LoadMaterial("*MATERIAL_DIFFUSE 0.5 0 0 *MATERIAL_AMBIENT 0 0.5 0 " +
                 Map("DIFFUSE", "*BITMAP \"d.bmp\""));
    EXPECT_TRUE(Texture().IsValid());
    EXPECT_EQ(Texture().slots[0].type, StageDiffuse);
    EXPECT_EQ(Texture().slots[0].param, 1.0f);
    EXPECT_STREQ(Texture().slotNames[0].c_str(), "d.bmp");
    ExpectColor(Material().diffuse, 1, 1, 1, 1);
    ExpectColor(Material().ambient, 1, 1, 1, 1);
    EXPECT_EQ(Material().reflectionSet, -1);
    EXPECT_EQ(Texture().loadOptions, 0u) << "they come with a load";
    EXPECT_THAT(AllWarnings(), testing::IsEmpty());
}

TEST_F(QSA_MaterialImportMapsTest, TimesOfASequenceFollowTheFrameSpeed)
{
    // 25 frames per second: start 50 / 25, each picture 1 / (2 * 25).
    MeshText mesh = Triangle();
    mesh.more = "*MATERIAL_REF 0";
    Load("*SCENE { *SCENE_FRAMESPEED 25 }" +
         MaterialList({Map("DIFFUSE", "*BITMAP \"d.bmp\" *TIME_STARTFRAME 50 *TIME_PLAYBACKRATE 2 "
                                      "*TIME_ENDCONDITION \"PingPong\"")}) +
         mesh.Text());
    EXPECT_FLOAT_EQ(Texture().sequenceStart, 2.0f);
    EXPECT_FLOAT_EQ(Texture().framePeriod, 0.02f);
    EXPECT_EQ(Texture().sequenceMode, 1);
}

TEST_F(QSA_MaterialImportMapsTest, UnknownEndConditionWarnsAndChangesNothing)
{
    const std::string head = "*BITMAP \"d.bmp\" *TIME_ENDCONDITION \"hold\" ";
    LoadMaterial(Map("DIFFUSE", head));
    EXPECT_EQ(Texture().sequenceMode, 2);
    LoadMaterial(Map("DIFFUSE", head + "*TIME_ENDCONDITION \"stop\""));
    EXPECT_EQ(Texture().sequenceMode, 2);
    EXPECT_EQ(Warnings("Unknown end condition for map time parameter"), 1);
    LoadMaterial(Map("DIFFUSE", head + "*TIME_ENDCONDITION \"LOOP\""));
    EXPECT_EQ(Texture().sequenceMode, 0);
}

TEST_F(QSA_MaterialImportMapsTest, ReflectionGoesToSlotZeroAndTheDiffuseMapToSlotOne)
{
    LoadMaterial(Map("DIFFUSE", "*BITMAP \"d.bmp\"") +
                 Map("REFLECT", "*BITMAP \"r.bmp\" *MAP_AMOUNT 0.25"));
    EXPECT_EQ(Texture().slots[0].type, StageReflection);
    EXPECT_EQ(Texture().slots[1].type, StageDiffuse);
    EXPECT_STREQ(Texture().slotNames[0].c_str(), "r.bmp");
    EXPECT_STREQ(Texture().slotNames[1].c_str(), "d.bmp");
    EXPECT_EQ(Material().reflectionAmount, 0.25f);
    EXPECT_EQ(Material().reflectionSet, 1);
    LoadMaterial(Map("REFLECT", "*BITMAP \"r.bmp\""));
    EXPECT_EQ(Material().reflectionSet, 0);
    EXPECT_EQ(Material().reflectionAmount, 1.0f);
}

TEST_F(QSA_MaterialImportMapsTest, BumpMapIsOnlyNamedWithoutItsOption)
{
    const std::string maps =
        Map("DIFFUSE", "*BITMAP \"d.bmp\"") + Map("BUMP", "*BITMAP \"none.bmp\"");
    LoadMaterial(maps);
    EXPECT_STREQ(Texture().slotNames[1].c_str(), "none.bmp");
    EXPECT_EQ(Texture().slots[1].type, StageBump);
    EXPECT_EQ(Texture().slotTextures[1], nullptr);
    EXPECT_THAT(AllWarnings(), testing::IsEmpty()); // the file is not searched for
    LoadMaterial(maps, kLoadBumpMaps);
    EXPECT_EQ(Warnings("Can not open bump map 'none.bmp'"), 1);
    EXPECT_STREQ(Texture().slotNames[1].c_str(), "none.bmp");
    LoadMaterial(Map("DIFFUSE", "*BITMAP \"d.bmp\"") + Map("BUMP", "*BITMAP \"b.bmp\""),
                 kLoadBumpMaps);
    EXPECT_NE(Texture().slotTextures[1], nullptr);
    EXPECT_EQ(Texture().slots[1].type, StageBump);
}

TEST_F(QSA_MaterialImportMapsTest, BumpMapKeepsItsTypeWithoutAPicture)
{
    const std::string bump = Map("BUMP", "*BITMAP \"none.bmp\"");
    const struct {
        const char* what;
        std::string maps;
        uint32_t flags;
    } cases[] = {
        {"alone", bump, 0},
        {"behind a missing diffuse map", Map("DIFFUSE", "*BITMAP \"no.bmp\"") + bump, 0},
        {"behind a missing reflection", Map("REFLECT", "*BITMAP \"no.bmp\"") + bump, 0},
        {"wanted and missing itself", bump, kLoadBumpMaps},
    };
    for (const auto& c : cases) {
        LoadMaterial(c.maps, c.flags);
        EXPECT_STREQ(Texture().slotNames[0].c_str(), "none.bmp") << c.what;
        EXPECT_EQ(Texture().slots[0].type, StageBump) << c.what;
        EXPECT_EQ(Texture().slots[0].param, 1.0f) << c.what;
        EXPECT_EQ(Texture().slots[1].type, StageDiffuse) << c.what;
    }
}

TEST_F(QSA_MaterialImportMapsTest, AMapWithoutAPictureDoesNotHideTheOthers)
{
    const std::string diffuse = Map("DIFFUSE", "*BITMAP \"d.bmp\"");
    const std::string reflection = Map("REFLECT", "*BITMAP \"r.bmp\"");
    const struct {
        const char* what;
        std::string maps;
        int32_t selected;
    } cases[] = {
        {"a bump map that is only named", diffuse + Map("BUMP", "*BITMAP \"b.bmp\""), 0},
        {"the same behind two", diffuse + reflection + Map("BUMP", "*BITMAP \"b.bmp\""), 1},
        {"a missing diffuse map", reflection + Map("DIFFUSE", "*BITMAP \"none.bmp\""), 0},
        {"both maps there", diffuse + reflection, 1},
    };
    for (const auto& c : cases) {
        LoadMaterial(c.maps);
        EXPECT_EQ(Texture().currentSlot, c.selected) << c.what;
        EXPECT_TRUE(Texture().IsValid()) << c.what;
    }
    LoadMaterial(Map("BUMP", "*BITMAP \"b.bmp\""));
    EXPECT_FALSE(Texture().IsValid());
}

TEST_F(QSA_MaterialImportMapsTest, MissingMapsWarnAndKeepTheirNames)
{
    LoadMaterial(Map("DIFFUSE", "*BITMAP \"no\\e.bmp\""));
    EXPECT_EQ(Warnings("Can not open diffuse map 'no\\e.bmp'"), 1);
    EXPECT_STREQ(Texture().slotNames[0].c_str(), "no\\e.bmp");
    EXPECT_FALSE(Texture().IsValid());
    LoadMaterial(Map("REFLECT", "*BITMAP \"none.bmp\""));
    EXPECT_EQ(Warnings("Can not open reflection map 'none.bmp'"), 1);
    EXPECT_STREQ(Texture().slotNames[0].c_str(), "none.bmp");
    EXPECT_EQ(Material().reflectionSet, -1);
}

TEST_F(QSA_MaterialImportMapsTest, AMapOfAnotherMachineIsTakenFromBesideTheScene)
{
    LoadMaterial(Map("DIFFUSE", "*BITMAP \"Q:\\art\\d.bmp\"") +
                 Map("REFLECT", "*BITMAP \"..\\maps\\r.bmp\""));
    EXPECT_NE(Texture().slotTextures[0], nullptr);
    EXPECT_NE(Texture().slotTextures[1], nullptr);
    EXPECT_STREQ(Texture().slotNames[0].c_str(), "..\\maps\\r.bmp") << "stored as it was given";
    EXPECT_STREQ(Texture().slotNames[1].c_str(), "Q:\\art\\d.bmp");
    EXPECT_THAT(LogText(), testing::HasSubstr(
                               "Texture 'Q:\\art\\d.bmp' is not in its place, taken from beside "
                               "the scene: 'd.bmp'"));
    EXPECT_THAT(LogText(),
                testing::HasSubstr("Texture '..\\maps\\r.bmp' is not in its place, taken from "
                                   "beside the scene: 'r.bmp'"));
    LoadMaterial(Map("DIFFUSE", "*BITMAP \"Q:\\art\\none.bmp\""));
    EXPECT_EQ(Warnings("Can not open diffuse map 'Q:\\art\\none.bmp'"), 1) << "as ever";
}

TEST_F(QSA_MaterialImportMapsTest, AMapBesideAFrameListIsAnErrorExplainedByTheWarningBeforeIt)
{
    directory.Write("run.ifl", "d.bmp\nr.bmp\n");
    const std::string list = "*BITMAP \"run.ifl\"";
    const struct {
        const char* what;
        std::string maps;
        const char* second;
    } cases[] = {
        {"bump", Map("DIFFUSE", list) + Map("BUMP", "*BITMAP \"b.bmp\""), "b.bmp"},
        {"diffuse", Map("REFLECT", list) + Map("DIFFUSE", "*BITMAP \"d.bmp\""), "d.bmp"},
        {"missing diffuse", Map("REFLECT", list) + Map("DIFFUSE", "*BITMAP \"no.bmp\""), "no.bmp"},
        {"bump behind a reflection", Map("REFLECT", list) + Map("BUMP", "*BITMAP \"c.bmp\""),
         "c.bmp"},
    };
    MeshText mesh = Triangle();
    mesh.more = "*MATERIAL_REF 0";
    for (const auto& c : cases) {
        EXPECT_EQ(LoadError(MaterialList({"*MATERIAL_NAME \"Flame\" " + c.maps}) + mesh.Text()),
                  "No stages with texture sequence allowed")
            << c.what;
        const std::string log = LogText();
        const std::string warning =
            "Warning:QSALoader: scene.qsa: Material 'Flame' has a frame list and another map: ";
        EXPECT_LT(log.rfind(warning + c.second), log.rfind("Error:KRE_Texture: No stages with"))
            << c.what << "\n"
            << log;
    }
}

TEST_F(QSA_MaterialImportMapsTest, AFrameListAloneGivesNoWarning)
{
    directory.Write("run.ifl", "d.bmp 2\nr.bmp\n");
    LoadMaterial(Map("DIFFUSE", "*BITMAP \"run.ifl\""));
    EXPECT_EQ(Texture().sequenceCount, 3);
    EXPECT_EQ(LogText(), "");
}

TEST_F(QSA_MaterialImportMapsTest, PictureThatCannotBeDecodedIsAnError)
{
    directory.Write("bad.bmp", "no picture");
    MeshText mesh = Triangle();
    mesh.more = "*MATERIAL_REF 0";
    EXPECT_THAT(LoadError(MaterialList({Map("DIFFUSE", "*BITMAP \"bad.bmp\"")}) + mesh.Text()),
                testing::HasSubstr("D3DXGetImageInfoFromFile failed"));
}

TEST_F(QSA_MaterialImportMapsTest, MaterialThatNoMeshUsesLoadsNoFile)
{
    Load(MaterialList({Map("DIFFUSE", "*BITMAP \"none.bmp\"")}) + Triangle().Text());
    EXPECT_THAT(AllWarnings(), testing::IsEmpty());
}

TEST_F(QSA_MaterialImportMapsTest, NoMapIsLoadedWithoutTextures)
{
    LoadMaterial("*MATERIAL_DIFFUSE 0.5 0.5 0.5 " + Map("DIFFUSE", "*BITMAP \"none.bmp\""),
                 kLoadNoTextures);
    EXPECT_THAT(AllWarnings(), testing::IsEmpty());
    ExpectColor(Material().diffuse, 0.5f, 0.5f, 0.5f, 1);
    EXPECT_EQ(Mesh(0).fvf, DWORD{D3DFVF_XYZ | D3DFVF_NORMAL | D3DFVF_TEX1}); // room all the same
}

TEST_F(QSA_MaterialImportMapsTest, AllChildrenOfALoadedMaterialLoadTheirMaps)
{
    // The faces use child 0 only.
    LoadMaterial("*NUMSUBMTLS 2 *SUBMATERIAL 0 { " + Map("DIFFUSE", "*BITMAP \"d.bmp\"") +
                 "} *SUBMATERIAL 1 { " + Map("DIFFUSE", "*BITMAP \"none.bmp\"") + "}");
    EXPECT_TRUE(Texture().IsValid());
    EXPECT_EQ(Warnings("Can not open diffuse map 'none.bmp'"), 1);
}

TEST_F(QSA_MaterialImportMapsTest, MapsOfAMaterialAreLoadedOnce)
{
    const std::string list = MaterialList({Map("DIFFUSE", "*BITMAP \"none.bmp\"")});
    MeshText mesh = Triangle();
    mesh.more = "*MATERIAL_REF 0";
    const std::string other = Helper("*NODE_NAME \"h\" *NODE_TM { *TM_ROW0 0 0 0 }");
    Load(list + mesh.Text() + other + mesh.Text());
    EXPECT_EQ(Warnings("Can not open diffuse map 'none.bmp'"), 1);
}

TEST_F(QSA_MaterialImportMapsTest, TracksOfAMapGetSecondsAndScaledTangents)
{
    // 4800 ticks per second; keys at 0 and 9600, 9600 apart.
    LoadMaterial(Map("DIFFUSE", "*BITMAP \"d.bmp\" *MAP_ANIMATION { *MAP_ATTRIBUTE \"AngleW\" "
                                "*CONTROL_FLOAT_BEZIER { *CONTROL_BEZIER_FLOAT_KEY 0 1 0.5 0.25 "
                                "*CONTROL_BEZIER_FLOAT_KEY 9600 2 0.125 3 } }"));
    const KRE_FloatTrack& track = Texture().matrixAni[0].tracks[KRE_TextMatrixAni::kAngle];
    ASSERT_EQ(track.GetKeyCount(), 2);
    EXPECT_EQ(track.Key(0).time, 0.0f);
    EXPECT_FLOAT_EQ(track.Key(1).time, 2.0f);
    EXPECT_FLOAT_EQ(track.Key(0).outTangent, 2400.0f);
    EXPECT_EQ(track.Key(0).inTangent, 0.5f); // nothing comes before it
    EXPECT_FLOAT_EQ(track.Key(1).inTangent, 1200.0f);
    EXPECT_EQ(track.Key(1).outTangent, 3.0f);
}

TEST_F(QSA_MaterialImportMapsTest, MapAttributeIsComparedExactlyAndAnotherOneKeepsTheLast)
{
    const std::string key = " *CONTROL_FLOAT_BEZIER { *CONTROL_BEZIER_FLOAT_KEY 0 ";
    LoadMaterial(Map("DIFFUSE", "*BITMAP \"d.bmp\" *MAP_ANIMATION {" + key + "9 0 0 } " +
                                    "*MAP_ATTRIBUTE \"OffsetV\"" + key + "1 0 0 } " +
                                    "*MAP_ATTRIBUTE \"offsetu\"" + key + "2 0 0 } }"));
    const KRE_TextMatrixAni& ani = Texture().matrixAni[0];
    EXPECT_EQ(ani.tracks[KRE_TextMatrixAni::kOffsetU].GetKeyCount(), 0);
    ASSERT_EQ(ani.tracks[KRE_TextMatrixAni::kOffsetV].GetKeyCount(), 1);
    EXPECT_EQ(ani.tracks[KRE_TextMatrixAni::kOffsetV].Key(0).value,
              2.0f); // the later one replaced it
}

TEST_F(QSA_MaterialImportMapsTest, MapTrackHolds1024KeysAndWarnsAtTheLast)
{
    for (const auto& [number, kept, warnings] :
         {std::tuple{1023, 1023, 0}, {1024, 1024, 1}, {1030, 1024, 2}}) {
        std::string text = "*BITMAP \"d.bmp\" *MAP_ANIMATION { *MAP_ATTRIBUTE \"TileV\" "
                           "*CONTROL_FLOAT_BEZIER { ";
        for (int i = 0; i < number; ++i)
            text += "*CONTROL_BEZIER_FLOAT_KEY " + std::to_string(i) + " 1 0 0\n";
        LoadMaterial(Map("DIFFUSE", text + "} }") + "*MATERIAL_SHINE 1 ");
        EXPECT_EQ(Texture().matrixAni[0].tracks[KRE_TextMatrixAni::kTileV].GetKeyCount(), kept);
        EXPECT_EQ(Warnings("More than 1024 float bezier keys"), warnings);
        EXPECT_EQ(Material().power, 100.0f); // the rest of the enclosing blocks is read
        Load(Helper("*NODE_NAME \"h\" *NODE_TM { *TM_ROW0 0 0 0 }")); // another warning in between
    }
}

TEST_F(QSA_MaterialImportMapsTest, QuirkMissingValueEndsTheMapAndTheScene)
{
    const std::string rest = "*MATERIAL_SHINE 1 ";
    for (const char* value : {"*BITMAP none", "*UVW_TILE_U Tile", "*TIME_ENDCONDITION loop"}) {
        LoadMaterial(Map("DIFFUSE", value) + rest);
        EXPECT_EQ(scene.meshes.Count(), 0) << value;
        EXPECT_THAT(LogText(), testing::HasSubstr("No text string found")) << value;
        EXPECT_THAT(LogText(), testing::HasSubstr("Encountered unexpected end of file")) << value;
    }
    // Directly in a material's block it is skipped.
    LoadMaterial("*MATERIAL_NAME none " + rest);
    EXPECT_EQ(Material().power, 100.0f);
}

TEST_F(QSA_MaterialImportMapsTest, MapNameOf128BytesIsAnError)
{
    EXPECT_EQ(LoadError(MaterialList({Map("DIFFUSE", "*BITMAP \"" + std::string(128, 'x') + '"')})),
              "scene.qsa: String too long (>127)");
}
