#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "batch/BatchOptions.h"

enum class FarmCommand : uint8_t { kPlan, kRun, kMerge };

/// What the command line of `qsbatch plan`, `run` or `merge` requests.
struct FarmOptions {
    FarmCommand command = FarmCommand::kPlan;
    BatchOptions batch;           ///< with the error, if there is one
    std::string root = ".";       ///< directory that the paths of chunks begin in
    std::string output;           ///< directory of the plan, or file of the merged journal
    uint64_t chunkCount = 0;      ///< of a plan; 0 if their size is given
    uint64_t chunkBytes = 0;      ///< of a plan; 0 if their number is given
    std::string chunkFile;        ///< of a run
    std::string journalDirectory; ///< of a run and of a merge
    std::string help;             ///< of the command
    std::string usage;            ///< the short form
};

/// Whether the first argument is a command.
bool IsFarmCommand(const std::vector<std::string>& arguments);

/// Reads the arguments, the command's name first.
FarmOptions ReadFarmArguments(const std::vector<std::string>& arguments);
