#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "batch/BatchArguments.h"

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

/// Texts of a command's options until all are read.
struct FarmTexts {
    std::string chunks, chunkMebibytes;
};

/// All options of a command, for any number of command lines.
class FarmArguments {
public:
    explicit FarmArguments(FarmCommand commandIn);

    /// Reads the arguments after the command's name.
    FarmOptions Read(const std::vector<std::string>& arguments);

private:
    FarmCommand command;
    FarmOptions options; ///< of the last command line
    FarmTexts texts;
    CommandForm form;
    BatchArguments line;
};

/// Reads the arguments, the command's name first.
FarmOptions ReadFarmArguments(const std::vector<std::string>& arguments);
