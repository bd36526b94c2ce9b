// The entry to the headless program: ./run, and the script that it calls.

#include "tests/support/Emulator.h"
#include "tests/support/RunProgram.h"
#include "tests/support/ScratchDirectory.h"
#include "tests/support/TreePaths.h"

#include <cstdlib>
#include <filesystem>
#include <gmock/gmock.h>

namespace {

const char kBareScene[] = "*3DSMAX_QSAEXPORT 200\n";

class RunCommand : public testing::Test {
protected:
    void SetUp() override
    {
        if (RunsUnderAnEmulator())
            GTEST_SKIP() << "the scripts run native programs";
    }
};

ProgramRun RunNames(std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), ProgramPath());
    return RunProgramFile(SourcePath("tools/run-names"), arguments);
}

} // namespace

TEST_F(RunCommand, HelpAndVersionGoToStandardOutput)
{
    for (const char* option : {"-h", "--help"}) {
        const ProgramRun run = RunProgramFile(SourcePath("run"), {"some.qsa", option});
        EXPECT_EQ(run.status, 0) << option;
        EXPECT_THAT(run.out, testing::StartsWith("Usage: ./run NAME... [/option...]\n")) << option;
        EXPECT_EQ(run.err, "") << option;
    }
    const ProgramRun run = RunProgramFile(SourcePath("run"), {"--version"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, testing::MatchesRegex("qsa2qsb [0-9]+[.][0-9]+\n"));
}

TEST_F(RunCommand, NothingToConvertIsReportedAndFails)
{
    const ScratchDirectory scratch;
    scratch.Write("deck/a.qsa", kBareScene);
    scratch.Write(".hidden.qsa", kBareScene);
    static const struct {
        const char* name;
        const char* expected;
    } cases[] = {
        {"nosuch.qsa", "./run: nosuch.qsa: no such file, nothing converted\n"},
        {"*.max", "./run: *.max: no such file, nothing converted\n"},
        {"deck", "./run: deck is a directory: add /s and a pattern\n"},
        {"deck/", "./run: deck/ is a directory: add /s and a pattern\n"},
        {".hidden.qsa",
         "./run: .hidden.qsa is left out: hidden, or a name that the program cannot take\n"},
    };
    for (const auto& c : cases) {
        const ProgramRun run = RunNames({c.name});
        EXPECT_EQ(run.status, 1) << c.name;
        EXPECT_EQ(run.out, "") << c.name;
        EXPECT_EQ(run.err, c.expected);
    }
    const ProgramRun none = RunNames({"/stop"});
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.err, "./run: no file is named; ./run --help tells how\n");
}

TEST_F(RunCommand, EachNameIsConvertedWithAllOptions)
{
    const ScratchDirectory scratch;
    for (const char* name : {"a.qsa", "my b.qsa", "it's c.qsa", "deck/d.qsa", "deck/e/f.qsa"})
        scratch.Write(name, kBareScene);
    const std::string absolute = (scratch.Path() / "deck" / "*.qsa").string();
    const ProgramRun run =
        RunNames({"a.qsa", "/stop", "my b.qsa", "it's c.qsa", absolute, "/s", ""});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "'a.qsa' converted\n'my b.qsa' converted\n'it's c.qsa' converted\n"
                       "'d.qsa' converted\n'f.qsa' converted\n");
    EXPECT_EQ(run.err, "");
}

TEST_F(RunCommand, GoesOnAfterAFailureAndFails)
{
    const ScratchDirectory scratch;
    scratch.Write("a.qsa", kBareScene);
    scratch.Write("bad.qsa", "abc"); // a scene has at least four bytes
    scratch.Write("c.qsa", kBareScene);
    const ProgramRun run = RunNames({"a.qsa", "bad.qsa", "nosuch.qsa", "c.qsa"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "'a.qsa' converted\n'c.qsa' converted\n");
    EXPECT_THAT(run.err, testing::StartsWith("bad.qsa: not converted\nError\n"));
    EXPECT_THAT(run.err, testing::EndsWith("./run: nosuch.qsa: no such file, nothing converted\n"));
    EXPECT_EQ(RunNames({"bad.qsa", "c.qsa"}).status, 1);
    EXPECT_EQ(RunNames({"nosuch.qsa", "c.qsa"}).status, 1);
}

TEST_F(RunCommand, TheProgramsOwnHelpIsNotAFailure)
{
    const ScratchDirectory scratch;
    for (const char* option : {"/?", "/H", "/help"}) {
        const ProgramRun run = RunNames({option});
        EXPECT_EQ(run.status, 0) << option;
        EXPECT_THAT(run.err, testing::StartsWith("QSA to QSB converter v1.5\n")) << option;
    }
}

TEST_F(RunCommand, ProgramThatBreaksOffIsAFailure)
{
    const ScratchDirectory scratch;
    scratch.Write("program", "#!/bin/sh\necho \"'a' converted\"\nkill -KILL $$\n");
    std::filesystem::permissions("program", std::filesystem::perms::owner_all);
    const ProgramRun run =
        RunProgramFile(SourcePath("tools/run-names"), {(scratch.Path() / "program").string(), "a"});
    EXPECT_EQ(run.status, 1);
    // 128 and the number of the signal, 9.
    EXPECT_THAT(run.err, testing::HasSubstr("./run: a: the program broke off with status 137\n"));
}

TEST_F(RunCommand, NamesWithTheSamePictureAreRefusedBeforeTheFirstStarts)
{
    const ScratchDirectory scratch;
    for (const char* name : {"a/boat.qsa", "b/boat.qsa", "b/cleat.qsa"})
        scratch.Write(name, kBareScene);
    setenv("QSA2QSB_FRAMES", "frames", 1);
    const ProgramRun refused = RunNames({"b/cleat.qsa", "a/boat.qsa", "b/boat.qsa"});
    const ProgramRun taken = RunNames({"a/boat.qsa", "b/cleat.qsa"});
    unsetenv("QSA2QSB_FRAMES");
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.out, "");
    EXPECT_EQ(refused.err, "./run: two names give one picture: "
                           "a/boat.qsa and b/boat.qsa give boat.qsa.png\n");
    EXPECT_EQ(taken.status, 0);
    EXPECT_TRUE(scratch.Has("frames/boat.qsa.png"));
    EXPECT_TRUE(scratch.Has("frames/cleat.qsa.png"));
    EXPECT_EQ(RunNames({"a/boat.qsa", "b/boat.qsa"}).status, 0) << "no pictures are kept";
}
