// A run whose frames nobody keeps draws no pixel. Nothing else may differ: texts, status, log and saved
// files are compared with those of a run that keeps its frames.

#include "tests/support/FileContent.h"
#include "tests/support/HostCost.h"
#include "tests/support/RunProgram.h"
#include "tests/support/ScratchDirectory.h"
#include "tests/support/TreePaths.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <regex>
#include <sstream>

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

/// Everything that a run leaves, apart from its frames.
struct Result {
    ProgramRun run;
    std::string log; ///< without the notes of time and memory
    std::map<std::string, std::string> saved;
    size_t frames = 0;
};

bool HasSuffix(const fs::path& file, const char* suffix)
{
    return file.extension() == suffix;
}

/// Copies a directory with all below it, but for what trial runs have left there.
void CopyTree(const fs::path& from, const fs::path& to)
{
    fs::copy(from, to, fs::copy_options::recursive);
    std::vector<fs::path> left;
    for (const auto& entry : fs::recursive_directory_iterator(to))
        if (HasSuffix(entry.path(), ".qsb") || entry.path().filename() == "logfile.txt")
            left.push_back(entry.path());
    for (const fs::path& file : left)
        fs::remove(file);
}

Result Convert(const std::vector<std::string>& arguments, bool keepsFrames)
{
    if (keepsFrames)
        setenv("QSA2QSB_FRAMES", "frames", 1);
    else
        unsetenv("QSA2QSB_FRAMES");
    Result result;
    result.run = RunProgram(arguments);
    unsetenv("QSA2QSB_FRAMES");
    result.log = std::regex_replace(FileContent("logfile.txt"), std::regex("\\(Time:[^)]*\\)"), "");
    for (const auto& entry : fs::recursive_directory_iterator(fs::current_path())) {
        if (HasSuffix(entry.path(), ".qsb"))
            result.saved[entry.path().string()] = FileContent(entry.path());
    }
    if (fs::exists("frames")) {
        for (const auto& entry : fs::recursive_directory_iterator("frames"))
            result.frames += HasSuffix(entry.path(), ".png");
    }
    for (const auto& [file, bytes] : result.saved)
        fs::remove(file);
    fs::remove("logfile.txt");
    fs::remove_all("frames");
    return result;
}

/// Converts the current directory's scenes with and without frames. Returns the number of frames.
size_t ExpectSameResults(const std::vector<std::string>& arguments)
{
    const Result seen = Convert(arguments, true);
    const Result unseen = Convert(arguments, false);
    EXPECT_EQ(seen.run.status, unseen.run.status);
    EXPECT_EQ(seen.run.out, unseen.run.out);
    EXPECT_EQ(seen.run.err, unseen.run.err);
    EXPECT_EQ(seen.log, unseen.log);
    EXPECT_TRUE(seen.saved == unseen.saved);
    EXPECT_EQ(unseen.frames, 0u);
    return seen.frames;
}

/// What ends the run in a scene, and so the batch.
enum class Ending { None, Lights, BadMap, BadEffect };

/// Writes one scene from a seed: valid for the most part, with a fault here and there.
class SceneWriter {
public:
    SceneWriter(unsigned seed, Ending sceneEnding) : random(seed), ending(sceneEnding) {}

    std::string Scene()
    {
        text << "*3DSMAX_QSAEXPORT 211\n*SCENE {\n*SCENE_FIRSTFRAME 0\n*SCENE_LASTFRAME 100\n"
             << "*SCENE_FRAMESPEED 30\n*SCENE_TICKSPERFRAME 160\n*SCENE_BACKGROUND_STATIC "
             << Three(0, 1) << "\n*SCENE_AMBIENT_STATIC " << Three(0, 1) << "\n";
        if (Chance(10))
            text << "*SCENE_ENVMAP {\n*BITMAP \"" << Map() << "\"\n}\n";
        text << "}\n";
        Materials();
        if (Chance(30))
            Fog();
        if (Chance(50))
            Camera();
        for (int i = Below(3) + (ending == Ending::Lights ? 11 : 0); i > 0;
             --i) // the tenth light is an error
            Light(i);
        for (int i = Below(4); i >= 0; --i)
            Mesh(i);
        return text.str();
    }

private:
    int Below(size_t limit) { return static_cast<int>(random() % limit); }
    bool Chance(int percent) { return Below(100) < percent; }
    double Real(double low, double high) { return low + (high - low) * Below(10000) / 10000.0; }
    std::string Three(double low, double high)
    {
        std::ostringstream numbers;
        numbers << Real(low, high) << ' ' << Real(low, high) << ' ' << Real(low, high);
        return numbers.str();
    }

    std::string Map()
    {
        static constexpr const char* kMaps[] = {"checker.png", "leaf.tga",  "marble.bmp",
                                                "chrome.png",  "bumps.png", "glow.png",
                                                "sky.png",     "roof.tga",  "lost.png"};
        return ending == Ending::BadMap ? "broken.png" : kMaps[Below(std::size(kMaps))];
    }

    std::string Shader()
    {
        static constexpr const char* kShaders[] = {"glow.fx", "lava.fx", "outline.fx", "ripple.fx",
                                                   "lost.fx"};
        return ending == Ending::BadEffect ? "broken.fx" : kShaders[Below(std::size(kShaders))];
    }

    void MapBlock(const char* keyword)
    {
        text << keyword << " {\n*BITMAP \"" << Map() << "\"\n*MAP_AMOUNT " << Real(0, 1)
             << "\n*UVW_U_OFFSET " << Real(-1, 1) << "\n*UVW_U_TILING " << Real(0.1, 4)
             << "\n*UVW_W_ANGLE " << Real(0, 3) << "\n";
        if (Chance(30))
            text << "*UVW_TILE_U \"Mirror\"\n*UVW_TILE_V \"None\"\n";
        text << "}\n";
    }

    void Materials()
    {
        materials = 1 + Below(3);
        text << "*MATERIAL_LIST {\n*MATERIAL_COUNT " << materials << "\n";
        for (int i = 0; i < materials; ++i)
            Material(i);
        text << "}\n";
    }

    void Material(int index)
    {
        text << "*MATERIAL " << index << " {\n*MATERIAL_NAME \"m" << index;
        if (Chance(25) || ending == Ending::BadEffect)
            text << " shader='" << Shader() << "' fParam1='" << Real(0, 2)
                 << "' vParam1='1,0.5,0.2'";
        text << "\"\n*MATERIAL_DIFFUSE " << Three(0, 1) << "\n*MATERIAL_AMBIENT " << Three(0, 1)
             << "\n*MATERIAL_SPECULAR " << Three(0, 1) << "\n*MATERIAL_SHINE " << Real(0, 1)
             << "\n*MATERIAL_SHINESTRENGTH " << Real(0, 1) << "\n*MATERIAL_TRANSPARENCY "
             << (Chance(30) ? Real(0, 1) : 0.0) << "\n*MATERIAL_TWOSIDED " << Below(2) << "\n";
        if (Chance(30))
            text << "*MATERIAL_TRANSPARENCY_TYPE " << (Chance(50) ? "Additive" : "Subtractive")
                 << "\n";
        if (Chance(50) || ending == Ending::BadMap)
            MapBlock("*MAP_DIFFUSE");
        if (Chance(25))
            MapBlock("*MAP_REFLECT");
        if (Chance(25))
            MapBlock("*MAP_BUMP");
        text << "}\n";
    }

    void Place(double reach)
    {
        text
            << "*NODE_TM {\n*TM_ROW0 1 0 0\n*TM_ROW1 0 1 0\n*TM_ROW2 0 0 1\n*TM_ROW3 0 0 0\n*TM_POS "
            << Three(-reach, reach) << "\n*TM_ROTAXIS " << Three(-1, 1) << "\n*TM_ROTANGLE "
            << Real(0, 3) << "\n*TM_SCALE " << Three(0.2, 2) << "\n}\n";
    }

    void Fog()
    {
        text << "*ATMOSPHERIC {\n*STDFOG {\n*FOG_COLOR " << Three(0, 1)
             << "\n*FOG_NEAR 0\n*FOG_FAR " << Real(10, 100) << "\n}\n}\n";
    }

    void Camera()
    {
        text << "*CAMERAOBJECT {\n*NODE_NAME \"Camera\"\n";
        Place(30);
        text << "*CAMERA_SETTINGS {\n*CAMERA_FOV " << Real(0.2, 1.5) << "\n}\n}\n";
    }

    void Light(int index)
    {
        static constexpr const char* kTypes[] = {"Omni", "Directional", "TargetSpot", "Laser"};
        text << "*LIGHTOBJECT {\n*NODE_NAME \"Light" << index << "\"\n";
        Place(30);
        text << "*LIGHT_TYPE " << kTypes[Below(4)]
             << "\n*LIGHT_USELIGHT 1\n*LIGHT_SETTINGS {\n*LIGHT_COLOR " << Three(0, 1)
             << "\n*LIGHT_INTENS " << Real(0, 2) << "\n*LIGHT_ASPECT 1\n*LIGHT_HOTSPOT 30\n"
             << "*LIGHT_FALLOFF 50\n*LIGHT_TDIST 100\n}\n}\n";
    }

    /// A ring of triangles around a point, with a texture on two meshes of three.
    void Mesh(int index)
    {
        const int rim = 3 + Below(12);
        const bool hasTexture = Chance(66);
        text << "*GEOMOBJECT {\n*NODE_NAME \"Mesh" << index << "\"\n";
        if (Chance(20))
            text << "*NODE_PARENT \"Mesh" << index + 1 << "\"\n";
        Place(8);
        text << "*NODE_VISIBLE 1\n*MESH {\n*MESH_NUMVERTEX " << rim + 1 << "\n*MESH_NUMFACES "
             << rim << "\n*MESH_VERTEX_LIST {\n";
        for (int i = 0; i <= rim; ++i)
            text << "*MESH_VERTEX " << i << ' ' << Three(-9, 9) << "\n";
        text << "}\n*MESH_FACE_LIST {\n";
        for (int i = 0; i < rim; ++i)
            text << "*MESH_FACE " << i << ": A: 0 B: " << 1 + i << " C: " << 1 + (i + 1) % rim
                 << " *MESH_SMOOTHING " << 1 + Below(3) << " *MESH_MTLID " << Below(3) << "\n";
        text << "}\n";
        if (hasTexture)
            TextureFaces(rim);
        text << "}\n";
        if (Chance(30))
            Keys();
        text << "*MATERIAL_REF " << Below(static_cast<size_t>(materials) + 1) << "\n}\n";
    }

    void TextureFaces(int rim)
    {
        text << "*MESH_NUMTVERTEX 4\n*MESH_TVERTLIST {\n";
        for (int i = 0; i < 4; ++i)
            text << "*MESH_TVERT " << i << ' ' << Three(0, 2) << "\n";
        text << "}\n*MESH_NUMTVFACES " << rim << "\n*MESH_TFACELIST {\n";
        for (int i = 0; i < rim; ++i)
            text << "*MESH_TFACE " << i << " 0 " << i % 4 << " 3\n";
        text << "}\n";
    }

    void Keys()
    {
        text << "*TM_ANIMATION {\n*CONTROL_POS_TRACK {\n";
        for (int i = 0; i < 4; ++i)
            text << "*CONTROL_POS_SAMPLE " << i * 1600 << ' ' << Three(-9, 9) << "\n";
        text << "}\n*CONTROL_ROT_TRACK {\n";
        for (int i = 0; i < 4; ++i)
            text << "*CONTROL_ROT_SAMPLE " << i * 1600 << ' ' << Three(-1, 1) << ' ' << Real(0, 7)
                 << "\n";
        text << "}\n}\n";
    }

    std::minstd_rand random;
    std::ostringstream text;
    const Ending ending;
    int materials = 1;
};

void CopyFiles(const fs::path& from, const fs::path& to, const std::vector<const char*>& suffixes)
{
    for (const auto& entry : fs::directory_iterator(from)) {
        for (const char* suffix : suffixes) {
            if (HasSuffix(entry.path(), suffix))
                fs::copy_file(entry.path(), to / entry.path().filename());
        }
    }
}

} // namespace

TEST(UnseenFrames, GeneratedScenesGiveTheSameResults)
{
    constexpr unsigned kScenes = 25;
    const auto batches = static_cast<unsigned>(AffordableCases(20));
    const ScratchDirectory scratch;
    static const std::vector<std::vector<std::string>> kOptions = {
        {}, {"/nl"}, {"/zbuf"}, {"/nospec", "/t:1.3"}, {"/zn:1", "/zf:2"}};
    size_t frames = 0;
    for (unsigned batch = 0; batch < batches; ++batch) {
        SCOPED_TRACE(batch);
        const fs::path directory = scratch.Path() / std::to_string(batch);
        fs::create_directory(directory);
        CopyFiles(SourcePath("examples"), directory, {".png", ".tga", ".bmp", ".ifl"});
        CopyFiles(SourcePath("examples/effects"), directory, {".fx"});
        std::ofstream(directory / "broken.png") << "no picture";
        std::ofstream(directory / "broken.fx") << "technique {";
        for (unsigned i = 0; i < kScenes; ++i) {
            const Ending ending = i + 1 == kScenes ? static_cast<Ending>(batch % 4) : Ending::None;
            std::ofstream(directory / ("scene" + std::to_string(100 + i) + ".qsa"))
                << SceneWriter(batch * kScenes + i, ending).Scene();
        }
        fs::current_path(directory);
        std::vector<std::string> arguments = {"*.qsa", "/resx:160", "/resy:120"};
        for (const std::string& option : kOptions[batch % kOptions.size()])
            arguments.push_back(option);
        frames += ExpectSameResults(arguments);
        fs::current_path(scratch.Path());
        fs::remove_all(directory);
    }
    // No scene but those at the end of three batches of four ends its run, and most of these do.
    EXPECT_GE(frames, batches * kScenes - batches * 3 / 4);
    EXPECT_LE(frames, batches * kScenes - batches / 2);
}

TEST(UnseenFrames, ExamplesGiveTheSameResults)
{
    const ScratchDirectory scratch;
    CopyTree(SourcePath("examples"), scratch.Path() / "examples");
    fs::current_path("examples");
    EXPECT_GE(ExpectSameResults({"*.qsa", "/s"}), 12u);
    fs::current_path(scratch.Path());
}

TEST(UnseenFrames, EveryEffectGivesTheSameResults)
{
    const ScratchDirectory scratch;
    size_t frames = 0;
    for (const auto& entry : fs::recursive_directory_iterator(SourcePath("examples"))) {
        if (!HasSuffix(entry.path(), ".fx"))
            continue;
        SCOPED_TRACE(entry.path());
        const fs::path directory = scratch.Path() / entry.path().stem();
        CopyTree(entry.path().parent_path(), directory);
        fs::current_path(directory);
        frames += ExpectSameResults({entry.path().stem().string() + ".qsa"});
        fs::current_path(scratch.Path());
    }
    EXPECT_GE(frames, 9u);
}
