// The scenes of examples/, each converted as a user would, with the warnings that their README promises.
#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/RunProgram.h"
#include "tests/support/ScratchDirectory.h"
#include "tests/support/TestDevice.h"
#include "tests/support/TreePaths.h"

#include <d3dx9.h>

#include <gmock/gmock.h>

namespace {

namespace fs = std::filesystem;

/// Scenes whose warnings are intended.
constexpr const char* kOddScenes[] = {"oddities.qsa", "effect.qsa"};

bool IsOddScene(const fs::path& file)
{
    for (const char* name : kOddScenes) {
        if (file.filename() == name)
            return true;
    }
    return false;
}

/// Whether D3DX can read effects in text form here. Wine's cannot.
bool ReadsEffectTexts()
{
    static constexpr char kText[] = "technique t { pass p { CullMode = NONE; } }";
    const TestDevice device;
    ID3DXEffect* effect = nullptr;
    const HRESULT result = D3DXCreateEffect(device.Device(), kText, sizeof kText - 1, nullptr,
                                            nullptr, 0, nullptr, &effect, nullptr);
    const ComHandle<ID3DXEffect> owner(effect);
    return SUCCEEDED(result);
}

/// Copies the examples and their pictures into the directory `target` and returns the scenes,
/// sorted by name.
std::vector<std::string> CopyExamples(const fs::path& target, bool withOddScenes)
{
    const fs::path source = SourcePath("examples");
    std::vector<std::string> scenes;
    for (const auto& entry : fs::recursive_directory_iterator(source)) {
        if (!entry.is_regular_file() || (IsOddScene(entry.path()) && !withOddScenes))
            continue;
        if (entry.path().extension() == ".qsb" || entry.path().filename() == "logfile.txt")
            continue; // left over from a trial run
        const fs::path name = entry.path().lexically_relative(source);
        fs::create_directories((target / name).parent_path());
        fs::copy_file(entry.path(), target / name);
        if (name.extension() == ".qsa")
            scenes.push_back(name.generic_string());
    }
    std::sort(scenes.begin(), scenes.end());
    return scenes;
}

/// The entries of a log, without the notes of time and memory that end each of them.
std::vector<std::string> LogEntries(const std::string& log)
{
    std::vector<std::string> entries;
    for (size_t at = 0; at < log.size();) {
        const size_t note = log.find("(Time:", at);
        entries.push_back(log.substr(at, note - at));
        at = note == std::string::npos ? log.size() : log.find(')', note) + 1;
        while (at < log.size() && (log[at] == '\n' || log[at] == '\r'))
            ++at;
    }
    return entries;
}

} // namespace

TEST(Examples, AllButTheOddOnesLoadWithoutAnyWarning)
{
    const ScratchDirectory scratch;
    std::vector<std::string> scenes = CopyExamples(scratch.Path(), false);
    ASSERT_GE(scenes.size(), 8u);
    const ProgramRun run = RunProgram({"*.qsa", "/s"});
    EXPECT_EQ(run.err, "");
    // A directory's own files come before those below it, and are named relative to it.
    std::stable_partition(scenes.begin(), scenes.end(), [](const std::string& scene) {
        return scene.find('/') == std::string::npos;
    });
    std::string converted;
    for (const std::string& scene : scenes)
        converted += "'" + scene.substr(scene.find('/') + 1) + "' converted\n";
    EXPECT_EQ(run.out, converted);
    // The log begins with the first thing that is reported.
    EXPECT_FALSE(scratch.Has("logfile.txt")) << scratch.Read("logfile.txt");
    for (const std::string& scene : scenes)
        EXPECT_TRUE(scratch.Has(scene.substr(0, scene.size() - 1) + "b")) << scene;
}

// A scene must not fail silently if the host does not read its effects as texts.
TEST(Examples, EffectThatTheHostDoesNotReadIsAnErrorThatNamesTheFile)
{
    if (ReadsEffectTexts())
        GTEST_SKIP() << "this host reads effect texts";
    const ScratchDirectory scratch;
    CopyExamples(scratch.Path(), false);
    fs::current_path("effects");
    fs::remove("lava.fxo");
    const ProgramRun run = RunProgram({"lava.qsa"});
    EXPECT_THAT(run.err, testing::HasSubstr("Could not compile effect from file 'lava.fx'"));
    EXPECT_FALSE(fs::exists("lava.qsb"));
    fs::current_path(scratch.Path());
}

// Each object of the scene is wrong in one way. Its warnings come in the order of processing:
// materials are read before lights and meshes, maps are looked up when the mesh that uses them is
// built, and parents are linked and bounds measured after the last byte.
TEST(Examples, OdditiesRaiseExactlyTheListedWarnings)
{
    const ScratchDirectory scratch;
    CopyExamples(scratch.Path(), true);
    const ProgramRun run = RunProgram({"oddities.qsa"});
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out, "'oddities.qsa' converted\n");
    ASSERT_TRUE(scratch.Has("logfile.txt"));
    const std::string loader = "Warning:QSALoader: oddities.qsa: ";
    EXPECT_THAT(
        LogEntries(scratch.Read("logfile.txt")),
        testing::ElementsAre(
            loader + "Unknown end condition for map time parameter",
            loader + "Light aspect other than 1", loader + "Unknown light type changed to omni",
            loader + "16 vertices duplicated in mesh 'SplitVertices'",
            loader + "Invalid face 12 in mesh 'FaceWithoutArea'",
            loader + "Can not open diffuse map 'not_there.png'",
            loader + "Skipped wrong order rotation key in file: oddities.qsa",
            loader + "Only one bone in object OneBoneOnly",
            testing::AllOf(testing::HasSubstr("Parent object 'Nobody' not found in scene '"),
                           testing::EndsWith("'. Child: 'NoSuchParent'")),
            loader + "Skinned meshes without 'Bounds' object"));
}
