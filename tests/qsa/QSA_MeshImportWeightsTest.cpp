#include "tests/qsa/QSATesting.h"

namespace {

using testing::ElementsAre;
using testing::FloatEq;
using Bones = std::array<uint8_t, 4>;

const char* const kIdentity = "*TM_ROW0 1 0 0 *TM_ROW1 0 1 0 *TM_ROW2 0 0 1 *TM_ROW3 0 0 0";

/// The start of all weights: the mesh's own matrix, which makes bone 0.
std::string Init()
{
    return std::string("*MESH_INIT_TM { ") + kIdentity + " }\n";
}

std::string Bone(const std::string& name, const std::string& weights)
{
    return "*BONE_WEIGHT { *BONE_NAME \"" + name + "\" *BONE_INIT_TM { " + kIdentity + " } " +
           weights + " }\n";
}

std::string Weight(int vertex, const char* weight)
{
    return "*INDEX_WEIGHT " + std::to_string(vertex) + ' ' + weight + ' ';
}

/// A triangle with weights and the bones that they can name.
std::string Skinned(const std::string& weights, const char* version = "211")
{
    MeshText mesh = Triangle();
    mesh.weights = weights;
    std::string text = std::string("*3DSMAX_QSAEXPORT ") + version + "\n" + mesh.Text();
    for (const char* bone : {"a", "b", "c", "d", "e"})
        text += std::string("*BONEOBJECT { *NODE_NAME \"") + bone + "\" }\n";
    return text;
}

using QSA_MeshImportWeightsTest = QSALoaderTest;

} // namespace

TEST_F(QSA_MeshImportWeightsTest, WeightsOfAVertexAreNormalised)
{
    Load(Skinned(Init() + Bone("a", Weight(0, "0.6") + Weight(1, "1") + Weight(2, "1")) +
                 Bone("b", Weight(0, "0.2"))));
    EXPECT_EQ(Mesh(0).fvf, 0x1018u);
    const MeshContents contents = ReadMesh(Mesh(0));
    // 0.6 of 0.6 + 0.2; the other weight, 0.25, is not stored.
    EXPECT_THAT(contents.Corner(0, 0).weights, ElementsAre(FloatEq(0.75f)));
    EXPECT_EQ(contents.Corner(0, 0).bones, (Bones{1, 2, 0, 0}));
    EXPECT_THAT(contents.Corner(0, 1).weights, ElementsAre(FloatEq(1.0f)));
    EXPECT_EQ(Mesh(0).clipMode, 0);
    EXPECT_EQ(Warnings("Skinned meshes without 'Bounds' object"), 1);
}

TEST_F(QSA_MeshImportWeightsTest, WeightsAreNormalisedForAllBoneNumbers)
{
    // The bones 1, 2, 128 and 63 in this order: as the bytes of a float, these numbers are 1.0.
    const auto name = [](int bone) { return "b" + std::to_string(bone); };
    std::string weights = Init();
    std::string objects;
    for (int bone = 1; bone <= 128; ++bone) {
        const bool hasWeight = bone == 1 || bone == 2 || bone == 128;
        weights += Bone(name(bone), hasWeight ? Weight(0, "0.5") : "");
        objects += "*BONEOBJECT { *NODE_NAME \"" + name(bone) + "\" }\n";
    }
    weights += Bone(name(63), Weight(0, "0.5"));
    Load(Skinned(weights) + objects);
    const MeshContents contents = ReadMesh(Mesh(0));
    EXPECT_EQ(contents.Corner(0, 0).bones, (Bones{1, 2, 128, 63}));
    EXPECT_THAT(contents.Corner(0, 0).weights,
                ElementsAre(FloatEq(0.25f), FloatEq(0.25f), FloatEq(0.25f)));
}

TEST_F(QSA_MeshImportWeightsTest, FirstBoneIsTheMeshItself)
{
    Load(Skinned(Init() + Bone("a", Weight(0, "1") + Weight(0, "1"))));
    ASSERT_EQ(Mesh(0).bones.Count(), 2);
    EXPECT_STREQ(Mesh(0).bones.Get(0)->name, "Triangle");
    EXPECT_EQ(Mesh(0).boneObjects[0], &Mesh(0));
    EXPECT_STREQ(Mesh(0).boneObjects[1]->name.c_str(), "a");
    EXPECT_EQ(Mesh(0).bones.Capacity(), 2);
}

TEST_F(QSA_MeshImportWeightsTest, OneWeightCountsAsTwoWithAWarning)
{
    Load(Skinned(Init() + Bone("a", Weight(0, "1") + Weight(1, "0.5"))));
    EXPECT_EQ(Mesh(0).fvf, 0x1018u);
    EXPECT_EQ(Warnings("Only one bone in object Triangle"), 1);
}

TEST_F(QSA_MeshImportWeightsTest, FormatFollowsTheMostWeightsOfAVertex)
{
    std::string weights = Init();
    const DWORD formats[] = {0x1018, 0x1018, 0x101A, 0x101C};
    const char* const names[] = {"a", "b", "c", "d"};
    for (int i = 0; i < 4; ++i) {
        weights += Bone(names[i], Weight(0, "0.25"));
        Load(Skinned(weights));
        EXPECT_EQ(Mesh(0).fvf, formats[i]) << i;
    }
}

TEST_F(QSA_MeshImportWeightsTest, FifthBoneReplacesTheSmallestWithOneWarning)
{
    Load(Skinned(Init() + Bone("a", Weight(0, "0.4")) + Bone("b", Weight(0, "0.2")) +
                 Bone("c", Weight(0, "0.3")) + Bone("d", Weight(0, "0.5")) +
                 Bone("e", Weight(0, "0.8"))));
    // 0.8 replaces 0.2; the sum is 2.
    const MeshContents contents = ReadMesh(Mesh(0));
    EXPECT_EQ(contents.Corner(0, 0).bones, (Bones{1, 5, 3, 4}));
    EXPECT_THAT(contents.Corner(0, 0).weights,
                ElementsAre(FloatEq(0.2f), FloatEq(0.4f), FloatEq(0.15f)));
    EXPECT_EQ(Warnings("More than 4 bones in vertex of object 'Triangle'"), 1);
}

TEST_F(QSA_MeshImportWeightsTest, SmallestWeightIsChosenAsExportersDo)
{
    const struct {
        const char* what;
        const char* weights[4];
        size_t place;
    } cases[] = {
        {"all equal: the last", {"0.2", "0.2", "0.2", "0.2"}, 3},
        {"first", {"0.2", "0.3", "0.4", "0.5"}, 0},
        {"second", {"0.3", "0.2", "0.4", "0.5"}, 1},
        {"third", {"0.4", "0.3", "0.2", "0.5"}, 2},
        {"fourth", {"0.4", "0.3", "0.5", "0.2"}, 3},
        {"second of two equal ones", {"0.2", "0.2", "0.4", "0.5"}, 1},
        {"first pair before an equal third", {"0.2", "0.5", "0.2", "0.5"}, 0},
        {"fourth before an equal second", {"0.5", "0.2", "0.5", "0.2"}, 3},
    };
    const char* const names[] = {"a", "b", "c", "d"};
    for (const auto& c : cases) {
        std::string weights = Init();
        for (int i = 0; i < 4; ++i)
            weights += Bone(names[i], Weight(0, c.weights[i]));
        Load(Skinned(weights + Bone("e", Weight(0, "0.9"))));
        Bones expected = {1, 2, 3, 4};
        expected[c.place] = 5;
        EXPECT_EQ(ReadMesh(Mesh(0)).Corner(0, 0).bones, expected) << c.what;
    }
}

TEST_F(QSA_MeshImportWeightsTest, QuirkFifthWeightReplacesOneEvenIfItIsSmallerStill)
{
    Load(Skinned(Init() + Bone("a", Weight(0, "0.5")) + Bone("b", Weight(0, "0.5")) +
                 Bone("c", Weight(0, "0.5")) + Bone("d", Weight(0, "0.5")) +
                 Bone("e", Weight(0, "0.1"))));
    EXPECT_EQ(ReadMesh(Mesh(0)).Corner(0, 0).bones, (Bones{1, 2, 3, 5}));
}

TEST_F(QSA_MeshImportWeightsTest, WeightOfATenthIsKeptAndLessIsDropped)
{
    Load(Skinned(Init() + Bone("a", Weight(0, "0.1") + Weight(1, "0.09") + Weight(2, "0.5")) +
                 Bone("b", Weight(0, "0.3") + Weight(1, "0.05"))));
    const MeshContents contents = ReadMesh(Mesh(0));
    EXPECT_THAT(contents.Corner(0, 0).weights, ElementsAre(FloatEq(0.25f)));
    // Vertex 1 has no weights left, so it follows bone 0 alone.
    EXPECT_THAT(contents.Corner(0, 1).weights, ElementsAre(FloatEq(1.0f)));
    EXPECT_EQ(contents.Corner(0, 1).bones, (Bones{0, 0, 0, 0}));
}

TEST_F(QSA_MeshImportWeightsTest, BoneIsFoundAgainByItsExactName)
{
    Load(Skinned(Init() + Bone("a", Weight(0, "0.5")) + Bone("A", Weight(0, "0.25")) +
                 Bone("a", Weight(0, "0.25"))));
    EXPECT_EQ(Mesh(0).bones.Count(), 3);
    EXPECT_EQ(ReadMesh(Mesh(0)).Corner(0, 0).bones, (Bones{1, 2, 1, 0}));
    EXPECT_EQ(Warnings("Bone 'A' not found in scene '*undefined*'. Child: 'Triangle'"), 0);
    EXPECT_THAT(LogText(), testing::HasSubstr("Bone 'A' not found in scene"));
}

TEST_F(QSA_MeshImportWeightsTest, BoneMatricesAreMeshThenBone)
{
    MeshText mesh = Triangle();
    mesh.more.clear();
    mesh.weights = "*MESH_INIT_TM { *TM_ROW3 1 0 0 } *BONE_WEIGHT { *BONE_NAME \"a\" "
                   "*BONE_INIT_TM { *TM_ROW0 2 0 0 *TM_ROW3 0 5 0 } *INDEX_WEIGHT 0 1 } ";
    std::string text = mesh.Text();
    // The pivot comes before the mesh, where exporters write it.
    text.insert(text.find("*MESH {"), "*PIVOT_TM { *TM_ROW3 0 0 7 } ");
    const std::string bone = "*BONEOBJECT { *NODE_NAME \"a\" }";
    Load("*3DSMAX_QSAEXPORT 211\n" + text + bone);
    const KRE_BoneInfo& info = *Mesh(0).bones.Get(1);
    // (x, y, z) becomes (x + 1) first, then (2 x, y + 5).
    EXPECT_EQ(info.bindTM._11, 2.0f);
    EXPECT_EQ(info.bindTM._41, 2.0f);
    EXPECT_EQ(info.bindTM._42, 5.0f);
    EXPECT_EQ(info.meshInitTM._43, 0.0f);
    EXPECT_EQ(Mesh(0).bones.Get(0)->bindTM._41, 0.0f);

    // Before version 2.11 the pivot comes first.
    Load("*3DSMAX_QSAEXPORT 210\n" + text + bone);
    EXPECT_EQ(Mesh(0).bones.Get(1)->meshInitTM._43, 7.0f);
    EXPECT_EQ(Mesh(0).bones.Get(1)->meshInitTM._41, 1.0f);
}

TEST_F(QSA_MeshImportWeightsTest, WeightsThatPointNowhereAreErrors)
{
    for (const char* index : {"3", "-1", "2147483647"})
        EXPECT_EQ(
            LoadError(Skinned(Init() + Bone("a", std::string("*INDEX_WEIGHT ") + index + " 1"))),
            std::string("scene.qsa: Invalid weight index: ") + index);
}

TEST_F(QSA_MeshImportWeightsTest, WeightsOfAMeshWithoutBonesStayAsTheyAre)
{
    Load(Skinned("*BONE_WEIGHT { *INDEX_WEIGHT 2 0.5 *INDEX_WEIGHT 2 0.25 }"));
    EXPECT_EQ(Mesh(0).bones.Count(), 0);
    EXPECT_EQ(Mesh(0).fvf, 0x1018u);
    const MeshContents contents = ReadMesh(Mesh(0));
    EXPECT_THAT(contents.Corner(0, 2).weights, ElementsAre(FloatEq(0.5f)));
    EXPECT_THAT(contents.Corner(0, 0).weights, ElementsAre(FloatEq(0.0f)));
    EXPECT_EQ(contents.Corner(0, 2).bones, (Bones{0, 0, 0, 0}));
    EXPECT_EQ(Mesh(0).clipMode, 3) << "only bones make a mesh a skinned one";
}

TEST_F(QSA_MeshImportWeightsTest, TheMeshMatrixGoesFromMeshToMeshOfAFileOnly)
{
    const std::string moved = "*MESH_INIT_TM { *TM_ROW3 5 6 7 }\n";
    const std::string text = Skinned(moved + Bone("a", Weight(0, "1")));
    MeshText second = Triangle();
    second.weights = Bone("a", Weight(0, "1"));
    Load(text + second.Text());
    EXPECT_EQ(Mesh(1).bones.Get(0)->meshInitTM._41, 5.0f);
    Load(Skinned(Bone("a", Weight(0, "1"))));
    EXPECT_EQ(Mesh(0).bones.Get(0)->meshInitTM._41, 0.0f);
}

TEST_F(QSA_MeshImportWeightsTest, BoneBeyondAByteWarns)
{
    std::string weights = Init();
    for (int i = 1; i <= 256; ++i)
        weights += Bone("bone" + std::to_string(i), i == 256 ? Weight(0, "1") : "");
    Load(Skinned(weights));
    EXPECT_EQ(Mesh(0).bones.Count(), 257);
    EXPECT_EQ(Warnings("Mesh 'Triangle' has a weight of bone 256 of at most 256"), 1);
}

TEST_F(QSA_MeshImportWeightsTest, WeightsAreDiscardedWithTheirVertices)
{
    std::string text = Skinned(Init() + Bone("a", Weight(0, "0.5")) + Bone("b", Weight(0, "0.5")));
    const size_t end = text.find("*BONE_WEIGHT { *BONE_NAME \"b\"");
    text.insert(end,
                "} *MESH_NUMVERTEX 3 *MESH_VERTEX_LIST { *MESH_VERTEX 0 0 0 0 *MESH_VERTEX 1 1 0 "
                "0 *MESH_VERTEX 2 0 1 0 } *MESH_WEIGHTS { ");
    Load(text);
    EXPECT_EQ(ReadMesh(Mesh(0)).Corner(0, 0).bones, (Bones{2, 0, 0, 0}));
}

TEST_F(QSA_MeshImportWeightsTest, NotFiniteWeightsLoad)
{
    directory.Write("scene.qsa", Skinned(Init() + Bone("a", Weight(0, "inf") + Weight(1, "nan")) +
                                         Bone("b", Weight(0, "-inf") + Weight(1, "1"))));
    EXPECT_EQ(loader.Load(scene, "scene.qsa", 0), 1);
    EXPECT_EQ(Mesh(0).vertexCount, 3);
}
