#include "tests/support/RunProgram.h"
#include "tests/support/ScratchDirectory.h"

#include <cstdlib>
#include <gmock/gmock.h>

namespace {

const char kEmptyScene[] = "*3DSMAX_QSAEXPORT 200\n";
const char kOtherFormat[] = "# a cube\no Cube\nv 1.0 1.0 -1.0\nf 1 5 7 3\n";

/// A scene with one helper; its name appears in the target.
std::string SceneWith(const std::string& helper)
{
    return std::string(kEmptyScene) + "*HELPEROBJECT {\n*NODE_NAME \"" + helper + "\"\n}\n";
}

class FramesVariable {
public:
    explicit FramesVariable(const char* directory) { setenv("QSA2QSB_FRAMES", directory, 1); }
    ~FramesVariable() { unsetenv("QSA2QSB_FRAMES"); }
    FramesVariable(const FramesVariable&) = delete;
    FramesVariable& operator=(const FramesVariable&) = delete;
};

} // namespace

TEST(HostMessages, AnErrorNamesItsFileAsWalked)
{
    const ScratchDirectory scratch;
    scratch.Write("deck/a.qsa", kEmptyScene);
    scratch.Write("deck/below/bad.qsa", "abc"); // a scene has at least four bytes
    const ProgramRun run = RunProgram({"deck\\*.qsa", "/s"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "'a.qsa' converted\n");
    EXPECT_THAT(run.err, testing::StartsWith("deck\\below/bad.qsa: not converted\nError\n"));
}

TEST(HostMessages, FileWithoutAKeywordIsNamedAndConverted)
{
    const ScratchDirectory scratch;
    scratch.Write("deck/a.qsa", kOtherFormat);
    scratch.Write("deck/b.qsa", kEmptyScene);
    scratch.Write("deck/c.qsa", std::string("\x01\x00\x7F\xFE*nothing {*SCENE}", 21));
    const ProgramRun run = RunProgram({"deck/*.qsa"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "'a.qsa' converted\n'b.qsa' converted\n'c.qsa' converted\n");
    EXPECT_EQ(run.err, "deck/a.qsa: holds no scene (no keyword of the format found)\n"
                       "deck/c.qsa: holds no scene (no keyword of the format found)\n");
    EXPECT_FALSE(scratch.Has("deck/logfile.txt"));
    // Binary scenes have no keywords, and the text scene has been converted to one by now.
    EXPECT_EQ(RunProgram({"deck/*.qsb"}).err, "");
}

TEST(HostMessages, NamesThatDifferInCaseAreTwoScenesAndTwoPictures)
{
    const ScratchDirectory scratch;
    const FramesVariable frames("frames");
    scratch.Write("Boat.qsa", SceneWith("Mast"));
    scratch.Write("boat.qsa", SceneWith("Stern"));
    EXPECT_EQ(RunProgram({"*.qsa"}).out, "'Boat.qsa' converted\n'boat.qsa' converted\n");
    EXPECT_THAT(scratch.Read("Boat.qsb"), testing::HasSubstr("Mast"));
    EXPECT_THAT(scratch.Read("boat.qsb"), testing::HasSubstr("Stern"));
    EXPECT_TRUE(scratch.Has("frames/Boat.qsa.png"));
    EXPECT_TRUE(scratch.Has("frames/boat.qsa.png"));
}

TEST(HostMessages, OptionNoLooksForTheTargetsExactName)
{
    const ScratchDirectory scratch;
    scratch.Write("Boat.qsa", SceneWith("Mast"));
    scratch.Write("boat.qsa", SceneWith("Stern"));
    scratch.Write("Boat.qsb", "kept");
    EXPECT_EQ(RunProgram({"*.qsa", "/no"}).out, "'Boat.qsa' converted\n'boat.qsa' converted\n");
    EXPECT_EQ(scratch.Read("Boat.qsb"), "kept");
    EXPECT_THAT(scratch.Read("boat.qsb"), testing::HasSubstr("Stern"));
}

TEST(HostMessages, FramesKeepTheDirectoriesBelowThePattern)
{
    const ScratchDirectory scratch;
    const FramesVariable frames("frames");
    for (const char* name : {"ship/deck/a.qsa", "ship/deck/below/a.qsa", "ship/hold/b.qsa"})
        scratch.Write(name, kEmptyScene);
    RunProgram({"ship/deck/*.qsa", "/s"});
    EXPECT_TRUE(scratch.Has("frames/a.qsa.png"));
    EXPECT_TRUE(scratch.Has("frames/below/a.qsa.png"));
    EXPECT_FALSE(scratch.Has("frames/ship"));
    RunProgram({"ship/deck/../hold/b.qsa"});
    EXPECT_TRUE(scratch.Has("frames/b.qsa.png")) << "the pattern's own directory is no part of it";
}
