// Whole runs of the built program.

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <iterator>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "info/RunInfo.h"
#include "tests/info/InfoTesting.h"
#include "tests/info/JsonGrammar.h"
#include "tests/support/FileContent.h"
#include "tests/support/HostCost.h"
#include "tests/support/RunProgram.h"
#include "tests/support/ScratchDirectory.h"
#include "tests/support/TreePaths.h"

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;
namespace fs = std::filesystem;

namespace {

/// The text of a file, with line ends as "\n". Removes the file.
std::string TakeText(const char* name)
{
    std::string text = FileContent(name, {});
    std::remove(name);
    return text;
}

ProgramRun Info(const std::vector<std::string>& arguments)
{
    return RunProgramFile(InfoProgramPath(), arguments);
}

/// The same without starting it, for tests of many runs: under Wine a start takes longer than the run.
ProgramRun InfoInProcess(const std::vector<std::string>& arguments)
{
    FILE* const out = std::fopen("run.out", "w");
    FILE* const err = std::fopen("run.err", "w");
    ProgramRun run;
    run.status = RunInfo(arguments, out, err);
    std::fclose(out);
    std::fclose(err);
    run.out = TakeText("run.out");
    run.err = TakeText("run.err");
    return run;
}

/// Names and sizes of all files in and below the current directory.
std::vector<std::string> Listing()
{
    std::vector<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(".")) {
        if (entry.is_regular_file())
            names.push_back(entry.path().string() + " " + std::to_string(entry.file_size()));
    }
    std::sort(names.begin(), names.end());
    return names;
}

void CopyExamples()
{
    const fs::path source = SourcePath("examples");
    for (const auto& entry : fs::recursive_directory_iterator(source)) {
        const fs::path name = entry.path().lexically_relative(source);
        const bool isLeft = name.extension() == ".qsb" || name.filename() == "logfile.txt";
        if (!entry.is_regular_file() || isLeft) // left by someone who tried the examples
            continue;
        if (name.has_parent_path())
            fs::create_directories(name.parent_path());
        fs::copy_file(entry.path(), name);
    }
}

class ProgramTest : public testing::Test {
protected:
    const ScratchDirectory scratch;
};

} // namespace

TEST_F(ProgramTest, HelpAndVersionGoToStandardOutput)
{
    const ProgramRun help = Info({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.out, StartsWith("Usage: qsbinfo "));
    for (const char* option : {"--tree", "--effects", "--json", "--check", "diff", "--tolerance",
                               "--exact", "--all", "--help", "--version"})
        EXPECT_THAT(help.out, HasSubstr(option));
    EXPECT_EQ(help.err, "");
    const ProgramRun version = Info({"--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.out, "qsbinfo 1.5\n");
}

TEST_F(ProgramTest, WrongCallsEndWithTwoAndTheUsage)
{
    static const struct {
        std::vector<std::string> arguments;
        const char* expected;
    } cases[] = {
        {{}, "qsbinfo: a file is needed\nUsage: "},
        {{"--tee", "a.qsb"}, "qsbinfo: unknown option '--tee'\nUsage: "},
        {{"a.qsb", "b.qsb"}, "qsbinfo: one file too many: 'b.qsb'\nUsage: "},
        {{"diff", "a.qsb"}, "qsbinfo: two files are needed\nUsage: "},
    };
    for (const auto& c : cases) {
        const ProgramRun run = Info(c.arguments);
        EXPECT_EQ(run.status, 2) << c.expected;
        EXPECT_EQ(run.out, "");
        EXPECT_THAT(run.err, StartsWith(c.expected));
    }
}

TEST_F(ProgramTest, FilesThatCannotBeLoadedEndWithTwoAndFailACheck)
{
    scratch.Write("bad.qsb", "QSB\x6A");
    scratch.Write("good.qsb", MakeQsb(InfoBoat()).bytes);
    for (const char* file : {"bad.qsb", "nothing.qsb", "nowhere/a.qsb"}) {
        for (const char* option : {"--all", "--tree", "--effects", "--json"}) {
            const ProgramRun run = InfoInProcess({option, file});
            EXPECT_EQ(run.status, 2) << option << ' ' << file;
            EXPECT_EQ(run.out, "") << option << ' ' << file;
            EXPECT_THAT(run.err, StartsWith("qsbinfo: " + std::string(file) + ": ")) << option;
        }
        EXPECT_EQ(InfoInProcess({"--check", file}).status, 1) << file;
        EXPECT_EQ(InfoInProcess({"diff", "good.qsb", file}).status, 2) << file;
        EXPECT_EQ(InfoInProcess({"diff", file, "good.qsb"}).status, 2) << file;
    }
    EXPECT_EQ(InfoInProcess({"bad.qsb"}).err, "qsbinfo: bad.qsb: Error reading from file\n");
    EXPECT_FALSE(scratch.Has("logfile.txt"));
}

TEST_F(ProgramTest, CheckDistinguishesSoundFromDamaged)
{
    scratch.Write("good.qsb", MakeQsb(InfoBoat()).bytes);
    QsbFile file = InfoBoat();
    file.scene.meshes[0].clip.mode = 1; // a sphere of radius 0, which excludes two vertices
    scratch.Write("bad.qsb", MakeQsb(file).bytes);
    const ProgramRun good = Info({"--check", "good.qsb"});
    EXPECT_EQ(good.status, 0);
    EXPECT_EQ(good.out, "good.qsb: sound\n");
    const ProgramRun bad = Info({"--check", "bad.qsb"});
    EXPECT_EQ(bad.status, 1);
    EXPECT_THAT(bad.out, EndsWith("bad.qsb: 2 faults\n"));
}

TEST_F(ProgramTest, DiffEndsWithZeroOrOne)
{
    scratch.Write("a.qsb", MakeQsb(InfoBoat()).bytes);
    QsbFile file = InfoBoat();
    file.scene.meshes[0].vertices[1].position[0] = 1.25f;
    scratch.Write("deck/b.qsb", MakeQsb(file).bytes);
    EXPECT_EQ(Info({"diff", "a.qsb", "a.qsb"}).status, 0);
    const ProgramRun run = Info({"diff", "a.qsb", "deck/b.qsb"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "meshes/Hull/vertices[1].position.x: 1 | 1.25\n");
    const ProgramRun tolerant = Info({"diff", "--tolerance", "0.25", "a.qsb", "deck/b.qsb"});
    EXPECT_EQ(tolerant.status, 0);
    EXPECT_EQ(tolerant.out, "");
}

TEST_F(ProgramTest, AllExamplesAreSoundAndNothingIsWritten)
{
    CopyExamples();
    const std::vector<std::string> before = Listing();
    int scenes = 0;
    for (const auto& entry : fs::recursive_directory_iterator(".")) {
        if (entry.path().extension() != ".qsa")
            continue;
        ++scenes;
        const std::string name = entry.path().generic_string();
        const ProgramRun check = InfoInProcess({"--check", name});
        EXPECT_EQ(check.status, 0) << name << ": " << check.out << check.err;
        const ProgramRun report = InfoInProcess({name});
        EXPECT_EQ(report.status, 0) << name;
        EXPECT_THAT(report.out, AllOf(StartsWith(name + "\n  Format      QSA text, "),
                                      HasSubstr("  Textures    ")));
        EXPECT_EQ(report.err, "");
        EXPECT_EQ(InfoInProcess({"--tree", name}).status, 0) << name;
        const ProgramRun json = InfoInProcess({"--json", name});
        EXPECT_EQ(json.status, 0) << name;
        EXPECT_TRUE(JsonGrammar::IsValid(json.out)) << name;
    }
    EXPECT_GE(scenes, 10);
    EXPECT_EQ(Listing(), before);
}

TEST_F(ProgramTest, ASceneDiffersFromItsConversionByRoundingAndWhatTheConverterAdds)
{
    CopyExamples();
    ASSERT_EQ(RunProgram({"lights.qsa"}).status, 1);
    // Normals are truncated to multiples of 1 / 32767, so they lose less than that; the converter
    // draws through a mirrored view.
    const ProgramRun run = Info({"diff", "lights.qsa", "lights.qsb"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "settings/mirrorView: 0 | 1\n");
    const ProgramRun exact = Info({"diff", "--exact", "lights.qsa", "lights.qsb"});
    EXPECT_THAT(exact.out, HasSubstr("/vertices[0].normal."));
    EXPECT_THAT(exact.out, HasSubstr(" differences more\n"));
}

TEST_F(ProgramTest, AFileWithoutLightsGetsTwoByTheConversion)
{
    CopyExamples();
    ASSERT_EQ(RunProgram({"empty.qsa"}).status, 1);
    EXPECT_EQ(Info({"diff", "empty.qsa", "empty.qsb"}).out, "settings/mirrorView: 0 | 1\n"
                                                            "settings/showObjects: -2 | -1\n"
                                                            "settings/showHierarchy: 0 | 1\n"
                                                            "lights/*undefined*: - | present\n"
                                                            "lights/*undefined*#2: - | present\n");
}

TEST_F(ProgramTest, EveryTruncationOfAFileEndsWithTwo)
{
    const std::string bytes = MakeQsb(InfoBoat()).bytes;
    for (size_t size = 0; size < bytes.size(); size += 97) {
        scratch.Write("cut.qsb", bytes.substr(0, size));
        const ProgramRun run = InfoInProcess({"cut.qsb"});
        EXPECT_EQ(run.status, 2) << size;
        EXPECT_EQ(run.out, "") << size;
    }
}

TEST_F(ProgramTest, LongChainsOfObjectsAndCirclesAreFine)
{
    const int count = AffordableCases(10000);
    const std::string last = "n" + std::to_string(count - 1);
    QsbFile file;
    for (int i = 0; i < count; ++i)
        file.scene.objects.push_back(InfoHelper(
            "n" + std::to_string(i), i == 0 ? std::string() : "n" + std::to_string(i - 1)));
    scratch.Write("chain.qsb", MakeQsb(file).bytes);
    file.scene.objects[0].parentName = last;
    scratch.Write("circle.qsb", MakeQsb(file).bytes);
    for (const char* option : {"--tree", "--json", "--all"}) {
        EXPECT_EQ(InfoInProcess({option, "chain.qsb"}).status, 0) << option;
        EXPECT_EQ(InfoInProcess({option, "circle.qsb"}).status, 0) << option;
    }
    EXPECT_EQ(InfoInProcess({"--check", "chain.qsb"}).status, 0);
    EXPECT_EQ(InfoInProcess({"--check", "circle.qsb"}).status, 1);
    EXPECT_EQ(InfoInProcess({"diff", "chain.qsb", "circle.qsb"}).out,
              "objects/n0/parentName: \"\" | \"" + last + "\"\n");
}
