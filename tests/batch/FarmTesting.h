#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/batch/BatchTesting.h"

// Chunks and journals of real runs of `qsbatch plan`, `run` and `merge`.

namespace batch_testing {

/// The paths of a chunk's list.
std::vector<std::string> PathsOfChunk(const std::string& file);

/// The names of the files of a directory that end in `extension`, sorted.
std::vector<std::string> NamesIn(const std::string& directory, const std::string& extension);

/// Chunks in "plan", journals in "j", the root "in".
class FarmTest : public BatchTest {
protected:
    /// Shares the scenes of "in" out.
    static ProgramRun Plan(const std::string& chunks, std::vector<std::string> more = {});
    /// Converts a chunk of "plan", by its name without the extension.
    static ProgramRun RunChunk(const std::string& name, std::vector<std::string> more = {});
    /// Converts all chunks of "plan".
    static void RunAll(const std::vector<std::string>& more = {});
    static ProgramRun Merge(std::vector<std::string> more = {});
    static std::vector<std::string> Chunks();
    static std::vector<std::string> Journals() { return NamesIn("j", ".jsonl"); }
    static std::vector<std::string> Partials() { return NamesIn("j", ".partial"); }
};

} // namespace batch_testing
