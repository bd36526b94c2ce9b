// Whole runs of qsbexport, and what the validator of the format says about its files.

#include <filesystem>

#include <gmock/gmock.h>

#include "tests/gltf/GltfDocument.h"
#include "tests/gltf/Validation.h"
#include "tests/support/RunProgram.h"
#include "tests/support/ScratchDirectory.h"
#include "tests/support/TreePaths.h"

using testing::HasSubstr;
namespace fs = std::filesystem;

namespace {

ProgramRun RunExporter(const std::vector<std::string>& arguments)
{
    return RunProgramFile(BuildPath("qsbexport"), arguments);
}

class ExportProgramTest : public testing::Test {
protected:
    ScratchDirectory directory;
};

} // namespace

TEST_F(ExportProgramTest, EveryExampleIsValidGltf)
{
    std::vector<std::string> files;
    for (const auto& entry : fs::directory_iterator(SourcePath("examples"))) {
        if (entry.path().extension() != ".qsa")
            continue;
        const std::string stem = entry.path().stem().string();
        for (const std::string end : {".glb", ".gltf"}) {
            const ProgramRun run = RunExporter({entry.path().string(), "-o", stem + end});
            EXPECT_EQ(run.status, 0) << entry.path() << run.err;
            files.push_back(stem + end);
        }
    }
    ASSERT_GE(files.size(), 16u);
    const Validation validation(files);
    if (validation.isOutOfReach)
        GTEST_SKIP() << "the validator is out of reach";
    EXPECT_EQ(validation.faults, "");
}

TEST_F(ExportProgramTest, TheBinaryFormGivesTheSameMeshesAsTheText)
{
    directory.Write("scene.qsa",
                    "*3DSMAX_QSAEXPORT 211\n*HELPEROBJECT {\n*NODE_NAME \"Mast\"\n}\n");
    ASSERT_EQ(RunProgram({"/stop", "scene.qsa"}).status, 1);
    const ProgramRun run = RunExporter({"scene.qsb"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_GE(GltfDocument("scene.glb").NodeOf("Mast"), 0);
}

TEST_F(ExportProgramTest, FaultsNameTheFile)
{
    directory.Write("cut.qsb", "QSB\x6A");
    directory.Write("notes.txt", "not a scene at all");
    const struct {
        const char* what;
        std::vector<std::string> arguments;
        const char* expected;
    } cases[] = {
        {"no such file", {"none.qsa"}, "qsbexport: none.qsa: cannot be opened"},
        {"a cut file", {"cut.qsb"}, "qsbexport: cut.qsb: "},
        {"another text", {"notes.txt"}, "qsbexport: notes.txt: neither a QSB file nor a QSA text"},
        {"another target", {"cut.qsb", "-o", "a.obj"}, "must end in .glb or .gltf"},
        {"no folder", {SourcePath("examples/empty.qsa"), "-o", "none/a.glb"}, "none/a.glb"},
        {"nothing", {}, "a scene is needed"},
    };
    for (const auto& c : cases) {
        const ProgramRun run = RunExporter(c.arguments);
        EXPECT_EQ(run.status, 2) << c.what;
        EXPECT_THAT(run.err, HasSubstr(c.expected)) << c.what;
        EXPECT_FALSE(fs::exists("cut.glb"));
    }
}

TEST_F(ExportProgramTest, HelpNamesTheOptions)
{
    const ProgramRun run = RunExporter({"--help"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, HasSubstr("--output"));
}
