// Models through the importer, the converter and the exporter: what comes back is what went in.

#include <algorithm>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <map>

#include <gmock/gmock.h>

#include "tests/gltf/GltfDocument.h"
#include "tests/gltf/PlainTriangles.h"
#include "tests/gltf/Validation.h"
#include "tests/import/GltfMaker.h"
#include "tests/support/RunProgram.h"
#include "tests/support/ScratchDirectory.h"
#include "tests/support/TreePaths.h"

using nlohmann::json;
using testing::HasSubstr;
namespace fs = std::filesystem;

namespace {

class ThereAndBackTest : public testing::Test {
protected:
    /// Saves a model, takes it there and back, and returns what came back.
    GltfDocument Return(const GltfMaker& maker)
    {
        maker.Save("model.glb");
        return ReturnFile("model.glb");
    }
    GltfDocument ReturnFile(const std::string& model)
    {
        ProgramRun run = RunProgramFile(BuildPath("qsaimport"), {model, "-o", "scene"});
        EXPECT_EQ(run.status, 0) << run.err;
        const std::string stem = "scene/" + fs::path(model).stem().string();
        EXPECT_EQ(RunProgram({"/stop", stem + ".qsa"}).status, 1);
        run = RunProgramFile(BuildPath("qsbexport"), {stem + ".qsb", "-o", "back.glb"});
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_EQ(Validation({"back.glb"}).faults, "");
        return GltfDocument("back.glb");
    }

    ScratchDirectory directory;
};

uint32_t BitsOf(float value)
{
    uint32_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

void ExpectSameTriangles(const GltfDocument& before, const GltfDocument& after)
{
    EXPECT_EQ(TrianglesDiffer(before, after), "");
}

/// The extent of all meshes at second 0.
double DiagonalOf(const GltfDocument& document)
{
    GltfPoint low = {1e9, 1e9, 1e9}, high = {-1e9, -1e9, -1e9};
    for (size_t node = 0; node < document.json["nodes"].size(); ++node) {
        if (!document.json["nodes"][node].contains("mesh"))
            continue;
        for (const GltfPoint& point : document.WorldPoints(static_cast<int>(node), 0, 0)) {
            for (size_t axis = 0; axis < 3; ++axis) {
                low[axis] = std::min(low[axis], point[axis]);
                high[axis] = std::max(high[axis], point[axis]);
            }
        }
    }
    return DistanceOf(low, high);
}

/// The places in the world of a node's points, by their bits in its own space.
std::map<std::array<uint32_t, 3>, GltfPoint> PlacesOf(const GltfDocument& document, int node,
                                                      double seconds)
{
    std::map<std::array<uint32_t, 3>, GltfPoint> places;
    const json& mesh =
        document.json["meshes"]
                     [document.json["nodes"][static_cast<size_t>(node)]["mesh"].get<size_t>()];
    const std::vector<double> own =
        document.Values(mesh["primitives"][0]["attributes"]["POSITION"]);
    const std::vector<GltfPoint> world = document.WorldPoints(node, 0, seconds);
    for (size_t i = 0; i < world.size(); ++i)
        places[{BitsOf(static_cast<float>(own[3 * i])), BitsOf(static_cast<float>(own[3 * i + 1])),
                BitsOf(static_cast<float>(own[3 * i + 2]))}] = world[i];
    return places;
}

/// Every node with a mesh stands where it stood, at twenty times off the keys.
void ExpectSameMotion(const GltfDocument& before, const GltfDocument& after, double seconds)
{
    const double tolerance = DiagonalOf(before) * 1e-4;
    for (size_t node = 0; node < before.json["nodes"].size(); ++node) {
        if (!before.json["nodes"][node].contains("mesh"))
            continue;
        const std::string name = before.json["nodes"][node]["name"];
        int twin = -1;
        for (const char* end : {" skin", " mirror", ""}) {
            if (twin < 0)
                twin = after.NodeOf(name + end);
        }
        ASSERT_GE(twin, 0) << name;
        for (int step = 0; step < 20; ++step) {
            const double time = seconds * (step + 0.3719) / 20;
            const auto expected = PlacesOf(before, static_cast<int>(node), time);
            const auto found = PlacesOf(after, twin, time);
            ASSERT_EQ(found.size(), expected.size()) << name;
            for (const auto& [own, place] : expected) {
                ASSERT_TRUE(found.count(own)) << name;
                ASSERT_LT(DistanceOf(found.at(own), place), tolerance) << name << " at " << time;
            }
        }
    }
}

/// Numbers are near each other, everything else is equal.
bool IsNear(const json& a, const json& b)
{
    if (a.is_number() && b.is_number())
        return std::fabs(a.get<double>() - b.get<double>()) <=
               1e-4 * std::max(1.0, std::fabs(a.get<double>()));
    if (a.type() != b.type() || a.size() != b.size())
        return false;
    if (!a.is_structured())
        return a == b;
    for (auto one = a.begin(), other = b.begin(); one != a.end(); ++one, ++other) {
        if ((a.is_object() && one.key() != other.key()) || !IsNear(*one, *other))
            return false;
    }
    return true;
}

/// What the scene format alone has of each material, without the numbers and names of pictures.
std::vector<json> MaterialsOf(const GltfDocument& document)
{
    std::vector<json> all;
    for (const json& material : document.json["materials"]) {
        json extras = material["extras"]["qsb"];
        extras.erase("effect");   // its file is not carried
        extras.erase("sequence"); // of a list of frames the first one is
        if (extras.contains("maps")) {
            for (json& map : extras["maps"]) {
                map.erase("file");
                map["image"] = map.contains("image");
            }
        }
        all.push_back(extras);
    }
    return all;
}

std::vector<float> TurnKeys(int count, float step, const float (&axis)[3])
{
    std::vector<float> values;
    for (int i = 0; i < count; ++i) {
        const float half = static_cast<float>(i) * step / 2;
        for (const float part : axis)
            values.push_back(part * std::sin(half));
        values.push_back(std::cos(half));
    }
    return values;
}

} // namespace

TEST_F(ThereAndBackTest, GeometryComesBackToTheBit)
{
    GltfMaker maker;
    for (int i = 0; i < 3; ++i)
        maker.Add("materials", ColorMaterial("M" + std::to_string(i), 0.2 * i, 0.5, 1 - 0.3 * i));
    json first = BoxPrimitive(maker, 1.2345678f);
    json second = BoxPrimitive(maker, 1e-5f);
    json third = BoxPrimitive(maker, 123456.78f, 3);
    first["material"] = 0;
    second["material"] = 1;
    third["material"] = 2;
    maker.Root({{"name", "Two"}, {"mesh", maker.Add("meshes", {{"primitives", {first, second}}})}});
    maker.Root({{"name", "One"}, {"mesh", maker.Add("meshes", {{"primitives", {third}}})}});
    const GltfDocument back = Return(maker);
    ExpectSameTriangles(GltfDocument("model.glb"), back);
}

TEST_F(ThereAndBackTest, ALargeMeshComesBackWhole)
{
#ifdef __SANITIZE_ADDRESS__
    constexpr uint32_t kSide = 300; // 90,000 vertices, two pieces
#else
    constexpr uint32_t kSide = 448; // 200,704 vertices
#endif
    GltfMaker maker;
    std::vector<float> points, uvs;
    std::vector<uint32_t> corners;
    for (uint32_t y = 0; y < kSide; ++y) {
        for (uint32_t x = 0; x < kSide; ++x) {
            points.insert(points.end(), {static_cast<float>(x) * 0.37f,
                                         0.25f * std::sin(static_cast<float>(x) * 0.3f),
                                         static_cast<float>(y) * 0.41f});
            uvs.insert(uvs.end(), {static_cast<float>(x) / kSide, static_cast<float>(y) / kSide});
            const uint32_t at = y * kSide + x;
            if (x > 0 && y % 2 == 1) // strips, so that all vertices are used and half the faces
                corners.insert(corners.end(), {at - kSide - 1, at, at - kSide, //
                                               at, at - kSide - 1, at - 1});
        }
    }
    const json primitive = {
        {"attributes",
         {{"POSITION", maker.Floats(points, "VEC3")}, {"TEXCOORD_0", maker.Floats(uvs, "VEC2")}}},
        {"indices", maker.Words(corners)}};
    maker.Root({{"name", "Field"}, {"mesh", maker.Add("meshes", {{"primitives", {primitive}}})}});
    const GltfDocument back = Return(maker);
    ExpectSameTriangles(GltfDocument("model.glb"), back);
}

TEST_F(ThereAndBackTest, AllCurvesMoveAsBefore)
{
    GltfMaker maker;
    const int mesh = BoxMesh(maker);
    maker.json["animations"] = {{{"name", "All"}}};
    const float across[3] = {0.26726124f, 0.53452248f, 0.80178373f};
    const int root = maker.Root({{"name", "Root"}, {"mesh", mesh}, {"translation", {5, 0, 0}}});
    const int child = maker.Add("nodes", {{"name", "Child"}, {"mesh", mesh}});
    const int last = maker.Add("nodes", {{"name", "Last"}, {"mesh", mesh}});
    maker.json["nodes"][static_cast<size_t>(root)]["children"] = {child};
    maker.json["nodes"][static_cast<size_t>(child)]["children"] = {last};
    maker.Animate(0, root, "translation", "LINEAR", {0, 1, 3}, {0, 0, 0, 4, 2, 1, -3, 0, 5});
    maker.Animate(0, root, "rotation", "LINEAR", {0, 0.5f, 1, 1.5f, 2, 2.5f, 3},
                  TurnKeys(7, 1.1f, across));
    maker.Animate(
        0, child, "translation", "CUBICSPLINE", {0, 1.3f, 3},
        {0, 0, 0, 0, 3, 0, 4, 0, 0, -2, 1, 0, 2, 3, 1, 5, 0, 1, 0, 0, 1, 1, 1, 1, 0, 0, 0});
    std::vector<float> spline;
    const std::vector<float> turns = TurnKeys(3, 1.4f, across);
    for (size_t key = 0; key < 3; ++key) {
        spline.insert(spline.end(), {0.3f, -0.2f, 0.1f, 0});
        spline.insert(spline.end(), turns.begin() + static_cast<ptrdiff_t>(key * 4),
                      turns.begin() + static_cast<ptrdiff_t>(key * 4 + 4));
        spline.insert(spline.end(), {0.2f, 0.4f, -0.3f, 0.1f});
    }
    maker.Animate(0, child, "rotation", "CUBICSPLINE", {0, 1.5f, 3}, spline);
    maker.Animate(0, child, "scale", "LINEAR", {0, 3}, {1, 1, 1, 1.5f, 1.5f, 1.5f});
    maker.Animate(0, last, "translation", "STEP", {0, 0.9f, 2.2f}, {0, 3, 0, 0, 4, 0, 1, 5, 2});
    maker.Animate(0, last, "rotation", "STEP", {0, 1, 2}, TurnKeys(3, 1.0f, across));
    maker.Animate(0, last, "scale", "CUBICSPLINE", {0, 3},
                  {0, 0, 0, 1, 1, 1, 0.5f, 0, 0, 0, 0, 0, 2, 2, 2, 0, 0, 0});
    const GltfDocument back = Return(maker);
    ExpectSameMotion(GltfDocument("model.glb"), back, 3);
}

TEST_F(ThereAndBackTest, MirroredNodesStandAsBefore)
{
    const float kSigns[] = {1, -1};
    GltfMaker maker;
    const int mesh = BoxMesh(maker);
    int number = 0;
    for (const float x : kSigns) {
        for (const float y : kSigns) {
            for (const float z : kSigns) {
                const json turned = {{"name", "Turned" + std::to_string(number)},
                                     {"mesh", mesh},
                                     {"translation", {number, 2, 0}},
                                     {"rotation", {0.18257419, 0.36514837, 0.54772256, 0.73029674}},
                                     {"scale", {x, 2 * y, 3 * z}}};
                json plain = turned;
                plain["name"] = "Plain" + std::to_string(number++);
                plain.erase("rotation");
                const int child = maker.Add("nodes", plain);
                const int parent = maker.Root(turned);
                maker.json["nodes"][static_cast<size_t>(parent)]["children"] = {child};
            }
        }
    }
    const GltfDocument back = Return(maker);
    ExpectSameMotion(GltfDocument("model.glb"), back, 1);
    ExpectSameTriangles(GltfDocument("model.glb"), back);
}

TEST_F(ThereAndBackTest, SkinsFollowTheirBones)
{
    for (const double mirror : {1.0, -1.0}) {
        GltfMaker maker;
        json primitive = BoxPrimitive(maker);
        std::vector<uint8_t> joints;
        std::vector<float> weights;
        for (int i = 0; i < 24; ++i) {
            joints.insert(joints.end(), {0, 1, 0, 0});
            weights.insert(weights.end(), {i % 2 ? 1.0f : 0.25f, i % 2 ? 0.0f : 0.75f, 0, 0});
            joints[joints.size() - 3] = i % 2 ? 0 : 1;
        }
        primitive["attributes"]["JOINTS_0"] = maker.Bytes4(joints);
        primitive["attributes"]["WEIGHTS_0"] = maker.Floats(weights, "VEC4");
        const int mesh = maker.Add("meshes", {{"name", "Body"}, {"primitives", {primitive}}});
        const int arm = maker.Root({{"name", "Arm"}, {"scale", {mirror, 1, 1}}});
        const int hand = maker.Add("nodes", {{"name", "Hand"}, {"translation", {0, 1, 0}}});
        maker.json["nodes"][static_cast<size_t>(arm)]["children"] = {hand};
        std::vector<float> binds = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0.5f,  0, 1,
                                    1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, -0.5f, 0, 1};
        const int skin = maker.Add("skins", {{"joints", {arm, hand}},
                                             {"inverseBindMatrices", maker.Floats(binds, "MAT4")}});
        maker.Root({{"name", "Body"}, {"mesh", mesh}, {"skin", skin}});
        maker.json["animations"] = {{{"name", "Wave"}}};
        const float axis[3] = {0, 0, 1};
        maker.Animate(0, hand, "rotation", "LINEAR", {0, 1, 2}, TurnKeys(3, 0.9f, axis));
        maker.Animate(0, arm, "translation", "LINEAR", {0, 2}, {0, 0, 0, 3, 1, 2});
        const GltfDocument back = Return(maker);
        ExpectSameMotion(GltfDocument("model.glb"), back, 2);
        ExpectSameTriangles(GltfDocument("model.glb"), back);
    }
}

TEST_F(ThereAndBackTest, TheHarbourComesBack)
{
    ASSERT_EQ(RunProgramFile(BuildPath("qsbexport"),
                             {SourcePath("examples/harbour.qsa"), "-o", "harbour.glb"})
                  .status,
              0);
    const GltfDocument back = ReturnFile("harbour.glb");
    ExpectSameTriangles(GltfDocument("harbour.glb"), back);
    const json& scene = back.json["scenes"][0]["extras"]["qsb"];
    EXPECT_EQ(scene["backgroundPicture"], "harbour-sky.png");
    EXPECT_EQ(scene["fog"], GltfDocument("harbour.glb").json["scenes"][0]["extras"]["qsb"]["fog"]);
}

TEST_F(ThereAndBackTest, MapsAndTracksOfMaterialsComeBack)
{
    for (const std::string name : {"materials", "keywords"}) {
        ASSERT_EQ(RunProgramFile(BuildPath("qsbexport"),
                                 {SourcePath("examples/" + name + ".qsa"), "-o", name + ".glb"})
                      .status,
                  0);
        const std::vector<json> expected = MaterialsOf(GltfDocument(name + ".glb"));
        const std::vector<json> found = MaterialsOf(ReturnFile(name + ".glb"));
        ASSERT_GT(expected.size(), 3u);
        for (const json& material : expected) {
            const auto same = std::find_if(found.begin(), found.end(), [&](const json& other) {
                return IsNear(material, other);
            });
            EXPECT_NE(same, found.end()) << name << ": " << material.dump();
        }
    }
}
