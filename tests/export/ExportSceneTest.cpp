#include "tests/export/ExportTesting.h"

#include <cmath>
#include <filesystem>

#include <gmock/gmock.h>

#include "tests/support/TreePaths.h"

using testing::DoubleNear;
using testing::ElementsAre;
using testing::Pointwise;

namespace {

/// The world positions of a mesh's vertices as the engine moves them, with Y up.
std::vector<GltfPoint> EnginePoints(KRE_Mesh& mesh)
{
    std::vector<GltfPoint> points;
    D3DXMATRIX identity;
    D3DXMatrixIdentity(&identity);
    mesh.LockAll(D3DLOCK_READONLY);
    for (int32_t i = 0; i < mesh.vertexCount; ++i) {
        const D3DXVECTOR3* at = mesh.Position(i);
        const D3DXVECTOR4 point(at->x, at->y, at->z, 1);
        D3DXVECTOR4 sum(0, 0, 0, 0);
        float rest = 1;
        for (int b = 0; b < std::max(1, mesh.blendCount); ++b) {
            const bool isLast = b >= mesh.blendCount - 1;
            const float weight = isLast ? rest : mesh.Weights(i)[b];
            rest -= weight;
            const D3DXMATRIX matrix = mesh.blendCount > 0
                                          ? mesh.PaletteMatrix(mesh.BlendIndices(i)[b], identity)
                                          : mesh.pivotTM * mesh.worldTM;
            D3DXVECTOR4 moved;
            D3DXVec4Transform(&moved, &point, &matrix);
            sum = sum + moved * weight;
        }
        points.push_back({sum.x, sum.z, -sum.y});
    }
    mesh.UnlockAll();
    return points;
}

/// Whether every visible mesh of the file is where the engine has it, at twenty times.
void ExpectSamePlaces(LoadedScene& loaded, const GltfDocument& document, double tolerance)
{
    KRE_3dScene& scene = loaded.scene;
    for (int step = 0; step < 20; ++step) {
        const double seconds = loaded.Seconds() * (step + 0.37) / 20;
        scene.Update(seconds, 1);
        for (KRE_Mesh* mesh : scene.meshes) {
            if (!mesh->visible)
                continue;
            const std::string name = mesh->name.c_str();
            const int node = document.NodeOf(mesh->blendCount > 0 ? name + " skin" : name);
            ASSERT_GE(node, 0) << name;
            const std::vector<GltfPoint> expected = EnginePoints(*mesh);
            const std::vector<GltfPoint> points = document.WorldPoints(node, 0, seconds);
            ASSERT_EQ(points.size(), expected.size()) << name;
            double farthest = 0;
            for (size_t i = 0; i < points.size(); ++i)
                farthest = std::max(farthest, DistanceOf(points[i], expected[i]));
            ASSERT_LT(farthest, tolerance) << name << " at " << seconds;
        }
    }
}

class ExportSceneTest : public ExportTest {
protected:
    ~ExportSceneTest() override
    {
        std::error_code ignored;
        std::filesystem::remove("logfile.txt", ignored);
    }
    void ExpectExampleInPlace(const std::string& name, double tolerance)
    {
        LoadedScene loaded;
        ASSERT_TRUE(loaded.Load(SourcePath("examples/" + name))) << loaded.errorText;
        ASSERT_EQ(ExportScene(loaded, "scene.glb", notices), "");
        ExpectSamePlaces(loaded, GltfDocument("scene.glb"), tolerance);
    }
};

QsbFile TriangleFile()
{
    QsbFile file;
    file.scene.meshes = {InfoTriangle("Sail")};
    return file;
}

} // namespace

TEST_F(ExportSceneTest, ZUpBecomesYUp)
{
    QsbFile file = TriangleFile();
    file.scene.meshes[0].vertices[1].position = {1, 2, 3};
    file.scene.meshes[0].object.position = {4, 5, 6};
    const GltfDocument document = Export(file);
    const auto& mesh = document.json["meshes"][0]["primitives"][0];
    const std::vector<double> points = document.Values(mesh["attributes"]["POSITION"]);
    EXPECT_THAT(std::vector<double>(points.begin() + 3, points.begin() + 6), ElementsAre(1, 3, -2));
    const std::vector<double> normals = document.Values(mesh["attributes"]["NORMAL"]);
    EXPECT_THAT(std::vector<double>(normals.begin(), normals.begin() + 3), ElementsAre(0, 1, 0));
    EXPECT_EQ(document.json["nodes"][0]["translation"], nlohmann::json({4.0, 6.0, -5.0}));
}

TEST_F(ExportSceneTest, TextureCoordinatesAreThoseOfTheScene)
{
    QsbFile file = TriangleFile();
    file.scene.meshes[0].vertices[2].u = 0.3f;
    file.scene.meshes[0].vertices[2].v = 0.7f;
    const GltfDocument document = Export(file);
    const auto triangles = document.TrianglesOf(0);
    ASSERT_EQ(triangles.size(), 1u);
    EXPECT_EQ(triangles[0].corners[2].texCoord[0], 0.3f);
    EXPECT_EQ(triangles[0].corners[2].texCoord[1], 0.7f);
}

TEST_F(ExportSceneTest, ExamplesStandAndMoveAsInTheEngine)
{
    // The scenes are about 60 and 500 units wide.
    ExpectExampleInPlace("animation.qsa", 5e-3);
    ExpectExampleInPlace("skinned.qsa", 5e-3);
    ExpectExampleInPlace("groups.qsa", 1e-3);
    ExpectExampleInPlace("harbour.qsa", 2e-2);
}

TEST_F(ExportSceneTest, EachMaterialOfAMeshIsAPrimitive)
{
    QsbFile file = TriangleFile();
    QsbMesh& mesh = file.scene.meshes[0];
    mesh.faces = {{0, 1, 2}, {2, 1, 0}, {0, 2, 1}};
    mesh.attributes = {0, 0, 1};
    mesh.materials.resize(2);
    mesh.textures.resize(2);
    mesh.materials[1].colors[0] = 0;
    const GltfDocument document = Export(file);
    const auto& primitives = document.json["meshes"][0]["primitives"];
    ASSERT_EQ(primitives.size(), 2u);
    EXPECT_EQ(document.Values(primitives[0]["indices"]).size(), 6u);
    EXPECT_EQ(document.Values(primitives[1]["indices"]).size(), 3u);
    EXPECT_NE(primitives[0]["material"], primitives[1]["material"]);
    EXPECT_EQ(document.json["materials"][primitives[1]["material"].get<size_t>()]
                           ["pbrMetallicRoughness"]["baseColorFactor"][0],
              0.0);
}

TEST_F(ExportSceneTest, EqualMaterialsAreWrittenOnce)
{
    QsbFile file = TriangleFile();
    file.scene.meshes.push_back(InfoTriangle("Flag"));
    EXPECT_EQ(Export(file).json["materials"].size(), 1u);
}

TEST_F(ExportSceneTest, ClonesAreInstances)
{
    QsbFile file = TriangleFile();
    QsbMesh clone = InfoTriangle("Twin");
    clone.cloneSource = "Sail";
    clone.object.position = {5, 0, 0};
    file.scene.meshes.push_back(clone);
    clone.object.name = "Red twin";
    clone.materials[0].colors[1] = 0;
    file.scene.meshes.push_back(clone);
    const GltfDocument document = Export(file);
    const auto& nodes = document.json["nodes"];
    EXPECT_EQ(nodes[0]["mesh"], nodes[1]["mesh"]);
    EXPECT_NE(nodes[0]["mesh"], nodes[2]["mesh"]);
    const auto& meshes = document.json["meshes"];
    ASSERT_EQ(meshes.size(), 2u);
    EXPECT_EQ(meshes[0]["primitives"][0]["attributes"], meshes[1]["primitives"][0]["attributes"]);
}

TEST_F(ExportSceneTest, NormalsWithoutALengthAreRepaired)
{
    QsbFile file = TriangleFile();
    for (QsbVertex& vertex : file.scene.meshes[0].vertices)
        vertex.normal = {0, 0, 0};
    const GltfDocument document = Export(file);
    EXPECT_THAT(
        document.Values(document.json["meshes"][0]["primitives"][0]["attributes"]["NORMAL"]),
        ElementsAre(0, 1, 0, 0, 1, 0, 0, 1, 0));
    EXPECT_THAT(notices.Lines(), ElementsAre("normals without a length were replaced (3)"));
}

TEST_F(ExportSceneTest, BezierKeysBecomeASpline)
{
    QsbFile file = TriangleFile();
    QsbKey first = QsbVectorKey(0, {0, 0, 0});
    first.interpolation = 1;
    first.data[8] = 3; // leaves upwards
    QsbKey second = QsbVectorKey(2, {4, 0, 0});
    second.interpolation = 1;
    file.scene.meshes[0].object.posKeys = {first, second};
    const GltfDocument document = Export(file);
    const auto& sampler = document.json["animations"][0]["samplers"][0];
    EXPECT_EQ(sampler["interpolation"], "CUBICSPLINE");
    EXPECT_THAT(document.Values(sampler["output"]),
                ElementsAre(0, 0, 0, 0, 0, 0, 0, 1.5, 0, 0, 0, 0, 4, 0, 0, 0, 0, 0));
}

TEST_F(ExportSceneTest, KeysBeforeTheStartBecomeOneAtTheStart)
{
    QsbFile file = TriangleFile();
    file.scene.meshes[0].object.posKeys = {QsbVectorKey(-2, {0, 0, 0}), QsbVectorKey(-1, {2, 0, 0}),
                                           QsbVectorKey(3, {6, 0, 0})};
    const GltfDocument document = Export(file);
    const auto& sampler = document.json["animations"][0]["samplers"][0];
    EXPECT_THAT(document.Values(sampler["input"]), ElementsAre(0, 3));
    EXPECT_THAT(document.Values(sampler["output"]), ElementsAre(3, 0, 0, 6, 0, 0));
}

TEST_F(ExportSceneTest, AJumpStaysAJump)
{
    QsbFile file = TriangleFile();
    file.scene.meshes[0].object.posKeys = {QsbVectorKey(0, {0, 0, 0}), QsbVectorKey(1, {0, 0, 0}),
                                           QsbVectorKey(1, {8, 0, 0}), QsbVectorKey(2, {8, 0, 0})};
    const GltfDocument document = Export(file);
    EXPECT_NEAR(document.WorldOf(0, 0.999)[12], 0, 1e-6);
    EXPECT_NEAR(document.WorldOf(0, 1.001)[12], 8, 1e-6);
}

TEST_F(ExportSceneTest, HiddenMeshesAreNotDrawn)
{
    QsbFile file = TriangleFile();
    file.scene.meshes[0].visible = 0;
    const auto node = Export(file).json["nodes"][0];
    EXPECT_FALSE(node.contains("mesh"));
    EXPECT_EQ(node["extras"]["qsb"]["visible"], false);
}

TEST_F(ExportSceneTest, CamerasLookAtTheirTargets)
{
    QsbFile file = InfoBoat();
    QsbObject& camera = file.scene.cameras[0].target.object;
    camera.position = {0, -10, 0};
    camera.axis = {1, 0, 0}; // its own y axis points up
    camera.angle = 1.57079633f;
    file.scene.objects[1].position = {0, 0, 10};
    const GltfDocument document = Export(file);
    const int node = document.NodeOf("Eye");
    const GltfMatrix world = document.WorldOf(node, 0);
    // From (0, 0, 10) to (0, 10, 0) with Y up: the view is the negative third axis.
    EXPECT_THAT((std::vector<double>{world[12], world[13], world[14]}),
                Pointwise(DoubleNear(1e-6), {0.0, 0.0, 10.0}));
    EXPECT_THAT((std::vector<double>{-world[8], -world[9], -world[10]}),
                Pointwise(DoubleNear(1e-6), {0.0, std::sqrt(0.5), -std::sqrt(0.5)}));
    EXPECT_NEAR(world[4], 0, 1e-6);
    EXPECT_GT(world[5], 0.5); // upright
    EXPECT_EQ(document.json["cameras"][0]["perspective"]["yfov"], 0.785);
}

TEST_F(ExportSceneTest, LightsShineAlongTheirOwnAxis)
{
    QsbFile file = InfoBoat();
    const GltfDocument document = Export(file);
    const GltfMatrix world = document.WorldOf(document.NodeOf("Sun"), 0);
    EXPECT_THAT((std::vector<double>{-world[8], -world[9], -world[10]}),
                Pointwise(DoubleNear(1e-6), {0.0, -1.0, 0.0})); // down
}

TEST_F(ExportSceneTest, AnEmptySceneIsAnEmptyDocument)
{
    const GltfDocument document = ExportText("");
    ASSERT_TRUE(document.json["scenes"].is_array());
    EXPECT_EQ(document.json["scenes"].size(), 1u);
    EXPECT_FALSE(document.json.contains("nodes"));
    EXPECT_FALSE(document.json.contains("buffers"));
}

TEST_F(ExportSceneTest, PicturesAreConvertedToPng)
{
    std::filesystem::copy(SourcePath("examples/paving.bmp"), "paving.bmp");
    QsbFile file = TriangleFile();
    file.scene.meshes[0].textures[0].slots[0].file = "paving.bmp";
    LoadedScene loaded;
    const GltfDocument document =
        ExportBytes(loaded, MakeQsb(file).bytes, "scene.qsb", "scene.gltf");
    ASSERT_EQ(document.json["images"].size(), 1u);
    EXPECT_EQ(document.json["images"][0]["uri"], "paving.png");
    EXPECT_EQ(directory.Read("paving.png").substr(1, 3), "PNG");
    EXPECT_EQ(document.json["materials"][0]["pbrMetallicRoughness"]["baseColorTexture"]["index"],
              0);
}
