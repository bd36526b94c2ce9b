#include "batch/RunFarm.h"

#include <cstdio>

#include "batch/BatchText.h"
#include "batch/ChunkPlan.h"
#include "batch/ChunkRun.h"
#include "batch/ConvertScenes.h"
#include "batch/FarmArguments.h"
#include "batch/JournalMerge.h"
#include "batch/RunBatch.h"
#include "batch/StateDatabase.h"

static int RunCommand(const FarmOptions& options)
{
    switch (options.command) {
    case FarmCommand::kPlan:
        return ChunkPlan(options).Run();
    case FarmCommand::kRun:
        return ChunkRun(options).Run();
    case FarmCommand::kMerge:
        break;
    }
    return JournalMerge(options).Run();
}

int RunFarm(const std::vector<std::string>& arguments)
{
    const FarmOptions options = ReadFarmArguments(arguments);
    if (!options.batch.error.empty()) {
        std::fprintf(stderr, "qsbatch: %s\n%s", OneLine(options.batch.error).c_str(),
                     options.usage.c_str());
        return kBatchTrouble;
    }
    if (options.batch.help) {
        std::fputs(options.help.c_str(), stdout);
        return std::fflush(stdout) == 0 ? kBatchWell : kBatchTrouble;
    }
    int status = kBatchTrouble;
    try {
        status = RunCommand(options);
    } catch (const StateError& failure) {
        return BatchTrouble(failure.text);
    }
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
        return BatchTrouble("the output could not be written");
    return status;
}
