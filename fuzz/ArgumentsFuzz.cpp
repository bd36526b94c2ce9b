// Any arguments of a companion program, one a line: options, or an error that says what is wrong. The first
// byte selects the program.

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "batch/BatchArguments.h"
#include "batch/FarmArguments.h"
#include "fuzz/support/Mutation.h"
#include "import/ImportArguments.h"

namespace {

std::vector<std::string> LinesOf(std::string_view text)
{
    std::vector<std::string> lines;
    for (size_t at = 0; at < text.size();) {
        const size_t end = std::min(text.find('\n', at), text.size());
        lines.emplace_back(text.substr(at, end - at));
        at = end + 1;
    }
    return lines;
}

void Require(bool holds)
{
    if (!holds)
        std::abort();
}

void CheckBatch(const BatchOptions& options)
{
    if (!options.error.empty())
        return;
    Require(options.workers >= 0 && options.timeoutSeconds >= 0);
    Require(options.frameWidth > 0 && options.frameHeight > 0);
    options.EngineOptions();
    options.TargetKey();
    options.FrameKey();
}

/// The options of all programs, made once: that takes far longer than reading a command line.
struct Programs {
    FarmArguments plan{FarmCommand::kPlan}, run{FarmCommand::kRun}, merge{FarmCommand::kMerge};
    BatchArguments batch;
    ImportCommandLine import;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static Programs programs;
    if (size < 1)
        return 0;
    const std::vector<std::string> arguments = LinesOf(TextOf(data + 1, size - 1));
    const unsigned program = data[0] % 5u;
    if (program < 3) {
        FarmArguments* const commands[] = {&programs.plan, &programs.run, &programs.merge};
        CheckBatch(commands[program]->Read(arguments).batch);
    } else if (program == 3) {
        CheckBatch(programs.batch.Read(arguments));
    } else {
        const ImportArguments read = programs.import.Read(arguments);
        Require(!read.error.empty() || read.help || read.version || !read.models.empty());
    }
    return 0;
}
