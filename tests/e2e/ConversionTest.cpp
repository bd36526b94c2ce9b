// Whole runs of the built program over scene files.

#include "tests/support/QsbBytes.h"
#include "tests/support/QsbWalk.h"
#include "tests/support/RunProgram.h"
#include "tests/support/ScratchDirectory.h"
#include "tests/support/TreePaths.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <filesystem>
#include <gmock/gmock.h>

using testing::EndsWith;
using testing::HasSubstr;
namespace fs = std::filesystem;

namespace {

// 30 frames at 25 a second: 1.2 seconds.
const char kHead[] = "*3DSMAX_QSAEXPORT 211\n"
                     "*SCENE {\n"
                     "\t*SCENE_FIRSTFRAME 10\n\t*SCENE_LASTFRAME 40\n"
                     "\t*SCENE_FRAMESPEED 25\n\t*SCENE_TICKSPERFRAME 160\n"
                     "}\n";
constexpr float kSeconds = 1.2f;
const char kMast[] = "*HELPEROBJECT {\n\t*NODE_NAME \"Mast\"\n}\n";
const char kEye[] = "*CAMERAOBJECT {\n\t*NODE_NAME \"Eye\"\n}\n";
const char kSun[] = "*LIGHTOBJECT {\n\t*NODE_NAME \"Sun\"\n\t*LIGHT_TDIST 9\n}\n";

const float kUnlimited = std::bit_cast<float>(0x5F7FFF7Du);

enum Setting { kClearBackground, kMirrorView, kReserved, kShowObjects, kShowLights, kUseAmbient };
constexpr size_t kUseFog = 7;
constexpr size_t kShowHierarchy = 9;
constexpr size_t kFogMode = 11;
constexpr size_t kFogDensity = 15;

/// One of the two lights that a scene without lights gets: white diffuse 2, specular 0.6, ambient
/// 0.3, all with alpha 0; the rest of the device's record is 0.
QsbLight DefaultLight(float x, float y, float z)
{
    QsbLight light;
    light.target.object.kind = 32;
    light.mode = 0;
    light.numbers = {2,    2, 2, 0, 0.6f, 0.6f, 0.6f, 0, 0.3f,      0.3f,
                     0.3f, 0, 0, 0, 0,    x,    y,    z, kUnlimited};
    return light;
}

/// The result for a scene of `kHead` alone: the text's settings, those of the session, and two
/// lights.
QsbFile ExpectedFile(const std::string& name)
{
    QsbFile file;
    file.frameSpeed = 25;
    file.firstFrame = 10;
    file.lastFrame = 40;
    file.scene.object.name = name;
    file.scene.object.loopEnd = kSeconds;
    auto& settings = file.scene.settings;
    settings[kClearBackground] = 1;
    settings[kMirrorView] = 1;
    settings[kUseAmbient] = 1;
    settings[kFogDensity] = std::bit_cast<uint32_t>(0.008f);
    settings[kShowObjects] = 0xFFFFFFFF; // without a mesh all helpers are shown
    settings[kShowHierarchy] = 1;
    // (0, -0.5, -1) and (-1, 1, 0) have the lengths of half the root of 5, and of the root of 2.
    const auto rounded = [](double value) { return static_cast<float>(value); };
    file.scene.lights = {
        DefaultLight(0, rounded(-1 / std::sqrt(5.0)), rounded(-2 / std::sqrt(5.0))),
        DefaultLight(rounded(-1 / std::sqrt(2.0)), rounded(1 / std::sqrt(2.0)), 0)};
    return file;
}

QsbObject Mast()
{
    QsbObject mast;
    mast.kind = 4;
    mast.name = "Mast";
    mast.loopEnd = kSeconds;
    return mast;
}

void ExpectConverted(const std::vector<std::string>& arguments, const std::string& names)
{
    const ProgramRun run = RunProgram(arguments);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, names);
    EXPECT_EQ(run.err, "");
}

class Conversion : public testing::Test {
protected:
    void ExpectFile(const std::string& name, const QsbFile& expected)
    {
        EXPECT_EQ(QsbDifference(scratch.Read(name), MakeQsb(expected).bytes), "") << name;
    }

    const ScratchDirectory scratch;
};

} // namespace

// ---- What the session adds to the file

TEST_F(Conversion, ASceneWithoutAnyObjectGetsSettingsAndTwoLights)
{
    scratch.Write("boat.qsa", kHead);
    ExpectConverted({"boat.qsa"}, "'boat.qsa' converted\n");
    ExpectFile("boat.qsb", ExpectedFile("boat.qsa"));
}

TEST_F(Conversion, TheFreeCameraIsNotStored)
{
    scratch.Write("boat.qsa", std::string(kHead) + kMast);
    ExpectConverted({"boat.qsa"}, "'boat.qsa' converted\n");
    QsbFile expected = ExpectedFile("boat.qsa");
    expected.scene.objects = {Mast()};
    ExpectFile("boat.qsb", expected);
}

TEST_F(Conversion, FrameOptionsDoNotChangeTheFile)
{
    scratch.Write("boat.qsa", std::string(kHead) + kMast + kEye);
    ExpectConverted({"boat.qsa", "/cam:1", "/zn:3", "/zf:3", "/t:5", "/spd:2", "/stop", "/nospec",
                     "/nl", "/zbuf"},
                    "'boat.qsa' converted\n");
    QsbFile expected = ExpectedFile("boat.qsa");
    expected.scene.objects = {Mast()};
    expected.scene.cameras.resize(1);
    expected.scene.cameras[0].target.object = Mast();
    expected.scene.cameras[0].target.object.name = "Eye";
    expected.scene.cameras[0].target.object.kind = 8;
    ExpectFile("boat.qsb", expected);
}

TEST_F(Conversion, LoopIsStoredInAllObjectsButTheDefaultLights)
{
    scratch.Write("boat.qsa", std::string(kHead) + kMast);
    ExpectConverted({"boat.qsa", "/loop"}, "'boat.qsa' converted\n");
    QsbFile expected = ExpectedFile("boat.qsa");
    expected.scene.objects = {Mast()};
    expected.scene.objects[0].loop = 1;
    expected.scene.object.loop = 1;
    ExpectFile("boat.qsb", expected);
}

TEST_F(Conversion, ASceneWithALightGetsNoDefaultLights)
{
    scratch.Write("boat.qsa", std::string(kHead) + kSun);
    ExpectConverted({"boat.qsa"}, "'boat.qsa' converted\n");
    QsbFile expected = ExpectedFile("boat.qsa");
    QsbLight sun;
    sun.target.object = Mast();
    sun.target.object.name = "Sun";
    sun.target.object.kind = 32;
    sun.mode = 0;
    sun.type = 1; // the default type is a point light
    // Looks down its own Z axis with infinite range; falloff and first attenuation are 1; black
    // without an intensity.
    sun.numbers = {};
    sun.numbers[17] = -1;
    sun.numbers[18] = kUnlimited;
    sun.numbers[19] = 1;
    sun.numbers[20] = 1;
    expected.scene.lights = {sun};
    ExpectFile("boat.qsb", expected);
}

// ---- Bump maps

namespace {

/// A triangle whose material has the given maps.
std::string TriangleWith(const std::string& maps)
{
    return kHead + ("*MATERIAL_LIST {\n*MATERIAL_COUNT 1\n*MATERIAL 0 {\n" + maps + "}\n}\n") +
           "*GEOMOBJECT {\n*NODE_NAME \"Hull\"\n*MESH {\n"
           "*MESH_NUMVERTEX 3\n*MESH_NUMFACES 1\n*MESH_VERTEX_LIST {\n"
           "*MESH_VERTEX 0 0 0 0\n*MESH_VERTEX 1 1 0 0\n*MESH_VERTEX 2 0 1 0\n}\n"
           "*MESH_FACE_LIST {\n*MESH_FACE 0: A: 0 B: 1 C: 2 *MESH_MTLID 0\n}\n}\n"
           "*MATERIAL_REF 0\n}\n";
}

const std::string kBumpMap = "*MAP_BUMP {\n*BITMAP \"bump.bmp\"\n}\n";

/// How a slot with the picture "bump.bmp" is stored: the name's length and the name, type 2, amount 1.
const std::string kBumpSlot("\x08\0\0\0bump.bmp\x02\0\0\0\0\0\x80\x3F", 20);

/// A bitmap of one pixel.
std::string OnePixel()
{
    const std::string head("BM\x3A\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\1\0\0\0\1\0\0\0\1\0\x18\0",
                           30);
    return head + std::string(24, '\0') + std::string("\x10\x20\x30\0", 4);
}

} // namespace

TEST_F(Conversion, ABumpMapIsStoredAsOneWhateverElseTheMaterialHas)
{
    static const struct {
        const char* what;
        std::string maps;
    } cases[] = {
        {"alone", kBumpMap},
        {"a missing diffuse map", "*MAP_DIFFUSE {\n*BITMAP \"no.bmp\"\n}\n" + kBumpMap},
        {"a missing reflection", "*MAP_REFLECT {\n*BITMAP \"no.bmp\"\n}\n" + kBumpMap},
        {"a diffuse map", "*MAP_DIFFUSE {\n*BITMAP \"wood.bmp\"\n}\n" + kBumpMap},
    };
    scratch.Write("bump.bmp", OnePixel());
    scratch.Write("wood.bmp", OnePixel());
    for (const auto& c : cases) {
        scratch.Write("boat.qsa", TriangleWith(c.maps));
        ExpectConverted({"boat.qsa"}, "'boat.qsa' converted\n");
        EXPECT_THAT(scratch.Read("boat.qsb"), HasSubstr(kBumpSlot)) << c.what;
        ExpectConverted({"boat.qsb"}, "'boat.qsb' converted\n");
        EXPECT_THAT(scratch.Read("boat.qsb"), HasSubstr(kBumpSlot)) << c.what << ", a reload";
    }
}

// ---- Files that are their own target

TEST_F(Conversion, AFileIsOverwrittenWithTheCurrentVersion)
{
    QsbFile file = FullQsb(106);
    scratch.Write("boat.qsb", MakeQsb(file).bytes);
    scratch.Write("old.qsb", MakeQsb(FullQsb(101)).bytes);
    ExpectConverted({"*.qsb"}, "'boat.qsb' converted\n'old.qsb' converted\n");
    // Its name is already the path; the session sets the rest.
    file.scene.settings[kClearBackground] = 1;
    file.scene.settings[kMirrorView] = 1;
    for (QsbMesh& mesh : file.scene.meshes)
        mesh.object.loop = 0;
    file.scene.meshes[1].hasTransparency = 1; // a load gives the clone its source's
    ExpectFile("boat.qsb", file);
    EXPECT_EQ(scratch.Read("old.qsb").substr(0, 4), "QSB\x6A");

    const std::string once = scratch.Read("old.qsb");
    ExpectConverted({"*.qsb"}, "'boat.qsb' converted\n'old.qsb' converted\n");
    ExpectFile("boat.qsb", file);
    EXPECT_EQ(QsbDifference(scratch.Read("old.qsb"), once), "");
}

TEST_F(Conversion, DefaultLightsAreOrdinaryOnesInTheNextRun)
{
    scratch.Write("boat.qsa", kHead);
    RunProgram({"boat.qsa"});
    ExpectConverted({"boat.qsb"}, "'boat.qsb' converted\n");
    // A light that was loaded looks down its own Z axis.
    QsbFile expected = ExpectedFile("boat.qsb");
    for (QsbLight& light : expected.scene.lights) {
        light.numbers[15] = light.numbers[16] = 0;
        light.numbers[17] = -1;
    }
    ExpectFile("boat.qsb", expected);
}

TEST_F(Conversion, EveryExampleIsConvertedAndConvertedAgain)
{
    std::vector<std::string> stems;
    for (const auto& entry : fs::directory_iterator(SourcePath("examples"))) {
        fs::copy(entry.path(), entry.path().filename(), fs::copy_options::recursive);
        if (entry.path().extension() == ".qsa")
            stems.push_back(entry.path().stem().string());
    }
    std::sort(stems.begin(), stems.end());
    EXPECT_GE(stems.size(), 9u);
    const auto lines = [&](const char* extension) {
        std::string text;
        for (const std::string& stem : stems)
            text += "'" + stem + extension + "' converted\n";
        return text;
    };
    ExpectConverted({"*.qsa"}, lines(".qsa"));
    std::vector<std::string> before;
    for (const std::string& stem : stems)
        before.push_back(WithoutCutNumbers(scratch.Read(stem + ".qsb")));
    for (const std::string& text : before)
        EXPECT_EQ(text.substr(0, 4), "QSB\x6A");
    // The first run that overwrites its source changes the scene's name and the added lights, and
    // loses the names of missing pictures.
    ExpectConverted({"*.qsb"}, lines(".qsb"));
    for (size_t i = 0; i < stems.size(); ++i)
        before[i] = WithoutCutNumbers(scratch.Read(stems[i] + ".qsb"));
    ExpectConverted({"*.qsb"}, lines(".qsb"));
    for (size_t i = 0; i < stems.size(); ++i) {
        const std::string after = WithoutCutNumbers(scratch.Read(stems[i] + ".qsb"));
        EXPECT_EQ(QsbDifference(after, before[i]), "") << stems[i];
    }
}

// ---- Names and directories

TEST_F(Conversion, OnlyTheLastExtensionIsReplaced)
{
    scratch.Write("scene", kHead);
    scratch.Write("a.b.qsa", kHead);
    ExpectConverted({"scene"}, "'scene' converted\n");
    ExpectFile("scene.qsb", ExpectedFile("scene"));
    ExpectConverted({"a.b.qsa"}, "'a.b.qsa' converted\n");
    ExpectFile("a.b.qsb", ExpectedFile("a.b.qsa"));
    EXPECT_FALSE(scratch.Has("a.qsb"));
}

TEST_F(Conversion, TheDirectoryOfTheFileIsNotStored)
{
    scratch.Write("deck/boat.qsa", kHead);
    ExpectConverted({"deck\\boat.qsa"}, "'boat.qsa' converted\n");
    ExpectFile("deck/boat.qsb", ExpectedFile("boat.qsa"));
    EXPECT_FALSE(scratch.Has("boat.qsb"));
}

TEST_F(Conversion, OptionNoConvertsAFileWithoutATarget)
{
    scratch.Write("boat.qsa", kHead);
    ExpectConverted({"boat.qsa", "/no"}, "'boat.qsa' converted\n");
    ExpectFile("boat.qsb", ExpectedFile("boat.qsa"));
}

// ---- Bad files

TEST_F(Conversion, ABadFileEndsTheRunAndIsNotChanged)
{
    static const struct {
        const char* what;
        std::string bytes;
        const char* message;
    } cases[] = {
        {"too new", "QSB\x6B", "Unknown qsb file version: 107 (boat.qsb)\n"},
        {"too old", "QSB\x63", "'boat.qsb': Obsolete qsb file version: 99\n"},
        {"empty", "", "boat.qsb: Error reading from file\n"},
        {"three bytes", "QSB", "boat.qsb: Error reading from file\n"},
        {"only a start", "QSB\x6A", "boat.qsb: Error reading from file\n"},
    };
    scratch.Write("anchor.qsb", MakeQsb(FullQsb()).bytes);
    scratch.Write("cleat.qsb", MakeQsb(FullQsb()).bytes);
    for (const auto& c : cases) {
        scratch.Write("boat.qsb", c.bytes);
        const ProgramRun run = RunProgram({"*.qsb"});
        EXPECT_EQ(run.status, 0) << c.what;
        EXPECT_EQ(run.out, "'anchor.qsb' converted\n") << c.what;
        EXPECT_THAT(run.err, EndsWith(c.message)) << c.what;
        EXPECT_EQ(scratch.Read("boat.qsb"), c.bytes) << c.what;
    }
    const std::string other = MakeQsb(FullQsb()).WithInt32("mesh count", -1);
    scratch.Write("boat.qsb", other);
    EXPECT_THAT(RunProgram({"boat.qsb"}).err,
                HasSubstr("File 'boat.qsb': Invalid number of meshes: -1"));
    EXPECT_EQ(scratch.Read("boat.qsb"), other);
    QsbFile foggy = FullQsb();
    foggy.scene.settings[kUseFog] = 1;
    foggy.scene.settings[kFogMode] = 9; // the draw would be refused after the file is written
    scratch.Write("boat.qsb", MakeQsb(foggy).bytes);
    const ProgramRun run = RunProgram({"boat.qsb"});
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err, HasSubstr("File 'boat.qsb': Invalid fogMode: 9"));
    for (const auto& entry : fs::directory_iterator("."))
        EXPECT_NE(entry.path().extension(), ".tmp") << entry.path();
}
