// Models that tests make, as the texts that the importer writes for them.

#include "import/ImportModel.h"
#include "import/RunImport.h"

#include <cstdio>
#include <filesystem>

#include <gmock/gmock.h>

#include "gltf/ModelFault.h"
#include "gltf/NoticeList.h"
#include "tests/import/GltfMaker.h"
#include "tests/support/ScratchDirectory.h"
#include "tests/support/TreePaths.h"

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
namespace fs = std::filesystem;

namespace {

class ImportModelTest : public testing::Test {
protected:
    std::string Import(const GltfMaker& maker, const ImportOptions& options = {})
    {
        maker.Save("model.glb");
        return ImportFile("model.glb", options);
    }
    std::string ImportFile(const std::string& name, const ImportOptions& options = {})
    {
        notices = {};
        const ImportResult result = ImportModel(name, options, notices);
        return directory.Read(result.scene);
    }
    std::string FaultOf(const std::string& name)
    {
        try {
            NoticeList ignored;
            ImportModel(name, {}, ignored);
        } catch (const ModelFault& fault) {
            EXPECT_FALSE(directory.Has(fs::path(name).stem().string() + ".qsa"));
            return fault.what();
        }
        return "";
    }

    ScratchDirectory directory;
    NoticeList notices;
};

size_t CountOf(const std::string& text, const std::string& part)
{
    size_t count = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

GltfMaker BoxFile(nlohmann::json node = {{"name", "Crate"}})
{
    GltfMaker maker;
    node["mesh"] = BoxMesh(maker);
    maker.Root(node);
    return maker;
}

/// A png of one pixel that is half transparent.
const unsigned char kClearPixel[] = {
    0x89, 0x50, 0x4E, 0x47, 0x0D, 0x0A, 0x1A, 0x0A, 0,    0,    0,    0x0D, 0x49, 0x48,
    0x44, 0x52, 0,    0,    0,    1,    0,    0,    0,    1,    8,    6,    0,    0,
    0,    0x1F, 0x15, 0xC4, 0x89, 0,    0,    0,    0x0D, 0x49, 0x44, 0x41, 0x54, 0x78,
    0x9C, 0x63, 0xF8, 0xCF, 0xC0, 0xD0, 0,    0,    0x04, 0x81, 0x01, 0x80, 0,    0};

} // namespace

TEST_F(ImportModelTest, YUpBecomesZUp)
{
    GltfMaker maker;
    const int mesh = maker.Add(
        "meshes",
        {{"primitives",
          {{{"attributes", {{"POSITION", maker.Floats({1, 2, 3, 4, 5, 6, 7, 8, 10}, "VEC3")}}}}}}});
    maker.Root({{"name", "Sail"}, {"mesh", mesh}, {"translation", {1, 2, 3}}});
    const std::string text = Import(maker);
    EXPECT_THAT(text, HasSubstr("*MESH_VERTEX\t0\t1\t-3\t2\n"));
    EXPECT_THAT(text, HasSubstr("*TM_POS\t1\t-3\t2\n"));
}

TEST_F(ImportModelTest, AxesAndUnitsCanBeChosen)
{
    ImportOptions options;
    options.plan.up = PlanOptions::Up::kZ;
    options.plan.unit = 100;
    const std::string text = Import(BoxFile({{"translation", {1, 2, 3}}}), options);
    EXPECT_THAT(text, HasSubstr("*TM_POS\t100\t200\t300\n"));
    EXPECT_THAT(text, HasSubstr("*MESH_VERTEX\t0\t-100\t"));
}

TEST_F(ImportModelTest, NumbersBeyondThoseOfASceneAreItsLargest)
{
    const std::string text = Import(BoxFile({{"translation", {1e300, 2, -1e39}}}));
    EXPECT_THAT(text, HasSubstr("*TM_POS\t3.4028235e+38\t3.4028235e+38\t2\n"));
    EXPECT_THAT(text, Not(HasSubstr("inf")));
}

TEST_F(ImportModelTest, SmoothingGroupsAreThoseOfTheNormals)
{
    // Six flat sides: eight vertices are shared, and no two sides that meet have one group.
    const std::string box = Import(BoxFile());
    EXPECT_THAT(box, HasSubstr("*MESH_NUMVERTEX\t8\n"));
    EXPECT_EQ(CountOf(box, "*MESH_SMOOTHING 1\t"), 4u);
    EXPECT_EQ(CountOf(box, "*MESH_SMOOTHING 2\t"), 4u);
    EXPECT_EQ(CountOf(box, "*MESH_SMOOTHING 3\t"), 4u);
    EXPECT_THAT(notices.Lines(), IsEmpty());
}

TEST_F(ImportModelTest, ASmoothSurfaceIsOneGroup)
{
    GltfMaker maker;
    nlohmann::json primitive = BoxPrimitive(maker, 1, 2); // two sides that do not meet
    maker.Root({{"mesh", maker.Add("meshes", {{"primitives", {primitive}}})}});
    EXPECT_EQ(CountOf(Import(maker), "*MESH_SMOOTHING 1\t"), 4u);
}

TEST_F(ImportModelTest, NormalsThatTheSceneCannotHaveAreCounted)
{
    GltfMaker maker;
    nlohmann::json primitive = BoxPrimitive(maker, 1, 1);
    std::vector<float> tilted;
    for (int i = 0; i < 4; ++i)
        tilted.insert(tilted.end(), {-0.6f, 0.8f, 0});
    primitive["attributes"]["NORMAL"] = maker.Floats(tilted, "VEC3");
    maker.Root({{"mesh", maker.Add("meshes", {{"primitives", {primitive}}})}});
    Import(maker);
    EXPECT_THAT(notices.Lines(),
                ElementsAre("corners have normals of their own, which are computed anew (6)"));
}

TEST_F(ImportModelTest, EachPrimitiveIsASubmaterial)
{
    GltfMaker maker;
    maker.Add("materials", ColorMaterial("Red", 1, 0, 0));
    maker.Add("materials", ColorMaterial("Green", 0, 1, 0));
    nlohmann::json first = BoxPrimitive(maker);
    nlohmann::json second = BoxPrimitive(maker, 2);
    first["material"] = 1;
    second["material"] = 0;
    maker.Root({{"mesh", maker.Add("meshes", {{"primitives", {first, second}}})}});
    const std::string text = Import(maker);
    EXPECT_THAT(text, HasSubstr("*NUMSUBMTLS\t2\n"));
    EXPECT_LT(text.find("*MATERIAL_NAME\t\"Green\""), text.find("*MATERIAL_NAME\t\"Red\""));
    EXPECT_EQ(CountOf(text, "*MESH_MTLID 0"), 12u);
    EXPECT_EQ(CountOf(text, "*MESH_MTLID 1"), 12u);
    EXPECT_THAT(text, HasSubstr("*MATERIAL_DIFFUSE\t0\t1\t0\n"));
}

TEST_F(ImportModelTest, InstancesAreClones)
{
    GltfMaker maker;
    const int mesh = BoxMesh(maker);
    maker.Root({{"name", "First"}, {"mesh", mesh}});
    maker.Root({{"name", "Second"}, {"mesh", mesh}});
    const std::string text = Import(maker);
    EXPECT_EQ(CountOf(text, "*MESH_VERTEX_LIST"), 1u);
    EXPECT_THAT(text, HasSubstr("*CLONE\t\"First\"\n"));
}

TEST_F(ImportModelTest, NamesBecomeHarmlessAndUnique)
{
    GltfMaker maker;
    const int mesh = BoxMesh(maker);
    maker.Add("materials", ColorMaterial("Sea shader = 'x.fx'", 1, 1, 1));
    maker.json["meshes"][0]["primitives"][0]["material"] = 0;
    for (const char* name : {"Bo\xC3\xB6t", "Boot", "boot", "BOUNDS", "", "a\"{*}"})
        maker.Root({{"name", name}, {"mesh", mesh}});
    const std::string text = Import(maker);
    for (const char* name : {"Bo_t", "Boot", "boot 2", "BOUNDS_", "Node", "a____"})
        EXPECT_THAT(text, HasSubstr("*NODE_NAME\t\"" + std::string(name) + "\"\n"));
    EXPECT_THAT(text, HasSubstr("\"Sea shader : 'x.fx'\""));
}

TEST_F(ImportModelTest, AMirroredNodeThatTurnsBecomesTwo)
{
    const std::string text = Import(BoxFile(
        {{"name", "Fin"}, {"scale", {-1, 1, 1}}, {"rotation", {0, 0.70710678, 0, 0.70710678}}}));
    EXPECT_THAT(text, HasSubstr("*HELPEROBJECT {\n\t*NODE_NAME\t\"Fin\""));
    EXPECT_THAT(text, HasSubstr("*NODE_NAME\t\"Fin mirror\"\n\t*NODE_PARENT\t\"Fin\"\n"));
    EXPECT_THAT(text, HasSubstr("*TM_ROW0\t-1\t"));
}

TEST_F(ImportModelTest, TwoMirroredAxesAreHalfATurn)
{
    const std::string text = Import(BoxFile({{"name", "Fin"}, {"scale", {-1, -1, 1}}}));
    EXPECT_THAT(text, Not(HasSubstr("mirror")));
    EXPECT_THAT(text, HasSubstr("*TM_ROTANGLE\t3.1415927\n"));
}

TEST_F(ImportModelTest, LightsAreTheNineBrightest)
{
    GltfMaker maker = BoxFile();
    for (int i = 0; i < 11; ++i) {
        maker.json["extensions"]["KHR_lights_punctual"]["lights"].push_back(
            {{"type", "directional"}, {"intensity", 10.0 * (i + 1)}});
        maker.Root({{"name", "Lamp" + std::to_string(i)},
                    {"extensions", {{"KHR_lights_punctual", {{"light", i}}}}}});
    }
    const std::string text = Import(maker);
    EXPECT_EQ(CountOf(text, "*LIGHTOBJECT"), 9u);
    EXPECT_THAT(text, Not(HasSubstr("\"Lamp1\"")));
    EXPECT_THAT(text, HasSubstr("*LIGHT_INTENS\t1\n")); // of the brightest
    EXPECT_THAT(notices.Lines(), Contains("lights beyond the nine brightest are left out (2)"));
}

TEST_F(ImportModelTest, WhatIsLostIsToldOnceForEachKind)
{
    GltfMaker maker;
    nlohmann::json primitive = BoxPrimitive(maker);
    const std::vector<float> white(24 * 4, 1.0f);
    primitive["attributes"]["COLOR_0"] = maker.Floats(white, "VEC4");
    primitive["attributes"]["TEXCOORD_1"] = primitive["attributes"]["TEXCOORD_0"];
    primitive["targets"] = {{{"POSITION", primitive["attributes"]["POSITION"]}}};
    nlohmann::json lines = primitive;
    lines["mode"] = 1;
    maker.Root({{"mesh", maker.Add("meshes", {{"primitives", {primitive, primitive, lines}}})},
                {"matrix", {1, 0.5, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}}});
    Import(maker);
    EXPECT_THAT(notices.Lines(),
                ElementsAre("vertex colours are not carried (2)",
                            "second texture coordinates are not carried (2)",
                            "morphs are not carried (2)", "points and lines are not carried (1)",
                            "shear is not carried (1)"));
}

TEST_F(ImportModelTest, PicturesLieBesideTheSceneUnderNamesOfTheirOwn)
{
    fs::create_directories("a/b");
    fs::create_directories("out");
    fs::copy(SourcePath("examples/crate.png"), "a/wood.png");
    fs::copy(SourcePath("examples/planks.png"), "a/b/wood.png");
    GltfMaker maker;
    maker.Add("images", {{"uri", "wood.png"}});
    maker.Add("images", {{"uri", "b/wood.png"}});
    maker.Add("images", {{"uri", "b/none.png"}});
    const std::string crate = directory.Read("a/wood.png");
    maker.Add("images",
              {{"bufferView", maker.View(crate.data(), crate.size())}, {"name", "inner"}});
    for (int i = 0; i < 4; ++i) {
        maker.Add("textures", {{"source", i}});
        nlohmann::json material = ColorMaterial("M" + std::to_string(i), 1, 1, 1);
        material["pbrMetallicRoughness"]["baseColorTexture"] = {{"index", i}};
        maker.Add("materials", material);
        nlohmann::json primitive = BoxPrimitive(maker, static_cast<float>(i + 1));
        primitive["material"] = i;
        maker.Root({{"mesh", maker.Add("meshes", {{"primitives", {primitive}}})}});
    }
    maker.Save("a/model.glb");
    ImportOptions options;
    options.folder = "out";
    const std::string text = ImportFile("a/model.glb", options);
    for (const char* leaf : {"wood.png", "wood-2.png", "model-inner.png"}) {
        EXPECT_THAT(text, HasSubstr("*BITMAP\t\"" + std::string(leaf) + "\"\n"));
        EXPECT_TRUE(directory.Has("out/" + std::string(leaf))) << leaf;
    }
    EXPECT_EQ(directory.Read("out/wood-2.png"), directory.Read("a/b/wood.png"));
    EXPECT_EQ(CountOf(text, "*BITMAP"), 3u);
    EXPECT_THAT(notices.Lines(), ElementsAre("pictures are missing (1)"));
}

/// Models of several folders may go to one, each with a picture of the same name.
TEST_F(ImportModelTest, PicturesOfOtherScenesAreNotOverwritten)
{
    ImportOptions options;
    options.folder = "out";
    fs::create_directories("out");
    for (const char* folder : {"a", "b"}) {
        fs::create_directories(folder);
        fs::copy(SourcePath(*folder == 'a' ? "examples/crate.png" : "examples/planks.png"),
                 std::string(folder) + "/wood.png");
        GltfMaker maker;
        maker.Add("images", {{"uri", "wood.png"}});
        maker.Add("textures", {{"source", 0}});
        nlohmann::json material = ColorMaterial("M", 1, 1, 1);
        material["pbrMetallicRoughness"]["baseColorTexture"] = {{"index", 0}};
        maker.Add("materials", material);
        nlohmann::json primitive = BoxPrimitive(maker, 1);
        primitive["material"] = 0;
        maker.Root({{"mesh", maker.Add("meshes", {{"primitives", {primitive}}})}});
        maker.Save(std::string(folder) + "/of_" + folder + ".glb");
    }
    for (int round = 0; round < 2; ++round) { // the second time nothing is made anew
        EXPECT_THAT(ImportFile("a/of_a.glb", options), HasSubstr("*BITMAP\t\"wood.png\"\n"));
        EXPECT_THAT(ImportFile("b/of_b.glb", options), HasSubstr("*BITMAP\t\"of_b-wood.png\"\n"));
    }
    EXPECT_EQ(directory.Read("out/wood.png"), directory.Read("a/wood.png"));
    EXPECT_EQ(directory.Read("out/of_b-wood.png"), directory.Read("b/wood.png"));
}

TEST_F(ImportModelTest, AModelDoesNotReplaceTheSceneOfAnotherOne)
{
    for (const char* folder : {"a", "b"}) {
        fs::create_directories(folder);
        GltfMaker maker = BoxFile();
        maker.json["nodes"][0]["name"] = std::string("of ") + folder;
        maker.Save(std::string(folder) + "/same.glb");
    }
    std::FILE* const out = std::tmpfile();
    std::FILE* const err = std::tmpfile();
    EXPECT_EQ(RunImport({"a/same.glb", "b/same.glb", "-o", "out"}, out, err), 1);
    std::rewind(err);
    char line[200] = {};
    ASSERT_TRUE(std::fgets(line, sizeof line, err));
    EXPECT_STREQ(line, "qsaimport: b/same.glb: an earlier model has its scene's name\n");
    std::fclose(out);
    std::fclose(err);
    EXPECT_THAT(directory.Read("out/same.qsa"), HasSubstr("\"of a\""));
}

TEST_F(ImportModelTest, DamagedPicturesAreLeftOut)
{
    GltfMaker maker = BoxFile();
    maker.Add("images", {{"bufferView", maker.View(kClearPixel, sizeof kClearPixel)},
                         {"mimeType", "image/png"}});
    maker.Add("textures", {{"source", 0}});
    nlohmann::json material = ColorMaterial("M", 1, 1, 1);
    material["pbrMetallicRoughness"]["baseColorTexture"] = {{"index", 0}};
    maker.Add("materials", material);
    maker.json["meshes"][0]["primitives"][0]["material"] = 0;
    EXPECT_THAT(Import(maker), Not(HasSubstr("*BITMAP")));
    EXPECT_THAT(notices.Lines(),
                ElementsAre("pictures are damaged or of a kind that is not read (1)"));
}

TEST_F(ImportModelTest, WeightsAreThoseThatTheConverterKeeps)
{
    GltfMaker maker;
    nlohmann::json primitive = BoxPrimitive(maker, 1, 1);
    primitive["attributes"]["JOINTS_0"] =
        maker.Bytes4({0, 1, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0});
    primitive["attributes"]["WEIGHTS_0"] =
        maker.Floats({0.95f, 0.05f, 0, 0, 0.75f, 0.25f, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0}, "VEC4");
    const int mesh = maker.Add("meshes", {{"primitives", {primitive}}});
    const int arm = maker.Root({{"name", "Arm"}});
    const int leg = maker.Root({{"name", "Leg"}});
    const int skin = maker.Add("skins", {{"joints", {arm, leg}}});
    maker.Root({{"name", "Body"}, {"mesh", mesh}, {"skin", skin}});
    const std::string text = Import(maker);
    EXPECT_THAT(text, HasSubstr("*BONE_NAME\t\"Arm\""));
    EXPECT_THAT(text, HasSubstr("*INDEX_WEIGHT\t0\t1\n"));
    EXPECT_THAT(text, HasSubstr("*INDEX_WEIGHT\t1\t0.75\n"));
    EXPECT_THAT(text, HasSubstr("*INDEX_WEIGHT\t1\t0.25\n"));
    EXPECT_EQ(CountOf(text, "*BONEOBJECT"), 2u);
    EXPECT_THAT(text, HasSubstr("*NODE_NAME\t\"Bounds\"")); // a skinned scene states its extent
}

TEST_F(ImportModelTest, OneAnimationIsChosen)
{
    GltfMaker maker = BoxFile();
    maker.json["animations"] = {{{"name", "Walk"}}, {{"name", "Run"}}};
    maker.Animate(0, 0, "translation", "LINEAR", {0, 1}, {0, 0, 0, 5, 0, 0});
    maker.Animate(1, 0, "translation", "LINEAR", {0, 2}, {0, 0, 0, 7, 0, 0});
    EXPECT_THAT(Import(maker), HasSubstr("*CONTROL_POS_SAMPLE\t4800\t5\t0\t0\n"));
    EXPECT_THAT(notices.Lines(),
                ElementsAre("only one animation is carried, the others are left out (1)"));
    ImportOptions options;
    for (const char* wanted : {"Run", "1"}) {
        options.animation = wanted;
        EXPECT_THAT(Import(maker, options), HasSubstr("*CONTROL_POS_SAMPLE\t9600\t7\t0\t0\n"));
    }
    EXPECT_THAT(Import(maker, options), HasSubstr("*SCENE_LASTFRAME\t60\n"));
}

TEST_F(ImportModelTest, MeshesAreCutWhereTheFormatEnds)
{
    constexpr uint32_t kSide = 300; // 90,000 vertices
    GltfMaker maker;
    std::vector<float> points;
    std::vector<uint32_t> corners;
    for (uint32_t y = 0; y < kSide; ++y) {
        for (uint32_t x = 0; x < kSide; ++x) {
            points.insert(points.end(), {static_cast<float>(x), static_cast<float>(y), 0});
            const uint32_t at = y * kSide + x;
            if (x > 0 && y > 0)
                corners.insert(corners.end(),
                               {at - kSide - 1, at - kSide, at, at, at - 1, at - kSide - 1});
        }
    }
    const size_t faces = corners.size() / 3;
    const nlohmann::json primitive = {{"attributes", {{"POSITION", maker.Floats(points, "VEC3")}}},
                                      {"indices", maker.Words(corners)}};
    maker.Root({{"name", "Field"},
                {"mesh", maker.Add("meshes", {{"name", "Big"}, {"primitives", {primitive}}})}});
    const std::string text = Import(maker);
    EXPECT_EQ(CountOf(text, "*MESH_FACE\t"), faces);
    EXPECT_EQ(CountOf(text, "*GEOMOBJECT"), 2u);
    EXPECT_THAT(text, HasSubstr("*NODE_NAME\t\"Field piece 2\"\n\t*NODE_PARENT\t\"Field\"\n"));
    EXPECT_THAT(notices.Lines(), ElementsAre("mesh 'Big' was cut into 2 pieces (1)"));
    for (size_t at = text.find("*MESH_NUMVERTEX\t"); at != std::string::npos;
         at = text.find("*MESH_NUMVERTEX\t", at + 1))
        EXPECT_LT(std::stoi(text.substr(at + 16)), 65535);
}

TEST_F(ImportModelTest, FaultsAreToldAndLeaveNothing)
{
    GltfMaker empty;
    empty.Root({{"name", "Alone"}});
    empty.Save("empty.glb");
    EXPECT_EQ(FaultOf("empty.glb"), "it has no mesh with faces");
    EXPECT_EQ(FaultOf("none.glb"), "it cannot be read");

    GltfMaker far = BoxFile();
    far.json["nodes"][0]["mesh"] = 7;
    far.Save("far.glb");
    EXPECT_EQ(FaultOf("far.glb"), "its 'mesh' 7 is not among the 1 of 'meshes'");

    GltfMaker loop = BoxFile();
    loop.json["nodes"][0]["children"] = {0};
    loop.Save("loop.glb");
    EXPECT_THAT(FaultOf("loop.glb"), HasSubstr("ancestors"));

    GltfMaker beyond = BoxFile();
    beyond.json["accessors"][0]["count"] = 1000;
    beyond.Save("beyond.glb");
    EXPECT_EQ(FaultOf("beyond.glb"), "an accessor reaches beyond its view");

    GltfMaker huge = BoxFile();
    huge.json["accessors"][0].erase("bufferView");
    huge.json["accessors"][0]["count"] = 1000000000;
    huge.Save("huge.glb");
    EXPECT_THAT(FaultOf("huge.glb"), HasSubstr("far more than the file holds"));

    directory.Write("deep.gltf", std::string(100000, '['));
    EXPECT_EQ(FaultOf("deep.gltf"), "its text is nested too deeply");

    GltfMaker compressed = BoxFile();
    compressed.json["extensionsRequired"] = {"KHR_draco_mesh_compression"};
    compressed.Save("draco.glb");
    EXPECT_THAT(FaultOf("draco.glb"), HasSubstr("KHR_draco_mesh_compression"));
}
