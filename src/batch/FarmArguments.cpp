#include "batch/FarmArguments.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>

#include "batch/ChunkName.h"

namespace {

constexpr const char* kCommandNames[] = {"plan", "run", "merge"};
constexpr double kMostMebibytes = 1e12;

constexpr const char* kPlanUsage =
    "Usage: qsbatch plan --chunks N|--chunk-mb M -o DIR [OPTION...] PATH...\n";
constexpr const char* kRunUsage =
    "Usage: qsbatch run --chunk FILE --journal-dir DIR [--root DIR] [OPTION...]\n";
constexpr const char* kMergeUsage =
    "Usage: qsbatch merge DIR -o FILE [--root DIR] [--state FILE] [--report FILE.html]\n";

constexpr const char* kPlanWhat =
    "Shares scenes out to chunks of about the same size: lists of paths that end in NUL, for\n"
    "'qsbatch run' on any machine. With --state, only what is not up to date; options that decide\n"
    "about results have to be those of the runs.";
constexpr const char* kRunWhat =
    "Converts the scenes of a chunk, without a state. It may run twice, also at once and on two\n"
    "machines. Its journal ends in .partial until all scenes are done, then in .jsonl.";
constexpr const char* kMergeWhat =
    "Puts the journals of all chunks of a directory together, with the last result of each scene,\n"
    "and names the chunks that have no complete one. With --state, the results go into a state.";

CommandForm FormOf(FarmCommand command, FarmOptions& options, FarmTexts& texts)
{
    const CommandOption root = {"--root", "DIR", "paths of chunks begin here (current directory)",
                                &options.root};
    switch (command) {
    case FarmCommand::kPlan:
        return {kPlanUsage,
                kPlanWhat,
                {{"--chunks", "N", "make so many chunks", &texts.chunks},
                 {"--chunk-mb", "M", "make chunks of about M MiB", &texts.chunkMebibytes},
                 {"-o", "DIR", "write the chunks to DIR, in place of those there", &options.output},
                 root},
                {"--version", "--journal", "--report", "--dry-run", "--fail-fast", "--import",
                 "--import-options", "--untrusted", "--durable"}};
    case FarmCommand::kRun:
        return {kRunUsage,
                kRunWhat,
                {{"--chunk", "FILE", "a chunk of 'qsbatch plan'", &options.chunkFile},
                 {"--journal-dir", "DIR", "write the journal to DIR", &options.journalDirectory},
                 root},
                {"--version", "--include", "--exclude", "--from-file", "-0", "--state", "--force",
                 "--rehash", "--dry-run", "--journal", "--report", "--fail-fast", "--import",
                 "--import-options", "--untrusted"},
                false};
    case FarmCommand::kMerge:
        break;
    }
    return {kMergeUsage,
            kMergeWhat,
            {{"-o", "FILE", "write the journal of all to FILE", &options.output}, root},
            {"--version",   "--include", "--exclude", "--from-file",  "-0",
             "--out",       "--frames",  "--draw",    "--frame-size", "--camera",
             "--time",      "--loop",    "--fit",     "--no-light",   "--no-specular",
             "--z-buffer",  "--jobs",    "--timeout", "--memory",     "--strict",
             "--check",     "--force",   "--rehash",  "--dry-run",    "--fail-fast",
             "--verbose",   "--quiet",   "--journal", "--import",     "--import-options",
             "--untrusted", "--durable"}};
}

template <typename Number>
bool ReadWhole64(const std::string& text, Number& numberOut)
{
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, numberOut);
    return read.ec == std::errc() && read.ptr == end;
}

std::string ReadChunkSize(const FarmTexts& texts, FarmOptions& options)
{
    if (texts.chunks.empty() == texts.chunkMebibytes.empty())
        return "one of '--chunks' and '--chunk-mb' is needed";
    if (!texts.chunks.empty()) {
        const bool isRead = ReadWhole64(texts.chunks, options.chunkCount) &&
                            options.chunkCount >= 1 && options.chunkCount <= kMostChunks;
        return isRead ? "" : "option '--chunks' needs a whole number from 1 to 10000000";
    }
    double mebibytes = 0;
    const bool isRead = ReadWhole64(texts.chunkMebibytes, mebibytes) && std::isfinite(mebibytes) &&
                        mebibytes > 0 && mebibytes <= kMostMebibytes;
    if (!isRead)
        return "option '--chunk-mb' needs a number of MiB above 0";
    options.chunkBytes = std::max<uint64_t>(1, static_cast<uint64_t>(mebibytes * 1048576));
    return "";
}

std::string MissingOption(const FarmOptions& options)
{
    if (options.command != FarmCommand::kRun && options.output.empty())
        return "option '-o' is needed";
    if (options.command == FarmCommand::kRun && options.chunkFile.empty())
        return "option '--chunk' is needed";
    if (options.command == FarmCommand::kRun && options.journalDirectory.empty())
        return "option '--journal-dir' is needed";
    return "";
}

std::string CheckFarmOptions(const FarmTexts& texts, FarmOptions& options)
{
    if (!options.batch.error.empty())
        return options.batch.error;
    const std::string missing = MissingOption(options);
    if (!missing.empty())
        return missing;
    if (options.command == FarmCommand::kPlan)
        return ReadChunkSize(texts, options);
    if (options.command == FarmCommand::kMerge) {
        if (options.batch.paths.size() != 1)
            return "one directory of journals is needed";
        options.journalDirectory = options.batch.paths.front();
    }
    return "";
}

} // namespace

bool IsFarmCommand(const std::vector<std::string>& arguments)
{
    return !arguments.empty() && std::find(std::begin(kCommandNames), std::end(kCommandNames),
                                           arguments.front()) != std::end(kCommandNames);
}

FarmArguments::FarmArguments(FarmCommand commandIn)
    : command(commandIn),
      form(FormOf(command, options, texts)),
      line(form)
{}

FarmOptions FarmArguments::Read(const std::vector<std::string>& arguments)
{
    options = {};
    options.command = command;
    options.usage = form.usage;
    texts = {};
    options.batch = line.Read(arguments);
    if (options.batch.help)
        options.help = line.Help();
    else
        options.batch.error = CheckFarmOptions(texts, options);
    return options;
}

FarmOptions ReadFarmArguments(const std::vector<std::string>& arguments)
{
    const auto* const name =
        std::find(std::begin(kCommandNames), std::end(kCommandNames), arguments.front());
    FarmArguments line(static_cast<FarmCommand>(name - kCommandNames));
    return line.Read({arguments.begin() + 1, arguments.end()});
}
