// Models that are cut or changed: a fault that says so, never a crash or an empty scene.

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <limits>
#include <random>

#include <gmock/gmock.h>
#include <sys/syscall.h>

#include "gltf/DataUri.h"
#include "gltf/GltfFile.h"
#include "gltf/GltfWriter.h"
#include "gltf/ModelFault.h"
#include "gltf/NoticeList.h"
#include "import/ChildRun.h"
#include "import/ImportModel.h"
#include "tests/import/GltfMaker.h"
#include "tests/support/Emulator.h"
#include "tests/support/ScratchDirectory.h"
#include "tests/support/headless/FailingCalls.h"

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

#if defined(__x86_64__) // the numbers of calls are those of one processor
TEST_F(DamagedModelTest, ChildrenThatCannotStartLeaveNothingOpen)
{
    if (RunsUnderAnEmulator())
        GTEST_SKIP() << "the emulator makes calls of its own";
    const auto reads = [] {
        const size_t before = OpenFileCount();
        std::string said;
        for (int i = 0; i < 2; ++i) {
            try {
                said = RunInChild({10, uint64_t{1} << 30}, [] { return std::string("read"); });
            } catch (const ModelFault& fault) {
                said = fault.what();
            }
        }
        return said + ", " + std::to_string(OpenFileCount() - before) + " more";
    };
    EXPECT_EQ(SaidWith({}, reads), "read, 0 more");
    EXPECT_EQ(SaidWith({{SYS_pipe2, EMFILE}}, reads),
              "no child process: Too many open files, 0 more");
    EXPECT_EQ(SaidWith({{SYS_clone, EAGAIN}}, reads),
              "no child process: Resource temporarily unavailable, 0 more");
    EXPECT_EQ(SaidWithInterrupted(SYS_read, reads), "read, 0 more");
    EXPECT_EQ(SaidWithInterrupted(SYS_wait4, reads), "read, 0 more");
}
#endif

// The accessors of the moving box are, in their order, positions, normals, texture coordinates, corners, then times
// and values of two channels; those of the skinned one end in joints and weights.
TEST_F(DamagedModelTest, MembersThatAreWrongAreNamed)
{
    const struct {
        const char* what;
        const char* place;
        const char* value; ///< empty: the member is removed
        std::string fault;
    } moving[] = {
        {"list that is none", "/nodes", "5", "its member 'nodes' is of the wrong kind"},
        {"list of numbers", "/nodes", "[5]", "its member 'nodes' is of the wrong kind"},
        {"number of another kind", "/nodes/0/mesh", "\"a\"",
         "its 'mesh' \"a\" is not among the 1 of 'meshes'"},
        {"number below 0", "/nodes/0/mesh", "-1", "its 'mesh' -1 is not among the 1 of 'meshes'"},
        {"text that is none", "/materials/0/name", "5", "its member 'name' is of the wrong kind"},
        {"flag that is none", "/materials/0/doubleSided", "1",
         "its member 'doubleSided' is of the wrong kind"},
        {"vector of two", "/nodes/0/translation", "[0,0]",
         "its member 'translation' is of the wrong kind"},
        {"vector that is none", "/nodes/0/translation", "1",
         "its member 'translation' is of the wrong kind"},
        {"vector with a text", "/nodes/0/translation", "[0,\"a\",0]",
         "its member 'translation' is of the wrong kind"},
        {"owner that is none", "/materials/0/pbrMetallicRoughness/baseColorTexture", "5",
         "its member 'textures' is of the wrong kind"},
        {"element that is none", "/bufferViews/1", "5",
         "its member 'bufferViews' is of the wrong kind"},
        {"version", "/asset/version", "\"1.0\"", "it is glTF of version '1.0', not 2"},
        {"asset that is none", "/asset", "5", "its member 'version' is of the wrong kind"},
        {"no asset", "/asset", "", "it is not a glTF document"},
        {"count that is none", "/accessors/0/count", "\"a\"",
         "its member 'count' is of the wrong kind"},
        {"count below 0", "/accessors/0/count", "-1", "its 'count' is out of range"},
        {"count beyond any file", "/accessors/0/count", "1e16", "its 'count' is out of range"},
        {"count beyond the memory", "/accessors/0/count", "1e15",
         "an accessor reaches beyond its view"},
        {"view beyond its buffer", "/bufferViews/0/byteLength", "100000",
         "a buffer view reaches beyond its buffer"},
        {"view that begins there", "/bufferViews/0/byteOffset", "100000",
         "a buffer view reaches beyond its buffer"},
        {"view of no buffer", "/bufferViews/0/buffer", "", "a buffer view names no buffer"},
        {"start beyond the view", "/accessors/0/byteOffset", "100000",
         "an accessor reaches beyond its view"},
        {"elements that overlap", "/bufferViews/0/byteStride", "4",
         "an accessor reaches beyond its view"},
        {"view that is too short", "/bufferViews/0/byteLength", "8",
         "an accessor reaches beyond its view"},
        {"kind of vector", "/accessors/0/type", "\"VEC9\"",
         "an accessor has the unknown type 'VEC9'"},
        {"points of two numbers", "/accessors/0/type", "\"VEC2\"",
         "an accessor has 2 components, not 3"},
        {"corners that are fractions", "/accessors/3/componentType", "5126",
         "an accessor reaches beyond its view"},
        {"corners with a sign", "/accessors/3/componentType", "5122",
         "indices have the component type 5122"},
        {"corners without a view", "/accessors/3/bufferView", "",
         "indices are not single numbers in a view"},
        {"corners of vectors", "/accessors/3/type", "\"VEC2\"",
         "an accessor reaches beyond its view"},
        {"normals of other points", "/meshes/0/primitives/0/attributes/NORMAL", "4",
         "an accessor has 1 components, not 3"},
        {"fewer normals", "/accessors/1/count", "3",
         "the attributes of a primitive differ in length"},
        {"no attributes", "/meshes/0/primitives/0/attributes", "", "a primitive has no attributes"},
        {"no primitives", "/meshes/0/primitives", "", "a mesh has no primitives"},
        {"primitives that are no list", "/meshes/0/primitives", "1", "a mesh has no primitives"},
        {"fewer points than corners", "/meshes/0/primitives/0/attributes", "{\"POSITION\":5}",
         "a triangle has corner 2 of 2"},
        {"children that are no list", "/nodes/0/children", "1",
         "the children of a node are no list"},
        {"two parents", "/nodes/0/children", "[1,1]",
         "its 'child' 1 is not among the 1 of 'nodes'"},
        {"light that is not there", "/nodes/0/extensions",
         "{\"KHR_lights_punctual\":{\"light\":0}}", "a node has a light that does not exist"},
        {"light below 0", "/nodes/0/extensions", "{\"KHR_lights_punctual\":{\"light\":-1}}",
         "a node has a light that does not exist"},
        {"scene that is not there", "/scene", "1", "its 'scene' 1 is not among the 1 of 'scenes'"},
        {"animation without channels", "/animations/0/channels", "",
         "an animation has no channels"},
        {"channels that are no list", "/animations/0/channels", "1",
         "an animation has no channels"},
        {"channel without a target", "/animations/0/channels/0/target", "",
         "a channel of an animation has no target or sampler"},
        {"no samplers", "/animations/0/samplers", "",
         "a channel of an animation has no target or sampler"},
        {"samplers that are no list", "/animations/0/samplers", "1",
         "a channel of an animation has no target or sampler"},
        {"sampler that is not there", "/animations/0/channels/0/sampler", "2",
         "a channel of an animation has no sampler"},
        {"channel without a sampler", "/animations/0/channels/0/sampler", "",
         "a channel of an animation has no sampler"},
        {"sampler without times", "/animations/0/samplers/0/input", "",
         "a sampler of an animation has no keys"},
        {"sampler without values", "/animations/0/samplers/0/output", "",
         "a sampler of an animation has no keys"},
        {"fewer values than times", "/accessors/5/count", "1",
         "a sampler of an animation has fewer values than times"},
        {"fewer tangents than times", "/accessors/7/count", "5",
         "a sampler of an animation has fewer values than times"},
        {"extension", "/extensionsRequired", "[\"X\"]",
         "it requires the extension \"X\", which is not read"},
        {"extensions that are no list", "/extensionsRequired", "\"X\"",
         "it requires the extension \"X\", which is not read"},
        {"extras of a scene", "/scenes/0/extras", "{\"qsb\":{\"ambient\":1}}",
         "its member 'ambient' is of the wrong kind"},
    };
    const struct {
        const char* what;
        const char* place;
        const char* value;
        std::string fault;
    } skinned[] = {
        {"no joints", "/skins/0/joints", "", "a skin has no joints"},
        {"joints that are no list", "/skins/0/joints", "0", "a skin has no joints"},
        {"empty joints", "/skins/0/joints", "[]", "a skin has no joints"},
        {"matrices that are vectors", "/skins/0/inverseBindMatrices", "0",
         "an accessor has 3 components, not 16"},
        {"skin that is not there", "/nodes/1/skin", "3",
         "its 'skin' 3 is not among the 1 of 'skins'"},
        {"two parents", "/nodes", "[{\"children\":[2]},{\"children\":[2]},{\"mesh\":0}]",
         "a node has two parents"},
        {"ring beside the scene", "/nodes", "[{\"children\":[1]},{\"mesh\":0,\"children\":[0]}]",
         "a node is among its own ancestors"},
    };
    const auto check = [&](GltfMaker maker, const auto& row) {
        const nlohmann::json::json_pointer place(row.place);
        if (*row.value)
            maker.json[place] = nlohmann::json::parse(row.value);
        else
            maker.json[place.parent_pointer()].erase(place.back());
        maker.Save("wrong.glb");
        std::string scene;
        EXPECT_EQ(FaultOrScene(directory, "wrong.glb", scene), row.fault) << row.what;
        EXPECT_FALSE(directory.Has("wrong.qsa")) << row.what;
    };
    for (const auto& row : moving)
        check(MovingBox(), row);
    for (const auto& row : skinned)
        check(SkinnedBox(), row);
}

TEST_F(DamagedModelTest, NumbersThatAreNotFiniteAreNamed)
{
    constexpr float kNone = std::numeric_limits<float>::quiet_NaN();
    const auto faultWith = [&](GltfMaker maker, int accessor, size_t number) {
        const size_t view = maker.json["accessors"][static_cast<size_t>(accessor)]["bufferView"];
        const size_t at = maker.json["bufferViews"][view]["byteOffset"];
        std::memcpy(maker.bytes.data() + at + number * sizeof kNone, &kNone, sizeof kNone);
        maker.Save("none.glb");
        std::string scene;
        return FaultOrScene(directory, "none.glb", scene);
    };
    EXPECT_EQ(faultWith(MovingBox(), 0, 4), "a position is not finite");
    EXPECT_EQ(faultWith(MovingBox(), 5, 3), "a key of an animation is not finite");
    EXPECT_EQ(faultWith(MovingBox(), 7, 0), "a key of an animation is not finite");
    EXPECT_EQ(faultWith(MovingBox(), 2, 0), "") << "a texture coordinate is 0 then";
    EXPECT_EQ(faultWith(MovingBox(), 4, 1), "") << "a key without a time is left out";
    GltfMaker bound = SkinnedBox();
    std::vector<float> unit(16);
    unit[0] = unit[5] = unit[10] = unit[15] = 1;
    const int matrices = bound.Floats(unit, "MAT4");
    bound.json["skins"][0]["inverseBindMatrices"] = matrices;
    EXPECT_EQ(faultWith(bound, matrices, 15), "a matrix of a skin is not finite");
    EXPECT_EQ(faultWith(bound, 5, 0), "") << "a weight is none then";
    bound.json["skins"][0]["joints"] = {0, 1};
    bound.Save("few.glb");
    std::string scene;
    EXPECT_EQ(FaultOrScene(directory, "few.glb", scene), "a skin has fewer matrices than joints");
    nlohmann::json& attributes = bound.json["meshes"][0]["primitives"][0]["attributes"];
    for (int set = 1; set < 1000; ++set) {
        attributes["JOINTS_" + std::to_string(set)] = attributes["JOINTS_0"];
        attributes["WEIGHTS_" + std::to_string(set)] = attributes["WEIGHTS_0"];
    }
    bound.Save("many.glb");
    EXPECT_EQ(FaultOrScene(directory, "many.glb", scene),
              "a vertex has weights for more bones than are read");
}

TEST_F(DamagedModelTest, NumbersAreReadInEachOfTheirForms)
{
    // Fractions are those of the standard: a byte / 127, of which -128 is -1 as well.
    const struct {
        const char* what;
        int component;
        bool isNormalized;
        std::string bytes;
        std::vector<float> numbers;
    } cases[] = {
        {"byte", 5120, false, {"\x40\x80", 2}, {64, -128}},
        {"byte as a fraction", 5120, true, {"\x7F\x80", 2}, {1, -1}},
        {"unsigned byte", 5121, false, {"\x40\xFF", 2}, {64, 255}},
        {"unsigned byte as a fraction", 5121, true, {"\0\xFF", 2}, {0, 1}},
        {"short", 5122, false, {"\x01\x02\x00\x80", 4}, {513, -32768}},
        {"short as a fraction", 5122, true, {"\xFF\x7F\x00\x80", 4}, {1, -1}},
        {"unsigned short", 5123, false, {"\x01\x02\xFF\xFF", 4}, {513, 65535}},
        {"unsigned short as a fraction", 5123, true, {"\0\0\xFF\xFF", 4}, {0, 1}},
        {"unsigned int", 5125, false, {"\x03\0\0\0\0\0\1\0", 8}, {3, 65536}},
        {"float", 5126, false, {"\0\0\xC0\x3F\0\0\0\xBF", 8}, {1.5f, -0.5f}},
    };
    for (const auto& c : cases) {
        GltfMaker maker;
        const int view = maker.View(c.bytes.data(), c.bytes.size());
        maker.Accessor(view, c.component, 2, "SCALAR");
        maker.json["accessors"][0]["normalized"] = c.isNormalized;
        maker.Save("numbers.glb");
        GltfFile file;
        file.Read("numbers.glb");
        EXPECT_EQ(file.Floats(0, 1).values, c.numbers) << c.what;
        EXPECT_EQ(&file.Floats(0, 1), &file.Floats(0, 0)) << "kept";
    }
    GltfMaker maker;
    maker.Accessor(maker.View("ab", 2), 5121, 2, "SCALAR");
    maker.Save("bytes.glb");
    GltfFile file;
    file.Read("bytes.glb");
    EXPECT_EQ(file.Indices(0), (std::vector<uint32_t>{'a', 'b'}));
}

TEST_F(DamagedModelTest, SparseAccessorsReplaceSingleElements)
{
    const auto made = [&](const char* place, const char* value) {
        GltfMaker maker;
        maker.Floats({1, 2, 3, 4, 5, 6}, "VEC2");
        const float other[] = {7, 8};
        maker.json["accessors"][0]["sparse"] = {
            {"count", 1},
            {"indices", {{"bufferView", maker.View("\2\0", 2)}, {"componentType", 5123}}},
            {"values", {{"bufferView", maker.View(other, sizeof other)}}}};
        nlohmann::json& sparse = maker.json["accessors"][0]["sparse"];
        if (*place)
            sparse[nlohmann::json::json_pointer(place)] = nlohmann::json::parse(value);
        maker.Save("sparse.glb");
        GltfFile file;
        file.Read("sparse.glb");
        return file.Floats(0, 2).values;
    };
    EXPECT_EQ(made("", ""), (std::vector<float>{1, 2, 3, 4, 7, 8}));
    EXPECT_EQ(made("/count", "0"), (std::vector<float>{1, 2, 3, 4, 5, 6}));
    const struct {
        const char* place;
        const char* value;
        const char* fault;
    } cases[] = {
        {"/indices", "{}", "a sparse accessor has no views"},
        {"/values", "{}", "a sparse accessor has no views"},
        {"/count", "4", "a sparse accessor reaches beyond its views"},
        {"/count", "2", "a sparse accessor reaches beyond its views"},
        {"/indices/byteOffset", "3", "a sparse accessor reaches beyond its views"},
        {"/values/byteOffset", "9", "a sparse accessor reaches beyond its views"},
        {"/values/byteOffset", "4", "a sparse accessor reaches beyond its views"},
        {"/indices", R"({"bufferView":0,"byteOffset":2,"componentType":5123})",
         "a sparse accessor names an element that does not exist"},
        {"/indices/componentType", "5122", "indices have the component type 5122"},
        {"/indices/bufferView", "9", "its 'bufferView' 9 is not among the 3 of 'bufferViews'"},
    };
    for (const auto& c : cases) {
        std::string fault;
        try {
            made(c.place, c.value);
        } catch (const ModelFault& error) {
            fault = error.what();
        }
        EXPECT_EQ(fault, c.fault) << c.place << " " << c.value;
    }
}

TEST_F(DamagedModelTest, BuffersAreFoundByTheirUris)
{
    std::string bytes;
    EXPECT_TRUE(DecodeDataUri("data:;base64,+/8A", bytes));
    EXPECT_EQ(bytes, std::string("\xFB\xFF\0", 3));
    for (const char* const uri : {"data:,abc", "data:;base64", ",a", "data:;base64,ab!d"})
        EXPECT_FALSE(DecodeDataUri(uri, bytes)) << uri;
    EXPECT_EQ(UnescapedUri("a%20b%2fc%2F.%e9"), "a b/c/.\xE9");
    EXPECT_EQ(UnescapedUri("100%, %zz%1g%2"), "100%, %zz%1g%2");
    EXPECT_EQ(UriOf("a b\xE9~.bin"), "a%20b%E9~.bin");

    const GltfMaker maker = PlainBox();
    std::string scene;
    directory.Write("the box.bin", maker.bytes);
    directory.Write("box.gltf", maker.Text("the%20box.bin"));
    EXPECT_EQ(FaultOrScene(directory, "box.gltf", scene), "");
    directory.Write("gone.gltf", maker.Text("gone.bin"));
    EXPECT_EQ(FaultOrScene(directory, "gone.gltf", scene), "its buffer 'gone.bin' cannot be read");
    directory.Write("odd.gltf", maker.Text("data:;base64,a?"));
    EXPECT_EQ(FaultOrScene(directory, "odd.gltf", scene),
              "its buffer 'data:;base64,a?' cannot be read");
    directory.Write("box.glb", PlainBox().Glb());
}
