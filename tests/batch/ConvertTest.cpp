// Which files are converted, where they go, and what the run says.

#include <filesystem>
#include <iterator>
#include <sstream>

#include "tests/batch/BatchTesting.h"
#include "tests/support/QsbBytes.h"

using namespace batch_testing;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;
namespace fs = std::filesystem;

namespace {

class ConvertTest : public BatchTest {};

} // namespace

TEST_F(ConvertTest, WritesEachSceneAsTheConverterDoes)
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

TEST_F(ConvertTest, OutMirrorsTheTreeOfADirectory)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    scratch.Write("in/deep/b.qsa", HelperScene("b"));
    EXPECT_EQ(Batch({"in", "--out", "o/p"}).status, 0);
    EXPECT_THAT(FilesBelow("o/p"), ElementsAre(".qsbatch-state", "a.qsb", "deep/b.qsb"));
    EXPECT_THAT(FilesBelow("in"), ElementsAre("a.qsa", "deep/b.qsa"));
    EXPECT_EQ(scratch.Read("o/p/a.qsb"), ConvertedAlone("in", "a.qsa"));
}

// A relative path keeps its directories; one that leads elsewhere keeps its name.
TEST_F(ConvertTest, OutMirrorsNamedFiles)
{
    scratch.Write("in/deep/b.qsa", HelperScene("b"));
    scratch.Write("c.qsa", HelperScene("c"));
    const std::string absolute = (scratch.Path() / "c.qsa").string();
    EXPECT_EQ(Batch({"./in/deep/b.qsa", absolute, "--out", "o"}).status, 0);
    EXPECT_THAT(FilesBelow("o"), ElementsAre(".qsbatch-state", "c.qsb", "in/deep/b.qsb"));
}

TEST_F(ConvertTest, PatternsChooseFilesOfDirectories)
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

TEST_F(ConvertTest, ListsNameFilesByLinesOrByNuls)
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

TEST_F(ConvertTest, LinksInCirclesEndAndAFileIsTakenOnce)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    fs::create_directory_symlink("../in", "in/again");
    const ProgramRun run = Batch({"in", "in/a.qsa", "./in/again/a.qsa"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_THAT(run.out, StartsWith("1 converted, "));
}

TEST_F(ConvertTest, ScenesWithOneTargetBothFailByName)
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

TEST_F(ConvertTest, OneFailureDoesNotStopTheOthers)
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

TEST_F(ConvertTest, FailFastStartsNoMore)
{
    scratch.Write("in/a.qsa", BrokenScene());
    for (int i = 0; i < 20; ++i)
        scratch.Write("in/b" + std::to_string(i) + ".qsa", HelperScene("b"));
    const ProgramRun run = Batch({"in", "-j", "1", "--fail-fast"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, StartsWith("0 converted, 0 up to date, 1 failed, 0 with warnings, "
                                    "20 skipped in "));
}

TEST_F(ConvertTest, RepeatsOfOneKindAreFolded)
{
    scratch.Write("a.qsa", WallScene("", 1500));
    const ProgramRun run = Batch({"a.qsa"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.err,
                HasSubstr("a.qsa: warning Q235: Invalid face 2 in mesh 'wall' and 999 more\n"));
    EXPECT_THAT(run.err, HasSubstr("a.qsa: 500 more messages\n"));
    EXPECT_THAT(run.out, HasSubstr(", 1 with warnings in "));
}

TEST_F(ConvertTest, NotesAreForTheVerbose)
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

TEST_F(ConvertTest, TextWithoutAKeywordAndEmptyScenesAreWarnings)
{
    scratch.Write("a.qsa", "nothing that is known");
    scratch.Write("b.qsa", "*3DSMAX_QSAEXPORT 211\n*SCENE { }\n");
    const ProgramRun run = Batch({"a.qsa", "b.qsa"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.err, HasSubstr("a.qsa: warning Q901: "));
    EXPECT_THAT(run.err, HasSubstr("b.qsa: warning Q902: the scene has no object\n"));
    EXPECT_THAT(run.out, HasSubstr(", 2 with warnings in "));
}

TEST_F(ConvertTest, StrictLeavesTheTargetAsItWas)
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

TEST_F(ConvertTest, OddNamesAreConverted)
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

TEST_F(ConvertTest, UnwritableTargetsFailAlone)
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

TEST_F(ConvertTest, UnknownOptionsAndMissingPathsAreTwo)
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
        {{"x", "--journal", "no/j"},
         "qsbatch: the journal 'no/j' cannot be made: No such file or directory; choose another "
         "place with --journal\n"},
        {{"x", "--report", "no/r"},
         "qsbatch: the page 'no/r' cannot be written: No such file or directory; choose another "
         "place with --report\n"},
        {{"x", "--camera", "-1"}, "qsbatch: option '--camera' needs a whole number from 0 on\n"},
        {{"x", "--timeout", "soon"}, "qsbatch: option '--timeout' needs a number of seconds, 0"},
        {{"x", "-q", "-v"}, "qsbatch: '--quiet' and '--verbose' do not go together\n"},
        {{"x", ""}, "qsbatch: an empty path is given\n"},
        {{"x", "--out"}, "qsbatch: "},
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

TEST_F(ConvertTest, ListsMayComeFromStandardInputAndNameDirectories)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    scratch.Write("b.qsa", HelperScene("b"));
    const std::string program = "'" + BuildPath("qsbatch") + "'";
    const ProgramRun run = RunProgramFile(
        "/bin/bash", {"-c", "printf 'in\nb.qsa' | " + program + " --from-file - --out o"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_THAT(FilesBelow("o"), ElementsAre(".qsbatch-state", "a.qsb", "b.qsb"));
    const ProgramRun nothing =
        RunProgramFile("/bin/bash", {"-c", program + " --from-file - --out p <&-"});
    EXPECT_EQ(nothing.status, 2);
    EXPECT_THAT(nothing.err, HasSubstr("the list '-' cannot be read: Bad file descriptor; "));
    const ProgramRun directory = Batch({"--from-file", "in"});
    EXPECT_EQ(directory.status, 2);
    EXPECT_THAT(directory.err, HasSubstr("the list 'in' cannot be read: Is a directory; "));
}

// However their paths are written, and before the directory is there.
TEST_F(ConvertTest, TargetsAreOneIfTheirPathsLeadToOnePlace)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    scratch.Write("in/a.QSA", HelperScene("b"));
    scratch.Write("other/a.qsa", HelperScene("c"));
    fs::create_directory_symlink("in", "link");
    const ProgramRun beside = Batch({"in/a.qsa", "./link/a.QSA"});
    EXPECT_EQ(beside.status, 1);
    EXPECT_THAT(beside.out, HasSubstr("in/a.qsa: another scene has the same target: ./link/a.QSA"));
    EXPECT_THAT(beside.out, HasSubstr("./link/a.QSA: another scene has the same target: in/a.qsa"));
    const ProgramRun mirrored = Batch({"in", "other", "--include", "*.qsa", "--out", "new/deep"});
    EXPECT_THAT(mirrored.out, StartsWith("0 converted, 0 up to date, 3 failed, "));
    EXPECT_THAT(FilesBelow("new"), ElementsAre("deep/.qsbatch-state"));
}

TEST_F(ConvertTest, OneDirectoryByTwoPathsIsSearchedOnce)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    const ProgramRun run = Batch({"in", "./in/", (scratch.Path() / "in").string()});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_THAT(run.out, StartsWith("1 converted, 0 up to date, 0 failed, "));
}

// What the first run writes is no source of the second one.
TEST_F(ConvertTest, OutMayBeInsideTheTree)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    const std::vector<std::string> run = {"in", "--out", "in/out", "--include", "*.qs[ab]"};
    EXPECT_THAT(Batch(run).out, StartsWith("1 converted, 0 up to date, 0 failed, "));
    EXPECT_THAT(Batch(run).out, StartsWith("0 converted, 1 up to date, 0 failed, "));
    EXPECT_THAT(FilesBelow("in"), ElementsAre("a.qsa", "out/.qsbatch-state", "out/a.qsb"));
}

TEST_F(ConvertTest, NoScenesAreNoFailureButTold)
{
    scratch.Write("in/a.txt", "text");
    const ProgramRun run = Batch({"in"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, StartsWith("0 converted, 0 up to date, 0 failed, "));
    EXPECT_EQ(run.err, "qsbatch: no scenes are found, see --include\n");
}

// A frame by each option is that of the converter, and so is the target.
TEST_F(ConvertTest, DrawingOptionsAreThoseOfTheConverter)
{
    static const struct {
        std::vector<std::string> options;
        const char* converter;
    } cases[] = {
        {{"--camera", "1"}, "/cam:1"},
        {{"--time", "0.5"}, "/t:0.5"},
        {{"--loop", "--time", "100"}, "/loop /t:100"},
        {{"--fit"}, "/zn:0 /zf:0"},
        {{"--no-light"}, "/nl"},
        {{"--no-specular"}, "/nospec"},
        {{"--z-buffer"}, "/zbuf"},
    };
    fs::copy(SourcePath("examples"), "in", fs::copy_options::recursive);
    const std::string leaf = "harbour.qsa";
    const auto framesOf = [&](const std::vector<std::string>& options) {
        std::vector<std::string> run = {"in/" + leaf, "--out",        "o",     "--frames",
                                        "f",          "--frame-size", "96x72", "--force"};
        run.insert(run.end(), options.begin(), options.end());
        EXPECT_EQ(Batch(run).status, 0);
        return scratch.Read("f/in/" + leaf + ".png");
    };
    const std::string plain = framesOf({});
    for (const auto& c : cases) {
        const std::string frame = framesOf(c.options);
        fs::remove_all("alone");
        fs::copy("in", "alone", fs::copy_options::recursive);
        const fs::path before = fs::current_path();
        fs::current_path("alone");
        setenv("QSA2QSB_FRAMES", "frames", 1);
        std::vector<std::string> words = {leaf, "/stop", "/resx:96", "/resy:72"};
        std::istringstream options(c.converter);
        words.insert(words.end(), std::istream_iterator<std::string>(options), {});
        RunProgram(words);
        unsetenv("QSA2QSB_FRAMES");
        fs::current_path(before);
        EXPECT_TRUE(frame == scratch.Read("alone/frames/" + leaf + ".png")) << c.converter;
        EXPECT_TRUE(scratch.Read("o/in/harbour.qsb") == scratch.Read("alone/harbour.qsb"))
            << c.converter;
    }
    EXPECT_NE(framesOf({"--camera", "1"}), plain);
    EXPECT_NE(framesOf({"--time", "0.5"}), plain);
    EXPECT_NE(framesOf({"--no-light"}), plain);
}

// A scene that was damaged before it came here: the parents of its objects lead in a circle.
TEST_F(ConvertTest, CheckFindsDamageInWhatWasWritten)
{
    QsbFile file;
    for (const char* const name : {"one", "two"}) {
        QsbObject object;
        object.name = name;
        object.parentName = name == std::string("one") ? "two" : "one";
        file.scene.objects.push_back(object);
    }
    scratch.Write("in/a.qsb", MakeQsb(file).bytes);
    const ProgramRun plain = Batch({"in/a.qsb", "--out", "o"});
    EXPECT_EQ(plain.status, 0) << plain.err;
    const ProgramRun checked = Batch({"in/a.qsb", "--out", "o", "--check", "--journal", "j"});
    EXPECT_EQ(checked.status, 1);
    EXPECT_THAT(checked.err,
                HasSubstr("in/a.qsb: error Q910: the file that was written is damaged: "));
    EXPECT_THAT(scratch.Read("j"), HasSubstr("\"status\":\"failed\",\"target_written\":true"));
}

// Pictures of a target that goes elsewhere are those of its source.
TEST_F(ConvertTest, CheckFindsPicturesBesideTheSource)
{
    scratch.Write("in/a.qsa", WallScene("p.tga"));
    scratch.Write("in/p.tga", ColorPicture(1));
    scratch.Write("o/in/p.tga", "no picture at all");
    const ProgramRun run = Batch({"in/a.qsa", "--out", "o", "--check"});
    EXPECT_EQ(run.status, 0) << run.err;
}

TEST_F(ConvertTest, StrictRunsJudgeWhatOtherRunsLetPass)
{
    scratch.Write("in/a.qsa", WallScene("gone.tga"));
    EXPECT_EQ(Batch({"in", "--out", "o"}).status, 0);
    const auto time = fs::last_write_time("o/a.qsb");
    EXPECT_EQ(Batch({"in", "--out", "o", "--strict"}).status, 1);
    EXPECT_EQ(fs::last_write_time("o/a.qsb"), time);
}

// The size is in the head of the picture.
TEST_F(ConvertTest, FramesHaveASizeUnlessOneIsGiven)
{
    scratch.Write("in/a.qsa", HelperScene("a"));
    EXPECT_EQ(Batch({"in", "--frames", "f"}).status, 0);
    EXPECT_EQ(scratch.Read("f/a.qsa.png").substr(16, 8), std::string("\0\0\1\x40\0\0\0\xF0", 8));
}

TEST_F(ConvertTest, WorkersLeaveNoLog)
{
    scratch.Write("in/a.qsa", WallScene("gone.tga", 5));
    scratch.Write("in/b.qsa", BrokenScene());
    EXPECT_EQ(Batch({"in", "--draw"}).status, 1);
    EXPECT_THAT(FilesBelow("."), testing::Not(testing::Contains(HasSubstr("logfile"))));
}
