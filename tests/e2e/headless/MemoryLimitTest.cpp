// The program with less memory than its scene needs.

#include "tests/support/Emulator.h"
#include "tests/support/RunProgram.h"
#include "tests/support/ScratchDirectory.h"
#include "tests/support/TreePaths.h"

#include <gmock/gmock.h>

#ifndef __SANITIZE_ADDRESS__ // which reserves a huge address space

namespace {

constexpr char kLimitKiB[] = "150000";

/// With 500,000 materials, a text of a few megabytes for which the importer needs thirty times as much.
std::string ManyMaterials(int count)
{
    std::string text = "*3DSMAX_QSAEXPORT 200\n*MATERIAL_LIST {\n";
    for (int i = 0; i < count; ++i)
        text += "*MATERIAL " + std::to_string(i) + " {}\n";
    return text + "}\n";
}

/// Runs the program with a limit on its address space.
ProgramRun RunWithin(const char* limitKiB, const std::string& scene)
{
    return RunProgramFile("/bin/sh",
                          {"-c", std::string("ulimit -v ") + limitKiB + " && exec \"$0\" \"$@\"",
                           ProgramPath(), scene});
}

/// The least limit, in steps of 200 KiB, with which the system loads the program and its libraries.
int LeastKiBToLoad()
{
    int limitKiB = 200;
    const auto isLoaded = [&] {
        const std::string command =
            "ulimit -v " + std::to_string(limitKiB) + " && LD_TRACE_LOADED_OBJECTS=1 exec \"$0\"";
        return RunProgramFile("/bin/sh", {"-c", command, ProgramPath()}).status == 0;
    };
    while (limitKiB < 1000000 && !isLoaded())
        limitKiB += 200;
    return limitKiB;
}

} // namespace

TEST(MemoryLimit, SceneThatDoesNotFitEndsTheRunWithAMessage)
{
    if (RunsUnderAnEmulator())
        GTEST_SKIP() << "needs a memory limit";
    const ScratchDirectory scratch;
    scratch.Write("small.qsa", ManyMaterials(10));
    EXPECT_EQ(RunWithin(kLimitKiB, "small.qsa").out, "'small.qsa' converted\n")
        << "enough for a small scene";

    scratch.Write("large.qsa", ManyMaterials(500000));
    scratch.Write("large.qsb", "old");
    const ProgramRun run = RunWithin(kLimitKiB, "large.qsa");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "large.qsa: not converted\n"
                       "Error\nQSALoader: large.qsa: Not enough memory for the scene\n");
    EXPECT_TRUE(scratch.Read("large.qsb") == "old");
}

// From too little for the start of the graphics to enough for the frame. What the program needs before its first line
// depends on how it was built.
TEST(MemoryLimit, WhateverItIsTheRunEndsWellOrNamesItsFile)
{
    if (RunsUnderAnEmulator())
        GTEST_SKIP() << "needs a memory limit";
    const ScratchDirectory scratch;
    scratch.Write("small.qsa", ManyMaterials(10));
    int named = 0;
    bool isConverted = false;
    constexpr int kLibraryStartKiB = 400; // the libraries' own start
    const int firstKiB = LeastKiBToLoad() + kLibraryStartKiB;
    for (int limitKiB = firstKiB; limitKiB < firstKiB + 70000 && !isConverted; limitKiB += 200) {
        const ProgramRun run = RunWithin(std::to_string(limitKiB).c_str(), "small.qsa");
        isConverted = run.status == 1;
        if (isConverted)
            break;
        EXPECT_EQ(run.status, 0) << limitKiB;
        EXPECT_THAT(run.err, testing::HasSubstr("small.qsa")) << limitKiB;
        ++named;
    }
    EXPECT_TRUE(isConverted);
    EXPECT_GT(named, 0);
}

#endif
