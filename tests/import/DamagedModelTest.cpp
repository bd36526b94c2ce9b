// Models that are cut or changed: a fault that says so, never a crash or an empty scene.

#include <filesystem>
#include <fstream>
#include <random>

#include <gmock/gmock.h>

#include "gltf/ModelFault.h"
#include "gltf/NoticeList.h"
#include "import/ChildRun.h"
#include "import/ImportModel.h"
#include "tests/import/GltfMaker.h"
#include "tests/support/ScratchDirectory.h"

using testing::AnyOf;
using testing::Ne;

namespace {

constexpr int kSides = 2; // of the boxes: small files have fewer cuts

/// Whether a model is refused; otherwise its scene.
std::string FaultOrScene(const ScratchDirectory& directory, const std::string& name,
                         std::string& sceneOut)
{
    try {
        NoticeList ignored;
        sceneOut = directory.Read(ImportModel(name, {}, ignored).scene);
        return "";
    } catch (const ModelFault& fault) {
        return fault.what();
    }
}

GltfMaker PlainBox()
{
    GltfMaker maker;
    maker.Add("materials", ColorMaterial("M", 1, 0, 0));
    nlohmann::json primitive = BoxPrimitive(maker, 1, kSides);
    primitive["material"] = 0;
    maker.Root({{"name", "Box"}, {"mesh", maker.Add("meshes", {{"primitives", {primitive}}})}});
    return maker;
}

GltfMaker MovingBox()
{
    GltfMaker maker = PlainBox();
    maker.json["animations"] = {{{"name", "A"}}};
    maker.Animate(0, 0, "translation", "LINEAR", {0, 1}, {0, 0, 0, 1, 0, 0});
    maker.Animate(0, 0, "rotation", "CUBICSPLINE", {0, 1},
                  {0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0});
    return maker;
}

GltfMaker SkinnedBox()
{
    GltfMaker maker;
    nlohmann::json primitive = BoxPrimitive(maker, 1, kSides);
    std::vector<float> weights;
    for (int i = 0; i < 4 * kSides; ++i)
        weights.insert(weights.end(), {1, 0, 0, 0});
    primitive["attributes"]["JOINTS_0"] = maker.Bytes4(std::vector<uint8_t>(16 * kSides));
    primitive["attributes"]["WEIGHTS_0"] = maker.Floats(weights, "VEC4");
    const int arm = maker.Root({{"name", "Arm"}});
    maker.Root({{"name", "Body"},
                {"mesh", maker.Add("meshes", {{"primitives", {primitive}}})},
                {"skin", maker.Add("skins", {{"joints", {arm}}})}});
    return maker;
}

std::string Base64Of(const std::string& bytes)
{
    static const char kDigits[] =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (size_t i = 0; i < bytes.size(); i += 3) {
        uint32_t group = 0;
        for (size_t part = 0; part < 3; ++part)
            group = group << 8 |
                    (i + part < bytes.size() ? static_cast<unsigned char>(bytes[i + part]) : 0u);
        for (size_t part = 0; part < 4; ++part)
            text += i + part > bytes.size() ? '=' : kDigits[group >> (18 - 6 * part) & 63];
    }
    return text;
}

#ifdef __SANITIZE_ADDRESS__
constexpr size_t kCutStep = 5; // each reading takes several times as long
#else
constexpr size_t kCutStep = 1;
#endif

/// What reading a model ends with in a process of 128 MiB, which is ended after a minute.
[[maybe_unused]] std::string ToldBySmallChild(const std::string& model)
{
    try {
        return RunInChild({60, uint64_t{128} << 20}, [&] {
            std::string fault = "none";
            try {
                NoticeList ignored;
                ImportModel(model, {}, ignored);
            } catch (const ModelFault& error) {
                fault = error.what();
            }
            return fault;
        });
    } catch (const ModelFault& fault) {
        return fault.what();
    }
}

class DamagedModelTest : public testing::Test {
protected:
    /// Every cut of `bytes` as the file `cut`; `model` is the one to read.
    void ExpectEveryCutRefused(const std::string& bytes, const std::string& cut,
                               const std::string& model)
    {
        std::string whole;
        directory.Write(cut, bytes);
        ASSERT_EQ(FaultOrScene(directory, model, whole), "") << "the whole model";
        for (size_t size = 0; size < bytes.size(); size += kCutStep) {
            directory.Write(cut, bytes.substr(0, size));
            std::string scene;
            ASSERT_NE(FaultOrScene(directory, model, scene), "") << cut << " cut at " << size;
        }
    }

    ScratchDirectory directory;
};

} // namespace

TEST_F(DamagedModelTest, EveryCutOfABinaryModelIsRefused)
{
    ExpectEveryCutRefused(PlainBox().Glb(), "plain.glb", "plain.glb");
    ExpectEveryCutRefused(MovingBox().Glb(), "moving.glb", "moving.glb");
    ExpectEveryCutRefused(SkinnedBox().Glb(), "skinned.glb", "skinned.glb");
}

TEST_F(DamagedModelTest, EveryCutOfATextAndItsBufferIsRefused)
{
    const GltfMaker maker = MovingBox();
    directory.Write("box.bin", maker.bytes);
    ExpectEveryCutRefused(maker.Text("box.bin"), "box.gltf", "box.gltf");
    directory.Write("box.gltf", maker.Text("box.bin"));
    ExpectEveryCutRefused(maker.bytes, "box.bin", "box.gltf");
}

TEST_F(DamagedModelTest, EveryCutOfATextWithItsBufferInsideIsRefused)
{
    const GltfMaker maker = PlainBox();
    const std::string uri = "data:application/octet-stream;base64," + Base64Of(maker.bytes);
    ExpectEveryCutRefused(maker.Text(uri), "inside.gltf", "inside.gltf");
}

TEST_F(DamagedModelTest, ChangedBytesNeverGiveAnEmptyScene)
{
    std::mt19937 random(1);
    for (const GltfMaker& maker : {MovingBox(), SkinnedBox()}) {
        const std::string bytes = maker.Glb();
        for (int round = 0; round < 400; ++round) {
            std::string changed = bytes;
            for (int change = 0; change < 3; ++change)
                changed[random() % changed.size()] = static_cast<char>(random());
            directory.Write("changed.glb", changed);
            std::string scene;
            const std::string fault = FaultOrScene(directory, "changed.glb", scene);
            if (fault.empty()) {
                ASSERT_NE(scene.find("*MESH_FACE\t0:"), std::string::npos) << "round " << round;
            }
        }
    }
}

#ifndef __SANITIZE_ADDRESS__ // which reserves a huge address space
TEST_F(DamagedModelTest, AMebibyteNeedsLittleMemory)
{
    constexpr size_t kSize = 1 << 20;
    const auto repeated = [](const std::string& start, const std::string& part,
                             const std::string& end) {
        std::string text = start;
        while (text.size() + end.size() + part.size() < kSize)
            text += part;
        return text + end;
    };
    const std::string head = "{\"asset\":{\"version\":\"2.0\"},\"nodes\":[";
    const std::string mesh = "{}],\"meshes\":[{\"primitives\":[]}]}";
    const struct {
        const char* what;
        std::string text;
    } cases[] = {
        {"nested lists", repeated("", "[", "")},
        {"a long list", repeated("[", "0,", "0]")},
        {"empty objects", repeated("[", "{},", "0]")},
        {"nodes without faces", repeated(head, "{\"mesh\":0},", mesh)},
        {"nodes of one name", repeated(head, "{\"name\":\"a\"},", mesh)},
    };
    for (const auto& c : cases) {
        directory.Write("large.gltf", c.text);
        EXPECT_THAT(ToldBySmallChild("large.gltf"), testing::StartsWith("it")) << c.what;
    }
}

TEST_F(DamagedModelTest, WhatAFileDescribesIsLimitedByItsSize)
{
    constexpr int kMany = 4100;
    const auto repeated = [](const nlohmann::json& element, int count) {
        return nlohmann::json(static_cast<size_t>(count), element);
    };
    const auto all = [](int count) {
        nlohmann::json numbers = nlohmann::json::array();
        for (int i = 0; i < count; ++i)
            numbers.push_back(i);
        return numbers;
    };

    GltfMaker skins = SkinnedBox();
    skins.json["nodes"] = repeated({{"mesh", 0}, {"skin", 0}}, kMany);
    skins.json["skins"][0]["joints"] = all(kMany);
    skins.json["scenes"][0]["nodes"] = all(kMany);

    GltfMaker deep = PlainBox();
    for (int i = 0; i < kMany; ++i)
        deep.json["nodes"].push_back({{"children", {i}}});
    deep.json["scenes"][0]["nodes"] = {kMany};

    GltfMaker keys = PlainBox();
    keys.json["nodes"] = repeated({{"mesh", 0}}, kMany);
    keys.json["scenes"][0]["nodes"] = all(kMany);
    keys.json["animations"] = {{{"name", "A"}}};
    std::vector<float> times(1000);
    for (size_t i = 0; i < times.size(); ++i)
        times[i] = static_cast<float>(i);
    keys.Animate(0, 0, "translation", "LINEAR", times, std::vector<float>(3000));
    GltfMaker years = keys;
    for (int node = 1; node < kMany; ++node)
        keys.json["animations"][0]["channels"].push_back(
            {{"sampler", 0}, {"target", {{"node", node}, {"path", "translation"}}}});

    years.json["animations"] = {{{"name", "A"}}};
    years.Animate(0, 0, "rotation", "CUBICSPLINE", {0, 1e8f},
                  {0, 0, 0, 0, 0, 0, 0, 1, 5, 0, 3, 0, 2, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0});
    for (int node = 1; node < kMany; ++node)
        years.json["animations"][0]["channels"].push_back(
            {{"sampler", 0}, {"target", {{"node", node}, {"path", "rotation"}}}});

    GltfMaker pictures = PlainBox();
    const std::string picture(100000, 'x');
    pictures.json["images"] =
        repeated({{"bufferView", pictures.View(picture.data(), picture.size())}}, kMany);

    GltfMaker vertices = PlainBox();
    const int points = vertices.Floats(std::vector<float>(90000), "VEC3");
    vertices.json["meshes"][0]["primitives"] =
        repeated({{"attributes", {{"POSITION", points}}}, {"indices", 0}}, kMany);
    vertices.json["meshes"][0]["primitives"][0] = BoxPrimitive(vertices);
    vertices.json["meshes"][0]["primitives"][1]["indices"] = nullptr;
    const int corners = vertices.Shorts({0, 1, 2});
    for (int i = 1; i < kMany; ++i)
        vertices.json["meshes"][0]["primitives"][static_cast<size_t>(i)]["indices"] = corners;

    const struct {
        const char* what;
        const GltfMaker& maker;
        const char* expected;
    } cases[] = {
        {"nodes that share a skin", skins, "its meshes describe far more than the file holds"},
        {"a long chain of nodes", deep, "its nodes are nested too deeply"},
        {"channels that share keys", keys, "its animations describe far more than the file holds"},
        {"splines over years", years, "its animations take too many samples"},
        {"pictures of the same bytes", pictures, "its pictures are far more than the file holds"},
        {"primitives that share vertices", vertices, "none"},
    };
    for (const auto& c : cases) {
        c.maker.Save("much.glb");
        EXPECT_EQ(ToldBySmallChild("much.glb"), c.expected) << c.what;
    }
}
#endif
