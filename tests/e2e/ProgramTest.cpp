#include "tests/support/RegistryValues.h"
#include "tests/support/RunProgram.h"
#include "tests/support/ScratchDirectory.h"
#include "tests/support/TreePaths.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <string>

namespace fs = std::filesystem;

namespace {

const char kTimedScene[] = "*3DSMAX_QSAEXPORT 200\n*SCENE {\n\t*SCENE_LASTFRAME 100\n}\n";

} // namespace

TEST(Program, HelpBoxListsEveryPublicOption)
{
    const ScratchDirectory scratch;
    const ProgramRun run = RunProgram({"/help"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    const std::string expected =
        "QSA to QSB converter v1.5\n"
        "Command: QSA2QSB <file.qsa> [Options] \n\nOptions: \n /?, /H /HELP      shows this window\n"
        " /FULL                fullscreen presentation\n /FPS                  shows fps\n"
        " /SCR:x              use adapter (screen) number x\n"
        " /NOSPEC           disable specular lighting\n"
        " /RESX:x             x display resolution (window x size)\n"
        " /RESY:x             y display resolution (window y size)\n"
        " /BPP:x               sets bits per pixel (fullscreen)\n /CAM:x              use camera x\n"
        " /CLOSE              closes viewer at animation end\n"
        " /NR                   disables window resizing\n"
        " /NM                   disables menu\n /NL                   disables lightin\n"
        " /ZN:x                 sets the near z clipping plane\n"
        " /ZF:x                 sets the far z clipping plane\n"
        " /ZBUF               use z-buffer instead of w-buffer\n"
        " /VS:x                vsync (0,1,2,3 or 4)\n"
        " /HV                   hardware vertex processing\n"
        " /REF                 use reference rasterizer\n"
        " /S\t\t\t\t\tinclude subdirectories\n /NO\t\t\t\t\tdo not overwrite existing files\n ";
    EXPECT_EQ(run.err.substr(0, expected.size()), expected);
    EXPECT_FALSE(scratch.Has("logfile.txt"));
}

TEST(Program, WalksATreeInItsOrder)
{
    const ScratchDirectory scratch;
    for (const char* name : {"b.qsa", "a.qsa", "deck/c.qsa", "deck/below/d.qsa", "hold/e.qsa"})
        scratch.Write(name, kTimedScene);
    const ProgramRun run = RunProgram({"*.qsa", "/s"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "'a.qsa' converted\n'b.qsa' converted\n'c.qsa' converted\n"
                       "'d.qsa' converted\n'e.qsa' converted\n");
    EXPECT_EQ(run.err, "");
}

TEST(Program, NameWithSpacesIsOneFile)
{
    const ScratchDirectory scratch;
    scratch.Write("my boat.qsa", kTimedScene);
    const ProgramRun run = RunProgram({"my boat.qsa"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "'my boat.qsa' converted\n");
}

TEST(Program, FurtherFileNamesAreIgnored)
{
    const ScratchDirectory scratch;
    scratch.Write("a.qsa", kTimedScene);
    scratch.Write("b.qsa", kTimedScene);
    EXPECT_EQ(RunProgram({"a.qsa", "b.qsa"}).out, "'a.qsa' converted\n");
}

TEST(Program, OptionNoKeepsAnExistingTargetAndPrintsConverted)
{
    const ScratchDirectory scratch;
    scratch.Write("a.qsa", kTimedScene);
    scratch.Write("a.qsb", "kept");
    const ProgramRun run = RunProgram({"a.qsa", "/no"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "'a.qsa' converted\n");
    EXPECT_EQ(scratch.Read("a.qsb"), "kept");
}

TEST(Program, NoArgumentsCancelledDialogEndsWithOne)
{
    const ScratchDirectory scratch;
    const ProgramRun run = RunProgram({});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "");
    EXPECT_FALSE(scratch.Has("logfile.txt"));
}

namespace {

/// Converts a scene with a map `picture` and returns whether it was found: a missing one is logged.
bool FindsPicture(const ScratchDirectory& scratch, const std::string& picture)
{
    scratch.Write("a.qsa", std::string(kTimedScene) +
                               "*MATERIAL_LIST { *MATERIAL 0 { *MAP_DIFFUSE { *BITMAP \"" +
                               picture +
                               "\" } } }\n*GEOMOBJECT { *NODE_NAME \"box\" *MATERIAL_REF 0 *MESH { "
                               "*MESH_NUMVERTEX 3 *MESH_NUMFACES 1 *MESH_VERTEX_LIST { "
                               "*MESH_VERTEX 0 0 0 0 *MESH_VERTEX 1 1 0 0 *MESH_VERTEX 2 0 1 0 } "
                               "*MESH_FACE_LIST { *MESH_FACE 0: A: 0 B: 1 C: 2 } } }\n");
    EXPECT_EQ(RunProgram({"a.qsa"}).status, 1);
    const std::string log = scratch.Has("logfile.txt") ? scratch.Read("logfile.txt") : "";
    fs::remove("logfile.txt");
    return log.find("Can not open diffuse map '" + picture + "'") == std::string::npos;
}

} // namespace

// The folder of textures is searched for the leaf name, the base folder for the name as given.
TEST(Program, DefaultPathsOfTheRegistryAreSearched)
{
    const ScratchDirectory scratch;
    for (const char* folder : {"maps", "base/deep"}) {
        fs::create_directories(folder);
        fs::copy(SourcePath("examples/checker.png"), fs::path(folder) / "checker.png");
    }
    const std::string root = scratch.Path().string();
    {
        const RegistryValues none({});
        EXPECT_FALSE(FindsPicture(scratch, "elsewhere/checker.png"));
        EXPECT_FALSE(FindsPicture(scratch, "deep/checker.png"));
    }
    {
        const RegistryValues registry({{"DefaultTexturePath", root + "/maps"}});
        EXPECT_TRUE(FindsPicture(scratch, "elsewhere/checker.png"));
    }
    const RegistryValues registry({{"DefaultBasePath", root + "/base"}});
    EXPECT_FALSE(FindsPicture(scratch, "elsewhere/checker.png"));
    EXPECT_TRUE(FindsPicture(scratch, "deep/checker.png"));
}

TEST(Program, NameOf300BytesIsAnEmptyRun)
{
    const ScratchDirectory scratch;
    scratch.Write("a.qsa", kTimedScene);
    const ProgramRun run = RunProgram({std::string(296, 'n') + ".qsa"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
}
