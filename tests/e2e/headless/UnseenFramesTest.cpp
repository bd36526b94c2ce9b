// A run whose frames nobody keeps draws no pixel. Nothing else may differ: texts, status, log and saved
// files are compared with those of a run that keeps its frames.

#include "tests/support/FileContent.h"
#include "tests/support/HostCost.h"
#include "tests/support/RunProgram.h"
#include "tests/support/ScratchDirectory.h"
#include "tests/support/TreePaths.h"
#include "tools/scenes/SceneBatch.h"

#include <cstdlib>
#include <filesystem>
#include <map>
#include <regex>

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

} // namespace

TEST(UnseenFrames, GeneratedScenesGiveTheSameResults)
{
    const auto batches = static_cast<unsigned>(AffordableCases(kSceneBatches));
    const ScratchDirectory scratch;
    size_t frames = 0;
    for (unsigned batch = 0; batch < batches; ++batch) {
        SCOPED_TRACE(batch);
        const fs::path directory = scratch.Path() / std::to_string(batch);
        const auto arguments = WriteSceneBatch(batch, SourcePath("examples"), directory);
        fs::current_path(directory);
        frames += ExpectSameResults(arguments);
        fs::current_path(scratch.Path());
        fs::remove_all(directory);
    }
    // No scene but those at the end of three batches of four ends its run, and most of these do.
    EXPECT_GE(frames, batches * kScenesPerBatch - batches * 3 / 4);
    EXPECT_LE(frames, batches * kScenesPerBatch - batches / 2);
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
