// Which files are converted, where they go, and what the run says.

#include <filesystem>

#include "tests/batch/BatchTesting.h"

using namespace batch_testing;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;
namespace fs = std::filesystem;

namespace {

class BatchConvert : public BatchTest {};

} // namespace

TEST_F(BatchConvert, WritesEachSceneAsTheConverterDoes)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    scratch.Write("in/deep/b.QSA", HelperScene("b"));
    scratch.Write("in/note.txt", "no scene");
    const ProgramRun run = Batch({"in", "-j", "2"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_THAT(run.out, StartsWith("2 converted, 0 up to date, 0 failed, 0 with warnings in "));
    EXPECT_EQ(run.err, "");
    EXPECT_THAT(FilesBelow("in"),
                ElementsAre("a.qsa", "a.qsb", "deep/b.QSA", "deep/b.qsb", "note.txt"));
    EXPECT_EQ(scratch.Read("in/a.qsb"), ConvertedAlone("in", "a.qsa"));
    EXPECT_EQ(scratch.Read("in/deep/b.qsb"), ConvertedAlone("in/deep", "b.QSA"));
}

TEST_F(BatchConvert, OutMirrorsTheTreeOfADirectory)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    scratch.Write("in/deep/b.qsa", HelperScene("b"));
    EXPECT_EQ(Batch({"in", "--out", "o/p"}).status, 0);
    EXPECT_THAT(FilesBelow("o/p"), ElementsAre(".qsbatch-state", "a.qsb", "deep/b.qsb"));
    EXPECT_THAT(FilesBelow("in"), ElementsAre("a.qsa", "deep/b.qsa"));
    EXPECT_EQ(scratch.Read("o/p/a.qsb"), ConvertedAlone("in", "a.qsa"));
}

// A relative path keeps its directories; one that leads elsewhere keeps its name.
TEST_F(BatchConvert, OutMirrorsNamedFiles)
{
    scratch.Write("in/deep/b.qsa", HelperScene("b"));
    scratch.Write("c.qsa", HelperScene("c"));
    const std::string absolute = (scratch.Path() / "c.qsa").string();
    EXPECT_EQ(Batch({"./in/deep/b.qsa", absolute, "--out", "o"}).status, 0);
    EXPECT_THAT(FilesBelow("o"), ElementsAre(".qsbatch-state", "c.qsb", "in/deep/b.qsb"));
}

TEST_F(BatchConvert, PatternsChooseFilesOfDirectories)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    scratch.Write("in/b.txt", HelperScene("b"));
    scratch.Write("in/old/c.qsa", HelperScene("c"));
    scratch.Write("in/new/old.qsa", HelperScene("d"));
    EXPECT_EQ(Batch({"in", "--out", "o", "--exclude", "old"}).status, 0);
    EXPECT_THAT(FilesBelow("o"), ElementsAre(".qsbatch-state", "a.qsb", "new/old.qsb"));
    EXPECT_EQ(Batch({"in", "--out", "p", "--include", "*.txt", "--include", "new/*"}).status, 0);
    EXPECT_THAT(FilesBelow("p"), ElementsAre(".qsbatch-state", "b.qsb", "new/old.qsb"));
}

TEST_F(BatchConvert, ListsNameFilesByLinesOrByNuls)
{
    scratch.Write("a.qsa", HelperScene("a"));
    scratch.Write("b\nb.qsa", HelperScene("b"));
    scratch.Write("lines", "a.qsa\n\n");
    scratch.Write("nuls", std::string("a.qsa\0b\nb.qsa\0", 14));
    EXPECT_EQ(Batch({"--from-file", "lines", "--out", "o"}).status, 0);
    EXPECT_THAT(FilesBelow("o"), ElementsAre(".qsbatch-state", "a.qsb"));
    EXPECT_EQ(Batch({"-0", "--from-file", "nuls", "--out", "p"}).status, 0);
    EXPECT_THAT(FilesBelow("p"), ElementsAre(".qsbatch-state", "a.qsb", "b\nb.qsb"));
    const ProgramRun missing = Batch({"--from-file", "none"});
    EXPECT_EQ(missing.status, 2);
    EXPECT_THAT(missing.err, HasSubstr("the list 'none' cannot be read: No such file"));
}

TEST_F(BatchConvert, LinksInCirclesEndAndAFileIsTakenOnce)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    fs::create_directory_symlink("../in", "in/again");
    const ProgramRun run = Batch({"in", "in/a.qsa", "./in/again/a.qsa"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_THAT(run.out, StartsWith("1 converted, "));
}

TEST_F(BatchConvert, ScenesWithOneTargetBothFailByName)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    scratch.Write("in/a.txt", HelperScene("b"));
    scratch.Write("in/c.qsa", HelperScene("c"));
    const ProgramRun run = Batch({"in/a.qsa", "in/a.txt", "in/c.qsa"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, StartsWith("1 converted, 0 up to date, 2 failed, "));
    EXPECT_THAT(run.out, HasSubstr("in/a.qsa: another scene has the same target: in/a.txt\n"));
    EXPECT_THAT(run.out, HasSubstr("in/a.txt: another scene has the same target: in/a.qsa\n"));
    EXPECT_THAT(FilesBelow("in"), ElementsAre("a.qsa", "a.txt", "c.qsa", "c.qsb"));
}

TEST_F(BatchConvert, OneFailureDoesNotStopTheOthers)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    scratch.Write("in/b.qsa", BrokenScene());
    scratch.Write("in/c.qsa", HelperScene("c"));
    const ProgramRun run = Batch({"in", "gone.qsa"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, StartsWith("2 converted, 0 up to date, 2 failed, 0 with warnings in "));
    EXPECT_THAT(run.out, HasSubstr("in/b.qsa: Wrong vertex list order!\n"));
    EXPECT_THAT(run.out, HasSubstr("gone.qsa: cannot be opened: No such file or directory\n"));
    EXPECT_THAT(run.err, HasSubstr("in/b.qsa: error Q203: Wrong vertex list order!\n"));
    EXPECT_THAT(FilesBelow("in"), ElementsAre("a.qsa", "a.qsb", "b.qsa", "c.qsa", "c.qsb"));
}

TEST_F(BatchConvert, FailFastStartsNoMore)
{
    scratch.Write("in/a.qsa", BrokenScene());
    for (int i = 0; i < 20; ++i)
        scratch.Write("in/b" + std::to_string(i) + ".qsa", HelperScene("b"));
    const ProgramRun run = Batch({"in", "-j", "1", "--fail-fast"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, StartsWith("0 converted, 0 up to date, 1 failed, 0 with warnings, "
                                    "20 skipped in "));
}

TEST_F(BatchConvert, RepeatsOfOneKindAreFolded)
{
    scratch.Write("a.qsa", WallScene("", 1500));
    const ProgramRun run = Batch({"a.qsa"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.err,
                HasSubstr("a.qsa: warning Q235: Invalid face 2 in mesh 'wall' and 999 more\n"));
    EXPECT_THAT(run.err, HasSubstr("a.qsa: 500 more messages\n"));
    EXPECT_THAT(run.out, HasSubstr(", 1 with warnings in "));
}

TEST_F(BatchConvert, NotesAreForTheVerbose)
{
    scratch.Write("p/x.tga", ColorPicture(0x102030));
    scratch.Write("a.qsa", WallScene((scratch.Path() / "p/x.tga").string()));
    const ProgramRun plain = Batch({"a.qsa", "--strict"});
    EXPECT_EQ(plain.status, 0) << plain.err;
    EXPECT_EQ(plain.err, "");
    const ProgramRun verbose = Batch({"a.qsa", "--force", "--verbose"});
    EXPECT_THAT(verbose.err, HasSubstr("a.qsa: note Q119: Absolute file path: '"));
    EXPECT_THAT(verbose.err, HasSubstr("a.qsa: converted\n"));
    const ProgramRun quiet = Batch({"a.qsa", "--force", "-q"});
    EXPECT_EQ(quiet.out + quiet.err, "");
}

TEST_F(BatchConvert, TextWithoutAKeywordAndEmptyScenesAreWarnings)
{
    scratch.Write("a.qsa", "nothing that is known");
    scratch.Write("b.qsa", "*3DSMAX_QSAEXPORT 211\n*SCENE { }\n");
    const ProgramRun run = Batch({"a.qsa", "b.qsa"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.err, HasSubstr("a.qsa: warning Q901: "));
    EXPECT_THAT(run.err, HasSubstr("b.qsa: warning Q902: the scene has no object\n"));
    EXPECT_THAT(run.out, HasSubstr(", 2 with warnings in "));
}

TEST_F(BatchConvert, StrictLeavesTheTargetAsItWas)
{
    scratch.Write("in/a.qsa", WallScene("gone.tga"));
    scratch.Write("in/a.qsb", "old");
    const ProgramRun run = Batch({"in", "--strict", "--draw"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, HasSubstr("in/a.qsa: Can not open diffuse map 'gone.tga'\n"));
    EXPECT_EQ(scratch.Read("in/a.qsb"), "old");
    EXPECT_EQ(Batch({"in"}).status, 0);
    EXPECT_EQ(scratch.Read("in/a.qsb"), ConvertedAlone("in", "a.qsa"));
}

TEST_F(BatchConvert, OddNamesAreConverted)
{
    const std::string longName(251, 'n');
    const std::vector<std::string> names = {"with blank", "new\nline", "\xC3\xA4\xFF",
                                            longName,     "-dash",     "'quote\""};
    for (const std::string& name : names)
        scratch.Write("in/" + name + ".qsa", HelperScene("x"));
    const ProgramRun run = Batch({"in", "--frames", "f", "--frame-size", "16x16"});
    EXPECT_EQ(run.status, 0) << run.err << run.out;
    for (const std::string& name : names)
        EXPECT_TRUE(scratch.Has("in/" + name + ".qsb")) << name;
    EXPECT_TRUE(scratch.Has("f/new\nline.qsa.png"));
    EXPECT_TRUE(scratch.Has("f/" + longName + ".png"));
}

TEST_F(BatchConvert, UnwritableTargetsFailAlone)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    scratch.Write("in/b.qsa", HelperScene("b"));
    fs::create_directory("in/a.qsb");
    scratch.Write("o", "a file in the way");
    const ProgramRun run = Batch({"in"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, HasSubstr("in/a.qsa: a.qsb: File is not writeable\n"));
    EXPECT_TRUE(scratch.Has("in/b.qsb"));
}

TEST_F(BatchConvert, UnknownOptionsAndMissingPathsAreTwo)
{
    static const struct {
        std::vector<std::string> arguments;
        const char* expected;
    } cases[] = {
        {{}, "qsbatch: a file or a directory is needed\n"},
        {{"--nothing", "x"}, "qsbatch: unknown option '--nothing'\n"},
        {{"x", "-j", "0"}, "qsbatch: option '-j' needs a whole number from 1 to 1024\n"},
        {{"x", "--memory", "4Q"}, "qsbatch: option '--memory' needs a size, as in 500M or 4G"},
        {{"x", "--frame-size", "3"}, "qsbatch: option '--frame-size' needs two numbers"},
        {{"x", "-0"}, "qsbatch: option '-0' goes with '--from-file' only\n"},
        {{"x", "--journal", "no/j"}, "qsbatch: the journal 'no/j' cannot be made: No such file"},
    };
    for (const auto& c : cases) {
        const ProgramRun run = Batch(c.arguments);
        EXPECT_EQ(run.status, 2) << c.expected;
        EXPECT_THAT(run.err, StartsWith(c.expected));
    }
    const ProgramRun help = Batch({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.out, StartsWith("Usage: qsbatch "));
    EXPECT_EQ(Batch({"--version"}).out, "qsbatch 1.5\n");
}
