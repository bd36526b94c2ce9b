#include "qsa/QSA_BoundsObject.h"

#include <cmath>

#include "gfx/KRE_Gfx.h"
#include "tests/qsa/QSATesting.h"

namespace {

class QSA_BoundsObjectTest : public QSALoaderTest {
protected:
    /// Saves the loaded scene and loads it again.
    void Reload()
    {
        gGfx->SaveScene(scene, "saved.qsb");
        gGfx->LoadScene(reloaded, "saved.qsb", 0);
        EXPECT_EQ(FaultsOf(reloaded), "");
    }
    /// The meshes in list order, each with its source.
    static std::string Sources(KRE_3dScene& of)
    {
        std::string all;
        for (const KRE_Mesh* mesh : of.meshes) {
            all += all.empty() ? "" : " ";
            all += mesh->name.c_str();
            all += mesh->cloneSource.IsEmpty() ? "" : "<";
            all += mesh->cloneSource.c_str();
        }
        return all;
    }
    static std::string Kept(const std::string& clone, const std::string& source)
    {
        return "Mesh '" + clone + "' keeps the geometry of '" + source +
               "', which is taken out of the scene";
    }

    KRE_3dScene reloaded;
};

} // namespace

TEST_F(QSA_BoundsObjectTest, BoundsInAnyCaseIsTakenAndASecondOneStays)
{
    const std::string moved =
        "*NODE_TM { *TM_POS 10 0 0 *TM_SCALE 2 2 2 *TM_ROW0 2 0 0 *TM_ROW1 0 2 0 "
        "*TM_ROW2 0 0 2 *TM_ROW3 10 0 0 }";
    Load(Triangle().Text() + Named(Cube({"1"}), "bOUNDS", moved) + Named(Cube({"1"}), "Bounds"));
    ASSERT_EQ(scene.meshes.Count(), 2);
    EXPECT_STREQ(Mesh(1).name.c_str(), "Bounds");
    EXPECT_EQ(scene.clipMode, 3);
    // The unit cube, scaled by 2 and moved by 10.
    ExpectVec3(scene.boxMin, 10, 0, 0);
    ExpectVec3(scene.boxMax, 12, 2, 2);
    ExpectVec3(scene.center, 11, 1, 1);
    EXPECT_FLOAT_EQ(scene.radius, std::sqrt(3.0f));
}

TEST_F(QSA_BoundsObjectTest, ChildrenOfTheBoundsObjectLoseTheirParent)
{
    Load(Named(Cube({"1"}), "Bounds") + Helper("*NODE_NAME \"h\" *NODE_PARENT \"Bounds\""));
    EXPECT_EQ(scene.meshes.Count(), 0);
    EXPECT_EQ(Object(0).parent, nullptr);
}

// ---- Clones of the object that gives the bounds, which is not saved

TEST_F(QSA_BoundsObjectTest, TheFirstBecomesAMeshOfItsOwnAndTheSourceOfTheOthers)
{
    const std::string list = MaterialList({"*MATERIAL_DIFFUSE 1 0 0", "*MATERIAL_DIFFUSE 0 1 0"});
    const std::string moved = "*NODE_TM { *TM_POS 5 6 7 *TM_ROW3 5 6 7 } ";
    Load(list + Named(Cube({"1"}), "Bounds", "*MATERIAL_REF 0") +
         Clone("a", "Bounds", moved + "*MATERIAL_REF 1") + Clone("b", "Bounds"));
    EXPECT_EQ(Warnings(Kept("a", "Bounds")), 1);
    EXPECT_EQ(AllWarnings().size(), 1u);
    const auto check = [](KRE_3dScene& loaded) {
        ASSERT_EQ(loaded.meshes.Count(), 2);
        KRE_Mesh& own = *loaded.meshes.Get(0);
        KRE_Mesh& clone = *loaded.meshes.Get(1);
        EXPECT_STREQ(own.name.c_str(), "a");
        EXPECT_TRUE(own.cloneSource.IsEmpty());
        EXPECT_EQ(own.ownGeometry, 0) << "the cube has no texture faces";
        EXPECT_EQ(own.faceCount, 12);
        EXPECT_EQ(own.vertexCount, 8);
        ExpectVec3(own.position, 5, 6, 7);
        ASSERT_EQ(own.materialCount, 1);
        ExpectColor(own.materials[0].diffuse, 0, 1, 0, 1);
        EXPECT_STREQ(clone.name.c_str(), "b");
        EXPECT_STREQ(clone.cloneSource.c_str(), "a");
        EXPECT_EQ(clone.mesh.Get(), own.mesh.Get());
        EXPECT_EQ(loaded.clipMode, 3);
        ExpectVec3(loaded.boxMax, 1, 1, 1);
    };
    check(scene);
    Reload();
    check(reloaded);
}

TEST_F(QSA_BoundsObjectTest, ACloneWhoseNameIsNotUniqueIsNotASource)
{
    Load(Named(Triangle(), "a") + Named(Cube({"1"}), "Bounds") + Clone("a", "Bounds") +
         Clone("c", "Bounds") + Clone("d", "Bounds"));
    EXPECT_EQ(Warnings(Kept("a", "Bounds")), 1);
    EXPECT_EQ(Warnings(Kept("c", "Bounds")), 1);
    EXPECT_EQ(Warnings(Kept("d", "Bounds")), 0);
    Reload();
    EXPECT_EQ(Sources(reloaded), "a a c d<c");
    EXPECT_EQ(reloaded.GetMesh(0)->faceCount, 1);
    for (int32_t i = 1; i < 4; ++i)
        EXPECT_EQ(reloaded.GetMesh(i)->faceCount, 12) << i;
}

TEST_F(QSA_BoundsObjectTest, ASecondMeshOfThatNameIsNotTheirSource)
{
    const std::string second = Named(Triangle(), "Bounds");
    Load(Named(Cube({"1"}), "Bounds") + second + Clone("a", "Bounds"));
    EXPECT_EQ(Sources(scene), "Bounds a");
    Reload();
    EXPECT_EQ(reloaded.GetMesh(1)->faceCount, 12);
    // The bounds are found regardless of case, a source is not.
    Load(Named(Cube({"1"}), "bOUNDS") + second + Clone("a", "Bounds"));
    EXPECT_EQ(Sources(scene), "Bounds a<Bounds");
    EXPECT_EQ(scene.GetMesh(1)->faceCount, 1);
    EXPECT_EQ(Warnings(Kept("a", "bOUNDS")), 0);
}

TEST_F(QSA_BoundsObjectTest, ClonesOfAClonedMeshStayItsClones)
{
    Load(Clone("a", "b") + Named(Cube({"1"}), "Bounds") + Clone("b", "Bounds") + Clone("c", "b"));
    EXPECT_EQ(Sources(scene), "a<b b c<b");
    Reload();
    EXPECT_EQ(Sources(reloaded), "a<b b c<b");
    EXPECT_EQ(reloaded.GetMesh(0)->faceCount, 12);
    EXPECT_EQ(reloaded.GetMesh(0)->mesh.Get(), reloaded.GetMesh(2)->mesh.Get());
}

TEST_F(QSA_BoundsObjectTest, BoundsMayThemselvesBeAClone)
{
    Load(Named(Cube({"1"}), "Box") + Clone("Bounds", "Box") + Clone("a", "Bounds"));
    EXPECT_EQ(Sources(scene), "Box a");
    Reload();
    EXPECT_EQ(reloaded.GetMesh(1)->faceCount, 12);
}

// A file must only name materials that exist, and faces that were not drawn must stay invisible.
TEST_F(QSA_BoundsObjectTest, FacesWithoutAMaterialGetAnInvisibleOne)
{
    MeshText parts = Triangle();
    parts.faces.push_back({0, 2, 1, "1", 1}); // submaterials 0 and 1
    Load(MaterialList({kTwoParts}) + Named(parts, "Bounds", "*MATERIAL_REF 0") +
         Clone("a", "Bounds", "*WIREFRAME_COLOR 1 0 0"));
    Reload();
    KRE_Mesh* own = reloaded.GetMesh(0);
    ASSERT_EQ(own->materialCount, 2);
    ExpectColor(own->materials[0].diffuse, 1, 0, 0, 1);
    EXPECT_EQ(own->materials[0].transparency, 0.0f);
    EXPECT_EQ(own->materials[1].transparency, 1.0f);
    EXPECT_EQ(own->materials[1].transparent, 0) << "the order of the meshes stays";

    // The clone of a clone has no material at all: its first part is drawn with a default one.
    Load(MaterialList({kTwoParts}) + Named(parts, "m", "*MATERIAL_REF 0") + Clone("Bounds", "m") +
         Clone("a", "Bounds", "*MATERIAL_REF 0"));
    Reload();
    own = reloaded.GetMesh(1);
    ASSERT_EQ(own->materialCount, 2);
    EXPECT_EQ(own->materials[0].transparency, 0.0f);
    EXPECT_EQ(own->materials[1].transparency, 1.0f);
}
