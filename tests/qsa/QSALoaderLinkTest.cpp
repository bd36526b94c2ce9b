#include <cmath>

#include "gfx/KRE_Gfx.h"
#include "scene/CopyBudget.h"
#include "tests/qsa/QSATesting.h"

namespace {

using QSALoaderLinkTest = QSALoaderTest;

} // namespace

TEST_F(QSALoaderLinkTest, MissingParentWarns)
{
    Load(Helper("*NODE_NAME \"a\" *NODE_PARENT \"none\"") +
         Helper("*NODE_NAME \"b\" *NODE_PARENT \"a\""));
    EXPECT_EQ(Object(0).parent, nullptr);
    EXPECT_EQ(Object(1).parent, &Object(0));
    EXPECT_THAT(LogText(), testing::HasSubstr("Parent object 'none' not found in scene"));
}

TEST_F(QSALoaderLinkTest, CloneSharesTheGeometryOfItsSource)
{
    Load(Cube({"1"}).Text() + Clone("copy", "Cube",
                                    "*WIREFRAME_COLOR 1 0 0 *NODE_VISIBLE 0 "
                                    "*NODE_TM { *TM_POS 5 6 7 *TM_ROW3 5 6 7 }"));
    ASSERT_EQ(scene.meshes.Count(), 2);
    EXPECT_EQ(Mesh(1).mesh.Get(), Mesh(0).mesh.Get());
    EXPECT_STREQ(Mesh(1).name.c_str(), "copy");
    EXPECT_STREQ(Mesh(1).cloneSource.c_str(), "Cube");
    EXPECT_EQ(Mesh(1).faceCount, 12);
    EXPECT_EQ(Mesh(1).visible, 0);
    ExpectVec3(Mesh(1).position, 5, 6, 7);
    ExpectColor(Mesh(1).materials[0].diffuse, 1, 0, 0, 1, "its own wire colour");
    ExpectColor(Mesh(0).materials[0].diffuse, 1, 1, 1, 1);
    ExpectVec3(Mesh(1).boxMax, 1, 1, 1);
}

TEST_F(QSALoaderLinkTest, SourceOfACloneMayStandLaterInTheFile)
{
    Load(Clone("copy", "Cube") + Cube({"1"}).Text());
    EXPECT_EQ(Mesh(0).mesh.Get(), Mesh(1).mesh.Get());
    EXPECT_EQ(Mesh(0).vertexCount, 8);
}

TEST_F(QSALoaderLinkTest, CloneOfACloneIsResolvedAfterItsSource)
{
    Load(Clone("c", "b") + Clone("b", "Cube") + Cube({"1"}).Text());
    EXPECT_EQ(Mesh(0).mesh.Get(), Mesh(2).mesh.Get());
    EXPECT_EQ(Mesh(0).faceCount, 12);
}

TEST_F(QSALoaderLinkTest, RingOfClonesIsAnError)
{
    EXPECT_EQ(LoadError(Clone("a", "b") + Clone("b", "a")), "scene.qsa: Clone Mesh 'b' not found");
    EXPECT_EQ(LoadError(Clone("a", "a")), "scene.qsa: Clone Mesh 'a' not found");
}

TEST_F(QSALoaderLinkTest, MissingSourceIsAnErrorThatNamesTheClone)
{
    EXPECT_EQ(LoadError(Clone("copy", "none")),
              "scene.qsa: Internal error: no mesh info for mesh 'copy'");
    // Records are found regardless of case, meshes are not.
    EXPECT_EQ(LoadError(Cube({"1"}).Text() + Clone("copy", "CUBE")),
              "scene.qsa: Clone Mesh 'CUBE' not found");
}

TEST_F(QSALoaderLinkTest, SourceMayHaveALineEndInItsName)
{
    Load(Named(Cube({"1"}), "a\nb") + Clone("copy", "a\nb"));
    EXPECT_EQ(Mesh(0).mesh.Get(), Mesh(1).mesh.Get());
}

TEST_F(QSALoaderLinkTest, MeshBlockAfterACloneKeywordIsSkipped)
{
    Load(Cube({"1"}).Text() + Clone("copy", "Cube", Triangle().MeshBlock()));
    EXPECT_EQ(Mesh(1).faceCount, 12);
}

TEST_F(QSALoaderLinkTest, CloneOfAnUnnamedSourceIsAMeshOfItsOwn)
{
    Load("*GEOMOBJECT { *NODE_NAME \"m\" " + Triangle().MeshBlock() + " *CLONE \"\" }");
    EXPECT_EQ(Mesh(0).faceCount, 1);
    EXPECT_EQ(LoadError(Triangle().Text() + Clone("empty", "")),
              "scene.qsa: Mesh without vertices: 'empty'");
    EXPECT_EQ(LoadError(Clone("late", "", Triangle().MeshBlock())),
              "scene.qsa: Mesh without vertices: 'late'");
}

TEST_F(QSALoaderLinkTest, CloneTakesItsOwnSubmaterials)
{
    MeshText mesh = Triangle();
    mesh.faces[0].material = 1;
    mesh.faces.push_back({0, 1, 2, "1", 0}); // attributes: submaterial 1, then 0
    const std::string list =
        MaterialList({kTwoParts,
                      "*NUMSUBMTLS 1 *SUBMATERIAL 0 { "
                      "*MATERIAL_DIFFUSE 0 0 1 }",
                      "*MATERIAL_DIFFUSE 0.5 0.5 0.5",
                      "*NUMSUBMTLS 2 *SUBMATERIAL 0 { *MATERIAL_DIFFUSE 0 1 1 } "
                      "*SUBMATERIAL 1 { *MATERIAL_DIFFUSE 1 1 0 }"});
    const std::string source = Named(mesh, "m", "*MATERIAL_REF 0");
    // Clones without submaterials have one material, no matter how many the source has.
    directory.Write("scene.qsa", list + source + Clone("one", "m", "*MATERIAL_REF 1") +
                                     Clone("plain", "m", "*MATERIAL_REF 2") +
                                     Clone("two", "m", "*MATERIAL_REF 3") + Clone("none", "m"));
    loader.Load(scene, "scene.qsa", 0);
    ASSERT_EQ(Mesh(1).materialCount, 2);
    ExpectColor(Mesh(1).materials[0].diffuse, 0, 0, 1, 1, "1 modulo 1");
    ExpectColor(Mesh(1).materials[1].diffuse, 0, 0, 1, 1, "0 modulo 1");
    ASSERT_EQ(Mesh(2).materialCount, 1);
    ExpectColor(Mesh(2).materials[0].diffuse, 0.5f, 0.5f, 0.5f, 1);
    ASSERT_EQ(Mesh(3).materialCount, 2);
    ExpectColor(Mesh(3).materials[0].diffuse, 1, 1, 0, 1, "submaterial 1");
    ExpectColor(Mesh(3).materials[1].diffuse, 0, 1, 1, 1, "submaterial 0");
    EXPECT_EQ(Mesh(4).materialCount, 1);
}

// A hundred faces of a hundred submaterials, and clones that have a hundred materials each.
TEST_F(QSALoaderLinkTest, MaterialsOfAllClonesTogetherHaveALimit)
{
    MeshText mesh = Triangle();
    std::string parts = "*NUMSUBMTLS 100 ";
    mesh.faces.clear();
    for (int i = 0; i < 100; ++i) {
        parts += "*SUBMATERIAL " + std::to_string(i) + " { } ";
        mesh.faces.push_back({0, 1, 2, "1", i});
    }
    std::string file = MaterialList({parts}) + Named(mesh, "m", "*MATERIAL_REF 0");
    const int64_t clones = (int64_t{32} << 20) / (100 * kMaterialBytes);
    for (int64_t i = 0; i < clones; ++i)
        file += Clone("c", "m", "*MATERIAL_REF 0");
    EXPECT_EQ(LoadError(file), "no error");
    EXPECT_EQ(Mesh(static_cast<int32_t>(clones)).materialCount, 100);
    EXPECT_EQ(LoadError(file + Clone("last", "m", "*MATERIAL_REF 0")),
              "scene.qsa: Mesh 'last': more than 33554432 bytes of materials and bones are copied");
}

// A thousand keys of a colour are 52,000 bytes: 645 meshes may have them.
TEST_F(QSALoaderLinkTest, KeysOfTheMaterialsOfAllMeshesTogetherHaveALimit)
{
    std::string keys;
    for (int i = 0; i < 1000; ++i)
        keys += "*CONTROL_POINT3_KEY " + std::to_string(i) + " 1 0 0 ";
    std::string file =
        MaterialList(
            {"*MATERIAL_ANIMATION { *MATERIAL_ATTRIBUTE \"Diffuse\" *CONTROL_COLOR_LINEAR { " +
             keys + "} }"}) +
        Named(Triangle(), "m", "*MATERIAL_REF 0");
    for (int i = 1; i < 645; ++i)
        file += Clone("c", "m", "*MATERIAL_REF 0");
    EXPECT_EQ(LoadError(file), "no error");
    EXPECT_EQ(Mesh(644).materials[0].diffuseTrack.GetKeyCount(), 1000);
    EXPECT_THAT(LoadError(file + Named(Triangle(), "last", "*MATERIAL_REF 0")),
                testing::HasSubstr("more than 33554432 bytes"))
        << "a mesh of its own copies keys too";
}

TEST_F(QSALoaderLinkTest, CloneWithFewerMaterialsThanItsGeometryHasAttributesWarns)
{
    MeshText mesh = Triangle();
    mesh.faces.push_back({0, 2, 1, "1", 1}); // submaterials 0 and 1
    Load(MaterialList({kTwoParts, "*MATERIAL_DIFFUSE 1 1 0"}) +
         Named(mesh, "m", "*MATERIAL_REF 0") + Clone("one", "m", "*MATERIAL_REF 1") +
         Clone("two", "m", "*MATERIAL_REF 0") + Clone("none", "two", "*MATERIAL_REF 0"));
    EXPECT_EQ(Mesh(1).materialCount, 1);
    EXPECT_EQ(Mesh(2).materialCount, 2);
    EXPECT_EQ(Mesh(3).materialCount, 0) << "a clone has no submaterial numbers to repeat";
    EXPECT_EQ(Warnings("Clone 'one' of 'm' has 1 of 2 materials"), 1);
    EXPECT_EQ(Warnings("Clone 'none' of 'two' has 0 of 2 materials"), 1);
    EXPECT_THAT(AllWarnings(), testing::Not(testing::Contains(testing::HasSubstr("'two' of 'm'"))));
}

TEST_F(QSALoaderLinkTest, MaterialThatOnlyClonesUseLoadsNoFile)
{
    Load(MaterialList({"*MAP_DIFFUSE { *BITMAP \"none.bmp\" }"}) + Cube({"1"}).Text() +
         Clone("copy", "Cube", "*MATERIAL_REF 0"));
    EXPECT_THAT(AllWarnings(), testing::IsEmpty());
    EXPECT_FALSE(Mesh(1).textures[0].IsValid());
}

TEST_F(QSALoaderLinkTest, CloneCopiesBoneRecordsAndPointers)
{
    MeshText mesh = Triangle();
    mesh.weights =
        "*MESH_INIT_TM { } *BONE_WEIGHT { *BONE_NAME \"b\" *BONE_INIT_TM { } *INDEX_WEIGHT "
        "0 1 }";
    Load("*3DSMAX_QSAEXPORT 211\n" + mesh.Text() + Clone("copy", "Triangle") +
         "*BONEOBJECT { *NODE_NAME \"b\" }");
    ASSERT_EQ(Mesh(1).bones.Count(), 2);
    EXPECT_STREQ(Mesh(1).bones.Get(1)->name, "b");
    EXPECT_EQ(Mesh(1).boneObjects[1], &Object(0));
    EXPECT_EQ(Mesh(1).boneObjects[0], &Mesh(0)); // as it stands in the source
}

TEST_F(QSALoaderLinkTest, TwoMeshesOfTheSameNameAreBothBuilt)
{
    Load(Named(Cube({"1"}), "m") + Named(Triangle(), "m") + Clone("copy", "m") +
         Helper("*NODE_NAME \"h\" *NODE_PARENT \"m\""));
    ASSERT_EQ(scene.meshes.Count(), 3);
    EXPECT_EQ(Mesh(1).faceCount, 1);
    EXPECT_EQ(Mesh(2).faceCount, 12); // clones and children find the first
    EXPECT_EQ(Object(0).parent, &Mesh(0));
}

TEST_F(QSALoaderLinkTest, PivotIsKeptForACloneOfAnOldFile)
{
    const std::string pivot = "*PIVOT_TM { *TM_ROW3 1 2 3 }";
    Load("*3DSMAX_QSAEXPORT 199\n" + Named(Triangle(), "m", pivot) + Clone("copy", "m", pivot));
    EXPECT_EQ(Mesh(0).pivotTM._41, 0.0f);
    EXPECT_EQ(Mesh(1).pivotTM._41, 1.0f);
}

TEST_F(QSALoaderLinkTest, WithoutABoundsObjectTheSceneIsMeasured)
{
    Load("*SCENE { *SCENE_FIRSTFRAME 30 *SCENE_FRAMESPEED 30 }" +
         Named(Cube({"1"}), "c",
               "*TM_ANIMATION { *CONTROL_POS_TRACK { *CONTROL_POS_SAMPLE 4800 5 0 0 "
               "*CONTROL_POS_SAMPLE 9600 7 0 0 } }"));
    // The keys are at seconds 0 and 1 after the first frame; the scene is set to 30 / 30 seconds.
    ExpectVec3(scene.boxMin, 7, 0, 0);
    ExpectVec3(scene.boxMax, 8, 1, 1);
    EXPECT_EQ(scene.clipMode, 0);
}

TEST_F(QSALoaderLinkTest, SkinnedMeshWithABoundsObjectDoesNotWarn)
{
    MeshText mesh = Triangle();
    mesh.weights =
        "*MESH_INIT_TM { } *BONE_WEIGHT { *BONE_NAME \"b\" *BONE_INIT_TM { } *INDEX_WEIGHT "
        "0 1 }";
    const std::string skinned = "*BONEOBJECT { *NODE_NAME \"b\" }" + mesh.Text();
    Load(skinned);
    EXPECT_EQ(Warnings("Skinned meshes without 'Bounds' object"), 1);
    Load(skinned + Named(Cube({"1"}), "Bounds"));
    EXPECT_EQ(Warnings("Skinned meshes without 'Bounds' object"), 1); // no further one
}

TEST_F(QSALoaderLinkTest, OpaqueMeshesComeFirst)
{
    const std::string list = MaterialList({"*MATERIAL_TRANSPARENCY 0.5", ""});
    Load(list + Named(Triangle(), "glass", "*MATERIAL_REF 0") +
         Named(Triangle(), "wall", "*MATERIAL_REF 1"));
    EXPECT_EQ(scene.opaqueMeshCount, 1);
    EXPECT_STREQ(scene.GetMesh(0)->name.c_str(), "wall");
}
